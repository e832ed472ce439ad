#include "views/show.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <tuple>
#include <vector>

#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/tree.hpp"
#include "usage_error.hpp"
#include "views/json_lines.hpp"
#include "views/network_tables.hpp"
#include "views/router_names.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_tables;

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
      throw UsageError("show " + path, place, "\"" + words[at] + "\"", "one of " + list_of_kinds());
    }
    const auto number = static_cast<std::size_t>(kind - kinds.begin());
    if (!steps.empty() && number <= steps.back().kind) {
      throw UsageError("show " + path, place, "\"" + words[at] + "\"",
                       std::string("a kind below ") + kinds[steps.back().kind]);
    }
    steps.push_back({number, at + 1 < words.size() ? std::optional(words[at + 1]) : std::nullopt});
  }
  return steps;
}

// An area may be named by its number as well.
bool matches(const RowView &row, const std::string &key) {
  if (row.key == key) return true;
  if (row.kind != ospf_area_ops::kind || key.empty() || key.size() > 10) {
    return false;
  }
  if (key.find_first_not_of("0123456789") != std::string::npos) return false;
  return row.key == dotted(static_cast<std::uint32_t>(std::stoull(key)));
}

// Shows the rows at which all steps of the path are met, and those below them.
class Chooser : public TreeVisitor {
 public:
  explicit Chooser(const std::vector<Step> &steps) : steps_(steps) {}
  std::size_t shown() const { return shown_; }

  bool enter(const RowView &row) override {
    Level level = levels_.empty() ? Level{} : levels_.back();
    if (level.step < steps_.size() && row.kind == kinds[steps_[level.step].kind]) {
      if (steps_[level.step].key && !matches(row, *steps_[level.step].key)) return false;
      ++level.step;
    }
    if (level.step == steps_.size()) {
      ++shown_;
      if (!show(row, level.depth++)) return false;
    }
    levels_.push_back(level);
    return true;
  }

  void leave() override { levels_.pop_back(); }

 protected:
  // depth: how many of the rows above were shown; false passes over what is below.
  virtual bool show(const RowView &row, std::size_t depth) = 0;

 private:
  struct Level {
    std::size_t step = 0;  // of the path, how many are met
    std::size_t depth = 0;
  };

  const std::vector<Step> &steps_;
  std::vector<Level> levels_;
  std::size_t shown_ = 0;
};

// The router that a row is of, which the end of its key tells.
std::optional<std::uint32_t> router_of(const RowView &row) {
  constexpr const char *of_routers[] = {ospf_instance_rev1_ops::kind, ospf_instance_ops::kind,
                                        ospf_neighbor_ops::kind, area_scope_lsa_ops::kind,
                                        link_scope_lsa_ops::kind};
  const bool is_one = std::ranges::find(of_routers, row.kind) != std::end(of_routers);
  return is_one ? parse_dotted(row.key.substr(row.key.rfind(',') + 1)) : std::nullopt;
}

class TextOfChosen : public Chooser {
 public:
  TextOfChosen(Session &session, const std::vector<Step> &steps, std::FILE *out)
      : Chooser(steps),
        names_(router_names(session)),
        site_(site_part(session.named_site())),
        out_(out) {}

 private:
  bool show(const RowView &row, std::size_t depth) override {
    const std::string margin(2 * depth, ' ');
    const std::string name = row.path.empty() ? std::string(row.kind) : row.path;
    const auto router = router_of(row);
    const auto router_name = router ? names_.find(*router) : names_.end();
    std::fprintf(out_, "%s%s%s%s\n", margin.c_str(), depth == 0 ? site_.c_str() : "",
                 in_one_line(name).c_str(),
                 router_name == names_.end() ? "" : (" " + router_name->second).c_str());
    const std::string text = row.text();
    std::size_t at = 0;
    while (at < text.size()) {
      std::size_t end = text.find('\n', at);
      if (end == std::string::npos) end = text.size();
      std::fprintf(out_, "%s  %s\n", margin.c_str(),
                   in_one_line(std::string_view(text).substr(at, end - at)).c_str());
      at = end + 1;
    }
    return true;
  }

  const RouterNames names_;
  const std::string site_;
  std::FILE *out_;
};

class JsonOfChosen : public Chooser {
 public:
  JsonOfChosen(Session &session, const std::vector<Step> &steps, std::FILE *out)
      : Chooser(steps), session_(session), names_(router_names(session)), out_(out) {}

 private:
  bool show(const RowView &row, std::size_t) override {
    std::fprintf(out_, "%s\n", json_line(session_, row, &names_).c_str());
    return row.kind != link_scope_lsa_ops::kind && row.kind != area_scope_lsa_ops::kind;
  }

  Session &session_;
  const RouterNames names_;
  std::FILE *out_;
};

class VisitOfChosen : public Chooser {
 public:
  using Visit = std::function<bool(const RowView &row)>;
  VisitOfChosen(const std::vector<Step> &steps, const Visit &visit)
      : Chooser(steps), visit_(visit) {}

 private:
  bool show(const RowView &row, std::size_t) override { return visit_(row); }

  const Visit &visit_;
};

template <typename Printer>
std::size_t show_with(Session &session, const std::string &path, std::FILE *out) {
  const std::vector<Step> steps = parse(path);
  Printer printer(session, steps, out);
  walk_tree(session, printer);
  return printer.shown();
}

}  // namespace

std::size_t show(Session &session, const std::string &path, std::FILE *out) {
  return show_with<TextOfChosen>(session, path, out);
}

std::size_t show_json(Session &session, const std::string &path, std::FILE *out) {
  return show_with<JsonOfChosen>(session, path, out);
}

void visit_path(Session &session, const std::string &path,
                const std::function<bool(const RowView &row)> &visit) {
  const std::vector<Step> steps = parse(path);
  VisitOfChosen visitor(steps, visit);
  walk_tree(session, visitor);
}

int show_overview(Session &session, const std::string &colour) {
  const bool any = print_overview(read_network(session, {}), screen_of_output(colour), stdout);
  // A tree that holds no area has its rows all the same.
  return any ? 0 : show_path(session, "");
}

int show_path(Session &session, const std::string &path, bool json) {
  if ((json ? show_json : show)(session, path, stdout) != 0) return 0;
  const bool empty = root_table(session, false) == nullptr;
  std::fprintf(stderr, "ospf-harbor: show: %s%s\n", site_part(session.named_site()).c_str(),
               empty ? "nothing is loaded" : ("nothing is at " + in_one_line(path)).c_str());
  return 1;
}

}  // namespace tool
