// Declarations of the runtime's C++ interface.
#ifndef ZKT_ZKT_HPP
#define ZKT_ZKT_HPP

#include <string>
#include <vector>

#include "zkt.h"

// A failed call inside a C++ member throws its return code.
inline void zkt_cpp_check_(ZKT_RET rc) {
  if (rc != ZKT_S_OK) throw rc;
}
#define ZKT_CPP_CHECK(call) zkt_cpp_check_(call)

// A char<n> or binary<n> value. Its body passes as char* both as x.body and
// as &x.body, const or not.
template <unsigned long N>
struct Char {
  struct Body {
    char b[N];
    operator char*() { return b; }
    operator const char*() const { return b; }
    char* operator&() { return b; }
    const char* operator&() const { return b; }
  } body;
};

// What a property member throws for a value it cannot take.
#define ZKT_E_CORE 1
struct ZktException {
  ZktException(int code, const char* msg, const char* file, int line);
};

#endif  // ZKT_ZKT_HPP
