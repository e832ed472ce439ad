// A handle's last error in words, over the whole schema: the text of each failure that can be
// brought about names the type and field, or the table, that it is about, and says what was found.
#include <kelp/primitives.h>
#include <kelp/table.h>

#include <cstring>

#include "encodings/xml_forms.hpp"
#include "model/lists.hpp"
#include "ospf_harbor_oper.h"
#include "support/objects.hpp"
#include "tables/any_table.hpp"
#include "whole_schema/erased.hpp"

namespace whole_schema {

namespace {

constexpr std::uint32_t space = 0;

std::string words_of(kelp_handle *handle, std::uint32_t code) {
  kelp_error error{};
  EXPECT_EQ(kelp_handle_last_error(handle, &error), static_cast<std::int32_t>(code));
  EXPECT_EQ(error.code, static_cast<std::int32_t>(code));
  return error.text;
}

// code: what the error word holds, put back to 0 here.
void expect_words(kelp_handle *handle, std::uint32_t &code, const std::string &subject) {
  EXPECT_NE(code, 0u) << subject;
  if (code == 0) return;
  const std::string words = words_of(handle, code);
  EXPECT_TRUE(words.starts_with(subject + ": ")) << subject << " against " << words;
  const char *kind = code == KELP_ERR_NO_MEMORY ? "memory" : "found ";
  EXPECT_TRUE(words.find(kind) != words.npos || words.find("found ") != words.npos) << words;
  code = 0;
}

std::string subject(const Structure &type, const Field &field) {
  return std::string(type.name) + "." + std::string(field.name);
}

// A text that begins with any type of the schema or one of its fields.
void expect_words_of_any(kelp_handle *handle, std::uint32_t &code, const std::string &what) {
  EXPECT_NE(code, 0u) << what;
  if (code == 0) return;
  const std::string words = words_of(handle, code);
  const std::string name = words.substr(0, words.find_first_of(".:"));
  bool known = false;
  for (const Structure *type : harbor::model::structures) known |= type->name == name;
  for (const auto *type : harbor::model::all_enumerations) known |= type->name == name;
  for (const auto *type : harbor::model::all_flag_sets) known |= type->name == name;
  EXPECT_TRUE(known) << what << ": " << words;
  EXPECT_NE(words.find("found "), words.npos) << what << ": " << words;
  code = 0;
}

template <typename Act>
void for_each_field(Act act) {
  for (const Structure *type : harbor::model::structures) {
    for (const Field *field : type->fields) act(*type, *field);
  }
}

const char *getter_of(const Field &field) {
  switch (field.kind) {
    case Kind::arm:
    case Kind::counter:
      return nullptr;
    case Kind::reference:
      return "get_by_ref";
    default:
      return "get";
  }
}

// The key of a record whose first key field was set to the number.
std::string key_in_words(const harbor::model::Table &table, std::uint32_t number) {
  std::vector<const Field *> fields{table.key};
  if (table.key_structure != nullptr) {
    fields.assign(table.key_structure->fields.begin(), table.key_structure->fields.end());
  }
  std::string words;
  for (const Field *field : fields) {
    const std::uint32_t value = field == fields.front() ? number : 0;
    std::string text = std::to_string(value);
    if (field->kind == Kind::text) text = value == 0 ? "''" : "'" + text + "'";
    if (field->kind == Kind::address) text = value == 0 ? "unset" : "0.0.0." + text;
    if (field->kind == Kind::enumeration) {
      for (const auto &member : field->enumeration->members) {
        if (member.value == value) text = member.name;
      }
    }
    words += (words.empty() ? "" : ", ") + std::string(field->name) + " " + text;
  }
  return words;
}

}  // namespace

TEST(ErrorWords, NameTheFieldThatAVariantDoesNotHold) {
  harness::Store store;
  std::size_t refused = 0;
  for_each_field([&](const Structure &type, const Field &field) {
    if (field.since == 0 || getter_of(field) == nullptr) return;
    Object object(store, type);
    static_cast<kelp_object_header *>(object.get())->variant = 0;
    call<void *>(of(type, field, getter_of(field)), store.handle(), space, object.get(),
                 field.kind == Kind::array ? reinterpret_cast<void *>(0) : &store.err, &store.err);
    const std::string expected = "found an object of variant 0, expected variant " +
                                 std::to_string(field.since) + " or a higher one";
    EXPECT_NE(words_of(store, KELP_ERR_EPOCH).find(expected), std::string::npos);
    expect_words(store, store.err, subject(type, field));
    ++refused;
  });
  EXPECT_GT(refused, 10u);
}

TEST(ErrorWords, NameTheFieldOfANullObject) {
  harness::Store store;
  for_each_field([&](const Structure &type, const Field &field) {
    if (!has_value(field) || field.kind == Kind::enumeration || field.kind == Kind::flags) return;
    set_value(store, type, field, nullptr, some_value(field), &store.err);
    expect_words(store, store.err, subject(type, field));
  });
}

TEST(ErrorWords, NameTheArrayWhoseElementIsNotThere) {
  harness::Store store;
  for_each_field([&](const Structure &type, const Field &field) {
    if (field.kind != Kind::array) return;
    Object object(store, type);
    const std::string name = subject(type, field);
    call<void *>(of(type, field, "get"), store.handle(), space, object.get(), std::uint32_t{7},
                 &store.err);
    EXPECT_NE(words_of(store, store.err).find("found the index 7, expected one below 0"),
              std::string::npos);
    expect_words(store, store.err, name);
    ip_address address = ip_address_make_ipv4(1);
    call<void>(of(type, field, "set"), store.handle(), space, object.get(), UINT32_MAX, &address,
               &store.err);
    expect_words(store, store.err, name);
    store.fail_allocation(0);
    call<void>(of(type, field, "set"), store.handle(), space, object.get(), std::uint32_t{3},
               &address, &store.err);
    store.fail_allocation(-1);
    expect_words(store, store.err, name);
  });
}

TEST(ErrorWords, NameTheFieldWhoseStateIsNotTracked) {
  harness::Store store;
  kelp_handle *on = store.another_handle({.tracking = KELP_TRACKING_ON});
  kelp_handle *off = store.another_handle({.tracking = KELP_TRACKING_OFF});
  for_each_field([&](const Structure &type, const Field &field) {
    if (!harbor::model::has_state(field)) return;
    Object object(store, type);
    for (kelp_handle *handle : {on, off}) {
      call<std::uint32_t>(of(type, field, "state_flag_get"), handle, space, object.get(),
                          field.kind == Kind::array ? nullptr : &store.err, &store.err);
      if (store.err == 0) {
        call<std::uint32_t>(of(type, field, "state_flag_get_all"), handle, space, object.get(),
                            &store.err);
      }
      expect_words(handle, store.err, subject(type, field));
    }
  });
}

TEST(ErrorWords, NameTheTypeOfAValueThatItsVariantDoesNotHold) {
  harness::Store store;
  for (const auto *type : harbor::model::all_enumerations) {
    const std::string name(type->name);
    Object object(store, name);
    call<void>(name + "_set_value", store.handle(), space, object.get(), std::uint32_t{1000},
               &store.err);
    EXPECT_NE(words_of(store, store.err).find("found the value 1000"), std::string::npos);
    expect_words(store, store.err, name);
    call<std::uint32_t>(name + "_get_value", store.handle(), space, nullptr, &store.err);
    expect_words(store, store.err, name);
  }
  for (const auto *type : harbor::model::all_flag_sets) {
    const std::string name(type->name);
    Object object(store, name);
    call<std::uint32_t>(name + "_get_value", store.handle(), space, object.get(), std::uint32_t{31},
                        &store.err);
    EXPECT_NE(words_of(store, store.err).find("found the bit 31"), std::string::npos);
    expect_words(store, store.err, name);
  }
  for (const Structure *type : harbor::model::structures) {
    call<std::uint32_t>(of(*type, "get_oid_count"), store.handle(), space, nullptr, &store.err);
    expect_words(store, store.err, std::string(type->name));
  }
}

// Every length of buffer that is too short for the image.
TEST(ErrorWords, NameWhatAnImageHadNoRoomFor) {
  harness::Store store;
  for (const Structure *type : harbor::model::structures) {
    Object object(store, *type);
    std::vector<std::uint8_t> image(1 << 14);
    const auto marshal = [&](std::int32_t length) {
      return static_cast<std::int32_t>(call<std::uint32_t>(of(*type, "marshal"), store.handle(),
                                                           space, image.data(), object.get(),
                                                           length, &store.err));
    };
    const std::int32_t whole = marshal(1 << 14);
    if (store.err != 0) {
      expect_words_of_any(store, store.err, std::string(type->name));
      continue;
    }
    for (std::int32_t length = 0; length < whole; ++length) {
      marshal(length);
      expect_words_of_any(store, store.err, std::string(type->name) + " " + std::to_string(length));
      if (HasFailure()) return;
    }
    call<std::uint32_t>(of(*type, "unmarshal"), store.handle(), space, image.data(), nullptr, whole,
                        std::uint32_t{0}, &store.err);
    expect_words(store, store.err, std::string(type->name));
    const encodings::Document document("<y/>");
    call<void>(of(*type, "from_xml"), store.handle(), space, "//x",
               static_cast<kelp_xml_document *>(document), object.get(), &store.err, nullptr,
               std::int32_t{0});
    expect_words(store, store.err, "//x");
  }
}

TEST(ErrorWords, SayWhichArmOfAnInterfaceIsNotThere) {
  harness::Store store;
  Object object(store, "ospf_interface");
  std::uint8_t image[4096];
  store(ospf_interface_marshal, image, static_cast<ospf_interface *>(object.get()), sizeof image);
  EXPECT_EQ(store.err, static_cast<std::uint32_t>(KELP_ERR_NOT_FOUND));
  EXPECT_TRUE(words_of(store, KELP_ERR_NOT_FOUND)
                  .starts_with("ospf_authentication.sa: marshal: found no object in this arm, "
                               "which the choice selects, expected one set before the image is "
                               "written"))
      << words_of(store, KELP_ERR_NOT_FOUND);
}

TEST(ErrorWords, NameTheTable) {
  for (const auto *schema : harbor::model::all_tables) {
    harness::AnyTable table(*schema);
    const std::string get_cr =
        schema->key_structure != nullptr
            ? table.name + "_" + std::string(schema->key_structure->name) + "_get_cr"
            : harness::key_prefix(*schema) + "get_cr";
    std::uint32_t &err = table.err;
    kelp_record *there = table.inserted(1);
    kelp_record *same = table.record(1);
    table.call<void>("insert", table.table, same, &err);
    EXPECT_NE(words_of(table, KELP_ERR_EXISTS).find("in the table 'rows"), std::string::npos);
    EXPECT_NE(words_of(table, KELP_ERR_EXISTS).find(" same key (" + key_in_words(*schema, 1) + ")"),
              std::string::npos)
        << words_of(table, KELP_ERR_EXISTS);
    expect_words(table, err, table.name);
    table.call<void>("insert", table.table, nullptr, &err);
    expect_words(table, err, table.name);
    table.call<void>("delete", table.table, same, &err);
    expect_words(table, err, table.name);
    for (const char *function : {"destroy_record", "record_add_ref"}) {
      table.call<std::uint32_t>(function, nullptr, &err);
      expect_words(table, err, table.name);
    }
    table.call<void>("request_record_destroy", table.table, there, &err);
    expect_words(table, err, table.name);
    for (const std::int32_t length : {0, 26, 27, 42}) {
      std::uint8_t image[64];
      table.call<std::uint32_t>("table_record_marshal", image, there, length, &err);
      expect_words(table, err, table.name);
    }
    table.call<void *>("table_open", std::string(300, 'x').c_str(), std::uint32_t{0}, &err);
    expect_words(table, err, table.name);
    whole_schema::call<void *>(get_cr, table.handle(), table.table, std::uint32_t{9}, nullptr,
                               std::uint32_t{0}, std::uint32_t{0});
    err = KELP_ERR_INVALID;
    expect_words(table, err, table.name);
    table.destroy(same);
  }
}

// What was stored before is not told of the next failure.
TEST(ErrorWords, AreForgottenWithTheirFailure) {
  harness::Store store;
  Object object(store, "ospf_area");
  store(ospf_area_area_id_set_value, nullptr, 1);
  EXPECT_TRUE(words_of(store, store.err).starts_with("ospf_area.area_id: "));
  kelp_store_err(store, KELP_ERR_PERMISSION);
  EXPECT_EQ(words_of(store, KELP_ERR_PERMISSION).find("ospf_area"), std::string::npos);
  kelp_describe_err(store, "a", "b");
  kelp_describe_err(store, "c", "d");
  EXPECT_TRUE(words_of(store, KELP_ERR_PERMISSION).starts_with("a: b: "));
  kelp_clear_last_error(store);
  kelp_error error{};
  EXPECT_EQ(kelp_handle_last_error(store, &error), 0);
  EXPECT_STREQ(error.text, "");
  kelp_describe_err(nullptr, "a", "b");
  store.err = 0;
}

}  // namespace whole_schema
