#include "tree_exchange/tree_writer.hpp"

#include <string>

#include "ospf_tables/tree.hpp"
#include "piece_size.hpp"
#include "tree_exchange/stream_format.hpp"

namespace tree_exchange {

using namespace ospf_tables;

namespace {

class StreamWriter {
 public:
  StreamWriter(Session &session, const ByteSink &sink) : session_(session), sink_(sink) {}

  std::uint64_t write() {
    pending_.assign(stream_magic.begin(), stream_magic.end());
    append_number(pending_, stream_version, 2);
    append_number(pending_, stream_module.size(), 1);
    append(stream_module);
    void *root = root_table(session_, false);
    open("", root_rule());
    if (root != nullptr) {
      rows(root_rule(), root);
    } else {
      close(0);
    }
    head(FrameKind::end, 12);
    append_number(pending_, rows_, 8);
    flush();
    append_number(pending_, sum_, 4);
    sink_(pending_);
    return rows_;
  }

 private:
  void append(std::string_view text) { pending_.insert(pending_.end(), text.begin(), text.end()); }
  void append(ByteView bytes) { pending_.insert(pending_.end(), bytes.begin(), bytes.end()); }
  void head(FrameKind kind, std::size_t length) {
    append_number(pending_, static_cast<std::uint8_t>(kind), 1);
    append_number(pending_, length, 4);
  }
  void flush() {
    sum_ = checksum(sum_, pending_);
    sink_(pending_);
    pending_.clear();
  }

  void open(std::string_view reference, const TableRule &rule) {
    head(FrameKind::table, 1 + reference.size() + rule.luid.size());
    append_number(pending_, reference.size(), 1);
    append(reference);
    append(rule.luid);
  }
  void close(std::uint32_t count) {
    head(FrameKind::close, 4);
    append_number(pending_, count, 4);
  }

  // The rows of a table that was opened, each with what it refers to, and the table's end.
  void rows(const TableRule &rule, void *table) {
    std::uint32_t count = 0;
    rule.for_each(session_, table, [&](void *record) {
      const Bytes image = rule.image(session_, record);
      if (image.size() > largest_row) {
        throw LibraryFailure(std::string(rule.kind) + "/" + rule.key(session_, record) +
                             ": the image of the row has " + std::to_string(image.size()) +
                             " bytes, of " + std::to_string(largest_row) + " that a stream takes");
      }
      head(FrameKind::row, image.size());
      append(image);
      ++count;
      ++rows_;
      if (pending_.size() >= piece_size) flush();
      for (const ReferenceRule &reference : rule.references) {
        void *below = reference.below(session_, record);
        if (below == nullptr) continue;
        open(reference.name, *reference.child);
        rows(*reference.child, below);
      }
    });
    close(count);
  }

  Session &session_;
  const ByteSink &sink_;
  Bytes pending_;
  std::uint32_t sum_ = 0;
  std::uint64_t rows_ = 0;
};

}  // namespace

std::uint64_t write_tree(Session &session, const ByteSink &sink) {
  return StreamWriter(session, sink).write();
}

}  // namespace tree_exchange
