// The life of an enumeration or flag object: created, prepared inside a parent, marked as embedded,
// destroyed. Called by the forwarders of both kinds of type and, for embedded objects, by the
// lifecycle of structures. Promises, in order: a create that was given memory ends in an object; a
// store into an object is announced first, but for the clearing of its type record at its end; an
// object is counted once at each end, in the entry of the variant that it then has.
//
// Light objects hold no reference, own nothing and have no state bytes of their own.
#pragma once

#include <array>

#include "types/creation.hpp"
#include "types/type_record_access.hpp"

namespace harbor::light_object {

inline constexpr std::array operations{
    type_record_access::variant_data_index_cap_operation,
    type_record_access::get_luid_operation,
    type_record_access::adjust_variant_operation,
    Operation{
        .suffix = "create",
        .result = "$T *",
        .arguments = "kelp_handle *handle, uint32_t space_id",
        .rule = "light_object::create_internal",
        .brief = "Creates an object of type $type at the variant that the handle's domain gives, "
                 "with a value of "
                 "0. Null when there is no memory. A domain that gives no variant is told in the "
                 "trace, and the object is created all the same.",
        .errors = "none is reported",
        .ownership = "the caller owns the result and gives it to $type_destroy",
    },
    Operation{
        .suffix = "create_internal",
        .result = "$T *",
        .arguments = "kelp_handle *handle, uint32_t space_id",
        .rule = "light_object::create_internal",
        .brief = "The work of $type_create, with the same result.",
        .errors = "as $type_create",
        .ownership = "as $type_create",
    },
    Operation{
        .suffix = "create_cr",
        .result = "$T *",
        .arguments = "kelp_handle *handle",
        .rule = "light_object::create_cr",
        .brief = "As $type_create, in the handle's cr_space_id. Gives the null object of $type, "
                 "which destroy ignores, when cr_err is set already or there is no memory.",
        .errors = "KELP_ERR_NO_MEMORY as the handle's last error and in cr_err when there is no "
                  "memory and cr_err is 0",
        .ownership = "as $type_create; the null object belongs to the library",
    },
    Operation{
        .suffix = "initialize",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, kelp_type_record "
                     "*record, int32_t notify, int32_t skip_stats, uint8_t flags, void "
                     "*sttr_base, uint32_t *err",
        .rule = "light_object::initialize",
        .brief = "Prepares the header of an object of type $type in memory of the caller's: the "
                 "variant that the "
                 "handle's domain gives, the type record, and flags, OR-ed into obj_flags. Stores "
                 "are announced when notify is not 0. The object is not counted; skip_stats and "
                 "sttr_base are not looked at.",
        .errors = "those of kelp_domain_lookup_variant; the header is stored all the same. The "
                  "word is not read on entry",
        .ownership = "the object stays the caller's",
    },
    Operation{
        .suffix = "set_instance_embedded",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object",
        .rule = "light_object::set_instance_embedded",
        .brief = "Marks the object as living inside other memory. A null object is told in the "
                 "trace and otherwise passed over; the null object of $type is passed over.",
    },
    Operation{
        .suffix = "destroy",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object",
        .rule = "light_object::destroy",
        .brief =
            "Counts and frees the object. Null and the null object are ignored. Ends the process "
            "when the object's type record is missing or broken, as after an earlier destroy.",
        .ownership = "takes the object",
    },
    Operation{
        .suffix = "destroy_internal",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, int32_t free_it",
        .rule = "light_object::destroy_internal",
        .brief = "As $type_destroy when free_it is not 0; nothing at all when it is 0.",
        .ownership = "takes the object when free_it is not 0",
    },
    Operation{
        .suffix = "destroy_cr",
        .result = "void",
        .arguments = "kelp_handle *handle, $T *object",
        .rule = "light_object::destroy_cr",
        .brief = "As $type_destroy, in the handle's cr_space_id, whatever cr_err holds.",
        .ownership = "takes the object",
    },
    Operation{
        .suffix = "sizeof",
        .result = "size_t",
        .arguments = "void",
        .rule = "light_object::size",
        .brief = "Gives the bytes that an object of type $type is allocated with.",
    },
    type_record_access::get_oid_count_operation,
    Operation{
        .suffix = "get_object_references",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, const $T *object, void **tables, "
                     "uint32_t count, uint32_t *err",
        .rule = "light_object::get_object_references",
        .brief = "Stores nothing: an object of type $type refers to no table.",
        .errors = "KELP_ERR_INVALID for a null object",
    },
};
inline constexpr Family family{"light_object", operations};

// --- the rules --------------------------------------------------------------------------------

struct LightFacts {
  kelp_type_record *record;
  std::uint32_t size;
  std::uint8_t variants;
  void *null_object;
  std::uint32_t create_failed;
  std::uint32_t embedded_object_null;
  type_record_access::Site creation;
  type_record_access::Site destruction;
};

template <const auto &T>
inline constexpr LightFacts facts{
    type_record<T>,
    creation::untracked_size<T>(),
    T.variants,
    creation::null_object<T>,
    messages::of_light_type(messages::TypeForm::light_create_failed, T),
    messages::of_light_type(messages::TypeForm::light_embedded_object_null, T),
    type_record_access::site_of<T, type_record_access::End::creation>,
    type_record_access::site_of<T, type_record_access::End::destruction>,
};

void *create(const LightFacts &facts, kelp_handle *handle, std::uint32_t space_id);
void prepare(kelp_handle *handle, std::uint32_t space_id, kelp_object_header *object,
             kelp_type_record *record, bool notify, std::uint8_t flags, std::uint32_t *err);
void mark_embedded(const LightFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                   void *object);
void end(const LightFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *object);

template <const auto &T>
void *create_internal(kelp_handle *handle, std::uint32_t space_id) {
  return create(facts<T>, handle, space_id);
}

template <const auto &T>
void *create_cr(kelp_handle *handle) {
  return creation::in_chain(handle, create_internal<T>);
}

template <const auto &T>
void initialize(kelp_handle *handle, std::uint32_t space_id, void *object, kelp_type_record *record,
                std::int32_t notify, std::int32_t, std::uint8_t flags, void *, std::uint32_t *err) {
  prepare(handle, space_id, header_of(object), record, notify != 0, flags, err);
}

template <const auto &T>
void set_instance_embedded(kelp_handle *handle, std::uint32_t space_id, void *object) {
  mark_embedded(facts<T>, handle, space_id, object);
}

// Required: with free_it 0 nothing happens, counting included; a parent's fields are not counted.
template <const auto &T>
void destroy_internal(kelp_handle *handle, std::uint32_t space_id, void *object,
                      std::int32_t free_it) {
  if (free_it != 0) end(facts<T>, handle, space_id, object);
}

template <const auto &T>
void destroy(kelp_handle *handle, std::uint32_t space_id, void *object) {
  destroy_internal<T>(handle, space_id, object, 1);
}

template <const auto &T>
void destroy_cr(kelp_handle *handle, void *object) {
  destroy_internal<T>(handle, handle->cr_space_id, object, 1);
}

template <const auto &T>
std::size_t size() {
  return creation::untracked_size<T>();
}

template <const auto &T>
void get_object_references(kelp_handle *handle, std::uint32_t, const void *object, void **,
                           std::uint32_t, std::uint32_t *err) {
  type_record_access::may_ask_references<T>(handle, object, err);
}

}  // namespace harbor::light_object
