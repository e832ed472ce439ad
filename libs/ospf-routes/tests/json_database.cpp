#include "json_database.hpp"

namespace ospf_routes {

namespace {

using nlohmann::json;

class Reader {
 public:
  explicit Reader(Family family) : family_(family) {}

  Area area(const json &from) const {
    Area area;
    area.id = from["id"];
    for (const json &each : from["routers"]) area.routers.push_back(router(each));
    for (const json &each : from["networks"]) {
      area.networks.push_back({each["router"], each["id"], each["length"], each["attached"]});
    }
    for (const json &each : from["summaries"]) {
      area.summaries.push_back(
          {each["router"], prefix(each["prefix"]), each["metric"], each["options"]});
    }
    for (const json &each : from["boundaries"]) {
      area.boundaries.push_back({each["router"], each["boundary"], each["metric"]});
    }
    for (const json &each : from["nssa"]) area.nssa.push_back(external(each));
    for (const json &each : from["links"]) {
      LinkLsa lsa{each["router"], each["interface"], address(each["address"]), {}};
      for (const json &own : each["prefixes"]) lsa.prefixes.push_back(prefix(own));
      area.links.push_back(lsa);
    }
    for (const json &each : from["prefix_lsas"]) {
      IntraAreaPrefixLsa lsa{
          each["router"], each["of_network"], each["referenced_router"], each["referenced_id"], {}};
      for (const json &own : each["prefixes"]) {
        lsa.prefixes.push_back({prefix(own["prefix"]), own["options"], own["metric"]});
      }
      area.prefix_lsas.push_back(lsa);
    }
    return area;
  }

  ExternalLsa external(const json &from) const {
    ExternalLsa lsa{from["router"],  prefix(from["prefix"]), from["metric"],
                    from["type_2"],  std::nullopt,           from["tag"],
                    from["options"], from["propagate"]};
    if (!from["forwarding"].is_null()) lsa.forwarding = address(from["forwarding"]);
    return lsa;
  }

 private:
  Prefix prefix(const std::string &text) const { return parse_prefix(text, family_).value(); }
  Address address(const std::string &text) const {
    // Where IPv4 is routed link-LSAs have addresses of IPv4.
    return parse_address(text, family_).value();
  }

  RouterLsa router(const json &from) const {
    RouterLsa lsa{from["router"],   from["id"],          from["border"],
                  from["boundary"], from["virtual_end"], from["takes_externals"],
                  from["forwards"], from["in_family"],   {}};
    for (const json &each : from["links"]) {
      RouterLink link{LinkType{each["type"].get<std::uint8_t>()},
                      each["neighbor"],
                      each["neighbor_interface"],
                      each["interface"],
                      each["metric"],
                      {}};
      if (!each["stub"].is_null()) link.stub = prefix(each["stub"]);
      lsa.links.push_back(link);
    }
    return lsa;
  }

  Family family_;
};

}  // namespace

Database database_of(const json &from) {
  Database database;
  database.version = from["version"];
  database.family = from["family"] == "ipv4" ? Family::ipv4 : Family::ipv6;
  const Reader reader(database.family);
  for (const json &area : from["areas"]) database.areas.push_back(reader.area(area));
  for (const json &each : from["externals"]) database.externals.push_back(reader.external(each));
  return database;
}

}  // namespace ospf_routes
