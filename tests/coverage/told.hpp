// Included before all sources of a build that counts: each library tells what stands before the C
// library (ends.cpp) how its counts are written, since each has a function of its own for that.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif
void __gcov_dump(void);
__attribute__((weak, visibility("default"))) void harbor_counts_are_written_by(void (*write)(void));
#ifdef __cplusplus
}
#endif

__attribute__((constructor)) static void harbor_tell_of_counts(void) {
  if (harbor_counts_are_written_by != 0) harbor_counts_are_written_by(&__gcov_dump);
}
