// Field accessors: the frame that walks the fields of a struct or class and the accessors of scalar, character and string fields.
#include "genout.h"

// What a nullable field's accessors do first; shared by every family.
// clang-format off
extern const char kGetGuard[] = " uint1 indicator; ZKT_RET rc = {struct}_{field}_indicator_get(handle, &indicator); if (rc != ZKT_S_OK) return rc; else if (!indicator) return ZKT_S_NULL_VALUE;";
extern const char kPutGuard[] = " ZKT_RET rc = {struct}_{field}_indicator_put(handle, 1); if (rc != ZKT_S_OK) return rc;";
// clang-format on

namespace {

// clang-format off
const char kSmartCtorHead[]  = "  {struct}() {{nl}";
const char kSmartCtorField[] = "    {field}.handle_ = this;{nl}";
const char kSmartCtorEnd[]   = "  }{nl}{nl}";


// The text form of a fixed-point number; {w} is its width, {p} its precision.
struct NumericFunction {
  const char* suffix;
  const char* params;
  const char* body;
  const char* decl;  // on the hpp
  const char* def;   // on the hpp tail, after "::"
};
const NumericFunction kNumericFunctions[] = {
  //  suffix         params                                           body                                                                                                                                                                                                                  decl                                                                                                 def
  { "_get_chars",  " ( {struct} *handle, char* buf, int buf_size)",  "{{ctype} _scaled_num; ZKT_RET _rc = {struct}_{field}_get(handle, &_scaled_num); return _rc == ZKT_S_OK ? zkt_w_numeric_b{w}_to_string(_scaled_num, {p}, buf, buf_size) : _rc; }{nl}{nl}",                              "  ZKT_RET {field}_get_chars(char* buf, int buf_size);{nl}",                                          "{field}_get_chars(char* buf, int buf_size){nl}{ return {db}::{struct}_{field}_get_chars(this, buf, buf_size);{nl}} {nl}{nl}" },
  { "_to_chars",   " ({ctype} scaled_num, char* buf, int buf_size)", "{ return zkt_w_numeric_b{w}_to_string(scaled_num, {p}, buf, buf_size); }{nl}{nl}",                                                                                                                                  "  static ZKT_RET {field}_to_chars({ctype} scaled_num, char* buf, int buf_size);{nl}",                "{field}_to_chars({ctype} scaled_num, char* buf, int buf_size){nl}{ return {db}::{struct}_{field}_to_chars(scaled_num, buf, buf_size);{nl}} {nl}{nl}" },
  { "_put_chars",  " ( {struct} *handle, char const* buf)",          "{{ctype} _scaled_num;  ZKT_RET _rc = zkt_w_numeric_b{w}_from_string(&_scaled_num, {p}, buf); return _rc == ZKT_S_OK ? {struct}_{field}_put(handle, _scaled_num) : _rc; }{nl}{nl}",                                 "  ZKT_RET {field}_put_chars(char const* buf);{nl}",                                                  "{field}_put_chars(char const* buf){nl}{ return {db}::{struct}_{field}_put_chars(this, buf); {nl}} {nl}{nl}" },
  { "_from_chars", " ( {ctype}* scaled_num, char const* buf)",       "{ return zkt_w_numeric_b{w}_from_string(scaled_num, {p}, buf); }{nl}{nl}",                                                                                                                                        "  static ZKT_RET {field}_from_chars({ctype}& scaled_num, char const* buf);{nl}",                      "{field}_from_chars({ctype}& scaled_num, char const* buf){nl}{ return {db}::{struct}_{field}_from_chars(&scaled_num, buf); {nl}} {nl}{nl}" },
};

const char kSequenceParams[] = " ( zkt_trans_t trans, /*OUT*/zkt_seq_iterator_h seq )";
const char kSequenceBody[]   = "{ return zkt_w_seq_sequence_{ctype}(trans, {code}, {off}, seq); }{nl}{nl}";
const char kSequenceDecl[]   = "static Sequence<{ctype}> {field}_sequence(zkt_trans_h trans);{nl}";
const char kSequenceDef[]    = "inline Sequence<{ctype}> {struct}::{field}_sequence(zkt_trans_h trans){nl}{ Sequence<{ctype}> seq; ZKT_CPP_CHECK({db}::{struct}_{field}_sequence(trans, seq.iter)); return seq; }{nl}{nl}";

const char kGetParams[] = " ( {struct} *handle, /*OUT*/ {ctype} * result)";
const char* const kGetBody[2][2] = {
  //  two offsets                                                                                                                          one offset
  { " return {g}2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no},result);{nl}}{nl}{nl}",                                                  " return {g}( (zkt_objhandle_h) handle, {uoff}, {no}, result);{nl}}{nl}{nl}" },  // no enum; "{no},result" has no blank on purpose
  { "{ {etype} temp; ZKT_RET rc = {g}2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no}, &temp);{nl}  *result = ({ctype}) temp; return rc; }{nl}}{nl}{nl}", "{ {etype} temp; ZKT_RET rc = {g}( (zkt_objhandle_h) handle, {uoff}, {no}, &temp);{nl}  *result = ({ctype}) temp; return rc; }{nl}}{nl}{nl}" },  // enum
};
// A scalar of a direct struct is copied as bytes.
const char kGetDirect[] = " return zkt_w_chars_get2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no}, (char*)result, sizeof(*result), {usize});{nl}}{nl}{nl}";
const char kGetDecl[] = "  ZKT_RET {field}_get( {ctype} & result );{nl}";
const char kGetDef[]  = "{field}_get ( {ctype} & result ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_get(this, &result); return ret_;{nl}} {nl}{nl}";

// The property struct that makes a field usable like a variable.
const char kPropertyGet[] = "  struct { {nl}    {struct}* handle_;{nl}    operator  {ctype}() const {{nl}      {ctype} val_;{nl}      ZKT_CPP_CHECK({struct}_{field}_get(handle_, &val_));{nl}      return val_;{nl}    }{nl}";
const char kPropertyPut[] = "    {ctype} operator=({ctype} val_) {{nl}      ZKT_CPP_CHECK({struct}_{field}_put(handle_, val_));{nl}      return val_;{nl}    }{nl}";
const char kPropertyEnd[] = "  } {field};{nl}{nl}";

const char kPutParams[] = " ( {struct} *handle, {ctype} value )";
const char* const kPutBody[3][2] = {
  //  two offsets                                                                                                                                       one offset
  { " return {p}2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no}, {idx}, {cast} value{evarg});{nl}}{nl}{nl}",                                          " return {p}( (zkt_objhandle_h) handle, {uoff}, {no}, {idx}, {cast} value{evarg});{nl}}{nl}{nl}" },                                          // plain
  { " return {p}2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no}, {idx}, ({etype}) value{evarg});{nl}}{nl}{nl}",                                       " return {p}( (zkt_objhandle_h) handle, {uoff}, {no}, {idx}, ({etype}) value{evarg});{nl}}{nl}{nl}" },                                       // enum
  { "{ union { float f; uint4 i; } u; u.f = value; return {p}2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no}, {idx}, u.i{evarg}); }{nl}}{nl}{nl}",    "{ union { float f; uint4 i; } u; u.f = value; return {p}( (zkt_objhandle_h) handle, {uoff}, {no}, {idx}, u.i{evarg}); }{nl}}{nl}{nl}" },  // float
};
// {tail} is ", " with its first {ev} characters skipped, so the event number
// itself never appears: intended, keep it.
const char* const kPutDirect[2] = {
  " return zkt_w_chars_put2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no}, (char*)&value, sizeof(value), {usize}, {idx}{tail});{nl}}{nl}{nl}",     // no event
  " return zkt_w_chars_put_ev2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no}, (char*)&value, sizeof(value), {usize}, {idx}{tail});{nl}}{nl}{nl}",  // update event
};
const char kPutDecl[] = "  ZKT_RET {field}_put( {ctype} value );{nl}";
const char kPutDef[]  = "{field}_put( {ctype} value ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_put(this, value); return ret_; {nl}} {nl}{nl}";
// clang-format on

enum PutCase { PUT_PLAIN = 0, PUT_ENUM = 1, PUT_FLOAT = 2 };

// The tail of a direct struct's put for event ev. Above 2 it would point past
// the text: it is empty there.
mstring directPutTail(int ev) {
  static const char kTail[] = ", ";
  if (ev < 0 || ev > 2) return mstring();
  return mstring(kTail + ev);
}

// The property struct's constructor hooks up the fields of these categories.
bool hasPropertyStruct(const Field& f) {
  switch (f.m_pstruct->m_category) {
    case ET_SIMPLE:
    case ET_CHARS:
    case ET_STRING:
    case ET_AUTOID:
    case ET_BINARY:
    case ET_VARBINARY:
      return true;
    case ET_STRUCT:
    case ET_BLOB:
    case ET_REF:
    case ET_VERSION:
    case ET_AUTOOID:
    case ET_UNICODE_CHARS:
    case ET_UNICODE_STRING:
    case ET_DIRECT_STRUCT:
    case ET_WIDE_CHARS:
    case ET_WCHAR_STRING:
    case ET_SEQUENCE:
      return false;
  }
  throw "unknown case";
}

// The stored size of a scalar: a size known only as text counts by the
// number it replaced.
int elementSize(const Field& f) {
  const FSize& size = f.m_u_layout->m_size;
  return size.is_str() ? size.calcTypeSize() : size.m_size_n;
}

// The cast in front of a value that is put: a value of 1 to 4 bytes travels
// as an unsigned integer of its size, an 8-byte value by its address.
mstring putCast(int size) {
  const char* cast = simple_put_cast(size);
  if (cast == nullptr) return mstring();
  if (size == 8) return mstring(cast);
  return "(" + mstring(cast) + ")";
}

}  // namespace

void GenOutput::fieldFrag(const Struct& s, const Class* c, const Field& f, bool indexed, int ev, Frag& fr) const {
  const Struct& t = *f.m_pstruct;
  fr.set("struct", s.m_name);
  fr.set("field", f.m_name);
  fr.set("ctype", t.m_cType);
  fr.set("tname", t.m_name);
  setSize(fr, "uoff", f.m_u_layout->m_offset);
  setSize(fr, "coff", f.m_c_layout->m_offset);
  setSize(fr, "usize", f.m_u_layout->m_size);
  setSize(fr, "esize", t.m_layout.u.m_size);
  fr.set("no", (long)f.m_no);
  fr.set("n", (long)f.m_arraySize);
  fr.set("idx", indexed ? "1" : "0");
  fr.set("ev", (long)ev);
  fr.set("evarg", ev >= 0 ? ", " + UT::n2s(ev) : mstring());
  fr.set("db", m_sc.m_dbname);
  if (c != nullptr) fr.set("code", (long)c->m_classCode);  // plain, even when mergeable
  fr.set("nl", "\n");
}

void GenOutput::output(Struct& s, Class* c) {
  if (s.m_category != ET_STRUCT && s.m_category != ET_DIRECT_STRUCT) return;
  if (s.m_category == ET_DIRECT_STRUCT) outputDirectStructFunctions(s);
  if (s.m_suppressApi) return;

  for (unsigned int i = 0; i < s.v_field.size(); i++) {
    Field& f = s.v_field[i];
    if (f.m_isHidden) continue;
    const mstring base = s.m_name + "_" + f.m_name;
    *m_h << "\n";
    const bool indexed = c != nullptr && c->fieldIsIndexed(f);
    const char* const idx = indexed ? "1" : "0";
    if (f.m_isOptional) {
      output_optional_field(s, c, f, base);
      continue;
    }
    if (f.m_isVector) {
      output_vector_field(s, c, f, base, idx);
      continue;
    }
    if (f.m_isArray) {
      if (f.m_isRTreeRect)
        output_spatial_field(s, c, f, base, idx, "rect");
      else if (f.m_isRTreePoint)
        output_spatial_field(s, c, f, base, idx, "point");
      else
        output_array_field(s, c, f, base, idx);
      continue;
    }

    // A field's own update event wins over the class's; only the former
    // marks the managed member.
    int ev = c != nullptr ? c->getUpdateEvent(&s, f) : -1;
    if (ev >= 0) outputEventAttribute(*c, ev);
    if (ev == -1 && c != nullptr) ev = c->getClassUpdateEvent();
    Frag fr;
    fieldFrag(s, c, f, indexed, ev, fr);
    outputPlainField(s, c, f, ev, fr);
  }

  if (!m_gen_smartptr) return;
  Frag fr;
  fr.set("struct", s.m_name).set("nl", "\n");
  mstring ctor = fr.fill(kSmartCtorHead);
  for (unsigned int i = 0; i < s.v_field.size(); i++) {
    const Field& f = s.v_field[i];
    if (!f.m_isHidden && hasPropertyStruct(f)) ctor += fr.set("field", f.m_name).fill(kSmartCtorField);
  }
  cppMember(ctor + fr.fill(kSmartCtorEnd), mstring());
}

void GenOutput::outputPlainField(Struct& s, Class* c, Field& f, int ev, Frag& fr) {
  switch (f.m_pstruct->m_category) {
    case ET_SIMPLE:
    case ET_AUTOID:
      return outputScalarField(s, c, f, ev, fr);
    case ET_CHARS:
    case ET_BINARY:
      return outputCharsField(s, c, f, ev, fr);
    case ET_STRING:
    case ET_VARBINARY:
      return outputStringField(s, c, f, ev, fr);
    case ET_UNICODE_CHARS:
      return outputUnicodeCharsField(s, c, f, ev, fr);
    case ET_UNICODE_STRING:
      return outputUnicodeStringField(s, c, f, ev, fr);
    case ET_BLOB:
      return outputBlobField(s, c, f, fr);
    case ET_REF:
      return outputRefField(s, c, f, fr);
    case ET_STRUCT:
    case ET_DIRECT_STRUCT:
      return outputStructField(s, c, f, fr);
    case ET_SEQUENCE:
      return outputSequenceField(s, c, f, fr);
    case ET_VERSION:
    case ET_AUTOOID:
      return;  // nothing to access
    case ET_WIDE_CHARS:
    case ET_WCHAR_STRING:
      break;  // refused by the analysis
  }
  throw "unknown case";
}

void GenOutput::outputScalarField(Struct& s, Class* c, Field& f, int ev, Frag& fr) {
  const mstring base = s.m_name + "_" + f.m_name;
  const mstring hpp = hppClass(s.m_name);
  const bool autoid = f.m_pstruct->m_category == ET_AUTOID;
  const int width = s.m_maxFuncName;

  if (f.rare().precision >= 0) {
    int w = f.m_u_layout->m_size;
    if (w == 0) w = f.dict_info(true).size;
    if (w == 0) throw "unknown element size";
    fr.set("w", (long)w).set("p", (long)f.rare().precision);
    for (const NumericFunction& fn : kNumericFunctions) {
      cFunction(base + fn.suffix, width, fr.fill(fn.params), fr.fill(fn.body));
      cppMethod(hpp, fr.fill(fn.decl), fr.fill(fn.def));
    }
  }

  if (c != nullptr && c->m_sequences) {
    setSize(fr, "off", c->m_compact ? f.m_c_layout->m_offset : f.m_u_layout->m_offset);
    cFunction(base + "_sequence", width, fr.fill(kSequenceParams), fr.fill(kSequenceBody));
    cppMember(fr.fill(kSequenceDecl), fr.fill(kSequenceDef));
  }

  // The wrapper: by size, a bit for a boolean, the event form when the field
  // raises an event; the two-offset form where the layouts differ.
  const int size = elementSize(f);
  const bool boolean = f.m_eltype == "boolean";
  const bool isEnum = f.rare().penum != nullptr;
  const bool direct = f.m_containerStruct != nullptr && f.m_containerStruct->m_isDirectStruct;
  if (!s.m_isDirectStruct) {
    fr.set("g", boolean ? "zkt_w_bit_get" : simple_get_accessor_name(size));
    fr.set("p", boolean ? (ev >= 0 ? "zkt_w_bit_put_ev" : "zkt_w_bit_put") : simple_put_accessor_name(size, ev >= 0));
    fr.set("cast", putCast(size));
    if (isEnum) fr.set("etype", enum_int_type(size));
  }
  const bool differ = !(f.m_u_layout->m_offset == f.m_c_layout->m_offset);
  const int form = differ || (!isEnum && boolean) ? 0 : 1;  // column of the body tables

  mstring get = "{";
  if (f.m_isNullable) get += fr.fill(kGetGuard);
  get += fr.fill(direct ? kGetDirect : kGetBody[isEnum ? 1 : 0][form]);
  cFunction(base + "_get", width, fr.fill(kGetParams), get);
  if (!autoid) outputManagedMember(s, f, fr);
  cppMethod(hpp, fr.fill(kGetDecl), fr.fill(kGetDef));
  if (m_gen_smartptr) {
    mstring prop = fr.fill(kPropertyGet);
    if (!autoid) prop += fr.fill(kPropertyPut);
    cppMember(prop + fr.fill(kPropertyEnd), mstring());
  }

  if (s.m_hasSequences && f.m_isUnique) outputScalarTop(s, f, fr);
  if (autoid) return;

  // The float test comes first; an enum float takes the float form.
  const PutCase putCase = f.m_pstruct->m_cType == "float" ? PUT_FLOAT : isEnum ? PUT_ENUM : PUT_PLAIN;
  const int putForm = differ || (putCase != PUT_ENUM && boolean) ? 0 : 1;
  mstring put = "{";
  if (f.m_isNullable) put += fr.fill(kPutGuard);
  if (direct) {
    fr.set("tail", directPutTail(ev));
    put += fr.fill(kPutDirect[ev >= 0 ? 1 : 0]);
  } else {
    put += fr.fill(kPutBody[putCase][putForm]);
  }
  cFunction(base + "_put", width, fr.fill(kPutParams), put);
  cppMethod(hpp, fr.fill(kPutDecl), fr.fill(kPutDef));
}

namespace {

// clang-format off
// What differs between narrow and wide characters: the character type, the
// fixed-size and the variable-size wrapper families.
struct CharFamily {
  const char* ch;
  const char* fw;
  const char* vw;
};
const CharFamily kCharFamilies[2] = {
  //  {ch}       {fw}            {vw}
  { "char",    "zkt_w_chars",  "zkt_w_string" },   // narrow
  { "nchar_t", "zkt_w_nchars", "zkt_w_nstring" },  // wide
};

// The declaration takes a second parameter that the definition lacks: intended, keep it.
const char kCharSequenceParams[] = " ( zkt_trans_t trans, /*OUT*/zkt_seq_iterator_h seq )";
const char kCharSequenceBody[]   = "{ return zkt_w_seq_sequence_char(trans, {code}, {off}, seq, {usize}); }{nl}{nl}";
const char kCharSequenceDecl[]   = "static Sequence< Char<{usize}> > {field}_sequence(zkt_trans_h trans, zkt_seq_iterator_h seq);{nl}";
const char kCharSequenceDef[]    = "inline Sequence< Char<{usize}> > {struct}::{field}_sequence(zkt_trans_h trans){nl}{ Sequence< Char<{usize}> > seq; ZKT_CPP_CHECK({db}::{struct}_{field}_sequence(trans, seq.iter)); return seq; }{nl}{nl}";

const char kFixedGetParams[] = " ( {struct} *handle, /*OUT*/ {ch} * dest, uint2 dest_size)";
const char* const kFixedGetBody[2] = {
  " return {fw}_get2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no}, dest, dest_size, {usize});{nl}}{nl}{nl}",  // offsets differ
  " return {fw}_get( (zkt_objhandle_h) handle, {uoff}, {no}, dest, dest_size, {usize});{nl}}{nl}{nl}",            // offsets equal
};
const char kFixedGetDecl[] = "  ZKT_RET {field}_get({ch} * dest, uint2 dest_size);{nl}";
const char kFixedGetDef[]  = "{field}_get({ch} * dest, uint2 dest_size){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_get(this,dest,dest_size); return ret_; {nl}}{nl}{nl}";

// The property struct of char<n> and binary<n>: a std::string or a Char<n>
// both ways. The literal '\\0' writes the four characters of a C char
// literal, as the generated C++ needs them.
const char* const kFixedProperty[] = {
  "  struct { {nl}    {struct}* handle_;{nl}",
  "    operator std::string() const {{nl}      std::string str_({usize}, '\\0');{nl}      ZKT_CPP_CHECK({struct}_{field}_get(handle_, &str_[0], {usize}));{nl}      return str_;{nl}    }{nl}",
  "    operator Char<{usize}>() const {{nl}      Char<{usize}> chars_;{nl}      ZKT_CPP_CHECK({struct}_{field}_get(handle_, chars_.body, {usize}));{nl}      return chars_;{nl}    }{nl}",
  "    std::string const& operator=(std::string const& str_) {{nl}      ZKT_CPP_CHECK({struct}_{field}_put(handle_, str_.data(), (uint2)str_.size()));{nl}      return str_;{nl}    }{nl}",
  "    Char<{usize}> const& operator=(Char<{usize}> const& str_) {{nl}      ZKT_CPP_CHECK({struct}_{field}_put(handle_, str_.body, {usize}));{nl}      return str_;{nl}    }{nl}",
  "  } {field};{nl}{nl}",
};

// The put signature ends in a blank, and its cast has no blank before
// "handle", unlike the get's: both intended.
const char kFixedPutParams[] = " ( {struct} *handle, const {ch} * src, uint2 len) ";
const char* const kFixedPutBody[2][2] = {
  //  no event                                                                                                        update event
  { " return {fw}_put2( (zkt_objhandle_h)handle, {uoff}, {coff}, {no}, src, len, {usize}, {idx}{evarg});{nl}}{nl}{nl}", " return {fw}_put_ev2( (zkt_objhandle_h)handle, {uoff}, {coff}, {no}, src, len, {usize}, {idx}{evarg});{nl}}{nl}{nl}" },  // offsets differ
  { " return {fw}_put( (zkt_objhandle_h)handle, {uoff}, {no}, src, len, {usize}, {idx}{evarg});{nl}}{nl}{nl}",           " return {fw}_put_ev( (zkt_objhandle_h)handle, {uoff}, {no}, src, len, {usize}, {idx}{evarg});{nl}}{nl}{nl}" },            // offsets equal
};
const char kFixedPutDecl[] = "  ZKT_RET {field}_put( const {ch} * src, uint2 len );{nl}";
const char kFixedPutDef[]  = "{field}_put( const {ch} * src, uint2 len ){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_put(this,src, len); return ret_; {nl}}{nl}{nl}";

// A variable-size field always takes both offsets.
const char kVarGetParams[] = " ( {struct} *handle, /*OUT*/ {ch} * dest, uint2 dest_size, /*OUT*/ uint2 * len)";
const char kVarGetBody[]   = " return {vw}_get2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no}, dest, dest_size, len); {nl}}{nl}{nl}";
const char kVarGetDecl[]   = "  ZKT_RET {field}_get( {ch} * dest, uint2 dest_size, uint2 & len);{nl}";
const char kVarGetDef[]    = "{field}_get( {ch} * dest, uint2 dest_size, uint2 & len){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_get(this, dest, dest_size, &len); return ret_; {nl}}{nl}{nl}";

const char kVarSizeParams[] = " ( {struct} *handle, /*OUT*/ uint2 *result)";
const char kVarSizeBody[]   = " return {vw}_len2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no}, result); {nl}}{nl}{nl}";
const char kVarSizeDecl[]   = "  ZKT_RET {field}_size(uint2 &result);{nl}";
const char kVarSizeDef[]    = "{field}_size(uint2 &result){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_size(this, &result); return ret_;{nl}}{nl}{nl}";

// The property struct of string and varbinary: a std::string both ways.
const char kVarProperty[] = "  struct { {nl}    {struct}* handle_;{nl}    operator std::string() const {{nl}      std::string str_;{nl}      uint2 len_;{nl}      ZKT_CPP_CHECK({struct}_{field}_size(handle_, &len_));{nl}      str_.resize(len_);{nl}      ZKT_CPP_CHECK({struct}_{field}_get(handle_, &str_[0], len_, &len_));{nl}      return str_;{nl}    }{nl}    std::string const& operator=(std::string const& str_) {{nl}      ZKT_CPP_CHECK({struct}_{field}_put(handle_, str_.data(), (uint2)str_.size()));{nl}      return str_;{nl}    }{nl}  } {field};{nl}{nl}";

const char kVarPutParams[] = " ( {struct} *handle, const {ch} * src, uint2 len)";
const char* const kVarPutBody[2] = {
  " return {vw}_put2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no}, src, len, {idx}{evarg});{nl}}{nl}{nl}",     // no event
  " return {vw}_put_ev2( (zkt_objhandle_h) handle, {uoff}, {coff}, {no}, src, len, {idx}{evarg});{nl}}{nl}{nl}",  // update event
};
const char kVarPutDecl[] = "  ZKT_RET {field}_put(const {ch} * src, uint2 len);{nl}";
const char kVarPutDef[]  = "{field}_put(const {ch} * src, uint2 len){nl}{ ZKT_RET ret_ = {db}::{struct}_{field}_put(this,src,len); return ret_; {nl}} {nl}{nl}";
// clang-format on

// Sets {ch}, {fw} and {vw} of the narrow or the wide family.
const CharFamily& charFrag(Frag& fr, bool wide) {
  const CharFamily& fam = kCharFamilies[wide ? 1 : 0];
  fr.set("ch", fam.ch).set("fw", fam.fw).set("vw", fam.vw);
  return fam;
}

}  // namespace

void GenOutput::outputCharsField(Struct& s, Class* c, Field& f, int ev, Frag& fr) {
  outputFixedCharsField(s, c, f, ev, fr, false);
}

void GenOutput::outputUnicodeCharsField(Struct& s, Class* c, Field& f, int ev, Frag& fr) {
  outputFixedCharsField(s, c, f, ev, fr, true);
}

void GenOutput::outputStringField(Struct& s, Class*, Field& f, int ev, Frag& fr) {
  outputVarCharsField(s, f, ev, fr, false);
}

void GenOutput::outputUnicodeStringField(Struct& s, Class*, Field& f, int ev, Frag& fr) {
  outputVarCharsField(s, f, ev, fr, true);
}

void GenOutput::outputFixedCharsField(Struct& s, Class* c, Field& f, int ev, Frag& fr, bool wide) {
  const mstring base = s.m_name + "_" + f.m_name;
  const mstring hpp = hppClass(s.m_name);
  const int width = s.m_maxFuncName;
  const CharFamily& fam = charFrag(fr, wide);

  if (!wide && c != nullptr && c->m_sequences) {
    setSize(fr, "off", c->m_compact ? f.m_c_layout->m_offset : f.m_u_layout->m_offset);
    cFunction(base + "_sequence", width, fr.fill(kCharSequenceParams), fr.fill(kCharSequenceBody));
    cppMember(fr.fill(kCharSequenceDecl), fr.fill(kCharSequenceDef));
  }

  // Only the offsets choose the form; a boolean plays no part here.
  const int form = f.m_u_layout->m_offset == f.m_c_layout->m_offset ? 1 : 0;
  mstring get = "{";
  if (f.m_isNullable) get += fr.fill(kGetGuard);
  get += fr.fill(kFixedGetBody[form]);
  cFunction(base + "_get", width, fr.fill(kFixedGetParams), get);
  if (!wide && m_gen_smartptr) {
    // Ahead of the get's declaration.
    mstring prop;
    for (const char* part : kFixedProperty) prop += fr.fill(part);
    cppMember(prop, mstring());
  }
  cppMethod(hpp, fr.fill(kFixedGetDecl), fr.fill(kFixedGetDef));
  outputManagedMember(s, f, fr);
  genCharTopFunction(s, base, f, fam.ch);

  mstring put = "{";
  if (f.m_isNullable) put += fr.fill(kPutGuard);
  put += fr.fill(kFixedPutBody[form][ev >= 0 ? 1 : 0]);
  cFunction(base + "_put", width, fr.fill(kFixedPutParams), put);
  cppMethod(hpp, fr.fill(kFixedPutDecl), fr.fill(kFixedPutDef));
}

void GenOutput::outputVarCharsField(Struct& s, Field& f, int ev, Frag& fr, bool wide) {
  const mstring base = s.m_name + "_" + f.m_name;
  const mstring hpp = hppClass(s.m_name);
  const int width = s.m_maxFuncName;
  const CharFamily& fam = charFrag(fr, wide);
  const mstring getGuard = f.m_isNullable ? fr.fill(kGetGuard) : mstring();

  cFunction(base + "_get", width, fr.fill(kVarGetParams), "{" + getGuard + fr.fill(kVarGetBody));
  outputManagedMember(s, f, fr);
  cppMethod(hpp, fr.fill(kVarGetDecl), fr.fill(kVarGetDef));

  cFunction(base + "_size", width, fr.fill(kVarSizeParams), "{" + getGuard + fr.fill(kVarSizeBody));
  cppMethod(hpp, fr.fill(kVarSizeDecl), fr.fill(kVarSizeDef));
  if (!wide && m_gen_smartptr) cppMember(fr.fill(kVarProperty), mstring());
  genVarCharTopFunction(s, base, f, fam.ch);

  mstring put = "{";
  if (f.m_isNullable) put += fr.fill(kPutGuard);
  put += fr.fill(kVarPutBody[ev >= 0 ? 1 : 0]);
  cFunction(base + "_put", width, fr.fill(kVarPutParams), put);
  cppMethod(hpp, fr.fill(kVarPutDecl), fr.fill(kVarPutDef));
}
