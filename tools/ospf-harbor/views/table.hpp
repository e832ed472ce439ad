// A table of texts, each column as wide as its widest cell. What does not fit on the screen is left
// out column by column, the least wanted first, and named below.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "views/screen.hpp"

namespace tool {

struct Column {
  std::string title;
  bool right = false;   // numbers
  unsigned spared = 0;  // of columns that may be left out the highest goes first; 0 stays
};

enum class Tone { plain, good, middling, bad, faint };

struct Cell {
  std::string text;
  Tone tone = Tone::plain;
  Cell(std::string content, Tone of = Tone::plain) : text(std::move(content)), tone(of) {}
  Cell(const char *content, Tone of = Tone::plain) : text(content), tone(of) {}
};

class Table {
 public:
  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  void add(std::vector<Cell> row) { rows_.push_back(std::move(row)); }
  bool empty() const { return rows_.empty(); }
  // Columns in which every cell is empty or "-" are left out.
  void leave_out_what_is_empty();
  void leave_out(const std::string &title);

  // With two blanks before each row. Gives the titles of columns for which there was no room.
  std::vector<std::string> print(std::FILE *out, const Screen &screen) const;

 private:
  void erase(std::size_t column);

  std::vector<Column> columns_;
  std::vector<std::vector<Cell>> rows_;
};

// Text in a tone, where colours are wanted.
std::string toned(const std::string &text, Tone tone, const Screen &screen);

// How many columns a text takes on a terminal.
std::size_t width_of(const std::string &text);

}  // namespace tool
