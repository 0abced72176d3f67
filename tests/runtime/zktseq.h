/* Declarations of the runtime's sequence interface. */
#ifndef ZKT_ZKTSEQ_H
#define ZKT_ZKTSEQ_H

#include "zkt.h"

/* An iterator over the values of a sequence. */
typedef struct zkt_seq_iterator_t_* zkt_seq_iterator_h;
/* The sequence interface names the transaction handle zkt_trans_t. */
typedef zkt_trans_h zkt_trans_t;

#endif /* ZKT_ZKTSEQ_H */
