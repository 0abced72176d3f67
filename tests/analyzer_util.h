// Test helpers for the analyzer: runs analyze over schema text on an in-memory reporter and keeps the model.
#ifndef ZKT_TESTS_ANALYZER_UTIL_H
#define ZKT_TESTS_ANALYZER_UTIL_H

#include <stdio.h>

#include <string>
#include <vector>

#include "analyzer.h"
#include "errrepmem.h"

namespace antest {

// The options of a compile that reach the analyzer.
struct Options {
  bool allCompact = false;
  bool sql = false;
  bool persistent = false;
  bool atomic = false;
  bool large = false;
  bool nosort = false;
  int sizeT = 8;
  std::vector<std::string> suppress;
};

// Records what the analyzer tells the driver.
class DbNameRecorder : public IOnDbNameFound {
public:
  std::vector<std::string> names;
  void dbnameFound(const mstring& name) override { names.push_back(name.c_str()); }
};

// One schema text, analyzed as the file compiler would (without doChecks).
// After construction either ok is set and the model can be inspected, or
// msg and line hold the error that ended the analysis.
class Analysis {
  struct OwnedFile {
    FILE* f;
    ~OwnedFile() { fclose(f); }
  } m_file;
  static FILE* textFile(const std::string& text) {
    FILE* f = tmpfile();
    fwrite(text.data(), 1, text.size(), f);
    rewind(f);
    return f;
  }
  static mvector<mstring> toList(const std::vector<std::string>& v) {
    mvector<mstring> r;
    for (const std::string& s : v) r.push_back(mstring(s.c_str()));
    return r;
  }
  static void collect(CompilerErrorType type, const char* msg, const char*, int, int, void* ctx) {
    if (type == ZKTCOMP_WARNING) static_cast<Analysis*>(ctx)->warnings.push_back(msg);
  }

public:
  ErrReporterMem rep;
  DbNameRecorder dbnames;
  mvector<mstring> suppress;
  Parser parser;
  Analyzer an;
  bool ok = false;
  std::string msg;
  int line = 0;
  std::vector<std::string> warnings;

  explicit Analysis(const std::string& text, const Options& o = Options())
      : m_file{textFile(text)},
        rep(collect, this),
        suppress(toList(o.suppress)),
        parser(m_file.f, "t.sch", &rep, "", ""),
        an(parser, o.allCompact, o.sql, o.persistent, false, o.atomic, &dbnames, o.large, o.sizeT,
           o.large || o.nosort, o.nosort, 4, suppress) {
    try {
      an.analyze();
      ok = true;
    } catch (const CompilerError& e) {
      msg = e.m_msg.c_str();
      line = e.m_line;
    }
  }

  Schema& schema() { return an.getSchema(); }
  Class* cls(const char* name) { return schema().findClass(name); }
  Struct* type(const char* name) { return schema().findType(name); }
  // Field names of a struct or class in v_field order, joined by blanks.
  static std::string fieldNames(const Struct* s) {
    std::string r;
    for (unsigned int i = 0; i < s->v_field.size(); i++)
      r += (i ? " " : "") + std::string(s->v_field[i].m_name.c_str());
    return r;
  }
};

// analyze, then doChecks, as the file compiler runs them.
struct Finished : Analysis {
  explicit Finished(const std::string& text, const Options& o = Options()) : Analysis(text, o) {
    if (!ok) return;
    ok = false;
    try {
      an.doChecks();
      ok = true;
    } catch (const CompilerError& e) {
      msg = e.m_msg.c_str();
      line = e.m_line;
    }
  }
  std::string classNames() {
    std::string r;
    for (ISet::HPos pos(schema().s_class.first()); pos.valid(); pos.next())
      r += (r.empty() ? "" : " ") + std::string(static_cast<Class*>(pos.get().get())->m_name.c_str());
    return r;
  }
};

}  // namespace antest

#endif
