// The lock of a handle, which in a store is a transaction: taking it begins one, giving it up
// commits, and a lock that is lost any other way is a rollback.
#pragma once

#include <cstdint>

#include "kelp/embed.h"
#include "parts/lock.hpp"

namespace kelp {

// 0, or the code that error got; function names the caller in its text.
std::int32_t take_lock(kelp_handle *handle, LockMode mode, const char *function, kelp_error *error);

// Gives up the lock, with what was written undone or kept. The lock is gone whatever the result.
enum class Ending { commit, rollback };
std::int32_t end_lock(kelp_handle *handle, Ending ending, kelp_error *error);

// As a handle that is destroyed gives it up: what it wrote and did not commit is undone.
void give_up_lock(kelp_handle *handle);

}  // namespace kelp
