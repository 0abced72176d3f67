// Preprocessor tests: line rewriting, comments, directives, includes, line numbers and hostile input.
#include <dirent.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "frontend_util.h"
#include "proc_util.h"

using frontend::Outcome;
using frontend::Reader;
using procutil::TempDir;

namespace {

struct LinesCase {
  std::string text;
  std::vector<std::string> lines;
};

// Every line the preprocessor gives; directives and comment-only lines are empty.
TEST(PreprocessorRewrite, Lines) {
  const LinesCase cases[] = {
      {"a-b", {" a - b "}},
      {"x=1;", {" x =1;"}},
      {"0X1f+0xAB", {"0x1f+0xAB"}},  // hex numbers stay whole, with a small x
      {"0xG", {"0x G "}},
      {"0abc", {"0a bc "}},  // a name never starts right behind "0"
      {"1e5", {"1 e5 "}},
      {"#define X 1\n\"X\\\"X\" X", {"", "\"X\\\"X\"  1 "}},  // literals verbatim
      {"a /* b */ c", {" a" + std::string(11, ' ') + "c "}},   // columns kept
      {"a /* b\nc */ d\ne", {" a  ", std::string(6, ' ') + "d ", " e "}},
      {"/* x\ny\n*/z", {"", "   z "}},  // one readLine swallows the comment's lines
      {"a // b", {" a  "}},
      // "//" is cut first, so this comment runs on to the next "*/".
      {"x /* // */ y\nz */ w", {" x  ", std::string(6, ' ') + "w "}},
      {"#define X 1 + Y\n#define Y 2\nX", {"", "", " 1 +  2  "}},
      {"#define H 0x1F\nH", {"", " 0x1 F  "}},         // no hex rule in macro values
      {"#define A z\n#define Q \"A\"\nQ", {"", "", " \"  z  \" "}},  // nor string rule
      {"a\xff" "b", {" a \xff b "}},
      {std::string("a\0b\nc", 5), {" a ", " c "}},  // a NUL ends the line's text
      {"#ifdef X\n#endif\n", {"", "", ""}},          // the read meeting the end gives a line
  };
  for (const LinesCase& c : cases) {
    SCOPED_TRACE(c.text);
    Reader r(c.text);
    std::vector<std::string> lines;
    Outcome o = frontend::readLines(r.parser.m_prepr, lines);
    EXPECT_FALSE(o.failed) << o.msg;
    EXPECT_EQ(lines, c.lines);
  }
}

struct TokensCase {
  const char* text;
  const char* tokens;
};

TEST(PreprocessorDirectives, ActiveText) {
  const TokensCase cases[] = {
      {"#define A\n#ifdef A\n#ifdef B\nb\n#else\nnb\n#endif\na\n#else\nna\n#endif", "nb a"},
      // In an inactive block #define does nothing and an inner #else stays off.
      {"#ifdef NO\n#define X 1\n#ifdef Y\n#else\ninner\n#endif\n#endif\nX", "X"},
      {"#ifdef NO\n#ifdef NO2\n#else\nbad\n#endif\n#else\ngood\n#endif", "good"},
      {"#ifndef NO\nyes\n#else\nno\n#endif", "yes"},
      {"#define X\n#ifdef X // note\nhidden\n#else\nshown\n#endif", "shown"},  // name is "X "
      {"#define X 1\n#undef X\n#define X 2\nX", "2"},
      {"#define X\n#undef X \n#ifdef X\nno\n#endif", ""},
      {"#undef NEVER\nok", "ok"},
      {"#pragma once\n#foo\nok", "ok"},  // unknown directives are ignored
      {"# define X 1", "# define X 1"},   // no directive: a blank behind "#"
      {"#define E\n[E]", "[ ]"},
  };
  for (const TokensCase& c : cases) {
    SCOPED_TRACE(c.text);
    Reader r{std::string(c.text)};
    EXPECT_EQ(frontend::tokensOf(r.parser), c.tokens);
  }
}

struct ErrorCase {
  std::string text;
  const char* msg;
  int line;
};

// The preprocessor's own errors carry file and line, never a position.
TEST(PreprocessorErrors, MessageAndLine) {
  const ErrorCase cases[] = {
      {"/* open\n", "comment is not closed with */", 2},  // no table row: shown as is
      {"#ifdef X\n", "no #endif for #if", 2},  // one past the last line
      {"x\n#endif\n", "#endif without matching #if", 2},
      {"#else\n", "#else without matching #if", 1},
      {"#ifdef X\n#else\n#else\n#endif\n", "#else without matching #if", 3},
      {"#ifdef X\n#else Y\n#endif\n", "extra words after #else", 2},
      {"#define X 1\n#define X 2\n", "macro \"X\" already defined", 2},
      {"#undef X Y\n", "illegal #undef command - extra words", 1},
      {"#define X X\n\nX\n", "recursion in macro", 3},
      {"#define A B\n#define B A\nA\n", "recursion in macro", 3},
      {"a = \"x\n", "non-terminated string literal", 1},
      {"a = \"x//y\";\n", "non-terminated string literal", 1},
      {"a = \"x\\\"\n", "non-terminated string literal", 1},
      {"#include \"\"\n", "incorrect #include syntax", 1},
      {"#include \"a.sch\" \n", "incorrect #include syntax", 1},
      {"#include a.sch\n", "incorrect #include syntax", 1},
      {std::string(5000, 'a') + "\n#endif\n", "#endif without matching #if", 3},  // 4999 a read
  };
  for (const ErrorCase& c : cases) {
    SCOPED_TRACE(c.text.substr(0, 60));
    Reader r(c.text);
    std::vector<std::string> toks;
    Outcome o = frontend::readTokens(r.parser, toks);
    EXPECT_TRUE(o.failed);
    EXPECT_EQ(o.msg, c.msg);
    EXPECT_EQ(o.file, "main.sch");
    EXPECT_EQ(o.line, c.line);
    EXPECT_EQ(o.pos, 0);
  }
}

// Expansion may nest through levels 0 to 20: a chain of 21 macros works, 22 don't.
TEST(PreprocessorErrors, MacroRecursionLimit) {
  for (int n : {21, 22}) {
    std::string text;
    for (int i = 1; i < n; i++) text += "#define M" + std::to_string(i) + " M" + std::to_string(i + 1) + "\n";
    text += "#define M" + std::to_string(n) + " w\nM1\n";
    Reader r(text);
    EXPECT_EQ(frontend::tokensOf(r.parser), n == 21 ? "w" : "error: recursion in macro") << n;
  }
}

// Macros that each name the next ten times would take 10^20 expansions: the
// line is refused instead of hanging.
TEST(PreprocessorErrors, ExponentialExpansionIsRefused) {
  std::string text;
  for (int i = 1; i < 20; i++) {
    text += "#define M" + std::to_string(i);
    for (int k = 0; k < 10; k++) text += " M" + std::to_string(i + 1);
    text += "\n";
  }
  text += "#define M20 w\nM1\n";
  Reader r(text);
  EXPECT_EQ(frontend::tokensOf(r.parser), "error: macro expansion is too large");
}

TEST(PreprocessorInclude, FormsAndPlaces) {
  TempDir d;
  d.write("inc.sch", "from_inc\n");
  d.write("open.sch", "#ifdef NO\n");     // block closed by the includer
  d.write("close.sch", "x\n#endif\n");    // block opened by the includer
  d.write("bad.sch", "x\n\"open\n");
  d.write("comment.sch", "/* x\n");
  mkdir((d.path + "/sub").c_str(), 0700);  // a directory reads as an empty file
  const std::string cwd = UT::currdir().c_str();
  const struct {
    const char* text;
    const char* tokens;  // or the error
    std::string file;
    int line;
  } cases[] = {
      {"#include \"inc.sch\"\n#include <inc.sch>\nafter", "from_inc from_inc after", "", 0},
      {"#include \"open.sch\"\nhidden\n#endif\nshown", "shown", "", 0},
      {"#ifndef NO\n#include \"close.sch\"\ny", "x y", "", 0},
      {"#include \"sub\"\nafter", "after", "", 0},
      {"#include \"inc.sch\"\nb\n#endif\n", "error: #endif without matching #if", "main.sch", 3},
      {"#include \"bad.sch\"\n", "error: non-terminated string literal", d.path + "/bad.sch", 2},
      {"#include \"comment.sch\"\n", "error: comment is not closed with */", d.path + "/comment.sch", 2},
      {"\n#include <nope.sch>\n",
       "error: current directory is #1, cannot open include file \"#2\"", "main.sch", 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    Reader r(frontend::textFile(c.text), "main.sch", d.path);
    std::vector<std::string> toks;
    Outcome o = frontend::readTokens(r.parser, toks);
    std::string want = c.tokens;
    if (want.find("#2") != std::string::npos)
      want = "error: current directory is " + cwd + ", cannot open include file \"" + d.path + "/nope.sch\"";
    EXPECT_EQ(o.failed ? "error: " + o.msg : frontend::join(toks), want);
    if (o.failed) {
      EXPECT_EQ(o.file, c.file);
      EXPECT_EQ(o.line, c.line);
    }
  }
}

int openFds() {
  int n = 0;
  DIR* d = opendir("/proc/self/fd");
  while (readdir(d)) n++;
  closedir(d);
  return n;
}

// 101 suspended files are allowed and the 102nd is refused. After the error
// the destructor closes every included file and leaves the caller's open.
TEST(PreprocessorInclude, NestingLimit) {
  TempDir d;
  for (int i = 1; i <= 102; i++)
    d.write("f" + std::to_string(i) + ".sch", "#include \"f" + std::to_string(i + 1) + ".sch\"\n");
  d.write("f103.sch", "deeper\n");
  {
    Reader r(fopen((d.path + "/f2.sch").c_str(), "r"), "f2.sch", d.path);
    EXPECT_EQ(frontend::tokensOf(r.parser), "deeper");
  }
  int before = openFds();
  FILE* first = fopen((d.path + "/f1.sch").c_str(), "r");
  {
    ErrReporterMem rep(nullptr, nullptr);
    Parser p(first, "f1.sch", &rep, d.path.c_str(), "");
    std::vector<std::string> toks;
    Outcome o = frontend::readTokens(p, toks);
    EXPECT_EQ(o.msg, "recursion in #include");
    EXPECT_EQ(o.file, d.path + "/f102.sch");
    EXPECT_EQ(o.line, 1);
    EXPECT_EQ(openFds(), before + 102);
  }
  EXPECT_EQ(openFds(), before + 1);
  fclose(first);
}

// Nothing crashes or hangs, whatever the bytes.
TEST(PreprocessorHostile, Inputs) {
  const struct {
    std::string text;
    std::string result;
  } cases[] = {
      {"", ""},
      {"#", "#"},
      {"\"", "error: non-terminated string literal"},
      {"/*", "error: comment is not closed with */"},
      {std::string("\0", 1), ""},
      {std::string("a\0b\n\xff\xff c", 9), "error: Unrecognized Symbol \"\xff\""},
      {"#ifdef\xff\n#endif\xff\n\xff", "\xff"},
  };
  for (const auto& c : cases) {
    Reader r(c.text);
    EXPECT_EQ(frontend::tokensOf(r.parser), c.result);
  }
}

TEST(PreprocessorHostile, MegabyteLine) {
  std::string text;
  for (int i = 0; i < 500000; i++) text += "a ";
  Reader r(text);
  std::vector<std::string> toks;
  EXPECT_FALSE(frontend::readTokens(r.parser, toks).failed);
  EXPECT_EQ(toks.size(), 500000u);

  // 209,600 comments on lines of 4,000 characters, each line scanned once.
  std::string line, many;
  for (int i = 0; i < 800; i++) line += "/**/ ";
  for (int i = 0; i < 262; i++) many += line + "\n";
  Reader comments(many + "x");
  EXPECT_EQ(frontend::tokensOf(comments.parser), "x");
}

TEST(PreprocessorHostile, DeepNesting) {
  std::string open, close;
  for (int i = 0; i < 10000; i++) {
    open += "#ifdef A\n";
    close += "#endif\n";
  }
  Reader on("#define A\n" + open + "x\n" + close);
  EXPECT_EQ(frontend::tokensOf(on.parser), "x");
  Reader off(open + "x\n" + close + "y");
  EXPECT_EQ(frontend::tokensOf(off.parser), "y");
  Reader unclosed(open);
  std::vector<std::string> toks;
  Outcome o = frontend::readTokens(unclosed.parser, toks);
  EXPECT_EQ(o.msg, "no #endif for #if");
  EXPECT_EQ(o.line, 10001);
}

}  // namespace
