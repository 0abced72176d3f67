// Declarations of the runtime's C++ interface.
#ifndef ZKT_ZKT_HPP
#define ZKT_ZKT_HPP

#include "zkt.h"

#endif  // ZKT_ZKT_HPP
