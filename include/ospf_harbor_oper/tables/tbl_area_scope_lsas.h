/* tbl_area_scope_lsas: Groups of area-scope LSAs.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_TBL_AREA_SCOPE_LSAS_H
#define OSPF_HARBOR_OPER_TBL_AREA_SCOPE_LSAS_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

KELP_EXTERN_C_END

#endif
