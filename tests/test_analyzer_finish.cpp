// Finishing pass: refused schemas, the finished model (types, numbering, system classes) and element type codes.
#include <gtest/gtest.h>

#include <string>

#include "analyzer_util.h"
#include "proc_util.h"

namespace {

std::string S(const mstring& m) { return m.c_str(); }

// analyze, then doChecks, as the file compiler runs them.
struct Finished : antest::Analysis {
  explicit Finished(const std::string& text, const antest::Options& o = antest::Options()) : Analysis(text, o) {
    if (!ok) return;
    ok = false;
    try {
      an.doChecks();
      ok = true;
    } catch (const CompilerError& e) {
      msg = e.m_msg.c_str();
      line = e.m_line;
    }
  }
  std::string classNames() {
    std::string r;
    for (ISet::HPos pos(schema().s_class.first()); pos.valid(); pos.next())
      r += (r.empty() ? "" : " ") + S(static_cast<Class*>(pos.get().get())->m_name);
    return r;
  }
};

#define ASSERT_FINISHED(a) ASSERT_TRUE((a).ok) << (a).msg << " at line " << (a).line

struct Refused {
  const char* schema;
  const char* message;  // as the reporter shows it
  int line;             // errors of this pass stand at the end of the input
};

// clang-format off
const Refused kTypeErrors[] = {
  { "declare database d;\nstruct a { b x; };\nstruct b { a y; };", "recursive definition of \"a\"", 3 },
  { "declare database d;\nstruct top { a x; };\nstruct a { b y; };\nstruct b { c z; };\nstruct c { a w; };",
    "recursive definition of \"a\"", 5 },  // named where the cycle closes, not where the walk began
  { "declare database d;\nstruct a { optional b x; };\nstruct b { vector<a> y; };", "recursive definition of \"a\"", 3 },
  { "declare database d;\nstruct a { signed<4> n; a next; };", "struct a includes itself", 2 },
  { "declare database d;\nstruct a { vector<a> v; };", "struct a includes itself", 2 },
  { "declare database d;\nclass c { foo x; };", "undefined type foo used in c", 2 },
  { "declare database d;\nclass k { signed<4> a; };\nclass c { k x; };", "undefined type k used in c", 3 },
  { "declare database d;\nstruct s { wstring w; };",
    "wide character type is not supported in this version of Vantrel. Please contact Halvorn Support.", 2 },
  { "declare database d;\nclass c { sequence<wchar> w; };",
    "wide character type is not supported in this version of Vantrel. Please contact Halvorn Support.", 2 },
  { "declare database d;\nclass c { sequence<foo> q; };", "undefined type foo used in c", 2 },
  { "declare database d;\nclass c { sequence<char<33>> q; };", "sequence<char(N)> is limited by 32", 2 },
  { "declare database d;\ndirect struct a { b x; };\ndirect struct b { signed<4> y; };",
    "No direct or normal structs can be included into direct struct", 3 },
  { "declare database d;\ndirect struct a { string s; };", "Direct struct can't include dynamic or optional fields", 2 },
  { "declare database d;\ndirect struct a { signed<4> x; };\nclass c { vector<a> v; };",
    "Direct struct can not be element of a vector", 3 },
  // whole-schema statements, in the order of the passes
  { "class c { foo x; };", "undefined type foo used in c", 1 },
  { "class c { signed<4> a; };", "schema name is not defined", 1 },
  { "declare database d;\niot server;\nclass c { signed<4> a; };", "IoT schema has no 'uptable' or 'downtable' classes", 3 },
  { "declare database d;\nclass c { oid; signed<4> a; };", "oid is not declared", 2 },
  { "declare database d;\ndeclare oid s[5];\nstruct s { string a; };", "oid type s cannot be dynamic", 3 },
  { "declare database d;\ndeclare oid s[5];\nstruct s { b x; };\nstruct b { signed<4> n; optional signed<4> o; };",
    "oid type s cannot be dynamic", 4 },  // dynamic through an inner struct
  { "declare database d;\ndeclare oid unsigned<4>[5];\nclass c { ref<x> r; };",
    "A reference to undefined class \"x\" found.", 3 },
  { "declare database d;\ndeclare oid unsigned<4>[5];\nclass k { signed<4> a; };\nclass c { ref<k> r; };",
    "Class \"k\" has no oid.", 4 },
  { "declare database d;\nclass k { signed<4> a; };\nclass c { vector<autoid_t<k>> r; };", "Class \"k\" has no autoid.", 3 },
  { "declare database d;\nclass c { ref r; };", "undefined type ref used in c", 2 },  // no ref without declare oid
};
// clang-format on

TEST(AnalyzerFinish, RefusedTypesAndSchemas) {
  for (const Refused& c : kTypeErrors) {
    Finished a(c.schema);
    EXPECT_FALSE(a.ok) << c.schema;
    EXPECT_EQ(a.msg, c.message) << c.schema;
    EXPECT_EQ(a.line, c.line) << c.schema;
  }
}

TEST(AnalyzerFinish, StructFlagsAreTransitive) {
  Finished a(
      "declare database d;\n"
      "declare oid Key[10];\n"
      "class c { Outer o; ref r; };\n"  // types used before they are declared
      "struct Outer { Mid m; signed<4> a_long_name; };\n"
      "struct Mid { Inner i; };\n"
      "struct Inner { blob b; signed<4> x = 1; };\n"
      "struct Key { signed<4> k; };\n"
      "enum E { one };\n"
      "class f { E e; char<4> z; };\n"
      "class q { sequence<signed<4>> s; };\n"
      "struct ref_in_struct { ref<nowhere> r; };\n");  // refs of structs go unchecked
  ASSERT_FINISHED(a);
  const Struct* outer = a.type("Outer");
  EXPECT_TRUE(outer->m_analyzed);
  EXPECT_TRUE(outer->m_isDynamic);
  EXPECT_TRUE(outer->m_hasBlobs);
  EXPECT_TRUE(outer->m_hasInitializers);
  EXPECT_EQ(outer->m_maxFieldName, 11);
  EXPECT_TRUE(a.cls("c")->m_hasBlobs);
  EXPECT_EQ(a.schema().m_objid_type_ptr, a.type("Key"));
  EXPECT_FALSE(a.type("Key")->m_isDynamic);
  EXPECT_FALSE(a.cls("f")->m_isDynamic);
  EXPECT_EQ(a.cls("f")->v_field[0].m_penum, a.schema().findEnum("E"));
  EXPECT_TRUE(a.cls("q")->m_hasSequences);
  EXPECT_FALSE(a.cls("q")->m_isDynamic);
  EXPECT_EQ(S(a.cls("q")->v_field[0].m_seqElemStruct->m_name), "signed<4>");
}

// The walk down nested types keeps its own stack; a cycle at the far end of a
// long chain is still found.
TEST(AnalyzerFinish, LongChainsOfNestedStructs) {
  for (int n : {200, 10000}) {
    for (bool cycle : {false, true}) {
      std::string text = "declare database d;\n";
      for (int i = 0; i + 1 < n; i++)
        text += "struct s" + std::to_string(i) + " { s" + std::to_string(i + 1) + " x; signed<2> v; };\n";
      text += "struct s" + std::to_string(n - 1) + (cycle ? " { s0 back; };\n" : " { string v; };\n");
      text += "class c { s0 head; };";
      Finished a(text);
      if (cycle) {
        EXPECT_EQ(a.msg, "recursive definition of \"s0\"") << n;
        continue;
      }
      ASSERT_FINISHED(a);
      EXPECT_TRUE(a.cls("c")->m_isDynamic) << n;  // the string at the far end
    }
  }
}

TEST(AnalyzerFinish, SystemClassesFollowTheUserClasses) {
  Finished a(
      "declare database d;\ndeclare auto_oid[10];\niot router<3>;\n"
      "distributed class a { signed<4> x; };\n"
      "transient uptable class b { signed<4> x; };\n"
      "persistent distributed class c { signed<4> x; };\n"
      "persistent downtable class e { signed<4> x; };\n");
  ASSERT_FINISHED(a);
  EXPECT_EQ(a.classNames(), "a b c e @sys_distribs_disk @sys_distribs_inmem @sys_iot_ts @sys_iot_del_disk "
                            "@sys_iot_del_inmem");
  EXPECT_TRUE(a.cls("@sys_iot_ts")->m_persistent);  // one per schema, persistent if any table is
  EXPECT_TRUE(a.cls("@sys_distribs_disk")->m_analyzed);

  Finished t("declare database d;\niot device;\ntransient uptable class b { signed<4> x; };");
  ASSERT_FINISHED(t);
  EXPECT_EQ(t.classNames(), "b @sys_iot_ts @sys_iot_del_inmem");
  EXPECT_FALSE(t.cls("@sys_iot_ts")->m_persistent);
}

// list_index_ of fixed-size classes without oid and autoid; index codes run
// over the classes in declaration order, system classes included.
TEST(AnalyzerFinish, ImplicitListIndexAndIndexCodes) {
  const char* text =
      "declare database d;\ndeclare auto_oid[5];\n"
      "class z { signed<4> a; };\n"
      "class y { string s; };\n"
      "class x { autoid[5]; };\n"
      "class w { signed<4> a; list; };\n"
      "distributed class v { signed<4> a; };\n";
  for (bool nosort : {false, true}) {
    antest::Options o;
    o.nosort = nosort;
    Finished a(text, o);
    ASSERT_FINISHED(a);
    const Index& li = a.cls("z")->v_index[0];
    EXPECT_EQ(S(li.m_name), "list_index_");
    EXPECT_EQ(li.m_IndexType, nosort ? IT_Tree : IT_List);
    EXPECT_TRUE(li.m_isListIndex && li.m_isUnique && a.cls("z")->m_sequential);
    EXPECT_EQ(li.m_code, 0);
    EXPECT_EQ(a.cls("y")->v_index.size(), 0u);  // dynamic
    EXPECT_EQ(antest::Analysis::indexNames(a.cls("x")), "autoid");
    EXPECT_EQ(a.cls("x")->v_index[0].m_code, 1);
    EXPECT_EQ(antest::Analysis::indexNames(a.cls("w")), "list_index_");  // declared, not doubled
    EXPECT_EQ(antest::Analysis::indexNames(a.cls("v")), "timestamp_idx@");
    EXPECT_EQ(a.cls("v")->v_index[0].m_code, 3);
    const Class* sys = a.cls("@sys_distribs_inmem");
    EXPECT_EQ(sys->v_index[0].m_code, 4);
    EXPECT_EQ(sys->v_index[1].m_code, 5);
    EXPECT_EQ(sys->v_index[1].v_fldParsed[0][0].m_pFld, &sys->v_field[1]);
  }
}

TEST(AnalyzerFinish, UpdatedBitmapGetsAnImplicitClassUpdateEvent) {
  Finished a(
      "declare database d;\n"
      "class Alpha { signed<4> a; boolean updated_bitmap[]; };\n"
      "class Beta { signed<4> b; };\n"
      "class Gamma { signed<4> g; boolean updated_bitmap[]; };\n");
  ASSERT_FINISHED(a);
  const Event& e = a.cls("Alpha")->v_events[0];
  EXPECT_EQ(S(e.m_name), "implUpdateAlphaEvent");
  EXPECT_EQ(e.m_type, Event::CLASS_UPDATE);
  EXPECT_EQ(e.m_pFld, &a.cls("Alpha")->v_field[1]);
  EXPECT_EQ(a.cls("Gamma")->v_events[0].m_eventId, 1);
  EXPECT_FALSE(a.schema().s_allEventNames.find("implUpdateAlphaEvent"));
}

// ---------------------------------------------------------------- element type codes

struct Code {
  const char* field;
  int etype;
  const char* unionel;
  const char* size;
  int bitSize;
};

// clang-format off
const Code kCodes[] = {
  { "u1", 1, "u1", "1", 0 },    { "u2", 2, "u2", "2", 0 },     { "u4", 3, "u4", "4", 0 },
  { "i1", 4, "i1", "1", 0 },    { "i2", 5, "i2", "2", 0 },     { "i4", 6, "i4", "4", 0 },
  { "ch", 7, "", "5", 0 },      { "st", 8, "", "0", 0 },       { "r", 9, "", "0", 0 },
  { "fl", 10, "flt", "4", 0 },  { "db", 11, "dbl", "8", 0 },   { "u8", 12, "u8", "8", 0 },
  { "i8", 13, "i8", "8", 0 },   { "ai", 13, "i8", "8", 0 },    { "dec", 13, "i8", "8", 0 },
  { "autoid", 14, "i8", "8", 0 }, { "auto_oid@", 18, "i8", "8", 0 },
  { "dt", 16, "u4", "4", 0 },   { "tm", 17, "u4", "4", 0 },    { "dtm", 24, "u8", "8", 0 },
  { "nc", 19, "", "6", 0 },     { "ns", 20, "", "0", 0 },      { "bi", 25, "", "6", 0 },
  { "vb", 26, "", "0", 0 },     { "bo", 23, "ptr", "1", 1 },   { "bits", 23, "ptr", "1", 12 },
  { "e1", 1, "u1", "1", 0 },    { "e2", 5, "i2", "2", 0 },     { "e4", 6, "i4", "4", 0 },
  { "d", 50, "", "DS", 0 },     { "s", 50, "", "0", 0 },       { "bl", 51, "", "0", 0 },
  { "q30", 30, "", "4", 0 },    { "q31", 31, "", "4", 0 },     { "q32", 32, "", "4", 0 },
  { "q32d", 32, "", "4", 0 },   { "q32t", 32, "", "4", 0 },    { "q33", 33, "", "4", 0 },
  { "q34", 34, "", "4", 0 },    { "q35", 35, "", "4", 0 },     { "q36", 36, "", "4", 0 },
  { "q37", 37, "", "4", 0 },    { "q38", 38, "", "4", 0 },     { "q39", 39, "", "4", 0 },
  { "q40c", 40, "", "4", 0 },   { "q40b", 40, "", "4", 0 },    { "q40s", 40, "", "4", 0 },
  { "q41", 41, "", "4", 0 },
};
// clang-format on

const char kAllTypes[] =
    "declare database d;\ndeclare oid unsigned<4>[10];\ndeclare auto_oid[5];\n"
    "enum E1 { a }; enum E2 { b = 300 }; enum E4 { c = 70000 };\n"
    "struct S { signed<4> x; };\ndirect struct D { signed<4> x; double y; };\n"
    "class c {\n"
    " autoid[10];\n"
    " unsigned<1> u1; unsigned<2> u2; unsigned<4> u4; signed<1> i1; signed<2> i2; signed<4> i4;\n"
    " char<5> ch; string st; ref r; float fl; double db; unsigned<8> u8; signed<8> i8; autoid_t ai;\n"
    " decimal<12,4> dec; date dt; time tm; datetime dtm; nchar<3> nc; nstring ns; binary<6> bi; varbinary vb;\n"
    " boolean bo; boolean bits[12]; E1 e1; E2 e2; E4 e4; D d; S s; blob bl;\n"
    " sequence<unsigned<1>> q30; sequence<unsigned<2>> q31; sequence<unsigned<4>> q32; sequence<date> q32d;\n"
    " sequence<time> q32t; sequence<unsigned<8>> q33; sequence<signed<1>> q34; sequence<signed<2>> q35;\n"
    " sequence<signed<4>> q36; sequence<signed<8>> q37; sequence<float> q38; sequence<double> q39;\n"
    " sequence<char<8>> q40c; sequence<binary<4>> q40b; sequence<S> q40s; sequence<datetime> q41;\n"
    " sequence<string> bad_seq; sequence<D> bad_direct;\n"
    "};\n";

TEST(AnalyzerFinish, ElementTypeCodes) {
  Finished a(kAllTypes);
  ASSERT_FINISHED(a);
  Class& c = *a.cls("c");
  a.type("D")->m_layout.c.m_size = mstring("DS");  // a direct struct's size comes from the layout
  for (const Code& k : kCodes) {
    const Field* f = c.findField(k.field);
    ASSERT_NE(f, nullptr) << k.field;
    Field::DictInfo d = f->dict_info(true);
    EXPECT_EQ(d.etype, k.etype) << k.field;
    EXPECT_EQ(S(d.unionel), k.unionel) << k.field;
    EXPECT_EQ(S(d.size), k.size) << k.field;
    EXPECT_EQ(d.bit_size, k.bitSize) << k.field;
  }
  // Initializer kinds follow the codes.
  const struct {
    const char* field;
    FieldInitType init;
  } inits[] = {{"u1", INIT_INT},    {"dtm", INIT_INT},    {"e4", INIT_INT},  {"db", INIT_DOUBLE},
               {"bo", INIT_BOOL},   {"vb", INIT_STRING},  {"nc", INIT_STRING}, {"r", INIT_NONE},
               {"autoid", INIT_NONE}, {"q36", INIT_NONE}, {"d", INIT_NONE}};
  for (const auto& i : inits) EXPECT_EQ(c.findField(i.field)->getInitializerType(), i.init) << i.field;

  // $version has a size of 4 as a type but 2 as an element.
  Field v;
  v.m_pstruct = a.type("$version");
  EXPECT_EQ(v.dict_info(false).etype, 15);
  EXPECT_EQ(S(v.dict_info(false).size), "2");

  // With DDL compatibility every enum takes four bytes.
  antest::Options o;
  o.nosort = true;
  Finished n(kAllTypes, o);
  ASSERT_FINISHED(n);
  EXPECT_EQ(n.cls("c")->findField("e1")->dict_info(false).etype, 6);
}

TEST(AnalyzerFinish, ElementTypePanics) {
  Finished a(kAllTypes);
  ASSERT_FINISHED(a);
  Class& c = *a.cls("c");
  Struct odd("odd", ET_SIMPLE, 1, 1, 1, 1, "char");
  Field oddField;
  oddField.m_pstruct = &odd;
  const struct {
    const Field* field;
    const char* text;
  } cases[] = {
      {c.findField("s"), "illegal index field type"},
      {c.findField("bl"), "illegal index field type"},
      {&oddField, "unknown simple type"},
      {c.findField("bad_seq"),
       "Wrong sequence element type string: sequences can be defined only singined/unsigned integer, floatig point, "
       "date/time, character and fixed size struct type."},
      {c.findField("bad_direct"),
       "Wrong sequence element type D: sequences can be defined only singined/unsigned integer, floatig point, "
       "date/time, character and fixed size struct type."},
  };
  for (const auto& k : cases) {
    ProcResult r = procutil::runChild([&] { k.field->dict_info(false); });
    EXPECT_EQ(r.status, 255) << k.text;
    EXPECT_EQ(r.err, std::string("internal error: ") + k.text + "\n");
  }
}

}  // namespace
