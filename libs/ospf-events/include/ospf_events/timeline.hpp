// What happens in a network while packets are heard: a Network that tells each change at once.
//
// - An adjacency is up when each of its two routers has the other Full, as Network judges. It is
//   down when one of them is silent for the other's dead interval, no longer lists it (but while it
//   asks to wait for its restart), or begins the exchange of databases anew. What both differ in is
//   told once, when it is first seen.
// - An LSA is new, changed (its content is another), refreshed (its content is the same), flushed
//   or aged out, as grace-LSAs are when the restart is over. An LSA that is flushed and was not
//   there before is nothing new.
// - A router has restarted when it tells of a router-LSA of its own that it made later than the one
//   that the network has, with a lower sequence number.
// - An LSA is sent again when a router sends the instance that it sent on that link before, and
//   nobody there has asked for it.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <queue>
#include <set>
#include <unordered_map>

#include "ospf_decode/network.hpp"
#include "ospf_events/differences.hpp"
#include "ospf_events/event.hpp"

namespace ospf_events {

// How the content of an LSA went back and forth.
struct LsaHistory {
  std::uint32_t changes = 0;  // of content, and comings and goings
  std::uint32_t returns = 0;  // to a content, or to its absence, that it had had before the last
  ospf_decode::Time first = 0;
  ospf_decode::Time last = 0;
  std::vector<PacketName> packets;  // of the first changes
  // Of a router-LSA: contents that alternate share no neighbour.
  bool nothing_shared = false;
  std::vector<std::uint64_t> contents;  // the last ones, 0 for none
};

class Timeline : public ospf_decode::Network {
 public:
  using Sink = std::function<void(const Event &)>;

  explicit Timeline(Sink sink) : sink_(std::move(sink)) {}

  // Tells what ends by time alone, up to a time at which no earlier packet can come any more: where
  // packets are heard as they are sent, whenever none is there.
  void pass(ospf_decode::Time now);
  // To be called behind the last packet, with the time that things stand at if it is later.
  void finish(std::optional<ospf_decode::Time> now = std::nullopt);
  // That time, or the last packet's.
  ospf_decode::Time now() const { return std::max(now_, last_time()); }

  const std::map<ospf_decode::LsdbKey, LsaHistory> &histories() const { return histories_; }

  void on_packet(const ospf_decode::Packet &packet) override;
  void on_hello(const ospf_decode::Packet &packet, const ospf_decode::Hello &hello) override;
  void on_database_description(const ospf_decode::Packet &packet,
                               const ospf_decode::DatabaseDescription &dd) override;
  void on_lsa_v2(const ospf_decode::Packet &packet, const ospf_decode::LsaV2 &lsa) override;
  void on_lsa_v3(const ospf_decode::Packet &packet, const ospf_decode::LsaV3 &lsa) override;

 protected:
  void on_offer(const ospf_decode::Packet &packet, const ospf_decode::LsdbKey &key,
                const ospf_decode::LsaHeader &header, ospf_decode::Bytes raw) override;
  void on_offered(const ospf_decode::Packet &packet, const ospf_decode::LsdbKey &key,
                  const ospf_decode::LsaHeader &header,
                  ospf_decode::Lsdb::Outcome outcome) override;

 private:
  using Pair = std::pair<std::uint32_t, std::uint32_t>;  // the lower interface first
  struct PairState {
    bool up = false;
    DifferenceSet told;
  };
  struct Deadline {
    ospf_decode::Time time = 0;
    std::uint32_t of = 0;
    std::uint32_t with = 0;
    bool operator>(const Deadline &other) const { return time > other.time; }
  };
  struct Expiry {
    ospf_decode::Time time = 0;
    ospf_decode::LsdbKey key;
    bool operator>(const Expiry &other) const { return time > other.time; }
  };
  // What was sent last of an LSA by an interface.
  struct Sent {
    std::uint32_t sequence = 0;
    std::uint16_t checksum = 0;
    ospf_decode::IpAddress to;
    ospf_decode::Time time = 0;
  };
  // What the databases held of the LSA that is offered.
  struct Before {
    bool held = false;
    bool same_content = false;
    bool was_requested = false;
    std::uint32_t sequence = 0;
    std::uint16_t age = 0;
    std::uint64_t content = 0;  // that is offered
    std::set<std::uint32_t> neighbors;
  };

  template <typename T>
  using Soonest = std::priority_queue<T, std::vector<T>, std::greater<>>;

  Event event(EventKind kind, const ospf_decode::Packet &packet) const;
  Event event_of(EventKind kind, const ospf_decode::Packet &packet, const ospf_decode::LsdbKey &key,
                 const ospf_decode::LsaHeader &header) const;
  void tell(const Event &event) { sink_(event); }

  const Facing &facing();
  void advance(ospf_decode::Time now);
  void review(const ospf_decode::Packet &packet, bool begins_exchange = false);
  void review(const ospf_decode::Packet &packet, std::uint32_t with, bool only_two,
              bool begins_exchange);
  bool asks_to_wait(const ospf_decode::Interface &of) const;
  void tell_down(const ospf_decode::Packet &packet, std::uint32_t with, bool begins_exchange);
  void compare(const ospf_decode::Packet &packet, std::uint32_t with);
  void watch(std::uint32_t of, std::uint32_t with);
  void lost_by_timer(const Deadline &deadline);
  void aged_out(const Expiry &expiry);
  void end_graces(ospf_decode::Time now);
  void tell_gone(const ospf_decode::LsdbEntry &entry, ospf_decode::Time when, const char *why);
  void see_election(const ospf_decode::Packet &packet, const ospf_decode::Hello &before);
  void see_restart(const ospf_decode::Packet &packet, const ospf_decode::LsaHeader &own);
  void see_flush(const Event &flush);
  void end_storm_before(ospf_decode::Time now);
  void end_storm();
  void end_packet();
  void see_sending(const ospf_decode::Packet &packet, const ospf_decode::LsdbKey &key,
                   const ospf_decode::LsaHeader &header, bool is_duplicate);
  void remember(const ospf_decode::Packet &packet, const ospf_decode::LsdbKey &key,
                std::uint64_t content);
  void bad_lsa(const ospf_decode::Packet &packet, const ospf_decode::LsaHeader &header);

  Sink sink_;
  ospf_decode::Time now_ = 0;
  std::map<Pair, PairState> pairs_;
  std::set<std::uint32_t> unsettled_;  // interfaces that have a neighbour on its way up
  Soonest<Deadline> deadlines_;
  Soonest<Expiry> expiries_;
  std::map<std::uint32_t, std::uint32_t> designated_;  // by link
  std::map<std::uint32_t, std::uint32_t> backup_;
  std::map<std::uint32_t, ospf_decode::Time> restarted_;  // by router
  std::map<std::uint32_t, std::uint32_t> described_;      // the last number, by interface
  std::unordered_map<std::uint64_t, Sent> sent_;
  std::map<ospf_decode::LsdbKey, LsaHistory> histories_;
  std::map<ospf_decode::LsdbKey, std::set<std::uint32_t>> router_links_;
  std::vector<ospf_decode::LsdbKey> graces_;  // that are there
  Before before_;
  std::vector<Event> storm_;
  std::vector<Event> sent_again_;  // of the packet at hand

  std::uint64_t generation_ = 0;
  std::optional<Facing> facing_;
};

}  // namespace ospf_events
