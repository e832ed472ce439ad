#include "views/network_tables.hpp"

#include <algorithm>
#include <functional>

#include "ospf_tables/input_error.hpp"
#include "ospf_tables/row_keys.hpp"
#include "views/router_names.hpp"
#include "views/table.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

template <typename Number>
std::string or_dash(const std::optional<Number> &number) {
  return number ? std::to_string(*number) : "-";
}

std::string or_dash(const std::string &text) { return text.empty() ? "-" : text; }

Tone tone_of(const NeighborLine &neighbor) {
  const std::string state = neighbor.state_text();
  if (neighbor.is_full()) return Tone::good;
  return state == "Down" || state == "Init" || state == "Attempt" ? Tone::bad : Tone::middling;
}

// Columns that were left out for want of room, each told once.
class LeftOut {
 public:
  void add(const std::vector<std::string> &titles) {
    for (const std::string &title : titles) {
      if (std::find(titles_.begin(), titles_.end(), title) == titles_.end()) {
        titles_.push_back(title);
      }
    }
  }
  void tell(const Screen &screen, std::FILE *out) const {
    if (titles_.empty()) return;
    std::string list;
    for (const std::string &title : titles_) list += (list.empty() ? "" : ", ") + title;
    std::fprintf(out, "no room in %zu columns for: %s\n", screen.width, list.c_str());
  }

 private:
  std::vector<std::string> titles_;
};

using Interfaces = std::vector<InterfaceLine>;
using Each = Interfaces::const_iterator;

// Calls act(first, last) for the interfaces of one area after the other.
void by_area(const Interfaces &interfaces, const std::function<void(Each, Each)> &act) {
  for (auto first = interfaces.begin(); first != interfaces.end();) {
    const auto last = std::find_if(first, interfaces.end(), [&](const InterfaceLine &line) {
      return line.instance != first->instance || line.area != first->area;
    });
    act(first, last);
    first = last;
  }
}

// The heading of an area's interfaces, with the router when all are one's.
std::string heading(Each first, Each last, const RouterNames &names, bool &one_router) {
  one_router = std::all_of(first, last,
                           [&](const InterfaceLine &line) { return line.router == first->router; });
  return title_of(first->instance) +
         (one_router ? " of router " + labelled(first->router, names) : "") + ", area " +
         dotted(first->area);
}

std::string state_cell(const InterfaceLine &interface, const NeighborLine &neighbor) {
  const std::string role = interface.role_of(neighbor);
  return std::string(neighbor.state_text()) + "/" + or_dash(role) +
         (neighbor.is_inferred() ? "*" : "");
}

struct NeighborCounts {
  std::size_t all = 0;
  std::size_t full = 0;
  std::size_t two_way = 0;
  std::size_t inferred = 0;

  void add(const NeighborLine &neighbor) {
    ++all;
    full += neighbor.is_full() ? 1 : 0;
    two_way += std::string(neighbor.state_text()) == "2-Way" ? 1 : 0;
    inferred += neighbor.is_inferred() ? 1 : 0;
  }
  std::string text() const {
    std::string text = counted(all, "neighbour", "neighbours") + ": " + std::to_string(full) +
                       " Full, " + std::to_string(two_way) + " 2-Way";
    if (full + two_way < all) text += ", " + std::to_string(all - full - two_way) + " otherwise";
    return text;
  }
  void tell(std::size_t down, std::FILE *out) const {
    std::fprintf(
        out, "%s%s\n", text().c_str(),
        down == 0 ? "" : ("; " + std::to_string(down) + " more Down, which --all lists").c_str());
    if (inferred != 0) std::fprintf(out, "* inferred: the exchange itself was not heard\n");
  }
};

Table neighbor_table() {
  return Table({{"Router", false, 0},
                {"Interface", false, 2},
                {"Neighbor ID", false, 0},
                {"Pri", true, 3},
                {"State", false, 0},
                {"Address", false, 1}});
}

void add_row(Table &table, const InterfaceLine &line, const NeighborLine &neighbor,
             const RouterNames &names) {
  table.add({labelled(line.router, names),
             line.short_name(),
             labelled(neighbor.router_id, names),
             or_dash(neighbor.priority),
             {state_cell(line, neighbor), tone_of(neighbor)},
             or_dash(neighbor.address)});
}

// "0.0.0.1, 0.0.0.2"
std::string areas_text(const std::set<std::uint32_t> &areas) {
  std::string list;
  for (const std::uint32_t area : areas) list += (list.empty() ? "" : ", ") + dotted(area);
  return list;
}

std::string router_kind(const RouterLine &line) {
  if (!line.has_lsa) return "no LSA";
  std::string text = line.border ? "border" : "";
  if (line.boundary) text += std::string(text.empty() ? "" : ", ") + "AS boundary";
  return or_dash(text);
}

// How many of so many neighbours are Full.
Cell full_of(std::size_t full, std::size_t all) {
  return {std::to_string(full) + "/" + std::to_string(all),
          full == all ? Tone::plain : Tone::middling};
}

// As operators abbreviate them.
std::string short_type(const std::string &type) {
  if (type == "point-to-point") return "p2p";
  if (type == "point-to-multipoint") return "p2mp";
  return type == "non-broadcast" ? "nbma" : or_dash(type);
}

std::string short_state(const InterfaceLine &line) {
  const bool is_point_to_point = line.state == "Point-to-point";
  return (is_point_to_point ? "P2P" : or_dash(line.state)) + (line.passive ? ", passive" : "");
}

// Calls act(first, last) for each run of lines of one instance.
template <typename Line, typename Act>
void by_instance(const std::vector<Line> &lines, Act act) {
  for (auto first = lines.begin(); first != lines.end();) {
    const auto last = std::find_if(
        first, lines.end(), [&](const Line &line) { return line.instance != first->instance; });
    act(first, last);
    first = last;
  }
}

class ListPrinter {
 public:
  ListPrinter(const NetworkLists &lists, const Screen &screen, std::FILE *out)
      : lists_(lists), screen_(screen), out_(out) {}
  ~ListPrinter() { left_out_.tell(screen_, out_); }
  ListPrinter(const ListPrinter &) = delete;
  ListPrinter &operator=(const ListPrinter &) = delete;

  void title(const std::string &text) {
    std::fprintf(out_, "%s%s%s\n", any_ ? "\n" : "", site_part(lists_.site).c_str(), text.c_str());
    any_ = true;
  }
  void table(Table &table) { left_out_.add(table.print(out_, screen_)); }

  void areas() {
    by_instance(lists_.areas, [&](auto first, auto last) {
      Table rows({{"Area", false, 0},
                  {"Kind", false, 0},
                  {"Routers", true, 0},
                  {"Border", true, 2},
                  {"AS boundary", true, 3},
                  {"Interfaces", true, 4},
                  {"Full/Nbrs", true, 1},
                  {"LSAs", true, 0}});
      title(title_of(first->instance));
      for (; first != last; ++first) {
        rows.add({dotted(first->area), or_dash(first->kind), std::to_string(first->routers.size()),
                  std::to_string(first->border_routers), std::to_string(first->boundary_routers),
                  std::to_string(first->interfaces), full_of(first->full, first->neighbors),
                  std::to_string(first->lsas)});
      }
      table(rows);
    });
  }

  // Those that `wanted` takes; gives how many it did not.
  std::size_t routers(const std::function<bool(const RouterLine &)> &wanted) {
    std::size_t others = 0;
    by_instance(lists_.routers, [&](auto first, auto last) {
      Table rows({{"Router", false, 0},
                  {"Name", false, 0},
                  {"Kind", false, 0},
                  {"Areas", false, 1},
                  {"Interfaces", true, 3},
                  {"Full/Nbrs", true, 2},
                  {"LSAs", true, 2}});
      const InstanceName instance = first->instance;
      for (; first != last; ++first) {
        if (!wanted(*first)) {
          ++others;
          continue;
        }
        const auto name = lists_.names.find(first->router);
        rows.add({dotted(first->router),
                  name == lists_.names.end() ? "-" : name->second,
                  {router_kind(*first), first->has_lsa ? Tone::plain : Tone::middling},
                  areas_text(first->areas),
                  std::to_string(first->interfaces),
                  full_of(first->full, first->neighbors),
                  std::to_string(first->lsas)});
      }
      if (rows.empty()) return;
      title(title_of(instance));
      rows.leave_out_what_is_empty();
      table(rows);
    });
    return others;
  }

  NeighborCounts neighbors(
      const std::function<bool(const InterfaceLine &, const NeighborLine &)> &wanted) {
    NeighborCounts counts;
    by_area(lists_.interfaces, [&](Each first, Each last) {
      Table rows = neighbor_table();
      bool one_router = false;
      const std::string text = heading(first, last, lists_.names, one_router);
      for (; first != last; ++first) {
        for (const NeighborLine &neighbor : first->neighbors) {
          counts.add(neighbor);
          if (!wanted(*first, neighbor)) continue;
          add_row(rows, *first, neighbor, lists_.names);
        }
      }
      if (rows.empty()) return;
      if (one_router) rows.leave_out("Router");
      title(text);
      table(rows);
    });
    return counts;
  }

  bool any() const { return any_; }

 private:
  const NetworkLists &lists_;
  const Screen &screen_;
  std::FILE *out_;
  LeftOut left_out_;
  bool any_ = false;
};

}  // namespace

bool print_neighbors(const NetworkLists &lists, const Screen &screen, std::FILE *out) {
  NeighborCounts counts;
  {
    ListPrinter printer(lists, screen, out);
    counts = printer.neighbors([](const auto &, const auto &) { return true; });
    if (counts.all != 0) std::fprintf(out, "\n");
  }
  if (counts.all == 0) return false;
  counts.tell(lists.down, out);
  return true;
}

bool print_interfaces(const NetworkLists &lists, const Screen &screen, std::FILE *out) {
  ListPrinter printer(lists, screen, out);
  by_area(lists.interfaces, [&](Each first, Each last) {
    Table rows({{"Router", false, 0},
                {"Interface", false, 0},
                {"Address", false, 5},
                {"Type", false, 0},
                {"State", false, 0},
                {"Cost", true, 0},
                {"Hello/Dead", true, 2},
                {"Pri", true, 6},
                {"DR", false, 3},
                {"Backup", false, 4},
                {"Full/Nbrs", true, 1}});
    bool one_router = false;
    const std::string text = heading(first, last, lists.names, one_router);
    for (; first != last; ++first) {
      const auto full = static_cast<std::size_t>(
          std::count_if(first->neighbors.begin(), first->neighbors.end(),
                        [](const NeighborLine &neighbor) { return neighbor.is_full(); }));
      // An observed interface is named by its address.
      const bool is_named = first->short_name() != first->address;
      rows.add({labelled(first->router, lists.names), first->short_name(),
                is_named ? or_dash(first->address) : "-", short_type(first->type),
                short_state(*first), or_dash(first->cost),
                first->hello_interval
                    ? or_dash(first->hello_interval) + "/" + or_dash(first->dead_interval)
                    : "-",
                or_dash(first->priority), or_dash(first->dr), or_dash(first->bdr),
                full_of(full, first->neighbors.size())});
    }
    if (one_router) rows.leave_out("Router");
    rows.leave_out_what_is_empty();
    printer.title(text);
    printer.table(rows);
  });
  return printer.any();
}

bool print_areas(const NetworkLists &lists, const Screen &screen, std::FILE *out) {
  ListPrinter printer(lists, screen, out);
  printer.areas();
  return printer.any();
}

bool print_routers(const NetworkLists &lists, const Screen &screen, std::FILE *out) {
  ListPrinter printer(lists, screen, out);
  printer.routers([](const RouterLine &) { return true; });
  return printer.any();
}

bool print_overview(const NetworkLists &lists, const Screen &screen, std::FILE *out) {
  constexpr std::size_t most = 12;
  NeighborCounts counts;
  {
    ListPrinter printer(lists, screen, out);
    printer.areas();
    const bool few_routers = lists.routers.size() <= most;
    const std::size_t others = printer.routers([&](const RouterLine &line) {
      return few_routers || line.border || line.boundary || !line.has_lsa;
    });
    if (others != 0) {
      std::fprintf(out, "  and %s; \"routers\" lists all\n",
                   counted(others, "other router", "other routers").c_str());
    }
    std::size_t all = 0;
    for (const InterfaceLine &line : lists.interfaces) all += line.neighbors.size();
    counts = printer.neighbors([&](const InterfaceLine &, const NeighborLine &neighbor) {
      return all <= most || !(neighbor.is_full() || std::string(neighbor.state_text()) == "2-Way");
    });
    if (counts.all > most) {
      std::fprintf(out, "\n%s; \"neighbors\" lists all\n", counts.text().c_str());
    } else if (counts.all != 0) {
      std::fprintf(out, "\n");
      counts.tell(lists.down, out);
    }
    return printer.any();
  }
}

}  // namespace tool
