#include "sources/load_capture.hpp"

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <memory>

#include "capture_rows/network_rows.hpp"
#include "ospf_decode/capture.hpp"
#include "ospf_decode/network.hpp"
#include "ospf_tables/input_error.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_tables;
using namespace capture_rows;

namespace {

namespace decode = ospf_decode;
using Clock = std::chrono::steady_clock;

// How far the reading is, on a terminal only.
class Progress {
 public:
  Progress() : on_(isatty(STDERR_FILENO) == 1) {}
  ~Progress() { clear(); }
  Progress(const Progress &) = delete;
  Progress &operator=(const Progress &) = delete;

  void packets(std::uint64_t count) {
    if (!on_ || Clock::now() < next_) return;
    show(counted(count, "packet", "packets") + " read");
  }
  void lsas(std::size_t count) {
    if (on_) show(counted(count, "LSA", "LSAs") + " heard, filling the tables");
  }
  void clear() {
    if (shown_) std::fprintf(stderr, "\r\033[K");
    shown_ = false;
  }

 private:
  void show(const std::string &text) {
    std::fprintf(stderr, "\r%s\033[K", text.c_str());
    std::fflush(stderr);
    shown_ = true;
    next_ = Clock::now() + std::chrono::milliseconds(100);
  }

  bool on_;
  bool shown_ = false;
  Clock::time_point next_ = Clock::now() + std::chrono::milliseconds(500);
};

// One file or interface with the decoder of its packets, whose numbers are those of the file.
struct Source {
  Source(std::string its_name, decode::Network &network)
      : name(std::move(its_name)), decoder(network) {}

  void advance() {
    switch (reader.next(frame)) {
      case decode::CaptureReader::Status::frame:
        has_frame = true;
        return;
      case decode::CaptureReader::Status::idle:
        has_frame = false;
        return;
      case decode::CaptureReader::Status::damaged:
        decoder.errors().add(decode::ErrorKind::damaged_capture, decoder.frames() + 1);
        damage = reader.error();
        break;
      case decode::CaptureReader::Status::end:
        break;
    }
    has_frame = false;
    at_end = true;
    decoder.finish();
  }

  std::string name;
  decode::CaptureReader reader;
  decode::FrameDecoder decoder;
  decode::Frame frame;
  bool has_frame = false;
  bool at_end = false;
  std::string damage;
};

using Sources = std::vector<std::unique_ptr<Source>>;

void read_files(Sources &sources, Progress &progress) {
  std::uint64_t packets = 0;
  for (const auto &source : sources) source->advance();
  for (;;) {
    Source *earliest = nullptr;
    for (const auto &source : sources) {
      if (source->has_frame && (earliest == nullptr || source->frame.time < earliest->frame.time)) {
        earliest = source.get();
      }
    }
    if (earliest == nullptr) return;
    earliest->decoder.decode(earliest->frame);
    earliest->advance();
    if (++packets % 1024 == 0) progress.packets(packets);
  }
}

decode::CaptureReader *listening = nullptr;

void stop_listening(int) {
  if (listening != nullptr) listening->stop();
}

// Signals end the listening, and only that.
class SignalsStop {
 public:
  explicit SignalsStop(decode::CaptureReader &reader) {
    listening = &reader;
    struct sigaction action {};
    action.sa_handler = stop_listening;
    sigaction(SIGINT, &action, &before_[0]);
    sigaction(SIGTERM, &action, &before_[1]);
  }
  ~SignalsStop() {
    sigaction(SIGINT, &before_[0], nullptr);
    sigaction(SIGTERM, &before_[1], nullptr);
    listening = nullptr;
  }
  SignalsStop(const SignalsStop &) = delete;
  SignalsStop &operator=(const SignalsStop &) = delete;

 private:
  struct sigaction before_[2]{};
};

void listen(Source &source, unsigned seconds, Progress &progress) {
  const SignalsStop stop(source.reader);
  const Clock::time_point end = Clock::now() + std::chrono::seconds(seconds);
  while (!source.at_end && (seconds == 0 || Clock::now() < end)) {
    source.advance();
    if (source.has_frame) source.decoder.decode(source.frame);
    progress.packets(source.decoder.frames());
  }
  if (!source.at_end) source.decoder.finish();
}

void complain(const std::string &text) {
  std::fprintf(stderr, "ospf-harbor: load capture: %s\n", in_one_line(text).c_str());
}

// What was wrong with a source, one line for each kind.
bool complain_of(const Source &source) {
  bool any = false;
  for (std::size_t at = 0; at < decode::error_kind_count; ++at) {
    const auto kind = static_cast<decode::ErrorKind>(at);
    const decode::ErrorCounts::Entry &entry = source.decoder.errors()[kind];
    if (entry.count == 0) continue;
    any = true;
    std::string line = source.name + ": " + std::string(decode::error_name(kind)) + ": " +
                       std::to_string(entry.count) + ", first in packet " +
                       std::to_string(entry.first_packet) + ": " +
                       std::string(decode::error_text(kind));
    if (kind == decode::ErrorKind::damaged_capture) line += " (" + source.damage + ")";
    complain(line);
  }
  if (source.decoder.ospf_packets() == 0) {
    any = true;
    complain(source.name + ": found no OSPF packet in " +
             counted(source.decoder.frames(), "packet", "packets") + ", expected some");
  }
  return any;
}

std::string summary(const LoadedInstance &instance) {
  return "OSPFv" + std::to_string(instance.version) +
         (instance.instance_id == 0 ? "" : " instance " + std::to_string(instance.instance_id)) +
         " as heard: " + counted(instance.areas, "area", "areas") + ", " +
         counted(instance.interfaces, "interface", "interfaces") + ", " +
         counted(instance.neighbors, "neighbour", "neighbours") + ", " +
         counted(instance.lsas, "LSA", "LSAs");
}

}  // namespace

int load_capture(Session &session, const CaptureOptions &options, std::FILE *report) {
  decode::Network network;
  Sources sources;
  bool failed = false;
  Progress progress;
  const auto open = [&](const std::string &name, bool live) {
    auto source = std::make_unique<Source>(name, network);
    const bool opened = live ? source->reader.open_live(name) : source->reader.open_file(name);
    if (opened) {
      sources.push_back(std::move(source));
      return;
    }
    failed = true;
    complain(InputError(name, "", source->reader.error(),
                        live ? "an interface to listen on" : "a capture (pcap or pcapng)")
                 .what());
  };
  if (!options.interface.empty()) {
    open(options.interface, true);
    if (!sources.empty()) listen(*sources.front(), options.seconds, progress);
  } else {
    for (const std::string &file : options.files) open(file, false);
    read_files(sources, progress);
  }
  std::uint64_t packets = 0;
  for (const auto &source : sources) packets += source->decoder.ospf_packets();
  if (packets != 0) {
    progress.lsas(network.lsdb().size());
    std::vector<LoadedInstance> loaded;
    session.changing([&] { loaded = load_network(session, network); });
    progress.clear();
    for (const auto &source : sources) {
      if (report == nullptr) break;
      std::fprintf(report, "read %s: %s, %s of OSPF with %s\n", in_one_line(source->name).c_str(),
                   counted(source->decoder.frames(), "packet", "packets").c_str(),
                   std::to_string(source->decoder.ospf_packets()).c_str(),
                   counted(source->decoder.lsas(), "LSA", "LSAs").c_str());
    }
    for (const LoadedInstance &instance : loaded) {
      if (report == nullptr) break;
      std::fprintf(report, "loaded %s\n", summary(instance).c_str());
    }
  }
  progress.clear();
  if (report != nullptr) std::fflush(report);
  for (const auto &source : sources) failed |= complain_of(*source);
  return failed ? 1 : 0;
}

}  // namespace tool
