// Filled objects through each form, one field at a time where fields are easily mistaken for one
// another: the flags of an algorithm, the versions of an LSA, and every line of text by its name.
#include <kelp/primitives.h>

#include <algorithm>

#include "encodings/xml_forms.hpp"
#include "model/lists.hpp"
#include "ospf_harbor_oper.h"
#include "whole_schema/erased.hpp"

namespace {

using encodings::Bytes;
using encodings::Document;
using encodings::Filler;
using encodings::Object;
using harness::Store;
using whole_schema::call;
namespace types = harbor::model::types;

constexpr std::uint32_t space = 0;
const std::uint32_t trackings[] = {KELP_TRACKING_ABSENT, KELP_TRACKING_OFF, KELP_TRACKING_ON};

// --- the flags of an algorithm, each alone ------------------------------------------------------

std::vector<std::uint32_t> flags_of(Store &store, const ospf_crypto_algorithm *algorithm) {
  std::vector<std::uint32_t> flags;
  for (const auto *field : types::ospf_crypto_algorithm.fields) {
    flags.push_back(static_cast<std::uint32_t>(whole_schema::get_value(
        store, types::ospf_crypto_algorithm, *field, algorithm, &store.err)));
  }
  return flags;
}

TEST(CryptoAlgorithm, EachFlagAloneComesThroughImageAndXmlAndText) {
  const auto &fields = types::ospf_crypto_algorithm.fields;
  for (std::size_t set = 0; set < fields.size(); ++set) {
    SCOPED_TRACE(fields[set]->name);
    Store store;
    Object<ospf_crypto_algorithm> source(store, types::ospf_crypto_algorithm);
    whole_schema::set_value(store, types::ospf_crypto_algorithm, *fields[set], source.get(), 1,
                            &store.err);
    std::vector<std::uint32_t> expected(fields.size(), 0);
    expected[set] = 1;
    EXPECT_EQ(flags_of(store, source), expected);

    Bytes image(1 << 10);
    const auto length = store(ospf_crypto_algorithm_marshal, image.data(), source, 1 << 10);
    Object<ospf_crypto_algorithm> read(store, types::ospf_crypto_algorithm);
    EXPECT_EQ(store(ospf_crypto_algorithm_unmarshal, image.data(), read,
                    static_cast<std::int32_t>(length), 0),
              length);
    EXPECT_EQ(flags_of(store, read), expected);

    const std::string text = encodings::xml_of(store, source, &store.err);
    const std::string name(fields[set]->name);
    EXPECT_NE(text.find("<" + name + ">true</" + name + ">"), std::string::npos) << text;
    Object<ospf_crypto_algorithm> parsed(store, types::ospf_crypto_algorithm);
    encodings::read(store, parsed, text, &store.err);
    EXPECT_EQ(flags_of(store, parsed), expected);
    EXPECT_EQ(store.err, 0u);
  }
}

TEST(CryptoAlgorithm, EachFlagAloneComesThroughTheChoice) {
  const auto &fields = types::ospf_crypto_algorithm.fields;
  for (std::size_t set = 0; set < fields.size(); ++set) {
    SCOPED_TRACE(fields[set]->name);
    Store store;
    Object<ospf_authentication> source(store, types::ospf_authentication);
    auto *algorithm = ospf_crypto_algorithm_create(store, space);
    whole_schema::set_value(store, types::ospf_crypto_algorithm, *fields[set], algorithm, 1,
                            &store.err);
    kelp_vstring *key = kelp_vstring_create(store, space);
    store(kelp_vstring_assign, key, "secret", 6);
    store(ospf_authentication_key_string_set, source, key);
    store(ospf_authentication_crypto_algorithm_val_set, source, algorithm);
    std::vector<std::uint32_t> expected(fields.size(), 0);
    expected[set] = 1;
    const auto expect_read = [&](Object<ospf_authentication> &read) {
      auto *held = store(ospf_authentication_crypto_algorithm_val_get, read);
      ASSERT_NE(held, nullptr);
      EXPECT_EQ(flags_of(store, held), expected);
      EXPECT_STREQ(kelp_vstring_text(store(ospf_authentication_key_string_get, read)), "secret");
    };
    Bytes image(1 << 10);
    const auto length = store(ospf_authentication_marshal, image.data(), source, 1 << 10);
    Object<ospf_authentication> from_image(store, types::ospf_authentication);
    store(ospf_authentication_unmarshal, image.data(), from_image,
          static_cast<std::int32_t>(length), 0);
    expect_read(from_image);
    Object<ospf_authentication> from_xml(store, types::ospf_authentication);
    encodings::read(store, from_xml, encodings::xml_of(store, source, &store.err), &store.err);
    expect_read(from_xml);
    EXPECT_EQ(store.err, 0u);
  }
}

// --- both parts of an LSA, whatever its version says --------------------------------------------

// Every object at its highest variant, at any depth, so that all fields are written.
void raise(void *object, const harbor::model::Structure &type) {
  encodings::header(object).variant = static_cast<std::int8_t>(type.variants - 1);
  for (const auto *field : type.fields) {
    if (field->kind != harbor::model::Kind::structure) continue;
    raise(static_cast<std::uint8_t *>(object) + harbor::model::offset(type, *field),
          *field->structure);
  }
}

TEST(LsaVersions, BothPartsComeThroughXmlWhateverTheVersionSays) {
  const auto &type = types::link_scope_lsa;
  for (const std::uint32_t version : {0u, 2u, 3u, 255u}) {
    for (std::uint32_t seed = 0; seed < 6; ++seed) {
      SCOPED_TRACE("version " + std::to_string(version) + ", seed " + std::to_string(seed));
      Store store;
      Object<link_scope_lsa> source(store, type);
      Filler(store, seed).fill(source.get(), type);
      raise(source.get(), type);
      encodings::clear_references(source.get(), type);
      encodings::field<std::uint32_t>(source.get(), type, "version") = version;
      const std::string text = encodings::xml_of(store, source, &store.err, 1 << 18);
      EXPECT_NE(text.find("<ospfv2_lsa_val>"), std::string::npos);
      EXPECT_NE(text.find("<ospfv3_lsa_val>"), std::string::npos);
      Object<link_scope_lsa> parsed(store, type);
      encodings::read(store, parsed, text, &store.err);
      EXPECT_EQ(store.err, 0u);
      EXPECT_EQ(encodings::xml_of(store, parsed, &store.err, 1 << 18), text);
      // Through the image and its text form alike.
      Bytes image(1 << 16);
      const auto length = store(link_scope_lsa_marshal, image.data(), source, 1 << 15);
      Object<link_scope_lsa> read(store, type);
      store(link_scope_lsa_unmarshal, image.data(), read, static_cast<std::int32_t>(length), 0);
      EXPECT_EQ(store.err, 0u);
      EXPECT_EQ(link_scope_lsa_compare(source, read), 0);
      EXPECT_EQ(encodings::xml_of(store, read, &store.err, 1 << 18), text);
    }
  }
}

// --- every line of text -------------------------------------------------------------------------

// The value of a field as its line shows it, by the primitive's own print.
std::string shown(Store &store, const harbor::model::Field &field, const void *place) {
  using harbor::model::Kind;
  const char *primitive = nullptr;
  switch (field.kind) {
    case Kind::u8:
      primitive = "u_int8";
      break;
    case Kind::u16:
      primitive = "u_int16";
      break;
    case Kind::u32:
    case Kind::counter:
      primitive = "u_int32";
      break;
    case Kind::real:
      primitive = "double";
      break;
    case Kind::boolean:
      primitive = "kelp_boolean";
      break;
    case Kind::address:
      primitive = "ip_address";
      break;
    case Kind::text:
      primitive = "kelp_vstring";
      break;
    default:
      return {};
  }
  std::string line(1 << 10, '\0');
  line.resize(call<std::uint32_t>(std::string(primitive) + "_print", store.handle(), space,
                                  line.data(), std::uint32_t{2}, field.name.data(), place,
                                  static_cast<std::uint32_t>(line.size()), &store.err));
  return line;
}

TEST(TextLines, EveryValueStandsOnALineUnderItsOwnName) {
  for (const auto *type : harbor::model::structures) {
    for (std::uint32_t seed = 0; seed < 3; ++seed) {
      Store store;
      Object<> object(store, *type);
      Filler(store, seed).fill(object, *type);
      encodings::header(object).variant = static_cast<std::int8_t>(type->variants - 1);
      encodings::clear_references(object, *type);
      std::string text(1 << 18, ' ');
      text.resize(call<std::uint32_t>(std::string(type->name) + "_print", store.handle(), space,
                                      text.data(), std::uint32_t{0}, "x", object.get(),
                                      static_cast<std::uint32_t>(text.size()), &store.err));
      EXPECT_EQ(store.err, 0u);
      std::size_t at = 0;
      for (const auto *field : type->fields) {
        const auto *place =
            static_cast<const std::uint8_t *>(object.get()) + harbor::model::offset(*type, *field);
        const std::string line = shown(store, *field, place);
        if (line.empty()) continue;
        const std::size_t found = text.find("\n" + line, at);
        EXPECT_NE(found, std::string::npos) << type->name << " lacks " << line;
        if (found != std::string::npos) at = found + line.size();
      }
    }
  }
}

// --- records in exactly the room that their length asks for -------------------------------------

// Attached data takes room that the length does not count.
void clear_ra_data(void *object, const harbor::model::Structure &type) {
  using harbor::model::Kind;
  encodings::header(object).obj_flags &= static_cast<std::uint8_t>(~OBJ_RA_DATA);
  for (const auto *field : type.fields) {
    auto *place = static_cast<std::uint8_t *>(object) + harbor::model::offset(type, *field);
    if (field->kind == Kind::structure) clear_ra_data(place, *field->structure);
    if (field->kind == Kind::arm && field->held == Kind::structure) {
      void *held = *reinterpret_cast<void **>(place);
      if (held != nullptr) clear_ra_data(held, *field->structure);
    }
  }
}

TEST(RecordLengths, AFilledRecordFitsInTheRoomThatItsLengthSays) {
  for (const std::uint32_t tracking : trackings) {
    for (const auto *table : harbor::model::all_tables) {
      const std::string name = "tbl_" + std::string(table->name);
      for (std::uint32_t seed = 0; seed < 8; ++seed) {
        SCOPED_TRACE(name + ", tracking " + std::to_string(tracking) + ", seed " +
                     std::to_string(seed));
        Store store({.tracking = tracking});
        kelp_handle *handle = store;
        auto *record = call<kelp_record *>(name + "_record_create_cr", handle, std::uint32_t{1});
        std::vector<const harbor::model::Structure *> structures;
        if (table->key_structure != nullptr) structures.push_back(table->key_structure);
        structures.push_back(table->record);
        Filler filler(handle, seed);
        for (std::size_t at = 0; at < structures.size(); ++at) {
          filler.fill(record->objects[at], *structures[at]);
          clear_ra_data(record->objects[at], *structures[at]);
        }
        const auto length = call<std::uint32_t>(name + "_table_record_len", handle, space, record);
        Bytes image(length + 4, 0xEE);
        const auto written =
            call<std::uint32_t>(name + "_table_record_marshal", handle, space, image.data(), record,
                                static_cast<std::int32_t>(length), &store.err);
        EXPECT_EQ(store.err, 0u);
        EXPECT_LE(written, length);
        EXPECT_EQ(Bytes(image.begin() + length + 1, image.end()), Bytes(3, 0xEE));
        void *read = nullptr;
        EXPECT_EQ(call<std::uint32_t>(name + "_table_record_unmarshal", handle, space, &read,
                                      image.data(), static_cast<std::int32_t>(written),
                                      std::uint32_t{0}, &store.err),
                  written);
        EXPECT_EQ(store.err, 0u);
        auto *copy = static_cast<kelp_record *>(read);
        ASSERT_NE(copy, nullptr);
        for (kelp_record *each : {record, copy}) {
          for (std::size_t at = 0; at < structures.size(); ++at) {
            encodings::clear_references(each->objects[at], *structures[at]);
          }
          call<void>(name + "_destroy_record", handle, space, each, &store.err);
        }
        EXPECT_EQ(store.err, 0u);
      }
    }
  }
}

}  // namespace
