#include "router_answers/bird_reader.hpp"

#include <ospf_harbor_oper/types.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "bird_database.hpp"
#include "ospf_tables/input_error.hpp"
#include "ospf_tables/row_keys.hpp"
#include "router_answers/answer_file.hpp"
#include "text_answer.hpp"

namespace router_answers {

using namespace ospf_tables;
namespace fs = std::filesystem;

namespace {

struct Word {
  const char *text;
  std::uint32_t value;
};

constexpr Word neighbor_states[] = {
    {"Down", NBR_STATE_DOWN},       {"Attempt", NBR_STATE_ATTEMPT},
    {"Init", NBR_STATE_INIT},       {"2-Way", NBR_STATE_TWO_WAY},
    {"ExStart", NBR_STATE_EXSTART}, {"Exchange", NBR_STATE_EXCHANGE},
    {"Loading", NBR_STATE_LOADING}, {"Full", NBR_STATE_FULL},
};

constexpr Word network_types[] = {
    {"broadcast", BROADCAST},
    {"nbma", NON_BROADCAST},
    {"ptmp", POINT_TO_MULTIPOINT},
    {"ptp", POINT_TO_POINT},
};

template <std::size_t count>
std::optional<std::uint32_t> named(const std::string &text, const Word (&words)[count]) {
  for (const Word &word : words) {
    if (text == word.text) return word.value;
  }
  return std::nullopt;
}

Area &area_of(Instance &instance, std::uint32_t id) {
  for (Area &area : instance.areas) {
    if (area.id == id) return area;
  }
  instance.areas.push_back({id, {}});
  return instance.areas.back();
}

// A block of "show ospf interface": a heading without a tab, "Key: value" lines below it.
struct InterfaceBlock {
  const TextLine *heading = nullptr;
  std::vector<const TextLine *> lines;
};

std::vector<InterfaceBlock> blocks_of(const TextAnswer &text) {
  std::vector<InterfaceBlock> blocks;
  for (const TextLine &line : text.lines()) {
    if (line.depth == 0) {
      const bool is_interface =
          line.words[0] == "Interface" || line.text.starts_with("Virtual link");
      if (is_interface) blocks.push_back({&line, {}});
      continue;  // else the protocol's name
    }
    if (blocks.empty()) text.fail(line, "an interface before it");
    blocks.back().lines.push_back(&line);
  }
  return blocks;
}

class InterfaceReader {
 public:
  InterfaceReader(const TextAnswer &text, Process &process) : text_(text), process_(process) {}

  void read(const InterfaceBlock &block) {
    const TextLine &heading = *block.heading;
    const bool is_virtual = heading.words[0] == "Virtual";
    const std::size_t name_at = is_virtual ? 2 : 1;
    if (heading.words.size() <= name_at) text_.fail(heading, "an interface's name");
    Interface interface {};
    interface.name = heading.words[name_at];
    interface.network_type = is_virtual ? POINT_TO_POINT : BROADCAST;
    if (is_virtual) interface.told_type = "virtual";
    interface.authentication_known = false;
    // "(10.0.0.0/24)" of OSPFv2, "(IID 64)" of OSPFv3.
    if (const std::size_t at = heading.text.find('('); at != std::string::npos && !is_virtual) {
      const std::string within = heading.text.substr(at + 1, heading.text.find(')', at) - at - 1);
      if (within.find('/') != std::string::npos) interface.prefix = within;
    }
    if (const std::size_t at = heading.text.find("(IID "); at != std::string::npos) {
      const std::string number = heading.text.substr(at + 5, heading.text.find(')', at) - at - 5);
      process_.version = 3;
      process_.instance_id =
          static_cast<std::uint8_t>(text_.decimal(heading, number, UINT8_MAX, "an instance ID"));
    }
    std::uint32_t area = 0;  // where a virtual link belongs
    for (const TextLine *line : block.lines) read_line(*line, interface, area);
    area_of(process_.instance, area).interfaces.push_back(std::move(interface));
  }

 private:
  void read_line(const TextLine &line, Interface &interface, std::uint32_t &area) {
    const std::size_t colon = line.text.find(':');
    if (colon == std::string::npos) text_.fail(line, "a name, a colon and a value");
    const std::string key = line.text.substr(0, colon);
    const std::size_t begin = line.text.find_first_not_of(" \t", colon + 1);
    const std::string all = begin == std::string::npos ? "" : line.text.substr(begin);
    const std::string value = all.substr(0, all.find(' '));
    const auto seconds = [&] {
      return static_cast<std::uint16_t>(text_.decimal(line, value, UINT16_MAX, "seconds"));
    };
    if (key == "Type") {
      const auto type = named(value, network_types);
      if (!type) text_.fail(line, "a type (broadcast, nbma, ptmp, ptp)");
      interface.network_type = *type;
    } else if (key == "Area") {
      area = text_.dotted(line, value, "an area ID");
    } else if (key == "State") {
      interface.state = value;
      interface.passive = all.find("(stub)") != std::string::npos;
    } else if (key == "Priority") {
      interface.priority =
          static_cast<std::uint8_t>(text_.decimal(line, value, UINT8_MAX, "a priority"));
    } else if (key == "Cost") {
      interface.cost = static_cast<std::uint16_t>(text_.decimal(line, value, UINT16_MAX, "a cost"));
    } else if (key == "Hello timer") {
      interface.hello_interval = seconds();
    } else if (key == "Dead timer") {
      interface.dead_interval = seconds();
    } else if (key == "Wait timer") {
      interface.wait_timer = 1000u * seconds();
    } else if (key == "Retransmit timer") {
      interface.retransmit_interval = seconds();
    } else if (key == "Designated router " + named_by() && value != "0.0.0.0") {
      interface.dr = value;
    } else if (key == "Backup designated router " + named_by() && value != "0.0.0.0") {
      interface.bdr = value;
    }
  }

  // What hellos name the designated router by.
  std::string named_by() const { return process_.version == 2 ? "(IP)" : "(ID)"; }

  const TextAnswer &text_;
  Process &process_;
};

// "10.0.0.2   1   Full/DR   6.9   lan   10.0.0.2"
void read_neighbors(const TextAnswer &text, Instance &instance) {
  for (const TextLine &line : text.lines()) {
    if (line.words.size() < 6 || line.words[0] == "Router") continue;
    Neighbor neighbor{};
    neighbor.router_id = line.words[0];
    text.dotted(line, line.words[0], "a router ID");
    neighbor.address = line.words[5];
    neighbor.evidence = "answer";
    neighbor.priority =
        static_cast<std::uint8_t>(text.decimal(line, line.words[1], UINT8_MAX, "a priority"));
    const std::string state = line.words[2].substr(0, line.words[2].find('/'));
    const auto known = named(state, neighbor_states);
    if (!known) {
      text.fail(line,
                "a neighbour state (Down, Attempt, Init, 2-Way, ExStart, Exchange, Loading, "
                "Full)");
    }
    neighbor.state = *known;
    Interface *found = nullptr;
    for (Area &area : instance.areas) {
      for (Interface &interface : area.interfaces) {
        if (interface.name == line.words[4]) found = &interface;
      }
    }
    if (found == nullptr) text.fail(line, "an interface that the router lists");
    found->neighbors.push_back(std::move(neighbor));
  }
}

std::optional<std::uint32_t> configured_router_id(const std::string &folder) {
  const auto path = find_answer(folder, "bird.conf");
  if (!path) return std::nullopt;
  const TextAnswer text(*path);
  for (const TextLine &line : text.lines()) {
    if (line.words.size() < 3 || line.words[0] != "router" || line.words[1] != "id") continue;
    return parse_dotted(line.words[2].substr(0, line.words[2].find(';')));
  }
  return std::nullopt;
}

// BIRD names the link alone; the area is its interface's.
void find_areas_of_links(Process &process) {
  std::map<LsaKey, HeldLsa> lsas;
  for (auto &[key, lsa] : process.database.lsas) {
    LsaKey placed = key;
    if (placed.place.scope == ospf_decode::Scope::link) {
      for (const Area &area : process.instance.areas) {
        for (const Interface &interface : area.interfaces) {
          if (interface.name == placed.place.interface) placed.place.area = area.id;
        }
      }
    }
    lsas.emplace(placed, std::move(lsa));
  }
  process.database.lsas = std::move(lsas);
}

std::uint8_t version_of(const std::string &folder, const std::string &protocol) {
  const auto lsadb = find_answer(folder, protocol + "-lsadb.txt");
  if (!lsadb) return 2;
  const TextAnswer text(*lsadb);
  for (const TextLine &line : text.lines()) {
    const bool is_row = line.words.size() == 6 && line.words[0].size() == 4;
    // OSPFv3's types have their flooding scope in the upper octet, but for those of links.
    if (is_row && (line.words[0].substr(0, 2) != "00" || line.words[0] == "0008")) return 3;
  }
  return 2;
}

}  // namespace

std::vector<std::string> bird_protocols(const std::string &folder) {
  std::set<std::string> names;
  std::error_code failure;
  for (const auto &entry : fs::directory_iterator(folder, failure)) {
    std::string file = entry.path().filename().string();
    if (file.ends_with(".gz")) file.resize(file.size() - 3);
    for (const std::string end : {"-lsadb.txt", "-state-all.txt", "-neighbors.txt"}) {
      if (file.size() > end.size() && file.ends_with(end)) {
        names.insert(file.substr(0, file.size() - end.size()));
      }
    }
  }
  return {names.begin(), names.end()};
}

Process read_bird(const std::string &folder, const std::string &protocol) {
  Process process;
  process.version = version_of(folder, protocol);
  const auto answer = [&](const char *command) {
    return find_answer(folder, protocol + '-' + command + ".txt");
  };
  if (const auto path = answer("interface")) {
    const TextAnswer text(*path);
    InterfaceReader reader(text, process);
    for (const InterfaceBlock &block : blocks_of(text)) reader.read(block);
  }
  const bool ipv4 =
      process.version == 2 || (process.instance_id >= 64 && process.instance_id < 128);
  process.instance.family = ipv4 ? Family::ipv4 : Family::ipv6;
  if (const auto path = answer("neighbors")) read_neighbors(TextAnswer(*path), process.instance);
  BirdState state;
  if (const auto path = answer("state-all")) state = read_bird_state(TextAnswer(*path));
  auto id = state.own_router_id();
  if (!id) id = configured_router_id(folder);
  if (!id) {
    throw InputError(folder, protocol, "no router ID",
                     "a router at distance 0 in " + protocol + "-state-all.txt, or bird.conf");
  }
  process.instance.router_id = *id;
  if (const auto path = answer("lsadb")) {
    read_bird_lsadb(TextAnswer(*path), process.version, state, process.database);
  }
  find_areas_of_links(process);
  return process;
}

}  // namespace router_answers
