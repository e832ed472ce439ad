// The lines of an answer in text: words, and failures that name file, line and text.
#pragma once

#include <string>
#include <vector>

#include "ospf_decode/address.hpp"

namespace router_answers {

struct TextLine {
  std::size_t number = 0;
  std::size_t depth = 0;  // tabs before it
  std::string text;       // without them and without spaces behind
  std::vector<std::string> words;
};

class TextAnswer {
 public:
  // Throws InputError when the file cannot be read.
  explicit TextAnswer(const std::string &path);

  // Lines that are not empty.
  const std::vector<TextLine> &lines() const { return lines_; }

  [[noreturn]] void fail(const TextLine &line, const char *expected) const;

  std::uint32_t dotted(const TextLine &line, const std::string &word, const char *expected) const;
  std::uint32_t decimal(const TextLine &line, const std::string &word, std::uint32_t highest,
                        const char *expected) const;
  std::uint32_t hexadecimal(const TextLine &line, const std::string &word, std::uint32_t highest,
                            const char *expected) const;
  ospf_decode::PrefixV3 prefix(const TextLine &line, const std::string &word) const;

 private:
  std::string path_;
  std::vector<TextLine> lines_;
};

}  // namespace router_answers
