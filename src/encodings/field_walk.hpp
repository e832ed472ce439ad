// How the three encodings walk a structure: its fields floor by floor, the elements of an
// array, whether an arm is selected and the name under which it is shown. Called by image, text
// and xml; nothing here reads the platform or writes an object.
#pragma once

#include "module/object.hpp"

namespace harbor::field_walk {

// Calls act.template operator()<F>() for the fields of that floor, in order, until one answers
// false; says whether all answered true.
template <const Structure &T, std::uint8_t floor, typename Act>
constexpr bool every_field(Act act) {
  const auto visit = [&]<const Field & F>() {
    if constexpr (F.since == floor) {
      return act.template operator()<F>();
    } else {
      return true;
    }
  };
  return [&]<std::size_t... I>(std::index_sequence<I...>) {
    return (visit.template operator()<*T.fields[I]>() && ...);
  }
  (std::make_index_sequence<T.fields.size()>());
}

// The same for all fields of the floor, whatever they end in.
template <const Structure &T, std::uint8_t floor, typename Act>
constexpr void for_each_field(Act act) {
  harbor::for_each_field<T>([&]<const Field & F>() {
    if constexpr (F.since == floor) act.template operator()<F>();
  });
}

template <const Structure &T, const Field &F>
std::uint32_t count_of(const void *object) {
  return *place_of<T, model::counter_of(T, F)>(object);
}

// The elements of an array of primitives, null while there is no store.
template <const Structure &T, const Field &F, typename Element>
const Element *elements_of(const void *object) {
  return static_cast<const Element *>(*place_of<T, F>(object));
}

template <const Structure &T, const Field &F>
bool is_selected(const void *object) {
  return place_of<T, model::selector_of(T)>(object)->value == F.selector;
}

// "<selector><separator><arm>", as a text with its NUL.
template <const Structure &T, const Field &F, char separator>
inline constexpr auto arm_name = [] {
  constexpr std::string_view selector = model::selector_of(T).name;
  std::array<char, selector.size() + F.name.size() + 2> text{};
  std::size_t at = 0;
  for (char c : selector) text[at++] = c;
  text[at++] = separator;
  for (char c : F.name) text[at++] = c;
  return text;
}();

}  // namespace harbor::field_walk
