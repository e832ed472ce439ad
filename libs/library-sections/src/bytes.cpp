// Files, hexadecimal digits and the cursor.
#include "library_sections/bytes.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "library_sections/error.hpp"

namespace library_sections {

std::vector<std::uint8_t> read_file(const std::string &path, const PieceCheck &check) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(path.c_str(), "rbe"),
                                                              &std::fclose);
  if (file == nullptr) throw Error("cannot open " + path + ": " + std::strerror(errno));
  std::vector<std::uint8_t> bytes;
  std::uint8_t piece[64 * 1024];
  while (const std::size_t got = std::fread(piece, 1, sizeof piece, file.get())) {
    bytes.insert(bytes.end(), piece, piece + got);
    if (check) check(bytes);
  }
  if (std::ferror(file.get()) != 0) {
    throw Error("cannot read " + path + ": " + std::strerror(errno));
  }
  return bytes;
}

std::string hex(Bytes bytes) {
  static constexpr char digits[] = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<std::uint8_t>(c);
    if (byte >= ' ' && byte < 0x7f) {
      result += c;
    } else if (c == '\n') {
      result += "\\n";
    } else if (c == '\r') {
      result += "\\r";
    } else if (c == '\t') {
      result += "\\t";
    } else {
      result += "\\x" + hex({&byte, 1});
    }
  }
  return result;
}

std::string_view text_of(Bytes bytes) {
  return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

Cursor::Cursor(std::string where, Bytes bytes, std::uint64_t at)
    : where_(std::move(where)), bytes_(bytes), at_(at) {}

Bytes Cursor::take(std::uint64_t count, const char *what) {
  if (count > left()) {
    throw Error(where_, at_, what, std::to_string(left()) + " bytes left",
                std::to_string(count) + " (the file is cut or damaged)");
  }
  const Bytes taken = bytes_.subspan(at_, count);
  at_ += count;
  return taken;
}

std::uint64_t Cursor::number(unsigned width, const char *what) {
  std::uint64_t value = 0;
  unsigned shift = 0;
  for (const std::uint8_t byte : take(width, what)) {
    value |= std::uint64_t{byte} << shift;
    shift += 8;
  }
  return value;
}

}  // namespace library_sections
