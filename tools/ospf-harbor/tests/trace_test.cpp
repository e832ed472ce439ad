// `ospf-harbor trace`: records of every signature as text, levels, following, and what it says of
// files and records that are not what they should be.
#include <gtest/gtest.h>
#include <kelp/embed.h>
#include <kelp/trace.h>

#include <algorithm>
#include <csignal>
#include <random>
#include <regex>
#include <sstream>

#include "ospf_tables/input_error.hpp"
#include "support/built_library.hpp"
#include "support/processes.hpp"
#include "support/sample_library.hpp"
#include "support/temporary_file.hpp"
#include "traces/trace_printer.hpp"

namespace {

using tool_tests::run_tool;
using tool_tests::Said;

constexpr std::uint32_t fatal = 0;
constexpr std::uint32_t error = 0x3000000;
constexpr std::uint32_t information = 0x6000000;
constexpr std::uint32_t debug = 0x7000000;

struct Printed {
  int status = -1;
  std::vector<std::string> lines;
  std::string complaints;
  std::string refusal;  // what was thrown
};

Printed print(const tool::TraceOptions &options) {
  std::ostringstream out, complaints;
  Printed printed;
  try {
    printed.status = tool::print_trace(options, out, complaints);
  } catch (const ospf_tables::InputError &refused) {
    printed.refusal = refused.what();
  }
  printed.complaints = complaints.str();
  std::istringstream in(out.str());
  for (std::string line; std::getline(in, line);) printed.lines.push_back(line);
  return printed;
}

// A line without its time, which has to have its form.
std::string without_time(const std::string &line) {
  static const std::regex time(
      "^20[0-9]{2}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}[.][0-9]{9}Z (.*)$");
  std::smatch parts;
  return std::regex_match(line, parts, time) ? parts[1].str() : "(no time) " + line;
}

std::vector<std::uint8_t> bytes_of(const std::string &path) {
  return library_sections::read_file(path);
}

// What is emitted within the life of this goes to a file, by the runtime's own hand.
class Recording {
 public:
  explicit Recording(const std::string &path) {
    kelp_trace_set_level(nullptr, KELP_TRACE_DEBUG);
    kelp_error failure{};
    EXPECT_EQ(kelp_trace_open_file(path.c_str(), &failure), 0) << failure.text;
  }
  ~Recording() {
    kelp_trace_open_file(nullptr, nullptr);
    kelp_trace_set_level(nullptr, KELP_TRACE_INFORMATION);
  }
};

// A small library and a trace with one record of each of its messages.
class TraceCommandTest : public testing::Test {
 protected:
  TraceCommandTest() : library_(name("library.so")), trace_(name("trace")) {
    library_.write(sample_.file());
    options_.file = trace_.path();
    options_.shared_object = library_.path();
  }

  static std::string name(const std::string &suffix) {
    return std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + "_" +
           suffix;
  }

  const std::uint8_t *types() const { return sample_.sources[0].identity.data(); }
  const std::uint8_t *tables() const { return sample_.sources[1].identity.data(); }

  void emit_all() const {
    const Recording recording(trace_.path());
    __XLf_1(types(), 0, 1, error, "No such file");
    __XLf_0(types(), 1, 1, debug);
    __XLf_44(types(), 2, 1, information, 4000000000u, 2);
    __XLf_444(types(), 3, 1, information, 1, static_cast<std::uint32_t>(-2), 3);
    __XLf_51(tables(), 0, 1, error, reinterpret_cast<const void *>(0xabc0), "Not found");
    __XLf_11(tables(), 1, 1, information, "7", "9");
    __XLf_4(tables(), 2, 1, error, static_cast<std::uint32_t>(-5));
    __XLf_14(tables(), 3, 1, information, "campus", 3);
  }

  sample::Library sample_;
  TemporaryFile library_;
  TemporaryFile trace_;
  tool::TraceOptions options_;
};

TEST_F(TraceCommandTest, EverySignatureIsPrintedWithItsArguments) {
  emit_all();
  const Printed printed = print(options_);
  EXPECT_EQ(printed.status, 0) << printed.refusal;
  EXPECT_EQ(printed.complaints, "");
  std::vector<std::string> lines;
  for (const std::string &line : printed.lines) lines.push_back(without_time(line));
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "error       sample error in thing create No such file",
                       "debug       sample Corrupted Handle",
                       "information sample variant 4000000000 requested only 2 variants present",
                       "information sample read_len 1 base -2 jump 3",
                       "error       sample reference to 0xabc0 lost. Error Not found",
                       "information sample no mapping for 7/9", "error       sample unknown key:-5",
                       "information sample no root in DB campus. Open type: 3"}));
}

// Every message of the built library, emitted as its signature asks, comes back as its text.
TEST_F(TraceCommandTest, EveryMessageOfTheBuiltLibraryComesBack) {
  std::vector<std::string> expected;
  {
    const Recording recording(trace_.path());
    for (const auto &table : built::library().messages.tables) {
      const std::uint8_t *source = table.identity.data();
      for (std::uint32_t i = 0; i < table.messages.size(); ++i) {
        const auto digits = library_sections::signatures[table.messages[i].signature()].digits;
        if (digits == "0") __XLf_0(source, i, 1, error);
        if (digits == "1") __XLf_1(source, i, 1, error, "<s>");
        if (digits == "4") __XLf_4(source, i, 1, error, 4);
        if (digits == "11") __XLf_11(source, i, 1, error, "<s>", "<s>");
        if (digits == "14") __XLf_14(source, i, 1, error, "<s>", 4);
        if (digits == "44") __XLf_44(source, i, 1, error, 4, 4);
        if (digits == "444") __XLf_444(source, i, 1, error, 4, 4, 4);
        if (digits == "51") {
          __XLf_51(source, i, 1, error, reinterpret_cast<const void *>(5), "<s>");
        }
        std::string text = table.messages[i].text;
        for (const auto &[conversion, value] :
             {std::pair{"%s", "<s>"}, {"%u", "4"}, {"%d", "4"}, {"%p", "0x5"}}) {
          for (std::size_t at; (at = text.find(conversion)) != std::string::npos;) {
            text.replace(at, 2, value);
          }
        }
        expected.push_back("error       ospf_harbor_oper " + text);
      }
    }
  }
  options_.shared_object = "";  // the one that this program runs with
  const Printed printed = print(options_);
  EXPECT_EQ(printed.status, 0) << printed.refusal << printed.complaints;
  ASSERT_EQ(printed.lines.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_EQ(without_time(printed.lines[i]), expected[i]) << i;
  }
}

TEST_F(TraceCommandTest, ModuleWithoutANameIsShownByItsNumber) {
  emit_all();
  std::vector<sample::Section> sections = sample_.sections();
  sections.pop_back();
  library_.write(sample::elf(sections));
  const Printed printed = print(options_);
  EXPECT_EQ(printed.status, 0);
  ASSERT_EQ(printed.lines.size(), 8u);
  EXPECT_EQ(without_time(printed.lines[1]), "debug       module-1 Corrupted Handle");
}

TEST_F(TraceCommandTest, LevelKeepsItAndWorse) {
  emit_all();
  const auto count = [&](const char *level) {
    options_.level = level;
    return print(options_).lines.size();
  };
  EXPECT_EQ(count("fatal"), 0u);
  EXPECT_EQ(count("error"), 3u);
  EXPECT_EQ(count("information"), 7u);
  EXPECT_EQ(count("debug"), 8u);
  options_.level = "loud";
  EXPECT_EQ(print(options_).refusal,
            "--level: found \"loud\", expected fatal or error or information or debug");
}

TEST_F(TraceCommandTest, FatalRecordsAreNamedSo) {
  {
    const Recording recording(trace_.path());
    testing::internal::CaptureStderr();
    __XLf_0(types(), 1, 1, fatal);
    testing::internal::GetCapturedStderr();
  }
  options_.level = "fatal";
  const Printed printed = print(options_);
  ASSERT_EQ(printed.lines.size(), 1u);
  EXPECT_EQ(without_time(printed.lines[0]), "fatal       sample Corrupted Handle");
}

TEST_F(TraceCommandTest, ArgumentsAreShownAsTheyAreAndEscaped) {
  {
    const Recording recording(trace_.path());
    __XLf_1(types(), 0, 1, error, "a\nb\x1b[31m %n%s%d \xff");
  }
  const Printed printed = print(options_);
  ASSERT_EQ(printed.lines.size(), 1u);
  EXPECT_EQ(without_time(printed.lines[0]),
            "error       sample error in thing create a\\nb\\x1b[31m %n%s%d \\xff");
}

// A record that the library has no text for is shown bare, said with its place, and does not keep
// the others from being shown.
TEST_F(TraceCommandTest, RecordsWithoutATextAreSaidWithTheirPlace) {
  const std::uint8_t foreign[16] = {0xab};
  {
    const Recording recording(trace_.path());
    __XLf_0(types(), 1, 3, error);
    __XLf_14(foreign, 12, 3, error, "x\ty", 5);
    __XLf_0(types(), 4, 3, error);
    __XLf_44(types(), 0, 3, error, 1, 2);
    __XLf_0(types(), 1, 3, error);
  }
  const Printed printed = print(options_);
  EXPECT_EQ(printed.status, 1);
  EXPECT_EQ(printed.refusal, "");
  ASSERT_EQ(printed.lines.size(), 5u);
  EXPECT_EQ(without_time(printed.lines[0]), "error       sample Corrupted Handle");
  EXPECT_EQ(without_time(printed.lines[1]),
            "error       module-3 (message 12 of source ab000000000000000000000000000000 with "
            "\"x\\ty\", 5)");
  EXPECT_EQ(without_time(printed.lines[2]),
            "error       module-3 (message 4 of source 101112131415161718191a1b1c1d1e1f)");
  EXPECT_EQ(
      without_time(printed.lines[3]),
      "error       module-3 (message 0 of source 101112131415161718191a1b1c1d1e1f with 1, 2)");
  EXPECT_EQ(without_time(printed.lines[4]), "error       sample Corrupted Handle");
  const std::string file = "ospf-harbor: " + trace_.path() + ": byte ";
  EXPECT_EQ(printed.complaints,
            file +
                "48: source of a message: found ab000000000000000000000000000000, expected "
                "101112131415161718191a1b1c1d1e1f or f0efeeedecebeae9e8e7e6e5e4e3e2e1 of " +
                library_.path() + "\n" + file +
                "128: index of a message: found 4, expected less than the 4 messages of " +
                library_.path() + "\n" + file +
                "176: arguments of message 0: found signature 44, expected 1 for \"error in thing "
                "create %s\" of " +
                library_.path() + "\n");
}

TEST_F(TraceCommandTest, CutAndForeignBytesArePassedOverAndCounted) {
  emit_all();
  const std::vector<std::uint8_t> good = bytes_of(trace_.path());
  const std::string said = "ospf-harbor: " + trace_.path() + ": passed over ";
  trace_.write({good.data(), good.size() - 1});
  Printed printed = print(options_);
  EXPECT_EQ(printed.lines.size(), 7u);
  EXPECT_EQ(printed.status, 1);
  const std::size_t last = good.size() - 48 - 16 - 16;
  EXPECT_EQ(printed.complaints,
            said + "79 bytes in 1 place that are no trace record, the first at byte " +
                std::to_string(last) +
                ": found the end of the file after 79 bytes, expected a whole trace record\n");
  const std::string more = "This is no trace record, but a text that is long enough for one.";
  trace_.write(good);
  trace_.append({reinterpret_cast<const std::uint8_t *>(more.data()), more.size()});
  printed = print(options_);
  EXPECT_EQ(printed.lines.size(), 8u);
  EXPECT_EQ(printed.complaints,
            said + "64 bytes in 1 place that are no trace record, the first at byte " +
                std::to_string(good.size()) +
                ": kelp_trace_read_record: magic of a record: found 0x73696854, expected "
                "0x54504c4b\n");
  trace_.write({reinterpret_cast<const std::uint8_t *>(more.data()), more.size()});
  EXPECT_EQ(print(options_).refusal,
            trace_.path() +
                ": no trace record: byte 0: kelp_trace_read_record: magic of a record: "
                "found 0x73696854, expected 0x54504c4b");
  trace_.write(good);
  options_.file = "/nonexistent/trace";
  EXPECT_EQ(print(options_).refusal, "cannot open /nonexistent/trace: No such file or directory");
  options_.file = trace_.path();
  options_.shared_object = trace_.path();
  EXPECT_EQ(print(options_).refusal,
            trace_.path() +
                ": file, byte 0: magic of an ELF file: found 4b4c5054, expected "
                "7f454c46");
}

// Wherever one record was torn: the others are all shown, also when it is torn at the end of what a
// process wrote that was killed, and more was appended.
TEST_F(TraceCommandTest, ATornRecordCostsItselfAlone) {
  emit_all();
  const std::vector<std::uint8_t> good = bytes_of(trace_.path());
  options_.shared_object = library_.path();
  const std::vector<std::string> whole = print(options_).lines;
  std::size_t at = 0;
  for (std::size_t record = 0; record < whole.size(); ++record) {
    const std::size_t length = good[at + 4];
    for (const std::size_t kept : {std::size_t{1}, std::size_t{20}, std::size_t{47}, length - 1}) {
      std::vector<std::uint8_t> torn(good.begin(), good.begin() + static_cast<long>(at + kept));
      torn.insert(torn.end(), good.begin() + static_cast<long>(at + length), good.end());
      trace_.write(torn);
      const Printed printed = print(options_);
      std::vector<std::string> expected = whole;
      expected.erase(expected.begin() + static_cast<long>(record));
      EXPECT_EQ(printed.lines, expected) << record << ", " << kept;
      EXPECT_EQ(printed.status, 1);
      EXPECT_NE(printed.complaints.find("passed over " + std::to_string(kept) +
                                        " bytes in 1 place that are no trace record, the first at "
                                        "byte " +
                                        std::to_string(at)),
                std::string::npos)
          << printed.complaints;
    }
    at += length;
  }
}

TEST_F(TraceCommandTest, EmptyTraceHasNoLines) {
  trace_.write({});
  const Printed printed = print(options_);
  EXPECT_EQ(printed.status, 0);
  EXPECT_TRUE(printed.lines.empty());
}

TEST_F(TraceCommandTest, FollowingEndsAfterItsSeconds) {
  emit_all();
  options_.follow = true;
  options_.seconds = 0.15;
  const auto begin = std::chrono::steady_clock::now();
  const Printed printed = print(options_);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(150));
  EXPECT_EQ(printed.status, 0);
  EXPECT_EQ(printed.lines.size(), 8u);
}

// Cuts a file back when what was written so far is flushed.
class CuttingBuffer : public std::stringbuf {
 public:
  explicit CuttingBuffer(std::string path) : path_(std::move(path)) {}
  int sync() override { return truncate(path_.c_str(), 48); }

 private:
  std::string path_;
};

TEST_F(TraceCommandTest, FollowingNoticesAFileThatWasCutBack) {
  emit_all();
  const std::size_t size = bytes_of(trace_.path()).size();
  options_.follow = true;
  options_.seconds = 60;
  CuttingBuffer buffer(trace_.path());
  std::ostream out(&buffer);
  std::ostringstream complaints;
  try {
    tool::print_trace(options_, out, complaints);
    FAIL() << "not noticed";
  } catch (const ospf_tables::InputError &refused) {
    EXPECT_EQ(std::string(refused.what()),
              trace_.path() + ": found a file of 48 bytes, expected the " + std::to_string(size) +
                  " bytes that were read, or more");
  }
  const std::string lines = buffer.str();
  EXPECT_EQ(std::ranges::count(lines, '\n'), 8);
}

// The tool itself: each record shows as soon as it is whole, until a signal ends it.
TEST_F(TraceCommandTest, FollowingShowsRecordsAsTheyArrive) {
  emit_all();
  const std::vector<std::uint8_t> good = bytes_of(trace_.path());
  trace_.write({good.data(), 64 + 24});  // the first record and a piece of the second
  const TemporaryFolder folder;
  tool_tests::ToolProcess process(
      folder.path(), "follower",
      {"trace", trace_.path(), "--library", library_.path(), "--level", "debug", "--follow"});
  EXPECT_EQ(without_time(process.line(0)), "error       sample error in thing create No such file");
  trace_.append({good.data() + 64 + 24, 24 + 64});
  EXPECT_EQ(without_time(process.line(1)), "debug       sample Corrupted Handle");
  trace_.append({good.data() + 64 + 48 + 64, good.size() - 64 - 48 - 64});
  EXPECT_EQ(without_time(process.line(7)), "information sample no root in DB campus. Open type: 3");
  kill(process.id(), SIGTERM);
  EXPECT_EQ(process.wait(), -SIGTERM);
}

TEST_F(TraceCommandTest, DamagedTracesNeverDoHarm) {
  emit_all();
  const std::vector<std::uint8_t> good = bytes_of(trace_.path());
  std::vector<std::size_t> ends{0};
  while (ends.back() < good.size()) ends.push_back(ends.back() + good[ends.back() + 4]);
  for (std::size_t length = 0; length < good.size(); ++length) {
    trace_.write({good.data(), length});
    const Printed printed = print(options_);
    const auto end = std::ranges::upper_bound(ends, length);
    EXPECT_EQ(printed.lines.size(), static_cast<std::size_t>(end - ends.begin() - 1)) << length;
    EXPECT_EQ(printed.refusal.empty() && printed.complaints.empty(), *(end - 1) == length)
        << length;
  }
  std::mt19937 random(42);
  int complained = 0;
  for (int round = 0; round < 3000; ++round) {
    std::vector<std::uint8_t> changed = good;
    for (std::size_t change = random() % 4 + 1; change > 0; --change) {
      changed[random() % changed.size()] = static_cast<std::uint8_t>(random());
    }
    trace_.write(changed);
    const Printed printed = print(options_);
    EXPECT_EQ(printed.status == 0, printed.complaints.empty() && printed.refusal.empty());
    complained += printed.status == 0 ? 0 : 1;
  }
  EXPECT_GT(complained, 1000);
}

TEST_F(TraceCommandTest, DamagedLibrariesNeverDoHarm) {
  emit_all();
  const sample::File good = sample_.file();
  std::mt19937 random(43);
  int complained = 0;
  for (int round = 0; round < 1500; ++round) {
    sample::File changed = good;
    for (std::size_t change = random() % 4 + 1; change > 0; --change) {
      changed[random() % changed.size()] = static_cast<std::uint8_t>(random());
    }
    library_.write(changed);
    const Printed printed = print(options_);
    EXPECT_EQ(printed.status == 0, printed.complaints.empty() && printed.refusal.empty());
    complained += printed.status == 0 ? 0 : 1;
  }
  EXPECT_GT(complained, 300);
}

const std::vector<std::string> load{"load", "frr", places::sample() + "/r1"};

// The tool, told to trace by `options`, with a load behind them.
Said load_with(std::vector<std::string> options) {
  options.insert(options.end(), load.begin(), load.end());
  return run_tool(options);
}

TEST_F(TraceCommandTest, RunOfTheToolIsTracedIntoAFile) {
  ASSERT_EQ(load_with({"--trace-file", trace_.path()}).status, 0);
  const Said hidden = run_tool({"trace", trace_.path()});
  EXPECT_EQ(hidden.status, 0);
  EXPECT_EQ(hidden.out, "");
  EXPECT_NE(hidden.err.find(" routine records are not shown; --level debug shows all\n"),
            std::string::npos)
      << hidden.err;
  const Said once = run_tool({"trace", trace_.path(), "--level", "debug"});
  EXPECT_EQ(once.status, 0) << once.err;
  EXPECT_EQ(once.err, "");
  EXPECT_NE(once.out.find("debug       ospf_harbor_oper tbl_ospf_area table free: Successfully "
                          "removed OID mapping for tbl_ospf_area\n"),
            std::string::npos)
      << once.out;
  ASSERT_EQ(load_with({"--trace-file", trace_.path()}).status, 0);
  const Said twice = run_tool({"trace", trace_.path(), "--level", "debug"});
  EXPECT_EQ(twice.status, 0) << twice.err;
  EXPECT_EQ(std::ranges::count(twice.out, '\n'), 2 * std::ranges::count(once.out, '\n'));
  std::remove(trace_.path().c_str());
  ASSERT_EQ(load_with({"--trace-level", "error", "--trace-file", trace_.path()}).status, 0);
  const Said no_errors = run_tool({"trace", trace_.path()});
  EXPECT_EQ(no_errors.status, 0);
  EXPECT_EQ(no_errors.out + no_errors.err, "");
}

TEST_F(TraceCommandTest, LevelOfATraceFileIsChecked) {
  const Said said = load_with({"--trace-file", trace_.path(), "--trace-level", "loud"});
  EXPECT_EQ(said.status, 2);
  EXPECT_EQ(said.out, "");
  EXPECT_EQ(said.err,
            "ospf-harbor: --trace-level: found \"loud\", expected fatal or error or information or "
            "debug\n");
  EXPECT_EQ(load_with({"--trace-level", "error"}).status, 2);
}

// A file that is no trace is not appended to.
TEST_F(TraceCommandTest, TraceFileThatIsNoneIsLeftAlone) {
  const auto before = bytes_of(library_.path());
  const Said said = load_with({"--trace-file", library_.path()});
  EXPECT_EQ(said.status, 1);
  EXPECT_NE(said.err.find("magic of a record: found 0x464c457f, expected 0x54504c4b"),
            std::string::npos)
      << said.err;
  EXPECT_EQ(bytes_of(library_.path()), before);
}

TEST_F(TraceCommandTest, StatusOfTheToolSaysWhetherAllWasWell) {
  emit_all();
  EXPECT_EQ(run_tool({"trace", trace_.path(), "--library", library_.path()}).status, 0);
  const Said said = run_tool({"trace", trace_.path()});
  EXPECT_EQ(said.status, 1);
  EXPECT_NE(
      said.err.find("ospf-harbor: " + trace_.path() + ": byte 0: source of a message: found "),
      std::string::npos)
      << said.err;
  EXPECT_EQ(run_tool({"inspect", library_.path()}).status, 0);
  EXPECT_EQ(run_tool({"inspect", trace_.path()}).status, 1);
  EXPECT_NE(run_tool({"inspect"}).err.find("LIBRARY is required"), std::string::npos);
}

}  // namespace
