// Tables in their database: open, close and the two ways of freeing. An open finds the table in the
// table of contents and, unless the caller is a reader, makes it when it is missing. There is no
// close state and no count of openers; a table ends by its free, which does not look at its
// records.
//
// The caller holds the database's lock; the open only checks the rule that whoever makes a table
// holds the write lock, unless the database is private to the process.
#pragma once

#include <array>

#include "module/operation.hpp"
#include "tables/facts.hpp"

namespace harbor::open {

inline constexpr std::string_view open_errors =
    "KELP_ERR_TOO_LONG when the name is too long; KELP_ERR_NO_MEMORY without memory; those of the "
    "runtime's table of contents. Null then. Ends the process when a table is to be made without "
    "the write lock, or when the database is broken";
inline constexpr std::string_view open_ownership =
    "the table belongs to the database and lives until it is freed";

inline constexpr std::array operations{
    Operation{
        .suffix = "table_open",
        .result = "$table_table *",
        .arguments = "kelp_handle *handle, uint32_t space_id, const char *name, "
                     "uint32_t read_only, uint32_t *err",
        .rule = "open::open($bindings, handle, space_id, {.name = name, .read_only = read_only}, "
                "err)",
        .brief = "Opens the table of that name. A name with a slash is the whole path, cut to 207 "
                 "bytes; any other gets the table's LUID behind a slash, in 207 bytes at most. A "
                 "missing table is made when read_only is 0, else null is given without an error.",
        .errors = open_errors,
        .ownership = open_ownership,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_TABLE_OPEN,
    },
    Operation{
        .suffix = "table_open_by_id",
        .result = "$table_table *",
        .arguments = "kelp_handle *handle, uint32_t space_id, uint64_t id, uint32_t read_only, "
                     "uint32_t *err",
        .rule = "open::open($bindings, handle, space_id, {.read_only = read_only, .id = id, "
                ".open_type = KELP_OPEN_BY_ID}, err)",
        .brief = "Opens the table of that id. A missing table is made when read_only is 0, else "
                 "null is given without an error.",
        .errors = open_errors,
        .ownership = open_ownership,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_TABLE_OPEN_BY_ID,
    },
    Operation{
        .suffix = "table_open_auto_id",
        .result = "$table_table *",
        .arguments = "kelp_handle *handle, uint32_t space_id, uint32_t read_only, uint32_t *err",
        .rule = "open::open($bindings, handle, space_id, {.read_only = read_only, .dynamic = 1, "
                ".open_type = KELP_OPEN_AUTO_ID}, err)",
        .brief = "Makes a table under the next id of its type. With read_only it gives null and "
                 "takes no id.",
        .errors = open_errors,
        .ownership = open_ownership,
        .unsafe_twin = true,
    },
    Operation{
        .suffix = "table_open_by_ior_with_name",
        .result = "$table_table *",
        .arguments = "kelp_handle *handle, uint32_t space_id, const char *name, const kelp_oid "
                     "*ior, uint32_t read_only, uint32_t dynamic, uint32_t *err",
        .rule = "open::open($bindings, handle, space_id, {.name = name, .read_only = read_only, "
                ".ior = ior, .dynamic = dynamic}, err)",
        .brief = "Opens the table of that name. A table that is made gets ior, when not null, as "
                 "its OID, and is entered as dynamic or static.",
        .errors = open_errors,
        .ownership = open_ownership,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_TABLE_OPEN_BY_IOR_WITH_NAME,
    },
    Operation{
        .suffix = "table_open_by_ior_with_id",
        .result = "$table_table *",
        .arguments = "kelp_handle *handle, uint32_t space_id, uint64_t id, const kelp_oid *ior, "
                     "uint32_t read_only, uint32_t dynamic, uint32_t *err",
        .rule = "open::open($bindings, handle, space_id, {.read_only = read_only, .id = id, .ior = "
                "ior, .dynamic = dynamic, .open_type = KELP_OPEN_BY_ID}, err)",
        .brief = "Opens the table of that id. A table that is made gets ior, when not null, as its "
                 "OID, and is entered as dynamic or static.",
        .errors = open_errors,
        .ownership = open_ownership,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_TABLE_OPEN_BY_IOR_WITH_ID,
    },
    Operation{
        .suffix = "table_open_cr",
        .result = "$table_table *",
        .arguments = "kelp_handle *handle, uint32_t read_only, uint32_t open_type, const char "
                     "*name, uint64_t id",
        .rule = "open::open_cr",
        .brief = "Opens a table by its name (open_type 0), by its id (1) or under the next id (2), "
                 "with the handle's cr_space_id and cr_err.",
        .errors = open_errors,
        .ownership = open_ownership,
    },
    Operation{
        .suffix = "table_close",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $table_table *table, uint32_t *err",
        .rule = "open::close",
        .brief = "Forgets the handle's last error when the error word is 0. Nothing else happens: "
                 "the table stays open.",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_TABLE_CLOSE,
    },
    Operation{
        .suffix = "table_close_cr",
        .result = "void",
        .arguments = "kelp_handle *handle, $table_table *table, uint32_t mode",
        .rule = "open::close_cr",
        .brief = "Closes the table; mode 2 then frees it by request, mode 1 directly, with the "
                 "handle's cr_space_id and cr_err.",
        .errors = "those of $table_request_table_free and $table_table_free",
    },
    Operation{
        .suffix = "table_free",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $table_table *table, uint32_t *err",
        .rule = "open::free",
        .brief = "Takes the table out of the table of contents and frees it. Its records are not "
                 "looked at: the caller empties it first. In a shared database only the collector "
                 "frees; for anyone else the table leaves the table of contents and stays.",
        .errors = "KELP_ERR_AGAIN while references to the table remain: nothing is freed, and the "
                  "call may be repeated; KELP_ERR_NOT_FOUND when the ids of an id-opened table are "
                  "not found; those of the runtime's table of contents",
        .ownership = "the table is gone after success",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_TABLE_FREE,
    },
    Operation{
        .suffix = "request_table_free",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $table_table *table, uint32_t *err",
        .rule = "open::request_free",
        .brief = "Takes the table out of the table of contents at once and frees it when cursors "
                 "allow; with cursors the collector finishes the free. Meant for tables with "
                 "cursors in shared databases.",
        .errors = "those of the runtime's table of contents, a table that is not in it excepted; "
                  "those of $table_table_free: for a table of a shared database without cursors, "
                  "outside the collector, the call ends in KELP_ERR_NOT_FOUND, since the table has "
                  "left the table of contents already, and the table stays",
        .ownership = "the table may be gone after success",
        .unsafe_twin = true,
    },
};
inline constexpr TableFamily family{"open", TableScope::table, operations};

// --- the rules --------------------------------------------------------------------------------

// What an open asks for; what a form does not set is 0.
struct Request {
  const char *name = nullptr;
  std::uint32_t read_only = 0;
  std::uint64_t id = 0;
  const kelp_oid *ior = nullptr;
  std::uint32_t dynamic = 0;
  std::uint32_t open_type = KELP_OPEN_BY_NAME;
};

void *open(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, Request request,
           std::uint32_t *err);
void *open_cr(const TableFacts &facts, kelp_handle *handle, std::uint32_t read_only,
              std::uint32_t open_type, const char *name, std::uint64_t id);

void close(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *table,
           std::uint32_t *err);
void close_cr(const TableFacts &facts, kelp_handle *handle, void *table, std::uint32_t mode);

void free(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *table,
          std::uint32_t *err);
void request_free(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *table,
                  std::uint32_t *err);

}  // namespace harbor::open
