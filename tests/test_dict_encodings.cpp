// Dictionary encodings on hand-built models: flag words, index kinds, event flags, struct numbering, panics.
#include <gtest/gtest.h>

#include <functional>

#include "dictenc.h"
#include "proc_util.h"

namespace {

struct ClassBit {
  std::function<void(Class&)> set;
  unsigned int value;
};

TEST(DictEncodings, EventFlagsMapTheTypeNotItsValue) {
  const struct {
    Event::Type type;
    unsigned int flags;
  } rows[] = {{Event::NEW, 1},        {Event::UPDATE, 2},     {Event::DELETE, 4},
              {Event::DELETE_ALL, 8}, {Event::CHECKPOINT, 16}, {Event::CLASS_UPDATE, 32}};
  for (const auto& r : rows) EXPECT_EQ(DictEnc::eventFlags(r.type), r.flags);
  for (Event::Type t : {Event::NONE, Event::EXPRESSION}) {
    ProcResult p = procutil::runChild([t] { DictEnc::eventFlags(t); });
    EXPECT_NE(p.status, 0);
    EXPECT_EQ(p.err, "internal error: internal 10027\n");
  }
}

TEST(DictEncodings, IndexFlags) {
  Class c;
  Index idx;
  idx.m_isUnique = false;
  EXPECT_EQ(DictEnc::indexFlags(idx, c), 2048u);
  // Exactly one kind, tested autoid, history, list.
  idx.m_isListIndex = true;
  EXPECT_EQ(DictEnc::indexFlags(idx, c), 1024u);
  idx.m_isHistoryIndex = true;
  EXPECT_EQ(DictEnc::indexFlags(idx, c), 8192u);
  idx.m_isAutoidIndex = true;
  EXPECT_EQ(DictEnc::indexFlags(idx, c), 4096u);

  Index tri;
  tri.m_IndexType = IT_Trigram;
  tri.m_isUnique = false;
  EXPECT_EQ(DictEnc::indexFlags(tri, c), 2048u | 131072u | 1048576u);
  c.m_persistent = true;
  tri.m_isVoluntary = true;
  EXPECT_EQ(DictEnc::indexFlags(tri, c), 2048u | 131072u | 1048576u | 32u | 64u);

  // Vector- and array-based segments by element category and bit base.
  Struct el(ET_SIMPLE);
  Field key;
  key.m_pstruct = &el;
  const struct {
    bool vector;
    TypeCategory cat;
    bool bits;
    unsigned int flags;
  } rows[] = {
      {true, ET_STRUCT, false, 8},         {true, ET_DIRECT_STRUCT, false, 16}, {true, ET_SIMPLE, true, 1 | 16},
      {false, ET_STRUCT, false, 128},      {false, ET_DIRECT_STRUCT, false, 128}, {false, ET_SIMPLE, true, 2 | 256},
  };
  for (const auto& r : rows) {
    Index v;
    v.m_isUnique = false;
    Index::Segment seg;
    Index::FldEl e;
    e.m_pFld = &key;
    seg.push_back(e);
    seg.m_isVectorBased = r.vector;
    seg.m_isArrayBased = !r.vector;
    seg.m_vectorElCategory = r.cat;
    v.v_fldParsed.push_back(seg);
    v.m_vectorSegmentNum = 0;
    v.m_isBitBased = r.bits;
    EXPECT_EQ(DictEnc::indexFlags(v, Class()), 2048u | r.flags) << r.vector << r.cat;
  }
  Index bad;
  Index::Segment plain;
  bad.v_fldParsed.push_back(plain);
  bad.m_vectorSegmentNum = 0;
  ProcResult p = procutil::runChild([&] { DictEnc::indexFlags(bad, Class()); });
  EXPECT_EQ(p.err, "internal error: internal\n");
}

TEST(DictEncodings, IndexFieldFlags) {
  Struct t(ET_SIMPLE);
  Field key;
  key.m_pstruct = &t;
  Index::Segment seg;
  Index::FldEl e;
  e.m_pFld = &key;
  seg.push_back(e);
  for (int code : {11, 12, 13, 14, 24}) EXPECT_EQ(DictEnc::indexFieldFlags(seg, code, false), 2u) << code;
  for (int code : {18, 6, 9}) EXPECT_EQ(DictEnc::indexFieldFlags(seg, code, false), 0u) << code;
  seg.m_descending = seg.m_case_insensitive = seg.m_isBinaryField = true;
  key.m_isNullable = true;
  EXPECT_EQ(DictEnc::indexFieldFlags(seg, 25, false), 1u | 4u | 8u);
  EXPECT_EQ(DictEnc::indexFieldFlags(seg, 25, true), 1u | 4u | 8u | 16u);
}

// Two segments with a vector on the path are refused by name; two vectors on one path is "10004".
TEST(DictEncodings, VectorOffsetPanics) {
  Index idx;
  idx.m_name = "ix";
  mvector<Index::FieldLayout> segs(2);
  segs[0].vect_field_offset = 4;
  segs[1].vect_field_offset = -1;
  EXPECT_EQ((int)DictEnc::indexVectFieldOffset(idx, segs), 4);
  segs[1].vect_field_offset = 0;
  ProcResult p = procutil::runChild([&] { DictEnc::indexVectFieldOffset(idx, segs); });
  EXPECT_EQ(p.err,
            "internal error: index(ix) : An index on a vector of structs may only include one field of the "
            "structure.\n");

  Struct t(ET_SIMPLE);
  Class c;
  Field v[2];
  FldLayout l[2];
  Index::Segment seg;
  for (int i = 0; i < 2; i++) {
    v[i].m_pstruct = &t;
    v[i].m_isVector = true;
    l[i].m_offset = 8 * (i + 1);
    v[i].m_u_layout = &l[i];
    Index::FldEl e;
    e.m_pFld = &v[i];
    seg.push_back(e);
  }
  p = procutil::runChild([&] { idx.getFieldLayout(seg, &c); });
  EXPECT_EQ(p.err, "internal error: 10004\n");
}

TEST(DictEncodings, NumberingRefusesANumberedStructOrClass) {
  for (bool cls : {false, true}) {
    ProcResult p = procutil::runChild([cls] {
      Schema sc;
      Class* c = new Class();
      c->m_name = "c";
      sc.s_class.insert(HIComparable(c));
      Struct* s = new Struct();
      s->m_name = "s";
      s->m_owners.push_back(c);
      sc.s_struct.insert(HIComparable(s));
      (cls ? static_cast<Struct*>(c) : s)->m_globalNum = 0;
      ClassDictCreator creator(sc, nullptr, false);
    });
    EXPECT_EQ(p.err, cls ? "internal error: internal 100205\n" : "internal error: internal 100204\n");
  }
}

}  // namespace
