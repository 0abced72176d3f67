// Analyzer through the zktcomp binary: console diagnostics, exit status, removed outputs, the schema corpus.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "proc_util.h"

namespace {

using Names = std::vector<std::string>;

const char kFailed[] = "Error executing DDL compiler\n";
const char kSeqElem[] = ": sequences can be defined only singined/unsigned integer, floatig point, date/time, character "
                        "and fixed size struct type.\n";

using procutil::compileIn;

std::string kdSchema(int fields) {
  std::string text = "declare database d;\nclass c {";
  for (int i = 0; i < fields; i++) text += " signed<4> f" + std::to_string(i) + ";";
  return text + " kdtree<f0> k; };";
}

// The console of a compile: reader errors carry a position (one above the
// column of the rewritten line, where every name has a blank on both sides),
// the preprocessor's and the analyzer's only a line; warnings end in a blank
// line like errors; the target's size_t sets the kd-tree field limit; internal
// stops print no position.
TEST(AnalyzerCli, ConsoleAndStatus) {
  struct Case {
    std::string schema;
    Names opts;
    int status;
    std::string err;
  };
  const std::string kd = "File x.sch;  line 2: error: It is too many fields in class \"c\" for kd-tree index \"k\".\n\n";
  const procutil::TempDir dir;
  const std::string real = std::filesystem::canonical(dir.path).string();
  const Case cases[] = {
      {"declare database d;\nstruct s { @@ };\n", {}, 255,
       "File x.sch;  line 2, position 17: error: Unrecognized Symbol \"@\"\n\n"},
      {"declare database d;\n/* open\n", {}, 255, "File x.sch;  line 3: error: comment is not closed with */\n\n"},
      {"declare database d;\n#include \"inc/missing.sch\"\n", {}, 255,
       "File x.sch;  line 2: error: current directory is " + real + ", cannot open include file \"inc/missing.sch\"\n\n"},
      {"declare database d;\nstruct s { decimal<5> a; };\n", {}, 255,
       "File x.sch;  line 2, position 31: error: expected \">\"\n\n"},
      {"declare database w;\ndeclare OID unsigned<8>[10];\nclass c {\n  history[5];\n  OID;\n  signed<4> a;\n};\n", {}, 0,
       "File x.sch;  line 2: warning: OID is deprecated, use oid instead\n\n"
       "File x.sch;  line 4: warning: History is not currently supported\n\n"
       "File x.sch;  line 5: warning: OID is deprecated, use oid instead\n\n"},
      {kdSchema(31), {"-size-t", "4"}, 0, ""},
      {kdSchema(32), {"-size-t", "4"}, 255, kd},
      {kdSchema(63), {}, 0, ""},
      {kdSchema(64), {}, 255, kd},
      {"declare database d;\nclass c { blob b; tree<b collate co> t; };", {}, 255,
       "internal error: illegal index field type\n"},
      {"declare database d;\nclass c { sequence<string> q; list; };", {}, 255,
       std::string("internal error: Wrong sequence element type string") + kSeqElem},
      {"declare database d;\ndirect struct D { signed<4> x; };\nclass c { sequence<D> q; list; };", {}, 255,
       std::string("internal error: Wrong sequence element type D") + kSeqElem},
  };
  for (const Case& c : cases) {
    const ProcResult r = compileIn(dir.path, c.schema, c.opts);
    EXPECT_EQ(r.status, c.status) << c.schema;
    EXPECT_EQ(r.err, c.err) << c.schema;
    EXPECT_EQ(r.out.rfind("Compiled successfully: ", 0), c.status == 0 ? 0u : std::string::npos) << r.out;
  }
}

// A failure after the database statement removes that database's outputs
// (a ".new" name where the hand-edited file exists); one before it, or in
// another database, touches nothing.
TEST(AnalyzerCli, FailureRemovesTheOutputsOfItsDatabase) {
  const Names files{"d.c", "d.cs", "d.h", "d.hpp", "d.xml", "d_udf.c", "d_udf.c.new", "other.h"};
  struct Case {
    const char* schema;
    const char* err;
    Names left;
  };
  const Case cases[] = {
      {"declare database d;\nclass c {\n signed<4> a;\n signed<4> a;\n};\n",
       "File x.sch;  line 4: error: field a already exists\n\n", {"d.cs", "d_udf.c", "other.h"}},
      {"class c { signed<4> a; signed<4> a; };\ndeclare database d;\n",
       "File x.sch;  line 1: error: field a already exists\n\n", files},
      {"declare database e;\nfoo;\n", "File x.sch;  line 2: error: unexpected token: \"foo\"\n\n", files},
  };
  for (const Case& c : cases) {
    const std::string dir = procutil::makeTempDir();
    for (const std::string& f : files) procutil::writeFile(dir + "/" + f, "earlier\n");
    const ProcResult r = compileIn(dir, c.schema);
    EXPECT_EQ(r.status, 255);
    EXPECT_EQ(r.err, c.err);
    EXPECT_EQ(r.out, kFailed);
    Names left = c.left;
    left.insert(std::lower_bound(left.begin(), left.end(), "x.sch"), "x.sch");
    EXPECT_EQ(procutil::listDir(dir), left) << c.schema;
    std::filesystem::remove_all(dir);
  }
}

// Every schema of the corpus is valid, with the default options and with
// the options that change the analysis.
TEST(AnalyzerCli, CorpusCompiles) {
  const std::string corpus = std::string(ZKT_SOURCE_DIR) + "/tests/schemas";
  const Names schemas = procutil::schemaFiles(corpus);
  EXPECT_GE(schemas.size(), 9u);
  const std::string out = procutil::makeTempDir();
  for (const std::string& s : schemas) {
    for (const Names& opts : {Names{}, Names{"-nosort", "-large", "-compact", "-persistent", "-atomic", "-sql",
                                             "-size-t", "4"}}) {
      Names argv{ZKT_COMPILER_PATH, "-o", out};
      argv.insert(argv.end(), opts.begin(), opts.end());
      argv.push_back(corpus + "/" + s);
      const ProcResult r = procutil::runProgram(argv);
      EXPECT_EQ(r.status, 0) << s << " " << opts.size() << ": " << r.err;
    }
  }
  std::filesystem::remove_all(out);
}

}  // namespace
