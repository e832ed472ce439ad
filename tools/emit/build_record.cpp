#include "build_record.hpp"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <stdexcept>

namespace emit {

namespace fs = std::filesystem;

namespace {

struct Circumstances {
  std::string user;
  std::string host;
  long process;
  std::timespec time;
  std::string build;
  std::string generator;
};

const fs::path generator_folder = "tools/emit";

std::optional<std::time_t> source_date() {
  const char *value = std::getenv("SOURCE_DATE_EPOCH");
  if (value == nullptr) return std::nullopt;
  const std::string_view digits = value;
  std::time_t seconds = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
  if (error != std::errc{} || end != digits.data() + digits.size() || seconds < 0) {
    throw std::runtime_error("SOURCE_DATE_EPOCH is \"" + std::string(digits) +
                             "\", expected seconds since 1970 in decimal");
  }
  return seconds;
}

std::string user_name() {
  const passwd *entry = getpwuid(geteuid());
  return entry != nullptr ? entry->pw_name : std::to_string(geteuid());
}

std::string host_name() {
  std::array<char, 257> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "unknown";
}

Circumstances of_this_run(const BuildFolders &folders) {
  std::timespec now{};
  std::timespec_get(&now, TIME_UTC);
  return {user_name(),
          host_name(),
          getpid(),
          now,
          folders.build.string(),
          (folders.project / generator_folder).string()};
}

Circumstances of_the_source(const BuildFolders &folders, std::time_t date) {
  const fs::path build = folders.build.lexically_relative(folders.project);
  const bool inside = !build.empty() && *build.begin() != "..";
  return {"withheld",
          "withheld",
          0,
          {date, 0},
          inside ? build.string() : "elsewhere",
          generator_folder.string()};
}

std::string utc(const std::timespec &time) {
  std::tm parts{};
  if (gmtime_r(&time.tv_sec, &parts) == nullptr) {
    throw std::runtime_error("no calendar date for second " + std::to_string(time.tv_sec));
  }
  std::array<char, 64> date{};
  std::strftime(date.data(), date.size(), "%Y-%m-%d %H:%M:%S", &parts);
  const std::string fraction = std::to_string(time.tv_nsec);
  return std::string(date.data()) + "." + std::string(9 - fraction.size(), '0') + fraction + " UTC";
}

// One item a line: a line break in a name must not make another.
std::string item(const std::string &label, std::string value) {
  for (char &letter : value) {
    if (std::iscntrl(static_cast<unsigned char>(letter)) != 0) letter = '?';
  }
  return label + ": " + value + "\n";
}

}  // namespace

std::string build_record(const BuildFolders &folders) {
  const std::optional<std::time_t> date = source_date();
  const Circumstances is = date ? of_the_source(folders, *date) : of_this_run(folders);
  return "ospf_harbor_oper\n" + item("built by", is.user) + item("on host", is.host) +
         item("pid", std::to_string(is.process)) + item("at", utc(is.time)) +
         item("comment", "build directory " + is.build + ", generator " + is.generator);
}

}  // namespace emit
