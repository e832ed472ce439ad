// The module as the runtime sees it: the registration of its type records, its place in the list of
// modules, its trace identity, and the bundle handler that it hands on. Called by the forwarders of
// the operations below and, at load and unload, by the library itself. Nothing here looks at an
// object.
#pragma once

#include <kelp/handle.h>

#include <array>

#include "module/operation.hpp"
#include "module/trace.hpp"
#include "module/type_record.hpp"

// What the runtime calls back when it meets a type that it does not know yet.
extern "C" KELP_API void ospf_harbor_oper_typeinfo_initialize(kelp_handle *handle,
                                                              std::uint32_t space_id,
                                                              std::uint32_t *err);

namespace harbor::module_frame {

inline constexpr std::array operations{
    Operation{
        .suffix = "ospf_harbor_oper_typeinfo_initialize",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, uint32_t *err",
        .rule = "module_frame::register_types(ospf_harbor_oper_type_records, handle, space_id, "
                "err)",
        .brief =
            "Registers the $records type records of the module with the handle's runtime: a type "
            "that is new there gets a copy of its record, a known one keeps its copy and only "
            "has its variants refreshed. The runtime calls this itself when it meets an "
            "unknown type.",
        .errors = "KELP_ERR_NO_MEMORY when there is no memory for a copy; types registered before "
                  "stay registered. The word is not read on entry",
        .ownership = "the copies belong to the runtime",
    },
    Operation{
        .suffix = "ospf_harbor_oper_type_variant_dump",
        .result = "void",
        .arguments = "int (*print)(const char *format, ...)",
        .rule = "module_frame::dump_variants(ospf_harbor_oper_type_records, print)",
        .brief = "Prints how many variants each type has and, for each, its used length and its "
                 "slop in bytes, through print, which is called as printf is. Types are not "
                 "named: they come in the order of the records.",
    },
    Operation{
        .suffix = "ospf_harbor_oper_bundle_handler_register",
        .result = "void *",
        .arguments = "void *handler, void *context, uint64_t flags",
        .rule = "module_frame::register_bundle_handler(handler, context, flags)",
        .brief = "Remembers handler and passes all arguments on to "
                 "tarn_comm_bundle_handler_register. Gives the handler that was remembered before, "
                 "null for none.",
        .ownership = "handler and context stay the caller's",
    },
    Operation{
        .suffix = "ospf_harbor_oper_bundle_handler_unregister",
        .result = "void *",
        .arguments = "void *handler, void *context, uint64_t flags",
        .rule = "module_frame::unregister_bundle_handler(handler, context, flags)",
        .brief = "Forgets the remembered handler and passes all arguments on to "
                 "tarn_comm_bundle_handler_unregister. Gives the handler that was remembered "
                 "before, null for none.",
    },
    Operation{
        .suffix = "kelp_ospf_harbor_oper_trace_init",
        .result = "void",
        .arguments = "void",
        .rule = "register_trace(nullptr)",
        .brief = "Registers the module with the trace library, which gives it its id. May be "
                 "called again and again; the heavy entry points do so themselves.",
    },
};

inline constexpr Family family{"module_frame", operations};

// --- the rules --------------------------------------------------------------------------------

// Both walk a list of records that ends with a null pointer.
void register_types(kelp_type_record *const *records, kelp_handle *handle, std::uint32_t space_id,
                    std::uint32_t *err);
void dump_variants(kelp_type_record *const *records, int (*print)(const char *format, ...));

void *register_bundle_handler(void *handler, void *context, std::uint64_t flags);
void *unregister_bundle_handler(void *handler, void *context, std::uint64_t flags);

}  // namespace harbor::module_frame
