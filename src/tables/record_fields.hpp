// The objects that a record holds, and the counts of a table. Setting an object gives it to the
// record, which destroys it at its own end; detaching gives it back. A composite-key record has
// each field operation twice, for its key object and for its data object.
#pragma once

#include <array>

#include "module/operation.hpp"
#include "tables/facts.hpp"

namespace harbor::record_fields {

inline constexpr std::string_view set_errors =
    "no error word; an object that lives in a record or in another object, or a null one, is "
    "refused: the validator's code becomes the handle's last error, and the record stays as it was";
inline constexpr std::string_view set_ownership =
    "the object is the record's after success; the table's null record takes none";

inline constexpr std::array object_operations{
    Operation{
        .suffix = "get_field",
        .result = "$O *",
        .arguments = "kelp_handle *handle, uint32_t space_id, $table_record *record",
        .rule = "record_fields::get",
        .brief =
            "Gives the record's $object, null when it holds none. The record must not be null.",
        .ownership = "the object stays the record's",
    },
    Operation{
        .suffix = "get_field_detach",
        .result = "$O *",
        .arguments = "kelp_handle *handle, uint32_t space_id, $table_record *record",
        .rule = "record_fields::detach",
        .brief = "Takes the $object out of the record and gives it. Its mark as embedded stays. "
                 "The record must not be null.",
        .ownership = "the object is the caller's",
    },
    Operation{
        .suffix = "set_field",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $table_record *record, $O *object",
        .rule = "record_fields::set",
        .brief = "Places a $object in the record and marks it as embedded. An object that the "
                 "record held is not destroyed.",
        .errors = set_errors,
        .ownership = set_ownership,
    },
    Operation{
        .suffix = "free_and_set_field",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $table_record *record, $O *object",
        .rule = "record_fields::free_and_set",
        .brief = "Destroys the $object that the record holds, places the new one and marks it as "
                 "embedded. A refused object leaves the old one in place.",
        .errors = set_errors,
        .ownership = set_ownership,
    },
};
inline constexpr TableFamily object_family{"record_fields", TableScope::per_object,
                                           object_operations};

inline constexpr std::array operations{
    Operation{
        .suffix = "table_get_count",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, $table_table *table",
        .rule = "record_fields::count",
        .brief =
            "Gives how many records the table holds: of the calling thread's tenant, or all of "
            "them when it has none. 0 for a null table.",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_TABLE_GET_COUNT,
    },
    Operation{
        .suffix = "table_get_count_by_src",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, $table_table *table, uint8_t src",
        .rule = "record_fields::count_by_source",
        .brief = "Gives how many records of the source src the calling thread's tenant has in the "
                 "table. Without a tenant only shadow records (src 255) are counted, and any other "
                 "source gives 0. 0 for a null table.",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_TABLE_GET_COUNT_BY_SRC,
    },
    Operation{
        .suffix = "table_get_count_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, $table_table *table",
        .rule = "record_fields::count($bindings, handle, handle->cr_space_id, table)",
        .brief = "As $table_table_get_count with the handle's cr_space_id.",
    },
};
inline constexpr TableFamily family{"record_fields", TableScope::table, operations};

// --- the rules --------------------------------------------------------------------------------

void *get(const TableFacts &facts, std::uint32_t object_index, kelp_handle *handle,
          std::uint32_t space_id, void *record);
void *detach(const TableFacts &facts, std::uint32_t object_index, kelp_handle *handle,
             std::uint32_t space_id, void *record);
void set(const TableFacts &facts, std::uint32_t object_index, kelp_handle *handle,
         std::uint32_t space_id, void *record, void *object);
void free_and_set(const TableFacts &facts, std::uint32_t object_index, kelp_handle *handle,
                  std::uint32_t space_id, void *record, void *object);

std::uint32_t count(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                    const void *table);
std::uint32_t count_by_source(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                              const void *table, std::uint8_t src);

}  // namespace harbor::record_fields
