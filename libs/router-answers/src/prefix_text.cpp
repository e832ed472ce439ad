#include "prefix_text.hpp"

#include <arpa/inet.h>

namespace router_answers {

std::optional<ospf_decode::PrefixV3> parse_prefix(const std::string &text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string::npos) return std::nullopt;
  ospf_decode::PrefixV3 prefix;
  const std::string address = text.substr(0, slash);
  const bool v6 = inet_pton(AF_INET6, address.c_str(), prefix.address.data()) == 1;
  if (!v6 && inet_pton(AF_INET, address.c_str(), prefix.address.data()) != 1) return std::nullopt;
  const std::string length = text.substr(slash + 1);
  if (length.empty() || length.size() > 3 ||
      length.find_first_not_of("0123456789") != std::string::npos ||
      std::stoul(length) > (v6 ? 128u : 32u)) {
    return std::nullopt;
  }
  prefix.length = static_cast<std::uint8_t>(std::stoul(length));
  return prefix;
}

}  // namespace router_answers
