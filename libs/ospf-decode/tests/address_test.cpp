// The texts of addresses, beside those of the system.
#include "ospf_decode/address.hpp"

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <random>

namespace ospf_decode {
namespace {

TEST(Address, HasTheTextThatTheSystemGives) {
  std::mt19937 random(3);
  for (int turn = 0; turn < 20000; ++turn) {
    Ipv6Bytes bytes{};
    for (std::size_t at = 0; at < bytes.size(); at += 2) {
      constexpr std::uint16_t words[] = {0, 0, 0, 1, 0x20, 0xabc, 0xffff};
      const std::uint16_t word = words[random() % std::size(words)];
      bytes[at] = static_cast<std::uint8_t>(word >> 8);
      bytes[at + 1] = static_cast<std::uint8_t>(word);
    }
    char text[INET6_ADDRSTRLEN];
    const std::string v6 = inet_ntop(AF_INET6, bytes.data(), text, sizeof text);
    EXPECT_EQ(ipv6_text(bytes), v6);
    EXPECT_EQ(prefix_text({bytes, 128}), v6 + "/128");
    const std::string v4 = inet_ntop(AF_INET, bytes.data(), text, sizeof text);
    EXPECT_EQ(ip_text({bytes, false}), v4);
    EXPECT_EQ(prefix_text({bytes, 7}, true), v4 + "/7");
  }
}

}  // namespace
}  // namespace ospf_decode
