// FRR's OSPFv2 databases in JSON. The list ("show ip ospf database json") has headers without
// options and lengths; the detailed forms, one for each type, have all fields but the DN bit of the
// options, which FRR draws as a star, and the end of opaque data that is longer than 65 octets.
#include <algorithm>
#include <array>

#include "frr_text_v2.hpp"
#include "frr_words.hpp"
#include "ospf_decode/lsa_v2.hpp"
#include "router_answers/answer_file.hpp"
#include "router_answers/database.hpp"

namespace router_answers {

namespace {

using namespace ospf_decode;

struct List {
  const char *name;
  std::uint16_t type;
};

constexpr List lists[] = {
    {"routerLinkStates", lsa2_router},          {"networkLinkStates", lsa2_network},
    {"summaryLinkStates", lsa2_summary},        {"asbrSummaryLinkStates", lsa2_asbr_summary},
    {"asExternalLinkStates", lsa2_as_external}, {"nssaExternalLinkStates", lsa2_nssa},
    {"linkLocalOpaqueLsa", lsa2_opaque_link},   {"areaLocalOpaqueLsa", lsa2_opaque_area},
    {"asExternalOpaqueLsa", lsa2_opaque_as},
};

constexpr const char *forms[] = {
    "",          "-router",        "-network",     "-summary",     "-asbr-summary",
    "-external", "-nssa-external", "-opaque-link", "-opaque-area", "-opaque-as",
    "-detail"};

std::uint32_t id_in(const JsonView &lsa, const char *key) {
  return dotted_of(lsa.member(key, "a dotted quad"), "a dotted quad");
}

std::uint32_t number_in(const JsonView &lsa, const char *key, std::uint32_t highest) {
  return static_cast<std::uint32_t>(lsa.member(key, "a number").number(highest, "a number"));
}

std::uint32_t number_or_zero(const JsonView &lsa, const char *key, std::uint32_t highest) {
  return lsa.has(key) ? number_in(lsa, key, highest) : 0;
}

LsaHeader header_of(const JsonView &lsa, std::uint16_t type, bool detailed) {
  LsaHeader header;
  header.type = type;
  // Beyond MaxAge FRR counts on until it removes an LSA.
  header.age = static_cast<std::uint16_t>(
      std::min<std::uint32_t>(number_in(lsa, "lsaAge", UINT16_MAX), max_age));
  header.link_state_id = id_in(lsa, detailed ? "linkStateId" : "lsId");
  header.advertising_router = id_in(lsa, detailed ? "advertisingRouter" : "advertisedRouter");
  header.sequence =
      hexadecimal_of(lsa.member(detailed ? "lsaSeqNumber" : "sequenceNumber", "a sequence number"),
                     UINT32_MAX, "a sequence number in hexadecimal");
  header.checksum = static_cast<std::uint16_t>(hexadecimal_of(
      lsa.member("checksum", "a checksum"), UINT16_MAX, "a checksum in hexadecimal"));
  if (!detailed) return header;
  header.options = static_cast<std::uint8_t>(
      flags_of(lsa.member("options", "options"), 8, "eight options between bars"));
  header.length = static_cast<std::uint16_t>(number_in(lsa, "length", UINT16_MAX));
  return header;
}

// A link's type, ID and data; the ID and data have a name of their own in each type.
void put_link(const JsonView &link, LsaBody &body) {
  struct Form {
    const char *text;
    std::uint8_t type;
    const char *id;
    const char *data;
  };
  static constexpr Form link_forms[] = {
      {"another Router (point-to-point)", router_link_point_to_point, "neighborRouterId",
       "routerInterfaceAddress"},
      {"a Transit Network", router_link_transit, "designatedRouterAddress",
       "routerInterfaceAddress"},
      {"Stub Network", router_link_stub, "networkAddress", "networkMask"},
      {"a Virtual Link", router_link_virtual, "neighborRouterId", "routerInterfaceAddress"},
  };
  const JsonView type = link.member("linkType", "a type of link");
  const std::string text = type.text("a type of link");
  for (const Form &form : link_forms) {
    if (text != form.text) continue;
    body.u32(id_in(link, form.id)).u32(id_in(link, form.data)).u8(form.type);
    // FRR tells how many metrics there are beside the first, and of these nothing else.
    body.u8(number_or_zero(link, "numOfTosMetrics", UINT8_MAX));
    body.u16(number_in(link, "tos0Metric", UINT16_MAX));
    return;
  }
  type.fail(
      "a type of link (another Router (point-to-point), a Transit Network, Stub Network, "
      "a Virtual Link)");
}

LsaBody router_body(const JsonView &lsa) {
  LsaBody body;
  body.u8(number_in(lsa, "flags", UINT8_MAX)).u8(0);
  body.u16(number_in(lsa, "numOfLinks", UINT16_MAX));
  if (!lsa.has("routerLinks")) return body;
  for (const auto &[name, link] : lsa.member("routerLinks", "").members("the links")) {
    put_link(link, body);
  }
  return body;
}

LsaBody network_body(const JsonView &lsa) {
  LsaBody body;
  body.u32(mask_of_length(number_in(lsa, "networkMask", 32)));
  // The daemon misspells the key, and newer ones may not.
  const char *key = lsa.has("attachedRouters") ? "attachedRouters" : "attchedRouters";
  for (const auto &[id, router] : lsa.member(key, "attached routers").members("routers")) {
    body.u32(dotted_of(router, id, "an attached router under its ID"));
  }
  return body;
}

LsaBody summary_body(const JsonView &lsa) {
  LsaBody body;
  body.u32(mask_of_length(number_in(lsa, "networkMask", 32)));
  body.u32(number_in(lsa, "tos0Metric", 0xffffff));
  return body;
}

LsaBody external_body(const JsonView &lsa, const char *forwarding) {
  LsaBody body;
  const JsonView type = lsa.member("metricType", "E1 or E2");
  const std::string text = type.text("E1 or E2");
  if (!text.starts_with("E1") && !text.starts_with("E2")) type.fail("E1 or E2");
  body.u32(mask_of_length(number_in(lsa, "networkMask", 32)));
  body.u8((text[1] == '2' ? 0x80u : 0u) | number_or_zero(lsa, "tos", 0x7f));
  body.u24(number_in(lsa, "metric", 0xffffff));
  body.u32(id_in(lsa, forwarding)).u32(number_in(lsa, "externalRouteTag", UINT32_MAX));
  return body;
}

// The octets are hexadecimal digits, of which the daemon leaves out the end when there are many.
LsaBody opaque_body(const JsonView &lsa) {
  LsaBody body;
  if (!lsa.has("opaqueData")) return body;
  const JsonView data = lsa.member("opaqueData", "");
  const std::string digits = data.text("hexadecimal digits");
  if (digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
    data.fail("hexadecimal digits");
  }
  for (std::size_t at = 0; at + 1 < digits.size(); at += 2) {
    body.u8(static_cast<std::uint32_t>(std::stoul(digits.substr(at, 2), nullptr, 16)));
  }
  return body;
}

LsaBody body_of(const JsonView &lsa, std::uint16_t type) {
  switch (type) {
    case lsa2_router:
      return router_body(lsa);
    case lsa2_network:
      return network_body(lsa);
    case lsa2_summary:
    case lsa2_asbr_summary:
      return summary_body(lsa);
    case lsa2_as_external:
      return external_body(lsa, "forwardAddress");
    case lsa2_nssa:
      return external_body(lsa, "nssaForwardAddress");
    default:
      return opaque_body(lsa);
  }
}

HeldLsa read_lsa(const JsonView &lsa, std::uint16_t type) {
  const bool detailed = lsa.has("linkStateId");
  LsaHeader header = header_of(lsa, type, detailed);
  if (!detailed) return header_alone(2, header);
  const LsaBody body = body_of(lsa, type);
  if (type >= lsa2_opaque_link && lsa_header_length + body.octets().size() < header.length) {
    return header_alone(2, header);
  }
  HeldLsa out = put_together(2, header, body);
  if (out.exact) return out;
  header.options |= option2_dn;
  HeldLsa with_dn = put_together(2, header, body);
  return with_dn.exact ? with_dn : out;
}

void read_list(const JsonView &list, std::uint16_t type, std::uint32_t area, Database &database) {
  Place place;
  place.scope = *scope_of(2, type);
  if (place.scope != Scope::as) place.area = area;
  for (const JsonView &lsa : list.elements("a list of LSAs")) {
    database.add(place, read_lsa(lsa, type));
  }
}

void read_lists(const JsonView &in, std::uint32_t area, Database &database) {
  for (const List &list : lists) {
    if (!in.has(list.name)) continue;
    const JsonView value = in.member(list.name, "");
    if (!value.has("areas")) {
      read_list(value, list.type, area, database);
      continue;
    }
    for (const auto &[text, of_area] : value.member("areas", "").members("the areas")) {
      read_list(of_area, list.type, area_of(of_area, text), database);
    }
  }
}

}  // namespace

bool has_frr_v2(const std::string &folder) {
  return std::any_of(std::begin(forms), std::end(forms), [&](const char *form) {
    const std::string name = std::string("ip-ospf-database") + form;
    return find_answer(folder, name + ".json") || find_answer(folder, name + ".txt");
  });
}

void read_frr_v2(const std::string &folder, Database &database) {
  for (const char *form : forms) {
    const std::string name = std::string("ip-ospf-database") + form;
    if (const auto text = find_answer(folder, name + ".txt")) read_frr_text_v2(*text, database);
    const auto path = find_answer(folder, name + ".json");
    if (!path) continue;
    PassedOver passed_over;
    const JsonView answer = read_json(*path, passed_over);
    read_lists(answer, 0, database);
    if (!answer.has("areas")) continue;
    for (const auto &[text, area] : answer.member("areas", "").members("the areas")) {
      read_lists(area, area_of(area, text), database);
    }
  }
}

}  // namespace router_answers
