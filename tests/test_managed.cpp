// C# and Java class files: the type maps, class attributes, index and event lines, field members, whole files, compilers.
//
// What the required text breaks for a compiler, so the compile tests avoid it
// (KnownBreaks shows the first ones failing):
// - Java: a field's own update event ends in "]" (syntax error); a nullable
//   datetime is "DateTime?" (no Java type); a descending key is
//   @Key("b", descending=true), an unnamed value beside a named one; a direct
//   struct's char member has a symbolic Dimension ("fieldsz(...)"); a
//   suppressed class stays in {db}.java's class list but has no file.
// - C#: a sequence of struct elements names the struct's C type, which C#
//   doesn't know; a struct and a class of one name are two C# types of one
//   name; a datetime maps to "zkt_datetime", which the bindings must declare.
#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <string>
#include <utility>

#include "proc_util.h"

// The whole C# and Java files of tests/expected/shop.sch and wide.sch are checked in test_genout.cpp.
namespace {

#define EXPECT_HAS(text, part) EXPECT_NE((text).find(part), std::string::npos) << "missing:\n" << (part) << "\nin:\n" << (text)

std::string focused(const char* name) {
  return procutil::readFile(std::string(ZKT_SOURCE_DIR) + "/tests/expected/" + name + ".sch");
}
const std::string kFileSchema = focused("shop");
const std::string kWideSchema = focused("wide");

using Dir = procutil::TempDir;

ProcResult compile(const Dir& d, const std::string& schema, const std::vector<std::string>& opts) {
  return procutil::compileIn(d.path, schema, opts);
}
// An enum of the database's name: {db}.java is written after it and replaces
// it, with a warning, instead of both writing into one file.
TEST(Managed, SecondJavaFileOfOneName) {
  Dir d;
  ProcResult r = compile(d, "declare database shop;\nenum shop { a, b };\nclass c { signed<4> x; list; };\n", {"-java"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_HAS(r.out + r.err, "file shop.java generated twice");
  EXPECT_EQ(procutil::readFile(d.path + "/shop.java"),
            "import com.halvorn.vantrel.*;\n\npublic class shop { \n\tpublic static Class[] classes = { \n"
            "\tc.class\n\t};\n}\n\n");
  // A struct after a class of its name: the struct's file is the one kept.
  Dir d2;
  r = compile(d2, "declare database d;\nclass x { signed<4> a; unique tree<a> t; };\nstruct x { signed<4> y; };\n"
              "class o { x m; signed<4> k; unique tree<k> t; };\n", {"-java"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_HAS(r.out + r.err, "file x.java generated twice");
  EXPECT_EQ(procutil::readFile(d2.path + "/x.java"), "import com.halvorn.vantrel.*;\n\npublic class x {\n\tpublic int y;\n}\n");
}

// Compiles schema into d; a failure of the compiler fails the test.
bool generated(const Dir& d, const std::string& schema, const std::vector<std::string>& opts) {
  ProcResult r = compile(d, schema, opts);
  if (r.status != 0) ADD_FAILURE() << r.err;
  return r.status == 0;
}

// The status of javac over the stubs and every .java file generated from schema.
int javac(const std::string& tool, const std::string& schema, const std::vector<std::string>& opts,
          std::string* out = nullptr) {
  Dir d;
  if (!generated(d, schema, opts)) return -1;
  std::vector<std::string> argv = {tool, "-d", d.path + "/classes"};
  for (const auto& e : std::filesystem::directory_iterator(std::string(ZKT_SOURCE_DIR) + "/tests/managed"))
    if (e.path().extension() == ".java") argv.push_back(e.path().string());
  for (const auto& e : std::filesystem::directory_iterator(d.path))
    if (e.path().extension() == ".java") argv.push_back(e.path().string());
  ProcResult c = procutil::runProgram(argv);
  if (out != nullptr) *out = c.out + c.err;
  return c.status;
}

// The status of mcs over the stubs and the {db}.cs of schema, database db.
int mcs(const std::string& tool, const std::string& schema, const std::string& db, const std::vector<std::string>& opts,
        std::string* out = nullptr) {
  Dir d;
  if (!generated(d, schema, opts)) return -1;
  ProcResult c = procutil::runProgram({tool, "-target:library", "-out:" + d.path + "/x.dll",
                                       std::string(ZKT_SOURCE_DIR) + "/tests/managed/Vantrel.cs",
                                       d.path + "/" + db + ".cs"});
  if (out != nullptr) *out = c.out + c.err;
  return c.status;
}

// Both class files of both schemas compile against the binding stubs, with and without a package or namespace.
TEST(Managed, CompilersAcceptTheFiles) {
  const std::string javacTool = procutil::findTool("javac"), mcsTool = procutil::findTool("mcs");
  if (javacTool.empty() || mcsTool.empty()) GTEST_SKIP() << "javac or mcs is not installed";
  const std::pair<std::string, const char*> schemas[] = {{kFileSchema, "shop"}, {kWideSchema, "wide"}};
  for (const auto& sc : schemas) {
    std::string out;
    EXPECT_EQ(javac(javacTool, sc.first, {"-java"}, &out), 0) << out;
    EXPECT_EQ(javac(javacTool, sc.first, {"-java", "-java-package", "p.q"}, &out), 0) << out;
    EXPECT_EQ(mcs(mcsTool, sc.first, sc.second, {"-cs"}, &out), 0) << out;
    EXPECT_EQ(mcs(mcsTool, sc.first, sc.second, {"-cs", "-cs-namespace", "N.M"}, &out), 0) << out;
  }
}

// The listed breaks of the required text do fail to compile.
TEST(Managed, KnownBreaks) {
  const std::string javacTool = procutil::findTool("javac"), mcsTool = procutil::findTool("mcs");
  const char* const javaBreaks[] = {
      "declare database b;\nclass c { signed<4> a; unique tree<a> t; event<a update> au; };\n",
      "declare database b;\nclass c { signed<4> a; nullable datetime d; unique tree<a> t; };\n",
      "declare database b;\nclass c { signed<4> a; signed<4> z; tree<a, z desc> t; };\n",
  };
  if (javacTool.empty()) {
    std::cout << "javac is not installed: Java breaks not checked\n";
  } else {
    for (const char* schema : javaBreaks) EXPECT_NE(javac(javacTool, schema, {"-java"}), 0) << schema;
  }
  const char* const csBreaks[] = {
      "declare database b;\nstruct E { signed<4> x; };\nclass c { signed<4> a; sequence<E> q; unique tree<a> t; };\n",
      "declare database b;\nclass x { signed<4> a; unique tree<a> t; };\nstruct x { signed<4> y; };\n"
      "class o { x m; signed<4> k; unique tree<k> t; };\n",
  };
  if (mcsTool.empty()) {
    std::cout << "mcs is not installed: C# breaks not checked\n";
  } else {
    for (const char* schema : csBreaks) EXPECT_NE(mcs(mcsTool, schema, "b", {"-cs"}), 0) << schema;
  }
}

}  // namespace
