// Finishing pass: refused schemas, the finished model (types, numbering, system classes) and element type codes.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "analyzer_util.h"
#include "proc_util.h"

namespace {

std::string S(const mstring& m) { return m.c_str(); }

using antest::Finished;

#define ASSERT_FINISHED(a) ASSERT_TRUE((a).ok) << (a).msg << " at line " << (a).line

struct Refused {
  const char* schema;  // behind "declare database d;\n" unless it begins with '!'
  const char* message;  // as the reporter shows it
  int line;             // this pass reports at the end of the input
};

std::string schemaOf(const Refused& c) {
  return c.schema[0] == '!' ? std::string(c.schema + 1) : "declare database d;\n" + std::string(c.schema);
}

// clang-format off
const Refused kRefused[] = {
  // types
  { "struct top { a x; };\nstruct a { b y; };\nstruct b { optional a z; };", "recursive definition of \"a\"", 4 },
  { "struct a { signed<4> n; vector<a> next; };", "struct a includes itself", 2 },
  { "class k { signed<4> a; };\nclass c { k x; };", "undefined type k used in c", 3 },  // a class is no type
  { "class c { ref r; };", "undefined type ref used in c", 2 },  // no ref without declare oid
  { "class c { sequence<wchar> w; };",
    "wide character type is not supported in this version of Vantrel. Please contact Halvorn Support.", 2 },
  { "class c { sequence<char<33>> q; };", "sequence<char(N)> is limited by 32", 2 },
  { "direct struct a { b x; };\ndirect struct b { signed<4> y; };",
    "No direct or normal structs can be included into direct struct", 3 },
  { "direct struct a { string s; };", "Direct struct can't include dynamic or optional fields", 2 },
  { "direct struct a { signed<4> x; };\nclass c { vector<a> v; };", "Direct struct can not be element of a vector", 3 },
  // schema statements, in the order of the passes
  { "!class c { foo x; };", "undefined type foo used in c", 1 },
  { "!class c { signed<4> a; };", "schema name is not defined", 1 },
  { "iot server;\nclass c { signed<4> a; };", "IoT schema has no 'uptable' or 'downtable' classes", 3 },
  { "class c { oid; signed<4> a; };", "oid is not declared", 2 },
  { "declare oid s[5];\nstruct s { b x; };\nstruct b { optional signed<4> o; };", "oid type s cannot be dynamic", 4 },
  { "declare oid unsigned<4>[5];\nclass c { ref<x> r; };", "A reference to undefined class \"x\" found.", 3 },
  { "declare oid unsigned<4>[5];\nclass k { signed<4> a; };\nclass c { ref<k> r; };", "Class \"k\" has no oid.", 4 },
  { "class k { signed<4> a; };\nclass c { vector<autoid_t<k>> r; };", "Class \"k\" has no autoid.", 3 },
  // index paths
  { "struct s { signed<4> a; };\nclass c { s x; tree<x.b> t; };",
    "field b is not defined in struct s and referenced from index t, x.b", 3 },
  { "class c { sequence<signed<4>> q; tree<q> t; };", "sequence field q used in index t, q", 2 },
  { "class c { optional signed<4> o; hash<o> h[5]; };",
    "optional fields cannot be used in indexes: optional field \"o\" used in index h, o", 2 },
  { "class c { signed<4> a; tree<a.b> t; };", "not final element a of index t, a.b is not a struct", 2 },
  { "struct s { signed<4> a; };\nclass c { s x; tree<*> t; };", "final element x of index t, x is struct", 3 },
  { "struct s { signed<4> v[2]; };\nclass c { vector<s> x; tree<x.v> t; };",
    "index t, x.v has more then 1 vector or array element", 3 },  // "then": the established wording
  { "class c { signed<4> a; tree<a collate co> t; };", "Wrong field type for collate co", 2 },
  { "class c { char<4> a; tree<a collate co> t; };\nclass e { nstring b; hash<b collate co> h[5]; };",
    "Incompatible field types for collation co", 3 },
  // index types
  { "class c { char<4> a, b; trigram<a, b> t; };", "[c.t] Trigram index can be defined only for single field.", 2 },
  { "struct s { char<4> a; };\nclass c { s x; trigram<x.a> t; };",
    "[c.t] R-Tree can be defined only for single field.", 3 },  // the R-tree's text: intended
  { "class c { char<4> a[2]; trigram<a> t; };", "[c.t] Trigram index can be defined only for character or string types.", 2 },
  { "class c { double r[3]; rtree<r> i; };",
    "[c.i] R-Tree can be defined only for array of rectangles or array of scalars with even length.", 2 },
  { "class c { vector<double> r; rtree<r> i; };",
    "[c.i] R-Tree can be defined only for array of rectangles or array of scalars with even length.", 2 },
  { "class c { signed<4> v[2]; kdtree<v> k; };", "[c.v] A vector or array can not be element of KD-Tree index.", 2 },
  { "struct s { boolean f; };\nclass c { s x; tree<x.f> t; };", "field f: only patricia index allowed on this type of field", 3 },
  { "class c { boolean b[8]; hash<b> h[5]; };", "field b: only patricia index allowed on this type of field", 2 },
  { "transient class c { boolean b; patricia<b> p; };",
    "field b: no index allowed on this type of field, only array/vectors of boolean indexes allowed", 2 },
  // events
  { "class c { signed<4> a; event<x update> e; };", "field x is not defined in c, referenced from event e", 2 },
  { "class c { blob b; event<b update> e; };",
    "field b in c, referenced from event e must be of a base type: simple, string, chars, nstring or nchars", 2 },
  { "class c { signed<4> v[2]; event<v update> e; };",
    "field v in c, referenced from event e must be of a base type: simple, string, chars, nstring or nchars", 2 },
  { "class c { signed<4> a; event<a update> e; event<update> f; };",
    "For class c declared both update class event and field update event(s)", 2 },
  { "class c { signed<4> a; boolean updated_bitmap[]; event<a update> e; };",
    "For class c declared both update class event and field update event(s)", 2 },
};
// clang-format on

TEST(AnalyzerFinish, Refused) {
  for (const Refused& c : kRefused) {
    Finished a(schemaOf(c));
    EXPECT_EQ(a.msg, c.message) << c.schema;
    EXPECT_EQ(a.line, c.line) << c.schema;
  }
}

// Through the binary the messages read the same whatever the options;
// -size-t 4 lowers the kd-tree limit from 63 fields to 31.
TEST(AnalyzerFinish, BinaryUnderEveryOption) {
  const std::string dir = procutil::makeTempDir();
  auto run = [&](const std::string& text, std::vector<std::string> opts) {
    procutil::writeFile(dir + "/x.sch", text);
    opts.insert(opts.begin(), ZKT_COMPILER_PATH);
    opts.push_back("x.sch");
    return procutil::runProgram(opts, dir);
  };
  for (const auto& opts : std::vector<std::vector<std::string>>{{}, {"-sql"}, {"-nosort"}, {"-persistent"}, {"-size-t", "4"}}) {
    for (const Refused& c : kRefused) {
      ProcResult r = run(schemaOf(c), opts);
      const std::string shown = "File x.sch;  line " + std::to_string(c.line) + ": error: " + c.message + "\n\n";
      EXPECT_EQ(r.status, 255) << c.schema;
      // a hash index under -persistent adds a warning in front
      EXPECT_EQ(r.err.substr(r.err.size() - std::min(r.err.size(), shown.size())), shown) << c.schema;
    }
  }
  // A collation on a blob field is an internal stop, not a schema error.
  ProcResult blob = run("declare database d;\nclass c { blob b; tree<b collate co> t; };", {});
  EXPECT_EQ(blob.status, 255);
  EXPECT_EQ(blob.err, "internal error: illegal index field type\n");
  EXPECT_EQ(blob.out, "");
  for (int fields : {31, 32, 63, 64}) {
    std::string text = "declare database d;\nclass c {";
    for (int i = 0; i < fields; i++) text += " signed<4> f" + std::to_string(i) + ";";
    text += " kdtree<f0> k; };";
    ProcResult r = run(text, fields < 33 ? std::vector<std::string>{"-size-t", "4"} : std::vector<std::string>{});
    const bool refused = fields == 32 || fields == 64;
    EXPECT_EQ(r.status, refused ? 255 : 0) << fields;
    EXPECT_EQ(r.err, refused ? "File x.sch;  line 2: error: It is too many fields in class \"c\" for kd-tree index \"k\".\n\n" : "");
  }
}

// Nesting is walked on an explicit stack: long chains finish, and a cycle at
// the far end is still found.
TEST(AnalyzerFinish, LongChainsOfNestedStructs) {
  for (int n : {200, 10000}) {
    for (bool cycle : {false, true}) {
      std::string text = "declare database d;\nclass c { s0 head; };\n";
      for (int i = 0; i + 1 < n; i++)
        text += "struct s" + std::to_string(i) + " { s" + std::to_string(i + 1) + " x; signed<2> v; };\n";
      text += "struct s" + std::to_string(n - 1) + (cycle ? " { s0 back; };" : " { string v; };");
      Finished a(text);
      if (cycle) {
        EXPECT_EQ(a.msg, "recursive definition of \"s0\"") << n;
        continue;
      }
      ASSERT_FINISHED(a);
      EXPECT_TRUE(a.cls("c")->m_isDynamic && a.type("s0")->m_isDynamic) << n;  // the string at the far end
    }
  }
}

TEST(AnalyzerFinish, SystemClassesFollowTheUserClasses) {
  Finished a(
      "declare database d;\ndeclare auto_oid[10];\niot router<3>;\n"
      "distributed class a { signed<4> x; };\ntransient uptable class b { signed<4> x; };\n"
      "persistent distributed class c { signed<4> x; };\npersistent downtable class e { signed<4> x; };\n");
  ASSERT_FINISHED(a);
  EXPECT_EQ(a.classNames(), "a b c e @sys_distribs_disk @sys_distribs_inmem @sys_iot_ts @sys_iot_del_disk "
                            "@sys_iot_del_inmem");
  EXPECT_TRUE(a.cls("@sys_iot_ts")->m_persistent);  // one per schema, persistent if any table is
  Finished t("declare database d;\niot device;\ntransient uptable class b { signed<4> x; };");
  ASSERT_FINISHED(t);
  EXPECT_EQ(t.classNames(), "b @sys_iot_ts @sys_iot_del_inmem");
}

TEST(AnalyzerFinish, ListIndexesAndNumbering) {
  const char* text =
      "declare database d;\ndeclare auto_oid[5];\n"
      "struct In { char<6> code; signed<4> n; };\n"
      "transient class Zed { char<8> s; nchar<4> w; In in; boolean bits[8]; signed<4> v[4];\n"
      "  unique tree<in.code collate zeta, s desc> by_code; userdef voluntary tree<s> u1;\n"
      "  hash<w collate alpha> hw[5]; patricia<bits> pb; tree<v> tv; };\n"
      "class Alp { signed<4> k; blob t; userdef tree<k> u2; tree<*> all; };\n"
      "persistent class Vol { signed<4> k; voluntary tree<k> v; };\n"
      "transient class Tvol { signed<4> k; voluntary tree<k> v; };\n"
      "class Bare { signed<4> k; };\nclass Dyn { string s; };\nclass Auto { autoid[5]; };\n";
  for (bool nosort : {false, true}) {
    antest::Options o;
    o.nosort = nosort;
    Finished a(text, o);
    ASSERT_FINISHED(a);
    Class& z = *a.cls("Zed");
    Class& al = *a.cls("Alp");
    // declaration order, not by name; user-defined indexes have their own count
    EXPECT_EQ(al.v_index[1].m_code, 6);
    EXPECT_EQ(z.v_index[1].m_code_udf, 0);
    EXPECT_EQ(al.v_index[0].m_code_udf, 1);
    EXPECT_EQ(al.v_index[1].m_code_udf, -1);
    EXPECT_EQ(a.schema().m_userdefIdxNum, 2u);
    EXPECT_TRUE(z.m_hasUserdefIdx && z.m_hasCollations && !al.m_hasCollations);
    EXPECT_EQ(z.m_maxIndexName, 7);
    // collations in order of first use, with the kind of text they serve
    EXPECT_EQ(a.schema().findCollation("zeta")->ctype, 7);
    EXPECT_EQ(a.schema().findCollation("alpha")->ctype, 19);
    EXPECT_EQ(z.v_index[2].v_fldParsed[0].m_collationNum, 1);
    EXPECT_EQ(a.schema().m_collationsNum, 2u);
    // a dotted path marks every field on the way
    const Index::Segment& code = z.v_index[0].v_fldParsed[0];
    EXPECT_EQ(code[1].m_pStruct, a.type("In"));
    EXPECT_TRUE(z.findField("in")->m_isUnique && a.type("In")->findField("code")->m_isUnique);
    EXPECT_FALSE(a.type("In")->findField("n")->m_isIndexed);
    EXPECT_TRUE(z.findField("v")->m_isIndexed && !z.findField("v")->m_isUnique);
    EXPECT_TRUE(z.v_index[3].m_isBitBased);
    EXPECT_EQ(z.v_index[4].m_vectorSegmentNum, 0);
    // the star stands for every field, hidden ones included
    const Index& all = al.v_index[1];
    EXPECT_EQ(all.v_fldParsed.size(), 3u);
    EXPECT_EQ(S(all.v_indfield[0]) + S(all.v_colls[2]) + (all.v_descending[2] ? "d" : ""), "auto_oid@");
    // the implicit list index
    const Index& li = a.cls("Bare")->v_index[0];
    EXPECT_EQ(S(li.m_name) + " " + std::to_string(li.m_code), "list_index_ 10");
    EXPECT_EQ(li.m_IndexType, nosort ? IT_Tree : IT_List);
    EXPECT_TRUE(li.m_isListIndex && a.cls("Bare")->m_sequential);
    EXPECT_EQ(antest::Analysis::indexNames(a.cls("Vol")), "v list_index_");
    EXPECT_EQ(antest::Analysis::indexNames(a.cls("Tvol")), "v");
    EXPECT_EQ(antest::Analysis::indexNames(a.cls("Dyn")), "");
    EXPECT_EQ(antest::Analysis::indexNames(a.cls("Auto")), "autoid");
  }
}

TEST(AnalyzerFinish, EventIds) {
  Finished a(
      "declare database d;\n"
      "class One { signed<4> x; event<new> n; event<x update> u; };\n"
      "class Two { signed<4> y; boolean updated_bitmap[]; event<update> any; };\n"
      "class Three { signed<4> z; boolean updated_bitmap[]; event<delete> gone; };\n");
  ASSERT_FINISHED(a);
  EXPECT_EQ(a.cls("One")->v_events[1].m_pFld, &a.cls("One")->v_field[0]);
  const Class& two = *a.cls("Two");
  EXPECT_EQ(two.v_events.size(), 1u);  // declared: no implicit event
  EXPECT_EQ(S(two.v_events[0].m_fldName) + std::to_string(two.v_events[0].m_eventId), "updated_bitmap2");
  const Event& impl = a.cls("Three")->v_events[1];
  EXPECT_EQ(S(impl.m_name) + std::to_string(impl.m_eventId), "implUpdateThreeEvent4");
  EXPECT_EQ(impl.m_type, Event::CLASS_UPDATE);
  EXPECT_FALSE(a.schema().s_allEventNames.find(impl.m_name));
}

// ---------------------------------------------------------------- element type codes

const char kAllTypes[] =
    "declare database d;\ndeclare oid unsigned<4>[10];\ndeclare auto_oid[5];\n"
    "enum E1 { a }; enum E2 { b = 300 }; enum E4 { c = 70000 };\n"
    "struct S { signed<4> x; };\ndirect struct D { signed<4> x; double y; };\n"
    "class c { autoid[10];\n"
    " unsigned<1> u1; unsigned<2> u2; unsigned<4> u4; signed<1> i1; signed<2> i2; signed<4> i4;\n"
    " char<5> ch; string st; ref r; float fl; double db; unsigned<8> u8; signed<8> i8; autoid_t ai;\n"
    " decimal<12,4> dec; date dt; time tm; datetime dtm; nchar<3> nc; nstring ns; binary<6> bi; varbinary vb;\n"
    " boolean bo; boolean bits[12]; E1 e1; E2 e2; E4 e4; D d; S s; blob bl;\n"
    " sequence<unsigned<1>> q30; sequence<unsigned<2>> q31; sequence<unsigned<4>> q32; sequence<date> q32d;\n"
    " sequence<time> q32t; sequence<unsigned<8>> q33; sequence<signed<1>> q34; sequence<signed<2>> q35;\n"
    " sequence<signed<4>> q36; sequence<signed<8>> q37; sequence<float> q38; sequence<double> q39;\n"
    " sequence<char<8>> q40c; sequence<binary<4>> q40b; sequence<S> q40s; sequence<datetime> q41;\n"
    " sequence<string> bad_seq; sequence<D> bad_direct; };\n";

TEST(AnalyzerFinish, ElementTypeCodes) {
  // clang-format off
  const struct { const char* field; int etype; const char* unionel; const char* size; int bitSize; FieldInitType init; } codes[] = {
    { "u1", 1, "u1", "1", 0, INIT_INT },      { "u2", 2, "u2", "2", 0, INIT_INT },      { "u4", 3, "u4", "4", 0, INIT_INT },
    { "i1", 4, "i1", "1", 0, INIT_INT },      { "i2", 5, "i2", "2", 0, INIT_INT },      { "i4", 6, "i4", "4", 0, INIT_INT },
    { "ch", 7, "", "5", 0, INIT_STRING },     { "st", 8, "", "0", 0, INIT_STRING },     { "r", 9, "", "0", 0, INIT_NONE },
    { "fl", 10, "flt", "4", 0, INIT_DOUBLE }, { "db", 11, "dbl", "8", 0, INIT_DOUBLE }, { "u8", 12, "u8", "8", 0, INIT_INT },
    { "i8", 13, "i8", "8", 0, INIT_INT },     { "ai", 13, "i8", "8", 0, INIT_INT },     { "dec", 13, "i8", "8", 0, INIT_INT },
    { "autoid", 14, "i8", "8", 0, INIT_NONE },  { "auto_oid@", 18, "i8", "8", 0, INIT_NONE },
    { "dt", 16, "u4", "4", 0, INIT_INT },     { "tm", 17, "u4", "4", 0, INIT_INT },     { "dtm", 24, "u8", "8", 0, INIT_INT },
    { "nc", 19, "", "6", 0, INIT_STRING },    { "ns", 20, "", "0", 0, INIT_STRING },    { "bi", 25, "", "6", 0, INIT_STRING },
    { "vb", 26, "", "0", 0, INIT_STRING },    { "bo", 23, "ptr", "1", 1, INIT_BOOL },   { "bits", 23, "ptr", "1", 12, INIT_BOOL },
    { "e1", 1, "u1", "1", 0, INIT_INT },      { "e2", 5, "i2", "2", 0, INIT_INT },      { "e4", 6, "i4", "4", 0, INIT_INT },
    { "d", 50, "", "DS", 0, INIT_NONE },      { "q30", 30, "", "4", 0, INIT_NONE },     { "q31", 31, "", "4", 0, INIT_NONE },
    { "q32", 32, "", "4", 0, INIT_NONE },     { "q32d", 32, "", "4", 0, INIT_NONE },    { "q32t", 32, "", "4", 0, INIT_NONE },
    { "q33", 33, "", "4", 0, INIT_NONE },     { "q34", 34, "", "4", 0, INIT_NONE },     { "q35", 35, "", "4", 0, INIT_NONE },
    { "q36", 36, "", "4", 0, INIT_NONE },     { "q37", 37, "", "4", 0, INIT_NONE },     { "q38", 38, "", "4", 0, INIT_NONE },
    { "q39", 39, "", "4", 0, INIT_NONE },     { "q40c", 40, "", "4", 0, INIT_NONE },    { "q40b", 40, "", "4", 0, INIT_NONE },
    { "q40s", 40, "", "4", 0, INIT_NONE },    { "q41", 41, "", "4", 0, INIT_NONE },
  };
  // clang-format on
  Finished a(kAllTypes);
  ASSERT_FINISHED(a);
  Class& c = *a.cls("c");
  a.type("D")->m_layout.c.m_size = mstring("DS");  // a direct struct's size comes from the layout
  for (const auto& k : codes) {
    const Field& f = *c.findField(k.field);
    Field::DictInfo d = f.dict_info(false);
    EXPECT_EQ(std::to_string(d.etype) + S(d.unionel) + "/" + S(d.size) + "/" + std::to_string(d.bit_size),
              std::to_string(k.etype) + k.unionel + "/" + k.size + "/" + std::to_string(k.bitSize))
        << k.field;
    EXPECT_EQ(f.getInitializerType(), k.init) << k.field;
  }
  EXPECT_EQ(c.findField("s")->dict_info(true).etype, 50);
  EXPECT_EQ(c.findField("bl")->dict_info(true).etype, 51);
  Field v;  // $version: a type of 4 bytes, an element of 2
  v.m_pstruct = a.type("$version");
  EXPECT_EQ(S(v.dict_info(false).size) + std::to_string(v.dict_info(false).etype), "215");

  antest::Options o;  // with DDL compatibility every enum takes four bytes
  o.nosort = true;
  Finished n(kAllTypes, o);
  ASSERT_FINISHED(n);
  EXPECT_EQ(n.cls("c")->findField("e1")->dict_info(false).etype, 6);

  const char kSeq[] = ": sequences can be defined only singined/unsigned integer, floatig point, date/time, character "
                      "and fixed size struct type.";
  Struct odd("odd", ET_SIMPLE, 1, 1, 1, 1, "char");
  Field oddField;
  oddField.m_pstruct = &odd;
  const struct {
    const Field* field;
    std::string text;
  } panics[] = {{c.findField("s"), "illegal index field type"},
                {c.findField("bl"), "illegal index field type"},
                {&oddField, "unknown simple type"},
                {c.findField("bad_seq"), std::string("Wrong sequence element type string") + kSeq},
                {c.findField("bad_direct"), std::string("Wrong sequence element type D") + kSeq}};
  for (const auto& k : panics) {
    ProcResult r = procutil::runChild([&] { k.field->dict_info(false); });
    EXPECT_EQ(r.status, 255) << k.text;
    EXPECT_EQ(r.err, "internal error: " + k.text + "\n");
  }
}

}  // namespace
