// How far long work is, on standard error: on a terminal alone, and only when it lasts.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace tool {

class Progress {
 public:
  // wanted: false where something else on the terminal is progress enough.
  explicit Progress(bool wanted = true);
  ~Progress() { clear(); }
  Progress(const Progress &) = delete;
  Progress &operator=(const Progress &) = delete;

  // Half a second after the start, and ten times a second from then on.
  bool is_due() const { return on_ && Clock::now() >= next_; }
  // In place of what was shown last. For a text that costs something ask is_due() first.
  void show(const std::string &text);
  void clear();

 private:
  using Clock = std::chrono::steady_clock;

  bool on_;
  bool shown_ = false;
  Clock::time_point next_ = Clock::now() + std::chrono::milliseconds(500);
};

// "3.2 MB"
std::string size_text(std::uint64_t bytes);

}  // namespace tool
