#include "views/router_names.hpp"

#include "ospf_tables/input_error.hpp"
#include "ospf_tables/row_keys.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

void take_name(const LsaView &lsa, const std::vector<TlvView> &tlvs, RouterNames &names) {
  for (const TlvView &tlv : tlvs) {
    if (tlv.type != ri_tlv_hostname || tlv.value.empty()) continue;
    names.emplace(lsa.adv_router, in_one_line(std::string(tlv.value.begin(), tlv.value.end())));
  }
}

}  // namespace

RouterNames router_names(Session &session, const std::vector<LsdbEntry> &entries) {
  RouterNames names = session.names();
  for (const LsdbEntry &entry : entries) {
    const LsaView &lsa = entry.lsa;
    if (const auto *opaque = std::get_if<OpaqueViewV2>(&lsa.body)) {
      if (opaque->opaque_type == opaque_router_information) take_name(lsa, opaque->tlvs, names);
    } else if (const auto *other = std::get_if<OtherView>(&lsa.body)) {
      const bool is_information =
          lsa.version == 3 && (lsa.type & lsa3_function_mask) == lsa3_function_router_information;
      if (is_information) take_name(lsa, other->tlvs, names);
    }
  }
  return names;
}

RouterNames router_names(Session &session) { return router_names(session, read_lsdb(session)); }

std::string labelled(std::uint32_t router, const RouterNames &names) {
  const auto name = names.find(router);
  return dotted(router) + (name == names.end() ? "" : " " + name->second);
}

}  // namespace tool
