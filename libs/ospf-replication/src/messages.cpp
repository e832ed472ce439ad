#include "ospf_replication/messages.hpp"

#include <xxhash.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "tree_exchange/stream_format.hpp"

namespace ospf_replication {

using tree_exchange::append_number;
using tree_exchange::number_at;

namespace {

constexpr std::array<std::uint8_t, 4> magic = {'O', 'H', 'R', '1'};
constexpr std::size_t head_size = 4 + 1 + 8 + 8 + 8;
constexpr std::size_t least_image = 43;  // message header and identity of a record image
constexpr std::size_t luid_place = 27;
constexpr std::size_t commit_size = 4 + 2;
constexpr std::size_t table_size = 16 + 8 + 16;
constexpr std::size_t most_tables = 256;

Bytes head(MessageKind kind, const Stamp &stamp) {
  Bytes bytes(magic.begin(), magic.end());
  append_number(bytes, static_cast<std::uint8_t>(kind), 1);
  append_number(bytes, stamp.epoch.number, 8);
  append_number(bytes, stamp.epoch.tag, 8);
  append_number(bytes, stamp.sequence, 8);
  return bytes;
}

std::string length_text(ByteView bytes) { return std::to_string(bytes.size()) + " bytes"; }

void read_row(ByteView body, Message &message) {
  if (body.size() < 4 + least_image) {
    throw MessageFault(length_text(body) + " of a row",
                       "at least " + std::to_string(4 + least_image));
  }
  message.references = static_cast<std::uint32_t>(number_at(body, 0, 4));
  message.image = body.subspan(4);
}

void read_commit(ByteView body, Message &message) {
  if (body.size() < commit_size) {
    throw MessageFault(length_text(body) + " of a commit marker", "more");
  }
  message.commit.stamp = message.stamp;
  message.commit.changed = static_cast<std::uint32_t>(number_at(body, 0, 4));
  const std::size_t tables = number_at(body, 4, 2);
  body = body.subspan(commit_size);
  if (tables > most_tables || body.size() != tables * table_size) {
    throw MessageFault(
        std::to_string(tables) + " tables in " + length_text(body),
        std::to_string(table_size) + " bytes for each of at most " + std::to_string(most_tables));
  }
  Luid before{};
  for (std::size_t table = 0; table < tables; ++table, body = body.subspan(table_size)) {
    Luid luid;
    std::copy_n(body.begin(), luid.size(), luid.begin());
    const TableSum sum{number_at(body, 16, 8), {number_at(body, 24, 8), number_at(body, 32, 8)}};
    if ((table != 0 && luid <= before) || sum.rows == 0) {
      throw MessageFault("a table out of order or without rows", "each table with rows once");
    }
    message.commit.sums.set(luid, sum);
    before = luid;
  }
}

}  // namespace

std::uint64_t epoch_number_now() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

bool is_far_ahead(std::uint64_t epoch_number) {
  constexpr std::uint64_t day = 86'400'000'000'000;
  return epoch_number > epoch_number_now() + day;
}

bool is_earlier(const Epoch &one, const Epoch &other) {
  return one < other && (is_far_ahead(one.number) || !is_far_ahead(other.number));
}

Digest &Digest::operator+=(const Digest &other) {
  low += other.low;
  high += other.high + (low < other.low ? 1 : 0);
  return *this;
}

Digest &Digest::operator-=(const Digest &other) {
  high -= other.high + (low < other.low ? 1 : 0);
  low -= other.low;
  return *this;
}

std::string text_of(const Digest &digest) {
  char text[33];
  std::snprintf(text, sizeof text, "%016llx%016llx", static_cast<unsigned long long>(digest.high),
                static_cast<unsigned long long>(digest.low));
  return text;
}

Digest digest_of(ByteView bytes) {
  const XXH128_hash_t hash = XXH3_128bits(bytes.data(), bytes.size());
  return {hash.high64, hash.low64};
}

Digest digest_of(std::string_view path, std::uint32_t references, ByteView image) {
  const std::uint64_t place = XXH3_64bits_withSeed(path.data(), path.size(), references);
  const XXH128_hash_t hash = XXH3_128bits_withSeed(image.data(), image.size(), place);
  return {hash.high64, hash.low64};
}

HashedPath::HashedPath(std::string_view text)
    : path(text), hash(XXH3_64bits(text.data(), text.size())) {}

Luid luid_of(ByteView image) {
  Luid luid;
  std::copy_n(image.begin() + luid_place, luid.size(), luid.begin());
  return luid;
}

void Sums::add(const Luid &table, const Digest &row) {
  TableSum &sum = tables_[table];
  ++sum.rows;
  sum.digest += row;
}

void Sums::take(const Luid &table, const Digest &row) {
  TableSum &sum = tables_[table];
  sum.digest -= row;
  if (--sum.rows == 0) tables_.erase(table);
}

std::uint64_t Sums::rows() const {
  std::uint64_t rows = 0;
  for (const auto &[luid, sum] : tables_) rows += sum.rows;
  return rows;
}

Bytes row_message(const Stamp &stamp, std::uint32_t references, ByteView image) {
  Bytes bytes = head(MessageKind::row, stamp);
  bytes.reserve(bytes.size() + 4 + image.size());
  append_number(bytes, references, 4);
  bytes.insert(bytes.end(), image.begin(), image.end());
  return bytes;
}

Bytes gone_message(const Stamp &stamp) { return head(MessageKind::gone, stamp); }

Bytes commit_message(const Commit &commit) {
  Bytes bytes = head(MessageKind::commit, commit.stamp);
  append_number(bytes, commit.changed, 4);
  append_number(bytes, commit.sums.tables().size(), 2);
  for (const auto &[luid, sum] : commit.sums.tables()) {
    bytes.insert(bytes.end(), luid.begin(), luid.end());
    append_number(bytes, sum.rows, 8);
    append_number(bytes, sum.digest.high, 8);
    append_number(bytes, sum.digest.low, 8);
  }
  return bytes;
}

Message read_message(ByteView bytes) {
  if (bytes.size() < head_size) throw MessageFault(length_text(bytes), "the head of a message");
  if (!std::equal(magic.begin(), magic.end(), bytes.begin())) {
    throw MessageFault("other bytes", "the mark OHR1 of a message");
  }
  Message message;
  message.kind = static_cast<MessageKind>(bytes[4]);
  message.stamp = {{number_at(bytes, 5, 8), number_at(bytes, 13, 8)}, number_at(bytes, 21, 8)};
  const ByteView body = bytes.subspan(head_size);
  switch (message.kind) {
    case MessageKind::row:
      read_row(body, message);
      return message;
    case MessageKind::gone:
      if (!body.empty()) throw MessageFault(length_text(body) + " behind a tombstone", "none");
      return message;
    case MessageKind::commit:
      read_commit(body, message);
      return message;
  }
  throw MessageFault("a message of kind " + std::to_string(bytes[4]),
                     "R (row), G (gone) or C (commit)");
}

}  // namespace ospf_replication
