// Sizes and indexes at the edge of what their words hold: a negative size writes nothing, and the
// highest index grows no array.
#include <kelp/primitives.h>
#include <kelp/table.h>

#include <algorithm>
#include <cstring>

#include "model/lists.hpp"
#include "whole_schema/erased.hpp"

namespace whole_schema {

namespace {

constexpr std::uint32_t space = 0;
constexpr std::int32_t negative_sizes[] = {-1, -2, INT32_MIN};

class Untouched {
 public:
  char *data() { return buffer_.data(); }
  bool holds() const {
    return std::all_of(buffer_.begin(), buffer_.end(), [](char c) { return c == '#'; });
  }

 private:
  std::string buffer_ = std::string(1 << 16, '#');
};

// Each form with each negative size: nothing is written; the text forms give 0, XML has no room.
void expect_nothing_written(harness::Store &store, const std::string &type, const void *object) {
  kelp_handle *handle = store;
  for (const std::int32_t size : negative_sizes) {
    SCOPED_TRACE(type + ", size " + std::to_string(size));
    Untouched buffer;
    EXPECT_EQ(call<std::uint32_t>(type + "_print", handle, space, buffer.data(), std::uint32_t{2},
                                  "label", object, size, &store.err),
              0u);
    EXPECT_EQ(store.err, 0u);
    EXPECT_EQ(call<std::uint32_t>(type + "_print_cr", handle, object, buffer.data(), size), 0u);
    EXPECT_EQ(handle->cr_err, 0u);
    EXPECT_EQ(call<std::uint32_t>(type + "_to_xml", handle, space, "tag", buffer.data(), object,
                                  size, std::uint32_t{0}, &store.err),
              0u);
    EXPECT_EQ(store.err, KELP_ERR_NO_ROOM);
    store.err = 0;
    EXPECT_EQ(call<std::uint32_t>(type + "_toxml_cr", handle, object, buffer.data(), size),
              0xFFFFFFFFu);
    EXPECT_EQ(handle->cr_err, KELP_ERR_NO_ROOM);
    handle->cr_err = 0;
    EXPECT_TRUE(buffer.holds());
  }
}

}  // namespace

TEST(NegativeSize, NoObjectIsWritten) {
  harness::Store store;
  const auto expect = [&](std::string_view name) {
    const std::string type(name);
    Object object(store, type);
    expect_nothing_written(store, type, object.get());
  };
  for (const auto *type : harbor::model::structures) expect(type->name);
  for (const auto *type : harbor::model::all_enumerations) expect(type->name);
  for (const auto *type : harbor::model::all_flag_sets) expect(type->name);
}

TEST(NegativeSize, NoRecordIsWritten) {
  harness::Store store;
  kelp_handle *handle = store;
  for (const auto *table : harbor::model::all_tables) {
    const std::string name = "tbl_" + std::string(table->name);
    auto *record = call<kelp_record *>(name + "_record_create_cr", handle, std::uint32_t{1});
    for (const std::int32_t size : negative_sizes) {
      SCOPED_TRACE(name + ", size " + std::to_string(size));
      Untouched buffer;
      for (const char *form :
           {"_table_record_print", "_table_record_to_xml", "_table_record_marshal"}) {
        EXPECT_EQ(call<std::uint32_t>(name + form, handle, space, buffer.data(), record, size,
                                      &store.err),
                  0u)
            << form;
        EXPECT_EQ(store.err, KELP_ERR_NO_ROOM) << form;
        store.err = 0;
      }
      for (const char *form : {"_record_print_cr", "_record_toxml_cr", "_record_marshal_cr"}) {
        EXPECT_EQ(call<std::uint32_t>(name + form, handle, record, buffer.data(), size),
                  0xFFFFFFFFu)
            << form;
        EXPECT_EQ(handle->cr_err, KELP_ERR_NO_ROOM) << form;
        handle->cr_err = 0;
      }
      EXPECT_TRUE(buffer.holds());
    }
    call<void>(name + "_record_destroy_cr", handle, record);
  }
}

TEST(HighestIndex, GrowsNoArray) {
  constexpr std::uint32_t index = UINT32_MAX;
  std::size_t arrays = 0;
  for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_ON}) {
    for (const Structure *type : harbor::model::structures) {
      for (const Field *field : type->fields) {
        if (field->kind != Kind::array) continue;
        for (const std::uint32_t held : {0u, 2u}) {
          SCOPED_TRACE(of(*type, *field, "") + std::to_string(held));
          ++arrays;
          harness::Store store({.tracking = tracking});
          EXPECT_EQ(kelp_database_set_memory_limit(store.database(), 1 << 24, nullptr), 0);
          kelp_handle *handle = store;
          Object object(handle, *type);
          std::uint32_t value = 3;
          ip_address address = ip_address_make_ipv4(1);
          const bool holds_addresses = field->held == Kind::address;
          void *source = holds_addresses ? static_cast<void *>(&address) : &value;
          for (std::uint32_t at = 0; at < held; ++at) {
            call<void>(of(*type, *field, "set"), handle, space, object.get(), at, source,
                       &store.err);
          }
          const std::size_t size = harbor::model::object_size(*type);
          const std::vector<std::uint8_t> before(object.bytes(), object.bytes() + size);
          const harness::CallLog log(handle);
          const harness::TraceLog traced;
          const auto expect_refused = [&](std::uint32_t code) {
            EXPECT_EQ(code, 12u);
            EXPECT_EQ(store.last_error(), KELP_ERR_NO_MEMORY);
            kelp_store_err(handle, 0);
          };
          call<void>(of(*type, *field, "set"), handle, space, object.get(), index, source,
                     &store.err);
          expect_refused(store.err);
          store.err = 0;
          if (!holds_addresses) {
            call<void>(of(*type, *field, "set_value"), handle, space, object.get(), index, value,
                       &store.err);
            expect_refused(store.err);
            store.err = 0;
            call<std::uint32_t>(of(*type, *field, "set_cr"), handle, object.get(), index, value);
          } else {
            call<std::uint32_t>(of(*type, *field, "set_cr"), handle, object.get(), index, source,
                                std::uint32_t{1});
          }
          expect_refused(handle->cr_err);
          handle->cr_err = 0;
          EXPECT_EQ(log.count("obj_alloc"), 0u);
          EXPECT_EQ(log.count("write_notify"), 0u);
          EXPECT_TRUE(traced.empty());
          EXPECT_EQ(std::vector<std::uint8_t>(object.bytes(), object.bytes() + size), before);
        }
      }
    }
  }
  EXPECT_EQ(arrays, 8u * 2 * 2);
}

}  // namespace whole_schema
