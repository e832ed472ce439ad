/* tbl_ospf_interface: Interfaces, by name.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_TBL_OSPF_INTERFACE_H
#define OSPF_HARBOR_OPER_TBL_OSPF_INTERFACE_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

KELP_EXTERN_C_END

#endif
