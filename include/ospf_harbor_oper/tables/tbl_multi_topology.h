/* tbl_multi_topology: Topologies, by name.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_TBL_MULTI_TOPOLOGY_H
#define OSPF_HARBOR_OPER_TBL_MULTI_TOPOLOGY_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

KELP_EXTERN_C_END

#endif
