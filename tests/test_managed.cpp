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
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>

#include "genout_util.h"
#include "proc_util.h"

namespace {

// Java text on a string stream too: with Java not wanted no file is opened,
// so every Java line lands in this one stream.
class JavaStrGen : public gentest::StrGenOutput {
public:
  using StrGenOutput::StrGenOutput;
  void createStreams(bool udf, bool coll) override {
    StrGenOutput::createStreams(udf, coll);
    delete m_java;
    m_java = IOutStream::createStrStream("");
  }
};

struct Managed : antest::Finished {
  JavaStrGen gen;
  std::string cs, java;
  explicit Managed(const std::string& text, const gentest::Options& o = gentest::Options())
      : Finished(text, o), gen(schema(), &rep, o) {
    if (!ok) return;
    try {
      gen.init();
      gen.run();
      cs = gentest::Generated::text(gen.m_cs);
      java = gentest::Generated::text(gen.m_java);
    } catch (const CompilerError& e) {
      ok = false;
      msg = e.m_msg.c_str();
    }
  }
};

#define EXPECT_HAS(text, part) EXPECT_NE((text).find(part), std::string::npos) << "missing:\n" << (part) << "\nin:\n" << (text)

TEST(Managed, StorageAttribute) {
  struct Case {
    const char* decl;  // the class declaration
    const char* cs;
    const char* java;
  };
  // clang-format off
  const Case cases[] = {
    { "class c { signed<4> a; unique tree<a> t; };", "[Persistent]\n", "@Persistent\n" },
    { "class c { signed<4> a; list; };", "[Persistent(List=true)]\n", "@Persistent(list=true)\n" },
    { "persistent class c { signed<4> a; unique tree<a> t; };", "[Persistent(Disk=true)]\n", "@Persistent(disk=true)\n" },
    { "persistent compact class c { signed<4> a; list; autoid[10]; };",
      "[Persistent(Disk=true,List=true,AutoID=true,Compact=true)]\n",
      "@Persistent(disk=true,list=true,autoid=true,compact=true)\n" },
    { "local class c { signed<4> a; unique tree<a> t; };", "[Persistent(Local=true)]\n", "@Persistent(local=true)\n" },
    { "distributed class c { signed<4> a; unique tree<a> t; };", "[Persistent(Distributed=true)]\n", "@Persistent(distributed=true)\n" },
  };
  // clang-format on
  for (const Case& c : cases) {
    Managed m(std::string("declare database d;\ndeclare auto_oid[10];\n") + c.decl);
    ASSERT_TRUE(m.ok) << c.decl << ": " << m.msg;
    EXPECT_HAS(m.cs, std::string("}\n\n") + c.cs);
    EXPECT_HAS(m.java, std::string("}\n\n") + c.java);
  }
}

TEST(Managed, IotAnnotation) {
  struct Case {
    const char* schema;
    const char* java;
  };
  // clang-format off
  const Case cases[] = {
    { "iot server;\ntransient uptable class t { signed<4> x; };",
      "@IoT(type=IoT.Type.Uptable, srcAgentId=\"agent_id\")\n" },
    { "iot server;\ntransient downtable class t { signed<4> x; };",
      "@IoT(type=IoT.Type.Downtable, dstAgentId=\"agent_id\")\n" },
    { "iot router<3> 0x20;\ntransient uptable class t { signed<4> x; };",
      "@IoT(type=IoT.Type.Uptable, srcAgentId=\"src_agent_id\", dstAgentId=\"dst_agent_id\")\n" },
    { "iot device;\ntransient downtable class t { signed<4> x; };", "@IoT(type=IoT.Type.Downtable)\n" },
  };
  // clang-format on
  for (const Case& c : cases) {
    Managed m(std::string("declare database d;\n") + c.schema);
    ASSERT_TRUE(m.ok) << c.schema << ": " << m.msg;
    EXPECT_HAS(m.java, c.java);
    EXPECT_EQ(m.cs.find("IoT"), std::string::npos);  // Java only
  }
}

TEST(Managed, IndexLines) {
  Managed m(
      "declare database d;\n"
      "struct S { signed<4> x; signed<4> y; };\n"
      "class c { signed<4> a; signed<4> b; S s; string st; list; autoid[10];\n"
      "  unique tree<a> t; thick hash<b> h[50]; tree<a, b desc> td; tree<s.x> ts; trigram<st> tg; };\n");
  ASSERT_TRUE(m.ok) << m.msg;
  EXPECT_HAS(m.cs,
             "[Index(\"t\", Type=Database.IndexType.BTree, Unique=true, Keys=new string[]{\"a\"})]\n"
             "[Index(\"h\", Type=Database.IndexType.Hashtable, InitSize=50, Thick=true, Keys=new string[]{\"b\"})]\n"
             "[Index(\"td\", Type=Database.IndexType.BTree, Keys=new string[]{\"a\", \"b\"}, "
             "Order=new string[]{\"asc\", \"desc\"})]\n"
             "[Index(\"ts\", Type=Database.IndexType.BTree, Keys=new string[]{\"s\", \"x\"})]\n"
             "[Index(\"tg\", Type=Database.IndexType.Trigram, Thick=true, Keys=new string[]{\"st\"})]\n"
             "public class c {\n");
  EXPECT_HAS(m.java,
             "@Indexes({@Index(name=\"t\", type=Database.IndexType.BTree, unique=true, keys={@Key(\"a\")})\n"
             ", @Index(name=\"h\", type=Database.IndexType.Hashtable, initSize=50, thick=true, keys={@Key(\"b\")})\n"
             ", @Index(name=\"td\", type=Database.IndexType.BTree, keys={@Key(\"a\"), "
             "@Key(\"b\", descending=true)})\n"
             ", @Index(name=\"ts\", type=Database.IndexType.BTree, keys={@Key(\"s\"), @Key(\"x\")})\n"
             ", @Index(name=\"tg\", type=Database.IndexType.Trigram, thick=true, keys={@Key(\"st\")})\n"
             "})\n"
             "public class c {\n");

  // Only a list index: no index lines at all.
  Managed list("declare database d;\nclass c { signed<4> a; list; };");
  ASSERT_TRUE(list.ok) << list.msg;
  EXPECT_EQ(list.cs.find("[Index("), std::string::npos);
  EXPECT_EQ(list.java.find("@Indexes"), std::string::npos);
}

TEST(Managed, EventLines) {
  Managed m(
      "declare database d;\n"
      "class c { signed<4> a; signed<4> b; unique tree<a> t;\n"
      "  event<new> n; event<delete> d; event<delete_all> da; event<checkpoint> cp;\n"
      "  event<a update> au; };\n");
  ASSERT_TRUE(m.ok) << m.msg;
  EXPECT_HAS(m.cs,
             "[Event(\"n\", EventType.OnNew)]\n"
             "[Event(\"d\", EventType.OnDelete)]\n"
             "[Event(\"da\", EventType.OnDeleteAll)]\n"
             "[Event(\"cp\", EventType.OnCheckpoint)]\n"
             "public class c {\n"
             "\t[Event(\"au\", EventType.OnFieldUpdate)]\n"
             "\tpublic int a;\n"
             "\tpublic int b;\n"
             "}\n\n");
  // The field event's Java text ends in "]": intended.
  EXPECT_HAS(m.java,
             "@Event(name=\"n\", type=Database.EventType.OnNew)\n"
             "@Event(name=\"d\", type=Database.EventType.OnDelete)\n"
             "@Event(name=\"da\", type=Database.EventType.OnDeleteAll)\n"
             "@Event(name=\"cp\", type=Database.EventType.OnCheckpoint)\n"
             "public class c {\n"
             "\t@Event(name=\"au\", type=Database.EventType.OnFieldUpdate)]\n"
             "\tpublic int a;\n"
             "\tpublic int b;\n"
             "}\n\n");
}

// A class update event gives the class line only, no field attribute.
TEST(Managed, ClassUpdateEvent) {
  Managed m("declare database d;\nclass c { signed<4> a; unique tree<a> t; event<update> cu; };\n");
  ASSERT_TRUE(m.ok) << m.msg;
  EXPECT_HAS(m.cs, "[Event(\"cu\", EventType.OnUpdate)]\npublic class c {\n\tpublic int a;\n");
  EXPECT_HAS(m.java, "@Event(name=\"cu\", type=Database.EventType.OnUpdate)\npublic class c {\n\tpublic int a;\n");
}

TEST(Managed, FieldMembers) {
  struct Case {
    const char* decl;  // declares the field f
    const char* cs;
    const char* java;
  };
  // clang-format off
  const Case cases[] = {
    // plain fields
    { "signed<4> f;",          "\tpublic int f;\n",             "\tpublic int f;\n" },
    { "nullable signed<4> f;", "\tpublic int? f;\n",            "\tpublic Integer f;\n" },
    { "boolean f;",            "\tpublic bool f;\n",            "\tpublic boolean f;\n" },
    { "nullable boolean f;",   "\tpublic bool? f;\n",           "\tpublic Boolean f;\n" },
    { "unsigned<8> f;",        "\tpublic ulong f;\n",           "\tpublic long f;\n" },
    { "double f;",             "\tpublic double f;\n",          "\tpublic double f;\n" },
    { "nullable datetime f;",  "\tpublic zkt_datetime? f;\n",   "\tpublic DateTime? f;\n" },
    { "ref<c> f;",             "\tpublic ulong f;\n",           "\tpublic long f;\n" },
    { "char<8> f;",            "\t[Dimension(8)]\n\tpublic string f;\n", "\t@Dimension(8)\n\tpublic String f;\n" },
    { "string f;",             "\tpublic string f;\n",          "\tpublic String f;\n" },
    { "nstring f;",            "\t[Encoding(\"UTF-16\")]\n\tpublic string f;\n", "\t@Encoding(\"UTF-16\")\n\tpublic String f;\n" },
    { "blob f;",               "\t[Blob]\n\tpublic byte[] f;\n", "\t@Blob\n\tpublic byte[] f;\n" },
    { "S f;",                  "\tpublic S f;\n",               "\tpublic S f;\n" },
    { "optional S f;",         "\t[Optional]\n\tpublic S f;\n", "\t@OptionalStruct\n\tpublic S f;\n" },
    // arrays: the length goes into Dimension
    { "signed<2> f[3];",       "\t[Dimension(3)]\n\tpublic short[] f;\n",  "\t@Dimension(3)\n\tpublic short[] f;\n" },
    { "boolean f[9];",         "\t[Dimension(9)]\n\tpublic bool[] f;\n",   "\t@Dimension(9)\n\tpublic boolean[] f;\n" },
    { "char<5> f[3];",         "\t[Dimension(3)]\n\tpublic string[] f;\n", "\t@Dimension(3)\n\tpublic String[] f;\n" },
    { "string f[2];",          "\t[Dimension(2)]\n\tpublic string[] f;\n", "\t@Dimension(2)\n\tpublic String[] f;\n" },
    { "nchar<2> f[2];",        "\t[Encoding(\"UTF-16\")]\n\t[Dimension(2)]\n\tpublic string[] f;\n",
                               "\t@Encoding(\"UTF-16\")\n\t@Dimension(2)\n\tpublic String[] f;\n" },
    { "ref<c> f[2];",          "\t[Dimension(2)]\n\tpublic ulong[] f;\n",  "\t@Dimension(2)\n\tpublic long[] f;\n" },
    { "S f[2];",               "\t[Dimension(2)]\n\tpublic S[] f;\n",      "\t@Dimension(2)\n\tpublic S[] f;\n" },
    // vectors: no Dimension, never nullable in Java
    { "vector<signed<4>> f;",          "\tpublic int[] f;\n",     "\tpublic int[] f;\n" },
    { "nullable vector<signed<2>> f;", "\tpublic short[] f;\n",   "\tpublic short[] f;\n" },
    { "vector<string> f;",             "\tpublic string[] f;\n",  "\tpublic String[] f;\n" },
    { "vector<nchar<3>> f;",           "\t[Encoding(\"UTF-16\")]\n\tpublic string[] f;\n",
                                       "\t@Encoding(\"UTF-16\")\n\tpublic String[] f;\n" },
    { "vector<S> f;",                  "\tpublic S[] f;\n",       "\tpublic S[] f;\n" },
    // sequences by order and element
    { "sequence<unsigned<2>> f;",
      "\tpublic UnorderedSequence<ushort> f;\n",
      "\t@Sequence(type=Sequence.Type.UInt2, order=Sequence.Order.None)\n\tpublic UnorderedSequence f;\n" },
    { "sequence<double asc> f;",
      "\t[Sequence(Order=SequenceOrder.Ascending)]\n\tpublic OrderedSequence<double> f;\n",
      "\t@Sequence(type=Sequence.Type.Double, order=Sequence.Order.Ascending)\n\tpublic OrderedSequence f;\n" },
    { "sequence<datetime desc> f;",
      "\t[Sequence(Order=SequenceOrder.Descending)]\n\tpublic OrderedSequence<zkt_datetime> f;\n",
      "\t@Sequence(type=Sequence.Type.DateTime, order=Sequence.Order.Descending)\n\tpublic OrderedSequence f;\n" },
    // an unordered char<n> sequence is ordered and descending in C#: intended
    { "sequence<char<8>> f;",
      "\t[Sequence(Order=SequenceOrder.Descending, ElemSize=8)]\n\tpublic OrderedSequence<char> f;\n",
      "\t@Sequence(type=Sequence.Type.Char, order=Sequence.Order.None, elemSize=8)\n\tpublic UnorderedSequence f;\n" },
    { "sequence<char<8> ascending> f;",
      "\t[Sequence(Order=SequenceOrder.Ascending, ElemSize=8)]\n\tpublic OrderedSequence<char> f;\n",
      "\t@Sequence(type=Sequence.Type.Char, order=Sequence.Order.Ascending, elemSize=8)\n\tpublic OrderedSequence f;\n" },
  };
  // clang-format on
  for (const Case& c : cases) {
    Managed m(std::string("declare database d;\ndeclare oid K[10];\nstruct K { unsigned<4> k; };\n"
                          "struct S { signed<4> x; };\nclass c { oid; ") +
              c.decl + " signed<4> z; unique tree<z> t; };");
    ASSERT_TRUE(m.ok) << c.decl << ": " << m.msg;
    EXPECT_HAS(m.cs, std::string("public class c {\n") + c.cs) << c.decl;
    EXPECT_HAS(m.java, std::string("public class c {\n") + c.java) << c.decl;
  }
}

TEST(Managed, NoMembers) {
  Managed m("declare database d;\nclass c { autoid[10]; signed<4> z; unique tree<z> t; };");
  ASSERT_TRUE(m.ok) << m.msg;
  EXPECT_HAS(m.cs, "public class c {\n\tpublic int z;\n}\n\n");
  EXPECT_HAS(m.java, "public class c {\n\tpublic int z;\n}\n\n");
}

// ---------------------------------------------------------------- files through the binary

const char kFileSchema[] =
    "declare database shop;\n"
    "declare oid Id[10];\n"
    "struct Id { unsigned<4> n; };\n"
    "enum colour { red, blue };\n"
    "struct Price { signed<4> cents; char<3> cur; };\n"
    "persistent class Item { oid; autoid[100]; unsigned<4> code; string name; nullable double weight; Price price;\n"
    "  optional Price old; vector<string> tags; signed<2> dims[3]; blob photo; ref<Item> parent;\n"
    "  unique tree<code> by_code; thick tree<name> by_name;\n"
    "  event<new> added; event<delete> gone; };\n";

// Every family of member, IoT, sequences by order and element.
const char kWideSchema[] =
    "declare database wide;\n"
    "iot server;\n"
    "enum level { low, high };\n"
    "struct P { signed<4> x; char<4> tag; };\n"
    "transient uptable class Up { unsigned<8> n; level lv; sequence<double asc> sd; sequence<unsigned<2>> su;\n"
    "  sequence<char<8>> sc; sequence<binary<4>> sb; vector<nchar<3>> vn; nchar<5> nc; nstring ns; binary<6> bn;\n"
    "  varbinary vb; P ps[2]; vector<P> vp; datetime dt; float fl; nullable signed<2> s2; boolean flag; string st;\n"
    "  unique tree<n> t; trigram<st> tg; event<new> e1; event<checkpoint> cp; };\n"
    "transient downtable class Down { signed<4> k; hash<k> h[10]; event<delete_all> da; };\n";

struct Dir {
  std::string path = procutil::makeTempDir();
  ~Dir() { std::filesystem::remove_all(path); }
};

ProcResult compile(const Dir& d, const std::string& schema, std::vector<std::string> opts) {
  procutil::writeFile(d.path + "/x.sch", schema);
  std::vector<std::string> argv = {ZKT_COMPILER_PATH};
  argv.insert(argv.end(), opts.begin(), opts.end());
  argv.insert(argv.end(), {"-o", d.path, d.path + "/x.sch"});
  return procutil::runProgram(argv);
}

// Checked by hand against the fragments; one line feed after the import.
TEST(Managed, ClassFileWhole) {
  Dir d;
  ProcResult r = compile(d, kFileSchema, {"-java", "-java-package", "p.q"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(procutil::readFile(d.path + "/Item.java"), procutil::readFile(std::string(ZKT_SOURCE_DIR) + "/tests/expected/managed/Item.java"));
}

TEST(Managed, NoFileForSuppressedOrHidden) {
  Dir d;
  ProcResult r = compile(d, kFileSchema, {"-java"});
  ASSERT_EQ(r.status, 0) << r.err;
  for (const char* f : {"shop.java", "colour.java", "Price.java", "Item.java"})
    EXPECT_TRUE(procutil::fileExists(d.path + "/" + f)) << f;
  Dir none;
  r = compile(none, kFileSchema, {});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_FALSE(procutil::fileExists(none.path + "/Item.java"));
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

// The path of a tool on PATH, empty when there is none.
std::string toolPath(const char* tool) {
  ProcResult r = procutil::runProgram({"/bin/sh", "-c", std::string("command -v ") + tool});
  std::string path = r.status == 0 ? r.out : "";
  while (!path.empty() && (path.back() == '\n' || path.back() == '\r')) path.pop_back();
  return path;
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

TEST(Managed, JavacCompiles) {
  const std::string tool = toolPath("javac");
  if (tool.empty()) GTEST_SKIP() << "javac is not installed";
  for (const char* schema : {kFileSchema, kWideSchema}) {
    std::string out;
    EXPECT_EQ(javac(tool, schema, {"-java"}, &out), 0) << out;
    EXPECT_EQ(javac(tool, schema, {"-java", "-java-package", "p.q"}, &out), 0) << out;
  }
}

TEST(Managed, McsCompiles) {
  const std::string tool = toolPath("mcs");
  if (tool.empty()) GTEST_SKIP() << "mcs is not installed";
  const std::pair<const char*, const char*> schemas[] = {{kFileSchema, "shop"}, {kWideSchema, "wide"}};
  for (const auto& sc : schemas) {
    std::string out;
    EXPECT_EQ(mcs(tool, sc.first, sc.second, {"-cs"}, &out), 0) << out;
    EXPECT_EQ(mcs(tool, sc.first, sc.second, {"-cs", "-cs-namespace", "N.M"}, &out), 0) << out;
  }
}

// The listed breaks of the required text do fail to compile.
TEST(Managed, KnownBreaks) {
  const std::string javacTool = toolPath("javac"), mcsTool = toolPath("mcs");
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
