// How far long work is: on a terminal, here a pseudo terminal, and only when it lasts.
#include "views/progress.hpp"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <thread>

#include "support/processes.hpp"
#include "terminal.hpp"

namespace {

using namespace std::chrono_literals;

// Works in a process that has a terminal for standard error, and gives what was shown there.
// Parent: what is done here meanwhile.
std::string shown_by(const std::function<void()> &work, const std::function<void()> &parent = {}) {
  int terminal = -1;
  const pid_t worker = tool_tests::fork_at_terminal(terminal);
  if (worker == 0) {
    work();
    _exit(0);
  }
  if (parent) parent();
  std::string shown;
  char part[256];
  for (ssize_t length = 0; (length = read(terminal, part, sizeof part)) > 0;) {
    shown.append(part, static_cast<std::size_t>(length));
  }
  close(terminal);
  waitpid(worker, nullptr, 0);
  return shown;
}

// Of work that lasts so long.
std::string shown_in(std::chrono::milliseconds lasts, bool wanted) {
  return shown_by([&] {
    tool::Progress progress(wanted);
    const auto end = std::chrono::steady_clock::now() + lasts;
    for (int done = 0; std::chrono::steady_clock::now() < end; ++done) {
      if (progress.is_due()) progress.show(std::to_string(done) + " done");
      std::this_thread::sleep_for(5ms);
    }
  });
}

// The tool at a terminal, with a pipe in the place of its standard input or output.
class PipedTool {
 public:
  // end: what the tool has of the pipe, 0 to read and 1 to write.
  explicit PipedTool(int end) : end_(end) {
    if (pipe(ends_) != 0) throw std::runtime_error("no pipe");
    fcntl(ends_[0], F_SETPIPE_SZ, 4096);
  }

  // parent: is given the other end.
  std::string shown(std::vector<std::string> words, const std::function<void(int end)> &parent) {
    words.insert(words.begin(), places::tool());
    std::vector<char *> arguments;
    for (std::string &word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const auto tool = [&] {
      dup2(ends_[end_], end_);
      close(ends_[0]);
      close(ends_[1]);
      execv(arguments[0], arguments.data());
      _exit(127);
    };
    return shown_by(tool, [&] {
      close(ends_[end_]);
      parent(ends_[1 - end_]);
      close(ends_[1 - end_]);
    });
  }

 private:
  int end_;
  int ends_[2];
};

class ProgressOfTheTool : public tool_tests::ProcessTest {};

// Whoever gives or takes the bytes takes longer than half a second over it.
TEST_F(ProgressOfTheTool, IsShownWhereTreesAreReadAndWritten) {
  expect_done({"export", "--image", file("tree"), "--from", sample_});
  const std::string image = content_of(file("tree"));
  PipedTool import(0);
  const std::string read_words = import.shown({"import", "--image", "/dev/stdin"}, [&](int end) {
    constexpr std::size_t some = 100;
    EXPECT_EQ(write(end, image.data(), some), static_cast<ssize_t>(some));
    std::this_thread::sleep_for(700ms);
    EXPECT_EQ(write(end, image.data() + some, image.size() - some),
              static_cast<ssize_t>(image.size() - some));
  });
  EXPECT_NE(read_words.find("\r/dev/stdin: 0.0 MB read\033[K\r\033[K"), std::string::npos)
      << read_words;
  EXPECT_NE(read_words.find("imported "), std::string::npos) << read_words;

  PipedTool export_it(1);
  const std::string written =
      export_it.shown({"export", "--xml", "/dev/stdout", "--from", sample_}, [](int end) {
        char part[1024];
        EXPECT_GT(read(end, part, sizeof part), 0);
        std::this_thread::sleep_for(700ms);
        while (read(end, part, sizeof part) > 0) {
        }
      });
  EXPECT_NE(written.find("\r/dev/stdout: 0."), std::string::npos) << written;
  EXPECT_NE(written.find(" MB written\033[K\r\033[K"), std::string::npos) << written;
}

TEST(Progress, IsShownOnATerminalWhenWorkLastsAndGoesWithIt) {
  const std::string shown = shown_in(900ms, true);
  EXPECT_EQ(shown.rfind("\r", 0), 0u) << shown;
  EXPECT_NE(shown.find(" done\033[K"), std::string::npos) << shown;
  EXPECT_TRUE(shown.ends_with("\r\033[K")) << shown;
  // Ten times a second, after half a second.
  const auto times = std::count(shown.begin(), shown.end(), 'd');
  EXPECT_GE(times, 2);
  EXPECT_LE(times, 5);
  EXPECT_EQ(shown_in(200ms, true), "");
  EXPECT_EQ(shown_in(700ms, false), "");
}

}  // namespace
