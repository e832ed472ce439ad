// One input of the fuzz target: what it means, for the target and for the replay of its corpus.
//
// The lowest bit of the first octet says that the checksum at the end is put right first, the other
// bits how long the pieces are that the reader is fed. The rest is a tree stream. What is taken
// must leave as a stream that is taken again and leaves the same, and what is refused must leave
// nothing.
#pragma once

#include <algorithm>
#include <string>

#include "ospf_tables/tree.hpp"
#include "tree_exchange/annotation.hpp"
#include "tree_exchange/tree_reader.hpp"
#include "tree_exchange/tree_writer.hpp"

namespace tree_exchange {

inline void put_checksum_right(Bytes &stream) {
  if (stream.size() < 4) return;
  const std::uint32_t sum = checksum(0, ByteView(stream).first(stream.size() - 4));
  stream.resize(stream.size() - 4);
  append_number(stream, sum, 4);
}

// False when the stream is refused.
inline bool read_stream_in_pieces(ospf_tables::Session &session, ByteView stream,
                                  std::size_t piece) {
  try {
    TreeReader reader(session, "input");
    while (!stream.empty()) {
      const ByteView now = stream.first(std::min(piece, stream.size()));
      reader.feed(now);
      stream = stream.subspan(now.size());
    }
    reader.finish();
    return true;
  } catch (const ospf_tables::InputError &) {
    return false;
  }
}

inline Bytes written_stream(ospf_tables::Session &session) {
  Bytes stream;
  write_tree(session,
             [&](ByteView bytes) { stream.insert(stream.end(), bytes.begin(), bytes.end()); });
  return stream;
}

// What is wrong with how the input was taken; empty for nothing.
inline std::string run_fuzz_input(ByteView input) {
  if (input.empty()) return "";
  Bytes stream(input.begin() + 1, input.end());
  if ((input[0] & 1) != 0) put_checksum_right(stream);
  const std::size_t piece = input[0] < 2 ? SIZE_MAX : input[0] / 2u;
  ospf_tables::Session session;
  const bool taken = read_stream_in_pieces(session, stream, piece);
  std::size_t shown = 0;
  const bool sound = annotate_stream(stream, [&](std::string_view) { ++shown; }).empty();
  if (sound != taken) return "the dump and the reader judge differently";
  if (!taken) {
    return ospf_tables::root_table(session, false) == nullptr
               ? ""
               : "a stream that was refused left a tree";
  }
  const Bytes once = written_stream(session);
  ospf_tables::Session again;
  if (!read_stream_in_pieces(again, once, SIZE_MAX)) return "what was written is refused";
  return written_stream(again) == once ? "" : "the tree changed on its way";
}

}  // namespace tree_exchange
