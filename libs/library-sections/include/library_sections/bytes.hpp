// Bytes that nobody has vouched for, and the one way to take numbers and texts out of them: a
// cursor that knows where it stands and throws Error instead of leaving its range. Little-endian.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace library_sections {

using Bytes = std::span<const std::uint8_t>;

// All bytes of a file; Error for one that cannot be read, naming the path. `check` is called with
// what has been read so far, piece by piece, and throws when that is enough to refuse the file.
using PieceCheck = std::function<void(Bytes read)>;
std::vector<std::uint8_t> read_file(const std::string &path, const PieceCheck &check = {});

// Two lower-case hexadecimal digits for each byte.
std::string hex(Bytes bytes);

// A text that came out of a file, fit for a terminal: what is not printable ASCII is shown as \n,
// \r, \t or \x and two digits.
std::string escaped(std::string_view text);

// The bytes as a text, as they are.
std::string_view text_of(Bytes bytes);

class Cursor {
 public:
  // where names the range in errors.
  Cursor(std::string where, Bytes bytes, std::uint64_t at = 0);

  // what names the wanted thing in errors.
  Bytes take(std::uint64_t count, const char *what);
  std::uint16_t u16(const char *what) { return static_cast<std::uint16_t>(number(2, what)); }
  std::uint32_t u32(const char *what) { return static_cast<std::uint32_t>(number(4, what)); }
  std::uint64_t u64(const char *what) { return number(8, what); }

  std::uint64_t at() const { return at_; }
  std::uint64_t left() const { return at_ < bytes_.size() ? bytes_.size() - at_ : 0; }
  const std::string &where() const { return where_; }

 private:
  std::uint64_t number(unsigned width, const char *what);

  std::string where_;
  Bytes bytes_;
  std::uint64_t at_;
};

}  // namespace library_sections
