// The makers of structures, enumerations and flag sets: a type's variants and their bounds follow
// from the variants in which its fields or members came. Each type is made through here, so that
// the edition of the schema that is built can differ. The current edition is the product and holds
// what the rows say. The older one is the schema before variant 1 came: every field and every value
// of a later variant is left out. The newer one adds what stands in newer_edition.hpp. Both exist
// so that tests can let editions talk to one another.
#pragma once

#include <algorithm>
#include <utility>

#include "model/newer_edition.hpp"

namespace harbor::model {

enum class Edition : std::uint8_t { older, current, newer };

#if defined(HARBOR_OLDER_EDITION)
inline constexpr Edition edition = Edition::older;
#elif defined(HARBOR_NEWER_EDITION)
inline constexpr Edition edition = Edition::newer;
#else
inline constexpr Edition edition = Edition::current;
#endif

// --- lists of rows ----------------------------------------------------------------------------

// What variant 0 holds.
template <const Field &...F>
inline constexpr auto first_fields = [] {
  std::array<const Field *, ((F.since == 0 ? std::size_t{1} : 0) + ... + 0)> kept{};
  std::size_t at = 0;
  ((F.since == 0 ? void(kept[at++] = &F) : void()), ...);
  return kept;
}();
template <const auto &members>
inline constexpr auto first_members = [] {
  constexpr auto came_first = [](const Member &member) { return member.since == 0; };
  std::array<Member, std::count_if(members.begin(), members.end(), came_first)> kept{};
  std::copy_if(members.begin(), members.end(), kept.begin(), came_first);
  return kept;
}();

// With the addition of that number behind them.
template <std::size_t addition, const Field &...F>
inline constexpr auto more_fields = [] {
  constexpr auto added = newer_edition::new_fields[addition].fields;
  std::array<const Field *, sizeof...(F) + added.size()> all{&F...};
  std::copy(added.begin(), added.end(), all.begin() + sizeof...(F));
  return all;
}();
template <std::size_t addition, const auto &members>
inline constexpr auto more_members = [] {
  std::array<Member, members.size() + 1> all{};
  std::copy(members.begin(), members.end(), all.begin());
  all.back() = newer_edition::new_members[addition].member;
  return all;
}();

template <std::size_t count, typename Act>
constexpr void for_each_index(Act act) {
  [&]<std::size_t... I>(std::index_sequence<I...>) { (act.template operator()<I>(), ...); }
  (std::make_index_sequence<count>());
}

// What the edition has of the rows.
template <const Field &...F>
constexpr std::span<const Field *const> fields_in_edition(std::string_view type) {
  std::span<const Field *const> fields = field_list<F...>;
  if constexpr (edition == Edition::older) {
    fields = first_fields<F...>;
  } else if constexpr (edition == Edition::newer) {
    for_each_index<newer_edition::new_fields.size()>([&]<std::size_t I>() {
      if (type == newer_edition::new_fields[I].type) fields = more_fields<I, F...>;
    });
  }
  return fields;
}
template <const auto &members>
constexpr std::span<const Member> members_in_edition(std::string_view type) {
  std::span<const Member> all = members;
  if constexpr (edition == Edition::older) {
    all = first_members<members>;
  } else if constexpr (edition == Edition::newer) {
    for_each_index<newer_edition::new_members.size()>([&]<std::size_t I>() {
      if (type == newer_edition::new_members[I].type) all = more_members<I, members>;
    });
  }
  return all;
}

// --- makers of types ----------------------------------------------------------------------------

constexpr std::uint8_t variants_of(std::span<const Field *const> fields) {
  std::uint8_t highest = 0;
  for (const Field *field : fields) highest = std::max(highest, field->since);
  return highest + 1;
}
constexpr std::uint8_t variants_of(std::span<const Member> members) {
  std::uint8_t highest = 0;
  for (const Member &member : members) highest = std::max(highest, member.since);
  return highest + 1;
}

// The last bound leaves one slot above the last field, but in a type of one variant.
template <const Field &...F>
consteval Structure structure(std::string_view name, std::string_view meaning) {
  const auto fields = fields_in_edition<F...>(name);
  Structure type{name, variants_of(fields), {}, fields, meaning};
  for (std::uint8_t variant = 0; variant < type.variants; ++variant) {
    std::uint32_t &bound = type.valid_bounds[variant];
    while (bound < fields.size() && fields[bound]->since <= variant) ++bound;
  }
  if (type.variants > 1) ++type.valid_bounds[type.variants - 1];
  return type;
}

constexpr Limits limits_of(std::span<const Member> members) {
  Limits limits{};
  for (std::uint8_t variant = 0; variant < variants_of(members); ++variant) {
    for (const Member &member : members) limits[variant] += member.since <= variant ? 1 : 0;
  }
  return limits;
}
template <const auto &members>
consteval Enumeration enumeration(std::string_view name, std::string_view meaning) {
  const auto all = members_in_edition<members>(name);
  return {name, variants_of(all), limits_of(all), all, meaning};
}
template <const auto &members>
consteval FlagSet flag_set(std::string_view name, std::string_view meaning) {
  const auto all = members_in_edition<members>(name);
  return {name, variants_of(all), limits_of(all), all, meaning};
}

}  // namespace harbor::model
