// The exported text writers: modules build the text form of objects from them. They set no error.
#include "kelp/text.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>

#include "text/writer.hpp"

uint32_t kelp_print_space(kelp_handle *, uint32_t, char *buffer, uint32_t count, uint32_t size,
                          uint32_t *err) {
  if (*err != 0) return 0;
  kelp::TextWriter writer(buffer, size);
  writer.put_blanks(count);
  return writer.used();
}

// A line is formatted apart and copied, so that no NUL falls on the byte behind it: a module may
// put its next text further on and count on what stands between.
uint32_t kelp_snprintf(kelp_handle *, uint32_t, char *buffer, uint32_t size, uint32_t *err,
                       const char *format, ...) {
  if (*err != 0 || size == 0) return 0;
  char line[512];
  va_list values;
  va_start(values, format);
  const int needed = std::vsnprintf(line, sizeof line, format, values);
  va_end(values);
  if (needed < 0) return 0;
  kelp::TextWriter writer(buffer, size);
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
