// One pass over the markup. Comments, CDATA sections and processing instructions are stepped over,
// since nothing in them is a declaration or a reference.
#include "xml/well_formed.hpp"

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

// Markup stands close together, so that a plain loop is ahead of a search for either byte.
size_t next_markup(std::string_view text, size_t at) {
  while (at < text.size() && text[at] != '<' && text[at] != '&') ++at;
  return at;
}

}  // namespace

Refusal find_forbidden(std::string_view text) {
  static constexpr struct {
    std::string_view start;
    std::string_view end;
  } kSections[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};

  const size_t carried = xml_prefix(text);
  if (carried < text.size()) return {"a byte that XML cannot carry", carried};

  size_t at = 0;
  while ((at = next_markup(text, at)) < text.size()) {
    const std::string_view rest = text.substr(at);
    if (rest[0] == '&') {
      const size_t end = rest.substr(0, kLongestReference).find(';');
      if (end == std::string_view::npos || !is_allowed_reference(rest.substr(1, end - 1))) {
        return {"a reference to an unknown entity", at};
      }
      at += end;
      continue;
    }
    size_t step = 1;
    for (const auto &section : kSections) {
      if (!rest.starts_with(section.start)) continue;
      const size_t end = rest.find(section.end, section.start.size());
      if (end == std::string_view::npos) return {"a section without an end", at};
      step = end + section.end.size();
    }
    if (step == 1 && rest.starts_with("<!")) return {"a document type declaration", at};
    at += step;
  }
  return {};
}

}  // namespace kelp
