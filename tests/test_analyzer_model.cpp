// Schema model: symbolic sizes, field layouts, lookups and the system classes and indexes.
#include <gtest/gtest.h>

#include <string>

#include "schema.h"

namespace {

std::string S(const mstring& m) { return m.c_str(); }
std::string T(const FSize& f) { return ((const mstring&)f).c_str(); }

std::string fieldList(const Struct& s) {
  std::string r;
  for (unsigned int i = 0; i < s.v_field.size(); i++) r += (i ? " " : "") + S(s.v_field[i].m_name);
  return r;
}

std::string indexList(const Class& c) {
  std::string r;
  for (unsigned int i = 0; i < c.v_index.size(); i++) {
    const Index& x = c.v_index[i];
    r += (i ? " " : "") + S(x.m_name) + ":";
    for (unsigned int j = 0; j < x.v_indfield.size(); j++) r += (j ? "," : "") + S(x.v_indfield[j]);
  }
  return r;
}

TEST(SchemaFSize, TextForms) {
  struct Case {
    FSize value;
    const char* text;
    bool isStr;
    int number;
  } cases[] = {
      {FSize(), "0", false, 0},
      {FSize(12), "12", false, 12},
      {FSize(mstring("X")), "X", true, 0},
      {FSize(-4), "-4", false, -4},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(T(c.value), c.text);
    EXPECT_EQ(c.value.is_str(), c.isStr) << c.text;
    EXPECT_EQ((int)c.value, c.number) << c.text;
  }
}

TEST(SchemaFSize, AdditionKeepsNumberAndJoinsTexts) {
  FSize x(mstring("X"));
  x += FSize(12);
  EXPECT_EQ(T(x), "12+X");
  EXPECT_TRUE(x.is_str());
  EXPECT_EQ((int)x, 12);

  FSize a(mstring("A"));
  a.m_size_n = 4;
  FSize b(mstring("B"));
  b.m_size_n = 8;
  a += b;
  EXPECT_EQ(a.m_size_n, 12);
  EXPECT_EQ(S(a.m_size_s), "A+B");
  EXPECT_EQ(T(a), "12+A+B");

  FSize n(3);
  n += FSize(mstring("E"));  // a number plus an expression takes the expression over
  EXPECT_EQ(T(n), "3+E");
  n += FSize(5);
  EXPECT_EQ(T(n), "8+E");
}

TEST(SchemaFSize, AssignmentAndComparison) {
  FSize f(12);
  f.m_calc_type_size = 7;
  const mstring& r = (f = mstring("X"));
  EXPECT_EQ(S(r), "X");
  EXPECT_EQ(f.m_size_n, 0);  // the number is lost
  EXPECT_EQ(f.m_calc_type_size, 7);
  EXPECT_EQ((f = 5), 5);
  EXPECT_EQ(f.m_calc_type_size, 0);
  EXPECT_FALSE(f.is_str());

  FSize g(mstring("Y"));
  (void)(const mstring&)g;  // tmp holds "Y"
  FSize h(12);
  g = h;  // leaves tmp alone
  EXPECT_EQ(S(g.tmp), "Y");
  FSize copy(g);  // copies tmp too
  EXPECT_EQ(S(copy.tmp), "Y");

  FSize p(mstring("X")), q(mstring("X"));
  p.m_size_n = q.m_size_n = 12;
  EXPECT_TRUE(p == q);
  EXPECT_FALSE(p == FSize(12));
  FSize ab(mstring("A+B")), ba(mstring("B+A"));
  EXPECT_FALSE(ab == ba);
  EXPECT_TRUE(FSize(2) > FSize(mstring("1")));  // text compares as 0
  EXPECT_FALSE(p > FSize(12));
  EXPECT_EQ(S(UT::Q(p)), "\"12+X\"");
}

class SchemaLayout : public ::testing::Test {
protected:
  Struct cont{ET_STRUCT};
  Struct direct{ET_DIRECT_STRUCT};
  Field f;
  void SetUp() override {
    cont.m_name = "box";
    direct.m_name = "ds";
    direct.m_isDirectStruct = true;
    f.m_name = "fld";
    f.m_containerStruct = &cont;
  }
};

TEST_F(SchemaLayout, NullRefClearsFlagsOnly) {
  FldLayout l;
  l.m_isDirectStruct = l.m_inDirectStruct = true;
  l.m_size = 4;
  l.update_strings();
  EXPECT_FALSE(l.m_isDirectStruct);
  EXPECT_FALSE(l.m_inDirectStruct);
  EXPECT_EQ(T(l.m_size), "4");
}

TEST_F(SchemaLayout, FieldInsideDirectStruct) {
  f.m_containerStruct = &direct;
  FldLayout l;
  l.m_ref = &f;
  l.m_size = 8;
  l.m_align = 8;
  l.update_strings();
  EXPECT_TRUE(l.m_inDirectStruct);
  EXPECT_EQ(T(l.m_offset), "fieldoffs(ds_d_aligned_to_1, fld)");
  EXPECT_EQ(T(l.m_size), "fieldsz(ds_d_aligned_to_1, fld)");
  EXPECT_EQ(l.m_size.m_calc_type_size, 8);
  EXPECT_EQ(T(l.m_align), "1");
  l.update_strings();  // a second call keeps the texts
  EXPECT_EQ(l.m_size.m_calc_type_size, 8);
  EXPECT_EQ(T(l.m_size), "fieldsz(ds_d_aligned_to_1, fld)");
}

TEST_F(SchemaLayout, DirectStructField) {
  f.m_isDirectStruct = true;
  f.m_pstruct = &direct;
  FldLayout l;
  l.m_ref = &f;
  l.m_size = 16;
  l.m_offset = 4;
  l.m_align = mstring("A");
  l.update_strings();
  EXPECT_TRUE(l.m_isDirectStruct);
  EXPECT_FALSE(l.m_inDirectStruct);
  EXPECT_EQ(T(l.m_offset), "structsz(ds_d_aligned_to_1)");
  EXPECT_EQ(T(l.m_size), "structsz(ds_d_aligned_to_1)");
  EXPECT_EQ(T(l.m_align), "A");  // texts stay

  f.m_isVector = true;  // a vector of direct structs keeps its numbers
  FldLayout v;
  v.m_ref = &f;
  v.m_size = 8;
  v.m_align = 4;
  v.update_strings();
  EXPECT_TRUE(v.m_isDirectStruct);
  EXPECT_EQ(T(v.m_size), "8");
  EXPECT_EQ(T(v.m_align), "4");
}

TEST_F(SchemaLayout, StorageOrder) {
  FldLayout big, small, directSmall;
  big.m_align = 8;
  small.m_align = 2;
  directSmall.m_align = 1;
  directSmall.m_isDirectStruct = true;
  EXPECT_TRUE(big < small);
  EXPECT_FALSE(small < big);
  EXPECT_FALSE(big < big);
  EXPECT_TRUE(small < directSmall);  // direct-struct fields go last
  EXPECT_FALSE(directSmall < big);

  mvector<FldLayout> v;
  v.push_back(directSmall);
  v.push_back(small);
  v.push_back(big);
  sort_vector(v);  // ascending by operator<: the storage order
  EXPECT_EQ((int)v[0].m_align, 8);
  EXPECT_EQ((int)v[1].m_align, 2);
  EXPECT_TRUE(v[2].m_isDirectStruct);

  Layout2 l2;
  l2.c.m_size = FSize(mstring("X"));
  l2.u.m_size = FSize(mstring("X"));
  EXPECT_TRUE(l2.is_size_equal());
  l2.u.m_size.m_size_n = 1;
  EXPECT_FALSE(l2.is_size_equal());
  EXPECT_FALSE(l2.finished());

  Field a, b;
  a.m_name = "b";
  b.m_name = "a";
  FieldRef ra, rb;
  ra.pf = &a;
  rb.pf = &b;
  EXPECT_TRUE(rb < ra);
  EXPECT_FALSE(ra < rb);
}

TEST(SchemaModel, BaseTypeConstructor) {
  Struct blob("blob", ET_BLOB, 8, 8, 4, 4, "");
  EXPECT_TRUE(blob.m_analyzed);
  EXPECT_TRUE(blob.m_isDynamic);
  EXPECT_TRUE(blob.m_hasBlobs);
  Struct str("string", ET_STRING, 2, 4, 2, 4, "");
  EXPECT_TRUE(str.m_isDynamic);
  EXPECT_EQ((int)str.m_layout.c.m_size, 2);
  EXPECT_EQ((int)str.m_layout.u.m_align, 4);
  Struct i4("signed<4>", ET_SIMPLE, 4, 4, 4, 4, "int4");
  EXPECT_FALSE(i4.m_isDynamic);
  EXPECT_EQ(S(i4.m_cType), "int4");
  EXPECT_FALSE(i4.m_isClass);
  for (TypeCategory c : {ET_STRUCT, ET_DIRECT_STRUCT}) {
    bool thrown = false;
    try {
      Struct bad("x", c, 1, 1, 1, 1, "");
    } catch (const char* text) {
      thrown = std::string(text) == " illegal category ";
    }
    EXPECT_TRUE(thrown) << c;
  }
  Struct plain;
  EXPECT_EQ(plain.m_category, ET_STRUCT);
  EXPECT_TRUE(plain.m_isDynamic);
  EXPECT_FALSE(plain.m_analyzed);
  EXPECT_EQ(plain.m_globalNum, -1);
}

TEST(SchemaModel, LookupsKeepTypesAndClassesApart) {
  Schema s;
  Struct* t = new Struct(ET_STRUCT);
  t->m_name = "x";
  s.s_struct.insert(HIComparable(t));
  Class* c = new Class();
  c->m_name = "y";
  s.s_class.insert(HIComparable(c));
  Enum* e = new Enum();
  e->m_name = "e";
  s.s_enum.insert(HIComparable(e));
  Collation* coll = new Collation();
  coll->m_name = "k";
  s.s_coll.insert(HIComparable(coll));

  EXPECT_EQ(s.findType("x"), t);
  EXPECT_EQ(s.findType("y"), nullptr);
  EXPECT_EQ(s.findClass("y"), c);
  EXPECT_EQ(s.findClass("x"), nullptr);
  EXPECT_EQ(s.findEnum("e"), e);
  EXPECT_EQ(s.findCollation("k"), coll);
  EXPECT_EQ(s.findCollation("e"), nullptr);
  EXPECT_EQ(S(coll->m_name), "k");
  EXPECT_EQ(coll->ctype, 0);
  EXPECT_TRUE(coll->suppressed);
  EXPECT_TRUE(coll->isTree);

  s.m_dbname = "db";
  EXPECT_EQ(S(s.objIdName()), "db_oid");
  EXPECT_FALSE(s.auto_oid_declared());
  EXPECT_EQ(S(s.m_iot_agentId), "0");

  c->addOwner(c);
  c->addOwner(c);
  EXPECT_EQ(t->m_owners.size(), 0u);
  EXPECT_EQ(c->m_owners.size(), 1u);
}

TEST(SchemaModel, ClassEventsAndIndexedFields) {
  Class c;
  c.addSysField("a", "signed<4>", false, nullptr);
  c.addSysField("b", "boolean", true, "1");
  EXPECT_EQ(c.v_field[1].m_no, 1u);
  EXPECT_EQ(c.v_field[1].m_seq_no, 0u);
  EXPECT_TRUE(c.v_field[1].m_isHidden);
  EXPECT_EQ(c.v_field[1].m_containerStruct, &c);
  ASSERT_EQ(c.v_field[1].m_initVals.size(), 1u);
  EXPECT_EQ(S(c.v_field[1].m_initVals[0]), "1");
  EXPECT_EQ(c.findField("b"), &c.v_field[1]);
  EXPECT_EQ(c.findField("z"), nullptr);

  // a is nullable with b as its indicator; an index over a answers for both.
  c.v_field[0].m_isNullable = true;
  c.v_field[0].m_indicator = 1;
  c.v_field[1].m_isIndicator = true;
  Index idx;
  idx.m_name = "i";
  Index::Segment seg;
  Index::FldEl el;
  el.m_name = "a";
  seg.push_back(el);
  idx.v_fldParsed.push_back(seg);
  c.addIndex(idx);
  c.addIndex(idx);  // no duplicate test
  EXPECT_EQ(c.v_index.size(), 2u);
  EXPECT_TRUE(c.s_indexNames.find("i"));
  EXPECT_TRUE(c.fieldIsIndexed(c.v_field[0]));
  EXPECT_TRUE(c.fieldIsIndexed(c.v_field[1]));
  EXPECT_EQ(S(c.v_index[0].v_fldParsed[0].last().m_name), "a");

  Event ev[4];
  ev[0].m_type = Event::NEW;
  ev[0].m_eventId = 3;
  ev[1].m_type = Event::NEW;
  ev[1].m_eventId = 4;
  ev[2].m_type = Event::UPDATE;
  ev[2].m_fldName = "a";
  ev[2].m_eventId = 5;
  ev[3].m_type = Event::CLASS_UPDATE;
  ev[3].m_eventId = 6;
  for (const Event& e : ev) c.v_events.push_back(e);
  EXPECT_EQ(c.getNewEvent(), 3);  // the first of its kind
  EXPECT_EQ(c.getDeleteEvent(), -1);
  EXPECT_EQ(c.getClassUpdateEvent(), 6);
  EXPECT_EQ(c.getUpdateEvent(&c, c.v_field[0]), 5);
  Struct embedded;
  EXPECT_EQ(c.getUpdateEvent(&embedded, c.v_field[0]), -1);  // a field of an embedded struct has none
  EXPECT_EQ(c.getUpdateEvent(&c, c.v_field[1]), -1);
  EXPECT_EQ(c.getEventPos(5), 2);
  EXPECT_EQ(c.getEventPos(9), -1);
}

TEST(SchemaModel, SysIndex) {
  SysIndex h("x", IT_Hash, true);
  EXPECT_EQ(h.m_expectedCount, 1000);
  EXPECT_TRUE(h.m_hidden);
  EXPECT_TRUE(h.m_isUnique);
  SysIndex t("y", IT_Tree, false);
  EXPECT_EQ(t.m_expectedCount, 0);
  EXPECT_FALSE(t.m_isUnique);
  t.addField("f");
  ASSERT_EQ(t.v_indfield.size(), 1u);
  EXPECT_FALSE(t.v_descending[0]);
  EXPECT_FALSE(t.v_case_insensitive[0]);
  EXPECT_EQ(S(t.v_colls[0]), "");
}

TEST(SchemaModel, DistribClass) {
  SysDistribClass disk(true), mem(false);
  EXPECT_EQ(S(disk.m_name), "@sys_distribs_disk");
  EXPECT_EQ(S(mem.m_name), "@sys_distribs_inmem");
  EXPECT_TRUE(disk.m_local);
  EXPECT_TRUE(disk.m_persistent);
  EXPECT_FALSE(mem.m_persistent);
  EXPECT_TRUE(disk.m_hidden);
  EXPECT_TRUE(disk.m_suppressApi);
  EXPECT_FALSE(disk.m_isClass);
  EXPECT_FALSE(disk.m_analyzed);
  EXPECT_TRUE(disk.m_atomic);
  EXPECT_EQ(fieldList(disk), "auto_oid@ auto_oid timestamp class_code");
  for (unsigned int i = 0; i < disk.v_field.size(); i++) EXPECT_FALSE(disk.v_field[i].m_isHidden) << i;
  EXPECT_EQ(S(disk.v_field[3].m_eltype), "unsigned<2>");
  EXPECT_EQ(indexList(disk), "ts_idx:class_code,timestamp ao_idx:auto_oid,class_code");
  EXPECT_FALSE(disk.v_index[0].m_isUnique);
  EXPECT_EQ(disk.v_index[1].m_IndexType, IT_Hash);
}

TEST(SchemaModel, IotClasses) {
  struct Case {
    unsigned short level;
    unsigned int haEstimate;
    const char* tsFields;
    const char* delFields;
    const char* delIndexes;
    const char* dbid;
  } cases[] = {
      {65535, 0, "type src dbid dst value", "class_code object_id timestamp", "ts_idx:timestamp", "65535"},
      {1, 0, "type src dbid dst value", "class_code dst_agent_id object_id timestamp",
       "ts_idx:dst_agent_id,timestamp", "1"},
      {7, 5, "auto_oid@ type src dbid dst value",
       "auto_oid@ class_code src_agent_id db_id dst_agent_id object_id timestamp",
       "ts_idx:src_agent_id,db_id,dst_agent_id,timestamp id_idx:src_agent_id,db_id,object_id", "7"},
  };
  for (const Case& c : cases) {
    Schema s;
    s.m_iot_level = c.level;
    s.m_HA_estimate = c.haEstimate;
    s.m_iot_agentId = "42";
    SysIoTTsClass ts(false, s);
    SysIoTDelClass del(true, s);
    EXPECT_EQ(S(ts.m_name), "@sys_iot_ts");
    EXPECT_FALSE(ts.m_local);
    EXPECT_EQ(S(del.m_name), "@sys_iot_del_disk");
    EXPECT_EQ(fieldList(ts), c.tsFields) << c.level;
    EXPECT_EQ(fieldList(del), c.delFields) << c.level;
    EXPECT_EQ(indexList(ts), "idx:type,dst,src,dbid");
    EXPECT_TRUE(ts.v_index[0].m_isUnique);
    EXPECT_EQ(indexList(del), c.delIndexes) << c.level;
    for (unsigned int i = 0; i < ts.v_field.size(); i++) EXPECT_TRUE(ts.v_field[i].m_isHidden);
    for (unsigned int i = 0; i < del.v_field.size(); i++) EXPECT_TRUE(del.v_field[i].m_isHidden);
    const Field* src = ts.findField("src");
    ASSERT_EQ(src->m_initVals.size(), 1u);
    EXPECT_EQ(S(src->m_initVals[0]), "42");
    EXPECT_EQ(S(ts.findField("dbid")->m_initVals[0]), c.dbid);
    EXPECT_EQ(ts.findField("dst")->m_initVals.size(), 0u);
    EXPECT_EQ(S(ts.findField("type")->m_eltype), "unsigned<1>");
  }
  Schema s;
  s.m_iot_level = 1;
  SysIoTDelClass mem(false, s);
  EXPECT_EQ(S(mem.m_name), "@sys_iot_del_inmem");
}

}  // namespace
