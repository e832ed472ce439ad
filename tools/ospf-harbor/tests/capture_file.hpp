// Captures for tests, made of packets that are made of bytes; each is a file that goes with the
// object.
#pragma once

#include <string>

#include "support/bytes.hpp"
#include "support/temporary_file.hpp"

namespace captured {

using ospf_decode::testing::Octets;
using ospf_decode::testing::Writer;

class CaptureFile {
 public:
  explicit CaptureFile(unsigned link_type = 1)
      : file_("capture_" + std::to_string(++made) + ".pcap") {
    replace(ospf_decode::testing::make_pcap_header(link_type));
  }

  const std::string &path() const { return file_.path(); }
  const Octets &content() const { return content_; }

  // A second later than the last, unless `time` says otherwise. `missing` octets were not captured.
  CaptureFile &frame(const Octets &data, std::uint32_t missing = 0) {
    using namespace ospf_decode::testing;
    replace(Writer().bytes(content_).bytes(make_pcap_record(time++, 0, data, missing)));
    return *this;
  }
  CaptureFile &ipv4(const Octets &packet) {
    using namespace ospf_decode::testing;
    return frame(make_ethernet(0x0800, make_ipv4({}, packet)));
  }
  CaptureFile &ipv6(const Octets &packet) {
    using namespace ospf_decode::testing;
    return frame(make_ethernet(0x86dd, make_ipv6(89, packet)));
  }
  CaptureFile &update_v2(std::initializer_list<Octets> lsas,
                         ospf_decode::testing::PacketParts parts = {}) {
    parts.type = 4;
    return ipv4(make_packet_v2(
        parts, ospf_decode::testing::make_update(static_cast<unsigned>(lsas.size()), lsas)));
  }
  CaptureFile &update_v3(std::initializer_list<Octets> lsas,
                         ospf_decode::testing::PacketParts parts = {}) {
    parts.type = 4;
    return ipv6(make_packet_v3(
        parts, ospf_decode::testing::make_update(static_cast<unsigned>(lsas.size()), lsas)));
  }
  void replace(const Octets &content) {
    content_ = content;
    file_.write(content_);
  }

  std::uint32_t time = 1'700'000'000;

 private:
  static inline int made = 0;
  TemporaryFile file_;
  Octets content_;
};

}  // namespace captured
