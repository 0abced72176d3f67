// Analyzer: index declarations, events and TTL clauses; refused forms and the model that valid ones leave.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "analyzer_util.h"
#include "proc_util.h"

namespace {

using antest::Analysis;
using antest::Options;

std::string S(const mstring& m) { return m.c_str(); }

std::string join(const mvector<mstring>& v) {
  std::string r;
  for (unsigned int i = 0; i < v.size(); i++) r += (i ? "," : "") + S(v[i]);
  return r;
}
std::string bits(const mvector<bool>& v) {
  std::string r;
  for (unsigned int i = 0; i < v.size(); i++) r += v[i] ? '1' : '0';
  return r;
}

#define ASSERT_OK(a) ASSERT_TRUE((a).ok) << (a).msg << " at line " << (a).line

struct Refused {
  const char* schema;
  const char* message;  // as the reporter shows it
  int line;
  bool sql = false;
};

// clang-format off
const Refused kRefused[] = {
  // index words
  { "persistent class c { char<4> a;\n patricia<a> p; };", "Patricia index available only for transient classes.", 2 },
  { "class c { signed<4> a;\n voluntary hash<a> h[5]; };", "Hash indeces can not be voluntary", 2 },
  { "class c { signed<4> a;\n thick unique tree<a> t; };", "'nonunique' keyword was already defined.", 2 },
  // declarations
  { "class c { signed<4> a;\n hash<a> h; };", "expected \"[\"", 2 },
  { "class c { signed<4> a;\n tree<a> t[5]; };", "expected \";\"", 2 },
  { "class c { signed<4> a;\n hash<a> h[0]; };", "estimated count value is not valid for the hash index h", 2 },
  { "class c { signed<4> a;\n tree<a> t;\n hash<a> t[5]; };", "index \"t\" was already defined", 3 },
  // field lists
  { "class c { signed<4> a;\n tree<* a> t; };", "'>' expected", 2 },
  { "class c { signed<4> a;\n hash<a desc> h[10]; };", "unexpected token: \"desc\"", 2 },
  { "class c { char<4> a;\n hash<a ignore_case ignore_case> h[10]; };", "unexpected token: \"ignore_case\"", 2 },
  { "class c { signed<4> a;\n tree<a.autoid> t; };", "\"autoid\" is a reserved word", 2 },
  { "class c { char<4> a;\n userdef tree<a collate x> t; };", "unexpected \"collate\" for user-defined index", 2 },
  { "class c { signed<4> a, b;\n rtree<a, b> r; };", "rtree index specification error", 2 },
  { "transient class c { char<4> a, b;\n patricia<a, b> p; };", "patricia index specification error", 2 },
  { "struct s { signed<4> a; };\nclass c { s s1;\n kdtree<s1.a> k; };",
    "Fields of inner structs are not allowed as an element of R-Tree or KD-Tree indeces", 3 },
  // events
  { "class c { event<new> a; };\nclass d { event<new> a; };", "event \"a\" was already defined", 2 },
  { "class c { signed<4> x;\n event<x update> a;\n event<x update> b; };", "event on \"x\" update was already defined", 3 },
  { "class c { signed<4> x;\n event<date update> a; };", "field name expected, instead of \"date\"", 2 },
  { "class c { signed<4> count;\n event<count update> e; };", "field name expected, instead of \"count\"", 2, true },
  { "class c { signed<4> x;\n event<x> a; };", "expected \"update\"", 2 },
  // TTL
  { "class c { signed<4> x;\n TTL_clock_time 5 min; };", "invalid TTL_clock_time time unit (must be s, ms or us)", 2 },
  { "class c { signed<4> x;\n TTL_clock_time 0 sec; };", "invalid TTL_clock_time value 0000000", 2 },
  { "class c { signed<4> x;\n TTL_clock_time 010 us; };", "invalid TTL_clock_time value 010", 2 },
  { "class c { TTL_count 5;\n TTL_count 6; };", "TTL_count already defined", 2 },
};
// clang-format on

// In process, then through the binary under several option sets: there the
// error is the last diagnostic, a warning may stand before it, and the exit
// status is 255.
TEST(AnalyzerIndexes, RefusedForms) {
  std::string dir = procutil::makeTempDir();
  const std::vector<std::vector<std::string>> optionSets = {{}, {"-sql"}, {"-nosort"}, {"-persistent"}, {"-size-t", "4"}};
  for (const Refused& c : kRefused) {
    Options o;
    o.sql = c.sql;
    Analysis a(c.schema, o);
    EXPECT_EQ(a.msg, c.message) << c.schema;
    EXPECT_EQ(a.line, c.line) << c.schema;

    procutil::writeFile(dir + "/x.sch", c.schema);
    for (const std::vector<std::string>& opts : optionSets) {
      std::vector<std::string> argv{ZKT_COMPILER_PATH};
      argv.insert(argv.end(), opts.begin(), opts.end());
      if (c.sql && opts != optionSets[1]) argv.push_back("-sql");
      argv.push_back("x.sch");
      ProcResult r = procutil::runProgram(argv, dir);
      EXPECT_EQ(r.status, 255) << c.schema;
      size_t at = r.err.rfind("File x.sch;  line " + std::to_string(c.line));
      ASSERT_NE(at, std::string::npos) << c.schema << "\n" << r.err;
      std::string shown = r.err.substr(at);
      EXPECT_EQ(shown.substr(shown.find(": error: ")), std::string(": error: ") + c.message + "\n\n") << c.schema;
    }
  }
}

TEST(AnalyzerIndexes, ModifiersByIndexWord) {
  struct Case {
    const char* decl;
    IndexType type;
    bool unique, voluntary, userdef, thick, inclusive;
  } cases[] = {
      {"tree<a> i;", IT_Tree, false, false, false, false, false},
      {"unique tree<a> i;", IT_Tree, true, false, false, false, false},
      {"hash<a> i[5];", IT_Hash, true, false, false, false, false},
      {"nonunique hash<a> i[5];", IT_Hash, false, false, false, false, false},
      {"thick hash<a> i[5];", IT_Hash, false, false, false, true, false},
      {"voluntary userdef inclusive kdtree<a> i;", IT_KDTree, false, true, true, false, true},
      {"unique patricia<a> i;", IT_PTree, true, false, false, false, false},
      {"unique voluntary userdef trigram<a> i;", IT_Trigram, false, false, false, true, true},
  };
  for (const Case& c : cases) {
    Analysis a(std::string("class c { signed<4> a; ") + c.decl + " };");
    ASSERT_OK(a);
    const Index& x = a.cls("c")->v_index[0];
    EXPECT_EQ(x.m_IndexType, c.type) << c.decl;
    EXPECT_EQ(std::vector<bool>({x.m_isUnique, x.m_isVoluntary, x.m_isUserdef, x.m_isThick, x.m_isInclusive}),
              std::vector<bool>({c.unique, c.voluntary, c.userdef, c.thick, c.inclusive}))
        << c.decl;
    EXPECT_EQ(x.m_expectedCount, c.type == IT_Hash ? 5 : 0) << c.decl;
  }
}

// Collations are made on first use. One stays suppressed while only classes
// without API use it, and stops being a tree collation once a hash uses it.
TEST(AnalyzerIndexes, FieldListsAndCollations) {
  Options o;
  o.suppress = {"quiet"};
  Analysis a(
      "class quiet { tree<a collate only_quiet> t; tree<a collate shared> u; };\n"
      "persistent class loud {\n"
      "  tree<a asc ignore_case desc, b, s.t.u descending ascending collate only_quiet> t;\n"
      "  hash<a case_insensitive collate shared, b> h[3];\n"
      "  tree<*> all;\n"
      "  tree<autoid> id;\n"
      "};\n", o);
  ASSERT_OK(a);
  EXPECT_EQ(a.warnings, std::vector<std::string>{"Tree declaration expected"});  // and the hash is kept
  const mvector<Index>& v = a.cls("loud")->v_index;
  ASSERT_EQ(v.size(), 4u);
  EXPECT_EQ(join(v[0].v_indfield), "a,b,s.t.u");
  EXPECT_EQ(bits(v[0].v_descending), "100");  // the last order word wins
  EXPECT_EQ(bits(v[0].v_case_insensitive), "100");
  EXPECT_EQ(join(v[0].v_colls), ",,only_quiet");
  EXPECT_EQ(bits(v[1].v_case_insensitive), "10");
  EXPECT_EQ(join(v[2].v_indfield), "*");  // expanded when the index is finished
  EXPECT_EQ(v[2].v_descending.size() + v[2].v_case_insensitive.size() + v[2].v_colls.size(), 0u);
  EXPECT_EQ(join(v[3].v_indfield), "autoid");

  EXPECT_EQ(a.schema().s_coll.get()->size(), 2);  // one object per name
  const Collation* q = a.schema().findCollation("only_quiet");
  const Collation* sh = a.schema().findCollation("shared");
  EXPECT_EQ(std::vector<bool>({q->suppressed, q->isTree, sh->suppressed, sh->isTree}),
            std::vector<bool>({false, true, false, false}));
  Analysis b("class quiet { tree<a collate c> t; };", o);
  EXPECT_TRUE(b.schema().findCollation("c")->suppressed);
}

TEST(AnalyzerIndexes, EventsAndTtl) {
  Analysis a(
      "class c { signed<4> a; TTL_clock_time 5 sec; signed<4> b; TTL_count 0;\n"
      "  event<new> n1; event<new> n2; event<delete> d; event<delete_all> da;\n"
      "  event<checkpoint> cp; event<update> cu; event<count update> unknown;\n"
      "};\n"
      "class m { TTL_clock_time 5 ms; event<new> date; };\n"
      "class u { TTL_clock_time 5 us; };\n");
  ASSERT_OK(a);
  Class* c = a.cls("c");
  const mvector<Event>& e = c->v_events;
  const Event::Type types[] = {Event::NEW,        Event::NEW,          Event::DELETE, Event::DELETE_ALL,
                               Event::CHECKPOINT, Event::CLASS_UPDATE, Event::UPDATE};
  ASSERT_EQ(e.size(), 7u);
  for (unsigned int i = 0; i < e.size(); i++) EXPECT_EQ(e[i].m_type, types[i]) << i;
  EXPECT_EQ(S(e[5].m_fldName), "");
  EXPECT_EQ(S(e[6].m_fldName), "count");  // existence is checked when events are numbered
  EXPECT_EQ(join(a.schema().s_allEventNames.els), "n1,n2,d,da,cp,cu,unknown,date");

  // The hidden field stands where the clause does and holds the limit as text.
  EXPECT_EQ(Analysis::fieldNames(c), "a ttl_timestamp@ b ttl_count@");
  EXPECT_TRUE(c->v_field[1].m_isHidden);
  EXPECT_EQ(S(c->v_field[1].m_eltype), "unsigned<8>");
  EXPECT_EQ(join(c->v_field[1].m_initVals), "5000000");
  EXPECT_EQ(join(c->v_field[3].m_initVals), "0");
  EXPECT_EQ(join(a.cls("m")->v_field[0].m_initVals), "5000");
  EXPECT_EQ(join(a.cls("u")->v_field[0].m_initVals), "5");
  EXPECT_EQ(Analysis::indexNames(c), "ttl_timestamp_idx@ ttl_count_idx@");
  EXPECT_EQ(join(c->v_index[1].v_indfield), "ttl_count@");
  EXPECT_EQ(std::vector<bool>({c->v_index[0].m_isUnique, c->v_index[1].m_isUnique, c->v_index[0].m_hidden}),
            std::vector<bool>({false, true, true}));
}

}  // namespace
