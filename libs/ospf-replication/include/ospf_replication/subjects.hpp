// The names under which a site's rows travel. A row's path is its way down from the root: for each
// level the reference that leads there and the row's key, as tokens with dots between them. Tokens
// have letters, digits and '-' as they are; every other byte of a key is '_' and two hexadecimal
// digits, the empty key is "_", and a key that would be too long is "__" and its digest. A key that
// its text does not tell from others is "_-" and its image in hexadecimal digits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ospf_replication {

inline constexpr std::size_t longest_site = 64;
inline constexpr std::size_t longest_token = 200;
inline constexpr std::size_t longest_path = 3500;
inline constexpr std::size_t deepest_path = 32;  // levels

// Letters, digits, '-' and '_', at least one.
bool is_site_name(std::string_view text);

// The token of a key by its text, and by its image.
std::string token_of(std::string_view key);
std::string token_of(std::span<const std::uint8_t> image);

// Whether token_of() makes such a token.
bool is_token(std::string_view text);

// One level of a path.
struct Step {
  std::string_view reference;
  std::string_view key;  // its token
};

// The levels of a path; none when it is not one that token_of() makes.
std::vector<Step> steps_of(std::string_view path);
// The path of the row above; empty for a row of the root's table.
std::string_view path_above(std::string_view path);

struct Subjects {
  explicit Subjects(const std::string &site);

  std::string stream;   // the name of the stream
  std::string all;      // what the stream takes
  std::string rows;     // in front of each path
  std::string commit;   // of the commit markers
  std::string service;  // where the sender answers, outside the stream
};

}  // namespace ospf_replication
