#include "module/failure.hpp"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "model/lists.hpp"

namespace harbor {

namespace {

void describe(kelp_handle *handle, const About &about, const char *format, va_list arguments) {
  constexpr std::size_t longest = 256;
  char text[longest];
  int length = std::snprintf(text, longest, "%s", about.rule);
  if (format != nullptr) {
    length += std::snprintf(text + length, longest - static_cast<std::size_t>(length), ": ");
    std::vsnprintf(text + length, longest - static_cast<std::size_t>(length), format, arguments);
  }
  name_failure(handle, about);
  kelp_describe_err(handle, nullptr, text);
}

[[gnu::format(printf, 3, 4)]] void describe(kelp_handle *handle, const About &about,
                                            const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  describe(handle, about, format, arguments);
  va_end(arguments);
}

}  // namespace

About::About(const model::Field &its_field, const char *its_rule)
    : field(its_field.name), rule(its_rule) {
  for (const model::Structure *structure : model::structures) {
    const auto &fields = structure->fields;
    if (std::find(fields.begin(), fields.end(), &its_field) != fields.end()) type = structure->name;
  }
}

void fail(kelp_handle *handle, std::uint32_t code, std::uint32_t *err, const About &about,
          const char *format, ...) {
  *err = code;
  kelp_store_err(handle, code);
  va_list arguments;
  va_start(arguments, format);
  describe(handle, about, format, arguments);
  va_end(arguments);
}

void fail(kelp_handle *handle, std::uint32_t code, std::uint32_t *err, const About &about) {
  *err = code;
  kelp_store_err(handle, code);
  name_failure(handle, about);
  kelp_describe_err(handle, nullptr, about.rule);
}

void fail_variant(kelp_handle *handle, std::uint32_t *err, const About &about, const char *format,
                  ...) {
  kelp_store_epoch_err(handle, KELP_ERR_EPOCH, err);
  va_list arguments;
  va_start(arguments, format);
  describe(handle, about, format, arguments);
  va_end(arguments);
}

void store_failure(kelp_handle *handle, std::uint32_t code, const About &about, const char *doing) {
  kelp_store_err(handle, code);
  describe(handle, about, "%s: %s", doing, std::strerror(static_cast<int>(code)));
}

void name_failure(kelp_handle *handle, const About &about) {
  char subject[128];
  std::snprintf(subject, sizeof subject, "%.*s%s%.*s", static_cast<int>(about.type.size()),
                about.type.data(), about.field.empty() ? "" : ".",
                static_cast<int>(about.field.size()), about.field.data());
  kelp_describe_err(handle, subject, nullptr);
}

}  // namespace harbor
