/* Declarations of the runtime's wrapper functions that generated accessors call. */
#ifndef ZKT_ZKTWRAP_H
#define ZKT_ZKTWRAP_H

#include "zkt.h"

#endif /* ZKT_ZKTWRAP_H */
