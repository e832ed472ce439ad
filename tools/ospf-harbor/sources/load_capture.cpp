#include "sources/load_capture.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "capture_rows/network_rows.hpp"
#include "ospf_decode/capture.hpp"
#include "ospf_decode/network.hpp"
#include "ospf_tables/system_error.hpp"
#include "sources/on_ending_signals.hpp"
#include "sources/time_point.hpp"
#include "views/progress.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_tables;
using namespace capture_rows;

namespace {

namespace decode = ospf_decode;
using Clock = std::chrono::steady_clock;

void show_packets(std::uint64_t count, Progress &progress) {
  if (progress.is_due()) progress.show(counted(count, "packet", "packets") + " read");
}

// One file or interface with the decoder of its packets, whose numbers are those of the file.
struct Source {
  Source(std::string its_name, std::uint32_t its_number, decode::Network &network)
      : name(std::move(its_name)), number(its_number), decoder(network) {}

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
  std::uint32_t number;
  decode::CaptureReader reader;
  decode::FrameDecoder decoder;
  decode::Frame frame;
  bool has_frame = false;
  bool at_end = false;
  std::string damage;
};

using Sources = std::vector<std::unique_ptr<Source>>;

decode::Time wall_clock() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<decode::Time>(
      std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

// The time that is asked for, when the first packet has told what day it is.
std::optional<decode::Time> end_of(const CaptureOptions &options, decode::Time first) {
  if (options.at.empty()) return std::nullopt;
  const decode::Time end = parse_time(options.at, first);
  if (end >= first) return end;
  throw InputError("--at", "", time_text(end),
                   "a time not before the first packet, " + time_text(first));
}

// Gives the time up to which was read, none for all.
std::optional<decode::Time> read_files(Sources &sources, const CaptureOptions &options,
                                       Progress &progress) {
  std::uint64_t packets = 0;
  std::optional<decode::Time> end;
  decode::Time last = 0;
  for (const auto &source : sources) source->advance();
  for (;;) {
    Source *earliest = nullptr;
    for (const auto &source : sources) {
      if (source->has_frame && (earliest == nullptr || source->frame.time < earliest->frame.time)) {
        earliest = source.get();
      }
    }
    if (earliest == nullptr) {
      // Nothing tells what was behind the last packet.
      if (!end || *end <= last) return end;
      throw InputError("--at", "", time_text(*end),
                       "a time not behind the last packet, " + time_text(last));
    }
    if (packets == 0) end = end_of(options, earliest->frame.time);
    if (end && earliest->frame.time > *end) return end;
    last = std::max(last, earliest->frame.time);
    if (options.heard != nullptr) {
      if (!options.heard->first) options.heard->first = earliest->frame.time;
      options.heard->timeline->set_capture(earliest->number);
    }
    earliest->decoder.decode(earliest->frame);
    earliest->advance();
    if (++packets % 1024 == 0) show_packets(packets, progress);
  }
}

decode::CaptureReader *listening = nullptr;

void stop_listening(int) {
  if (listening != nullptr) listening->stop();
}

// Signals end the listening, and only that.
class Listening {
 public:
  explicit Listening(decode::CaptureReader &reader) { listening = &reader; }
  ~Listening() { listening = nullptr; }
  Listening(const Listening &) = delete;
  Listening &operator=(const Listening &) = delete;

 private:
  OnEndingSignals signals_{stop_listening};
};

// turn is called behind each packet, and at least twice a second.
template <typename Turn>
void listen(Source &source, unsigned seconds, Turn &&turn) {
  const Listening scope(source.reader);
  const Clock::time_point end = Clock::now() + std::chrono::seconds(seconds);
  while (!source.at_end && (seconds == 0 || Clock::now() < end)) {
    source.advance();
    if (source.has_frame) source.decoder.decode(source.frame);
    turn();
  }
  if (!source.at_end) source.decoder.finish();
}

void complain(const char *command, const std::string &text) {
  std::fprintf(stderr, "ospf-harbor: %s: %s\n", command, in_one_line(text).c_str());
}

constexpr char load_name[] = "load capture";
constexpr char collect_name[] = "collect";

// What was wrong with a source, one line for each kind.
bool complain_of(const char *command, const Source &source) {
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
    complain(command, line);
  }
  if (const std::uint64_t dropped = source.reader.dropped(); dropped != 0) {
    any = true;
    complain(command, source.name + ": " + counted(dropped, "packet was", "packets were") +
                          " lost, since they came faster than they were read");
  }
  if (source.decoder.ospf_packets() == 0) {
    any = true;
    complain(command, source.name + ": found no OSPF packet in " +
                          counted(source.decoder.frames(), "packet", "packets") +
                          ", expected some");
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

// "NAME: packets, and how many of OSPF with how many LSAs".
std::string summary(const Source &source) {
  return in_one_line(source.name) + ": " + counted(source.decoder.frames(), "packet", "packets") +
         ", " + std::to_string(source.decoder.ospf_packets()) + " of OSPF with " +
         counted(source.decoder.lsas(), "LSA", "LSAs");
}

// Opens a file or an interface; null, with a complaint, where that fails.
std::unique_ptr<Source> open_source(const char *command, const std::string &place,
                                    const std::string &name, bool live, std::uint32_t number,
                                    decode::Network &network) {
  auto source = std::make_unique<Source>(name, number, network);
  if (live ? source->reader.open_live(place) : source->reader.open_file(place)) return source;
  std::string why = source->reader.error();
  // The library names the file in some of its words itself.
  if (why.starts_with(place + ": ")) why.erase(0, place.size() + 2);
  if (!live && why != std::strerror(ENOENT)) why += "; a capture is pcap or pcapng";
  complain(command, cannot(live ? "listen on" : "open", name, why).what());
  return nullptr;
}

// What the sources are called, in order.
std::vector<std::string> names_of(const CaptureOptions &options) {
  if (!options.interface.empty()) return {options.interface};
  return options.names.empty() ? options.files : options.names;
}

// What hears the packets: a plain network, or one that follows what happens.
decode::Network &listener(const CaptureOptions &options, decode::Network &plain) {
  if (options.heard == nullptr) return plain;
  Heard &heard = *options.heard;
  heard.timeline =
      std::make_unique<ospf_events::Timeline>([&heard](const ospf_events::Event &event) {
        heard.events.push_back(event);
        if (heard.at_once) heard.at_once(event);
      });
  heard.captures = names_of(options);
  return *heard.timeline;
}

// All that the options name and that can be opened.
Sources open_sources(const CaptureOptions &options, decode::Network &network) {
  const bool live = !options.interface.empty();
  Sources sources;
  const std::vector<std::string> names = names_of(options);
  for (std::uint32_t number = 0; number < names.size(); ++number) {
    const std::string &place = live ? options.interface : options.files[number];
    auto source = open_source(load_name, place, names[number], live, number, network);
    if (source != nullptr) sources.push_back(std::move(source));
  }
  return sources;
}

// Decodes all packets and tells what happened. Gives the time up to which was read, none for all.
std::optional<decode::Time> hear(Sources &sources, const CaptureOptions &options,
                                 Progress &progress) {
  ospf_events::Timeline *timeline =
      options.heard == nullptr ? nullptr : options.heard->timeline.get();
  if (options.interface.empty()) {
    const std::optional<decode::Time> end = read_files(sources, options, progress);
    if (timeline != nullptr) timeline->finish(end);
    return end;
  }
  for (const auto &source : sources) {
    listen(*source, options.seconds, [&] {
      // When none is there, no packet can come any more that is of an earlier time.
      if (!source->has_frame && timeline != nullptr) timeline->pass(wall_clock());
      show_packets(source->decoder.frames(), progress);
    });
  }
  if (timeline != nullptr) timeline->finish(wall_clock());
  return std::nullopt;
}

using Json = nlohmann::ordered_json;

Json json_of(const Source &source) {
  Json errors = Json::array();
  for (std::size_t at = 0; at < decode::error_kind_count; ++at) {
    const auto kind = static_cast<decode::ErrorKind>(at);
    const decode::ErrorCounts::Entry &entry = source.decoder.errors()[kind];
    if (entry.count == 0) continue;
    errors.push_back({{"kind", decode::error_name(kind)},
                      {"count", entry.count},
                      {"first_packet", entry.first_packet}});
  }
  return {{"kind", "source"},
          {"name", source.name},
          {"packets", source.decoder.frames()},
          {"ospf_packets", source.decoder.ospf_packets()},
          {"lsas", source.decoder.lsas()},
          {"lost", source.reader.dropped()},
          {"errors", errors}};
}

Json json_of(const LoadedInstance &instance) {
  return {{"kind", "instance"},
          {"version", instance.version},
          {"instance", instance.instance_id},
          {"areas", instance.areas},
          {"interfaces", instance.interfaces},
          {"neighbors", instance.neighbors},
          {"lsas", instance.lsas}};
}

void report_as_json(const Sources &sources, const std::vector<LoadedInstance> &loaded,
                    std::FILE *report) {
  const auto print = [&](const Json &line) {
    std::fprintf(report, "%s\n", line.dump(-1, ' ', true, Json::error_handler_t::replace).c_str());
  };
  for (const auto &source : sources) print(json_of(*source));
  for (const LoadedInstance &instance : loaded) print(json_of(instance));
}

// Fills the tables and says what was read and what they got.
void fill_tables(Session &session, const decode::Network &network, decode::Time now,
                 const CaptureOptions &options, const Sources &sources, Progress &progress,
                 std::FILE *report) {
  progress.show(counted(network.lsdb().size(), "LSA", "LSAs") + " heard, filling the tables");
  std::vector<LoadedInstance> loaded;
  session.changing([&] { loaded = load_network(session, network, now, options.as_heard); });
  progress.clear();
  if (report == nullptr) return;
  if (options.json) return report_as_json(sources, loaded, report);
  for (const auto &source : sources) std::fprintf(report, "read %s\n", summary(*source).c_str());
  for (const LoadedInstance &instance : loaded) {
    std::fprintf(report, "loaded %s\n", summary(instance).c_str());
  }
}

}  // namespace

int load_capture(Session &session, const CaptureOptions &options, std::FILE *report) {
  decode::Network plain;
  decode::Network &network = listener(options, plain);
  Sources sources = open_sources(options, network);
  bool failed = sources.size() < (options.interface.empty() ? options.files.size() : 1);
  Progress progress;
  const std::optional<decode::Time> end = hear(sources, options, progress);
  const auto has_ospf = [](const auto &source) { return source->decoder.ospf_packets() != 0; };
  if (std::ranges::any_of(sources, has_ospf)) {
    fill_tables(session, network, end.value_or(network.last_time()), options, sources, progress,
                report);
  }
  progress.clear();
  if (report != nullptr) std::fflush(report);
  for (const auto &source : sources) failed |= complain_of(load_name, *source);
  return failed ? 1 : 0;
}

namespace {

// Commits what changed, at most twice a second.
class Collector {
 public:
  Collector(Session &session, const decode::Network &network)
      : session_(session), network_(network), rows_(session, network) {}

  void turn() {
    if (Clock::now() < next_) return;
    next_ = Clock::now() + std::chrono::milliseconds(500);
    commit();
  }
  void commit() {
    if (!rows_.has_changed(std::max(network_.last_time(), wall_clock()))) return;
    session_.changing([&] { rows_.update(); });
    ++commits_;
  }
  std::uint64_t commits() const { return commits_; }

 private:
  Session &session_;
  const decode::Network &network_;
  FollowedNetwork rows_;
  Clock::time_point next_ = Clock::now();
  std::uint64_t commits_ = 0;
};

}  // namespace

int collect_capture(Session &session, const CaptureOptions &options) {
  decode::Network network;
  const auto source =
      open_source(collect_name, options.interface, options.interface, true, 0, network);
  if (source == nullptr) return 1;
  std::fprintf(stderr, "listening on %s\n", in_one_line(options.interface).c_str());
  Collector collector(session, network);
  listen(*source, options.seconds, [&] { collector.turn(); });
  collector.commit();
  std::printf("collected %s, in %s\n", summary(*source).c_str(),
              counted(collector.commits(), "commit", "commits").c_str());
  return complain_of(collect_name, *source) ? 1 : 0;
}

}  // namespace tool
