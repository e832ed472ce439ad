#include "encodings/text.hpp"

namespace harbor::text {

void open_block(Text &text, std::string_view label, std::string_view type_name) {
  const std::uint64_t most = kelp::quick::most_of_line(text.indent, label, type_name, 0);
  const bool done = label.data() != nullptr && text.put(most, [&](auto &sink) {
    kelp::quick::put_line_head(sink, text.indent, label, type_name);
    sink.put(" {\n");
  });
  if (done) return;
  text.length += kelp_print_space(text.handle, text.space_id, text.here(), text.indent,
                                  text.space(), text.err);
  text.length += kelp_snprintf(text.handle, text.space_id, text.here(), text.space(), text.err,
                               "%s@%s: {\n", label.data(), type_name.data());
}

// Required: the blanks fall on the start of the object's own text, where its indentation stands
// already. Only their number counts here: the brace stands that many bytes further on, over a gap
// that keeps whatever the buffer held.
void close_block(Text &text) {
  constexpr std::string_view brace = "}\n";
  if (text.is_quick(text.indent + std::uint64_t{brace.size()})) {
    text.length += text.indent;
    text.text(brace);
    return;
  }
  text.length += kelp_print_space(text.handle, text.space_id, text.buffer, text.indent,
                                  text.space(), text.err);
  text.length +=
      kelp_snprintf(text.handle, text.space_id, text.here(), text.space(), text.err, "}\n");
}

ElementLabel element_label(std::string_view name, std::uint32_t index) {
  ElementLabel label;
  label.put(name).put("[").put(index).put("]");
  return label;
}

}  // namespace harbor::text
