/* Vantrel schema compiler: the library interface. */
#ifndef ZKTCOMP_PUBLIC_H
#define ZKTCOMP_PUBLIC_H

#ifdef __cplusplus
extern "C" {
#endif

/* Severity of a message passed to a dicterrfn. */
typedef enum { ZKTCOMP_WARNING = 0, ZKTCOMP_ERROR = 1 } CompilerErrorType;

/* Receives every diagnostic of an in-memory compile; the strings are valid
   only during the call. */
typedef void (*dicterrfn)(CompilerErrorType type, const char* msg, const char* file, int line, int pos,
                          void* ctx);

#ifdef __cplusplus
}
#endif

#endif
