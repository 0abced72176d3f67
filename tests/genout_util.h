// Test helpers for the generator: a GenOutput whose files are string streams, run over a finished schema.
#ifndef ZKT_TESTS_GENOUT_UTIL_H
#define ZKT_TESTS_GENOUT_UTIL_H

#include <string>

#include "analyzer_util.h"
#include "genout.h"

namespace gentest {

// The options of a compile: those of the analyzer, then the generator's.
struct Options : antest::Options {
  bool debug = false;
};

// Every file is a string stream, so a test reads what would be written; the
// routing streams are the real ones.
class StrGenOutput : public GenOutput {
public:
  StrGenOutput(Schema& sc, IErrReporter* rep, const Options& o)
      : GenOutput(sc, o.debug, o.nosort, false, false, false, false, false, rep, "", "", "", false, false, false, o.sql,
                  o.large, o.sizeT, 4, false, false, false) {}
  void createStreams(bool, bool) override {
    m_h = IOutStream::createStrStream("");
    m_c = IOutStream::createStrStream("");
    createRouting();
    m_hpp_tail = IOutStream::createStrStream("");
    m_hpp = IOutStream::createStrStream("");
    m_cs = IOutStream::createStrStream("");
    m_java = IOutStream::createNullStream();
    m_udf = IOutStream::createStrStream("");
    m_coll = IOutStream::createStrStream("");
  }
};

// A finished schema with its generator, streams open. layout() or run()
// report the error that stopped them in msg (empty when none).
struct Generated : antest::Finished {
  StrGenOutput gen;
  Generated(const std::string& text, const Options& o = Options()) : Finished(text, o), gen(schema(), &rep, o) {
    if (ok) gen.init();
  }
  bool layout() { return attempt([this] { gen.layout(); }); }
  bool run() { return attempt([this] { gen.run(); }); }
  template <class F>
  bool attempt(F f) {
    if (!ok) return false;
    try {
      f();
      return true;
    } catch (const CompilerError& e) {
      msg = e.m_msg.c_str();
      return false;
    }
  }
  static std::string text(IOutStream* os) { return os->retstr().c_str(); }
};

// The banner's time masked, as the expected files have it.
inline std::string maskTime(std::string s) {
  const std::string at = " * at ";
  for (size_t p = s.find(at); p != std::string::npos; p = s.find(at, p + at.size())) {
    const size_t end = s.find('\n', p);
    if (end == std::string::npos) break;
    s.replace(p + at.size(), end - p - at.size(), "TIME");
  }
  return s;
}

}  // namespace gentest

#endif
