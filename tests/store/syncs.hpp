// What the system is asked for by this program's process: what hears of each sync and of each
// request for room, and which syncs fail.
#pragma once

#include <functional>

namespace store_test {

// Called once a file or folder was synced, before whoever asked for it hears of that.
extern std::function<void(int file)> after_sync;

// Called before the system is asked for room in a file.
extern std::function<void()> before_room;

// Lets n syncs be and fails so many behind them.
void fail_syncs_from(long n, long count);

}  // namespace store_test
