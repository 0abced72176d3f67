// Test helpers: the runtime's five platform functions, backed by settable texts and a logging allocator.
#include "fake_runtime.h"

#include <stdlib.h>
#include <unistd.h>

#include "proc_util.h"

namespace {

struct State {
  std::vector<fakert::Alloc> log;
  std::string dir;
  std::string suffix;
  std::string delim = "/";
  bool nullDir = false;
  bool nullSuffix = false;
  bool nullDelim = false;
};

// Never destroyed: the blocks that a test leaves to the next reset stay
// reachable until the process ends.
State& st() {
  static State& s = *new State;
  return s;
}

void* logged(bool isCalloc, size_t n, size_t size) {
  void* p = isCalloc ? calloc(n == 0 ? 1 : n, size == 0 ? 1 : size) : malloc(size == 0 ? 1 : size);
  st().log.push_back(fakert::Alloc{isCalloc, n, size, p});
  return p;
}

}  // namespace

extern "C" {
const char* zkt_get_temp_dir(void) { return st().nullDir ? nullptr : st().dir.c_str(); }
const char* zkt_get_tmpfile_suffix(void) { return st().nullSuffix ? nullptr : st().suffix.c_str(); }
const char* zkt_get_dir_delimiter(void) { return st().nullDelim ? nullptr : st().delim.c_str(); }
void* zkt_sys_malloc(size_t size) { return logged(false, 1, size); }
void* zkt_sys_calloc(size_t n, size_t size) { return logged(true, n, size); }
}

namespace fakert {

void reset() {
  for (const Alloc& a : st().log) free(a.p);
  st().log.clear();
  static const std::string home = procutil::makeTempDir();
  st().dir = home;
  st().nullDir = st().nullSuffix = st().nullDelim = false;
  st().suffix = "t" + std::to_string(getpid());
  st().delim = "/";
}

const std::vector<Alloc>& allocs() { return st().log; }

const Alloc* allocOf(const void* p) {
  for (const Alloc& a : st().log)
    if (a.p == p) return &a;
  return nullptr;
}

const std::string& tempDir() { return st().dir; }

void setTempDir(const char* dir) {
  st().nullDir = dir == nullptr;
  if (dir != nullptr) st().dir = dir;
}
void setSuffix(const char* suffix) {
  st().nullSuffix = suffix == nullptr;
  if (suffix != nullptr) st().suffix = suffix;
}
void setDelimiter(const char* delim) {
  st().nullDelim = delim == nullptr;
  if (delim != nullptr) st().delim = delim;
}

}  // namespace fakert
