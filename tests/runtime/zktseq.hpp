// Declarations of the runtime's C++ sequence interface.
#ifndef ZKT_ZKTSEQ_HPP
#define ZKT_ZKTSEQ_HPP

#include "zkt.hpp"
#include "zktseq.h"

// A sequence of any element type; copies share the iterator.
class GenericSequence {
public:
  zkt_seq_iterator_h iter;
  GenericSequence() : iter(0) {}
};

// The values of one field of a class, or of a sequence field, as a sequence.
template <class T>
class Sequence : public GenericSequence {};

#endif  // ZKT_ZKTSEQ_HPP
