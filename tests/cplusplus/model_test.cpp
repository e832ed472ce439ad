// The C++ headers over the whole schema: every type, field, enumeration, table and failure, in
// loops over the lists of the headers.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <ospf_harbor.hpp>
#include <ospf_harbor/receive.hpp>
#include <sstream>

#include "model/lists.hpp"
#include "support/temporary_folder.hpp"

namespace {

using namespace ospf_harbor;

struct Sessions : testing::Test {
  ospf_harbor::database data{"cplusplus"};
  session at{data};
  session keeping{data, on_failure::keeps};
};

// What is left in the database when its sessions have ended.
std::string left_in(const std::function<void(session &)> &act) {
  ospf_harbor::database data("left");
  {
    session at(data);
    act(at);
  }
  return data.close();
}

template <typename Tuple, typename Act>
void for_each(Act act) {
  [&]<typename... Items>(std::type_identity<std::tuple<Items...>>) {
    (act(std::type_identity<Items>{}), ...);
  }(std::type_identity<Tuple>{});
}

template <typename Act>
void for_each_type(Act act) {
  for_each<all_types>([&]<typename Ref>(std::type_identity<Ref>) {
    SCOPED_TRACE(Ref::rules::name);
    act.template operator()<Ref>();
  });
}

template <typename Act>
void for_each_table(Act act) {
  for_each<all_tables>([&]<typename Table>(std::type_identity<Table>) {
    SCOPED_TRACE(Table::name);
    act.template operator()<Table>();
  });
}

template <typename>
inline constexpr bool is_optional = false;
template <typename Value>
inline constexpr bool is_optional<std::optional<Value>> = true;
template <typename>
inline constexpr bool is_table = false;
template <typename Table>
inline constexpr bool is_table<table_ref<Table>> = true;
template <typename Part>
concept is_object = requires {
  typename Part::rules::c_type;
}
&&!is_table<Part>;

// A value of each kind that a fresh object does not hold.
template <typename Value>
struct Sample;
template <typename Value>
requires std::is_arithmetic_v<Value>
struct Sample<Value> {
  static Value value() { return static_cast<Value>(std::is_same_v<Value, bool> ? 1 : 77); }
};
template <typename Value>
requires std::is_enum_v<Value>
struct Sample<Value> {
  static Value value() { return members_of<Value>.back().value; }
};
template <>
struct Sample<address> {
  static address value() { return *address::parse("2001:db8::7/64"); }
};
template <>
struct Sample<std::string_view> {
  static std::string_view value() { return "a text"; }
};
template <typename Bit>
struct Sample<flags<Bit>> {
  static flags<Bit> value() {
    return {members_of<Bit>.front().value, members_of<Bit>.back().value};
  }
};
template <typename Element>
struct Sample<std::span<const Element>> {
  static std::vector<Element> value() { return {1, 2, 3}; }
};
template <>
struct Sample<std::vector<address>> {
  static std::vector<address> value() { return {address::v4(1), *address::parse("::1")}; }
};

template <typename Ref, typename Field>
void round_trip(const Ref &object, const Field &field) {
  SCOPED_TRACE(field.name);
  using Value = std::invoke_result_t<decltype(field.get), const Ref &>;
  if constexpr (is_table<Value>) {
    auto made = Value::make(object.at());
    EXPECT_FALSE((object.*field.get)());
    (object.*field.set)(made);
    EXPECT_EQ((object.*field.get)(), made);
    (object.*field.set)(Value());
    EXPECT_FALSE((object.*field.get)());
    made.end_tree();
  } else if constexpr (is_optional<Value>) {
    EXPECT_EQ((object.*field.get)(), std::nullopt);
    const auto value = Sample<typename Value::value_type>::value();
    (object.*field.set)(value);
    EXPECT_EQ((object.*field.get)(), value);
  } else if constexpr (is_object<Value>) {
    if constexpr (!std::is_null_pointer_v<decltype(field.set)>) (object.*field.set)();
    EXPECT_TRUE((object.*field.get)());
  } else {
    const auto value = Sample<Value>::value();
    const auto is_value = [&] {
      const auto held = (object.*field.get)();
      if constexpr (requires { held == value; }) {
        return held == value;
      } else {
        return std::equal(held.begin(), held.end(), value.begin(), value.end());
      }
    };
    bool differs = true;  // from what a fresh object holds
    if constexpr (std::is_enum_v<Value>) differs = members_of<Value>.size() > 1;
    EXPECT_EQ(is_value(), !differs);
    (object.*field.set)(value);
    EXPECT_TRUE(is_value());
  }
}

// Gives each field that holds a value one that a fresh object does not hold, at any depth; a choice
// its last arm. Tells whether there was any.
template <typename Ref>
bool fill(const Ref &object) {
  bool filled = false;
  if constexpr (requires { object.select_no_auth(); }) {
    object.select_no_auth(77);
    return true;
  }
  Ref::for_each_field([&](const auto &field) {
    using Value = std::invoke_result_t<decltype(field.get), const Ref &>;
    if constexpr (is_object<Value>) {
      filled |= fill((object.*field.get)());
    } else if constexpr (!is_optional<Value> && !is_table<Value>) {
      (object.*field.set)(Sample<Value>::value());
      filled = true;
    }
  });
  return filled;
}

TEST_F(Sessions, EveryFieldOfEveryTypeKeepsWhatItIsGiven) {
  std::size_t fields = 0;
  for_each_type([&]<typename Ref>() {
    Ref::for_each_field([&](const auto &field) {
      owned<Ref> object(at);
      round_trip(static_cast<const Ref &>(object), field);
      ++fields;
    });
  });
  std::size_t expected = 0;
  for (const auto *type : harbor::model::structures) {
    for (const auto *field : type->fields) expected += field->kind != harbor::model::Kind::counter;
  }
  EXPECT_EQ(fields, expected);
}

// Whether one field counts the elements of the other: it stands directly before it.
bool counts(const std::string &type, const std::string &counter, const std::string &array) {
  for (const auto *row : harbor::model::structures) {
    for (std::size_t n = 1; row->name == type && n < row->fields.size(); ++n) {
      const auto &before = *row->fields[n - 1];
      if (row->fields[n]->name == array) {
        return before.kind == harbor::model::Kind::counter && before.name == counter;
      }
    }
  }
  return false;
}

std::vector<std::string> lines_of(const std::string &text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// The lines of an object's text by the names of their fields. A number without a name, which a
// fresh object may hold, has no end of line: what follows it is left out.
std::multimap<std::string, std::string> lines_by_field(const std::string &text) {
  std::multimap<std::string, std::string> lines;
  for (const std::string &line : lines_of(text)) {
    const std::size_t begin = line.find_first_not_of(' ');
    lines.emplace(line.substr(begin, line.find_first_of("@[", begin) - begin), line);
  }
  return lines;
}

// The library's own text tells which field a setter wrote, so that an accessor of one field under
// the name of another is seen.
TEST_F(Sessions, EverySetterWritesTheFieldOfItsName) {
  for_each_type([&]<typename Ref>() {
    const auto fresh = lines_by_field(owned<Ref>(at).to_text());
    Ref::for_each_field([&](const auto &field) {
      using Value = std::invoke_result_t<decltype(field.get), const Ref &>;
      if constexpr (!is_table<Value> && !is_object<Value> && !is_optional<Value>) {
        SCOPED_TRACE(field.name);
        owned<Ref> object(at);
        (static_cast<const Ref &>(object).*field.set)(Sample<Value>::value());
        const auto now = lines_by_field(object.to_text());
        const auto changed = [&](const std::string &name) {
          const auto [begin, end] = now.equal_range(name);
          const auto [old_begin, old_end] = fresh.equal_range(name);
          return !std::equal(begin, end, old_begin, old_end);
        };
        for (const auto &[name, line] : fresh) {
          if (name == field.name || counts(Ref::rules::name, name, field.name)) continue;
          EXPECT_FALSE(changed(name)) << line;
        }
        bool differs = true;
        if constexpr (std::is_enum_v<Value>) differs = members_of<Value>.size() > 1;
        EXPECT_EQ(changed(field.name), differs);
      }
    });
  });
}

TEST_F(Sessions, TypesFieldsAndMembersAreThoseOfTheSchema) {
  std::size_t type = 0;
  for_each_type([&]<typename Ref>() {
    const auto &row = *harbor::model::structures[type++];
    EXPECT_EQ(Ref::rules::name, row.name);
    std::size_t number = 0;
    Ref::for_each_field([&](const auto &field) {
      while (row.fields[number]->kind == harbor::model::Kind::counter) ++number;
      EXPECT_EQ(field.name, row.fields[number]->name);
      EXPECT_EQ(field.since, row.fields[number]->since);
      ++number;
    });
  });
  const auto members = [&]<typename Words>(const auto &rows, std::type_identity<Words>) {
    std::size_t at_row = 0;
    for_each<Words>([&]<typename Word>(std::type_identity<Word>) {
      const auto &row = *rows[at_row++];
      ASSERT_EQ(members_of<Word>.size(), row.members.size());
      for (std::size_t at_member = 0; at_member < row.members.size(); ++at_member) {
        EXPECT_EQ(name_of(static_cast<Word>(row.members[at_member].value)),
                  row.members[at_member].name);
      }
      EXPECT_EQ(name_of(static_cast<Word>(250)), "");
    });
  };
  members(harbor::model::all_enumerations, std::type_identity<all_enumerations>{});
  members(harbor::model::all_flag_sets, std::type_identity<all_flag_sets>{});
}

TEST_F(Sessions, EveryObjectComesBackFromItsImageAndItsXml) {
  for_each_type([&]<typename Ref>() {
    owned<Ref> object(at);
    const bool filled = fill<Ref>(object);
    owned<Ref> from_image(at);
    EXPECT_EQ(from_image == object, !filled);
    from_image.read_image(object.to_image());
    EXPECT_TRUE(from_image == object);
    EXPECT_EQ(from_image.hash(), object.hash());
    owned<Ref> from_xml(at);
    from_xml.read_xml(object.to_xml());
    EXPECT_EQ(from_xml.to_text(), object.to_text());
    EXPECT_TRUE(owned<Ref>::copy_of(object) == object);
    EXPECT_EQ(receive<Ref>(at, object.to_image()).to_text(), object.to_text());
  });
}

// A key of each kind, rising with the number.
template <typename Key>
Key key_of(int number) {
  if constexpr (std::is_same_v<Key, std::string_view>) {
    static const std::vector<std::string> names{"a", "b", "c", "d", "e", "f"};
    return names[static_cast<std::size_t>(number)];
  } else if constexpr (std::is_same_v<Key, address>) {
    return address::v4(static_cast<std::uint32_t>(number));
  } else if constexpr (std::is_enum_v<Key>) {
    return members_of<Key>[static_cast<std::size_t>(number) % members_of<Key>.size()].value;
  } else if constexpr (std::is_arithmetic_v<Key>) {
    return static_cast<Key>(number);
  } else if constexpr (requires { Key{{}, {}, {}}; }) {
    Key key{};
    auto &[first, second, third] = key;
    third = static_cast<std::uint32_t>(number);
    return key;
  } else {
    Key key{};
    auto &[first, second] = key;
    if constexpr (std::is_arithmetic_v<std::remove_reference_t<decltype(second)>>) {
      second = static_cast<std::uint32_t>(number);
    } else {
      second = address::v4(static_cast<std::uint32_t>(number));
    }
    return key;
  }
}

// How many rows a table can hold here: an enumeration has as many keys as members.
template <typename Key>
int keys_for(int wanted) {
  if constexpr (std::is_enum_v<Key>) {
    return std::min(wanted, static_cast<int>(members_of<Key>.size()));
  } else {
    return wanted;
  }
}

TEST_F(Sessions, EveryTableIsARangeInTheOrderOfItsKeys) {
  for_each_table([&]<typename Table>() {
    using Key = typename Table::key_type;
    tree<Table> table(at);
    EXPECT_TRUE(table.empty());
    const int count = keys_for<Key>(4);
    for (const int number : {2, 0, 3, 1}) {
      if (number >= count) continue;
      EXPECT_TRUE(table.add(key_of<Key>(number)));
    }
    ASSERT_EQ(table.size(), static_cast<std::uint32_t>(count));
    int number = 0;
    for (const auto row : table) EXPECT_EQ(row.key(), key_of<Key>(number++));
    EXPECT_EQ(number, count);
    for (auto row = table.rbegin(); row != table.rend(); ++row) {
      EXPECT_EQ((*row).key(), key_of<Key>(--number));
    }
    EXPECT_EQ(number, 0);
    const auto from = table.from(key_of<Key>(1));
    EXPECT_EQ(std::distance(from.begin(), from.end()), count - 1);
    EXPECT_EQ((*from.begin()).key(), key_of<Key>(1));
    for (int each = 0; each < count; ++each) {
      EXPECT_EQ(table.find(key_of<Key>(each)).key(), key_of<Key>(each));
    }
    table.erase(table.find(key_of<Key>(1)));
    EXPECT_FALSE(table.find(key_of<Key>(1)));
    EXPECT_EQ(table.size(), static_cast<std::uint32_t>(count - 1));
  });
}

TEST_F(Sessions, WalksShowTheRowsOfOneSourceOrOfAll) {
  for_each_table([&]<typename Table>() {
    using Key = typename Table::key_type;
    tree<Table> table(at);
    const auto other = table.add(key_of<Key>(0), 7);
    const auto usual = table.add(key_of<Key>(0));
    const auto shadow = table.add(key_of<Key>(1), 255);
    const auto last = table.add(key_of<Key>(1), 7);
    using Rows = std::vector<row<Table>>;
    const auto rows = [](const auto &range) { return Rows(range.begin(), range.end()); };
    EXPECT_EQ(rows(table), Rows{usual});
    EXPECT_EQ(rows(table.of_source(7)), (Rows{other, last}));
    EXPECT_EQ(rows(table.of_source(8)), Rows{});
    EXPECT_EQ(rows(table.of_every_source()), (Rows{usual, other, last, shadow}));
    EXPECT_EQ(*--table.of_source(7).end(), last);
    EXPECT_EQ(*-- --table.of_source(7).end(), other);
    EXPECT_FALSE(table.find(key_of<Key>(1)));
  });
}

// Fields of a key stand in the text of a row under their names, in the order of the schema.
TEST_F(Sessions, EachPartOfAKeyIsTheFieldOfItsName) {
  const auto part = [](const std::string &text, const std::string &name) {
    const std::size_t begin = text.find(name + "@");
    const std::size_t value = text.find(':', begin) + 1;
    return text.substr(value, text.find('\n', begin) - value);
  };
  tree<schema::tbl_ospfv3_link> links(at);
  const std::string link = links.add({1, 2, 3}).to_text();
  EXPECT_EQ(part(link, " interface_id"), "1");
  EXPECT_EQ(part(link, "neighbor_interface_id"), "2");
  EXPECT_EQ(part(link, "neighbor_router_id"), "3");
  tree<schema::tbl_ospfv2_link> others(at);
  const std::string other = others.add({1, 2}).to_text();
  EXPECT_EQ(part(other, "link_id"), "1");
  EXPECT_EQ(part(other, "link_data"), "2");
}

TEST_F(Sessions, ANeighbourIsDownFromTheStart) {
  tree<schema::tbl_ospf_neighbor> neighbors(at);
  const auto made = neighbors.add(address::v4(1));
  EXPECT_EQ(made->state(), ospf_harbor::nbr_state_type::NBR_STATE_DOWN);
  EXPECT_FALSE(made.to_image().empty());
}

TEST_F(Sessions, EachTenantSeesItsOwnRows) {
  for_each_table([&]<typename Table>() {
    using Key = typename Table::key_type;
    tree<Table> table(at);
    for (const std::uint16_t tenant : {5, 6}) {
      const tenant_scope as(tenant);
      table.add(key_of<Key>(tenant - 5));
    }
    for (const std::uint16_t tenant : {5, 6}) {
      const tenant_scope as(tenant);
      EXPECT_EQ(std::distance(table.begin(), table.end()), 1);
      EXPECT_EQ((*table.begin()).key(), key_of<Key>(tenant - 5));
      table.clear();
    }
    std::uint16_t now = 1;
    mt_get_tenant_id(&now);
    EXPECT_EQ(now, 0);
  });
}

TEST_F(Sessions, EveryRowComesBackFromItsImageAndItsXml) {
  for_each_table([&]<typename Table>() {
    using Key = typename Table::key_type;
    tree<Table> table(at), images(at), received(at), documents(at);
    const auto added = table.add(key_of<Key>(1));
    EXPECT_EQ(images.add_image(added.to_image()).to_text(), added.to_text());
    EXPECT_EQ(receive_row(received, added.to_image()).to_text(), added.to_text());
    EXPECT_EQ(documents.add_xml(added.to_xml()).to_text(), added.to_text());
  });
}

TEST_F(Sessions, ARowOfEachReferenceIsMadeWithItsTable) {
  for_each_type([&]<typename Ref>() {
    Ref::for_each_reference([&]<typename Field>(const Field &field) {
      SCOPED_TRACE(field.name);
      using Below = typename Field::table;
      using Key = typename Below::key_type;
      owned<Ref> object(at);
      const auto add = [&](session &with, int number) {
        return ospf_harbor::detail::add_below<Below, Field::get, Field::set>(with, object.get(),
                                                                             key_of<Key>(number));
      };
      EXPECT_TRUE(add(at, 0));
      EXPECT_TRUE(add(at, 1));
      const table_ref<Below> below(at, at.call<Field::get>(object.get()));
      EXPECT_EQ(below.size(), 2u);
      EXPECT_THROW(add(at, 0), failure);
      EXPECT_EQ(below.size(), 2u);
      at.call<Field::set>(object.get(), static_cast<typename Below::c_type *>(nullptr));
      below.end_tree();
    });
  });
}

TEST(Left, NothingWhateverEndsFirst) {
  for_each_table([]<typename Table>() {
    using Key = typename Table::key_type;
    EXPECT_EQ(left_in([](session &at) {
                tree<Table> table(at);
                const auto top = table.add(key_of<Key>(0));
                Table::object_type::for_each_reference([&]<typename Field>(const Field &) {
                  ospf_harbor::detail::add_below<typename Field::table, Field::get, Field::set>(
                      at, top.object().get(), key_of<typename Field::table::key_type>(0));
                });
                owned<typename Table::object_type> copy =
                    owned<typename Table::object_type>::copy_of(top.object());
                EXPECT_TRUE(copy == top.object());
              }),
              "");
  });
}

TEST(Left, NothingWhereverMemoryEnds) {
  for_each_table([]<typename Table>() {
    using Key = typename Table::key_type;
    ospf_harbor::database data("memory");
    {
      session at(data);
      table_ref<Table> table = table_ref<Table>::make(at);
      int refused = 0;
      for (int n = 0;; ++n) {
        ASSERT_LT(n, 100);
        kelp_database_fail_allocation_after(data.get(), n);
        try {
          table.add(key_of<Key>(0));
          break;
        } catch (const failure &why) {
          EXPECT_EQ(why.code(), 12) << why.what();
          EXPECT_STRNE(why.what(), "");
          EXPECT_EQ(table.size(), 0u);
          ++refused;
        }
      }
      kelp_database_fail_allocation_after(data.get(), -1);
      EXPECT_GE(refused, 2);
      table.end_tree();
    }
    EXPECT_EQ(data.close(), "");
  });
}

TEST_F(Sessions, AKeyThatIsTakenIsToldWithItsTableAndKey) {
  for_each_table([&]<typename Table>() {
    using Key = typename Table::key_type;
    tree<Table> table(at);
    table.add(key_of<Key>(1));
    try {
      table.add(key_of<Key>(1));
      FAIL() << "the key was taken twice";
    } catch (const failure &why) {
      EXPECT_EQ(why.code(), 17);
      EXPECT_NE(std::string(why.what()).find(Table::name), std::string::npos) << why.what();
    }
    EXPECT_EQ(table.size(), 1u);
    EXPECT_TRUE(at.ok());
  });
}

TEST_F(Sessions, EveryFieldOfNoObjectIsToldByItsName) {
  for_each_type([&]<typename Ref>() {
    Ref::for_each_field([&](const auto &field) {
      using Value = std::invoke_result_t<decltype(field.get), const Ref &>;
      const Ref none(at, nullptr);
      const std::string place = std::string(Ref::rules::name) + "." + field.name;
      try {
        (none.*field.get)();
        ADD_FAILURE() << field.name;
      } catch (const failure &why) {
        EXPECT_EQ(std::string(why.what()).find(place), 0u) << why.what();
      }
      if constexpr (!is_table<Value> && !is_object<Value> && !is_optional<Value>) {
        try {
          (none.*field.set)(Sample<Value>::value());
          ADD_FAILURE() << field.name;
        } catch (const failure &why) {
          EXPECT_TRUE(why.code() == 22 || why.code() == 2) << why.code();
          EXPECT_EQ(std::string(why.what()).find(place), 0u) << why.what();
        }
      }
    });
  });
}

TEST_F(Sessions, ASessionThatKeepsFailuresKeepsTheFirst) {
  for_each_type([&]<typename Ref>() {
    Ref::for_each_field([&](const auto &field) {
      using Value = std::invoke_result_t<decltype(field.get), const Ref &>;
      if constexpr (!is_table<Value> && !is_object<Value> && !is_optional<Value>) {
        const owned<Ref> there(keeping);
        const std::string before = there.to_text();
        const Ref none(keeping, nullptr);
        (none.*field.set)(Sample<Value>::value());
        EXPECT_FALSE(keeping.ok());
        ASSERT_TRUE(keeping.first_failure());
        const std::string first = keeping.first_failure()->what();
        EXPECT_EQ(first.find(std::string(Ref::rules::name) + "." + field.name), 0u) << first;
        (static_cast<const Ref &>(there).*field.set)(Sample<Value>::value());
        EXPECT_EQ(keeping.first_failure()->what(), first);
        keeping.forget();
        EXPECT_EQ(there.to_text(), before);
      }
    });
  });
}

TEST_F(Sessions, AnImageThatIsNoneIsRefusedWithWhereAndWhy) {
  for_each_table([&]<typename Table>() {
    using Key = typename Table::key_type;
    tree<Table> table(at);
    auto image = table.add(key_of<Key>(1)).to_image();
    image.pop_back();
    tree<Table> other(at);
    try {
      receive_row(other, image);
      FAIL() << "a cut image was taken";
    } catch (const failure &why) {
      EXPECT_EQ(why.code(), 22);
      EXPECT_EQ(std::string(why.what()).find("offset"), 0u) << why.what();
    }
    EXPECT_TRUE(other.empty());
    const table_ref<Table> kept(keeping, other.get());
    EXPECT_FALSE(receive_row(kept, image));
    EXPECT_EQ(keeping.first_failure()->code(), 22);
    keeping.forget();
  });
}

TEST_F(Sessions, AFeedShowsEachTablesRowsThatComeChangeAndGo) {
  for_each_table([&]<typename Table>() {
    using Key = typename Table::key_type;
    const auto table = table_ref<Table>::make(at);
    EXPECT_THROW(feed<Table>{table}, failure);  // nobody follows it
    follow(table);
    session other(data);
    {
      feed<Table> reader(table_ref<Table>(other, table.get()));
      const auto shown = [&]() -> std::string {
        std::string kinds;
        while (const auto change = reader.next()) {
          kinds += change->kind == change_kind::inserted   ? "+"
                   : change->kind == change_kind::modified ? "~"
                                                           : "-";
          EXPECT_EQ(change->of.key(), key_of<Key>(0));
        }
        return kinds;
      };
      EXPECT_FALSE(reader.wait(0));
      const auto row = table.add(key_of<Key>(0));
      EXPECT_TRUE(reader.wait(0));
      EXPECT_EQ(shown(), "+");
      EXPECT_FALSE(reader.wait(0));
      tell_changed(table, row);
      tell_changed(table, row);
      EXPECT_EQ(shown(), "~");
      request_end(table, row);
      EXPECT_EQ(shown(), "-");
      collect(at);
      EXPECT_TRUE(table.empty());
    }
    table.end_tree();
  });
}

TEST_F(Sessions, AnInterfaceIsWholeFromTheStart) {
  area_tree areas(at);
  const auto area = areas.add(51);
  const auto core = area->add_interface("core");
  EXPECT_EQ(core->authentication_val().auth_type_selection(), auth_type::OSPF_AUTH_TYPE_NONE);
  EXPECT_FALSE(core.to_image().empty());
  EXPECT_EQ(area->interfaces().find("core"), core);
}

TEST_F(Sessions, AStoreGoesBackToWhereTheLastCommitLeftIt) {
  const TemporaryFolder temporary;
  const std::string file = temporary.file("store");
  auto store = ospf_harbor::database::in_file(file.c_str());
  session in(store);
  {
    write_lock lock(in);
    area_table::open(in, "areas").add(1);
    lock.commit();
  }
  {
    write_lock lock(in);
    area_table::open(in, "areas").add(2);
  }
  {
    const read_lock lock(in);
    const auto areas = area_table::existing(in, "areas");
    EXPECT_FALSE(area_table::existing(in, "others"));
    EXPECT_EQ(areas.size(), 1u);
    EXPECT_TRUE(areas.find(1));
    EXPECT_THROW(write_lock{in}, failure);
  }
}

}  // namespace
