#include "router_answers/frr_reader.hpp"

#include <kelp/primitives.h>
#include <ospf_harbor_oper/types.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>

#include "ospf_tables/row_keys.hpp"
#include "router_answers/answer_file.hpp"

namespace router_answers {

using namespace ospf_tables;

namespace {

struct Name {
  const char *text;
  std::uint32_t value;
};

constexpr Name neighbor_states[] = {
    {"Down", NBR_STATE_DOWN},         {"Attempt", NBR_STATE_ATTEMPT},
    {"Init", NBR_STATE_INIT},         {"2-Way", NBR_STATE_TWO_WAY},
    {"Twoway", NBR_STATE_TWO_WAY},    {"ExStart", NBR_STATE_EXSTART},
    {"Exchange", NBR_STATE_EXCHANGE}, {"ExChange", NBR_STATE_EXCHANGE},
    {"Loading", NBR_STATE_LOADING},   {"Full", NBR_STATE_FULL},
};

// Loopbacks and virtual links have no type of their own in the model: a loopback is shown as the
// daemon treats it, a virtual link as the point-to-point link that it is.
constexpr Name network_types[] = {
    {"BROADCAST", BROADCAST},
    {"NBMA", NON_BROADCAST},
    {"POINTOMULTIPOINT", POINT_TO_MULTIPOINT},
    {"POINTOPOINT", POINT_TO_POINT},
    {"VIRTUALLINK", POINT_TO_POINT},
    {"LOOPBACK", BROADCAST},
};

const char *told_type(const std::string &text) {
  return text == "VIRTUALLINK" ? "virtual" : text == "LOOPBACK" ? "loopback" : "";
}

template <std::size_t count>
std::uint32_t named(const JsonView &view, const std::string &text, const Name (&names)[count],
                    const char *what) {
  std::string list;
  for (const Name &name : names) {
    if (text == name.text) return name.value;
    list += list.empty() ? "" : ", ";
    list += name.text;
  }
  view.fail(std::string(what) + " (" + list + ")");
}

std::uint32_t router_id(const JsonView &view) {
  const auto id = parse_dotted(view.text("a router ID"));
  if (!id) view.fail("a router ID as a dotted quad");
  return *id;
}

// An area is written as a dotted quad or as a number, with a note such as " [Stub]" behind it.
std::uint32_t area_id(const JsonView &view, std::string text) {
  if (const std::size_t note = text.find(" ["); note != std::string::npos) text.resize(note);
  if (const auto id = parse_dotted(text)) return *id;
  char *end = nullptr;
  const unsigned long long number = std::strtoull(text.c_str(), &end, 10);
  if (text.empty() || text[0] < '0' || text[0] > '9' || *end != '\0' || number > UINT32_MAX) {
    view.fail("an area ID as a dotted quad or a number");
  }
  return static_cast<std::uint32_t>(number);
}

std::string address(const JsonView &view, const char *expected) {
  const std::string text = view.text(expected);
  ip_address parsed;
  if (ip_address_parse(text.c_str(), &parsed) != 0) view.fail(expected);
  return text;
}

std::uint16_t seconds(const JsonView &view, const std::string &key) {
  return static_cast<std::uint16_t>(view.member(key, "seconds").number(UINT16_MAX, "seconds"));
}

Area &area_of(Instance &instance, std::uint32_t id, const JsonView &view) {
  for (Area &area : instance.areas) {
    if (area.id == id) return area;
  }
  std::string known;
  for (const Area &area : instance.areas) known += (known.empty() ? "" : ", ") + dotted(area.id);
  view.fail(known.empty() ? "no area, since the router lists none"
                          : "an area that the router lists (" + known + ")");
}

Interface &interface_of(Instance &instance, std::uint32_t area, const std::string &name,
                        const JsonView &view) {
  for (Interface &interface : area_of(instance, area, view).interfaces) {
    if (interface.name == name) return interface;
  }
  view.fail("an interface that the router lists in area " + dotted(area));
}

// Without an answer about interfaces the neighbours tell which there are, and no more of them.
void add_interface_of(Instance &instance, const JsonView &neighbor, const char *area_key,
                      const char *name_key) {
  const JsonView area_view = neighbor.member(area_key, "an area ID");
  const std::uint32_t id = area_id(area_view, area_view.text("an area ID"));
  std::string name = neighbor.member(name_key, "a name").text("an interface name");
  name.resize(std::min(name.find(':'), name.size()));
  for (Interface &interface : area_of(instance, id, area_view).interfaces) {
    if (interface.name == name) return;
  }
  Interface interface {};
  interface.name = name;
  interface.cost_known = false;
  interface.state = "unknown";
  area_of(instance, id, area_view).interfaces.push_back(std::move(interface));
}

void read_areas(Instance &instance, const JsonView &process) {
  for (const auto &[text, area] : process.member("areas", "the areas").members("the areas")) {
    const std::uint32_t id = area_id(area, text);
    for (const Area &other : instance.areas) {
      if (other.id == id) area.fail("each area once");
    }
    area.pass_over_all_but({});
    const auto says = [&area = area](const char *key) {
      return area.has(key) && area.member(key, "").boolean("true or false");
    };
    const bool is_nssa = says("nssa") || says("areaIsNSSA");
    const bool is_stub = says("stubNoSummary") || says("stubEnable") || says("areaIsStub");
    instance.areas.push_back({id, {}, is_nssa ? "nssa" : is_stub ? "stub" : "normal"});
  }
}

// The daemon leaves the designated routers out where there are none.
std::string optional_address(const JsonView &view, const std::string &key) {
  return view.has(key) ? address(view.member(key, ""), "an address") : std::string();
}

std::optional<std::uint32_t> optional_mtu(const JsonView &view, const std::string &key) {
  if (!view.has(key)) return std::nullopt;
  return static_cast<std::uint32_t>(view.member(key, "").number(UINT32_MAX, "octets"));
}

void read_interface_v4(Instance &instance, const std::string &name, const JsonView &view) {
  if (!view.has("area") && view.has("ospfRunning") &&
      !view.member("ospfRunning", "").boolean("true or false")) {
    // The daemon lists a virtual link that never came up among its interfaces.
    view.pass_over_all_but({"ospfRunning"});
    return;
  }
  const JsonView area_view = view.member("area", "an area ID");
  const std::uint32_t area = area_id(area_view, area_view.text("an area ID"));
  Interface interface {};
  interface.name = name;
  if (view.has("ipAddress"))
    interface.address = address(view.member("ipAddress", ""), "an address");
  if (view.has("ipAddress") && view.has("ipAddressPrefixlen")) {
    interface.prefix =
        interface.address + '/' +
        std::to_string(view.member("ipAddressPrefixlen", "").number(32, "a prefix length"));
  }
  interface.mtu = optional_mtu(view, "mtuBytes");
  const JsonView type = view.member("networkType", "a network type");
  interface.network_type =
      named(type, type.text("a network type"), network_types, "a network type");
  interface.told_type = told_type(type.text("a network type"));
  interface.enabled = view.member("ospfEnabled", "true or false").boolean("true or false");
  interface.passive = view.has("timerPassiveIface") &&
                      view.member("timerPassiveIface", "").boolean("true or false");
  interface.cost =
      static_cast<std::uint16_t>(view.member("cost", "a cost").number(UINT16_MAX, "a cost"));
  const std::uint64_t hello =
      view.member("timerMsecs", "milliseconds").number(65535000, "milliseconds");
  interface.hello_interval = static_cast<std::uint16_t>((hello + 999) / 1000);
  interface.dead_interval = seconds(view, "timerDeadSecs");
  interface.retransmit_interval = seconds(view, "timerRetransmitSecs");
  interface.transmit_delay = seconds(view, "transmitDelaySecs");
  interface.state = view.member("state", "the interface state").text("the interface state");
  if (view.has("timerHelloInMsecs")) {
    interface.hello_timer = static_cast<std::uint32_t>(
        view.member("timerHelloInMsecs", "").number(UINT32_MAX, "milliseconds"));
  }
  interface.wait_timer = 1000u * seconds(view, "timerWaitSecs");
  interface.dr = optional_address(view, "drAddress");
  interface.bdr = optional_address(view, "bdrAddress");
  interface.priority = static_cast<std::uint8_t>(
      view.member("priority", "a priority").number(UINT8_MAX, "a priority"));
  if (view.has("authentication")) {
    const std::string text = view.member("authentication", "").text("a kind of authentication");
    interface.authentication = text == "authenticationNone" ? Authentication::none
                               : text == "authenticationMessageDigest"
                                   ? Authentication::message_digest
                                   : Authentication::key;
  }
  view.pass_over_all_but({"area", "ipAddress", "ipAddressPrefixlen", "mtuBytes", "networkType",
                          "ospfEnabled", "timerPassiveIface", "cost", "timerMsecs", "timerDeadSecs",
                          "timerRetransmitSecs", "transmitDelaySecs", "state", "timerHelloInMsecs",
                          "timerWaitSecs", "drAddress", "bdrAddress", "priority",
                          "authentication"});
  area_of(instance, area, area_view).interfaces.push_back(std::move(interface));
}

void read_neighbor_v4(Instance &instance, const std::string &id, const JsonView &view) {
  const JsonView area_view = view.member("areaId", "an area ID");
  const std::uint32_t area = area_id(area_view, area_view.text("an area ID"));
  const JsonView name = view.member("ifaceName", "an interface name");
  // The daemon writes the address behind some names: "eth0:10.0.0.1".
  std::string interface_name = name.text("an interface name");
  if (const std::size_t colon = interface_name.find(':'); colon != std::string::npos) {
    interface_name.resize(colon);
  }
  Interface &interface = interface_of(instance, area, interface_name, name);
  if (!parse_dotted(id)) view.fail("a neighbour under its router ID");
  Neighbor neighbor{};
  neighbor.router_id = id;
  neighbor.address = address(view.member("ifaceAddress", "an address"), "an address");
  const JsonView state = view.member("nbrState", "a neighbour state");
  const std::string text = state.text("a neighbour state");
  neighbor.state =
      named(state, text.substr(0, text.find('/')), neighbor_states, "a neighbour state");
  neighbor.evidence = "answer";
  if (view.has("nbrPriority")) {
    neighbor.priority =
        static_cast<std::uint8_t>(view.member("nbrPriority", "").number(UINT8_MAX, "a priority"));
  }
  neighbor.dr = optional_address(view, "routerDesignatedId");
  neighbor.bdr = optional_address(view, "routerDesignatedBackupId");
  if (view.has("stateChangeCounter")) {
    neighbor.events = static_cast<std::uint32_t>(
        view.member("stateChangeCounter", "").number(UINT32_MAX, "a count"));
  }
  if (view.has("linkStateRetransmissionListCounter")) {
    neighbor.retransmission_queue = static_cast<std::uint32_t>(
        view.member("linkStateRetransmissionListCounter", "").number(UINT32_MAX, "a count"));
  }
  view.pass_over_all_but({"areaId", "ifaceName", "ifaceAddress", "nbrState", "routerDesignatedId",
                          "routerDesignatedBackupId", "stateChangeCounter",
                          "linkStateRetransmissionListCounter"});
  interface.neighbors.push_back(neighbor);
}

// Where an answer is or, for the message that it is missing, should be.
std::string answer(const std::string &folder, const char *name) {
  return find_answer(folder, name).value_or(folder + '/' + name);
}

bool is_left_out(const std::string &folder, const char *name, Missing missing) {
  return missing == Missing::left_out && !find_answer(folder, name);
}

Instance read_v4(const std::string &folder, PassedOver &passed_over, Missing missing) {
  const JsonView process = read_json(answer(folder, "ip-ospf.json"), passed_over);
  Instance instance{Family::ipv4, router_id(process.member("routerId", "a router ID")), {}};
  read_areas(instance, process);
  process.pass_over_all_but({"routerId", "areas"});
  const bool has_interfaces = !is_left_out(folder, "ip-ospf-interface.json", missing);
  if (has_interfaces) {
    const JsonView interfaces = read_json(answer(folder, "ip-ospf-interface.json"), passed_over);
    for (const auto &[name, view] :
         interfaces.member("interfaces", "the interfaces").members("the interfaces")) {
      read_interface_v4(instance, name, view);
    }
  }
  if (is_left_out(folder, "ip-ospf-neighbor-detail.json", missing)) return instance;
  const JsonView neighbors = read_json(answer(folder, "ip-ospf-neighbor-detail.json"), passed_over);
  for (const auto &[id, list] :
       neighbors.member("neighbors", "the neighbours").members("the neighbours")) {
    for (const JsonView &view : list.elements("a list of adjacencies")) {
      if (!has_interfaces) add_interface_of(instance, view, "areaId", "ifaceName");
      read_neighbor_v4(instance, id, view);
    }
  }
  return instance;
}

// OSPFv3 speaks from the link-local address.
std::string link_local_address(const JsonView &view) {
  if (!view.has("internetAddress")) return {};
  for (const JsonView &each : view.member("internetAddress", "").elements("addresses")) {
    std::string text = each.member("address", "an address").text("an address");
    text.resize(std::min(text.find('/'), text.size()));
    if (text.starts_with("fe80:")) return text;
  }
  return {};
}

void read_interface_v6(Instance &instance, const std::string &name, const JsonView &view) {
  const bool attached =
      view.has("attachedToArea") && view.member("attachedToArea", "").boolean("true or false");
  if (!attached) {
    // An interface of the machine that takes no part in OSPF.
    view.pass_over_all_but({"attachedToArea"});
    return;
  }
  const JsonView area_view = view.member("areaId", "an area ID");
  const std::uint32_t area = area_id(area_view, area_view.text("an area ID"));
  Interface interface {};
  interface.name = name;
  interface.address = link_local_address(view);
  interface.mtu = optional_mtu(view, "interfaceMtu");
  if (view.has("instanceId")) {
    interface.instance_id = static_cast<std::uint8_t>(
        view.member("instanceId", "").number(UINT8_MAX, "an instance ID"));
  }
  const JsonView type =
      view.member(view.has("operatingAsType") ? "operatingAsType" : "type", "a network type");
  interface.network_type =
      named(type, type.text("a network type"), network_types, "a network type");
  interface.told_type = told_type(type.text("a network type"));
  interface.cost =
      static_cast<std::uint16_t>(view.member("cost", "a cost").number(UINT16_MAX, "a cost"));
  interface.hello_interval = seconds(view, "timerIntervalsConfigHello");
  interface.dead_interval = seconds(view, "timerIntervalsConfigDead");
  interface.retransmit_interval = seconds(view, "timerIntervalsConfigRetransmit");
  interface.transmit_delay = seconds(view, "transmitDelaySec");
  interface.state =
      view.member("ospf6InterfaceState", "the interface state").text("the interface state");
  interface.dr = optional_address(view, "dr");
  interface.bdr = optional_address(view, "bdr");
  interface.priority = static_cast<std::uint8_t>(
      view.member("priority", "a priority").number(UINT8_MAX, "a priority"));
  if (view.has("mtuMismatchDetection")) {
    interface.mtu_ignored =
        view.member("mtuMismatchDetection", "").text("enabled or disabled") == "disabled";
  }
  if (view.has("authInfo")) {
    const JsonView authentication = view.member("authInfo", "");
    interface.authentication = authentication.member("authType", "a kind of authentication")
                                           .text("a kind of authentication") == "NULL"
                                   ? Authentication::none
                                   : Authentication::key;
    authentication.pass_over_all_but({"authType"});
  }
  view.pass_over_all_but(
      {"attachedToArea", "areaId", "internetAddress", "instanceId", "interfaceMtu", "type",
       "operatingAsType", "cost", "timerIntervalsConfigHello", "timerIntervalsConfigDead",
       "timerIntervalsConfigRetransmit", "transmitDelaySec", "ospf6InterfaceState", "dr", "bdr",
       "priority", "mtuMismatchDetection", "authInfo"});
  area_of(instance, area, area_view).interfaces.push_back(std::move(interface));
}

void read_neighbor_v6(Instance &instance, const std::string &key, const JsonView &view) {
  const std::string id = key.substr(0, key.find('%'));
  if (!parse_dotted(id)) view.fail("a neighbour under its router ID and interface");
  const JsonView area_view = view.member("area", "an area ID");
  const std::uint32_t area = area_id(area_view, area_view.text("an area ID"));
  const JsonView name = view.member("interface", "an interface name");
  Interface &interface = interface_of(instance, area, name.text("an interface name"), name);
  Neighbor neighbor{};
  neighbor.router_id = id;
  neighbor.address = address(view.member("linkLocalAddress", "an address"), "an address");
  const JsonView state = view.member("neighborState", "a neighbour state");
  neighbor.state =
      named(state, state.text("a neighbour state"), neighbor_states, "a neighbour state");
  neighbor.evidence = "answer";
  neighbor.dr = optional_address(view, "neighborDRouter");
  neighbor.bdr = optional_address(view, "neighborBdRouter");
  if (view.has("reTransListCount")) {
    neighbor.retransmission_queue = static_cast<std::uint32_t>(
        view.member("reTransListCount", "").number(UINT32_MAX, "a count"));
  }
  view.pass_over_all_but({"area", "interface", "linkLocalAddress", "neighborState",
                          "neighborDRouter", "neighborBdRouter", "reTransListCount"});
  interface.neighbors.push_back(neighbor);
}

// The detailed answer about neighbours leaves their priorities out, the short one has them.
void read_priorities(const std::string &folder, Instance &instance) {
  PassedOver not_counted;
  const JsonView answer_view = read_json(answer(folder, "ipv6-ospf6-neighbor.json"), not_counted);
  for (const JsonView &view :
       answer_view.member("neighbors", "the neighbours").elements("the neighbours")) {
    const std::string id = view.member("neighborId", "a router ID").text("a router ID");
    const std::string name = view.member("interfaceName", "a name").text("an interface name");
    const auto priority = static_cast<std::uint8_t>(
        view.member("priority", "a priority").number(UINT8_MAX, "a priority"));
    for (Area &area : instance.areas) {
      for (Interface &interface : area.interfaces) {
        if (interface.name != name) continue;
        for (Neighbor &neighbor : interface.neighbors) {
          if (neighbor.router_id == id) neighbor.priority = priority;
        }
      }
    }
  }
}

Instance read_v6(const std::string &folder, PassedOver &passed_over, Missing missing) {
  const JsonView process = read_json(answer(folder, "ipv6-ospf6.json"), passed_over);
  Instance instance{Family::ipv6, router_id(process.member("routerId", "a router ID")), {}};
  read_areas(instance, process);
  process.pass_over_all_but({"routerId", "areas"});
  const bool has_interfaces = !is_left_out(folder, "ipv6-ospf6-interface.json", missing);
  if (has_interfaces) {
    const JsonView interfaces = read_json(answer(folder, "ipv6-ospf6-interface.json"), passed_over);
    for (const auto &[name, view] : interfaces.members("the interfaces")) {
      read_interface_v6(instance, name, view);
    }
  }
  if (is_left_out(folder, "ipv6-ospf6-neighbor-detail.json", missing)) return instance;
  const JsonView neighbors =
      read_json(answer(folder, "ipv6-ospf6-neighbor-detail.json"), passed_over);
  for (const auto &[key, view] : neighbors.members("the neighbours")) {
    if (!has_interfaces) add_interface_of(instance, view, "area", "interface");
    read_neighbor_v6(instance, key, view);
  }
  if (find_answer(folder, "ipv6-ospf6-neighbor.json")) read_priorities(folder, instance);
  return instance;
}

}  // namespace

bool has_frr_process(const std::string &folder) {
  return find_answer(folder, "ip-ospf.json") || find_answer(folder, "ipv6-ospf6.json");
}

std::vector<Instance> read_frr(const std::string &folder, PassedOver &passed_over,
                               Missing missing) {
  struct stat status {};
  if (stat(folder.c_str(), &status) != 0) {
    throw InputError(folder, "", "nothing there", "a folder with a daemon's answers");
  }
  if (!S_ISDIR(status.st_mode)) {
    throw InputError(folder, "", "a file", "a folder with a daemon's answers");
  }
  std::vector<Instance> instances;
  if (find_answer(folder, "ip-ospf.json"))
    instances.push_back(read_v4(folder, passed_over, missing));
  if (find_answer(folder, "ipv6-ospf6.json"))
    instances.push_back(read_v6(folder, passed_over, missing));
  if (instances.empty()) {
    throw InputError(folder, "", "neither of the two",
                     "ip-ospf.json or ipv6-ospf6.json, as the daemon answers");
  }
  return instances;
}

}  // namespace router_answers
