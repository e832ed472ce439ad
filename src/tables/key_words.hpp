// A record's key in words, for people who read of a failure: the key fields by name, numbers as
// they are, enumerated values by their names, addresses and texts as written. Calls nothing of the
// runtime, so that a failure makes no calls that a success does not.
#pragma once

#include <arpa/inet.h>
#include <kelp/table.h>

#include <algorithm>
#include <cstdio>
#include <span>

#include "module/object.hpp"

namespace harbor::key_words {

// Room for the words of any key; longer texts are cut.
using Words = char[160];

template <const Structure &S, const Field &F>
int print_field(std::span<char> out, const void *object) {
  const auto *place = place_of<S, F>(object);
  const char *name = F.name.data();
  if constexpr (F.kind == Kind::enumeration) {
    for (const model::Member &member : F.enumeration->members) {
      if (member.value != place->value) continue;
      return std::snprintf(out.data(), out.size(), "%s %.*s", name,
                           static_cast<int>(member.name.size()), member.name.data());
    }
    return std::snprintf(out.data(), out.size(), "%s %u", name, place->value);
  } else if constexpr (F.kind == Kind::address) {
    char text[INET6_ADDRSTRLEN] = "unset";
    if (place->family != KELP_AF_UNSET) {
      inet_ntop(place->family == KELP_AF_IPV6 ? AF_INET6 : AF_INET, place->bytes, text,
                sizeof text);
    }
    return std::snprintf(out.data(), out.size(), "%s %s", name, text);
  } else if constexpr (F.kind == Kind::text) {
    return std::snprintf(out.data(), out.size(), "%s '%s'", name,
                         place->text == nullptr ? "" : place->text);
  } else {
    return std::snprintf(out.data(), out.size(), "%s %u", name, unsigned{*place});
  }
}

template <const Structure &S, const Field &F>
void add_field(Words &words, std::size_t &length, const void *object) {
  const std::span<char> room = std::span(words).subspan(length);
  int written = length == 0 ? 0 : std::snprintf(room.data(), room.size(), ", ");
  const std::size_t gap = std::min(static_cast<std::size_t>(written), room.size() - 1);
  written = print_field<S, F>(room.subspan(gap), object);
  length += std::min(gap + static_cast<std::size_t>(written), room.size() - 1);
}

// A record's object is there, as it is when the record enters a tree; a composite-key table's key
// object may be null.
template <const model::Table &T>
void print(const kelp_record &record, Words &words) {
  words[0] = '\0';
  std::size_t length = 0;
  if constexpr (T.shape() != model::Shape::composite_key) {
    add_field<*T.record, *T.key>(words, length, record.objects[0]);
  } else if (record.objects[0] == nullptr) {
    std::snprintf(words, sizeof words, "none");
  } else {
    for_each_field<*T.key_structure>([&]<const Field & F>() {
      add_field<*T.key_structure, F>(words, length, record.objects[0]);
    });
  }
}

}  // namespace harbor::key_words
