/* Dictionary records: the binary layout of the schema that the database runtime reads (C-compatible). */
#ifndef ZKTCOMP_ZKTDICT_H
#define ZKTCOMP_ZKTDICT_H

#include <stddef.h>
#include <stdint.h>

/* The records are laid out for a 64-bit host: 8-byte pointers, 8-byte
   zkt_offs_t and zkt_size_t. Every pad is explicit, so that the C layout
   and the offsets asserted below are the same thing. */

#define ZKT_DICT_VERSION_MAJOR 8
#define ZKT_DICT_VERSION_MINOR 3
#define ZKT_DICT_VERSION_BUILD 1803
#define ZKT_DICT_MAGIC_NUMBER 9

/* zkt_dict_field_t_::seq_order */
#define ZKT_SEQ_NO_ORDER 0
#define ZKT_SEQ_ASC_ORDER 1
#define ZKT_SEQ_DESC_ORDER 2

/* zkt_dict_index_t_::impl_no */
typedef enum zkt_index_implementation_name_ {
  ZKT_INDEX_NONE = 0,
  ZKT_INDEX_BTREE_INMEM = 1,
  ZKT_INDEX_BTREE_DISK = 2,
  ZKT_INDEX_HASH_INMEM = 3,
  ZKT_INDEX_KDTREE_INMEM = 4,
  ZKT_INDEX_KDTREE_DISK = 5,
  ZKT_INDEX_RTREE_INMEM = 6,
  ZKT_INDEX_RTREE_DISK = 7,
  ZKT_INDEX_PATRICIA_INMEM = 8,
  ZKT_INDEX_PATRICIA_DISK = 9,
  ZKT_INDEX_FIXEDREC_LIST = 10,
  ZKT_INDEX_UNION = 11,
  ZKT_INDEX_INTERSECT = 12,
  ZKT_INDEX_INCLUSIVE_BTREE = 13,
  ZKT_INDEX_TRIGRAM_INMEM = 14,
  ZKT_INDEX_TRIGRAM_DISK = 15,
  ZKT_INDEX_IMPLEMENTATION_NAME_MAX = 16
} zkt_index_implementation_name_;

#ifdef __cplusplus
extern "C" {
#endif

/* A field's place in the compact (c) and the normal (u) layout. */
typedef struct zkt_datalayout_t_ {
  uint16_t c_size;
  uint16_t c_align;
  uint16_t c_offset;
  uint16_t pad;
  uint32_t u_size;
  uint32_t u_align;
  uint32_t u_offset;
} zkt_datalayout_t;

/* One field of a struct or class; a struct's fields form one run. */
typedef struct zkt_dict_field_t_ {
  const char* name;
  zkt_datalayout_t layout;
  uint8_t field_el_type; /* element type code */
  uint8_t flags;
  uint16_t array_size;
  int32_t struct_num;    /* position of the field's struct in v_all_struct, or -1 */
  uint32_t field_size;   /* element size */
  int16_t refto_class;   /* class code of a ref's target, or -1 */
  uint16_t pad1;
  uint32_t init_index;   /* 0: no initialiser; else position + 1 in its table */
  uint16_t order_no;     /* position in the declaration */
  uint16_t no;           /* the analyzer's declaration index */
  uint16_t event_id;     /* update event on the field, else 65535 */
  uint16_t indicator;    /* position of the null indicator in this run, else 65535 */
  int8_t precision;
  int8_t seq_order;      /* ZKT_SEQ_* */
  int8_t seq_elem_size;
  uint8_t pad2[5];
} zkt_dict_field_t;

/* One used struct or class. */
typedef struct zkt_dict_struct_t_ {
  const char* name;
  uint16_t flags;
  uint16_t n_fields;
  uint32_t pad1;
  zkt_dict_field_t* fields;
  uint16_t c_size;
  uint16_t c_align;
  uint32_t u_size;
  uint32_t u_align;
  uint32_t pad2;
} zkt_dict_struct_t;

/* One class, indexed by class code; entry 0 is all zero. */
typedef struct zkt_dict_class_info_t_ {
  int16_t first_index_num;
  int16_t last_index_num;
  int16_t list_index_num;
  int16_t autoid_index_num;
  uint32_t fixedsize;
  uint16_t autoid_offset;
  int16_t history_index_num;
  uint16_t history_length;
  uint16_t history_offset;
  int16_t first_event_num;
  int16_t last_event_num;
  uint16_t flags;
  uint8_t pad1[6];
  zkt_dict_struct_t* struct_ptr;
  uint64_t init_size;
  uint16_t auto_oid_offset;
  uint16_t reserved;
  uint32_t pad2;
} zkt_dict_class_info_t;

typedef struct zkt_dict_collation_t_ {
  const char* name;
  uint8_t type;
  uint8_t pad1;
  uint16_t pad2;
  uint32_t pad3;
} zkt_dict_collation_t;

/* One segment of an index. */
typedef struct zkt_dict_index_field_t_ {
  uint32_t field_offset;
  int32_t vect_field_offset; /* -1: no vector or array on the path */
  uint32_t indicator_offset; /* -1: key not nullable */
  uint32_t field_size;
  uint8_t field_type;
  uint8_t fld_flags;
  uint16_t fld_no;
  int16_t collation_id;
  uint16_t pad;
} zkt_dict_index_field_t;

typedef struct zkt_dict_index_t_ {
  uint16_t class_code;
  uint16_t impl_no; /* zkt_index_implementation_name_ */
  uint16_t numof_fields;
  uint16_t pad1;
  int32_t vect_field_offset;
  uint32_t flags;
  zkt_dict_index_field_t* fields;
  uint64_t numof_keys_estimate;
  int16_t userdef_id;
  int16_t reserved;
  uint32_t pad2;
} zkt_dict_index_t;

typedef struct zkt_dict_event_t_ {
  uint16_t class_code;
  uint16_t flags;
  uint32_t field_offset;
  uint32_t field_size;
  uint8_t field_type;
  uint8_t pad;
  uint16_t fld_no;
} zkt_dict_event_t;

/* The head record. */
typedef struct zkt_dictionary_t_ {
  const char** str_class_names; /* entry k: name of class code k; entry 0 null */
  const char** str_index_names;
  uint16_t version_major;
  uint16_t version_minor;
  uint16_t version_build;
  uint16_t magic_number;
  uint32_t flags; /* 1 large database, 2 nosort */
  uint16_t oid_is_supported;
  uint16_t auto_oid_supported;
  uint16_t n_class_codes;
  uint16_t n_list_indexes;
  uint16_t n_autoid_indexes;
  uint16_t n_history_indexes;
  uint16_t n_userdef_indexes;
  uint16_t max_numof_indexes_per_obj;
  uint16_t n_structs;
  uint16_t pad;
  uint32_t num_oid_estimation;
  uint32_t num_HA_estimation;
  uint16_t n_desc_indexes;
  uint16_t n_desc_events;
  uint16_t n_desc_colls;
  uint16_t exact_OID_sizeof;
  uint16_t layout_OID_size;
  uint8_t pad1[6];
  zkt_dict_class_info_t* v_class_info;
  zkt_dict_index_t* v_desc_indexes;
  zkt_dict_event_t* v_desc_events;
  zkt_dict_struct_t* v_all_struct;
  zkt_dict_collation_t* v_desc_colls;
  uint8_t sizeof_zkt_offs_t[2]; /* [0] compiled for, [1] compiling target */
  uint8_t sizeof_zkt_size_t[2];
  uint32_t pad2;
  union {
    int32_t* ptr;
    uint64_t offs;
  } init_i_data;
  uint32_t init_i_data_n; /* in int32 units */
  uint32_t pad3;
  union {
    double* ptr;
    uint64_t offs;
  } init_d_data;
  uint32_t init_d_data_n;
  uint32_t class_code_origin;
  union {
    char* ptr;
    uint64_t offs;
  } init_s_data;
  uint32_t init_s_data_n; /* bytes */
  uint32_t pad4;
} zkt_dictionary_t;

#ifdef __cplusplus
}

#define ZKT_DICT_AT(rec, field, off) static_assert(offsetof(rec, field) == (off), #rec "::" #field)
// clang-format off
//         record                   field                       offset
ZKT_DICT_AT(zkt_dictionary_t_,      str_class_names,            0);
ZKT_DICT_AT(zkt_dictionary_t_,      str_index_names,            8);
ZKT_DICT_AT(zkt_dictionary_t_,      version_major,              16);
ZKT_DICT_AT(zkt_dictionary_t_,      version_minor,              18);
ZKT_DICT_AT(zkt_dictionary_t_,      version_build,              20);
ZKT_DICT_AT(zkt_dictionary_t_,      magic_number,               22);
ZKT_DICT_AT(zkt_dictionary_t_,      flags,                      24);
ZKT_DICT_AT(zkt_dictionary_t_,      oid_is_supported,           28);
ZKT_DICT_AT(zkt_dictionary_t_,      auto_oid_supported,         30);
ZKT_DICT_AT(zkt_dictionary_t_,      n_class_codes,              32);
ZKT_DICT_AT(zkt_dictionary_t_,      n_list_indexes,             34);
ZKT_DICT_AT(zkt_dictionary_t_,      n_autoid_indexes,           36);
ZKT_DICT_AT(zkt_dictionary_t_,      n_history_indexes,          38);
ZKT_DICT_AT(zkt_dictionary_t_,      n_userdef_indexes,          40);
ZKT_DICT_AT(zkt_dictionary_t_,      max_numof_indexes_per_obj,  42);
ZKT_DICT_AT(zkt_dictionary_t_,      n_structs,                  44);
ZKT_DICT_AT(zkt_dictionary_t_,      pad,                        46);
ZKT_DICT_AT(zkt_dictionary_t_,      num_oid_estimation,         48);
ZKT_DICT_AT(zkt_dictionary_t_,      num_HA_estimation,          52);
ZKT_DICT_AT(zkt_dictionary_t_,      n_desc_indexes,             56);
ZKT_DICT_AT(zkt_dictionary_t_,      n_desc_events,              58);
ZKT_DICT_AT(zkt_dictionary_t_,      n_desc_colls,               60);
ZKT_DICT_AT(zkt_dictionary_t_,      exact_OID_sizeof,           62);
ZKT_DICT_AT(zkt_dictionary_t_,      layout_OID_size,            64);
ZKT_DICT_AT(zkt_dictionary_t_,      v_class_info,               72);
ZKT_DICT_AT(zkt_dictionary_t_,      v_desc_indexes,             80);
ZKT_DICT_AT(zkt_dictionary_t_,      v_desc_events,              88);
ZKT_DICT_AT(zkt_dictionary_t_,      v_all_struct,               96);
ZKT_DICT_AT(zkt_dictionary_t_,      v_desc_colls,               104);
ZKT_DICT_AT(zkt_dictionary_t_,      sizeof_zkt_offs_t,          112);
ZKT_DICT_AT(zkt_dictionary_t_,      sizeof_zkt_size_t,          114);
ZKT_DICT_AT(zkt_dictionary_t_,      init_i_data,                120);
ZKT_DICT_AT(zkt_dictionary_t_,      init_i_data_n,              128);
ZKT_DICT_AT(zkt_dictionary_t_,      init_d_data,                136);
ZKT_DICT_AT(zkt_dictionary_t_,      init_d_data_n,              144);
ZKT_DICT_AT(zkt_dictionary_t_,      class_code_origin,          148);
ZKT_DICT_AT(zkt_dictionary_t_,      init_s_data,                152);
ZKT_DICT_AT(zkt_dictionary_t_,      init_s_data_n,              160);
ZKT_DICT_AT(zkt_dict_class_info_t_, first_index_num,            0);
ZKT_DICT_AT(zkt_dict_class_info_t_, last_index_num,             2);
ZKT_DICT_AT(zkt_dict_class_info_t_, list_index_num,             4);
ZKT_DICT_AT(zkt_dict_class_info_t_, autoid_index_num,           6);
ZKT_DICT_AT(zkt_dict_class_info_t_, fixedsize,                  8);
ZKT_DICT_AT(zkt_dict_class_info_t_, autoid_offset,              12);
ZKT_DICT_AT(zkt_dict_class_info_t_, history_index_num,          14);
ZKT_DICT_AT(zkt_dict_class_info_t_, history_length,             16);
ZKT_DICT_AT(zkt_dict_class_info_t_, history_offset,             18);
ZKT_DICT_AT(zkt_dict_class_info_t_, first_event_num,            20);
ZKT_DICT_AT(zkt_dict_class_info_t_, last_event_num,             22);
ZKT_DICT_AT(zkt_dict_class_info_t_, flags,                      24);
ZKT_DICT_AT(zkt_dict_class_info_t_, struct_ptr,                 32);
ZKT_DICT_AT(zkt_dict_class_info_t_, init_size,                  40);
ZKT_DICT_AT(zkt_dict_class_info_t_, auto_oid_offset,            48);
ZKT_DICT_AT(zkt_dict_class_info_t_, reserved,                   50);
ZKT_DICT_AT(zkt_dict_struct_t_,     name,                       0);
ZKT_DICT_AT(zkt_dict_struct_t_,     flags,                      8);
ZKT_DICT_AT(zkt_dict_struct_t_,     n_fields,                   10);
ZKT_DICT_AT(zkt_dict_struct_t_,     fields,                     16);
ZKT_DICT_AT(zkt_dict_struct_t_,     c_size,                     24);
ZKT_DICT_AT(zkt_dict_struct_t_,     c_align,                    26);
ZKT_DICT_AT(zkt_dict_struct_t_,     u_size,                     28);
ZKT_DICT_AT(zkt_dict_struct_t_,     u_align,                    32);
ZKT_DICT_AT(zkt_datalayout_t_,      c_size,                     0);
ZKT_DICT_AT(zkt_datalayout_t_,      c_align,                    2);
ZKT_DICT_AT(zkt_datalayout_t_,      c_offset,                   4);
ZKT_DICT_AT(zkt_datalayout_t_,      u_size,                     8);
ZKT_DICT_AT(zkt_datalayout_t_,      u_align,                    12);
ZKT_DICT_AT(zkt_datalayout_t_,      u_offset,                   16);
ZKT_DICT_AT(zkt_dict_field_t_,      name,                       0);
ZKT_DICT_AT(zkt_dict_field_t_,      layout,                     8);
ZKT_DICT_AT(zkt_dict_field_t_,      field_el_type,              28);
ZKT_DICT_AT(zkt_dict_field_t_,      flags,                      29);
ZKT_DICT_AT(zkt_dict_field_t_,      array_size,                 30);
ZKT_DICT_AT(zkt_dict_field_t_,      struct_num,                 32);
ZKT_DICT_AT(zkt_dict_field_t_,      field_size,                 36);
ZKT_DICT_AT(zkt_dict_field_t_,      refto_class,                40);
ZKT_DICT_AT(zkt_dict_field_t_,      init_index,                 44);
ZKT_DICT_AT(zkt_dict_field_t_,      order_no,                   48);
ZKT_DICT_AT(zkt_dict_field_t_,      no,                         50);
ZKT_DICT_AT(zkt_dict_field_t_,      event_id,                   52);
ZKT_DICT_AT(zkt_dict_field_t_,      indicator,                  54);
ZKT_DICT_AT(zkt_dict_field_t_,      precision,                  56);
ZKT_DICT_AT(zkt_dict_field_t_,      seq_order,                  57);
ZKT_DICT_AT(zkt_dict_field_t_,      seq_elem_size,              58);
ZKT_DICT_AT(zkt_dict_collation_t_,  name,                       0);
ZKT_DICT_AT(zkt_dict_collation_t_,  type,                       8);
ZKT_DICT_AT(zkt_dict_collation_t_,  pad1,                       9);
ZKT_DICT_AT(zkt_dict_collation_t_,  pad2,                       10);
ZKT_DICT_AT(zkt_dict_index_field_t_, field_offset,              0);
ZKT_DICT_AT(zkt_dict_index_field_t_, vect_field_offset,         4);
ZKT_DICT_AT(zkt_dict_index_field_t_, indicator_offset,          8);
ZKT_DICT_AT(zkt_dict_index_field_t_, field_size,                12);
ZKT_DICT_AT(zkt_dict_index_field_t_, field_type,                16);
ZKT_DICT_AT(zkt_dict_index_field_t_, fld_flags,                 17);
ZKT_DICT_AT(zkt_dict_index_field_t_, fld_no,                    18);
ZKT_DICT_AT(zkt_dict_index_field_t_, collation_id,              20);
ZKT_DICT_AT(zkt_dict_index_t_,      class_code,                 0);
ZKT_DICT_AT(zkt_dict_index_t_,      impl_no,                    2);
ZKT_DICT_AT(zkt_dict_index_t_,      numof_fields,               4);
ZKT_DICT_AT(zkt_dict_index_t_,      vect_field_offset,          8);
ZKT_DICT_AT(zkt_dict_index_t_,      flags,                      12);
ZKT_DICT_AT(zkt_dict_index_t_,      fields,                     16);
ZKT_DICT_AT(zkt_dict_index_t_,      numof_keys_estimate,        24);
ZKT_DICT_AT(zkt_dict_index_t_,      userdef_id,                 32);
ZKT_DICT_AT(zkt_dict_index_t_,      reserved,                   34);
ZKT_DICT_AT(zkt_dict_event_t_,      class_code,                 0);
ZKT_DICT_AT(zkt_dict_event_t_,      flags,                      2);
ZKT_DICT_AT(zkt_dict_event_t_,      field_offset,               4);
ZKT_DICT_AT(zkt_dict_event_t_,      field_size,                 8);
ZKT_DICT_AT(zkt_dict_event_t_,      field_type,                 12);
ZKT_DICT_AT(zkt_dict_event_t_,      fld_no,                     14);
// clang-format on
#undef ZKT_DICT_AT

//            record                    size
static_assert(sizeof(zkt_dictionary_t_) == 168, "zkt_dictionary_t_");
static_assert(sizeof(zkt_dict_class_info_t_) == 56, "zkt_dict_class_info_t_");
static_assert(sizeof(zkt_dict_struct_t_) == 40, "zkt_dict_struct_t_");
static_assert(sizeof(zkt_datalayout_t_) == 20, "zkt_datalayout_t_");
static_assert(sizeof(zkt_dict_field_t_) == 64, "zkt_dict_field_t_");
static_assert(sizeof(zkt_dict_collation_t_) == 16, "zkt_dict_collation_t_");
static_assert(sizeof(zkt_dict_index_field_t_) == 24, "zkt_dict_index_field_t_");
static_assert(sizeof(zkt_dict_index_t_) == 40, "zkt_dict_index_t_");
static_assert(sizeof(zkt_dict_event_t_) == 16, "zkt_dict_event_t_");
#endif

#endif
