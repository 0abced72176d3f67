// Symbolic sizes: the arithmetic and comparisons behind the layout texts of direct structs.
#include <gtest/gtest.h>

#include <string>

#include "schema.h"

namespace {

std::string S(const mstring& m) { return m.c_str(); }
std::string T(const FSize& f) { return ((const mstring&)f).c_str(); }

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

}  // namespace
