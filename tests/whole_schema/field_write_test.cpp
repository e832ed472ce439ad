// Every field of every structure, on handles that track state, do not, or have it switched off:
// what a setter announces, byte for byte and before the store; which state byte it marks; the floor
// that getters refuse; one kelp_store_err with the code of the word.
#include <kelp/primitives.h>

#include <cmath>
#include <cstring>
#include <memory>

#include "module/object.hpp"
#include "whole_schema/erased.hpp"
#include "whole_schema/memory_watch.hpp"

namespace whole_schema {

namespace {

using Bytes = std::vector<std::uint8_t>;

// What set and set_value of a value field must announce inside the object. A text keeps its header
// bytes: only its pointer and length move.
MemoryWatch::Write whole_write(const Structure &type, const Field &field) {
  return {static_cast<std::ptrdiff_t>(harbor::model::offset(type, field)),
          field.kind == Kind::text ? offsetof(kelp_vstring, variant) : harbor::model::width(field)};
}
MemoryWatch::Write value_write(const Structure &type, const Field &field) {
  const auto at = static_cast<std::ptrdiff_t>(harbor::model::offset(type, field));
  if (field.kind == Kind::enumeration) return {at + 12, 4};
  if (field.kind == Kind::flags) return {at + 11, 1};
  return whole_write(type, field);
}

MemoryWatch::Write state_write(const Structure &type, const Field &field) {
  return {static_cast<std::ptrdiff_t>(harbor::model::object_size(type) +
                                      harbor::model::state_place(type, field)),
          1};
}

// A source that set copies from or moves out of.
class Source {
 public:
  Source(kelp_handle *handle, const Field &field) : handle_(handle), field_(field) {
    std::uint32_t err = 0;
    switch (field.kind) {
      case Kind::enumeration:
        object_ = create(handle, std::string(field.enumeration->name));
        call<void>(std::string(field.enumeration->name) + "_set_value", handle, std::uint32_t{0},
                   object_, some_value(field), &err);
        break;
      case Kind::flags:
        object_ = create(handle, std::string(field.flag_set->name));
        call<void>(std::string(field.flag_set->name) + "_set_value", handle, std::uint32_t{0},
                   object_, std::uint32_t{1}, std::uint32_t{1}, &err);
        break;
      case Kind::structure:
        object_ = create(handle, std::string(field.structure->name));
        break;
      case Kind::address:
        EXPECT_EQ(ip_address_parse("192.0.2.33", &address_), 0u);
        break;
      case Kind::text:
        kelp_vstring_assign(handle, 0, &text_, "text", 4, &err);
        break;
      case Kind::real:
        real_ = 5;
        break;
      default:
        number_ = some_value(field);
    }
    EXPECT_EQ(err, 0u) << field.name;
  }
  ~Source() {
    if (field_.kind == Kind::text) kelp_vstring_destroy_internal(handle_, 0, &text_, 0);
    if (object_ == nullptr) return;
    const std::string_view type = field_.kind == Kind::enumeration ? field_.enumeration->name
                                  : field_.kind == Kind::flags     ? field_.flag_set->name
                                                                   : field_.structure->name;
    destroy(handle_, std::string(type), object_);
  }
  Source(const Source &) = delete;
  Source &operator=(const Source &) = delete;

  void *get() {
    switch (field_.kind) {
      case Kind::address:
        return &address_;
      case Kind::text:
        return &text_;
      case Kind::real:
        return &real_;
      case Kind::enumeration:
      case Kind::flags:
      case Kind::structure:
        return object_;
      default:
        return &number_;
    }
  }

 private:
  kelp_handle *handle_;
  const Field &field_;
  void *object_ = nullptr;
  std::uint32_t number_ = 0;
  double real_ = 0;
  ip_address address_{};
  kelp_vstring text_{};
};

bool is_object_field(const Field &field) {
  return field.kind == Kind::address || field.kind == Kind::text || field.kind == Kind::structure;
}

template <typename Act>
void for_each_schema_field(Act act) {
  for (const Structure *type : harbor::model::structures) {
    for (const Field *field : type->fields) {
      SCOPED_TRACE(std::string(type->name) + " " + std::string(field->name));
      act(*type, *field);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

class FieldWrite : public testing::TestWithParam<std::uint32_t> {
 protected:
  bool tracks() const { return GetParam() == KELP_TRACKING_ON; }
  std::uint32_t size_of(const Structure &type) const {
    return tracks() ? harbor::model::tracked_size(type) : harbor::model::object_size(type);
  }
  harness::Store store_{{.tracking = GetParam()}};
};

}  // namespace

TEST_P(FieldWrite, SetValueAnnouncesExactlyTheValueAndItsStateByte) {
  for_each_schema_field([&](const Structure &type, const Field &field) {
    if (!has_value(field)) return;
    Object object(store_, type);
    std::vector<MemoryWatch::Write> expected{value_write(type, field)};
    if (tracks()) expected.push_back(state_write(type, field));
    MemoryWatch watch(store_, object.get(), size_of(type));
    set_value(store_, type, field, object.get(), some_value(field), &store_.err);
    watch.finish();
    EXPECT_EQ(store_.err, 0u);
    EXPECT_EQ(watch.writes(), expected);
    EXPECT_TRUE(watch.unannounced().empty());
    EXPECT_EQ(get_value(store_, type, field, object.get(), &store_.err), some_value(field));
  });
}

TEST_P(FieldWrite, SetAnnouncesTheWholeFieldAndItsStateByte) {
  for_each_schema_field([&](const Structure &type, const Field &field) {
    if (!has_value(field) && !is_object_field(field)) return;
    Object object(store_, type);
    Source source(store_, field);
    MemoryWatch watch(store_, object.get(), size_of(type));
    call<void>(of(type, field, "set"), store_.handle(), std::uint32_t{0}, object.get(),
               source.get(), &store_.err);
    watch.finish();
    EXPECT_EQ(store_.err, 0u);
    EXPECT_TRUE(watch.unannounced().empty()) << "byte " << watch.unannounced().front();
    ASSERT_FALSE(watch.writes().empty());
    if (field.kind != Kind::structure) {
      // An embedded structure may bring its variant in line first.
      EXPECT_EQ(watch.writes().front(), whole_write(type, field));
    }
    if (tracks()) {
      EXPECT_EQ(watch.writes().back(), state_write(type, field));
    }
  });
}

TEST_P(FieldWrite, ASetterMarksItsOwnStateByteAndNoOther) {
  if (!tracks()) return;
  for_each_schema_field([&](const Structure &type, const Field &field) {
    if (!has_value(field)) return;
    Object object(store_, type);
    set_value(store_, type, field, object.get(), some_value(field), &store_.err);
    EXPECT_EQ(store_.err, 0u);
    for (const Field *other : type.fields) {
      if (!harbor::model::has_state(*other) || other->kind == Kind::array) continue;
      const auto state = call<std::uint8_t>(of(type, *other, "state_flag_get"), store_.handle(),
                                            std::uint32_t{0}, object.get(), &store_.err);
      EXPECT_EQ(state, other == &field ? 2 : 0) << other->name;
    }
    EXPECT_EQ(store_.err, 0u);
  });
}

TEST_P(FieldWrite, GettersAnnounceNothing) {
  for_each_schema_field([&](const Structure &type, const Field &field) {
    if (!has_value(field) && field.kind != Kind::counter) return;
    Object object(store_, type);
    harness::WriteWatch watch(store_);
    get_value(store_, type, field, object.get(), &store_.err);
    call<void *>(of(type, field, "get"), store_.handle(), std::uint32_t{0}, object.get(),
                 &store_.err);
    EXPECT_EQ(store_.err, 0u);
    EXPECT_TRUE(watch.all().empty());
  });
}

TEST_P(FieldWrite, OneStoredErrorWithTheWordsCode) {
  if (!tracks()) return;
  // An object that was made without state bytes, written through a handle that tracks: 22.
  kelp_handle *plain = store_.another_handle({});
  for_each_schema_field([&](const Structure &type, const Field &field) {
    if (!has_value(field)) return;
    Object object(plain, type);
    std::uint32_t err = 0;
    harness::CallLog log;
    harness::TraceLog traced;
    set_value(store_, type, field, object.get(), some_value(field), &err);
    EXPECT_EQ(log.count("kelp_store_err"), 1u);
    EXPECT_EQ(err, KELP_ERR_INVALID);
    EXPECT_EQ(store_.last_error(), KELP_ERR_INVALID);
    EXPECT_EQ(traced.texts(), std::vector<std::string>{"The object is not state tracked"});
    err = 0;
    EXPECT_EQ(get_value(plain, type, field, object.get(), &err), some_value(field));
  });
}

TEST_P(FieldWrite, AFieldAboveTheObjectsVariantIsRefusedByGettersAndGivenBySetters) {
  // What the runtime calls within a refusal; the accessors add no stored error to it.
  const std::size_t stored_within = [&] {
    harness::CallLog log;
    std::uint32_t err = 0;
    kelp_store_epoch_err(store_, KELP_ERR_EPOCH, &err);
    return log.count("kelp_store_err");
  }();
  for_each_schema_field([&](const Structure &type, const Field &field) {
    if (field.since == 0) return;
    store_.set_variant(std::string(type.name).c_str(), 0);
    Object object(store_, type);
    Bytes before(object.bytes(), object.bytes() + size_of(type));
    const char *getter = field.kind == Kind::reference ? "get_by_ref" : "get";
    if (field.kind != Kind::array) {
      harness::CallLog log;
      std::uint32_t err = 0;
      EXPECT_EQ(call<void *>(of(type, field, getter), store_.handle(), std::uint32_t{0},
                             object.get(), &err),
                nullptr);
      EXPECT_EQ(err, KELP_ERR_EPOCH);
      EXPECT_EQ(log.count("kelp_store_epoch_err"), 1u);
      EXPECT_EQ(log.count("kelp_store_err"), stored_within);
      EXPECT_EQ(std::memcmp(before.data(), object.get(), before.size()), 0);
    }
    if (has_value(field)) {
      std::uint32_t err = 0;
      set_value(store_, type, field, object.get(), some_value(field), &err);
      EXPECT_EQ(err, KELP_ERR_EPOCH) << "the domain does not hold the field";
      store_.set_variant(std::string(type.name).c_str(), field.since);
      err = 0;
      set_value(store_, type, field, object.get(), some_value(field), &err);
      EXPECT_EQ(err, 0u);
      EXPECT_EQ(object.bytes()[8], field.since) << "the setter moves the object up";
    }
    store_.set_variant(std::string(type.name).c_str(), type.variants - 1);
  });
}

TEST_P(FieldWrite, PlatformCallsOfAPrimitiveSetterComeInOrder) {
  static const std::vector<std::string> wanted{"kelp_clear_last_error",
                                               "kelp_get_manifested_type_info",
                                               "kelplib_adjust_variant",
                                               "kelp_get_instance_variant",
                                               "u_int32_set",
                                               "kelplib_get_sttr_offset"};
  for_each_schema_field([&](const Structure &type, const Field &field) {
    if (field.kind != Kind::u32) return;
    Object object(store_, type);
    std::uint32_t value = 5;
    harness::CallLog log;
    call<void>(of(type, field, "set"), store_.handle(), std::uint32_t{0}, object.get(), &value,
               &store_.err);
    EXPECT_EQ(log.only(wanted),
              (std::vector<std::string>{"kelp_clear_last_error", "kelp_get_manifested_type_info",
                                        "kelplib_adjust_variant", "kelp_get_instance_variant",
                                        "u_int32_set"}));
  });
}

INSTANTIATE_TEST_SUITE_P(Handles, FieldWrite,
                         testing::Values(KELP_TRACKING_ABSENT, KELP_TRACKING_ON, KELP_TRACKING_OFF),
                         name_of_tracking);

}  // namespace whole_schema
