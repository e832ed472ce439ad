// The syncs that the system is asked for by this program's process: what hears of each, and which
// of them fail.
#pragma once

#include <functional>

namespace store_test {

// Called once a file or folder was synced, before whoever asked for it hears of that.
extern std::function<void(int file)> after_sync;

// Lets n syncs be and fails so many behind them.
void fail_syncs_from(long n, long count);

}  // namespace store_test
