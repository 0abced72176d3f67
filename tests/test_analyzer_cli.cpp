// Analyzer through the zktcomp binary: console diagnostics, exit status, removed outputs, the schema corpus.
#include <gtest/gtest.h>

#include <dirent.h>

#include <algorithm>
#include <string>
#include <vector>

#include "analyzer_error_cases.h"
#include "proc_util.h"

namespace {

const std::string kCompiler = ZKT_COMPILER_PATH;
const std::string kSchemas = std::string(ZKT_SOURCE_DIR) + "/tests/schemas";
const char kFailed[] = "Error executing DDL compiler\n";

// Compiles text as x.sch in a fresh directory (the output directory too).
ProcResult compileText(const std::string& dir, const std::string& text, std::vector<std::string> opts = {}) {
  procutil::writeFile(dir + "/x.sch", text);
  std::vector<std::string> argv{kCompiler};
  argv.insert(argv.end(), opts.begin(), opts.end());
  argv.push_back("x.sch");
  return procutil::runProgram(argv, dir);
}

bool startsWith(const std::string& s, const std::string& prefix) { return s.compare(0, prefix.size(), prefix) == 0; }

void expectRefused(const std::string& dir, const antest::ErrorCase& c) {
  ProcResult r = compileText(dir, c.schema, c.sql ? std::vector<std::string>{"-sql"} : std::vector<std::string>{});
  // The error is the last text on standard error (a warning may stand before it).
  // Analyzer errors show no position; those of the token reader do.
  std::string head = "File x.sch;  line " + std::to_string(c.line);
  std::string tail = std::string(": error: ") + c.message + "\n\n";
  size_t at = r.err.rfind(head);
  ASSERT_NE(at, std::string::npos) << c.schema << "\n" << r.err;
  std::string shown = r.err.substr(at);
  if (shown != head + tail) {
    EXPECT_TRUE(startsWith(shown, head + ", position ")) << c.schema << "\n" << shown;
    EXPECT_EQ(shown.substr(shown.find(": error: ")), tail) << c.schema;
  }
  EXPECT_EQ(r.status, 255) << c.schema;
  EXPECT_EQ(r.out, kFailed) << c.schema;
}

TEST(AnalyzerCli, EveryRefusedSchemaPrintsItsErrorAndExits255) {
  std::string dir = procutil::makeTempDir();
  for (const antest::ErrorCase& c : antest::kStatementErrors) expectRefused(dir, c);
  for (const antest::ErrorCase& c : antest::kClassErrors) expectRefused(dir, c);
  for (const antest::ErrorCase& c : antest::kFieldErrors) expectRefused(dir, c);
}

// Messages of the token reader carry a position; the analyzer's never do.
TEST(AnalyzerCli, ReaderErrorsKeepTheirPosition) {
  std::string dir = procutil::makeTempDir();
  ProcResult r = compileText(dir, "declare database d;\nstruct s { decimal<5> a; };\n");
  EXPECT_EQ(r.status, 255);
  EXPECT_TRUE(startsWith(r.err, "File x.sch;  line 2, position ")) << r.err;
  EXPECT_NE(r.err.find(": error: expected \">\"\n\n"), std::string::npos) << r.err;
}

TEST(AnalyzerCli, WarningsPrintAndTheCompileGoesOn) {
  std::string dir = procutil::makeTempDir();
  ProcResult r = compileText(dir,
                             "declare database w;\n"
                             "declare OID unsigned<8>[10];\n"
                             "class c {\n"
                             "  history[5];\n"
                             "  OID;\n"
                             "  signed<4> a;\n"
                             "};\n");
  EXPECT_EQ(r.status, 0) << r.err;
  // Warnings that the reporter places end in a blank line, like errors.
  EXPECT_EQ(r.err,
            "File x.sch;  line 2: warning: OID is deprecated, use oid instead\n\n"
            "File x.sch;  line 4: warning: History is not currently supported\n\n"
            "File x.sch;  line 5: warning: OID is deprecated, use oid instead\n\n");
  EXPECT_TRUE(startsWith(r.out, "Compiled successfully: ")) << r.out;
}

class AnalyzerCliOutputs : public ::testing::Test {
protected:
  std::string dir = procutil::makeTempDir();
  // Outputs of an earlier compile of d, two hand-made files and an unrelated one.
  const std::vector<std::string> files{"d.h",         "d.c",          "d.hpp",   "d.xml",
                                       "d_udf.c",     "d_udf.c.new",  "d.cs",    "other.h"};
  void SetUp() override {
    for (const std::string& f : files) procutil::writeFile(dir + "/" + f, "earlier\n");
  }
  std::vector<std::string> remaining() {
    std::vector<std::string> r;
    DIR* d = opendir(dir.c_str());
    while (dirent* e = readdir(d)) {
      std::string n = e->d_name;
      if (n != "." && n != ".." && n != "x.sch") r.push_back(n);
    }
    closedir(d);
    std::sort(r.begin(), r.end());
    return r;
  }
};

TEST_F(AnalyzerCliOutputs, FailureAfterTheDatabaseStatementRemovesItsOutputs) {
  ProcResult r = compileText(dir, "declare database d;\nclass c {\n signed<4> a;\n signed<4> a;\n};\n");
  EXPECT_EQ(r.status, 255);
  EXPECT_EQ(r.err, "File x.sch;  line 4: error: field a already exists\n\n");
  EXPECT_EQ(r.out, kFailed);
  // d_udf.c exists, so its ".new" name is removed and the hand-edited file stays.
  EXPECT_EQ(remaining(), (std::vector<std::string>{"d.cs", "d_udf.c", "other.h"}));
}

TEST_F(AnalyzerCliOutputs, FailureBeforeTheDatabaseStatementTouchesNothing) {
  ProcResult r = compileText(dir, "class c { signed<4> a; signed<4> a; };\ndeclare database d;\n");
  EXPECT_EQ(r.status, 255);
  EXPECT_EQ(r.err, "File x.sch;  line 1: error: field a already exists\n\n");
  std::vector<std::string> all(files);
  std::sort(all.begin(), all.end());
  EXPECT_EQ(remaining(), all);
}

TEST_F(AnalyzerCliOutputs, AnotherDatabaseNameLeavesTheseAlone) {
  ProcResult r = compileText(dir, "declare database e;\nfoo;\n");
  EXPECT_EQ(r.status, 255);
  EXPECT_EQ(r.err, "File x.sch;  line 2: error: unexpected token: \"foo\"\n\n");
  EXPECT_EQ(remaining().size(), files.size());
}

// Every schema of the corpus is valid, with the default options and with
// the options that change the analysis.
TEST(AnalyzerCli, CorpusCompiles) {
  std::vector<std::string> schemas;
  DIR* d = opendir(kSchemas.c_str());
  ASSERT_NE(d, nullptr);
  while (dirent* e = readdir(d)) {
    std::string n = e->d_name;
    if (n.size() > 4 && n.compare(n.size() - 4, 4, ".sch") == 0) schemas.push_back(n);
  }
  closedir(d);
  EXPECT_GE(schemas.size(), 9u);
  std::string out = procutil::makeTempDir();
  const std::vector<std::vector<std::string>> optionSets{
      {}, {"-nosort", "-large", "-compact", "-persistent", "-atomic", "-sql", "-size-t", "4"}};
  for (const std::string& s : schemas) {
    for (const std::vector<std::string>& opts : optionSets) {
      std::vector<std::string> argv{kCompiler, "-o", out};
      argv.insert(argv.end(), opts.begin(), opts.end());
      argv.push_back(kSchemas + "/" + s);
      ProcResult r = procutil::runProgram(argv);
      EXPECT_EQ(r.status, 0) << s << " " << opts.size() << ": " << r.err;
      EXPECT_TRUE(startsWith(r.out, "Compiled successfully: ")) << s;
    }
  }
}

}  // namespace
