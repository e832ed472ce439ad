#include "views/progress.hpp"

#include <unistd.h>

#include <cstdio>

namespace tool {

Progress::Progress(bool wanted) : on_(wanted && isatty(STDERR_FILENO) == 1) {}

void Progress::show(const std::string &text) {
  if (!on_) return;
  std::fprintf(stderr, "\r%s\033[K", text.c_str());
  std::fflush(stderr);
  shown_ = true;
  next_ = Clock::now() + std::chrono::milliseconds(100);
}

void Progress::clear() {
  if (shown_) std::fprintf(stderr, "\r\033[K");
  shown_ = false;
}

std::string size_text(std::uint64_t bytes) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f MB", static_cast<double>(bytes) / 1e6);
  return text;
}

}  // namespace tool
