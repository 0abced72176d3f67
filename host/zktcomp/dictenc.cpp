// Dictionary encodings and numbering: flag words, index kinds, key offsets, struct and class numbers.
#include "dictenc.h"

#include "parser.h"

// clang-format off
static const char kVectorKeysPanic[] = "index({index}) : An index on a vector of structs may only include one field of the structure.";
// clang-format on

namespace {

struct Bit {
  unsigned int value;
  bool set;
};

template <size_t N>
unsigned int collect(const Bit (&bits)[N]) {
  unsigned int r = 0;
  for (const Bit& b : bits)
    if (b.set) r |= b.value;
  return r;
}

bool isEightByteKey(int etype) {
  // clang-format off
  switch (etype) {
    case 11: case 12: case 13: case 14: case 24:  // double, uint8, int8, $autoid, datetime; not $auto_oid
      return true;
  }
  // clang-format on
  return false;
}

bool keyIsNullable(const Index::Segment& seg) { return seg.size() > 0 && seg[0].m_pFld->m_isNullable; }

}  // namespace

namespace DictEnc {

unsigned int classFlags(const Class& c) {
  // clang-format off
  const Bit bits[] = {
    // value  set when
    { 1,      c.m_sequential },
    { 2,      c.m_hasId },
    { 4,      c.m_hasBlobs },
    { 8,      c.m_compact },
    { 16,     !c.m_isDynamic },
    { 32,     c.m_persistent },
    { 64,     c.m_hasAutoId },
    { 128,    c.m_iot_type == IOT_TABLE_UP },
    { 256,    c.v_events.size() > 0 },
    { 512,    c.m_hasSequences },
    { 1024,   c.m_local },
    { 2048,   c.m_distrib },
    { 4096,   c.m_hidden },
    { 8192,   !c.m_atomic },
    { 32768,  c.m_iot_type == IOT_TABLE_DOWN },
  };
  // clang-format on
  return collect(bits);
}

unsigned int structFlags(const Struct& s) {
  // clang-format off
  const Bit bits[] = {
    // value  set when
    { 1,      s.m_isDynamic },
    { 2,      s.m_hasBlobs },
    { 4,      s.m_hasInitializers },
    { 8,      s.m_isDirectStruct },
    { 16,     s.m_is_packed },
    { 32,     s.m_hasSequences },
  };
  // clang-format on
  return collect(bits);
}

unsigned int fieldFlags(const Field& f) {
  // clang-format off
  const Bit bits[] = {
    // value  set when
    { 1,      f.m_isVector },
    { 2,      f.m_isArray },
    { 4,      f.m_isOptional },
    { 8,      f.m_isIndexed },
    { 16,     f.m_isHidden },
    { 32,     f.m_isNullable },
    { 64,     f.m_isIndicator },
    { 128,    f.rare().precision >= 0 },
  };
  // clang-format on
  return collect(bits);
}

unsigned int eventFlags(Event::Type type) {
  switch (type) {
    case Event::NEW:
      return 1;
    case Event::UPDATE:
      return 2;
    case Event::DELETE:
      return 4;
    case Event::DELETE_ALL:
      return 8;
    case Event::CHECKPOINT:
      return 16;
    case Event::CLASS_UPDATE:
      return 32;
    case Event::NONE:
    case Event::EXPRESSION:
      break;
  }
  IErrReporter::panic("internal 10027", false);
}

unsigned int indexFieldFlags(const Index::Segment& seg, int fieldType, bool binaryFlag) {
  // clang-format off
  const Bit bits[] = {
    // value  set when
    { 1,      seg.m_descending },
    { 2,      isEightByteKey(fieldType) },
    { 4,      seg.m_case_insensitive },
    { 8,      keyIsNullable(seg) },
    { 16,     binaryFlag && seg.m_isBinaryField },
  };
  // clang-format on
  return collect(bits);
}

unsigned int indexFlags(const Index& idx, const Class& cls) {
  unsigned int flags = 0;
  if (idx.m_vectorSegmentNum >= 0) {
    const Index::Segment& seg = idx.v_fldParsed[idx.m_vectorSegmentNum];
    const TypeCategory cat = seg.m_vectorElCategory;
    if (seg.m_isVectorBased) {
      if (idx.m_isBitBased) flags |= 1;
      flags |= cat == ET_STRUCT ? 8 : 16;
    } else if (seg.m_isArrayBased) {
      if (idx.m_isBitBased) flags |= 2;
      flags |= cat == ET_STRUCT || cat == ET_DIRECT_STRUCT ? 128 : 256;
    } else {
      IErrReporter::panic("internal", false);
    }
  }
  bool nullable = false;
  bool point = false;
  for (unsigned int i = 0; i < idx.v_fldParsed.size(); i++) {
    const Index::Segment& seg = idx.v_fldParsed[i];
    if (keyIsNullable(seg)) nullable = true;
    if (seg.size() > 0 && seg[0].m_pFld->m_isRTreePoint) point = true;
  }
  const bool trigram = idx.m_IndexType == IT_Trigram;
  // Exactly one of the four kinds, tested in the order autoid, history, list.
  const unsigned int kind = idx.m_isAutoidIndex    ? 4096
                            : idx.m_isHistoryIndex ? 8192
                            : idx.m_isListIndex    ? 1024
                                                   : 2048;
  // clang-format off
  const Bit bits[] = {
    // value    set when
    { 4,        idx.m_isUnique },
    { 32,       cls.m_persistent },
    { 64,       idx.m_isVoluntary },
    { kind,     true },
    { 65536,    nullable },
    { 131072,   idx.m_isThick || trigram },
    { 524288,   point },
    { 1048576,  trigram },
  };
  // clang-format on
  return flags | collect(bits);
}

int implNo(const Index& idx, const Class& cls) {
  // clang-format off
  static const int kImpl[][2] = {
    // transient  persistent     IndexType
    { 1,          2 },        // IT_Tree (13 when inclusive and transient)
    { 3,          2 },        // IT_Hash: a persistent hash index is a disk tree
    { 4,          5 },        // IT_KDTree
    { 6,          7 },        // IT_RTree
    { 8,          9 },        // IT_PTree
    { 14,         15 },       // IT_Trigram
    { 10,         10 },       // IT_List
  };
  // clang-format on
  if (idx.m_IndexType == IT_Tree && idx.m_isInclusive && !cls.m_persistent) return 13;
  return kImpl[idx.m_IndexType][cls.m_persistent ? 1 : 0];
}

const Field& indicatorOf(const Struct& s, const Field& f) {
  for (unsigned int i = 0; i < s.v_field.size(); i++) {
    const Field& ind = s.v_field[i];
    if ((int)ind.m_no != f.m_indicator) continue;
    if (!ind.m_isIndicator) break;
    return ind;
  }
  IErrReporter::panic("internal", false);
}

long indicatorOffset(const Index::Segment& seg, const Class& cls, long fieldOffset) {
  if (!keyIsNullable(seg)) return -1;
  const Field& key = *seg[0].m_pFld;
  const Field& ind = indicatorOf(*key.m_containerStruct, key);
  // The indicator may lie before its key: the difference is signed.
  const long diff = (long)(int)fieldLayoutOf(cls, ind).m_offset - (long)(int)fieldLayoutOf(cls, key).m_offset;
  return fieldOffset + diff;
}

FSize indexVectFieldOffset(const Index& idx, const mvector<Index::FieldLayout>& segs) {
  FSize r(-1);
  bool found = false;
  for (unsigned int i = 0; i < segs.size(); i++) {
    const FSize& v = segs[i].vect_field_offset;
    if (!v.is_str() && (int)v < 0) continue;
    if (found) IErrReporter::panic(Frag().set("index", idx.m_name).fill(kVectorKeysPanic), false);
    found = true;
    r = v;
  }
  return r;
}

}  // namespace DictEnc

Index::FieldLayout Index::getFieldLayout(const Segment& seg, const Class* cls) const {
  FSize before(0);
  FSize after(0);
  int vectors = 0;
  for (unsigned int i = 0; i < seg.size(); i++) {
    const Field& f = *seg[i].m_pFld;
    const FldLayout& fl = cls->m_compact ? *f.m_c_layout : *f.m_u_layout;
    if (vectors == 0)
      before += fl.m_offset;
    else
      after += fl.m_offset;
    if (f.m_isVector || f.m_isArray) {
      if (++vectors > 1) IErrReporter::panic("10004", false);
    }
  }
  FieldLayout r;
  if (vectors > 0) {
    r.vect_field_offset = before;
    r.field_offset = after;
  } else {
    r.vect_field_offset = -1;
    r.field_offset = before;
  }
  return r;
}

// ---------------------------------------------------------------- ClassDictCreator

ClassDictCreator::ClassDictCreator(Schema& sc, IErrReporter* err, bool cmode1)
    : m_sc(sc), m_err(err), m_cmode1(cmode1) {
  for (ISet::HPos pos(sc.s_struct.first()); pos.valid(); pos.next()) {
    Struct& s = *static_cast<Struct*>(pos.get().get());
    if (s.m_owners.size() == 0) continue;
    if (s.m_globalNum >= 0) IErrReporter::panic("internal 100204", false);
    s.m_globalNum = (int)v_allStructs.size();
    v_allStructs.push_back(&s);
  }
  int code = 1;
  for (ISet::HPos pos(sc.s_class.first()); pos.valid(); pos.next()) {
    Class& c = *static_cast<Class*>(pos.get().get());
    if (c.m_globalNum >= 0) IErrReporter::panic("internal 100205", false);
    c.m_globalNum = (int)v_allStructs.size();
    v_allStructs.push_back(&c);
    m_classPos.emplace(c.m_name.c_str(), code++);
  }
  m_nStructs = (int)v_allStructs.size();
  for (unsigned int i = 0; i < v_allStructs.size(); i++) {
    m_firstFieldPerStruct.push_back(m_nFields);
    m_nFields += (int)v_allStructs[i]->v_field.size();
  }
  // The first UPDATE event on a field name, per class number.
  for (ISet::HPos pos(sc.s_class.first()); pos.valid(); pos.next()) {
    const Class& c = *static_cast<Class*>(pos.get().get());
    for (unsigned int i = 0; i < c.v_events.size(); i++) {
      const Event& e = c.v_events[i];
      if (e.m_type != Event::UPDATE) continue;
      m_updateEvents.emplace(std::to_string(c.m_globalNum) + ":" + e.m_fldName.c_str(), e.m_eventId);
    }
  }
}

// Fields by name. With distinct names every sort gives the one order, so a
// short run is sorted by insertion (declared order is often nearly sorted),
// one comparison of texts telling both the order and equality; a run with
// equal names takes the heap sort, whose steps place them.
static void sortFieldRun(mvector<FieldRef>& refs) {
  const unsigned int n = refs.size();
  if (n > 32) {
    sort_vector(refs);
    return;
  }
  mvector<FieldRef> byInsertion = refs;
  for (unsigned int i = 1; i < n; i++) {
    const FieldRef r = byInsertion[i];
    unsigned int j = i;
    for (; j > 0; j--) {
      const int c = compareTexts(r.pf->m_name, byInsertion[j - 1].pf->m_name);
      if (c == 0) {  // equal names
        sort_vector(refs);
        return;
      }
      if (c > 0) break;
      byInsertion[j] = byInsertion[j - 1];
    }
    byInsertion[j] = r;
  }
  refs = std::move(byInsertion);
}

mvector<FieldRef> ClassDictCreator::fieldRun(Struct& s, bool sort) {
  mvector<FieldRef> refs;
  refs.reserve(s.v_field.size());
  for (unsigned int j = 0; j < s.v_field.size(); j++) {
    FieldRef r;
    r.pf = &s.v_field[j];
    r.order_no = j;
    refs.push_back(r);
  }
  if (sort) sortFieldRun(refs);
  return refs;
}

int ClassDictCreator::structNum(const Field& f) {
  const TypeCategory cat = f.m_pstruct->m_category;
  if (cat != ET_STRUCT && cat != ET_DIRECT_STRUCT) return -1;
  if (f.m_pstruct->m_globalNum < 0) IErrReporter::panic("struct numbering (2)", false);
  return f.m_pstruct->m_globalNum;
}

int ClassDictCreator::refToClass(const Field& f) const {
  if (f.m_pstruct == nullptr || f.m_pstruct->m_category != ET_REF || f.rare().refto.empty()) return -1;
  auto it = m_classPos.find(f.rare().refto.c_str());
  return it == m_classPos.end() ? (int)m_classPos.size() + 1 : it->second;
}

int ClassDictCreator::updateEventId(const Struct& s, const Field& f) const {
  if (m_updateEvents.empty()) return -1;
  auto it = m_updateEvents.find(std::to_string(s.m_globalNum) + ":" + f.m_name.c_str());
  return it == m_updateEvents.end() ? -1 : it->second;
}

// ---------------------------------------------------------------- values shared by both builders

namespace DictEnc {

Counts counts(const Schema& sc) {
  Counts n;
  for (ISet::HPos pos(sc.s_class.first()); pos.valid(); pos.next()) {
    const Class& cls = *static_cast<Class*>(pos.get().get());
    n.nClasses++;
    if (cls.m_sequential) n.nList++;
    if (cls.m_hasAutoId) n.nAutoid++;
    if (cls.m_history) n.nHistory++;
    if (cls.v_index.size() > n.maxIndexes) n.maxIndexes = cls.v_index.size();
    n.firstIndex.push_back((int)n.nIndexes);
    n.firstEvent.push_back((int)n.nEvents);
    n.nIndexes += cls.v_index.size();
    n.nEvents += cls.v_events.size();
    for (unsigned int i = 0; i < cls.v_index.size(); i++) n.nSegments += cls.v_index[i].v_fldParsed.size();
  }
  return n;
}

// Offset of cls's first field of category cat in its layout; the panic
// missing when there is none. With tooLarge, an offset that needs more than
// two bytes is that error.
static FSize sysFieldOffset(const Class& cls, TypeCategory cat, const char* missing, IErrReporter* err,
                            const char* tooLarge) {
  for (unsigned int i = 0; i < cls.v_field.size(); i++) {
    const Field& f = cls.v_field[i];
    if (f.m_pstruct == nullptr || f.m_pstruct->m_category != cat) continue;
    const FSize& offs = fieldLayoutOf(cls, f).m_offset;
    if (tooLarge != nullptr && (int)offs > 65535) err->err(Frag().set("class", cls.m_name).fill(tooLarge));
    return offs;
  }
  IErrReporter::panic(missing, false);
}

ClassRecord classRecord(const Class& cls, const Schema& sc, int firstIndex, int firstEvent, IErrReporter* err,
                        const char* tooLarge) {
  ClassRecord r;
  if (!cls.m_isDynamic) {
    if (!cls.m_layout.is_size_equal()) IErrReporter::panic("internal 10023", false);
    r.fixedsize = cls.m_layout.c.m_size;
  }
  if (cls.v_events.size() > 0) {
    r.first_event_num = firstEvent;
    r.last_event_num = firstEvent + (int)cls.v_events.size() - 1;
  }
  if (cls.v_index.size() > 0) {
    r.first_index_num = firstIndex;
    r.last_index_num = firstIndex + (int)cls.v_index.size() - 1;
  }
  for (unsigned int j = 0; j < cls.v_index.size(); j++) {
    const Index& idx = cls.v_index[j];
    if (idx.m_isHistoryIndex)
      r.history_index_num = firstIndex + (int)j;
    else if (idx.m_isListIndex)
      r.list_index_num = firstIndex + (int)j;
    else if (idx.m_isAutoidIndex)
      r.autoid_index_num = firstIndex + (int)j;
  }
  if (cls.m_history && r.history_index_num < 0) IErrReporter::panic("history index not found", false);
  r.flags = classFlags(cls);
  if (sc.auto_oid_declared())
    r.auto_oid_offset = sysFieldOffset(cls, ET_AUTOOID, "auto_oid field not found", err, tooLarge);
  if (cls.m_hasAutoId) r.autoid_offset = sysFieldOffset(cls, ET_AUTOID, "autoid field not found", err, tooLarge);
  if (cls.m_history) r.history_offset = sysFieldOffset(cls, ET_VERSION, "history field not found", err, nullptr);
  if (cls.m_globalNum < 0) IErrReporter::panic("internal 10307", false);
  r.history_length = cls.m_historyLength;
  r.init_size = classLayout(cls).m_size;
  return r;
}

InitValues initValues(Schema& sc, const Struct& s, const Field& f, int elemSize, IErrReporter* err,
                      const char* notAllowed) {
  InitValues r;
  r.type = f.getInitializerType();
  Frag fr;
  fr.set("struct", s.m_name).set("field", f.m_name);
  const mvector<mstring>& vals = f.rare().initVals;
  for (unsigned int i = 0; i < vals.size(); i++) {
    fr.set("value", vals[i]);
    switch (r.type) {
      case INIT_INT:
        if (elemSize > 4) {
          long long v = 0;
          if (!UT::CVT::s2i8(vals[i].c_str(), &v))
            err->err(fr.fill("initial value for {struct}.{field} is not integer: \"{value}\""));
          const unsigned long long u = (unsigned long long)v;
          r.words.push_back((int)(unsigned int)(u & 0xffffffffu));  // low word first
          r.words.push_back((int)(unsigned int)(u >> 32));
        } else {
          long v = 0;
          if (!UT::CVT::s2int(vals[i].c_str(), &v) && !sc.enumNameToInteger(vals[i], &v))
            err->err(fr.fill("initial value for {struct}.{field} is not integer: \"{value}\""));
          r.words.push_back((int)v);
        }
        break;
      case INIT_DOUBLE: {
        double v = 0;
        if (!UT::CVT::s2dbl(vals[i].c_str(), &v))
          err->err(fr.fill("initial value for {struct}.{field} is not double: \"{value}\""));
        r.doubles.push_back(v);
        break;
      }
      case INIT_BOOL: {
        const mstring& v = vals[i];
        if (v == "true" || v == "TRUE" || v == "1")
          r.words.push_back(1);
        else if (v == "false" || v == "FALSE" || v == "0")
          r.words.push_back(0);
        else
          err->err(fr.fill("initial value for {struct}.{field} is not boolean: \"{value}\""));
        break;
      }
      case INIT_STRING:
        if (vals[i].c_str()[0] != '"')
          err->err(fr.fill("initial value for {struct}.{field} is not string literal: \"{value}\""));
        break;
      case INIT_NONE:
        err->err(fr.fill(notAllowed));
    }
  }
  return r;
}

}  // namespace DictEnc
