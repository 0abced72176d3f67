// The runtime's platform functions for the fuzz targets: a private temporary directory and an
// allocator that keeps every block, so that each input's dictionary can be freed.
#include "fuzz_runtime.h"

#include <stdlib.h>
#include <unistd.h>

#include <vector>

namespace {
std::vector<void*>& blocks() {
  static std::vector<void*> v;
  return v;
}
void* kept(void* p) {
  blocks().push_back(p);
  return p;
}
}  // namespace

namespace fuzzrt {
const std::string& dir() {
  static const std::string d = [] {
    char name[] = "/tmp/zkt_fuzz_XXXXXX";
    return std::string(mkdtemp(name));
  }();
  return d;
}
void releaseAll() {
  for (void* p : blocks()) free(p);
  blocks().clear();
}
}  // namespace fuzzrt

extern "C" {
const char* zkt_get_temp_dir(void) { return fuzzrt::dir().c_str(); }
const char* zkt_get_tmpfile_suffix(void) {
  static const std::string s = "f" + std::to_string(getpid());
  return s.c_str();
}
const char* zkt_get_dir_delimiter(void) { return "/"; }
void* zkt_sys_malloc(size_t size) { return kept(malloc(size == 0 ? 1 : size)); }
void* zkt_sys_calloc(size_t n, size_t size) { return kept(calloc(n == 0 ? 1 : n, size == 0 ? 1 : size)); }
}
