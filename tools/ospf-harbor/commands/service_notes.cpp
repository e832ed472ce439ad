#include "commands/service_notes.hpp"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "views/notes.hpp"

namespace tool {

namespace {

constexpr unsigned most_in_a_second = 5;

// A datagram to the manager of services, when there is one.
void notify(const std::string &text) {
  const char *place = std::getenv("NOTIFY_SOCKET");
  if (place == nullptr || (*place != '/' && *place != '@')) return;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::size_t length = std::strlen(place);
  if (length >= sizeof address.sun_path) return;
  std::memcpy(address.sun_path, place, length);
  if (*place == '@') address.sun_path[0] = '\0';
  const int own = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (own < 0) return;
  sendto(own, text.data(), text.size(), MSG_NOSIGNAL, reinterpret_cast<sockaddr *>(&address),
         static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length));
  close(own);
}

}  // namespace

void ServiceNotes::line(const std::string &words) { note(command_ + ": " + site_ + ": " + words); }

void ServiceNotes::change(const char *state, const std::string &words,
                          const nlohmann::ordered_json &numbers) {
  if (json_) {
    nlohmann::ordered_json object{{"kind", direction_}, {"site", site_}, {"state", state}};
    if (!words.empty()) object["words"] = words;
    if (numbers.is_object()) object.update(numbers);
    std::printf(
        "%s\n",
        object.dump(-1, ' ', true, nlohmann::ordered_json::error_handler_t::replace).c_str());
    std::fflush(stdout);
  }
  const std::string now = state + (": " + words);
  if (now == state_) return;
  state_ = now;
  if (!json_) line(direction_ + ": " + words);
  notify("STATUS=" + ospf_tables::in_one_line(direction_ + " " + site_ + ": " + words));
}

void ServiceNotes::works(const std::string &words, const nlohmann::ordered_json &numbers) {
  change("works", words, numbers);
  if (!is_ready_) notify("READY=1");
  is_ready_ = true;
}

void ServiceNotes::waits(const std::string &why) {
  if (state_ != "waits: " + why) change("waits", why, nullptr);
}

void ServiceNotes::tell(const std::string &what) {
  const auto now = std::chrono::steady_clock::now();
  if (now - second_ >= std::chrono::seconds(1)) {
    if (untold_ != 0) line(std::to_string(untold_) + " more of that kind");
    second_ = now;
    told_in_second_ = 0;
    untold_ = 0;
  }
  if (++told_in_second_ > most_in_a_second) {
    ++untold_;
  } else if (json_) {
    change("told", what, nullptr);
  } else {
    line(what);
  }
}

void ServiceNotes::ends() {
  notify("STOPPING=1");
  if (json_) change("ends", "", nullptr);
}

}  // namespace tool
