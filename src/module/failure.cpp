#include "module/failure.hpp"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "model/lists.hpp"
#include "module/bounded_text.hpp"

namespace harbor {

namespace {

using Words = BoundedText<256>;

// The rule that failed, and behind it what was found, if anything.
void describe(kelp_handle *handle, const About &about, const Words *found) {
  Words words;
  words.put(about.rule);
  if (found != nullptr) words.put(": ").put(found->data());
  name_failure(handle, about);
  kelp_describe_err(handle, nullptr, words.data());
}

void describe(kelp_handle *handle, const About &about, const char *format, va_list arguments) {
  if (format == nullptr) return describe(handle, about, nullptr);
  char text[256];
  std::vsnprintf(text, sizeof text, format, arguments);
  Words found;
  describe(handle, about, &found.put(text));
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
  Words found;
  describe(handle, about, &found.put(doing).put(": ").put(std::strerror(static_cast<int>(code))));
}

void name_failure(kelp_handle *handle, const About &about) {
  BoundedText<128> subject;
  subject.put(about.type);
  if (!about.field.empty()) subject.put(".").put(about.field);
  kelp_describe_err(handle, subject.data(), nullptr);
}

}  // namespace harbor
