// Calculator, user-defined indexes and collations: the tables handed to the runtime, prototypes and stub files.
#include "genout.h"

namespace {

// clang-format off
const char kCalcHead[]      = "zkt_calculator_h {db}_get_calculator(void)\n{\n";
const char kCalcNone[]      = "  return (zkt_calculator_h)NULLPTR;\n";
const char kCalcTableHead[] = "  static zkt_calculator_t calc;\n  static zkt_calc_class_t calc_classes[] = {\n";
const char kCalcEntry[]     = "    { \"{name}\", {nobjs}, {name}_code },\n";  // a comma behind the last one too
const char kCalcTableEnd[]  = "  };\n\n  calc.classes = calc_classes;\n  calc.nclasses = {n};\n  return &calc;\n";
const char kCalcEnd[]       = "}\n\n";

const char kUdfProto[]      = "zkt_userdef_funcs_h {db}_get_udfs(void);\n";
const char kUdfHead[]       = "zkt_userdef_funcs_h {db}_get_udfs(void) {\n  static zkt_userdef_funcs_t  fptrs[{n}];\n  static int fptrs_ready = 0;\n\n  if (! fptrs_ready)\n  {\n";
const char kCollProto[]     = "zkt_collation_funcs_h {db}_get_collations(void);\n";
const char kCollHead[]      = "zkt_collation_funcs_h {db}_get_collations(void) {\n  static zkt_collation_funcs_t  fptrs[{n}];\n  static int fptrs_ready = 0;\n\n  if (! fptrs_ready)\n  {\n";
const char kTableEnd[]      = "    fptrs_ready = 1;\n  };\n  return fptrs;\n}\n\n";

// The body of every function the application fills in.
const char kStub[]          = "{\n  /* TODO: add your implementation here */\n\n  return 0;\n}\n\n";

const char kUdfFlags[]      = "    fptrs[{udf}].p.flags       = 0;\n";
const char kUdfIndexNote[]  = "/*\n\n* API for the user-defined index \"{index}\"\n\n*/\n\n";

// The table entries of a user-defined index; {fn} is a function name or 0.
enum UdfEntry { FCOMP_VB, FCOMP_NVB, FCOMP_EXT_VB, FCOMP_EXT_NVB, FHASH_VB, FHASH_NVB, FHASH_EXT };
const char* const kUdfEntries[] = {
  "    fptrs[{udf}].fcomp.vb      = (zkt_compare_userdef_vb_f)        {fn};\n",
  "    fptrs[{udf}].fcomp.nvb     = (zkt_compare_userdef_f)           {fn};\n",
  "    fptrs[{udf}].fcomp_ext.vb  = (zkt_compare_extkey_userdef_vb_f) {fn};\n",
  "    fptrs[{udf}].fcomp_ext.nvb = (zkt_compare_extkey_userdef_f)    {fn};\n",
  "    fptrs[{udf}].fhash.vb      = (zkt_hash_userdef_vb_f)           {fn};\n",
  "    fptrs[{udf}].fhash.nvb     = (zkt_hash_userdef_f)              {fn};\n",
  "    fptrs[{udf}].fhash_ext.u   = (zkt_hash_extkey_userdef_f)       {fn};\n",
};

// One function of a user-defined index: comment in the udf file, name suffix,
// signature without and with the index parameters of a vector index, and the
// table entry for both forms.
struct UdfFunction {
  const char* comment;
  const char* suffix;
  const char* signature[2];  // [vector index]
  UdfEntry entry[2];         // [vector index]
};
const UdfFunction kUdfCompare[] = {
  { "/* object-to-object user-defined compare function */\n", "_compare_obj",
    { "int2  {class}_{index}_compare_obj ( {class} * handle1, {class} * handle2 )",
      "int2  {class}_{index}_compare_obj ( {class} * handle1, uint2 index1 ,{class} * handle2, uint2 index2 )" },
    { FCOMP_NVB, FCOMP_VB } },
  { "/* object-to-key user-defined compare function */\n", "_compare_ext",
    { "int2  {class}_{index}_compare_ext ( {class} * handle, void ** key )",
      "int2  {class}_{index}_compare_ext ( {class} * handle, uint2 index, void ** key )" },
    { FCOMP_EXT_NVB, FCOMP_EXT_VB } },
};
const UdfFunction kUdfHash[] = {
  { "/* user-defined object hash function */\n", "_hash_obj",
    { "zkt_hash_counter_t {class}_{index}_hash_obj    ( {class} * handle )",
      "zkt_hash_counter_t {class}_{index}_hash_obj    ( {class} * handle, uint2 index )" },
    { FHASH_NVB, FHASH_VB } },
  { "/* user-defined key hash function */\n", "_hash_ext",
    { "zkt_hash_counter_t {class}_{index}_hash_ext    ( void ** key)",
      "zkt_hash_counter_t {class}_{index}_hash_ext    ( void ** key)" },
    { FHASH_EXT, FHASH_EXT } },
};

// The macro that reads key part {s} of an external key; {steps} is "_" and
// the name of each step of the segment's path.
const char kExtkeyMacro[]   = "#define {class}_{index}_extkey{steps}(ek)    (({ctype})((((zkt_external_field_t*)(ek))[{s}]).{member}))\n";

const char kCollNote[]      = "/*\n* API for the user-defined collation \"{coll}\"\n*/\n\n/* collation compare function */\n";
const char kCollCompare[]   = "int2  {coll}_collation_compare ( zkt_collate_h c1, uint2 len1, zkt_collate_h c2, uint2 len2)";
const char kCollHashNote[]  = "/* user-defined object hash function */\n";
const char kCollHash[]      = "zkt_hash_counter_t {coll}_collation_hash (zkt_collate_h c, uint2 len)";
const char kCollCompEntry[] = "    fptrs[{order}].comp = (zkt_compare_collation_f) {coll}_collation_compare;\n";
const char kCollCompNull[]  = "    fptrs[{order}].comp = (zkt_compare_collation_f) 0;\n";
const char kCollHashEntry[] = "    fptrs[{order}].hash = (zkt_hash_collation_f)    {coll}_collation_hash;\n";
const char kCollHashNull[]  = "    fptrs[{order}].hash = (zkt_hash_collation_f)    0;\n";
// clang-format on

// Whether a class with an API has the feature.
bool anyWithApi(const Schema& sc, bool Class::*feature) {
  for (ISet::HPos pos(sc.s_class.first()); pos.valid(); pos.next()) {
    const Class& cls = *static_cast<const Class*>(pos.get().get());
    if (cls.*feature && !cls.m_suppressApi) return true;
  }
  return false;
}

// The C type and union member of the macro that reads one key part, by the
// category of the last step's type.
void extkeyType(const Index::Segment& seg, const Schema& sc, Frag& fr) {
  const Struct& type = *seg.last().m_pFld->m_pstruct;
  switch (type.m_category) {
    case ET_SIMPLE:
      fr.set("ctype", type.m_cType).set("member", mstring("v.") + seg.dict_info().unionel);
      return;
    case ET_CHARS:
    case ET_STRING:
    case ET_BINARY:
    case ET_VARBINARY:
      fr.set("ctype", "char *").set("member", "ptr");
      return;
    case ET_REF:
      fr.set("ctype", sc.objIdName() + " *").set("member", "ptr");
      return;
    case ET_UNICODE_CHARS:
    case ET_UNICODE_STRING:
      fr.set("ctype", "nchar_t *").set("member", "ptr");
      return;
    case ET_WIDE_CHARS:
    case ET_WCHAR_STRING:
      fr.set("ctype", "wchar_t *").set("member", "ptr");
      return;
    case ET_STRUCT:
    case ET_BLOB:
    case ET_AUTOID:
    case ET_VERSION:
    case ET_AUTOOID:
    case ET_DIRECT_STRUCT:
    case ET_SEQUENCE:
      break;
  }
  IErrReporter::panic("illegal index field type", false);
}

}  // namespace

void GenOutput::outputCalculator() {
  Frag fr;
  fr.set("db", m_sc.m_dbname);
  head2(m_c, "calculator");
  fr.fillTo(*m_c, kCalcHead);
  if (m_sc.s_calc == nullptr) {
    *m_c << kCalcNone;
  } else {
    mvector<CalcEl>& els = m_sc.s_calc->calc_els;
    *m_c << kCalcTableHead;
    for (unsigned int i = 0; i < els.size(); i++) {
      els[i].m_class_name = nameWithPrefix(els[i].m_class_name);
      fr.set("name", els[i].m_class_name).set("nobjs", (long)els[i].m_nobjs).fillTo(*m_c, kCalcEntry);
    }
    fr.set("n", (long)els.size()).fillTo(*m_c, kCalcTableEnd);
  }
  *m_c << kCalcEnd;
}

// A suppressed class keeps its heading and null entries, so that the table's
// numbering stays that of the dictionary.
void GenOutput::outputUserdef() {
  if (m_sc.m_userdefIdxNum == 0 || !anyWithApi(m_sc, &Class::m_hasUserdefIdx)) return;
  Frag fr;
  fr.set("db", m_sc.m_dbname).set("n", (long)m_sc.m_userdefIdxNum);
  head2(m_h, "User-defined index");
  fr.fillTo(*m_h, kUdfProto);
  fr.fillTo(*m_c, kUdfHead);
  for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
    Class& cls = *static_cast<Class*>(pos.get().get());
    if (!cls.m_hasUserdefIdx) continue;
    head2(m_h, "class " + cls.m_name + " user-defined index methods");
    for (unsigned int i = 0; i < cls.v_index.size(); i++) {
      Index& idx = cls.v_index[i];
      if (idx.m_isUserdef) outputUserdefIndex(cls, idx);
    }
  }
  *m_c << kTableEnd;
  *m_h << "\n";
}

void GenOutput::outputUserdefIndex(Class& cls, Index& idx) {
  const int vb = idx.m_vectorSegmentNum >= 0 ? 1 : 0;
  const bool hash = idx.m_IndexType == IT_Hash;
  Frag fr;
  fr.set("class", cls.m_name).set("index", idx.m_name).set("udf", (long)idx.m_code_udf);
  fr.fillTo(*m_c, kUdfFlags);
  if (cls.m_suppressApi) {
    fr.set("fn", "0");
    for (const UdfFunction& f : kUdfCompare) *m_c << fr.fill(kUdfEntries[f.entry[vb]]);
    *m_c << fr.fill(kUdfEntries[kUdfHash[0].entry[vb]]) << fr.fill(kUdfEntries[FHASH_EXT]);
    return;
  }
  *m_h << "\n";
  fr.fillTo(*m_udf, kUdfIndexNote);
  for (const UdfFunction& f : kUdfCompare) outputUserdefFunction(f.comment, fr.fill(f.signature[vb]),
                                                                  cls.m_name + "_" + idx.m_name + f.suffix,
                                                                  kUdfEntries[f.entry[vb]], fr);
  if (hash) {
    for (const UdfFunction& f : kUdfHash) outputUserdefFunction(f.comment, fr.fill(f.signature[vb]),
                                                                 cls.m_name + "_" + idx.m_name + f.suffix,
                                                                 kUdfEntries[f.entry[vb]], fr);
  } else {
    // the non-vector entry even for a vector index: the runtime reads no hash of a tree
    fr.set("fn", "0");
    *m_c << fr.fill(kUdfEntries[FHASH_NVB]) << fr.fill(kUdfEntries[FHASH_EXT]);
  }
  for (unsigned int s = 0; s < idx.v_fldParsed.size(); s++) {
    const Index::Segment& seg = idx.v_fldParsed[s];
    mstring steps;
    for (unsigned int k = 0; k < seg.size(); k++) steps += "_" + seg[k].m_name;
    extkeyType(seg, m_sc, fr);
    fr.set("steps", steps).set("s", (long)s).fillTo(*m_h, kExtkeyMacro);
  }
}

void GenOutput::outputUserdefFunction(const char* comment, const mstring& signature, const mstring& name,
                                      const char* entry, Frag& fr) {
  *m_udf << comment;
  userFunction(m_udf, signature);
  fr.set("fn", name).fillTo(*m_c, entry);
}

void GenOutput::userFunction(IOutStream* os, const mstring& signature) {
  *m_h << signature << ";\n";
  *os << signature << "\n" << kStub;
}

// The hash function's comment goes to the udf file, not to the collation
// file: intended, the stray comment is part of the output.
void GenOutput::outputCollation() {
  if (!anyWithApi(m_sc, &Class::m_hasCollations)) return;
  Frag fr;
  fr.set("db", m_sc.m_dbname).set("n", (long)m_sc.m_collationsNum);
  head2(m_h, "Custom collation");
  fr.fillTo(*m_h, kCollProto);
  fr.fillTo(*m_c, kCollHead);
  for (ISet::HPos pos(m_sc.s_coll.first()); pos.valid(); pos.next()) {
    const Collation& coll = *static_cast<const Collation*>(pos.get().get());
    fr.set("coll", coll.m_name).set("order", (long)coll.order);
    head2(m_h, "collation " + coll.m_name + " user-defined methods");
    if (coll.suppressed) {
      *m_c << fr.fill(kCollCompNull) << fr.fill(kCollHashNull);
      continue;
    }
    fr.fillTo(*m_coll, kCollNote);
    userFunction(m_coll, fr.fill(kCollCompare));
    fr.fillTo(*m_c, kCollCompEntry);
    if (coll.isTree) {
      fr.fillTo(*m_c, kCollHashNull);
    } else {
      *m_udf << kCollHashNote;
      userFunction(m_coll, fr.fill(kCollHash));
      fr.fillTo(*m_c, kCollHashEntry);
    }
  }
  *m_c << kTableEnd;
  *m_h << "\n";
}
