// The assertion that ends a process.
#include <cstdio>
#include <cstdlib>

#include "kelp/core.h"
#include "kelp/trace.h"

extern "C" void bassert(const char *expression, const char *source, int line) {
  std::fprintf(stderr, "assertion failed: %s, at %s:%d\n",
               expression == nullptr ? "(no expression)" : expression,
               source == nullptr ? "(no source)" : source, line);
  kelp_trace_flush();
  std::abort();
}
