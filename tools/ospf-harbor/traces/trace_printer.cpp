// Reading and following; what lines look like stands in trace_texts.
#include "traces/trace_printer.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>
#include <thread>

#include "ospf_tables/system_error.hpp"
#include "traces/library_file.hpp"
#include "traces/own_library.hpp"
#include "traces/trace_reader.hpp"
#include "traces/trace_texts.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

using Clock = std::chrono::steady_clock;

// How long a follower sleeps when there is nothing new. Polling works on every kind of file system.
constexpr std::chrono::milliseconds nap{50};

class TraceFileReader {
 public:
  explicit TraceFileReader(const std::string &path)
      : path_(path), descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (descriptor_ < 0) throw cannot("open", path, errno);
  }
  ~TraceFileReader() { close(descriptor_); }
  TraceFileReader(const TraceFileReader &) = delete;
  TraceFileReader &operator=(const TraceFileReader &) = delete;

  // Everything that is there now and was not read before.
  void read_on(TraceReader &reader) {
    std::uint8_t piece[64 * 1024];
    for (;;) {
      const ssize_t got = read(descriptor_, piece, sizeof piece);
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) throw cannot("read", path_, errno);
      if (got == 0) return;
      read_ += static_cast<std::uint64_t>(got);
      reader.add({piece, static_cast<std::size_t>(got)});
    }
  }

  // A file that was cut back would give records from the middle of others.
  void check_not_shorter() const {
    struct stat state {};
    if (fstat(descriptor_, &state) != 0 || !S_ISREG(state.st_mode)) return;
    if (static_cast<std::uint64_t>(state.st_size) >= read_) return;
    throw InputError(path_, "", "a file of " + std::to_string(state.st_size) + " bytes",
                     "the " + std::to_string(read_) + " bytes that were read, or more");
  }

 private:
  std::string path_;
  int descriptor_;
  std::uint64_t read_ = 0;
};

}  // namespace

int print_trace(const TraceOptions &options, std::ostream &out, std::ostream &complaints) {
  const std::uint8_t level = level_by_name("--level", options.level);
  const LibraryFile library(options.shared_object.empty() ? own_library() : options.shared_object);
  const auto texts = library.read([&] { return TraceTexts(library.path(), library.bytes()); });

  int status = 0;
  std::uint64_t hidden = 0;
  TraceReader reader(options.file, [&](const kelp_trace_event &event, std::uint64_t offset) {
    if (event.level > level) {
      ++hidden;
      return;
    }
    std::string complaint;
    out << texts.line(event, &complaint) << '\n';
    if (complaint.empty()) return;
    complaints << "ospf-harbor: " << options.file << ": byte " << offset << ": " << complaint
               << '\n';
    status = 1;
  });
  TraceFileReader file(options.file);
  const auto finish = [&] {
    reader.end();
    if (options.tells_hidden && hidden != 0) {
      complaints << "ospf-harbor: trace: "
                 << counted(hidden, "routine record is", "routine records are")
                 << " not shown; --level debug shows all\n";
    }
    const std::string passed_over = reader.passed_over();
    if (passed_over.empty()) return status;
    complaints << "ospf-harbor: " << in_one_line(passed_over) << '\n';
    return 1;
  };
  file.read_on(reader);
  if (!options.follow) return finish();
  const auto end = Clock::now() + std::chrono::duration<double>(options.seconds);
  while (options.seconds <= 0 || Clock::now() < end) {
    out.flush();
    std::this_thread::sleep_for(nap);
    file.check_not_shorter();
    file.read_on(reader);
  }
  return finish();
}

}  // namespace tool
