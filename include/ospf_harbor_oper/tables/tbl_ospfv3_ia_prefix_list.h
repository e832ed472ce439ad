/* tbl_ospfv3_ia_prefix_list: Prefixes of an intra-area prefix LSA.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_TBL_OSPFV3_IA_PREFIX_LIST_H
#define OSPF_HARBOR_OPER_TBL_OSPFV3_IA_PREFIX_LIST_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

KELP_EXTERN_C_END

#endif
