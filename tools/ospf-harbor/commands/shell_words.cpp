#include "commands/shell_words.hpp"

namespace tool {

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

}  // namespace

ShellWords split_words(const std::string &line) {
  ShellWords split;
  for (std::size_t at = 0; at < line.size(); ++at) {
    const char c = line[at];
    if (split.open_quote == 0 && is_blank(c)) {
      split.ends_in_word = false;
      continue;
    }
    if (!split.ends_in_word) {
      split.words.emplace_back();
      split.last_start = at;
    }
    split.ends_in_word = true;
    std::string &word = split.words.back();
    if (c == split.open_quote) {
      split.open_quote = 0;
    } else if (split.open_quote == 0 && (c == '\'' || c == '"')) {
      split.open_quote = c;
    } else if (c == '\\' && split.open_quote != '\'' && at + 1 < line.size()) {
      word += line[++at];
    } else {
      word += c;
    }
  }
  return split;
}

std::string quoted_word(const std::string &word, char open_quote) {
  std::string text;
  if (open_quote == 0) {
    if (word.starts_with('#')) text += '\\';
    for (const char c : word) {
      if (is_blank(c) || c == '\'' || c == '"' || c == '\\') text += '\\';
      text += c;
    }
    return text;
  }
  text += open_quote;
  for (const char c : word) {
    // Nothing is special within '...' but its end.
    if (c == '\'' && open_quote == '\'') {
      text += "'\\''";
    } else {
      if (open_quote == '"' && (c == '"' || c == '\\')) text += '\\';
      text += c;
    }
  }
  return text;
}

}  // namespace tool
