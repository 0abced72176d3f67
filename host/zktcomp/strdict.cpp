// Dictionary as C source, the struct part: field records with their initialiser tables, and struct records.
#include "dictenc.h"

// clang-format off
static const char kFieldsHeadAssign[] =
  "    static zkt_dict_field_t v_field_info[{n}];\n"
  "    zkt_dict_field_t * pfi = &  v_field_info[0];\n";
static const char kFieldsHeadStatic[] = "    static const zkt_dict_field_t v_field_info[{n}] = { \n";
static const char kFieldsEndStatic[]  = "    };\n";
static const char kStructComment[]    = "    /* {struct} */\n";
static const char kInitComment[]      = "    /* {struct}.{field}: */ ";
static const char kStringInitEnd[]    = "\"\\0\"\n";

static const char kFieldAssign[] =
  "    pfi->name = \"{field}\";\n"
  "    pfi->layout.c_size = {c_size}; pfi->layout.c_align  = {c_align}; pfi->layout.c_offset = {c_offset}; pfi->layout.u_size = {u_size}; pfi->layout.u_align  = {u_align}; pfi->layout.u_offset = {u_offset}; \n"
  "    pfi->field_el_type = {type};pfi->flags = {flags};pfi->array_size = {array_size};pfi->struct_num = {struct_num};pfi->field_size = {field_size};pfi->refto_class= {refto};pfi->init_index = {init_index};pfi->order_no   = {order_no}; /* {seq_no} */pfi->no   = {no};pfi->event_id  = {event_id};pfi->indicator  = {indicator};pfi->precision  = {precision};pfi->seq_order  = {seq_order};pfi->seq_elem_size = {seq_elem_size};\n"
  "    pfi++;\n";
static const char kFieldStatic[] =
  "    {\"{field}\", {{c_size}, {c_align}, {c_offset}, {u_size}, {u_align}, {u_offset}}, {type}, {flags}, {array_size}, {struct_num}, {field_size}, {refto}, {init_index}, {order_no}, {no}, {event_id}, {indicator}, {precision}, {seq_order}, {seq_elem_size} /* {seq_no} */{end}\n";

static const char kInitIntTable[]    = "    static const int4 init_i_values[{count}] = { {values}    0 };\n\n";
static const char kInitStringTable[] = "    static const char init_s_values[{count}] = { {values}    };\n\n";
static const char kInitDoubleTable[] = "    static const double init_d_values[{count}] = { {values}    0 };\n\n";
static const char kOpenBlock[]       = "    {\n";

static const char kStructsHeadAssign[] =
  "    static zkt_dict_struct_t v_struct_info[{n}];\n"
  "    zkt_dict_struct_t * psi = v_struct_info;\n";
static const char kStructAssign[] =
  "    psi->name = \"{struct}\";\n"
  "    psi->flags = {flags};\n"
  "    psi->n_fields = {n_fields};\n"
  "    psi->fields = v_field_info_ptr + {first};\n"
  "    psi->c_size = {c_size};\n"
  "    psi->c_align = {c_align};\n"
  "    psi->u_size = {u_size};\n"
  "    psi->u_align = {u_align};\n"
  "    psi++;\n";
static const char kStructsHeadStatic[] = "    static const zkt_dict_struct_t v_struct_info[{n}] = { \n";
static const char kStructStatic[] =
  "    { \"{struct}\", {flags}, {n_fields}, (v_field_info + {first}), {c_size}, {c_align}, {u_size}, {u_align} {end}\n";
static const char kStructsEndStatic[] = "    };\n";

static const char kPrintAllHeadAssign[] =
  "    static zkt_dict_struct_t * v_struct_info_ptr;\n"
  "    static zkt_dict_field_t * v_field_info_ptr;\n";
static const char kPrintAllFieldsEndAssign[] =
  "\n"
  "      v_field_info_ptr = v_field_info;\n"
  "    }\n"
  "    {\n";
static const char kPrintAllStructsEndAssign[] =
  "\n"
  "      v_struct_info_ptr = v_struct_info;\n"
  "    }\n";
// clang-format on

namespace {

// A compact value of a struct whose compact size needs more than two bytes
// prints as 0.
Frag& setCompactSize(Frag& fr, const char* name, const Struct& s, const FSize& f) {
  return (int)s.m_layout.c.m_size > 65535 ? fr.set(name, "0") : setSize(fr, name, f);
}

}  // namespace

void ClassDictCreator::printAll(IOutStream& os, bool sort) {
  if (!m_cmode1) {
    printAllFields(os, sort, false);
    printAllUsedStructs(os);
    return;
  }
  // The block opens behind the initialiser tables, which the dictionary head
  // names at the end of the function.
  os << kPrintAllHeadAssign;
  printAllFields(os, sort, true);
  os << kPrintAllFieldsEndAssign;
  printAllUsedStructs(os);
  os << kPrintAllStructsEndAssign;
}

void ClassDictCreator::printAllFields(IOutStream& os, bool sort, bool openBlock) {
  HIOutStream fields(IOutStream::createStrStream(""));
  HIOutStream ints(IOutStream::createStrStream(""));
  HIOutStream doubles(IOutStream::createStrStream(""));
  HIOutStream strings(IOutStream::createStrStream(""));
  unsigned int intPos = 0, doublePos = 0, stringPos = 0;

  Frag fr;
  fr.set("n", (long)m_nFields);
  *fields.get() << fr.fill(m_cmode1 ? kFieldsHeadAssign : kFieldsHeadStatic);
  int written = 0;
  for (unsigned int si = 0; si < v_allStructs.size(); si++) {
    Struct& s = *v_allStructs[si];
    fr.set("struct", s.m_name);
    *fields.get() << fr.fill(kStructComment);
    const mvector<FieldRef> refs = fieldRun(s, sort);
    for (unsigned int j = 0; j < refs.size(); j++) {
      Field& f = *refs[j].pf;
      fr.set("field", f.m_name);
      const Field::DictInfo di = f.dict_info(true);
      const int ev = updateEventId(s, f);

      mstring initIndex("0");
      if (f.rare().initVals.size() > 0) {
        const DictEnc::InitValues iv = DictEnc::initValues(
            m_sc, s, f, (int)di.size, m_err, "Initializer is not allowed for this type of field: {struct}.{field}");
        switch (iv.type) {
          case INIT_INT:
          case INIT_BOOL:
            initIndex = UT::n2s(intPos + 1);
            *ints.get() << fr.fill(kInitComment);
            for (unsigned int k = 0; k < iv.words.size(); k++) *ints.get() << iv.words[k] << ", ";
            intPos += iv.words.size();
            break;
          case INIT_DOUBLE:
            initIndex = UT::n2s(doublePos + 1);
            *doubles.get() << fr.fill(kInitComment);
            for (unsigned int k = 0; k < f.rare().initVals.size(); k++) *doubles.get() << f.rare().initVals[k] << ", ";
            doublePos += f.rare().initVals.size();
            break;
          case INIT_STRING:
            // The literals stand side by side, so the C text lacks the zero
            // byte between two values that the positions count: intended.
            initIndex = UT::n2s(stringPos + 1);
            *strings.get() << fr.fill(kInitComment);
            for (unsigned int k = 0; k < f.rare().initVals.size(); k++) {
              *strings.get() << f.rare().initVals[k];
              stringPos += f.rare().initVals[k].bytes() + 1;
            }
            *strings.get() << kStringInitEnd;
            break;
          case INIT_NONE:
            break;
        }
      }

      unsigned int indicator = 65535;
      if (f.m_isNullable) {
        unsigned int k = 0;
        while (k < refs.size() && (int)refs[k].pf->m_no != f.m_indicator) k++;
        if (k == refs.size() || !refs[k].pf->m_isIndicator) IErrReporter::panic("internal", false);
        indicator = k;
      }
      const int structNum = ClassDictCreator::structNum(f);
      const FldLayout& c = *f.m_c_layout;
      const FldLayout& u = *f.m_u_layout;
      setCompactSize(fr, "c_size", s, c.m_size);
      setSize(fr, "c_align", c.m_align);
      setCompactSize(fr, "c_offset", s, c.m_offset);
      setSize(fr, "u_size", u.m_size);
      setSize(fr, "u_align", u.m_align);
      setSize(fr, "u_offset", u.m_offset);
      fr.set("type", (long)di.etype).set("flags", (long)DictEnc::fieldFlags(f)).set("array_size", (long)f.m_arraySize);
      fr.set("struct_num", (long)structNum).set("refto", (long)refToClass(f));
      setSize(fr, "field_size", di.size);
      fr.set("init_index", initIndex).set("order_no", (long)refs[j].order_no).set("no", (long)f.m_no);
      fr.set("event_id", (long)(ev < 0 ? 65535 : ev)).set("indicator", (long)indicator);
      fr.set("precision", (long)(f.rare().precision < 0 ? 0 : f.rare().precision));
      fr.set("seq_order", f.rare().seqOrder.empty() ? "0" : f.rare().seqOrder.c_str());
      if (f.rare().seqElemStruct != nullptr) setSize(fr, "seq_elem_size", f.rare().seqElemStruct->m_layout.u.m_size);
      else fr.set("seq_elem_size", "0");
      fr.set("seq_no", (long)f.m_seq_no);
      fr.set("end", ++written == m_nFields ? "}" : "},");
      *fields.get() << fr.fill(m_cmode1 ? kFieldAssign : kFieldStatic);
    }
  }
  if (!m_cmode1) *fields.get() << kFieldsEndStatic;

  m_sc.n_i_inits = intPos;
  m_sc.n_s_inits = stringPos;
  m_sc.n_d_inits = doublePos;
  if (intPos > 0) fr.set("count", (long)intPos + 1).set("values", ints.get()->retstr()).fillTo(os, kInitIntTable);
  if (stringPos > 0)
    fr.set("count", (long)stringPos + 1).set("values", strings.get()->retstr()).fillTo(os, kInitStringTable);
  if (doublePos > 0)
    fr.set("count", (long)doublePos + 1).set("values", doubles.get()->retstr()).fillTo(os, kInitDoubleTable);
  if (openBlock) os << kOpenBlock;
  os << fields.get()->retstr() << "\n";
}

void ClassDictCreator::printAllUsedStructs(IOutStream& os) {
  Frag fr;
  fr.set("n", (long)m_nStructs);
  fr.fillTo(os, m_cmode1 ? kStructsHeadAssign : kStructsHeadStatic);
  for (unsigned int si = 0; si < v_allStructs.size(); si++) {
    const Struct& s = *v_allStructs[si];
    fr.set("struct", s.m_name).set("flags", (long)DictEnc::structFlags(s)).set("n_fields", (long)s.v_field.size());
    fr.set("first", (long)m_firstFieldPerStruct[si]);
    setCompactSize(fr, "c_size", s, s.m_layout.c.m_size);
    setSize(fr, "c_align", s.m_layout.c.m_align);
    setSize(fr, "u_size", s.m_layout.u.m_size);
    setSize(fr, "u_align", s.m_layout.u.m_align);
    fr.set("end", si + 1 == v_allStructs.size() ? "}" : "},");
    fr.fillTo(os, m_cmode1 ? kStructAssign : kStructStatic);
  }
  if (!m_cmode1) os << kStructsEndStatic;
}
