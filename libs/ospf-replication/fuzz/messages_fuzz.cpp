// libFuzzer target: messages into a follower's tables. A finding is a sanitizer's, or a text about
// what was not done with what was taken.
#include <cstdio>

#include "fuzz_input.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::string wrong = ospf_replication::run_fuzz_input({data, size});
  if (wrong.empty()) return 0;
  std::fprintf(stderr, "%s\n", wrong.c_str());
  __builtin_trap();
}
