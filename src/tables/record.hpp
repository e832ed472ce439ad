// How a record comes into being and how references on it are taken. A record is a shell around one
// or two objects: it starts with one reference, in no table and without objects. Called by the
// forwarders and by the encodings, which make records of their own; a record's end stands with the
// insertion rules.
#pragma once

#include <array>

#include "module/operation.hpp"
#include "tables/facts.hpp"

namespace harbor::record {

inline constexpr std::string_view create_errors =
    "none is set: null without memory, and the error word as it was. On success the error word is "
    "set to 0, whatever it held";
inline constexpr std::string_view create_ownership =
    "the caller owns the record's first reference and gives it up by $table_destroy_record";

inline constexpr std::array operations{
    Operation{
        .suffix = "create_record",
        .result = "$table_record *",
        .arguments = "kelp_handle *handle, uint32_t space_id, uint32_t *err",
        .rule = "record::create($bindings, handle, space_id, KELP_SRC_DEFAULT, err)",
        .brief = "Makes a record of $table with the default source and the calling thread's "
                 "tenant. It holds no object and is in no table. The error word is not looked at.",
        .errors = create_errors,
        .ownership = create_ownership,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_CREATE_RECORD,
    },
    Operation{
        .suffix = "create_record_w_src",
        .result = "$table_record *",
        .arguments = "kelp_handle *handle, uint32_t space_id, uint32_t src, uint32_t *err",
        .rule = "record::create",
        .brief = "Makes a record of $table with the source that the low byte of src gives: 1 is "
                 "the default, 255 marks a shadow record. It holds no object and is in no table. "
                 "The error word is not looked at.",
        .errors = create_errors,
        .ownership = create_ownership,
    },
    Operation{
        .suffix = "record_create_cr",
        .result = "$table_record *",
        .arguments = "kelp_handle *handle, uint32_t with_objects",
        .rule = "record::create_cr",
        .brief = "Makes a record of $table with the handle's cr_space_id and cr_err; with_objects "
                 "non-zero makes the record's objects too. Without memory it gives the table's "
                 "null record: it may be handed on as any other, takes no object, no reference "
                 "and no end, and stays zero. cr_err is not looked at.",
        .errors = "KELP_ERR_NO_MEMORY as the handle's last error and in cr_err when there is no "
                  "memory and cr_err was 0, also for an object of a record that could be made; on "
                  "success cr_err is set to 0, whatever it held",
        .ownership = "the caller owns the record's first reference and gives it up by "
                     "$table_record_destroy_cr; the null record belongs to the library",
    },
    Operation{
        .suffix = "record_add_ref",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, $table_record *record, uint32_t *err",
        .rule = "record::add_ref",
        .brief = "Takes a further reference and gives how many there were before; 0 for the "
                 "table's null record, which takes none. The error word is not looked at. Ends "
                 "the process at 0xFFFFFF references.",
        .errors = "KELP_ERR_NOT_FOUND for a null record; 0 then",
        .ownership = "each reference is given up by a $table_destroy_record of its own",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_ADD_REF,
    },
    Operation{
        .suffix = "pkey_create",
        .result = "$K *",
        .arguments = "kelp_handle *handle, uint32_t space_id",
        .rule = "record::pkey_create",
        .brief = "Makes an object that stands for a primary key of $table: a $K, of which only the "
                 "key is to be filled.",
        .errors = "those of $K_create; null then",
        .ownership = "the caller destroys the object by $table_pkey_destroy",
        .unsafe_twin = true,
    },
    Operation{
        .suffix = "pkey_destroy",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $K *pkey",
        .rule = "record::pkey_destroy",
        .brief = "Destroys a primary key object, as $K_destroy does.",
        .ownership = "the object is gone",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_PKEY_DESTROY,
    },
};
inline constexpr TableFamily family{"record", TableScope::table, operations};

// --- the rules --------------------------------------------------------------------------------

inline constexpr std::uint32_t reference_mask = 0xFFFFFF;

void *create(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
             std::uint32_t src, std::uint32_t *err);
void *create_cr(const TableFacts &facts, kelp_handle *handle, std::uint32_t with_objects);
std::uint32_t add_ref(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                      void *record, std::uint32_t *err);
void *pkey_create(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id);
void pkey_destroy(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *pkey);

}  // namespace harbor::record
