// Frames from a capture file (pcap or pcapng) or from a live interface, through libpcap.
//
// Opening fails with a text; reading never throws and tells the end from damage. Nothing is ever
// sent. The file's link types must agree, as libpcap demands of pcapng.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ospf_decode/frame_decoder.hpp"

namespace ospf_decode {

class CaptureReader {
 public:
  enum class Status { frame, idle, end, damaged };

  CaptureReader();
  ~CaptureReader();
  CaptureReader(CaptureReader &&) noexcept;
  CaptureReader &operator=(CaptureReader &&) noexcept;

  // False if it cannot be opened; error() says why. "-" is standard input.
  bool open_file(const std::string &path);
  // Listens on an interface for OSPF, whole or fragmented, and GRE. `idle` is then returned by
  // next() about every `timeout_ms` without a packet.
  bool open_live(const std::string &interface, int timeout_ms = 500);

  // The next frame; valid until the next call.
  Status next(Frame &out);
  // Makes a live next() return `end`; may be called from a signal handler or another thread.
  void stop();

  // How many packets of a live capture the system had no room for.
  std::uint64_t dropped() const;

  const std::string &error() const;
  int link_type() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Reads all of `reader` into `decoder`, and finishes it. Damage of the file and a foreign link type
// are counted there. The number of frames read is the decoder's.
void decode_capture(CaptureReader &reader, FrameDecoder &decoder);

}  // namespace ospf_decode
