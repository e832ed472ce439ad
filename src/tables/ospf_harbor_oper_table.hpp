// The tables, from here. A table is a keyed tree of records in a database; all run the same
// rules, told apart by one constant record each:
//
//   facts.hpp             what differs between tables, and the messages of a table
//   open                  a table in its database: open, close, the two ways to free
//   record                how a record comes into being, references on it
//   record_fields         the objects that a record holds, and counts
//   order, key_order.hpp  which of two records comes first, and search by key
//   insertion             into the tree and out of it, and a record's end
//   traversal             the walks over a table
//   handlers              what the application hears of records
//   record_encodings      text, XML and image of a record and of its key
//
// In this file: how the runtime finds a table that it knows only by its LUID: the lookup from LUID
// to index, and the one copy of the vfts that callers are handed. Called through the module's
// exported names. Never hands out the constant records, and never copies twice: a copy that failed
// is not tried again.
//
// Nothing here is locked or atomic. The first call is to be made before threads contend.
#pragma once

#include <array>

#include "module/operation.hpp"
#include "tables/facts.hpp"

namespace harbor::vft {

inline constexpr std::array operations{
    Operation{
        .suffix = "get_luid",
        .result = "const uint8_t *",
        .arguments = "kelp_handle *handle, uint32_t space_id, const void *object, uint32_t *err",
        .rule = "vft::get_luid",
        .brief = "Gives the 16-byte identity of the object's type, as kelp_get_luid does.",
        .errors = "those of kelp_get_luid; null then",
        .ownership = "the bytes belong to the type record and live as long",
    },
};
inline constexpr TableFamily family{"ospf_harbor_oper_table", TableScope::table, operations};

inline constexpr std::array module_operations{
    Operation{
        .suffix = "ospf_harbor_oper_table_vft_init",
        .result = "uint32_t",
        .arguments = "void",
        .rule = "vft::init",
        .brief =
            "Copies the $tables table vfts into ospf_harbor_oper_table_lut, once in a process. "
            "Gives 0 when the copy was started before, else the result of table_vft_cpy. The "
            "first call is to be made before threads contend.",
        .errors = "none; the result is the code",
    },
    Operation{
        .suffix = "ospf_harbor_oper_table_get_vft",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, const uint8_t *luid, "
                     "const kelp_table_vft **vft_out, uint32_t *err",
        .rule = "vft::get",
        .brief = "Writes the vft of the table with the 16-byte LUID to *vft_out, making the copy "
                 "first if nobody has. The error word says whether that copy failed; the vft that "
                 "is handed out is then not filled in.",
        .errors = "KELP_ERR_NOT_FOUND for an unknown LUID, with null in *vft_out; the code of a "
                  "failed copy",
        .ownership = "the vft belongs to the library and lives as long as the process",
    },
    Operation{
        .suffix = "ospf_harbor_oper_table_mrst_lookup",
        .result = "int32_t",
        .arguments = "const uint8_t *luid",
        .rule = "vft::lookup",
        .brief = "Gives the index in ospf_harbor_oper_table_lut of the table with the 16-byte "
                 "LUID, which need not be aligned; -1 when there is none.",
    },
};
inline constexpr Family module_family{"ospf_harbor_oper_table", module_operations};

// --- the rules --------------------------------------------------------------------------------

std::uint32_t init();
void get(kelp_handle *handle, std::uint32_t space_id, const std::uint8_t *luid,
         const kelp_table_vft **vft_out, std::uint32_t *err);
std::int32_t lookup(const std::uint8_t *luid);

const std::uint8_t *get_luid(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                             const void *object, std::uint32_t *err);

}  // namespace harbor::vft
