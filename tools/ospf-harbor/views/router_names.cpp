#include "views/router_names.hpp"

#include <algorithm>
#include <cstring>

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

std::string labelled(const std::string &sentence, const std::vector<std::uint32_t> &routers,
                     const RouterNames &names) {
  constexpr const char *quad = "0123456789.";
  if (names.empty()) return sentence;
  std::string result;
  for (std::size_t at = 0; at < sentence.size();) {
    const std::size_t start = std::min(sentence.find_first_of(quad, at), sentence.size());
    const std::size_t end = std::min(sentence.find_first_not_of(quad, start), sentence.size());
    std::string word = sentence.substr(start, end - start);
    const std::string dots = word.ends_with(".") ? "." : "";
    word.resize(word.size() - dots.size());
    const auto router = parse_dotted(word);
    const bool is_other = (start > 0 && std::strchr("@:", sentence[start - 1]) != nullptr) ||
                          sentence.compare(end, 1, "/") == 0 ||
                          sentence.compare(end, 4, " of ") == 0;
    const bool is_one = router && !is_other && std::ranges::find(routers, *router) != routers.end();
    result += sentence.substr(at, start - at) + (is_one ? labelled(*router, names) : word) + dots;
    at = end;
  }
  return result;
}

}  // namespace tool
