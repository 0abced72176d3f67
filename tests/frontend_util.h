// Test helpers for the front end: schema text in temporary files, read by a Parser on an in-memory reporter.
#ifndef ZKT_TESTS_FRONTEND_UTIL_H
#define ZKT_TESTS_FRONTEND_UTIL_H

#include <stdio.h>
#include <stdlib.h>

#include <string>
#include <vector>

#include "errrepmem.h"
#include "parser.h"

namespace frontend {

// Text in an unnamed temporary file, positioned at its start.
inline FILE* textFile(const std::string& text) {
  FILE* f = tmpfile();
  fwrite(text.data(), 1, text.size(), f);
  rewind(f);
  return f;
}

// A Parser (with its PreProcessor) over a file this object owns, as the
// driver would: the file is closed after the Parser is gone.
class Reader {
  struct OwnedFile {
    FILE* f;
    ~OwnedFile() { fclose(f); }
  } m_file;

public:
  ErrReporterMem rep;
  Parser parser;
  Reader(FILE* f, const std::string& name = "main.sch", const std::string& incDir = "")
      : m_file{f}, rep(nullptr, nullptr), parser(f, name.c_str(), &rep, incDir.c_str(), "") {}
  explicit Reader(const std::string& text) : Reader(textFile(text)) {}
};

// The error a call raised, if any, as ErrReporterMem passed it on.
struct Outcome {
  bool failed = false;
  std::string msg;
  std::string file;
  int line = 0;
  int pos = 0;
};

template <class F>
Outcome attempt(F fn) {
  Outcome o;
  try {
    fn();
  } catch (const CompilerError& e) {
    o.failed = true;
    o.msg = e.m_msg.c_str();
    o.file = e.m_file.c_str();
    o.line = e.m_line;
    o.pos = e.m_pos;
  }
  return o;
}

// Every token up to the end of the input or the first error.
inline Outcome readTokens(Parser& p, std::vector<std::string>& out) {
  return attempt([&] {
    for (mstring t = p.get(); !t.empty(); t = p.get()) out.push_back(t.c_str());
  });
}

// Every line the preprocessor gives up to its end (empty ones included).
inline Outcome readLines(PreProcessor& pp, std::vector<std::string>& out) {
  return attempt([&] {
    for (;;) {
      mstring line = pp.readLine();
      if (pp.finished()) return;
      out.push_back(line.c_str());
    }
  });
}

inline std::string join(const std::vector<std::string>& v) {
  std::string s;
  for (const std::string& t : v) s += (s.empty() ? "" : " ") + t;
  return s;
}

// The tokens joined by blanks, or "error: " and the message of the error met.
inline std::string tokensOf(Parser& p) {
  std::vector<std::string> toks;
  Outcome o = readTokens(p, toks);
  if (o.failed) return "error: " + o.msg;
  return join(toks);
}

}  // namespace frontend

#endif
