/* tbl_ospfv2_unknown_tlv: TLVs that no field covers, by type.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_TBL_OSPFV2_UNKNOWN_TLV_H
#define OSPF_HARBOR_OPER_TBL_OSPFV2_UNKNOWN_TLV_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

KELP_EXTERN_C_END

#endif
