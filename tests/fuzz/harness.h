// Fuzzing harness shared by the fuzz targets and the regression test: an option set drawn from the
// first two bytes of an input, the file compiler's phases or the library run in process, the outcome judged.
#ifndef ZKT_TESTS_FUZZ_HARNESS_H
#define ZKT_TESTS_FUZZ_HARNESS_H

#include <dirent.h>
#include <stdint.h>
#include <unistd.h>

#include <string>

#include "../analyzer_util.h"
#include "genout.h"
#include "zktcomp.h"

namespace fuzzh {

// Internal stops and thrown texts that a schema reaches by design: they stay, and are no finding.
// One more, judged by the model rather than the text: "unknown case" from a rect or point field
// whose coordinates are not simple (hasNonSimpleSpatial).
struct KnownStop {
  const char* text;  // found anywhere in the stop's message
  const char* reason;
};
inline const KnownStop kKnownStops[] = {
    {"oid size unknown", "a ref field while the oid type has no size (a simple oid type): the layout stops"},
    {"An index on a vector of structs may only include one field of the structure.",
     "an index over two array or vector fields (tree<*> over two arrays): the dictionary encoder stops"},
    {"Wrong sequence element type ", "a sequence of an element type it has no code for (sequence<blob>): the "
     "dictionary's element codes stop"},
    {"illegal index field type",
     "a key part of a category that has no C form (a user-defined index on the autoid, a collation on a blob): the "
     "generator stops"},
    {"Cannot open file ",
     "an output the file system refuses (a class name past its name limit makes the Java file name too long): "
     "the file stream stops with the ordinary error"},
};

enum class Outcome { Compiled, SchemaError, KnownStop, Finding };
struct Result {
  Outcome outcome;
  std::string text;  // the error or the stop
};

// A panic unwinds to the harness instead of ending the process; the text is
// kept because the library's own catch swallows the exception.
struct Stop {
  std::string text;
};
inline std::string& lastStop() {
  static std::string s;
  return s;
}
inline void throwingPanic(const mstring& msg, bool) {
  lastStop() = msg.c_str();
  throw Stop{msg.c_str()};
}

// Sets the throwing panic for one run and puts the previous one back.
struct PanicGuard {
  void (*m_prev)(const mstring&, bool) = IErrReporter::s_panicHook;
  PanicGuard() {
    IErrReporter::s_panicHook = throwingPanic;
    lastStop().clear();
  }
  ~PanicGuard() { IErrReporter::s_panicHook = m_prev; }
};

inline Result judgeStop(const std::string& text) {
  for (const KnownStop& k : kKnownStops)
    if (text.find(k.text) != std::string::npos) return {Outcome::KnownStop, text};
  return {Outcome::Finding, text};
}

inline unsigned flagsOf(const uint8_t* data, size_t size) {
  return (size > 0 ? data[0] : 0u) | (size > 1 ? data[1] << 8 : 0u);
}
inline std::string schemaOf(const uint8_t* data, size_t size) {
  return size > 2 ? std::string(reinterpret_cast<const char*>(data) + 2, size - 2) : std::string();
}

// Removes the files that a run left in dir (Java files, dictionary outputs).
inline void clearDir(const std::string& dir) {
  DIR* d = opendir(dir.c_str());
  if (d == nullptr) return;
  while (dirent* e = readdir(d))
    if (e->d_name[0] != '.') unlink((dir + "/" + e->d_name).c_str());
  closedir(d);
}

// The file compiler's generator with every option: each file a string
// stream, the Java files in outDir.
struct GenOptions {
  bool hpp, cs, java, dumpxml, debug, mergeable, prefix, xml, json, smartptr, dll;
};
class FuzzGenOutput : public GenOutput {
public:
  FuzzGenOutput(Schema& sc, IErrReporter* rep, const GenOptions& g, const antest::Options& a, const std::string& outDir)
      : GenOutput(sc, g.debug || g.hpp, a.nosort, g.dumpxml, g.hpp, g.cs, g.java, g.smartptr, rep, outDir.c_str(), "",
                  "", false, g.xml, g.json, a.sql, a.large, a.sizeT, 4, g.prefix, g.mergeable, g.dll) {}
  void createStreams(bool, bool) override {
    IOutStream** const files[] = {&m_h, &m_c, &m_hpp_tail, &m_hpp, &m_cs, &m_x, &m_udf, &m_coll};
    for (IOutStream** f : files) *f = IOutStream::createStrStream("");
    createRouting();
    m_java = IOutStream::createNullStream();
  }
};

// A rect or point field whose coordinates are not of a simple type: its
// accessors throw "unknown case" by design.
inline bool hasNonSimpleSpatial(Schema& sc) {
  for (HISet* set : {&sc.s_struct, &sc.s_class})
    for (ISet::HPos pos(set->first()); pos.valid(); pos.next()) {
      const Struct& st = *static_cast<Struct*>(pos.get().get());
      for (unsigned i = 0; i < st.v_field.size(); i++) {
        const Field& f = st.v_field[i];
        if ((f.m_isRTreeRect || f.m_isRTreePoint) && f.m_pstruct != nullptr && f.m_pstruct->m_category != ET_SIMPLE)
          return true;
      }
    }
  return false;
}

// Analysis, checks, layout and generation as the file compiler runs them.
// Bits of the first two bytes, low first: -hpp -cs -java -dumpxml -debug
// -compact -nosort -large, -size-t 4 -mergeable -prefix -xml -json -sql -smartptr -dll.
inline Result compile(const uint8_t* data, size_t size, const std::string& outDir) {
  const unsigned b = flagsOf(data, size);
  auto bit = [b](unsigned i) { return ((b >> i) & 1) != 0; };
  antest::Options a;
  a.allCompact = bit(5);
  a.nosort = bit(6);
  a.large = bit(7);
  a.sizeT = bit(8) ? 4 : 8;
  a.sql = bit(13);
  const GenOptions g{bit(0), bit(1), bit(2), bit(3), bit(4), bit(9), bit(10), bit(11), bit(12), bit(14), bit(15)};
  PanicGuard guard;
  try {
    antest::Finished fin(schemaOf(data, size), a);
    if (!fin.ok) return {Outcome::SchemaError, fin.msg};
    FuzzGenOutput gen(fin.schema(), &fin.rep, g, a, outDir);
    try {
      gen.init();
      gen.run();
    } catch (const CompilerError& e) {
      return {Outcome::SchemaError, e.m_msg.c_str()};
    } catch (const char* text) {
      if (hasNonSimpleSpatial(fin.schema())) return {Outcome::KnownStop, text};
      throw;
    }
    return {Outcome::Compiled, ""};
  } catch (const Stop& s) {
    return judgeStop(s.text);
  } catch (const char* text) {
    return judgeStop(text);
  }
}

// zkt_db_load_dictionary with the options of the first two bytes, outputs and
// includes in dir; the dictionary's blocks stay with the caller's allocator.
inline Result loadDictionary(const uint8_t* data, size_t size, const std::string& dir) {
  const unsigned b = flagsOf(data, size);
  zktcomp_options_t o = zktcomp_options_t();
  zkt_bool* const bits[] = {&o.genhpp, &o.gencs,     &o.genjava,  &o.dumpxml,       &o.debug,        &o.allCompact,
                            &o.nosort, &o.largeDatabase, &o.cmode1, &o.gensmartptr, &o.use_prefix,
                            &o.genXmlMethods, &o.genJsonMethods, &o.genSql, &o.persistent, &o.suppress_api};
  for (unsigned i = 0; i < 16; i++) *bits[i] = (b >> i) & 1;
  o.wcharSize = (b & 0x100) ? 2 : 4;
  o.atomic = o.transient = (b >> 9) & 1;
  o.outDir = dir.c_str();
  o.include_dir = dir.c_str();
  PanicGuard guard;
  const std::string schema = schemaOf(data, size);  // the library reads up to the first NUL
  zkt_dict_h dict = nullptr;
  size_t dictSize = 0;
  char name[64];
  size_t nameSize = sizeof name;
  std::string error;
  auto keep = [](CompilerErrorType type, const char* msg, const char*, int, int, void* ctx) {
    if (type == ZKTCOMP_ERROR) *static_cast<std::string*>(ctx) = msg;
  };
  const ZKT_RET rc = zkt_db_load_dictionary(schema.c_str(), &o, &dict, &dictSize, name, &nameSize, keep, &error);
  if (!lastStop().empty()) return judgeStop(lastStop());
  if (rc == 0 && dict != nullptr) return {Outcome::Compiled, ""};
  if (rc == 1005) return {Outcome::SchemaError, error};
  return {Outcome::Finding, "unexpected result " + std::to_string(rc)};
}

}  // namespace fuzzh

#endif
