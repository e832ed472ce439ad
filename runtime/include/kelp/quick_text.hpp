// The text and XML forms of values, inline beside kelp/quick.hpp: lines of a text, tags and whole
// elements. Each shape is written down once, as a function over a sink. Here the sink stores
// without a test, so the room is looked at first, and a form that may not fit does nothing and
// gives 0: the caller then makes the call, which cuts, refuses or escapes. The runtime's functions
// are made of the same shapes, over sinks that count and that stop at the space.
#pragma once

#include <kelp/primitives.h>
#include <kelp/text.h>
#include <kelp/xml.h>

#include <kelp/quick.hpp>
#include <string_view>

namespace kelp::quick {

// The name of an array's element.
struct Indexed {
  std::string_view name;
  std::uint32_t index;
};

class StoringSink {
 public:
  explicit StoringSink(char *start) : start_(start), at_(start) {}

  void put(std::string_view text) { at_ += text.copy(at_, text.size()); }
  void put(const Indexed &element) {
    put(element.name);
    put("[");
    put_value<UnsignedRule<std::uint32_t>>(element.index);
    put("]");
  }
  // Eight at a time: up to seven more than count, over which the rest of the line is put.
  void put_blanks(std::uint32_t count) {
    for (std::uint32_t done = 0; done < count; done += kStep)
      std::memcpy(at_ + done, kBlanks, kStep);
    at_ += count;
  }
  template <class Form>
  void put_value(const typename Form::Value &value) {
    at_ += Form::format(value, at_);
  }
  // What ends an XML piece.
  void end() { *at_ = '\0'; }

  std::uint32_t used() const { return static_cast<std::uint32_t>(at_ - start_); }

 private:
  static constexpr std::uint32_t kStep = 8;
  static constexpr char kBlanks[] = "        ";

  char *start_;
  char *at_;
};

// --- lines --------------------------------------------------------------------------------------

// What comes before a value on its line, and before the brace of a block.
template <class Sink, class Label>
void put_line_head(Sink &sink, std::uint32_t indent, const Label &label, std::string_view type) {
  sink.put_blanks(indent);
  sink.put(label);
  sink.put("@");
  sink.put(type);
  sink.put(":");
}

constexpr std::uint64_t most_of(std::string_view text) { return text.size(); }
constexpr std::uint64_t most_of(const Indexed &element) { return element.name.size() + 12; }

// Bytes that a line surely does not exceed whose value takes no more than value_size, "\n" or a
// brace behind it included.
template <class Label>
std::uint64_t most_of_line(std::uint32_t indent, const Label &label, std::string_view type,
                           std::uint64_t value_size) {
  constexpr std::uint64_t kFrame = 16;  // "@", ":", blanks beyond the indent, the end
  return std::uint64_t{indent} + most_of(label) + type.size() + value_size + kFrame;
}

// A line of a value whose text needs no escape.
template <class Form, class Label>
std::uint32_t put_line(char *buffer, std::uint32_t room, std::uint32_t indent, const Label &label,
                       std::string_view type, const typename Form::Value &value) {
  if (most_of_line(indent, label, type, Form::kTextSize) > room) return 0;
  StoringSink sink(buffer);
  put_line_head(sink, indent, label, type);
  sink.template put_value<Form>(value);
  sink.put("\n");
  return sink.used();
}

// --- elements -----------------------------------------------------------------------------------

// put_attributes: what is put behind the name.
template <class Sink, class Attributes>
void put_opening_tag(Sink &sink, std::string_view tag, Attributes put_attributes) {
  sink.put("<");
  sink.put(tag);
  put_attributes();
  sink.put(">");
}
template <class Sink>
void put_opening_tag(Sink &sink, std::string_view tag) {
  put_opening_tag(sink, tag, [] {});
}

template <class Sink>
void put_closing_tag(Sink &sink, std::string_view tag) {
  sink.put("</");
  sink.put(tag);
  sink.put(">");
}

// Bytes that an element surely does not exceed whose content takes no more than content_size, the
// NUL behind it included.
constexpr std::uint64_t most_of_element(std::string_view tag, std::uint64_t content_size) {
  constexpr std::uint64_t kFrame = 8;
  return 2 * std::uint64_t{tag.size()} + content_size + kFrame;
}

// The element of a value whose text needs no escape, without a state byte.
template <class Form>
std::uint32_t put_element(char *buffer, std::uint32_t room, std::string_view tag,
                          const typename Form::Value &value) {
  if (most_of_element(tag, Form::kTextSize) > room) return 0;
  StoringSink sink(buffer);
  put_opening_tag(sink, tag);
  sink.template put_value<Form>(value);
  put_closing_tag(sink, tag);
  sink.end();
  return sink.used();
}

// --- addresses ----------------------------------------------------------------------------------

struct AddressForm {
  using Value = ip_address;
  static constexpr std::size_t kTextSize = IP_ADDRESS_TEXT_SIZE;
  static std::size_t format(const ip_address &address, char *text) {
    return ip_address_format(&address, text, kTextSize);
  }
};

}  // namespace kelp::quick
