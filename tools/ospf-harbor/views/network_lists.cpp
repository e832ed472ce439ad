#include "views/network_lists.hpp"

#include <algorithm>
#include <charconv>
#include <tuple>

#include "ospf_tables/field_reader.hpp"
#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/tree.hpp"
#include "usage_error.hpp"
#include "views/router_names.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

struct StateName {
  std::uint32_t state;
  const char *text;
};

constexpr StateName state_names[] = {
    {NBR_STATE_DOWN, "Down"},       {NBR_STATE_ATTEMPT, "Attempt"},
    {NBR_STATE_INIT, "Init"},       {NBR_STATE_TWO_WAY, "2-Way"},
    {NBR_STATE_EXSTART, "ExStart"}, {NBR_STATE_EXCHANGE, "Exchange"},
    {NBR_STATE_LOADING, "Loading"}, {NBR_STATE_FULL, "Full"},
};

// What daemons and captures call one state of an interface.
struct InterfaceWord {
  const char *said;
  const char *shown;
};

constexpr InterfaceWord interface_words[] = {
    {"BDR", "Backup"},
    {"Other", "DROther"},
    {"PtP", "Point-to-point"},
    {"PointToPoint", "Point-to-point"},
    {"Point-To-Point", "Point-to-point"},
    {"unknown", ""},
};

std::string shown_state(const std::string &said) {
  for (const InterfaceWord &word : interface_words) {
    if (said == word.said) return word.shown;
  }
  return said;
}

// An address that is one; nobody declares the null address.
std::string some_address(const std::string &text) {
  return text == "0.0.0.0" || text == "::" ? std::string() : text;
}

const char *type_text(std::uint32_t type) {
  switch (type) {
    case BROADCAST:
      return "broadcast";
    case NON_BROADCAST:
      return "non-broadcast";
    case POINT_TO_MULTIPOINT:
      return "point-to-multipoint";
    case POINT_TO_POINT:
      return "point-to-point";
    default:
      return "";
  }
}

struct Wanted {
  explicit Wanted(const NetworkFilter &filter) : filter_(filter) {
    if (!filter.area.empty()) area_ = number_or_quad("--area", filter.area, "an area ID");
    if (!filter.router.empty()) {
      router_ = parse_dotted(filter.router);
      if (!router_) {
        throw UsageError("--router", "", "\"" + filter.router + "\"",
                         "a router ID such as 10.0.0.1");
      }
    }
    if (filter.instance.empty()) return;
    const auto number = parse_number(filter.instance);
    if (!number || *number > 255) {
      throw UsageError("--instance", "", "\"" + filter.instance + "\"", "a number from 0 to 255");
    }
    instance_ = *number;
  }

  bool meets(const InstanceName &instance) const {
    if (filter_.v2 != filter_.v3 && instance.version != (filter_.v2 ? 2 : 3)) return false;
    return !instance_ || instance.instance_id == *instance_;
  }
  bool meets_area(std::uint32_t area) const { return !area_ || *area_ == area; }
  bool meets_router(std::uint32_t router) const { return !router_ || *router_ == router; }
  bool has_router() const { return router_.has_value(); }

 private:
  static std::optional<std::uint32_t> parse_number(const std::string &text) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
  }
  static std::uint32_t number_or_quad(const char *option, const std::string &text,
                                      const char *what) {
    if (const auto quad = parse_dotted(text)) return *quad;
    if (const auto number = parse_number(text)) return *number;
    throw UsageError(option, "", "\"" + text + "\"",
                     std::string(what) + " as a dotted quad or a number");
  }

  const NetworkFilter &filter_;
  std::optional<std::uint32_t> area_;
  std::optional<std::uint32_t> router_;
  std::optional<std::uint32_t> instance_;
};

// Collects interfaces with their neighbours, and areas.
class TreeReader : public TreeVisitor {
 public:
  TreeReader(Session &session) : session_(session), read_{session} {}

  std::vector<InterfaceLine> interfaces;
  std::map<std::pair<InstanceName, std::uint32_t>, std::string> area_kinds;

  bool enter(const RowView &row) override {
    if (auto *instance = record_of<ospf_instance_rev1_ops>(row)) {
      enter_instance(row.key, ospf_instance_rev1_ops::get_key(session_.handle(), space, instance));
    } else if (auto *area = record_of<ospf_area_ops>(row)) {
      place_.area = read_.value(ospf_area_ops::get(session_.handle(), space, area),
                                ospf_area_area_id_get_value);
      std::string &kind = area_kinds[{place_.instance, place_.area}];
      if (told_ != nullptr && told_->area_kinds.contains(place_.area)) {
        kind = told_->area_kinds.at(place_.area);
      }
    } else if (auto *interface = record_of<ospf_interface_ops>(row)) {
      add_interface(ospf_interface_ops::get(session_.handle(), space, interface));
    } else if (auto *neighbor = record_of<ospf_neighbor_ops>(row)) {
      add_neighbor(row.key, ospf_neighbor_ops::get(session_.handle(), space, neighbor));
    } else {
      return row.path.empty();  // the root; databases are read elsewhere
    }
    return true;
  }

  void leave() override {}

 private:
  void enter_instance(const std::string &key_text, const ospf_instance_rev1_key *key) {
    place_ = InterfaceLine{};
    const std::uint32_t id = read_.value(key, ospf_instance_rev1_key_router_id_get_value);
    const bool ipv4 = read_.value(key, ospf_instance_rev1_key_af_get_value) == ADDR_FAMILY_IPV4;
    place_.instance = instance_name(id, ipv4);
    place_.is_observed = is_observed(id);
    place_.router = id;
    const auto told = session_.told().find(key_text);
    told_ = told == session_.told().end() ? nullptr : &told->second;
  }

  void add_interface(ospf_interface *object) {
    InterfaceLine line = place_;
    line.name = read_.text(object, ospf_interface_name_get);
    const std::size_t at = line.name.find('@');
    if (line.is_observed && at != std::string::npos) {
      line.router = parse_dotted(line.name.substr(0, at)).value_or(0);
    }
    line.state = shown_state(read_.text(object, ospf_interface_state_get));
    const bool is_known = !line.state.empty();
    if (is_known) line.type = type_text(read_.value(object, ospf_interface_network_type_get_value));
    if (line.is_observed && line.name.find('>') != std::string::npos) line.type = "virtual";
    const std::uint16_t cost = read_.value(object, ospf_interface_cost_get_value);
    if (cost != 0) line.cost = cost;
    line.mtu_ignored = read_.flag(object, ospf_interface_mtu_ignore_get_value);
    line.authentication =
        authentication_of(read_.value(object, ospf_interface_authentication_val_get));
    take_told(line);
    const std::uint16_t hello = read_.value(object, ospf_interface_hello_interval_get_value);
    const std::uint16_t dead = read_.value(object, ospf_interface_dead_interval_get_value);
    if (hello != 0) line.hello_interval = hello;
    if (dead != 0) line.dead_interval = dead;
    if (is_known) line.priority = read_.value_if_held(object, ospf_interface_priority_get_value);
    line.dr = some_address(key_word(read_.value(object, ospf_interface_dr_get)));
    line.bdr = some_address(key_word(read_.value(object, ospf_interface_bdr_get)));
    line.passive = read_.flag(object, ospf_interface_passive_get_value);
    interfaces.push_back(std::move(line));
  }

  std::string authentication_of(ospf_authentication *object) const {
    if (read_.value(object, ospf_authentication_auth_type_selection_get_value) !=
        OSPF_AUTH_TRAILER_KEY) {
      return "none";
    }
    auto *algorithm = read_.value(object, ospf_authentication_crypto_algorithm_val_get);
    if (algorithm == nullptr) return "key";
    if (read_.flag(algorithm, ospf_crypto_algorithm_md5_get_value)) return "MD5";
    if (read_.flag(algorithm, ospf_crypto_algorithm_hmac_sha_1_get_value)) return "HMAC-SHA-1";
    if (read_.flag(algorithm, ospf_crypto_algorithm_hmac_sha_256_get_value)) return "HMAC-SHA-256";
    if (read_.flag(algorithm, ospf_crypto_algorithm_hmac_sha_384_get_value)) return "HMAC-SHA-384";
    if (read_.flag(algorithm, ospf_crypto_algorithm_hmac_sha_512_get_value)) return "HMAC-SHA-512";
    return "key";
  }

  void take_told(InterfaceLine &line) const {
    const auto no_told = [&] {
      // That there is none may only mean that nobody told.
      if (line.authentication == "none") line.authentication.clear();
    };
    if (told_ == nullptr) return no_told();
    const auto told = told_->interfaces.find({line.area, line.name});
    if (told == told_->interfaces.end()) return no_told();
    if (!told->second.authentication) no_told();
    line.prefix = told->second.prefix;
    line.mtu = told->second.mtu;
    line.address = told->second.address;
    line.cost = told->second.cost;
    line.silent = told->second.silent;
    if (!told->second.type.empty()) line.type = told->second.type;
  }

  void add_neighbor(const std::string &key, ospf_neighbor *object) {
    if (interfaces.empty()) return;
    InterfaceLine &interface = interfaces.back();
    NeighborLine line;
    line.router_id = parse_dotted(key).value_or(0);
    line.address = some_address(key_word(read_.value(object, ospf_neighbor_address_get)));
    line.dr = some_address(key_word(read_.value(object, ospf_neighbor_dr_get)));
    line.bdr = some_address(key_word(read_.value(object, ospf_neighbor_bdr_get)));
    line.state = read_.value(object, ospf_neighbor_state_get_value);
    if (told_ != nullptr) {
      const auto told = told_->neighbors.find({interface.area, interface.name, key});
      if (told != told_->neighbors.end()) {
        line.priority = told->second.priority;
        line.evidence = told->second.evidence;
      }
    }
    interface.neighbors.push_back(std::move(line));
  }

  Session &session_;
  FieldReader read_;
  InterfaceLine place_;
  const ToldOfInstance *told_ = nullptr;
};

// The bits of an area's kind in the options of hellos and router LSAs.
constexpr std::uint8_t option_external = 0x02;
constexpr std::uint8_t option_nssa = 0x08;

// What an area's LSAs say of its kind. Options of router LSAs have the E bit clear in stub areas
// and NSSAs (RFC 2328, 12.1.2; RFC 3101, 2.4); NSSA LSAs are in NSSAs alone.
struct AreaLsas {
  bool has_router = false;
  bool external = false;
  bool nssa = false;
  bool default_summary = false;
  bool other_summary = false;

  void add(const LsaView &lsa) {
    if (lsa.version == 2) {
      add_v2(lsa);
    } else {
      add_v3(lsa);
    }
  }

  std::string kind(const std::string &told) const {
    const bool is_nssa = nssa || told == "nssa";
    const bool is_stub = !is_nssa && (has_router ? !external : told == "stub");
    const bool totally = default_summary && !other_summary;
    if (is_nssa) return totally ? "totally NSSA" : "NSSA";
    if (is_stub) return totally ? "totally stubby" : "stub";
    return has_router || !told.empty() ? "normal" : "";
  }

 private:
  void add_v2(const LsaView &lsa) {
    constexpr std::size_t options_at = 2;
    const std::uint8_t options = lsa.raw_data.size() > options_at ? lsa.raw_data[options_at] : 0;
    if (lsa.type == lsa2_router && lsa.raw_data.size() > options_at) {
      has_router = true;
      external |= (options & option_external) != 0;
      nssa |= (options & (option_external | option_nssa)) == option_nssa;
    }
    nssa |= lsa.type == lsa2_nssa;
    if (lsa.type == lsa2_summary) {
      (lsa.link_state_id == 0 ? default_summary : other_summary) = true;
    }
  }

  void add_v3(const LsaView &lsa) {
    constexpr std::size_t options_at = 23;  // the last octet, behind header and flags
    if (lsa.type == lsa3_router && lsa.raw_data.size() > options_at) {
      has_router = true;
      external |= (lsa.raw_data[options_at] & option_external) != 0;
      nssa |= (lsa.raw_data[options_at] & option_nssa) != 0;
    }
    nssa |= lsa.type == lsa3_nssa;
    if (const auto *prefix = std::get_if<InterAreaPrefixView>(&lsa.body)) {
      (prefix->prefix.prefix.ends_with("/0") ? default_summary : other_summary) = true;
    }
  }
};

using AreaName = std::pair<InstanceName, std::uint32_t>;
using RouterName = std::pair<InstanceName, std::uint32_t>;

// Puts together what rows and LSAs say.
class Gatherer {
 public:
  Gatherer(const Wanted &wanted) : wanted_(wanted) {}

  void add_area(const AreaName &name, const std::string &told) {
    if (!wanted_.meets(name.first) || !wanted_.meets_area(name.second)) return;
    area(name);
    told_kinds_[name] = told;
  }

  void add(const InterfaceLine &line) {
    AreaLine &of = area({line.instance, line.area});
    RouterLine &whose = router({line.instance, line.router});
    whose.areas.insert(line.area);
    of.routers.insert(line.router);
    const auto full = static_cast<std::size_t>(
        std::count_if(line.neighbors.begin(), line.neighbors.end(),
                      [](const NeighborLine &neighbor) { return neighbor.is_full(); }));
    ++of.interfaces;
    ++whose.interfaces;
    of.neighbors += line.neighbors.size();
    whose.neighbors += line.neighbors.size();
    of.full += full;
    whose.full += full;
  }

  void add(const LsdbEntry &entry) {
    const LsaView &lsa = entry.lsa;
    const InstanceName instance = instance_name(entry.router_id, lsa.version == 2);
    if (!wanted_.meets(instance)) return;
    if (entry.area && !wanted_.meets_area(*entry.area)) return;
    ++router({instance, lsa.adv_router}).lsas;
    if (!entry.area) return;
    AreaLine &of = area({instance, *entry.area});
    ++of.lsas;
    area_lsas_[{instance, *entry.area}].add(lsa);
    const BitNames *flags = nullptr;
    if (const auto *v2 = std::get_if<RouterViewV2>(&lsa.body)) flags = &v2->flags;
    if (const auto *v3 = std::get_if<RouterViewV3>(&lsa.body)) flags = &v3->flags;
    if (flags != nullptr) add_router_lsa(instance, *entry.area, lsa.adv_router, *flags);
  }

  void finish(NetworkLists &lists) {
    for (auto &[name, line] : areas_) {
      line.kind = area_lsas_[name].kind(told_kinds_[name]);
      line.border_routers = borders_[name].size();
      line.boundary_routers = boundaries_[name].size();
      const bool has_router =
          !wanted_.has_router() || std::any_of(line.routers.begin(), line.routers.end(),
                                               [&](auto id) { return wanted_.meets_router(id); });
      if (has_router) lists.areas.push_back(std::move(line));
    }
    for (auto &[name, line] : routers_) {
      // Who originates but is in no area that was asked for is none of its routers.
      if (!line.areas.empty() && wanted_.meets_router(line.router)) {
        lists.routers.push_back(std::move(line));
      }
    }
  }

 private:
  void add_router_lsa(const InstanceName &instance, std::uint32_t area_id, std::uint32_t id,
                      const BitNames &flags) {
    RouterLine &line = router({instance, id});
    line.has_lsa = true;
    line.areas.insert(area_id);
    area({instance, area_id}).routers.insert(id);
    for (const std::string flag : flags) {
      if (flag == "B") {
        line.border = true;
        borders_[{instance, area_id}].insert(id);
      }
      if (flag == "E") {
        line.boundary = true;
        boundaries_[{instance, area_id}].insert(id);
      }
    }
  }

  AreaLine &area(const AreaName &name) {
    AreaLine &line = areas_[name];
    line.instance = name.first;
    line.area = name.second;
    return line;
  }
  RouterLine &router(const RouterName &name) {
    RouterLine &line = routers_[name];
    line.instance = name.first;
    line.router = name.second;
    return line;
  }

  const Wanted &wanted_;
  std::map<AreaName, AreaLine> areas_;
  std::map<RouterName, RouterLine> routers_;
  std::map<AreaName, std::string> told_kinds_;
  std::map<AreaName, AreaLsas> area_lsas_;
  std::map<AreaName, std::set<std::uint32_t>> borders_;
  std::map<AreaName, std::set<std::uint32_t>> boundaries_;
};

}  // namespace

const char *NeighborLine::state_text() const {
  for (const StateName &name : state_names) {
    if (name.state == state) return name.text;
  }
  return "unknown";
}

bool NeighborLine::is_full() const { return state == NBR_STATE_FULL; }

bool NeighborLine::is_inferred() const {
  return !evidence.empty() && evidence != "answer" && evidence != "hello" && evidence != "exchange";
}

std::string InterfaceLine::short_name() const {
  const std::size_t at = name.find('@');
  if (!is_observed || at == std::string::npos) return name;
  if (type == "virtual") return "virtual";
  // An OSPFv3 interface is known by its ID, and link-local addresses are long.
  const std::size_t id = name.find('%', at);
  return id == std::string::npos ? name.substr(at + 1) : name.substr(id);
}

const char *InterfaceLine::role_of(const NeighborLine &neighbor) const {
  const std::string called = instance.version == 2 ? neighbor.address : dotted(neighbor.router_id);
  // Where nobody tells of the interface, the neighbour's own word counts.
  const bool is_known = !type.empty();
  if (is_known && type != "broadcast" && type != "non-broadcast") return "";
  if (!called.empty() && called == (is_known ? dr : neighbor.dr)) return "DR";
  if (!called.empty() && called == (is_known ? bdr : neighbor.bdr)) return "Backup";
  return is_known ? "DROther" : "";
}

NetworkLists read_network(Session &session, const NetworkFilter &filter) {
  const Wanted wanted(filter);
  NetworkLists lists;
  lists.site = session.named_site();
  TreeReader reader(session);
  walk_tree(session, reader);
  for (InterfaceLine &line : reader.interfaces) {
    if (filter.all) break;
    const std::size_t gone = std::erase_if(line.neighbors, [](const NeighborLine &neighbor) {
      return neighbor.state == NBR_STATE_DOWN;
    });
    const bool is_wanted = wanted.meets(line.instance) && wanted.meets_area(line.area) &&
                           wanted.meets_router(line.router);
    if (is_wanted) lists.down += gone;
  }
  Gatherer gatherer(wanted);
  for (const auto &[name, told] : reader.area_kinds) gatherer.add_area(name, told);
  for (InterfaceLine &line : reader.interfaces) {
    if (!wanted.meets(line.instance) || !wanted.meets_area(line.area)) continue;
    if (line.silent && !filter.all) continue;
    gatherer.add(line);
    if (wanted.meets_router(line.router)) lists.interfaces.push_back(std::move(line));
  }
  std::stable_sort(lists.interfaces.begin(), lists.interfaces.end(),
                   [](const InterfaceLine &a, const InterfaceLine &b) {
                     return std::tie(a.instance, a.area, a.router) <
                            std::tie(b.instance, b.area, b.router);
                   });
  const std::vector<LsdbEntry> entries = read_lsdb(session);
  for (const LsdbEntry &entry : entries) gatherer.add(entry);
  gatherer.finish(lists);
  lists.names = router_names(session, entries);
  return lists;
}

std::string title_of(const InstanceName &instance) {
  return "OSPFv" + std::to_string(instance.version) +
         (instance.instance_id == 0 ? "" : ", instance " + std::to_string(instance.instance_id));
}

}  // namespace tool
