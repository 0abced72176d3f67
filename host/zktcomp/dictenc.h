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
int indexVectFieldOffset(const Index& idx, const mvector<Index::FieldLayout>& segs);
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
  // m_eventId of the UPDATE event on f in the class numbered like s, else -1.
  int updateEventId(const Struct& s, const Field& f) const;

private:
  std::unordered_map<std::string, int> m_classPos;     // class name -> 1-based position
  std::unordered_map<std::string, int> m_updateEvents;  // "{globalNum}:{field}" -> event id
  ClassDictCreator(const ClassDictCreator&);
  ClassDictCreator& operator=(const ClassDictCreator&);
};

#endif
