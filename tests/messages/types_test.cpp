// The messages of the type side: every row of every form is driven, or stands on the list of those
// that no place emits.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>

#include "messages/setting.hpp"
#include "messages/type_drivers.hpp"

namespace messages {

// A row is either driven or on this list, never both: the rest of a form is compared with it.
std::vector<UnreachableRow> unreachable_rows(std::string_view form) {
  std::vector<UnreachableRow> rows;
  if (form == "kelp_stats_inc failed %s") {
    rows.assign(18, {std::string(form), "kept so that the numbers of the others do not move"});
  }
  if (form == "<type> destroy: Failed to get oid references from object. Error %s" ||
      form == "<type> destroy: Failed to decrement ref count of oid %p. Error %s") {
    for_each_field(
        [](const Field &field) { return field.kind == Kind::structure; },
        [&](const Structure &type, const Field &) {
          rows.push_back({filled(std::string(form), "<type>", type.name),
                          "no embedded structure has a reference that could be dropped"});
        });
  }
  return rows;
}

namespace {

const TypeDriver *driver_of(std::string_view form) {
  for (const auto drivers : {object_drivers(), reference_drivers(), state_drivers()}) {
    for (const TypeDriver &driver : drivers) {
      if (driver.form == form) return &driver;
    }
  }
  return nullptr;
}

class TypeMessages : public testing::TestWithParam<StatedForm> {};

TEST_P(TypeMessages, EveryRowGoesOutOrIsKnownNotTo) {
  const StatedForm &stated = GetParam();
  DrivenForm form(Side::types, stated.text, stated.level);
  if (const TypeDriver *driver = driver_of(stated.text)) driver->drive(form);

  const FormPattern pattern(stated.text);
  std::uint32_t stored = 0;
  std::map<std::string, int> silent;
  for (std::uint32_t index = 0; index < stored_count(Side::types); ++index) {
    const std::string text = stored_text(Side::types, index);
    if (!pattern.matches(text)) continue;
    ++stored;
    if (form.indices().count(index) == 0) ++silent[text];
  }
  std::map<std::string, int> unreachable;
  std::size_t unreachable_count = 0;
  for (const UnreachableRow &row : unreachable_rows(stated.text)) {
    ++unreachable[row.text];
    ++unreachable_count;
  }
  EXPECT_EQ(stored, stated.rows);
  EXPECT_EQ(form.indices().size() + unreachable_count, stated.rows);
  EXPECT_EQ(silent, unreachable);
}

INSTANTIATE_TEST_SUITE_P(Forms, TypeMessages,
                         testing::ValuesIn(stated_type_forms().begin(), stated_type_forms().end()),
                         [](const testing::TestParamInfo<StatedForm> &form) {
                           std::string name;
                           for (const char c : form.param.text) {
                             if (std::isalnum(static_cast<unsigned char>(c)) != 0) name += c;
                           }
                           return name + "Rows" + std::to_string(form.param.rows);
                         });

TEST(TypeMessages, TheFirstAndTheLastStandWhereTheyShould) {
  std::uint32_t rows = 0;
  for (const StatedForm &form : stated_type_forms()) rows += form.rows;
  ASSERT_EQ(stored_count(Side::types), rows);
  EXPECT_EQ(stored_text(Side::types, 0), "error in address_family create %s");
  EXPECT_EQ(stored_text(Side::types, rows - 1),
            "type variant cached info is NULL during usage dump");
  const Outcome outcome = in_child([] {
    const Failing failing("kelp_domain_lookup_variant", failure);
    create(fresh(), "address_family");
  });
  ASSERT_EQ(outcome.emissions.size(), 1u);
  EXPECT_EQ(outcome.emissions[0].index, 0u);
}

TEST(TypeMessages, NoEmbeddedStructureHasAReference) {
  for_each_field([](const Field &field) { return field.kind == Kind::structure; },
                 [&](const Structure &type, const Field &field) {
                   kelp_handle *handle = nullptr;
                   std::uint32_t err = 0;
                   std::uint64_t object[1] = {0};
                   const std::string question =
                       std::string(field.structure->name) + "_get_oid_count";
                   EXPECT_EQ(call<std::uint32_t>(question, handle, space, &object[0], &err), 0u)
                       << type.name << " " << field.name;
                 });
}

TEST(TypeMessages, EachStoredTextIsARowOfOneForm) {
  std::vector<FormPattern> patterns;
  for (const StatedForm &form : stated_type_forms()) patterns.emplace_back(form.text);
  for (std::uint32_t index = 0; index < stored_count(Side::types); ++index) {
    const std::string text = stored_text(Side::types, index);
    EXPECT_EQ(std::count_if(patterns.begin(), patterns.end(),
                            [&](const FormPattern &form) { return form.matches(text); }),
              1)
        << index << ": " << text;
  }
}

}  // namespace

}  // namespace messages
