#include "ospf_decode/lsdb.hpp"

#include <algorithm>
#include <tuple>

namespace ospf_decode {
namespace {

// How far the origination that an age tells may be off: ages are whole seconds, and each hop adds
// one though it takes none.
constexpr Time age_slack = 3 * second;

auto order(const LsdbKey &key) {
  return std::tie(key.version, key.instance_id, key.scope, key.domain, key.type, key.link_state_id,
                  key.advertising_router);
}

}  // namespace

bool operator<(const LsdbKey &a, const LsdbKey &b) { return order(a) < order(b); }

std::uint16_t LsdbEntry::age_at(Time now) const {
  const std::uint16_t then = std::min(header.age_seconds(), max_age);
  if (header.do_not_age() || now <= received) return then;
  const Time age = then + (now - received) / second;
  return static_cast<std::uint16_t>(std::min<Time>(age, max_age));
}

std::size_t Lsdb::Hash::operator()(const LsdbKey &key) const {
  constexpr std::uint64_t odd = 0x9e3779b97f4a7c15;
  const std::uint64_t first = std::uint64_t{key.link_state_id} << 32 | key.advertising_router;
  const std::uint64_t second_word = std::uint64_t{key.domain} << 32 |
                                    std::uint64_t{key.type} << 16 |
                                    static_cast<std::uint64_t>(key.scope) << 12 |
                                    std::uint64_t{key.instance_id} << 4 | key.version;
  std::uint64_t mixed = (first ^ first >> 29) * odd;
  mixed = (mixed ^ second_word ^ mixed >> 32) * odd;
  return static_cast<std::size_t>(mixed ^ mixed >> 31);
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
  const auto [it, is_new] = entries_.try_emplace(key);
  LsdbEntry &entry = it->second;
  if (is_new) {
    entry.key = key;
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
  const auto it = entries_.find(key);
  return it == entries_.end() ? nullptr : &it->second;
}

std::vector<const LsdbEntry *> Lsdb::sorted() const {
  std::vector<const LsdbEntry *> out;
  out.reserve(entries_.size());
  for (const auto &[key, entry] : entries_) out.push_back(&entry);
  std::sort(out.begin(), out.end(),
            [](const LsdbEntry *a, const LsdbEntry *b) { return a->key < b->key; });
  return out;
}

void Lsdb::join_links(std::uint32_t from, std::uint32_t to) {
  const auto moved = std::stable_partition(link_keys_.begin(), link_keys_.end(),
                                           [&](const LsdbKey &key) { return key.domain != from; });
  const std::vector<LsdbKey> keys(moved, link_keys_.end());
  link_keys_.erase(moved, link_keys_.end());
  for (const LsdbKey &key : keys) {
    auto node = entries_.extract(key);
    LsdbEntry &entry = node.mapped();
    node.key().domain = to;
    entry.key.domain = to;
    const LsdbKey joined = entry.key;
    const auto there = entries_.find(joined);
    if (there == entries_.end()) {
      entries_.insert(std::move(node));
      link_keys_.push_back(joined);
    } else if (replaces(there->second, entry.header, entry.received)) {
      entry.instances += there->second.instances;
      there->second = std::move(entry);
    } else {
      there->second.instances += entry.instances;
    }
  }
}

}  // namespace ospf_decode
