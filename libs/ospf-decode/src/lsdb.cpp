#include "ospf_decode/lsdb.hpp"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace ospf_decode {
namespace {

// How far the origination that an age tells may be off: ages are whole seconds, and each hop adds
// one though it takes none.
constexpr Time age_slack = 3 * second;

// A key's members in the order of listings.
using Packed = std::tuple<std::uint64_t, std::uint64_t, std::uint32_t>;

Packed packed_key(const LsdbKey &key) {
  return {std::uint64_t{key.version} << 48 | std::uint64_t{key.instance_id} << 40 |
              static_cast<std::uint64_t>(key.scope) << 32 | key.domain,
          std::uint64_t{key.type} << 32 | key.link_state_id, key.advertising_router};
}

std::uint32_t hash_of(const LsdbKey &key) {
  constexpr std::uint64_t odd = 0x9e3779b97f4a7c15;
  const std::uint64_t first = std::uint64_t{key.link_state_id} << 32 | key.advertising_router;
  const std::uint64_t second_word = std::uint64_t{key.domain} << 32 |
                                    std::uint64_t{key.type} << 16 |
                                    static_cast<std::uint64_t>(key.scope) << 12 |
                                    std::uint64_t{key.instance_id} << 4 | key.version;
  std::uint64_t mixed = (first ^ first >> 29) * odd;
  mixed = (mixed ^ second_word ^ mixed >> 32) * odd;
  return static_cast<std::uint32_t>(mixed >> 32);
}

}  // namespace

bool operator<(const LsdbKey &a, const LsdbKey &b) { return packed_key(a) < packed_key(b); }

std::uint16_t LsdbEntry::age_at(Time now) const {
  const std::uint16_t then = std::min(header.age_seconds(), max_age);
  if (header.do_not_age() || now <= received) return then;
  const Time age = then + (now - received) / second;
  return static_cast<std::uint16_t>(std::min<Time>(age, max_age));
}

bool Lsdb::replaces(const LsdbEntry &held, const LsaHeader &header, Time time) {
  const std::uint16_t age = header.age_seconds();
  const int order = compare_instances(header, age, held.header, held.age_at(time));
  if (order > 0) return true;
  if (!held.gone_at(time) || age >= max_age) return false;
  // When the held instance went: when it was flushed, or when its age ran out.
  const Time gone =
      held.flushed ? held.received : held.received + (max_age - held.header.age_seconds()) * second;
  const Time originated = header.do_not_age() ? time : time - age * second;
  return originated + age_slack >= gone;
}

Lsdb::Outcome Lsdb::offer(const LsdbKey &key, const LsaHeader &header, Bytes raw, bool complete,
                          Time time, std::uint64_t packet) {
  const std::uint32_t number = number_of(key);
  const bool is_new = number == 0;
  LsdbEntry &entry = is_new ? entries_.emplace_back() : entries_[number - 1];
  if (is_new) {
    entry.key = key;
    enter(key, static_cast<std::uint32_t>(entries_.size()));
    ++size_;
    if (key.scope == Scope::link) link_keys_.push_back(key);
  } else if (!replaces(entry, header, time)) {
    const bool same =
        header.sequence == entry.header.sequence && header.checksum == entry.header.checksum;
    return same ? Outcome::duplicate : Outcome::older;
  }
  entry.header = header;
  entry.raw.assign(raw.begin(), raw.end());
  entry.received = time;
  entry.packet = packet;
  entry.complete = complete;
  entry.flushed = header.age_seconds() >= max_age;
  ++entry.instances;
  if (entry.flushed) return Outcome::flushed;
  return is_new ? Outcome::installed : Outcome::replaced;
}

const LsdbEntry *Lsdb::find(const LsdbKey &key) const {
  const std::uint32_t number = number_of(key);
  return number == 0 ? nullptr : &entries_[number - 1];
}

std::size_t Lsdb::search(const LsdbKey &key, std::uint32_t hash) const {
  const std::size_t last = places_.size() - 1;
  for (std::size_t at = hash & last;; at = (at + 1) & last) {
    const Place &place = places_[at];
    if (place.entry == 0) return at;
    if (place.hash != hash) continue;
    const LsdbEntry &entry = entries_[place.entry - 1];
    if (entry.key == key && entry.instances != 0) return at;
  }
}

std::uint32_t Lsdb::number_of(const LsdbKey &key) const {
  return places_.empty() ? 0 : places_[search(key, hash_of(key))].entry;
}

void Lsdb::enter(const LsdbKey &key, std::uint32_t number) {
  make_room();
  const std::uint32_t hash = hash_of(key);
  places_[search(key, hash)] = {hash, number};
  ++taken_;
}

// Has a place free for one more entry. What was a key once is passed over in searches, until the
// table grows; where there never was any, no entry is read for it.
void Lsdb::make_room() {
  if (4 * (taken_ + 1) <= 3 * places_.size()) return;
  const std::size_t wider = std::max<std::size_t>(2 * places_.size(), 64);
  const std::vector<Place> before = std::exchange(places_, std::vector<Place>(wider));
  taken_ = 0;
  for (const Place &place : before) {
    if (place.entry == 0) continue;
    if (keys_changed_) {
      const LsdbEntry &entry = entries_[place.entry - 1];
      if (entry.instances == 0 || hash_of(entry.key) != place.hash) continue;
    }
    std::size_t at = place.hash & (wider - 1);
    while (places_[at].entry != 0) at = (at + 1) & (wider - 1);
    places_[at] = place;
    ++taken_;
  }
}

// By places and types, of which there are few; in each of them LSAs mostly came in order.
std::vector<const LsdbEntry *> Lsdb::sorted() const {
  using Named = std::pair<std::uint64_t, const LsdbEntry *>;
  std::map<std::pair<std::uint64_t, std::uint32_t>, std::vector<Named>> groups;
  for_each([&](const LsdbEntry &entry) {
    const auto &[place, name, router] = packed_key(entry.key);
    groups[{place, static_cast<std::uint32_t>(name >> 32)}].emplace_back(name << 32 | router,
                                                                         &entry);
  });
  std::vector<const LsdbEntry *> out;
  out.reserve(size_);
  for (auto &[key, group] : groups) {
    const auto is_before = [](const Named &a, const Named &b) { return a.first < b.first; };
    if (!std::is_sorted(group.begin(), group.end(), is_before)) {
      std::sort(group.begin(), group.end(), is_before);
    }
    for (const auto &[name, entry] : group) out.push_back(entry);
  }
  return out;
}

void Lsdb::join_links(std::uint32_t from, std::uint32_t to) {
  const auto moved = std::stable_partition(link_keys_.begin(), link_keys_.end(),
                                           [&](const LsdbKey &key) { return key.domain != from; });
  const std::vector<LsdbKey> keys(moved, link_keys_.end());
  link_keys_.erase(moved, link_keys_.end());
  keys_changed_ |= !keys.empty();
  for (const LsdbKey &key : keys) {
    const std::uint32_t number = number_of(key);
    LsdbEntry &entry = entries_[number - 1];
    LsdbKey joined = key;
    joined.domain = to;
    const std::uint32_t there = number_of(joined);
    if (there == 0) {
      entry.key = joined;
      enter(joined, number);
      link_keys_.push_back(joined);
      continue;
    }
    LsdbEntry &other = entries_[there - 1];
    const std::uint32_t instances = other.instances + entry.instances;
    if (replaces(other, entry.header, entry.received)) {
      other = std::move(entry);
      other.key = joined;
    }
    other.instances = instances;
    entry = {};
    --size_;
  }
}

}  // namespace ospf_decode
