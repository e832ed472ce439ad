#include "sources/sources.hpp"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "ospf_tables/input_error.hpp"
#include "router_answers/answer_file.hpp"
#include "router_answers/router.hpp"
#include "sources/answers.hpp"
#include "sources/load_capture.hpp"
#include "sources/tree_file.hpp"
#include "tree_exchange/file_descriptor.hpp"
#include "tree_exchange/files.hpp"
#include "tree_exchange/stream_format.hpp"
#include "usage_error.hpp"

namespace tool {

using namespace ospf_tables;
using namespace tree_exchange;

namespace {

namespace fs = std::filesystem;

bool is_capture_name(fs::path file) {
  if (file.extension() == ".gz") file = file.stem();
  const std::string extension = file.extension().string();
  return extension == ".pcap" || extension == ".pcapng" || extension == ".cap";
}

// What a folder holds that is not a router's own: captures, or else folders of routers.
void look_into(const std::string &folder, std::vector<std::string> &captures,
               std::vector<std::string> &routers) {
  std::vector<std::string> files;
  std::vector<std::string> folders;
  for (const auto &entry : fs::directory_iterator(folder)) {
    const std::string path = entry.path().string();
    if (is_capture_name(entry.path())) files.push_back(path);
    if (entry.is_directory() && router_answers::is_router(path)) folders.push_back(path);
  }
  if (files.empty() && folders.empty()) {
    throw InputError(folder, "", "a folder with none",
                     "captures (.pcap, .pcapng, .cap), a daemon's answers (ip-ospf.json, "
                     "NAME-lsadb.txt, ...) or folders with such answers");
  }
  std::sort(files.begin(), files.end());
  std::sort(folders.begin(), folders.end());
  captures.insert(captures.end(), files.begin(), files.end());
  if (files.empty()) routers.insert(routers.end(), folders.begin(), folders.end());
}

bool starts_as_xml(const Bytes &start) {
  const std::string_view text(reinterpret_cast<const char *>(start.data()), start.size());
  const std::size_t mark = text.find_first_not_of(" \t\r\n");
  return mark != text.npos && text[mark] == '<';
}

// What the files of packet capture tools start with, in either byte order.
bool is_capture(const Bytes &start) {
  constexpr std::array<std::uint8_t, 4> marks[] = {{0xa1, 0xb2, 0xc3, 0xd4},
                                                   {0xd4, 0xc3, 0xb2, 0xa1},
                                                   {0xa1, 0xb2, 0x3c, 0x4d},
                                                   {0x4d, 0x3c, 0xb2, 0xa1},
                                                   {0x0a, 0x0d, 0x0d, 0x0a}};
  return std::any_of(std::begin(marks), std::end(marks), [&](const auto &mark) {
    return start.size() >= mark.size() && std::equal(mark.begin(), mark.end(), start.begin());
  });
}

bool is_packed(const Bytes &start) {
  return start.size() >= 2 && start[0] == 0x1f && start[1] == 0x8b;
}

// A source's octets where they can be read several times: in its file, or in memory when they come
// from standard input or are packed.
class OpenedSource {
 public:
  explicit OpenedSource(std::string name) : name_(std::move(name)), place_(name_) {
    const bool is_input = name_ == "-";
    if (!is_input && !is_packed(first_bytes(name_, 2))) return;
    const std::string octets =
        router_answers::read_answer(is_input ? "/dev/stdin" : name_, "a file packed by gzip");
    memory_ = FileDescriptor(memfd_create("source", MFD_CLOEXEC));
    place_ = "/proc/self/fd/" + std::to_string(memory_.get());
    std::ofstream out(place_, std::ios::binary);
    out << octets;
    if (!memory_.is_open() || !out.flush()) throw InputError(name_, "no memory for what it holds");
  }

  const std::string &name() const { return name_; }
  const std::string &place() const { return place_; }

 private:
  std::string name_;
  std::string place_;
  FileDescriptor memory_;
};

// Instances of one key do not stand side by side.
void tell_replaced(Session &session) {
  for (const std::string &key : session.take_replaced()) {
    std::fprintf(stderr,
                 "ospf-harbor: --from: instance %s of one source gave way to that of another; "
                 "captures given together, or routers' folders, are read as one network\n",
                 key.c_str());
  }
}

}  // namespace

int load_sources(Session &session, const std::vector<std::string> &sources,
                 const SourceOptions &options) {
  const auto has_no_times = [&](const std::string &source) {
    if (options.at.empty()) return;
    throw UsageError("--at", "", source, "captures, which alone tell of times");
  };
  std::vector<std::string> folders;
  std::vector<OpenedSource> files;
  session.take_replaced();
  for (const std::string &source : sources) {
    tell_replaced(session);
    if (source != "-" && fs::is_directory(source)) {
      if (router_answers::is_router(source)) {
        has_no_times(source);
        folders.push_back(source);
      } else {
        std::vector<std::string> captures;
        look_into(source, captures, folders);
        for (const std::string &capture : captures) files.emplace_back(capture);
        if (!folders.empty()) has_no_times(source);
      }
      continue;
    }
    OpenedSource file(source);
    const Bytes start = first_bytes(file.place(), 64);
    if (is_stream(start)) {
      has_no_times(source);
      import_tree(session, TreeForm::image, file.place(), source);
    } else if (starts_as_xml(start)) {
      has_no_times(source);
      import_tree(session, TreeForm::xml, file.place(), source);
    } else if (is_capture(start)) {
      files.push_back(std::move(file));
    } else {
      throw InputError(source, "", "a file of no known kind",
                       "a capture (pcap or pcapng), a tree stream or a tree's XML");
    }
  }
  tell_replaced(session);
  if (!folders.empty()) load_routers(session, folders, options.heard);
  tell_replaced(session);
  if (files.empty()) return 0;
  CaptureOptions capture{{}, "", 0, options.at, options.heard, false, options.as_heard};
  for (const OpenedSource &file : files) {
    capture.files.push_back(file.place());
    capture.names.push_back(file.name());
  }
  const int status = load_capture(session, capture, nullptr);
  tell_replaced(session);
  return status;
}

}  // namespace tool
