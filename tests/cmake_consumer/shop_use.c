/* Uses the generated interface, so that the consumer really compiles against it. */
#include "shop.h"

ZKT_RET shop_item_find(zkt_trans_h t, uint4 id, item* handle) { return item_by_id_find(t, id, handle); }
