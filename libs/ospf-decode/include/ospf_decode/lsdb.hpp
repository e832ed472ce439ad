// The link-state databases that a capture's updates build.
//
// One Lsdb holds all of them: a key names version, instance, scope and where in that scope (area,
// or the number of a link), then type, link-state ID and advertising router. Which instance stays
// is RFC 2328's section 13.1, with the ages that the instances have at the moment of comparing.
//
// An LSA that is flushed (taken over at MaxAge) or that outlived MaxAge in the capture's clock
// stays as an entry, `flushed` or past its age. Routers forget it, so an instance that was
// originated after the flush replaces it even if its sequence number is lower; a straggling copy of
// an older instance does not, as its age tells that it was originated before.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "ospf_decode/address.hpp"
#include "ospf_decode/lsa_header.hpp"

namespace ospf_decode {

struct LsdbKey {
  std::uint8_t version = 0;
  std::uint8_t instance_id = 0;
  Scope scope = Scope::area;
  std::uint16_t type = 0;
  std::uint32_t domain = 0;  // area ID, link number, or 0
  std::uint32_t link_state_id = 0;
  std::uint32_t advertising_router = 0;
  bool operator==(const LsdbKey &) const = default;
};

// The order of listings: version, instance, scope, domain, type, link-state ID, router.
bool operator<(const LsdbKey &a, const LsdbKey &b);

struct LsdbEntry {
  LsdbKey key;
  LsaHeader header;
  std::vector<std::uint8_t> raw;  // header and body; decode_lsa_v2 or _v3 gives the typed record
  Time received = 0;              // when this instance was first seen
  std::uint64_t packet = 0;       // and in which packet
  std::uint32_t instances = 0;    // how many have been here, this one included
  bool complete = false;          // the decoder had typed fields for all of it
  bool flushed = false;           // this instance came at MaxAge

  // The age that the LSA has reached, at most MaxAge. DoNotAge holds it still.
  std::uint16_t age_at(Time now) const;
  // Whether routers hold it no more.
  bool gone_at(Time now) const { return flushed || age_at(now) >= max_age; }
};

class Lsdb {
 public:
  enum class Outcome { installed, replaced, flushed, duplicate, older };

  Outcome offer(const LsdbKey &key, const LsaHeader &header, Bytes raw, bool complete, Time time,
                std::uint64_t packet);

  const LsdbEntry *find(const LsdbKey &key) const;
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  // In no order.
  template <typename Act>
  void for_each(Act act) const {
    for (const LsdbEntry &entry : entries_) {
      if (entry.instances != 0) act(entry);
    }
  }
  // All entries in the order of keys; valid until the next offer.
  std::vector<const LsdbEntry *> sorted() const;

  // Two link numbers of a version have turned out to be one link: `from` goes up in `to`.
  void join_links(std::uint32_t from, std::uint32_t to);

 private:
  // A place of the table by which entries are found.
  struct Place {
    std::uint32_t hash = 0;
    std::uint32_t entry = 0;  // its number, from 1 on; 0 was never taken
  };
  static bool replaces(const LsdbEntry &held, const LsaHeader &header, Time time);
  // The number of the key's place, or of the free one where it belongs.
  std::size_t search(const LsdbKey &key, std::uint32_t hash) const;
  // The number of the key's entry, 0 for none.
  std::uint32_t number_of(const LsdbKey &key) const;
  void enter(const LsdbKey &key, std::uint32_t number);
  void make_room();

  std::deque<LsdbEntry> entries_;   // those that went up in others have no instances
  std::size_t size_ = 0;            // without them
  std::vector<Place> places_;       // a power of two of them, at most three quarters taken
  std::size_t taken_ = 0;           // by entries, and by what was one's key once
  bool keys_changed_ = false;       // whether any was one's key once
  std::vector<LsdbKey> link_keys_;  // of every entry of link scope
};

}  // namespace ospf_decode
