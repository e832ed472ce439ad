// The format of a tree stream: its numbers, and how bytes are taken apart into frames. The writer,
// the reader and the annotated dump stand on this; docs/wire-format.md holds the tables. What the
// frames mean together is the reader's to judge.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tree_exchange/table_rules.hpp"

namespace tree_exchange {

inline constexpr std::array<std::uint8_t, 8> stream_magic = {0x89, 'O',  'H',  'T',
                                                             '\r', '\n', 0x1a, '\n'};
inline constexpr std::uint16_t stream_version = 1;
inline constexpr std::string_view stream_module = "ospf_harbor_oper";
// Magic, version, length of the module's name, the name.
inline constexpr std::size_t stream_header_size = 8 + 2 + 1 + stream_module.size();

enum class FrameKind : std::uint8_t { table = 'T', row = 'R', close = 'C', end = 'E' };

inline constexpr std::size_t frame_head_size = 5;  // kind and length
inline constexpr std::uint32_t largest_row = 16u << 20;
inline constexpr std::uint64_t largest_stream = std::uint64_t{256} << 20;

// What is wrong with the bytes at an offset of the stream.
class StreamFault : public std::runtime_error {
 public:
  StreamFault(std::uint64_t offset_, std::string found_, std::string expected_)
      : std::runtime_error("found " + found_ + ", expected " + expected_),
        offset(offset_),
        found(std::move(found_)),
        expected(std::move(expected_)) {}
  const std::uint64_t offset;
  const std::string found;
  const std::string expected;
};

struct Frame {
  FrameKind kind;
  std::uint64_t offset;  // of its first byte in the stream
  ByteView bytes;        // all of it
  ByteView body;
};

// Numbers in network byte order.
std::uint64_t number_at(ByteView bytes, std::size_t at, std::size_t size);
void append_number(Bytes &bytes, std::uint64_t number, std::size_t size);

// True when `bytes` begin as a stream does; false also when they are too few to tell.
bool is_stream(ByteView bytes);

// True when the header is there, false when more bytes are needed. Throws StreamFault at the first
// byte that no header has.
bool header_is_whole(ByteView bytes);

// The frame at the start of `bytes`, which stand at `offset` of the stream; none when more bytes
// are needed. Throws StreamFault for a kind or length that no frame has, before its body is there.
std::optional<Frame> first_frame(ByteView bytes, std::uint64_t offset);

// What a frame that opens a table says.
struct TableMark {
  std::string_view reference;
  ByteView luid;
};
TableMark table_mark(const Frame &frame);

// The checksum over more bytes, started with 0.
std::uint32_t checksum(std::uint32_t sum, ByteView bytes);

std::string offset_text(std::uint64_t offset);  // "offset 0x2c"
std::string number_text(std::uint64_t number, const char *one, const char *many);

}  // namespace tree_exchange
