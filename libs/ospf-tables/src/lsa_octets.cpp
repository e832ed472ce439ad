#include "lsa_octets.hpp"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

namespace ospf_tables {

namespace {

constexpr std::size_t header_length = 20;

class Octets {
 public:
  explicit Octets(const std::vector<std::uint8_t> &octets) : octets_(octets) {}
  bool reach(std::size_t end) const { return end <= octets_.size(); }
  std::size_t size() const { return octets_.size(); }
  const std::uint8_t *at(std::size_t at) const { return octets_.data() + at; }
  std::uint32_t number(std::size_t at, std::size_t size) const {
    std::uint32_t value = 0;
    for (const std::uint8_t octet : octets_.subspan(at, size)) value = value << 8 | octet;
    return value;
  }

 private:
  std::span<const std::uint8_t> octets_;
};

template <std::size_t n>
void add_names(BitNames &names, std::uint32_t bits, const Named (&lacking)[n]) {
  for (const Named &bit : lacking) {
    if ((bits & bit.number) != 0) names.push_back(bit.name);
  }
}

// Bits without a field in the model.
constexpr Named options_v2[] = {{option2_l, "L"}, {option2_o, "O"}, {option2_dn, "DN"}};
constexpr Named options_v3[] = {{option3_l, "L"}, {option3_at, "AT"}};
constexpr Named flags_v2[] = {{router_flag_w, "W"}, {router_flag_nt, "Nt"}};
constexpr Named flags_v3[] = {{router_flag_w, "W"}};

struct FromOctets {
  const Octets octets;

  template <typename Body>
  void operator()(Body &) const {}

  void operator()(RouterViewV2 &body) const {
    constexpr std::size_t link_length = 12;
    if (!octets.reach(header_length + 4)) return;
    add_names(body.flags, octets.number(header_length, 1), flags_v2);
    std::vector<RouterLinkViewV2> links;
    std::size_t at = header_length + 4;
    for (std::uint32_t left = octets.number(at - 2, 2); left > 0; --left) {
      if (!octets.reach(at + link_length)) return;
      RouterLinkViewV2 link{static_cast<std::uint8_t>(octets.number(at + 8, 1)),
                            octets.number(at, 4),
                            octets.number(at + 4, 4),
                            {{0, octets.number(at + 10, 2)}}};
      const std::size_t end = at + link_length + 4 * octets.number(at + 9, 1);
      if (!octets.reach(end)) return;
      for (at += link_length; at < end; at += 4) {
        link.metrics.push_back({octets.number(at, 1), octets.number(at + 2, 2)});
      }
      links.push_back(std::move(link));
    }
    body.links = std::move(links);
  }

  void operator()(SummaryViewV2 &body) const {
    std::vector<TopologyMetricView> metrics;
    for (std::size_t at = header_length + 4; octets.reach(at + 4); at += 4) {
      metrics.push_back({octets.number(at, 1), octets.number(at + 1, 3)});
    }
    if (!metrics.empty()) body.metrics = std::move(metrics);
  }

  void operator()(RouterViewV3 &body) const {
    if (!octets.reach(header_length + 4)) return;
    add_names(body.flags, octets.number(header_length, 1), flags_v3);
    add_options(body.options);
  }
  void operator()(NetworkViewV3 &body) const { add_options(body.options); }
  void operator()(InterAreaRouterView &body) const { add_options(body.options); }
  void operator()(LinkViewV3 &body) const { add_options(body.options); }

  void operator()(ExternalViewV3 &body) const {
    if (!octets.reach(header_length + 1)) return;
    const bool has_tag = (octets.number(header_length, 1) & external3_t) != 0;
    body.route_tag = has_tag ? std::optional(body.route_tag.value_or(0)) : std::nullopt;
  }

  void operator()(IntraAreaPrefixView &body) const {
    std::size_t at = header_length + 12;
    if (!octets.reach(at)) return;
    for (std::uint32_t left = octets.number(header_length, 2); left > 0; --left) {
      if (!octets.reach(at + 4)) return;
      const std::uint32_t length = octets.number(at, 1);
      const std::size_t size = (length + 31) / 32 * 4;
      if (!octets.reach(at + 4 + size)) return;
      for (PrefixView &prefix : body.prefixes) {
        if (is_prefix(prefix.prefix, at + 4, size, length))
          prefix.metric = octets.number(at + 2, 2);
      }
      at += 4 + size;
    }
  }

 private:
  // In all bodies that have them they are the last three octets of the first word.
  void add_options(BitNames &names) const {
    if (octets.reach(header_length + 4)) {
      add_names(names, octets.number(header_length + 1, 3), options_v3);
    }
  }

  // Whether a text such as "2001:db8::/32" is the prefix at a place.
  bool is_prefix(const std::string &text, std::size_t at, std::size_t size,
                 std::uint32_t length) const {
    const std::size_t slash = text.find('/');
    if (slash == text.npos || text.substr(slash + 1) != std::to_string(length)) return false;
    std::array<std::uint8_t, 16> address{};
    const int family = text.find(':') == text.npos ? AF_INET : AF_INET6;
    if (size > address.size() ||
        inet_pton(family, text.substr(0, slash).c_str(), address.data()) != 1) {
      return false;
    }
    return std::memcmp(address.data(), octets.at(at), size) == 0;
  }
};

}  // namespace

void add_from_octets(LsaView &view) {
  const Octets octets(view.raw_data);
  if (!octets.reach(header_length)) return;
  if (view.version == 2) add_names(view.options, octets.number(2, 1), options_v2);
  std::visit(FromOctets{octets}, view.body);
}

}  // namespace ospf_tables
