// What accessors give when they do nothing: under a set error word, the empty result whatever the
// object holds and whether or not the handle tracks state. And what a bulk write leaves of the
// state that was there.
#include <kelp/primitives.h>

#include <cstring>

#include "composition.hpp"
#include "model/lists.hpp"
#include "support/objects.hpp"
#include "types/replaced_call.hpp"
#include "whole_schema/erased.hpp"

namespace whole_schema {

namespace {

constexpr std::uint32_t space = 0;

// Words of no zero byte, so that whatever is read from them is seen.
void fill_with_ones(void *object, const Structure &type) {
  for (const Field *field : type.fields) {
    auto *place = static_cast<std::uint8_t *>(object) + harbor::model::offset(type, *field);
    switch (field->kind) {
      case Kind::u8:
      case Kind::u16:
      case Kind::u32:
      case Kind::real:
      case Kind::boolean:
        std::memset(place, 1, harbor::model::width(field->kind));
        break;
      case Kind::enumeration:
        place[harbor::model::enumeration_value_offset] = 1;
        break;
      case Kind::flags:
        place[harbor::model::flags_offset] = 1;
        break;
      default:
        break;
    }
  }
}

bool is_accessor(const emit::Function &function, const Structure &type) {
  return function.result != "void" && function.name.find("_get") != std::string::npos &&
         function.arguments.find("uint32_t *err") != std::string::npos &&
         // These answer under a set word too, and are told of elsewhere.
         function.name != of(type, "get_luid") && function.name != of(type, "get_oid_count");
}

}  // namespace

class AccessorResults : public testing::TestWithParam<std::uint32_t> {};

TEST_P(AccessorResults, AreEmptyUnderASetErrorWord) {
  harness::Store store({.tracking = GetParam()});
  std::size_t tried = 0;
  for (const Structure *type : harbor::model::structures) {
    encodings::Object object(store, *type);
    encodings::Filler(store, 5).fill(object.get(), *type);
    auto &header = encodings::header(object.get());
    header.obj_flags &= static_cast<std::uint8_t>(~OBJ_RA_DATA);
    header.variant = static_cast<std::int8_t>(type->variants - 1);
    fill_with_ones(object.get(), *type);
    const std::size_t size = harbor::model::object_size(*type);
    const auto *bytes = static_cast<const std::uint8_t *>(object.get());
    const std::vector<std::uint8_t> before(bytes, bytes + size);
    for (const emit::Function &function : emit::unit_of(*type).functions) {
      if (!is_accessor(function, *type)) continue;
      ++tried;
      std::uint32_t err = KELP_ERR_TOO_LONG;
      const bool indexed = function.arguments.find("uint32_t index") != std::string::npos;
      kelp_handle *handle = store;
      harness::CallLog log(handle);
      if (function.result == "double") {
        EXPECT_EQ(call<double>(function.name, handle, space, object.get(), &err), 0.0)
            << function.name;
      } else {
        std::uint64_t result =
            indexed ? call<std::uint64_t>(function.name, handle, space, object.get(),
                                          std::uint32_t{0}, &err)
                    : call<std::uint64_t>(function.name, handle, space, object.get(), &err);
        if (function.result == "uint8_t") result &= 0xFF;
        if (function.result == "uint16_t") result &= 0xFFFF;
        if (function.result == "uint32_t") result &= 0xFFFFFFFF;
        EXPECT_EQ(result, 0u) << function.name;
      }
      EXPECT_EQ(err, KELP_ERR_TOO_LONG) << function.name;
      EXPECT_TRUE(log.calls().empty()) << function.name;
    }
    EXPECT_EQ(std::vector<std::uint8_t>(bytes, bytes + size), before);
  }
  EXPECT_GT(tried, 500u);
}

// The same under a cr_err that is set.
TEST_P(AccessorResults, AreEmptyInAFailedChain) {
  harness::Store store({.tracking = GetParam()});
  store.handle()->cr_err = KELP_ERR_TOO_LONG;
  for (const Structure *type : harbor::model::structures) {
    encodings::Object object(store, *type);
    encodings::Filler(store, 5).fill(object.get(), *type);
    for (const emit::Function &function : emit::unit_of(*type).functions) {
      if (!function.name.ends_with("_get_by_ref_cr") && !function.name.ends_with("_len_cr")) {
        continue;
      }
      std::uint64_t result = call<std::uint64_t>(function.name, store.handle(), object.get());
      if (function.result == "uint32_t") result &= 0xFFFFFFFF;
      EXPECT_EQ(result, 0u) << function.name;
      EXPECT_EQ(store.handle()->cr_err, KELP_ERR_TOO_LONG) << function.name;
    }
  }
  store.handle()->cr_err = 0;
}

INSTANTIATE_TEST_SUITE_P(Handles, AccessorResults,
                         testing::Values(KELP_TRACKING_ABSENT, KELP_TRACKING_ON, KELP_TRACKING_OFF),
                         name_of_tracking);

std::vector<std::int32_t> asked_plainly;
std::int8_t note_question(const void *object, std::int32_t space_id, std::int32_t plain) {
  asked_plainly.push_back(plain);
  return kelp_get_instance_variant(object, space_id, plain);
}

// The gate of a field says whether the value stands there plainly.
TEST(FieldGate, AsksForTheVariantAsTheKindIsKept) {
  harness::Store store;
  const harness::ReplacedCall variant("kelp_get_instance_variant", note_question);
  for (const Structure *type : harbor::model::structures) {
    Object object(store, *type);
    for (const Field *field : type->fields) {
      if (!has_value(*field)) continue;
      asked_plainly.clear();
      get_value(store, *type, *field, object.get(), &store.err);
      const bool plain = field->kind == Kind::boolean || field->kind == Kind::enumeration ||
                         field->kind == Kind::flags;
      ASSERT_FALSE(asked_plainly.empty());
      EXPECT_EQ(asked_plainly[0], plain ? 1 : 0) << of(*type, *field, "get_value");
    }
  }
}

// A fresh object of every type reads as zero in every value field, enumerations too.
TEST(FreshObject, ReadsAsZeroInEveryValueField) {
  harness::Store store;
  for (const Structure *type : harbor::model::structures) {
    Object object(store, *type);
    for (const Field *field : type->fields) {
      if (!has_value(*field)) continue;
      EXPECT_EQ(get_value(store, *type, *field, object.get(), &store.err), 0.0)
          << of(*type, *field, "get_value");
      EXPECT_EQ(store.err, 0u);
    }
  }
  Object neighbor(store, harbor::model::types::ospf_neighbor);
  const Field &state = harbor::model::fields::ospf_neighbor::state;
  const auto *held =
      call<const std::uint8_t *>(of(harbor::model::types::ospf_neighbor, state, "get"),
                                 store.handle(), space, neighbor.get(), &store.err);
  ASSERT_NE(held, nullptr);
  std::uint32_t value = 9;
  std::memcpy(&value, held + harbor::model::enumeration_value_offset, sizeof value);
  EXPECT_EQ(value, 0u);
}

// Bulk writes mark nothing and forget nothing: the state that was there stays.
TEST(BulkWrite, LeavesEveryStateByteAsItWas) {
  harness::Store store({.tracking = KELP_TRACKING_ON});
  kelp_handle *handle = store;
  std::size_t tried = 0;
  for (const Structure *type : harbor::model::structures) {
    Object object(store, *type);
    const std::size_t size = harbor::model::state_size(*type);
    std::uint8_t *area = object.bytes() + harbor::model::object_size(*type);
    for (const Field *field : type->fields) {
      if (harbor::model::has_state(*field)) area[harbor::model::state_place(*type, *field)] = 9;
    }
    const std::vector<std::uint8_t> before(area, area + size);
    for (const emit::Function &function : emit::unit_of(*type).functions) {
      if (function.name != of(*type, "set_all")) continue;
      ++tried;
      // Real numbers come in registers of their own; all values are 0.
      std::uint64_t words[40] = {};
      std::size_t next = 0;
      std::size_t start = 0;
      const std::string &arguments = function.arguments;
      while (start < arguments.size()) {
        const std::size_t end = std::min(arguments.find(',', start), arguments.size());
        const std::string parameter = arguments.substr(start, end - start);
        start = end + 2;
        if (parameter.starts_with("double ")) continue;
        ASSERT_LT(next, std::size(words));
        if (parameter.starts_with("kelp_handle *")) {
          words[next] = reinterpret_cast<std::uint64_t>(handle);
        } else if (parameter == "uint32_t *err") {
          words[next] = reinterpret_cast<std::uint64_t>(&store.err);
        } else if (parameter.find('*') != std::string::npos) {
          words[next] = reinterpret_cast<std::uint64_t>(object.get());
        }
        ++next;
      }
      [&]<std::size_t... I>(std::index_sequence<I...>) {
        call<std::uint64_t>(function.name, words[I]...);
      }
      (std::make_index_sequence<40>());
    }
    EXPECT_EQ(std::vector<std::uint8_t>(area, area + size), before) << type->name;
    EXPECT_EQ(store.err, 0u) << type->name;
  }
  EXPECT_EQ(tried, 52u);
}

}  // namespace whole_schema
