// Token reader tests: token splitting, typed reads, their errors and positions, and UT::CVT.
#include <gtest/gtest.h>

#include "frontend_util.h"

using frontend::Outcome;
using frontend::Reader;

namespace {

struct SplitCase {
  const char* text;
  std::vector<std::string> tokens;
};

TEST(ParserTokens, Splitting) {
  const SplitCase cases[] = {
      {"a-b", {"a", "-", "b"}},
      {"x=1;", {"x", "=", "1", ";"}},
      {"5-3", {"5", "-3"}},
      {"- 1 -a", {"-", "1", "-", "a"}},
      {"0x1G", {"0x1", "G"}},
      {"0xG", {"0x", "G"}},
      {"0X1F", {"0x1F"}},  // the preprocessor lowers the X
      {"1e5", {"1", "e5"}},
      {"1.2.3 05", {"1.2.3", "05"}},
      {"{a}<b>;,()[]:*.=", {"{", "a", "}", "<", "b", ">", ";", ",", "(", ")", "[", "]", ":", "*", ".", "="}},
      {"\"\" x", {"\"\"", "x"}},
      {"\"a \\\"b\" c", {"\"a \\\"b\"", "c"}},
      // get looks at one character before a quote only: two backslashes don't end it.
      {"\"a\\\\\" b \"c\"", {"\"a\\\\\"  b  \"", "c", "\""}},
      {"@ x", {"@", "x"}},  // a strange character before a blank is a token
      {"@x", {"@", "x"}},   // names get blanks around them first
      {"a\n\n  \nb", {"a", "b"}},
  };
  for (const SplitCase& c : cases) {
    SCOPED_TRACE(c.text);
    Reader r{std::string(c.text)};
    std::vector<std::string> toks;
    Outcome o = frontend::readTokens(r.parser, toks);
    EXPECT_FALSE(o.failed) << o.msg;
    EXPECT_EQ(toks, c.tokens);
  }
}

enum Op { Num, NumOrBack, Signed, Name, Quoted, Match };

// Runs one typed read and renders its result as text.
std::string run(Parser& p, Op op) {
  switch (op) {
    case Num: return std::to_string(p.getNum());
    case NumOrBack: return std::to_string(p.getNumEx(true));
    case Signed: return std::to_string(p.getSigned());
    case Name: return p.getName().c_str();
    case Quoted: return p.getQuotedString().c_str();
    case Match: return p.match("y") ? "true" : "false";
  }
  return "unknown op";
}

struct ReadCase {
  const char* text;
  Op op;
  const char* result;
  const char* next;  // the token a following get returns
};

TEST(ParserReads, Values) {
  const ReadCase cases[] = {
      {"0", Num, "0", ""},  // octal zero passes though not positive
      {"42 x", Num, "42", "x"},
      {"0x1F", Num, "31", ""},
      {"017", Num, "15", ""},
      {"0xG", Num, "0", "G"},
      {"0x100000001", Num, "1", ""},  // cut to 32 bits
      {"word", NumOrBack, "0", "word"},
      {"-5 x", NumOrBack, "4294967291", "-5"},
      {"-5", Signed, "-5", ""},
      {"-0x5", Signed, "0", "x5"},  // hexadecimal has no sign
      {"", Signed, "0", ""},
      {"abc_1 x", Name, "abc_1", "x"},
      {"y z", Match, "true", "z"},
      {"  \"a\\\"b\" x", Quoted, "\"a\\\"b\"", "x"},
      {"\n  \n \"s\"", Quoted, "\"s\"", ""},
      {"\"a\\\\\" b \"c\"", Quoted, "\"a\\\\\"", "b"},  // keeps an escape flag, unlike get
      {"", Quoted, "", ""},
  };
  for (const ReadCase& c : cases) {
    SCOPED_TRACE(c.text);
    Reader r{std::string(c.text)};
    std::string got, next;
    Outcome o = frontend::attempt([&] {
      got = run(r.parser, c.op);
      next = r.parser.get().c_str();
    });
    EXPECT_FALSE(o.failed) << o.msg;
    EXPECT_EQ(got, c.result);
    EXPECT_EQ(next, c.next);
  }
}

struct ReadErrorCase {
  const char* text;
  Op op;
  const char* msg;
  int line;
  int pos;  // a column of the rewritten line, with blanks around names
};

TEST(ParserReads, Errors) {
  const ReadErrorCase cases[] = {
      {"-1", Num, "positive number expected, found -1", 1, 2},
      {"1.5", Num, "positive number expected, found 1.5", 1, 3},
      {"", Num, "positive number expected, found #1", 1, 0},
      {"08", Num, "not an octal number: 08", 1, 2},
      {"0.5", Signed, "not an octal number: 0.5", 1, 3},
      {"1.5", Signed, "number expected, found 1.5", 1, 3},
      {"x\n -", Signed, "number expected, found x", 1, 2},
      {"9", Name, "identifier expected, found \"9\"", 1, 1},
      {"\n", Name, "identifier expected, found \"#1\"", 2, 0},  // end of input
      {"x", Match, "expected \"y\"", 1, 2},
      {"abc", Quoted, "opening double quote is expected", 1, 1},
      // A macro value may hold a lone quote: the preprocessor leaves it alone.
      {"#define Q \"abc\nQ", Quoted, "closing double quote is expected", 2, 8},
      {"\n@1", Name, "Unrecognized Symbol \"1\"", 2, 1},  // names the character behind
      {"\n  @@", Name, "Unrecognized Symbol \"@\"", 2, 3},
  };
  for (const ReadErrorCase& c : cases) {
    SCOPED_TRACE(c.text);
    Reader r{std::string(c.text)};
    Outcome o = frontend::attempt([&] { run(r.parser, c.op); });
    EXPECT_TRUE(o.failed);
    EXPECT_EQ(o.msg, c.msg);
    EXPECT_EQ(o.file, "main.sch");
    EXPECT_EQ(o.line, c.line);
    EXPECT_EQ(o.pos, c.pos);
  }
}

TEST(ParserReads, TakeBack) {
  Reader r{std::string("a\nb \"s\"")};
  mstring a = r.parser.get(), b = r.parser.get();
  r.parser.takeBack(a);
  r.parser.takeBack(b);
  EXPECT_STREQ(r.parser.get().c_str(), "b");  // last in, first out
  // getQuotedString reads on in the line and doesn't see pushed-back tokens.
  EXPECT_STREQ(r.parser.getQuotedString().c_str(), "\"s\"");
  EXPECT_STREQ(r.parser.get().c_str(), "a");
  EXPECT_STREQ(r.parser.get().c_str(), "");

  mstring bad("0xZ1");  // get never makes such a token
  r.parser.takeBack(bad);
  EXPECT_EQ(frontend::attempt([&] { r.parser.getNum(); }).msg, "not a hex number: \"0xZ1\"");
}

struct CvtCase {
  bool (*fn)(const char*, long*);
  const char* text;
  bool ok;
  long value;  // stays 99 when the conversion fails
};

TEST(CvtConversions, Integers) {
  const CvtCase cases[] = {
      {UT::CVT::fromHex, "0XfF", true, 255},
      {UT::CVT::fromHex, "0xFFFFFFFFFFFFFFFFF", true, -1},  // wraps, no overflow check
      {UT::CVT::fromHex, "0x1g", false, 99},
      {UT::CVT::fromHex, "12", false, 99},
      {UT::CVT::fromOct, "017", true, 15},
      {UT::CVT::fromOct, "08", false, 99},
      {UT::CVT::fromOct, "17", false, 99},
      {UT::CVT::s2int, "0x1f", true, 31},
      {UT::CVT::s2int, "010", true, 8},
      {UT::CVT::s2int, "-12", true, -12},
      {UT::CVT::s2int, "12a", false, 99},
  };
  for (const CvtCase& c : cases) {
    long n = 99;
    EXPECT_EQ(c.fn(c.text, &n), c.ok) << c.text;
    EXPECT_EQ(n, c.value) << c.text;
  }
}

}  // namespace
