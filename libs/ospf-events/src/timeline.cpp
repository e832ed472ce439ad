// Time that passes, and neighbours: how they come and go, what they differ in, whom they elect.
#include "ospf_events/timeline.hpp"

#include <algorithm>

namespace ospf_events {

using namespace ospf_decode;

namespace {

std::uint32_t designation(const Interface &of) {
  return of.version == 2 ? of.address.as_v4() : of.router_id;
}

std::string words(const std::vector<Difference> &differences) {
  std::string text;
  for (const Difference each : differences)
    text += (text.empty() ? "" : ", ") + std::string(ospf_events::name_of(each));
  return text;
}

std::string role_text(std::uint32_t number) { return number == 0 ? "none" : ipv4_text(number); }

}  // namespace

Event Timeline::event(EventKind kind, const Packet &packet) const {
  Event event;
  event.time = packet.datagram.time;
  event.kind = kind;
  event.packet = {capture(), packet.datagram.number};
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

const Facing &Timeline::facing() {
  if (!facing_ || generation_ != links_generation()) facing_.emplace(*this);
  generation_ = links_generation();
  return *facing_;
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
  end_storm_before(now);
  if (!graces_.empty()) end_graces(now);
}

void Timeline::finish(std::optional<Time> now) {
  now_ = now.value_or(last_time());
  pass(now_);
  end_storm();
}

void Timeline::pass(Time now) {
  end_packet();
  advance(now);
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

void Timeline::on_packet(const Packet &packet) {
  pass(packet.datagram.time);
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
  for (const std::uint32_t with : facing().with(sender)) compare(packet, with);
}

void Timeline::on_database_description(const Packet &packet, const DatabaseDescription &dd) {
  Network::on_database_description(packet, dd);
  // One that is sent again tells ages of the time when it was sent first.
  const bool is_again = !described_.insert({sending_interface(), dd.sequence}).second &&
                        described_[sending_interface()] == dd.sequence;
  described_[sending_interface()] = dd.sequence;
  for (const LsaHeader &header : dd.headers) {
    if (!is_again) see_restart(packet, header);
  }
  // Of another area it is for a virtual link between the same addresses.
  if (packet.area_id != interfaces()[sending_interface()].area_id) return;
  review(packet, (dd.flags & description_init) != 0);
  for (const std::uint32_t with : facing().with(sending_interface())) compare(packet, with);
}

bool Timeline::asks_to_wait(const Interface &of) const {
  return std::ranges::any_of(graces_, [&](const LsdbKey &key) {
    return key.version == of.version && key.advertising_router == of.router_id;
  });
}

void Timeline::review(const Packet &packet, bool begins_exchange) {
  const std::uint32_t sender = sending_interface();
  const std::vector<std::uint32_t> members = facing().on_link_of(sender);
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
    // Requests that follow do not end an adjacency, nor does a router that restarts and has asked
    // its neighbours to wait.
    if (!begins_exchange) {
      if (low > NeighborState::init) return;
      if (asks_to_wait(interfaces()[sender]) || asks_to_wait(interfaces()[with])) {
        unsettled_.insert(sender);
        return;
      }
    }
    state.up = false;
    tell_down(packet, with, begins_exchange);
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

void Timeline::tell_down(const Packet &packet, std::uint32_t with, bool begins_exchange) {
  const std::uint32_t sender = sending_interface();
  const Interface &a = interfaces()[sender];
  const Interface &b = interfaces()[with];
  Event down = event(EventKind::neighbor_down, packet);
  down.routers = {a.router_id, b.router_id};
  down.where = ospf_events::name_of(a) + " - " + ospf_events::name_of(b);
  if (begins_exchange) {
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

}  // namespace ospf_events
