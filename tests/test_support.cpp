// Support library: the quirks of its containers and text helpers that the outputs depend on (the rest shows in the
// whole generated files).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ierrrep.h"
#include "dictenc.h"
#include "proc_util.h"
#include "schema.h"
#include "util.h"

namespace {

// ---------------------------------------------------------------- heap sort

struct Item {
  int key = 0;
  char id = 0;
  bool operator<(const Item& o) const { return key < o.key; }
};

std::string sortedIds(const std::vector<Item>& items) {
  mvector<Item> v;
  for (const Item& it : items) v.push_back(it);
  sort_vector(v);
  std::string ids;
  for (unsigned i = 0; i < v.size(); i++) ids += v[i].id;
  return ids;
}

TEST(SupportSort, PlacesEqualElementsAsTheHeapStepsDictate) {
  struct Case {
    std::vector<Item> in;
    const char* ids;
  } cases[] = {
      {{}, ""},
      {{{1, 'a'}}, "a"},
      {{{5, 'a'}, {5, 'b'}, {5, 'c'}}, "bca"},  // all equal: the first ends up last
      {{{1, 'a'}, {1, 'b'}, {0, 'c'}}, "cba"},  // equal keys come out reversed here
      {{{3, 'a'}, {1, 'b'}, {2, 'c'}}, "bca"},
  };
  for (const Case& c : cases) EXPECT_EQ(sortedIds(c.in), c.ids);
}

// Sorting layout records through their keys must place every record exactly
// where the heap steps on the records themselves do, ties included.
TEST(SupportSort, ByKeyMatchesTheDirectSort) {
  Field fields[23];
  unsigned seed = 7;
  for (int round = 0; round < 200; round++) {
    mvector<FldLayout> direct, byKey;
    const int n = round % 23;
    for (int i = 0; i < n; i++) {
      seed = seed * 1103515245u + 12345u;
      FldLayout rec;
      rec.m_ref = &fields[i];
      rec.m_isDirectStruct = (seed >> 20) % 5 == 0;
      rec.m_align = 1 << ((seed >> 16) % 4);
      if ((seed >> 24) % 7 == 0) rec.m_align = mstring("1");  // a text: its number is 0
      direct.push_back(rec);
      byKey.push_back(rec);
    }
    sort_vector(direct);
    sort_vector_by_key(byKey, [](const FldLayout& r) { return r.sortKey(); });
    ASSERT_EQ(direct.size(), byKey.size());
    for (unsigned i = 0; i < direct.size(); i++) ASSERT_EQ(direct[i].m_ref, byKey[i].m_ref) << "round " << round;
  }
}

// A run of fields by name must come out as the heap sort places it, equal
// names included.
TEST(SupportSort, FieldRunsMatchTheHeapSort) {
  unsigned seed = 11;
  for (int round = 0; round < 100; round++) {
    Struct s;
    const int n = round % 40;
    for (int i = 0; i < n; i++) {
      seed = seed * 1103515245u + 12345u;
      Field f;
      f.m_name = mstring(("n" + std::to_string((seed >> 16) % (round % 3 == 0 ? 8 : 1000))).c_str());
      s.v_field.push_back(std::move(f));
    }
    mvector<FieldRef> direct;
    for (int i = 0; i < n; i++) direct.push_back(FieldRef{&s.v_field[i], (unsigned)i});
    sort_vector(direct);
    const mvector<FieldRef> run = ClassDictCreator::fieldRun(s, true);
    ASSERT_EQ(run.size(), direct.size());
    for (unsigned i = 0; i < run.size(); i++) ASSERT_EQ(run[i].pf, direct[i].pf) << "round " << round << " at " << i;
  }
}

// ---------------------------------------------------------------- mvector

TEST(SupportVector, StaleSlotsMovesAndSelfReferences) {
  mvector<mstring> v;
  for (int i = 0; i < 5; i++) v.push_back(mstring(std::to_string(i).c_str()));
  v.pop_back();
  EXPECT_STREQ(v[4].c_str(), "4");  // the slot behind the end keeps its value
  v.resize(6, mstring("f"));        // growing fills the stale slot too
  EXPECT_STREQ(v[4].c_str(), "f");
  for (int i = 0; i < 20; i++) v.push_back(v[0]);  // an element of the vector itself, across growth
  EXPECT_EQ(v.size(), 26u);
  EXPECT_STREQ(v[25].c_str(), "0");
  mvector<mstring> moved(std::move(v));
  EXPECT_EQ(v.size(), 0u);
  EXPECT_EQ(moved.size(), 26u);
  mvector<mstring> copy;
  copy = moved;
  copy = copy;  // assigned to itself it comes out empty, as ever
  EXPECT_EQ(copy.size(), 0u);
  v = std::move(moved);
  EXPECT_STREQ(v[1].c_str(), "1");
}

// ---------------------------------------------------------------- sets

struct Named : IComparable {
  mstring m_name;
  int tag;
  Named(const char* n, int t) : m_name(n), tag(t) {}
  bool less(const IComparable* other) const override {
    return m_name < static_cast<const Named*>(other)->m_name;
  }
  const mstring* key() const override { return &m_name; }
};

std::string walk(const HISet& s) {
  std::string names;
  ISet::HPos pos(s.first());
  while (pos.valid()) {
    HIComparable h = pos.get();
    names += static_cast<Named*>(h.get())->m_name.c_str();
    pos.next();
  }
  return names;
}

TEST(SupportSet, RemoveHidesFromLookupButNotFromIteration) {
  HISet s;
  s.insert(HIComparable(new Named("b", 1)));
  s.insert(HIComparable(new Named("a", 2)));
  s.insert(HIComparable(new Named("c", 3)));
  Named a("a", 0);
  s.get()->remove(a);
  EXPECT_EQ(s.get()->find(a), nullptr);
  EXPECT_EQ(s.get()->size(), 3);
  EXPECT_EQ(walk(s), "bac");
  Named x("x", 0);
  s.get()->remove(x);  // not in the set: nothing changes
  EXPECT_EQ(s.get()->size(), 3);
  EXPECT_TRUE(s.get()->add(HIComparable(new Named("a", 4))));  // a second "a" in iteration
  EXPECT_EQ(walk(s), "baca");
  ISet::HPos pos(s.first());
  for (int i = 0; i < 4; i++) pos.next();
  EXPECT_FALSE(pos.valid());
  EXPECT_EQ(pos.get().get(), nullptr);
}

// Lookups by name go by hash until the names may change; after that a
// renamed object is still found by walking the order.
TEST(SupportSet, FindsByNameBeforeAndAfterRenaming) {
  HISet s;
  for (const char* n : {"m", "c", "x"}) s.insert(HIComparable(new Named(n, 0)));
  Named probe("c", 0);
  ASSERT_TRUE(s.get()->keyed());
  ASSERT_NE(s.get()->find(probe), nullptr);
  Named x("x", 0);
  EXPECT_EQ(s.get()->findKey(mstring("x")), s.get()->find(x));
  EXPECT_FALSE(s.get()->add(HIComparable(new Named("c", 9))));  // the first "c" stays
  s.get()->keysChanged();
  EXPECT_FALSE(s.get()->keyed());
  static_cast<Named*>(s.get()->find(probe)->get())->m_name = "d";  // still between "c" and "m"
  Named renamed("d", 0);
  EXPECT_NE(s.get()->find(renamed), nullptr);
  EXPECT_EQ(s.get()->find(probe), nullptr);
}

// The table of names grows and drops removed names as it goes; the tree that
// takes over holds what is present then.
TEST(SupportSet, ManyNamesRemovalsAndTheTreeThatTakesOver) {
  HISet s;
  for (int i = 0; i < 300; i++) s.insert(HIComparable(new Named(("n" + std::to_string(i)).c_str(), i)));
  for (int i = 0; i < 300; i += 3) s.get()->remove(Named(("n" + std::to_string(i)).c_str(), 0));
  for (int i = 300; i < 400; i++) s.insert(HIComparable(new Named(("n" + std::to_string(i)).c_str(), i)));
  for (int round = 0; round < 2; round++) {
    for (int i = 0; i < 400; i++) {
      const HIComparable* h = s.get()->find(Named(("n" + std::to_string(i)).c_str(), 0));
      ASSERT_EQ(h != nullptr, i >= 300 || i % 3 != 0) << i << " round " << round;
      if (h != nullptr) {
        EXPECT_EQ(static_cast<const Named*>(h->get())->tag, i);
      }
    }
    s.get()->keysChanged();
  }
  EXPECT_EQ(s.get()->size(), 400);
}

// Short lists are searched directly, longer ones by hash: both must agree,
// also across the rebuilds of the table, and compare texts up to a NUL.
TEST(SupportSet, StringSetKeepsOrderAndFindsAcrossItsTableSizes) {
  StringSet set;
  for (int round = 0; round < 2; round++)
    for (int i = 0; i < 100; i++) EXPECT_EQ(set.insert(mstring(("n" + std::to_string(i)).c_str())), round == 0) << i;
  ASSERT_EQ(set.els.size(), 100u);
  EXPECT_STREQ(set.els[0].c_str(), "n0");
  EXPECT_STREQ(set.els[99].c_str(), "n99");
  for (int i = 0; i < 100; i++) EXPECT_TRUE(set.find(mstring(("n" + std::to_string(i)).c_str()))) << i;
  EXPECT_FALSE(set.find(mstring("n100")));
  EXPECT_FALSE(set.find(mstring("")));
  EXPECT_TRUE(set.find(mstring("n7\0tail", 7)));  // the text ends at its NUL
  StringSet small;
  EXPECT_TRUE(small.insert(mstring("")));
  EXPECT_FALSE(small.insert(mstring()));  // no buffer reads as ""
  EXPECT_TRUE(small.find(mstring()));
}

// ---------------------------------------------------------------- streams

// ---------------------------------------------------------------- text helpers

TEST(SupportText, MakefnmJoinsWithOneSeparator) {
  struct Case {
    const char* dir;
    const char* expected;
  } cases[] = {
      {"", "f.h"},
      {"out", "out/f.h"},
      {"out/", "out/f.h"},
      {"out\\", "out/f.h"},
      {"/", "f.h"},  // the root directory comes out as nothing: a kept quirk
      {"/abs", "/abs/f.h"},
  };
  for (const Case& c : cases) EXPECT_EQ(UT::makefnm(c.dir, "f.h"), mstring(c.expected)) << c.dir;
}

TEST(SupportText, BufCutsAtLineEndsAndComments) {
  FILE* f = tmpfile();
  fputs("abc // comment\nx\ry\n", f);
  rewind(f);
  UT::Buf b(5000);
  b.read(f);
  EXPECT_STREQ(b.m_ptr, "abc ");
  b.read(f);
  EXPECT_STREQ(b.m_ptr, "x");
  b.read(f);  // nothing left: the buffer keeps what it held
  EXPECT_STREQ(b.m_ptr, "x");
  fclose(f);
}

}  // namespace
