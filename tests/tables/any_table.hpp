// A table of any kind, its names composed and its types erased: records with numbered keys, for the
// loops that hold all 21 tables to the same rules.
#pragma once

#include <map>

#include "tables/table_fixture.hpp"
#include "whole_schema/erased.hpp"

namespace harness {

class AnyTable : public Store {
 public:
  using Schema = harbor::model::Table;
  using Field = harbor::model::Field;
  using Kind = harbor::model::Kind;
  using Structure = harbor::model::Structure;

  explicit AnyTable(const Schema &schema, StoreOptions options = {})
      : Store(options),
        schema(schema),
        name("tbl_" + std::string(schema.name)),
        table(call<kelp_table *>("table_open", "rows", std::uint32_t{0}, &err)) {
    EXPECT_NE(table, nullptr) << name;
  }
  ~AnyTable() {
    std::uint32_t word = 0;
    handle()->collector_context = 1;
    while (e_avl_node *node = e_avl_get_first(&table->avl_root)) {
      auto *record = reinterpret_cast<kelp_record *>(reinterpret_cast<char *>(node) -
                                                     offsetof(kelp_record, avl_node));
      record->ref_word = 1;
      call<void>("destroy_record", record, &word);
      EXPECT_EQ(word, 0u);
    }
    call<void>("table_free", table, &word);
    EXPECT_EQ(word, 0u);
  }

  // A function of the table by the rest of its name, with the handle and a space first.
  template <typename Result, typename... Arguments>
  Result call(const std::string &rest, Arguments... arguments) const {
    return whole_schema::call<Result>(name + "_" + rest, handle(), space, arguments...);
  }
  // The same of its key's forms.
  template <typename Result, typename... Arguments>
  Result call_key(const std::string &rest, Arguments... arguments) const {
    return whole_schema::call<Result>(key_prefix(schema) + rest, handle(), space, arguments...);
  }

  // The structures of a record's objects in their order.
  std::vector<const Structure *> structures() const {
    if (schema.key_structure != nullptr) return {schema.key_structure, schema.record};
    return {schema.record};
  }

  // A record in no table, with the key that the number stands for.
  kelp_record *record(std::uint32_t key, std::uint32_t src = KELP_SRC_DEFAULT) {
    std::uint32_t word = 0;
    auto *made = call<kelp_record *>("create_record_w_src", src, &word);
    for (const Structure *structure : structures()) {
      const std::string type(structure->name);
      void *object = whole_schema::create(handle(), type);
      if (structure == structures()[0]) set_key(object, key);
      call<void>(type + "_set_field", made, object);
    }
    EXPECT_EQ(word, 0u);
    return made;
  }
  kelp_record *inserted(std::uint32_t key, std::uint32_t src = KELP_SRC_DEFAULT) {
    kelp_record *made = record(key, src);
    std::uint32_t word = 0;
    call<void>("insert", table, made, &word);
    EXPECT_EQ(word, 0u) << name;
    return made;
  }
  void destroy(kelp_record *record) {
    std::uint32_t word = 0;
    call<void>("destroy_record", record, &word);
    EXPECT_EQ(word, 0u);
  }

  const Schema &schema;
  const std::string name;
  kelp_table *const table;

 private:
  void set_key(void *object, std::uint32_t number) {
    const Structure &type = *structures()[0];
    const Field &field = schema.key_structure != nullptr ? *type.fields[0] : *schema.key;
    auto *place = static_cast<std::uint8_t *>(object) + harbor::model::offset(type, field);
    std::uint32_t word = 0;
    switch (field.kind) {
      case Kind::text: {
        const std::string text = std::to_string(number);
        kelp_vstring_assign(handle(), 0, reinterpret_cast<kelp_vstring *>(place), text.data(),
                            static_cast<std::uint32_t>(text.size()), &word);
        break;
      }
      case Kind::address: {
        const ip_address source = ip_address_make_ipv4(number);
        ip_address_set(handle(), 0, reinterpret_cast<ip_address *>(place), &source, &word);
        break;
      }
      case Kind::enumeration:
        std::memcpy(place + harbor::model::enumeration_value_offset, &number, sizeof number);
        break;
      default:
        std::memcpy(place, &number, harbor::model::width(field.kind));
        break;
    }
    EXPECT_EQ(word, 0u);
  }
};

template <typename Act>
void for_each_table(Act act) {
  for (const auto *schema : harbor::model::all_tables) {
    SCOPED_TRACE(schema->name);
    AnyTable rows(*schema);
    act(rows);
  }
}

}  // namespace harness
