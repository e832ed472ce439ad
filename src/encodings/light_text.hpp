// What the text and XML forms of enumerations and flag sets share: the head of a line, the running
// position in the caller's buffer, the empty elements that stand for members, the result of the _cr
// forms, and the look-up of a member in a document. Called by the encodings of both. Nothing here
// tests the space that is left: the runtime's writers stop at the space that they get, which is
// none for a negative size.
#pragma once

#include <kelp/core.h>
#include <kelp/text.h>
#include <kelp/xml.h>

#include <array>
#include <cstdint>
#include <kelp/quick_text.hpp>
#include <string_view>

namespace harbor::light_text {

// --- elements, put together at build time --------------------------------------------------------

struct Element {
  char text[64];
  std::uint32_t length;
};

// before, name and after in a row.
constexpr Element element(std::string_view before, std::string_view name, std::string_view after) {
  Element made{};
  for (std::string_view part : {before, name, after}) {
    for (char c : part) made.text[made.length++] = c;
  }
  return made;
}

// The empty element of each member of an enumeration or flag set, such as <BROADCAST/>.
template <const auto &T>
inline constexpr auto member_elements = []() consteval {
  std::array<Element, T.members.size()> made{};
  for (std::size_t at = 0; at < made.size(); ++at) {
    made[at] = element("<", T.members[at].name, "/>");
  }
  return made;
}
();

// --- writing -----------------------------------------------------------------------------------

// The space that a size gives, taken as a signed number.
constexpr std::uint32_t space_of(std::uint32_t size) {
  return static_cast<std::int32_t>(size) < 0 ? 0 : size;
}

// A buffer that fills up: each piece is written behind the one before, with the space that is left,
// an unsigned difference. The runtime's writers stop at it and give back what they wrote.
struct Output {
  kelp_handle *handle;
  std::uint32_t space_id;
  char *buffer;
  std::uint32_t size;
  std::uint32_t *err;
  std::uint32_t length = 0;

  char *here() const { return buffer + length; }
  std::uint32_t space() const { return size - length; }
  // What is behind the pieces.
  Output rest() const { return {handle, space_id, here(), space(), err}; }

  // Whether a piece of so many bytes at most may be written without a call.
  bool is_quick(std::uint64_t most) const {
    return kelp::quick::of(handle) != nullptr && *err == 0 && most <= space();
  }
  // Lets write put such a piece into a sink. False where the call is to be made.
  template <typename Write>
  bool put(std::uint64_t most, Write write) {
    if (!is_quick(most)) return false;
    kelp::quick::StoringSink sink(here());
    write(sink);
    length += sink.used();
    return true;
  }

  // A text as it is, with a blank or as a line.
  void text(std::string_view text) { show(text, "", "%s"); }
  void word(std::string_view text) { show(text, " ", "%s "); }
  void line(std::string_view text) { show(text, "\n", "%s\n"); }

  void open(std::string_view tag, std::uint32_t state_byte) {
    const bool done = state_byte == 0 && !tag.empty() &&
                      put(kelp::quick::most_of_element(tag, 0), [&](auto &sink) {
                        kelp::quick::put_opening_tag(sink, tag);
                        sink.end();
                      });
    if (!done) length += start_tag(handle, space_id, here(), tag.data(), space(), state_byte, err);
  }
  void close(std::string_view tag) {
    const bool done = !tag.empty() && put(kelp::quick::most_of_element(tag, 0), [&](auto &sink) {
      kelp::quick::put_closing_tag(sink, tag);
      sink.end();
    });
    if (!done) length += end_tag(handle, space_id, here(), tag.data(), space(), err);
  }

 private:
  // format: what shows text with end behind it.
  void show(std::string_view text, std::string_view end, const char *format) {
    const bool done = put(text.size() + end.size(), [&](auto &sink) {
      sink.put(text);
      sink.put(end);
    });
    if (!done) length += kelp_snprintf(handle, space_id, here(), space(), err, format, text.data());
  }
};

// Labels and tags as the exported operations take them: a null one stays null, for the runtime's
// writers to say what becomes of it.
inline std::string_view view_of(const char *text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

// The one line of an enumeration or a flag set, and its element.
struct Writer : Output {
  Writer(const Output &output) : Output(output) {}
  Writer(kelp_handle *its_handle, std::uint32_t its_space_id, char *its_buffer,
         std::int32_t its_size, std::uint32_t *its_err)
      : Output{its_handle, its_space_id, its_buffer, space_of(static_cast<std::uint32_t>(its_size)),
               its_err} {}

  // The blanks, then "<label>@<type>:".
  void head(std::uint32_t indent, std::string_view label, std::string_view type) {
    const bool done = label.data() != nullptr &&
                      put(kelp::quick::most_of_line(indent, label, type, 0), [&](auto &sink) {
                        kelp::quick::put_line_head(sink, indent, label, type);
                      });
    if (done) return;
    length += kelp_print_space(handle, space_id, here(), indent, space(), err);
    length +=
        kelp_snprintf(handle, space_id, here(), space(), err, "%s@%s:", label.data(), type.data());
  }
  void element(const Element &element) {
    const bool done = put(element.length + 1, [&](auto &sink) {
      sink.put(std::string_view(element.text, element.length));
      sink.end();
    });
    if (done) return;
    length += xml_enum_print(handle, space_id, here(), element.text, space(), element.length, err);
  }
};

// What print_cr and toxml_cr give for a rendering of that length.
inline std::uint32_t carried_result(const kelp_handle *handle, std::uint32_t length) {
  return handle->cr_err != 0 ? UINT32_C(0xFFFFFFFF) : length;
}

// --- reading -----------------------------------------------------------------------------------

enum class Found { yes, no, failed };

// The empty elements, named after members, that an element of a document holds.
class Members {
 public:
  // A member that is not there leaves the word at 0, with 2 as the last error.
  virtual Found find(std::string_view name) = 0;
  virtual void clear_last_error() = 0;

 protected:
  ~Members() = default;
};

// Those of the element at a path, each asked for by its own. Any other failure than that it is not
// there is described in the message.
class MembersAtPath final : public Members {
 public:
  MembersAtPath(kelp_handle *handle, kelp_xml_document *document, const char *path,
                std::uint32_t *err, char *message, std::int32_t message_size)
      : handle_(handle),
        document_(document),
        path_(path),
        err_(err),
        message_(message),
        message_size_(message_size) {}

  Found find(std::string_view name) override;
  void clear_last_error() override { kelp::quick::clear_last_error(handle_); }

 private:
  kelp_handle *handle_;
  kelp_xml_document *document_;
  const char *path_;
  std::uint32_t *err_;
  char *message_;
  std::int32_t message_size_;
};

}  // namespace harbor::light_text
