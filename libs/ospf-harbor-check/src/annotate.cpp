// An image as lines for people:
//
//   0000  00                       ospf_area variant: 0
//   0001  00                       ospf_area flags: none
//   0002  00 00 00 30              ospf_area jump word: 48, to 0x32
//
// Objects within objects stand two blanks further in for each level.
#include <algorithm>

#include "fixed_text.hpp"
#include "ospf_harbor_check.h"

namespace ospf_harbor_check {

namespace {

constexpr std::size_t bytes_on_line = 8;
constexpr std::size_t bytes_width = 2 + 3 * bytes_on_line + 1;

class Lines {
 public:
  Lines(const std::uint8_t *image, std::size_t length, ospf_harbor_line_receiver *receive,
        void *context, std::size_t at = 0)
      : image_(image),
        offset_digits_(length > 0x10000 ? 8 : 4),
        at_(at),
        receive_(receive),
        context_(context) {}

  // The bytes up to end, with the text behind the first ones.
  void bytes(std::size_t end, std::string_view text) {
    bool is_first = true;
    while (at_ < end) {
      const std::size_t stop = std::min(at_ + bytes_on_line, end);
      FixedText<1536> line;
      for (int digits = offset_digits_; digits > 0; digits -= 2) {
        line.hexadecimal(static_cast<std::uint8_t>(at_ >> (4 * digits - 8)));
      }
      line.put("  ");
      for (; at_ < stop; ++at_) line.hexadecimal(image_[at_]).put(" ");
      if (is_first && !text.empty()) line.fill_to(offset_digits_ + bytes_width).put(text);
      is_first = false;
      receive_(line.c_str(), context_);
    }
  }

  void span(const ospf_harbor_image_span &span) {
    FixedText<1400> text;
    text.fill_to(2 * span.depth);
    text.put(span.path).put(" ").put(span.name);
    if (span.value[0] != '\0') text.put(": ").put(span.value);
    bytes(span.offset + span.length, text.view());
  }

  void fault(std::string_view text) { receive_(FixedText<800>("! ").put(text).c_str(), context_); }

 private:
  const std::uint8_t *image_;
  int offset_digits_;
  std::size_t at_;
  ospf_harbor_line_receiver *receive_;
  void *context_;
};

}  // namespace

}  // namespace ospf_harbor_check

uint32_t ospf_harbor_check_annotate(uint32_t kind, const char *name, const void *image,
                                    size_t length, ospf_harbor_line_receiver *receive,
                                    void *context, ospf_harbor_check_result *result) {
  ospf_harbor_check_result own;
  if (result == nullptr) result = &own;
  ospf_harbor_check::Lines lines(static_cast<const std::uint8_t *>(image), length, receive,
                                 context);
  const auto show = [](const ospf_harbor_image_span *span, void *to) {
    static_cast<ospf_harbor_check::Lines *>(to)->span(*span);
  };
  ospf_harbor_check_walk(kind, name, image, length, show, &lines, result);
  if (result->fault != OSPF_HARBOR_FAULT_NONE) lines.fault(result->text);
  if (image != nullptr) lines.bytes(length, "");
  return result->fault;
}

void ospf_harbor_check_lines(const void *whole, size_t whole_length, size_t offset, size_t length,
                             const char *text, ospf_harbor_line_receiver *receive, void *context) {
  ospf_harbor_check::Lines lines(static_cast<const std::uint8_t *>(whole), whole_length, receive,
                                 context, offset);
  lines.bytes(offset + length, text == nullptr ? "" : text);
}
