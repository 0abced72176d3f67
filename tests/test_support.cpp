// Support library: the quirks of its containers and text helpers that the outputs depend on (the rest shows in the
// whole generated files).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ierrrep.h"
#include "proc_util.h"
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

// ---------------------------------------------------------------- sets

struct Named : IComparable {
  mstring m_name;
  int tag;
  Named(const char* n, int t) : m_name(n), tag(t) {}
  bool less(const IComparable* other) const override {
    return m_name < static_cast<const Named*>(other)->m_name;
  }
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
