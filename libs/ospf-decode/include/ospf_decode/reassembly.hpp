// Puts IP fragments together, in bounded memory.
//
// A datagram waits for at most `timeout` of capture time, at most `max_datagrams` wait, and they
// hold at most `max_octets`; what is given up is counted. A fragment seen twice is taken once; any
// other overlap gives the datagram up. FrameDecoder is the only caller.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "ospf_decode/ip.hpp"

namespace ospf_decode {

class Reassembler {
 public:
  struct Limits {
    Time timeout = 60 * second;
    std::size_t max_datagrams = 256;
    std::size_t max_octets = 4u << 20;
  };

  explicit Reassembler(ErrorCounts &errors) : Reassembler(errors, Limits{}) {}
  Reassembler(ErrorCounts &errors, Limits limits) : errors_(errors), limits_(limits) {}

  // True when `packet` (a fragment) completes its datagram; `packet` then is the whole, and its
  // payload stays valid until the next call.
  bool add(IpPacket &packet, std::uint32_t vlan, Time time, std::uint64_t number);
  // Counts what still waits.
  void finish();

  std::size_t waiting() const { return waiting_.size(); }
  std::size_t octets() const { return octets_; }

 private:
  struct Key {
    IpAddress source, destination;
    std::uint32_t vlan, id;
    std::uint8_t protocol, ttl;
    auto operator<=>(const Key &) const = default;
  };
  struct Piece {
    std::size_t begin, end;
  };
  struct Datagram {
    std::vector<std::uint8_t> data;
    std::vector<Piece> pieces;  // disjoint, in order
    std::size_t total = 0;      // 0 until the last fragment was seen
    Time started = 0;
    std::uint64_t first_packet = 0;
  };
  using Waiting = std::map<Key, Datagram>;

  void give_up(Waiting::iterator which, ErrorKind why);
  void expire(Time now);
  void make_room(std::size_t octets);
  // Where the fragments of a datagram wait, up to octet `end`; the end of the list when that is
  // more than may wait, and the datagram is given up.
  Waiting::iterator place_of(const Key &key, std::size_t end, Time time, std::uint64_t number);
  // How a piece goes with those that are there.
  enum class Fit { is_new, seen_before, contradicts };
  static Fit fit(const Datagram &datagram, Piece piece, bool is_last);
  void enter(Datagram &datagram, Piece piece, bool is_last, Bytes payload);
  static bool is_whole(const Datagram &datagram);

  ErrorCounts &errors_;
  Limits limits_;
  Waiting waiting_;
  std::size_t octets_ = 0;
  std::vector<std::uint8_t> complete_;
};

}  // namespace ospf_decode
