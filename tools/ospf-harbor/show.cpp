#include "show.hpp"

#include <algorithm>
#include <array>
#include <optional>

#include "input_error.hpp"

namespace tool {

namespace {

constexpr std::array<const char *, 5> kinds{"ospf", "instance", "area", "interface", "neighbor"};

struct Step {
  std::size_t kind;
  std::optional<std::string> key;
};

std::vector<std::string> parts(const std::string &path) {
  std::vector<std::string> result;
  std::size_t at = 0;
  while (at < path.size()) {
    std::size_t end = path.find('/', at);
    if (end == std::string::npos) end = path.size();
    if (end > at) result.push_back(path.substr(at, end - at));
    at = end + 1;
  }
  return result;
}

std::vector<Step> parse(const std::string &path) {
  std::vector<Step> steps;
  const std::vector<std::string> words = parts(path);
  for (std::size_t at = 0; at < words.size(); at += 2) {
    const auto kind = std::find(kinds.begin(), kinds.end(), words[at]);
    const std::string place = "part " + std::to_string(at + 1);
    if (kind == kinds.end()) {
      throw InputError("show " + path, place, "\"" + words[at] + "\"",
                       "one of ospf, instance, area, interface, neighbor");
    }
    const auto number = static_cast<std::size_t>(kind - kinds.begin());
    if (!steps.empty() && number <= steps.back().kind) {
      throw InputError("show " + path, place, "\"" + words[at] + "\"",
                       std::string("a kind below ") + kinds[steps.back().kind]);
    }
    steps.push_back({number, at + 1 < words.size() ? std::optional(words[at + 1]) : std::nullopt});
  }
  return steps;
}

// An area may be named by its number as well.
bool matches(const Row &row, const std::string &key) {
  if (row.key == key) return true;
  if (row.kind != "area" || key.empty() || key.size() > 10) return false;
  if (key.find_first_not_of("0123456789") != std::string::npos) return false;
  return row.key == dotted(static_cast<std::uint32_t>(std::stoull(key)));
}

struct Printer {
  const std::vector<Step> &steps;
  std::FILE *out;
  std::size_t printed = 0;

  void walk(const std::vector<Row> &rows, const std::string &above, std::size_t depth,
            std::size_t step) {
    for (const Row &row : rows) {
      std::size_t next = step;
      if (step < steps.size() && kinds[steps[step].kind] == row.kind) {
        if (steps[step].key && !matches(row, *steps[step].key)) continue;
        ++next;
      }
      const std::string here =
          row.kind == "ospf" ? "" : above + (above.empty() ? "" : "/") + row.kind + "/" + row.key;
      if (next == steps.size()) print(row, here.empty() ? "ospf" : here, depth);
      walk(row.children, here, next == steps.size() ? depth + 1 : depth, next);
    }
  }

  void print(const Row &row, const std::string &path, std::size_t depth) {
    const std::string margin(2 * depth, ' ');
    std::fprintf(out, "%s%s\n", margin.c_str(), path.c_str());
    std::size_t at = 0;
    while (at < row.text.size()) {
      std::size_t end = row.text.find('\n', at);
      if (end == std::string::npos) end = row.text.size();
      std::fprintf(out, "%s  %s\n", margin.c_str(), row.text.substr(at, end - at).c_str());
      at = end + 1;
    }
    ++printed;
  }
};

}  // namespace

std::size_t show(const std::vector<Row> &tree, const std::string &path, std::FILE *out) {
  const std::vector<Step> steps = parse(path);
  Printer printer{steps, out};
  printer.walk(tree, "", 0, 0);
  return printer.printed;
}

}  // namespace tool
