/* tbl_ospfv3_prefix_list: Prefixes of a link LSA.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_TBL_OSPFV3_PREFIX_LIST_H
#define OSPF_HARBOR_OPER_TBL_OSPFV3_PREFIX_LIST_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

KELP_EXTERN_C_END

#endif
