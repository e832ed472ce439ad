// Every byte of readable text that the runtime writes passes through put or put_blanks, where the
// space ends it.
#include "text/writer.hpp"

#include <algorithm>
#include <cstring>

#include "kelp/quick_text.hpp"

namespace kelp {

void TextWriter::put_blanks(uint32_t count) {
  const uint32_t room = std::min(count, size_ - used_);
  if (room == 0) return;
  std::memset(buffer_ + used_, ' ', room);
  used_ += room;
}

void TextWriter::put(std::string_view text) {
  const auto room = static_cast<uint32_t>(std::min<size_t>(text.size(), size_ - used_));
  if (room > 0) std::memcpy(buffer_ + used_, text.data(), room);
  used_ += room;
}

void TextWriter::put_escaped(std::string_view text) {
  static constexpr char kDigits[] = "0123456789abcdef";
  size_t plain = 0;  // start of the run of bytes that need no escape
  for (size_t i = 0; i < text.size() && used_ < size_; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    char escape[4] = {'\\', 0, 0, 0};
    size_t length = 2;
    switch (byte) {
      case '\\':
        escape[1] = '\\';
        break;
      case '\n':
        escape[1] = 'n';
        break;
      case '\r':
        escape[1] = 'r';
        break;
      case '\t':
        escape[1] = 't';
        break;
      default:
        if (byte >= 0x20 && byte != 0x7F) continue;
        escape[1] = 'x';
        escape[2] = kDigits[byte >> 4];
        escape[3] = kDigits[byte & 15];
        length = 4;
        break;
    }
    put(text.substr(plain, i - plain));
    put({escape, length});
    plain = i + 1;
  }
  put(text.substr(plain));
}

void open_line(TextWriter &writer, uint32_t indent, const char *label, std::string_view type) {
  const std::string_view shown = label == nullptr ? std::string_view() : std::string_view(label);
  quick::put_line_head(writer, indent, shown, type);
}

}  // namespace kelp
