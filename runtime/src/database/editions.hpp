// Programs of several editions of a schema on one store. A type that they share has one copy of its
// record, with the variants of the newest: a newer program adjusts an object that an older one
// made, and an older one reads a newer object as far as it knows. A type whose editions cannot
// share objects is its first maker's, and refused to the others, with the tables of its objects.
//
// Looked at when a lock is given; what it found holds as long as a lock does.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "kelp/embed.h"
#include "parts/type_table.hpp"
#include "store/store.hpp"

namespace kelp {

class Editions {
 public:
  // Holds the types of every module in the process against those that the store has, when either
  // have changed since. Throws bad_alloc.
  void look(const TypeTable &types, const store::Head &head);

  // What was found may hold no more.
  void forget();

  // What the last look went by: another number when it has found something else.
  std::uint64_t seen() const { return seen_.load(std::memory_order_relaxed); }

  // Has the store know the variants that this process's types have more of, and state-tracked
  // objects, before the writer makes any. 0, or the code that error got.
  std::int32_t join(kelp_handle *handle, kelp_error *error);

  // Whether other editions than this process's have come to the store.
  bool is_mixed() const { return mixed_; }

  // Bytes for a new object of so many, with room for the fields of others.
  std::size_t room_for(std::size_t size) const {
    const std::size_t at = size / kStep;
    return size % kStep == 0 && at < rooms_.size() && rooms_[at] > size ? rooms_[at] : size;
  }

  // Why this process may not touch objects or tables of the type with that md5; null when it may.
  const char *refusal(const std::uint8_t *md5) const;

  // This process's record of a type of the store that has other editions; null when it has none.
  kelp_type_record *own_record(const kelp_type_record *copy) const;

  // A write of this process was announced. What it would lose of fields that it does not know, the
  // store is told to refuse.
  void hear_write(store::Store &store, const void *address, std::size_t length);
  // Whether it needs to hear of any.
  bool hears_writes() const { return !newer_.empty(); }
  // The same before a commit, of objects that were overwritten by others.
  void check_moved(store::Store &store);

  // For the time of a fork, when nobody else may be inside.
  std::mutex &mutex() { return mutex_; }

 private:
  static constexpr std::size_t kStep = 8;

  struct Known {
    kelp_type_record *own;
    kelp_type_record_copy *copy;
  };
  struct Refused {
    std::uint8_t md5[16];
    std::string reason;
  };
  // A structure with more variants in the store than this process knows.
  struct Newer {
    const kelp_type_record *copy;
    const kelp_type_record *own;
  };

  void clear();
  void note(kelp_type_record &own, const std::vector<kelp_type_record_copy *> &copies);
  void refuse(const kelp_type_record &own, const kelp_type_record_copy &copy);
  const Newer *newer(const void *address) const;
  bool owns_unknown(const store::Store &store, const store::Block &block) const;

  std::mutex mutex_;
  std::atomic<std::uint64_t> seen_{UINT64_MAX};
  std::vector<std::uint32_t> rooms_;  // by size in steps
  std::vector<Known> known_;
  std::vector<Refused> refused_;
  std::vector<Newer> newer_;
  bool mixed_ = false;
  bool ahead_ = false;                  // some types have more variants here
  std::vector<const void *> moved_to_;  // objects of newer_ that this transaction overwrote
};

// Whether the handle's database refuses the type to this process; the error word says so then.
bool refuses(kelp_handle *handle, const std::uint8_t *md5, std::uint32_t *err);

// Holds the types of every module in the process against those of the same md5 that the store has.
// 0, or 22 with the first type that differs.
std::int32_t check_schema(const kelp_database &database, kelp_error *error);

}  // namespace kelp
