#include "ospf_replication/subjects.hpp"

#include <xxhash.h>

#include <algorithm>
#include <cstdio>

namespace ospf_replication {

namespace {

constexpr std::string_view digits = "0123456789ABCDEF";

// Which characters are what, by their codes: paths are looked at for each message.
struct Characters {
  bool plain[256] = {};
  bool hexadecimal[256] = {};
};
constexpr Characters characters = [] {
  Characters known;
  for (const char c : std::string_view("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                       "0123456789-")) {
    known.plain[static_cast<unsigned char>(c)] = true;
  }
  for (const char c : digits) known.hexadecimal[static_cast<unsigned char>(c)] = true;
  return known;
}();

bool is_plain(char c) { return characters.plain[static_cast<unsigned char>(c)]; }
bool is_hexadecimal(char c) { return characters.hexadecimal[static_cast<unsigned char>(c)]; }

void add_digits(std::string &text, std::uint8_t byte) {
  text += digits[byte >> 4];
  text += digits[byte & 15];
}

std::string hexadecimal(std::uint64_t high, std::uint64_t low) {
  char text[33];
  std::snprintf(text, sizeof text, "%016llX%016llX", static_cast<unsigned long long>(high),
                static_cast<unsigned long long>(low));
  return text;
}

std::string digest_token(const void *bytes, std::size_t size) {
  const XXH128_hash_t hash = XXH3_128bits(bytes, size);
  return "__" + hexadecimal(hash.high64, hash.low64);
}

// References are named as fields are.
bool is_reference(std::string_view token) {
  return !token.empty() && token.size() <= longest_token &&
         std::ranges::all_of(token, [](char c) { return is_plain(c) || c == '_'; });
}

}  // namespace

bool is_token(std::string_view token) {
  if (token.empty() || token.size() > longest_token) return false;
  if (token == "_") return true;
  if (token.starts_with("_-")) {
    return token.size() > 2 && token.size() % 2 == 0 &&
           std::ranges::all_of(token.substr(2), is_hexadecimal);
  }
  if (token.starts_with("__")) {
    return token.size() == 34 && std::ranges::all_of(token.substr(2), is_hexadecimal);
  }
  for (std::size_t at = 0; at < token.size(); ++at) {
    if (is_plain(token[at])) continue;
    if (token[at] != '_' || at + 2 >= token.size() || !is_hexadecimal(token[at + 1]) ||
        !is_hexadecimal(token[at + 2])) {
      return false;
    }
    at += 2;
  }
  return true;
}

bool is_site_name(std::string_view text) {
  return !text.empty() && text.size() <= longest_site &&
         std::ranges::all_of(text, [](char c) { return is_plain(c) || c == '_'; });
}

std::string token_of(std::string_view key) {
  if (key.empty()) return "_";
  std::string token;
  for (const char c : key) {
    if (is_plain(c)) {
      token += c;
    } else {
      token += '_';
      add_digits(token, static_cast<std::uint8_t>(c));
    }
  }
  return token.size() <= longest_token ? token : digest_token(key.data(), key.size());
}

std::string token_of(std::span<const std::uint8_t> image) {
  if (2 + 2 * image.size() > longest_token) return digest_token(image.data(), image.size());
  std::string token = "_-";
  for (const std::uint8_t byte : image) add_digits(token, byte);
  return token;
}

std::vector<Step> steps_of(std::string_view path) {
  std::vector<Step> steps;
  if (path.size() > longest_path) return steps;
  const auto next = [&] {
    const std::size_t end = std::min(path.find('.'), path.size());
    const std::string_view token = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    return token;
  };
  // A dot at the end would have an empty token behind it.
  if (path.ends_with('.')) return steps;
  while (!path.empty()) {
    const std::string_view reference = next();
    const std::string_view key = next();
    if (!is_reference(reference) || !is_token(key) || steps.size() == deepest_path) return {};
    steps.push_back({reference, key});
  }
  return steps;
}

std::string_view path_above(std::string_view path) {
  const std::size_t key = path.rfind('.');
  if (key == path.npos || key == 0) return {};
  const std::size_t reference = path.rfind('.', key - 1);
  return reference == path.npos ? std::string_view{} : path.substr(0, reference);
}

Subjects::Subjects(const std::string &site)
    : stream("ospf-harbor_" + site),
      all("ospf-harbor." + site + ".>"),
      rows("ospf-harbor." + site + ".row."),
      commit("ospf-harbor." + site + ".commit"),
      service("ospf-harbor-sender." + site) {}

}  // namespace ospf_replication
