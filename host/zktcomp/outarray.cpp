// Field accessors: the accessors of array fields, by element family, and the updated-bitmap scan.
#include <string.h>

#include "outelem.h"

namespace {

// clang-format off
const char kHandleArgs[] = "(zkt_objhandle_h)handle, {uoff}, {coff}, {no}";  // {H}
const char kLengthName[] = "{struct}_{field}_length";
// clang-format on

}  // namespace

namespace elem {

// clang-format off
// "/*OUT*/" on the value that _put writes is intended.
extern const ElementSignature kStructAt  = { "_at",  " ( {struct} *handle, uint2 index, /*OUT*/ {tname} * h )",
  "  ZKT_RET {field}_at(uint2 index, /*OUT*/ {tname} & s );{nl}",
  "{field}_at(uint2 index, /*OUT*/ {tname} & s ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_at(this, index, &s ); s.set_valid(ret_==ZKT_S_OK); return ret_; {nl}}{nl}{nl}" };
extern const ElementSignature kStructPut = { "_put", " ( {struct} *handle, uint2 index, /*OUT*/ {tname} * h )",
  "  ZKT_RET {field}_put(uint2 index, {tname} & s );{nl}",
  "{field}_put(uint2 index, {tname} & s ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_put(this, index, &s ); s.set_valid(ret_==ZKT_S_OK); return ret_; {nl}}{nl}{nl}" };
extern const ElementSignature kErase = { "_erase",  " ( {struct} *handle, uint2 index )",
  "  ZKT_RET {field}_erase(uint2 index);{nl}",
  "{field}_erase(uint2 index){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_erase(this, index); return ret_; {nl}}{nl}{nl}" };

// Simple _at and _put end "return ret_;{nl}" without the blank.
extern const ElementSignature kSimpleAt = { "_at", " ( {struct} *handle, uint2 index, /*OUT*/ {ctype} *result)",
  "  ZKT_RET {field}_at(uint2 index, {ctype} &result);{nl}",
  "{field}_at(uint2 index, {ctype} &result){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_at(this, index, &result); return ret_;{nl}}{nl}{nl}" };
extern const ElementSignature kSimpleGetRange = { "_get_range", " ( {struct} *handle, uint2 start_index, uint2 num, /*OUT*/ {ctype} *dest )",
  "  ZKT_RET {field}_get_range(uint2 start_index, uint2 num, {ctype} *dest );{nl}",
  "{field}_get_range(uint2 start_index, uint2 num, {ctype} *dest ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_get_range(this, start_index, num, dest); return ret_; {nl}}{nl}{nl}" };
extern const ElementSignature kSimplePut = { "_put", " ( {struct} *handle, uint2 index, {ctype} value )",
  "  ZKT_RET {field}_put(uint2 index, {ctype} value );{nl}",
  "{field}_put(uint2 index, {ctype} value ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_put(this, index, value); return ret_;{nl}}{nl}{nl}" };
extern const ElementSignature kSimplePutRange = { "_put_range", " ( {struct} *handle, uint2 start_index, uint2 num, const {ctype} *src )",
  "  ZKT_RET {field}_put_range(uint2 start_index, uint2 num, const {ctype} * src );{nl}",
  "{field}_put_range(uint2 start_index, uint2 num, const {ctype} * src ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_put_range(this, start_index, num, src); return ret_; {nl}}{nl}{nl}" };

extern const ElementSignature kFixedAt = { "_at",  " ( {struct} *handle, uint2 index, /*OUT*/ {ch} * dest, uint2 dest_size)",
  "  ZKT_RET {field}_at(uint2 index, {ch} * dest, uint2 dest_size);{nl}",
  "{field}_at(uint2 index, {ch} * dest, uint2 dest_size){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_at(this, index, dest, dest_size); return ret_; {nl}}{nl}{nl}" };
extern const ElementSignature kFixedPut = { "_put", " ( {struct} *handle, uint2 index, const {ch} * src, uint2 len )",
  "  ZKT_RET {field}_put(uint2 index, const {ch} * src, uint2 len);{nl}",
  "{field}_put(uint2 index, const {ch} * src, uint2 len){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_put(this, index, src, len); return ret_; {nl}}{nl}{nl}" };

extern const ElementSignature kVariableAtLen = { "_at_len", " ( {struct} *handle, uint2 index, /*OUT*/ uint2 * retlen)",
  "  ZKT_RET {field}_at_len(uint2 index, uint2 &retlen);{nl}",
  "{field}_at_len(uint2 index, uint2 &retlen){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_at_len(this, index, &retlen); return ret_; {nl}}{nl}{nl}" };
extern const ElementSignature kVariableAt = { "_at", " ( {struct} *handle, uint2 index, /*OUT*/ {ch} * dest, uint2 dest_size, /*OUT*/ uint2 * retlen)",
  "  ZKT_RET {field}_at(uint2 index, {ch} * dest, uint2 dest_size, uint2 &retlen);{nl}",
  "{field}_at(uint2 index, {ch} * dest, uint2 dest_size, uint2 &retlen){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_at(this, index, dest, dest_size, &retlen); return ret_; {nl}}{nl}{nl}" };
extern const ElementSignature kVariablePut = { "_put", " ( {struct} *handle, uint2 index, const {ch} * value, uint2 len )",
  "  ZKT_RET {field}_put(uint2 index, const {ch} * value, uint2 len );{nl}",
  "{field}_put(uint2 index, const {ch} * value, uint2 len ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_put(this, index, value, len); return ret_; {nl}}{nl}{nl}" };

extern const ElementSignature kRefAt = { "_at", " ( {struct} *handle, uint2 index, /*OUT*/ {oidtype}* result)",
  "  ZKT_RET {field}_at(uint2 index, {oidtype} & result);{nl}",
  "{field}_at(uint2 index, {oidtype} & result){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_at(this, index, &result); return ret_; {nl}}{nl}{nl}" };
extern const ElementSignature kRefPut = { "_put", " ( {struct} *handle, uint2 index, {oidtype}* src )",
  "  ZKT_RET {field}_put(uint2 index, {oidtype} & src );{nl}",
  "{field}_put(uint2 index, {oidtype} & src ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_put(this, index, & src); return ret_; {nl}}{nl}{nl}" };
// clang-format on

}  // namespace elem

namespace {

// clang-format off
const ElementFunction kStructFunctions[] = {
  { &elem::kStructAt,  false, "{ return zkt_w_va_struct_e_get2( {H}, (zkt_objhandle_h)h, index, {ualign}, {calign}, {n});{nl}}{nl}{nl}" },
  { &elem::kStructPut, true,  "{ return zkt_w_va_struct_e_put2( {H}, (zkt_objhandle_h)h, index, {ualign}, {calign}, {idx}, {n});{nl}}{nl}{nl}" },
};

// The whole boolean array in one call; ",result,{n} " is intended.
const ElementSignature kBitGetSignature = { "_get", " ( {struct} *handle, /*OUT*/ {ctype} *result)",
  "  ZKT_RET {field}_get({ctype} &result);{nl}",
  "{field}_get({ctype} &result){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_get(this, &result); return ret_;{nl}}{nl}{nl}" };
const ElementFunction kBitGet = { &kBitGetSignature, false, "{ return zkt_w_va_bit_e_getrange2( {H}, 0, {n},result,{n} );{nl}}{nl}{nl}" };

// Simple elements. The body of _at and _put is chosen by SimpleCase, that of
// the range functions by RangeCase.
enum SimpleCase { SC_ENUM = 0, SC_ENUM_DIRECT = 1, SC_BOOLEAN = 2, SC_DIRECT = 3, SC_OTHER = 4 };
enum RangeCase { RC_BOOLEAN = 0, RC_PLAIN = 1, RC_DIRECT = 2 };

// The enum direct form passes result uncast: intended.
const char* const kSimpleAtBody[5] = {
  "{{ {etype} temp; ZKT_RET rc = zkt_w_va_simple_e_get2( {H}, index, {esize}, &temp, {n});{nl}  *result = ({ctype}) temp; return rc; }{nl}}{nl}{nl}",  // enum
  "{ return zkt_w_va_chars_e_get2( {H}, index, {esize}, result, sizeof(*result), {n});{nl}}{nl}{nl}",                                                 // enum, direct
  "{ return zkt_w_va_bit_e_get2( {H}, index, result, {n});{nl}}{nl}{nl}",                                                                             // boolean
  "{ return zkt_w_va_chars_e_get2( {H}, index, {esize}, (char*)result, sizeof(*result), {n});{nl}}{nl}{nl}",                                          // direct
  "{ return zkt_w_va_simple_e_get2( {H}, index, {esize}, result, {n});{nl}}{nl}{nl}",                                                                 // other
};
const char* const kSimpleGetRangeBody[3] = {
  "{ return zkt_w_va_bit_e_getrange2( {H}, start_index, num, dest, {n});{nl}}{nl}{nl}",                            // boolean
  "{ return zkt_w_va_simple_e_getrange2( {H}, start_index, {esize}, num, dest, {n}, {isenum});{nl}}{nl}{nl}",      // not direct
  "{ return zkt_w_va_simple_e_getrange2( {H}, start_index, 1, num*sizeof(*dest), dest, {n}, 0);{nl}}{nl}{nl}",     // direct: bytes
};
// Only the boolean put passes the event, without an _ev wrapper: intended.
const char* const kSimplePutBody[5] = {
  "{{ {etype} temp = ({etype}) value;{nl}  return zkt_w_va_simple_e_put2( {H}, index, {esize}, {idx}, &temp, {n}); }{nl}}{nl}{nl}",  // enum
  "{ return zkt_w_va_chars_e_put2( {H}, index, {esize}, (char*)&value, sizeof(value), {idx}, {n});{nl}}{nl}{nl}",                    // enum, direct
  "{ return zkt_w_va_bit_e_put2( {H}, index, {idx}, &value, {n}{evarg});{nl}}{nl}{nl}",                                              // boolean
  "{ return zkt_w_va_chars_e_put2( {H}, index, {esize}, (char*)&value, sizeof(value), {idx}, {n});{nl}}{nl}{nl}",                    // direct
  "{ return zkt_w_va_simple_e_put2( {H}, index, {esize}, {idx}, &value, {n});{nl}}{nl}{nl}",                                         // other
};
// "{n},  0" has two blanks: intended.
const char* const kSimplePutRangeBody[3] = {
  "{ return zkt_w_va_bit_e_putrange2( {H}, start_index, num, {idx}, src, {n}{evarg});{nl}}{nl}{nl}",                     // boolean
  "{ return zkt_w_va_simple_e_putrange2( {H}, start_index, {esize}, num, {idx}, src, {n}, {isenum});{nl}}{nl}{nl}",      // not direct
  "{ return zkt_w_va_simple_e_putrange2( {H}, start_index, 1, num*sizeof(*src), {idx}, src, {n},  0);{nl}}{nl}{nl}",     // direct: bytes
};

const ElementFunction kFixedFunctions[] = {
  { &elem::kFixedAt,  false, "{ return {fa}_get2( {H}, index, {esize}, dest, dest_size, {n});{nl}}{nl}{nl}" },
  { &elem::kFixedPut, true,  "{ return {fa}_put2( {H}, index, {esize}, src, len, {idx}, {n});{nl}}{nl}{nl}" },
};

const ElementFunction kVariableFunctions[] = {
  { &elem::kVariableAtLen, false, "{ return {va}_get_len2( {H}, index, retlen, {n});{nl}}{nl}{nl}" },
  { &elem::kVariableAt,    false, "{ return {va}_get2( {H}, index, dest, dest_size, retlen, {n});{nl}}{nl}{nl}" },
  { &elem::kVariablePut,   true,  "{ return {va}_put2( {H}, index, value, len, {idx}, {n});{nl}}{nl}{nl}" },
  { &elem::kErase,         true,  "{ return {va}_put2( {H}, index, 0, 0, {idx}, {n});{nl}}{nl}{nl}" },  // a null value of length 0
};

const ElementFunction kRefFunctions[] = {
  { &elem::kRefAt,  false, "{ return zkt_w_va_chars_e_get2( {H}, index, {oidsize}, (char*)result, sizeof(*result), {n});{nl}}{nl}{nl}" },
  { &elem::kRefPut, true,  "{ return zkt_w_va_chars_e_put2( {H}, index, {oidsize}, (const char*)src, sizeof(*src), {idx}, {n});{nl}}{nl}{nl}" },
};

// Property structs that make an array usable like a std::vector.
const char kPropertyHead[] = "  struct { {nl}    {struct}* handle_;{nl}";
const char kPropertyEnd[]  = "  } {field};{nl}{nl}";
const char kSimpleProperty[] = "    operator std::vector<{ctype}>() const {{nl}      std::vector<{ctype}> arr_({n});{nl}      ZKT_CPP_CHECK({struct}_{field}_get_range(handle_, 0, {n}, ({ctype}*)&arr_[0]));{nl}      return arr_;{nl}    }{nl}    std::vector<{ctype}> const& operator=(std::vector<{ctype}> const& arr_) {{nl}      ZKT_CPP_CHECK({struct}_{field}_put_range(handle_, 0, (uint2)arr_.size(), ({ctype}*)&arr_[0]));{nl}      return arr_;{nl}    }{nl}";
// The ")" after {n} in the loop head is intended: this struct does not compile.
const char kCharsProperty[] = "    operator std::vector< Char<{esize}> >() const {{nl}      std::vector< Char<{esize}> > vec_({n});{nl}      for (uint2 i_ = 0; i_ < {n}); ++i_) { {nl}        ZKT_CPP_CHECK({struct}_{field}_at(handle_, i_, &vec_[i_].body, {esize}));{nl}      }{nl}      return vec_;{nl}    }{nl}    std::vector< Char<{esize}> > const& operator=(std::vector< Char<{esize}> > const& vec_) {{nl}      uint2 len_ = (uint2)vec_.size();{nl}      for (uint2 i_ = 0; i_ < len_; ++i_) { {nl}          ZKT_CPP_CHECK({struct}_{field}_put(handle_, i_, &vec_[i_].body, {esize}));{nl}      }{nl}      return vec_;{nl}    }{nl}";
const char kStringProperty[] = "    operator std::vector<std::string>() const {{nl}      std::vector<std::string> vec_({n});{nl}      for (uint2 i_ = 0; i_ < {n}; ++i_) { {nl}        uint2 len_;{nl}        ZKT_CPP_CHECK({struct}_{field}_at_len(handle_, i_, &len_));{nl}        vec_[i_].resize(len_);{nl}        ZKT_CPP_CHECK({struct}_{field}_at(handle_, i_, &vec_[i_][0], len_, &len_));{nl}      }{nl}      return vec_;{nl}    }{nl}    std::vector<std::string> const& operator=(std::vector<std::string> const& vec_) {{nl}      uint2 len_ = (uint2)vec_.size();{nl}      for (uint2 i_ = 0; i_ < len_; ++i_) { {nl}          ZKT_CPP_CHECK({struct}_{field}_put(handle_, i_, &vec_[i_][0], (uint2)vec_[i_].size()));{nl}      }{nl}      return vec_;{nl}    }{nl}";

// updated_bitmap: the name of the next updated field after *index.
const char kFldnameName[]   = "_get_fldname";
// Two blanks before "uint2 * len" are intended.
const char kFldnameParams[] = " ( {struct} *handle, uint2* index, char * dest, uint2 dest_size,  uint2 * len )";
const char kFieldIndexDefine[] = "#define {container}_{x}_field_index {xno}{nl}";
// Not reachable from a schema (only a boolean bitmap passes the analysis), kept for a numeric one.
const char kFldnameScan[] = "{\n{ctype} fld_data;{nl}{ctype} fsz;{nl}{ctype} pos = 1;{nl}ZKT_RET rc = ZKT_S_OK;{nl}if ((rc = {b}_at(handle,0,&fsz)) != ZKT_S_OK){{nl}    return rc;{nl}}{nl}pos = *index;  pos++;{nl}if (pos<=fsz){{nl}    if ((rc = {b}_at(handle,pos,&fld_data)) != ZKT_S_OK){{nl}        return rc;{nl}    }{nl}    /*actually get fldname here*/{nl}    *index = pos;{nl}    return zkt_get_fieldname_by_fldno((zkt_objhandle_h)handle,(uint2)(*index-1),dest,dest_size,len);{nl}}else return ZKT_S_NOTFOUND;{nl}return rc;\n}\n{nl}";
// Bits in chunks of up to 64; "uint1 fsz" wraps beyond 255 fields: intended.
const char kFldnameBits[] = "{\nuint1 fld_data[64];{nl}uint1 fsz = {b}_length;{nl}uint1 j,i,pos;{nl}uint2 nel;{nl}ZKT_RET rc = ZKT_S_OK;{nl}pos = (*index)&(0xfff8); {nl}if (pos != (*index)){{nl}  j =  (*index)&7;{nl}}else j = 0;{nl}while(pos<fsz){{nl}   nel = fsz;{nl}    if (nel>(sizeof(fld_data)/sizeof(fld_data[0]))){{nl}        nel = (sizeof(fld_data)/sizeof(fld_data[0]));{nl}    }{nl}    if ((rc = {b}_get_range(handle,pos,nel,fld_data)) != ZKT_S_OK){{nl}        return rc;{nl}    }{nl}    for (i=0;i<(nel+7)/8;i++){{nl}        if (fld_data[i]){{nl}            uint1 v = fld_data[i];{nl}            for (;j<8;j++){{nl}                if ((v>>j)&1){{nl}                    /*actually get fldname here*/{nl}                    *index = pos+i*8+j+1;{nl}                    return zkt_get_fieldname_by_fldno((zkt_objhandle_h)handle,(uint2)(*index-1),dest,dest_size,len);{nl}                }{nl}            }{nl}       }{nl}       j = 0;{nl}    }{nl}    pos += nel;{nl}}{nl}return ZKT_S_NOTFOUND;\n}\n{nl}";
// clang-format on

}  // namespace

namespace elem {

void cFunction(GenOutput& g, const Struct& s, const Field& f, const char* suffix, const char* params, bool put,
               const char* body, const Frag& fr) {
  mstring text = "{";
  if (f.m_isNullable) text += fr.fill(put ? kPutGuard : kGetGuard);
  text += fr.fill(body + 1);
  g.cFunction(s.m_name + "_" + f.m_name + suffix, s.m_maxFuncName, fr.fill(params), text);
}

void function(GenOutput& g, const Struct& s, const Field& f, const ElementFunction& fn, const Frag& fr) {
  cFunction(g, s, f, fn.sig->suffix, fn.sig->params, fn.putGuard, fn.body, fr);
  g.cppMethod(hppClass(s.m_name), fr.fill(fn.sig->decl), fr.fill(fn.sig->def));
}

void property(GenOutput& g, const char* text, const Frag& fr) {
  g.cppMember(fr.fill(kPropertyHead) + fr.fill(text) + fr.fill(kPropertyEnd), mstring());
}

void checkSize(const Field& f) {
  if (!f.m_pstruct->m_layout.is_size_equal()) IErrReporter::panic("internal error", false);
}

void frag(const GenOutput& g, const Field& f, Frag& fr) {
  const Struct& t = *f.m_pstruct;
  fr.set("H", fr.fill(kHandleArgs));
  fr.set("isenum", f.rare().penum != nullptr ? "1" : "0");
  if (f.rare().penum != nullptr) fr.set("etype", enum_int_type((int)t.m_layout.u.m_size));
  fr.set("oidtype", g.m_sc.objIdName());
  fr.set("oidsize", (long)g.m_sc.m_oid_sizeof_uplimit);
  const bool wide = t.m_category == ET_UNICODE_CHARS || t.m_category == ET_UNICODE_STRING;
  fr.set("ch", wide ? "nchar_t" : "char");
}

}  // namespace elem

namespace {

// Simple elements: _get (boolean), _at, _get_range, the property struct, then
// _put and _put_range, or for the updated bitmap its scan.
void outputSimpleArray(GenOutput& g, Struct& s, Field& f, Frag& fr) {
  const bool boolean = f.m_eltype == "boolean";
  const bool direct = s.m_isDirectStruct;
  const SimpleCase sc = f.rare().penum != nullptr ? (direct ? SC_ENUM_DIRECT : SC_ENUM)
                        : boolean            ? SC_BOOLEAN
                        : direct             ? SC_DIRECT
                                             : SC_OTHER;
  const RangeCase rc = boolean ? RC_BOOLEAN : direct ? RC_DIRECT : RC_PLAIN;

  if (boolean) {
    elem::function(g, s, f, kBitGet, fr);
    g.outputManagedMember(s, f, fr);
  }
  elem::function(g, s, f, {&elem::kSimpleAt, false, kSimpleAtBody[sc]}, fr);
  elem::checkSize(f);
  if (!boolean) g.outputManagedMember(s, f, fr);
  elem::function(g, s, f, {&elem::kSimpleGetRange, false, kSimpleGetRangeBody[rc]}, fr);
  if (g.m_gen_smartptr) elem::property(g, kSimpleProperty, fr);

  if (f.m_isBitmapFld) {
    // The scan takes the place of the C _put; the C++ _put is written all the
    // same, though there is no C function for it to call: intended.
    const Struct& container = *f.m_containerStruct;
    Frag xf;
    xf.set("container", container.m_name).set("nl", "\n");
    mstring defines;
    for (unsigned int i = 0; i < container.v_field.size(); i++) {
      const Field& x = container.v_field[i];
      if (strchr(x.m_name.c_str(), '@') != nullptr) continue;
      defines += xf.set("x", x.m_name).set("xno", (long)x.m_no).fill(kFieldIndexDefine);
    }
    g.cFunctionDefines(s.m_name + "_" + f.m_name + kFldnameName, s.m_maxFuncName, fr.fill(kFldnameParams), defines,
                       fr.fill(boolean ? kFldnameBits : kFldnameScan));
    g.cppMethod(hppClass(s.m_name), fr.fill(elem::kSimplePut.decl), fr.fill(elem::kSimplePut.def));
    return;
  }
  elem::function(g, s, f, {&elem::kSimplePut, true, kSimplePutBody[sc]}, fr);
  elem::function(g, s, f, {&elem::kSimplePutRange, true, kSimplePutRangeBody[rc]}, fr);
}

}  // namespace

void GenOutput::output_array_field(Struct& s, Class* c, Field& f, const mstring& base, const char* idx) {
  int ev = c != nullptr ? c->getUpdateEvent(&s, f) : -1;
  if (ev == -1 && c != nullptr) ev = c->getClassUpdateEvent();
  if (f.m_arraySize < 1) IErrReporter::panic("internal error, array size", false);
  Frag fr;
  fr.set("struct", s.m_name).set("field", f.m_name);
  outConstant(m_h, fr.fill(kLengthName), f.m_arraySize);

  fieldFrag(s, c, f, idx[0] == '1', ev, fr);
  elem::frag(*this, f, fr);
  const Struct& t = *f.m_pstruct;
  fr.set("fa", t.m_category == ET_UNICODE_CHARS ? "zkt_w_va_nchars_e" : "zkt_w_va_chars_e");
  fr.set("va", t.m_category == ET_UNICODE_STRING ? "zkt_w_va_nstring_e" : "zkt_w_va_string_e");
  fr.set("b", base);
  switch (t.m_category) {
    case ET_STRUCT:
    case ET_DIRECT_STRUCT: {
      // Struct elements travel by their aligned sizes.
      const mstring ualign = alignInt(t.m_layout.u.m_size, t.m_layout.u.m_align);
      const mstring calign = alignInt(t.m_layout.c.m_size, t.m_layout.c.m_align);
      fr.set("ualign", ualign).set("calign", calign);
      elem::function(*this, s, f, kStructFunctions[0], fr);
      outputManagedMember(s, f, fr);
      elem::function(*this, s, f, kStructFunctions[1], fr);
      return;
    }
    case ET_SIMPLE:
      return outputSimpleArray(*this, s, f, fr);
    case ET_CHARS:
    case ET_BINARY:
    case ET_UNICODE_CHARS:
      elem::function(*this, s, f, kFixedFunctions[0], fr);
      elem::checkSize(f);
      outputManagedMember(s, f, fr);
      if (t.m_category != ET_UNICODE_CHARS && m_gen_smartptr) elem::property(*this, kCharsProperty, fr);
      elem::function(*this, s, f, kFixedFunctions[1], fr);
      return;
    case ET_STRING:
    case ET_VARBINARY:
    case ET_UNICODE_STRING:
      for (const ElementFunction& fn : kVariableFunctions) {
        elem::function(*this, s, f, fn, fr);
        if (&fn != &kVariableFunctions[0]) continue;
        outputManagedMember(s, f, fr);
        if (t.m_category != ET_UNICODE_STRING && m_gen_smartptr) elem::property(*this, kStringProperty, fr);
      }
      return;
    case ET_REF:
      elem::function(*this, s, f, kRefFunctions[0], fr);
      elem::checkSize(f);
      outputManagedMember(s, f, fr);
      elem::function(*this, s, f, kRefFunctions[1], fr);
      return;
    case ET_BLOB:
      return m_err->err("Blob cannot be element of an array");
    case ET_SEQUENCE:
      return m_err->err("Sequence cannot be element of an array");
    case ET_AUTOID:
    case ET_VERSION:
    case ET_AUTOOID:
    case ET_WIDE_CHARS:
    case ET_WCHAR_STRING:
      break;
  }
  throw "unknown case";
}
