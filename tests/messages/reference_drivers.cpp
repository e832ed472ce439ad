// By-reference fields: each failure of a set, of a read of all references and of a destroy, for
// every such field.
#include <kelp/oid.h>
#include <kelp/table.h>

#include <array>
#include <cstring>

#include "messages/setting.hpp"
#include "messages/type_drivers.hpp"

namespace messages {

namespace {

// A field in an object of its type, with a table that it may refer to, and how the field stands.
class Place {
 public:
  Place(const Structure &type, const Field &field)
      : type_(type), field_(field), handle_(fresh()), object_(create(handle_, name())) {
    table_ = static_cast<kelp_table *>(handle_->obj_alloc(handle_->obj_pool, 0, sizeof *table_));
    std::memset(static_cast<void *>(table_), 0, sizeof *table_);
    table_->header.tinfo = reference().target_type;
  }

  std::string name() const { return std::string(type_.name); }
  kelp_handle *handle() const { return handle_; }
  void *object() const { return object_; }
  kelp_table *table() const { return table_; }
  kelp_reference &reference() const { return field_at<kelp_reference>(object_, type_, field_); }

  void refer_to_nothing_known() const {
    reference().oid.handle_word = 4096;
    for (std::uint8_t i = 0; i < 16; ++i) {
      reference().oid.id[i] = static_cast<std::uint8_t>(i + 1);
      reference().oid.source[i] = static_cast<std::uint8_t>(0xA0 + i);
    }
  }
  std::uint32_t refer(void *target) const {
    std::uint32_t err = 0;
    call<void>(whole_schema::of(type_, field_, "set_by_ref"), handle_, space, object_, target,
               &err);
    return err;
  }

 private:
  const Structure &type_;
  const Field &field_;
  kelp_handle *handle_;
  void *object_;
  kelp_table *table_;
};

void drive_each(DrivenForm &form, void (*code)(const Place &place)) {
  for_each_field([](const Field &field) { return field.kind == Kind::reference; },
                 [&](const Structure &type, const Field &field) {
                   const std::string text =
                       filled(filled(form.form(), "<type>", type.name), "<field>", field.name);
                   form.drive(whole_schema::of(type, field, ""), text,
                              [&] { code(Place(type, field)); });
                 });
}

void existing_oid_unresolved(DrivenForm &form) {
  drive_each(form, [](const Place &place) {
    place.refer_to_nothing_known();
    arguments_are({failure_text()});
    const Failing failing("kelplib_oid_id_mapping_get", failure);
    EXPECT_EQ(place.refer(nullptr), failure);
  });
}

void clear_not_dropped(DrivenForm &form) {
  drive_each(form, [](const Place &place) {
    EXPECT_EQ(place.refer(place.table()), 0u);
    arguments_are({failure_text()});
    const Failing failing("kelplib_update_oid_ref_count", failure);
    place.refer(nullptr);
  });
}

void mapping_missing_for_clear(DrivenForm &form) {
  drive_each(form, [](const Place &place) {
    place.refer_to_nothing_known();
    arguments_are({"0102030405060708090a0b0c0d0e0f10", "a0a1a2a3a4a5a6a7a8a9aaabacadaeaf"});
    EXPECT_EQ(place.refer(nullptr), 0u);
  });
}

void target_refused(DrivenForm &form) {
  drive_each(form, [](const Place &place) {
    place.table()->header.obj_flags |= OBJ_NESTED;
    EXPECT_EQ(place.refer(place.table()), 1u);
  });
}

void existing_mapping_unknown(DrivenForm &form) {
  drive_each(form, [](const Place &place) {
    place.refer_to_nothing_known();
    arguments_are({failure_text()});
    const Failing failing("kelplib_oid_id_mapping_get", failure);
    EXPECT_EQ(place.refer(place.table()), failure);
  });
}

void earlier_not_dropped(DrivenForm &form) {
  drive_each(form, [](const Place &place) {
    EXPECT_EQ(place.refer(place.table()), 0u);
    arguments_are({failure_text()});
    const Failing failing("kelplib_update_oid_ref_count", failure);
    place.refer(place.table());
  });
}

void mapping_entry_missing(DrivenForm &form) {
  drive_each(form, [](const Place &place) {
    place.refer_to_nothing_known();
    EXPECT_EQ(place.refer(place.table()), 0u);
  });
}

void target_without_oid(DrivenForm &form) {
  drive_each(form, [](const Place &place) {
    arguments_are({failure_text()});
    const Failing failing("kelp_handle_to_oid", failure);
    EXPECT_EQ(place.refer(place.table()), failure);
  });
}

void reference_unresolved(DrivenForm &form) {
  drive_each(form, [](const Place &place) {
    place.reference().oid.handle_word = 256;
    void *references[16];
    std::uint32_t err = 0;
    const Failing failing("kelp_oid_to_handle", failure);
    call<void>(place.name() + "_get_object_references", place.handle(), space, place.object(),
               static_cast<void **>(references), 16u, &err);
    EXPECT_EQ(err, failure);
  });
}

const kelp_reference *kept = nullptr;
void release_all_but_one(kelp_handle *, std::uint32_t, kelp_reference *field, std::uint32_t *err) {
  if (field == kept) *err = failure;
}

void reference_not_released(DrivenForm &form) {
  drive_each(form, [](const Place &place) {
    kept = &place.reference();
    arguments_are({failure_text()});
    const ReplacedCall replaced("kelplib_oid_release_internal", release_all_but_one);
    destroy(place.handle(), place.name(), place.object());
    EXPECT_NE(header(place.object()).tinfo, nullptr);
  });
}

constexpr std::array<TypeDriver, 10> drivers{{
    {"<type> <field> set by ref: Failed to resolve existing oid id. Error %s",
     existing_oid_unresolved},
    {"<type> <field> set by ref: Failed to decrement ref count on earlier reference. Error %s",
     clear_not_dropped},
    {"<type> <field> set by ref: Could not get oid id mapping for object %s/%s",
     mapping_missing_for_clear},
    {"<type> <field> set by ref: Cannot set reference to this object", target_refused},
    {"<type> <field> set by ref: Failed to obtain existing oid mapping of object. Error %s",
     existing_mapping_unknown},
    {"<type> <field> set by ref: Failed to update ref count on earlier reference. Error %s",
     earlier_not_dropped},
    {"<type> <field> set by ref: Could not get oid mapping entry using oid id",
     mapping_entry_missing},
    {"<type> <field> set by ref: Handle to oid failed with error code %s", target_without_oid},
    {"Failed to obtain resolve existing oid reference from object", reference_unresolved},
    {"<type> destroy: Failed to release oid reference for <field> oid. Error %s",
     reference_not_released},
}};

}  // namespace

std::span<const TypeDriver> reference_drivers() { return drivers; }

}  // namespace messages
