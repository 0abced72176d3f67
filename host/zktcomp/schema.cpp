// Schema model: lookups of the schema, symbolic sizes, and the system classes and indexes.
#include "schema.h"

#include <string.h>

#include "ierrrep.h"

// ---------------------------------------------------------------- FSize

const mstring FSize::kNoText;

int FSize::operator=(int n) {
  m_size_n = n;
  setText(mstring());
  setCalcTypeSize(0);
  return m_size_n;
}

const mstring& FSize::operator=(const mstring& s) {
  setText(s);
  m_size_n = 0;
  return text();
}

// Two texts are joined by "+" without parentheses: whoever built the left
// expression brackets it if precedence matters.
FSize& FSize::operator+=(const FSize& o) {
  m_size_n += o.m_size_n;
  if (!o.is_str()) return *this;
  mstring& t = ext().text;
  if (!t.empty()) t += '+';
  t += o.m_ext->text;
  return *this;
}

// Written into the scratch room's own buffer, reused from conversion to conversion.
FSize::operator const mstring&() const {
  mstring& out = ext().scratch;
  const mstring& t = text();
  if (m_size_n == 0 && !t.empty()) {
    out = t;
    return out;
  }
  char buf[24];
  const size_t n = UT::decimal(m_size_n, buf);
  if (n < out.allocated) out.set(buf, n);
  else out = mstring(buf, n);  // a buffer that fits
  if (!t.empty()) {
    out += '+';
    out += t;
  }
  return out;
}

mstring UT::Q(const FSize& f) { return Q((const mstring&)f); }

// ---------------------------------------------------------------- FldLayout, FieldRef

bool FldLayout::operator<(const FldLayout& o) const {
  if (m_isDirectStruct != o.m_isDirectStruct) return o.m_isDirectStruct;
  return m_align > o.m_align;
}

// The placeholders of the layout texts of field f.
static Frag layoutFrag(const Field& f) {
  Frag fr;
  fr.set("container", f.m_containerStruct ? f.m_containerStruct->m_name : mstring());
  fr.set("struct", f.m_pstruct ? f.m_pstruct->m_name : f.m_eltype);
  fr.set("field", f.m_name);
  return fr;
}

// clang-format off
static const char kFieldOffsText[]  = "fieldoffs({container}_d_aligned_to_1, {field})";
static const char kFieldSizeText[]  = "fieldsz({container}_d_aligned_to_1, {field})";
static const char kStructSizeText[] = "structsz({struct}_d_aligned_to_1)";
// clang-format on

void FldLayout::update_strings() {
  m_isDirectStruct = m_ref != nullptr && m_ref->m_isDirectStruct;
  m_inDirectStruct =
      m_ref != nullptr && m_ref->m_containerStruct != nullptr && m_ref->m_containerStruct->m_isDirectStruct;
  if (m_inDirectStruct) {
    const Frag fr = layoutFrag(*m_ref);
    m_offset = fr.fill(kFieldOffsText);
    if (!m_size.is_str()) {
      m_size.setCalcTypeSize(m_size.m_size_n);
      m_size = fr.fill(kFieldSizeText);
    }
    if (!m_align.is_str()) m_align = mstring("1");
  } else if (m_isDirectStruct && !m_ref->m_isVector) {
    // The engine replaces this offset once it has placed the field.
    const Frag fr = layoutFrag(*m_ref);
    if (!m_offset.is_str()) m_offset = fr.fill(kStructSizeText);
    if (!m_size.is_str()) m_size = fr.fill(kStructSizeText);
    if (!m_align.is_str()) m_align = mstring("1");
  }
}

bool FieldRef::operator<(const FieldRef& o) const { return pf->m_name < o.pf->m_name; }

// ---------------------------------------------------------------- SysIndex

SysIndex::SysIndex(const mstring& name, IndexType type, bool unique) {
  m_IndexType = type;
  m_isUnique = unique;
  m_isVoluntary = false;
  m_isUserdef = false;
  m_name = name;
  m_hidden = true;
  m_expectedCount = type == IT_Hash ? 1000 : 0;
}

void SysIndex::addField(const mstring& name) {
  v_indfield.push_back(name);
  v_descending.push_back(false);
  v_case_insensitive.push_back(false);
  v_colls.push_back(mstring());
}

// ---------------------------------------------------------------- Struct

Struct::Struct(const mstring& name, TypeCategory category, int c_size, int u_size, int c_align, int u_align,
               const mstring& cType)
    : m_name(name), m_category(category), m_analyzed(true), m_cType(cType) {
  m_layout.c.m_size = c_size;
  m_layout.c.m_align = c_align;
  m_layout.u.m_size = u_size;
  m_layout.u.m_align = u_align;
  m_layout.update_strings();
  switch (category) {
    case ET_SIMPLE:
    case ET_CHARS:
    case ET_REF:
    case ET_AUTOID:
    case ET_VERSION:
    case ET_AUTOOID:
    case ET_UNICODE_CHARS:
    case ET_WIDE_CHARS:
    case ET_SEQUENCE:
    case ET_BINARY:
      m_isDynamic = false;
      return;
    case ET_STRING:
    case ET_UNICODE_STRING:
    case ET_WCHAR_STRING:
    case ET_VARBINARY:
      m_isDynamic = true;
      return;
    case ET_BLOB:
      m_isDynamic = true;
      m_hasBlobs = true;
      return;
    case ET_STRUCT:
    case ET_DIRECT_STRUCT:
      break;
  }
  throw " illegal category ";
}

// Every object of a set has m_name at the same place: the other one is taken
// to be of the same kind.
bool Struct::less(const IComparable* other) const {
  return m_name < static_cast<const Struct*>(other)->m_name;
}

Field* Struct::findField(const mstring& name) {
  for (unsigned int i = 0; i < v_field.size(); i++)
    if (v_field[i].m_name == name) return &v_field[i];
  return nullptr;
}

void Struct::addOwner(Class* cls) {
  for (unsigned int i = 0; i < m_owners.size(); i++)
    if (m_owners[i] == cls) return;
  m_owners.push_back(cls);
}

// ---------------------------------------------------------------- Class

void Class::addIndex(const Index& index) {
  s_indexNames.insert(index.m_name);
  v_index.push_back(index);
}

void Class::addSysField(const mstring& name, const mstring& type, bool hidden, const char* init) {
  Field f;
  f.m_name = name;
  f.m_eltype = type;
  f.m_containerStruct = this;
  f.m_no = v_field.size();
  f.m_isHidden = hidden;
  if (init != nullptr) f.editRare().initVals.push_back(mstring(init));
  v_field.push_back(f);
}

bool Class::fieldIsIndexed(const Field& field) {
  if (field.m_isIndicator) {
    for (unsigned int i = 0; i < v_field.size(); i++) {
      if (v_field[i].m_isNullable && v_field[i].m_indicator == (int)field.m_no)
        return fieldIsIndexed(v_field[i]);
    }
    IErrReporter::panic("indicator without nullable field", false);
  }
  for (unsigned int i = 0; i < v_index.size(); i++) {
    const mvector<Index::Segment>& segs = v_index[i].v_fldParsed;
    for (unsigned int j = 0; j < segs.size(); j++)
      if (segs[j].size() > 0 && segs[j][0].m_name == field.m_name) return true;
  }
  return false;
}

int Class::firstEventOf(Event::Type type) const {
  for (unsigned int i = 0; i < v_events.size(); i++)
    if (v_events[i].m_type == type) return v_events[i].m_eventId;
  return -1;
}

int Class::getUpdateEvent(const Struct* s, const Field& field) const {
  if (s != this) return -1;
  for (unsigned int i = 0; i < v_events.size(); i++)
    if (v_events[i].m_type == Event::UPDATE && v_events[i].m_fldName == field.m_name)
      return v_events[i].m_eventId;
  return -1;
}

int Class::getEventPos(int id) const {
  for (unsigned int i = 0; i < v_events.size(); i++)
    if (v_events[i].m_eventId == id) return (int)i;
  return -1;
}

// ---------------------------------------------------------------- system classes

SysClass::SysClass(const mstring& name, bool persistent, bool suffix, bool local) {
  m_compact = false;
  m_hasId = false;
  m_persistent = persistent;
  m_local = local;
  m_hidden = true;
  m_suppressApi = true;
  m_name = name;
  if (suffix) m_name += mstring(persistent ? "disk" : "inmem");
}

// Kinds of IoT node by level: 1 a server, 65535 a device, anything else a router.
static bool iotIsServer(const Schema& s) { return s.m_iot_level == 1; }
static bool iotIsDevice(const Schema& s) { return s.m_iot_level == 65535; }

SysDistribClass::SysDistribClass(bool persistent) : SysClass("@sys_distribs_", persistent, true, true) {
  // Unlike in the other system classes, these fields are not hidden.
  addSysField("auto_oid@", "$auto_oid", false, nullptr);
  addSysField("auto_oid", "unsigned<8>", false, nullptr);
  addSysField("timestamp", "unsigned<8>", false, nullptr);
  addSysField("class_code", "unsigned<2>", false, nullptr);
  SysIndex ts("ts_idx", IT_Tree, false);
  ts.addField("class_code");
  ts.addField("timestamp");
  addIndex(ts);
  SysIndex ao("ao_idx", IT_Hash, true);
  ao.addField("auto_oid");
  ao.addField("class_code");
  addIndex(ao);
}

SysIoTTsClass::SysIoTTsClass(bool persistent, const Schema& schema)
    : SysClass("@sys_iot_ts", persistent, false, false) {
  if (schema.auto_oid_declared()) addSysField("auto_oid@", "$auto_oid", true, nullptr);
  addSysField("type", "unsigned<1>", true, nullptr);
  addSysField("src", "unsigned<8>", true, schema.m_iot_agentId.c_str());
  addSysField("dbid", "unsigned<8>", true, UT::n2s((int)schema.m_iot_level).c_str());
  addSysField("dst", "unsigned<8>", true, nullptr);
  addSysField("value", "unsigned<8>", true, nullptr);
  SysIndex idx("idx", IT_Tree, true);
  idx.addField("type");
  idx.addField("dst");
  idx.addField("src");
  idx.addField("dbid");
  addIndex(idx);
}

SysIoTDelClass::SysIoTDelClass(bool persistent, const Schema& schema)
    : SysClass("@sys_iot_del_", persistent, true, false) {
  const bool router = !iotIsServer(schema) && !iotIsDevice(schema);
  const bool hasDst = router || iotIsServer(schema);
  if (schema.auto_oid_declared()) addSysField("auto_oid@", "$auto_oid", true, nullptr);
  addSysField("class_code", "unsigned<2>", true, nullptr);
  if (router) {
    addSysField("src_agent_id", "unsigned<8>", true, nullptr);
    addSysField("db_id", "unsigned<8>", true, nullptr);
  }
  if (hasDst) addSysField("dst_agent_id", "unsigned<8>", true, nullptr);
  addSysField("object_id", "unsigned<8>", true, nullptr);
  addSysField("timestamp", "unsigned<8>", true, nullptr);

  SysIndex ts("ts_idx", IT_Tree, false);
  if (router) {
    ts.addField("src_agent_id");
    ts.addField("db_id");
  }
  if (hasDst) ts.addField("dst_agent_id");
  ts.addField("timestamp");
  addIndex(ts);
  if (router) {
    SysIndex id("id_idx", IT_Hash, true);
    id.addField("src_agent_id");
    id.addField("db_id");
    id.addField("object_id");
    addIndex(id);
  }
}

// ---------------------------------------------------------------- enums, collations

bool Enum::less(const IComparable* other) const { return m_name < static_cast<const Enum*>(other)->m_name; }

bool Collation::less(const IComparable* other) const {
  return m_name < static_cast<const Collation*>(other)->m_name;
}

// ---------------------------------------------------------------- Schema lookups

// The object of a name in a set: by hash while the set allows, else through
// a probe object of the set's kind.
template <class T>
static T* findNamed(const HISet& set, const mstring& name) {
  HIComparable* h;
  if (set.get()->keyed()) {
    h = set.get()->findKey(name);
  } else {
    T probe;
    probe.m_name = name;
    h = set.get()->find(probe);
  }
  return h ? static_cast<T*>(h->get()) : nullptr;
}

Struct* Schema::findType(const mstring& name) { return findNamed<Struct>(s_struct, name); }
Class* Schema::findClass(const mstring& name) { return findNamed<Class>(s_class, name); }
Enum* Schema::findEnum(const mstring& name) { return findNamed<Enum>(s_enum, name); }
Collation* Schema::findCollation(const mstring& name) { return findNamed<Collation>(s_coll, name); }

bool Schema::enumNameToInteger(const mstring& name, long* value) {
  if (!s_allEnumVals.find(name)) return false;
  ISet::HPos pos(s_enum.first());
  for (; pos.valid(); pos.next()) {
    Enum* e = static_cast<Enum*>(pos.get().get());
    for (unsigned int i = 0; i < e->v_els.size(); i++) {
      if (e->v_els[i].m_choice == name) {
        *value = e->v_els[i].m_val;
        return true;
      }
    }
  }
  return false;
}

// ---------------------------------------------------------------- element type codes

namespace {
// A simple type by its C type: element type code, member of the value union, size.
struct SimpleCode {
  const char* cType;
  int etype;
  const char* unionel;
  int size;
};
// A sequence by the C type of its element.
struct SequenceCode {
  const char* cType;
  int etype;
};

// clang-format off
const SimpleCode kSimpleCodes[] = {
  // C type          code  union  size
  { "uint1",          1,   "u1",  1 },
  { "uint2",          2,   "u2",  2 },
  { "uint4",          3,   "u4",  4 },
  { "int1",           4,   "i1",  1 },
  { "int2",           5,   "i2",  2 },
  { "int4",           6,   "i4",  4 },
  { "float",         10,   "flt", 4 },
  { "double",        11,   "dbl", 8 },
  { "uint8",         12,   "u8",  8 },
  { "int8",          13,   "i8",  8 },
  { "zkt_int8",      13,   "i8",  8 },
  { "autoid_t",      13,   "i8",  8 },
  { "zkt_date",      16,   "u4",  4 },
  { "zkt_time",      17,   "u4",  4 },
  { "zkt_datetime",  24,   "u8",  8 },
};

// An enum takes the code of the signed type of its size, but size 1 is unsigned.
const SimpleCode kEnumCodes[] = {
  // size   code  union  size
  { "",      1,   "u1",  1 },
  { "",      5,   "i2",  2 },
  { "",      6,   "i4",  4 },
};

const SequenceCode kSequenceCodes[] = {
  // element C type  code
  { "uint1",          30 },
  { "uint2",          31 },
  { "uint4",          32 },
  { "zkt_date",       32 },
  { "zkt_time",       32 },
  { "uint8",          33 },
  { "int1",           34 },
  { "int2",           35 },
  { "int4",           36 },
  { "int8",           37 },
  { "zkt_int8",       37 },
  { "float",          38 },
  { "double",         39 },
  { "zkt_datetime",   41 },
};
// clang-format on

const int kSequenceOfBytes = 40;  // char<N>, binary<N> or a struct, carried as bytes
}  // namespace

// The codes of the runtime; m_pstruct (and seqElemStruct, penum) must be
// resolved, so this holds after the finishing pass has seen the field.
Field::DictInfo Field::dict_info(bool allow_struct) const {
  DictInfo info;
  const Struct& t = *m_pstruct;
  switch (t.m_category) {
    case ET_SIMPLE:
      // boolean is a uint1 simple type told apart by its name.
      if (t.m_name == "boolean") {
        info.etype = 23;
        info.unionel = "ptr";
        info.size = 1;
        info.bit_size = m_arraySize > 1 ? m_arraySize : 1;
        return info;
      }
      for (const SimpleCode& c : kSimpleCodes) {
        if (t.m_cType == c.cType) {
          info.etype = c.etype;
          info.unionel = c.unionel;
          info.size = c.size;
          return info;
        }
      }
      if (rare().penum != nullptr) {
        for (const SimpleCode& c : kEnumCodes) {
          if ((int)t.m_layout.c.m_size == c.size) {
            info.etype = c.etype;
            info.unionel = c.unionel;
            info.size = c.size;
            return info;
          }
        }
      }
      IErrReporter::panic("unknown simple type", false);
    case ET_CHARS:
      info.etype = 7;
      info.size = t.m_layout.c.m_size;
      return info;
    case ET_STRING:
      info.etype = 8;
      return info;
    case ET_REF:
      info.etype = 9;
      return info;
    case ET_AUTOID:
      info.etype = 14;
      info.unionel = "i8";
      info.size = 8;
      return info;
    case ET_VERSION:
      info.etype = 15;
      info.unionel = "u2";
      info.size = 2;
      return info;
    case ET_AUTOOID:
      info.etype = 18;
      info.unionel = "i8";
      info.size = 8;
      return info;
    case ET_UNICODE_CHARS:
      info.etype = 19;
      info.size = t.m_layout.c.m_size;
      return info;
    case ET_UNICODE_STRING:
      info.etype = 20;
      return info;
    case ET_BINARY:
      info.etype = 25;
      info.size = t.m_layout.c.m_size;
      return info;
    case ET_VARBINARY:
      info.etype = 26;
      return info;
    case ET_DIRECT_STRUCT:
      info.etype = 50;
      info.size = t.m_layout.c.m_size;
      return info;
    case ET_STRUCT:
      if (!allow_struct) IErrReporter::panic("illegal index field type", false);
      info.etype = 50;
      return info;
    case ET_BLOB:
      if (!allow_struct) IErrReporter::panic("illegal index field type", false);
      info.etype = 51;
      return info;
    case ET_WIDE_CHARS:
    case ET_WCHAR_STRING:
      IErrReporter::panic("illegal index field type", false);
    case ET_SEQUENCE: {
      const Struct& el = *rare().seqElemStruct;
      info.size = t.m_layout.u.m_size;
      if (el.m_category == ET_CHARS || el.m_category == ET_BINARY || el.m_category == ET_STRUCT) {
        info.etype = kSequenceOfBytes;
        return info;
      }
      if (el.m_category == ET_SIMPLE) {
        for (const SequenceCode& c : kSequenceCodes) {
          if (el.m_cType == c.cType) {
            info.etype = c.etype;
            return info;
          }
        }
      }
      // "singined" and "floatig" are the message as it has always read: keep them.
      // clang-format off
      IErrReporter::panic("Wrong sequence element type " + rare().seqElemType + ": sequences can be defined only singined/unsigned integer, floatig point, date/time, character and fixed size struct type.", false);
      // clang-format on
    }
  }
  throw "unknown case";
}

FieldInitType Field::getInitializerType() const {
  // A struct or a blob takes no initial value; dict_info(false) would stop on them.
  if (m_pstruct->m_category == ET_STRUCT || m_pstruct->m_category == ET_BLOB) return INIT_NONE;
  // clang-format off
  switch (dict_info(false).etype) {
    case 1: case 2: case 3: case 4: case 5: case 6:   // integers
    case 12: case 13: case 16: case 17: case 24:      // eight-byte integers, date, time, datetime
      return INIT_INT;
    case 10: case 11:                                 // float, double
      return INIT_DOUBLE;
    case 23:                                          // boolean
      return INIT_BOOL;
    case 7: case 8: case 19: case 20: case 25: case 26:  // chars, string, nchars, nstring, binary, varbinary
      return INIT_STRING;
  }
  // clang-format on
  return INIT_NONE;
}
