#include "text_answer.hpp"

#include <sstream>

#include "ospf_tables/input_error.hpp"
#include "ospf_tables/row_keys.hpp"
#include "prefix_text.hpp"
#include "router_answers/answer_file.hpp"

namespace router_answers {

TextAnswer::TextAnswer(const std::string &path) : path_(path) {
  std::istringstream text(read_answer(path));
  std::size_t number = 0;
  for (std::string raw; std::getline(text, raw);) {
    TextLine line;
    line.number = ++number;
    while (line.depth < raw.size() && raw[line.depth] == '\t') ++line.depth;
    raw.erase(raw.find_last_not_of(" \t\r") + 1);
    if (raw.size() <= line.depth) continue;
    line.text = raw.substr(line.depth);
    std::istringstream words(line.text);
    for (std::string word; words >> word;) line.words.push_back(word);
    if (!line.words.empty()) lines_.push_back(std::move(line));
  }
}

void TextAnswer::fail(const TextLine &line, const char *expected) const {
  throw ospf_tables::InputError(path_, "line " + std::to_string(line.number),
                                "\"" + line.text.substr(0, 80) + "\"", expected);
}

std::uint32_t TextAnswer::dotted(const TextLine &line, const std::string &word,
                                 const char *expected) const {
  const auto value = ospf_tables::parse_dotted(word);
  if (!value) fail(line, expected);
  return *value;
}

std::uint32_t TextAnswer::decimal(const TextLine &line, const std::string &word,
                                  std::uint32_t highest, const char *expected) const {
  if (word.empty() || word.size() > 10 ||
      word.find_first_not_of("0123456789") != std::string::npos || std::stoull(word) > highest) {
    fail(line, expected);
  }
  return static_cast<std::uint32_t>(std::stoull(word));
}

std::uint32_t TextAnswer::hexadecimal(const TextLine &line, const std::string &word,
                                      std::uint32_t highest, const char *expected) const {
  if (word.empty() || word.size() > 8 ||
      word.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos ||
      std::stoull(word, nullptr, 16) > highest) {
    fail(line, expected);
  }
  return static_cast<std::uint32_t>(std::stoull(word, nullptr, 16));
}

ospf_decode::PrefixV3 TextAnswer::prefix(const TextLine &line, const std::string &word) const {
  const auto parsed = parse_prefix(word);
  if (!parsed) fail(line, "a prefix");
  return *parsed;
}

}  // namespace router_answers
