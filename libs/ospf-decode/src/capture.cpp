#include "ospf_decode/capture.hpp"

#include <pcap/pcap.h>
#include <poll.h>

#include <array>
#include <atomic>

namespace ospf_decode {
namespace {

// OSPF itself, what may wrap it, and what has a VLAN tag before it. `vlan` comes last because it
// moves the offsets of all that stands behind it.
constexpr const char *live_filter =
    "ip proto 89 or ip proto 47 or ip proto 4 or ip proto 41 or ip proto 51 or ip6 proto 89 or "
    "ip6 proto 44 or ip6 proto 47 or ip6 proto 0 or ip6 proto 51 or ip6 proto 60 or vlan";

}  // namespace

struct CaptureReader::State {
  struct Close {
    void operator()(pcap_t *handle) const { pcap_close(handle); }
  };
  std::unique_ptr<pcap_t, Close> handle;
  std::string error;
  std::uint64_t frames = 0;
  bool nanoseconds = false;
  std::atomic<bool> stopped = false;
  int wait_ms = 0;  // of a live capture, whose own timeout may never come on a silent link

  // Returns when a packet may be there, the time is over, or a signal came.
  void wait() const {
    pollfd ready{pcap_get_selectable_fd(handle.get()), POLLIN, 0};
    if (wait_ms != 0 && ready.fd >= 0) poll(&ready, 1, wait_ms);
  }
};

CaptureReader::CaptureReader() : state_(std::make_unique<State>()) {}
CaptureReader::~CaptureReader() = default;
CaptureReader::CaptureReader(CaptureReader &&) noexcept = default;
CaptureReader &CaptureReader::operator=(CaptureReader &&) noexcept = default;

bool CaptureReader::open_file(const std::string &path) {
  std::array<char, PCAP_ERRBUF_SIZE> text{};
  state_ = std::make_unique<State>();
  state_->handle.reset(pcap_open_offline_with_tstamp_precision(
      path.c_str(), PCAP_TSTAMP_PRECISION_NANO, text.data()));
  state_->nanoseconds = true;
  if (!state_->handle) state_->error = text.data();
  return state_->handle != nullptr;
}

bool CaptureReader::open_live(const std::string &interface, int timeout_ms) {
  std::array<char, PCAP_ERRBUF_SIZE> text{};
  state_ = std::make_unique<State>();
  state_->wait_ms = timeout_ms;
  state_->handle.reset(pcap_create(interface.c_str(), text.data()));
  pcap_t *handle = state_->handle.get();
  if (handle == nullptr) {
    state_->error = text.data();
    return false;
  }
  // Longer than the frames of links between routers. Each place in the buffer takes as much.
  pcap_set_snaplen(handle, 16000);
  pcap_set_promisc(handle, 1);
  pcap_set_timeout(handle, timeout_ms);
  pcap_set_immediate_mode(handle, 1);
  // The system's default holds no more packets than a router sends at once when it comes up.
  pcap_set_buffer_size(handle, 32 << 20);
  state_->nanoseconds = pcap_set_tstamp_precision(handle, PCAP_TSTAMP_PRECISION_NANO) == 0;
  if (pcap_activate(handle) < 0) {
    state_->error = pcap_geterr(handle);
    state_->handle.reset();
    return false;
  }
  // A link type for which the filter cannot be said is listened to without one.
  bpf_program program{};
  if (pcap_compile(handle, &program, live_filter, 1, PCAP_NETMASK_UNKNOWN) == 0) {
    pcap_setfilter(handle, &program);
    pcap_freecode(&program);
  }
  if (pcap_setnonblock(handle, 1, text.data()) != 0) {
    state_->error = text.data();
    state_->handle.reset();
    return false;
  }
  return true;
}

CaptureReader::Status CaptureReader::next(Frame &out) {
  pcap_t *handle = state_->handle.get();
  if (handle == nullptr) return Status::end;
  pcap_pkthdr *header = nullptr;
  const unsigned char *data = nullptr;
  if (state_->stopped) return Status::end;
  int outcome = pcap_next_ex(handle, &header, &data);
  if (outcome == 0) {
    state_->wait();
    if (state_->stopped) return Status::end;
    outcome = pcap_next_ex(handle, &header, &data);
  }
  switch (outcome) {
    case 1:
      break;
    case 0:
      return Status::idle;
    case PCAP_ERROR_BREAK:  // the end of a file
      return Status::end;
    default:
      state_->error = pcap_geterr(handle);
      return Status::damaged;
  }
  out.link_type = pcap_datalink(handle);
  out.time = header->ts.tv_sec * second + header->ts.tv_usec * (state_->nanoseconds ? 1 : 1000);
  out.number = ++state_->frames;
  out.wire_length = header->len;
  out.data = Bytes(data, header->caplen);
  return Status::frame;
}

// A flag of our own: the capture library looks at its own one only where packets come.
void CaptureReader::stop() { state_->stopped = true; }

std::uint64_t CaptureReader::dropped() const {
  pcap_stat counts{};
  const bool live = state_->wait_ms != 0 && state_->handle != nullptr;
  return live && pcap_stats(state_->handle.get(), &counts) == 0 ? counts.ps_drop : 0;
}

const std::string &CaptureReader::error() const { return state_->error; }

int CaptureReader::link_type() const {
  return state_->handle ? pcap_datalink(state_->handle.get()) : -1;
}

void decode_capture(CaptureReader &reader, FrameDecoder &decoder) {
  Frame frame;
  for (;;) {
    switch (reader.next(frame)) {
      case CaptureReader::Status::frame:
        decoder.decode(frame);
        continue;
      case CaptureReader::Status::idle:
        continue;
      case CaptureReader::Status::damaged:
        decoder.errors().add(ErrorKind::damaged_capture, decoder.frames() + 1);
        break;
      case CaptureReader::Status::end:
        break;
    }
    break;
  }
  decoder.finish();
}

}  // namespace ospf_decode
