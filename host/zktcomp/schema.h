// Schema model: types, classes, fields, indexes, events, enums, collations, and the symbolic layout sizes.
#ifndef ZKTCOMP_SCHEMA_H
#define ZKTCOMP_SCHEMA_H

#include "util.h"

// The numeric values of these enumerations are stored in the dictionary and
// compared as numbers: never renumber them.
enum TypeCategory {
  ET_STRUCT = 0,
  ET_SIMPLE = 1,
  ET_CHARS = 2,
  ET_STRING = 3,
  ET_BLOB = 4,
  ET_REF = 5,
  ET_AUTOID = 6,
  ET_VERSION = 7,
  ET_AUTOOID = 8,
  ET_UNICODE_CHARS = 9,
  ET_UNICODE_STRING = 10,
  ET_DIRECT_STRUCT = 11,
  ET_WIDE_CHARS = 12,     // no statement makes it; kept for the dictionary
  ET_WCHAR_STRING = 13,   // likewise
  ET_SEQUENCE = 14,
  ET_BINARY = 15,
  ET_VARBINARY = 16
};

enum IndexType { IT_Tree = 0, IT_Hash = 1, IT_KDTree = 2, IT_RTree = 3, IT_PTree = 4, IT_Trigram = 5, IT_List = 6 };

enum FieldInitType { INIT_NONE = 0, INIT_INT = 1, INIT_DOUBLE = 2, INIT_BOOL = 3, INIT_STRING = 4 };

enum TableIotType { IOT_TABLE_NONE = 0, IOT_TABLE_UP = 1, IOT_TABLE_DOWN = 2 };

class Field;
class Struct;
class Class;
class Schema;

// ---------------------------------------------------------------- symbolic sizes

// A size, offset or alignment: the number m_size_n plus a text, an
// expression that only the target's compiler can evaluate (the size of a
// direct struct). An empty text means a plain number. The text, the scratch
// room of the text form and the rarely set calc-type size live in a block
// made on first use: most sizes of a large schema are numbers that are never
// written as text. Packed to 4 bytes, so a size takes 12: layout records
// hold three each, and a large schema has hundreds of thousands of them.
// Leak checkers look for pointers at 8-byte steps only: their builds
// (ZKT_PLAIN_ALLOC) keep the natural layout.
#ifndef ZKT_PLAIN_ALLOC
#pragma pack(push, 4)
#endif
class FSize {
public:
  int m_size_n;

  FSize() : m_size_n(0) {}
  FSize(int n) : m_size_n(n) {}
  FSize(const mstring& s) : m_size_n(0) {
    if (!s.empty()) ext().text = s;
  }
  FSize(const FSize& o) : m_size_n(o.m_size_n) {
    if (o.m_ext != nullptr && (!o.m_ext->text.empty() || o.m_ext->calc != 0)) {
      ext().text = o.m_ext->text;
      m_ext->calc = o.m_ext->calc;
    }
  }
  FSize(FSize&& o) noexcept : m_size_n(o.m_size_n), m_ext(o.m_ext) { o.m_ext = nullptr; }
  ~FSize() { delete m_ext; }

  // The scratch room stays with its owner. Two plain numbers are the common case.
  FSize& operator=(const FSize& o) {
    m_size_n = o.m_size_n;
    if (m_ext == nullptr && o.m_ext == nullptr) return *this;
    setCalcTypeSize(o.calcTypeSize());
    setText(o.text());
    return *this;
  }
  FSize& operator=(FSize&& o) noexcept {
    m_size_n = o.m_size_n;
    if (m_ext == nullptr && o.m_ext == nullptr) return *this;
    setCalcTypeSize(o.calcTypeSize());
    if (o.is_str()) ext().text = std::move(o.m_ext->text);
    else if (m_ext != nullptr) m_ext->text = mstring();
    return *this;
  }
  int operator=(int n);
  const mstring& operator=(const mstring& s);  // zeroes the number, keeps the calc-type size

  // The numeric size that update_strings replaced by text; copied, never read here.
  int calcTypeSize() const { return m_ext != nullptr ? m_ext->calc : 0; }
  void setCalcTypeSize(int n) {
    if (n != 0 || m_ext != nullptr) ext().calc = n;
  }

  bool is_str() const { return m_ext != nullptr && !m_ext->text.empty(); }
  const mstring& text() const { return m_ext != nullptr ? m_ext->text : kNoText; }
  FSize& operator+=(const FSize& o);
  // "12", "X", "12+X": the result lives in the scratch room, so a second
  // conversion of the same object overwrites the first result.
  operator const mstring&() const;
  operator int() const { return m_size_n; }  // the number alone, whatever the text says
  bool operator>(const FSize& o) const { return m_size_n > o.m_size_n; }
  bool operator==(const FSize& o) const { return m_size_n == o.m_size_n && text() == o.text(); }

private:
  struct Ext {
    mstring text;
    mstring scratch;  // meaningless between conversions
    int calc = 0;
  };
  mutable Ext* m_ext = nullptr;
  static const mstring kNoText;

  Ext& ext() const {
    if (m_ext == nullptr) m_ext = new Ext();
    return *m_ext;
  }
  void setText(const mstring& s) {
    if (!s.empty()) ext().text = s;
    else if (m_ext != nullptr) m_ext->text = mstring();
  }
};
#ifndef ZKT_PLAIN_ALLOC
#pragma pack(pop)
#endif

// fr.set(name, text of size), a plain number written straight from the number.
inline Frag& setSize(Frag& fr, const char* name, const FSize& size) {
  if (!size.is_str()) return fr.set(name, (long)size.m_size_n);
  return fr.set(name, (const mstring&)size);
}

// One field's place in one layout. Built by the layout engine on the stack,
// then copied into Layout::v_fldOrder and sorted by value.
class FldLayout {
public:
  Field* m_ref = nullptr;  // not owned
  FSize m_size;            // bytes in the fixed part
  FSize m_offset;          // from the start of the fixed part
  FSize m_align;
  bool m_isDirectStruct = false;  // set by update_strings
  bool m_inDirectStruct = false;  // set by update_strings

  // Storage order: direct-struct fields last, otherwise bigger alignment first
  // (numbers only).
  bool operator<(const FldLayout& o) const;
  // A number in that order: a < b exactly when a.sortKey() < b.sortKey().
  long long sortKey() const { return (m_isDirectStruct ? 1LL << 40 : 0) - (long long)m_align.m_size_n; }
  // Replaces what only the target compiler knows (fields of and in direct
  // structs) by the text of the fieldoffs/fieldsz/structsz macros.
  void update_strings();
  void dump(IOutStream& os, int ind) const;
};

// One layout of a struct.
class Layout {
public:
  FSize m_size;   // size of the fixed part
  FSize m_align;  // alignment of the struct as a whole
  mvector<FldLayout> v_fldOrder;  // storage order; must not grow once fields point into it
  void update_strings() {}  // a hook that does nothing
  void dump(IOutStream& os, int ind) const;
};

// The compact layout c (two-byte in-object offsets) and the normal layout u
// (four-byte offsets) of one struct.
class Layout2 {
public:
  Layout c;
  Layout u;
  bool m_inuse = false;     // being laid out now: the recursion guard of the layout engine
  bool m_finished = false;  // layout complete
  void update_strings() {
    c.update_strings();
    u.update_strings();
  }
  bool finished() const { return m_finished; }
  bool is_size_equal() const { return c.m_size == u.m_size; }
  void dump(IOutStream& os, int ind) const;
};

// A field with its position in Struct::v_field, for sorting a field table by name.
class FieldRef {
public:
  Field* pf = nullptr;
  unsigned int order_no = 0;
  bool operator<(const FieldRef& o) const;
};

// ---------------------------------------------------------------- fields

class Enum;

// What few fields have: initial values, a reference target, a sequence's
// element and order, an enum type, a decimal's precision. One block behind
// one pointer, made on the first write (a field record is 104 bytes instead
// of 152, and a large schema has hundreds of thousands of them).
struct FieldRare {
  mvector<mstring> initVals;  // raw tokens
  mstring refto;              // class named in ref<...> or autoid_t<...>
  mstring seqElemType;
  mstring seqOrder;  // ZKT_SEQ_ASC_ORDER, ZKT_SEQ_DESC_ORDER or ZKT_SEQ_NO_ORDER
  Enum* penum = nullptr;
  Struct* seqElemStruct = nullptr;
  int precision = -1;  // digits after the point of a decimal; -1 otherwise
};

// One field of a struct or class, held by value in Struct::v_field. The
// analyzer fills everything but the pointers; the finishing pass resolves
// m_pstruct, penum and seqElemStruct; the layout sets m_c_layout and
// m_u_layout. No pointer here owns anything.
class Field {
public:
  mstring m_eltype;  // normalised type name ("signed<4>", "char<20>", a struct's name, "sequence")
  mstring m_name;
  bool m_isBitmapFld = false;
  bool m_isVector = false;
  bool m_isIndexed = false;  // some index segment passes through the field
  bool m_isUnique = false;   // some unique index passes through the field
  bool m_isHidden = false;   // a system field without API
  bool m_isOptional = false;
  bool m_isArray = false;
  bool m_isNullable = false;
  bool m_isIndicator = false;  // the "_indicator" companion of a nullable field
  bool m_isSequence = false;
  bool m_isRTreeRect = false;
  bool m_isRTreePoint = false;
  bool m_isDirectStruct = false;  // type is a direct struct known when the field was declared
  int m_arraySize = 0;   // elements; for a rectangle two times the dimension
  int m_indicator = -1;  // nullable field: position of its indicator in v_field
  unsigned int m_seq_no = 0;  // shared by all names of one declaration
  unsigned int m_no = 0;  // position in v_field when declared; shared by all names of one declaration
  Struct* m_pstruct = nullptr;
  FldLayout* m_c_layout = nullptr;
  FldLayout* m_u_layout = nullptr;
  Struct* m_containerStruct = nullptr;
  Rare<FieldRare> m_rare;

  const FieldRare& rare() const { return m_rare.get(); }
  FieldRare& editRare() { return m_rare.edit(); }
  // Setters that leave the block unmade for the values every field starts with.
  void setPenum(Enum* e) {
    if (e != nullptr || rare().penum != nullptr) editRare().penum = e;
  }
  void setPrecision(int p) {
    if (p != -1 || rare().precision != -1) editRare().precision = p;
  }

  // The layout-free element type information of a field.
  struct DictInfo {
    int etype = 0;  // element type code
    FSize size;
    const char* unionel = "";  // member of the dictionary's value union; a literal
    int bit_size = 0;
  };
  DictInfo dict_info(bool allow_struct) const;
  FieldInitType getInitializerType() const;
  void dump(IOutStream& os, int ind) const;
};

// ---------------------------------------------------------------- indexes and events

class Index {
public:
  // One step of a dotted field path.
  struct FldEl {
    mstring m_name;
    Struct* m_pStruct = nullptr;  // the struct searched
    Field* m_pFld = nullptr;      // the field found
    void dump(IOutStream& os, int ind) const;
  };
  // One field path, resolved step by step by the finishing pass.
  class Segment : public mvector<FldEl> {
  public:
    bool m_isVectorBased = false;
    bool m_isArrayBased = false;
    bool m_isBitField = false;
    bool m_isBinaryField = false;
    TypeCategory m_vectorElCategory = ET_STRUCT;
    int m_vectorFieldElNum = -1;  // the step that is the vector or array
    bool m_descending = false;
    bool m_case_insensitive = false;
    int m_collationNum = -1;  // the collation's order
    FldEl& last() { return (*this)[size() - 1]; }
    // Element type information of the key: the last field's dict_info(false).
    Field::DictInfo dict_info() const { return (*this)[size() - 1].m_pFld->dict_info(false); }
    const FldEl& last() const { return (*this)[size() - 1]; }
    // The texts of this segment as the key of generated index functions: its
    // parameter declaration, the argument of a call, the statements that fill
    // one zkt_external_field_t through pa_, and the pointer type of the key
    // (empty for a boolean key). Every parameter name goes to names; n is
    // not used. A key category that no index admits throws "illegal case".
    void paramStrings(int n, const Schema* sc, mvector<mstring>& names, mstring& decl, mstring& pass,
                      mstring& assign, mstring& ptr_type) const;
    void dump(IOutStream& os, int ind) const;
  };
  struct FieldLayout {
    FSize field_offset;
    FSize vect_field_offset;
  };

  mstring m_name;
  mvector<mstring> v_indfield;  // paths as written ("a.b.c"), or the one entry "*"
  mvector<mstring> v_colls;     // collation per path; "" if none
  mvector<bool> v_descending;
  mvector<bool> v_case_insensitive;
  mvector<Segment> v_fldParsed;  // built by the finishing pass
  bool m_isUnique = true;
  bool m_isThick = false;
  bool m_isVoluntary = false;
  bool m_isInclusive = false;
  IndexType m_IndexType = IT_Tree;
  bool m_isUserdef = false;
  int m_code_udf = -1;  // number among user-defined indexes
  int m_code = -1;      // schema-wide index number
  int m_expectedCount = 0;
  int m_vectorSegmentNum = -1;
  bool m_isAutoidIndex = false;
  bool m_isHistoryIndex = false;
  bool m_isListIndex = false;
  bool m_isBitBased = false;
  bool m_hidden = false;

  // Offsets of seg's key in cls's layout, summed before (vect_field_offset)
  // and after (field_offset) the one vector or array on the path; without
  // one, vect_field_offset is -1. A second one is the panic "10004".
  FieldLayout getFieldLayout(const Segment& seg, const Class* cls) const;
  void dump(IOutStream& os, int ind) const;
};

// A hidden index that the system adds to a class.
class SysIndex : public Index {
public:
  SysIndex(const mstring& name, IndexType type, bool unique);
  // Appends the path, ascending, case-sensitive, without collation.
  void addField(const mstring& name);
};

class Event {
public:
  enum Type {
    NONE = 0,
    NEW = 1,
    UPDATE = 2,
    DELETE = 3,
    DELETE_ALL = 4,
    CHECKPOINT = 5,
    EXPRESSION = 6,  // no statement makes it
    CLASS_UPDATE = 7
  };
  mstring m_name;
  Type m_type = NONE;
  mstring m_fldName;
  Field* m_pFld = nullptr;  // not owned
  int m_eventId = -1;
};

// ---------------------------------------------------------------- types and classes

// A type of the schema: a base type, struct, direct struct, enum value type,
// "ref"; and, through Class, a class. Owned by the Schema's sets.
class Struct : public IComparable {
public:
  int m_globalNum = -1;  // numbered by the dictionary writers
  mstring m_name;
  TypeCategory m_category;
  bool m_analyzed;  // fields resolved by the finishing pass; base types are born true
  bool m_isClass = false;  // made by a class statement (system classes stay false)
  bool m_isDynamic = true;  // variable size; computed by the finishing pass
  bool m_hasBlobs = false;
  bool m_hasSequences = false;
  bool m_hasInitializers = false;
  mvector<Field> v_field;  // declaration order
  Layout2 m_layout;
  int m_maxFieldName = 0;
  int m_maxFuncName = 0;
  mstring m_cType;  // C type of a base type; the enum's name for an enum value type
  mvector<Class*> m_owners;  // classes that contain this struct
  bool m_isDirectStruct = false;
  bool m_hasDirectStruct = false;  // some field's type was a known direct struct when declared
  bool m_suppressApi = false;
  int m_nFixedFields = 0;
  int m_nNullableFields = 0;
  bool m_is_packed = false;
  bool m_from_cursor_defined = false;

  Struct() : Struct(ET_STRUCT) {}
  explicit Struct(TypeCategory category) : m_category(category), m_analyzed(false) {}
  // A base type; a struct category here throws " illegal category ".
  Struct(const mstring& name, TypeCategory category, int c_size, int u_size, int c_align, int u_align,
         const mstring& cType);
  ~Struct() override {}

  bool less(const IComparable* other) const override;
  const mstring* key() const override { return &m_name; }
  Field* findField(const mstring& name);  // the first field of that name, or null
  void addOwner(Class* cls);
  void dump(IOutStream& os, int ind) const;
};

class Class : public Struct {
public:
  int m_classCode = 0;  // given by the layout
  bool m_hasId = false;
  bool m_hasAutoId = false;
  bool m_compact = false;
  bool m_sequential = false;  // has a list index
  bool m_sequences = false;   // declared with "sequences"
  mvector<Index> v_index;
  int m_maxIndexName = 0;
  int m_autoidEstimate = 0;
  bool m_history = false;  // no statement sets it
  int m_historyLength = 0;
  StringSet s_indexNames;
  mvector<Event> v_events;
  bool m_persistent = false;
  bool m_local = false;
  bool m_distrib = false;
  bool m_hidden = false;
  bool m_atomic = true;
  TableIotType m_iot_type = IOT_TABLE_NONE;
  bool m_hasUserdefIdx = false;
  bool m_hasCollations = false;

  Class() {}
  ~Class() override {}

  // No duplicate test.
  void addIndex(const Index& index);
  // Appends a field made by the system; init null means no initial value.
  void addSysField(const mstring& name, const mstring& type, bool hidden, const char* init);
  bool fieldIsIndexed(const Field& field);
  int getNewEvent() const { return firstEventOf(Event::NEW); }
  int getDeleteEvent() const { return firstEventOf(Event::DELETE); }
  int getDeleteAllEvent() const { return firstEventOf(Event::DELETE_ALL); }
  int getCheckpointEvent() const { return firstEventOf(Event::CHECKPOINT); }
  int getClassUpdateEvent() const { return firstEventOf(Event::CLASS_UPDATE); }
  // -1 for a field of an embedded struct.
  int getUpdateEvent(const Struct* s, const Field& field) const;
  int getEventPos(int id) const;
  void dump(IOutStream& os, int ind) const;  // the class, then its struct part

private:
  int firstEventOf(Event::Type type) const;
};

// A bookkeeping table of the runtime, built in code: no API, named "@...".
class SysClass : public Class {
public:
  // With suffix the name gets "disk" (persistent) or "inmem".
  SysClass(const mstring& name, bool persistent, bool suffix, bool local);
  ~SysClass() override {}
};

class Schema;

class SysDistribClass : public SysClass {
public:
  explicit SysDistribClass(bool persistent);
};

class SysIoTTsClass : public SysClass {
public:
  SysIoTTsClass(bool persistent, const Schema& schema);
};

class SysIoTDelClass : public SysClass {
public:
  SysIoTDelClass(bool persistent, const Schema& schema);
};

// ---------------------------------------------------------------- enums, collations, calculator

struct EnumEl {
  mstring m_choice;
  int m_val = 0;
};

class Enum : public IComparable {
public:
  mstring m_name;
  mvector<EnumEl> v_els;
  int minVal = 0;
  int maxVal = 0;
  bool less(const IComparable* other) const override;
  const mstring* key() const override { return &m_name; }
};

class Collation : public IComparable {
public:
  mstring m_name;
  int ctype = 0;  // field type class; 0 while unknown
  int order = 0;  // position in Schema::s_coll
  bool suppressed = true;
  bool isTree = true;
  bool less(const IComparable* other) const override;
  const mstring* key() const override { return &m_name; }
};

struct CalcEl {
  mstring m_class_name;
  int m_nobjs = 0;
};

class Calculator {
public:
  mvector<CalcEl> calc_els;
};

// ---------------------------------------------------------------- the schema

class Derived {
public:
  bool m_useObjid = false;  // "declare oid" was seen
};

// One schema. Owned by the Analyzer; the sets own their objects. All sets
// are walked in order of insertion, which is the order of declaration.
class Schema : public Derived {
public:
  mstring m_dbname;
  mstring m_objid_type;
  unsigned int m_oid_sizeof_uplimit = 0;  // filled by the layout
  mstring m_objid_Ctype;
  unsigned int m_nobjid_estimated = 0;
  unsigned int m_HA_estimate = 0;  // non-zero: auto_oid declared
  unsigned int m_dict_flags = 0;   // 1 large database, 2 DDL compatibility, 4 iot
  unsigned short m_iot_level = 0;  // 1 server, 65535 device, 2..65534 router
  mstring m_iot_agentId;
  HISet s_struct;  // every type, "ref" included; never a class
  HISet s_class;   // user classes, then system classes
  HISet s_enum;
  HISet s_coll;
  StringSet s_allEnumVals;    // element names are unique across enums
  StringSet s_allEventNames;  // event names are unique across classes
  Struct* m_objid_type_ptr = nullptr;
  unsigned int m_userdefIdxNum = 0;
  unsigned int m_collationsNum = 0;
  StringSet s_allCalcClasses;
  Calculator* s_calc = nullptr;  // owned
  unsigned int n_i_inits = 0;
  unsigned int n_s_inits = 0;
  unsigned int n_d_inits = 0;
  bool m_useSequences = false;
  bool m_structsBeenOrdered = false;

  Schema() : m_iot_agentId("0") {}
  ~Schema() { delete s_calc; }

  Struct* findType(const mstring& name);  // never a class
  Class* findClass(const mstring& name);  // never a type
  Enum* findEnum(const mstring& name);
  Collation* findCollation(const mstring& name);
  // Value of an enum element name; false, with *value untouched, if no enum has it.
  bool enumNameToInteger(const mstring& name, long* value);
  mstring objIdName() const { return m_dbname + "_oid"; }
  bool auto_oid_declared() const { return m_HA_estimate != 0; }
  // The dump of the schema with its layouts: classes, then every type.
  void dump(IOutStream& os, int ind) const;

private:
  Schema(const Schema&);
  Schema& operator=(const Schema&);
};

#endif
