// Field accessors: blob, reference, struct-member, optional and spatial (rect and point) fields.
#include "genout.h"

namespace {

// One C accessor with its C++ method; def follows "inline  ZKT_RET {struct}::".
struct MemberFunction {
  const char* suffix;
  const char* params;
  bool putGuard;  // else the get guard
  const char* body;  // after "{" and the guard
  const char* decl;
  const char* def;
};

// clang-format off
// Blobs always take both offsets and never pass an event or {idx}. The
// differing blanks in the bodies and tails are intended.
const MemberFunction kBlobFunctions[] = {
  //  suffix      params                                                                                                 put    body                                                                                                                                                 decl                                                                                             def
  { "_get",    " ( {struct} *handle, uint4 start_offset, /*OUT*/ char * dest, uint4 dest_size, /*OUT*/ uint4 * len)", false, " return zkt_w_blob_get2( (zkt_objhandle_h)handle, {uoff}, {coff}, {no}, start_offset, dest, dest_size, len);{nl}}{nl}{nl}",                "  ZKT_RET {field}_get(uint4 start_offset, char * dest, uint4 dest_size, uint4 & len );{nl}",  "{field}_get(uint4 start_offset, char * dest, uint4 dest_size, uint4 & len ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_get(this, start_offset, dest, dest_size, &len); return ret_; {nl}}{nl}{nl}" },
  { "_size",   " ( {struct} *handle, /*OUT*/ uint4 * result)",                                                         false, " return zkt_w_blob_len2( (zkt_objhandle_h)handle, {uoff}, {coff}, {no}, result);{nl}}{nl}{nl}",                                                       "  ZKT_RET {field}_size(uint4 & result);{nl}",                                                 "{field}_size(uint4 & result){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_size(this, &result); return ret_;{nl}}{nl}{nl}" },
  { "_put",    " ( {struct} *handle, const void * src, uint4 nbytes )",                                                true,  " return zkt_w_blob_put2( (zkt_objhandle_h)handle, {uoff}, {coff}, {no}, (const char*)src, nbytes);{nl}}{nl}{nl}",                                    "  ZKT_RET {field}_put( const void * src, uint4 nbytes );{nl}",                                "{field}_put( const void * src, uint4 nbytes ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_put(this, src, nbytes); return ret_; {nl}} {nl}{nl}" },
  { "_append", " ( {struct} *handle, const void * src, uint4 nbytes )",                                                true,  " return zkt_w_blob_append2( (zkt_objhandle_h)handle, {uoff}, {coff}, {no}, (const char*)src, nbytes);{nl}}{nl}{nl}",                                 "  ZKT_RET {field}_append( const void * src, uint4 nbytes );{nl}",                             "{field}_append( const void * src, uint4 nbytes ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_append(this, src, nbytes); return ret_; {nl}} {nl}{nl}" },
};

// A reference travels as bytes through the character wrappers. The get's
// cast has a blank before "handle", the put's none: intended.
const MemberFunction kRefFunctions[2][2] = {
  { // offsets differ
    { "_get", " ( {struct} *handle, /*OUT*/ {oidtype} * result )", false, " return zkt_w_chars_get2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no}, (char*)result, sizeof(*result), {oidsize});{nl}}{nl}{nl}",         "  ZKT_RET {field}_get( {oidtype} & result );{nl}", "{field}_get ( {oidtype} & result ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_get(this, &result); return ret_;{nl}} {nl}{nl}" },
    { "_put", " ( {struct} *handle, {oidtype}* src )",              true,  " return zkt_w_chars_put2( (zkt_objhandle_h)handle, {uoff}, {coff}, {no}, (const char *)src, sizeof(*src), {oidsize}, {idx});{nl}}{nl}{nl}", "  ZKT_RET {field}_put( {oidtype} & src );{nl}",    "{field}_put( {oidtype} & src ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_put(this, & src); return ret_;{nl}} {nl}{nl}" },
  },
  { // offsets equal
    { "_get", " ( {struct} *handle, /*OUT*/ {oidtype} * result )", false, " return zkt_w_chars_get( (zkt_objhandle_h) handle, {uoff}, {no}, (char*)result, sizeof(*result), {oidsize});{nl}}{nl}{nl}",                 "  ZKT_RET {field}_get( {oidtype} & result );{nl}", "{field}_get ( {oidtype} & result ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_get(this, &result); return ret_;{nl}} {nl}{nl}" },
    { "_put", " ( {struct} *handle, {oidtype}* src )",              true,  " return zkt_w_chars_put( (zkt_objhandle_h)handle, {uoff}, {no}, (const char *)src, sizeof(*src), {oidsize}, {idx});{nl}}{nl}{nl}",          "  ZKT_RET {field}_put( {oidtype} & src );{nl}",    "{field}_put( {oidtype} & src ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_put(this, & src); return ret_;{nl}} {nl}{nl}" },
  },
};

// A struct member binds a handle of the member struct; never a guard. Both
// declare h "/*OUT*/"; "{no}); " ends in a blank, "{idx});" not: intended.
const char kHandleParams[] = " ( {struct} *handle, /*OUT*/ {tname} * h )";
const MemberFunction kStructFunctions[] = {
  { "_read_handle",  kHandleParams, false, "{ return zkt_w_struct_get2( (zkt_objhandle_h)handle, (zkt_objhandle_h)h, {uoff}, {coff}, {no}); {nl}}{nl}{nl}",       "  ZKT_RET {field}_read( {tname} & s );{nl}",  "{field}_read( {tname} & s ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_read_handle(this, &s ); s.set_valid(ret_==ZKT_S_OK); return ret_; {nl}} {nl}{nl}" },
  { "_write_handle", kHandleParams, false, "{ return zkt_w_struct_put2( (zkt_objhandle_h)handle, (zkt_objhandle_h)h, {uoff}, {coff}, {no}, {idx});{nl}}{nl}{nl}",  "  ZKT_RET {field}_write( {tname} & s );{nl}", "{field}_write( {tname} & s ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_write_handle(this, &s ); s.set_valid(ret_==ZKT_S_OK); return ret_; {nl}} {nl}{nl}" },
};

// An optional struct; _read marks the object valid, not s: intended.
const MemberFunction kOptionalFunctions[] = {
  { "_read_handle",  kHandleParams,           false, "{ return zkt_w_optional_get2( (zkt_objhandle_h)handle, (zkt_objhandle_h)h, {uoff}, {coff}, {no}); {nl}}{nl}{nl}",                                      "  ZKT_RET {field}_read( {tname} & s); {nl}",  "{field}_read( {tname} & s) {nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_read_handle( this, &s ); set_valid(ret_==ZKT_S_OK); return ret_; {nl}}{nl}{nl}" },
  { "_write_handle", kHandleParams,           false, "{ return zkt_w_optional_put2( (zkt_objhandle_h)handle, (zkt_objhandle_h)h, {gnum}, {uoff}, {coff}, {no}, {tu}, {tc}, {tua}, {tca}); {nl}}{nl}{nl}", "  ZKT_RET {field}_write( {tname} & s); {nl}", "{field}_write( {tname} & s) {nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_write_handle( this, &s ); s.set_valid(ret_==ZKT_S_OK); return ret_; {nl}}{nl}{nl}" },
  { "_erase",        " ( {struct} *handle )", false, "{ return zkt_w_optional_erase2( (zkt_objhandle_h)handle, {uoff}, {coff}, {no}); {nl}}{nl}{nl}",                                                        "  ZKT_RET {field}_erase();{nl}",              "{field}_erase() {nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_erase( this ); return ret_; {nl}}{nl}{nl}" },
};

// rect and point: no suffix 2, yet both offsets.
const char kLengthName[] = "{struct}_{field}_length";
const MemberFunction kSpatialFunctions[] = {
  { "_get", " ( {struct} *handle, /*OUT*/ {ctype} *dest )", false, " return zkt_w_{kind}_get( (zkt_objhandle_h)handle, {uoff}, {coff}, {no}, {esize}, {n}, dest );{nl}}{nl}{nl}",                 "  ZKT_RET {field}_get({ctype} *dest );{nl}",     "{field}_get({ctype} *dest ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_get(this, dest); return ret_; {nl}}{nl}{nl}" },
  { "_put", " ( {struct} *handle, const {ctype} *src )",    true,  " return zkt_w_{kind}_put( (zkt_objhandle_h)handle, {uoff}, {coff}, {no}, {dtype}, {esize}, {n}, {idx}, src );{nl}}{nl}{nl}", "  ZKT_RET {field}_put(const {ctype} * src );{nl}", "{field}_put(const {ctype} * src ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_put(this, src); return ret_; {nl}}{nl}{nl}" },
};
// The message speaks of a rectangle for points too: intended.
const char kSpatialProperty[] = "  struct { {nl}    {struct}* handle_;{nl}    operator std::vector<{ctype}>() const {{nl}      std::vector<{ctype}> arr_({n});{nl}      ZKT_CPP_CHECK({struct}_{field}_get(handle_, &arr_[0]));{nl}      return arr_;{nl}    }{nl}    std::vector<{ctype}> const& operator=(std::vector<{ctype}> const& arr_) {{nl}      if ({n} != arr_.size()) {{nl}        throw ZktException(ZKT_E_CORE, \"Wrong size of rectangle\", __FILE__, __LINE__);{nl}      }{nl}      ZKT_CPP_CHECK({struct}_{field}_put(handle_, &arr_[0]));{nl}      return arr_;{nl}    }{nl}  } {field};{nl}{nl}";
// clang-format on

// The C function of fn, "{" and the field's guard (when guarded and
// nullable) ahead of its body; then, after the managed member when managed,
// its C++ method.
void memberFunction(GenOutput& g, Struct& s, Field& f, const MemberFunction& fn, bool guarded, bool managed,
                    Frag& fr) {
  mstring body;
  if (guarded) {
    body = "{";
    if (f.m_isNullable) body += fr.fill(fn.putGuard ? kPutGuard : kGetGuard);
  }
  body += fr.fill(fn.body);
  g.cFunction(s.m_name + "_" + f.m_name + fn.suffix, s.m_maxFuncName, fr.fill(fn.params), body);
  if (managed) g.outputManagedMember(s, f, fr);
  g.cppMethod(hppClass(s.m_name), fr.fill(fn.decl), fr.fill(fn.def));
}

}  // namespace

void GenOutput::outputBlobField(Struct& s, Class*, Field& f, Frag& fr) {
  for (const MemberFunction& fn : kBlobFunctions) memberFunction(*this, s, f, fn, true, &fn == &kBlobFunctions[0], fr);
}

void GenOutput::outputRefField(Struct& s, Class*, Field& f, Frag& fr) {
  fr.set("oidtype", m_sc.objIdName()).set("oidsize", (long)m_sc.m_oid_sizeof_uplimit);
  const int form = f.m_u_layout->m_offset == f.m_c_layout->m_offset ? 1 : 0;
  memberFunction(*this, s, f, kRefFunctions[form][0], true, true, fr);
  memberFunction(*this, s, f, kRefFunctions[form][1], true, false, fr);
}

void GenOutput::outputStructField(Struct& s, Class*, Field& f, Frag& fr) {
  memberFunction(*this, s, f, kStructFunctions[0], false, true, fr);
  memberFunction(*this, s, f, kStructFunctions[1], false, false, fr);
}

void GenOutput::output_optional_field(Struct& s, Class* c, Field& f, const mstring&) {
  const Struct& t = *f.m_pstruct;
  if (t.m_category != ET_STRUCT) m_err->err("optional may be only struct");
  Frag fr;
  fieldFrag(s, c, f, false, -1, fr);
  fr.set("gnum", (long)t.m_globalNum);
  setSize(fr, "tu", t.m_layout.u.m_size);
  setSize(fr, "tc", t.m_layout.c.m_size);
  setSize(fr, "tua", t.m_layout.u.m_align);
  setSize(fr, "tca", t.m_layout.c.m_align);
  for (const MemberFunction& fn : kOptionalFunctions)
    memberFunction(*this, s, f, fn, false, &fn == &kOptionalFunctions[0], fr);
}

void GenOutput::output_spatial_field(Struct& s, Class* c, Field& f, const mstring&, const char* idx,
                                     const char* kind) {
  if (f.m_arraySize < 1) IErrReporter::panic("internal error, array size", false);
  Frag fr;
  fr.set("struct", s.m_name).set("field", f.m_name);
  outConstant(m_h, fr.fill(kLengthName), f.m_arraySize);
  if (f.m_pstruct->m_category != ET_SIMPLE) throw "unknown case";
  fieldFrag(s, c, f, idx[0] == '1', -1, fr);  // no event
  fr.set("kind", kind).set("dtype", (long)f.dict_info(true).etype);
  for (const MemberFunction& fn : kSpatialFunctions) memberFunction(*this, s, f, fn, true, false, fr);
  if (m_gen_smartptr) cppMember(fr.fill(kSpatialProperty), mstring());
}
