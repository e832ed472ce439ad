#include "ospf_replication/followed_site.hpp"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <fstream>
#include <iterator>
#include <new>
#include <sstream>
#include <vector>

#include "ospf_replication/carrier.hpp"
#include "ospf_replication/subjects.hpp"

namespace ospf_replication {

using namespace ospf_tables;

namespace {

// Lies in the store, under a key of its site.
struct KeptOfSite {
  char name[longest_site + 8];  // the sender's
  Stamp stamp;
  char process[80];  // that follows, as process_text() has it; empty for none
};

std::string key_of_kept(const Site &site) {
  return "ospf_replication/followed/" + std::to_string(site.tenant) + "/" +
         std::to_string(site.source);
}

KeptOfSite *find_kept(Session &session, const Site &site) {
  return static_cast<KeptOfSite *>(
      lumen_get_key(session.handle()->obj_pool, key_of_kept(site).c_str()));
}

KeptOfSite *find_or_make_kept(Session &session) {
  if (KeptOfSite *kept = find_kept(session, session.site()); kept != nullptr) return kept;
  kelp_handle *handle = session.handle();
  void *memory = handle->obj_alloc(handle->obj_pool, 0, sizeof(KeptOfSite));
  if (memory == nullptr) throw LibraryFailure("a followed site: no memory");
  auto *kept = new (memory) KeptOfSite{};
  if (lumen_set_key(handle->obj_pool, key_of_kept(session.site()).c_str(), kept) == 0) {
    handle->obj_free(handle->obj_pool, 0, kept);
    throw LibraryFailure("a followed site: found no room for its key, expected some");
  }
  return kept;
}

void announce(Session &session, const KeptOfSite &kept) {
  kelp_handle *handle = session.handle();
  handle->write_notify(handle->obj_pool, &kept, sizeof kept, 0);
}

template <std::size_t size>
void keep_text(char (&place)[size], const std::string &text) {
  std::memset(place, 0, size);
  text.copy(place, size - 1);
}

// A process that lives, with what tells it from others that had its number: when it started, in
// which run of the machine. Empty when there is none, or only what its parent has not asked for.
std::string process_text(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string text;
  std::getline(file, text);
  // The name in brackets may hold anything; the state is the field behind it.
  std::istringstream behind(text.substr(std::min(text.rfind(')') + 1, text.size())));
  const std::vector<std::string> fields{std::istream_iterator<std::string>(behind), {}};
  if (fields.size() < 20) return "";
  const std::string &state = fields[0], &threads = fields[17], &started = fields[19];
  // A first thread that has ended shows as a zombie while others go on.
  if (state == "X" || (state == "Z" && threads <= "1")) return "";
  std::string run;
  std::getline(std::ifstream("/proc/sys/kernel/random/boot_id"), run);
  return std::to_string(process) + " " + started + " " + run;
}

std::optional<pid_t> living_follower(const KeptOfSite &kept) {
  const std::string text = kept.process;
  pid_t process = 0;
  std::from_chars(text.data(), text.data() + text.size(), process);
  return process != 0 && process_text(process) == text ? std::optional(process) : std::nullopt;
}

}  // namespace

std::optional<Stamp> stamp_of_followed(Session &session) {
  const KeptOfSite *kept = find_kept(session, session.site());
  return kept == nullptr ? std::nullopt : std::optional(kept->stamp);
}

Stamp FollowedSite::claim() {
  KeptOfSite *kept = find_or_make_kept(session_);
  if (own_.empty()) own_ = process_text(getpid());
  if (kept->process != own_) {
    if (const auto process = living_follower(*kept)) {
      throw Refused(std::string(kelp_database_name(session_.database())) + ": " +
                    text_of(session_.site()) + " has a follower already: process " +
                    std::to_string(*process) + ", which follows " + kept->name);
    }
    announce(session_, *kept);
    keep_text(kept->process, own_);
  }
  if (kept->name != name_) {
    announce(session_, *kept);
    keep_text(kept->name, name_);
    kept->stamp = {};
  }
  held_ = session_.site();
  return kept->stamp;
}

void FollowedSite::move_to(const Stamp &stamp) {
  KeptOfSite *kept = find_or_make_kept(session_);
  announce(session_, *kept);
  kept->stamp = stamp;
}

void FollowedSite::leave() {
  if (!held_) return;
  session_.changing([&] {
    KeptOfSite *kept = find_kept(session_, *held_);
    if (kept == nullptr || kept->process != own_) return;
    announce(session_, *kept);
    keep_text(kept->process, "");
  });
  held_.reset();
}

}  // namespace ospf_replication
