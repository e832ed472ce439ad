// A store beside a private database, in one run: a million rows made, inserted, walked and looked
// up; commits of one changed row, durable ones beside LMDB's of the same bytes; how long it takes
// until another process sees a change; and opening a large store. Rows are timed in processor time
// of this process, user and system, and so are not falsified by a busy machine; commits, changes
// and opening in real time, of which medians are told. A counter "x ..." is a ratio within the run.
#include <benchmark/benchmark.h>
#include <kelp/primitives.h>
#include <lmdb.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>

#include "areas.hpp"
#include "processor_time.hpp"
#include "support/temporary_folder.hpp"

namespace {

using bench::Areas;
using bench::processor_seconds;
using Clock = std::chrono::steady_clock;

double seconds_since(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

// --- rows ---------------------------------------------------------------------------------------

enum Work { making, inserting, walking, looking_up, works };

// The processor time of each work on a million rows, made in one transaction.
std::vector<double> times_of(Areas &areas) {
  std::vector<double> times(works);
  const auto timed = [&](Work work, auto act) {
    const double start = processor_seconds();
    act();
    times[work] = processor_seconds() - start;
  };
  timed(making, [&] { areas.make(); });
  timed(inserting, [&] { areas.insert(); });
  timed(walking, [&] { bench::require(areas.walk() == bench::area_count ? 0 : 2); });
  timed(looking_up, [&] { benchmark::DoNotOptimize(areas.look_up()); });
  areas.destroy();
  return times;
}

struct Least {
  std::vector<double> own = std::vector<double>(works, 1e9);
  std::vector<double> stored = own;
};

// In turns, so that both meet the same machine; the least of each counts.
const Least &least_times() {
  static const Least least = [] {
    Least times;
    const auto keep = [](std::vector<double> &of, const std::vector<double> &found) {
      for (int work = 0; work < works; ++work) of[work] = std::min(of[work], found[work]);
    };
    for (int turn = 0; turn < 3; ++turn) {
      Areas areas;
      keep(times.own, times_of(areas));
      const TemporaryFolder folder;
      Areas in_store(folder.file("store"));
      keep(times.stored, times_of(in_store));
    }
    return times;
  }();
  return least;
}

void a_million_rows(benchmark::State &state, Work work) {
  const Least &least = least_times();
  for (auto _ : state) state.SetIterationTime(least.stored[work]);
  state.counters["ns_each"] = least.stored[work] * 1e9 / bench::area_count;
  state.counters["x private"] = least.stored[work] / least.own[work];
}
#define ROWS(work)                              \
  BENCHMARK_CAPTURE(a_million_rows, work, work) \
      ->UseManualTime()                         \
      ->Iterations(1)                           \
      ->Unit(benchmark::kMillisecond)
ROWS(making);
ROWS(inserting);
ROWS(walking);
ROWS(looking_up);
#undef ROWS

// --- commits ------------------------------------------------------------------------------------

// A table of interfaces, of which one is changed at a time.
class Interfaces {
 public:
  static constexpr std::uint32_t count = 1000;

  Interfaces(const std::string &file, std::uint32_t durability) : store(file, durability) {
    std::uint32_t err = 0;
    store.lock_write();
    table = tbl_ospf_interface_table_open(store, 0, "interfaces", 0, &err);
    for (std::uint32_t number = 0; number < count; ++number) {
      auto *record = tbl_ospf_interface_create_record(store, 0, &err);
      ospf_interface *object = ospf_interface_create(store, 0);
      const std::string name = "eth" + std::to_string(number);
      kelp_vstring text{};
      kelp_vstring_assign(store, 0, &text, name.data(), name.size(), &err);
      ospf_interface_name_set(store, 0, object, &text, &err);
      kelp_vstring_destroy_internal(store, 0, &text, 0);
      tbl_ospf_interface_ospf_interface_set_field(store, 0, record, object);
      tbl_ospf_interface_insert(store, 0, table, record, &err);
      objects.push_back(object);
    }
    store.unlock();
    bench::require(err);
  }
  void change(std::uint32_t number) {
    std::uint32_t err = 0;
    ospf_interface_cost_set_value(store, 0, objects[number % count],
                                  static_cast<std::uint16_t>(number), &err);
    bench::require(err);
  }
  // Seconds from taking the lock to the commit's end.
  double commit_one(std::uint32_t number) {
    const auto start = Clock::now();
    store.lock_write();
    change(number);
    store.unlock();
    return seconds_since(start);
  }

  bench::Store store;
  tbl_ospf_interface_table *table = nullptr;
  std::vector<ospf_interface *> objects;
};

void commit_one_row(benchmark::State &state) {
  const TemporaryFolder folder;
  Interfaces rows(folder.file("store"), KELP_DURABILITY_PROCESS);
  std::vector<double> times;
  for (auto _ : state) {
    times.push_back(rows.commit_one(static_cast<std::uint32_t>(times.size())));
    state.SetIterationTime(times.back());
  }
  state.counters["median_us"] = median(times) * 1e6;
}
BENCHMARK(commit_one_row)->UseManualTime()->Iterations(100'000)->Unit(benchmark::kMicrosecond);

// The same bytes in LMDB, as it is when nothing is asked of it: a commit is on the disk.
class Lmdb {
 public:
  explicit Lmdb(const std::string &folder) : value_(ospf_interface_size()) {
    require(mdb_env_create(&env_));
    require(mdb_env_set_mapsize(env_, std::size_t{1} << 30));
    require(mdb_env_open(env_, folder.c_str(), 0, 0600));
    MDB_txn *txn = nullptr;
    require(mdb_txn_begin(env_, nullptr, 0, &txn));
    require(mdb_dbi_open(txn, nullptr, MDB_INTEGERKEY, &dbi_));
    for (std::uint32_t number = 0; number < Interfaces::count; ++number) put(txn, number);
    require(mdb_txn_commit(txn));
  }
  ~Lmdb() { mdb_env_close(env_); }
  Lmdb(const Lmdb &) = delete;
  Lmdb &operator=(const Lmdb &) = delete;

  double commit_one(std::uint32_t number) {
    const auto start = Clock::now();
    MDB_txn *txn = nullptr;
    require(mdb_txn_begin(env_, nullptr, 0, &txn));
    put(txn, number);
    require(mdb_txn_commit(txn));
    return seconds_since(start);
  }

 private:
  static std::size_t ospf_interface_size() {
    const bench::Store any;
    return ospf_interface_sizeof(any);
  }
  static void require(int code) { bench::require(static_cast<std::uint32_t>(code)); }
  void put(MDB_txn *txn, std::uint32_t number) {
    std::uint32_t key = number % Interfaces::count;
    std::memcpy(value_.data(), &number, sizeof number);
    MDB_val at{sizeof key, &key};
    MDB_val bytes{value_.size(), value_.data()};
    require(mdb_put(txn, dbi_, &at, &bytes, 0));
  }

  MDB_env *env_ = nullptr;
  MDB_dbi dbi_ = 0;
  std::vector<char> value_;
};

// In turns: the disk is others' too.
void durable_commit_of_one_row(benchmark::State &state) {
  const TemporaryFolder folder;
  Interfaces rows(folder.file("store"), KELP_DURABILITY_POWER);
  Lmdb lmdb(folder.path().string());
  std::vector<double> times;
  std::vector<double> theirs;
  for (auto _ : state) {
    times.push_back(rows.commit_one(static_cast<std::uint32_t>(times.size())));
    theirs.push_back(lmdb.commit_one(static_cast<std::uint32_t>(theirs.size())));
    state.SetIterationTime(times.back());
  }
  state.counters["median_us"] = median(times) * 1e6;
  state.counters["LMDB_us"] = median(theirs) * 1e6;
  state.counters["x LMDB"] = median(times) / median(theirs);
}
BENCHMARK(durable_commit_of_one_row)
    ->UseManualTime()
    ->Iterations(500)
    ->Unit(benchmark::kMicrosecond);

// --- until another process sees a change --------------------------------------------------------

double now() { return std::chrono::duration<double>(Clock::now().time_since_epoch()).count(); }

// One way of a word to another process, which says when it heard it.
class Pipe {
 public:
  Pipe() { bench::require(pipe(ends_) == 0 ? 0 : 5); }
  ~Pipe() {
    close(ends_[0]);
    close(ends_[1]);
  }
  Pipe(const Pipe &) = delete;
  Pipe &operator=(const Pipe &) = delete;
  void give(double word) const { bench::require(write(ends_[1], &word, sizeof word) > 0 ? 0 : 5); }
  double take() const {
    double word = 0;
    bench::require(read(ends_[0], &word, sizeof word) == sizeof word ? 0 : 5);
    return word;
  }

 private:
  int ends_[2] = {-1, -1};
};

// Sleeps until there is a change, looks at it, and says when it had it.
void watch_store(const std::string &file, const Pipe &heard, int changes) {
  bench::Store store(file);
  std::uint32_t err = 0;
  store.lock_read();
  auto *table = reinterpret_cast<kelp_table *>(
      tbl_ospf_interface_table_open(store, 0, "interfaces", 1, &err));
  kelp_feed_cursor *cursor = kelp_feed_cursor_open(store, table, nullptr);
  kelp_feed_change change{};
  while (kelp_feed_cursor_next(cursor, &change) != 0) {
  }
  store.unlock();
  heard.give(0);
  for (int seen = 0; seen < changes; ++seen) {
    bench::require(kelp_feed_wait(store, cursor, UINT32_MAX, nullptr) == 0 ? 0 : 5);
    store.lock_read();
    while (kelp_feed_cursor_next(cursor, &change) != 0) {
    }
    const double when = now();
    store.unlock();
    heard.give(when);
  }
  kelp_feed_cursor_close(cursor);
}

// Runs act in another process and gives its id.
template <typename Act>
pid_t another_process(Act act) {
  const pid_t process = fork();
  if (process != 0) return process;
  act();
  _exit(0);
}

// The null line: a byte through a pipe to a process that sleeps on it.
double median_through_pipe(int count) {
  const Pipe there;
  const Pipe back;
  const pid_t process = another_process([&] {
    for (int at = 0; at < count; ++at) {
      there.take();
      back.give(now());
    }
  });
  std::vector<double> times;
  for (int at = 0; at < count; ++at) {
    usleep(1000);
    const double start = now();
    there.give(0);
    times.push_back(back.take() - start);
  }
  waitpid(process, nullptr, 0);
  return median(times);
}

void until_another_process_sees_a_change(benchmark::State &state) {
  const auto count = static_cast<int>(state.max_iterations);
  const TemporaryFolder folder;
  const std::string file = folder.file("store");
  const Pipe filled;
  const Pipe heard;
  // Its own before this process has the store open, whose addresses it would have too.
  const pid_t watcher = another_process([&] {
    filled.take();
    watch_store(file, heard, count);
  });
  Interfaces rows(file, KELP_DURABILITY_PROCESS);
  auto *table = reinterpret_cast<kelp_table *>(rows.table);
  rows.store.lock_write();
  bench::require(kelp_table_enable_cursors(rows.store, table, 1, nullptr) == 0 ? 0 : 5);
  rows.store.unlock();
  filled.give(0);
  heard.take();
  std::uint32_t err = 0;
  auto *record = tbl_ospf_interface_ospf_interface_name_get_first(rows.store, 0, rows.table, &err);
  std::vector<double> times;
  for (auto _ : state) {
    usleep(1000);  // it sleeps by then
    rows.store.lock_write();
    rows.change(static_cast<std::uint32_t>(times.size()));
    kelp_feed_record_changed(rows.store, table, reinterpret_cast<kelp_record *>(record), nullptr);
    const double start = now();
    rows.store.unlock();
    times.push_back(heard.take() - start);
    state.SetIterationTime(times.back());
  }
  waitpid(watcher, nullptr, 0);
  state.counters["median_us"] = median(times) * 1e6;
  const double line = median_through_pipe(count);
  state.counters["pipe_us"] = line * 1e6;
  state.counters["x pipe"] = median(times) / line;
}
BENCHMARK(until_another_process_sees_a_change)
    ->UseManualTime()
    ->Iterations(2000)
    ->Unit(benchmark::kMicrosecond);

// --- opening ------------------------------------------------------------------------------------

void fill(const std::string &file, std::uint64_t size) {
  bench::Store store(file);
  std::uint32_t err = 0;
  const std::vector<std::uint8_t> data(16'000, 7);
  store.lock_write();
  auto *table = tbl_link_scope_lsa_table_open(store, 0, "lsas", 0, &err);
  for (std::uint32_t id = 0; std::filesystem::file_size(file) < size; ++id) {
    auto *record = tbl_link_scope_lsa_create_record(store, 0, &err);
    link_scope_lsa_key *key = link_scope_lsa_key_create(store, 0);
    link_scope_lsa_key_lsa_id_set_value(store, 0, key, id, &err);
    tbl_link_scope_lsa_link_scope_lsa_key_set_field(store, 0, record, key);
    link_scope_lsa *object = link_scope_lsa_create(store, 0);
    link_scope_lsa_raw_data_set_mem(store, 0, object, data.data(),
                                    static_cast<std::uint32_t>(data.size()), &err);
    tbl_link_scope_lsa_link_scope_lsa_set_field(store, 0, record, object);
    tbl_link_scope_lsa_insert(store, 0, table, record, &err);
    bench::require(err);
  }
  store.unlock();
}

// To the first lock, by which all of it can be read. Who opens it first has the mark of a store in
// use synced; beside another process that has it open nothing is.
void open_store_of_1_gb(benchmark::State &state) {
  const TemporaryFolder folder;
  const std::string file = folder.file("store");
  fill(file, std::uint64_t{1} << 30);
  const Pipe ready;
  const Pipe done;
  pid_t other = 0;
  if (state.range(0) != 0) {
    other = another_process([&] {
      const bench::Store store(file);
      ready.give(0);
      done.take();
    });
    ready.take();
  }
  std::vector<double> times;
  for (auto _ : state) {
    const auto start = Clock::now();
    bench::Store store(file);
    store.lock_read();
    times.push_back(seconds_since(start));
    store.unlock();
    state.SetIterationTime(times.back());
  }
  if (other != 0) {
    done.give(0);
    waitpid(other, nullptr, 0);
  }
  state.counters["median_ms"] = median(times) * 1e3;
}
BENCHMARK(open_store_of_1_gb)
    ->ArgName("beside_another")
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Iterations(50)
    ->Unit(benchmark::kMillisecond);

}  // namespace
