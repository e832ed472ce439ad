// Events on a table's records, handed on to the handlers that the application defines. A handler
// is found at each call by its name: present or not, and no registration. Called by the runtime
// through the vft. A missing handler is no error; the two _dm events fall back to the handlers of
// the plain ones.
#pragma once

#include <array>

#include "module/operation.hpp"
#include "tables/facts.hpp"

namespace harbor::handlers {

inline constexpr std::string_view handler_errors =
    "none of its own: an error word that is set drops the event, a missing handler sets it to 0, "
    "and what a handler leaves in it stays";

inline constexpr std::string_view event_arguments =
    "kelp_handle *handle, uint32_t space_id, void *context, $table_record *record, uint32_t *err";
inline constexpr std::string_view dm_event_arguments =
    "kelp_handle *handle, uint32_t space_id, $table_record *record, uint32_t *err";

inline constexpr std::array operations{
    Operation{
        .suffix = "table_record_create_cb",
        .result = "uint64_t",
        .arguments = event_arguments,
        .rule = "handlers::on_create",
        .brief = "Tells the application's create handler of a record, and gives what it returns.",
        .errors = handler_errors,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_CREATE_CB,
    },
    Operation{
        .suffix = "table_record_modify_cb",
        .result = "uint64_t",
        .arguments = event_arguments,
        .rule = "handlers::on_modify",
        .brief = "Tells the application's modify handler of a record, and gives what it returns.",
        .errors = handler_errors,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_MODIFY_CB,
    },
    Operation{
        .suffix = "table_record_delete_cb",
        .result = "uint64_t",
        .arguments = event_arguments,
        .rule = "handlers::on_delete",
        .brief = "Tells the application's delete handler of a record, and gives what it returns.",
        .errors = handler_errors,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_DELETE_CB,
    },
    Operation{
        .suffix = "table_record_create_dm_cb",
        .result = "uint64_t",
        .arguments = dm_event_arguments,
        .rule = "handlers::on_create_dm",
        .brief = "Tells the application's create_dm handler of a record, or else its create "
                 "handler with a null context, and gives what it returns.",
        .errors = handler_errors,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_CREATE_DM_CB,
    },
    Operation{
        .suffix = "table_record_delete_dm_cb",
        .result = "uint64_t",
        .arguments = dm_event_arguments,
        .rule = "handlers::on_delete_dm",
        .brief = "Tells the application's delete_dm handler of a record, or else its delete "
                 "handler with a null context, and gives what it returns.",
        .errors = handler_errors,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_DELETE_DM_CB,
    },
    Operation{
        .suffix = "table_record_grouping_cb",
        .result = "uint64_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, void *arg_a, uint32_t *err, "
                     "void *arg_b, void *arg_c",
        .rule = "handlers::on_grouping",
        .brief = "Hands its arguments to the application's grouping handler, and gives what it "
                 "returns.",
        .errors = handler_errors,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_GROUPING_CB,
    },
    Operation{
        .suffix = "table_record_free_cb",
        .result = "uint64_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, void *arg_a, uint32_t arg_u32, "
                     "uint32_t *err, void *arg_b",
        .rule = "handlers::on_free",
        .brief =
            "Hands its arguments to the application's free handler, and gives what it returns.",
        .errors = handler_errors,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_FREE_CB,
    },
};

inline constexpr TableFamily family{"handlers", TableScope::table, operations};

// --- the rules --------------------------------------------------------------------------------

std::uint64_t on_create(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                        void *context, void *record, std::uint32_t *err);
std::uint64_t on_modify(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                        void *context, void *record, std::uint32_t *err);
std::uint64_t on_delete(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                        void *context, void *record, std::uint32_t *err);
std::uint64_t on_create_dm(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                           void *record, std::uint32_t *err);
std::uint64_t on_delete_dm(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                           void *record, std::uint32_t *err);
std::uint64_t on_grouping(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                          void *arg_a, std::uint32_t *err, void *arg_b, void *arg_c);
std::uint64_t on_free(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                      void *arg_a, std::uint32_t arg_u32, std::uint32_t *err, void *arg_b);

}  // namespace harbor::handlers
