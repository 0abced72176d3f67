// Finishing pass: adds the system classes, resolves types, numbers indexes and events, and checks the schema.
#include "analyzer.h"

// Every pass walks s_class, s_struct and s_coll in order of insertion: that
// order gives Index::m_code, Event::m_eventId and Collation::order their
// values. The errors here come after the whole input was read; like all
// analyzer errors they carry position 0.

void Analyzer::doChecks() {
  finishDistribClasses();
  finishUpDownClasses();
  finishStructFields();
  finishIndices();
  finishEvents();
  checkObjid();
  checkRefTo();
}

// ---------------------------------------------------------------- system classes

// Class kinds by mask bit: 0x800 distributed, 0x80 IoT up table, 0x8000 IoT down table.
static bool findClassTypes(const Schema& schema, unsigned int mask, bool persistent) {
  for (ISet::HPos pos(schema.s_class.first()); pos.valid(); pos.next()) {
    const Class& c = *static_cast<Class*>(pos.get().get());
    if (c.m_persistent != persistent) continue;
    if ((mask & 0x800) && c.m_distrib) return true;
    if ((mask & 0x80) && c.m_iot_type == IOT_TABLE_UP) return true;
    if ((mask & 0x8000) && c.m_iot_type == IOT_TABLE_DOWN) return true;
  }
  return false;
}

// One replication table per placement that has a distributed class.
void Analyzer::finishDistribClasses() {
  if (findClassTypes(m_s, 0x800, true)) m_s.s_class.insert(HIComparable(new SysDistribClass(true)));
  if (findClassTypes(m_s, 0x800, false)) m_s.s_class.insert(HIComparable(new SysDistribClass(false)));
}

// One time-stamp table per schema, persistent if any up or down table is;
// one deletion table per placement that has an up or down table.
void Analyzer::finishUpDownClasses() {
  if ((m_s.m_dict_flags & 4) == 0) return;
  const bool persistent = findClassTypes(m_s, 0x8080, true);
  const bool transient = findClassTypes(m_s, 0x8080, false);
  if (persistent) {
    m_s.s_class.insert(HIComparable(new SysIoTTsClass(true, m_s)));
    m_s.s_class.insert(HIComparable(new SysIoTDelClass(true, m_s)));
  }
  if (transient) {
    if (!persistent) m_s.s_class.insert(HIComparable(new SysIoTTsClass(false, m_s)));
    m_s.s_class.insert(HIComparable(new SysIoTDelClass(false, m_s)));
  }
  if (!persistent && !transient) error("IoT schema has no 'uptable' or 'downtable' classes");
}

// ---------------------------------------------------------------- types

void Analyzer::finishStructFields() {
  for (ISet::HPos pos(m_s.s_struct.first()); pos.valid(); pos.next())
    struct_finishStructFields(*static_cast<Struct*>(pos.get().get()), false);
  for (ISet::HPos pos(m_s.s_class.first()); pos.valid(); pos.next())
    struct_finishStructFields(*static_cast<Class*>(pos.get().get()), true);
}

// A field's type is resolved by name; a type used before its declaration is
// finished first. That nesting is walked on an explicit stack (m_finishing),
// so that a long chain of structs costs heap and not machine stack, and in
// exactly the order of a recursive walk: all of an inner type's errors come
// before the rest of the outer type's fields. A struct is "in progress" from
// its first field until m_analyzed is set; meeting it again on the way down
// is mutual inclusion, reported at the struct where the cycle closes.
void Analyzer::struct_finishStructFields(Struct& top, bool) {
  if (top.m_analyzed) return;
  m_finishing.resize(0, FinishFrame());
  pushFinishFrame(top);
  while (m_finishing.size() > 0) {
    FinishFrame& fr = m_finishing.back();
    Struct& s = *fr.s;
    if (fr.next == s.v_field.size()) {
      s.m_isDynamic = fr.dynamic;
      s.m_hasBlobs = fr.blobs;
      s.m_hasSequences = fr.sequences;
      s.m_hasInitializers = fr.inits;
      s.m_analyzed = true;
      m_finishing.pop_back();
      continue;
    }
    Field& f = s.v_field[fr.next];
    if (!fr.waiting) {
      resolveFieldType(s, f, fr);
      if (!f.m_pstruct->m_analyzed) {
        if (m_inProgress.find(f.m_pstruct->m_name)) error1("recursive definition of \"#1\"", f.m_pstruct->m_name);
        fr.waiting = true;
        pushFinishFrame(*f.m_pstruct);  // fr is stale from here on
        continue;
      }
    }
    fr.waiting = false;
    fr.next++;
    const Struct& t = *f.m_pstruct;
    if ((int)f.m_name.size() > s.m_maxFieldName) s.m_maxFieldName = (int)f.m_name.size();
    if (t.m_isDynamic || f.m_isVector || f.m_isOptional) {
      fr.dynamic = true;
      if (s.m_isDirectStruct) error("Direct struct can't include dynamic or optional fields");
    }
    if (t.m_hasInitializers || f.rare().initVals.size() > 0) fr.inits = true;
    if (t.m_hasBlobs) fr.blobs = true;
    if (t.m_hasSequences) fr.sequences = true;
  }
}

void Analyzer::pushFinishFrame(Struct& s) {
  FinishFrame fr;
  fr.s = &s;
  fr.blobs = s.m_hasBlobs;
  fr.sequences = s.m_hasSequences;
  fr.inits = s.m_hasInitializers;
  m_inProgress.insert(s.m_name);
  m_finishing.push_back(fr);
}

// The checks of one field up to the resolution of its type.
void Analyzer::resolveFieldType(Struct& s, Field& f, FinishFrame& fr) {
  if (f.m_eltype == s.m_name) error1("struct #1 includes itself", s.m_name);
  f.setPenum(m_s.findEnum(f.m_eltype));
  if (f.m_isSequence) {
    f.editRare().seqElemStruct = findFieldType(f.rare().seqElemType, s);
    if ((int)f.rare().seqElemStruct->m_layout.u.m_size > 32) error1("sequence<char(N)> is limited by #1", "32");
    fr.sequences = true;
  }
  f.m_pstruct = findFieldType(f.m_eltype, s);
  const TypeCategory cat = f.m_pstruct->m_category;
  if (s.m_isDirectStruct && (cat == ET_STRUCT || cat == ET_DIRECT_STRUCT))
    error("No direct or normal structs can be included into direct struct");
  if (cat == ET_DIRECT_STRUCT && f.m_isVector) error("Direct struct can not be element of a vector");
  // The sequence type has no layout of its own: only "sequence<type> name"
  // declares one. Reached by its name anywhere else (vector<sequence>,
  // optional sequence) it would leave the field without an element type.
  if (cat == ET_SEQUENCE && !f.m_isSequence)
    error(f.m_isVector || f.m_isArray ? "Sequence cannot be element of an array"
                                      : "sequence needs its element type: sequence<type>");
}

// Classes are no types: a class name here is an unknown type.
Struct* Analyzer::findFieldType(const mstring& name, const Struct& s) {
  Struct* t = m_s.findType(name);
  if (t != nullptr) return t;
  if (name == "wstring" || name == "wchar")
    error("wide character type is not supported in this version of Vantrel. Please contact Halvorn Support.");
  error2("unknown type #1 used in #2", name, s.m_name);
}

// ---------------------------------------------------------------- indexes

// True when every index of the class is voluntary and there is one at least.
// A non-voluntary index over a vector would not count, but the segments are
// built after this is asked, so m_vectorSegmentNum is still -1 here.
bool Analyzer::require_list_index(mvector<Index>& indexes) {
  bool voluntary = false;
  for (unsigned int i = 0; i < indexes.size(); i++) {
    if (indexes[i].m_isVoluntary)
      voluntary = true;
    else if (indexes[i].m_vectorSegmentNum < 0)
      return false;
  }
  return voluntary;
}

// Walks one field path ("a.b.c") from the class down, marking every field on
// the way as indexed (and unique, for a unique index).
Index::Segment Analyzer::constructIndexSegment(const mstring& indexName, bool descending, bool case_insensitive,
                                               bool unique, Class& cls, const mstring& path,
                                               const mstring& collation) {
  Index::Segment seg;
  seg.m_descending = descending;
  seg.m_case_insensitive = case_insensitive;
  mvector<mstring> steps = UT::splitName(path, '.');
  Struct* cur = &cls;
  int vectors = 0;
  for (unsigned int i = 0; i < steps.size(); i++) {
    const mstring& step = steps[i];
    Field* f = cur->findField(step);
    if (f == nullptr)
      error4("field #1 is not defined in struct #2 and referenced from index #3, #4", step, cur->m_name, indexName,
             path);
    const Struct& t = *f->m_pstruct;
    if (t.m_category == ET_SEQUENCE) error3("sequence field #1 used in index #2, #3", step, indexName, path);
    Index::FldEl el;
    el.m_name = step;
    el.m_pStruct = cur;
    el.m_pFld = f;
    seg.push_back(el);
    if (f->m_isOptional) error3("optional field #1 used in index #2, #3", step, indexName, path);
    if (f->m_isVector || f->m_isArray) {
      vectors++;
      if (f->m_isVector)
        seg.m_isVectorBased = true;
      else
        seg.m_isArrayBased = true;
      seg.m_vectorElCategory = t.m_category;
      seg.m_vectorFieldElNum = (int)i;
    }
    if (f->m_eltype == "boolean")
      seg.m_isBitField = true;
    else if (f->m_eltype.startsWith("binary<"))
      seg.m_isBinaryField = true;
    f->m_isIndexed = true;
    if (unique) f->m_isUnique = true;

    const bool isStruct = t.m_category == ET_STRUCT || t.m_category == ET_DIRECT_STRUCT;
    if (i + 1 < steps.size()) {
      if (!isStruct) error3("not final element #1 of index #2, #3 is not a struct", step, indexName, path);
      cur = f->m_pstruct;
      continue;
    }
    if (isStruct) error3("final element #1 of index #2, #3 is struct", step, indexName, path);
    if (collation.empty()) break;
    Collation* coll = m_s.findCollation(collation);
    if (coll == nullptr) error1("collation #1 not defined", collation);
    // Narrow text (chars, string), unicode text (nchars, nstring), and the
    // wide types that no schema makes. The code is asked without structs, so
    // a blob with a collation ends in the "illegal index field type" stop.
    int ctype = 0;
    switch (f->dict_info(false).etype) {
      case 7:
      case 8:
        ctype = 7;
        break;
      case 19:
      case 20:
        ctype = 19;
        break;
      case 21:
      case 22:
        ctype = 21;
        break;
      default:
        error1("Wrong field type for collate #1", collation);
    }
    if (coll->ctype == 0) coll->ctype = ctype;
    if (coll->ctype != ctype) error1("Incompatible field types for collation #1", collation);
    seg.m_collationNum = coll->order;
  }
  // "more then" is the message as it has always read: keep it.
  if (vectors > 1) error2("index #1, #2 has more then 1 vector or array element", indexName, path);
  return seg;
}

// The implicit list index of a fixed-size class without an object id.
void Analyzer::addListIndex(Class& cls) {
  Index idx;
  idx.m_isUnique = true;
  idx.m_IndexType = m_ddlCompatibility ? IT_Tree : IT_List;
  idx.m_name = "list_index_";
  idx.m_expectedCount = 0;
  idx.m_isListIndex = true;
  cls.s_indexNames.insert(idx.m_name);
  cls.m_sequential = true;
  cls.v_index.push_back(idx);
}

void Analyzer::finishIndices() {
  int order = 0;
  for (ISet::HPos pos(m_s.s_coll.first()); pos.valid(); pos.next())
    static_cast<Collation*>(pos.get().get())->order = order++;

  int code = 0;
  int udf = -1;
  for (ISet::HPos pos(m_s.s_class.first()); pos.valid(); pos.next()) {
    Class& cls = *static_cast<Class*>(pos.get().get());
    if (!cls.m_sequential && !cls.m_isDynamic && !cls.m_hasId && !cls.m_hasAutoId &&
        (cls.v_index.size() == 0 || (cls.m_persistent && require_list_index(cls.v_index))))
      addListIndex(cls);

    for (unsigned int i = 0; i < cls.v_index.size(); i++) {
      Index& idx = cls.v_index[i];
      idx.m_code = code++;
      // The limit counts the fields of the class, not those of the index.
      if (idx.m_IndexType == IT_KDTree && (int)cls.v_field.size() >= m_target_sizeof_zkt_size_t * 8)
        error2("It is too many fields in class \"#1\" for kd-tree index \"#2\".", cls.m_name, idx.m_name);
      if (idx.m_IndexType == IT_RTree && idx.v_indfield.size() != 1)
        error2("[#1.#2] R-Tree can be defined only for single field.", cls.m_name, idx.m_name);
      if (idx.m_IndexType == IT_Trigram && idx.v_indfield.size() != 1)
        error2("[#1.#2] Trigram index can be defined only for single field.", cls.m_name, idx.m_name);
      if (idx.m_isUserdef) {
        idx.m_code_udf = ++udf;
        cls.m_hasUserdefIdx = true;
      } else {
        idx.m_code_udf = -1;
      }
      if ((int)idx.m_name.size() > cls.m_maxIndexName) cls.m_maxIndexName = (int)idx.m_name.size();

      if (idx.v_indfield.size() == 1 && idx.v_indfield[0] == "*") {
        const unsigned int n = cls.v_field.size();
        // An index over every field of a class without fields has no key.
        if (n == 0) error2("[#1.#2] Index over all fields of a class without fields.", cls.m_name, idx.m_name);
        idx.v_indfield.resize(n, mstring());
        idx.v_descending.resize(n, false);
        idx.v_case_insensitive.resize(n, false);
        idx.v_colls.resize(n, mstring());
        for (unsigned int j = 0; j < n; j++) {
          idx.v_indfield[j] = cls.v_field[j].m_name;
          idx.v_descending[j] = false;
          idx.v_case_insensitive[j] = false;
          idx.v_colls[j] = mstring();
        }
      }

      idx.v_fldParsed.reserve(idx.v_indfield.size());
      for (unsigned int j = 0; j < idx.v_indfield.size(); j++) {
        if (!idx.v_colls[j].empty()) cls.m_hasCollations = true;
        Index::Segment seg = constructIndexSegment(idx.m_name, idx.v_descending[j], idx.v_case_insensitive[j],
                                                   idx.m_isUnique, cls, idx.v_indfield[j], idx.v_colls[j]);
        checkSegment(cls, idx, seg);
        if (seg.m_isVectorBased || seg.m_isArrayBased) idx.m_vectorSegmentNum = (int)j;
        if (seg.m_isBitField) idx.m_isBitBased = true;
        idx.v_fldParsed.push_back(seg);
        if (m_p.wasError()) return;  // only for a reporter whose errors return
      }
    }
  }
  m_s.m_userdefIdxNum = (unsigned int)(udf + 1);
  m_s.m_collationsNum = (unsigned int)m_s.s_coll.get()->size();
}

// What an index type asks of each of its segments.
void Analyzer::checkSegment(const Class& cls, const Index& idx, Index::Segment& seg) {
  const Field& last = *seg.last().m_pFld;
  const bool vectorBased = seg.m_isVectorBased || seg.m_isArrayBased;
  if (idx.m_IndexType == IT_RTree) {
    if (seg.size() != 1) error2("[#1.#2] R-Tree can be defined only for single field.", cls.m_name, idx.m_name);
    if (!seg.m_isArrayBased || (!last.m_isRTreePoint && last.m_arraySize % 2 != 0))
      error2("[#1.#2] R-Tree can be defined only for array of rectangles or array of scalars with even length.",
             cls.m_name, idx.m_name);
  }
  if (idx.m_IndexType == IT_Trigram) {
    // A dotted path gets the R-tree's message: one text serves both, intended.
    if (seg.size() != 1) error2("[#1.#2] R-Tree can be defined only for single field.", cls.m_name, idx.m_name);
    const int etype = last.dict_info(true).etype;
    if (seg.m_isArrayBased || !(etype == 7 || etype == 8 || (etype >= 19 && etype <= 22)))
      error2("[#1.#2] Trigram index can be defined only for character or string types.", cls.m_name, idx.m_name);
  }
  // A boolean is indexed only as an array or vector, and only by a patricia index.
  if (!(idx.m_IndexType == IT_PTree && vectorBased)) {
    for (unsigned int k = 0; k < seg.size(); k++) {
      if (seg[k].m_pFld->dict_info(true).etype != 23) continue;
      if (idx.m_IndexType != IT_PTree)
        error1("field #1: only patricia index allowed on this type of field", seg[k].m_name);
      error1("field #1: no index allowed on this type of field, only array/vectors of boolean indexes allowed",
             seg[k].m_name);
    }
  }
  if (vectorBased && idx.m_IndexType == IT_KDTree)
    error2("[#1.#2] A vector or array can not be element of KD-Tree index.", cls.m_name, seg[0].m_name);
}

// ---------------------------------------------------------------- events

void Analyzer::finishEvents() {
  int id = 0;
  for (ISet::HPos pos(m_s.s_class.first()); pos.valid(); pos.next()) {
    Class& cls = *static_cast<Class*>(pos.get().get());
    const bool hasBitmap = cls.findField("updated_bitmap") != nullptr;
    int classUpdates = 0;
    int fieldUpdates = 0;
    for (unsigned int i = 0; i < cls.v_events.size(); i++) {
      Event& ev = cls.v_events[i];
      ev.m_eventId = id++;
      if (ev.m_type == Event::CLASS_UPDATE) {
        if (hasBitmap) ev.m_fldName = "updated_bitmap";
        classUpdates++;
      }
      if (ev.m_type == Event::UPDATE) fieldUpdates++;
      if (classUpdates > 0 && fieldUpdates > 0)
        error1("For class #1 declared both update class event and field update event(s)", cls.m_name);
      if (ev.m_fldName.empty()) continue;
      ev.m_pFld = cls.findField(ev.m_fldName);
      if (ev.m_pFld == nullptr)
        error3("field #1 is not defined in #2, referenced from event #3", ev.m_fldName, cls.m_name, ev.m_name);
      const Field& f = *ev.m_pFld;
      bool baseKind = false;
      switch (f.m_pstruct->m_category) {
        case ET_SIMPLE:
        case ET_CHARS:
        case ET_STRING:
        case ET_BINARY:
        case ET_VARBINARY:
        case ET_UNICODE_CHARS:
        case ET_UNICODE_STRING:
          baseKind = true;
          break;
        case ET_STRUCT:
        case ET_BLOB:
        case ET_REF:
        case ET_AUTOID:
        case ET_VERSION:
        case ET_AUTOOID:
        case ET_DIRECT_STRUCT:
        case ET_WIDE_CHARS:
        case ET_WCHAR_STRING:
        case ET_SEQUENCE:
          break;
      }
      const bool arrayOk = !f.m_isArray || f.m_eltype == "boolean" || ev.m_type == Event::CLASS_UPDATE;
      if (f.m_isOptional || f.m_isVector || !arrayOk || !baseKind)
        // clang-format off
        error3("field #1 in #2, referenced from event #3 must be of a base type: simple, string, chars, nstring or nchars", ev.m_fldName, cls.m_name, ev.m_name);
        // clang-format on
    }
    if (!hasBitmap || classUpdates > 0) continue;
    if (fieldUpdates > 0)
      error1("For class #1 declared both update class event and field update event(s)", cls.m_name);
    // The implicit event's name is not entered in s_allEventNames.
    Event ev;
    ev.m_eventId = id++;
    ev.m_type = Event::CLASS_UPDATE;
    ev.m_fldName = "updated_bitmap";
    ev.m_pFld = cls.findField(ev.m_fldName);
    ev.m_name = "implUpdate" + cls.m_name + "Event";
    cls.v_events.push_back(ev);
  }
}

// ---------------------------------------------------------------- object ids and references

void Analyzer::checkObjid() {
  if (m_s.m_dbname.empty()) error("schema name is not defined");
  for (ISet::HPos pos(m_s.s_class.first()); pos.valid(); pos.next()) {
    if (!static_cast<Class*>(pos.get().get())->m_hasId) continue;
    if (!m_s.m_useObjid) error("oid is not declared");
    break;
  }
  if (!m_s.m_useObjid) return;
  if (m_s.m_nobjid_estimated == 0) error("estimated number of objects not specified");
  m_s.m_objid_type_ptr = m_s.findType(m_s.m_objid_type);
  if (m_s.m_objid_type_ptr == nullptr) error1("oid type #1 is not defined", m_s.m_objid_type);
  if (m_s.m_objid_type_ptr->m_isDynamic) error1("oid type #1 cannot be dynamic", m_s.m_objid_type);
}

// Fields of structs are not walked: a ref<x> inside a struct goes unchecked.
void Analyzer::checkRefTo() {
  for (ISet::HPos pos(m_s.s_class.first()); pos.valid(); pos.next()) {
    const Class& cls = *static_cast<Class*>(pos.get().get());
    for (unsigned int i = 0; i < cls.v_field.size(); i++) {
      const Field& f = cls.v_field[i];
      if (f.rare().refto.empty()) continue;
      const Class* target = m_s.findClass(f.rare().refto);
      if (target == nullptr) error1("A reference to undefined class \"#1\" found.", f.rare().refto);
      if (f.m_eltype == "autoid_t" && !target->m_hasAutoId) error1("Class \"#1\" has no autoid.", f.rare().refto);
      if (f.m_eltype == "ref" && !target->m_hasId) error1("Class \"#1\" has no oid.", f.rare().refto);
    }
  }
}
