// How the three encodings walk a structure: its fields floor by floor, the elements of an
// array, whether an arm is selected and the name under which it is shown. Called by image, text
// and xml; nothing here reads the platform or writes an object.
#pragma once

#include <algorithm>
#include <array>

#include "module/object.hpp"
#include "types/primitive.hpp"

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

// Numbers, whose images have a fixed length and need no call.
constexpr bool is_number(Kind kind) {
  return is_primitive(kind) && kind != Kind::address && kind != Kind::text;
}

// The fields of a floor by their places in T.fields, in order.
template <const Structure &T, std::uint8_t floor>
inline constexpr auto places_of_floor = [] {
  constexpr auto belongs = [](const Field *field) { return field->since == floor; };
  constexpr auto count =
      static_cast<std::size_t>(std::count_if(T.fields.begin(), T.fields.end(), belongs));
  std::array<std::size_t, count> places{};
  for (std::size_t at = 0, next = 0; at < T.fields.size(); ++at) {
    if (belongs(T.fields[at])) places[next++] = at;
  }
  return places;
}();
template <const Structure &T, std::uint8_t floor, std::size_t at>
inline constexpr const Field &field_at = *T.fields[places_of_floor<T, floor>[at]];

// Where the run of numbers ends that begins with a field of the floor: at the field itself when it
// is none.
template <const Structure &T, std::uint8_t floor, std::size_t at>
inline constexpr std::size_t run_end = [] {
  constexpr auto &places = places_of_floor<T, floor>;
  std::size_t end = at;
  while (end < places.size() && is_number(T.fields[places[end]]->kind)) ++end;
  return end;
}();

// Calls act.template operator()<F>() for the fields of the floor from first to end.
template <const Structure &T, std::uint8_t floor, std::size_t first, std::size_t end, typename Act>
constexpr bool every_field_of(Act act) {
  return [&]<std::size_t... I>(std::index_sequence<I...>) {
    return (act.template operator()<field_at<T, floor, first + I>>() && ...);
  }
  (std::make_index_sequence<end - first>());
}

// The same for all fields of the floor, with run.template operator()<first, end>() tried for each
// run of several numbers: where it answers true the run is done.
template <const Structure &T, std::uint8_t floor, std::size_t at = 0, typename Run, typename Act>
constexpr bool every_run(Run run, Act act) {
  if constexpr (at == places_of_floor<T, floor>.size()) {
    return true;
  } else if constexpr (run_end<T, floor, at> > at + 1) {
    constexpr std::size_t end = run_end<T, floor, at>;
    if (!run.template operator()<at, end>() && !every_field_of<T, floor, at, end>(act)) {
      return false;
    }
    return every_run<T, floor, end>(run, act);
  } else {
    return act.template operator()<field_at<T, floor, at>>() &&
           every_run<T, floor, at + 1>(run, act);
  }
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
