// Placeholder filler: only {identifier} is special, one pass, an unknown name stops the compile.
#include <gtest/gtest.h>

#include <string>

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

TEST(Frag, UnknownNameStops) {
  ProcResult r = procutil::runChild([] { Frag().set("a", mstring("x")).fill("{a}{ab}"); });
  EXPECT_EQ(r.status, 255);
  EXPECT_EQ(r.err, "internal error: undefined placeholder {ab} in generated text\n");
}

}  // namespace
