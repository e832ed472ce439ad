// Values of TLVs, read from their front into words, and what several kinds of TLVs have.
#pragma once

#include <bit>
#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <utility>

#include "ospf_tables/row_keys.hpp"
#include "views/lsa_names.hpp"
#include "views/tlv_words.hpp"

namespace tool {

using Octets = std::span<const std::uint8_t>;

constexpr std::size_t padded(std::size_t length) { return (length + 3) / 4 * 4; }

// Reads a value from its front; what is not there reads as 0 and makes the reading unsound.
class TlvValue {
 public:
  explicit TlvValue(Octets octets) : octets_(octets) {}

  std::uint32_t number(std::size_t size) {
    if (octets_.size() < size) {
      refuse();
      return 0;
    }
    std::uint32_t value = 0;
    for (const std::uint8_t octet : octets_.first(size)) value = value << 8 | octet;
    octets_ = octets_.subspan(size);
    return value;
  }
  std::string quad() { return ospf_tables::dotted(number(4)); }
  float real() { return std::bit_cast<float>(number(4)); }
  Octets rest() { return std::exchange(octets_, {}); }
  std::size_t left() const { return octets_.size(); }
  bool sound() const { return sound_; }
  void refuse() {
    sound_ = false;
    octets_ = {};
  }

 private:
  Octets octets_;
  bool sound_ = true;
};

template <std::size_t n>
nlohmann::ordered_json named_flags(std::uint32_t flags, const lsa_vocabulary::Named (&names)[n]) {
  auto list = nlohmann::ordered_json::array();
  for (const lsa_vocabulary::Named &each : names) {
    if ((flags & each.number) != 0) list.push_back(each.name);
    flags &= ~each.number;
  }
  if (flags != 0) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%02x", flags);
    list.push_back(text);
  }
  return list;
}

inline nlohmann::ordered_json name_or_number(const char *name, std::uint32_t number) {
  return name == nullptr ? nlohmann::ordered_json(number) : nlohmann::ordered_json(name);
}

// --- segment routing ---

inline constexpr lsa_vocabulary::Named prefix_sid_flags[] = {
    {0x40, "NP"}, {0x20, "M"}, {0x10, "E"}, {0x08, "V"}, {0x04, "L"}};
inline constexpr lsa_vocabulary::Named adjacency_sid_flags[] = {
    {0x80, "B"}, {0x40, "V"}, {0x20, "L"}, {0x10, "G"}, {0x08, "P"}};

inline std::string algorithm_name(std::uint32_t algorithm) {
  if (algorithm == 0) return "SPF";
  if (algorithm == 1) return "strict SPF";
  return (algorithm >= 128 ? "flexible " : "") + std::to_string(algorithm);
}

// A label has three octets, an index into a block four.
inline void read_sid(TlvValue &value, TlvSays &says) {
  if (value.left() == 3) {
    says.emplace_back("label", value.number(3) & 0xfffff);
  } else {
    says.emplace_back("index", value.number(4));
  }
}

}  // namespace tool
