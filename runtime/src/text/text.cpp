// The exported text writers: modules build the text form of objects from them. They set no error.
#include "kelp/text.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "text/writer.hpp"

uint32_t kelp_print_space(kelp_handle *, uint32_t, char *buffer, uint32_t count, uint32_t size,
                          uint32_t *err) {
  if (*err != 0) return 0;
  kelp::TextWriter writer(buffer, size);
  writer.put_blanks(count);
  return writer.used();
}

uint32_t kelp_snprintf(kelp_handle *, uint32_t, char *buffer, uint32_t size, uint32_t *err,
                       const char *format, ...) {
  if (*err != 0 || size == 0) return 0;
  va_list values;
  va_start(values, format);
  const int needed = std::vsnprintf(buffer, size, format, values);
  va_end(values);
  if (needed < 0) {
    buffer[0] = '\0';
    return 0;
  }
  return std::min(static_cast<uint32_t>(needed), size - 1);
}
