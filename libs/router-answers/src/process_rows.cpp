#include "router_answers/process_rows.hpp"

#include <algorithm>
#include <set>

#include "capture_rows/database_rows.hpp"

namespace router_answers {

using namespace ospf_decode;

namespace {

void decode(Bytes raw, LsaV2 &out, const Report &report) { decode_lsa_v2(raw, out, report); }
void decode(Bytes raw, LsaV3 &out, const Report &report) { decode_lsa_v3(raw, out, report); }

class Filler {
 public:
  Filler(ospf_tables::Session &session, const Process &process)
      : process_(process), rows_(session, process.instance.family == ospf_tables::Family::ipv4) {}

  template <typename Lsa>
  void fill() {
    for (const auto &[key, held] : process_.database.lsas) {
      if (held.header.age_seconds() >= max_age) continue;
      Lsa lsa;
      std::vector<std::uint8_t> octets = held.raw;
      if (held.has_body()) {
        // Bytes that leave something out do not have the checksum that the router tells.
        if (!held.exact) correct_checksum(octets);
        ErrorCounts counts;
        decode(octets, lsa, Report(counts, 0));
      }
      lsa.header = held.header;
      lsa.raw = held.raw;
      lsa.complete = lsa.complete && held.exact;
      put(key.place, lsa);
    }
  }

  const ospf_tables::Databases &databases() const { return rows_.databases(); }

 private:
  const ospf_tables::Area *area(std::uint32_t id) const {
    const auto &areas = process_.instance.areas;
    const auto found = std::find_if(areas.begin(), areas.end(),
                                    [&](const ospf_tables::Area &area) { return area.id == id; });
    return found == areas.end() ? nullptr : &*found;
  }

  template <typename Lsa>
  void put(const Place &place, const Lsa &lsa) {
    if (place.scope == Scope::as) {
      rows_.add_to_as(lsa);
      return;
    }
    const ospf_tables::Area *of = area(place.area);
    const bool has_interface = of != nullptr && !of->interfaces.empty();
    if (place.scope == Scope::link && has_interface) {
      const auto known = std::find_if(
          of->interfaces.begin(), of->interfaces.end(),
          [&](const ospf_tables::Interface &each) { return each.name == place.interface; });
      // Of an OSPFv2 opaque LSA FRR does not tell the link.
      const auto &interface = known == of->interfaces.end() ? of->interfaces.front() : *known;
      return add_to_interface(place, interface.name, lsa);
    }
    // Only link-scope rows have fields for what opaque LSAs of areas say.
    if (process_.version == 2 && lsa.header.type == lsa2_opaque_area && has_interface) {
      return add_to_interface(place, of->interfaces.front().name, lsa);
    }
    rows_.add_to_area(place.area, lsa);
  }

  // One interface stands for all whose names are not known, so that an LSA may come twice.
  template <typename Lsa>
  void add_to_interface(const Place &place, const std::string &name, const Lsa &lsa) {
    if (taken_
            .insert({{Scope::link, place.area, name},
                     {lsa.header.type, lsa.header.link_state_id, lsa.header.advertising_router}})
            .second) {
      rows_.add_to_interface(place.area, name, lsa);
    }
  }

  const Process &process_;
  capture_rows::DatabaseRows rows_;
  std::set<LsaKey> taken_;
};

}  // namespace

std::unique_ptr<ospf_tables::NewInstance> process_rows(ospf_tables::Session &session,
                                                       const Process &process) {
  Filler filler(session, process);
  if (process.version == 2) {
    filler.fill<LsaV2>();
  } else {
    filler.fill<LsaV3>();
  }
  return std::make_unique<ospf_tables::NewInstance>(session, process.instance, filler.databases());
}

}  // namespace router_answers
