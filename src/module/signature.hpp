// The argument signature of a message: read off the conversions in its text, so that a text and its
// number in the library's file cannot part. The catalogue's check, the emitter and the tests call
// it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace harbor::messages {

// The conversions of the texts of each signature, in order; the place here is the number in the
// file. A call site's emitter takes arguments of these kinds.
inline constexpr std::array<std::string_view, 8> signature_conversions{
    "%s", "", "%u %u", "%d %d %d", "%p %s", "%s %s", "%d", "%s %u"};

constexpr bool has_conversions(std::string_view text, std::string_view conversions) {
  std::size_t taken = 0;
  for (std::size_t at = text.find('%'); at < text.size(); at = text.find('%', at + 2)) {
    if (taken != 0) ++taken;  // the blank
    if (taken > conversions.size()) return false;
    if (conversions.substr(taken, 2) != text.substr(at, 2)) return false;
    taken += 2;
  }
  return taken == conversions.size();
}

// Nothing for a combination that no emitter takes.
constexpr std::optional<std::uint32_t> signature_of(std::string_view text) {
  for (std::uint32_t signature = 0; signature < signature_conversions.size(); ++signature) {
    if (has_conversions(text, signature_conversions[signature])) return signature;
  }
  return std::nullopt;
}

}  // namespace harbor::messages
