// Layout engine: storage orders, offsets and sizes of both layouts, oids, deep chains, errors (the dump of whole
// models is in tests/expected/model).
#include <gtest/gtest.h>

#include <string>

#include "genout_util.h"
#include "proc_util.h"

namespace {

using gentest::Generated;
using gentest::Options;

std::string S(const mstring& m) { return m.c_str(); }

// "name:offset/size ... =size aalign", all in their text forms.
std::string describe(const Layout& l) {
  std::string r;
  for (unsigned int i = 0; i < l.v_fldOrder.size(); i++) {
    const FldLayout& f = l.v_fldOrder[i];
    r += S(f.m_ref->m_name) + ":" + S(f.m_offset) + "/" + S(f.m_size) + " ";
  }
  return r + "=" + S(l.m_size) + " a" + S(l.m_align);
}

Options nosort() {
  Options o;
  o.nosort = true;
  return o;
}

Options large() {
  Options o;
  o.large = true;
  return o;
}

const char kExample[] =
    "class c { unsigned<4> id; string name; char<3> code; unsigned<1> flag; double price;\n"
    "  vector<unsigned<2>> tags; unsigned<2> next; };";
const char kDirect[] = "direct struct V { double x; signed<4> y; };\n";

struct LayoutCase {
  const char* schema;  // behind "declare database d;\n"
  Options options;
  const char* type;  // a struct, or a class when no struct has the name
  const char* c;     // describe() of the compact layout
  const char* u;     // of the normal one; null: the same as c
};

// clang-format off
const LayoutCase kLayouts[] = {
  // storage order by alignment; the vector costs 4 and 6; no tail padding
  { kExample, Options(), "c",
    "price:0/8 id:8/4 next:12/2 name:14/2 tags:16/4 code:20/3 flag:23/1 =24 a4",
    "id:0/4 tags:4/6 name:12/4 price:16/8 next:24/2 code:26/3 flag:29/1 =30 a4" },
  // declared order, and double aligned to 8 since nosort makes alignment strict
  { kExample, nosort(), "c",
    "id:0/4 name:4/2 code:6/3 flag:9/1 price:16/8 tags:24/4 next:28/2 =30 a8",
    "id:0/4 name:4/4 code:8/3 flag:11/1 price:16/8 tags:24/6 next:30/2 =32 a8" },
  // equal alignments still move: the heap sort puts the first field last
  { "class e { unsigned<1> a, b, c, d, e; };", Options(), "e", "b:0/1 c:1/1 d:2/1 e:3/1 a:4/1 =5 a1", nullptr },
  { "class e { unsigned<1> a, b, c, d, e; };", nosort(), "e", "a:0/1 b:1/1 c:2/1 d:3/1 e:4/1 =5 a1", nullptr },
  // a boolean array is bits; struct elements are padded one by one (5 -> 8); optional is 2 or 4
  { "struct s { unsigned<4> a; unsigned<1> b; };\nclass r { boolean bits[9]; s s3[3]; optional s o; };",
    Options(), "r", "s3:0/24 o:24/2 bits:26/2 =28 a4", "s3:0/24 o:24/4 bits:28/2 =30 a4" },
  { "struct s { unsigned<4> a; unsigned<1> b; };", Options(), "s", "a:0/4 b:4/1 =5 a4", nullptr },
  // blob widths follow the database size
  { "class b { blob bb; unsigned<1> z; };", Options(), "b", "bb:0/8 z:8/1 =9 a4", nullptr },
  { "class b { blob bb; unsigned<1> z; };", large(), "b", "bb:0/12 z:12/1 =13 a8", nullptr },
  // the oid comes first, its size rounded up to even; a ref is the packed oid
  { "declare oid K[100];\nstruct K { unsigned<1> a; unsigned<8> b; unsigned<1> c; unsigned<2> d; char<3> e; };\n"
    "class p { oid; unsigned<4> x; };\nclass q { ref r; unsigned<1> z; };",
    Options(), "p", "x:20/4 =24 a4", nullptr },
  { "declare oid K[100];\nstruct K { unsigned<1> a; unsigned<8> b; unsigned<1> c; unsigned<2> d; char<3> e; };\n"
    "class p { oid; unsigned<4> x; };\nclass q { ref r; unsigned<1> z; };",
    Options(), "q", "z:0/1 r:1/19 =20 a1", nullptr },
  // direct structs: the target's compiler knows their layout
  { kDirect, Options(), "V",
    "x:fieldoffs(V_d_aligned_to_1, x)/fieldsz(V_d_aligned_to_1, x) "
    "y:fieldoffs(V_d_aligned_to_1, y)/fieldsz(V_d_aligned_to_1, y) =structsz(V_d_aligned_to_1) a1", nullptr },
  { "direct struct V { double x; signed<4> y; };\nclass c { unsigned<4> a; V v; };", Options(), "c",
    "a:0/4 v:4/structsz(V_d_aligned_to_1) =4+structsz(V_d_aligned_to_1) a4", nullptr },
  // direct fields sort last and follow each other without alignment
  { "direct struct V { double x; signed<4> y; };\nclass m { V v1; unsigned<1> z; V v2; };", Options(), "m",
    "z:0/1 v2:1/structsz(V_d_aligned_to_1) v1:1+structsz(V_d_aligned_to_1)/structsz(V_d_aligned_to_1) "
    "=1+structsz(V_d_aligned_to_1)+structsz(V_d_aligned_to_1) a1", nullptr },
  // the first direct field is at "0", even behind an oid
  { "direct struct V { double x; signed<4> y; };\ndeclare oid K[10];\nstruct K { char<7> k; };\n"
    "class o { oid; V v; };", Options(), "o",
    "v:0/structsz(V_d_aligned_to_1) =0+structsz(V_d_aligned_to_1) a1", nullptr },
  // arrays of what has a text size are products
  { "direct struct V { double x; signed<4> y; };\nclass t { V vs[2]; };", Options(), "t",
    "vs:0/(structsz(V_d_aligned_to_1))*2 =0+(structsz(V_d_aligned_to_1))*2 a1", nullptr },
  { "direct struct V { double x; signed<4> y; };\nstruct W { V v; };\nclass w { W ws[3]; };", Options(), "w",
    "ws:0/(0+structsz(V_d_aligned_to_1))*3 =(0+structsz(V_d_aligned_to_1))*3 a1", nullptr },
};
// clang-format on

TEST(Layout, OrdersOffsetsAndSizes) {
  for (const LayoutCase& c : kLayouts) {
    Generated g(std::string("declare database d;\n") + c.schema, c.options);
    ASSERT_TRUE(g.layout()) << c.schema << ": " << g.msg;
    Struct* s = g.type(c.type);
    if (s == nullptr) s = g.cls(c.type);
    ASSERT_NE(s, nullptr) << c.type;
    EXPECT_EQ(describe(s->m_layout.c), c.c) << c.schema;
    EXPECT_EQ(describe(s->m_layout.u), c.u ? c.u : c.c) << c.schema;
    EXPECT_TRUE(s->m_layout.finished());
  }
}

TEST(Layout, OidSizeAndCodes) {
  for (bool strict : {false, true}) {
    Options o;
    o.nosort = strict;  // an eight-byte field is still rounded to 4 in an oid
    Generated g(
        "declare database d;\ndeclare oid K[100];\n"
        "struct K { unsigned<1> a; unsigned<8> b; unsigned<1> c; unsigned<2> d; char<3> e; };\n"
        "class p { oid; unsigned<4> x; };\nclass q { ref r; };",
        o);
    ASSERT_TRUE(g.layout()) << g.msg;
    EXPECT_EQ(g.schema().m_oid_sizeof_uplimit, 19u);
    EXPECT_EQ(describe(g.type("ref")->m_layout.u), "=19 a1");
    EXPECT_EQ(g.cls("p")->m_classCode, 1);
    EXPECT_EQ(g.cls("q")->m_classCode, 2);
  }
  Generated seven("declare database d;\ndeclare oid K[10];\nstruct K { char<7> k; };\nclass p { oid; signed<2> x; };");
  ASSERT_TRUE(seven.layout()) << seven.msg;
  EXPECT_EQ(describe(seven.cls("p")->m_layout.u), "x:8/2 =10 a2");
}

struct ErrorCase {
  const char* schema;  // behind "declare database d;\n"
  const char* message;
};

// clang-format off
const ErrorCase kErrors[] = {
  { "compact class k { char<65536> a; };",                         "Class k is too large to be compact" },
  { "declare oid K[10];\nstruct In { signed<4> x; };\nstruct K { In i; };\nclass p { oid; };",
                                                                   "Nested structure in oid" },
  { "direct struct V { signed<4> x; };\ndeclare oid K[10];\nstruct K { V v; };\nclass p { oid; };",
                                                                   "Variable-length field in oid" },
  { "struct S { char<2000000000> a; char<2000000000> b; };",       "Struct S is too large" },
  { "struct S { char<40000> a[65535]; };",                         "Struct S is too large" },
  { "class c { char<2000000000> a; char<2000000000> b; };",        "Struct c is too large" },
  { "class c { char<3000000000> a; };",                             "Struct c is too large" },
};
// clang-format on

TEST(Layout, Errors) {
  for (const ErrorCase& c : kErrors) {
    Generated g(std::string("declare database d;\n") + c.schema);
    ASSERT_TRUE(g.ok) << c.schema << ": " << g.msg;
    EXPECT_FALSE(g.layout()) << c.schema;
    EXPECT_EQ(g.msg, c.message) << c.schema;
  }
  Generated fits("declare database d;\ncompact class k { char<65535> a; };");
  EXPECT_TRUE(fits.layout()) << fits.msg;
}

// The oid's size is the sum of its struct's fields: a simple oid type has
// none, so its size is 0, the class's fields start at 0, and a ref field
// meets an unknown oid size.
TEST(Layout, SimpleOidTypeHasNoSize) {
  Generated g("declare database d;\ndeclare oid signed<4>[100];\nclass p { oid; signed<4> x; };");
  ASSERT_TRUE(g.layout()) << g.msg;
  EXPECT_EQ(g.schema().m_oid_sizeof_uplimit, 0u);
  EXPECT_EQ(describe(g.cls("p")->m_layout.u), "x:0/4 =4 a4");
  ProcResult r = procutil::runChild([] {
    Generated h("declare database d;\ndeclare oid signed<4>[100];\nclass q { ref r; };");
    h.layout();
  });
  EXPECT_EQ(r.err, "internal error: oid size unknown\n");
}

}  // namespace
