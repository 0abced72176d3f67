// Placeholder filler: only {identifier} is special, one pass, an unknown name stops the compile.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "proc_util.h"
#include "util.h"

namespace {

TEST(Frag, Fills) {
  Frag fr;
  fr.set("a", mstring("x")).set("ab", mstring("yy")).set("ctype", mstring("int")).set("n", -1L);
  fr.set("loop", mstring("{a}"));
  // clang-format off
  const struct { const char* text; const char* want; } rows[] = {
    // text                      filled
    { "{a}",                     "x" },
    { "{ab}{a}",                 "yyx" },          // names that share a start
    { "{{ctype} _scaled_num;",   "{int _scaled_num;" },  // a brace before a placeholder is literal
    { "  p() {{nl",              "  p() {{nl" },   // no closing brace: literal
    { "{ a }",                   "{ a }" },        // blanks: literal
    { "{1a}",                    "{1a}" },         // not a name: literal
    { "{}",                      "{}" },
    { "{n}",                     "-1" },
    { "{loop}",                  "{a}" },          // a value is never scanned again
    { "} {",                     "} {" },
  };
  // clang-format on
  for (const auto& r : rows) EXPECT_EQ(std::string(fr.fill(r.text).c_str()), r.want) << r.text;
}

TEST(Frag, SetAgainReplaces) {
  Frag fr;
  fr.set("a", mstring("1"));
  fr.set("a", mstring("2"));
  EXPECT_EQ(std::string(fr.fill("{a}").c_str()), "2");
}

// One Frag set again and again with values of every length, and one fragment
// text filled by Frags with different values: each fill shows its own values.
TEST(Frag, ManyValuesAndSharedTexts) {
  Frag reused;
  std::string want;
  for (int i = 0; i < 5000; i++) {
    want.assign((size_t)(i * 37 % 300), (char)('a' + i % 26));
    reused.set("v", mstring(want.c_str())).set("n", (long)i);
    ASSERT_EQ(std::string(reused.fill("<{v}|{n}>").c_str()), "<" + want + "|" + std::to_string(i) + ">");
  }
  Frag wide;  // more names than the index holds; names live as long as literals
  static const std::vector<std::string> names = [] {
    std::vector<std::string> v;
    for (int i = 0; i < 200; i++) v.push_back("p" + std::to_string(i));
    return v;
  }();
  for (int i = 0; i < 200; i++) wide.set(names[i].c_str(), (long)i);
  EXPECT_STREQ(wide.fill("{p0}{p95}{p96}{p199}").c_str(), "09596199");
  static const char kText[] = "[{x}]";
  EXPECT_STREQ(Frag().set("x", "one").fill(kText).c_str(), "[one]");
  EXPECT_STREQ(Frag().set("x", "two").fill(kText).c_str(), "[two]");
}

TEST(Frag, UnknownNameStops) {
  ProcResult r = procutil::runChild([] { Frag().set("a", mstring("x")).fill("{a}{ab}"); });
  EXPECT_EQ(r.status, 255);
  EXPECT_EQ(r.err, "internal error: undefined placeholder {ab} in generated text\n");
  // Also when the text would go nowhere.
  r = procutil::runChild([] {
    HIOutStream null(IOutStream::createNullStream());
    Frag().fillTo(*null.get(), "{a}");
  });
  EXPECT_EQ(r.err, "internal error: undefined placeholder {a} in generated text\n");
}

}  // namespace
