// Whole-struct functions: a direct struct's get_ptr, get_all and put_all, and the {struct}_fixed view with its copy functions.
#include "genout.h"

namespace {

// clang-format off
const char kGetPtrParams[] = " ( {s} *handle, /*OUT*/ {s}_d_aligned_to_1** dest)";
const char kGetPtrBody[]   = "{\n return zkt_w_direct_struct_get_ptr( (zkt_objhandle_h) handle, (void**)dest, sizeof({s}_d_aligned_to_1));\n}{nl}{nl}";

// "rc=" without a blank and "0, 0 ," in the gets, "0, 0," in the puts: intended.
const char kGetAllParams[]       = " ( {s} *handle, /*OUT*/ {s}_d * dest)";
const char kGetAllPackedHead[]   = "{s}_d_aligned_to_1 src;\n ZKT_RET rc= zkt_w_chars_get( (zkt_objhandle_h) handle, 0, 0 , (char*)&src, sizeof({s}_d_aligned_to_1), sizeof({s}_d_aligned_to_1));\n";
const char kGetAllPackedMember[] = " zkt_memcpy((char*)&dest->{x}, (char*)&src.{x}, sizeof(dest->{x}));\n";
const char kGetAllPlain[]        = " ZKT_RET rc= zkt_w_chars_get( (zkt_objhandle_h) handle, 0, 0 , (char*)dest, sizeof(*dest), sizeof(*dest));{nl}";
const char kGetAllEnd[]          = " return rc;{nl}}{nl}{nl}";
const char kGetAllDecl[]         = "  ZKT_RET get_all ( {s}_d * dest);{nl}";
const char kGetAllDef[]          = "get_all ( {s}_d * dest){nl}{ ZKT_RET ret_ = {db}::{s}_get_all(this, dest); return ret_; {nl}}{nl}{nl}";

const char kPutAllParams[]       = " ( {s} *handle, const {s}_d * src)";
const char kPutAllPackedHead[]   = "{s}_d_aligned_to_1 dest;\n";
const char kPutAllPackedMember[] = " zkt_memcpy((char*)&dest.{x}, (char*)&src->{x}, sizeof(dest.{x}));\n";
const char kPutAllPackedEnd[]    = " return zkt_w_chars_put( (zkt_objhandle_h) handle, 0, 0, (char*)&dest, sizeof({s}_d_aligned_to_1), sizeof({s}_d_aligned_to_1), 0);{nl}}{nl}{nl}";
const char kPutAllPlain[]        = " return zkt_w_chars_put( (zkt_objhandle_h) handle, 0, 0, (char*)src, sizeof(*src), sizeof(*src), 0);{nl}}{nl}{nl}";
const char kPutAllDecl[]         = "  ZKT_RET put_all ( {s}_d * src);{nl}";
const char kPutAllDef[]          = "put_all ( {s}_d * src){nl}{ ZKT_RET ret_ = {db}::{s}_put_all(this, src); return ret_; {nl}}{nl}{nl}";
const char kBodyStart[]          = "{\n ";
// clang-format on

// What a field is in the fixed view of its struct.
enum FixedKind {
  FK_NONE,       // not part of the fixed view
  FK_STRUCT,     // a member struct that has a fixed view itself
  FK_SIMPLE,     // a scalar
  FK_CHARS,      // char<n>, binary<n>
  FK_NCHARS,     // nchar<n>
  FK_WCHARS,     // wide characters
  FK_BOOL_ARRAY, // an array of booleans, eight to the byte
  FK_ARRAY,      // an array of other scalars
  FK_SPATIAL,    // a rectangle or point: an array of scalars with a whole-array get
};

// The kind of f in the fixed view; a member struct counts by the number of
// fixed fields its struct has at this moment.
FixedKind fixedKind(const Field& f) {
  if (f.m_isHidden || f.m_isVector) return FK_NONE;
  const Struct& t = *f.m_pstruct;
  if (f.m_isArray) {
    if (t.m_category != ET_SIMPLE) return FK_NONE;
    if (f.m_isRTreeRect || f.m_isRTreePoint) return FK_SPATIAL;
    return f.m_eltype == "boolean" ? FK_BOOL_ARRAY : FK_ARRAY;
  }
  switch (t.m_category) {
    case ET_SIMPLE:
      return FK_SIMPLE;
    case ET_CHARS:
    case ET_BINARY:
      return FK_CHARS;
    case ET_UNICODE_CHARS:
      return FK_NCHARS;
    case ET_WIDE_CHARS:
      return FK_WCHARS;
    case ET_STRUCT:
      return !f.m_isOptional && t.m_nFixedFields > 0 ? FK_STRUCT : FK_NONE;
    case ET_AUTOID:
    case ET_STRING:
    case ET_VARBINARY:
    case ET_UNICODE_STRING:
    case ET_WCHAR_STRING:
    case ET_BLOB:
    case ET_REF:
    case ET_DIRECT_STRUCT:
    case ET_SEQUENCE:
    case ET_VERSION:
    case ET_AUTOOID:
      return FK_NONE;
  }
  return FK_NONE;
}

// One row per FixedKind: the member of {struct}_fixed, the clause of
// _fixed_get ({call}, or the whole clause for a struct) and of _fixed_put.
struct FixedRow {
  const char* member;
  const char* get;
  const char* put;
};
// clang-format off
const FixedRow kFixedRows[] = {
  //  member                                                   _fixed_get                                                  _fixed_put
  { nullptr,                                                   nullptr,                                                    nullptr },  // FK_NONE
  { "  {tname}_fixed {field};{nl}",
    "(rc_ = {b}_read_handle(handle_, &{field})) == ZKT_S_OK && ((rc_ = {tname}_fixed_get(&{field}, &dst_->{field})) == ZKT_S_OK || (has_nulls_ = rc_) == ZKT_S_NULL_VALUE)",
    "(rc_ = {b}_write_handle(handle_, &{field})) == ZKT_S_OK && (rc_ = {tname}_fixed_put(&{field}, &src_->{field})) == ZKT_S_OK" },  // FK_STRUCT
  { "  {ctype} {field};{nl}",                                  "{b}_get(handle_, &dst_->{field})",                          "(rc_ = {np}{b}_put(handle_, src_->{field})) == ZKT_S_OK" },                  // FK_SIMPLE
  { "  char {field}[{usize}];{nl}",                            "{b}_get(handle_, dst_->{field}, {usize})",                  "(rc_ = {np}{b}_put(handle_, src_->{field}, {usize})) == ZKT_S_OK" },         // FK_CHARS
  { "  nchar_t {field}[{usize} / sizeof(nchar_t)];{nl}",       "{b}_get(handle_, dst_->{field}, {usize})",                  "(rc_ = {np}{b}_put(handle_, src_->{field}, {usize})) == ZKT_S_OK" },         // FK_NCHARS
  { "  wchar_t {field}[{usize} / sizeof(wchar_t)];{nl}",       "{b}_get(handle_, dst_->{field}, {usize})",                  "(rc_ = {np}{b}_put(handle_, src_->{field}, {usize})) == ZKT_S_OK" },         // FK_WCHARS
  { "  {ctype} {field}[{bytes}];{nl}",                         "{b}_get_range(handle_, 0, {n}, dst_->{field})",             "(rc_ = {np}{b}_put_range(handle_, 0, {n}, src_->{field})) == ZKT_S_OK" },    // FK_BOOL_ARRAY
  { "  {ctype} {field}[{n}];{nl}",                             "{b}_get_range(handle_, 0, {n}, dst_->{field})",             "(rc_ = {np}{b}_put_range(handle_, 0, {n}, src_->{field})) == ZKT_S_OK" },    // FK_ARRAY
  { "  {ctype} {field}[{n}];{nl}",                             "{b}_get(handle_, dst_->{field})",                           "(rc_ = {np}{b}_put(handle_, src_->{field})) == ZKT_S_OK" },                  // FK_SPATIAL
};

const char kFixedHead[] = "typedef struct {struct}_fixed_ {{nl}";
const char kFixedEnd[]  = "} {struct}_fixed;{nl}{nl}";

const char kLocalHandle[]  = "  {tname} {field};{nl}";
const char kClauseStart[]  = "{nl}    ";
const char kClauseJoin[]   = " &&";
const char kReturn[]       = "  return";
const char kCall[]         = "(rc_ = {call}) == ZKT_S_OK";
const char kNullableCall[] = "((rc_ = {call}) == ZKT_S_OK || (has_nulls_ = rc_) == ZKT_S_NULL_VALUE)";
const char kNullPut[]      = "!src_->{field}_indicator ? {b}_indicator_put(handle_, 0) : ";

const char kFixedGetParams[] = " ( {struct} *handle_, {struct}_fixed* dst_ )";
const char kFixedGetStart[]  = "{ ZKT_RET rc_ = ZKT_S_OK, has_nulls_ = ZKT_S_OK;{nl}";
const char kFixedGetEnd[]    = "{nl}  ? has_nulls_ : rc_;{nl}}{nl}{nl}";
const char kFixedPutParams[] = " ( {struct} *handle_, {struct}_fixed const* src_ )";
const char kFixedPutStart[]  = "{ ZKT_RET rc_;{nl}";
const char kFixedPutEnd[]    = "{nl}  ? ZKT_S_OK : rc_;{nl}}{nl}{nl}";
// clang-format on

// The placeholders of field f's rows: {tname} {field} {ctype} {usize} {n}
// {bytes} {b} {nl}, then {np} of the put.
void fixedFrag(const Struct& s, const Field& f, Frag& fr) {
  const mstring b = s.m_name + "_" + f.m_name;
  fr.set("tname", f.m_pstruct->m_name).set("field", f.m_name).set("ctype", f.m_pstruct->m_cType);
  setSize(fr, "usize", f.m_u_layout->m_size).set("n", (long)f.m_arraySize);
  fr.set("bytes", (long)((f.m_arraySize + 7) / 8)).set("b", b).set("nl", "\n");
  fr.set("np", f.m_isNullable ? fr.fill(kNullPut) : mstring());
}

}  // namespace

void GenOutput::outputDirectStructFunctions(Struct& s) {
  Frag fr;
  fr.set("s", s.m_name).set("db", m_sc.m_dbname).set("nl", "\n");
  const mstring hpp = hppClass(s.m_name);
  const int width = s.m_maxFuncName;

  cFunction(s.m_name + "_get_ptr", width, fr.fill(kGetPtrParams), fr.fill(kGetPtrBody));

  // The packed loops copy every member, hidden ones too.
  mstring get = kBodyStart;
  mstring put = kBodyStart;
  if (s.m_is_packed) {
    get += fr.fill(kGetAllPackedHead);
    put += fr.fill(kPutAllPackedHead);
    for (unsigned int i = 0; i < s.v_field.size(); i++) {
      fr.set("x", s.v_field[i].m_name);
      get += fr.fill(kGetAllPackedMember);
      put += fr.fill(kPutAllPackedMember);
    }
    put += fr.fill(kPutAllPackedEnd);
  } else {
    get += fr.fill(kGetAllPlain);
    put += fr.fill(kPutAllPlain);
  }
  get += fr.fill(kGetAllEnd);

  cFunction(s.m_name + "_get_all", width, fr.fill(kGetAllParams), get);
  cppMethod(hpp, fr.fill(kGetAllDecl), fr.fill(kGetAllDef));
  cFunction(s.m_name + "_put_all", width, fr.fill(kPutAllParams), put);
  cppMethod(hpp, fr.fill(kPutAllDecl), fr.fill(kPutAllDef));
}

void GenOutput::genFixedStruct(Struct& s) {
  int count = 0;
  if (s.m_category != ET_REF)
    for (unsigned int i = 0; i < s.v_field.size(); i++)
      if (fixedKind(s.v_field[i]) != FK_NONE) count++;
  s.m_nFixedFields = count;
  if (count == 0) return;

  Frag fr;
  fr.set("struct", s.m_name).set("nl", "\n");
  fr.fillTo(*m_h, kFixedHead);
  for (unsigned int i = 0; i < s.v_field.size(); i++) {
    const Field& f = s.v_field[i];
    const FixedKind k = fixedKind(f);
    if (k == FK_NONE) continue;
    fixedFrag(s, f, fr);
    fr.fillTo(*m_h, kFixedRows[k].member);
  }
  fr.fillTo(*m_h, kFixedEnd);
}

void GenOutput::outputFixed(Struct& s) {
  if (s.m_category != ET_STRUCT && s.m_category != ET_DIRECT_STRUCT) return;
  if (s.m_nFixedFields == 0) return;

  Frag fr;
  fr.set("struct", s.m_name).set("nl", "\n");
  mstring locals;
  mstring get, put;
  for (unsigned int i = 0; i < s.v_field.size(); i++) {
    const Field& f = s.v_field[i];
    const FixedKind k = fixedKind(f);
    if (k == FK_NONE) continue;
    fixedFrag(s, f, fr);
    if (k == FK_STRUCT) locals += fr.fill(kLocalHandle);

    if (!get.empty()) get += kClauseJoin;
    get += fr.fill(kClauseStart);
    if (k == FK_STRUCT) {
      get += fr.fill(kFixedRows[k].get);
    } else {
      fr.set("call", fr.fill(kFixedRows[k].get));
      get += fr.fill(f.m_isNullable ? kNullableCall : kCall);
    }

    if (f.m_isBitmapFld) continue;  // read by _fixed_get, never written back
    if (!put.empty()) put += kClauseJoin;
    put += fr.fill(kClauseStart) + fr.fill(kFixedRows[k].put);
  }

  cFunction(s.m_name + "_fixed_get", s.m_maxFuncName, fr.fill(kFixedGetParams),
            fr.fill(kFixedGetStart) + locals + kReturn + get + fr.fill(kFixedGetEnd));
  cFunction(s.m_name + "_fixed_put", s.m_maxFuncName, fr.fill(kFixedPutParams),
            fr.fill(kFixedPutStart) + locals + kReturn + put + fr.fill(kFixedPutEnd));
}
