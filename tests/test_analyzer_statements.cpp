// Analyzer: valid statements and the model that analyze leaves behind.
#include <gtest/gtest.h>

#include <string>

#include "analyzer_util.h"

namespace {

using antest::Analysis;
using antest::Options;

std::string S(const mstring& m) { return m.c_str(); }

std::string indexFields(const Index& x) {
  std::string r;
  for (unsigned int i = 0; i < x.v_indfield.size(); i++) r += (i ? "," : "") + S(x.v_indfield[i]);
  return r;
}

#define ASSERT_OK(a) ASSERT_TRUE((a).ok) << (a).msg << " at line " << (a).line

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
      const Struct* t = a.type("e");
      const int want = nosort ? c.sizeNosort : c.size;
      EXPECT_EQ((int)t->m_layout.c.m_size, want) << c.body;
      EXPECT_EQ((int)t->m_layout.u.m_align, want) << c.body;
      const Enum* e = a.schema().findEnum("e");
      EXPECT_EQ(e->minVal, c.minVal) << c.body;
      EXPECT_EQ(e->maxVal, c.maxVal) << c.body;
    }
  }
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
    EXPECT_EQ(f.rare().precision, c.precision) << c.type;
  }
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

// The options set what a class does not say; "" suppresses every class and direct struct, never a plain struct.
TEST(AnalyzerStatements, OptionsFillTheUnsaidModifiers) {
  const char* text =
      "class plain { signed<4> a; };\n"
      "persistent nonatomic class pc { signed<4> a; };\n"
      "transient class ta { signed<4> a; };\n"
      "struct plain2 { signed<4> a; };\n"
      "direct struct ds { signed<4> a; };\n";
  Options o;
  o.persistent = o.atomic = o.allCompact = true;
  o.suppress = {"plain", "ds", "plain2"};
  Analysis b(text, o);
  ASSERT_OK(b);
  const Class* p = b.cls("plain");
  EXPECT_TRUE(p->m_persistent && p->m_atomic && p->m_compact && p->m_suppressApi);
  EXPECT_FALSE(b.cls("ta")->m_persistent);  // written placement wins
  EXPECT_FALSE(b.cls("pc")->m_atomic || b.cls("pc")->m_suppressApi);
  EXPECT_TRUE(b.type("ds")->m_suppressApi);
  EXPECT_FALSE(b.type("plain2")->m_suppressApi);
  o.suppress = {""};
  Analysis c(text, o);
  ASSERT_OK(c);
  EXPECT_TRUE(c.cls("pc")->m_suppressApi && c.type("ds")->m_suppressApi);
  EXPECT_FALSE(c.type("plain2")->m_suppressApi);
}

// Forms that are accepted without a word: the model of the valid ones is in tests/expected/model.
TEST(AnalyzerStatements, QuietForms) {
  const char* cases[] = {
      "persistent",                                     // a modifier at the end of input is dropped
      "compact compact local local class c { };",       // repeatable modifiers
      "class c { signed<4> a; unique };",               // pending modifiers end with the body
      "class c { inclusive signed<4> a; string b; };",  // inclusive is never pending
      "class k { signed<4> a; };\nstruct k { signed<4> a; };",  // a struct may reuse an earlier class's name
      "struct point { boolean nullable; };\nenum router { server };",  // free words stay free
      "enum e { class, date };",                        // element names are never tested
      "class c { signed<4> date; };",                   // the first plain name escapes the test
      "calculator { }",
  };
  for (const char* text : cases) {
    Analysis a(text);
    EXPECT_TRUE(a.ok) << text << ": " << a.msg;
  }
  Analysis w("declare OID unsigned<4>[5];\ndeclare database d;");
  EXPECT_EQ(w.warnings, std::vector<std::string>{"OID is deprecated, use oid instead"});
  EXPECT_EQ(w.dbnames.names, std::vector<std::string>{"d"});
}

// Which words -sql adds, case-sensitively.
TEST(AnalyzerStatements, ReservedWords) {
  struct Case {
    const char* word;
    bool plain, sql;
  };
  const Case cases[] = {{"class", true, true},     {"Class", false, false}, {"count", false, true},
                        {"TTL_count", false, true}, {"OID", true, true},
                        {"collate", true, true},   {"thick", false, false}, {"numeric", false, true},
                        {"TTL_clock_time", false, true}, {"add", false, true}, {"", false, false}};
  for (const Case& c : cases) {
    EXPECT_EQ(Analyzer::isReservedWord(c.word, false), c.plain) << c.word;
    EXPECT_EQ(Analyzer::isReservedWord(c.word, true), c.sql) << c.word;
  }
}

}  // namespace
