// Follows a site into a store: whole transactions alone, in order, each in one transaction of the
// store, of which this follower writes one tree. What does not come together is read again from the
// bucket, then asked for from the sender; readers of the store keep the last whole state meanwhile.
// A bucket that came back with what was before is not followed back.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "ospf_replication/assembly.hpp"
#include "ospf_replication/carrier.hpp"
#include "ospf_replication/followed_site.hpp"
#include "ospf_replication/subjects.hpp"
#include "ospf_replication/tree_rows.hpp"
#include "ospf_tables/session.hpp"

namespace ospf_replication {

// Why something was refused.
enum class Refusal { garbage, foreign, oversized, replayed, unsound };
inline constexpr std::size_t refusal_kinds = 5;
const char *name_of(Refusal kind);

struct FollowerReport {
  Stamp stamp;  // of the latest transaction in the store
  std::uint64_t rows = 0;
  std::uint64_t transactions = 0;
  std::uint64_t changed = 0;  // rows
  std::uint64_t read_again = 0;
  std::uint64_t asked = 0;  // for snapshots
  std::array<std::uint64_t, refusal_kinds> refused{};
  bool is_whole = false;  // what the bucket had last is in the store
};

class Follower {
 public:
  // tell is given what was refused, and why something is read again.
  Follower(ospf_tables::Session &session, Inlet &inlet, const std::string &site,
           std::function<void(const std::string &)> tell, const Limits &limits = {})
      : session_(session),
        inlet_(inlet),
        subjects_(site),
        site_(session, site),
        tell_(std::move(tell)),
        limits_(limits) {}
  ~Follower();
  Follower(const Follower &) = delete;
  Follower &operator=(const Follower &) = delete;

  // Takes what comes, until nothing has for that time or a transaction was committed; gives whether
  // one was. Throws CarrierFailure and LibraryFailure, after which it begins again, and Refused
  // when another process follows into the same site of the store.
  bool turn(std::chrono::milliseconds time);

  const FollowerReport &report() const { return report_; }
  // The digests of what is in the store, as the sender has them.
  const Sums &sums() const { return sums_; }

 private:
  using Clock = std::chrono::steady_clock;

  void begin();
  bool take(const Arrival &arrival);
  void take_row(std::string_view path, const RowPlaces::Place &place, const Message &message);
  bool take_commit(const Commit &commit, bool is_last);
  Assembly &assembly_of(const Epoch &epoch);
  static void check_image(const tree_exchange::TableRule &rule, ByteView image);
  bool commit(Assembly &assembly, const Stamp &stamp);
  bool look_at_store();
  void not_whole(const std::string &what, bool is_last);
  void refuse(Refusal kind, const std::string &what);

  ospf_tables::Session &session_;
  Inlet &inlet_;
  Subjects subjects_;
  FollowedSite site_;
  std::function<void(const std::string &)> tell_;
  Limits limits_;
  RowPlaces places_;
  HadRows had_;
  Sums sums_;
  bool has_looked_ = false;
  bool is_reading_ = false;
  bool has_read_again_ = false;  // since the last whole transaction
  Clock::time_point asked_{};
  std::map<Epoch, Assembly> assemblies_;
  FollowerReport report_;
};

}  // namespace ospf_replication
