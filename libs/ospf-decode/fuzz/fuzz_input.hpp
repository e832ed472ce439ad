// One input of the fuzz target: what it means, for the target and for the replay of its corpus.
//
// The first octet chooses the link type, and by its highest bit whether checksums are repaired
// first. The rest is a row of frames, each behind two octets of captured length and one that tells
// how much was cut off and how much time went by.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "ospf_decode/cursor.hpp"
#include "ospf_decode/frame_decoder.hpp"
#include "ospf_decode/link_layer.hpp"
#include "ospf_decode/network.hpp"
#include "repair.hpp"

namespace ospf_decode {

inline void decode_fuzz_input(Bytes input) {
  constexpr std::array link_types = {1, 101, 113, 276, 0, 108, 147};
  Cursor cursor(input);
  const std::uint8_t choice = cursor.u8();
  Network network;
  FrameDecoder decoder(network);
  Frame frame;
  frame.link_type = link_types[(choice & 0x7fu) % link_types.size()];
  const bool repair = (choice & 0x80) != 0;
  std::vector<std::uint8_t> repaired;
  while (!cursor.at_end()) {
    const std::size_t length = cursor.u16();
    const std::uint8_t how = cursor.u8();
    frame.data = cursor.bytes(std::min(length, cursor.remaining()));
    if (repair && (frame.link_type == link_ethernet || frame.link_type == link_raw)) {
      repaired.assign(frame.data.begin(), frame.data.end());
      repair_checksums(repaired, frame.link_type == link_ethernet ? 14 : 0);
      frame.data = repaired;
    }
    frame.wire_length = static_cast<std::uint32_t>(frame.data.size()) + (how & 0x0fu);
    frame.time += (how >> 4) * 7 * second;
    ++frame.number;
    decoder.decode(frame);
  }
  decoder.finish();
  // What is worked out from the facts must stand any facts.
  for (const Neighbor &neighbor : network.neighbors(network.last_time())) {
    if (neighbor.interface >= network.interfaces().size()) __builtin_trap();
  }
  for (std::uint32_t i = 0; i < network.interfaces().size(); ++i) {
    (void)network.interface_state(i);
    (void)network.interface_cost(i);
  }
  for (const LsdbEntry *entry : network.lsdb().sorted()) {
    // An LSA that was loaded decodes again, with its checksum right.
    if (entry->raw.size() != entry->header.length) __builtin_trap();
    (void)network.grace_over(*entry, network.last_time());
  }
}

}  // namespace ospf_decode
