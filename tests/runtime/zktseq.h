/* Declarations of the runtime's sequence interface. */
#ifndef ZKT_ZKTSEQ_H
#define ZKT_ZKTSEQ_H

#include "zkt.h"

#endif /* ZKT_ZKTSEQ_H */
