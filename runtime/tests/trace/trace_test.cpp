// Tracing: modules and levels, what emitters write, and reading it back.
#include "kelp/trace.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <thread>

#include "support.hpp"

namespace {

const std::uint8_t kSource[16] = {0xde, 0xad, 0xbe, 0xef, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
constexpr std::uint32_t kError = 0x3000000;
constexpr std::uint32_t kInformation = 0x6000000;
constexpr std::uint32_t kDebug = 0x7000000;

// An event with its texts kept.
struct Kept {
  explicit Kept(const kelp_trace_event &event) : event(event) {
    for (int i = 0; i < event.argument_count; ++i) {
      if (event.arguments[i].kind == 1) {
        texts[i].assign(event.arguments[i].text, event.arguments[i].text_length);
      }
    }
  }
  kelp_trace_event event;
  std::string texts[3];
};

int keep(void *context, const kelp_trace_event *event) {
  static_cast<std::vector<Kept> *>(context)->emplace_back(*event);
  return 0;
}

class TraceTest : public ::testing::Test {
 protected:
  TraceTest() {
    kelp_trace_set_level(nullptr, KELP_TRACE_INFORMATION);
    kelp_trace_clear_ring();
    xlog_module_init_fn("trace_test", &id, &level);
    module = static_cast<std::uint16_t>(id);
  }
  ~TraceTest() override {
    kelp_trace_set_sink(nullptr, nullptr);
    kelp_trace_set_text_source(nullptr, nullptr);
    kelp_trace_open_file(nullptr, nullptr);
    kelp_trace_set_ring_size(64 * 1024);
    kelp_trace_set_level(nullptr, KELP_TRACE_INFORMATION);
  }

  std::vector<Kept> ring() {
    std::vector<Kept> events;
    kelp_trace_read_ring(keep, &events);
    return events;
  }

  std::uint32_t id = 0;
  std::uint32_t level = 0;
  std::uint16_t module = 0;
};

TEST_F(TraceTest, RegistrationIsRepeatable) {
  std::uint32_t again = 0;
  std::uint32_t again_level = 99;
  xlog_module_init_fn("trace_test", &again, &again_level);
  EXPECT_EQ(again, id);
  EXPECT_NE(id, 0u);
  EXPECT_EQ(again_level, static_cast<std::uint32_t>(KELP_TRACE_INFORMATION));
  EXPECT_STREQ(kelp_trace_module_name(module), "trace_test");
  std::uint32_t other = id;
  xlog_module_init_fn("trace_test_other", &other, nullptr);
  EXPECT_NE(other, id);
  EXPECT_EQ(kelp_trace_module_name(0), nullptr);
  EXPECT_EQ(kelp_trace_module_name(60000), nullptr);
}

TEST_F(TraceTest, LevelsDecideWhatGoesOut) {
  EXPECT_NE(xlog_module_test(module, 6), 0u);
  EXPECT_EQ(xlog_module_test(module, 7), 0u);
  __XLf_0(kSource, 1, module, kDebug);
  __XLf_0(kSource, 2, module, kInformation);
  kelp_trace_set_level("trace_test", KELP_TRACE_ERROR);
  EXPECT_EQ(xlog_module_test(module, 6), 0u);
  __XLf_0(kSource, 3, module, kInformation);
  __XLf_0(kSource, 4, module, kError);
  __XLf_0(kSource, 5, 0, kInformation);
  std::vector<std::uint32_t> indices;
  for (const Kept &kept : ring()) indices.push_back(kept.event.index);
  EXPECT_EQ(indices, (std::vector<std::uint32_t>{2, 4, 5}));
  xlog_module_init_fn("trace_test", &id, &level);
  EXPECT_EQ(level, static_cast<std::uint32_t>(KELP_TRACE_ERROR));
  EXPECT_EQ(kelp_trace_set_level("trace_test", 8), 22);
}

TEST_F(TraceTest, LevelCanBeSetBeforeRegistration) {
  kelp_trace_set_level("trace_test_later", KELP_TRACE_DEBUG);
  std::uint32_t later = 0;
  std::uint32_t later_level = 0;
  xlog_module_init_fn("trace_test_later", &later, &later_level);
  EXPECT_EQ(later_level, static_cast<std::uint32_t>(KELP_TRACE_DEBUG));
}

TEST_F(TraceTest, EveryEmitterKeepsItsArguments) {
  int word = 0;
  __XLf_0(kSource, 0, module, kError);
  __XLf_1(kSource, 1, module, kError, "one");
  __XLf_4(kSource, 2, module, kError, 4000000000u);
  __XLf_5(kSource, 3, module, kError, &word);
  __XLf_11(kSource, 4, module, kError, "a", "b");
  __XLf_14(kSource, 5, module, kError, "c", 6);
  __XLf_44(kSource, 6, module, kError, 7, 8);
  __XLf_444(kSource, 7, module, kError, 9, 10, 11);
  __XLf_51(kSource, 8, module, kError, nullptr, "d");
  const std::vector<Kept> events = ring();
  ASSERT_EQ(events.size(), 9u);
  const char *signatures[] = {"0", "1", "4", "5", "11", "14", "44", "444", "51"};
  for (std::size_t i = 0; i < 9; ++i) {
    const kelp_trace_event &event = events[i].event;
    EXPECT_STREQ(event.signature, signatures[i]);
    EXPECT_EQ(event.index, i);
    EXPECT_EQ(event.module, module);
    EXPECT_EQ(event.level, 3);
    EXPECT_EQ(std::memcmp(event.identity, kSource, 16), 0);
    EXPECT_GT(event.time_ns, UINT64_C(1600000000000000000));
    if (i > 0) {
      EXPECT_EQ(event.sequence, events[i - 1].event.sequence + 1);
    }
  }
  EXPECT_EQ(events[1].texts[0], "one");
  EXPECT_EQ(events[2].event.arguments[0].number, 4000000000u);
  EXPECT_EQ(events[3].event.arguments[0].pointer, reinterpret_cast<std::uintptr_t>(&word));
  EXPECT_EQ(events[4].texts[1], "b");
  EXPECT_EQ(events[5].event.arguments[1].number, 6u);
  EXPECT_EQ(events[7].event.arguments[2].number, 11u);
  EXPECT_EQ(events[8].event.arguments[0].pointer, 0u);
  EXPECT_EQ(events[8].texts[1], "d");
}

TEST_F(TraceTest, NullAndLongTextsAreKeptInBounds) {
  __XLf_1(kSource, 0, module, kError, nullptr);
  __XLf_1(kSource, 0, module, kError, std::string(5000, 'x').c_str());
  const std::vector<Kept> events = ring();
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].texts[0], "(null)");
  EXPECT_EQ(events[1].texts[0], std::string(1024, 'x'));
}

TEST_F(TraceTest, RingKeepsTheLatestWhole) {
  ASSERT_EQ(kelp_trace_set_ring_size(1000), 0);
  for (std::uint32_t i = 0; i < 5000; ++i) {
    __XLf_1(kSource, i, module, kError, std::string(i % 97, 'y').c_str());
    const std::vector<Kept> events = ring();
    ASSERT_FALSE(events.empty());
    for (std::size_t k = 0; k < events.size(); ++k) {
      const std::uint32_t index = i + 1 - static_cast<std::uint32_t>(events.size() - k);
      ASSERT_EQ(events[k].event.index, index);
      ASSERT_EQ(events[k].texts[0].size(), index % 97);
    }
  }
  EXPECT_GE(ring().size(), 5u);
}

TEST_F(TraceTest, RingCanBeOff) {
  ASSERT_EQ(kelp_trace_set_ring_size(0), 0);
  __XLf_0(kSource, 1, module, kError);
  EXPECT_TRUE(ring().empty());
}

TEST_F(TraceTest, SinkHearsEachMessageAndCannotLoop) {
  struct Heard {
    std::uint16_t module;
    std::vector<std::uint32_t> indices;
  } heard{module, {}};
  kelp_trace_set_sink(
      [](void *context, const kelp_trace_event *event) {
        auto *own = static_cast<Heard *>(context);
        own->indices.push_back(event->index);
        __XLf_0(kSource, 1000, own->module, kError);
        return 0;
      },
      &heard);
  __XLf_0(kSource, 1, module, kError);
  __XLf_0(kSource, 2, module, kError);
  EXPECT_EQ(heard.indices, (std::vector<std::uint32_t>{1, 2}));
}

// A sink that looks into the ring is still a sink when it emits afterwards.
TEST_F(TraceTest, SinkThatReadsTheRingDoesNotCallItself) {
  static int calls = 0;
  static std::uint32_t source_module = 0;
  calls = 0;
  source_module = module;
  kelp_trace_set_sink(
      [](void *, const kelp_trace_event *) {
        ++calls;
        kelp_trace_read_ring(nullptr, nullptr);
        if (calls < 100) {
          __XLf_0(kSource, 2, static_cast<std::uint16_t>(source_module), kError);
        }
        return 0;
      },
      nullptr);
  __XLf_0(kSource, 1, module, kError);
  kelp_trace_set_sink(nullptr, nullptr);
  EXPECT_EQ(calls, 1);
}

TEST_F(TraceTest, RingOfMoreThanThereIsIsRefused) {
  __XLf_0(kSource, 1, module, kError);
  for (const std::size_t bytes : {SIZE_MAX, SIZE_MAX - 6, SIZE_MAX - 7, SIZE_MAX / 2 + 1}) {
    EXPECT_EQ(kelp_trace_set_ring_size(bytes), 22);
  }
  EXPECT_GE(kelp_trace_read_ring(nullptr, nullptr), 1u);
}

// Records of one size that fill the ring to its last byte are all kept, round after round.
TEST_F(TraceTest, RingHoldsWhatFitsExactly) {
  constexpr std::uint64_t kRecords = 4;
  ASSERT_EQ(kelp_trace_set_ring_size(kRecords * 48), 0);
  std::vector<Kept> events;
  for (std::uint32_t i = 0; i < 23; ++i) {
    __XLf_0(kSource, i, module, kError);
    events.clear();
    const std::uint64_t expected = std::min<std::uint64_t>(i + 1, kRecords);
    ASSERT_EQ(kelp_trace_read_ring(keep, &events), expected);
    for (std::uint64_t k = 0; k < expected; ++k) {
      ASSERT_EQ(events[k].event.index, i + 1 - expected + k) << i;
    }
  }
  ASSERT_EQ(kelp_trace_set_ring_size(48), 0);
  __XLf_0(kSource, 7, module, kError);
  EXPECT_EQ(kelp_trace_read_ring(nullptr, nullptr), 1u);
  __XLf_4(kSource, 7, module, kError, 1);
  EXPECT_EQ(kelp_trace_read_ring(nullptr, nullptr), 1u) << "longer than the ring";
  ASSERT_EQ(kelp_trace_set_ring_size(64 * 1024), 0);
}

// Records of any sizes in rings of any size: what is read is the latest ones, without a gap.
TEST_F(TraceTest, RingKeepsALatestRun) {
  const std::string text(200, 'x');
  for (std::size_t size = 48; size < 900; size += 8) {
    ASSERT_EQ(kelp_trace_set_ring_size(size), 0);
    std::vector<Kept> events;
    for (std::uint32_t i = 0; i < 40; ++i) {
      __XLf_1(kSource, i, module, kError, text.c_str() + (i * 37 + size) % 200);
      events.clear();
      kelp_trace_read_ring(keep, &events);
      for (std::size_t k = 1; k < events.size(); ++k) {
        ASSERT_EQ(events[k].event.index, events[k - 1].event.index + 1);
      }
      if (size >= 48 + 8 + 200) {
        ASSERT_FALSE(events.empty());
        ASSERT_EQ(events.back().event.index, i);
      }
    }
  }
  ASSERT_EQ(kelp_trace_set_ring_size(64 * 1024), 0);
}

TEST_F(TraceTest, ReadingStopsWhenAsked) {
  for (std::uint32_t i = 0; i < 5; ++i) __XLf_0(kSource, i, module, kError);
  const auto stop = [](void *, const kelp_trace_event *event) { return event->index == 2 ? 1 : 0; };
  EXPECT_EQ(kelp_trace_read_ring(stop, nullptr), 3u);
}

TEST_F(TraceTest, ThreadsLoseNothing) {
  std::vector<Kept> heard;
  std::vector<std::thread> threads;
  ASSERT_EQ(kelp_trace_set_ring_size(1 << 20), 0);
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([this] {
      for (std::uint32_t i = 0; i < 500; ++i) __XLf_4(kSource, i, module, kError, i);
    });
  }
  for (std::thread &thread : threads) thread.join();
  EXPECT_EQ(kelp_trace_read_ring(nullptr, nullptr), 2000u);
}

class TraceFileTest : public TraceTest {
 protected:
  TraceFileTest()
      : path(testing::TempDir() + "kelp_trace_" + std::to_string(getpid()) + "_" +
             testing::UnitTest::GetInstance()->current_test_info()->name()) {
    std::remove(path.c_str());
  }
  ~TraceFileTest() override { std::remove(path.c_str()); }

  void write_bytes(const std::string &bytes) {
    std::ofstream(path, std::ios::binary | std::ios::app) << bytes;
  }

  // The bytes of a record of 80 bytes.
  std::string record_of(std::uint32_t index) {
    std::remove(path.c_str());
    EXPECT_EQ(kelp_trace_open_file(path.c_str(), &error), 0);
    __XLf_14(kSource, index, module, kError, "abcdefgh", 5);
    EXPECT_EQ(kelp_trace_open_file(nullptr, &error), 0);
    std::ifstream file(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    EXPECT_EQ(bytes.size(), 80u);
    std::remove(path.c_str());
    return bytes;
  }

  std::string path;
  kelp_error error = {};
};

TEST_F(TraceFileTest, FileHoldsTheRecords) {
  ASSERT_EQ(kelp_trace_open_file(path.c_str(), &error), 0) << error.text;
  for (std::uint32_t i = 0; i < 20000; ++i) __XLf_14(kSource, i, module, kError, "text", i);
  ASSERT_EQ(kelp_trace_open_file(nullptr, &error), 0);
  __XLf_0(kSource, 1, module, kError);
  std::vector<Kept> events;
  ASSERT_EQ(kelp_trace_read_file(path.c_str(), keep, &events, &error), 0) << error.text;
  ASSERT_EQ(events.size(), 20000u);
  for (std::uint32_t i = 0; i < 20000; ++i) {
    ASSERT_EQ(events[i].event.index, i);
    ASSERT_EQ(events[i].event.arguments[1].number, i);
  }
}

TEST_F(TraceFileTest, FileThatCannotBeOpenedLeavesTheOneBefore) {
  ASSERT_EQ(kelp_trace_open_file(path.c_str(), &error), 0);
  EXPECT_EQ(kelp_trace_open_file("/nonexistent/trace", &error), ENOENT);
  __XLf_0(kSource, 1, module, kError);
  ASSERT_EQ(kelp_trace_open_file(nullptr, &error), 0);
  kelp_trace_file_report report;
  ASSERT_EQ(kelp_trace_scan_file(path.c_str(), nullptr, nullptr, &report, &error), 0);
  EXPECT_EQ(report.records, 1u);
}

TEST_F(TraceFileTest, FileIsAppendedTo) {
  for (std::uint32_t i = 0; i < 2; ++i) {
    ASSERT_EQ(kelp_trace_open_file(path.c_str(), &error), 0);
    __XLf_0(kSource, i, module, kError);
    ASSERT_EQ(kelp_trace_open_file(nullptr, &error), 0);
  }
  std::vector<Kept> events;
  ASSERT_EQ(kelp_trace_read_file(path.c_str(), keep, &events, &error), 0);
  EXPECT_EQ(events.size(), 2u);
}

TEST_F(TraceFileTest, RecordLiesAsDocumented) {
  ASSERT_EQ(kelp_trace_open_file(path.c_str(), &error), 0);
  __XLf_14(kSource, 0x01020304, module, kError, "abc", 0x0A0B0C0D);
  ASSERT_EQ(kelp_trace_open_file(nullptr, &error), 0);
  std::ifstream file(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  ASSERT_EQ(bytes.size(), 48u + 16u + 16u);
  EXPECT_EQ(bytes.substr(0, 8), std::string("KLPT\x50\0\0\0", 8));
  EXPECT_EQ(bytes.substr(16, 16), std::string(reinterpret_cast<const char *>(kSource), 16));
  EXPECT_EQ(bytes.substr(32, 4), "\x04\x03\x02\x01");
  EXPECT_EQ(bytes[38], 3);
  EXPECT_EQ(bytes[39], 2);
  EXPECT_EQ(bytes.substr(48, 16), std::string("\1\0\0\0\3\0\0\0abc\0\0\0\0\0", 16));
  EXPECT_EQ(bytes.substr(64, 16), std::string("\4\0\0\0\4\0\0\0\x0D\x0C\x0B\x0A\0\0\0\0", 16));
}

TEST_F(TraceFileTest, FileWithoutARecordIsRefusedWithThePlace) {
  write_bytes(std::string(48, 'z'));
  std::vector<Kept> events;
  EXPECT_EQ(kelp_trace_read_file(path.c_str(), keep, &events, &error), 22);
  EXPECT_EQ(events.size(), 0u);
  EXPECT_EQ(std::string(error.text), "kelp_trace_read_file: '" + path +
                                         "' at byte 0: magic of a record: found 0x7a7a7a7a, "
                                         "expected 0x54504c4b");
}

// Three records, the second of which is torn at each of its bytes: the others are read, and what is
// left of it is counted. One whose last bytes are padding may be whole without them.
TEST_F(TraceFileTest, TornRecordCostsItselfAlone) {
  const std::string first = record_of(1);
  const std::string second = record_of(2);
  const std::string third = record_of(3);
  for (std::size_t cut = 0; cut < second.size(); ++cut) {
    std::remove(path.c_str());
    write_bytes(first + second.substr(0, cut) + third);
    std::vector<Kept> events;
    kelp_trace_file_report report;
    ASSERT_EQ(kelp_trace_scan_file(path.c_str(), keep, &events, &report, &error), 0) << error.text;
    ASSERT_EQ(events.size(), 2u) << cut;
    EXPECT_EQ(events[0].event.index, 1u) << cut;
    EXPECT_EQ(events[1].event.index, 3u) << cut;
    EXPECT_EQ(report.records, 2u);
    EXPECT_EQ(report.bytes_passed_over, cut);
    EXPECT_EQ(report.places_passed_over, cut == 0 ? 0u : 1u);
    EXPECT_EQ(error.text[0] == '\0', cut == 0);
  }
  EXPECT_EQ(std::string(error.text).substr(0, std::string(error.text).find(": b")),
            "kelp_trace_scan_file: '" + path +
                "': passed over 79 bytes in 1 places, the first at "
                "byte 80");
}

TEST_F(TraceFileTest, TornRecordAtTheEndIsCounted) {
  const std::string one = record_of(1);
  for (std::size_t cut = 1; cut < one.size(); ++cut) {
    std::remove(path.c_str());
    write_bytes(one + "noise" + one + one.substr(0, cut));
    kelp_trace_file_report report;
    ASSERT_EQ(kelp_trace_scan_file(path.c_str(), nullptr, nullptr, &report, &error), 0);
    EXPECT_EQ(report.records, 2u);
    EXPECT_EQ(report.bytes_passed_over, 5 + cut);
    EXPECT_EQ(report.places_passed_over, 2u);
  }
}

TEST_F(TraceFileTest, ManyTornRecordsInALongFile) {
  const std::string one = record_of(1);
  std::string bytes;
  std::uint64_t torn = 0;
  for (std::size_t i = 0; i < 20000; ++i) {
    bytes += one;
    if (i % 7 != 3) continue;
    const std::size_t cut = 1 + i % (one.size() - 1);
    bytes += one.substr(0, cut);
    torn += cut;
  }
  write_bytes(bytes);
  kelp_trace_file_report report;
  std::vector<Kept> events;
  ASSERT_EQ(kelp_trace_scan_file(path.c_str(), keep, &events, &report, &error), 0);
  EXPECT_EQ(report.records, 20000u);
  EXPECT_EQ(events.size(), 20000u);
  EXPECT_EQ(report.bytes_passed_over, torn);
}

TEST_F(TraceFileTest, RefusedBytesLeadToTheNextRecord) {
  const std::string one = record_of(1);
  kelp_trace_event event;
  std::size_t length = 0;
  const auto refused = [&](const std::string &from) {
    EXPECT_EQ(kelp_trace_read_record(reinterpret_cast<const std::uint8_t *>(from.data()),
                                     from.size(), &event, &length, nullptr),
              KELP_ERR_INVALID);
    return length;
  };
  EXPECT_EQ(refused("garbage" + one), 7u);
  EXPECT_EQ(refused("garbage"), 7u);
  EXPECT_EQ(refused("garbage" + one.substr(0, 2)), 7u);
  EXPECT_EQ(refused(one.substr(0, 60) + one), 60u);
}

TEST_F(TraceFileTest, LostRecordsAreReported) {
  ASSERT_EQ(kelp_trace_open_file("/dev/full", &error), 0) << error.text;
  EXPECT_EQ(kelp_trace_flush(), 0);
  for (int i = 0; i < 3; ++i) __XLf_0(kSource, 1, module, kError);
  EXPECT_EQ(kelp_trace_flush(), ENOSPC);
  EXPECT_EQ(kelp_trace_flush(), 0) << "it was reported";
  for (int i = 0; i < 2; ++i) __XLf_0(kSource, 1, module, kError);
  EXPECT_EQ(kelp_trace_open_file(path.c_str(), &error), ENOSPC);
  EXPECT_STREQ(error.text,
               "kelp_trace_open_file: 2 records of the file before were lost: No space left on "
               "device");
  __XLf_0(kSource, 7, module, kError);
  EXPECT_EQ(kelp_trace_flush(), 0);
  std::vector<Kept> events;
  ASSERT_EQ(kelp_trace_read_file(path.c_str(), keep, &events, &error), 0) << error.text;
  EXPECT_EQ(events.size(), 1u);
  EXPECT_EQ(kelp_trace_open_file(nullptr, &error), 0);
}

TEST_F(TraceFileTest, DamagedRecordsAreRefused) {
  ASSERT_EQ(kelp_trace_open_file(path.c_str(), &error), 0);
  __XLf_14(kSource, 1, module, kError, "abcdefgh", 5);
  ASSERT_EQ(kelp_trace_open_file(nullptr, &error), 0);
  std::ifstream file(path, std::ios::binary);
  const std::string good((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  ASSERT_EQ(good.size(), 80u);
  // Each cut, and each length, kind and count changed to each of some values.
  for (std::size_t cut = 1; cut < good.size(); ++cut) {
    std::remove(path.c_str());
    write_bytes(good.substr(0, cut));
    EXPECT_EQ(kelp_trace_read_file(path.c_str(), nullptr, nullptr, &error), 22) << cut;
  }
  for (const std::size_t at : {0, 4, 5, 7, 39, 48, 52, 55, 64, 68}) {
    for (const char value : {'\0', '\2', '\x08', '\x09', '\x7F', '\xF8', '\xFF'}) {
      // A text cut to two bytes within its padding is a sound record.
      if (good[at] == value || (at == 52 && value == '\2')) continue;
      std::string bad = good;
      bad[at] = value;
      std::remove(path.c_str());
      write_bytes(bad);
      EXPECT_EQ(kelp_trace_read_file(path.c_str(), nullptr, nullptr, &error), 22)
          << at << " " << static_cast<int>(value);
    }
  }
}

TEST_F(TraceFileTest, OneRecordIsReadFromItsBytes) {
  ASSERT_EQ(kelp_trace_open_file(path.c_str(), &error), 0);
  __XLf_14(kSource, 1, module, kError, "abcdefgh", 5);
  ASSERT_EQ(kelp_trace_open_file(nullptr, &error), 0);
  std::ifstream file(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const std::string two = bytes + bytes;
  const auto read = [&](const std::string &from, kelp_trace_event *event, std::size_t *length) {
    return kelp_trace_read_record(reinterpret_cast<const std::uint8_t *>(from.data()), from.size(),
                                  event, length, &error);
  };
  kelp_trace_event event = {};
  std::size_t length = 0;
  ASSERT_EQ(read(two, &event, &length), 0) << error.text;
  EXPECT_EQ(length, bytes.size());
  EXPECT_STREQ(event.signature, "14");
  EXPECT_EQ(event.arguments[1].number, 5u);
  // A cut is told from damage, with what the record needs as far as it is known.
  for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
    EXPECT_EQ(read(bytes.substr(0, cut), &event, &length), KELP_ERR_AGAIN) << cut;
    EXPECT_EQ(length, cut < 48 ? 48u : bytes.size()) << cut;
  }
  EXPECT_EQ(read("#!/bin/sh", &event, &length), KELP_ERR_INVALID);
  EXPECT_STREQ(error.text,
               "kelp_trace_read_record: magic of a record: found 0x622f2123, expected 0x54504c4b");
  std::string bad = bytes;
  bad[38] = 8;
  EXPECT_EQ(read(bad, &event, &length), KELP_ERR_INVALID);
  EXPECT_STREQ(error.text, "kelp_trace_read_record: level, at most: found 8, expected 7");
  bad = bytes;
  bad[58] = '\0';
  EXPECT_EQ(read(bad, &event, &length), KELP_ERR_INVALID);
  EXPECT_STREQ(error.text,
               "kelp_trace_read_record: bytes of a text before a NUL: found 2, expected 8");
  EXPECT_EQ(kelp_trace_read_record(nullptr, 0, &event, &length, &error), KELP_ERR_INVALID);
  // The longest record is waited for; a length above it is damage.
  constexpr std::size_t longest = 48 + std::size(kelp_trace_event{}.arguments) * (8 + 1024);
  for (const std::size_t each : {longest, longest + 8}) {
    std::string head = bytes.substr(0, 48);
    head[4] = static_cast<char>(each & 0xFF);
    head[5] = static_cast<char>(each >> 8);
    EXPECT_EQ(read(head, &event, &length), each == longest ? KELP_ERR_AGAIN : KELP_ERR_INVALID);
  }
}

TEST_F(TraceFileTest, MissingFileIsNamed) {
  EXPECT_EQ(kelp_trace_read_file("/nonexistent/trace", nullptr, nullptr, &error), 2);
  EXPECT_STREQ(error.text,
               "kelp_trace_read_file: '/nonexistent/trace': No such file or directory, expected a "
               "trace file");
  EXPECT_EQ(kelp_trace_open_file("/nonexistent/trace", &error), 2);
}

using TraceDeathTest = TraceTest;

TEST_F(TraceDeathTest, FatalMessageIsSeenOnStandardError) {
  kelp_trace_set_level(nullptr, 0);
  testing::internal::CaptureStderr();
  __XLf_14(kSource, 17, module, 0, "name", 3);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "fatal: trace_test: message 17 of source deadbeef0102030405060708090a0b0c, name, 3\n");
  kelp_trace_set_text_source(
      [](void *, const std::uint8_t *, std::uint32_t index) {
        return index == 17 ? "%s has %u" : nullptr;
      },
      nullptr);
  testing::internal::CaptureStderr();
  __XLf_14(kSource, 17, module, 0, "name", 3);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "fatal: trace_test: name has 3\n");
}

// A process that registers more modules than there is room for.
TEST_F(TraceDeathTest, ModulesBeyondTheRoomGetNoId) {
  EXPECT_EXIT(
      {
        std::uint32_t highest = 0;
        std::uint32_t last = 1;
        for (int i = 0; i < 1100; ++i) {
          std::uint32_t each = 0;
          xlog_module_init_fn(("trace_test_" + std::to_string(i)).c_str(), &each, nullptr);
          highest = std::max(highest, each);
          last = each;
        }
        std::_Exit(highest == 1024 && last == 0 ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

std::string format(const kelp_trace_event &event, const char *text) {
  char buffer[200];
  const std::size_t length = kelp_trace_format(&event, text, buffer, sizeof buffer);
  EXPECT_EQ(length, std::strlen(buffer));
  return buffer;
}

TEST(TraceFormatTest, ConversionsTakeArgumentsInOrder) {
  kelp_trace_event event = {};
  event.argument_count = 3;
  event.arguments[0].kind = 1;
  event.arguments[0].text = "abcdef";
  event.arguments[0].text_length = 3;
  event.arguments[1].kind = 4;
  event.arguments[1].number = 0xFFFFFFFF;
  event.arguments[2].kind = 5;
  event.arguments[2].pointer = 0x1F;
  EXPECT_EQ(format(event, "%s %d %p"), "abc -1 0x1f");
  EXPECT_EQ(format(event, "%s %u %p"), "abc 4294967295 0x1f");
  EXPECT_EQ(format(event, "100%% of %s"), "100% of abc");
  EXPECT_EQ(format(event, "%d first"), "%d first");
  EXPECT_EQ(format(event, "%s%d%p%s"), "abc-10x1f%s");
  EXPECT_EQ(format(event, "%n %"), "%n %");
  EXPECT_EQ(format(event, ""), "");
}

TEST(TraceFormatTest, OutputIsCutAndItsFullLengthTold) {
  kelp_trace_event event = {};
  char buffer[5] = "zzzz";
  EXPECT_EQ(kelp_trace_format(&event, "abcdefgh", buffer, sizeof buffer), 8u);
  EXPECT_STREQ(buffer, "abcd");
  EXPECT_EQ(kelp_trace_format(&event, "abc", nullptr, 0), 3u);
  EXPECT_EQ(kelp_trace_format(&event, "abcd", buffer, 1), 4u);
  EXPECT_STREQ(buffer, "");
}

}  // namespace
