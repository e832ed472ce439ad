#include "ospf_decode/reassembly.hpp"

#include <algorithm>

namespace ospf_decode {
namespace {

constexpr std::size_t largest_datagram = 65535;

}  // namespace

void Reassembler::give_up(Waiting::iterator which, ErrorKind why) {
  errors_.add(why, which->second.first_packet);
  octets_ -= which->second.data.size();
  waiting_.erase(which);
}

void Reassembler::expire(Time now) {
  for (auto it = waiting_.begin(); it != waiting_.end();) {
    const auto here = it++;
    if (now - here->second.started > limits_.timeout) give_up(here, ErrorKind::fragments_missing);
  }
}

void Reassembler::make_room(std::size_t octets) {
  while (!waiting_.empty() &&
         (waiting_.size() >= limits_.max_datagrams || octets_ + octets > limits_.max_octets)) {
    const auto oldest = std::min_element(
        waiting_.begin(), waiting_.end(),
        [](const auto &a, const auto &b) { return a.second.first_packet < b.second.first_packet; });
    give_up(oldest, ErrorKind::fragment_limit);
  }
}

bool Reassembler::add(IpPacket &packet, std::uint32_t vlan, Time time, std::uint64_t number) {
  expire(time);
  const std::size_t begin = packet.fragment_offset;
  const std::size_t end = begin + packet.payload.size();
  const Key key{packet.source,      packet.destination, vlan,
                packet.fragment_id, packet.protocol,    packet.ttl};
  // All but the last fragment are multiples of eight octets; one that the capture cut cannot help.
  if (packet.payload.empty() || end > largest_datagram || packet.cut ||
      (packet.more_fragments && packet.payload.size() % 8 != 0)) {
    if (!packet.cut) errors_.add(ErrorKind::bad_fragment, number);
    return false;
  }

  auto found = waiting_.find(key);
  const std::size_t held = found == waiting_.end() ? 0 : found->second.data.size();
  if (found == waiting_.end()) {
    make_room(end);
    found = waiting_.try_emplace(key).first;
    found->second.started = time;
    found->second.first_packet = number;
  } else if (end > held && octets_ + (end - held) > limits_.max_octets) {
    give_up(found, ErrorKind::fragment_limit);
    return false;
  }
  Datagram &datagram = found->second;

  const auto after = std::find_if(datagram.pieces.begin(), datagram.pieces.end(),
                                  [&](const Piece &piece) { return piece.end > begin; });
  const bool overlaps = after != datagram.pieces.end() && after->begin < end;
  if (overlaps && after->begin == begin && after->end == end) return false;  // seen before
  const bool beyond_end = datagram.total != 0 && (end > datagram.total || !packet.more_fragments);
  const bool end_too_low = !packet.more_fragments && datagram.data.size() > end;
  if (overlaps || beyond_end || end_too_low) {
    give_up(found, ErrorKind::bad_fragment);
    return false;
  }

  datagram.pieces.insert(after, Piece{begin, end});
  if (datagram.data.size() < end) {
    octets_ += end - datagram.data.size();
    datagram.data.resize(end);
  }
  std::ranges::copy(packet.payload, std::span(datagram.data).subspan(begin).begin());
  if (!packet.more_fragments) datagram.total = end;

  // The pieces are disjoint, so they cover the datagram when their lengths add up to its own.
  std::size_t covered = 0;
  for (const Piece &piece : datagram.pieces) covered += piece.end - piece.begin;
  if (datagram.total == 0 || covered != datagram.total) return false;

  complete_ = std::move(datagram.data);
  octets_ -= complete_.size();
  waiting_.erase(found);
  packet.payload = complete_;
  packet.is_fragment = false;
  packet.more_fragments = false;
  packet.fragment_offset = 0;
  return true;
}

void Reassembler::finish() {
  while (!waiting_.empty()) give_up(waiting_.begin(), ErrorKind::fragments_missing);
}

}  // namespace ospf_decode
