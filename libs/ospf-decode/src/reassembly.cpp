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

Reassembler::Waiting::iterator Reassembler::place_of(const Key &key, std::size_t end, Time time,
                                                     std::uint64_t number) {
  const auto found = waiting_.find(key);
  if (found == waiting_.end()) {
    make_room(end);
    const auto place = waiting_.try_emplace(key).first;
    place->second.started = time;
    place->second.first_packet = number;
    return place;
  }
  const std::size_t held = found->second.data.size();
  if (end > held && octets_ + (end - held) > limits_.max_octets) {
    give_up(found, ErrorKind::fragment_limit);
    return waiting_.end();
  }
  return found;
}

Reassembler::Fit Reassembler::fit(const Datagram &datagram, Piece piece, bool is_last) {
  const auto after = std::ranges::find_if(
      datagram.pieces, [&](const Piece &each) { return each.end > piece.begin; });
  const bool overlaps = after != datagram.pieces.end() && after->begin < piece.end;
  if (overlaps && after->begin == piece.begin && after->end == piece.end) return Fit::seen_before;
  const bool beyond_end = datagram.total != 0 && (piece.end > datagram.total || is_last);
  const bool end_too_low = is_last && datagram.data.size() > piece.end;
  return overlaps || beyond_end || end_too_low ? Fit::contradicts : Fit::is_new;
}

void Reassembler::enter(Datagram &datagram, Piece piece, bool is_last, Bytes payload) {
  datagram.pieces.insert(
      std::ranges::find_if(datagram.pieces,
                           [&](const Piece &each) { return each.end > piece.begin; }),
      piece);
  if (datagram.data.size() < piece.end) {
    octets_ += piece.end - datagram.data.size();
    datagram.data.resize(piece.end);
  }
  std::ranges::copy(payload, std::span(datagram.data).subspan(piece.begin).begin());
  if (is_last) datagram.total = piece.end;
}

// The pieces are disjoint, so they cover the datagram when their lengths add up to its own.
bool Reassembler::is_whole(const Datagram &datagram) {
  std::size_t covered = 0;
  for (const Piece &piece : datagram.pieces) covered += piece.end - piece.begin;
  return datagram.total != 0 && covered == datagram.total;
}

bool Reassembler::add(IpPacket &packet, std::uint32_t vlan, Time time, std::uint64_t number) {
  expire(time);
  const Piece piece{packet.fragment_offset, packet.fragment_offset + packet.payload.size()};
  const bool is_last = !packet.more_fragments;
  // All but the last fragment are multiples of eight octets; one that the capture cut cannot help.
  if (packet.cut) return false;
  if (packet.payload.empty() || piece.end > largest_datagram ||
      (!is_last && packet.payload.size() % 8 != 0)) {
    errors_.add(ErrorKind::bad_fragment, number);
    return false;
  }

  const auto place = place_of(
      {packet.source, packet.destination, vlan, packet.fragment_id, packet.protocol, packet.ttl},
      piece.end, time, number);
  if (place == waiting_.end()) return false;
  Datagram &datagram = place->second;
  switch (fit(datagram, piece, is_last)) {
    case Fit::seen_before:
      return false;
    case Fit::contradicts:
      give_up(place, ErrorKind::bad_fragment);
      return false;
    case Fit::is_new:
      enter(datagram, piece, is_last, packet.payload);
  }
  if (!is_whole(datagram)) return false;

  complete_ = std::move(datagram.data);
  octets_ -= complete_.size();
  waiting_.erase(place);
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
