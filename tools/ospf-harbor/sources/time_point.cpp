#include "sources/time_point.hpp"

#include <charconv>
#include <cstdio>
#include <ctime>
#include <optional>
#include <string_view>

#include "usage_error.hpp"

namespace tool {

using ospf_decode::Time;

namespace {

constexpr Time microsecond = ospf_decode::second / 1'000'000;

// "12" or "12.5".
std::optional<Time> parse_seconds(std::string_view text) {
  const std::size_t point = text.find('.');
  const std::string_view whole = text.substr(0, point);
  std::int64_t seconds = 0;
  const auto [end, error] = std::from_chars(whole.data(), whole.data() + whole.size(), seconds);
  constexpr std::int64_t most = 9'000'000'000;
  if (whole.empty() || error != std::errc() || end != whole.data() + whole.size() || seconds < 0 ||
      seconds > most) {
    return std::nullopt;
  }
  Time time = seconds * ospf_decode::second;
  if (point == text.npos) return time;
  const std::string_view rest = text.substr(point + 1);
  if (rest.empty() || rest.size() > 9) return std::nullopt;
  Time digit = ospf_decode::second / 10;
  for (const char c : rest) {
    if (c < '0' || c > '9') return std::nullopt;
    time += (c - '0') * digit;
    digit /= 10;
  }
  return time;
}

std::optional<Time> parse_clock(std::string text, Time first) {
  if (text.ends_with("Z")) text.pop_back();
  std::tm parts{};
  const std::time_t day = first / ospf_decode::second;
  gmtime_r(&day, &parts);
  const char *clock = text.c_str();
  int length = 0;
  if (std::sscanf(clock, "%4d-%2d-%2d%n", &parts.tm_year, &parts.tm_mon, &parts.tm_mday, &length) ==
          3 &&
      (clock[length] == 'T' || clock[length] == ' ')) {
    clock += length + 1;
    parts.tm_year -= 1900;
    parts.tm_mon -= 1;
  } else {
    gmtime_r(&day, &parts);
  }
  length = 0;
  if (std::sscanf(clock, "%2d:%2d:%n", &parts.tm_hour, &parts.tm_min, &length) != 2 ||
      length == 0 || parts.tm_hour > 23 || parts.tm_min > 59) {
    return std::nullopt;
  }
  const auto seconds = parse_seconds(clock + length);
  if (!seconds || *seconds >= 61 * ospf_decode::second) return std::nullopt;
  parts.tm_sec = 0;
  return timegm(&parts) * ospf_decode::second + *seconds;
}

}  // namespace

Time parse_time(const std::string &text, Time first) {
  std::optional<Time> time;
  if (text.starts_with("+")) {
    time = parse_seconds(std::string_view(text).substr(1));
    if (time) *time += first;
  } else {
    time = parse_seconds(text);
    if (!time) time = parse_clock(text, first);
  }
  if (time) return *time;
  throw UsageError("--at", "", "\"" + text + "\"",
                   "a time such as " + time_text(first) +
                       ", 08:30:00, or +12.5 for seconds behind the first packet");
}

std::string time_text(Time time) {
  const std::time_t seconds = time / ospf_decode::second;
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  char date[32];
  std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &parts);
  char text[48];
  std::snprintf(text, sizeof text, "%s.%06lldZ", date,
                static_cast<long long>(time % ospf_decode::second / microsecond));
  return text;
}

}  // namespace tool
