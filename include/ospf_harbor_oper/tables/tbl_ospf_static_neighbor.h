/* tbl_ospf_static_neighbor: Configured neighbours, by address.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_TBL_OSPF_STATIC_NEIGHBOR_H
#define OSPF_HARBOR_OPER_TBL_OSPF_STATIC_NEIGHBOR_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

KELP_EXTERN_C_END

#endif
