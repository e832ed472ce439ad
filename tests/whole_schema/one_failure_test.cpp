// A failure is stored once, with the code that the error word then holds: no memory and no room, of
// every operation that meets them. And what is done twice does nothing the second time.
#include <kelp/primitives.h>
#include <kelp/table.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "encodings/xml_forms.hpp"
#include "model/lists.hpp"
#include "ospf_harbor_oper.h"
#include "support/objects.hpp"
#include "types/replaced_call.hpp"
#include "whole_schema/erased.hpp"

namespace whole_schema {

namespace {

constexpr std::uint32_t space = 0;

// The codes that the system's library stores while this lives. The runtime's own stores are not
// among them.
class StoredCodes {
 public:
  StoredCodes() : replaced_("kelp_store_err", note) { codes.clear(); }
  static inline std::vector<std::uint32_t> codes;

 private:
  static void note(kelp_handle *handle, std::uint32_t code) {
    codes.push_back(code);
    kelp_store_err(handle, code);
  }
  harness::ReplacedCall replaced_;
};

// Runs with the n-th allocation refused, for each that there is; each refusal is stored once.
template <typename Prepare>
void expect_no_memory_stored_once(std::uint32_t tracking, const std::string &what,
                                  std::int64_t allocations, Prepare prepare) {
  for (std::int64_t n = 0; n < allocations; ++n) {
    SCOPED_TRACE(what + ", allocation " + std::to_string(n));
    harness::Store store({.tracking = tracking});
    auto run = prepare(store);
    const StoredCodes stored;
    store.fail_allocation(n);
    EXPECT_EQ(run(), 12u);
    EXPECT_EQ(stored.codes, std::vector<std::uint32_t>{12});
    store.fail_allocation(-1);
  }
}

template <typename Act>
void for_each_array(Act act) {
  for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_ON}) {
    for (const Structure *type : harbor::model::structures) {
      for (const Field *field : type->fields) {
        if (field->kind == Kind::array) act(*type, *field, tracking);
      }
    }
  }
}

}  // namespace

TEST(OneFailure, NoMemoryForAnArrayIsStoredOnce) {
  for_each_array([](const Structure &type, const Field &field, std::uint32_t tracking) {
    const std::int64_t allocations = tracking == KELP_TRACKING_ON ? 2 : 1;
    const bool holds_addresses = field.held == Kind::address;
    expect_no_memory_stored_once(
        tracking, of(type, field, "set"), allocations, [&](harness::Store &store) {
          auto object = std::make_shared<Object>(store, type);
          return [=, &store, &type, &field] {
            std::uint32_t err = 0;
            std::uint32_t value = 1;
            ip_address address = ip_address_make_ipv4(1);
            void *source = holds_addresses ? static_cast<void *>(&address) : &value;
            call<void>(of(type, field, "set"), store.handle(), space, object->get(),
                       std::uint32_t{3}, source, &err);
            return err;
          };
        });
    if (holds_addresses) return;
    for (const char *form : {"set_value", "set_mem"}) {
      expect_no_memory_stored_once(
          tracking, of(type, field, form), allocations, [&](harness::Store &store) {
            auto object = std::make_shared<Object>(store, type);
            return [=, &store, &type, &field] {
              std::uint32_t err = 0;
              const std::uint32_t words[4] = {1, 2, 3, 4};
              if (std::string(form) == "set_mem") {
                call<void>(of(type, field, form), store.handle(), space, object->get(), words,
                           std::uint32_t{3}, &err);
              } else {
                call<void>(of(type, field, form), store.handle(), space, object->get(),
                           std::uint32_t{3}, words[0], &err);
              }
              return err;
            };
          });
    }
    // From an image, and from XML, whose temporary element comes first.
    expect_no_memory_stored_once(
        tracking, of(type, "unmarshal"), allocations, [&](harness::Store &store) {
          Object source(store, type);
          std::uint32_t err = 0;
          std::uint32_t value = 1;
          call<void>(of(type, field, "set"), store.handle(), space, source.get(), std::uint32_t{3},
                     &value, &err);
          auto image = std::make_shared<std::vector<std::uint8_t>>(1 << 14);
          const auto length =
              call<std::uint32_t>(of(type, "marshal"), store.handle(), space, image->data(),
                                  source.get(), static_cast<std::int32_t>(image->size()), &err);
          EXPECT_EQ(err, 0u);
          auto object = std::make_shared<Object>(store, type);
          return [=, &store, &type] {
            std::uint32_t code = 0;
            call<std::uint32_t>(of(type, "unmarshal"), store.handle(), space, image->data(),
                                object->get(), static_cast<std::int32_t>(length), std::uint32_t{0},
                                &code);
            return code;
          };
        });
  });
}

TEST(OneFailure, NoMemoryForAnArmIsStoredOnce) {
  const Structure &type = harbor::model::types::ospf_authentication;
  for (std::uint32_t selector = 0; selector < 4; ++selector) {
    const std::int64_t arms = selector == 2 ? 2 : 1;
    for (std::int64_t n = 0; n < arms; ++n) {
      SCOPED_TRACE("selector " + std::to_string(selector) + ", arm " + std::to_string(n));
      harness::Store store;
      encodings::Object<ospf_authentication> source(store, type);
      store(ospf_authentication_auth_type_selection_set_value, source, selector);
      const std::string text = encodings::xml_of(store, source, &store.err);
      EXPECT_EQ(store.err, 0u);
      const encodings::Document document(text);
      encodings::Object<ospf_authentication> object(store, type);
      const StoredCodes stored;
      store.fail_allocation(n);
      std::uint32_t err = 0;
      object.call<encodings::FromXml>("from_xml")(store, space, "//x", document, object, &err,
                                                  nullptr, 0);
      EXPECT_EQ(err, KELP_ERR_NO_MEMORY);
      EXPECT_EQ(std::count(stored.codes.begin(), stored.codes.end(), 12u), 1);
      EXPECT_EQ(stored.codes.back(), 12u);
      store.fail_allocation(-1);
    }
  }
}

// A fresh interface selects an arm that is not there.
void select_missing_arm(kelp_record *interface) {
  using namespace harbor::model;
  auto *place =
      static_cast<std::uint8_t *>(interface->objects[0]) +
      offset(types::ospf_interface, fields::ospf_interface::authentication_val) +
      offset(types::ospf_authentication, fields::ospf_authentication::auth_type_selection);
  place[enumeration_value_offset] = 77;
}

// Reads with the n-th allocation refused.
void expect_refused_reading(harness::Store &store, std::int64_t n,
                            const std::function<void()> &read) {
  SCOPED_TRACE("allocation " + std::to_string(n));
  const StoredCodes stored;
  store.fail_allocation(n);
  read();
  EXPECT_EQ(store.err, KELP_ERR_NO_MEMORY);
  EXPECT_EQ(stored.codes, std::vector<std::uint32_t>{12});
  store.err = 0;
}

TEST(OneFailure, NoMemoryForARecordsPartsIsStoredOnce) {
  for (const auto *table : harbor::model::all_tables) {
    const std::string name = "tbl_" + std::string(table->name);
    SCOPED_TRACE(name);
    harness::Store store({.may_leave = 64});
    kelp_handle *handle = store;
    const std::int64_t objects = table->key_structure != nullptr ? 2 : 1;
    auto *record = call<kelp_record *>(name + "_record_create_cr", handle, std::uint32_t{1});
    if (table->record == &harbor::model::types::ospf_interface) select_missing_arm(record);
    std::vector<std::uint8_t> image(1 << 14);
    const auto length =
        call<std::uint32_t>(name + "_table_record_marshal", handle, space, image.data(), record,
                            static_cast<std::int32_t>(image.size()), &store.err);
    EXPECT_EQ(store.err, 0u);
    for (std::int64_t n = 0; n < 1 + objects; ++n) {
      void *read = nullptr;
      expect_refused_reading(store, n, [&] {
        call<std::uint32_t>(name + "_table_record_unmarshal", handle, space, &read, image.data(),
                            static_cast<std::int32_t>(length), std::uint32_t{0}, &store.err);
      });
      if (read != nullptr) {
        call<void>(name + "_destroy_record", handle, space, read, &store.err);
      }
      EXPECT_EQ(store.err, 0u);
    }
    expect_refused_reading(store, 0, [&] {
      void *key = nullptr;
      call<std::uint32_t>(name + "_table_pkey_unmarshal", handle, space, &key, image.data(),
                          std::int32_t{64}, &store.err);
    });
    const encodings::Document document("<x/>");
    for (std::int64_t n = 0; n < 2; ++n) {
      expect_refused_reading(store, n, [&] {
        EXPECT_EQ(call<void *>(name + "_table_record_from_xml", handle, space,
                               static_cast<kelp_xml_document *>(document), &store.err,
                               static_cast<char *>(nullptr), std::int32_t{0}),
                  nullptr);
      });
    }
    call<void>(name + "_record_destroy_cr", handle, record);
  }
}

TEST(OneFailure, NoMemoryForATableOrItsIdsIsStoredOnce) {
  for (const auto *table : harbor::model::all_tables) {
    const std::string name = "tbl_" + std::string(table->name);
    for (std::int64_t n = 0; n < 2; ++n) {
      SCOPED_TRACE(name + ", allocation " + std::to_string(n));
      harness::Store store({.may_leave = 1});
      const StoredCodes stored;
      store.fail_allocation(n);
      EXPECT_EQ(call<void *>(name + "_table_open_auto_id", store.handle(), space, std::uint32_t{0},
                             &store.err),
                nullptr);
      EXPECT_EQ(store.err, KELP_ERR_NO_MEMORY);
      EXPECT_EQ(stored.codes, std::vector<std::uint32_t>{12});
      store.err = 0;
    }
  }
}

TEST(OneFailure, NoLengthIsStoredOnceAtEveryLevelThatMeetsIt) {
  harness::Store store;
  const auto expect = [&](const std::string &type) {
    Object object(store, type);
    std::uint8_t buffer[64] = {};
    for (const char *form : {"_marshal", "_unmarshal"}) {
      const StoredCodes stored;
      if (std::string(form) == "_marshal") {
        call<std::uint32_t>(type + form, store.handle(), space, buffer, object.get(),
                            std::int32_t{0}, &store.err);
      } else {
        call<std::uint32_t>(type + form, store.handle(), space, buffer, object.get(),
                            std::int32_t{0}, std::uint32_t{0}, &store.err);
      }
      EXPECT_EQ(store.err, KELP_ERR_NO_MEMORY) << type << form;
      EXPECT_EQ(stored.codes, std::vector<std::uint32_t>{12}) << type << form;
      store.err = 0;
    }
  };
  for (const auto *type : harbor::model::structures) expect(std::string(type->name));
  for (const auto *type : harbor::model::all_enumerations) expect(std::string(type->name));
  for (const auto *type : harbor::model::all_flag_sets) expect(std::string(type->name));
}

TEST(OneFailure, NoRoomIsStoredOnce) {
  harness::Store store;
  kelp_handle *handle = store;
  std::vector<std::uint8_t> buffer(1 << 14);
  // A flag set without room for its byte, and a byte array longer than what is left.
  for (const auto *type : harbor::model::all_flag_sets) {
    Object object(store, std::string(type->name));
    const StoredCodes stored;
    call<std::uint32_t>(std::string(type->name) + "_marshal", handle, space, buffer.data(),
                        object.get(), std::int32_t{5}, &store.err);
    EXPECT_EQ(store.err, KELP_ERR_NO_ROOM) << type->name;
    EXPECT_EQ(stored.codes, std::vector<std::uint32_t>{90}) << type->name;
    store.err = 0;
  }
  {
    const Structure &type = harbor::model::types::ospfv2_unknown_sub_tlv;
    Object object(store, type);
    const std::vector<std::uint8_t> octets(40, 1);
    call<void>("ospfv2_unknown_sub_tlv_value_set_mem", handle, space, object.get(), octets.data(),
               std::uint32_t{40}, &store.err);
    const StoredCodes stored;
    call<std::uint32_t>("ospfv2_unknown_sub_tlv_marshal", handle, space, buffer.data(),
                        object.get(), std::int32_t{30}, &store.err);
    EXPECT_EQ(store.err, KELP_ERR_NO_ROOM);
    EXPECT_EQ(stored.codes, std::vector<std::uint32_t>{90});
    store.err = 0;
  }
  // Records and their keys.
  for (const auto *table : harbor::model::all_tables) {
    const std::string name = "tbl_" + std::string(table->name);
    auto *record = call<kelp_record *>(name + "_record_create_cr", handle, std::uint32_t{1});
    for (const char *form :
         {"_table_record_marshal", "_table_record_print", "_table_pkey_marshal"}) {
      for (const std::int32_t length : {1, 26}) {
        if (std::string(form) == "_table_pkey_marshal" && length != 1) continue;
        const StoredCodes stored;
        call<std::uint32_t>(name + form, handle, space, buffer.data(), record, length, &store.err);
        EXPECT_EQ(store.err, KELP_ERR_NO_ROOM) << name << form;
        EXPECT_EQ(stored.codes, std::vector<std::uint32_t>{90}) << name << form;
        store.err = 0;
      }
    }
    const StoredCodes stored;
    call<std::uint32_t>(name + "_table_record_marshal", handle, space, buffer.data(), record,
                        std::int32_t{42}, &store.err);
    EXPECT_EQ(store.err, KELP_ERR_NO_ROOM) << name;
    EXPECT_EQ(stored.codes, std::vector<std::uint32_t>{90}) << name;
    store.err = 0;
    call<void>(name + "_record_destroy_cr", handle, record);
  }
  EXPECT_EQ(handle->cr_err, 0u);
}

TEST(DoneTwice, RemovingElementsCallsNothingTheSecondTime) {
  for_each_array([](const Structure &type, const Field &field, std::uint32_t tracking) {
    SCOPED_TRACE(of(type, field, ""));
    harness::Store store({.tracking = tracking});
    kelp_handle *handle = store;
    Object object(store, type);
    std::uint32_t value = 1;
    ip_address address = ip_address_make_ipv4(1);
    void *source = field.held == Kind::address ? static_cast<void *>(&address) : &value;
    call<void>(of(type, field, "set"), handle, space, object.get(), std::uint32_t{2}, source,
               &store.err);
    call<void>(of(type, field, "remove_elements"), handle, space, object.get());
    const std::vector<std::uint8_t> before(object.bytes(),
                                           object.bytes() + harbor::model::object_size(type));
    harness::CallLog log(handle);
    call<void>(of(type, field, "remove_elements"), handle, space, object.get());
    call<void>(of(type, field, "remove_elements"), handle, space, static_cast<void *>(nullptr));
    EXPECT_TRUE(log.calls().empty()) << log.calls().front();
    EXPECT_EQ(std::vector<std::uint8_t>(object.bytes(),
                                        object.bytes() + harbor::model::object_size(type)),
              before);
  });
}

}  // namespace whole_schema
