#include "router_answers/database.hpp"

#include <utility>

namespace router_answers {

namespace {

int worth(const HeldLsa &lsa) { return lsa.exact ? 2 : lsa.has_body() ? 1 : 0; }

// Answers are given one after the other, so that a later one may tell of a newer instance.
bool replaces(const HeldLsa &lsa, const HeldLsa &held) {
  const int newer = ospf_decode::compare_instances(lsa.header, lsa.header.age_seconds(),
                                                   held.header, held.header.age_seconds());
  return newer > 0 || (newer == 0 && worth(lsa) > worth(held));
}

}  // namespace

void Database::add(const Place &place, HeldLsa lsa) {
  const ospf_decode::LsaHeader &header = lsa.header;
  const LsaKey key{place, {header.type, header.link_state_id, header.advertising_router}};
  const auto [held, is_new] = lsas.try_emplace(key);
  if (is_new || replaces(lsa, held->second)) held->second = std::move(lsa);
}

}  // namespace router_answers
