// Declarations of the runtime's C++ interface.
#ifndef ZKT_ZKT_HPP
#define ZKT_ZKT_HPP

#include "zkt.h"

// A failed call inside a C++ member throws its return code.
inline void zkt_cpp_check_(ZKT_RET rc) {
  if (rc != ZKT_S_OK) throw rc;
}
#define ZKT_CPP_CHECK(call) zkt_cpp_check_(call)

#endif  // ZKT_ZKT_HPP
