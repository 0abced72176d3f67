// Declarations of the runtime's C++ sequence interface.
#ifndef ZKT_ZKTSEQ_HPP
#define ZKT_ZKTSEQ_HPP

#include "zkt.hpp"
#include "zktseq.h"

#endif  // ZKT_ZKTSEQ_HPP
