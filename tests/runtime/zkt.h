/* Declarations of the database runtime that generated schema files rely on. */
#ifndef ZKT_H
#define ZKT_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The runtime's own zkt_memcpy is declared by the schema header. */
#ifndef ZKT_CFG_BUILTIN_MEMCPY
#define ZKT_CFG_BUILTIN_MEMCPY 0
#endif

typedef size_t zkt_size_t;

typedef unsigned char uint1;
typedef unsigned short uint2;
typedef unsigned int uint4;
typedef unsigned long long uint8;
typedef signed char int1;
typedef short int2;
typedef int int4;
typedef long long zkt_int8;
typedef uint8 autoid_t;
typedef uint4 zkt_date;
typedef uint4 zkt_time;
typedef uint8 zkt_datetime;
typedef unsigned short nchar_t;

typedef int ZKT_RET;
#define ZKT_S_OK 0
#define ZKT_S_NULL_VALUE 1
typedef struct zkt_trans_t_* zkt_trans_h;
typedef struct zkt_cursor_t_* zkt_cursor_h;
typedef struct ZKT_Hf_* zkt_objhandle_h;
typedef uint4 zkt_size32_t;

typedef uint8 zkt_offs_t;

/* Orders of a sequence field. */
#define ZKT_SEQ_NO_ORDER 0
#define ZKT_SEQ_ASC_ORDER 1
#define ZKT_SEQ_DESC_ORDER 2

/* The dictionary records. Pads are the compiler's alignment gaps, so that a
   static row fills the fields by position; the offsets are checked below. */
typedef struct zkt_datalayout_t_ {
  uint2 c_size;
  uint2 c_align;
  uint2 c_offset;
  uint4 u_size;
  uint4 u_align;
  uint4 u_offset;
} zkt_datalayout_t;

typedef struct zkt_dict_field_t_ {
  const char* name;
  zkt_datalayout_t layout;
  uint1 field_el_type;
  uint1 flags;
  uint2 array_size;
  int4 struct_num;
  uint4 field_size;
  int2 refto_class;
  uint4 init_index;
  uint2 order_no;
  uint2 no;
  uint2 event_id;
  uint2 indicator;
  int1 precision;
  int1 seq_order;
  int1 seq_elem_size;
} zkt_dict_field_t;

typedef struct zkt_dict_struct_t_ {
  const char* name;
  uint2 flags;
  uint2 n_fields;
  const zkt_dict_field_t* fields;
  uint2 c_size;
  uint2 c_align;
  uint4 u_size;
  uint4 u_align;
} zkt_dict_struct_t;

typedef struct zkt_dict_class_info_t_ {
  int2 first_index_num;
  int2 last_index_num;
  int2 list_index_num;
  int2 autoid_index_num;
  uint4 fixedsize;
  uint2 autoid_offset;
  int2 history_index_num;
  uint2 history_length;
  uint2 history_offset;
  int2 first_event_num;
  int2 last_event_num;
  uint2 flags;
  const zkt_dict_struct_t* struct_ptr;
  zkt_size_t init_size;
  uint2 auto_oid_offset;
  uint2 reserved;
} zkt_dict_class_info_t;

typedef struct zkt_dict_collation_t_ {
  const char* name;
  uint1 type;
  uint1 pad1;
  uint2 pad2;
} zkt_dict_collation_t;

typedef struct zkt_dict_index_field_t_ {
  uint4 field_offset;
  int4 vect_field_offset;
  uint4 indicator_offset;
  uint4 field_size;
  uint1 field_type;
  uint1 fld_flags;
  uint2 fld_no;
  int2 collation_id;
} zkt_dict_index_field_t;

typedef struct zkt_dict_index_t_ {
  uint2 class_code;
  uint2 impl_no;
  uint2 numof_fields;
  int4 vect_field_offset;
  uint4 flags;
  const zkt_dict_index_field_t* fields;
  uint8 numof_keys_estimate;
  int2 userdef_id;
  int2 reserved;
} zkt_dict_index_t;

typedef struct zkt_dict_event_t_ {
  uint2 class_code;
  uint2 flags;
  uint4 field_offset;
  uint4 field_size;
  uint1 field_type;
  uint2 fld_no;
} zkt_dict_event_t;

typedef struct zkt_dictionary_t_ {
  const char* const* str_class_names;
  const char* const* str_index_names;
  uint2 version_major;
  uint2 version_minor;
  uint2 version_build;
  uint2 magic_number;
  uint4 flags;
  uint2 oid_is_supported;
  uint2 auto_oid_supported;
  uint2 n_class_codes;
  uint2 n_list_indexes;
  uint2 n_autoid_indexes;
  uint2 n_history_indexes;
  uint2 n_userdef_indexes;
  uint2 max_numof_indexes_per_obj;
  uint2 n_structs;
  uint2 pad;
  uint4 num_oid_estimation;
  uint4 num_HA_estimation;
  uint2 n_desc_indexes;
  uint2 n_desc_events;
  uint2 n_desc_colls;
  uint2 exact_OID_sizeof;
  uint2 layout_OID_size;
  const zkt_dict_class_info_t* v_class_info;
  const zkt_dict_index_t* v_desc_indexes;
  const zkt_dict_event_t* v_desc_events;
  const zkt_dict_struct_t* v_all_struct;
  const zkt_dict_collation_t* v_desc_colls;
  uint1 sizeof_zkt_offs_t[2];
  uint1 sizeof_zkt_size_t[2];
  union { const int4* ptr; zkt_offs_t offs; } init_i_data;
  uint4 init_i_data_n;
  union { const double* ptr; zkt_offs_t offs; } init_d_data;
  uint4 init_d_data_n;
  uint4 class_code_origin;
  union { const char* ptr; zkt_offs_t offs; } init_s_data;
  uint4 init_s_data_n;
} zkt_dictionary_t;

#define ZKT_RT_ASSERT(name, cond) typedef char zkt_rt_assert_##name[(cond) ? 1 : -1]
ZKT_RT_ASSERT(field_size, sizeof(zkt_dict_field_t) == 64 && offsetof(zkt_dict_field_t, init_index) == 44 &&
                              offsetof(zkt_dict_field_t, seq_elem_size) == 58);
ZKT_RT_ASSERT(struct_size, sizeof(zkt_dict_struct_t) == 40 && offsetof(zkt_dict_struct_t, u_align) == 32);
ZKT_RT_ASSERT(class_size, sizeof(zkt_dict_class_info_t) == 56 && offsetof(zkt_dict_class_info_t, struct_ptr) == 32 &&
                              offsetof(zkt_dict_class_info_t, auto_oid_offset) == 48);
ZKT_RT_ASSERT(index_size, sizeof(zkt_dict_index_t) == 40 && offsetof(zkt_dict_index_t, vect_field_offset) == 8 &&
                              offsetof(zkt_dict_index_t, userdef_id) == 32);
ZKT_RT_ASSERT(index_field_size, sizeof(zkt_dict_index_field_t) == 24);
ZKT_RT_ASSERT(event_size, sizeof(zkt_dict_event_t) == 16 && offsetof(zkt_dict_event_t, fld_no) == 14);
ZKT_RT_ASSERT(collation_size, sizeof(zkt_dict_collation_t) == 16);
ZKT_RT_ASSERT(dictionary_size, sizeof(zkt_dictionary_t) == 168 && offsetof(zkt_dictionary_t, v_class_info) == 72 &&
                                   offsetof(zkt_dictionary_t, init_i_data) == 120 &&
                                   offsetof(zkt_dictionary_t, class_code_origin) == 148 &&
                                   offsetof(zkt_dictionary_t, init_s_data_n) == 160);

typedef zkt_dictionary_t* zkt_dictionary_h;
typedef struct zkt_calculator_t_* zkt_calculator_h;

/* An object handle; its contents belong to the runtime. */
typedef struct ZKT_Hf_ {
  void* opaque_[4];
} ZKT_Hf;

void zkt_assign_handle(ZKT_Hf* dest, const ZKT_Hf* src);

/* Objects by their oid. */
ZKT_RET zkt_w_obj_del_byoid(zkt_trans_h t, const void* oid);
ZKT_RET zkt_w_classcode_byoid(zkt_trans_h t, const void* oid, uint2* class_code);

/* Layout arithmetic of the generated offsets and sizes. */
#define alignsz(sz, a) ((((sz) + (a) - 1) / (a)) * (a))
#define fieldoffs(type, field) offsetof(type, field)
#define fieldsz(type, field) sizeof(((type*)0)->field)
#define structsz(type) sizeof(type)

/* Events, XML and JSON, calculator, user-defined functions. */
#ifndef NULLPTR
#ifdef __cplusplus
#define NULLPTR nullptr
#else
#define NULLPTR ((void*)0)
#endif
#endif

typedef enum { ZKT_EVENT_NEW = 1, ZKT_EVENT_UPDATE = 2, ZKT_EVENT_DELETE = 3, ZKT_EVENT_DELETE_ALL = 4,
               ZKT_EVENT_CHECKPOINT = 5 } ZKT_EVENT_TYPE;
typedef enum { ZKT_AFTER_UPDATE = 0, ZKT_BEFORE_UPDATE = 1 } ZKT_HANDLING_ORDER;
typedef int zkt_dict_type_t;
typedef ZKT_RET (*zkt_generic_ev_handler)(zkt_trans_h t, void* obj, void* param);

/* Writes nbytes of from to the stream of a writer; returns the bytes written. */
typedef int (*zkt_stream_write)(void* stream_handle, const void* from, unsigned int nbytes);

typedef struct zkt_calc_class_t_ {
  const char* name;
  uint4 nobjs;
  uint2 class_code;
} zkt_calc_class_t;
typedef struct zkt_calculator_t_ {
  zkt_calc_class_t* classes;
  int nclasses;
} zkt_calculator_t;

#ifdef __cplusplus
}
#endif

#endif /* ZKT_H */
