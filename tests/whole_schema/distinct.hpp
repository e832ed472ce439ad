// Gives every field of an object a value that no other field of it has, nested structures, array
// elements, references and arms too, all through exported setters; and holds an object against
// those values through getters, the bulk getter and the state flags. One walk does both, so that
// what is read is what was written. Booleans and enumerations have few values: from round to round
// a field takes others, and any two fields differ in some round.
#pragma once

#include <kelp/primitives.h>
#include <kelp/table.h>

#include <array>
#include <cstring>
#include <map>
#include <memory>

#include "model/lists.hpp"
#include "whole_schema/erased.hpp"

namespace whole_schema {

inline constexpr std::uint32_t rounds = 8;
inline constexpr std::uint32_t array_length = 3;

// The handles and variants under which every structure is tried.
struct Case {
  std::uint32_t tracking;
  std::int32_t variant;
};

inline const auto all_cases = testing::Values(
    Case{KELP_TRACKING_ABSENT, 0}, Case{KELP_TRACKING_ABSENT, 1}, Case{KELP_TRACKING_ON, 0},
    Case{KELP_TRACKING_ON, 1}, Case{KELP_TRACKING_OFF, 0}, Case{KELP_TRACKING_OFF, 1});

inline std::string name_of_case(const testing::TestParamInfo<Case> &info) {
  return tracking_text(info.param.tracking) + "Variant" + std::to_string(info.param.variant);
}

// Brings everything that has two variants to one of them.
inline void set_all_variants(harness::Store &store, std::int32_t variant) {
  for (const Structure *type : harbor::model::structures) {
    if (type->variants > 1) store.set_variant(std::string(type->name).c_str(), variant);
  }
  for (const auto *type : harbor::model::all_enumerations) {
    if (type->variants > 1) store.set_variant(std::string(type->name).c_str(), variant);
  }
}

// Open tables for references to lead to, each handed out once in a walk.
class Targets {
 public:
  explicit Targets(kelp_handle *handle) : handle_(handle) {}
  ~Targets() {
    for (const auto &[place, table] : tables_) {
      std::uint32_t err = 0;
      call<void>(name(place.first) + "_table_free", handle_, std::uint32_t{0}, table, &err);
      EXPECT_EQ(err, 0u) << name(place.first);
    }
  }
  Targets(const Targets &) = delete;
  Targets &operator=(const Targets &) = delete;

  void *table(harbor::model::TableId id, std::uint32_t number) {
    void *&table = tables_[{id, number}];
    if (table != nullptr) return table;
    std::uint32_t err = 0;
    const std::string given = "target " + std::to_string(number);
    table = call<void *>(name(id) + "_table_open", handle_, std::uint32_t{0}, given.c_str(),
                         std::uint32_t{0}, &err);
    EXPECT_EQ(err, 0u) << name(id);
    EXPECT_NE(table, nullptr) << name(id);
    return table;
  }

 private:
  static std::string name(harbor::model::TableId id) {
    return "tbl_" + std::string(harbor::model::table(id).name);
  }
  kelp_handle *handle_;
  std::map<std::pair<harbor::model::TableId, std::uint32_t>, void *> tables_;
};

class Distinct {
 public:
  // Without targets, references stay empty. tracked: whether objects have state bytes that the
  // handle gives out. first: where the values begin.
  Distinct(kelp_handle *handle, std::uint32_t round, bool tracked, Targets *targets = nullptr,
           std::uint32_t first = 0)
      : handle_(handle), round_(round), tracked_(tracked), targets_(targets), first_(first) {}

  void fill(void *object, const Structure &type) {
    filling_ = true;
    last_ = first_;
    walk(object, type);
  }
  void expect(void *object, const Structure &type) {
    filling_ = false;
    last_ = first_;
    walk(object, type);
  }
  // The same for an object that came by an encoding: a choice's arms travel only when they are
  // selected, and the others are null. stateless: a field whose state did not come along, or null.
  void expect_arrived(void *object, const Structure &type, const Field *stateless = nullptr) {
    arrived_ = true;
    stateless_ = stateless;
    expect(object, type);
    arrived_ = false;
    stateless_ = nullptr;
  }

 private:
  static constexpr std::uint32_t space = 0;
  // In odd rounds arrays are replaced as wholes and embedded structures moved in as wholes.
  bool by_wholes() const { return round_ % 2 == 1; }

  // --- values -----------------------------------------------------------------------------------

  std::uint32_t next(Kind kind) {
    const std::uint32_t number = ++last_;
    switch (kind) {
      case Kind::u8:
        return number & 0xFF;
      case Kind::u16:
        return 0x5000 + number;
      case Kind::boolean:
        return number >> round_ & 1;
      default:
        return 0x5A000000 + number;
    }
  }
  std::uint32_t next(const Field &field, std::int8_t variant) {
    if (field.kind == Kind::enumeration) {
      const auto &type = *field.enumeration;
      const std::uint32_t usable = type.limits[variant < type.variants ? variant : 0];
      return type.members[(++last_ + round_) % usable].value;
    }
    if (field.kind == Kind::flags) {
      return (++last_ + round_) & ((1u << field.flag_set->members.size()) - 1);
    }
    return next(field.kind);
  }
  static double real_of(std::uint32_t value) { return value + 0.25; }
  ip_address next_address() {
    const std::uint32_t value = next(Kind::u32);
    if (value % 2 == 0) return ip_address_make_ipv4(value);
    std::uint8_t bytes[16] = {0x20, 0x01};
    std::memcpy(bytes + 12, &value, sizeof value);
    return ip_address_make_ipv6(bytes, value % 5);
  }
  std::string next_text() { return "text " + std::to_string(next(Kind::u32)); }

  // --- the walk ---------------------------------------------------------------------------------

  void walk(void *object, const Structure &type) {
    const auto variant = static_cast<std::int8_t>(static_cast<std::uint8_t *>(object)[8]);
    std::map<const Field *, double> bulk;
    // A choice's arms come first: setting one selects it, and the selector has the last word.
    for (const bool arms : {true, false}) {
      for (const Field *field : type.fields) {
        if ((field->kind == Kind::arm) != arms || field->since > variant) continue;
        SCOPED_TRACE(std::string(type.name) + " " + std::string(field->name));
        visit(object, type, *field, variant, bulk);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
    if (!filling_) expect_bulk(object, type, bulk);
  }

  void visit(void *object, const Structure &type, const Field &field, std::int8_t variant,
             std::map<const Field *, double> &bulk) {
    switch (field.kind) {
      case Kind::counter:
        bulk[&field] = array_length;
        if (!filling_) {
          EXPECT_EQ(get_value(handle_, type, field, object, &err_), array_length);
          ok();
        }
        return;
      case Kind::address:
        return address(object, type, field);
      case Kind::text:
        return text(object, type, field);
      case Kind::structure:
        return structure(object, type, field);
      case Kind::array:
        if (field.held == Kind::address) return addresses(object, type, field);
        if (field.held == Kind::u8) return elements<std::uint8_t>(object, type, field);
        return elements<std::uint32_t>(object, type, field);
      case Kind::reference:
        return reference(object, type, field);
      case Kind::arm:
        return arm(object, type, field);
      default:
        return value(object, type, field, variant, bulk);
    }
  }

  void value(void *object, const Structure &type, const Field &field, std::int8_t variant,
             std::map<const Field *, double> &bulk) {
    const std::uint32_t number = next(field, variant);
    const double expected = field.kind == Kind::real ? real_of(number) : number;
    bulk[&field] = expected;
    if (!filling_) {
      EXPECT_EQ(get_value(handle_, type, field, object, &err_), expected);
      ok();
      return expect_state(object, type, field, "state_flag_get", 2);
    }
    if (field.kind == Kind::real) {
      call<void>(of(type, field, "set_value"), handle_, space, object, expected, &err_);
    } else {
      set_value(handle_, type, field, object, number, &err_);
    }
    ok();
  }

  void address(void *object, const Structure &type, const Field &field) {
    ip_address wanted = next_address();
    if (filling_) {
      call<void>(of(type, field, "set"), handle_, space, object, &wanted, &err_);
      return ok();
    }
    const auto *held =
        call<const ip_address *>(of(type, field, "get"), handle_, space, object, &err_);
    ok();
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(ip_address_compare(held, &wanted), 0);
    expect_state(object, type, field, "state_flag_get", 2);
  }

  void text(void *object, const Structure &type, const Field &field) {
    const std::string wanted = next_text();
    if (filling_) {
      kelp_vstring source{};
      kelp_vstring_assign(handle_, space, &source, wanted.data(), wanted.size(), &err_);
      call<void>(of(type, field, "set"), handle_, space, object, &source, &err_);
      kelp_vstring_destroy_internal(handle_, space, &source, 0);
      return ok();
    }
    const auto *held =
        call<const kelp_vstring *>(of(type, field, "get"), handle_, space, object, &err_);
    ok();
    EXPECT_EQ(kelp_vstring_text(held), wanted);
    expect_state(object, type, field, "state_flag_get", 2);
  }

  void structure(void *object, const Structure &type, const Field &field) {
    if (filling_ && by_wholes()) {
      void *source = create(handle_, std::string(field.structure->name));
      ASSERT_NE(source, nullptr);
      walk(source, *field.structure);
      call<void>(of(type, field, "set"), handle_, space, object, source, &err_);
      destroy(handle_, std::string(field.structure->name), source);
      return ok();
    }
    void *child = call<void *>(of(type, field, "get"), handle_, space, object, &err_);
    ok();
    ASSERT_NE(child, nullptr);
    walk(child, *field.structure);
    if (!filling_) expect_state(object, type, field, "state_flag_get", by_wholes() ? 2 : 0);
  }

  template <typename Element>
  void elements(void *object, const Structure &type, const Field &field) {
    std::array<Element, array_length> wanted;
    for (Element &element : wanted) element = static_cast<Element>(next(field.held));
    if (filling_ && by_wholes()) {
      call<void>(of(type, field, "set_mem"), handle_, space, object, wanted.data(), array_length,
                 &err_);
      return ok();
    }
    if (filling_) {
      for (std::uint32_t index = 0; index < array_length; ++index) {
        call<void>(of(type, field, "set_value"), handle_, space, object, index, wanted[index],
                   &err_);
        ok();
      }
      return;
    }
    std::array<Element, array_length> held{};
    call<void>(of(type, field, "get_mem"), handle_, space, object, held.data(), array_length,
               &err_);
    EXPECT_EQ(held, wanted);
    for (std::uint32_t index = 0; index < array_length; ++index) {
      EXPECT_EQ(call<Element>(of(type, field, "get_value"), handle_, space, object, index, &err_),
                wanted[index]);
    }
    ok();
    expect_array_states(object, type, field, by_wholes() ? 0 : 2);
  }

  void addresses(void *object, const Structure &type, const Field &field) {
    for (std::uint32_t index = 0; index < array_length; ++index) {
      ip_address wanted = next_address();
      if (filling_) {
        call<void>(of(type, field, "set"), handle_, space, object, index, &wanted, &err_);
        ok();
        continue;
      }
      const auto *held =
          call<const ip_address *>(of(type, field, "get"), handle_, space, object, index, &err_);
      ok();
      ASSERT_NE(held, nullptr);
      EXPECT_EQ(ip_address_compare(held, &wanted), 0) << index;
    }
    if (!filling_) expect_array_states(object, type, field, 2);
  }

  void reference(void *object, const Structure &type, const Field &field) {
    if (targets_ == nullptr) return;
    void *target = targets_->table(field.table, ++last_);
    if (filling_) {
      call<void>(of(type, field, "set_by_ref"), handle_, space, object, target, &err_);
      return ok();
    }
    EXPECT_EQ(call<void *>(of(type, field, "get_by_ref"), handle_, space, object, &err_), target);
    ok();
    expect_state(object, type, field, "state_flag_get", 2);
  }

  static bool is_selected(const void *object, const Structure &type, const Field &field) {
    for (const Field *selector : type.fields) {
      if (selector->kind != Kind::enumeration) continue;
      std::uint32_t value = 0;
      std::memcpy(&value,
                  static_cast<const std::uint8_t *>(object) +
                      harbor::model::offset(type, *selector) +
                      harbor::model::enumeration_value_offset,
                  sizeof value);
      return value == field.selector;
    }
    return false;
  }

  // Takes the values that the arm has in the source, so that those behind it stay in step.
  void expect_no_arm(void *object, const Structure &type, const Field &field) {
    EXPECT_EQ(call<void *>(of(type, field, "get"), handle_, space, object, &err_), nullptr);
    ok();
    if (field.held == Kind::structure) {
      filling_ = true;
      void *scratch = new_arm(field);
      walk(scratch, *field.structure);
      destroy(handle_, std::string(field.structure->name), scratch);
      filling_ = false;
    } else {
      ++last_;
    }
  }

  void arm(void *object, const Structure &type, const Field &field) {
    if (arrived_ && !is_selected(object, type, field)) return expect_no_arm(object, type, field);
    void *held = filling_ ? new_arm(field)
                          : call<void *>(of(type, field, "get"), handle_, space, object, &err_);
    ok();
    ASSERT_NE(held, nullptr);
    if (field.held == Kind::structure) {
      walk(held, *field.structure);
    } else if (field.held == Kind::text) {
      const std::string wanted = next_text();
      auto *text = static_cast<kelp_vstring *>(held);
      if (filling_) {
        kelp_vstring_assign(handle_, space, text, wanted.data(), wanted.size(), &err_);
      }
      EXPECT_EQ(kelp_vstring_text(text), wanted);
    } else {
      const std::uint32_t wanted = next(Kind::u32);
      auto *number = static_cast<std::uint32_t *>(held);
      if (filling_) *number = wanted;
      EXPECT_EQ(*number, wanted);
    }
    if (filling_) {
      call<void>(of(type, field, "set"), handle_, space, object, held, &err_);
      return ok();
    }
    expect_state(object, type, field, "state_flag_get", 2);
  }

  void *new_arm(const Field &field) {
    if (field.held == Kind::structure) return create(handle_, std::string(field.structure->name));
    if (field.held == Kind::text) return kelp_vstring_create(handle_, space);
    return u_int32_create(handle_, space);
  }

  // --- what is read beside the values -----------------------------------------------------------

  // Objects without state bytes that are given out refuse to tell them.
  void expect_code() {
    EXPECT_EQ(err_, tracked_ ? 0u : 22u);
    err_ = 0;
  }
  void expect_state(void *object, const Structure &type, const Field &field, const char *getter,
                    std::uint32_t state) {
    const auto held = call<std::uint8_t>(of(type, field, getter), handle_, space, object, &err_);
    EXPECT_EQ(held, tracked_ && &field != stateless_ ? state : 0) << getter;
    expect_code();
  }
  void expect_array_states(void *object, const Structure &type, const Field &field,
                           std::uint32_t element_state) {
    expect_state(object, type, field, "state_flag_whole_get", 2);
    for (std::uint32_t index = 0; index < array_length; ++index) {
      const auto held = call<std::uint8_t>(of(type, field, "state_flag_get"), handle_, space,
                                           object, index, &err_);
      EXPECT_EQ(held, tracked_ ? element_state : 0) << index;
      expect_code();
    }
  }

  // The bulk getter takes a place for each plain value and counter, in order; flag sets have none.
  // Places of fields that the object's variant lacks stay as they were.
  void expect_bulk(const void *object, const Structure &type,
                   const std::map<const Field *, double> &bulk) {
    constexpr std::uint64_t untouched = 0xEEEEEEEEEEEEEEEE;
    std::array<std::uint64_t, 32> held;
    std::array<std::uint64_t, 32> expected;
    held.fill(untouched);
    expected.fill(untouched);
    std::size_t count = 0;
    for (const Field *field : type.fields) {
      const bool is_plain = has_value(*field) && field->kind != Kind::flags;
      if (!is_plain && field->kind != Kind::counter) continue;
      const auto found = bulk.find(field);
      if (found != bulk.end()) put(&expected[count], *field, found->second);
      ++count;
    }
    ASSERT_LT(count, held.size());
    std::array<void *, 32> places{};
    for (std::size_t at = 0; at < count; ++at) places[at] = &held[at];
    places[count] = &err_;
    [&]<std::size_t... I>(std::index_sequence<I...>) {
      call<void>(of(type, "get_all"), handle_, space, object, places[I]...);
    }
    (std::make_index_sequence<32>());
    ok();
    EXPECT_EQ(held, expected) << type.name;
  }
  static void put(void *place, const Field &field, double value) {
    const auto whole = static_cast<std::uint32_t>(value);
    switch (field.kind) {
      case Kind::real:
        std::memcpy(place, &value, sizeof value);
        break;
      case Kind::u8:
      case Kind::u16:
        std::memcpy(place, &whole, harbor::model::width(field.kind));
        break;
      default:
        std::memcpy(place, &whole, sizeof whole);
    }
  }

  void ok() {
    EXPECT_EQ(err_, 0u);
    err_ = 0;
  }

  kelp_handle *handle_;
  std::uint32_t round_;
  bool tracked_;
  Targets *targets_;
  std::uint32_t first_;
  bool filling_ = true;
  bool arrived_ = false;
  const Field *stateless_ = nullptr;
  std::uint32_t last_ = 0;
  std::uint32_t err_ = 0;
};

}  // namespace whole_schema
