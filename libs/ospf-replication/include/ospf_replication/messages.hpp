// What the messages of a site hold, byte for byte (docs/replication.md has the tables), and the
// digests by which a follower knows that what it has put together is whole.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tree_exchange/table_rules.hpp"

namespace ospf_replication {

using tree_exchange::Bytes;
using tree_exchange::ByteView;

// A message is no longer than that, whatever the engine takes.
inline constexpr std::size_t largest_message = (16u << 20) + 64;

// One life of a bucket: begins with a snapshot of all rows. A later one has a higher number.
struct Epoch {
  std::uint64_t number = 0;
  std::uint64_t tag = 0;  // random
  auto operator<=>(const Epoch &) const = default;
};

// The number of an epoch that begins now.
std::uint64_t epoch_number_now();
// A number that an honest clock would not reach within a day is nobody's.
bool is_far_ahead(std::uint64_t epoch_number);
// Whether one epoch is over where the other is known. What is far ahead ends no other, so that it
// gives way to whoever sends next.
bool is_earlier(const Epoch &one, const Epoch &other);

// Sums of digests do not depend on the order of rows, and rows can be taken out again.
struct Digest {
  std::uint64_t high = 0;
  std::uint64_t low = 0;
  bool operator==(const Digest &) const = default;
  Digest &operator+=(const Digest &other);
  Digest &operator-=(const Digest &other);
};
std::string text_of(const Digest &digest);

// Of any bytes.
Digest digest_of(ByteView bytes);
// Of a row: where it stands, which references lead to a table, what it holds.
Digest digest_of(std::string_view path, std::uint32_t references, ByteView image);

// A path with its hash, which is made once for all that is looked up by it.
struct HashedPath {
  explicit HashedPath(std::string_view text);
  HashedPath(std::string_view text, std::size_t its_hash) : path(text), hash(its_hash) {}
  std::string_view path;
  std::size_t hash;
};
// For containers that are searched by hashed paths.
struct PathHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view path) const { return HashedPath(path).hash; }
  std::size_t operator()(const HashedPath &path) const { return path.hash; }
};
struct SamePath {
  using is_transparent = void;
  bool operator()(std::string_view one, std::string_view other) const { return one == other; }
  bool operator()(const HashedPath &one, std::string_view other) const { return one.path == other; }
  bool operator()(std::string_view one, const HashedPath &other) const { return one == other.path; }
};

using Luid = std::array<std::uint8_t, 16>;
// Of the table whose row the image is; the image is whole.
Luid luid_of(ByteView image);

struct TableSum {
  std::uint64_t rows = 0;
  Digest digest;
  bool operator==(const TableSum &) const = default;
};

// The digest of each table that has rows.
class Sums {
 public:
  void add(const Luid &table, const Digest &row);
  void take(const Luid &table, const Digest &row);
  void set(const Luid &table, const TableSum &sum) { tables_[table] = sum; }
  std::uint64_t rows() const;
  const std::map<Luid, TableSum> &tables() const { return tables_; }
  bool operator==(const Sums &) const = default;

 private:
  std::map<Luid, TableSum> tables_;
};

enum class MessageKind : std::uint8_t { row = 'R', gone = 'G', commit = 'C' };

struct Stamp {
  Epoch epoch;
  std::uint64_t sequence = 0;  // of the transaction in its epoch, from 1
  auto operator<=>(const Stamp &) const = default;
};

struct Commit {
  Stamp stamp;
  std::uint32_t changed = 0;  // messages of rows that belong to it
  Sums sums;                  // of all rows behind it
};

Bytes row_message(const Stamp &stamp, std::uint32_t references, ByteView image);
Bytes gone_message(const Stamp &stamp);
Bytes commit_message(const Commit &commit);

// What is wrong with bytes that should be a message.
class MessageFault : public std::runtime_error {
 public:
  MessageFault(const std::string &found, const std::string &expected)
      : std::runtime_error("found " + found + ", expected " + expected) {}
};

struct Message {
  MessageKind kind = MessageKind::gone;
  Stamp stamp;
  std::uint32_t references = 0;  // of a row: a bit for each reference that leads to a table
  ByteView image;                // of a row; within the bytes that were read
  Commit commit;                 // of a commit marker
};

// Throws MessageFault. The image itself is not looked at beyond its least length.
Message read_message(ByteView bytes);

}  // namespace ospf_replication
