// Who is told what a capture holds. Each call's arguments are valid during that call only.
#pragma once

#include <span>

#include "ospf_decode/lsa_v2.hpp"
#include "ospf_decode/lsa_v3.hpp"
#include "ospf_decode/packet.hpp"

namespace ospf_decode {

class Visitor {
 public:
  virtual ~Visitor() = default;

  // Every packet whose header could be read, before its contents; good ones and, told by
  // checksum_state, those whose checksum is bad and whose contents do not follow.
  virtual void on_packet(const Packet &) {}
  virtual void on_hello(const Packet &, const Hello &) {}
  virtual void on_database_description(const Packet &, const DatabaseDescription &) {}
  virtual void on_request(const Packet &, std::span<const LsaName>) {}
  // Each LSA of an update; one with checksum_ok false is shown but must not be loaded.
  virtual void on_lsa_v2(const Packet &, const LsaV2 &) {}
  virtual void on_lsa_v3(const Packet &, const LsaV3 &) {}
  virtual void on_acknowledgement(const Packet &, std::span<const LsaHeader>) {}
};

}  // namespace ospf_decode
