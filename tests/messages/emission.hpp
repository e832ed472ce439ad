// What a piece of code traces when it runs in a child process of its own: each message with its
// index and its arguments as they went out, and how the child ended. A child may end by abort(),
// and leaves nothing behind in the process of the test, so that the code that it runs need not tidy
// up.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace messages {

struct Emission {
  std::uint8_t identity[16];
  std::uint32_t index;
  std::uint32_t level;
  std::string signature;
  std::vector<std::string> arguments;  // numbers in decimal, pointers in hexadecimal
};

struct Outcome {
  bool ended = false;    // the code ran to its end, and no expectation in it failed
  bool aborted = false;  // by abort()
  std::vector<Emission> emissions;
  bool has_stated_arguments = false;
  std::vector<std::string> stated_arguments;
  std::string complaints;  // what the child wrote to standard error
};

Outcome in_child(const std::function<void()> &code);

// Called by the code in the child: what the arguments of the message have to be. Also forgets what
// was traced before, so that only what follows counts.
void arguments_are(std::initializer_list<std::string> arguments);

std::string number(std::uint32_t value);
std::string pointer(const void *value);

}  // namespace messages
