#include "encodings/text.hpp"

namespace harbor::text {

void open_block(Text &text, const char *label, const char *type_name) {
  text.length +=
      kelp_print_space(text.handle, text.space_id, text.buffer, text.indent, text.size, text.err);
  text.length += kelp_snprintf(text.handle, text.space_id, text.here(), text.space(), text.err,
                               "%s@%s: {\n", label, type_name);
}

// Required: the blanks fall on the start of the object's own text, where its indentation stands
// already. Only their number counts here: the brace stands that many bytes further on, over a gap
// that keeps whatever the buffer held.
void close_block(Text &text) {
  text.length += kelp_print_space(text.handle, text.space_id, text.buffer, text.indent,
                                  text.space(), text.err);
  text.length +=
      kelp_snprintf(text.handle, text.space_id, text.here(), text.space(), text.err, "}\n");
}

ElementLabel element_label(const char *name, std::uint32_t index) {
  ElementLabel label;
  label.put(name).put("[").put(index).put("]");
  return label;
}

}  // namespace harbor::text
