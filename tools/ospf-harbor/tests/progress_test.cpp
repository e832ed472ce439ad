// How far long work is: on a terminal, here a pseudo terminal, and only when it lasts.
#include "views/progress.hpp"

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>

namespace {

// Works for so long with a terminal for standard error, and gives what was shown there.
std::string shown_in(std::chrono::milliseconds lasts, bool wanted) {
  int terminal = -1;
  const pid_t worker = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (worker == 0) {
    {
      tool::Progress progress(wanted);
      const auto end = std::chrono::steady_clock::now() + lasts;
      for (int done = 0; std::chrono::steady_clock::now() < end; ++done) {
        if (progress.is_due()) progress.show(std::to_string(done) + " done");
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
      }
    }
    _exit(0);
  }
  std::string shown;
  char part[256];
  for (ssize_t length = 0; (length = read(terminal, part, sizeof part)) > 0;) {
    shown.append(part, static_cast<std::size_t>(length));
  }
  close(terminal);
  waitpid(worker, nullptr, 0);
  return shown;
}

TEST(Progress, IsShownOnATerminalWhenWorkLastsAndGoesWithIt) {
  using namespace std::chrono_literals;
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
