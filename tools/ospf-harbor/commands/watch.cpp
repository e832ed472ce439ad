// Prints what others commit to a store, as it is committed, or what a site sends to an engine.
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <thread>

#include "commands/command.hpp"
#include "commands/engine_words.hpp"
#include "ospf_replication/follower.hpp"
#include "ospf_tables/system_error.hpp"
#include "ospf_tables/tree.hpp"
#include "views/notes.hpp"
#include "views/watched_rows.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

struct WatchOptions {
  std::string path;
  std::string from;
  EngineWords engine;
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

// Tells what is in a store now and was not before: of the site that was chosen, or of each.
class Watch {
 public:
  explicit Watch(const WatchOptions &options) : options_(options) {}

  // False when nobody reads any more.
  bool look(Session &session) {
    std::map<Site, WatchedRows> now;
    session.reading([&] { read(session, now); });
    const bool is_first = std::exchange(is_first_, false);
    if (is_first) {
      std::size_t count = 0;
      for (const auto &[site, rows] : now) count += rows.size();
      std::fprintf(stderr, "watching %zu rows\n", count);
    } else {
      tell(session, now);
    }
    rows_ = std::move(now);
    return is_first || std::fflush(stdout) == 0;  // the program tells why
  }

 private:
  void read(Session &session, std::map<Site, WatchedRows> &now) const {
    if (session.is_site_chosen()) {
      now[session.site()] = watched_rows(session, options_.path);
      return;
    }
    for (const Site &site : sites_of(session)) {
      session.set_site(site);
      now[site] = watched_rows(session, options_.path);
    }
    session.set_site({});
  }
  void tell(const Session &session, const std::map<Site, WatchedRows> &now) const {
    std::set<Site> sites;
    for (const auto *both : {&rows_, &now}) {
      for (const auto &[site, rows] : *both) sites.insert(site);
    }
    const bool is_named =
        !session.is_site_chosen() && (sites.size() > 1 || !sites.contains(Site{}));
    const auto rows_of = [](const auto &all, const Site &site) -> const WatchedRows & {
      static const WatchedRows none;
      const auto there = all.find(site);
      return there == all.end() ? none : there->second;
    };
    for (const Site &site : sites) {
      print_changes(rows_of(rows_, site), rows_of(now, site), options_.json, stdout,
                    is_named ? std::optional(site) : std::nullopt);
    }
  }

  const WatchOptions &options_;
  std::map<Site, WatchedRows> rows_;
  bool is_first_ = true;
};

// A store without a name, which goes with the process.
std::unique_ptr<Session> nameless_store() {
  std::string folder =
      (std::filesystem::temp_directory_path() / "ospf-harbor-").string() + std::string(6, 'X');
  if (mkdtemp(folder.data()) == nullptr)
    throw cannot("make a folder", folder, std::strerror(errno));
  auto session = std::make_unique<Session>(folder + "/store", Session::Missing::is_made);
  session->set_site({});
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
  return session;
}

int watch_site(const WatchOptions &options, std::chrono::steady_clock::time_point end) {
  using namespace ospf_replication;
  const auto session = nameless_store();
  Engine engine(options.engine.engine);
  const auto inlet = make_inlet(engine, options.engine.site);
  Follower follower(*session, *inlet, options.engine.site, note);
  Watch watch(options);
  std::string said;
  while (options.seconds <= 0 || std::chrono::steady_clock::now() < end) {
    try {
      if (follower.turn(std::chrono::milliseconds(100)) && !watch.look(*session)) return 0;
    } catch (const CarrierFailure &failure) {
      const std::string words = engine.words_of(failure);
      if (said != words) note(words);
      said = words;
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
  }
  return 0;
}

int watch(Session &session, const WatchOptions &options) {
  const auto end = std::chrono::steady_clock::now() +
                   std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                       std::chrono::duration<double>(options.seconds));
  if (!options.from.empty()) {
    if (session.is_store()) throw UsageError("watch", "--store and --from", "both", "one of them");
    options.engine.check("watch");
    try {
      return watch_site(options, end);
    } catch (const ospf_replication::Refused &refused) {
      throw InputError("watch", refused.what());
    }
  }
  if (!session.is_store()) {
    throw UsageError("watch", "--store", "nothing", "the store to watch, or --from an engine");
  }
  Watch watch(options);
  if (!watch.look(session)) return 0;
  while (wait_for_commit(session, end, options.seconds > 0)) {
    if (!watch.look(session)) return 0;
  }
  return 0;
}

Run set_up_watch(CLI::App &app) {
  const auto options = std::make_shared<WatchOptions>();
  app.add_option("PATH", options->path, "Rows by kind and key, as show has it; all without it");
  app.add_option("--from", options->from,
                 "The engine that a site sends to, nats://HOST[:PORT], instead of a store");
  options->engine.add_to(app);
  app.add_flag("--json", options->json, "One JSON object a line");
  app.add_option("--seconds", options->seconds,
                 "How long to watch; until a signal ends it without this")
      ->check(CLI::Range(0.001, 4000000.0));
  return [options](Session *session) {
    options->engine.engine.url = options->from;
    return watch(*session, *options);
  };
}

}  // namespace

extern const Command watch_command;
const Command watch_command{"watch", "Print what changes in a store, or at a site, as it does",
                            Needs::session, set_up_watch, Stands::on_the_command_line};

}  // namespace tool
