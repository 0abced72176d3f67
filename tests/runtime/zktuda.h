/* Declarations of the runtime's user-defined access interface. */
#ifndef ZKT_ZKTUDA_H
#define ZKT_ZKTUDA_H

#include "zkt.h"

#endif /* ZKT_ZKTUDA_H */
