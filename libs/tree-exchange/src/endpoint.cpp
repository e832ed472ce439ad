#include "tree_exchange/endpoint.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/un.h>

#include <charconv>
#include <cstring>
#include <optional>

#include "ospf_tables/input_error.hpp"
#include "quoted.hpp"

namespace tree_exchange {

using namespace ospf_tables;

namespace {

constexpr char forms[] = "unix:PATH, tcp:127.0.0.1:PORT or tcp:[::1]:PORT";

Endpoint unix_endpoint(const std::string &option, const std::string &path) {
  Endpoint endpoint;
  sockaddr_un address{};
  if (path.empty() || path.size() >= sizeof address.sun_path) {
    throw InputError(option, "", "a path of " + std::to_string(path.size()) + " bytes",
                     "1 to " + std::to_string(sizeof address.sun_path - 1) + " bytes");
  }
  endpoint.is_unix = true;
  endpoint.path = path;
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, path.data(), path.size());
  std::memcpy(&endpoint.address, &address, sizeof address);
  endpoint.size = sizeof address;
  return endpoint;
}

std::optional<std::uint16_t> port_of(const std::string &text) {
  std::uint16_t port = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return port;
}

Endpoint tcp_endpoint(const std::string &option, const std::string &text) {
  const std::size_t colon = text.rfind(':');
  const std::string host = text.substr(0, colon);
  const auto port = colon == std::string::npos ? std::nullopt : port_of(text.substr(colon + 1));
  if (!port) {
    throw InputError(option, "", quoted("tcp:" + text), std::string(forms) + ", PORT to 65535");
  }
  Endpoint endpoint;
  if (in_addr v4{}; inet_pton(AF_INET, host.c_str(), &v4) == 1) {
    constexpr std::uint32_t loopback_net = 127;
    if (ntohl(v4.s_addr) >> 24 == loopback_net) {
      sockaddr_in address{};
      address.sin_family = AF_INET;
      address.sin_port = htons(*port);
      address.sin_addr = v4;
      std::memcpy(&endpoint.address, &address, sizeof address);
      endpoint.size = sizeof address;
      return endpoint;
    }
  } else if (host == "[::1]") {
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_port = htons(*port);
    address.sin6_addr = in6addr_loopback;
    std::memcpy(&endpoint.address, &address, sizeof address);
    endpoint.size = sizeof address;
    return endpoint;
  }
  throw InputError(option, "", "the host " + quoted(host),
                   "a loopback address: trees stay on this machine (" + std::string(forms) + ")");
}

}  // namespace

Endpoint parse_endpoint(const std::string &option, const std::string &text) {
  if (text.starts_with("unix:")) return unix_endpoint(option, text.substr(5));
  if (text.starts_with("tcp:")) return tcp_endpoint(option, text.substr(4));
  throw InputError(option, "", quoted(text), forms);
}

std::string tcp_text(const sockaddr_storage &address) {
  char host[INET6_ADDRSTRLEN] = "";
  if (address.ss_family == AF_INET) {
    sockaddr_in v4{};
    std::memcpy(&v4, &address, sizeof v4);
    inet_ntop(AF_INET, &v4.sin_addr, host, sizeof host);
    return std::string("tcp:") + host + ":" + std::to_string(ntohs(v4.sin_port));
  }
  sockaddr_in6 v6{};
  std::memcpy(&v6, &address, sizeof v6);
  inet_ntop(AF_INET6, &v6.sin6_addr, host, sizeof host);
  return std::string("tcp:[") + host + "]:" + std::to_string(ntohs(v6.sin6_port));
}

}  // namespace tree_exchange
