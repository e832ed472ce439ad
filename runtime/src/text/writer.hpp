// The bounded text writing behind kelp_print_space and kelp_snprintf, and the one-line form of a
// primitive: blanks, "<label>@<type>:<value>" and a newline. The print operations of the primitives
// call it directly. It never writes past the space and allocates nothing.
#pragma once

#include <string_view>

#include "kelp/base.h"

namespace kelp {

// A buffer that fills from the front. Nothing is written behind what was put, no NUL either.
class TextWriter {
 public:
  TextWriter(char *buffer, uint32_t size) : buffer_(buffer), size_(size) {}

  void put_blanks(uint32_t count);
  void put(std::string_view text);
  // Printable bytes as they are; backslash and control characters as \\ \n \r \t \xHH.
  void put_escaped(std::string_view text);

  uint32_t used() const { return used_; }

 private:
  char *buffer_;
  uint32_t size_;
  uint32_t used_ = 0;
};

// What comes before a primitive's value on its line. A null label counts as empty.
void open_line(TextWriter &writer, uint32_t indent, const char *label, std::string_view type);

}  // namespace kelp
