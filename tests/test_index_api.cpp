// Index API: key marshalling per category, parameter names, the function family of every index kind, and the texts of its functions.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "genout_util.h"

namespace {

using gentest::Generated;
using gentest::Options;
using Names = std::vector<std::string>;

// ---------------------------------------------------------------- paramStrings

// A one-step key on a field of the given type.
struct KeyRow {
  const char* type;       // type name
  TypeCategory category;
  const char* cType;
  const char* field;      // field name; "a.b" is a two-step path over a struct
  const char* decl;
  const char* pass;
  const char* assign;
  const char* ptr_type;
  Names names;
};

// clang-format off
// One row per distinct form of key; the categories that share a form with
// another (string with char, nstring with nchar) are left out.
const KeyRow kKeyRows[] = {
  { "unsigned<4>", ET_SIMPLE, "uint4", "a",
    "uint4 a_key_", "a_key_", "pa_->field_type = 3; pa_->v.u4 = a_key_; ", "uint4 *", {"a_key_"} },
  { "$autoid", ET_AUTOID, "autoid_t", "autoid",
    "autoid_t autoid_key_", "autoid_key_", "pa_->field_type = 14; pa_->v.i8 = autoid_key_; ", "autoid_t *", {"autoid_key_"} },
  { "boolean", ET_SIMPLE, "uint1", "b",
    "char *b_key_, uint2 number_of_bits", "b_key_", "pa_->field_type = 23; pa_->ptr = b_key_; pa_->v.ptr_size = number_of_bits; ", "",
    {"b_key_", "number_of_bits"} },
  { "char<8>", ET_CHARS, "", "s",
    "const char *s_key_, uint2 sizeof_s_key_", "s_key_, sizeof_s_key_", "pa_->field_type = 7; pa_->v.ptr_size = sizeof_s_key_; pa_->ptr = s_key_; ", "char *",
    {"s_key_", "sizeof_s_key_"} },
  { "nchar<3>", ET_UNICODE_CHARS, "", "n",
    "const nchar_t *n_key_, uint2 sizeof_n_key_", "n_key_, sizeof_n_key_", "pa_->field_type = 19; pa_->v.ptr_size = sizeof_n_key_; pa_->ptr = (const char*)n_key_; ", "nchar_t *",
    {"n_key_", "sizeof_n_key_"} },
  { "ref", ET_REF, "", "r",
    "const d_oid *r_key_", "r_key_", "pa_->field_type = 9; pa_->v.ptr_size = sizeof(*r_key_); pa_->ptr = (const char*)r_key_; ", "d_oid *", {"r_key_"} },
  { "signed<4>", ET_SIMPLE, "int4", "home.zone",
    "int4 home_key__zone_key_", "home_key__zone_key_", "pa_->field_type = 6; pa_->v.i4 = home_key__zone_key_; ", "int4 *",
    {"home_key__zone_key_"} },
};
// clang-format on

// A segment over hand-made fields; the last one has type t.
struct SegmentOn {
  Struct holder;
  Field outer, inner;
  Index::Segment seg;
  SegmentOn(Struct& t, const std::string& path) {
    const size_t dot = path.find('.');
    inner.m_eltype = t.m_name;
    inner.m_pstruct = &t;
    if (dot != std::string::npos) {
      outer.m_name = path.substr(0, dot).c_str();
      Index::FldEl el;
      el.m_name = outer.m_name;
      el.m_pFld = &outer;
      seg.push_back(el);
    }
    inner.m_name = path.substr(dot == std::string::npos ? 0 : dot + 1).c_str();
    Index::FldEl el;
    el.m_name = inner.m_name;
    el.m_pFld = &inner;
    seg.push_back(el);
  }
};

TEST(IndexApi, KeyTextsPerCategory) {
  Schema sc;
  sc.m_dbname = "d";
  for (const KeyRow& r : kKeyRows) {
    Struct t(r.type, r.category, 4, 4, 4, 4, r.cType);
    SegmentOn s(t, r.field);
    mvector<mstring> names;
    names.push_back(mstring("before"));
    mstring decl, pass, assign, ptr_type;
    s.seg.paramStrings(7, &sc, names, decl, pass, assign, ptr_type);
    EXPECT_STREQ(decl.c_str(), r.decl) << r.type;
    EXPECT_STREQ(pass.c_str(), r.pass) << r.type;
    EXPECT_STREQ(assign.c_str(), r.assign) << r.type;
    EXPECT_STREQ(ptr_type.c_str(), r.ptr_type) << r.type;
    Names got;
    for (unsigned int i = 1; i < names.size(); i++) got.push_back(names[i].c_str());
    EXPECT_EQ(got, r.names) << r.type;
    EXPECT_STREQ(names[0].c_str(), "before");
  }
}

TEST(IndexApi, KeyOfNoIndexableCategoryIsIllegal) {
  Schema sc;
  sc.m_dbname = "d";
  for (TypeCategory cat : {ET_STRUCT, ET_BLOB, ET_DIRECT_STRUCT, ET_SEQUENCE, ET_WIDE_CHARS, ET_WCHAR_STRING}) {
    Struct t("x", ET_STRING, 4, 4, 4, 4, "");  // the constructor refuses struct categories
    t.m_category = cat;
    SegmentOn s(t, "a");
    mvector<mstring> names;
    mstring decl, pass, assign, ptr_type;
    try {
      s.seg.paramStrings(0, &sc, names, decl, pass, assign, ptr_type);
      ADD_FAILURE() << "no throw for category " << cat;
    } catch (const char* e) {
      EXPECT_STREQ(e, "illegal case") << cat;
    }
  }
}

// ---------------------------------------------------------------- parameter names

TEST(IndexApi, ChooseTakesTheFirstFreeName) {
  static const char* const kList[] = {"t", "t_", "tr", "trn", "trn_"};
  struct Row {
    Names taken;
    const char* chosen;
  };
  const Row rows[] = {
      {{}, "t"},
      {{"t"}, "t_"},
      {{"t", "tr"}, "t_"},
      {{"t", "t_", "tr", "trn"}, "trn_"},
      {{"t", "t_", "tr", "trn", "trn_"}, "trn_0"},
      {{"t", "t_", "tr", "trn", "trn_", "trn_0", "trn_1"}, "trn_2"},
  };
  for (const Row& r : rows) {
    StrParams sp;
    for (const std::string& n : r.taken) sp.allParamNames.push_back(mstring(n.c_str()));
    EXPECT_STREQ(sp.choose(kList, 5).c_str(), r.chosen) << r.taken.size();
  }
}

TEST(IndexApi, SetupAvoidsEveryKeyName) {
  StrParams sp;
  for (const char* n : {"c", "oper", "op", "handle", "hdl", "hdl_"}) sp.allParamNames.push_back(mstring(n));
  sp.setup();
  EXPECT_STREQ(sp.t.c_str(), "t");
  EXPECT_STREQ(sp.c.c_str(), "c_");
  EXPECT_STREQ(sp.oper.c_str(), "op_");
  EXPECT_STREQ(sp.handle.c_str(), "hdl_0");
}

// ---------------------------------------------------------------- families

// The index functions of class c, index i, in the order of the header.
Names functionsOf(const std::string& h) {
  Names r;
  const std::string head = "ZKT_RET ";
  for (size_t p = h.find(head); p != std::string::npos; p = h.find(head, p + 1)) {
    size_t b = h.find_first_not_of(' ', p + head.size());
    size_t e = h.find_first_of(" (", b);
    std::string name = h.substr(b, e - b);
    if (name.rfind("c_i_", 0) == 0) r.push_back(name.substr(4));
  }
  return r;
}

struct FamilyRow {
  const char* decl;  // class members
  Names functions;
};

// clang-format off
const FamilyRow kFamilies[] = {
  { "tree<a> i;",
    {"index_cursor", "search", "compare", "pattern_size", "pattern_search", "pattern_next", "locate", "a_from_cursor"} },
  { "unique tree<a> i;",
    {"index_cursor", "search", "compare", "pattern_size", "pattern_search", "pattern_next", "locate", "find", "a_from_cursor"} },
  { "voluntary tree<a> i;",
    {"create", "drop", "index_cursor", "search", "compare", "pattern_size", "pattern_search", "pattern_next", "locate", "a_from_cursor"} },
  { "userdef tree<a> i;",
    {"index_cursor", "search", "compare", "locate", "a_from_cursor"} },
  { "tree<s, a> i;",
    {"index_cursor", "search", "compare", "pattern_size", "pattern_search", "pattern_next", "locate", "s_from_cursor", "a_from_cursor"} },
  { "unique tree<v> i;",
    {"index_cursor", "search", "compare", "pattern_size", "pattern_search", "pattern_next", "get_index", "find"} },
  { "thick tree<v> i;",
    {"index_cursor", "search", "search_any", "search_all", "compare", "pattern_size", "pattern_search", "pattern_next", "get_index"} },
  { "thick tree<w> i;",
    {"index_cursor", "search", "search_any", "search_all", "compare", "pattern_size", "pattern_search", "pattern_next", "get_index"} },
  { "thick tree<v, a> i;",
    {"index_cursor", "search", "compare", "pattern_size", "pattern_search", "pattern_next", "get_index", "a_from_cursor"} },
  { "thick tree<a> i;",
    {"index_cursor", "search", "compare", "pattern_size", "pattern_search", "pattern_next", "locate", "a_from_cursor"} },
  { "hash<a> i[10];",
    {"index_cursor", "compare", "find", "a_from_cursor"} },
  { "nonunique hash<a, s> i[10];",
    {"index_cursor", "compare", "search", "a_from_cursor", "s_from_cursor"} },
  { "kdtree<a, b> i;",
    {"index_cursor", "search", "locate"} },
  { "voluntary kdtree<a> i;",
    {"create", "drop", "index_cursor", "search", "locate"} },
  { "rtree<r> i;",
    {"index_cursor", "search"} },
  { "voluntary rtree<r> i;",
    {"create", "drop", "index_cursor", "search"} },
  { "trigram<s> i;",
    {"index_cursor", "search", "locate"} },
  { "unique voluntary userdef trigram<s> i;",
    {"index_cursor", "search", "locate"} },
};

const FamilyRow kPatriciaFamilies[] = {
  { "patricia<a> i;",
    {"index_cursor", "search", "compare", "next_match", "prefix_match", "longest_match", "exact_match", "locate"} },
  { "unique voluntary patricia<s> i;",
    {"create", "drop", "index_cursor", "search", "compare", "next_match", "prefix_match", "longest_match", "exact_match", "locate", "find"} },
  { "unique patricia<v> i;",
    {"index_cursor", "search", "compare", "next_match", "prefix_match", "longest_match", "exact_match", "get_index", "find"} },
};
// clang-format on

const char kFields[] =
    "signed<4> a; double b; char<8> s; unsigned<4> v[3]; vector<signed<4>> w; rectangle<double> r[2]; ";

std::string schemaWith(const std::string& modifier, const std::string& members) {
  return "declare database d;\n" + modifier + "class c { " + kFields + members + " };\n";
}

TEST(IndexApi, FunctionsOfEveryKindInOrder) {
  for (const FamilyRow& r : kFamilies) {
    Generated g(schemaWith("", r.decl));
    ASSERT_TRUE(g.run()) << r.decl << ": " << g.msg;
    EXPECT_EQ(functionsOf(Generated::text(g.gen.m_h)), r.functions) << r.decl;
  }
  for (const FamilyRow& r : kPatriciaFamilies) {
    Generated g(schemaWith("transient ", r.decl));
    ASSERT_TRUE(g.run()) << r.decl << ": " << g.msg;
    EXPECT_EQ(functionsOf(Generated::text(g.gen.m_h)), r.functions) << r.decl;
  }
}

// ---------------------------------------------------------------- texts

// The text of C function name behind its padding: parameters and body, up to
// the empty line that ends it. The padding swallows the blank that starts a
// parameter list, so the expected texts are compared without it.
std::string functionText(const std::string& h, const std::string& name) {
  const size_t p = h.find(" " + name + " ");
  if (p == std::string::npos) return "(no " + name + ")";
  const size_t b = h.find_first_not_of(' ', p + name.size() + 1);
  const size_t e = h.find("\n\n", b);
  return h.substr(b, e + 2 - b);
}

std::string unpadded(const char* text) { return text + std::string(text).find_first_not_of(' '); }

struct TextRow {
  const char* function;
  const char* text;
};

// class c { char<8> s; signed<4> a; }, index code 0.
const char kTwoSegments[] = "declare database d;\nclass c { char<8> s; signed<4> a; unique tree<s, a> i; };\n";
// clang-format off
const TextRow kTwoSegmentTexts[] = {
  { "c_i_index_cursor",
    " ( zkt_trans_h t, /*OUT*/ zkt_cursor_h c )\n"
    "{ return zkt_w_index_cursor( t, 0, c );\n}\n\n" },
  { "c_i_search",
    " ( zkt_trans_h t, /*INOUT*/ zkt_cursor_h c, ZKT_OPCODE op_, const char *s_key_, uint2 sizeof_s_key_, int4 a_key_ )\n"
    "{ zkt_external_field_t a_ [2];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 7; pa_->v.ptr_size = sizeof_s_key_; pa_->ptr = s_key_; pa_++; \n"
    "  pa_->field_type = 6; pa_->v.i4 = a_key_; \n"
    "  return zkt_w_tree_find(t,c,op_,a_);\n}\n\n" },
  { "c_i_compare",
    " ( zkt_trans_h t, zkt_cursor_h c, const char *s_key_, uint2 sizeof_s_key_, int4 a_key_, /*OUT*/ int *result_ )\n"
    "{ zkt_external_field_t a_[2];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 7; pa_->v.ptr_size = sizeof_s_key_; pa_->ptr = s_key_; pa_++; \n"
    "  pa_->field_type = 6; pa_->v.i4 = a_key_; \n"
    "  return zkt_w_cursor_compare( t, c, a_, result_);\n}\n\n" },
  { "c_i_pattern_size",
    "( const char *s_key_, uint2 sizeof_s_key_, int4 a_key_, /*OUT*/ uint4 *size_)\n"
    "{ zkt_external_field_t a_[3];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 7; pa_->v.ptr_size = sizeof_s_key_; pa_->ptr = s_key_; pa_++; \n"
    "  pa_->field_type = 6; pa_->v.i4 = a_key_; \n"
    "  (pa_+1)->field_type=0;\n"
    "   return zkt_pattern_size( a_,size_);\n}\n\n" },
  { "c_i_pattern_search",
    " ( zkt_trans_h t, zkt_cursor_h c, /*INOUT*/ void *allocated_pattern, zkt_size_t memsize , const char *s_key_, uint2 sizeof_s_key_, int4 a_key_ )\n"
    "{ zkt_external_field_t a_[3];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 7; pa_->v.ptr_size = sizeof_s_key_; pa_->ptr = s_key_; pa_++; \n"
    "  pa_->field_type = 6; pa_->v.i4 = a_key_; \n"
    "  (pa_+1)->field_type=0;\n"
    "  return zkt_pattern_search(t, c, allocated_pattern, memsize, a_);\n}\n\n" },
  { "c_i_pattern_next",
    " ( zkt_trans_h t, zkt_cursor_h c, /*INOUT*/ void *allocated_pattern )\n"
    "{ return zkt_pattern_next(t, c , allocated_pattern,  0);\n}\n\n" },
  { "c_i_locate",
    " ( zkt_trans_h t, /*OUT*/ zkt_cursor_h c, c * handle)\n"
    "{ return zkt_w_cursor_locate( t, 0, (zkt_objhandle_h)handle, c);\n}\n\n" },
  { "c_i_find",
    " ( zkt_trans_h t, const char *s_key_, uint2 sizeof_s_key_, int4 a_key_, /*OUT*/ c *handle_)\n"
    "{ zkt_external_field_t a_[2];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 7; pa_->v.ptr_size = sizeof_s_key_; pa_->ptr = s_key_; pa_++; \n"
    "  pa_->field_type = 6; pa_->v.i4 = a_key_; \n"
    "  return zkt_w_tree_find_scalar(t, 0, a_, (zkt_objhandle_h)handle_);\n}\n\n" },
  { "c_i_s_from_cursor",
    " ( zkt_trans_h t, zkt_cursor_h csr, char * buffer, zkt_size32_t buffer_size, zkt_size32_t* length )\n"
    "{ return zkt_w_cursor_extract_field(t,csr,0, buffer, buffer_size, length ); \n}\n\n" },
  { "c_i_a_from_cursor",
    " ( zkt_trans_h t, zkt_cursor_h csr, int4 * value )\n"
    "{ return zkt_w_cursor_extract_field(t,csr,1, value, sizeof(*value),0 ); \n}\n\n" },
};
// clang-format on

// Index codes stay plain when class codes move.
TEST(IndexApi, TwoSegmentTexts) {
  for (bool mergeable : {false, true}) {
    Options o;
    o.mergeable = mergeable;
    Generated g(kTwoSegments, o);
    ASSERT_TRUE(g.run()) << g.msg;
    const std::string h = Generated::text(g.gen.m_h);
    for (const TextRow& r : kTwoSegmentTexts) EXPECT_EQ(functionText(h, r.function), unpadded(r.text)) << r.function;
  }
}

// One schema per row, index i of class c, code 0.
struct KindTextRow {
  const char* schema;
  const char* function;
  const char* text;
};

// clang-format off
const KindTextRow kKindTexts[] = {
  { "class c { signed<4> a; voluntary tree<a> i; };", "c_i_create",
    " ( zkt_trans_h t)\n{ return zkt_w_voluntary_create(t, 0 ); \n}\n\n" },
  { "class c { signed<4> a; voluntary tree<a> i; };", "c_i_drop",
    " ( zkt_trans_h t)\n{ return zkt_w_voluntary_drop(t, 0 ); \n}\n\n" },
  { "class c { unsigned<2> v[4]; thick tree<v> i; };", "c_i_search_any",
    " ( zkt_trans_h t, /*INOUT*/ zkt_cursor_h c, int n_keywords, zkt_search_kwd_t* keywords)\n"
    "{ return zkt_w_tree_find_any(t,c,n_keywords,keywords); }\n\n" },
  { "class c { unsigned<2> v[4]; thick tree<v> i; };", "c_i_search_all",
    " ( zkt_trans_h t, /*INOUT*/ zkt_cursor_h c, int n_keywords, zkt_search_kwd_t* keywords)\n"
    "{ return zkt_w_tree_find_all(t,c,n_keywords,keywords); }\n\n" },
  { "class c { unsigned<2> v[4]; thick tree<v> i; };", "c_i_get_index",
    " ( zkt_cursor_h c, /*OUT*/ uint2 * index )\n{ return zkt_w_cursor_get_index( c, index); \n}\n\n" },
  { "class c { unsigned<2> v[4]; unique tree<v> i; };", "c_i_find",
    " ( zkt_trans_h t, uint2 v_key_, /*OUT*/ c *handle_, /*OUT*/ uint2 *index_)\n"
    "{ zkt_external_field_t a_[1];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 2; pa_->v.u2 = v_key_; \n"
    "  return zkt_w_tree_find_vect(t, 0, a_, (zkt_objhandle_h)handle_, index_);\n}\n\n" },
  { "class c { string s; nonunique hash<s> i[10]; };", "c_i_search",
    " ( zkt_trans_h t, /*INOUT*/ zkt_cursor_h c, const char *s_key_, uint2 sizeof_s_key_ )\n"
    "{ zkt_external_field_t a_ [1];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 8; pa_->v.ptr_size = sizeof_s_key_; pa_->ptr = s_key_; \n"
    "return zkt_w_hash_find(t,c,a_);\n}\n\n" },
  { "class c { nstring s; hash<s> i[10]; };", "c_i_find",
    " ( zkt_trans_h t, const nchar_t *s_key_, uint2 sizeof_s_key_, /*OUT*/ c *handle_)\n"
    "{ zkt_external_field_t a_[1];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 20; pa_->v.ptr_size = sizeof_s_key_; pa_->ptr = (const char*)s_key_; \n"
    "  return zkt_w_hash_find_scalar(t, 0, a_, (zkt_objhandle_h)handle_);\n}\n\n" },
  { "class c { nstring s; hash<s> i[10]; };", "c_i_s_from_cursor",
    " ( zkt_trans_h t, zkt_cursor_h csr, nchar_t * buffer, zkt_size32_t buffer_size, zkt_size32_t* length )\n"
    "{ return zkt_w_cursor_extract_field(t,csr,0, buffer, buffer_size, length ); \n}\n\n" },
  { "class c { signed<4> x, y; kdtree<x, y> i; };", "c_i_search",
    " ( zkt_trans_h t, /*INOUT*/ zkt_cursor_h c, /*IN*/ c * range_start, /*IN*/ c * range_end )\n"
    "{\n  return zkt_w_kdtree_find(t,c, (ZKT_Hf*) range_start, (ZKT_Hf*) range_end );\n}\n\n" },
  { "class c { rectangle<float> box[2]; rtree<box> i; };", "c_i_search",
    "( zkt_trans_h t_, /*IN*/ ZKT_OPCODE op_ , /*INOUT*/ zkt_cursor_h c_, const float* box )\n"
    "{ zkt_external_field_t a_ [1];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 0; \n"
    "  pa_->v.ptr_size = sizeof(box); \n"
    "  pa_->ptr = (const char*)box; \n"
    "  return zkt_w_tree_find(t_, c_, op_, a_); \n}\n\n" },
  { "class c { string s; trigram<s> i; };", "c_i_search",
    " ( zkt_trans_h t, /*INOUT*/ zkt_cursor_h c, ZKT_OPCODE op_, const char *s_key_, uint2 sizeof_s_key_ )\n"
    "{ zkt_external_field_t a_ [1];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 8; pa_->v.ptr_size = sizeof_s_key_; pa_->ptr = s_key_; \n"
    "  return zkt_w_tree_find(t,c,op_,a_);\n}\n\n" },
  // patricia on a numeric key: the bit length
  { "transient class c { unsigned<4> n; patricia<n> i; };", "c_i_search",
    " ( zkt_trans_h t, /*INOUT*/ zkt_cursor_h c, ZKT_OPCODE op_, uint4 n_key_, uint2 number_of_bits  )\n"
    "{ zkt_external_field_t a_ [1];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 3; pa_->v.u4 = n_key_; \n"
    "  pa_->bit_len = number_of_bits; \n"
    "  return zkt_w_tree_find(t,c,op_,a_);\n}\n\n" },
  { "transient class c { unsigned<4> n; patricia<n> i; };", "c_i_longest_match",
    " ( zkt_trans_h t, zkt_cursor_h c, uint4 n_key_, uint2 number_of_bits  )\n"
    "{ zkt_external_field_t a_[1];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 3; pa_->v.u4 = n_key_; \n"
    "  pa_->bit_len = number_of_bits; \n"
    "  return zkt_w_tree_find( t, c, ZKT_BEST, a_);\n}\n\n" },
  // ... but not on a text key, nor on a bit-based one
  { "transient class c { string s; patricia<s> i; };", "c_i_exact_match",
    " ( zkt_trans_h t, zkt_cursor_h c, const char *s_key_, uint2 sizeof_s_key_ )\n"
    "{ zkt_external_field_t a_[1];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 8; pa_->v.ptr_size = sizeof_s_key_; pa_->ptr = s_key_; \n"
    "  return zkt_w_tree_find( t, c, ZKT_EX, a_);\n}\n\n" },
  { "transient class c { boolean b[8]; patricia<b> i; };", "c_i_next_match",
    " ( zkt_trans_h t, zkt_cursor_h c, char *b_key_, uint2 number_of_bits )\n"
    "{ zkt_external_field_t a_[1];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 23; pa_->ptr = b_key_; pa_->v.ptr_size = number_of_bits; \n"
    "  return zkt_w_tree_find( t, c, ZKT_NEXT_MATCH, a_);\n}\n\n" },
  { "transient class c { unsigned<4> n; patricia<n> i; };", "c_i_prefix_match",
    " ( zkt_trans_h t, zkt_cursor_h c, uint4 n_key_, uint2 number_of_bits  )\n"
    "{ zkt_external_field_t a_[1];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 3; pa_->v.u4 = n_key_; \n"
    "  pa_->bit_len = number_of_bits; \n"
    "  return zkt_w_tree_find( t, c, ZKT_PREF, a_);\n}\n\n" },
};
// clang-format on

TEST(IndexApi, TextsPerKind) {
  for (const KindTextRow& r : kKindTexts) {
    Generated g(std::string("declare database d;\n") + r.schema + "\n");
    ASSERT_TRUE(g.run()) << r.schema << ": " << g.msg;
    EXPECT_EQ(functionText(Generated::text(g.gen.m_h), r.function), unpadded(r.text)) << r.schema << " " << r.function;
  }
}

// The nested class: its head with the kind comment, the declarations in the
// order of the C functions, and its end.
TEST(IndexApi, NestedCppClass) {
  Options o;
  o.hpp = true;
  Generated g(kTwoSegments, o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string want =
      "  class i // b-tree index\n"
      "  { public: \n"
      "    static ZKT_RET cursor( zkt_trans_h t, /*OUT*/ zkt_cursor_h c );\n"
      "    static ZKT_RET search( zkt_trans_h t_, zkt_cursor_h c_, ZKT_OPCODE op_, const char *s_key_, uint2 sizeof_s_key_, int4 a_key_ ); \n"
      "    static ZKT_RET compare( zkt_trans_h t_, zkt_cursor_h c_, const char *s_key_, uint2 sizeof_s_key_, int4 a_key_, int & result_ ); \n"
      "    static ZKT_RET pattern_size( const char *s_key_, uint2 sizeof_s_key_, int4 a_key_, /*OUT*/ uint4 *size_); \n"
      "    static ZKT_RET pattern_search  ( zkt_trans_h t, zkt_cursor_h c, /*INOUT*/ void *allocated_pattern, zkt_size_t memsize , const char *s_key_, uint2 sizeof_s_key_, int4 a_key_); \n"
      "    static ZKT_RET pattern_next  ( zkt_trans_h t, zkt_cursor_h c, void *allocated_pattern ); \n"
      "    static ZKT_RET locate(zkt_trans_h t, /*OUT*/ zkt_cursor_h c, c & handle);\n"
      "    static ZKT_RET find( zkt_trans_h t_, const char *s_key_, uint2 sizeof_s_key_, int4 a_key_, /*OUT*/ c & handle_); \n"
      "    static ZKT_RET s_from_cursor ( zkt_trans_h t, zkt_cursor_h csr, char * buffer, zkt_size32_t buffer_size, zkt_size32_t* length );\n"
      "    static ZKT_RET a_from_cursor ( zkt_trans_h t, zkt_cursor_h csr, int4 * value );\n"
      "  }; // i\n";
  const std::string hpp = Generated::text(g.gen.m_hpp);
  EXPECT_NE(hpp.find(want), std::string::npos) << hpp;
  const std::string tail = Generated::text(g.gen.m_hpp_tail);
  const char* const defs[] = {
      "inline  ZKT_RET c::i::find( zkt_trans_h t_, const char *s_key_, uint2 sizeof_s_key_, int4 a_key_, /*OUT*/ c & handle_)\n"
      "{ ZKT_RET ret_ = d::c_i_find(t_, s_key_, sizeof_s_key_, a_key_, &handle_ ); handle_.set_valid(ret_==ZKT_S_OK); return ret_; \n}\n\n",
      "inline  ZKT_RET c::i::a_from_cursor ( zkt_trans_h t, zkt_cursor_h csr, int4 * value )\n"
      "{ return d::c_i_a_from_cursor( t, csr, value );\n}\n\n",
  };
  for (const char* d : defs) EXPECT_NE(tail.find(d), std::string::npos) << d;
}

// The kind comments of the nested class.
TEST(IndexApi, KindComments) {
  struct Row {
    const char* schema;
    const char* head;
  };
  const Row rows[] = {
      {"class c { signed<4> a; tree<a> i; };", "  class i // b-tree index\n"},
      {"class c { signed<4> a; hash<a> i[5]; };", "  class i // hash index\n"},
      {"class c { signed<4> a; kdtree<a> i; };", "  class i // kd-tree index\n"},
      {"class c { rectangle<float> r[2]; rtree<r> i; };", "  class i // R-tree index\n"},
      {"transient class c { signed<4> a; patricia<a> i; };", "  class i // patricia tree index\n"},
      {"class c { string s; trigram<s> i; };", "  class i // Trigram index\n"},
  };
  Options o;
  o.hpp = true;
  for (const Row& r : rows) {
    Generated g(std::string("declare database d;\n") + r.schema + "\n", o);
    ASSERT_TRUE(g.run()) << r.schema << ": " << g.msg;
    EXPECT_NE(Generated::text(g.gen.m_hpp).find(r.head), std::string::npos) << r.schema;
  }
}

// The inline definition of search_any is named search_all, so search_all is
// defined twice (intended).
TEST(IndexApi, SearchAnyIsDefinedAsSearchAll) {
  Options o;
  o.hpp = true;
  Generated g("declare database d;\nclass c { unsigned<2> v[4]; thick tree<v> i; };\n", o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string tail = Generated::text(g.gen.m_hpp_tail);
  EXPECT_NE(tail.find("inline  ZKT_RET c::i::search_all( zkt_trans_h t_, zkt_cursor_h c_, int n_keywords, "
                      "zkt_search_kwd_t* keywords)\n{ return d::c_i_search_any("),
            std::string::npos);
  EXPECT_EQ(tail.find("::search_any("), std::string::npos);
}

}  // namespace
