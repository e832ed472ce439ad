// One pass over the document. Comments, CDATA sections and processing instructions are stepped
// over, since nothing in them is a declaration or a reference; their bytes are looked at apart.
#include "xml/well_formed.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

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

// The bytes that need no look, wherever they are: of ASCII what is printed, and blanks. Markup that
// matters begins with "&", or has "!" or "?" behind its "<".
constexpr auto kPlain = [] {
  std::array<bool, 256> plain{};
  for (unsigned byte = 0; byte < 0x80; ++byte) plain[byte] = xml_has_ascii(byte);
  plain['&'] = plain['!'] = plain['?'] = false;
  return plain;
}();

// As many bytes as are looked at together.
using Block = uint8_t __attribute__((vector_size(16)));
constexpr size_t kBlock = sizeof(Block);

// Whether a block needs no look: each byte is printed ASCII or a blank, and none of the three.
bool is_plain_block(const char *text) {
  Block block;
  std::memcpy(&block, text, kBlock);
  const auto is = [&](char byte) { return block == static_cast<uint8_t>(byte); };
  const auto unprinted = block - 0x20 >= static_cast<uint8_t>(0x80 - 0x20);
  const auto blank = is('\t') | is('\n') | is('\r');
  const auto looks = (unprinted & ~blank) | is('&') | is('!') | is('?');
  uint64_t halves[2];
  static_assert(sizeof halves == kBlock);
  std::memcpy(halves, &looks, sizeof halves);
  return (halves[0] | halves[1]) == 0;
}

// Where the first byte at or behind at is that needs a look.
size_t end_of_plain(std::string_view text, size_t at) {
  for (;;) {
    while (text.size() - at >= kBlock && is_plain_block(text.data() + at)) at += kBlock;
    const size_t stop = std::min(text.size(), at + kBlock);
    while (at < stop && kPlain[static_cast<unsigned char>(text[at])]) ++at;
    if (at < stop || at == text.size()) return at;
  }
}

// What is forbidden at a "<!", a "<?" or an "&", null for nothing; *step gets the bytes to go on
// behind.
const char *forbidden_markup(std::string_view rest, size_t *step) {
  static constexpr struct {
    std::string_view start;
    std::string_view end;
  } kSections[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
  if (rest[0] == '&') {
    const size_t end = rest.substr(0, kLongestReference).find(';');
    if (end == std::string_view::npos || !is_allowed_reference(rest.substr(1, end - 1))) {
      return "a reference to an unknown entity";
    }
    *step = end;
    return nullptr;
  }
  for (const auto &section : kSections) {
    if (!rest.starts_with(section.start)) continue;
    const size_t end = rest.find(section.end, section.start.size());
    if (end == std::string_view::npos) return "a section without an end";
    *step = end + section.end.size();
    return nullptr;
  }
  return "a document type declaration";
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
    at = end_of_plain(text, at);
    if (at == text.size()) return {};
    const bool declares = (text[at] == '!' || text[at] == '?') && at > 0 && text[at - 1] == '<';
    if (declares) --at;
    size_t step = 0;
    if (declares || text[at] == '&') {
      const char *found = forbidden_markup(text.substr(at), &step);
      if (found != nullptr) {
        return carries(at, std::string_view::npos, &refused) ? Refusal{found, at} : refused;
      }
      if (!carries(at, step, &refused)) return refused;
    } else {
      step = xml_character(text.substr(at));
      if (step == 0) return {"a byte that XML cannot carry", at};
    }
    at += step;
  }
}

}  // namespace kelp
