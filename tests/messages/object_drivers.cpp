// Creation and destruction, the tests that stand before bookkeeping of references, and images.
#include <kelp/oid.h>
#include <kelp/primitives.h>
#include <kelp/wire.h>
#include <ospf_harbor_oper.h>

#include <array>

#include "messages/setting.hpp"
#include "messages/type_drivers.hpp"

namespace messages {

namespace {

constexpr std::uint32_t minus_one = 0xFFFFFFFF;

std::string named(const DrivenForm &form, std::string_view type) {
  return filled(form.form(), "<type>", type);
}

// One row for each type of a list, of a place that needs no more than its name.
template <typename Types, typename Place>
void drive_each(DrivenForm &form, const Types &types, Place place) {
  for (const auto &type : types) {
    std::string name;
    if constexpr (requires { type->name; }) {
      name = type->name;
    } else if constexpr (requires { type.name; }) {
      name = type.name;
    } else {
      name = type;
    }
    form.drive(name, named(form, name), [&] { place(name); });
  }
}

// --- creation ---------------------------------------------------------------------------------

template <const char *suffix>
void create_without_variant(const std::string &type) {
  kelp_handle *handle = fresh();
  arguments_are({failure_text()});
  const Failing failing("kelp_domain_lookup_variant", failure);
  if (std::string_view(suffix) == "_create_cr") {
    call<void *>(type + suffix, handle);
  } else {
    call<void *>(type + suffix, handle, space);
  }
}
constexpr char create_suffix[] = "_create";
constexpr char create_cr_suffix[] = "_create_cr";

void light_create_failed(DrivenForm &form) {
  drive_each(form, light_types(), create_without_variant<create_suffix>);
  drive_each(form, light_types(), create_without_variant<create_cr_suffix>);
}

void create_failed(DrivenForm &form) {
  drive_each(form, harbor::model::structures, create_without_variant<create_suffix>);
  drive_each(form, harbor::model::structures, create_without_variant<create_cr_suffix>);
}

void base_missing(DrivenForm &form) {
  drive_each(form, harbor::model::structures, [](const std::string &type) {
    kelp_handle *handle = tracking();
    void *object = create(handle, type);
    std::uint32_t err = 0;
    call<void>(type + "_initialize", handle, space, object, &record_of(type), 1, 0,
               std::uint8_t{OBJ_NESTED}, static_cast<void *>(nullptr), &err);
    EXPECT_EQ(err, KELP_ERR_INVALID);
  });
}

void varinfo_null(DrivenForm &form) {
  for (const DataType &type : data_types()) {
    form.drive(type.name + " creation", form.form(), [&] {
      kelp_handle *handle = fresh();
      record_of(type.name).varinfo = nullptr;
      create(handle, type.name);
    });
    form.drive(type.name + " destruction", form.form(), [&] {
      kelp_handle *handle = fresh();
      void *object = create(handle, type.name);
      record_of(type.name).varinfo = nullptr;
      destroy(handle, type.name, object);
    });
  }
}

// The runtime gives no variant that a type record does not have.
std::int8_t first_variant(kelp_handle *, const kelp_domain *, const kelp_type_record *,
                          std::uint32_t *) {
  return 0;
}

void variant_above(DrivenForm &form) {
  for (const DataType &type : data_types()) {
    form.drive(type.name + " creation", form.form(), [&] {
      kelp_handle *handle = fresh();
      const ReplacedCall variant("kelp_domain_lookup_variant", first_variant);
      record_of(type.name).varinfo->n_variants = -1;
      arguments_are({number(0), number(minus_one)});
      EXPECT_NE(create(handle, type.name), nullptr);
    });
    form.drive(type.name + " destruction", form.form(), [&] {
      kelp_handle *handle = fresh();
      void *object = create(handle, type.name);
      record_of(type.name).varinfo->n_variants = -1;
      arguments_are(
          {number(static_cast<std::uint32_t>(header(object).variant)), number(minus_one)});
      destroy(handle, type.name, object);
    });
  }
}

void light_embedded_object_null(DrivenForm &form) {
  drive_each(form, light_types(), [](const std::string &type) {
    call<void>(type + "_set_instance_embedded", fresh(), space, static_cast<void *>(nullptr));
  });
}

void embedded_object_null(DrivenForm &form) {
  drive_each(form, harbor::model::structures, [](const std::string &type) {
    call<void>(type + "_set_instance_embedded", fresh(), space, static_cast<void *>(nullptr));
  });
}

int print_nothing(const char *, ...) { return 0; }

void dump_without_varinfo(DrivenForm &form) {
  form.drive("dump", form.form(), [] {
    record_of("ospf_area").varinfo = nullptr;
    ospf_harbor_oper_type_variant_dump(print_nothing);
  });
}

void reallocating(DrivenForm &form) {
  for_each_field([](const Field &field) { return field.kind == Kind::array; },
                 [&](const Structure &type, const Field &field) {
                   const std::string name = whole_schema::of(type, field, "set");
                   form.drive(name, named(form, type.name), [&] {
                     kelp_handle *handle = fresh();
                     void *object = create(handle, std::string(type.name));
                     std::uint32_t err = 0;
                     for (std::uint32_t index = 0; index < 4; ++index) {
                       std::uint64_t value = 0;
                       void *source = field.held == Kind::address
                                          ? static_cast<void *>(ip_address_create(handle, space))
                                          : &value;
                       call<void>(name, handle, space, object, index, source, &err);
                     }
                     EXPECT_EQ(err, 0u);
                   });
                 });
}

// --- destruction ------------------------------------------------------------------------------

void mapping_not_removed(DrivenForm &form) {
  for (const Structure *structure : harbor::model::structures) {
    const std::string type(structure->name);
    form.drive(type + " mapping", named(form, type), [&] {
      kelp_handle *handle = fresh();
      void *object = create(handle, type);
      header(object).obj_flags |= OBJ_OID_MAPPED;
      arguments_are({failure_text()});
      const Failing failing("kelp_request_oid_mapping_destroy", failure);
      destroy(handle, type, object);
      EXPECT_EQ(kelp_handle_last_error(handle, nullptr), static_cast<std::int32_t>(failure));
    });
    form.drive(type + " distance", named(form, type), [&] {
      kelp_handle *handle = fresh();
      void *object = create(handle, type);
      header(object).obj_flags |= OBJ_RA_DATA;
      handle->hd_mapped = 1;
      arguments_are({failure_text()});
      const Failing failing("kelp_hd_mapping_destroy", failure);
      destroy(handle, type, object);
      EXPECT_EQ(kelp_handle_last_error(handle, nullptr), static_cast<std::int32_t>(failure));
    });
  }
}

void still_referenced(DrivenForm &form) {
  drive_each(form, harbor::model::structures, [](const std::string &type) {
    kelp_handle *handle = fresh();
    void *object = create(handle, type);
    header(object).obj_flags |= OBJ_OID_MAPPED;
    const Failing failing("kelp_request_oid_mapping_destroy", 0);
    destroy(handle, type, object);
    EXPECT_NE(header(object).tinfo, nullptr);
  });
}

std::uint32_t mapping_is_gone(kelp_handle *, std::uint32_t, void *, std::uint32_t *) { return 1; }

void mapping_removed(DrivenForm &form) {
  drive_each(form, harbor::model::structures, [](const std::string &type) {
    kelp_handle *handle = fresh();
    void *object = create(handle, type);
    header(object).obj_flags |= OBJ_OID_MAPPED;
    const ReplacedCall replaced("kelp_request_oid_mapping_destroy", mapping_is_gone);
    destroy(handle, type, object);
  });
}

void tinfo_corrupted(DrivenForm &form) {
  static kelp_type_record wrong{};
  for (kelp_type_record *record : {static_cast<kelp_type_record *>(nullptr), &wrong}) {
    drive_each(form, data_types(), [record](const std::string &type) {
      kelp_handle *handle = fresh();
      void *object = create(handle, type);
      header(object).tinfo = record;
      destroy(handle, type, object);
    });
  }
}

// One address or text that holds a reference, which no text or address of the runtime does.
const void *holder = nullptr;
char referred;
std::uint32_t count_of(kelp_handle *, std::uint32_t, const void *object, std::uint32_t *) {
  return object == holder ? 1 : 0;
}
void give(kelp_handle *, std::uint32_t, const void *, void **references, std::uint32_t,
          std::uint32_t *) {
  references[0] = &referred;
}
void give_none(kelp_handle *, std::uint32_t, const void *, void **, std::uint32_t,
               std::uint32_t *err) {
  *err = failure;
}

// Destroys an object whose field of a primitive type holds a reference.
void drive_held_references(DrivenForm &form, bool are_given) {
  for_each_field(
      [](const Field &field) { return field.kind == Kind::address || field.kind == Kind::text; },
      [&](const Structure &type, const Field &field) {
        const std::string primitive = field.kind == Kind::address ? "ip_address" : "kelp_vstring";
        form.drive(whole_schema::of(type, field, ""), named(form, type.name), [&] {
          kelp_handle *handle = fresh();
          void *object = create(handle, std::string(type.name));
          holder = &field_at<char>(object, type, field);
          const ReplacedCall count((primitive + "_get_oid_count").c_str(), count_of);
          const ReplacedCall references((primitive + "_get_object_references").c_str(),
                                        are_given ? give : give_none);
          if (are_given) {
            arguments_are({pointer(&referred), failure_text()});
          } else {
            arguments_are({failure_text()});
          }
          const Failing failing("kelplib_lookup_and_update_oid_ref_count", failure);
          destroy(handle, std::string(type.name), object);
        });
      });
}

void references_unknown(DrivenForm &form) { drive_held_references(form, false); }
void reference_not_dropped(DrivenForm &form) { drive_held_references(form, true); }

// --- the tests that stand before the bookkeeping of references --------------------------------

void ask(const std::string &type, const char *question, bool with_error) {
  kelp_handle *handle = fresh();
  void *object = with_error ? create(handle, type) : nullptr;
  std::uint32_t err = with_error ? failure : 0;
  void *references[16];
  if (std::string_view(question) == "_get_oid_count") {
    EXPECT_EQ(call<std::uint32_t>(type + question, handle, space, object, &err), 0u);
  } else {
    call<void>(type + question, handle, space, object, references, 16u, &err);
  }
  EXPECT_EQ(err, with_error ? failure : 22u);
}

template <bool with_error>
void count_refused(DrivenForm &form) {
  drive_each(form, data_types(),
             [](const std::string &type) { ask(type, "_get_oid_count", with_error); });
}
template <bool with_error>
void references_refused(DrivenForm &form) {
  drive_each(form, data_types(),
             [](const std::string &type) { ask(type, "_get_object_references", with_error); });
}

// --- images -----------------------------------------------------------------------------------

std::array<std::uint8_t, 65536> image;
constexpr std::int32_t image_space = 65000;

std::uint32_t marshalled(kelp_handle *handle, const std::string &type, void *object) {
  std::uint32_t err = 0;
  const auto length =
      call<std::uint32_t>(type + "_marshal", handle, space, static_cast<void *>(image.data()),
                          object, image_space, &err);
  EXPECT_EQ(err, 0u) << type;
  return length;
}

// An image holds what the selector of a choice selects, so that has to be there.
void select_arms(kelp_handle *handle, void *object, const Structure &type) {
  for (const Field *field : type.fields) {
    if (field->kind == Kind::structure) {
      select_arms(handle, &field_at<char>(object, type, *field), *field->structure);
    }
    if (field->kind == Kind::arm && field->selector == 0) {
      std::uint32_t err = 0;
      call<void>(whole_schema::of(type, *field, "set"), handle, space, object,
                 kelp_vstring_create(handle, space), &err);
    }
  }
}

// Reads an image whose jump word reaches three bytes further than what this variant knows. The jump
// word stands behind the variant byte, and in a structure behind the flag byte too.
void read_newer_image(const std::string &type, const Structure *structure,
                      std::uint32_t jump_place) {
  kelp_handle *handle = fresh();
  void *object = create(handle, type);
  if (structure != nullptr) select_arms(handle, object, *structure);
  const std::uint32_t length = marshalled(handle, type, object);
  std::uint32_t err = 0;
  const auto jump = static_cast<std::int32_t>(length - jump_place + 3);
  _kelp_variant_jump_marshal(handle, space, image.data() + jump_place, &jump, 4, &err);
  arguments_are({number(length), number(jump_place), number(static_cast<std::uint32_t>(jump))});
  EXPECT_EQ(call<std::uint32_t>(type + "_unmarshal", handle, space,
                                static_cast<const void *>(image.data()), object,
                                static_cast<std::int32_t>(length + 3), 0u, &err),
            length + 3);
  EXPECT_EQ(err, 0u);
}

void offset_jump(DrivenForm &form) {
  for (const DataType &type : data_types()) {
    if (type.structure == nullptr) continue;
    form.drive(type.name, form.form(), [&] { read_newer_image(type.name, type.structure, 2); });
  }
  drive_each(form, harbor::model::all_flag_sets,
             [](const std::string &type) { read_newer_image(type, nullptr, 1); });
}

void tracking_mismatch(DrivenForm &form) {
  drive_each(form, harbor::model::structures, [](const std::string &type) {
    kelp_handle *handle = tracking();
    void *object = create(handle, type);
    const std::uint32_t length = marshalled(handle, type, object);
    untrack(object);
    std::uint32_t err = 0;
    call<std::uint32_t>(type + "_unmarshal", handle, space, static_cast<const void *>(image.data()),
                        object, static_cast<std::int32_t>(length), 0u, &err);
  });
}

constexpr std::array<TypeDriver, 21> drivers{{
    {"error in <type> create %s", light_create_failed},
    {"error in <type> create: %s", create_failed},
    {"sttr_base can not be NULL in NESTED case. Please check the parent object and provide the "
     "correct state tracking base pointer",
     base_missing},
    {"varinfo is NULL", varinfo_null},
    {"variant %u requested only %u variants present", variant_above},
    {"Invalid object handle passed to set embedded flag", light_embedded_object_null},
    {"Invalid object pointer passed in to set instance flag", embedded_object_null},
    {"type variant cached info is NULL during usage dump", dump_without_varinfo},
    {"Reallocating resource for <type>", reallocating},
    {"<type> destroy: Failed to remove oid mapping for object. Error %s", mapping_not_removed},
    {"<type> destroy: Object has references and will be cleaned up when all of them are released",
     still_referenced},
    {"<type> destroy: Successfully removed OID mapping", mapping_removed},
    {"tinfo is null or corrupted", tinfo_corrupted},
    {"<type> destroy: Failed to get oid references from object. Error %s", references_unknown},
    {"<type> destroy: Failed to decrement ref count of oid %p. Error %s", reference_not_dropped},
    {"Error already present in call to get object oid count", count_refused<true>},
    {"Invalid object passed in to get object oid count", count_refused<false>},
    {"Error present in call to get table references from object", references_refused<true>},
    {"Cannot get table references. Invalid object passed on", references_refused<false>},
    {"offset_jump read_len %d offset_jump_base %d _kelp_variant_jump %d", offset_jump},
    {"KELP handle and object state tracking mis-match", tracking_mismatch},
}};

}  // namespace

std::span<const TypeDriver> object_drivers() { return drivers; }

}  // namespace messages
