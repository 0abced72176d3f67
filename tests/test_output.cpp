// Schema-level output: enums, handles, class codes and direct structs of the header, section order, object ids, C# and Java heads.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "genout_util.h"
#include "proc_util.h"

namespace {

using gentest::Generated;
using gentest::Options;

const char kSchema[] =
    "declare database d;\n"
    "declare auto_oid[100];\n"
    "enum color { red, green = 5 };\n"
    "direct struct V { double x; signed<4> y; char<3> c; nchar<2> w; boolean b[9]; };\n"
    "packed direct struct P { char<3> code; unsigned<1> level; signed<2> levels[4]; };\n"
    "struct In { signed<4> x; V v; };\n"
    "struct Unused { signed<4> q; };\n"
    "class c { unsigned<4> id; color col; In i; P p; tree<id> by_id; };\n"
    "distributed class dist { signed<4> k; tree<k> by_k; };\n"
    "class lonely { string s; };\n";

const char kFixedHeading[] = "\n/*---------------------------------------------------------------------*/\n/* Structures for fixed part";

// From the inline macro to the fixed-part heading: what the schema as a whole
// puts into the header.
std::string headRegion(const std::string& h) {
  const size_t b = h.find("#ifndef ZKT_TARGET_INLINE");
  const size_t e = h.find(kFixedHeading);
  if (b == std::string::npos || e == std::string::npos) return "(region not found)";
  return h.substr(b, e - b);
}

// Enums, the handles and codes of the visible classes (the hidden system
// class has none), handles of owned structs only, direct structs in both
// forms. Mergeable names no code in a define.
TEST(Output, HeaderHeadIsTheExpectedText) {
  const std::string want = procutil::readFile(std::string(ZKT_SOURCE_DIR) + "/tests/expected/output/head.h");
  for (bool mergeable : {false, true}) {
    Options o;
    o.mergeable = mergeable;
    Generated g(kSchema, o);
    ASSERT_TRUE(g.run()) << g.msg;
    EXPECT_EQ(headRegion(Generated::text(g.gen.m_h)), want) << "mergeable " << mergeable;
    EXPECT_EQ(g.warnings, std::vector<std::string>{"class lonely has no oid, autoid, list, or index defined"});
  }
}

TEST(Output, SectionsInOrder) {
  Generated g(kSchema);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string h = Generated::text(g.gen.m_h);
  const char* const sections[] = {"/* Enumerations ",           "/* Handles and Class Codes ",
                                  "/* Structures for fixed part ", "/* class c methods ",
                                  "/* class dist methods ",     "/* class lonely methods ",
                                  "/* struct V methods ",       "/* struct P methods ",
                                  "/* struct In methods ",      "} // namespace d"};
  size_t at = 0;
  for (const char* s : sections) {
    const size_t p = h.find(s, at);
    ASSERT_NE(p, std::string::npos) << s;
    at = p;
  }
  // an unowned struct leaves no trace but its fixed view, declared for every struct
  const std::string fixedView = "typedef struct Unused_fixed_ {\n  int4 q;\n} Unused_fixed;\n";
  std::string rest = h;
  ASSERT_NE(rest.find(fixedView), std::string::npos);
  rest.erase(rest.find(fixedView), fixedView.size());
  EXPECT_EQ(rest.find("Unused"), std::string::npos);
  EXPECT_EQ(h.find("@sys"), std::string::npos);    // nor does a hidden class
}

TEST(Output, PrefixRenamesEverything) {
  Options o;
  o.prefix = true;
  Generated g(kSchema, o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string h = Generated::text(g.gen.m_h);
  EXPECT_NE(h.find("typedef enum d_color_\n{\n  d_red = 0,\n  d_green = 5\n} d_color;\n"), std::string::npos);
  EXPECT_NE(h.find("}d_V_d;\n\n#define  d_V_d_aligned_to_1  d_V_d\n"), std::string::npos);
  EXPECT_EQ(h.find("d_dist"), std::string::npos);  // "dist" begins with "d": a plain prefix test
  EXPECT_NE(h.find("/* class d_lonely methods "), std::string::npos);
}

TEST(Output, DebugHasNoInlineMacro) {
  Options o;
  o.debug = true;
  Generated g(kSchema, o);
  ASSERT_TRUE(g.run()) << g.msg;
  EXPECT_EQ(Generated::text(g.gen.m_h).find("ZKT_TARGET_INLINE"), std::string::npos);
}

TEST(Output, CSharpHeadAndShells) {
  Options o;
  o.cs = true;
  Generated g(kSchema, o);
  g.gen.m_csNamespace = "N";
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string cs = Generated::text(g.gen.m_cs);
  const std::string head =
      "namespace N {\n"
      "using System;\n"
      "using Vantrel;\n"
      "\n"
      "public enum color {\n"
      "\tred = 0,\n"
      "\tgreen = 5\n"
      "};\n"
      "\n"
      "public class d { \n"
      "\tpublic static Type[] types = { \n"
      "\t\ttypeof(c),\n"
      "\t\ttypeof(dist),\n"
      "\t\ttypeof(lonely)\n"
      "\t};\n"
      "}\n"
      "\n";
  EXPECT_EQ(cs.substr(0, head.size()), head);
  // The last struct with its members, then the namespace.
  EXPECT_NE(cs.find("public struct In {\n\tpublic int x;\n\tpublic V v;\n}\n}\n"), std::string::npos);
}

TEST(Output, ObjectIds) {
  struct Case {
    const char* schema;  // behind the database statement
    const char* type;    // the oid type's definition
  };
  // clang-format off
  const Case cases[] = {
    { "declare oid signed<4>[100];\nclass p { oid; };", "typedef int4   d_oid;\n\n" },
    { "declare oid s[10];\nstruct s { signed<4> a; char<8> b; nchar<2> n; };\nclass p { oid; };",
      "typedef struct d_oid__\n{\n"
      "  int4            a;\n"
      "  char            b[8];\n"
      "  nchar_t         n[4 / sizeof(nchar_t) ];\n"
      "} d_oid;\n\n" },
  };
  // clang-format on
  for (const Case& c : cases) {
    Generated g(std::string("declare database d;\n") + c.schema);
    ASSERT_TRUE(g.run()) << g.msg;
    const std::string h = Generated::text(g.gen.m_h);
    const std::string want = std::string("/* Object Id definitions") + std::string(46, ' ') + " */\n\n" + c.type +
                             "#define d_oid_size  ( (uint2) sizeof(d_oid) )\n\n"
                             "ZKT_RET  d_delete_object  ( zkt_trans_h t, const d_oid * oid );\n\n"
                             "ZKT_RET  d_get_class_code ( zkt_trans_h t, const d_oid * oid, /*OUT*/ uint2 * "
                             "class_code );\n\n";
    EXPECT_NE(h.find(want), std::string::npos) << c.schema << "\n" << h;
    EXPECT_NE(Generated::text(g.gen.m_c)
                  .find("ZKT_RET  d_delete_object  ( zkt_trans_h t, const d_oid * oid )\n"
                        "{ return zkt_w_obj_del_byoid( t, oid ); \n}\n\n"
                        "ZKT_RET  d_get_class_code ( zkt_trans_h t, const d_oid * oid, /*OUT*/ uint2 * class_code )\n"
                        "{ return zkt_w_classcode_byoid( t, oid, class_code ); \n}\n\n"),
              std::string::npos);
  }
  Generated none("declare database d;\nclass p { signed<4> a; };");
  ASSERT_TRUE(none.run()) << none.msg;
  EXPECT_EQ(Generated::text(none.gen.m_h).find("d_oid"), std::string::npos);
}

// Java files through the binary: the schema's class list, one file per enum
// without values, one per owned struct.
TEST(Output, JavaFiles) {
  const std::string dir = procutil::makeTempDir();
  procutil::writeFile(dir + "/x.sch", kSchema);
  ProcResult r = procutil::runProgram(
      {ZKT_COMPILER_PATH, "-java", "-java-package", "p", "-o", dir, dir + "/x.sch"});
  ASSERT_EQ(r.status, 0) << r.err;
  const std::string head = "package p;\nimport com.halvorn.vantrel.*;\n\n";
  EXPECT_EQ(procutil::readFile(dir + "/d.java"), head +
                                           "public class d { \n"
                                           "\tpublic static Class[] classes = { \n"
                                           "\tc.class,\n"
                                           "\tdist.class,\n"
                                           "\tlonely.class\n"
                                           "\t};\n"
                                           "}\n\n");
  EXPECT_EQ(procutil::readFile(dir + "/color.java"), head + "public enum color {\n\tred,\n\tgreen\n};\n\n");
  // A direct struct's sizes are symbolic, so are its Dimension arguments.
  EXPECT_EQ(procutil::readFile(dir + "/V.java"), head +
                                           "public class V {\n"
                                           "\tpublic double x;\n"
                                           "\tpublic int y;\n"
                                           "\t@Dimension(fieldsz(V_d_aligned_to_1, c))\n"
                                           "\tpublic String c;\n"
                                           "\t@Encoding(\"UTF-16\")\n"
                                           "\t@Dimension(fieldsz(V_d_aligned_to_1, w))\n"
                                           "\tpublic String w;\n"
                                           "\t@Dimension(9)\n"
                                           "\tpublic boolean[] b;\n"
                                           "}\n");
  EXPECT_TRUE(procutil::fileExists(dir + "/In.java"));
  EXPECT_FALSE(procutil::fileExists(dir + "/Unused.java"));
  std::filesystem::remove_all(dir);
}

}  // namespace
