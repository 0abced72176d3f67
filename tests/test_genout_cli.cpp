// Generator frame through the zktcomp binary: which files a compile writes,
// where, what it does with existing user files, and how layout errors end.
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "proc_util.h"

namespace {

using Names = std::vector<std::string>;

const std::string kCompiler = ZKT_COMPILER_PATH;
const char kFailed[] = "Error executing DDL compiler";

using procutil::compileIn;
using procutil::listDir;
using procutil::TempDir;

bool startsWith(const std::string& s, const std::string& prefix) { return s.compare(0, prefix.size(), prefix) == 0; }

const char kPlain[] = "declare database d;\nclass c { signed<4> a; tree<a> ia; };\n";
// One class with a user-defined index, another whose index uses a collation.
const char kUserCode[] =
    "declare database d;\n"
    "class u { signed<4> a; userdef tree<a> ua; };\n"
    "class k { char<8> b; tree<b collate latin> kb; };\n";

struct FilesCase {
  const char* schema;
  Names opts;
  Names files;
};

TEST(GenOutputCli, WritesExactlyTheFilesOfTheOptions) {
  const FilesCase cases[] = {
      {kPlain, {}, {"d.c", "d.h"}},
      {kPlain, {"-hpp", "-cs", "-dumpxml"}, {"d.c", "d.cs", "d.h", "d.hpp", "d.xml"}},
      {kUserCode, {}, {"d.c", "d.h", "d_coll.c", "d_udf.c"}},
      // A suppressed class makes no user-code file of its own.
      {kUserCode, {"-suppress-api", "u"}, {"d.c", "d.h", "d_coll.c"}},
      {kUserCode, {"-suppress-api", "k"}, {"d.c", "d.h", "d_udf.c"}},
      {kUserCode, {"-suppress-api", ""}, {"d.c", "d.h"}},
  };
  bool first = true;
  for (const FilesCase& c : cases) {
    for (const char* outOpt : {"out", "out/"}) {
      if (!first && outOpt[3] == '/') continue;  // a trailing slash once is enough
      TempDir dir;
      ASSERT_EQ(mkdir((dir.path + "/out").c_str(), 0755), 0);
      Names opts{"-o", outOpt};
      opts.insert(opts.end(), c.opts.begin(), c.opts.end());
      ProcResult r = compileIn(dir.path, c.schema, opts);
      std::string what = ::testing::PrintToString(opts);
      EXPECT_EQ(r.status, 0) << what << "\n" << r.err;
      EXPECT_EQ(r.err, "") << what;
      EXPECT_TRUE(startsWith(r.out, "Compiled successfully: ")) << what;
      EXPECT_EQ(listDir(dir.path + "/out"), c.files) << what;
      EXPECT_EQ(listDir(dir.path), (Names{"out", "x.sch"})) << what;
    }
    first = false;
  }
}

TEST(GenOutputCli, MissingOutputDirectoryStopsAtTheFirstFile) {
  for (const char* outOpt : {"missing", "missing/"}) {
    TempDir dir;
    ProcResult r = compileIn(dir.path, kPlain, {"-o", outOpt, "-hpp"});
    EXPECT_EQ(r.status, 255) << outOpt;
    EXPECT_EQ(r.err, "error: Cannot open file missing/d.h\n") << outOpt;
    EXPECT_EQ(r.out.find(kFailed), std::string::npos) << outOpt << ": " << r.out;
    EXPECT_EQ(listDir(dir.path), (Names{"x.sch"})) << outOpt;
  }
}

// Existing user-code files are kept; the generated skeletons go beside them.
TEST(GenOutputCli, ExistingUserCodeFilesAreKept) {
  TempDir dir;
  const std::string out = dir.path + "/out";
  ASSERT_EQ(mkdir(out.c_str(), 0755), 0);
  const std::string udf = "/* hand-written user index */\nint x;\n";
  const std::string coll = "/* hand-written collation */\nint y;\n";
  procutil::writeFile(out + "/d_udf.c", udf);
  procutil::writeFile(out + "/d_coll.c", coll);
  ProcResult r = compileIn(dir.path, kUserCode, {"-o", "out"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err,
            "warning: file d_udf.c exists, generate d_udf.c.new\n"
            "warning: file d_coll.c exists, generate d_coll.c.new\n");
  EXPECT_EQ(procutil::readFile(out + "/d_udf.c"), udf);
  EXPECT_EQ(procutil::readFile(out + "/d_coll.c"), coll);
  EXPECT_EQ(listDir(out), (Names{"d.c", "d.h", "d_coll.c", "d_coll.c.new", "d_udf.c", "d_udf.c.new"}));
  for (const char* f : {"/d_udf.c.new", "/d_coll.c.new"})
    EXPECT_NE(procutil::readFile(out + f).find("\n#include \"d.h\"\n#include \"zktwrap.h\"\n\n"), std::string::npos) << f;
}

// An error while generating (a layout error, test_layout.cpp, takes the same
// path) closes and removes the outputs of the database, the C# file excepted;
// an internal stop ends at once and leaves them.
TEST(GenOutputCli, ErrorsEndTheCompile) {
  struct Case {
    const char* schema;  // behind the database statement
    const char* err;
    bool internal;
  };
  // clang-format off
  const Case cases[] = {
    { "class p { blob b[2]; list; };",                             "File x.sch; error: Blob cannot be element of an array\n\n", false },
    { "class p { vector<blob> b; list; };",                        "File x.sch; error: Blob cannot be element of a vector\n\n", false },
    { "class p { optional signed<4> o; list; };",                  "File x.sch; error: optional may be only struct\n\n", false },
    { "direct struct V { signed<4> y; };\nclass p { optional V o; list; };", "File x.sch; error: optional may be only struct\n\n", false },
    { "struct S { signed<4> a; boolean updated_bitmap[]; };\nclass p { S s; list; };", "internal error: internal error, array size\n", true },
    { "class g { rect<char<4>> r[2]; list; };",                    "internal error: unknown case\n", true },
  };
  // clang-format on
  for (const Case& c : cases) {
    TempDir dir;
    const std::string out = dir.path + "/out";
    ASSERT_EQ(mkdir(out.c_str(), 0755), 0);
    // Files of an earlier compile of another database stay too.
    procutil::writeFile(out + "/e.h", "other\n");
    ProcResult r = compileIn(dir.path, std::string("declare database d;\n") + c.schema, {"-o", "out", "-hpp", "-cs", "-dumpxml"});
    EXPECT_EQ(r.status, 255) << c.schema;
    EXPECT_EQ(r.err, c.err);
    EXPECT_EQ(r.out, c.internal ? "" : std::string(kFailed) + "\n") << c.schema;
    const Names left = c.internal ? Names{"d.c", "d.cs", "d.h", "d.hpp", "d.xml", "e.h"} : Names{"d.cs", "e.h"};
    EXPECT_EQ(listDir(out), left) << c.schema;
    if (c.internal) {  // what was written before the stop stays in the files
      EXPECT_EQ(procutil::readFile(out + "/d.h").rfind("/* Generated by", 0), 0u) << c.schema;
    }
  }
}

// Runs the compiler with a small stack, so that nesting laid out by
// recursion would overflow it.
ProcResult compileWithSmallStack(const Names& argv) {
  return procutil::runChild([&] {
    struct rlimit lim;
    getrlimit(RLIMIT_STACK, &lim);
    lim.rlim_cur = 512 * 1024;
    setrlimit(RLIMIT_STACK, &lim);
    std::vector<char*> args;
    for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    execv(args[0], args.data());
    _exit(127);
  });
}

// Nesting is laid out on an explicit stack, whichever order the structs are
// declared in; a second class spreads its ownership down the chain.
TEST(GenOutputCli, DeepChainOfNestedStructsCompiles) {
  const int depth = 10000;
  for (bool topDown : {true, false}) {
    std::string text = "declare database d;\n";
    for (int n = 0; n < depth; n++) {
      const int i = topDown ? n : depth - 1 - n;
      text += "struct s" + std::to_string(i) + " { " +
              (i + 1 < depth ? "s" + std::to_string(i + 1) + " n;" : std::string("signed<4> v;")) + " };\n";
    }
    text += "class c { s0 top; };\nclass b { s0 top; };\n";
    TempDir dir;
    procutil::writeFile(dir.path + "/x.sch", text);
    ProcResult r = compileWithSmallStack({kCompiler, "-o", dir.path, "-dumpxml", dir.path + "/x.sch"});
    EXPECT_EQ(r.status, 0) << r.err.substr(0, 500);
    // The size of the innermost field reaches both classes through every level.
    const std::string xml = procutil::readFile(dir.path + "/d.xml");
    EXPECT_NE(xml.find("<fld name=\"top\" sz=\"4\" a=\"4\" offs=\"0\" />"), std::string::npos);
    EXPECT_NE(procutil::readFile(dir.path + "/d.h").find("s9999_v_get"), std::string::npos);  // owned: accessors
  }
}

}  // namespace

namespace {

// The bundled example compiles, and so does its C file.
TEST(GenOutputCli, ExampleCompiles) {
  TempDir dir;
  ProcResult r = procutil::runProgram(
      {kCompiler, "-o", dir.path, std::string(ZKT_SOURCE_DIR) + "/examples/example.sch"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(listDir(dir.path), (Names{"orders.c", "orders.h"}));
}

}  // namespace
