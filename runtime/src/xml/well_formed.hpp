// What a document must not contain, looked for before it is parsed: bytes that XML cannot carry,
// document type declarations, and references to anything but a character or XML's own five
// entities. The parser behind it would pass over these in silence.
#pragma once

#include <string_view>

namespace kelp {

struct Refusal {
  const char *found = nullptr;  // null: nothing was refused
  size_t offset = 0;
};

Refusal find_forbidden(std::string_view text);

}  // namespace kelp
