// Field accessors: the accessors of vector fields, by element family.
#include "outelem.h"

namespace {

// clang-format off
const char kSizeName[]   = "_size";
const char kSizeParams[] = " ( {struct} *handle, /*OUT*/ uint2 *result )";
const char kSizeBody[]   = "{ return zkt_w_vector_size_get2( {H}, result);{nl}}{nl}{nl}";

// The C++ _size member differs in small ways by family: intended.
enum SizeForm { SF_STRUCT = 0, SF_SIMPLE = 1, SF_FIXED = 2, SF_STRING = 3 };
struct SizeMember {
  const char* decl;
  const char* def;
};
const SizeMember kSizeMembers[4] = {
  //  m_hpp                                              m_hpp_tail
  { "  ZKT_RET {field}_size(uint2 &result);{nl}",        "inline  ZKT_RET {struct}::{field}_size(uint2 &result) {nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_size(this, &result); return ret_;{nl}}{nl}{nl}" },   // struct
  { "  ZKT_RET {field}_size(uint2 & result); {nl}",      "inline  ZKT_RET {struct}::{field}_size(uint2 & result) {nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_size(this, &result); return ret_;{nl}}{nl}{nl}" },  // simple
  { "  ZKT_RET {field}_size(uint2 & result ); {nl}",     "inline ZKT_RET {struct}::{field}_size(uint2 & result) {nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_size(this, &result); return ret_;{nl}}{nl}{nl}" },   // fixed, reference, nchar
  { "  ZKT_RET {field}_size(uint2 &result); {nl}",       "inline  ZKT_RET {struct}::{field}_size(uint2 &result) {nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_size(this, &result); return ret_;{nl}}{nl}" },        // string, varbinary, nstring
};

const char kAllocName[]   = "_alloc";
const char kAllocParams[] = " ( {struct} *handle, uint2 size)";
const char kAllocDecl[]   = "  ZKT_RET {field}_alloc(uint2 size);{nl}";
const char kAllocDef[]    = "inline  ZKT_RET {struct}::{field}_alloc(uint2 size){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_alloc(this, size); return ret_; {nl}}{nl}{nl}";

// Struct elements: _at passes no size, _put the unaligned sizes and alignments.
const char kStructAllocBody[] = "{ return zkt_w_v_struct_size_put2( {H}, size, {idx} );{nl}}{nl}{nl}";
const ElementFunction kStructFunctions[] = {
  { &elem::kStructAt,  false, "{ return zkt_w_v_struct_e_get2( {H}, (zkt_objhandle_h)h, index);{nl}}{nl}{nl}" },
  { &elem::kStructPut, false, "{ return zkt_w_v_struct_e_put2( {H}, (zkt_objhandle_h)h, index, {tu}, {tc}, {tua}, {tca}, {idx} );{nl}}{nl}{nl}" },
  { &elem::kErase,     false, "{ return zkt_w_v_struct_e_erase2( {H}, index, {idx} );{nl}}{nl}{nl}" },
};

// Simple elements: _at and _put by VectorCase, the others boolean or not.
enum VectorCase { VC_ENUM = 0, VC_BOOLEAN = 1, VC_OTHER = 2 };
const char* const kSimpleAtBody[3] = {
  "{{ {etype} temp; ZKT_RET rc = zkt_w_v_simple_e_get2( {H}, index, {esize}, &temp);{nl}  *result = ({ctype}) temp; return rc; }{nl}}{nl}{nl}",  // enum
  "{ return zkt_w_v_bit_e_get2( {H}, index, result);{nl}}{nl}{nl}",                                                                             // boolean
  "{ return zkt_w_v_simple_e_get2( {H}, index, {esize}, result);{nl}}{nl}{nl}",                                                                 // other
};
const char* const kSimpleGetRangeBody[2] = {
  "{ return zkt_w_v_simple_e_getrange2( {H}, start_index, {esize}, num, dest, {isenum} );{nl}}{nl}{nl}",  // not boolean
  "{ return zkt_w_v_bit_e_getrange2( {H}, start_index, num, dest );{nl}}{nl}{nl}",                          // boolean
};
// A boolean vector's _alloc has no element size and no {idx}: intended.
const char* const kSimpleAllocBody[2] = {
  "{ return zkt_w_v_simple_size_put2( {H}, size, {esize}, {idx} );{nl}}{nl}{nl}",  // not boolean
  "{ return zkt_w_v_bit_size_put2( {H}, size );{nl}}{nl}{nl}",                      // boolean
};
const char* const kSimplePutBody[3] = {
  "{{ {etype} temp = ({etype}) value; {nl}  return zkt_w_v_simple_e_put2( {H}, index, {esize}, {idx}, & temp); }{nl}}{nl}{nl}",  // enum
  "{ return zkt_w_v_bit_e_put2( {H}, index, {idx}, & value);{nl}}{nl}{nl}",                                                     // boolean
  "{ return zkt_w_v_simple_e_put2( {H}, index, {esize}, {idx}, & value);{nl}}{nl}{nl}",                                         // other
};
const char* const kSimplePutRangeBody[2] = {
  "{ return zkt_w_v_simple_e_putrange2( {H}, start_index, {esize}, num, {idx}, src, {isenum} );{nl}}{nl}{nl}",  // not boolean
  "{ return zkt_w_v_bit_e_putrange2( {H}, start_index, num, {idx}, src );{nl}}{nl}{nl}",                        // boolean
};

// Fixed characters.
const char* const kFixedAllocBody[2] = {
  "{ return zkt_w_v_chars_size_put2( {H}, size, {esize}, {idx} );{nl}}{nl}{nl}",   // char<n>, binary<n>
  "{ return zkt_w_v_nchars_size_put2( {H}, size, {esize}, {idx} );{nl}}{nl}{nl}",  // nchar<n>
};
const ElementFunction kFixedFunctions[] = {
  { &elem::kFixedAt,  false, "{ return {fv}_get2( {H}, index, {esize}, dest, dest_size );{nl}}{nl}{nl}" },
  { &elem::kFixedPut, false, "{ return {fv}_put2( {H}, index, {esize}, src, len, {idx} );{nl}}{nl}{nl}" },
};

// Variable characters: _at_len, _at, then _alloc, then _put, _erase.
// "size,{idx}" without a blank is intended.
const char* const kVariableAllocBody[2] = {
  "{ return zkt_w_v_string_size_put2( {H}, size,{idx} );{nl}}{nl}{nl}",    // string, varbinary
  "{ return zkt_w_v_nstring_size_put2( {H}, size, {idx} );{nl}}{nl}{nl}",  // nstring
};
const ElementFunction kVariableGets[] = {
  { &elem::kVariableAtLen, false, "{ return {vv}_get_len2( {H}, index, retlen);{nl}}{nl}{nl}" },
  { &elem::kVariableAt,    false, "{ return {vv}_get2( {H}, index, dest, dest_size, retlen);{nl}}{nl}{nl}" },
};
const ElementFunction kVariablePuts[] = {
  { &elem::kVariablePut,   false, "{ return {vv}_put2( {H}, index, value, len, {idx});{nl}}{nl}{nl}" },
  { &elem::kErase,         false, "{ return {vv}_put2( {H}, index, 0, 0, {idx});{nl}}{nl}{nl}" },
};

// References: _at has parameters of its own (its C++ member is the array's,
// which is constant-initialized, so reading it here is safe); "{idx});"
// without a blank is intended.
const char kRefAllocBody[] = "{ return zkt_w_v_chars_size_put2( {H}, size, {oidsize}, {idx});{nl}}{nl}{nl}";
const ElementSignature kRefAt = { "_at", " ( {struct} *handle, uint2 index, /*OUT*/ {oidtype} * result )", elem::kRefAt.decl, elem::kRefAt.def };
const ElementFunction kRefFunctions[] = {
  { &kRefAt,        false, "{ return zkt_w_v_chars_e_get2( {H}, index, {oidsize}, (char*)result, sizeof(*result));{nl}}{nl}{nl}" },
  { &elem::kRefPut, false, "{ return zkt_w_v_chars_e_put2( {H}, index, {oidsize}, (const char*)src, sizeof(*src), {idx} );{nl}}{nl}{nl}" },
};

// Property structs that make a vector usable like a std::vector.
const char kSimpleProperty[] = "    operator std::vector<{ctype}>() const {{nl}      std::vector<{ctype}> vec_;{nl}      uint2 len_;{nl}      ZKT_CPP_CHECK({b}_size(handle_, &len_));{nl}      vec_.resize(len_);{nl}      ZKT_CPP_CHECK({b}_get_range(handle_, 0, len_, ({ctype}*)&vec_[0]));{nl}      return vec_;{nl}    }{nl}    std::vector<{ctype}> const& operator=(std::vector<{ctype}> const& vec_) {{nl}      ZKT_CPP_CHECK({b}_alloc(handle_, (uint2)vec_.size()));{nl}      ZKT_CPP_CHECK({b}_put_range(handle_, 0, (uint2)vec_.size(), ({ctype}*)&vec_[0]));{nl}      return vec_;{nl}    }{nl}";
const char kCharsProperty[] = "    operator std::vector< Char<{esize}> >() const {{nl}      std::vector< Char<{esize}> > vec_;{nl}      uint2 len_;{nl}      ZKT_CPP_CHECK({b}_size(handle_, &len_));{nl}      vec_.resize(len_);{nl}      for (uint2 i_ = 0, n_= len_; i_ < n_; ++i_) { {nl}        ZKT_CPP_CHECK({b}_at(handle_, i_, &vec_[i_].body, {esize}));{nl}      }{nl}      return vec_;{nl}    }{nl}    std::vector< Char<{esize}> > const& operator=(std::vector< Char<{esize}> > const& vec_) {{nl}      uint2 len_ = (uint2)vec_.size();{nl}      ZKT_CPP_CHECK({b}_alloc(handle_, len_));{nl}      for (uint2 i_ = 0; i_ < len_; ++i_) { {nl}          ZKT_CPP_CHECK({b}_put(handle_, i_, &vec_[i_].body, {esize}));{nl}      }{nl}      return vec_;{nl}    }{nl}";
// The count is copied into n_ because len_ is overwritten inside the loop.
const char kStringProperty[] = "    operator std::vector<std::string>() const {{nl}      std::vector<std::string> vec_;{nl}      uint2 len_;{nl}      ZKT_CPP_CHECK({b}_size(handle_, &len_));{nl}      vec_.resize(len_);{nl}      for (uint2 i_ = 0, n_= len_; i_ < n_; ++i_) { {nl}        ZKT_CPP_CHECK({b}_at_len(handle_, i_, &len_));{nl}        vec_[i_].resize(len_);{nl}        ZKT_CPP_CHECK({b}_at(handle_, i_, &vec_[i_][0], len_, &len_));{nl}      }{nl}      return vec_;{nl}    }{nl}    std::vector<std::string> const& operator=(std::vector<std::string> const& vec_) {{nl}      uint2 len_ = (uint2)vec_.size();{nl}      ZKT_CPP_CHECK({b}_alloc(handle_, len_));{nl}      for (uint2 i_ = 0; i_ < len_; ++i_) { {nl}          ZKT_CPP_CHECK({b}_put(handle_, i_, &vec_[i_][0], (uint2)vec_[i_].size()));{nl}      }{nl}      return vec_;{nl}    }{nl}";
// clang-format on

// The writer of one vector field; every function of the field goes through it.
class VectorWriter {
public:
  VectorWriter(GenOutput& g, Struct& s, Field& f, Frag& fr) : g_(g), s_(s), f_(f), fr_(fr) {}

  // _size with its C++ member of form sf; the managed member follows the
  // first getter's body.
  void size(SizeForm sf) {
    elem::cFunction(g_, s_, f_, kSizeName, kSizeParams, false, kSizeBody, fr_);
    g_.outputManagedMember(s_, f_, fr_);
    g_.cppMember(fr_.fill(kSizeMembers[sf].decl), fr_.fill(kSizeMembers[sf].def));
  }
  // _alloc: the one function under the put guard.
  void alloc(const char* body) {
    elem::cFunction(g_, s_, f_, kAllocName, kAllocParams, true, body, fr_);
    g_.cppMember(fr_.fill(kAllocDecl), fr_.fill(kAllocDef));
  }
  void function(const ElementFunction& fn) { elem::function(g_, s_, f_, fn, fr_); }
  // An element accessor under the get guard.
  void function(const ElementSignature& sig, const char* body) { function({&sig, false, body}); }
  void property(const char* text) {
    if (g_.m_gen_smartptr) elem::property(g_, text, fr_);
  }

private:
  GenOutput& g_;
  Struct& s_;
  Field& f_;
  Frag& fr_;
};

}  // namespace

void GenOutput::output_vector_field(Struct& s, Class* c, Field& f, const mstring& base, const char* idx) {
  // No vector accessor passes an event.
  Frag fr;
  fieldFrag(s, c, f, idx[0] == '1', -1, fr);
  elem::frag(*this, f, fr);
  const Struct& t = *f.m_pstruct;
  const TypeCategory cat = t.m_category;
  fr.set("fv", cat == ET_UNICODE_CHARS ? "zkt_w_v_nchars_e" : "zkt_w_v_chars_e");
  fr.set("vv", cat == ET_UNICODE_STRING ? "zkt_w_v_nstring_e" : "zkt_w_v_string_e");
  fr.set("b", base);
  VectorWriter w(*this, s, f, fr);
  switch (cat) {
    case ET_STRUCT: {
      const mstring tu = t.m_layout.u.m_size;
      const mstring tc = t.m_layout.c.m_size;
      const mstring tua = t.m_layout.u.m_align;
      const mstring tca = t.m_layout.c.m_align;
      fr.set("tu", tu).set("tc", tc).set("tua", tua).set("tca", tca);
      w.size(SF_STRUCT);
      w.function(kStructFunctions[0]);
      w.alloc(kStructAllocBody);
      w.function(kStructFunctions[1]);
      w.function(kStructFunctions[2]);
      return;
    }
    case ET_SIMPLE: {
      const bool boolean = f.m_eltype == "boolean";
      const VectorCase vc = f.rare().penum != nullptr ? VC_ENUM : boolean ? VC_BOOLEAN : VC_OTHER;
      w.size(SF_SIMPLE);
      w.function(elem::kSimpleAt, kSimpleAtBody[vc]);
      elem::checkSize(f);
      w.function(elem::kSimpleGetRange, kSimpleGetRangeBody[boolean]);
      w.property(kSimpleProperty);
      w.alloc(kSimpleAllocBody[boolean]);
      elem::checkSize(f);
      w.function(elem::kSimplePut, kSimplePutBody[vc]);
      w.function(elem::kSimplePutRange, kSimplePutRangeBody[boolean]);
      return;
    }
    case ET_CHARS:
    case ET_BINARY:
    case ET_UNICODE_CHARS: {
      const bool wide = cat == ET_UNICODE_CHARS;
      w.size(SF_FIXED);
      w.function(kFixedFunctions[0]);
      elem::checkSize(f);
      w.alloc(kFixedAllocBody[wide]);
      elem::checkSize(f);
      if (!wide) w.property(kCharsProperty);
      w.function(kFixedFunctions[1]);
      return;
    }
    case ET_STRING:
    case ET_VARBINARY:
    case ET_UNICODE_STRING: {
      const bool wide = cat == ET_UNICODE_STRING;
      w.size(SF_STRING);
      if (!wide) w.property(kStringProperty);
      for (const ElementFunction& fn : kVariableGets) w.function(fn);
      w.alloc(kVariableAllocBody[wide]);
      for (const ElementFunction& fn : kVariablePuts) w.function(fn);
      return;
    }
    case ET_REF:
      w.size(SF_FIXED);
      w.function(kRefFunctions[0]);
      elem::checkSize(f);
      w.alloc(kRefAllocBody);
      elem::checkSize(f);
      w.function(kRefFunctions[1]);
      return;
    case ET_BLOB:
      return m_err->err("Blob cannot be element of a vector");
    case ET_SEQUENCE:
      return m_err->err("Sequence cannot be element of an array");  // the array's text for a vector: intended
    case ET_DIRECT_STRUCT:
    case ET_AUTOID:
    case ET_VERSION:
    case ET_AUTOOID:
    case ET_WIDE_CHARS:
    case ET_WCHAR_STRING:
      break;
  }
  throw "unknown case";
}
