// Fails one call of a kind of the C library.
#pragma once

namespace failing {

enum Kind : unsigned { malloc_calls, mmap_calls, write_calls, fsync_calls };
inline constexpr unsigned kinds = 4;

// Lets this many calls succeed and fails the one after; a negative number fails none.
void fail_after(Kind kind, long calls);

// Whether the call that was to fail has come.
bool has_struck(Kind kind);

}  // namespace failing
