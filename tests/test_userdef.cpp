// Calculator, user-defined index and collation tables: texts per kind and form, key macros, whole user-code files.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "genout_util.h"
#include "proc_util.h"

namespace {

using gentest::Generated;
using gentest::Options;

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

std::string expected(const std::string& name) {
  return procutil::readFile(std::string(ZKT_SOURCE_DIR) + "/tests/expected/udf/" + name);
}

Options prefixed() {
  Options o;
  o.prefix = true;
  return o;
}

const char kRule[] = "\n/*---------------------------------------------------------------------*/\n";

// The calculator's classes, with a comma behind the last; -prefix renames
// them in the model too.
TEST(Calculator, Entries) {
  const char schema[] =
      "declare database d;\n"
      "class Customer { string name; list; };\n"
      "class Invoice { unsigned<8> number; list; };\n"
      "calculator { Customer<1000>, Invoice<0x100> };\n";
  struct Case {
    Options opts;
    const char* first;
    const char* second;
  };
  const Case cases[] = {{Options(), "Customer", "Invoice"}, {prefixed(), "d_Customer", "d_Invoice"}};
  for (const Case& c : cases) {
    Generated g(schema, c.opts);
    ASSERT_TRUE(g.run()) << g.msg;
    const std::string want = std::string(kRule) +
                             "/* calculator                                                          */\n"
                             "\n"
                             "zkt_calculator_h d_get_calculator(void)\n"
                             "{\n"
                             "  static zkt_calculator_t calc;\n"
                             "  static zkt_calc_class_t calc_classes[] = {\n"
                             "    { \"" + c.first + "\", 1000, " + c.first + "_code },\n"
                             "    { \"" + c.second + "\", 256, " + c.second + "_code },\n"
                             "  };\n"
                             "\n"
                             "  calc.classes = calc_classes;\n"
                             "  calc.nclasses = 2;\n"
                             "  return &calc;\n"
                             "}\n"
                             "\n";
    EXPECT_TRUE(has(Generated::text(g.gen.m_c), want)) << Generated::text(g.gen.m_c);
    EXPECT_EQ(std::string(g.schema().s_calc->calc_els[0].m_class_name.c_str()), c.first);
  }
}

TEST(Calculator, NoneReturnsNull) {
  Generated g("declare database d;\nclass p { signed<4> a; list; };\ncalculator { }\n");
  ASSERT_TRUE(g.run()) << g.msg;
  EXPECT_TRUE(has(Generated::text(g.gen.m_c),
                  "zkt_calculator_h d_get_calculator(void)\n{\n  return (zkt_calculator_h)NULLPTR;\n}\n\n"));
}

const char kUdfHead[] =
    "zkt_userdef_funcs_h d_get_udfs(void) {\n"
    "  static zkt_userdef_funcs_t  fptrs[1];\n"
    "  static int fptrs_ready = 0;\n"
    "\n"
    "  if (! fptrs_ready)\n"
    "  {\n"
    "    fptrs[0].p.flags       = 0;\n";
const char kUdfEnd[] =
    "    fptrs_ready = 1;\n"
    "  };\n"
    "  return fptrs;\n"
    "}\n\n";

// The table, prototypes and macro of one user-defined index i of class c,
// per kind and form of its key.
TEST(Userdef, TablePerKindAndForm) {
  struct Case {
    const char* cls;
    const char* c;  // table entries
    const char* h;  // behind the class's heading
  };
  // clang-format off
  const Case cases[] = {
    { "class c { signed<4> a; userdef tree<a> i; };",
      "    fptrs[0].fcomp.nvb     = (zkt_compare_userdef_f)           c_i_compare_obj;\n"
      "    fptrs[0].fcomp_ext.nvb = (zkt_compare_extkey_userdef_f)    c_i_compare_ext;\n"
      "    fptrs[0].fhash.nvb     = (zkt_hash_userdef_f)              0;\n"
      "    fptrs[0].fhash_ext.u   = (zkt_hash_extkey_userdef_f)       0;\n",
      "\n"
      "int2  c_i_compare_obj ( c * handle1, c * handle2 );\n"
      "int2  c_i_compare_ext ( c * handle, void ** key );\n"
      "#define c_i_extkey_a(ek)    ((int4)((((zkt_external_field_t*)(ek))[0]).v.i4))\n"
      "\n" },
    { "class c { signed<4> a; userdef hash<a> i[10]; };",
      "    fptrs[0].fcomp.nvb     = (zkt_compare_userdef_f)           c_i_compare_obj;\n"
      "    fptrs[0].fcomp_ext.nvb = (zkt_compare_extkey_userdef_f)    c_i_compare_ext;\n"
      "    fptrs[0].fhash.nvb     = (zkt_hash_userdef_f)              c_i_hash_obj;\n"
      "    fptrs[0].fhash_ext.u   = (zkt_hash_extkey_userdef_f)       c_i_hash_ext;\n",
      "\n"
      "int2  c_i_compare_obj ( c * handle1, c * handle2 );\n"
      "int2  c_i_compare_ext ( c * handle, void ** key );\n"
      "zkt_hash_counter_t c_i_hash_obj    ( c * handle );\n"
      "zkt_hash_counter_t c_i_hash_ext    ( void ** key);\n"
      "#define c_i_extkey_a(ek)    ((int4)((((zkt_external_field_t*)(ek))[0]).v.i4))\n"
      "\n" },
    // a tree writes the non-vector hash entry even when vector-based
    { "class c { vector<signed<2>> v; userdef tree<v> i; };",
      "    fptrs[0].fcomp.vb      = (zkt_compare_userdef_vb_f)        c_i_compare_obj;\n"
      "    fptrs[0].fcomp_ext.vb  = (zkt_compare_extkey_userdef_vb_f) c_i_compare_ext;\n"
      "    fptrs[0].fhash.nvb     = (zkt_hash_userdef_f)              0;\n"
      "    fptrs[0].fhash_ext.u   = (zkt_hash_extkey_userdef_f)       0;\n",
      "\n"
      "int2  c_i_compare_obj ( c * handle1, uint2 index1 ,c * handle2, uint2 index2 );\n"
      "int2  c_i_compare_ext ( c * handle, uint2 index, void ** key );\n"
      "#define c_i_extkey_v(ek)    ((int2)((((zkt_external_field_t*)(ek))[0]).v.i2))\n"
      "\n" },
    { "class c { unsigned<4> r[3]; userdef hash<r> i[10]; };",
      "    fptrs[0].fcomp.vb      = (zkt_compare_userdef_vb_f)        c_i_compare_obj;\n"
      "    fptrs[0].fcomp_ext.vb  = (zkt_compare_extkey_userdef_vb_f) c_i_compare_ext;\n"
      "    fptrs[0].fhash.vb      = (zkt_hash_userdef_vb_f)           c_i_hash_obj;\n"
      "    fptrs[0].fhash_ext.u   = (zkt_hash_extkey_userdef_f)       c_i_hash_ext;\n",
      "\n"
      "int2  c_i_compare_obj ( c * handle1, uint2 index1 ,c * handle2, uint2 index2 );\n"
      "int2  c_i_compare_ext ( c * handle, uint2 index, void ** key );\n"
      "zkt_hash_counter_t c_i_hash_obj    ( c * handle, uint2 index );\n"
      "zkt_hash_counter_t c_i_hash_ext    ( void ** key);\n"
      "#define c_i_extkey_r(ek)    ((uint4)((((zkt_external_field_t*)(ek))[0]).v.u4))\n"
      "\n" },
  };
  // clang-format on
  for (const Case& c : cases) {
    Generated g(std::string("declare database d;\n") + c.cls);
    ASSERT_TRUE(g.run()) << g.msg;
    EXPECT_TRUE(has(Generated::text(g.gen.m_c), std::string(kUdfHead) + c.c + kUdfEnd)) << c.cls;
    const std::string h = Generated::text(g.gen.m_h);
    EXPECT_TRUE(has(h, std::string(kRule) +
                           "/* User-defined index                                                  */\n"
                           "\n"
                           "zkt_userdef_funcs_h d_get_udfs(void);\n" +
                           kRule +
                           "/* class c user-defined index methods                                  */\n"
                           "\n" +
                           c.h + "\n#ifdef __cplusplus\n"))
        << c.cls << "\n" << h;
  }
}

// One macro per segment, by the category of the last step's type; a dotted
// path names every step.
TEST(Userdef, KeyMacrosPerCategory) {
  Generated g(
      "declare database d;\ndeclare oid K[4];\nstruct K { unsigned<4> id; };\n"
      "struct In { double x; };\n"
      "class c { oid; char<4> a; string b; binary<2> bi; varbinary vb; ref<c> r; nchar<3> n; nstring ns; In in;\n"
      "  userdef tree<a, b, bi, vb, r, n, ns, in.x> i; };\n");
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string h = Generated::text(g.gen.m_h);
  // clang-format off
  EXPECT_TRUE(has(h,
      "#define c_i_extkey_a(ek)    ((char *)((((zkt_external_field_t*)(ek))[0]).ptr))\n"
      "#define c_i_extkey_b(ek)    ((char *)((((zkt_external_field_t*)(ek))[1]).ptr))\n"
      "#define c_i_extkey_bi(ek)    ((char *)((((zkt_external_field_t*)(ek))[2]).ptr))\n"
      "#define c_i_extkey_vb(ek)    ((char *)((((zkt_external_field_t*)(ek))[3]).ptr))\n"
      "#define c_i_extkey_r(ek)    ((d_oid *)((((zkt_external_field_t*)(ek))[4]).ptr))\n"
      "#define c_i_extkey_n(ek)    ((nchar_t *)((((zkt_external_field_t*)(ek))[5]).ptr))\n"
      "#define c_i_extkey_ns(ek)    ((nchar_t *)((((zkt_external_field_t*)(ek))[6]).ptr))\n"
      "#define c_i_extkey_in_x(ek)    ((double)((((zkt_external_field_t*)(ek))[7]).v.dbl))\n")) << h;
  // clang-format on
}

// A suppressed class keeps its heading and null entries; when every class
// with such an index is suppressed there is no table at all.
TEST(Userdef, Suppressed) {
  const char schema[] =
      "declare database d;\n"
      "class k { signed<4> a; userdef tree<a> i; };\n"
      "class m { signed<4> b; userdef hash<b> j[10]; };\n";
  Options one;
  one.suppress = {"k"};
  Generated g(schema, one);
  ASSERT_TRUE(g.run()) << g.msg;
  EXPECT_TRUE(has(Generated::text(g.gen.m_c),
                  "    fptrs[0].p.flags       = 0;\n"
                  "    fptrs[0].fcomp.nvb     = (zkt_compare_userdef_f)           0;\n"
                  "    fptrs[0].fcomp_ext.nvb = (zkt_compare_extkey_userdef_f)    0;\n"
                  "    fptrs[0].fhash.nvb     = (zkt_hash_userdef_f)              0;\n"
                  "    fptrs[0].fhash_ext.u   = (zkt_hash_extkey_userdef_f)       0;\n"
                  "    fptrs[1].p.flags       = 0;\n"
                  "    fptrs[1].fcomp.nvb     = (zkt_compare_userdef_f)           m_j_compare_obj;\n"));
  const std::string h = Generated::text(g.gen.m_h);
  EXPECT_TRUE(has(h, "/* class k user-defined index methods                                  */\n\n" + std::string(kRule)))
      << h;
  EXPECT_FALSE(has(h, "k_i_")) << h;

  Options both;
  both.suppress = {"k", "m"};
  Generated none(schema, both);
  ASSERT_TRUE(none.run()) << none.msg;
  EXPECT_FALSE(has(Generated::text(none.gen.m_h), "d_get_udfs"));
  EXPECT_FALSE(has(Generated::text(none.gen.m_c), "d_get_udfs"));
}

const char kCollHead[] =
    "zkt_collation_funcs_h d_get_collations(void) {\n"
    "  static zkt_collation_funcs_t  fptrs[2];\n"
    "  static int fptrs_ready = 0;\n"
    "\n"
    "  if (! fptrs_ready)\n"
    "  {\n";

// A collation of tree indexes only has no hash function; one of a hash index
// has; one used only by a suppressed class has two null entries.
TEST(Collations, TablePerKind) {
  struct Case {
    const char* schema;
    std::vector<std::string> suppress;
    const char* c;
    const char* h;
  };
  // clang-format off
  const Case cases[] = {
    { "class k { string a; tree<a collate latin> x; hash<a collate greek> y[10]; };", {},
      "    fptrs[0].comp = (zkt_compare_collation_f) latin_collation_compare;\n"
      "    fptrs[0].hash = (zkt_hash_collation_f)    0;\n"
      "    fptrs[1].comp = (zkt_compare_collation_f) greek_collation_compare;\n"
      "    fptrs[1].hash = (zkt_hash_collation_f)    greek_collation_hash;\n",
      "/* collation latin user-defined methods                                */\n"
      "\n"
      "int2  latin_collation_compare ( zkt_collate_h c1, uint2 len1, zkt_collate_h c2, uint2 len2);\n"
      "\n"
      "/*---------------------------------------------------------------------*/\n"
      "/* collation greek user-defined methods                                */\n"
      "\n"
      "int2  greek_collation_compare ( zkt_collate_h c1, uint2 len1, zkt_collate_h c2, uint2 len2);\n"
      "zkt_hash_counter_t greek_collation_hash (zkt_collate_h c, uint2 len);\n"
      "\n" },
    { "class k { string a; tree<a collate latin> x; };\nclass m { string b; tree<b collate greek> y; };", {"k"},
      "    fptrs[0].comp = (zkt_compare_collation_f) 0;\n"
      "    fptrs[0].hash = (zkt_hash_collation_f)    0;\n"
      "    fptrs[1].comp = (zkt_compare_collation_f) greek_collation_compare;\n"
      "    fptrs[1].hash = (zkt_hash_collation_f)    0;\n",
      "/* collation latin user-defined methods                                */\n"
      "\n"
      "\n"
      "/*---------------------------------------------------------------------*/\n"
      "/* collation greek user-defined methods                                */\n"
      "\n"
      "int2  greek_collation_compare ( zkt_collate_h c1, uint2 len1, zkt_collate_h c2, uint2 len2);\n"
      "\n" },
  };
  // clang-format on
  for (const Case& c : cases) {
    Options o;
    o.suppress = c.suppress;
    Generated g(std::string("declare database d;\n") + c.schema, o);
    ASSERT_TRUE(g.run()) << g.msg;
    EXPECT_TRUE(has(Generated::text(g.gen.m_c), std::string(kCollHead) + c.c + kUdfEnd)) << c.schema;
    const std::string h = Generated::text(g.gen.m_h);
    EXPECT_TRUE(has(h, std::string(kRule) +
                           "/* Custom collation                                                    */\n"
                           "\n"
                           "zkt_collation_funcs_h d_get_collations(void);\n" +
                           kRule + c.h))
        << c.schema << "\n" << h;
  }
}

TEST(Collations, NoneWhenEveryUserIsSuppressed) {
  Options o;
  o.suppress = {"k"};
  Generated g("declare database d;\nclass k { string a; tree<a collate latin> x; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  EXPECT_FALSE(has(Generated::text(g.gen.m_c), "d_get_collations"));
}

// Without user-defined indexes the stray comment of a hash collation goes to
// the udf stream all the same, which has then nothing else (and is a null
// stream in the file compiler, as no udf file is wanted).
TEST(UserFiles, StrayCommentWithoutUdfFile) {
  Generated g("declare database d;\nclass k { string a; hash<a collate greek> y[10]; };");
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string head = expected("d_udf.c").substr(0, expected("d_udf.c").find("/*\n\n* API"));
  EXPECT_EQ(gentest::maskTime(Generated::text(g.gen.m_udf)), head + "/* user-defined object hash function */\n");
}

// The whole user-code files; the hash collation's comment lands at the end of
// the udf file, not in the collation file.
TEST(UserFiles, WholeFiles) {
  Generated g(
      "declare database d;\n"
      "class c { signed<4> a; char<8> s; vector<signed<2>> v;\n"
      "  userdef tree<a> i; userdef hash<s> h[10]; userdef tree<v> vi;\n"
      "  tree<s collate latin> bs; hash<s collate greek> hs[10]; };\n");
  ASSERT_TRUE(g.run()) << g.msg;
  EXPECT_EQ(gentest::maskTime(Generated::text(g.gen.m_udf)), expected("d_udf.c"));
  EXPECT_EQ(gentest::maskTime(Generated::text(g.gen.m_coll)), expected("d_coll.c"));
}

}  // namespace
