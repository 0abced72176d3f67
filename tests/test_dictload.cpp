// Library entry: results, messages, the name buffer, the temporary file on every path, the final callback.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>

#include "dict_util.h"
#include "proc_util.h"

namespace {

using dicttest::Lib;

std::string tmpPath() { return fakert::tempDir() + "/zktcompdict_t" + std::to_string(getpid()) + ".tmp"; }

TEST(DictLoad, SyntaxErrorNamesTheBufferAndLeavesEverythingAlone) {
  Lib l("declare database d;\nclass c {\n signed<4> a\n};");
  EXPECT_EQ(l.rc, 1005);
  ASSERT_EQ(l.msgs.size(), 1u);
  EXPECT_EQ(l.msgs[0].type, ZKTCOMP_ERROR);
  EXPECT_EQ(l.msgs[0].file, "<membuf>");
  EXPECT_EQ(l.msgs[0].line, 4);
  EXPECT_EQ(l.d, nullptr);
  EXPECT_EQ(l.dsize, 7777u);
  EXPECT_STREQ(l.name, "untouched");
  EXPECT_EQ(l.nameSize, 64u);
  EXPECT_FALSE(procutil::fileExists(tmpPath()));
}

// While a message is reported, the schema copy exists, private to its owner.
TEST(DictLoad, WarningsReturnZeroAndTheCopyIsPrivate) {
  fakert::reset();
  struct Seen {
    int calls = 0;
    mode_t mode = 0;
  } seen;
  auto fn = [](CompilerErrorType type, const char* msg, const char*, int, int, void* ctx) {
    Seen& s = *static_cast<Seen*>(ctx);
    s.calls++;
    EXPECT_EQ(type, ZKTCOMP_WARNING);
    EXPECT_STREQ(msg, "Tree declaration expected");
    struct stat st;
    if (lstat(tmpPath().c_str(), &st) == 0) s.mode = st.st_mode;
  };
  zktcomp_options_t o = zktcomp_options_t();
  zkt_dict_h d = nullptr;
  size_t ds = 0, ns = 0;
  char name[4];
  const int rc = zkt_db_load_dictionary("declare database d; persistent class c { signed<4> a; hash<a> h[10]; };", &o, &d, &ds, name,
                                        &ns, fn, &seen);
  EXPECT_EQ(rc, 0);
  EXPECT_EQ(seen.calls, 1);
  EXPECT_TRUE(S_ISREG(seen.mode));
  EXPECT_EQ(seen.mode & 0777, 0600u);
  EXPECT_EQ(ds, 168u);
  EXPECT_EQ(ns, 0u);  // 2 is not below 0
  EXPECT_FALSE(procutil::fileExists(tmpPath()));
}

TEST(DictLoad, NullCallbackAndNullOptionTexts) {
  fakert::reset();
  zktcomp_options_t o = zktcomp_options_t();
  zkt_dict_h d = nullptr;
  size_t ds = 0, ns = 10;
  char name[10];
  EXPECT_EQ(zkt_db_load_dictionary("class c {", &o, &d, &ds, name, &ns, nullptr, nullptr), 1005);
  EXPECT_EQ(zkt_db_load_dictionary("declare database x;", &o, &d, &ds, name, &ns, nullptr, nullptr), 0);
  EXPECT_STREQ(name, "x");
  EXPECT_EQ(ns, 2u);
}

// The name is copied only when its length + 1 is strictly below the buffer size.
TEST(DictLoad, NameBufferRule) {
  const struct {
    size_t size, result;
  } rows[] = {{6, 0}, {7, 6}, {0, 0}};
  for (const auto& r : rows) {
    zktcomp_options_t o = zktcomp_options_t();
    fakert::reset();
    zkt_dict_h d = nullptr;
    size_t ds = 0, ns = r.size;
    char name[8] = "zzzzzzz";
    EXPECT_EQ(zkt_db_load_dictionary("declare database abcde;", &o, &d, &ds, name, &ns, nullptr, nullptr), 0);
    EXPECT_EQ(ns, r.result) << r.size;
    EXPECT_STREQ(name, r.result ? "abcde" : "zzzzzzz") << r.size;
  }
}

// 71, with no message, whenever the copy can't be made by this run alone.
TEST(DictLoad, TemporaryFileRefused) {
  const std::string dir = procutil::makeTempDir();
  const struct {
    const char* what;
    std::function<void()> prepare;
  } rows[] = {
      {"missing directory", [] { fakert::setTempDir("/nonexistent/zkt"); }},
      {"null directory", [] { fakert::setTempDir(nullptr); }},
      {"null suffix", [] { fakert::setSuffix(nullptr); }},
      {"null delimiter", [] { fakert::setDelimiter(nullptr); }},
      {"symlink", [&] { (void)symlink((dir + "/target").c_str(), tmpPath().c_str()); }},
      {"directory", [] { mkdir(tmpPath().c_str(), 0700); }},
  };
  for (const auto& r : rows) {
    fakert::reset();
    r.prepare();
    Lib l("declare database d; class c {", zktcomp_options_t(), false);
    EXPECT_EQ(l.rc, 71) << r.what;
    EXPECT_TRUE(l.msgs.empty()) << r.what;
    EXPECT_EQ(l.dsize, 7777u) << r.what;
    EXPECT_FALSE(procutil::fileExists(dir + "/target")) << r.what;
    fakert::reset();
    unlink(tmpPath().c_str());
    rmdir(tmpPath().c_str());
  }
}

TEST(DictLoad, StaleFileReplacedAndLongSuffix) {
  fakert::reset();
  procutil::writeFile(tmpPath(), "garbage {");
  Lib stale("declare database d;", zktcomp_options_t(), false);
  EXPECT_EQ(stale.rc, 0);
  EXPECT_FALSE(procutil::fileExists(tmpPath()));

  fakert::reset();
  const std::string suffix(200, 's');
  fakert::setSuffix(suffix.c_str());
  Lib longer("declare database d;", zktcomp_options_t(), false);
  EXPECT_EQ(longer.rc, 0);
  EXPECT_FALSE(procutil::fileExists(fakert::tempDir() + "/zktcompdict_" + suffix + ".tmp"));
}

// Any message after "declare database" removes that database's files from outDir.
TEST(DictLoad, FinalCallbackRemovesTheDatabaseFiles) {
  const std::string dir = procutil::makeTempDir();
  for (const char* schema : {"declare database d;\nclass c {", "declare database d;\npersistent class c "
                                                               "{ signed<4> a; hash<a> h[10]; };"}) {
    for (const char* f : {"/d.h", "/d.c", "/d.hpp", "/d.xml", "/other.h"}) procutil::writeFile(dir + f, "x");
    zktcomp_options_t o = zktcomp_options_t();
    o.outDir = dir.c_str();
    Lib l(schema, o);
    EXPECT_EQ(l.msgs.size(), 1u);
    for (const char* f : {"/d.h", "/d.c", "/d.hpp", "/d.xml"}) EXPECT_FALSE(procutil::fileExists(dir + f)) << f;
    EXPECT_TRUE(procutil::fileExists(dir + "/other.h"));
  }
}

TEST(DictLoad, ReservedWordNeedsHasSqlExactlyOne) {
  EXPECT_EQ(zkt_dict_is_reserved_word("class", 0), 1);
  EXPECT_EQ(zkt_dict_is_reserved_word("foo", 1), 0);
  EXPECT_EQ(zkt_dict_is_reserved_word("select", 1), 1);
  EXPECT_EQ(zkt_dict_is_reserved_word("select", 2), 0);
  EXPECT_EQ(zkt_dict_is_reserved_word("select", 0), 0);
}

// The refusals of the analyzer and of the finishing pass reach the application with their text and line.
TEST(DictLoad, AnalyzerErrorsThroughTheLibrary) {
  const struct {
    const char* schema;
    const char* message;
    int line;
  } cases[] = {{"enum count { a };", "\"count\" is a reserved word", 1},
               {"declare database d;\nclass c { oid; signed<4> a; };", "oid is not declared", 2}};
  for (const auto& c : cases) {
    zktcomp_options_t o = zktcomp_options_t();
    o.genSql = true;
    Lib l(c.schema, o);
    EXPECT_EQ(l.rc, 1005) << c.schema;
    ASSERT_FALSE(l.msgs.empty()) << c.schema;
    EXPECT_EQ(l.msgs.back().type, ZKTCOMP_ERROR) << c.schema;
    EXPECT_EQ(l.msgs.back().text, c.message) << c.schema;
    EXPECT_EQ(l.msgs.back().line, c.line) << c.schema;
  }
}

}  // namespace
