// The lines of a reference file, written from this library's own decoding.
//
// The form is that of decoder.txt as tools/make_reference.py makes it from another decoder's
// answer; each line is the number of the packet and then one thing with all its fields.
#pragma once

#include <bit>
#include <cstdio>
#include <string>
#include <vector>

#include "ospf_decode/visitor.hpp"

namespace ospf_decode::testing {

class Describer : public Visitor {
 public:
  std::vector<std::string> lines;

  void on_packet(const Packet &packet) override;
  void on_hello(const Packet &packet, const Hello &hello) override;
  void on_database_description(const Packet &packet, const DatabaseDescription &dd) override;
  void on_request(const Packet &packet, std::span<const LsaName> names) override;
  void on_lsa_v2(const Packet &packet, const LsaV2 &lsa) override;
  void on_lsa_v3(const Packet &packet, const LsaV3 &lsa) override;
  void on_acknowledgement(const Packet &packet, std::span<const LsaHeader> headers) override;

 private:
  void add(const Packet &packet, std::string line);
};

}  // namespace ospf_decode::testing
