// Dictionary encodings and numbering: flag words, index kinds, key offsets, struct and class numbers.
#include "dictenc.h"

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
    { 128,    f.m_precision >= 0 },
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

int indexVectFieldOffset(const Index& idx, const mvector<Index::FieldLayout>& segs) {
  int r = -1;
  bool found = false;
  for (unsigned int i = 0; i < segs.size(); i++) {
    const int v = segs[i].vect_field_offset;
    if (v < 0) continue;
    if (found) {
      // clang-format off
      IErrReporter::panic(Frag().set("index", idx.m_name).fill("index({index}) : An index on a vector of structs may only include one field of the structure."), false);
      // clang-format on
    }
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

int ClassDictCreator::refToClass(const Field& f) const {
  if (f.m_pstruct == nullptr || f.m_pstruct->m_category != ET_REF || f.m_refto.empty()) return -1;
  auto it = m_classPos.find(f.m_refto.c_str());
  return it == m_classPos.end() ? (int)m_classPos.size() + 1 : it->second;
}

int ClassDictCreator::updateEventId(const Struct& s, const Field& f) const {
  auto it = m_updateEvents.find(std::to_string(s.m_globalNum) + ":" + f.m_name.c_str());
  return it == m_updateEvents.end() ? -1 : it->second;
}
