#include "harness/seen_calls.hpp"

#include <kelp/embed.h>

#include <cstdlib>
#include <set>

namespace harness {

namespace {

std::set<kelp_handle *> handles;
int watchers = 0;

bool works_inline() { return std::getenv("HARBOR_INLINE") != nullptr && watchers == 0; }

void settle() {
  for (kelp_handle *handle : handles) kelp_handle_set_inline(handle, works_inline() ? 1 : 0);
}

}  // namespace

void enter_handle(kelp_handle *handle) {
  handles.insert(handle);
  if (handle != nullptr && works_inline()) kelp_handle_set_inline(handle, 1);
}

void forget_handle(kelp_handle *handle) { handles.erase(handle); }

void begin_seeing_calls() {
  ++watchers;
  settle();
}

void end_seeing_calls() {
  --watchers;
  settle();
}

}  // namespace harness
