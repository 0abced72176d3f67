// The library's memory over many calls: 20,000 compiles alternating a valid schema, one with a syntax
// error and one with a warning leave resident memory and open files flat once the caller frees the
// dictionaries' blocks.
#include <gtest/gtest.h>
#include <dirent.h>
#include <unistd.h>

#include "dict_util.h"
#include "sanitized.h"

namespace {

long residentKb() {
  long pages = 0, resident = 0;
  FILE* f = fopen("/proc/self/statm", "r");
  if (f == nullptr) return 0;
  if (fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
  fclose(f);
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

int openFiles() {
  int n = 0;
  if (DIR* d = opendir("/proc/self/fd")) {
    while (readdir(d) != nullptr) n++;
    closedir(d);
  }
  return n;
}

TEST(LibraryMemory, FlatOverTwentyThousandCalls) {
  const struct {
    const char* schema;
    int rc;
    size_t messages;
  } rows[] = {
      {"declare database ok;\nclass a { signed<4> x; string s; vector<unsigned<2>> v; tree<x> byx; hash<s> hs[10]; };", 0,
       0},
      {"declare database bad;\nclass a { signed<4> x tree<x> byx; };", 1005, 1},
      {"declare database warn;\nclass a { signed<4> x; history[10]; tree<x> byx; };", 0, 1},
  };
  long warm = 0;
  const int files = openFiles();
  for (int i = 0; i < 20000; i++) {
    if (i == 1500) warm = residentKb();
    const auto& r = rows[i % 3];
    dicttest::Lib l(r.schema);  // frees the blocks of the call before through the test's allocator
    ASSERT_EQ(l.rc, r.rc) << r.schema << (l.msgs.empty() ? "" : l.msgs.back().text);
    ASSERT_EQ(l.msgs.size(), r.messages) << r.schema;
  }
  fakert::reset();
  const long grown = residentKb() - warm;
  printf("resident memory after warm-up: %ld KB, grown by %ld KB over 18,500 calls\n", warm, grown);
  // The sanitizers hold freed blocks back: there LeakSanitizer does the checking.
  if (!ZKT_SANITIZED) {
    EXPECT_LE(grown, 2048);
  }
  EXPECT_EQ(openFiles(), files);
}

}  // namespace
