// Memory dictionary builder: numeric layout, the dictionary records built with the runtime's allocators.
#include "gendict.h"

#include <string.h>

#include <climits>

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "analyzer.h"
#include "arena.h"
#include "errrepmem.h"
#include "job.h"
#include "parser.h"

namespace {

// Alignment the target compiler gives a scalar inside a direct struct, by
// element type code; 0: the field keeps the alignment it has.
// clang-format off
const int direct_field_alignment[52] = {
//  0  1  2  3  4  5  6  7  8  9
    0, 1, 2, 4, 1, 2, 4, 0, 0, 4,   //  0.. 9
    4, 8, 8, 8, 8, 2, 4, 4, 8, 0,   // 10..19
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0,   // 20..29
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0,   // 30..39
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0,   // 40..49
    0, 0,                           // 50..51
};
// clang-format on

// getArraySize has no struct to name in its error, so a product that does
// not fit an int is handed on with this mark (the calc-type size is never set
// otherwise here) and the layout of the struct reports it.
const int kTooLarge = -1;

template <class T>
T* callocOf(size_t n) {
  return static_cast<T*>(runtimeCalloc(n, sizeof(T)));
}

long long roundUp(long long n, int a) {
  if (n <= 0 || (a != 2 && a != 4 && a != 8)) return n;
  return (n - 1) / a * a + a;
}


}  // namespace

void* runtimeMalloc(size_t size) {
  CompileArena::Outside keep;
  return zkt_sys_malloc(size);
}

void* runtimeCalloc(size_t n, size_t size) {
  CompileArena::Outside keep;
  return zkt_sys_calloc(n, size);
}

char* dictStrdup(const char* s) {
  char* r = static_cast<char*>(runtimeMalloc(strlen(s) + 1));
  strcpy(r, s);
  return r;
}

// ---------------------------------------------------------------- MemoryGenDict

MemoryGenDict::MemoryGenDict(Schema& sc, bool debug, bool nosort, bool dumpxml, bool gen_hpp, bool gen_cs,
                             bool gen_java, bool gen_smartptr, IErrReporter* err, const mstring& outDir,
                             const mstring& csNamespace, const mstring& javaPackage, bool cmode1,
                             bool genXmlMethods, bool genJsonMethods, bool genSql, bool largeDatabase,
                             int wcharSize, bool prefix, bool mergeable, bool dll)
    : GenOutput(sc, debug, nosort, dumpxml, gen_hpp, gen_cs, gen_java, gen_smartptr, err, outDir, csNamespace,
                javaPackage, cmode1, genXmlMethods, genJsonMethods, genSql, largeDatabase, 8, wcharSize, prefix,
                mergeable, dll),
      m_outDir(outDir) {}

void MemoryGenDict::createStreams(bool, bool) {
  IOutStream** const streams[] = {&m_h,   &m_c,  &m_def2, &m_prot, &m_body, &m_hpp,
                                  &m_hpp_tail, &m_cs, &m_x,    &m_udf,  &m_coll};
  for (IOutStream** s : streams) *s = IOutStream::createNullStream();
}

bool MemoryGenDict::layout(Struct& s, int start, Class* cls) { return GenOutput::layout(s, start, cls); }

void MemoryGenDict::update_layout_strings(FldLayout&) {}

FSize MemoryGenDict::getArraySize(FSize& elem, int n) {
  const long long size = (long long)elem.m_size_n * n;
  if (size <= INT_MAX) return FSize((int)size);
  FSize r(INT_MAX);
  r.setCalcTypeSize(kTooLarge);
  return r;
}

void MemoryGenDict::layout(Layout& l, int start, Struct* s) {
  long long pos = start;
  int largest = 1;
  Struct* direct = nullptr;
  FldLayout* last = nullptr;
  for (unsigned int i = 0; i < l.v_fldOrder.size(); i++) {
    FldLayout& rec = l.v_fldOrder[i];
    if (rec.m_size.is_str() || rec.m_align.is_str()) IErrReporter::panic("internal", false);
    if (rec.m_size.calcTypeSize() == kTooLarge) checkedSize((long long)INT_MAX + 1, *s);
    Struct* container = rec.m_ref->m_containerStruct;
    if (container != nullptr && container->m_isDirectStruct) {
      direct = container;
      if (!container->m_is_packed) {
        const int code = rec.m_ref->dict_info(false).etype;
        if (code >= 0 && code < 52 && direct_field_alignment[code] != 0) rec.m_align = direct_field_alignment[code];
      }
    }
    const int align = rec.m_align;
    if (align > largest) largest = align;
    pos = checkedSize(roundUp(pos, align), *s);
    rec.m_offset = (int)pos;
    pos = checkedSize(pos + rec.m_size.m_size_n, *s);
    if (container != nullptr && container->m_hasDirectStruct) last = &rec;
  }
  l.m_size = (int)pos;
  l.m_align = direct != nullptr ? 1 : largest;
  if (last != nullptr) {
    l.m_size = checkedSize((long long)last->m_offset.m_size_n + last->m_size.m_size_n, *s);
  } else if (direct != nullptr) {
    // The tail padding the target compiler adds to the struct; in the u pass
    // the c size is already final, so both sizes agree.
    const int cs = direct->m_layout.c.m_size;
    l.m_size = s->m_is_packed ? cs : checkedSize(roundUp(cs, largest), *s);
  }
}

uint16_t MemoryGenDict::GetClassFlags(Class* cls) { return (uint16_t)DictEnc::classFlags(*cls); }

void MemoryGenDict::classInfo(zkt_dictionary_t_* dict, Class& cls, int k, int firstIndex, int firstEvent) {
  const DictEnc::ClassRecord r =
      DictEnc::classRecord(cls, m_sc, firstIndex, firstEvent, m_err, "Class {class} is too large. Use 'nosort' option");
  zkt_dict_class_info_t_& ci = dict->v_class_info[k];
  dict->str_class_names[k] = dictStrdup(cls.m_name.c_str());
  ci.first_index_num = (int16_t)r.first_index_num;
  ci.last_index_num = (int16_t)r.last_index_num;
  ci.list_index_num = (int16_t)r.list_index_num;
  ci.autoid_index_num = (int16_t)r.autoid_index_num;
  ci.fixedsize = (uint32_t)(int)r.fixedsize;
  ci.autoid_offset = (uint16_t)(int)r.autoid_offset;
  ci.history_index_num = (int16_t)r.history_index_num;
  ci.history_length = (uint16_t)r.history_length;
  ci.history_offset = (uint16_t)(int)r.history_offset;
  ci.first_event_num = (int16_t)r.first_event_num;
  ci.last_event_num = (int16_t)r.last_event_num;
  ci.flags = (uint16_t)r.flags;
  ci.struct_ptr = dict->v_all_struct + cls.m_globalNum;
  ci.init_size = (uint64_t)(int)r.init_size;
  ci.auto_oid_offset = (uint16_t)(int)r.auto_oid_offset;
}

void MemoryGenDict::events(zkt_dictionary_t_* dict, unsigned int n_events) {
  dict->v_desc_events = callocOf<zkt_dict_event_t_>(n_events);
  unsigned int e = 0;
  for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
    const Class& cls = *static_cast<Class*>(pos.get().get());
    for (unsigned int i = 0; i < cls.v_events.size(); i++, e++) {
      const Event& ev = cls.v_events[i];
      zkt_dict_event_t_& rec = dict->v_desc_events[e];
      rec.class_code = (uint16_t)cls.m_classCode;
      rec.flags = (uint16_t)DictEnc::eventFlags(ev.m_type);
      if (ev.m_pFld == nullptr) continue;
      const Field::DictInfo di = ev.m_pFld->dict_info(false);
      rec.field_offset = (uint32_t)(int)DictEnc::fieldLayoutOf(cls, *ev.m_pFld).m_offset;
      rec.field_size = (uint32_t)(int)di.size;
      rec.field_type = (uint8_t)di.etype;
      rec.fld_no = (uint16_t)ev.m_pFld->m_no;
    }
  }
}

zkt_dictionary_t_* MemoryGenDict::generate() {
  zkt_dictionary_t_* dict = callocOf<zkt_dictionary_t_>(1);
  GenOutput::layout();
  calculateFormating();
  MemoryClassDictCreator creator(m_sc, m_err);
  creator.create(dict, !m_nosort);

  dict->version_major = ZKT_DICT_VERSION_MAJOR;
  dict->version_minor = ZKT_DICT_VERSION_MINOR;
  dict->version_build = ZKT_DICT_VERSION_BUILD;
  dict->magic_number = ZKT_DICT_MAGIC_NUMBER;
  dict->flags = m_sc.m_dict_flags;
  if (m_nosort) dict->flags |= 2;  // again: the memory form always says so
  dict->oid_is_supported = m_sc.m_useObjid ? 1 : 0;
  dict->auto_oid_supported = m_sc.auto_oid_declared() ? 1 : 0;

  const DictEnc::Counts n = DictEnc::counts(m_sc);
  dict->v_class_info = callocOf<zkt_dict_class_info_t_>(n.nClasses + 1);
  dict->str_class_names = callocOf<const char*>(n.nClasses + 1);
  dict->n_class_codes = (uint16_t)n.nClasses;
  dict->n_list_indexes = (uint16_t)n.nList;
  dict->n_autoid_indexes = (uint16_t)n.nAutoid;
  dict->n_history_indexes = (uint16_t)n.nHistory;
  dict->n_userdef_indexes = (uint16_t)m_sc.m_userdefIdxNum;
  dict->n_structs = (uint16_t)creator.m_nStructs;
  dict->n_desc_indexes = (uint16_t)n.nIndexes;
  dict->n_desc_events = (uint16_t)n.nEvents;
  dict->n_desc_colls = (uint16_t)m_sc.m_collationsNum;
  int k = 1;
  for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next(), k++) {
    Class& cls = *static_cast<Class*>(pos.get().get());
    classInfo(dict, cls, k, n.firstIndex[k - 1], n.firstEvent[k - 1]);
  }
  if (n.nEvents > 0) events(dict, n.nEvents);

  dict->num_oid_estimation = m_sc.m_nobjid_estimated;
  dict->num_HA_estimation = m_sc.m_HA_estimate;
  dict->max_numof_indexes_per_obj = (uint16_t)n.maxIndexes;
  // The packed size, deliberately the same as layout_OID_size.
  dict->exact_OID_sizeof = (uint16_t)(m_sc.m_useObjid ? m_sc.m_oid_sizeof_uplimit : 0);
  dict->layout_OID_size = (uint16_t)m_sc.m_oid_sizeof_uplimit;
  if (n.nIndexes > 0) generate_indexes(dict, n.nSegments, n.nIndexes);
  if (m_sc.m_collationsNum > 0) generate_collations(dict);
  // The compile runs in the process that uses it: compiled-for and target widths agree.
  dict->sizeof_zkt_offs_t[0] = 8;
  dict->sizeof_zkt_offs_t[1] = 8;
  dict->sizeof_zkt_size_t[0] = 8;
  dict->sizeof_zkt_size_t[1] = 8;
  return dict;
}

void MemoryGenDict::generate_indexes(zkt_dictionary_t_* dict, unsigned int n_index_fields, unsigned int n_indexes) {
  dict->v_desc_indexes = callocOf<zkt_dict_index_t_>(n_indexes);
  zkt_dict_index_field_t_* block = n_index_fields > 0 ? callocOf<zkt_dict_index_field_t_>(n_index_fields) : nullptr;
  dict->str_index_names = callocOf<const char*>(n_indexes);
  unsigned int in = 0;
  unsigned int fn = 0;
  for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
    Class& cls = *static_cast<Class*>(pos.get().get());
    for (unsigned int i = 0; i < cls.v_index.size(); i++, in++) {
      const Index& idx = cls.v_index[i];
      const mstring name = cls.m_name + "." + idx.m_name;
      dict->str_index_names[in] = dictStrdup(name.c_str());
      zkt_dict_index_t_& rec = dict->v_desc_indexes[in];
      rec.fields = block != nullptr ? block + fn : nullptr;
      mvector<Index::FieldLayout> layouts;
      for (unsigned int j = 0; j < idx.v_fldParsed.size(); j++, fn++) {
        const Index::Segment& seg = idx.v_fldParsed[j];
        const Index::FieldLayout fl = idx.getFieldLayout(seg, &cls);
        const Field::DictInfo di = seg.dict_info();
        layouts.push_back(fl);
        zkt_dict_index_field_t_& f = block[fn];
        f.field_offset = (uint32_t)(int)fl.field_offset;
        f.vect_field_offset = (int)fl.vect_field_offset;
        f.indicator_offset = (uint32_t)DictEnc::indicatorOffset(seg, cls, (int)fl.field_offset);
        f.field_size = (uint32_t)(int)di.size;
        f.field_type = (uint8_t)di.etype;
        f.fld_flags = (uint8_t)DictEnc::indexFieldFlags(seg, di.etype, false);
        f.fld_no = (uint16_t)seg[0].m_pFld->m_no;
        f.collation_id = (int16_t)seg.m_collationNum;
      }
      rec.class_code = (uint16_t)cls.m_classCode;
      rec.impl_no = (uint16_t)DictEnc::implNo(idx, cls);
      rec.numof_fields = (uint16_t)idx.v_fldParsed.size();
      rec.vect_field_offset = (int)DictEnc::indexVectFieldOffset(idx, layouts);
      rec.flags = DictEnc::indexFlags(idx, cls);
      rec.numof_keys_estimate = (uint64_t)(unsigned int)idx.m_expectedCount;
      rec.userdef_id = (int16_t)idx.m_code_udf;
    }
  }
}

void MemoryGenDict::generate_collations(zkt_dictionary_t_* dict) {
  dict->v_desc_colls = callocOf<zkt_dict_collation_t_>(m_sc.m_collationsNum);
  unsigned int i = 0;
  for (ISet::HPos pos(m_sc.s_coll.first()); pos.valid() && i < m_sc.m_collationsNum; pos.next(), i++) {
    const Collation& c = *static_cast<Collation*>(pos.get().get());
    dict->v_desc_colls[i].name = dictStrdup(c.m_name.c_str());
    dict->v_desc_colls[i].type = (uint8_t)c.ctype;
  }
}

// ---------------------------------------------------------------- MemoryClassDictCreator

int MemoryClassDictCreator::GetSeqOrder(Field* f) {
  // clang-format off
  static const struct { const char* name; int order; } kOrders[] = {
    // name                  value
    { "ZKT_SEQ_ASC_ORDER",   ZKT_SEQ_ASC_ORDER },
    { "ZKT_SEQ_DESC_ORDER",  ZKT_SEQ_DESC_ORDER },
    { "ZKT_SEQ_NO_ORDER",    ZKT_SEQ_NO_ORDER },
  };
  // clang-format on
  if (f->rare().seqOrder.empty()) return ZKT_SEQ_NO_ORDER;
  for (const auto& o : kOrders)
    if (f->rare().seqOrder == o.name) return o.order;
  m_err->err("Field " + f->m_name + " invalid sequence order " + f->rare().seqOrder);
  return ZKT_SEQ_NO_ORDER;  // for a reporter whose errors return
}

unsigned int MemoryClassDictCreator::initValues(const Struct& s, const Field& f, int elemSize) {
  // "Initilizer" is the message as the system has always written it.
  const DictEnc::InitValues iv = DictEnc::initValues(m_sc, s, f, elemSize, m_err,
                                                     "Initilizer is not allowed for this type of field: {struct}.{field}");
  switch (iv.type) {
    case INIT_INT:
    case INIT_BOOL: {
      const unsigned int index = m_iinit_values.size() + 1;
      for (unsigned int i = 0; i < iv.words.size(); i++) m_iinit_values.push_back(iv.words[i]);
      return index;
    }
    case INIT_DOUBLE: {
      const unsigned int index = m_dinit_values.size() + 1;
      for (unsigned int i = 0; i < iv.doubles.size(); i++) m_dinit_values.push_back(iv.doubles[i]);
      return index;
    }
    case INIT_STRING: {
      const unsigned int index = m_sinit_values.size() + 1;
      for (unsigned int i = 0; i < f.rare().initVals.size(); i++) {
        const char* v = f.rare().initVals[i].c_str();
        const size_t n = strlen(v);
        // Between the first and the last character. A single quote is
        // dropped and the character after it taken as it is; a backslash is
        // an ordinary character.
        for (size_t j = 1; j + 1 < n; j++) {
          if (v[j] == '\'') j++;
          m_sinit_values += v[j];
        }
        m_sinit_values += '\0';
      }
      return index;
    }
    case INIT_NONE:
      break;
  }
  return 0;
}

void MemoryClassDictCreator::copyTables(zkt_dictionary_t_* dict) {
  const unsigned int ni = m_iinit_values.size();
  dict->init_i_data.ptr = static_cast<int32_t*>(runtimeCalloc(ni + 1, sizeof(int32_t)));
  for (unsigned int i = 0; i < ni; i++) dict->init_i_data.ptr[i] = m_iinit_values[i];
  dict->init_i_data_n = ni;
  const unsigned int nd = m_dinit_values.size();
  dict->init_d_data.ptr = static_cast<double*>(runtimeCalloc(nd + 1, sizeof(double)));
  for (unsigned int i = 0; i < nd; i++) dict->init_d_data.ptr[i] = m_dinit_values[i];
  dict->init_d_data_n = nd;
  const unsigned int ns = m_sinit_values.size();
  dict->init_s_data.ptr = static_cast<char*>(runtimeMalloc(ns));
  if (ns > 0) memcpy(dict->init_s_data.ptr, m_sinit_values.c_str(), ns);
  dict->init_s_data_n = ns;
}

void MemoryClassDictCreator::create(zkt_dictionary_t_* dict, bool sort) {
  dict->v_all_struct = callocOf<zkt_dict_struct_t_>(m_nStructs);
  zkt_dict_field_t_* block = callocOf<zkt_dict_field_t_>(m_nFields);
  for (unsigned int si = 0; si < v_allStructs.size(); si++) {
    Struct& s = *v_allStructs[si];
    // A struct with direct-struct fields keeps its declared order.
    const mvector<FieldRef> refs = fieldRun(s, sort && !s.m_hasDirectStruct);
    // Rule of the indicator: its position in this run, found by m_no.
    std::unordered_map<unsigned int, unsigned int> runPos;
    if (s.m_nNullableFields > 0)
      for (unsigned int j = 0; j < refs.size(); j++) runPos.emplace(refs[j].pf->m_no, j);

    zkt_dict_struct_t_& sr = dict->v_all_struct[si];
    sr.fields = block + m_firstFieldPerStruct[si];
    sr.n_fields = (uint16_t)refs.size();
    sr.name = dictStrdup(s.m_name.c_str());
    sr.flags = (uint16_t)GetStructFlags(&s);
    sr.c_size = (uint16_t)(int)s.m_layout.c.m_size;
    sr.c_align = (uint16_t)(int)s.m_layout.c.m_align;
    sr.u_size = (uint32_t)(int)s.m_layout.u.m_size;
    sr.u_align = (uint32_t)(int)s.m_layout.u.m_align;
    for (unsigned int j = 0; j < refs.size(); j++) {
      Field& f = *refs[j].pf;
      zkt_dict_field_t_& fr = sr.fields[j];
      const Field::DictInfo di = f.dict_info(true);
      if (di.etype == 51 && f.m_isArray) m_err->err("Blob cannot be element of array");
      if (di.etype == 51 && f.m_isVector) m_err->err("Blob cannot be element of vector");
      const int ev = updateEventId(s, f);
      const unsigned int initIndex = f.rare().initVals.size() > 0 ? initValues(s, f, (int)di.size) : 0;
      unsigned int indicator = 65535;
      if (f.m_isNullable) {
        auto it = runPos.find((unsigned int)f.m_indicator);
        if (it == runPos.end() || !refs[it->second].pf->m_isIndicator) IErrReporter::panic("internal", false);
        indicator = it->second;
      }
      const int structNum = ClassDictCreator::structNum(f);
      const FldLayout& c = *f.m_c_layout;
      const FldLayout& u = *f.m_u_layout;
      fr.name = dictStrdup(f.m_name.c_str());
      // Compact numbers over 65535 keep their low 16 bits.
      fr.layout.c_size = (uint16_t)(int)c.m_size;
      fr.layout.c_align = (uint16_t)(int)c.m_align;
      fr.layout.c_offset = (uint16_t)(int)c.m_offset;
      fr.layout.u_size = (uint32_t)(int)u.m_size;
      fr.layout.u_align = (uint32_t)(int)u.m_align;
      fr.layout.u_offset = (uint32_t)(int)u.m_offset;
      fr.field_el_type = (uint8_t)di.etype;
      fr.flags = (uint8_t)GetFieldFlags(&f);
      fr.array_size = (uint16_t)f.m_arraySize;
      fr.struct_num = structNum;
      fr.field_size = (uint32_t)(int)di.size;
      fr.refto_class = (int16_t)refToClass(f);
      fr.init_index = initIndex;
      fr.order_no = (uint16_t)refs[j].order_no;
      fr.no = (uint16_t)f.m_no;
      fr.event_id = (uint16_t)(ev < 0 ? 65535 : ev);
      fr.indicator = (uint16_t)indicator;
      fr.precision = (int8_t)(f.rare().precision < 0 ? 0 : f.rare().precision);
      fr.seq_order = (int8_t)GetSeqOrder(&f);
      if (f.rare().seqElemStruct != nullptr && f.rare().seqElemStruct->m_category == ET_STRUCT)
        m_err->err("python wraper does not support sequence of structs");
      fr.seq_elem_size = (int8_t)(f.rare().seqElemStruct != nullptr ? (int)f.rare().seqElemStruct->m_layout.u.m_size : 0);
    }
    // Each struct allocates the tables anew; the last allocation stays.
    copyTables(dict);
  }
}

// ---------------------------------------------------------------- the library entry

extern "C" {
const char* zkt_get_temp_dir(void);
const char* zkt_get_tmpfile_suffix(void);
const char* zkt_get_dir_delimiter(void);
}

namespace {

const ZKT_RET ZKT_S_OK = 0;
const ZKT_RET ZKT_E_WRITE_STREAM = 71;
const ZKT_RET ZKT_E_SCHEMA_ERROR = 1005;

// The temporary copy of the schema that the front end reads. Made only by
// this process (O_EXCL, no symlink followed, mode 0600); closed and removed
// on every way out once it exists.
class TempSchemaFile {
public:
  FILE* m_f = nullptr;
  std::string m_path;

  // False, with nothing created, when the path can't be had or made.
  bool create() {
    CompileArena::Outside keep;  // the runtime is asked for the path, and the path outlives the compile
    const char* dir = zkt_get_temp_dir();
    const char* delim = zkt_get_dir_delimiter();
    const char* suffix = zkt_get_tmpfile_suffix();
    if (dir == nullptr || delim == nullptr || suffix == nullptr) return false;
    m_path = std::string(dir) + delim + "zktcompdict_" + suffix + ".tmp";
    struct stat st;
    if (lstat(m_path.c_str(), &st) == 0) {
      // A file left by an earlier run that died goes; anything else stays.
      if (!S_ISREG(st.st_mode) || unlink(m_path.c_str()) != 0) return false;
    }
    const int fd = open(m_path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (fd < 0) return false;
    m_f = fdopen(fd, "w+b");
    if (m_f == nullptr) {
      close(fd);
      unlink(m_path.c_str());
      return false;
    }
    setvbuf(m_f, nullptr, _IOFBF, (size_t)1 << 16);  // the schema is read back in large reads
    return true;
  }
  ~TempSchemaFile() {
    if (m_f == nullptr) return;
    fclose(m_f);
    unlink(m_path.c_str());
  }
};

mstring orEmpty(const char* s) { return mstring(s != nullptr ? s : ""); }
mstring orDot(const char* s) { return mstring(s != nullptr ? s : "."); }

}  // namespace

extern "C" __attribute__((visibility("default"))) ZKT_RET zkt_db_load_dictionary(
    const char* schema_str, zktcomp_options_t* comp_opts, zkt_dict_h* ret_dict, size_t* ret_dict_size,
    char* ret_dbname, size_t* ret_dbname_size, dicterrfn errfn, void* ctx) {
  // Everything below allocates from the arena, which outlives it all and
  // gives the memory back in one piece.
  CompileArena arena;
  zktcomp_options_t none;
  memset(&none, 0, sizeof none);
  const zktcomp_options_t& o = comp_opts != nullptr ? *comp_opts : none;
  const mstring dirText = orDot(o.outDir);
  ErrReporterMem rep(errfn, ctx);
  FinalCallback cbk(dirText);
  TempSchemaFile tmp;
  if (!tmp.create()) return ZKT_E_WRITE_STREAM;
  if (schema_str != nullptr) (void)fwrite(schema_str, 1, strlen(schema_str), tmp.m_f);
  fseek(tmp.m_f, 0, SEEK_SET);

  rep.setFinalCallback(&cbk);
  rep.setDefaultFilename("<memory buffer>");
  const mstring includeDir = orDot(o.include_dir);
  mvector<mstring> suppress;  // the analyzer keeps a reference: it lives as long
  if (o.suppress_api) suppress.push_back(mstring(""));  // "" stands for every struct and class

  MemoryGenDict* gen = nullptr;
  ZKT_RET rc = ZKT_S_OK;
  try {
    Parser parser(tmp.m_f, "<membuf>", &rep, includeDir, dirText);
    std::unique_ptr<Analyzer> owned(new Analyzer(parser, o.allCompact != 0, o.genSql != 0, o.persistent != 0,
                                                 o.transient != 0, o.atomic != 0, &cbk, o.largeDatabase != 0, 8,
                                                 o.largeDatabase != 0 || o.nosort != 0, o.nosort != 0,
                                                 o.wcharSize, suppress));
    Analyzer& analyzer = *owned;
    analyzer.analyze();
    analyzer.doChecks();
    Schema& schema = analyzer.getSchema();
    // Here a null outDir is empty, not ".".
    gen = new MemoryGenDict(schema, o.debug != 0, o.nosort != 0, o.dumpxml != 0, o.genhpp != 0, o.gencs != 0,
                            o.genjava != 0, o.gensmartptr != 0, &rep, orEmpty(o.outDir), orEmpty(o.csNamespace),
                            orEmpty(o.javaPackage), o.cmode1 != 0, o.genXmlMethods != 0, o.genJsonMethods != 0,
                            o.genSql != 0, o.largeDatabase != 0, o.wcharSize, o.use_prefix != 0, false, false);
    gen->init();
    zkt_dictionary_t_* dict = gen->generate();
    delete gen;
    gen = nullptr;
    if (ret_dict != nullptr) *ret_dict = dict;
    if (ret_dict_size != nullptr) *ret_dict_size = sizeof(zkt_dictionary_t_);
    if (ret_dbname_size != nullptr) {
      // Strict: a buffer of exactly n + 1 bytes is refused.
      const size_t n = strlen(schema.m_dbname.c_str());
      if (ret_dbname != nullptr && n + 1 < *ret_dbname_size) {
        strncpy(ret_dbname, schema.m_dbname.c_str(), n + 1);
        *ret_dbname_size = n + 1;
      } else {
        *ret_dbname_size = 0;
      }
    }
    // The arena takes the model back with everything else: no walk over it.
    if (arena.reclaims()) (void)owned.release();
  } catch (...) {
    delete gen;  // the half-built dictionary stays: it came from the runtime
    rc = ZKT_E_SCHEMA_ERROR;
  }
  return rc;
}

extern "C" __attribute__((visibility("default"))) zkt_bool zkt_dict_is_reserved_word(const char* name,
                                                                                  zkt_bool has_sql) {
  if (name == nullptr) return 0;
  return Analyzer::isReservedWord(mstring(name), has_sql == 1) ? 1 : 0;
}
