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

// Arrays and vectors: n characters of a char<n> element; body passes as a
// char* both as x.body and as &x.body.
template <int n>
struct CharBody_ {
  char data[n];
  operator char*() { return data; }
  operator const char*() const { return data; }
  char* operator&() { return data; }
  const char* operator&() const { return data; }
};
template <int n>
struct Char {
  CharBody_<n> body;
};

#endif  // ZKT_ZKT_HPP
