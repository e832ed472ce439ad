#include "tree_exchange/tree_reader.hpp"

#include <ospf_harbor_check.h>

#include <cstdio>

namespace tree_exchange {

namespace {

std::string hex_word(std::uint64_t word) {
  char text[20];
  std::snprintf(text, sizeof text, "%08llx", static_cast<unsigned long long>(word));
  return text;
}

}  // namespace

void TreeReader::feed(ByteView bytes) {
  try {
    if (bytes.size() > limit_ - (offset_ + waiting_.size())) {
      throw StreamFault(limit_, "more than " + std::to_string(limit_) + " bytes",
                        "a tree of at most that many");
    }
    waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
    const std::size_t taken = take(waiting_);
    waiting_.erase(waiting_.begin(), waiting_.begin() + static_cast<std::ptrdiff_t>(taken));
  } catch (const StreamFault &fault) {
    throw StreamError(source_, fault.offset, fault.what());
  }
}

// Takes what is whole at the front of the bytes, and gives how many bytes that were.
std::size_t TreeReader::take(ByteView bytes) {
  std::size_t at = 0;
  const auto step = [&](std::size_t size) {
    at += size;
    offset_ += size;
  };
  if (!header_read_ && header_is_whole(bytes)) {
    header_read_ = true;
    sum_ = checksum(0, bytes.first(stream_header_size));
    step(stream_header_size);
  }
  while (header_read_ && at < bytes.size()) {
    if (ended_) throw StreamFault(offset_, "more bytes behind the end mark", "none");
    const auto frame = first_frame(bytes.subspan(at), offset_);
    if (!frame) break;
    try {
      take_frame(*frame);
    } catch (const Misplaced &misplaced) {
      throw StreamFault(frame->offset, misplaced.found, misplaced.expected);
    }
    if (frame->kind != FrameKind::end) sum_ = checksum(sum_, frame->bytes);
    step(frame->bytes.size());
  }
  return at;
}

void TreeReader::take_frame(const Frame &frame) {
  if (builder_.is_whole() && frame.kind != FrameKind::end) {
    throw StreamFault(frame.offset, "a frame behind the tree", "the end mark");
  }
  switch (frame.kind) {
    case FrameKind::table:
      builder_.open_table(table_mark(frame).reference, &table_of(frame));
      return;
    case FrameKind::row:
      take_row(frame);
      return;
    case FrameKind::close: {
      if (builder_.open_rule() == nullptr) throw Misplaced("a close", "the table of the root");
      const std::uint64_t rows = number_at(frame.body, 0, 4);
      if (rows != builder_.rows_of_table()) {
        throw StreamFault(frame.offset + frame_head_size, "a count of " + std::to_string(rows),
                          std::to_string(builder_.rows_of_table()) + ", as many as rows of " +
                              builder_.open_rule()->name + " came");
      }
      builder_.close_table();
      return;
    }
    case FrameKind::end:
      take_end(frame);
      return;
  }
}

const TableRule &TreeReader::table_of(const Frame &frame) const {
  const TableMark mark = table_mark(frame);
  if (const TableRule *rule = rule_with_luid(mark.luid); rule != nullptr) return *rule;
  std::string text;
  for (const std::uint8_t byte : mark.luid) {
    char pair[3];
    std::snprintf(pair, sizeof pair, "%02x", byte);
    text += pair;
  }
  throw StreamFault(frame.offset + frame_head_size + 1 + mark.reference.size(),
                    "the table identity " + text,
                    "that of a table of " + std::string(stream_module));
}

// The check walks the image before the library reads it: the reader trusts what it is given, and
// can neither say where an image is wrong nor take back what it has made of it.
void TreeReader::take_row(const Frame &frame) {
  const TableRule *rule = builder_.open_rule();
  if (rule == nullptr) throw Misplaced("a row", "the table of the root");
  ospf_harbor_check_result result;
  if (ospf_harbor_check_image(OSPF_HARBOR_CHECK_RECORD, rule->name, frame.body.data(),
                              frame.body.size(), &result) != OSPF_HARBOR_FAULT_NONE) {
    const std::string what = std::string(result.path) +
                             (*result.path != '\0' && *result.piece != '\0' ? " " : "") +
                             result.piece;
    throw StreamFault(frame.offset + frame_head_size + result.offset,
                      std::string(result.found) + (what.empty() ? "" : " as " + what),
                      result.expected);
  }
  builder_.add_row(rule->from_image(session_, frame.body));
}

void TreeReader::take_end(const Frame &frame) {
  if (!builder_.is_whole()) {
    throw Misplaced("the end mark", builder_.open_rule() == nullptr
                                        ? "the table of the root"
                                        : "a close of " + std::string(builder_.open_rule()->name));
  }
  const std::uint64_t rows = number_at(frame.body, 0, 8);
  if (rows != builder_.rows()) {
    throw StreamFault(frame.offset + frame_head_size, "a count of " + std::to_string(rows),
                      std::to_string(builder_.rows()) + ", as many as rows came");
  }
  const std::uint64_t sum = number_at(frame.body, 8, 4);
  sum_ = checksum(sum_, frame.bytes.first(frame.bytes.size() - 4));
  if (sum != sum_) {
    throw StreamFault(frame.offset + frame.bytes.size() - 4, "the checksum " + hex_word(sum),
                      hex_word(sum_) + ", which the bytes have");
  }
  ended_ = true;
}

std::uint64_t TreeReader::finish() {
  if (!ended_) {
    const std::uint64_t end = offset_ + waiting_.size();
    throw StreamError(
        source_, end,
        std::string("found the end of the bytes, expected ") +
            (!header_read_      ? "the header of a tree"
             : waiting_.empty() ? "another frame"
                                : "the rest of the frame at " + offset_text(offset_)));
  }
  builder_.give();
  return builder_.rows();
}

}  // namespace tree_exchange
