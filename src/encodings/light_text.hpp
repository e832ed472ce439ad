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

// A buffer that fills up: each call writes behind the one before, with the space that is left.
class Writer {
 public:
  Writer(kelp_handle *handle, std::uint32_t space_id, char *buffer, std::int32_t size,
         std::uint32_t *err)
      : handle_(handle),
        space_id_(space_id),
        buffer_(buffer),
        size_(space_of(static_cast<std::uint32_t>(size))),
        err_(err) {}

  std::uint32_t written() const { return written_; }

  // The blanks, then "<label>@<type>:".
  void head(std::uint32_t indent, const char *label, const char *type) {
    written_ += kelp_print_space(handle_, space_id_, place(), indent, left(), err_);
    written_ += kelp_snprintf(handle_, space_id_, place(), left(), err_, "%s@%s:", label, type);
  }
  void text(const char *text) {
    written_ += kelp_snprintf(handle_, space_id_, place(), left(), err_, "%s", text);
  }
  void word(const char *text) {
    written_ += kelp_snprintf(handle_, space_id_, place(), left(), err_, "%s ", text);
  }
  void line(const char *text) {
    written_ += kelp_snprintf(handle_, space_id_, place(), left(), err_, "%s\n", text);
  }

  void open(const char *tag) {
    written_ += start_tag(handle_, space_id_, place(), tag, left(), 0, err_);
  }
  void element(const Element &element) {
    written_ +=
        xml_enum_print(handle_, space_id_, place(), element.text, left(), element.length, err_);
  }
  void close(const char *tag) {
    written_ += end_tag(handle_, space_id_, place(), tag, left(), err_);
  }

 private:
  char *place() const { return buffer_ + written_; }
  std::uint32_t left() const { return size_ - written_; }

  kelp_handle *handle_;
  std::uint32_t space_id_;
  char *buffer_;
  std::uint32_t size_;
  std::uint32_t *err_;
  std::uint32_t written_ = 0;
};

// What print_cr and toxml_cr give for a rendering of that length.
inline std::uint32_t carried_result(const kelp_handle *handle, std::uint32_t length) {
  return handle->cr_err != 0 ? UINT32_C(0xFFFFFFFF) : length;
}

// --- reading -----------------------------------------------------------------------------------

enum class Found { yes, no, failed };

// Asks the document for the child of path that is named after a member. A child that is not there
// leaves the word at 0, with 2 as the last error; any other failure is described in message.
Found find_member(kelp_handle *handle, kelp_xml_document *document, const char *path,
                  std::string_view name, std::uint32_t *err, char *message,
                  std::int32_t message_size);

}  // namespace harbor::light_text
