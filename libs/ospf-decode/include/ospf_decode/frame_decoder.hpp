// From captured frames to OSPF packets: link layer, IP, fragments, tunnels.
//
// The entry of the library for one frame at a time, as CaptureReader yields them or as a test or
// fuzz target makes them up. What is not OSPF is passed over and only counted.
#pragma once

#include <cstdint>

#include "ospf_decode/errors.hpp"
#include "ospf_decode/packet_decoder.hpp"
#include "ospf_decode/reassembly.hpp"
#include "ospf_decode/visitor.hpp"

namespace ospf_decode {

struct Frame {
  int link_type = 0;
  Time time = 0;
  std::uint64_t number = 0;       // from 1
  std::uint32_t wire_length = 0;  // what the frame had; `data` may be less
  Bytes data;
};

class FrameDecoder {
 public:
  explicit FrameDecoder(Visitor &visitor) : packets_(visitor, errors_), fragments_(errors_) {}

  void decode(const Frame &frame);
  // To be called behind the last frame: counts datagrams that stayed incomplete.
  void finish() { fragments_.finish(); }

  const ErrorCounts &errors() const { return errors_; }
  ErrorCounts &errors() { return errors_; }
  std::uint64_t frames() const { return frames_; }
  std::uint64_t other_frames() const { return other_frames_; }  // neither OSPF nor an error
  std::uint64_t ospf_packets() const { return packets_.packets(); }
  std::uint64_t lsas() const { return packets_.lsas(); }

 private:
  void decode_ether(std::uint16_t ether_type, Bytes payload, int depth, const Report &report);
  void decode_ip(Bytes data, int depth, const Report &report);
  void decode_gre(Bytes data, int depth, const Report &report);
  void cut_frame(const Report &report);

  ErrorCounts errors_;
  PacketDecoder packets_;
  Reassembler fragments_;
  Frame frame_;
  std::uint32_t vlan_ = 0;
  std::uint64_t hardware_ = 0;
  bool cut_reported_ = false;
  std::uint64_t frames_ = 0;
  std::uint64_t other_frames_ = 0;
};

}  // namespace ospf_decode
