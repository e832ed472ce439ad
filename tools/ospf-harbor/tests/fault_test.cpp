// The tool's commands with one call to the system after the other failing: malloc, mmap, write and
// fsync. Each gives the whole output, or an error message and status 1, and leaves the files that
// were there, or all of the new ones, and nothing beside them.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>

#include "support/processes.hpp"

namespace {

using tool_tests::ToolProcess;

constexpr const char *kinds[] = {"malloc", "mmap", "write", "fsync"};

// What the environment says to what is preloaded, for processes started within.
class Failing {
 public:
  explicit Failing(const std::string &what) {
    setenv("LD_PRELOAD", places::failing_calls().c_str(), 1);
    setenv("FAILING_CALL", what.c_str(), 1);
  }
  ~Failing() {
    unsetenv("LD_PRELOAD");
    unsetenv("FAILING_CALL");
  }
  Failing(const Failing &) = delete;
  Failing &operator=(const Failing &) = delete;
};

class Faults : public tool_tests::ProcessTest {
 protected:
  using Words = std::vector<std::string>;

  Faults() {
    std::filesystem::create_directory(file("work"));
    expect_done({"export", "--image", file("tree"), "--xml", file("xml"), "--from", sample_});
    expect_done({"--trace-file", file("trace"), "load", "frr", sample_});
  }

  std::string work(const std::string &name) const { return file("work/" + name); }

  // Names and contents of the files that a command may write.
  std::map<std::string, std::string> files() const {
    std::map<std::string, std::string> all;
    for (const auto &entry : std::filesystem::directory_iterator(file("work"))) {
      all[entry.path().filename().string()] = content_of(entry.path());
    }
    return all;
  }
  void put_back(const std::map<std::string, std::string> &before) const {
    std::filesystem::remove_all(file("work"));
    std::filesystem::create_directory(file("work"));
    for (const auto &[name, content] : before) put("work/" + name, content);
  }

  Said run_failing(const std::string &what, const Words &words) {
    ToolProcess *process;
    {
      const Failing failing(what);
      process = new ToolProcess(folder_, "faulty", words);
    }
    const std::unique_ptr<ToolProcess> owner(process);
    const int status = process->wait();
    return {status, process->out(), process->err()};
  }

  // How many calls of each kind the command makes.
  std::vector<long> counts_of(const Words &words) {
    EXPECT_EQ(run_failing("count:" + file("counts"), words).status, 0);
    std::istringstream in(content_of(file("counts")));
    std::vector<long> counts(std::size(kinds));
    for (long &count : counts) in >> count;
    EXPECT_GT(counts[0], 100) << "nothing is preloaded";
    return counts;
  }

  // Each of the first calls, and then so many that all of it costs no more than it may.
  static std::vector<long> chosen(long count) {
    constexpr long each = 8;
    constexpr double growth = 1.4;
    std::vector<long> calls;
    for (long call = 0; call < count;) {
      calls.push_back(call);
      call = call < each ? call + 1 : std::lround(static_cast<double>(call) * growth);
    }
    for (long last = std::max(each, count - 3); last < count; ++last) calls.push_back(last);
    return calls;
  }

  void expect_whole_or_told(const Words &words) {
    const auto before = files();
    const Said whole = run(words);
    ASSERT_EQ(whole.status, 0) << whole.err;
    const auto after = files();
    put_back(before);
    const std::vector<long> counts = counts_of(words);
    put_back(before);
    int told = 0;
    for (std::size_t kind = 0; kind < std::size(kinds); ++kind) {
      for (const long call : chosen(counts[kind])) {
        const std::string what = std::string(kinds[kind]) + ":" + std::to_string(call);
        SCOPED_TRACE(words[0] + ", " + what);
        told += expect_whole_or_told_with(what, words, whole, before, after) ? 1 : 0;
        if (HasFailure()) return;
      }
    }
    EXPECT_GT(told, 0) << words[0];
  }

  // True when it failed.
  bool expect_whole_or_told_with(const std::string &what, const Words &words, const Said &whole,
                                 const std::map<std::string, std::string> &before,
                                 const std::map<std::string, std::string> &after) {
    const Said said = run_failing(what, words);
    const auto there = files();
    if (said.status == 0) {
      EXPECT_EQ(said.out, whole.out);
      EXPECT_EQ(there.size(), after.size());
      EXPECT_TRUE(there == after) << said.err;
    } else {
      EXPECT_EQ(said.status, 1) << said.err;
      EXPECT_NE(said.err.find("ospf-harbor: "), std::string::npos) << said.err;
      for (const auto &[name, content] : there) {
        const auto was = before.find(name);
        const auto is = after.find(name);
        EXPECT_TRUE((was != before.end() && was->second == content) ||
                    (is != after.end() && is->second == content))
            << name << " is neither the old nor the new one: " << said.err;
      }
      EXPECT_GE(there.size(), before.size());
    }
    put_back(before);
    return said.status != 0;
  }
};

TEST_F(Faults, LoadAndShowAreWholeOrTold) {
  expect_whole_or_told({"load", "frr", sample_, "--tree"});
  expect_whole_or_told({"show", "--tree", "--json", "--from", sample_});
}

TEST_F(Faults, CapturesAndDatabasesAreWholeOrTold) {
  expect_whole_or_told({"lsdb", "--v2", "--from", places::sample() + "/all.pcap"});
}

TEST_F(Faults, FilesAreExportedWholeOrToldAndTheOldOnesStay) {
  put("work/image", "an old image");
  put("work/xml", "an old document");
  expect_whole_or_told({"export", "--image", work("image"), "--xml", work("xml"), "--text",
                        work("text"), "--from", sample_});
}

TEST_F(Faults, FilesAreImportedWholeOrTold) {
  expect_whole_or_told({"import", "--image", file("tree"), "--tree"});
  expect_whole_or_told({"import", "--xml", file("xml"), "--tree"});
}

TEST_F(Faults, FilesAreTakenApartWholeOrTold) {
  expect_whole_or_told({"dump", "--annotate", file("tree")});
  expect_whole_or_told({"inspect", places::library()});
  expect_whole_or_told({"trace", file("trace")});
}

// The sender hears "ok" of nothing but the whole tree.
TEST_F(Faults, TreesAreSentWholeOrTold) {
  const std::string shown = run({"show", "--tree", "--from", sample_}).out;
  int arrived = 0;
  for (const bool of_sender : {true, false}) {
    for (long call = 0; call < 40000; call = call < 4 ? call + 1 : call * 2) {
      const std::string what = "malloc:" + std::to_string(call);
      SCOPED_TRACE((of_sender ? "send, " : "receive, ") + what);
      const std::string place = "unix:" + file("socket");
      const Words waiting{"receive", "--at", place, "--tree", "--timeout", "1"};
      const Words sending{"send", "--to", place, "--from", sample_};
      std::unique_ptr<ToolProcess> receiver;
      {
        std::unique_ptr<Failing> failing;
        if (!of_sender) failing = std::make_unique<Failing>(what);
        receiver = std::make_unique<ToolProcess>(folder_, "receiver", waiting);
      }
      for (int tries = 0; tries < 200 && !std::filesystem::exists(file("socket")); ++tries) {
        if (receiver->err().find("ospf-harbor: ") != std::string::npos) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
      }
      const Said sent = of_sender ? run_failing(what, sending) : run(sending);
      const int status = receiver->wait();
      EXPECT_TRUE(sent.status == 0 || sent.status == 1) << sent.status << sent.err;
      EXPECT_TRUE(status == 0 || status == 1) << status << receiver->err();
      if (status == 0) {
        EXPECT_EQ(receiver->out(), shown);
        ++arrived;
      } else {
        EXPECT_NE(receiver->err().find("ospf-harbor: "), std::string::npos);
      }
      if (sent.status == 0) {
        EXPECT_NE(receiver->err().find("received "), std::string::npos) << receiver->err();
      } else {
        EXPECT_NE(sent.err.find("ospf-harbor: "), std::string::npos) << sent.err;
      }
      EXPECT_FALSE(std::filesystem::exists(file("socket")));
      if (HasFailure()) return;
    }
  }
  EXPECT_GT(arrived, 0);
}

// The file is on the disk, and its name too, before it is said to be there.
TEST_F(Faults, ExportSyncsTheFileAndItsFolder) {
  const Words words{"export", "--image", work("image"), "--from", sample_};
  EXPECT_EQ(counts_of(words).back(), 2);
  put("work/image", "the old one");
  const Said file_fails = run_failing("fsync:0", words);
  expect_refusal(file_fails, {"work/image: Input/output error"});
  EXPECT_EQ(files(), (std::map<std::string, std::string>{{"image", "the old one"}}));
  const Said folder_fails = run_failing("fsync:1", words);
  expect_refusal(folder_fails, {"work/image: Input/output error"});
  EXPECT_EQ(files(), (std::map<std::string, std::string>{{"image", content_of(file("tree"))}}));
}

TEST_F(Faults, RecordsThatTheTraceFileDoesNotTakeAreTold) {
  const Words words{"--trace-file", work("trace"), "load", "frr", sample_};
  const Said said = run_failing("write:3", words);
  expect_refusal(said, {"cannot write " + work("trace") +
                        ": No space left on device; 1 of the trace's "
                        "records are lost"});
  const auto lines = [&](const std::string &path) {
    const Said read = run({"trace", path, "--level", "debug"});
    EXPECT_EQ(read.status, 0) << read.err;
    return std::count(read.out.begin(), read.out.end(), '\n');
  };
  EXPECT_EQ(lines(work("trace")) + 1, lines(file("trace")));
}

}  // namespace
