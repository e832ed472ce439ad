#include "ospf_events/timeline.hpp"

#include <algorithm>
#include <string_view>

#include "ospf_decode/tlv.hpp"

namespace ospf_events {

using namespace ospf_decode;

namespace {

constexpr std::uint32_t last_sequence = 0x7fffffff;

// So many LSAs flushed with no more than this between two of them are a storm.
constexpr std::size_t storm_size = 10;
constexpr Time storm_gap = second;

constexpr std::size_t contents_kept = 8;
constexpr std::size_t packets_kept = 8;

std::uint32_t designation(const Interface &of) {
  return of.version == 2 ? of.address.as_v4() : of.router_id;
}

// Of an LSA without its age, sequence number and checksum; never 0.
std::uint64_t content_of(Bytes raw, std::uint8_t version) {
  std::uint64_t hash = 0xcbf29ce484222325;
  const auto add = [&](std::uint8_t octet) { hash = (hash ^ octet) * 0x100000001b3; };
  if (version == 2 && raw.size() > 2) add(raw[2]);
  for (std::size_t at = lsa_header_length; at < raw.size(); ++at) add(raw[at]);
  return hash | 1;
}

std::string plural(std::size_t count, const char *one, const char *many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string words(const std::vector<Difference> &differences) {
  std::string text;
  for (const Difference each : differences)
    text += (text.empty() ? "" : ", ") + std::string(ospf_events::name_of(each));
  return text;
}

std::string role_text(std::uint32_t number) { return number == 0 ? "none" : ipv4_text(number); }

bool is_router_lsa(std::uint8_t version, std::uint16_t type) {
  return type == (version == 2 ? std::uint16_t{lsa2_router} : std::uint16_t{lsa3_router});
}

bool is_grace_lsa(const LsdbKey &key) {
  return key.version == 2 ? key.type == lsa2_opaque_link && key.link_state_id >> 24 == opaque_grace
                          : key.type == lsa3_grace;
}

bool is_older(std::uint32_t sequence, std::uint32_t than) {
  return static_cast<std::int32_t>(sequence) < static_cast<std::int32_t>(than);
}

}  // namespace

Event Timeline::event(EventKind kind, const Packet &packet) const {
  Event event;
  event.time = packet.datagram.time;
  event.kind = kind;
  event.packet = {source_, packet.datagram.number};
  event.version = packet.version;
  event.instance_id = packet.instance_id;
  event.area = packet.area_id;
  return event;
}

Event Timeline::event_of(EventKind kind, const Packet &packet, const LsdbKey &key,
                         const LsaHeader &header) const {
  Event of = event(kind, packet);
  of.area = key.scope == Scope::area ? std::optional(key.domain)
            : key.scope == Scope::as ? std::nullopt
                                     : std::optional(packet.area_id);
  of.routers = {key.advertising_router};
  of.lsa = key;
  of.sequence = header.sequence;
  return of;
}

const std::vector<std::uint32_t> &Timeline::on_link(std::uint32_t interface) {
  if (generation_ != links_generation()) {
    links_ = links();
    by_address_.clear();
    for (std::uint32_t index = 0; index < interfaces().size(); ++index) {
      const Interface &of = interfaces()[index];
      if (of.version == 2 && !of.is_virtual) by_address_[of.address.as_v4()].push_back(index);
    }
    generation_ = links_generation();
  }
  return links_[link_of(interface)];
}

void Timeline::advance(Time now) {
  while ((!deadlines_.empty() && deadlines_.top().time < now) ||
         (!expiries_.empty() && expiries_.top().time < now)) {
    const bool is_timer =
        expiries_.empty() || (!deadlines_.empty() && deadlines_.top().time <= expiries_.top().time);
    if (is_timer) {
      const Deadline deadline = deadlines_.top();
      deadlines_.pop();
      lost_by_timer(deadline);
    } else {
      const Expiry expiry = expiries_.top();
      expiries_.pop();
      aged_out(expiry);
    }
  }
  if (!storm_.empty() && storm_.back().time + storm_gap < now) end_storm();
  if (!graces_.empty()) end_graces(now);
}

void Timeline::finish(std::optional<Time> now) {
  end_packet();
  now_ = now.value_or(last_time());
  advance(now_);
  end_storm();
}

void Timeline::watch(std::uint32_t of, std::uint32_t with) {
  deadlines_.push(
      {interfaces()[with].last_hello + interfaces()[of].hello.dead_interval * second, of, with});
}

void Timeline::lost_by_timer(const Deadline &deadline) {
  const Pair pair = std::minmax(deadline.of, deadline.with);
  if (!pairs_[pair].up) return;
  const Interface &of = interfaces()[deadline.of];
  const Interface &with = interfaces()[deadline.with];
  const Time due = with.last_hello + of.hello.dead_interval * second;
  if (due > deadline.time) {
    watch(deadline.of, deadline.with);
    return;
  }
  pairs_[pair].up = false;
  Event event;
  event.time = due;
  event.kind = EventKind::neighbor_down;
  event.version = of.version;
  event.instance_id = of.instance_id;
  event.area = of.area_id;
  event.routers = {with.router_id, of.router_id};
  event.where = ospf_events::name_of(with) + " - " + ospf_events::name_of(of);
  event.why = "dead_timer";
  event.text = "no hello for " + std::to_string(of.hello.dead_interval) + " s";
  const DifferenceSet &told = pairs_[pair].told;
  if (told.says_why()) event.text += "; they differ in " + words(told.list());
  tell(event);
}

void Timeline::aged_out(const Expiry &expiry) {
  const LsdbEntry *entry = lsdb().find(expiry.key);
  // Another instance may have come, whose age ends later.
  if (entry == nullptr || entry->flushed || !entry->gone_at(expiry.time) ||
      entry->received + (max_age - std::min(entry->header.age_seconds(), max_age)) * second !=
          expiry.time) {
    return;
  }
  tell_gone(*entry, expiry.time, "not refreshed for an hour");
}

// Routers may drop these without a word.
void Timeline::end_graces(Time now) {
  std::erase_if(graces_, [&](const LsdbKey &key) {
    const LsdbEntry *entry = lsdb().find(key);
    if (entry == nullptr || entry->gone_at(now)) return true;
    if (!grace_over(*entry, now)) return false;
    tell_gone(*entry, now, "the restart that it was for is over");
    return true;
  });
}

void Timeline::tell_gone(const LsdbEntry &entry, Time when, const char *why) {
  Event event;
  event.time = when;
  event.kind = EventKind::lsa_aged_out;
  event.version = entry.key.version;
  event.instance_id = entry.key.instance_id;
  if (entry.key.scope == Scope::area) event.area = entry.key.domain;
  if (entry.key.scope == Scope::link) {
    for (const Interface &of : interfaces()) {
      if (of.router_id == entry.key.advertising_router && of.version == entry.key.version) {
        event.area = of.area_id;
      }
    }
  }
  event.routers = {entry.key.advertising_router};
  event.lsa = entry.key;
  event.sequence = entry.header.sequence;
  event.text = why;
  tell(event);
}

void Timeline::on_packet(const Packet &packet) {
  end_packet();
  advance(packet.datagram.time);
  Network::on_packet(packet);
  if (packet.checksum_state == ChecksumState::bad) {
    Event bad = event(EventKind::bad_checksum, packet);
    bad.routers = {packet.router_id};
    bad.where = ipv4_text(packet.router_id) + "@" + ip_text(packet.datagram.source);
    bad.why = "packet";
    bad.text = "the checksum of the packet is wrong; routers drop it";
    tell(bad);
    return;
  }
  if (packet.type == PacketType::hello) return;
  if (packet.type != PacketType::database_description && unsettled_.contains(sending_interface())) {
    review(packet);
  }
}

void Timeline::on_hello(const Packet &packet, const Hello &hello) {
  // Network knows which of a router's interfaces it is only when it has taken the hello.
  std::map<std::uint32_t, Hello> before;
  const std::size_t known = interfaces().size();
  for (std::uint32_t index = 0; index < known; ++index) {
    const Interface &of = interfaces()[index];
    if (of.router_id == packet.router_id && of.address == packet.datagram.source) {
      before[index] = of.hello;
    }
  }
  Network::on_hello(packet, hello);
  const std::uint32_t sender = sending_interface();
  const Hello earlier = before.contains(sender) ? before[sender] : Hello{};
  see_election(packet, earlier);
  const bool changed = earlier.neighbors != hello.neighbors ||
                       earlier.designated_router != hello.designated_router ||
                       earlier.backup_designated_router != hello.backup_designated_router ||
                       interfaces()[sender].hello_count == 1;
  if (changed || unsettled_.contains(sender)) review(packet);
  for (const std::uint32_t with : std::vector(on_link(sender))) {
    if (with != sender) compare(packet, with);
  }
  const Interface &of = interfaces()[sender];
  if (of.version != 2 || of.is_virtual) return;
  const std::uint32_t mask = hello.network_mask == 0 ? ~0u : hello.network_mask;
  const std::uint32_t first = of.address.as_v4() & mask;
  std::vector<std::uint32_t> others;
  for (auto at = by_address_.lower_bound(first);
       at != by_address_.end() && at->first <= (first | ~mask); ++at) {
    others.insert(others.end(), at->second.begin(), at->second.end());
  }
  for (const std::uint32_t with : others) {
    if (with != sender && (link_of(with) != link_of(sender))) compare(packet, with);
  }
}

void Timeline::on_database_description(const Packet &packet, const DatabaseDescription &dd) {
  Network::on_database_description(packet, dd);
  // One that is sent again tells ages of the time when it was sent first.
  const bool is_again = !described_.insert({sending_interface(), dd.sequence}).second &&
                        described_[sending_interface()] == dd.sequence;
  described_[sending_interface()] = dd.sequence;
  for (const LsaHeader &header : dd.headers) {
    if (!is_again && is_router_lsa(packet.version, header.type) &&
        header.advertising_router == packet.router_id) {
      see_restart(packet, header);
    }
  }
  // Of another area it is for a virtual link between the same addresses.
  if (packet.area_id != interfaces()[sending_interface()].area_id) return;
  review(packet, (dd.flags & description_init) != 0);
  for (const std::uint32_t with : std::vector(on_link(sending_interface()))) {
    if (with != sending_interface()) compare(packet, with);
  }
}

void Timeline::review(const Packet &packet, bool begins_exchange) {
  const std::uint32_t sender = sending_interface();
  const std::vector<std::uint32_t> members = on_link(sender);
  unsettled_.erase(sender);
  for (const std::uint32_t with : members) {
    if (with == sender || interfaces()[with].router_id == interfaces()[sender].router_id) continue;
    const bool is_to = packet.datagram.destination.is_multicast() ||
                       packet.datagram.destination == interfaces()[with].address;
    review(packet, with, members.size() == 2, begins_exchange && is_to);
  }
}

void Timeline::review(const Packet &packet, std::uint32_t with, bool only_two,
                      bool begins_exchange) {
  const Time now = packet.datagram.time;
  const std::uint32_t sender = sending_interface();
  const Neighbor there = neighbor(sender, with, only_two, now);
  const Neighbor back = neighbor(with, sender, only_two, now);
  const NeighborState low = std::min(there.state, back.state);
  PairState &state = pairs_[std::minmax(sender, with)];
  if (low < NeighborState::full && low >= NeighborState::two_way) {
    unsettled_.insert(sender);
    unsettled_.insert(with);
  }
  if (state.up) {
    // Requests that follow do not end an adjacency.
    if (low > NeighborState::init && !begins_exchange) return;
    state.up = false;
    tell_down(packet, with, low > NeighborState::init);
    return;
  }
  if (low != NeighborState::full) return;
  state.up = true;
  const Interface &a = interfaces()[sender];
  const Interface &b = interfaces()[with];
  Event up = event(EventKind::neighbor_up, packet);
  up.routers = {a.router_id, b.router_id};
  up.where = ospf_events::name_of(a) + " - " + ospf_events::name_of(b);
  // Descriptions over a virtual link look like those of the link below it.
  const bool exchanged = a.is_virtual || (!a.exchanges.empty() && !b.exchanges.empty());
  up.why = exchanged ? "exchange" : "seen";
  up.text = exchanged ? "their databases are one" : "they were neighbours before the capture";
  tell(up);
  watch(sender, with);
  watch(with, sender);
}

void Timeline::tell_down(const Packet &packet, std::uint32_t with, bool is_heard) {
  const std::uint32_t sender = sending_interface();
  const Interface &a = interfaces()[sender];
  const Interface &b = interfaces()[with];
  Event down = event(EventKind::neighbor_down, packet);
  down.routers = {a.router_id, b.router_id};
  down.where = ospf_events::name_of(a) + " - " + ospf_events::name_of(b);
  if (is_heard) {
    down.why = "exchange_again";
    down.text = ipv4_text(a.router_id) + " begins to exchange databases anew";
  } else {
    down.why = "one_way";
    down.text = ipv4_text(a.router_id) + " no longer hears " + ipv4_text(b.router_id);
    if (a.hello.neighbors.empty()) down.text += ", nor anybody there";
  }
  const DifferenceSet differ = differences(*this, sender, with, packet.datagram.time);
  if (differ.says_why()) {
    down.why = "mismatch";
    down.text += "; they differ in " + words(differ.list());
  }
  tell(down);
}

void Timeline::compare(const Packet &packet, std::uint32_t with) {
  const std::uint32_t sender = sending_interface();
  const Pair pair = std::minmax(sender, with);
  const DifferenceSet now = differences(*this, sender, with, packet.datagram.time);
  const auto known = pairs_.find(pair);
  if (now.empty() && known == pairs_.end()) return;
  DifferenceSet &told = pairs_[pair].told;
  if (now == told) return;
  for (const Difference each : now.list()) {
    if (told.has(each)) continue;
    const Interface &a = interfaces()[sender];
    const Interface &b = interfaces()[with];
    Event mismatch = event(EventKind::mismatch, packet);
    mismatch.routers = {a.router_id, b.router_id};
    mismatch.where = ospf_events::name_of(a) + " - " + ospf_events::name_of(b);
    mismatch.why = ospf_events::name_of(each);
    const std::string value = value_text(a, each);
    const std::string other = value_text(b, each);
    if (each == Difference::one_way) {
      mismatch.text = "only one of the two hears the other";
    } else if (each == Difference::unheard) {
      mismatch.text = "neither hears the other, though their hellos agree";
    } else if (each == Difference::router_id || each == Difference::address) {
      mismatch.text = "both have " + value;
    } else if (value == other) {
      mismatch.text = "both have " + value + ", and neither takes the other's";
    } else {
      mismatch.text = value + " and " + other;
    }
    tell(mismatch);
  }
  told = now;
}

void Timeline::see_election(const Packet &packet, const Hello &before) {
  const Interface &of = interfaces()[sending_interface()];
  if (of.is_virtual) return;
  const std::uint32_t link = link_of(sending_interface());
  const std::uint32_t own = designation(of);
  const auto see = [&](std::uint32_t now, std::uint32_t then,
                       std::map<std::uint32_t, std::uint32_t> &known, const char *role,
                       const char *name) {
    if (now != own || then == own || known[link] == own) return;
    Event change = event(EventKind::dr_change, packet);
    change.routers = {of.router_id};
    change.where = ospf_events::name_of(of);
    change.why = role;
    change.text = std::string(name) + " is " + role_text(own) + ", was " + role_text(known[link]);
    known[link] = own;
    tell(change);
  };
  see(of.hello.designated_router, before.designated_router, designated_, "designated",
      "the designated router");
  see(of.hello.backup_designated_router, before.backup_designated_router, backup_, "backup",
      "the backup");
}

void Timeline::see_restart(const Packet &packet, const LsaHeader &own) {
  LsdbKey key;
  key.version = packet.version;
  key.instance_id = packet.instance_id;
  key.scope = Scope::area;
  key.type = own.type;
  key.domain = packet.area_id;
  key.link_state_id = own.link_state_id;
  key.advertising_router = own.advertising_router;
  const LsdbEntry *held = lsdb().find(key);
  const Time now = packet.datagram.time;
  if (held == nullptr || held->gone_at(now) || !is_older(own.sequence, held->header.sequence)) {
    return;
  }
  // A description may be of a moment ago, when there was no newer one yet.
  constexpr Time slack = 2 * second;
  const Time made = now - own.age_seconds() * second;
  if (made <= held->received - held->header.age_seconds() * second + slack) return;
  const Interface &of = interfaces()[sending_interface()];
  const auto last = restarted_.find(packet.router_id);
  const Time quiet = 4 * std::max<Time>(of.hello.dead_interval, 1) * second;
  const bool told = last != restarted_.end() && now - last->second < quiet;
  restarted_[packet.router_id] = now;
  if (told) return;
  Event restart = event_of(EventKind::restart, packet, key, own);
  restart.where = ospf_events::name_of(of);
  restart.text = "its router-LSA begins anew, behind that which the others have";
  tell(restart);
}

void Timeline::bad_lsa(const Packet &packet, const LsaHeader &header) {
  LsdbKey key;
  key.version = packet.version;
  key.instance_id = packet.instance_id;
  key.scope = scope_of(packet.version, header.type).value_or(Scope::area);
  key.type = header.type;
  key.domain = key.scope == Scope::area ? packet.area_id : 0;
  key.link_state_id = header.link_state_id;
  key.advertising_router = header.advertising_router;
  Event bad = event_of(EventKind::bad_checksum, packet, key, header);
  bad.routers.push_back(packet.router_id);
  bad.where = ipv4_text(packet.router_id) + "@" + ip_text(packet.datagram.source);
  bad.why = "lsa";
  bad.text = "the checksum of the LSA is wrong; routers drop it";
  tell(bad);
}

void Timeline::on_lsa_v2(const Packet &packet, const LsaV2 &lsa) {
  if (!lsa.checksum_ok) bad_lsa(packet, lsa.header);
  before_.neighbors.clear();
  for (const RouterLinkV2 &link : lsa.router.links) {
    if (link.type != router_link_stub) before_.neighbors.insert(link.link_id);
  }
  Network::on_lsa_v2(packet, lsa);
}

void Timeline::on_lsa_v3(const Packet &packet, const LsaV3 &lsa) {
  if (!lsa.checksum_ok) bad_lsa(packet, lsa.header);
  before_.neighbors.clear();
  for (const RouterLinkV3 &link : lsa.router.links) {
    before_.neighbors.insert(link.neighbor_router_id);
  }
  Network::on_lsa_v3(packet, lsa);
}

void Timeline::on_offer(const Packet &packet, const LsdbKey &key, const LsaHeader &header,
                        Bytes raw) {
  const LsdbEntry *held = lsdb().find(key);
  const bool is_there = held != nullptr && !held->gone_at(packet.datagram.time);
  before_.held = is_there;
  before_.sequence = held == nullptr ? 0 : held->header.sequence;
  before_.content = content_of(raw, key.version);
  before_.same_content = is_there && before_.content == content_of(Bytes(held->raw), key.version);
  before_.was_requested =
      is_requested({header.type, header.link_state_id, header.advertising_router});
}

void Timeline::on_offered(const Packet &packet, const LsdbKey &key, const LsaHeader &header,
                          Lsdb::Outcome outcome) {
  see_sending(packet, key, header, outcome == Lsdb::Outcome::duplicate);
  switch (outcome) {
    case Lsdb::Outcome::duplicate:
      return;
    case Lsdb::Outcome::older:
      if (is_router_lsa(key.version, key.type) && key.advertising_router == packet.router_id) {
        see_restart(packet, header);
      }
      return;
    case Lsdb::Outcome::flushed: {
      if (!before_.held) return;
      const Event flush = event_of(EventKind::lsa_flushed, packet, key, header);
      tell(flush);
      see_flush(flush);
      remember(packet, key, 0);
      return;
    }
    case Lsdb::Outcome::installed:
    case Lsdb::Outcome::replaced:
      break;
  }
  if (!header.do_not_age()) {
    expiries_.push(
        {packet.datagram.time + (max_age - std::min(header.age_seconds(), max_age)) * second, key});
  }
  const EventKind kind = !before_.held          ? EventKind::lsa_new
                         : before_.same_content ? EventKind::lsa_refreshed
                                                : EventKind::lsa_changed;
  tell(event_of(kind, packet, key, header));
  if (before_.sequence == last_sequence) {
    Event wrap = event_of(EventKind::sequence_wrap, packet, key, header);
    wrap.text = "its sequence numbers begin anew, behind the last one";
    tell(wrap);
  }
  if (kind != EventKind::lsa_refreshed) {
    if (is_grace_lsa(key)) {
      Event grace = event_of(EventKind::graceful_restart, packet, key, header);
      grace.text = "it asks its neighbours to wait while it restarts";
      tell(grace);
      graces_.push_back(key);
    } else if (is_router_lsa(key.version, key.type)) {
      end_graces(packet.datagram.time);
    }
    remember(packet, key, before_.content);
  }
}

void Timeline::see_flush(const Event &flush) {
  if (!storm_.empty() && storm_.back().time + storm_gap < flush.time) end_storm();
  storm_.push_back(flush);
}

void Timeline::end_storm() {
  const std::vector<Event> flushed = std::move(storm_);
  storm_.clear();
  if (flushed.size() < storm_size) return;
  Event storm = flushed.front();
  storm.kind = EventKind::max_age_storm;
  storm.lsa.reset();
  storm.area.reset();
  storm.sequence = 0;
  std::set<std::uint32_t> routers;
  for (const Event &each : flushed) routers.insert(each.routers.begin(), each.routers.end());
  storm.routers.assign(routers.begin(), routers.end());
  storm.text = plural(flushed.size(), "LSA", "LSAs") + " of " +
               plural(routers.size(), "router", "routers") + " flushed within " +
               std::to_string((flushed.back().time - flushed.front().time) / (second / 1000)) +
               " ms";
  tell(storm);
}

// What one packet sends again is one event.
void Timeline::end_packet() {
  if (sent_again_.empty()) return;
  Event event = std::move(sent_again_.front());
  const std::size_t others = sent_again_.size() - 1;
  sent_again_.clear();
  event.text = "sent again";
  if (others != 0) event.text += " with " + plural(others, "other", "others");
  tell(event);
}

void Timeline::see_sending(const Packet &packet, const LsdbKey &key, const LsaHeader &header,
                           bool is_duplicate) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const std::uint64_t part :
       {std::uint64_t{sending_interface()}, std::uint64_t{key.domain},
        std::uint64_t{key.type} << 8 | key.version, std::uint64_t{key.link_state_id},
        std::uint64_t{key.advertising_router}}) {
    hash = (hash ^ part) * 0x9e3779b97f4a7c15;
    hash ^= hash >> 29;
  }
  // What a capture has twice was sent once.
  constexpr Time shortest = second / 5;
  Sent &sent = sent_[hash];
  const IpAddress &to = packet.datagram.destination;
  const Time now = packet.datagram.time;
  const bool again = sent.sequence == header.sequence && sent.checksum == header.checksum &&
                     (sent.to.is_multicast() || sent.to == to);
  if (again && is_duplicate && !before_.was_requested && now - sent.time >= shortest) {
    Event event = event_of(EventKind::retransmission, packet, key, header);
    event.routers = {packet.router_id};
    event.where = ospf_events::name_of(interfaces()[sending_interface()]) + " - " + ip_text(to);
    sent_again_.push_back(std::move(event));
  }
  sent = {header.sequence, header.checksum, to, now};
}

void Timeline::remember(const Packet &packet, const LsdbKey &key, std::uint64_t content) {
  LsaHistory &history = histories_[key];
  const std::vector<std::uint64_t> &known = history.contents;
  const bool returned =
      known.size() > 1 && std::find(known.begin(), known.end() - 1, content) != known.end() - 1;
  if (history.changes++ == 0) history.first = packet.datagram.time;
  history.last = packet.datagram.time;
  if (history.packets.size() < packets_kept) {
    history.packets.push_back({source_, packet.datagram.number});
  }
  if (is_router_lsa(key.version, key.type) && content != 0) {
    std::set<std::uint32_t> &last = router_links_[key];
    if (returned) {
      const bool shares = std::ranges::any_of(
          last, [&](std::uint32_t each) { return before_.neighbors.contains(each); });
      history.nothing_shared = !shares && !last.empty() && !before_.neighbors.empty();
    }
    last = before_.neighbors;
  }
  if (returned) ++history.returns;
  history.contents.push_back(content);
  if (history.contents.size() > contents_kept) history.contents.erase(history.contents.begin());
}

}  // namespace ospf_events
