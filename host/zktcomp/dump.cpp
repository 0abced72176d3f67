// Schema dump: the finished schema with its layouts as an XML-like text, for reading by people.
#include "schema.h"

// An element with contents: the indent, "<name " and its attributes, ">",
// a line feed; the contents; the indent and the closing tag. The closing
// tags of schema, index, indfield and fel have a blank behind them, the
// others none: the format has always been written so.

void Schema::dump(IOutStream& os, int ind) const {
  I(os, ind) << "<schema " << A("dbName", m_dbname) << A("idType", m_objid_type) << ">\n";
  for (ISet::HPos pos(s_class.first()); pos.valid(); pos.next()) {
    static_cast<const Class*>(pos.get().get())->dump(os, ind + 2);
    os << "\n";
  }
  os << "\n";
  for (ISet::HPos pos(s_struct.first()); pos.valid(); pos.next()) {
    static_cast<const Struct*>(pos.get().get())->dump(os, ind + 2);
    os << "\n";
  }
  I(os, ind) << "</schema> \n";
}

void Class::dump(IOutStream& os, int ind) const {
  I(os, ind) << "<class " << A("name", m_name) << A("code", m_classCode) << A("id", m_hasId)
             << A("compact", m_compact) << A("has_blobs", m_hasBlobs) << A("has_sequences", m_hasSequences)
             << A("list", m_sequential) << ">\n";
  for (unsigned int i = 0; i < v_index.size(); i++) v_index[i].dump(os, ind + 2);
  Struct::dump(os, ind + 2);
  I(os, ind) << "</class>\n";
}

void Struct::dump(IOutStream& os, int ind) const {
  I(os, ind) << "<struct " << A("category", (int)m_category) << A("name", m_name) << A("dynamic", m_isDynamic)
             << A("has_blobs", m_hasBlobs) << A("has_sequences", m_hasSequences) << A("c_type", m_cType)
             << ">\n";
  for (unsigned int i = 0; i < v_field.size(); i++) v_field[i].dump(os, ind + 2);
  m_layout.dump(os, ind + 2);
  I(os, ind) << "</struct>\n";
}

void Field::dump(IOutStream& os, int ind) const {
  I(os, ind) << "<field " << A("t", m_eltype) << A("name", m_name) << A("vect", m_isVector)
             << A("opt", m_isOptional) << "/>\n";
}

void Layout2::dump(IOutStream& os, int ind) const {
  I(os, ind) << "<layout2 >\n";
  I(os, ind + 2) << "<compact >\n";
  c.dump(os, ind + 4);
  I(os, ind + 2) << "</compact>\n";
  I(os, ind + 2) << "<large >\n";
  u.dump(os, ind + 4);
  I(os, ind + 2) << "</large>\n";
  I(os, ind) << "</layout2>\n";
}

void Layout::dump(IOutStream& os, int ind) const {
  I(os, ind) << "<layout " << A("sz", m_size) << A("a", m_align);
  if (v_fldOrder.size() == 0) {
    os << " />\n";
    return;
  }
  os << ">\n";
  for (unsigned int i = 0; i < v_fldOrder.size(); i++) v_fldOrder[i].dump(os, ind + 2);
  I(os, ind) << "</layout>\n";
}

void FldLayout::dump(IOutStream& os, int ind) const {
  I(os, ind) << "<fld " << A("name", m_ref ? m_ref->m_name : mstring()) << A("sz", m_size) << A("a", m_align)
             << A("offs", m_offset) << "/>\n";
}

// The index types that have a name in the dump; every other one is "unknown".
static mstring indexTypeName(IndexType t) {
  switch (t) {
    case IT_Tree: return "Tree";
    case IT_Hash: return "Hash";
    case IT_KDTree: return "KD-Tree";
    case IT_List: return "L2-List";
    case IT_RTree:
    case IT_PTree:
    case IT_Trigram: return "unknown";
  }
  return "unknown";
}

void Index::dump(IOutStream& os, int ind) const {
  I(os, ind) << "<index " << A("name", m_name) << A("unique", m_isUnique) << A("thick", m_isThick)
             << A("type", indexTypeName(m_IndexType)) << A("code", m_code) << A("voluntary", m_isVoluntary)
             << A("vbased", m_vectorSegmentNum >= 0) << A("ecount", m_expectedCount) << ">\n";
  for (unsigned int i = 0; i < v_fldParsed.size(); i++) v_fldParsed[i].dump(os, ind + 2);
  I(os, ind) << "</index> \n";
}

void Index::Segment::dump(IOutStream& os, int ind) const {
  I(os, ind) << "<indfield " << A("vbased", m_isVectorBased) << ">\n";
  for (unsigned int i = 0; i < size(); i++) (*this)[i].dump(os, ind + 2);
  I(os, ind) << "</indfield> \n";
}

void Index::FldEl::dump(IOutStream& os, int ind) const {
  I(os, ind) << "<fel " << A("name", m_name) << ">\n";
  if (m_pFld != nullptr) m_pFld->dump(os, ind + 2);
  I(os, ind) << "</fel> \n";
}
