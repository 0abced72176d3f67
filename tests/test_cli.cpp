// Command line: option handling, usage and version (diagnostics on the console: test_analyzer_cli.cpp).
#include <gtest/gtest.h>

#include <string>

#include "proc_util.h"

namespace {

const std::string kCompiler = ZKT_COMPILER_PATH;

size_t entries(const std::string& dir) { return procutil::listDir(dir).size(); }

TEST(Cli, MissingSchemaFile) {
  std::string dir = procutil::makeTempDir();
  ProcResult r = procutil::runProgram({kCompiler, "missing.sch"}, dir);
  EXPECT_EQ(r.status, 255);
  char real[4096];
  ASSERT_NE(realpath(dir.c_str(), real), nullptr);
  EXPECT_EQ(r.out, "Current directory is: " + std::string(real) + "\nError executing DDL compiler\n");
  EXPECT_EQ(r.err, "error: Cannot open \"missing.sch\"\n\n");
  EXPECT_EQ(entries(dir), 0u);
}

TEST(Cli, BadArgumentsGiveUsageAndStatus2) {
  struct Case {
    std::vector<std::string> args;
    const char* firstLine;
  } cases[] = {
      {{"-bogus", "x.sch"}, "zktcomp: unknown option -bogus\n"},
      {{"x.sch", "-o"}, "zktcomp: missing value for -o\n"},
      {{"-size-t", "5", "x.sch"}, "zktcomp: bad value \"5\" for -size-t: expected 4 or 8\n"},
      {{"-wchar", "8", "x.sch"}, "zktcomp: bad value \"8\" for -wchar: expected 2 or 4\n"},
      {{}, "zktcomp: no schema file given\n"},
      {{"a.sch", "b.sch"}, "zktcomp: more than one schema file: b.sch\n"},
  };
  std::string dir = procutil::makeTempDir();
  procutil::writeFile(dir + "/x.sch", "declare database x;\n");
  for (const Case& c : cases) {
    std::vector<std::string> argv{kCompiler};
    argv.insert(argv.end(), c.args.begin(), c.args.end());
    ProcResult r = procutil::runProgram(argv, dir);
    EXPECT_EQ(r.status, 2) << c.firstLine;
    EXPECT_EQ(r.err.substr(0, r.err.find('\n') + 1), c.firstLine);
    EXPECT_NE(r.err.find("usage: zktcomp [options] <schema-file>"), std::string::npos);
    EXPECT_EQ(r.out, "");
  }
  EXPECT_EQ(entries(dir), 1u);  // nothing written
}

TEST(Cli, HelpAndVersion) {
  for (const char* opt : {"-help", "-h", "--help"}) {
    ProcResult r = procutil::runProgram({kCompiler, opt});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out.rfind("usage: zktcomp", 0), 0u) << opt;
  }
  ProcResult r = procutil::runProgram({kCompiler, "-version"});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "Vantrel Schema Compiler version 8.3, build 1803, revision interim build Vantrel_8.3_1803, rev.29517\n");
}

}  // namespace
