// Filling in kelp_error.
#include "base/failure.hpp"

#include <cstdarg>
#include <cstdio>

namespace kelp {

std::int32_t fail(kelp_error *error, std::int32_t code, const char *format, ...) {
  if (error == nullptr) return code;
  error->code = code;
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(error->text, sizeof error->text, format, arguments);
  va_end(arguments);
  return code;
}

std::int32_t succeed(kelp_error *error) {
  if (error != nullptr) {
    error->code = 0;
    error->text[0] = '\0';
  }
  return 0;
}

}  // namespace kelp
