/* tbl_ospf_rev1: The root in its revised form; meant to hold one row, which nothing enforces.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_TBL_OSPF_REV1_H
#define OSPF_HARBOR_OPER_TBL_OSPF_REV1_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

KELP_EXTERN_C_END

#endif
