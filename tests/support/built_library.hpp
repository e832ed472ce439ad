// The library that this build made, as a file: its sections, read back by the tools' own reader.
#pragma once

#include <library_sections/halyard.hpp>
#include <library_sections/messages.hpp>

#include "support/places.hpp"

namespace built {

struct Library {
  std::vector<std::uint8_t> bytes = library_sections::read_file(places::library());
  library_sections::ElfFile file{bytes};
  library_sections::MessageStore messages = library_sections::read_messages(file);
  library_sections::Halyard halyard = library_sections::read_halyard(file);
};

inline const Library &library() {
  static const Library one;
  return one;
}

}  // namespace built
