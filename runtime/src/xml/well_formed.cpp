// One pass over the document. Comments, CDATA sections and processing instructions are stepped
// over, since nothing in them is a declaration or a reference; their bytes are looked at apart.
#include "xml/well_formed.hpp"

#include <algorithm>
#include <array>
#include <charconv>

#include "xml/characters.hpp"

namespace kelp {
namespace {

// Whether name, the text between "&" and ";", refers to a character or one of the five entities.
bool is_allowed_reference(std::string_view name) {
  for (const std::string_view known : {"amp", "lt", "gt", "quot", "apos"}) {
    if (name == known) return true;
  }
  if (name.size() < 2 || name[0] != '#') return false;
  const bool hexadecimal = name[1] == 'x';
  name.remove_prefix(hexadecimal ? 2 : 1);
  uint32_t character = 0;
  const auto [end, error] =
      std::from_chars(name.data(), name.data() + name.size(), character, hexadecimal ? 16 : 10);
  return error == std::errc() && end == name.data() + name.size() && xml_has_character(character);
}

// The longest reference is a character number; no look further than that keeps the pass linear.
constexpr size_t kLongestReference = 16;

// The bytes that stand for themselves wherever they are: of ASCII what is printed, and blanks.
constexpr auto kPlain = [] {
  std::array<bool, 256> plain{};
  for (unsigned byte = 0; byte < 0x80; ++byte) plain[byte] = xml_has_ascii(byte);
  plain['<'] = plain['&'] = false;
  return plain;
}();

// What is forbidden at a "<" or an "&", null for nothing; *step gets the bytes to go on behind.
const char *forbidden_markup(std::string_view rest, size_t *step) {
  static constexpr struct {
    std::string_view start;
    std::string_view end;
  } kSections[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
  *step = 1;
  if (rest[0] == '&') {
    const size_t end = rest.substr(0, kLongestReference).find(';');
    if (end == std::string_view::npos || !is_allowed_reference(rest.substr(1, end - 1))) {
      return "a reference to an unknown entity";
    }
    *step = end;
    return nullptr;
  }
  if (rest.size() < 2 || (rest[1] != '!' && rest[1] != '?')) return nullptr;
  for (const auto &section : kSections) {
    if (!rest.starts_with(section.start)) continue;
    const size_t end = rest.find(section.end, section.start.size());
    if (end == std::string_view::npos) return "a section without an end";
    *step = end + section.end.size();
    return nullptr;
  }
  return rest[1] == '!' ? "a document type declaration" : nullptr;
}

}  // namespace

// A byte that XML cannot carry is told before anything else, wherever it stands.
Refusal find_forbidden(std::string_view text) {
  const auto carries = [&](size_t from, size_t length, Refusal *refused) {
    const size_t carried = xml_prefix(text.substr(from, length));
    if (carried == std::min(length, text.size() - from)) return true;
    *refused = {"a byte that XML cannot carry", from + carried};
    return false;
  };
  Refusal refused;
  for (size_t at = 0;;) {
    while (at < text.size() && kPlain[static_cast<unsigned char>(text[at])]) ++at;
    if (at == text.size()) return {};
    size_t step = 0;
    if (text[at] == '<' || text[at] == '&') {
      const char *found = forbidden_markup(text.substr(at), &step);
      if (found != nullptr) {
        return carries(at, std::string_view::npos, &refused) ? Refusal{found, at} : refused;
      }
      if (step > 1 && !carries(at, step, &refused)) return refused;
    } else {
      step = xml_character(text.substr(at));
      if (step == 0) return {"a byte that XML cannot carry", at};
    }
    at += step;
  }
}

}  // namespace kelp
