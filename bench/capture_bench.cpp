// LSAs a second from a capture file: decoded into typed records, gathered into databases, and put
// into tables; beside another decoder's JSON of the same file. The file is made at the start:
// update packets as a router with a large database sends them to a new neighbour, each LSA once.
// All times are processor time of one core, user and system, so that a busy machine does not
// falsify ratios. HARBOR_BENCH_LSAS says of how many LSAs of each version; whatever their number,
// all are heard within a tenth of the age at which the first would be gone.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "capture_rows/network_rows.hpp"
#include "ospf_decode/capture.hpp"
#include "ospf_decode/network.hpp"
#include "processor_time.hpp"
#include "resident_bytes.hpp"
#include "support/bytes.hpp"
#include "support/temporary_folder.hpp"
#include "tree_exchange/tree_reader.hpp"
#include "tree_exchange/tree_writer.hpp"

namespace {

using namespace ospf_decode;
using namespace ospf_decode::testing;
using bench::processor_seconds;

constexpr std::size_t lsas_of_update = 24;

std::uint32_t lsa_count() {
  static const std::uint32_t count = [] {
    const char *asked = std::getenv("HARBOR_BENCH_LSAS");
    return static_cast<std::uint32_t>(asked == nullptr ? 100'000
                                                       : std::strtoul(asked, nullptr, 10));
  }();
  return count;
}

// Of 20 LSAs of each version: 12 externals, 4 prefixes of other areas, 2 router LSAs with four
// links, and a network LSA or an intra-area prefix LSA with its prefix.
constexpr std::uint32_t mix = 20;

Octets lsa_v2(std::uint32_t number, std::uint32_t sequence = LsaParts().sequence) {
  LsaParts parts;
  parts.sequence = sequence;
  parts.router = 0x0aff0000 + number % 1000;
  parts.id = 0x0a000000 + number;
  switch (number % mix) {
    case 0:
    case 1: {
      parts.type = 1;
      parts.id = parts.router = 0x0b000000 + number;
      Writer body;
      body.u8(0).u8(0).u16(4);
      for (std::uint32_t link = 0; link < 2; ++link) {
        body.u32(parts.id + link + 1).u32(0x0a000000 + 8 * number + link).u8(1).u8(0).u16(10);
        body.u32(0x0a000000 + 4 * number + link).u32(0xfffffffc).u8(3).u8(0).u16(10);
      }
      return make_lsa_v2(parts, body);
    }
    case 2:
      parts.type = 2;
      return make_lsa_v2(
          parts, Writer().u32(0xffffff00).u32(0x0aff0001).u32(0x0aff0002).u32(0x0aff0003).get());
    case 3:
    case 4:
    case 5:
    case 6:
    case 7:
      parts.type = 3;
      return make_lsa_v2(parts, Writer().u32(0xffffff00).u32(20).get());
    default:
      parts.type = 5;
      return make_lsa_v2(parts, Writer().u32(0xffffff00).u32(0x80000014).u32(0).u32(number).get());
  }
}

Octets lsa_v3(std::uint32_t number) {
  LsaParts parts;
  parts.router = 0x0aff0000 + number % 1000;
  parts.id = number;
  const Octets prefix = Writer().u8(64).u8(0).u16(0).u32(0x20010db8).u32(number).get();
  switch (number % mix) {
    case 0:
    case 1: {
      parts.type = lsa3_router;
      Writer body;
      body.u8(0).u24(0x13);
      for (std::uint32_t link = 0; link < 4; ++link) {
        body.u8(1).u8(0).u16(10).u32(link + 1).u32(link + 2).u32(parts.router + link);
      }
      return make_lsa_v3(parts, body);
    }
    case 2:
      parts.type = lsa3_intra_area_prefix;
      return make_lsa_v3(
          parts, Writer().u16(1).u16(lsa3_router).u32(0).u32(parts.router).bytes(prefix).get());
    case 3:
    case 4:
    case 5:
    case 6:
    case 7:
      parts.type = lsa3_inter_area_prefix;
      return make_lsa_v3(parts, Writer().u32(20).bytes(prefix).get());
    default:
      parts.type = lsa3_as_external;
      return make_lsa_v3(parts, Writer().u32(0x04000014).bytes(prefix).get());
  }
}

// The capture, made once and removed at the end.
class CaptureFile {
 public:
  CaptureFile() {
    std::ofstream out(path_, std::ios::binary);
    write(out, make_pcap_header());
    constexpr std::uint64_t start = UINT64_C(1'600'000'000'000'000);  // microseconds
    constexpr std::uint64_t max_age = UINT64_C(3'600'000'000);
    const std::uint64_t step = max_age / 10 * lsas_of_update / lsa_count();
    std::uint64_t time = start;
    for (std::uint32_t number = 0; number < lsa_count(); time += step) {
      Writer v2;
      Writer v3;
      for (std::size_t at = 0; at < lsas_of_update; ++at, ++number) {
        v2.bytes(lsa_v2(number));
        v3.bytes(lsa_v3(number));
      }
      PacketParts parts;
      parts.type = 4;
      packet(out, time, make_ethernet(0x0800, make_ipv4({}, make_packet_v2(parts, update(v2)))));
      packet(out, time, make_ethernet(0x86dd, make_ipv6(89, make_packet_v3(parts, update(v3)))));
      lsas_ += 2 * lsas_of_update;
    }
  }
  const std::filesystem::path &path() const { return path_; }
  std::size_t lsas() const { return lsas_; }

 private:
  static void write(std::ofstream &out, const Octets &octets) {
    out.write(reinterpret_cast<const char *>(octets.data()),
              static_cast<std::streamsize>(octets.size()));
  }
  static Octets update(const Octets &lsas) {
    return Writer().u32(lsas_of_update).bytes(lsas).get();
  }
  static void packet(std::ofstream &out, std::uint64_t time, const Octets &frame) {
    constexpr std::uint64_t second = 1'000'000;
    write(out, make_pcap_record(static_cast<std::uint32_t>(time / second),
                                static_cast<std::uint32_t>(time % second), frame));
  }

  TemporaryFolder folder_;
  std::filesystem::path path_ = folder_.path() / "bench.pcap";
  std::size_t lsas_ = 0;
};

const CaptureFile &file() {
  static const CaptureFile made;
  return made;
}

double others_rate = 0;  // LSAs a second of the other decoder

void report(benchmark::State &state, double seconds) {
  const auto lsas = static_cast<double>(file().lsas()) * static_cast<double>(state.iterations());
  state.counters["LSAs/s"] = lsas / seconds;
  if (others_rate != 0) state.counters["x other"] = lsas / seconds / others_rate;
}

// The processor time of `work`, set as that of the iteration.
template <typename Work>
double timed(benchmark::State &state, Work work, int who = RUSAGE_SELF) {
  const double start = processor_seconds(who);
  work();
  const double took = processor_seconds(who) - start;
  state.SetIterationTime(took);
  return took;
}

void decode_file(Visitor &visitor) {
  CaptureReader reader;
  if (!reader.open_file(file().path())) std::abort();
  FrameDecoder decoder(visitor);
  decode_capture(reader, decoder);
  if (decoder.lsas() != file().lsas() || decoder.errors().total() != 0) std::abort();
}

void OtherDecoderToJson(benchmark::State &state) {
  const std::string command = "tshark -T json -r " + file().path().string() + " > /dev/null 2>&1";
  bool failed = false;
  double total = 0;
  for (auto _ : state) {
    total += timed(
        state, [&] { failed |= std::system(command.c_str()) != 0; }, RUSAGE_CHILDREN);
  }
  if (failed) {
    state.SkipWithError("tshark failed");
    return;
  }
  report(state, total);
  others_rate =
      static_cast<double>(file().lsas()) * static_cast<double>(state.iterations()) / total;
}
BENCHMARK(OtherDecoderToJson)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

void DecodeIntoTypedRecords(benchmark::State &state) {
  double total = 0;
  for (auto _ : state) {
    total += timed(state, [] {
      Visitor nobody;
      decode_file(nobody);
    });
  }
  report(state, total);
}
BENCHMARK(DecodeIntoTypedRecords)->UseManualTime()->Unit(benchmark::kMillisecond);

void DecodeIntoDatabases(benchmark::State &state) {
  double total = 0;
  for (auto _ : state) {
    Network network;
    total += timed(state, [&] { decode_file(network); });
    if (network.lsdb().size() != file().lsas()) std::abort();
  }
  report(state, total);
}
BENCHMARK(DecodeIntoDatabases)->UseManualTime()->Unit(benchmark::kMillisecond);

const Network &network() {
  static const Network decoded = [] {
    Network made;
    decode_file(made);
    return made;
  }();
  return decoded;
}

// All of the capture, into tables. A row that does not arrive would make the rest look fast.
void load(ospf_tables::Session &session, const Network &network) {
  std::size_t rows = 0;
  for (const auto &instance : capture_rows::load_network(session, network)) rows += instance.lsas;
  if (rows == file().lsas()) return;
  std::fprintf(stderr, "capture_bench: %zu of %zu LSAs arrived\n", rows, file().lsas());
  std::abort();
}

double least_private = 1e9;  // seconds

void FillTablesFromDatabases(benchmark::State &state) {
  network();
  double total = 0;
  for (auto _ : state) {
    const double resident = bench::resident_bytes();
    ospf_tables::Session session;
    const double took = timed(state, [&] { load(session, network()); });
    state.counters["resident/LSA"] =
        (bench::resident_bytes() - resident) / static_cast<double>(file().lsas());
    least_private = std::min(least_private, took);
    total += took;
  }
  report(state, total);
}
BENCHMARK(FillTablesFromDatabases)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

// The same in a store, as one transaction with its commit.
void FillAStoreFromDatabases(benchmark::State &state) {
  network();
  double least = 1e9;
  double total = 0;
  for (auto _ : state) {
    const TemporaryFolder folder;
    ospf_tables::Session session(folder.file("store"), ospf_tables::Session::Missing::is_made);
    const double took = timed(state, [&] { session.changing([&] { load(session, network()); }); });
    least = std::min(least, took);
    total += took;
  }
  report(state, total);
  state.counters["x private"] = least / least_private;
}
BENCHMARK(FillAStoreFromDatabases)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

// A store that has all of them, and one that is heard anew: looked for, changed and committed, as
// `collect` does.
void FollowOneLsaInAStore(benchmark::State &state) {
  Network heard;
  decode_file(heard);
  FrameDecoder decoder(heard);
  const TemporaryFolder folder;
  ospf_tables::Session session(folder.file("store"), ospf_tables::Session::Missing::is_made);
  capture_rows::FollowedNetwork followed(session, heard);
  followed.has_changed(heard.last_time());
  session.changing([&] { followed.update(); });
  std::uint32_t sequence = LsaParts().sequence;
  std::uint64_t number = lsa_count();
  double locked = 0;
  for (auto _ : state) {
    PacketParts parts;
    parts.type = 4;
    const Octets lsa = lsa_v2(19, ++sequence);
    Writer update;
    update.u32(1).bytes(lsa);
    const Octets octets = make_ethernet(0x0800, make_ipv4({}, make_packet_v2(parts, update)));
    decoder.decode(
        {1, heard.last_time(), ++number, static_cast<std::uint32_t>(octets.size()), octets});
    timed(state, [&] {
      if (!followed.has_changed(heard.last_time())) std::abort();
      const double start = processor_seconds();
      session.changing([&] {
        if (followed.update() != 1) std::abort();
      });
      locked += processor_seconds() - start;
    });
  }
  state.counters["locked_ms"] = 1e3 * locked / static_cast<double>(state.iterations());
}
BENCHMARK(FollowOneLsaInAStore)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);

void CaptureIntoTables(benchmark::State &state) {
  double total = 0;
  for (auto _ : state) {
    ospf_tables::Session session;
    kelp_memory_statistics before{};
    kelp_database_memory(session.database(), &before);
    Network network;
    total += timed(state, [&] {
      decode_file(network);
      load(session, network);
    });
    kelp_memory_statistics after{};
    kelp_database_memory(session.database(), &after);
    const auto lsas = static_cast<double>(file().lsas());
    const auto counted = [](const kelp_memory_statistics &memory) {
      return static_cast<double>(memory.used_bytes + memory.own_bytes);
    };
    state.counters["bytes/LSA"] = (counted(after) - counted(before)) / lsas;
  }
  report(state, total);
}
BENCHMARK(CaptureIntoTables)->UseManualTime()->Unit(benchmark::kMillisecond);

// The tree as a stream that leaves, and as one that arrives, checked row by row.
void TreeIntoAStream(benchmark::State &state) {
  ospf_tables::Session session;
  load(session, network());
  double total = 0;
  double bytes = 0;
  for (auto _ : state) {
    bytes = 0;
    total += timed(state, [&] {
      tree_exchange::write_tree(session, [&](tree_exchange::ByteView piece) {
        bytes += static_cast<double>(piece.size());
      });
    });
  }
  report(state, total);
  state.counters["bytes/LSA"] = bytes / static_cast<double>(file().lsas());
}
BENCHMARK(TreeIntoAStream)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

void StreamIntoATree(benchmark::State &state) {
  tree_exchange::Bytes stream;
  {
    ospf_tables::Session session;
    load(session, network());
    tree_exchange::write_tree(session, [&](tree_exchange::ByteView piece) {
      stream.insert(stream.end(), piece.begin(), piece.end());
    });
  }
  double total = 0;
  for (auto _ : state) {
    ospf_tables::Session session;
    total += timed(state, [&] {
      tree_exchange::TreeReader reader(session, "bench");
      reader.feed(stream);
      if (reader.finish() < file().lsas()) std::abort();
    });
  }
  report(state, total);
}
BENCHMARK(StreamIntoATree)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
