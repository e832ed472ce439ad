// Lines of the shell as words: blanks part them, but for those in '...' or "..." or behind a
// backslash.
#pragma once

#include <string>
#include <vector>

namespace tool {

// A line as far as it goes, which may end within a word.
struct ShellWords {
  std::vector<std::string> words;
  char open_quote = 0;         // of the last word, 0 for none
  bool ends_in_word = false;   // nothing parts the last word from the end
  std::size_t last_start = 0;  // where the last word begins in the line
};

ShellWords split_words(const std::string &line);

// A word as it has to be typed, within a quote that was opened before it.
std::string quoted_word(const std::string &word, char open_quote);

}  // namespace tool
