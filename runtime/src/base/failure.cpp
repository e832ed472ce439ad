// Filling in kelp_error.
#include "base/failure.hpp"

#include <cstdarg>
#include <cstdio>
#include <string_view>

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

void raise(kelp_handle *handle, std::uint32_t *err, std::uint32_t code, const char *found,
           const char *function) {
  if (err != nullptr) *err = code;
  kelp_store_err(handle, code);
  if (handle == nullptr) return;
  const char *between = found == nullptr ? "" : ": ";
  char text[256];
  std::size_t used = 0;
  for (const std::string_view piece : {function, between, found == nullptr ? "" : found}) {
    used += piece.copy(text + used, sizeof text - 1 - used);
  }
  text[used] = '\0';
  kelp_describe_err(handle, nullptr, text);
}

std::int32_t succeed(kelp_error *error) {
  if (error != nullptr) {
    error->code = 0;
    error->text[0] = '\0';
  }
  return 0;
}

}  // namespace kelp
