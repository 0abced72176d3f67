/* Declarations of the runtime's user-defined access interface and of the
   index wrappers that generated index functions call. */
#ifndef ZKT_ZKTUDA_H
#define ZKT_ZKTUDA_H

#include "zkt.h"

#ifdef __cplusplus
extern "C" {
#endif

/* One key value handed to an index wrapper. A value is either in the union v
   (numbers) or behind ptr with its length in v.ptr_size (texts, oids, bits). */
typedef struct zkt_external_field_t_ {
  int field_type; /* element type code; 0 ends a pattern */
  union {
    uint1 u1;
    uint2 u2;
    uint4 u4;
    int1 i1;
    int2 i2;
    int4 i4;
    float flt;
    double dbl;
    uint8 u8;
    zkt_int8 i8;
    zkt_size32_t ptr_size;
  } v;
  const char* ptr;
  uint2 bit_len; /* significant bits of a patricia key */
} zkt_external_field_t;
typedef zkt_external_field_t* zkt_external_field_h;

typedef enum {
  ZKT_EQ,
  ZKT_GE,
  ZKT_GT,
  ZKT_LE,
  ZKT_LT,
  ZKT_NEXT_MATCH,
  ZKT_PREF,
  ZKT_BEST,
  ZKT_EX
} ZKT_OPCODE;

/* One keyword of a search over the elements of an array or vector key. */
typedef struct zkt_search_kwd_t_ {
  const void* value;
  zkt_size32_t size;
} zkt_search_kwd_t;

ZKT_RET zkt_w_voluntary_create(zkt_trans_h t, int index_code);
ZKT_RET zkt_w_voluntary_drop(zkt_trans_h t, int index_code);
ZKT_RET zkt_w_index_cursor(zkt_trans_h t, int index_code, zkt_cursor_h c);
ZKT_RET zkt_w_tree_find(zkt_trans_h t, zkt_cursor_h c, ZKT_OPCODE op, zkt_external_field_h keys);
ZKT_RET zkt_w_hash_find(zkt_trans_h t, zkt_cursor_h c, zkt_external_field_h keys);
ZKT_RET zkt_w_kdtree_find(zkt_trans_h t, zkt_cursor_h c, ZKT_Hf* range_start, ZKT_Hf* range_end);
ZKT_RET zkt_w_tree_find_any(zkt_trans_h t, zkt_cursor_h c, int n_keywords, zkt_search_kwd_t* keywords);
ZKT_RET zkt_w_tree_find_all(zkt_trans_h t, zkt_cursor_h c, int n_keywords, zkt_search_kwd_t* keywords);
ZKT_RET zkt_w_cursor_compare(zkt_trans_h t, zkt_cursor_h c, zkt_external_field_h keys, int* result);
ZKT_RET zkt_w_cursor_locate(zkt_trans_h t, int index_code, zkt_objhandle_h obj, zkt_cursor_h c);
ZKT_RET zkt_w_cursor_get_index(zkt_cursor_h c, uint2* index);
ZKT_RET zkt_w_tree_find_scalar(zkt_trans_h t, int index_code, zkt_external_field_h keys, zkt_objhandle_h obj);
ZKT_RET zkt_w_tree_find_vect(zkt_trans_h t, int index_code, zkt_external_field_h keys, zkt_objhandle_h obj,
                             uint2* index);
ZKT_RET zkt_w_hash_find_scalar(zkt_trans_h t, int index_code, zkt_external_field_h keys, zkt_objhandle_h obj);
ZKT_RET zkt_w_hash_find_vect(zkt_trans_h t, int index_code, zkt_external_field_h keys, zkt_objhandle_h obj,
                             uint2* index);
ZKT_RET zkt_w_cursor_extract_field(zkt_trans_h t, zkt_cursor_h c, int segment, void* buffer,
                                   zkt_size32_t buffer_size, zkt_size32_t* length);

/* Patterns over a tree index: an array of keys ended by field_type 0. */
ZKT_RET zkt_pattern_size(zkt_external_field_h keys, uint4* size);
ZKT_RET zkt_pattern_search(zkt_trans_h t, zkt_cursor_h c, void* allocated_pattern, zkt_size_t memsize,
                           zkt_external_field_h keys);
ZKT_RET zkt_pattern_next(zkt_trans_h t, zkt_cursor_h c, void* allocated_pattern, int flags);

/* Events, XML and JSON, calculator, user-defined functions. */
typedef uint4 zkt_hash_counter_t;

/* Functions of a user-defined index; vb forms take the element index of a vector. */
typedef int2 (*zkt_compare_userdef_f)(void* handle1, void* handle2);
typedef int2 (*zkt_compare_userdef_vb_f)(void* handle1, uint2 index1, void* handle2, uint2 index2);
typedef int2 (*zkt_compare_extkey_userdef_f)(void* handle, void** key);
typedef int2 (*zkt_compare_extkey_userdef_vb_f)(void* handle, uint2 index, void** key);
typedef zkt_hash_counter_t (*zkt_hash_userdef_f)(void* handle);
typedef zkt_hash_counter_t (*zkt_hash_userdef_vb_f)(void* handle, uint2 index);
typedef zkt_hash_counter_t (*zkt_hash_extkey_userdef_f)(void** key);
typedef struct zkt_userdef_funcs_t_ {
  struct {
    uint4 flags;
  } p;
  union {
    zkt_compare_userdef_f nvb;
    zkt_compare_userdef_vb_f vb;
  } fcomp;
  union {
    zkt_compare_extkey_userdef_f nvb;
    zkt_compare_extkey_userdef_vb_f vb;
  } fcomp_ext;
  union {
    zkt_hash_userdef_f nvb;
    zkt_hash_userdef_vb_f vb;
  } fhash;
  union {
    zkt_hash_extkey_userdef_f u;
  } fhash_ext;
} zkt_userdef_funcs_t;
typedef zkt_userdef_funcs_t* zkt_userdef_funcs_h;

/* Functions of a collation. */
typedef struct zkt_collate_t_* zkt_collate_h;
typedef int2 (*zkt_compare_collation_f)(zkt_collate_h c1, uint2 len1, zkt_collate_h c2, uint2 len2);
typedef zkt_hash_counter_t (*zkt_hash_collation_f)(zkt_collate_h c, uint2 len);
typedef struct zkt_collation_funcs_t_ {
  zkt_compare_collation_f comp;
  zkt_hash_collation_f hash;
} zkt_collation_funcs_t;
typedef zkt_collation_funcs_t* zkt_collation_funcs_h;

#ifdef __cplusplus
}
#endif

#endif /* ZKT_ZKTUDA_H */
