// Diagnostics: message translation, console formats, the final path and the in-memory reporter.
#include <gtest/gtest.h>

#include <string>

#include "errrep.h"
#include "errrepmem.h"
#include "proc_util.h"

namespace {

std::string tr(const char* key, const char* p1 = "", const char* p2 = "", const char* p3 = "",
               const char* p4 = "") {
  return translateError(key, p1, p2, p3, p4).c_str();
}

TEST(DiagTranslate, TableRowsAndPlaceholders) {
  struct Case {
    const char* key;
    const char* p1;
    const char* p2;
    const char* expected;
  } cases[] = {
      {"reserved word #1", "int", "", "\"int\" is a reserved word"},
      {"Invalid syntax", "", "", "Invalid syntax"},           // no row: the key is the message
      {"expected #1", "", "", "expected \"#1\""},             // no arguments: the placeholder stays
      {"expected #1", "", ";", "expected \";\""},             // an empty p1 shifts p2 down
      {"a #2 b", "x", "", "a  b"},                            // beyond the list: vanishes
      {"#a #0 z#", "x", "", "#a  z#"},                        // "#0" vanishes, other "#" stay
      {"v #1 #2", "#2", "Q", "v #2 Q"},                       // substitutions aren't scanned again
      {"HA estimated count value is not valid", "", "", "auto_oid estimated count value is not valid"},
      {"expected , or ;", "", "", "expected ',' or ';'"},
  };
  for (const Case& c : cases) EXPECT_EQ(tr(c.key, c.p1, c.p2), c.expected) << c.key;
  // A row that takes four arguments and shows three.
  EXPECT_EQ(tr("field #1 was not defined in struct #2 and referenced from index #3, #4", "f", "s", "i", "c"),
            "field f was not defined in struct s and referenced from index i");
}

struct RecordingCallback : IFinalCallback {
  void execute() override { printf("callback ran\n"); }
};

TEST(DiagConsole, ErrorFormats) {
  struct Case {
    const char* defaultFile;
    const char* file;
    int line;
    int pos;
    const char* err;
  } cases[] = {
      {"", "f.sch", 3, 4, "File f.sch;  line 3, position 5: error: unexpected token: \"x\"\n\n"},
      {"d.sch", "", 3, 1, "File d.sch;  line 3, position 2: error: unexpected token: \"x\"\n\n"},
      {"d.sch", "", 0, 0, "File d.sch;  line 0: error: unexpected token: \"x\"\n\n"},
      {"", "", -1, 7, "error: unexpected token: \"x\"\n\n"},
  };
  for (const Case& c : cases) {
    ProcResult r = procutil::runChild([&] {
      ErrReporter rep;
      rep.setDefaultFilename(c.defaultFile);
      rep.err1("unexpected token #1", "x", c.file, c.line, c.pos);
    });
    EXPECT_EQ(r.status, 255);
    EXPECT_EQ(r.err, c.err);
    EXPECT_EQ(r.out, "Error executing DDL compiler\n");
  }
}

TEST(DiagConsole, FinalCallbackRunsBeforeTheClosingLine) {
  ProcResult r = procutil::runChild([] {
    ErrReporter rep;
    RecordingCallback cb;
    rep.setFinalCallback(&cb);
    rep.err("schema name was not defined");
  });
  EXPECT_EQ(r.status, 255);
  EXPECT_EQ(r.err, "error: schema name was not defined\n\n");
  EXPECT_EQ(r.out, "callback ran\nError executing DDL compiler\n");
}

TEST(DiagConsole, WarningsReturn) {
  ProcResult r = procutil::runChild([] {
    ErrReporter rep;
    rep.setDefaultFilename("d.sch");
    rep.warning("OID is deprecated, use oid instead", "", 2, 0);
    rep.warning("plain");
    rep.warning1("about #1", "x");  // no place and no blank line
    printf("%d %d\n", rep.m_nWarnings, (int)rep.wasError());
  });
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.err,
            "File d.sch;  line 2: warning: OID is deprecated, use oid instead\n\n"
            "File d.sch; warning: plain\n\n"
            "warning: about x\n");
  EXPECT_EQ(r.out, "3 0\n");
}

TEST(DiagConsole, PanicSkipsTheCallback) {
  ProcResult r = procutil::runChild([] {
    ErrReporter rep;
    RecordingCallback cb;
    rep.setFinalCallback(&cb);
    IErrReporter::panic("internal 10023", false);
  });
  EXPECT_EQ(r.status, 255);
  EXPECT_EQ(r.err, "internal error: internal 10023\n");
  EXPECT_EQ(r.out, "");
}

}  // namespace
