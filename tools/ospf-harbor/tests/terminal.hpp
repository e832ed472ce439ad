// A process of its own at a pseudo terminal, which stands where a person would.
#pragma once

#include <pty.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace tool_tests {

// As forkpty(). Throws where there are no pseudo terminals: what would be shown never comes then.
inline pid_t fork_at_terminal(int &terminal, const winsize *size = nullptr) {
  const pid_t id = forkpty(&terminal, nullptr, nullptr, size);
  if (id < 0) {
    throw std::runtime_error(std::string("no pseudo terminal (is /dev/pts mounted?): ") +
                             std::strerror(errno));
  }
  return id;
}

}  // namespace tool_tests
