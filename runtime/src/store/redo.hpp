// What a store of durability `power` keeps beside the file that is mapped: an image of an earlier
// state (NAME-image), and a log of the pages that later commits changed (NAME-redo), synced at
// each. After a restart of the machine the two count and the mapped file does not, since the system
// may have written any of its pages in any order.
//
// A record counts when its checksum is right, when it carries the sequence behind that of the state
// so far, and when it names the record before it: so neither half a record nor one of an earlier
// round through the file is taken.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "store/layout.hpp"
#include "store/system.hpp"

namespace kelp::store {

// Where the log goes on: behind the record of this number, which only that record has.
struct RedoPlace {
  std::uint64_t offset = 0;
  std::uint64_t number = 0;
};

class Redo {
 public:
  std::int32_t open(const std::string &path, mode_t mode, const std::uint8_t (&id)[16],
                    kelp_error *error);
  bool is_open() const { return static_cast<bool>(file_); }

  // How long a record of so many pages is.
  static std::uint64_t record_bytes(std::size_t pages);

  // Writes the record of a commit and syncs it. at is where the last one ended; next is the number
  // of this one. page_at gives the bytes of the page at an offset of the store.
  std::int32_t append(const RedoPlace &at, std::uint64_t next, std::uint64_t sequence,
                      const std::vector<std::uint64_t> &pages,
                      const std::function<const std::byte *(std::uint64_t)> &page_at,
                      kelp_error *error);

  // Whatever stands there is no record any more, since what it says was undone.
  std::int32_t cut(std::uint64_t offset, kelp_error *error);

  // Calls apply(offset, page) with the pages of each record behind the state of that sequence,
  // which went on at `at`, or at the start when a round begins there. A record is whole before the
  // first of its pages is given.
  std::int32_t replay(RedoPlace at, std::uint64_t sequence,
                      const std::function<std::int32_t(std::uint64_t, const std::byte *)> &apply,
                      kelp_error *error);

 private:
  bool read(std::uint64_t offset, void *bytes, std::size_t length) const;
  bool is_record(const RedoPlace &at, std::uint64_t sequence, RedoRecord *record) const;
  std::int32_t fail_with(std::int32_t code, kelp_error *error) const;

  std::string path_;
  File file_;
  std::uint64_t size_ = 0;
};

std::int32_t write_at(int file, std::uint64_t offset, const void *bytes, std::size_t length);

}  // namespace kelp::store
