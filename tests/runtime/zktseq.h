/* Declarations of the runtime's sequence interface. */
#ifndef ZKT_ZKTSEQ_H
#define ZKT_ZKTSEQ_H

#include "zkt.h"

#ifdef __cplusplus
extern "C" {
#endif

/* An iterator over the values of a sequence. */
typedef struct zkt_seq_iterator_t_* zkt_seq_iterator_h;
/* The sequence interface names the transaction handle zkt_trans_t. */
typedef zkt_trans_h zkt_trans_t;
/* A position in a sequence; ZKT_SEQ_INFINITY is past any end. */
typedef uint8 zkt_seq_no_t;
#define ZKT_SEQ_INFINITY ((zkt_seq_no_t)-1)
/* Whether a search bound is included. */
typedef enum zkt_seq_boundary_kind_t_ { ZKT_SEQ_BOUNDARY_INCLUSIVE, ZKT_SEQ_BOUNDARY_EXCLUSIVE } zkt_seq_boundary_kind_t;
/* A word of the null bitmap of appended or inserted values. */
typedef uint8 zkt_bitmap_word_t;

/* Every wrapper on a field takes the object and both offsets first. */
#define ZKT_SEQ_ zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs

ZKT_RET zkt_w_seq_count(ZKT_SEQ_, zkt_seq_no_t* count);

/* The functions of the elements of one C type T, under the name suffix sfx. */
#define ZKT_SEQ_FUNCTIONS_(sfx, T)                                                                                \
  ZKT_RET zkt_w_seq_first_##sfx(ZKT_SEQ_, T* val);                                                               \
  ZKT_RET zkt_w_seq_last_##sfx(ZKT_SEQ_, T* val);                                                                \
  ZKT_RET zkt_w_seq_append_##sfx(ZKT_SEQ_, uint2 no, const T* vals, zkt_size_t n_items, int order,              \
                                 const zkt_bitmap_word_t* null_bitmap);                                         \
  ZKT_RET zkt_w_seq_insert_##sfx(ZKT_SEQ_, uint2 no, zkt_seq_no_t pos, const T* vals, zkt_size_t n_items,       \
                                 int order, const zkt_bitmap_word_t* null_bitmap);                              \
  ZKT_RET zkt_w_seq_delete_##sfx(ZKT_SEQ_, uint2 no, zkt_seq_no_t from, zkt_seq_no_t till, int order);          \
  ZKT_RET zkt_w_seq_search_##sfx(ZKT_SEQ_, zkt_seq_iterator_h iterator, T low, zkt_seq_boundary_kind_t low_kind, \
                                 T high, zkt_seq_boundary_kind_t high_kind, int order);                         \
  ZKT_RET zkt_w_seq_join_##sfx(ZKT_SEQ_, zkt_seq_iterator_h result, zkt_seq_iterator_h join_with, int order);   \
  ZKT_RET zkt_w_seq_map_##sfx(ZKT_SEQ_, zkt_seq_iterator_h dst, zkt_seq_iterator_h map);                        \
  ZKT_RET zkt_w_seq_subseq_##sfx(ZKT_SEQ_, zkt_seq_iterator_h iterator, zkt_seq_no_t from, zkt_seq_no_t till);  \
  ZKT_RET zkt_w_seq_from_cursor_##sfx(zkt_trans_h trans, zkt_offs_t u_offs, zkt_offs_t c_offs, uint4 class_code, \
                                      zkt_seq_iterator_h iterator, zkt_cursor_h cursor);                        \
  ZKT_RET zkt_w_seq_project_##sfx(ZKT_SEQ_, zkt_seq_iterator_h dst, zkt_seq_iterator_h src);                    \
  ZKT_RET zkt_w_seq_store_##sfx(ZKT_SEQ_, uint2 no, zkt_seq_iterator_h src, int order);
ZKT_SEQ_FUNCTIONS_(int1, int1)
ZKT_SEQ_FUNCTIONS_(int2, int2)
ZKT_SEQ_FUNCTIONS_(int4, int4)
ZKT_SEQ_FUNCTIONS_(zkt_int8, zkt_int8)
ZKT_SEQ_FUNCTIONS_(uint1, uint1)
ZKT_SEQ_FUNCTIONS_(uint2, uint2)
ZKT_SEQ_FUNCTIONS_(uint4, uint4)
ZKT_SEQ_FUNCTIONS_(uint8, uint8)
ZKT_SEQ_FUNCTIONS_(float, float)
ZKT_SEQ_FUNCTIONS_(double, double)
ZKT_SEQ_FUNCTIONS_(zkt_date, zkt_date)
ZKT_SEQ_FUNCTIONS_(zkt_time, zkt_time)
ZKT_SEQ_FUNCTIONS_(datetime, zkt_datetime)
#undef ZKT_SEQ_FUNCTIONS_

/* Character and struct elements travel as bytes of elem_size each. */
ZKT_RET zkt_w_seq_first_char(ZKT_SEQ_, char* val, zkt_size_t elem_size);
ZKT_RET zkt_w_seq_last_char(ZKT_SEQ_, char* val, zkt_size_t elem_size);
ZKT_RET zkt_w_seq_append_char(ZKT_SEQ_, uint2 no, const char* vals, zkt_size_t n_items, int order,
                              zkt_size_t elem_size, const zkt_bitmap_word_t* null_bitmap);
ZKT_RET zkt_w_seq_insert_char(ZKT_SEQ_, uint2 no, zkt_seq_no_t pos, const char* vals, zkt_size_t n_items, int order,
                              zkt_size_t elem_size, const zkt_bitmap_word_t* null_bitmap);
ZKT_RET zkt_w_seq_delete_char(ZKT_SEQ_, uint2 no, zkt_seq_no_t from, zkt_seq_no_t till, int order,
                              zkt_size_t elem_size);
/* The bounds are char for a char<n> element and {ename}_fixed for a struct
   element: what follows the iterator is not declared. */
ZKT_RET zkt_w_seq_search_char(ZKT_SEQ_, zkt_seq_iterator_h iterator, ...);
ZKT_RET zkt_w_seq_join_char(ZKT_SEQ_, zkt_seq_iterator_h result, zkt_seq_iterator_h join_with, int order);
ZKT_RET zkt_w_seq_map_char(ZKT_SEQ_, zkt_seq_iterator_h dst, zkt_seq_iterator_h map, zkt_size_t elem_size);
ZKT_RET zkt_w_seq_subseq_char(ZKT_SEQ_, zkt_seq_iterator_h iterator, zkt_seq_no_t from, zkt_seq_no_t till,
                              zkt_size_t elem_size);
ZKT_RET zkt_w_seq_from_cursor_char(zkt_trans_h trans, zkt_offs_t u_offs, zkt_offs_t c_offs, uint4 class_code,
                                   zkt_seq_iterator_h iterator, zkt_cursor_h cursor, zkt_size_t elem_size);
ZKT_RET zkt_w_seq_project_char(ZKT_SEQ_, zkt_seq_iterator_h dst, zkt_seq_iterator_h src, zkt_size_t elem_size);
ZKT_RET zkt_w_seq_store_char(ZKT_SEQ_, uint2 no, zkt_seq_iterator_h src, int order, zkt_size_t elem_size);
#undef ZKT_SEQ_

#ifdef __cplusplus
}
#endif

#endif /* ZKT_ZKTSEQ_H */
