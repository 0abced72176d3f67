// Dictionary encodings and numbering shared by both dictionary builders: flags, index kinds, struct numbers.
#ifndef ZKTCOMP_DICTENC_H
#define ZKTCOMP_DICTENC_H

#include <string>
#include <unordered_map>

#include "ierrrep.h"
#include "schema.h"

// The flag words and codes of the dictionary records. Each is a pure
// function of the model; the builders only store the results.
namespace DictEnc {
unsigned int classFlags(const Class& c);
unsigned int structFlags(const Struct& s);
unsigned int fieldFlags(const Field& f);
// Event flags map the type (NEW 1 ... CLASS_UPDATE 32), not its enum value;
// any other type is the panic "internal 10027".
unsigned int eventFlags(Event::Type type);
// fieldType is the element code of the segment's last field; binaryFlag
// says whether the builder sets value 16 for a binary key.
unsigned int indexFieldFlags(const Index::Segment& seg, int fieldType, bool binaryFlag);
unsigned int indexFlags(const Index& idx, const Class& cls);
int implNo(const Index& idx, const Class& cls);  // a zkt_index_implementation_name_ value
// The layout a class is stored in: c for a compact class, u otherwise.
inline const Layout& classLayout(const Class& c) { return c.m_compact ? c.m_layout.c : c.m_layout.u; }
inline const FldLayout& fieldLayoutOf(const Class& c, const Field& f) {
  return c.m_compact ? *f.m_c_layout : *f.m_u_layout;
}
// The field of s whose m_no is f's m_indicator; the panic "internal" when
// there is none or it is no indicator.
const Field& indicatorOf(const Struct& s, const Field& f);
// indicator_offset of a segment: -1 unless its first field is nullable.
long indicatorOffset(const Index::Segment& seg, const Class& cls, long fieldOffset);
// The index's vect_field_offset from its segments' layouts.
// A second segment in a vector or array is a panic.
FSize indexVectFieldOffset(const Index& idx, const mvector<Index::FieldLayout>& segs);

// The counters of the dictionary head, and where each class's indexes and
// events begin in their tables (per class, in set order).
struct Counts {
  unsigned int nClasses = 0, nList = 0, nAutoid = 0, nHistory = 0, maxIndexes = 0;
  unsigned int nIndexes = 0, nEvents = 0, nSegments = 0;
  mvector<int> firstIndex;
  mvector<int> firstEvent;
};
Counts counts(const Schema& sc);

// The values of one class's record. Sizes and offsets stay FSize, so that
// the C-source form can print the expressions of direct structs.
struct ClassRecord {
  int first_index_num = -1, last_index_num = -2, list_index_num = -1, autoid_index_num = -1;
  FSize fixedsize, autoid_offset;
  int history_index_num = -1, history_length = 0;
  FSize history_offset;
  int first_event_num = -1, last_event_num = -2;
  unsigned int flags = 0;
  FSize init_size, auto_oid_offset;
};
// tooLarge is the error for a two-byte offset of $autoid or $auto_oid that
// doesn't fit; its {class} is the class's name.
ClassRecord classRecord(const Class& cls, const Schema& sc, int firstIndex, int firstEvent, IErrReporter* err,
                        const char* tooLarge);

// A field's initial values, checked and converted: int4 words for integers
// and booleans (two a value wider than four bytes, low word first), doubles
// for doubles; string values are only checked to be literals. notAllowed is
// the error for a type without initialisers ({struct}, {field}).
struct InitValues {
  FieldInitType type = INIT_NONE;
  mvector<int> words;
  mvector<double> doubles;
};
InitValues initValues(Schema& sc, const Struct& s, const Field& f, int elemSize, IErrReporter* err,
                      const char* notAllowed);
}  // namespace DictEnc

// Numbers the structs and classes that reach the dictionary and counts their
// fields. Built before any table is written; the C-source and the memory
// builder derive from it.
class ClassDictCreator {
public:
  Schema& m_sc;
  IErrReporter* m_err;  // not owned
  bool m_cmode1;
  mvector<Struct*> v_allStructs;         // position = m_globalNum: used structs, then classes
  mvector<int> m_firstFieldPerStruct;    // start of each struct's run of field records
  int m_nStructs = 0;
  int m_nFields = 0;

  // Gives m_globalNum to every struct with owners (panic "internal 100204"
  // if it has one already), then to every class ("internal 100205").
  ClassDictCreator(Schema& sc, IErrReporter* err, bool cmode1);
  virtual ~ClassDictCreator() {}

  // class code of the class f refers to, count + 1 for an unknown name; -1 for no ref target.
  int refToClass(const Field& f) const;
  // The run of s's field records: declaration order, by name when sort.
  static mvector<FieldRef> fieldRun(Struct& s, bool sort);
  // struct_num of a field record: the number of its struct type, else -1.
  static int structNum(const Field& f);
  // m_eventId of the UPDATE event on f in the class numbered like s, else -1.
  int updateEventId(const Struct& s, const Field& f) const;

  // ---- the tables as C source: the static form, or with m_cmode1 the
  // assignment form, which fills the tables by statements at run time
  void printAll(IOutStream& os, bool sort);
  // The initialiser tables, then the field records; leaves the initialiser
  // counts in the schema (n_i_inits, n_s_inits, n_d_inits). openBlock puts
  // "    {" between the two, so that the tables stay visible to the end.
  void printAllFields(IOutStream& os, bool sort, bool openBlock);
  void printAllUsedStructs(IOutStream& os);
  const char* getPtrToStructInfoVector() const { return m_cmode1 ? "v_struct_info_ptr" : "v_struct_info"; }
  int nStructs() const { return m_nStructs; }

private:
  std::unordered_map<std::string, int> m_classPos;     // class name -> 1-based position
  std::unordered_map<std::string, int> m_updateEvents;  // "{globalNum}:{field}" -> event id
  ClassDictCreator(const ClassDictCreator&);
  ClassDictCreator& operator=(const ClassDictCreator&);
};

#endif
