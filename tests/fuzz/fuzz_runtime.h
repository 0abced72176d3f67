// The fuzz targets' stand-in for the runtime's platform functions.
#ifndef ZKT_TESTS_FUZZ_RUNTIME_H
#define ZKT_TESTS_FUZZ_RUNTIME_H

#include <string>

namespace fuzzrt {
const std::string& dir();  // private temporary directory, made on first use
void releaseAll();         // frees every block handed out by zkt_sys_malloc and zkt_sys_calloc
}  // namespace fuzzrt

#endif
