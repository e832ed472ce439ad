#include "views/table.hpp"

#include <algorithm>

#include "ospf_tables/input_error.hpp"

namespace tool {

namespace {

constexpr std::size_t margin = 2;
constexpr std::size_t gap = 2;

const char *code_of(Tone tone) {
  switch (tone) {
    case Tone::plain:
      return "";
    case Tone::good:
      return "\033[32m";
    case Tone::middling:
      return "\033[33m";
    case Tone::bad:
      return "\033[31m";
    case Tone::faint:
      return "\033[2m";
  }
  return "";
}

}  // namespace

std::string toned(const std::string &text, Tone tone, const Screen &screen) {
  if (!screen.colour || tone == Tone::plain || text.empty()) return text;
  return code_of(tone) + text + "\033[0m";
}

std::size_t width_of(const std::string &text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xc0) != 0x80;
  }));
}

void Table::erase(std::size_t column) {
  const auto at = static_cast<std::ptrdiff_t>(column);
  columns_.erase(columns_.begin() + at);
  for (auto &row : rows_) row.erase(row.begin() + at);
}

void Table::leave_out_what_is_empty() {
  for (std::size_t at = columns_.size(); at-- > 0;) {
    const bool says_nothing = std::all_of(rows_.begin(), rows_.end(), [&](const auto &row) {
      return row[at].text.empty() || row[at].text == "-";
    });
    if (says_nothing) erase(at);
  }
}

void Table::leave_out(const std::string &title) {
  for (std::size_t at = columns_.size(); at-- > 0;) {
    if (columns_[at].title == title) erase(at);
  }
}

std::vector<std::string> Table::print(std::FILE *out, const Screen &screen) const {
  std::vector<std::size_t> widths;
  for (std::size_t at = 0; at < columns_.size(); ++at) {
    std::size_t width = width_of(columns_[at].title);
    for (const auto &row : rows_) {
      width = std::max(width, width_of(ospf_tables::in_one_line(row[at].text)));
    }
    widths.push_back(width);
  }
  std::vector<bool> shown(columns_.size(), true);
  const auto total = [&] {
    std::size_t sum = margin;
    bool first = true;
    for (std::size_t at = 0; at < widths.size(); ++at) {
      if (!shown[at]) continue;
      sum += widths[at] + (first ? 0 : gap);
      first = false;
    }
    return sum;
  };
  while (screen.width != 0 && total() > screen.width) {
    std::size_t least = columns_.size();
    for (std::size_t at = 0; at < columns_.size(); ++at) {
      if (!shown[at] || columns_[at].spared == 0) continue;
      if (least == columns_.size() || columns_[at].spared > columns_[least].spared) least = at;
    }
    if (least == columns_.size()) break;
    shown[least] = false;
  }
  const auto print_row = [&](const auto &cell_of) {
    std::string line(margin, ' ');
    std::string blanks;
    bool first = true;
    for (std::size_t at = 0; at < columns_.size(); ++at) {
      if (!shown[at]) continue;
      const auto [text, tone] = cell_of(at);
      const std::string pad(widths[at] - width_of(text), ' ');
      line += blanks + (first ? "" : std::string(gap, ' '));
      line += columns_[at].right ? pad + toned(text, tone, screen) : toned(text, tone, screen);
      blanks = columns_[at].right ? "" : pad;  // none behind the last
      first = false;
    }
    std::fprintf(out, "%s\n", line.c_str());
  };
  print_row([&](std::size_t at) { return std::pair(columns_[at].title, Tone::faint); });
  for (const auto &row : rows_) {
    print_row([&](std::size_t at) {
      return std::pair(ospf_tables::in_one_line(row[at].text), row[at].tone);
    });
  }
  std::vector<std::string> left_out;
  for (std::size_t at = 0; at < columns_.size(); ++at) {
    if (!shown[at]) left_out.push_back(columns_[at].title);
  }
  return left_out;
}

}  // namespace tool
