// What a command that runs until a signal says of itself: on a terminal, as JSON, and to the
// manager of services that started it (READY, STATUS and STOPPING at NOTIFY_SOCKET).
#pragma once

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>

namespace tool {

class ServiceNotes {
 public:
  ServiceNotes(const char *command, const char *direction, const std::string &site, bool json)
      : command_(command), direction_(direction), site_(site), json_(json) {}

  // It does what it is for; the first time it is ready.
  void works(const std::string &words, const nlohmann::ordered_json &numbers);
  // It waits for something.
  void waits(const std::string &why);
  // Something happened. Of more than a few a second the rest is counted.
  void tell(const std::string &what);
  void ends();

 private:
  void change(const char *state, const std::string &words, const nlohmann::ordered_json &numbers);
  void line(const std::string &words);

  std::string command_;
  std::string direction_;
  std::string site_;
  bool json_;
  bool is_ready_ = false;
  std::string state_;
  std::chrono::steady_clock::time_point second_{};
  unsigned told_in_second_ = 0;
  std::uint64_t untold_ = 0;
};

}  // namespace tool
