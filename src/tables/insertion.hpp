// Putting a record into a table's tree, taking it out and ending it, with all the counts that
// depend on that: records, shadow records, records waiting for destruction, and the runtime's
// counts by tenant. A table marked for replication is followed by the runtime's cursors: an insert
// may move the write cursor, and only the collector deletes. Whether it is marked is asked of the
// runtime each time.
//
// No lock is taken and nothing allocates. Each store to table and record is announced first; the
// tree announces its own.
#pragma once

#include <array>

#include "module/operation.hpp"
#include "tables/facts.hpp"

namespace harbor::insertion {

inline constexpr std::string_view table_and_record =
    "kelp_handle *handle, uint32_t space_id, $table_table *table, $table_record *record, uint32_t "
    "*err";
inline constexpr std::string_view insert_errors =
    "KELP_ERR_EXISTS for a null record, also over another code, and when a record of the same "
    "tenant, key and source is in the table; the record is unchanged then";
inline constexpr std::string_view delete_errors =
    "KELP_ERR_INVALID when the table is marked for replication and the caller is not the "
    "collector; KELP_ERR_NOT_FOUND when the record is not in the table: it has then lost its table "
    "and its key mark, and no count changed";

inline constexpr std::array operations{
    Operation{
        .suffix = "insert",
        .result = "void",
        .arguments = table_and_record,
        .rule = "insertion::insert($bindings, handle, space_id, table, record, 0, err)",
        .brief = "Enters a record in the table, in the order of tenant, key and source. The record "
                 "holds its object before.",
        .errors = insert_errors,
        .ownership = "no reference is taken: the caller's reference keeps the record alive",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_INSERT,
    },
    Operation{
        .suffix = "pkey_insert",
        .result = "void",
        .arguments = table_and_record,
        .rule = "insertion::insert($bindings, handle, space_id, table, record, 1, err)",
        .brief = "As $table_insert for a record that carries a key and no data, which it marks.",
        .errors = insert_errors,
        .ownership = "no reference is taken: the caller's reference keeps the record alive",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_PKEY_INSERT,
    },
    Operation{
        .suffix = "insert_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, $table_table *table, $table_record *record, uint32_t "
                     "pkey",
        .rule = "insertion::insert_cr",
        .brief = "As $table_insert, or with pkey non-zero as $table_pkey_insert, with the handle's "
                 "cr_space_id and cr_err; gives cr_err.",
        .errors = insert_errors,
        .ownership = "no reference is taken: the caller's reference keeps the record alive",
    },
    Operation{
        .suffix = "delete",
        .result = "void",
        .arguments = table_and_record,
        .rule = "insertion::remove",
        .brief = "Takes a record out of the table. The record stays, with its references.",
        .errors = delete_errors,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_DELETE,
    },
    Operation{
        .suffix = "delete_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, $table_table *table, $table_record *record, uint32_t "
                     "destroy",
        .rule = "insertion::remove_cr",
        .brief = "As $table_delete with the handle's cr_space_id and cr_err; destroy non-zero then "
                 "gives up one reference as well. Gives cr_err.",
        .errors = delete_errors,
        .ownership = "with destroy the caller's reference is gone after success",
    },
    Operation{
        .suffix = "destroy_record",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $table_record *record, uint32_t *err",
        .rule = "insertion::destroy",
        .brief = "Gives up one reference. With the last one the record leaves its table, its "
                 "objects are destroyed and it is freed; the table's null record is passed over. A "
                 "table with cursors does not let it go outside the collector: it is freed all the "
                 "same, and its node stays in the tree, which must not be walked then. Such a "
                 "record ends by $table_request_record_destroy.",
        .errors = "KELP_ERR_NOT_FOUND for a null record; what the removal of its handle mapping "
                  "reports: the record then stays allocated, with its objects gone. Ends the "
                  "process when the record's type record is broken",
        .ownership = "the caller's reference is gone; with the last one record and objects are",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_DESTROY_RECORD,
    },
    Operation{
        .suffix = "record_destroy_cr",
        .result = "void",
        .arguments = "kelp_handle *handle, $table_record *record",
        .rule = "insertion::destroy_cr",
        .brief = "As $table_destroy_record with the handle's cr_space_id and cr_err.",
        .errors = "as $table_destroy_record",
        .ownership = "as $table_destroy_record",
    },
    Operation{
        .suffix = "request_record_destroy",
        .result = "void",
        .arguments = table_and_record,
        .rule = "insertion::request_destroy",
        .brief = "Marks a record of a table with cursors for destruction; it stays in the table "
                 "until the collector ends it.",
        .errors = "KELP_ERR_INVALID for a null record and for a table without cursors; those of "
                  "kelpdb_request_record_destroy",
        .ownership = "the caller's reference goes to the collector",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_REQUEST_RECORD_DESTROY,
    },
    Operation{
        .suffix = "request_record_destroy_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, $table_table *table, $table_record *record",
        .rule = "insertion::request_destroy_cr",
        .brief = "As $table_request_record_destroy with the handle's cr_space_id and cr_err; gives "
                 "cr_err.",
        .errors = "as $table_request_record_destroy",
        .ownership = "the caller's reference goes to the collector",
    },
};
inline constexpr TableFamily family{"insertion", TableScope::table, operations};

// --- the rules --------------------------------------------------------------------------------

void insert(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *table,
            void *record, std::uint32_t pkey, std::uint32_t *err);
std::uint32_t insert_cr(const TableFacts &facts, kelp_handle *handle, void *table, void *record,
                        std::uint32_t pkey);

void remove(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *table,
            void *record, std::uint32_t *err);
std::uint32_t remove_cr(const TableFacts &facts, kelp_handle *handle, void *table, void *record,
                        std::uint32_t destroy);

void destroy(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *record,
             std::uint32_t *err);
void destroy_cr(const TableFacts &facts, kelp_handle *handle, void *record);

void request_destroy(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                     void *table, void *record, std::uint32_t *err);
std::uint32_t request_destroy_cr(const TableFacts &facts, kelp_handle *handle, void *table,
                                 void *record);

}  // namespace harbor::insertion
