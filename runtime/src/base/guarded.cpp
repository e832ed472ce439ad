// The guarded forms of the standard memory calls. Modules copy and fill objects through them; they
// end the process where the standard calls would run into a null pointer.
#include <cstring>

#include "kelp/core.h"

namespace {

void require(bool given, const char *expression, int line) {
  if (!given) bassert(expression, __FILE__, line);
}

}  // namespace

extern "C" void *__memcpy_to_buf(void *destination, const void *source, size_t length) {
  if (length == 0) return destination;
  require(destination != nullptr && source != nullptr,
          "__memcpy_to_buf: destination and source are not null", __LINE__);
  return std::memmove(destination, source, length);
}

extern "C" void *__memset_to_buf(void *destination, int value, size_t length) {
  if (length == 0) return destination;
  require(destination != nullptr, "__memset_to_buf: destination is not null", __LINE__);
  return std::memset(destination, value, length);
}

extern "C" char *__strncpy_to_buf(char *destination, const char *source, size_t length) {
  if (length == 0) return destination;
  require(destination != nullptr && source != nullptr,
          "__strncpy_to_buf: destination and source are not null", __LINE__);
  const size_t used = strnlen(source, length);
  std::memmove(destination, source, used);
  std::memset(destination + used, 0, length - used);
  return destination;
}
