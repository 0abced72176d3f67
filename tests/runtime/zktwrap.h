/* Declarations of the runtime's wrapper functions that generated accessors call. */
#ifndef ZKT_ZKTWRAP_H
#define ZKT_ZKTWRAP_H

#include "zkt.h"
#include "zktseq.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Objects of a class. */
ZKT_RET zkt_w_new_obj_oid(zkt_trans_h t, zkt_size_t init_size, uint2 class_code, const void* id, zkt_size_t id_size,
                          zkt_objhandle_h handle);
ZKT_RET zkt_w_new_obj_oid_ev(zkt_trans_h t, zkt_size_t init_size, uint2 class_code, const void* id,
                             zkt_size_t id_size, zkt_objhandle_h handle, int event_id);
ZKT_RET zkt_w_new_obj_noid(zkt_trans_h t, zkt_size_t init_size, uint2 class_code, zkt_objhandle_h handle);
ZKT_RET zkt_w_new_obj_noid_ev(zkt_trans_h t, zkt_size_t init_size, uint2 class_code, zkt_objhandle_h handle,
                              int event_id);
ZKT_RET zkt_w_obj_delete(zkt_objhandle_h handle);
ZKT_RET zkt_w_obj_delete_ev(zkt_objhandle_h handle, int event_id);
ZKT_RET zkt_w_obj_delete_all(zkt_trans_h t, uint2 class_code);
ZKT_RET zkt_w_obj_delete_all_ev(zkt_trans_h t, uint2 class_code, int event_id);
ZKT_RET zkt_w_obj_checkpoint(zkt_objhandle_h handle);
ZKT_RET zkt_w_obj_checkpoint_ev(zkt_objhandle_h handle, int event_id);
ZKT_RET zkt_w_find_byoid(zkt_trans_h t, const void* id, zkt_objhandle_h handle, uint2 class_code);
ZKT_RET zkt_w_oid_get(zkt_objhandle_h handle, void* id, uint2 id_size);
ZKT_RET zkt_w_compact(zkt_objhandle_h handle, uint2 class_code, int class_num, uint4* pages_released);
ZKT_RET zkt_w_obj_from_cursor(zkt_trans_h t, zkt_cursor_h c, uint2 class_code, zkt_objhandle_h handle);
ZKT_RET zkt_w_list_cursor(zkt_trans_h t, uint2 class_code, zkt_cursor_h c);
ZKT_RET zkt_w_normalize_handle(zkt_objhandle_h handle);
ZKT_RET zkt_w_version_prev(zkt_objhandle_h handle, zkt_objhandle_h res_handle, int index_code);
ZKT_RET zkt_w_version_next(zkt_objhandle_h handle, zkt_objhandle_h res_handle, int index_code);

/* Tuning of a persistent class. */
ZKT_RET zkt_set_class_allocation_block_size(zkt_trans_h t, uint2 class_code, zkt_size_t block_size);
ZKT_RET zkt_set_class_caching_priority(zkt_trans_h t, uint2 class_code, int priority);
ZKT_RET zkt_set_class_fill_factor(zkt_trans_h t, uint2 class_code, int fill_factor);

/* Scalars by size: one offset where both layouts agree, else both. A value
   of 8 bytes is put by its address. */
ZKT_RET zkt_w_b1_get(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, void* result);
ZKT_RET zkt_w_b2_get(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, void* result);
ZKT_RET zkt_w_b4_get(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, void* result);
ZKT_RET zkt_w_b8_get(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, void* result);
ZKT_RET zkt_w_b1_get2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, void* result);
ZKT_RET zkt_w_b2_get2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, void* result);
ZKT_RET zkt_w_b4_get2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, void* result);
ZKT_RET zkt_w_b8_get2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, void* result);
ZKT_RET zkt_w_b1_put(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, int indexed, uint1 value);
ZKT_RET zkt_w_b2_put(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, int indexed, uint2 value);
ZKT_RET zkt_w_b4_put(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, int indexed, uint4 value);
ZKT_RET zkt_w_b8_put(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, int indexed, const void* value);
ZKT_RET zkt_w_b1_put_ev(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, int indexed, uint1 value, int event_id);
ZKT_RET zkt_w_b2_put_ev(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, int indexed, uint2 value, int event_id);
ZKT_RET zkt_w_b4_put_ev(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, int indexed, uint4 value, int event_id);
ZKT_RET zkt_w_b8_put_ev(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, int indexed, const void* value, int event_id);
ZKT_RET zkt_w_b1_put2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, int indexed, uint1 value);
ZKT_RET zkt_w_b2_put2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, int indexed, uint2 value);
ZKT_RET zkt_w_b4_put2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, int indexed, uint4 value);
ZKT_RET zkt_w_b8_put2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, int indexed,
                      const void* value);
ZKT_RET zkt_w_b1_put_ev2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, int indexed, uint1 value,
                         int event_id);
ZKT_RET zkt_w_b2_put_ev2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, int indexed, uint2 value,
                         int event_id);
ZKT_RET zkt_w_b4_put_ev2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, int indexed, uint4 value,
                         int event_id);
ZKT_RET zkt_w_b8_put_ev2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, int indexed,
                         const void* value, int event_id);

/* Booleans are bits: always both offsets. */
ZKT_RET zkt_w_bit_get2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, void* result);
ZKT_RET zkt_w_bit_put2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, int indexed, uint1 value);
ZKT_RET zkt_w_bit_put_ev2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, int indexed, uint1 value,
                          int event_id);

/* Bytes of a field: the scalars of a direct struct. */
ZKT_RET zkt_w_chars_get2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, char* buf,
                         zkt_size_t buf_size, zkt_size_t field_size);
ZKT_RET zkt_w_chars_put2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, const char* buf,
                         zkt_size_t buf_size, zkt_size_t field_size, int indexed);
/* The event number follows the indexed flag; a direct struct's scalar put
   may leave it out, so the rest is variadic. */
ZKT_RET zkt_w_chars_put_ev2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, const char* buf,
                            zkt_size_t buf_size, zkt_size_t field_size, int indexed, ...);

/* Fixed-point numbers as text, by width in bytes. */
ZKT_RET zkt_w_numeric_b1_to_string(int1 value, int precision, char* buf, int buf_size);
ZKT_RET zkt_w_numeric_b2_to_string(int2 value, int precision, char* buf, int buf_size);
ZKT_RET zkt_w_numeric_b4_to_string(int4 value, int precision, char* buf, int buf_size);
ZKT_RET zkt_w_numeric_b8_to_string(zkt_int8 value, int precision, char* buf, int buf_size);
ZKT_RET zkt_w_numeric_b1_from_string(void* value, int precision, const char* buf);
ZKT_RET zkt_w_numeric_b2_from_string(void* value, int precision, const char* buf);
ZKT_RET zkt_w_numeric_b4_from_string(void* value, int precision, const char* buf);
ZKT_RET zkt_w_numeric_b8_from_string(void* value, int precision, const char* buf);

/* The values of one field over all objects of a class, by C type. */
#define ZKT_SEQ_SEQUENCE_(ctype) \
  ZKT_RET zkt_w_seq_sequence_##ctype(zkt_trans_t trans, uint2 class_code, zkt_offs_t offs, zkt_seq_iterator_h seq);
ZKT_SEQ_SEQUENCE_(uint1)
ZKT_SEQ_SEQUENCE_(uint2)
ZKT_SEQ_SEQUENCE_(uint4)
ZKT_SEQ_SEQUENCE_(uint8)
ZKT_SEQ_SEQUENCE_(int1)
ZKT_SEQ_SEQUENCE_(int2)
ZKT_SEQ_SEQUENCE_(int4)
ZKT_SEQ_SEQUENCE_(zkt_int8)
ZKT_SEQ_SEQUENCE_(float)
ZKT_SEQ_SEQUENCE_(double)
ZKT_SEQ_SEQUENCE_(zkt_date)
ZKT_SEQ_SEQUENCE_(zkt_time)
ZKT_SEQ_SEQUENCE_(autoid_t)
#undef ZKT_SEQ_SEQUENCE_

/* Character and string fields. Fixed sizes: one offset where both layouts
   agree, else both; variable sizes: always both. */
ZKT_RET zkt_w_chars_get(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, char* dest, zkt_size_t dest_size,
                        zkt_size_t field_size);
ZKT_RET zkt_w_chars_put(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, const char* src, zkt_size_t len,
                        zkt_size_t field_size, int indexed);
ZKT_RET zkt_w_chars_put_ev(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, const char* src, zkt_size_t len,
                           zkt_size_t field_size, int indexed, int event_id);
ZKT_RET zkt_w_nchars_get(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, nchar_t* dest, zkt_size_t dest_size,
                         zkt_size_t field_size);
ZKT_RET zkt_w_nchars_get2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, nchar_t* dest,
                          zkt_size_t dest_size, zkt_size_t field_size);
ZKT_RET zkt_w_nchars_put(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, const nchar_t* src, zkt_size_t len,
                         zkt_size_t field_size, int indexed);
ZKT_RET zkt_w_nchars_put_ev(zkt_objhandle_h h, zkt_offs_t offs, uint2 no, const nchar_t* src, zkt_size_t len,
                            zkt_size_t field_size, int indexed, int event_id);
ZKT_RET zkt_w_nchars_put2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, const nchar_t* src,
                          zkt_size_t len, zkt_size_t field_size, int indexed);
ZKT_RET zkt_w_nchars_put_ev2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, const nchar_t* src,
                             zkt_size_t len, zkt_size_t field_size, int indexed, int event_id);
ZKT_RET zkt_w_string_get2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, char* dest,
                          uint2 dest_size, uint2* len);
ZKT_RET zkt_w_string_len2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, uint2* result);
ZKT_RET zkt_w_string_put2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, const char* src,
                          uint2 len, int indexed);
ZKT_RET zkt_w_string_put_ev2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, const char* src,
                             uint2 len, int indexed, int event_id);
ZKT_RET zkt_w_nstring_get2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, nchar_t* dest,
                           uint2 dest_size, uint2* len);
ZKT_RET zkt_w_nstring_len2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, uint2* result);
ZKT_RET zkt_w_nstring_put2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, const nchar_t* src,
                           uint2 len, int indexed);
ZKT_RET zkt_w_nstring_put_ev2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no,
                              const nchar_t* src, uint2 len, int indexed, int event_id);
/* The values of a char<n> or binary<n> field over all objects of a class. */
ZKT_RET zkt_w_seq_sequence_char(zkt_trans_t trans, uint2 class_code, zkt_offs_t offs, zkt_seq_iterator_h seq,
                                zkt_size_t elem_size);

/* Arrays and vectors. Every wrapper takes the object, the field's two
   offsets and its number first (ZKT_ELEM_), an array wrapper its length n
   last. */
#ifndef ZKT_S_NOTFOUND
#define ZKT_S_NOTFOUND 2 /* the updated-bitmap scan found no further field */
#endif
#define ZKT_ELEM_ zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no
ZKT_RET zkt_w_va_struct_e_get2(ZKT_ELEM_, zkt_objhandle_h elem, uint2 index, uint4 u_size, uint4 c_size, uint2 n);
ZKT_RET zkt_w_va_struct_e_put2(ZKT_ELEM_, zkt_objhandle_h elem, uint2 index, uint4 u_size, uint4 c_size, int idx,
                               uint2 n);
ZKT_RET zkt_w_va_simple_e_get2(ZKT_ELEM_, uint2 index, uint4 esize, void* result, uint2 n);
ZKT_RET zkt_w_va_simple_e_getrange2(ZKT_ELEM_, uint2 start, uint4 esize, uint4 num, void* dest, uint2 n, int is_enum);
ZKT_RET zkt_w_va_simple_e_put2(ZKT_ELEM_, uint2 index, uint4 esize, int idx, const void* value, uint2 n);
ZKT_RET zkt_w_va_simple_e_putrange2(ZKT_ELEM_, uint2 start, uint4 esize, uint4 num, int idx, const void* src, uint2 n,
                                    int is_enum);
ZKT_RET zkt_w_va_bit_e_get2(ZKT_ELEM_, uint2 index, uint1* result, uint2 n);
ZKT_RET zkt_w_va_bit_e_getrange2(ZKT_ELEM_, uint2 start, uint2 num, uint1* dest, uint2 n);
/* The boolean puts take the update event after n when there is one. */
ZKT_RET zkt_w_va_bit_e_put2(ZKT_ELEM_, uint2 index, int idx, const uint1* value, uint2 n, ...);
ZKT_RET zkt_w_va_bit_e_putrange2(ZKT_ELEM_, uint2 start, uint2 num, int idx, const uint1* src, uint2 n, ...);
ZKT_RET zkt_w_va_chars_e_get2(ZKT_ELEM_, uint2 index, uint4 esize, char* dest, uint4 dest_size, uint2 n);
ZKT_RET zkt_w_va_chars_e_put2(ZKT_ELEM_, uint2 index, uint4 esize, const char* src, uint4 len, int idx, uint2 n);
ZKT_RET zkt_w_va_nchars_e_get2(ZKT_ELEM_, uint2 index, uint4 esize, nchar_t* dest, uint4 dest_size, uint2 n);
ZKT_RET zkt_w_va_nchars_e_put2(ZKT_ELEM_, uint2 index, uint4 esize, const nchar_t* src, uint4 len, int idx, uint2 n);
ZKT_RET zkt_w_va_string_e_get_len2(ZKT_ELEM_, uint2 index, uint2* retlen, uint2 n);
ZKT_RET zkt_w_va_string_e_get2(ZKT_ELEM_, uint2 index, char* dest, uint2 dest_size, uint2* retlen, uint2 n);
ZKT_RET zkt_w_va_string_e_put2(ZKT_ELEM_, uint2 index, const char* value, uint2 len, int idx, uint2 n);
ZKT_RET zkt_w_va_nstring_e_get_len2(ZKT_ELEM_, uint2 index, uint2* retlen, uint2 n);
ZKT_RET zkt_w_va_nstring_e_get2(ZKT_ELEM_, uint2 index, nchar_t* dest, uint2 dest_size, uint2* retlen, uint2 n);
ZKT_RET zkt_w_va_nstring_e_put2(ZKT_ELEM_, uint2 index, const nchar_t* value, uint2 len, int idx, uint2 n);
/* The name of field number fldno of the object's class. */
ZKT_RET zkt_get_fieldname_by_fldno(zkt_objhandle_h h, uint2 fldno, char* dest, uint2 dest_size, uint2* len);

ZKT_RET zkt_w_vector_size_get2(ZKT_ELEM_, uint2* result);
ZKT_RET zkt_w_v_struct_e_get2(ZKT_ELEM_, zkt_objhandle_h elem, uint2 index);
ZKT_RET zkt_w_v_struct_e_put2(ZKT_ELEM_, zkt_objhandle_h elem, uint2 index, uint4 u_size, uint4 c_size, uint4 u_align,
                              uint4 c_align, int idx);
ZKT_RET zkt_w_v_struct_e_erase2(ZKT_ELEM_, uint2 index, int idx);
ZKT_RET zkt_w_v_struct_size_put2(ZKT_ELEM_, uint2 size, int idx);
ZKT_RET zkt_w_v_simple_e_get2(ZKT_ELEM_, uint2 index, uint4 esize, void* result);
ZKT_RET zkt_w_v_simple_e_getrange2(ZKT_ELEM_, uint2 start, uint4 esize, uint2 num, void* dest, int is_enum);
ZKT_RET zkt_w_v_simple_e_put2(ZKT_ELEM_, uint2 index, uint4 esize, int idx, const void* value);
ZKT_RET zkt_w_v_simple_e_putrange2(ZKT_ELEM_, uint2 start, uint4 esize, uint2 num, int idx, const void* src,
                                   int is_enum);
ZKT_RET zkt_w_v_simple_size_put2(ZKT_ELEM_, uint2 size, uint4 esize, int idx);
ZKT_RET zkt_w_v_bit_e_get2(ZKT_ELEM_, uint2 index, uint1* result);
ZKT_RET zkt_w_v_bit_e_getrange2(ZKT_ELEM_, uint2 start, uint2 num, uint1* dest);
ZKT_RET zkt_w_v_bit_e_put2(ZKT_ELEM_, uint2 index, int idx, const uint1* value);
ZKT_RET zkt_w_v_bit_e_putrange2(ZKT_ELEM_, uint2 start, uint2 num, int idx, const uint1* src);
ZKT_RET zkt_w_v_bit_size_put2(ZKT_ELEM_, uint2 size);
ZKT_RET zkt_w_v_chars_e_get2(ZKT_ELEM_, uint2 index, uint4 esize, char* dest, uint4 dest_size);
ZKT_RET zkt_w_v_chars_e_put2(ZKT_ELEM_, uint2 index, uint4 esize, const char* src, uint4 len, int idx);
ZKT_RET zkt_w_v_chars_size_put2(ZKT_ELEM_, uint2 size, uint4 esize, int idx);
ZKT_RET zkt_w_v_nchars_e_get2(ZKT_ELEM_, uint2 index, uint4 esize, nchar_t* dest, uint4 dest_size);
ZKT_RET zkt_w_v_nchars_e_put2(ZKT_ELEM_, uint2 index, uint4 esize, const nchar_t* src, uint4 len, int idx);
ZKT_RET zkt_w_v_nchars_size_put2(ZKT_ELEM_, uint2 size, uint4 esize, int idx);
ZKT_RET zkt_w_v_string_e_get_len2(ZKT_ELEM_, uint2 index, uint2* retlen);
ZKT_RET zkt_w_v_string_e_get2(ZKT_ELEM_, uint2 index, char* dest, uint2 dest_size, uint2* retlen);
ZKT_RET zkt_w_v_string_e_put2(ZKT_ELEM_, uint2 index, const char* value, uint2 len, int idx);
ZKT_RET zkt_w_v_string_size_put2(ZKT_ELEM_, uint2 size, int idx);
ZKT_RET zkt_w_v_nstring_e_get_len2(ZKT_ELEM_, uint2 index, uint2* retlen);
ZKT_RET zkt_w_v_nstring_e_get2(ZKT_ELEM_, uint2 index, nchar_t* dest, uint2 dest_size, uint2* retlen);
ZKT_RET zkt_w_v_nstring_e_put2(ZKT_ELEM_, uint2 index, const nchar_t* value, uint2 len, int idx);
ZKT_RET zkt_w_v_nstring_size_put2(ZKT_ELEM_, uint2 size, int idx);
#undef ZKT_ELEM_

/* Events, XML and JSON, calculator, user-defined functions. */
ZKT_RET zkt_ev_h_register(zkt_trans_h t, zkt_generic_ev_handler handler, int event_id, void* param, uint2 before);
ZKT_RET zkt_ev_h_unregister(zkt_trans_h t, zkt_generic_ev_handler handler, int event_id);
ZKT_RET zkt_w_xml_get_object(zkt_objhandle_h handle, void* stream_handle, zkt_stream_write o_stream, uint2 class_code);
ZKT_RET zkt_w_xml_put_object(zkt_objhandle_h handle, const char* xml, uint2 class_code);
ZKT_RET zkt_w_xml_create_object(zkt_trans_h t, const char* xml, zkt_objhandle_h handle, uint2 class_code);
ZKT_RET zkt_w_xml_schema(zkt_trans_h t, void* stream_handle, zkt_stream_write o_stream, uint2 class_code);
ZKT_RET zkt_w_json_get_object(zkt_objhandle_h handle, void* stream_handle, zkt_stream_write o_stream,
                              uint2 class_code);

/* Blobs, references, struct members, optional and spatial fields. */
ZKT_RET zkt_w_blob_get2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, uint4 start_offset,
                        char* dest, uint4 dest_size, uint4* len);
ZKT_RET zkt_w_blob_len2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, uint4* result);
ZKT_RET zkt_w_blob_put2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, const char* src,
                        uint4 nbytes);
ZKT_RET zkt_w_blob_append2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, const char* src,
                           uint4 nbytes);
ZKT_RET zkt_w_struct_get2(zkt_objhandle_h h, zkt_objhandle_h member, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no);
ZKT_RET zkt_w_struct_put2(zkt_objhandle_h h, zkt_objhandle_h member, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no,
                          int indexed);
ZKT_RET zkt_w_optional_get2(zkt_objhandle_h h, zkt_objhandle_h member, zkt_offs_t u_offs, zkt_offs_t c_offs,
                            uint2 no);
/* struct_num, then the optional struct's sizes and alignments in the normal
   and the compact layout. */
ZKT_RET zkt_w_optional_put2(zkt_objhandle_h h, zkt_objhandle_h member, int struct_num, zkt_offs_t u_offs,
                            zkt_offs_t c_offs, uint2 no, zkt_size_t u_size, zkt_size_t c_size, zkt_size_t u_align,
                            zkt_size_t c_align);
ZKT_RET zkt_w_optional_erase2(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no);
/* Coordinates of any simple type; put learns it from the element type code. */
ZKT_RET zkt_w_rect_get(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, zkt_size_t esize,
                       uint2 n, void* dest);
ZKT_RET zkt_w_rect_put(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, int etype,
                       zkt_size_t esize, uint2 n, int indexed, const void* src);
ZKT_RET zkt_w_point_get(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, zkt_size_t esize,
                        uint2 n, void* dest);
ZKT_RET zkt_w_point_put(zkt_objhandle_h h, zkt_offs_t u_offs, zkt_offs_t c_offs, uint2 no, int etype,
                        zkt_size_t esize, uint2 n, int indexed, const void* src);

/* Direct and fixed structs, sequences and top-N. */
ZKT_RET zkt_w_direct_struct_get_ptr(zkt_objhandle_h h, void** dest, zkt_size_t size);
#ifndef ZKT_S_CURSOR_END
#define ZKT_S_CURSOR_END 3 /* a cursor walked past its last object */
#endif
ZKT_RET zkt_cursor_next(zkt_trans_h t, zkt_cursor_h c);
ZKT_RET zkt_cursor_close(zkt_trans_h t, zkt_cursor_h c);
void zkt_memmove(void* dest, const void* src, zkt_size_t nbt);

#ifdef __cplusplus
}
#endif

#endif /* ZKT_ZKTWRAP_H */
