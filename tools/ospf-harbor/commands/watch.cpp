// Prints what others commit to a store, as it is committed.
#include <cerrno>
#include <chrono>
#include <cmath>
#include <memory>

#include "commands/command.hpp"
#include "views/watched_rows.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

struct WatchOptions {
  std::string path;
  bool json = false;
  double seconds = 0;
};

// Sleeps until somebody has committed; false when the time is over.
bool wait_for_commit(Session &session, std::chrono::steady_clock::time_point end, bool has_end) {
  std::uint32_t milliseconds = UINT32_MAX;
  if (has_end) {
    const std::chrono::duration<double, std::milli> left = end - std::chrono::steady_clock::now();
    if (left.count() <= 0) return false;
    milliseconds = static_cast<std::uint32_t>(std::ceil(left.count()));
  }
  kelp_error error{};
  const std::int32_t code = kelp_feed_wait(session.handle(), nullptr, milliseconds, &error);
  if (code != 0 && code != ETIMEDOUT) throw LibraryFailure(error.text);
  return code == 0;
}

int watch(Session &session, const WatchOptions &options) {
  if (!session.is_store()) {
    throw UsageError("watch", "--store", "nothing", "the store to watch");
  }
  const auto end = std::chrono::steady_clock::now() +
                   std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                       std::chrono::duration<double>(options.seconds));
  WatchedRows rows;
  session.reading([&] { rows = watched_rows(session, options.path); });
  std::fprintf(stderr, "watching %zu rows\n", rows.size());
  while (wait_for_commit(session, end, options.seconds > 0)) {
    WatchedRows now;
    session.reading([&] { now = watched_rows(session, options.path); });
    print_changes(rows, now, options.json, stdout);
    if (std::fflush(stdout) != 0) return 0;  // the program tells why
    rows = std::move(now);
  }
  return 0;
}

Run set_up_watch(CLI::App &app) {
  const auto options = std::make_shared<WatchOptions>();
  app.add_option("PATH", options->path, "Rows by kind and key, as show has it; all without it");
  app.add_flag("--json", options->json, "One JSON object a line");
  app.add_option("--seconds", options->seconds,
                 "How long to watch; until a signal ends it without this")
      ->check(CLI::Range(0.001, 4000000.0));
  return [options](Session *session) { return watch(*session, *options); };
}

}  // namespace

extern const Command watch_command;
const Command watch_command{"watch", "Print what other processes change in a store, as they do",
                            Needs::session, set_up_watch, Stands::on_the_command_line};

}  // namespace tool
