// Reads a tree stream as its bytes come, from a file or from a socket: each frame is checked, each
// row's image by the checker that stands in front of the library's reader, and the tree is built
// aside. The session's tree changes in finish() alone, and only when all of the stream was sound.
#pragma once

#include <cstdint>
#include <string>

#include "ospf_tables/input_error.hpp"
#include "tree_exchange/stream_format.hpp"
#include "tree_exchange/tree_builder.hpp"

namespace tree_exchange {

// What is wrong with a stream, and where.
class StreamError : public ospf_tables::InputError {
 public:
  StreamError(const std::string &source, std::uint64_t offset, const std::string &text)
      : ospf_tables::InputError(source, offset_text(offset) + ": " + text), offset_(offset) {}
  std::uint64_t offset() const { return offset_; }

 private:
  std::uint64_t offset_;
};

class TreeReader {
 public:
  // source: the file or connection, for messages.
  TreeReader(ospf_tables::Session &session, std::string source,
             std::uint64_t limit = largest_stream)
      : source_(std::move(source)), limit_(limit), builder_(session), session_(session) {}

  // Takes the next bytes. Throws StreamError for the first that are wrong; nothing may be fed then.
  void feed(ByteView bytes);

  // The end of the bytes: gives what was read to the session's tree. Throws StreamError when the
  // stream is not whole. The number of rows.
  std::uint64_t finish();

 private:
  std::size_t take(ByteView bytes);
  void take_frame(const Frame &frame);
  void take_row(const Frame &frame);
  void take_end(const Frame &frame);
  const TableRule &table_of(const Frame &frame) const;

  std::string source_;
  std::uint64_t limit_;
  TreeBuilder builder_;
  ospf_tables::Session &session_;
  Bytes waiting_;             // bytes of a frame that is not whole yet
  std::uint64_t offset_ = 0;  // of the first of them
  std::uint32_t sum_ = 0;
  bool header_read_ = false;
  bool ended_ = false;
};

}  // namespace tree_exchange
