// Test helpers: a stand-in for the database runtime's platform functions, with a counting allocator.
#ifndef ZKT_TESTS_FAKE_RUNTIME_H
#define ZKT_TESTS_FAKE_RUNTIME_H

#include <stddef.h>

#include <string>
#include <vector>

namespace fakert {

// One call of zkt_sys_malloc or zkt_sys_calloc.
struct Alloc {
  bool calloc;
  size_t n;     // 1 for malloc
  size_t size;  // bytes for malloc, element size for calloc
  void* p;
};

// Frees every block handed out and forgets them; resets the texts to a
// fresh temporary directory, "/" and a suffix of this process.
void reset();
const std::vector<Alloc>& allocs();
// Which allocation returned p; null if none did.
const Alloc* allocOf(const void* p);
const std::string& tempDir();
void setTempDir(const char* dir);  // null: the function returns null
void setSuffix(const char* suffix);
void setDelimiter(const char* delim);

}  // namespace fakert

#endif
