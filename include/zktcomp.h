/* Vantrel schema compiler: the library interface. */
#ifndef ZKTCOMP_PUBLIC_H
#define ZKTCOMP_PUBLIC_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The database's int-sized truth value: any value but 0 is true. */
typedef int zkt_bool;
/* Result of the exported functions: 0 compiled, 71 the temporary file could
   not be created, 1005 the schema has an error (reported through dicterrfn). */
typedef int ZKT_RET;
/* The dictionary head record; its layout is fixed by the runtime. */
typedef struct zkt_dictionary_t_* zkt_dict_h;

/* Options of an in-memory compile. Null texts take their defaults. */
typedef struct zktcomp_options_t {
  zkt_bool debug;
  zkt_bool nosort;
  zkt_bool dumpxml;
  zkt_bool genhpp;
  zkt_bool gencs;
  zkt_bool genjava;
  zkt_bool gensmartptr;
  const char* outDir; /* generated files of this database there are removed on any message */
  const char* csNamespace;
  const char* javaPackage;
  zkt_bool cmode1;
  zkt_bool genXmlMethods;
  zkt_bool genJsonMethods;
  zkt_bool genSql;
  zkt_bool largeDatabase;
  int wcharSize;
  zkt_bool use_prefix;
  const char* include_dir; /* directory of #include; null: "." */
  zkt_bool allCompact;
  zkt_bool persistent;
  zkt_bool transient;
  zkt_bool suppress_api; /* no access API for any struct or class */
  zkt_bool atomic;
} zktcomp_options_t;

/* Severity of a message passed to a dicterrfn. */
typedef enum { ZKTCOMP_WARNING = 0, ZKTCOMP_ERROR = 1 } CompilerErrorType;

/* Receives every diagnostic of an in-memory compile; the strings are valid
   only during the call. */
typedef void (*dicterrfn)(CompilerErrorType type, const char* msg, const char* file, int line, int pos,
                          void* ctx);

/* Compiles schema_str into a dictionary allocated with zkt_sys_calloc and
   zkt_sys_malloc, which then belongs to the caller. On success stores it in
   *ret_dict, 168 in *ret_dict_size, and the database name in ret_dbname when
   its length + 1 is below *ret_dbname_size (then *ret_dbname_size is that
   length + 1, else 0). On failure the out-parameters are left alone. */
ZKT_RET zkt_db_load_dictionary(const char* schema_str, zktcomp_options_t* comp_opts, zkt_dict_h* ret_dict,
                               size_t* ret_dict_size, char* ret_dbname, size_t* ret_dbname_size, dicterrfn errfn,
                               void* ctx);

/* Whether name is reserved in a schema; has_sql must be exactly 1 to add the SQL words. */
zkt_bool zkt_dict_is_reserved_word(const char* name, zkt_bool has_sql);

#ifdef __cplusplus
}
#endif

#endif
