// The type record of each schema constant. The emitter specialises these for every type and table;
// a constant without a record is null and does not link.
#pragma once

#include <kelp/object.h>

namespace harbor {

// A data type's record, or a table's own.
template <const auto &type>
inline constexpr kelp_type_record *type_record = nullptr;

// The record of a table's records.
template <const auto &table>
inline constexpr kelp_type_record *record_type_record = nullptr;

}  // namespace harbor

// The ordered list of all records, with a null pointer behind the last.
extern "C" kelp_type_record *const ospf_harbor_oper_type_records[];
