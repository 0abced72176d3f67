// Index API: the C functions and the nested C++ class of every index, and the marshalling of index keys.
#include "genout.h"

// ---------------------------------------------------------------- key texts

namespace {

// The texts of one key category. {key} is the key's parameter name, {size}
// "sizeof_{key}", {code} the element type code, {unionel} the member of the
// value union, {ctype} the C type of the key field, {db} the database name.
struct KeyTexts {
  const char* decl;
  const char* pass;
  const char* assign;
  const char* ptr_type;  // empty: the key has no pointer type
  const char* second;    // name of the second parameter; empty: none
};

// clang-format off
//                                decl                                     pass              assign                                                                                                   ptr_type       second
const KeyTexts kScalarKey     = { "{ctype} {key}",                         "{key}",          "pa_->field_type = {code}; pa_->v.{unionel} = {key}; ",                                                  "{ctype} *", "" };
const KeyTexts kBooleanKey    = { "char *{key}, uint2 number_of_bits",     "{key}",          "pa_->field_type = {code}; pa_->ptr = {key}; pa_->v.ptr_size = number_of_bits; ",                        "", "number_of_bits" };
const KeyTexts kCharsKey      = { "const char *{key}, uint2 {size}",       "{key}, {size}",  "pa_->field_type = 7; pa_->v.ptr_size = {size}; pa_->ptr = {key}; ",                                     "char *", "{size}" };
const KeyTexts kStringKey     = { "const char *{key}, uint2 {size}",       "{key}, {size}",  "pa_->field_type = 8; pa_->v.ptr_size = {size}; pa_->ptr = {key}; ",                                     "char *", "{size}" };
const KeyTexts kBinaryKey     = { "const char *{key}, uint2 {size}",       "{key}, {size}",  "pa_->field_type = 25; pa_->v.ptr_size = {size}; pa_->ptr = {key}; ",                                    "char *", "{size}" };
const KeyTexts kVarbinaryKey  = { "const char *{key}, uint2 {size}",       "{key}, {size}",  "pa_->field_type = 26; pa_->v.ptr_size = {size}; pa_->ptr = {key}; ",                                    "char *", "{size}" };
const KeyTexts kNcharsKey     = { "const nchar_t *{key}, uint2 {size}",    "{key}, {size}",  "pa_->field_type = 19; pa_->v.ptr_size = {size}; pa_->ptr = (const char*){key}; ",                       "nchar_t *", "{size}" };
const KeyTexts kNstringKey    = { "const nchar_t *{key}, uint2 {size}",    "{key}, {size}",  "pa_->field_type = 20; pa_->v.ptr_size = {size}; pa_->ptr = (const char*){key}; ",                       "nchar_t *", "{size}" };
const KeyTexts kRefKey        = { "const {db}_oid *{key}",                 "{key}",          "pa_->field_type = 9; pa_->v.ptr_size = sizeof(*{key}); pa_->ptr = (const char*){key}; ",                "{db}_oid *", "" };
// clang-format on

// The texts of a key whose last field has type category cat; null for a
// category that no index admits.
const KeyTexts* keyTexts(TypeCategory cat, bool boolean) {
  switch (cat) {
    case ET_SIMPLE:
    case ET_AUTOID:
    case ET_VERSION:
    case ET_AUTOOID:
      return boolean ? &kBooleanKey : &kScalarKey;
    case ET_CHARS: return &kCharsKey;
    case ET_STRING: return &kStringKey;
    case ET_BINARY: return &kBinaryKey;
    case ET_VARBINARY: return &kVarbinaryKey;
    case ET_UNICODE_CHARS: return &kNcharsKey;
    case ET_UNICODE_STRING: return &kNstringKey;
    case ET_REF: return &kRefKey;
    case ET_STRUCT:
    case ET_BLOB:
    case ET_DIRECT_STRUCT:
    case ET_SEQUENCE:
    case ET_WIDE_CHARS:
    case ET_WCHAR_STRING:
      return nullptr;
  }
  return nullptr;
}

}  // namespace

void Index::Segment::paramStrings(int, const Schema* sc, mvector<mstring>& names, mstring& decl, mstring& pass,
                                  mstring& assign, mstring& ptr_type) const {
  const Field& f = *last().m_pFld;
  const bool boolean = f.m_eltype == "boolean";
  const KeyTexts* texts = keyTexts(f.m_pstruct->m_category, boolean);
  if (texts == nullptr) throw "illegal case";  // the index checks keep such keys out

  mstring key;
  for (unsigned int i = 0; i < size(); i++) {
    if (i > 0) key += "_";
    key += (*this)[i].m_name + "_key_";
  }
  Frag fr;
  fr.set("key", key);
  fr.set("size", "sizeof_" + key);
  fr.set("ctype", f.m_pstruct->m_cType);
  fr.set("db", sc->m_dbname);
  if (texts == &kScalarKey || texts == &kBooleanKey) {
    const Field::DictInfo info = f.dict_info(false);
    fr.set("code", (long)info.etype);
    fr.set("unionel", info.unionel);
  }
  decl = fr.fill(texts->decl);
  pass = fr.fill(texts->pass);
  assign = fr.fill(texts->assign);
  ptr_type = fr.fill(texts->ptr_type);
  names.push_back(key);
  if (*texts->second) names.push_back(fr.fill(texts->second));
}

// ---------------------------------------------------------------- parameter names

namespace {
// Candidates for the parameters besides the keys, best first.
const char* const kTransNames[] = {"t", "t_", "tr", "trn", "trn_"};
const char* const kCursorNames[] = {"c", "c_", "csr", "csr_"};
const char* const kOperNames[] = {"oper", "op", "op_"};
const char* const kHandleNames[] = {"handle", "hdl", "hdl_"};

template <size_t N>
int count(const char* const (&)[N]) {
  return (int)N;
}

bool contains(const mvector<mstring>& v, const mstring& s) {
  for (unsigned int i = 0; i < v.size(); i++)
    if (v[i] == s) return true;
  return false;
}
}  // namespace

void StrParams::addSegments(Index& idx, const Schema* sc, mvector<mstring>& ptrTypes) {
  const unsigned int n = idx.v_fldParsed.size();
  for (unsigned int i = 0; i < n; i++) {
    mstring decl, pass, assign, ptr_type;
    idx.v_fldParsed[i].paramStrings((int)i, sc, allParamNames, decl, pass, assign, ptr_type);
    strParams += ", " + decl;
    strParamsTransit += ", " + pass;
    strParamsExtAssign += "  " + assign;
    if (i + 1 < n) strParamsExtAssign += "pa_++; ";
    strParamsExtAssign += "\n";
    ptrTypes.push_back(ptr_type);
  }
}

void StrParams::setup() {
  t = choose(kTransNames, count(kTransNames));
  c = choose(kCursorNames, count(kCursorNames));
  oper = choose(kOperNames, count(kOperNames));
  handle = choose(kHandleNames, count(kHandleNames));
}

mstring StrParams::choose(const char* const* list, int n) const {
  for (int i = 0; i < n; i++)
    if (!contains(allParamNames, mstring(list[i]))) return mstring(list[i]);
  for (int k = 0;; k++) {
    const mstring name = mstring(list[n - 1]) + UT::n2s(k);
    if (!contains(allParamNames, name)) return name;
  }
}

// ---------------------------------------------------------------- the functions of an index

namespace {

// What stands between "{" and the body proper of a function with keys.
enum ArrayHead {
  NO_ARRAY,       // the body opens itself
  KEY_ARRAY,      // one element per segment
  SEARCH_ARRAY,   // the same, written "a_ [{n}]"
  PATTERN_ARRAY,  // one element more than segments, for the end mark
};

// One generated index function: C name, parameters, body after the array
// fill and its closing, C++ declaration, inline method head and body.
// Placeholders: those of outputIndex; {keys} is the key declarations (with
// the patricia extras), {pass} the key arguments of a call, {keys0} and
// {pass0} the same without their leading comma.
struct IndexFunction {
  const char* name;
  ArrayHead array;
  const char* params;
  const char* body;
  const char* close;
  const char* decl;
  const char* head;
  const char* def;
};

// Which function of kFunctions.
enum IndexOp {
  OP_CREATE, OP_DROP, OP_CURSOR, OP_SEARCH, OP_SEARCH_HASH, OP_SEARCH_RANGE, OP_SEARCH_VALUE, OP_SEARCH_ANY,
  OP_SEARCH_ALL, OP_COMPARE, OP_NEXT_MATCH, OP_PREFIX_MATCH, OP_LONGEST_MATCH, OP_EXACT_MATCH, OP_PATTERN_SIZE,
  OP_PATTERN_SEARCH, OP_PATTERN_NEXT, OP_LOCATE, OP_GET_INDEX, OP_FIND, OP_FIND_VECT, OP_HASH_FIND,
  OP_HASH_FIND_VECT, OP_FROM_CURSOR, OP_FROM_CURSOR_BUFFER
};

const char kEnd[] = "\n}\n\n";
const char kSelfClosedEnd[] = "\n\n";

// The inline method heads and bodies are this generator's own, chosen so that
// they compile: each method, qualified "{hpp}::{index}::", hands its
// arguments on to the C function of the same operation. The search_any and
// search_all bodies close their own brace, so no second "}" follows them. Where a
// C++ declaration names {keys} in a call position, the call gets {pass}. The
// declaration of pattern_size takes {keys0}, since {keys} starts with a comma.
// clang-format off
const IndexFunction kFunctions[] = {
  // OP_CREATE
  { "{prefix}_create", NO_ARRAY,
    " ( zkt_trans_h t)",
    "{ return zkt_w_voluntary_create(t, {code} ); ", kEnd,
    "    static ZKT_RET create( zkt_trans_h t );",
    "create( zkt_trans_h t )", "{ return {db}::{prefix}_create(t); " },
  // OP_DROP
  { "{prefix}_drop", NO_ARRAY,
    " ( zkt_trans_h t)",
    "{ return zkt_w_voluntary_drop(t, {code} ); ", kEnd,
    "    static ZKT_RET drop( zkt_trans_h t );",
    "drop( zkt_trans_h t )", "{ return {db}::{prefix}_drop(t); " },
  // OP_CURSOR
  { "{prefix}_index_cursor", NO_ARRAY,
    " ( zkt_trans_h t, /*OUT*/ zkt_cursor_h c )",
    "{ return zkt_w_index_cursor( t, {code}, c );", kEnd,
    "    static ZKT_RET cursor( zkt_trans_h t, /*OUT*/ zkt_cursor_h c );",
    "cursor( zkt_trans_h t, /*OUT*/ zkt_cursor_h c )", "{ return {db}::{prefix}_index_cursor(t, c); " },
  // OP_SEARCH: with an operation
  { "{prefix}_search", SEARCH_ARRAY,
    " ( zkt_trans_h {t}, /*INOUT*/ zkt_cursor_h {c}, ZKT_OPCODE op_{keys} )",
    "  return zkt_w_tree_find({t},{c},op_,a_);", kEnd,
    "    static ZKT_RET search( zkt_trans_h t_, zkt_cursor_h c_, ZKT_OPCODE op_{keys} ); ",
    "search( zkt_trans_h t_, zkt_cursor_h c_, ZKT_OPCODE op_{keys} )", "{ return {db}::{prefix}_search(t_, c_, op_{pass}); " },
  // OP_SEARCH_HASH: the body proper has no indent (intended)
  { "{prefix}_search", SEARCH_ARRAY,
    " ( zkt_trans_h {t}, /*INOUT*/ zkt_cursor_h {c}{keys} )",
    "return zkt_w_hash_find({t},{c},a_);", kEnd,
    "    static ZKT_RET search( zkt_trans_h t_, zkt_cursor_h c_{keys} ); ",
    "search( zkt_trans_h t_, zkt_cursor_h c_{keys} )", "{ return {db}::{prefix}_search(t_, c_{pass}); " },
  // OP_SEARCH_RANGE: the body has no keys; the "{" that opens it is ours
  { "{prefix}_search", NO_ARRAY,
    " ( zkt_trans_h {t}, /*INOUT*/ zkt_cursor_h {c}, /*IN*/ {class} * range_start, /*IN*/ {class} * range_end )",
    "{\n  return zkt_w_kdtree_find({t},{c}, (ZKT_Hf*) range_start, (ZKT_Hf*) range_end );", kEnd,
    "    static ZKT_RET search( zkt_trans_h t_, zkt_cursor_h c_, {class} * range_start, {class} * range_end ); ",
    "search( zkt_trans_h t_, zkt_cursor_h c_, {class} * range_start, {class} * range_end )",
    "{ return {db}::{prefix}_search(t_, c_, range_start, range_end); " },
  // OP_SEARCH_VALUE: t_, op_, c_ in this order, no blank before "(", the size
  // is that of the pointer: intended
  { "{prefix}_search", NO_ARRAY,
    "( zkt_trans_h t_, /*IN*/ ZKT_OPCODE op_ , /*INOUT*/ zkt_cursor_h c_, const {ctype}* {field} )",
    "{ zkt_external_field_t a_ [1];\n"
    "  zkt_external_field_h pa_ = a_;\n"
    "  pa_->field_type = 0; \n"
    "  pa_->v.ptr_size = sizeof({field}); \n"
    "  pa_->ptr = (const char*){field}; \n"
    "  return zkt_w_tree_find(t_, c_, op_, a_); ", kEnd,
    "    static ZKT_RET search( zkt_trans_h t_, /*IN*/ ZKT_OPCODE op_ , /*INOUT*/ zkt_cursor_h c_, const {ctype}* {field} );",
    "search( zkt_trans_h t_, /*IN*/ ZKT_OPCODE op_ , /*INOUT*/ zkt_cursor_h c_, const {ctype}* {field} )",
    "{ return {db}::{prefix}_search(t_, op_, c_, {field}); " },
  // OP_SEARCH_ANY: the inline definition is named search_all (intended)
  { "{prefix}_search_any", NO_ARRAY,
    " ( zkt_trans_h {t}, /*INOUT*/ zkt_cursor_h {c}, int n_keywords, zkt_search_kwd_t* keywords)",
    "{ return zkt_w_tree_find_any({t},{c},n_keywords,keywords); }", kSelfClosedEnd,
    "    static ZKT_RET search_any( zkt_trans_h t_, zkt_cursor_h c_, int n_keywords, zkt_search_kwd_t* keywords); ",
    "search_all( zkt_trans_h t_, zkt_cursor_h c_, int n_keywords, zkt_search_kwd_t* keywords)",
    "{ return {db}::{prefix}_search_any(t_, c_, n_keywords, keywords); " },
  // OP_SEARCH_ALL
  { "{prefix}_search_all", NO_ARRAY,
    " ( zkt_trans_h {t}, /*INOUT*/ zkt_cursor_h {c}, int n_keywords, zkt_search_kwd_t* keywords)",
    "{ return zkt_w_tree_find_all({t},{c},n_keywords,keywords); }", kSelfClosedEnd,
    "    static ZKT_RET search_all( zkt_trans_h t_, zkt_cursor_h c_, int n_keywords, zkt_search_kwd_t* keywords); ",
    "search_all( zkt_trans_h t_, zkt_cursor_h c_, int n_keywords, zkt_search_kwd_t* keywords)",
    "{ return {db}::{prefix}_search_all(t_, c_, n_keywords, keywords); " },
  // OP_COMPARE
  { "{prefix}_compare", KEY_ARRAY,
    " ( zkt_trans_h {t}, zkt_cursor_h {c}{keys}, /*OUT*/ int *result_ )",
    "  return zkt_w_cursor_compare( {t}, {c}, a_, result_);", kEnd,
    "    static ZKT_RET compare( zkt_trans_h t_, zkt_cursor_h c_{keys}, int & result_ ); ",
    "compare( zkt_trans_h t_, zkt_cursor_h c_{keys}, int & result_ )",
    "{ return {db}::{prefix}_compare(t_, c_{pass}, &result_); " },
  // OP_NEXT_MATCH
  { "{prefix}_next_match", KEY_ARRAY,
    " ( zkt_trans_h {t}, zkt_cursor_h {c}{keys} )",
    "  return zkt_w_tree_find( {t}, {c}, ZKT_NEXT_MATCH, a_);", kEnd,
    "    static ZKT_RET next_match( zkt_trans_h t_, zkt_cursor_h c_{keys});",
    "next_match( zkt_trans_h t_, zkt_cursor_h c_{keys})", "{ return {db}::{prefix}_next_match(t_, c_{pass}); " },
  // OP_PREFIX_MATCH
  { "{prefix}_prefix_match", KEY_ARRAY,
    " ( zkt_trans_h {t}, zkt_cursor_h {c}{keys} )",
    "  return zkt_w_tree_find( {t}, {c}, ZKT_PREF, a_);", kEnd,
    "    static ZKT_RET prefix_match( zkt_trans_h t_, zkt_cursor_h c_{keys});",
    "prefix_match( zkt_trans_h t_, zkt_cursor_h c_{keys})", "{ return {db}::{prefix}_prefix_match(t_, c_{pass}); " },
  // OP_LONGEST_MATCH
  { "{prefix}_longest_match", KEY_ARRAY,
    " ( zkt_trans_h {t}, zkt_cursor_h {c}{keys} )",
    "  return zkt_w_tree_find( {t}, {c}, ZKT_BEST, a_);", kEnd,
    "    static ZKT_RET longest_match( zkt_trans_h t_, zkt_cursor_h c_{keys});",
    "longest_match( zkt_trans_h t_, zkt_cursor_h c_{keys})", "{ return {db}::{prefix}_longest_match(t_, c_{pass}); " },
  // OP_EXACT_MATCH
  { "{prefix}_exact_match", KEY_ARRAY,
    " ( zkt_trans_h {t}, zkt_cursor_h {c}{keys} )",
    "  return zkt_w_tree_find( {t}, {c}, ZKT_EX, a_);", kEnd,
    "    static ZKT_RET exact_match( zkt_trans_h t_, zkt_cursor_h c_{keys});",
    "exact_match( zkt_trans_h t_, zkt_cursor_h c_{keys})", "{ return {db}::{prefix}_exact_match(t_, c_{pass}); " },
  // OP_PATTERN_SIZE: no transaction (intended)
  { "{prefix}_pattern_size", PATTERN_ARRAY,
    "({keys0}, /*OUT*/ uint4 *size_)",
    "  (pa_+1)->field_type=0;\n"
    "   return zkt_pattern_size( a_,size_);", kEnd,
    "    static ZKT_RET pattern_size({keys0}, /*OUT*/ uint4 *size_); ",
    "pattern_size({keys0}, /*OUT*/ uint4 *size_)", "{ return {db}::{prefix}_pattern_size({pass0}, size_); " },
  // OP_PATTERN_SEARCH
  { "{prefix}_pattern_search", PATTERN_ARRAY,
    " ( zkt_trans_h {t}, zkt_cursor_h {c}, /*INOUT*/ void *allocated_pattern, zkt_size_t memsize {keys} )",
    "  (pa_+1)->field_type=0;\n"
    "  return zkt_pattern_search({t}, {c}, allocated_pattern, memsize, a_);", kEnd,
    "    static ZKT_RET pattern_search  ( zkt_trans_h {t}, zkt_cursor_h {c}, /*INOUT*/ void *allocated_pattern, zkt_size_t memsize {keys}); ",
    "pattern_search  ( zkt_trans_h {t}, zkt_cursor_h {c}, /*INOUT*/ void *allocated_pattern, zkt_size_t memsize {keys})",
    "{ return {db}::{prefix}_pattern_search({t}, {c}, allocated_pattern, memsize{pass}); " },
  // OP_PATTERN_NEXT
  { "{prefix}_pattern_next", NO_ARRAY,
    " ( zkt_trans_h {t}, zkt_cursor_h {c}, /*INOUT*/ void *allocated_pattern )",
    "{ return zkt_pattern_next({t}, {c} , allocated_pattern,  0);", kEnd,
    "    static ZKT_RET pattern_next  ( zkt_trans_h {t}, zkt_cursor_h {c}, void *allocated_pattern ); ",
    "pattern_next  ( zkt_trans_h {t}, zkt_cursor_h {c}, void *allocated_pattern )",
    "{ return {db}::{prefix}_pattern_next({t}, {c}, allocated_pattern); " },
  // OP_LOCATE
  { "{prefix}_locate", NO_ARRAY,
    " ( zkt_trans_h t, /*OUT*/ zkt_cursor_h c, {class} * handle)",
    "{ return zkt_w_cursor_locate( t, {code}, (zkt_objhandle_h)handle, c);", kEnd,
    "    static ZKT_RET locate(zkt_trans_h t, /*OUT*/ zkt_cursor_h c, {hpp} & handle);",
    "locate(zkt_trans_h t, /*OUT*/ zkt_cursor_h c, {hpp} & handle)", "{ return {db}::{prefix}_locate(t, c, &handle); " },
  // OP_GET_INDEX
  { "{prefix}_get_index", NO_ARRAY,
    " ( zkt_cursor_h c, /*OUT*/ uint2 * index )",
    "{ return zkt_w_cursor_get_index( c, index); ", kEnd,
    "    static ZKT_RET  get_index( zkt_cursor_h c, uint2 & result );",
    "get_index( zkt_cursor_h c, uint2 & result )", "{ return {db}::{prefix}_get_index(c, &result); " },
  // OP_FIND
  { "{prefix}_find", KEY_ARRAY,
    " ( zkt_trans_h {t}{keys}, /*OUT*/ {class} *handle_)",
    "  return zkt_w_tree_find_scalar({t}, {code}, a_, (zkt_objhandle_h)handle_);", kEnd,
    "    static ZKT_RET find( zkt_trans_h t_{keys}, /*OUT*/ {hpp} & handle_); ",
    "find( zkt_trans_h t_{keys}, /*OUT*/ {hpp} & handle_)",
    "{ ZKT_RET ret_ = {db}::{prefix}_find(t_{pass}, &handle_ ); handle_.set_valid(ret_==ZKT_S_OK); return ret_; " },
  // OP_FIND_VECT
  { "{prefix}_find", KEY_ARRAY,
    " ( zkt_trans_h {t}{keys}, /*OUT*/ {class} *handle_, /*OUT*/ uint2 *index_)",
    "  return zkt_w_tree_find_vect({t}, {code}, a_, (zkt_objhandle_h)handle_, index_);", kEnd,
    "    static ZKT_RET find( zkt_trans_h t_{keys}, /*OUT*/ {hpp} & handle_, /*OUT*/ uint2 & index_); ",
    "find( zkt_trans_h t_{keys}, /*OUT*/ {hpp} & handle_, /*OUT*/ uint2 & index_)",
    "{ ZKT_RET ret_ = {db}::{prefix}_find(t_{pass}, &handle_, & index_); handle_.set_valid(ret_==ZKT_S_OK); return ret_; " },
  // OP_HASH_FIND
  { "{prefix}_find", KEY_ARRAY,
    " ( zkt_trans_h {t}{keys}, /*OUT*/ {class} *handle_)",
    "  return zkt_w_hash_find_scalar({t}, {code}, a_, (zkt_objhandle_h)handle_);", kEnd,
    "    static ZKT_RET find( zkt_trans_h t_{keys}, /*OUT*/ {hpp} & handle_); ",
    "find( zkt_trans_h t_{keys}, /*OUT*/ {hpp} & handle_)",
    "{ ZKT_RET ret_ = {db}::{prefix}_find(t_{pass}, &handle_ ); handle_.set_valid(ret_==ZKT_S_OK); return ret_; " },
  // OP_HASH_FIND_VECT
  { "{prefix}_find", KEY_ARRAY,
    " ( zkt_trans_h {t}{keys}, /*OUT*/ {class} *handle_, /*OUT*/ uint2 *index_)",
    "  return zkt_w_hash_find_vect({t}, {code}, a_, (zkt_objhandle_h)handle_, index_);", kEnd,
    "    static ZKT_RET find( zkt_trans_h t_{keys}, /*OUT*/ {hpp} & handle_, /*OUT*/ uint2 & index_); ",
    "find( zkt_trans_h t_{keys}, /*OUT*/ {hpp} & handle_, /*OUT*/ uint2 & index_)",
    "{ ZKT_RET ret_ = {db}::{prefix}_find(t_{pass}, &handle_, & index_); handle_.set_valid(ret_==ZKT_S_OK); return ret_; " },
  // OP_FROM_CURSOR: a simple key; {type} is its pointer type, {segment} its number
  { "{prefix}_{field}_from_cursor", NO_ARRAY,
    " ( zkt_trans_h t, zkt_cursor_h csr, {type} value )",
    "{ return zkt_w_cursor_extract_field(t,csr,{segment}, value, sizeof(*value),0 ); ", kEnd,
    "    static ZKT_RET {field}_from_cursor ( zkt_trans_h t, zkt_cursor_h csr, {type} value );",
    "{field}_from_cursor ( zkt_trans_h t, zkt_cursor_h csr, {type} value )",
    "{ return {db}::{prefix}_{field}_from_cursor( t, csr, value );" },
  // OP_FROM_CURSOR_BUFFER: any other key
  { "{prefix}_{field}_from_cursor", NO_ARRAY,
    " ( zkt_trans_h t, zkt_cursor_h csr, {type} buffer, zkt_size32_t buffer_size, zkt_size32_t* length )",
    "{ return zkt_w_cursor_extract_field(t,csr,{segment}, buffer, buffer_size, length ); ", kEnd,
    "    static ZKT_RET {field}_from_cursor ( zkt_trans_h t, zkt_cursor_h csr, {type} buffer, zkt_size32_t buffer_size, zkt_size32_t* length );",
    "{field}_from_cursor ( zkt_trans_h t, zkt_cursor_h csr, {type} buffer, zkt_size32_t buffer_size, zkt_size32_t* length )",
    "{ return {db}::{prefix}_{field}_from_cursor( t, csr, buffer, buffer_size, length );" },
};

const char kArrayHead[] =
  "{ zkt_external_field_t a_[{n}];\n"
  "  zkt_external_field_h pa_ = a_;\n";
const char kSearchArrayHead[] =
  "{ zkt_external_field_t a_ [{n}];\n"
  "  zkt_external_field_h pa_ = a_;\n";

// Patricia extras on a numeric key; the line end behind the statement is ours.
const char kBitsParam[]  = ", uint2 number_of_bits ";
const char kBitsPass[]   = ",number_of_bits ";
const char kBitsAssign[] = "  pa_->bit_len = number_of_bits; \n";

// The nested class; the line end behind "{ public: " is ours.
const char kIndexClassHead[] = "  class {index}{kind}\n  { public: \n";
const char kIndexClassEnd[]  = "  }; // {index}\n";
// clang-format on

const char* indexKindComment(IndexType type) {
  switch (type) {
    case IT_Tree: return " // b-tree index";
    case IT_Hash: return " // hash index";
    case IT_KDTree: return " // kd-tree index";
    case IT_RTree: return " // R-tree index";
    case IT_PTree: return " // patricia tree index";
    case IT_Trigram: return " // Trigram index";
    case IT_List: return " // L2-List";
  }
  throw "unknown case";
}

// The key text s without its leading comma.
mstring withoutComma(const mstring& s) { return s.empty() ? s : mstring(s.c_str() + 1); }

}  // namespace

// The functions of one index in the order in which they are written. A
// family has at most 14.
struct OpList {
  IndexOp ops[16];
  int n = 0;
  void add(IndexOp op) { ops[n++] = op; }
  void add(IndexOp a, IndexOp b) {
    add(a);
    add(b);
  }
};

// The functions of idx; the {field}_from_cursor functions of tree and hash
// indexes follow them.
static void indexFamily(const Index& idx, OpList& f) {
  const bool vect = idx.m_vectorSegmentNum >= 0;
  const bool voluntary = idx.m_isVoluntary;
  switch (idx.m_IndexType) {
    case IT_Tree:
      if (voluntary) f.add(OP_CREATE, OP_DROP);
      f.add(OP_CURSOR);
      f.add(OP_SEARCH);
      if (idx.m_isThick && idx.v_fldParsed.size() == 1 && vect) f.add(OP_SEARCH_ANY, OP_SEARCH_ALL);
      f.add(OP_COMPARE);
      if (!idx.m_isUserdef) {
        f.add(OP_PATTERN_SIZE, OP_PATTERN_SEARCH);
        f.add(OP_PATTERN_NEXT);
      }
      f.add(vect ? OP_GET_INDEX : OP_LOCATE);
      if (idx.m_isUnique) f.add(vect ? OP_FIND_VECT : OP_FIND);
      return;
    case IT_Hash:  // no create, drop or locate, voluntary or not
      f.add(OP_CURSOR);
      f.add(OP_COMPARE);
      if (idx.m_isUnique)
        f.add(vect ? OP_HASH_FIND_VECT : OP_HASH_FIND);
      else
        f.add(OP_SEARCH_HASH);
      return;
    case IT_KDTree:  // the same family with the search of its kind
    case IT_RTree:
    case IT_Trigram:
      if (voluntary) f.add(OP_CREATE, OP_DROP);
      f.add(OP_CURSOR);
      f.add(idx.m_IndexType == IT_KDTree ? OP_SEARCH_RANGE : idx.m_IndexType == IT_RTree ? OP_SEARCH_VALUE : OP_SEARCH);
      if (!vect) f.add(OP_LOCATE);
      return;
    case IT_PTree:
      if (voluntary) f.add(OP_CREATE, OP_DROP);
      f.add(OP_CURSOR);
      f.add(OP_SEARCH);
      f.add(OP_COMPARE);
      f.add(OP_NEXT_MATCH, OP_PREFIX_MATCH);
      f.add(OP_LONGEST_MATCH, OP_EXACT_MATCH);
      f.add(vect ? OP_GET_INDEX : OP_LOCATE);
      if (idx.m_isUnique) f.add(vect ? OP_FIND_VECT : OP_FIND);
      return;
    case IT_List:  // list indexes have no API of their own
      return;
  }
  throw "unknown case";
}

// One index function of a class in the routing pattern, with its C++ method
// in the nested class scope. n is the number of key segments.
static void indexFunction(GenOutput& gen, Class& cls, const Frag& fr, IndexOp op, const mstring& scope, long n) {
  const IndexFunction& f = kFunctions[op];
  mstring body;
  switch (f.array) {
    case NO_ARRAY:
      break;
    case KEY_ARRAY:
      body = Frag(fr).set("n", n).fill(kArrayHead) + fr.fill("{assign}");
      break;
    case SEARCH_ARRAY:
      body = Frag(fr).set("n", n).fill(kSearchArrayHead) + fr.fill("{assign}");
      break;
    case PATTERN_ARRAY:
      body = Frag(fr).set("n", n + 1).fill(kArrayHead) + fr.fill("{assign}");
      break;
  }
  body += fr.fill(f.body);
  body += f.close;
  gen.cFunction(fr.fill(f.name), cls.m_maxFuncName, fr.fill(f.params), body);
  gen.cppMethod(scope, fr.fill(f.decl) + "\n", fr.fill(f.head) + "\n" + fr.fill(f.def) + kEnd);
}

void GenOutput::outputIndex(Class& cls, Index& idx) {
  StrParams sp;
  mvector<mstring> ptrTypes;
  sp.addSegments(idx, &m_sc, ptrTypes);
  sp.setup();

  // A patricia index that is not bit-based takes a bit length on a numeric
  // key; the last segment decides.
  const Index::Segment& last = idx.v_fldParsed[idx.v_fldParsed.size() - 1];
  const bool bits = idx.m_IndexType == IT_PTree && !idx.m_isBitBased &&
                    last.last().m_pFld->dict_info(false).unionel[0] != 0;
  const mstring keys = sp.strParams + (bits ? kBitsParam : "");
  const mstring pass = sp.strParamsTransit + (bits ? kBitsPass : "");
  const Index::FldEl& first = idx.v_fldParsed[0].last();  // the value of an r-tree search

  const mstring prefix = cls.m_name + "_" + idx.m_name;
  const mstring hpp = hppClass(cls.m_name);
  Frag fr;
  fr.set("db", m_sc.m_dbname);
  fr.set("class", cls.m_name);
  fr.set("hpp", hpp);
  fr.set("index", idx.m_name);
  fr.set("kind", indexKindComment(idx.m_IndexType));
  fr.set("prefix", prefix);
  fr.set("code", (long)idx.m_code);
  fr.set("t", sp.t);
  fr.set("c", sp.c);
  fr.set("keys", keys);
  fr.set("pass", pass);
  fr.set("keys0", withoutComma(keys));
  fr.set("pass0", withoutComma(pass));
  fr.set("assign", sp.strParamsExtAssign + (bits ? kBitsAssign : ""));
  fr.set("field", first.m_name);
  fr.set("ctype", first.m_pFld->m_pstruct->m_cType);

  fr.fillTo(*m_hpp, kIndexClassHead);
  OpList ops;
  indexFamily(idx, ops);
  const mstring scope = hpp + "::" + idx.m_name;
  const long n = (long)idx.v_fldParsed.size();
  for (int i = 0; i < ops.n; i++) indexFunction(*this, cls, fr, ops.ops[i], scope, n);
  if (idx.m_IndexType == IT_Tree || idx.m_IndexType == IT_Hash) {
    for (unsigned int j = 0; j < idx.v_fldParsed.size(); j++) {
      const Index::Segment& seg = idx.v_fldParsed[j];
      if (seg.m_isVectorBased || seg.m_isArrayBased) continue;
      gen_direct_idx_fields(cls, idx, prefix, ptrTypes[j], (int)j);
    }
  }
  fr.fillTo(*m_hpp, kIndexClassEnd);
}

void GenOutput::gen_direct_idx_fields(Class& cls, Index& idx, mstring prefix, mstring type, int segment) {
  const Field& f = *idx.v_fldParsed[segment].last().m_pFld;
  Frag fr;
  fr.set("db", m_sc.m_dbname);
  fr.set("prefix", prefix);
  fr.set("field", f.m_name);
  fr.set("type", type);
  fr.set("segment", (long)segment);
  const IndexOp op = f.m_pstruct->m_category == ET_SIMPLE ? OP_FROM_CURSOR : OP_FROM_CURSOR_BUFFER;
  indexFunction(*this, cls, fr, op, hppClass(cls.m_name) + "::" + idx.m_name, 0);
}
