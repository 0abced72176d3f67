// Declarations of the runtime's C++ sequence interface.
#ifndef ZKT_ZKTSEQ_HPP
#define ZKT_ZKTSEQ_HPP

#include "zkt.hpp"
#include "zktseq.h"

// The values of one field of a class, as a sequence.
template <class T>
class Sequence {
public:
  zkt_seq_iterator_h iter;
  Sequence() : iter(0) {}
};

#endif  // ZKT_ZKTSEQ_HPP
