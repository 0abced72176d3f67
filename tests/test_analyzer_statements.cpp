// Analyzer: valid statements and the model that analyze leaves behind.
#include <gtest/gtest.h>

#include <string>

#include "analyzer_util.h"

namespace {

using antest::Analysis;
using antest::Options;

std::string S(const mstring& m) { return m.c_str(); }

std::string initVals(const Field& f) {
  std::string r;
  for (unsigned int i = 0; i < f.m_initVals.size(); i++) r += (i ? "," : "") + S(f.m_initVals[i]);
  return r;
}

std::string indexFields(const Index& x) {
  std::string r;
  for (unsigned int i = 0; i < x.v_indfield.size(); i++) r += (i ? "," : "") + S(x.v_indfield[i]);
  return r;
}

#define ASSERT_OK(a) ASSERT_TRUE((a).ok) << (a).msg << " at line " << (a).line

TEST(AnalyzerStatements, SystemFieldsFirstIndicatorsLast) {
  Analysis a(
      "declare database d;\n"
      "declare auto_oid[100];\n"
      "iot server;\n"
      "distributed uptable class c {\n"
      "  nullable signed<4> a = 5;\n"
      "  string s;\n"
      "  nullable double x;\n"
      "};\n");
  ASSERT_OK(a);
  Class* c = a.cls("c");
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(Analysis::fieldNames(c),
            "auto_oid@ timestamp@ iot_db_id@ iot_object_id@ iot_timestamp@ agent_id a s x a_indicator x_indicator");
  EXPECT_EQ(Analysis::indexNames(c), "timestamp_idx@ iot_idx_id@");
  const mvector<Field>& f = c->v_field;
  EXPECT_EQ(S(f[0].m_eltype), "$auto_oid");
  EXPECT_FALSE(f[0].m_isHidden);  // made by hand, not as a system field
  EXPECT_TRUE(f[1].m_isHidden);
  EXPECT_FALSE(f[5].m_isHidden);  // agent_id is visible
  for (unsigned int i = 0; i < 6; i++) EXPECT_EQ(f[i].m_seq_no, 0u) << i;
  EXPECT_EQ(f[6].m_no, 6u);
  EXPECT_EQ(f[6].m_seq_no, 1u);
  EXPECT_EQ(f[8].m_seq_no, 3u);
  EXPECT_EQ(f[9].m_seq_no, 4u);  // indicators draw from the same counter
  EXPECT_EQ(f[6].m_indicator, 9);
  EXPECT_EQ(f[8].m_indicator, 10);
  EXPECT_EQ(f[7].m_indicator, -1);
  EXPECT_EQ(f[9].m_no, 9u);
  EXPECT_TRUE(f[9].m_isIndicator);
  EXPECT_EQ(S(f[9].m_eltype), "boolean");
  EXPECT_EQ(initVals(f[9]), "1");  // a default is not null
  EXPECT_EQ(initVals(f[10]), "");
  EXPECT_EQ(c->m_nNullableFields, 2);
  for (unsigned int i = 0; i < f.size(); i++) EXPECT_EQ(f[i].m_containerStruct, c) << i;
  EXPECT_FALSE(c->v_index[0].m_isUnique);
  EXPECT_EQ(c->v_index[1].m_IndexType, IT_Hash);
  EXPECT_EQ(c->v_index[1].m_expectedCount, 1000);
  EXPECT_TRUE(c->v_index[1].m_hidden);
  EXPECT_EQ(indexFields(c->v_index[1]), "agent_id,iot_db_id@,iot_object_id@");
}

TEST(AnalyzerStatements, NamesOfOneDeclarationShareNumbers) {
  Analysis a(
      "struct s { signed<4> a[3] = {1}, b, c = {4,5,6}; char<8> d; };\n"
      "struct t { signed<4> x = 5, y = 6, z; };\n");
  ASSERT_OK(a);
  const mvector<Field>& f = a.type("s")->v_field;
  ASSERT_EQ(f.size(), 4u);
  for (unsigned int i = 0; i < 3; i++) {
    EXPECT_EQ(f[i].m_no, 0u) << i;
    EXPECT_EQ(f[i].m_seq_no, 1u) << i;
    EXPECT_TRUE(f[i].m_isArray) << i;
    EXPECT_EQ(f[i].m_arraySize, 3) << i;  // every name repeats the declarator
  }
  EXPECT_EQ(initVals(f[0]), "1,0,0");  // padded with "0"
  EXPECT_EQ(initVals(f[1]), "");
  EXPECT_EQ(initVals(f[2]), "4,5,6");
  EXPECT_EQ(f[3].m_no, 3u);
  EXPECT_EQ(f[3].m_seq_no, 2u);
  const mvector<Field>& g = a.type("t")->v_field;
  EXPECT_EQ(g[0].m_seq_no, 3u);  // the counter runs over the whole schema
  EXPECT_EQ(initVals(g[0]), "5");
  EXPECT_EQ(initVals(g[1]), "6");
  EXPECT_EQ(initVals(g[2]), "");
}

TEST(AnalyzerStatements, EnumValueTypes) {
  struct Case {
    const char* body;
    int size, sizeNosort, minVal, maxVal;
  } cases[] = {
      {"a, b = 255", 1, 4, 0, 255},
      {"a = -1, b", 2, 4, -1, 0},
      {"a = 256", 2, 4, 256, 256},
      {"a = -32768, b = 32767", 2, 4, -32768, 32767},
      {"a = -32769", 4, 4, -32769, -32769},
      {"a = 32768", 4, 4, 32768, 32768},
      {"a = 5, b, c = 2, d", 1, 4, 2, 6},
  };
  for (const Case& c : cases) {
    for (bool nosort : {false, true}) {
      Options o;
      o.nosort = nosort;
      Analysis a(std::string("enum e { ") + c.body + " };", o);
      ASSERT_OK(a);
      Struct* t = a.type("e");
      ASSERT_NE(t, nullptr) << c.body;
      int want = nosort ? c.sizeNosort : c.size;
      EXPECT_EQ((int)t->m_layout.c.m_size, want) << c.body;
      EXPECT_EQ((int)t->m_layout.u.m_align, want) << c.body;
      EXPECT_EQ(t->m_category, ET_SIMPLE);
      EXPECT_EQ(S(t->m_cType), "e");
      Enum* e = a.schema().findEnum("e");
      EXPECT_EQ(e->minVal, c.minVal) << c.body;
      EXPECT_EQ(e->maxVal, c.maxVal) << c.body;
    }
  }
  Analysis a("enum e { a = 5, b, c = 2, d };\nenum f { x = -7 };");
  ASSERT_OK(a);
  long v = 99;
  const char* names[] = {"a", "b", "c", "d", "x"};
  const long values[] = {5, 6, 2, 3, -7};
  for (int i = 0; i < 5; i++) {
    EXPECT_TRUE(a.schema().enumNameToInteger(names[i], &v));
    EXPECT_EQ(v, values[i]);
  }
  v = 99;
  EXPECT_FALSE(a.schema().enumNameToInteger("e", &v));
  EXPECT_EQ(v, 99);
}

TEST(AnalyzerStatements, DecimalWidthsAndTypeNames) {
  struct Case {
    const char* type;
    const char* eltype;
    int precision;
  } cases[] = {
      {"numeric<3,1>", "signed<2>", 1}, {"decimal<2,2>", "signed<1>", 2}, {"decimal<5 x>", "signed<4>", 0},
      {"decimal<9,0>", "signed<4>", 0}, {"decimal<10,3>", "signed<8>", 3}, {"decimal<19,19>", "signed<8>", 19},
      {"decimal<4>>", "signed<2>", 0},  // a width alone: the second '>' ends it
      {"char<0x10>", "char<16>", -1},   {"binary<010>", "binary<8>", -1},  {"nchar<5>", "nchar<5>", -1},
      {"unsigned<8>", "unsigned<8>", -1}, {"mystery", "mystery", -1},      {"char<0>", "char<0>", -1},
  };
  for (const Case& c : cases) {
    Analysis a(std::string("struct s { ") + c.type + " f; };");
    ASSERT_OK(a);
    const Field& f = a.type("s")->v_field[0];
    EXPECT_EQ(S(f.m_eltype), c.eltype) << c.type;
    EXPECT_EQ(f.m_precision, c.precision) << c.type;
  }

  Analysis a("struct s { nchar<5> a; nchar<5> b; char<16> c; char<0x10> d; binary<3> e; };");
  ASSERT_OK(a);
  Struct* n5 = a.type("nchar<5>");
  ASSERT_NE(n5, nullptr);
  EXPECT_EQ(n5->m_category, ET_UNICODE_CHARS);
  EXPECT_EQ((int)n5->m_layout.c.m_size, 10);
  EXPECT_EQ((int)n5->m_layout.u.m_align, 2);
  EXPECT_EQ(a.type("char<16>")->m_category, ET_CHARS);
  EXPECT_EQ(a.type("binary<3>")->m_category, ET_BINARY);
  EXPECT_EQ((int)a.type("binary<3>")->m_layout.u.m_size, 3);
  EXPECT_EQ(a.schema().s_struct.get()->size(), 23 + 3 + 1);  // each made once, beside the base types and s
}

TEST(AnalyzerStatements, UpdatedBitmapResizing) {
  struct Case {
    int otherFields;
    const char* decl;
    int size;
    const char* eltype;
  } cases[] = {
      {99, "[3]", 4, "unsigned<1>"},   // n = 100: too small, holds bytes
      {99, "[]", 100, "boolean"},
      {99, "[40]", 40, "boolean"},
      {99, "[500]", 100, "boolean"},
      {299, "[2]", 3, "unsigned<2>"},  // n = 300: two-byte words
      {1, "[0]", 2, "boolean"},
  };
  for (const Case& c : cases) {
    std::string text = "class c {";
    for (int i = 0; i < c.otherFields; i++) text += " signed<4> f" + std::to_string(i) + ";";
    text += std::string(" boolean updated_bitmap") + c.decl + "; };";
    Analysis a(text);
    ASSERT_OK(a);
    const Field* f = a.cls("c")->findField("updated_bitmap");
    ASSERT_NE(f, nullptr);
    EXPECT_TRUE(f->m_isBitmapFld);
    EXPECT_EQ(f->m_arraySize, c.size) << c.otherFields << c.decl;
    EXPECT_EQ(S(f->m_eltype), c.eltype) << c.otherFields << c.decl;
  }
}

TEST(AnalyzerStatements, IotFieldsPerLevel) {
  struct Case {
    const char* iot;
    const char* table;
    const char* fields;
    const char* indexes;  // name:fields ...
  } cases[] = {
      {"device", "uptable", "iot_object_id@ iot_timestamp@ a", "iot_idx_ts@:iot_timestamp@"},
      {"device 7", "downtable", "iot_src_id@ iot_db_id@ iot_object_id@ iot_timestamp@ a",
       "iot_idx_id@:iot_src_id@,iot_db_id@,iot_object_id@"},
      {"server", "uptable", "iot_db_id@ iot_object_id@ iot_timestamp@ agent_id a",
       "iot_idx_id@:agent_id,iot_db_id@,iot_object_id@"},
      {"server", "downtable", "iot_object_id@ iot_timestamp@ agent_id a", "iot_idx_ts@:agent_id,iot_timestamp@"},
      {"router<2>", "uptable", "iot_db_id@ iot_object_id@ iot_timestamp@ src_agent_id dst_agent_id a",
       "iot_idx_id@:src_agent_id,iot_db_id@,iot_object_id@ "
       "iot_idx_ts@:src_agent_id,iot_db_id@,dst_agent_id,iot_timestamp@"},
      {"router<65534> 0x10", "downtable", "iot_db_id@ iot_object_id@ iot_timestamp@ src_agent_id dst_agent_id a",
       "iot_idx_id@:src_agent_id,iot_db_id@,iot_object_id@ "
       "iot_idx_ts@:src_agent_id,iot_db_id@,dst_agent_id,iot_timestamp@"},
  };
  for (const Case& c : cases) {
    Analysis a(std::string("iot ") + c.iot + ";\n" + c.table + " class c { signed<4> a; };\nclass p { signed<4> b; };");
    ASSERT_OK(a);
    Class* cls = a.cls("c");
    EXPECT_EQ(Analysis::fieldNames(cls), c.fields) << c.iot << " " << c.table;
    std::string idx;
    for (unsigned int i = 0; i < cls->v_index.size(); i++)
      idx += (i ? " " : "") + S(cls->v_index[i].m_name) + ":" + indexFields(cls->v_index[i]);
    EXPECT_EQ(idx, c.indexes) << c.iot << " " << c.table;
    EXPECT_EQ(cls->m_iot_type, std::string(c.table) == "uptable" ? IOT_TABLE_UP : IOT_TABLE_DOWN);
    EXPECT_EQ(Analysis::fieldNames(a.cls("p")), "b");  // other classes are plain
    EXPECT_EQ(a.schema().m_dict_flags & 4, 4u);
  }

  struct Agent {
    const char* stmt;
    unsigned short level;
    const char* agent;
  } agents[] = {
      {"iot server;", 1, "1"},      {"iot device;", 65535, "0"},     {"iot device 7;", 65535, "7"},
      {"iot router<5> 0x10;", 5, "0x10"},
      {"iot device 7; iot router<9>;", 9, "7"},  // the last level wins; a missing id keeps the earlier one
  };
  for (const Agent& g : agents) {
    Analysis a(g.stmt);
    ASSERT_OK(a);
    EXPECT_EQ(a.schema().m_iot_level, g.level) << g.stmt;
    EXPECT_EQ(S(a.schema().m_iot_agentId), g.agent) << g.stmt;
  }
}

TEST(AnalyzerStatements, ClassFlagsAndOptions) {
  const char* text =
      "class plain { signed<4> a; };\n"
      "persistent nonatomic local compact class pc { signed<4> a; };\n"
      "transient atomic class ta { signed<4> a; };\n"
      "declare auto_oid[10];\n"
      "distrib class dc { signed<4> a; };\n"
      "struct plain2 { signed<4> a; };\n"
      "direct struct ds { signed<4> a; };\n";
  Analysis a(text);
  ASSERT_OK(a);
  Class* plain = a.cls("plain");
  EXPECT_TRUE(plain->m_isClass);
  EXPECT_FALSE(plain->m_persistent);
  EXPECT_FALSE(plain->m_atomic);
  EXPECT_FALSE(plain->m_compact);
  Class* pc = a.cls("pc");
  EXPECT_TRUE(pc->m_persistent);
  EXPECT_FALSE(pc->m_atomic);
  EXPECT_TRUE(pc->m_local);
  EXPECT_TRUE(pc->m_compact);
  EXPECT_TRUE(a.cls("ta")->m_atomic);
  EXPECT_TRUE(a.cls("dc")->m_distrib);
  EXPECT_FALSE(a.cls("dc")->m_compact);  // the modifiers went back to their start

  Options o;
  o.persistent = true;
  o.atomic = true;
  o.allCompact = true;
  o.suppress = {"plain", "ds", "plain2"};
  Analysis b(text, o);
  ASSERT_OK(b);
  EXPECT_TRUE(b.cls("plain")->m_persistent);
  EXPECT_TRUE(b.cls("plain")->m_atomic);
  EXPECT_TRUE(b.cls("plain")->m_compact);
  EXPECT_FALSE(b.cls("ta")->m_persistent);  // written placement wins
  EXPECT_FALSE(b.cls("pc")->m_atomic);
  EXPECT_TRUE(b.cls("plain")->m_suppressApi);
  EXPECT_FALSE(b.cls("pc")->m_suppressApi);
  EXPECT_TRUE(b.type("ds")->m_suppressApi);
  EXPECT_FALSE(b.type("plain2")->m_suppressApi);  // plain structs are never suppressed

  o.suppress = {""};  // stands for every class and direct struct
  Analysis c(text, o);
  ASSERT_OK(c);
  EXPECT_TRUE(c.cls("pc")->m_suppressApi);
  EXPECT_TRUE(c.type("ds")->m_suppressApi);
  EXPECT_FALSE(c.type("plain2")->m_suppressApi);
}

TEST(AnalyzerStatements, ListOidAutoidHistory) {
  Analysis a(
      "declare auto_oid[10];\n"
      "class c { signed<4> a; list; oid; history[5]; signed<4> b; autoid[10]; };\n"
      "class s { sequences; OID; };\n");
  ASSERT_OK(a);
  Class* c = a.cls("c");
  EXPECT_EQ(Analysis::fieldNames(c), "auto_oid@ a b autoid");
  EXPECT_EQ(Analysis::indexNames(c), "list_index_ autoid");
  EXPECT_TRUE(c->m_sequential);
  EXPECT_FALSE(c->m_sequences);
  EXPECT_TRUE(c->m_hasId);
  EXPECT_TRUE(c->m_hasAutoId);
  EXPECT_FALSE(c->m_history);
  EXPECT_EQ(c->m_autoidEstimate, 10);
  const Index& list = c->v_index[0];
  EXPECT_TRUE(list.m_isListIndex);
  EXPECT_TRUE(list.m_isUnique);
  EXPECT_EQ(list.m_IndexType, IT_Tree);
  EXPECT_EQ(list.v_indfield.size(), 0u);
  const Index& aid = c->v_index[1];
  EXPECT_EQ(aid.m_IndexType, IT_Hash);
  EXPECT_EQ(aid.m_expectedCount, 10);
  EXPECT_TRUE(aid.m_isAutoidIndex);
  EXPECT_EQ(indexFields(aid), "autoid");
  EXPECT_TRUE(c->s_indexNames.find("autoid"));
  EXPECT_EQ(S(c->v_field[3].m_eltype), "$autoid");
  EXPECT_EQ(c->v_field[3].m_no, 3u);
  EXPECT_TRUE(a.cls("s")->m_sequences);
  EXPECT_TRUE(a.cls("s")->m_hasId);
  EXPECT_EQ(a.warnings, (std::vector<std::string>{"History is not currently supported",
                                                   "OID is deprecated, use oid instead"}));

  // Under nosort the autoid field stands right behind auto_oid@ and keeps its number.
  Options o;
  o.nosort = true;
  for (bool autoOid : {true, false}) {
    Analysis b(std::string(autoOid ? "declare auto_oid[10];\n" : "") +
                   "class c { signed<4> a; signed<4> b; autoid[10]; signed<4> d; };",
               o);
    ASSERT_OK(b);
    Class* cb = b.cls("c");
    EXPECT_EQ(Analysis::fieldNames(cb), autoOid ? "auto_oid@ autoid a b d" : "autoid a b d");
    EXPECT_EQ(cb->findField("autoid")->m_no, autoOid ? 3u : 2u);
  }
  // The moved field is still found by the duplicate test.
  Analysis dup("class c { signed<4> a; autoid[10]; signed<4> autoid; };", o);
  EXPECT_EQ(dup.msg, "field autoid already exists");
}

TEST(AnalyzerStatements, FieldForms) {
  Analysis a(
      "declare oid oidt[100];\n"
      "struct oidt { signed<4> a; signed<4> b; };\n"
      "class t { oid; autoid[5]; };\n"
      "class c {\n"
      "  optional oidt o;\n"
      "  sequence<signed<4> desc> q1;\n"
      "  sequence<char<8> ascending> q2;\n"
      "  sequence<decimal<5,0>> q3;\n"
      "  vector<ref<t>> v1;\n"
      "  vector<autoid_t> v2;\n"
      "  ref<t> r;\n"
      "  autoid_t<t> at;\n"
      "  rectangle<double> rc[3];\n"
      "  rect<signed<4>> rc2[2];\n"
      "  point<float> pt[8];\n"
      "  nullable vector<signed<2>> nv;\n"
      "  signed<4> date;\n"  // the first plain name escapes the reserved-word test
      "};\n");
  ASSERT_OK(a);
  Class* c = a.cls("c");
  EXPECT_EQ(Analysis::fieldNames(c), "o q1 q2 q3 v1 v2 r at rc rc2 pt nv date nv_indicator");
  Field* o = c->findField("o");
  EXPECT_TRUE(o->m_isOptional);
  EXPECT_EQ(S(o->m_eltype), "oidt");
  Field* q1 = c->findField("q1");
  EXPECT_TRUE(q1->m_isSequence);
  EXPECT_EQ(S(q1->m_eltype), "sequence");
  EXPECT_EQ(S(q1->m_seqElemType), "signed<4>");
  EXPECT_EQ(S(q1->m_seqOrder), "ZKT_SEQ_DESC_ORDER");
  EXPECT_EQ(S(c->findField("q2")->m_seqOrder), "ZKT_SEQ_ASC_ORDER");
  EXPECT_EQ(S(c->findField("q3")->m_seqOrder), "ZKT_SEQ_NO_ORDER");
  EXPECT_EQ(c->findField("q3")->m_precision, 0);
  EXPECT_TRUE(a.schema().m_useSequences);
  Field* v1 = c->findField("v1");
  EXPECT_TRUE(v1->m_isVector);
  EXPECT_EQ(S(v1->m_eltype), "ref");
  EXPECT_EQ(S(v1->m_refto), "t");
  EXPECT_EQ(S(c->findField("v2")->m_refto), "");
  EXPECT_EQ(S(c->findField("r")->m_refto), "t");
  EXPECT_EQ(S(c->findField("at")->m_eltype), "autoid_t");
  EXPECT_EQ(S(c->findField("at")->m_refto), "t");
  Field* rc = c->findField("rc");
  EXPECT_TRUE(rc->m_isRTreeRect);
  EXPECT_TRUE(rc->m_isArray);
  EXPECT_EQ(rc->m_arraySize, 6);
  EXPECT_EQ(S(c->findField("rc2")->m_eltype), "signed<4>");
  Field* pt = c->findField("pt");
  EXPECT_TRUE(pt->m_isRTreePoint);
  EXPECT_EQ(pt->m_arraySize, 8);
  EXPECT_TRUE(c->findField("nv")->m_isNullable);
  EXPECT_TRUE(c->findField("nv")->m_isVector);

  // ref takes the layout of the oid type under its own name and category.
  Struct* ref = a.type("ref");
  ASSERT_NE(ref, nullptr);
  EXPECT_EQ(S(ref->m_name), "ref");
  EXPECT_EQ(ref->m_category, ET_REF);
  EXPECT_EQ(Analysis::fieldNames(ref), "a b");
  EXPECT_EQ(a.schema().s_struct.get()->find(*ref)->get(), ref);
  EXPECT_TRUE(a.schema().m_useObjid);
  EXPECT_EQ(a.schema().m_nobjid_estimated, 100u);

  Analysis b("declare oid unsigned<8>[5];\nstruct s { ref r; };");
  ASSERT_OK(b);
  EXPECT_EQ(S(b.type("ref")->m_cType), "uint8");
  EXPECT_EQ((int)b.type("ref")->m_layout.u.m_size, 8);
  EXPECT_EQ(b.type("ref")->m_category, ET_REF);
  EXPECT_EQ(b.type("unsigned<8>")->m_category, ET_SIMPLE);
}

TEST(AnalyzerStatements, DirectStructsAndNameRules) {
  Analysis a(
      "class k { signed<4> a; };\n"
      "struct k { signed<4> a; };\n"  // a struct may reuse an earlier class's name
      "direct struct ds { signed<4> a[4], b; double c; };\n"
      "packed direct struct pd { char<3> a; };\n"
      "struct s { ds x; later y; };\n"
      "direct struct later { ds z; };\n"
      "class c { ds x; };\n");
  ASSERT_OK(a);
  Struct* ds = a.type("ds");
  EXPECT_EQ(ds->m_category, ET_DIRECT_STRUCT);
  EXPECT_TRUE(ds->m_isDirectStruct);
  EXPECT_FALSE(ds->m_is_packed);
  EXPECT_TRUE(a.type("pd")->m_is_packed);
  EXPECT_EQ(Analysis::fieldNames(ds), "a b c");
  EXPECT_EQ(ds->v_field[1].m_arraySize, 4);
  EXPECT_EQ(ds->v_field[2].m_no, 0u);  // direct fields are not numbered
  EXPECT_EQ(ds->v_field[2].m_seq_no, 0u);
  Struct* s = a.type("s");
  EXPECT_TRUE(s->m_hasDirectStruct);
  EXPECT_TRUE(s->v_field[0].m_isDirectStruct);
  EXPECT_FALSE(s->v_field[1].m_isDirectStruct);  // declared later: not seen
  EXPECT_TRUE(a.type("later")->v_field[0].m_isDirectStruct);
  EXPECT_TRUE(a.cls("c")->m_hasDirectStruct);
  EXPECT_NE(a.cls("k"), nullptr);
  EXPECT_NE(a.type("k"), nullptr);
  EXPECT_NE((Struct*)a.cls("k"), a.type("k"));
}

TEST(AnalyzerStatements, QuietForms) {
  const char* cases[] = {
      "persistent",                                     // a modifier at the end of input is dropped
      "compact compact local local class c { };",       // repeatable modifiers
      "class c { signed<4> a; unique };",               // pending modifiers end with the body
      "class c { inclusive signed<4> a; string b; };",  // inclusive is never pending
      "class c { };",
  };
  for (const char* text : cases) {
    Analysis a(text);
    EXPECT_TRUE(a.ok) << text << ": " << a.msg;
  }
  Analysis e("calculator { }");
  EXPECT_EQ(e.schema().s_calc, nullptr);
  Analysis calc("class a { }; class b { }; calculator { a<5>, b<0x10> };");
  ASSERT_OK(calc);
  ASSERT_NE(calc.schema().s_calc, nullptr);
  ASSERT_EQ(calc.schema().s_calc->calc_els.size(), 2u);
  EXPECT_EQ(S(calc.schema().s_calc->calc_els[1].m_class_name), "b");
  EXPECT_EQ(calc.schema().s_calc->calc_els[1].m_nobjs, 16);
  EXPECT_TRUE(calc.schema().s_allCalcClasses.find("a"));

  Analysis w("declare OID unsigned<4>[5];\ndeclare database d;");
  ASSERT_OK(w);
  EXPECT_EQ(w.warnings, std::vector<std::string>{"OID is deprecated, use oid instead"});
  EXPECT_EQ(w.dbnames.names, std::vector<std::string>{"d"});
  EXPECT_EQ(S(w.schema().m_dbname), "d");
  Analysis ha("declare HA[7];");
  EXPECT_EQ(ha.schema().m_HA_estimate, 7u);
  EXPECT_TRUE(ha.schema().auto_oid_declared());
}

TEST(AnalyzerStatements, BaseTypesFollowOptions) {
  struct Case {
    bool large, nosort;
    int a8, blobSize, blobAlign, seq;
    unsigned int flags;
  } cases[] = {
      {false, false, 4, 8, 4, 4, 0},
      {true, false, 8, 12, 8, 8, 1},
      {false, true, 8, 8, 4, 4, 2},
      {true, true, 8, 12, 8, 8, 3},
  };
  for (const Case& c : cases) {
    Options o;
    o.large = c.large;
    o.nosort = c.nosort;
    Analysis a("", o);
    ASSERT_OK(a);
    EXPECT_EQ(a.schema().m_dict_flags, c.flags);
    EXPECT_EQ(a.schema().s_struct.get()->size(), 23);
    for (const char* t : {"signed<8>", "autoid_t", "$autoid", "$auto_oid", "double", "unsigned<8>", "datetime"}) {
      EXPECT_EQ((int)a.type(t)->m_layout.c.m_align, c.a8) << t;
      EXPECT_EQ((int)a.type(t)->m_layout.u.m_size, 8) << t;
    }
    EXPECT_EQ((int)a.type("blob")->m_layout.u.m_size, c.blobSize);
    EXPECT_EQ((int)a.type("blob")->m_layout.c.m_align, c.blobAlign);
    EXPECT_EQ((int)a.type("sequence")->m_layout.c.m_size, c.seq);
    EXPECT_EQ((int)a.type("string")->m_layout.c.m_size, 2);
    EXPECT_EQ((int)a.type("string")->m_layout.u.m_size, 4);
    EXPECT_EQ((int)a.type("$version")->m_layout.u.m_size, 4);
    EXPECT_EQ(S(a.type("$version")->m_cType), "int2");
    EXPECT_TRUE(a.type("blob")->m_hasBlobs);
    EXPECT_TRUE(a.type("nstring")->m_isDynamic);
    EXPECT_FALSE(a.type("boolean")->m_isDynamic);
    EXPECT_EQ(a.type("ref"), nullptr);  // only after declare oid
    EXPECT_EQ(a.type("uint4"), nullptr);  // a C type name, not a schema type
  }
}

TEST(AnalyzerStatements, ReservedWords) {
  EXPECT_FALSE(Analyzer::isReservedWord("Class", true));
  EXPECT_TRUE(Analyzer::isReservedWord("class", false));
  EXPECT_FALSE(Analyzer::isReservedWord("count", false));
  EXPECT_TRUE(Analyzer::isReservedWord("count", true));
  EXPECT_FALSE(Analyzer::isReservedWord("TTL_count", false));
  EXPECT_TRUE(Analyzer::isReservedWord("TTL_clock_time", true));
  EXPECT_TRUE(Analyzer::isReservedWord("OID", false));
  EXPECT_TRUE(Analyzer::isReservedWord("collate", false));
  for (const char* w : {"thick", "inclusive", "kdtree", "rtree", "patricia", "trigram", "rect", "rectangle", "point",
                        "sequence", "nullable", "server", "device", "router", "enum"})
    EXPECT_FALSE(Analyzer::isReservedWord(w, true)) << w;
  for (const char* w : {"atomic", "nonatomic", "blob", "boolean", "varbinary", "decimal", "numeric"}) {
    EXPECT_FALSE(Analyzer::isReservedWord(w, false)) << w;
    EXPECT_TRUE(Analyzer::isReservedWord(w, true)) << w;
  }
  // Free names stay free as field, struct and enum names.
  Analysis a("struct point { boolean nullable; };\nenum router { server };");
  EXPECT_TRUE(a.ok) << a.msg;
  // Element names are never tested against the reserved words.
  Analysis b("enum e { class, date };");
  EXPECT_TRUE(b.ok) << b.msg;
}

}  // namespace
