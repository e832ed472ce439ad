#include "tree_exchange/stream_format.hpp"

#include <zlib.h>

#include <algorithm>
#include <cstdio>

namespace tree_exchange {

namespace {

constexpr std::size_t luid_size = 16;
constexpr std::size_t row_frame_size = 43;  // message header and identity of a record image

std::string hex(ByteView bytes) {
  std::string text;
  char pair[4];
  for (const std::uint8_t byte : bytes) {
    std::snprintf(pair, sizeof pair, text.empty() ? "%02x" : " %02x", byte);
    text += pair;
  }
  return text;
}

std::string known_kinds() { return "T (table), R (row), C (close) or E (end)"; }

// The lengths that a body of the kind can have.
struct Lengths {
  std::uint32_t least;
  std::uint32_t most;
};

std::optional<Lengths> lengths_of(std::uint8_t kind) {
  switch (static_cast<FrameKind>(kind)) {
    case FrameKind::table:
      return Lengths{1 + luid_size, 1 + 255 + luid_size};
    case FrameKind::row:
      return Lengths{row_frame_size, largest_row};
    case FrameKind::close:
      return Lengths{4, 4};
    case FrameKind::end:
      return Lengths{12, 12};
  }
  return std::nullopt;
}

std::string lengths_text(const Lengths &lengths) {
  if (lengths.least == lengths.most) return std::to_string(lengths.least);
  return std::to_string(lengths.least) + " to " + std::to_string(lengths.most);
}

}  // namespace

std::uint64_t number_at(ByteView bytes, std::size_t at, std::size_t size) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < size; ++i) number = number << 8 | bytes[at + i];
  return number;
}

void append_number(Bytes &bytes, std::uint64_t number, std::size_t size) {
  while (size-- != 0) bytes.push_back(static_cast<std::uint8_t>(number >> (8 * size)));
}

bool is_stream(ByteView bytes) {
  return bytes.size() >= stream_magic.size() &&
         std::equal(stream_magic.begin(), stream_magic.end(), bytes.begin());
}

bool header_is_whole(ByteView bytes) {
  const std::size_t magic = std::min(bytes.size(), stream_magic.size());
  if (!std::equal(stream_magic.begin(), stream_magic.begin() + magic, bytes.begin())) {
    throw StreamFault(0, hex(bytes.first(magic)), hex(stream_magic) + ", where a tree begins");
  }
  if (bytes.size() >= 10 && number_at(bytes, 8, 2) != stream_version) {
    throw StreamFault(8, "format version " + std::to_string(number_at(bytes, 8, 2)),
                      "version " + std::to_string(stream_version));
  }
  if (bytes.size() >= 11 && bytes[10] != stream_module.size()) {
    throw StreamFault(10, "a module name of " + std::to_string(bytes[10]) + " bytes",
                      std::string(stream_module));
  }
  if (bytes.size() < stream_header_size) return false;
  const std::string module(bytes.begin() + 11, bytes.begin() + stream_header_size);
  if (module != stream_module) {
    throw StreamFault(11, "the module \"" + module + "\"", std::string(stream_module));
  }
  return true;
}

std::optional<Frame> first_frame(ByteView bytes, std::uint64_t offset) {
  if (bytes.empty()) return std::nullopt;
  const auto lengths = lengths_of(bytes[0]);
  if (!lengths)
    throw StreamFault(offset, "a frame of the kind " + hex(bytes.first(1)), known_kinds());
  if (bytes.size() < frame_head_size) return std::nullopt;
  const auto length = static_cast<std::uint32_t>(number_at(bytes, 1, 4));
  if (length < lengths->least || length > lengths->most) {
    throw StreamFault(
        offset + 1, "a length of " + std::to_string(length),
        lengths_text(*lengths) + " for a frame of the kind " + static_cast<char>(bytes[0]));
  }
  if (bytes.size() - frame_head_size < length) return std::nullopt;
  const Frame frame{static_cast<FrameKind>(bytes[0]), offset, bytes.first(frame_head_size + length),
                    bytes.subspan(frame_head_size, length)};
  if (frame.kind == FrameKind::table && frame.body[0] != length - 1 - luid_size) {
    throw StreamFault(offset + frame_head_size,
                      "a name of " + std::to_string(frame.body[0]) + " bytes",
                      std::to_string(length - 1 - luid_size) + ", which the frame holds");
  }
  return frame;
}

TableMark table_mark(const Frame &frame) {
  const std::size_t length = frame.body[0];
  return {{reinterpret_cast<const char *>(frame.body.data()) + 1, length},
          frame.body.subspan(1 + length, luid_size)};
}

std::uint32_t checksum(std::uint32_t sum, ByteView bytes) {
  return static_cast<std::uint32_t>(crc32_z(sum, bytes.data(), bytes.size()));
}

std::string offset_text(std::uint64_t offset) {
  char text[40];
  std::snprintf(text, sizeof text, "offset 0x%llx", static_cast<unsigned long long>(offset));
  return text;
}

std::string number_text(std::uint64_t number, const char *one, const char *many) {
  return std::to_string(number) + " " + (number == 1 ? one : many);
}

}  // namespace tree_exchange
