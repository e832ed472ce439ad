// Keys of every table, at values whose texts are alike: no two of them have one token, and a row
// made of a row's image has the token of that row.
#include <gtest/gtest.h>
#include <ospf_harbor_check.h>

#include <set>

#include "model/lists.hpp"
#include "ospf_replication/subjects.hpp"
#include "ospf_replication/tree_rows.hpp"
#include "ospf_tables/rows.hpp"
#include "support/clear_references.hpp"
#include "support/objects.hpp"

namespace {

using namespace ospf_tables;
using namespace ospf_replication;
using harbor::model::Field;
using harbor::model::Kind;
using harbor::model::Structure;

constexpr std::uint32_t numbers[] = {0, 1, 2, 10, 0xffff, 0xffffffff};
constexpr std::uint32_t families[] = {0, 1, 2, 3, 200, 0x80000000};
const std::string texts[] = {"",
                             "a",
                             std::string("a\0", 2),
                             std::string("a\0b", 3),
                             std::string("a\0c", 3),
                             std::string(1, '\0'),
                             "_",
                             "_-61",
                             "a.b",
                             "a,b",
                             "a b",
                             "\xff\xfe",
                             "*>",
                             std::string(300, 'x'),
                             std::string(299, 'x') + "y",
                             std::string(300, '\0'),
                             std::string(299, '\0') + "y"};
constexpr const char *addresses[] = {
    "",           "0.0.0.0",         "::",      "10.0.0.1",  "10.0.0.1/32",
    "10.0.0.1/0", "::ffff:10.0.0.1", "fe80::1", "fe80::1%3", "fe80::1%3/64",
    "fe80::1/64", "fe80::1/128"};

std::size_t values_of(const Field &field) {
  switch (field.kind) {
    case Kind::text:
      return std::size(texts);
    case Kind::address:
      return std::size(addresses);
    case Kind::enumeration:
      return std::size(families);
    default:
      return std::size(numbers);
  }
}

void set(Session &session, void *holder, const Structure &type, const Field &field,
         std::size_t number) {
  auto *place = static_cast<std::uint8_t *>(holder) + harbor::model::offset(type, field);
  switch (field.kind) {
    case Kind::text:
      kelp_vstring_assign(session.handle(), space, reinterpret_cast<kelp_vstring *>(place),
                          texts[number].data(), texts[number].size(), session.err());
      return;
    case Kind::address:
      ip_address_parse(addresses[number], reinterpret_cast<ip_address *>(place));
      return;
    case Kind::enumeration:
      std::memcpy(place + harbor::model::enumeration_value_offset, &families[number], 4);
      return;
    case Kind::u16: {
      const auto narrow = static_cast<std::uint16_t>(numbers[number]);
      std::memcpy(place, &narrow, sizeof narrow);
      return;
    }
    default:
      ASSERT_EQ(field.kind, Kind::u32) << field.name;
      std::memcpy(place, &numbers[number], 4);
  }
}

// All rows of one table, with each combination of its key's values that is another key.
template <typename Ops>
void try_table() {
  SCOPED_TRACE(Ops::name);
  const harbor::model::Table *table = nullptr;
  for (const harbor::model::Table *each : harbor::model::all_tables) {
    if ("tbl_" + std::string(each->name) == Ops::name) table = each;
  }
  ASSERT_NE(table, nullptr);
  const Structure &type = has_key_object<Ops> ? *table->key_structure : *table->record;
  std::vector<const Field *> fields{table->key};
  if (has_key_object<Ops>) fields.assign(type.fields.begin(), type.fields.end());
  std::size_t combinations = 1;
  for (const Field *field : fields) combinations *= values_of(*field);

  Session session;
  const auto *rule = tree_exchange::rule_named(Ops::name);
  NewTable<Ops> rows(session);
  std::set<std::string> tokens;
  std::size_t count = 0;
  for (std::size_t combination = 0; combination < combinations; ++combination) {
    NewRecord<Ops> row(session);
    NewObject<Ops> object(session);
    void *holder = row.put(object);
    encodings::Filler(session.handle(), 1).fill(holder, *table->record);
    encodings::clear_references(holder, *table->record);
    if constexpr (has_key_object<Ops>) {
      NewKey<Ops> key(session);
      holder = static_cast<typename Ops::Key *>(key);
      row.put_key(key);
    }
    std::size_t left = combination;
    for (const Field *field : fields) {
      set(session, holder, type, *field, left % values_of(*field));
      left /= values_of(*field);
    }
    session.check(Ops::name);
    void *record = row.get();
    if (!row.insert_unless_taken(rows)) continue;  // the same key in another form
    ++count;
    const std::string token = token_of(session, *rule, record);
    tokens.insert(token);
    EXPECT_EQ(steps_of("a." + token).size(), 1u) << token;
    const Bytes image = rule->image(session, record);
    EXPECT_EQ(ospf_harbor_check_image(OSPF_HARBOR_CHECK_RECORD, Ops::name, image.data(),
                                      image.size(), nullptr),
              OSPF_HARBOR_FAULT_NONE)
        << token;
    void *again = rule->from_image(session, image);
    EXPECT_EQ(token_of(session, *rule, again), token);
    rule->end_record(session, again);
  }
  EXPECT_EQ(tokens.size(), count);
  EXPECT_GT(count, 4u);
}

template <typename... Ops>
void try_tables(std::tuple<Ops...> *) {
  (try_table<Ops>(), ...);
}

TEST(ReplicationKeys, NoTwoOfATableHaveOneToken) { try_tables(static_cast<AllTables *>(nullptr)); }

// What people read stays readable where that tells enough.
TEST(ReplicationKeys, AreTextWhereThatTellsThem) {
  EXPECT_EQ(token_of("ipv4,10.0.0.1"), "ipv4_2C10_2E0_2E0_2E1");
  const Bytes image = {0x61, 0x00, 0xfe};
  EXPECT_EQ(token_of(ByteView(image)), "_-6100FE");
  EXPECT_EQ(token_of(ByteView(Bytes(100))).substr(0, 2), "__");
}

}  // namespace
