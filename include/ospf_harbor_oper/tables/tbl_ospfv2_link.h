/* tbl_ospfv2_link: Links of an OSPFv2 router LSA.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_TBL_OSPFV2_LINK_H
#define OSPF_HARBOR_OPER_TBL_OSPFV2_LINK_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

KELP_EXTERN_C_END

#endif
