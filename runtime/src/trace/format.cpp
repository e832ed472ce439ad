// Applying a message's arguments to its text. The texts come out of files, so nothing of them is
// ever handed to a printf function: each conversion is carried out here.
#include <charconv>
#include <cstring>
#include <string_view>

#include "kelp/trace.h"

namespace {

// Collects text, cut to a buffer, and counts all of it.
class Output {
 public:
  Output(char *buffer, size_t size) : buffer_(buffer), size_(buffer == nullptr ? 0 : size) {}

  void add(std::string_view text) {
    if (length_ + 1 < size_) {
      const size_t room = size_ - 1 - length_;
      std::memcpy(buffer_ + length_, text.data(), text.size() < room ? text.size() : room);
    }
    length_ += text.size();
  }

  size_t finish() {
    if (size_ != 0) buffer_[length_ < size_ ? length_ : size_ - 1] = '\0';
    return length_;
  }

 private:
  char *buffer_;
  size_t size_;
  size_t length_ = 0;
};

template <typename Number>
std::string_view digits(char (&buffer)[24], Number value, int base) {
  const std::to_chars_result end = std::to_chars(buffer, buffer + sizeof buffer, value, base);
  return {buffer, static_cast<size_t>(end.ptr - buffer)};
}

// Carries out one conversion; false when the argument is not of its kind.
bool convert(char conversion, const kelp_trace_argument &argument, Output &output) {
  char buffer[24];
  switch (conversion) {
    case 's':
      if (argument.kind != 1) return false;
      output.add({argument.text, argument.text_length});
      return true;
    case 'd':
      if (argument.kind != 4) return false;
      output.add(digits(buffer, static_cast<int32_t>(argument.number), 10));
      return true;
    case 'u':
      if (argument.kind != 4) return false;
      output.add(digits(buffer, argument.number, 10));
      return true;
    case 'p':
      if (argument.kind != 5) return false;
      output.add("0x");
      output.add(digits(buffer, argument.pointer, 16));
      return true;
    default:
      return false;
  }
}

}  // namespace

extern "C" size_t kelp_trace_format(const kelp_trace_event *event, const char *text, char *buffer,
                                    size_t size) {
  Output output(buffer, size);
  if (event == nullptr || text == nullptr) return output.finish();
  size_t next_argument = 0;
  for (std::string_view rest = text; !rest.empty();) {
    const size_t percent = rest.find('%');
    output.add(rest.substr(0, percent));
    if (percent == std::string_view::npos) break;
    rest.remove_prefix(percent);
    if (rest.size() >= 2 && rest[1] == '%') {
      output.add("%");
      rest.remove_prefix(2);
    } else if (rest.size() >= 2 && next_argument < event->argument_count &&
               convert(rest[1], event->arguments[next_argument], output)) {
      ++next_argument;
      rest.remove_prefix(2);
    } else {
      output.add("%");
      rest.remove_prefix(1);
    }
  }
  return output.finish();
}
