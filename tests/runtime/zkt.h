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

typedef struct zkt_dictionary_t_* zkt_dictionary_h;
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

#ifdef __cplusplus
}
#endif

#endif /* ZKT_H */
