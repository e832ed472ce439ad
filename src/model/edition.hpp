// Which edition of the schema is built, and how the rows of structures, enumerations and flag sets
// follow it: each of them is made through here. The current edition is the product and holds what
// the rows say. The older one is the schema before variant 1 came: every field and every value of a
// later variant is left out. The newer one adds what stands in newer_edition.hpp. Both exist so
// that tests can let editions talk to one another.
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

// For what is stated by number, which binds the current edition alone.
consteval bool if_current(bool fact) { return edition != Edition::current || fact; }

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
consteval void for_each_index(Act act) {
  [&]<std::size_t... I>(std::index_sequence<I...>) { (act.template operator()<I>(), ...); }
  (std::make_index_sequence<count>());
}

// --- rows in the edition ------------------------------------------------------------------------

template <const Field &...F>
consteval Structure in_edition(Structure type) {
  if constexpr (edition == Edition::older) {
    type.variants = 1;
    type.fields = first_fields<F...>;
    type.valid_bounds = {static_cast<std::uint32_t>(type.fields.size())};
  } else if constexpr (edition == Edition::newer) {
    for_each_index<newer_edition::new_fields.size()>([&]<std::size_t I>() {
      if (type.name != newer_edition::new_fields[I].type) return;
      // As in rows of two variants the last bound leaves one slot above the last field.
      type.valid_bounds[type.variants - 1] = static_cast<std::uint32_t>(type.fields.size());
      type.fields = more_fields<I, F...>;
      type.valid_bounds[type.variants] = static_cast<std::uint32_t>(type.fields.size() + 1);
      ++type.variants;
    });
  }
  return type;
}

template <const auto &members>
consteval Enumeration in_edition(Enumeration type) {
  if constexpr (edition == Edition::older) {
    type.variants = type.limit_count = 1;
    type.members = first_members<members>;
  } else if constexpr (edition == Edition::newer) {
    for_each_index<newer_edition::new_members.size()>([&]<std::size_t I>() {
      if (type.name != newer_edition::new_members[I].type) return;
      type.members = more_members<I, members>;
      type.limits[type.limit_count] = type.limits[type.limit_count - 1] + 1;
      ++type.limit_count;
      ++type.variants;
    });
  }
  return type;
}

template <const auto &members>
consteval FlagSet in_edition(FlagSet type) {
  if constexpr (edition == Edition::newer) {
    for_each_index<newer_edition::new_members.size()>([&]<std::size_t I>() {
      if (type.name != newer_edition::new_members[I].type) return;
      type.members = more_members<I, members>;
      ++type.variants;
    });
  }
  return type;
}

// --- makers of structures -----------------------------------------------------------------------

template <const Field &...F>
consteval Structure structure(std::string_view name, std::string_view meaning) {
  return in_edition<F...>(Structure{name, 1, {sizeof...(F)}, field_list<F...>, meaning});
}
// first_later: index of the first field of variant 1; bound: the first index that needs a variant
// 2. The bound leaves one slot above the last field.
template <const Field &...F>
consteval Structure structure_of_two_variants(std::string_view name, std::uint32_t first_later,
                                              std::uint32_t bound, std::string_view meaning) {
  return in_edition<F...>(Structure{name, 2, {first_later, bound}, field_list<F...>, meaning});
}

}  // namespace harbor::model
