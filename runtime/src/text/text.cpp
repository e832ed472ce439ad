// The exported text writers: modules build the text form of objects from them. They set no error.
#include "kelp/text.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <string_view>

#include "text/writer.hpp"

uint32_t kelp_print_space(kelp_handle *, uint32_t, char *buffer, uint32_t count, uint32_t size,
                          uint32_t *err) {
  if (*err != 0) return 0;
  kelp::TextWriter writer(buffer, size);
  writer.put_blanks(count);
  return writer.used();
}

namespace {

// Formats that hold no conversions but %s and %%, as those of modules' text forms do, and leaves
// the others, with false and nothing written.
bool put_texts(kelp::TextWriter &writer, std::string_view format, va_list values) {
  for (size_t at = 0; at < format.size(); ++at) {
    if (format[at] != '%') continue;
    if (++at == format.size() || (format[at] != 's' && format[at] != '%')) return false;
  }
  while (!format.empty()) {
    const size_t plain = std::min(format.find('%'), format.size());
    writer.put(format.substr(0, plain));
    if (plain == format.size()) break;
    if (format[plain + 1] == '%') {
      writer.put("%");
    } else {
      const char *text = va_arg(values, const char *);
      writer.put(text == nullptr ? std::string_view("(null)") : std::string_view(text));
    }
    format.remove_prefix(plain + 2);
  }
  return true;
}

}  // namespace

// Any other line is formatted apart and copied, so that no NUL falls on the byte behind it: a
// module may put its next text further on and count on what stands between.
uint32_t kelp_snprintf(kelp_handle *, uint32_t, char *buffer, uint32_t size, uint32_t *err,
                       const char *format, ...) {
  if (*err != 0 || size == 0) return 0;
  kelp::TextWriter writer(buffer, size);
  va_list values;
  va_start(values, format);
  const bool put = put_texts(writer, format, values);
  va_end(values);
  if (put) return writer.used();
  char line[512];
  va_start(values, format);
  const int needed = std::vsnprintf(line, sizeof line, format, values);
  va_end(values);
  if (needed < 0) return 0;
  if (static_cast<size_t>(needed) < sizeof line) {
    writer.put({line, static_cast<size_t>(needed)});
    return writer.used();
  }
  // A long text goes straight to the buffer; the byte that its NUL takes is put back, or is the one
  // byte of the space that it cannot use.
  const uint32_t end = std::min(static_cast<uint32_t>(needed), size - 1);
  const char behind = buffer[end];
  va_start(values, format);
  std::vsnprintf(buffer, size, format, values);
  va_end(values);
  buffer[end] = behind;
  return end;
}
