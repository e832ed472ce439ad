#include "show.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <tuple>
#include <vector>

#include "input_error.hpp"
#include "row_keys.hpp"
#include "tree.hpp"

namespace tool {

namespace {

template <typename... Ops>
constexpr std::array<const char *, sizeof...(Ops)> kinds_of(std::tuple<Ops...> *) {
  return {Ops::kind...};
}

// From the root down; a path goes through them in this order.
constexpr auto kinds = kinds_of(static_cast<AllTables *>(nullptr));

std::string list_of_kinds() {
  std::string list;
  for (const char *kind : kinds) list += (list.empty() ? "" : ", ") + std::string(kind);
  return list;
}

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
      throw InputError("show " + path, place, "\"" + words[at] + "\"", "one of " + list_of_kinds());
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
bool matches(const RowView &row, const std::string &key) {
  if (row.key == key) return true;
  if (row.kind != std::string_view(ospf_area_ops::kind) || key.empty() || key.size() > 10) {
    return false;
  }
  if (key.find_first_not_of("0123456789") != std::string::npos) return false;
  return row.key == dotted(static_cast<std::uint32_t>(std::stoull(key)));
}

// Prints the rows at which all steps of the path are met, and those below them.
class Printer : public TreeVisitor {
 public:
  Printer(const std::vector<Step> &steps, std::FILE *out) : steps_(steps), out_(out) {}
  std::size_t printed() const { return printed_; }

  bool enter(const RowView &row) override {
    Level level = levels_.empty() ? Level{} : levels_.back();
    if (level.step < steps_.size() &&
        row.kind == std::string_view(kinds[steps_[level.step].kind])) {
      if (steps_[level.step].key && !matches(row, *steps_[level.step].key)) return false;
      ++level.step;
    }
    if (row.kind != std::string_view(ospf_rev1_ops::kind)) {
      level.path += (level.path.empty() ? "" : "/") + std::string(row.kind) + "/" + row.key;
    }
    if (level.step == steps_.size()) print(row, level);
    levels_.push_back(std::move(level));
    return true;
  }

  void leave() override { levels_.pop_back(); }

 private:
  struct Level {
    std::string path;
    std::size_t step = 0;   // of the path, how many are met
    std::size_t depth = 0;  // of the margin of rows below
  };

  void print(const RowView &row, Level &level) {
    const std::string margin(2 * level.depth, ' ');
    std::fprintf(out_, "%s%s\n", margin.c_str(),
                 level.path.empty() ? row.kind : level.path.c_str());
    const std::string text = row.text();
    std::size_t at = 0;
    while (at < text.size()) {
      std::size_t end = text.find('\n', at);
      if (end == std::string::npos) end = text.size();
      std::fprintf(out_, "%s  %s\n", margin.c_str(), text.substr(at, end - at).c_str());
      at = end + 1;
    }
    ++level.depth;
    ++printed_;
  }

  const std::vector<Step> &steps_;
  std::FILE *out_;
  std::vector<Level> levels_;
  std::size_t printed_ = 0;
};

}  // namespace

std::size_t show(Session &session, const std::string &path, std::FILE *out) {
  const std::vector<Step> steps = parse(path);
  Printer printer(steps, out);
  walk_tree(session, printer);
  return printer.printed();
}

}  // namespace tool
