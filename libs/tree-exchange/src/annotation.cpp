#include "tree_exchange/annotation.hpp"

#include <ospf_harbor_check.h>

#include <algorithm>

#include "tree_exchange/tree_reader.hpp"

namespace tree_exchange {

using namespace ospf_tables;

namespace {

void give_line(const char *line, void *context) { (*static_cast<const LineSink *>(context))(line); }

// Lines of a whole, in order and without gaps.
class Lines {
 public:
  Lines(ByteView whole, const LineSink &sink) : whole_(whole), sink_(sink) {}

  void bytes(std::size_t length, const std::string &text) {
    ospf_harbor_check_lines(whole_.data(), whole_.size(), at_, length, text.c_str(), give_line,
                            const_cast<LineSink *>(&sink_));
    at_ += length;
  }
  void rest(std::size_t end) {
    if (end > at_) bytes(end - at_, "");
  }
  std::size_t at() const { return at_; }
  // The spans of an image that stands here, as far as it is sound. The text of what is wrong.
  std::string image(std::uint32_t kind, const char *name, std::size_t length, std::size_t margin) {
    Walk walk{*this, margin};
    const std::size_t start = at_;
    ospf_harbor_check_result result;
    ospf_harbor_check_walk(
        kind, name, whole_.data() + start, length,
        [](const ospf_harbor_image_span *span, void *context) {
          const Walk &to = *static_cast<Walk *>(context);
          std::string text(to.margin + 2 * std::size_t{span->depth}, ' ');
          text += std::string(span->path) + " " + span->name;
          // A jump is told by where it leads in the whole.
          if (span->piece == OSPF_HARBOR_SPAN_JUMP) {
            const std::uint64_t distance = number_at(to.lines.whole_, to.lines.at_, 4);
            text +=
                ": " + std::to_string(distance) + ", to " + offset_text(to.lines.at_ + distance);
          } else if (*span->value != '\0') {
            text += std::string(": ") + span->value;
          }
          to.lines.bytes(span->length, text);
        },
        &walk, &result);
    if (result.fault == OSPF_HARBOR_FAULT_NONE) return "";
    return offset_text(start + result.offset) + ": " + result.path + " " + result.piece +
           ": found " + result.found + ", expected " + result.expected;
  }

 private:
  struct Walk {
    Lines &lines;
    std::size_t margin;
  };

  ByteView whole_;
  const LineSink &sink_;
  std::size_t at_ = 0;
};

// Where reading the stream finds it wrong, and what; none for a sound one.
struct Finding {
  std::uint64_t offset = UINT64_MAX;
  std::string text;
};

Finding finding_of(ByteView bytes) {
  constexpr char source[] = "stream";
  try {
    Session session;
    TreeReader reader(session, source);
    reader.feed(bytes);
    reader.finish();
    return {};
  } catch (const StreamError &error) {
    return {error.offset(), std::string(error.what()).substr(sizeof source + 1)};
  }
}

const char *name_of(ByteView luid) {
  const TableRule *rule = rule_with_luid(luid);
  return rule == nullptr ? "no table of the model" : rule->name;
}

// The frames of a stream; stands behind each as far as they can be told apart.
class StreamLines {
 public:
  StreamLines(ByteView bytes, const LineSink &sink) : bytes_(bytes), lines_(bytes, sink) {}

  // Up to and with the frame that holds the offset.
  void up_to(std::uint64_t offset) {
    try {
      if (!header_is_whole(bytes_)) return;
      header();
      while (lines_.at() < bytes_.size() && lines_.at() <= offset) {
        const auto frame = first_frame(bytes_.subspan(lines_.at()), lines_.at());
        if (!frame) return;
        const std::size_t end = lines_.at() + frame->bytes.size();
        this->frame(*frame);
        lines_.rest(std::min<std::uint64_t>(end, bytes_.size()));
      }
    } catch (const StreamFault &) {
      // The bytes from here on cannot be told apart; what is wrong is known already.
    }
  }
  void rest() { lines_.rest(bytes_.size()); }

 private:
  void header() {
    lines_.bytes(stream_magic.size(), "magic");
    lines_.bytes(2, "format version: " + std::to_string(stream_version));
    lines_.bytes(1, "length of the module's name");
    lines_.bytes(stream_module.size(), "module: " + std::string(stream_module));
  }

  std::string margin() const { return std::string(2 * depth_, ' '); }
  void head(const Frame &frame, const char *what) {
    lines_.bytes(1, margin() + "frame: " + what);
    lines_.bytes(4, margin() + "length of the body: " + std::to_string(frame.body.size()));
  }

  void frame(const Frame &frame) {
    switch (frame.kind) {
      case FrameKind::table: {
        const TableMark mark = table_mark(frame);
        head(frame, "table");
        lines_.bytes(1, margin() + "length of the reference's name");
        if (!mark.reference.empty()) {
          lines_.bytes(mark.reference.size(),
                       margin() + "reference: " + in_one_line(mark.reference));
        }
        lines_.bytes(mark.luid.size(), margin() + "table identity: " + name_of(mark.luid));
        ++depth_;
        return;
      }
      case FrameKind::row:
        head(frame, "row");
        lines_.image(OSPF_HARBOR_CHECK_RECORD, nullptr, frame.body.size(), 2 * depth_ + 2);
        return;
      case FrameKind::close:
        if (depth_ != 0) --depth_;
        head(frame, "close of a table");
        lines_.bytes(
            4, margin() + "rows of the table: " + std::to_string(number_at(frame.body, 0, 4)));
        return;
      case FrameKind::end:
        head(frame, "end");
        lines_.bytes(8,
                     margin() + "rows of the tree: " + std::to_string(number_at(frame.body, 0, 8)));
        lines_.bytes(4, margin() + "checksum");
        return;
    }
  }

  ByteView bytes_;
  Lines lines_;
  std::size_t depth_ = 0;
};

}  // namespace

std::string annotate_stream(ByteView bytes, const LineSink &line) {
  const Finding finding = finding_of(bytes);
  StreamLines lines(bytes, line);
  lines.up_to(finding.offset);
  if (!finding.text.empty()) line("! " + finding.text);
  lines.rest();
  return finding.text;
}

std::string annotate_image(std::uint32_t kind, const std::string &name, ByteView bytes,
                           const LineSink &line) {
  Lines lines(bytes, line);
  std::string wrong;
  while (lines.at() < bytes.size() && wrong.empty()) {
    const ByteView here = bytes.subspan(lines.at());
    std::size_t length = here.size();
    if (name.empty()) {
      const std::size_t claimed = ospf_harbor_check_frame_length(here.data(), here.size());
      if (claimed != 0) length = std::min(length, claimed);
    }
    wrong = lines.image(kind, name.empty() ? nullptr : name.c_str(), length, 0);
  }
  if (bytes.empty()) wrong = "found no bytes, expected an image";
  if (!wrong.empty()) line("! " + wrong);
  lines.rest(bytes.size());
  return wrong;
}

}  // namespace tree_exchange
