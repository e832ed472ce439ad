// The life of structures and choices: create, initialize, mark as embedded, destroy, size. Called
// by the forwarders of <type>_create, _create_internal, _create_cr, _initialize,
// _set_instance_embedded, _destroy, _destroy_internal, _destroy_cr and _sizeof, by the owners of
// embedded and held objects, and by all who make objects from images. A new object is zero but for
// its header, its children's headers and the target types of its references; a destroyed one gives
// back what it owns, in field order, and is not freed while references to it remain. Never looks
// at a value.
//
// The rules stand in structure_life.cpp, once for all types; the templates bind a type's facts.
#pragma once

#include "module/operation.hpp"
#include "types/structure_facts.hpp"

namespace harbor::structure_life {

inline constexpr std::array operations{
    type_record_access::variant_data_index_cap_operation,
    type_record_access::get_luid_operation,
    type_record_access::adjust_variant_operation,
    Operation{
        .suffix = "create",
        .result = "$T *",
        .arguments = "kelp_handle *handle, uint32_t space_id",
        .rule = "structure_life::create",
        .brief = "Makes a new $type: all zero, at the variant of the handle's domain, with state "
                 "bytes behind it when the handle tracks state. Null when there is no memory or "
                 "the object cannot be prepared.",
        .errors = "no error word; what went wrong is the handle's last error or a trace message",
        .ownership = "the object is the caller's, who gives it back with $type_destroy",
    },
    Operation{
        .suffix = "create_internal",
        .result = "$T *",
        .arguments = "kelp_handle *handle, uint32_t space_id",
        .rule = "structure_life::create_internal",
        .brief = "As $type_create, without registering the module with the trace library.",
        .errors = "as $type_create",
        .ownership = "as $type_create",
    },
    Operation{
        .suffix = "create_cr",
        .result = "$T *",
        .arguments = "kelp_handle *handle",
        .rule = "structure_life::create_cr",
        .brief = "As $type_create with the handle's cr_space_id, but without memory, or with an "
                 "earlier failure in cr_err, the type's null object comes back: a chain of calls "
                 "may go on with it, and $type_destroy ignores it. Null when the object cannot be "
                 "prepared.",
        .errors = "KELP_ERR_NO_MEMORY as the last error and in cr_err when there is no memory and "
                  "cr_err is 0",
        .ownership = "as $type_create; the null object belongs to the library and is never written",
    },
    Operation{
        .suffix = "initialize",
        .result = "void",
        .arguments =
            "kelp_handle *handle, uint32_t space_id, $T *object, kelp_type_record *record, "
            "int32_t notify, int32_t skip_stats, uint8_t flags, void *sttr_base, "
            "uint32_t *err",
        .rule = "structure_life::initialize",
        .brief = "Prepares a zeroed $type in memory that the caller provides, its children too: "
                 "headers, target types of references, places of nested state bytes. record is "
                 "the type's static record. notify non-zero announces each store; skip_stats "
                 "non-zero leaves out the counting and the state bytes; flags are OR-ed into "
                 "obj_flags; sttr_base is where the state bytes lie, null for directly behind the "
                 "object.",
        .errors = "KELP_ERR_INVALID when the handle tracks state, flags hold OBJ_NESTED and "
                  "sttr_base is null; what the domain's lookup leaves",
        .ownership = "the memory stays the caller's",
    },
    Operation{
        .suffix = "set_instance_embedded",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object",
        .rule = "structure_life::set_instance_embedded",
        .brief = "Marks the object and all its children as living inside other memory. A null "
                 "object is traced and passed over; the type's null object is passed over.",
    },
    Operation{
        .suffix = "destroy",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object",
        .rule = "structure_life::destroy",
        .brief = "Ends the object: removes its OID mapping, drops its references, gives back what "
                 "its fields own and frees it. Null and the type's null object are passed over. "
                 "An object that is still referred to stays as it is until the last reference is "
                 "gone.",
        .errors = "no error word; an object that cannot be ended stays, with a trace message",
        .ownership = "the object and all it owns are freed",
    },
    Operation{
        .suffix = "destroy_internal",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, int32_t free_it",
        .rule = "structure_life::destroy_internal",
        .brief = "As $type_destroy; with free_it 0 everything is done but the freeing of the "
                 "object's own memory, the form for an embedded object.",
        .errors = "as $type_destroy",
        .ownership = "what the object owns is freed, the object itself when free_it is non-zero",
    },
    Operation{
        .suffix = "destroy_cr",
        .result = "void",
        .arguments = "kelp_handle *handle, $T *object",
        .rule = "structure_life::destroy_cr",
        .brief = "As $type_destroy with the handle's cr_space_id.",
        .errors = "as $type_destroy",
        .ownership = "as $type_destroy",
    },
    Operation{
        .suffix = "sizeof",
        .result = "size_t",
        .arguments = "const kelp_handle *handle",
        .rule = "structure_life::size",
        .brief = "Gives the bytes that a $type takes under this handle, its state bytes included "
                 "when the handle tracks state.",
    },
};
inline constexpr Family family{"structure_life", operations};

// --- the rules ----------------------------------------------------------------------------------

std::size_t size(const StructureFacts &facts, const kelp_handle *handle);
void *create(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id);
void *create_internal(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id);
void *create_cr(const StructureFacts &facts, kelp_handle *handle);
void initialize(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                void *object, kelp_type_record *record, bool notify, std::int32_t skip_stats,
                std::uint8_t flags, void *sttr_base, std::uint32_t *err);
void set_instance_embedded(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                           void *object);
void destroy_internal(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                      void *object, bool free_it);
// Ends what an arm of the object holds, if anything, and empties it.
void end_arm(const FieldFacts &field, kelp_handle *handle, std::uint32_t space_id, void *object);

// --- bound to a type ----------------------------------------------------------------------------

template <const Structure &T>
std::size_t size(const kelp_handle *handle) {
  return size(structure_facts<T>, handle);
}

template <const Structure &T>
void *create(kelp_handle *handle, std::uint32_t space_id) {
  return create(structure_facts<T>, handle, space_id);
}

template <const Structure &T>
void *create_internal(kelp_handle *handle, std::uint32_t space_id) {
  return create_internal(structure_facts<T>, handle, space_id);
}

template <const Structure &T>
void *create_cr(kelp_handle *handle) {
  return create_cr(structure_facts<T>, handle);
}

template <const Structure &T>
void initialize(kelp_handle *handle, std::uint32_t space_id, void *object, kelp_type_record *record,
                std::int32_t notify, std::int32_t skip_stats, std::uint8_t flags, void *sttr_base,
                std::uint32_t *err) {
  initialize(structure_facts<T>, handle, space_id, object, record, notify != 0, skip_stats, flags,
             sttr_base, err);
}

template <const Structure &T>
void set_instance_embedded(kelp_handle *handle, std::uint32_t space_id, void *object) {
  set_instance_embedded(structure_facts<T>, handle, space_id, object);
}

template <const Structure &T>
void destroy_internal(kelp_handle *handle, std::uint32_t space_id, void *object,
                      std::int32_t free_it) {
  destroy_internal(structure_facts<T>, handle, space_id, object, free_it != 0);
}

template <const Structure &T>
void destroy(kelp_handle *handle, std::uint32_t space_id, void *object) {
  destroy_internal<T>(handle, space_id, object, 1);
}

template <const Structure &T>
void destroy_cr(kelp_handle *handle, void *object) {
  destroy_internal<T>(handle, handle->cr_space_id, object, 1);
}

}  // namespace harbor::structure_life
