// What a store keeps of a site that is followed into it, beside the site's rows and committed with
// them: how far it has come, so that no follower takes it back, and which process follows.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "ospf_replication/messages.hpp"
#include "ospf_tables/session.hpp"

namespace ospf_replication {

// How far the rows of the session's site have come; none when nothing was followed into them. Hold
// a lock.
std::optional<Stamp> stamp_of_followed(ospf_tables::Session &session);

// One process's hold of the session's site.
class FollowedSite {
 public:
  // name: of the sender.
  FollowedSite(ospf_tables::Session &session, std::string name)
      : session_(session), name_(std::move(name)) {}

  // Within the write lock: from its commit on this process is the one that follows. Gives how far
  // the site has come under this name. Throws Refused when another process that lives follows into
  // it, and LibraryFailure.
  Stamp claim();
  // Within the same lock.
  void move_to(const Stamp &stamp);
  // Others may claim it.
  void leave();

 private:
  ospf_tables::Session &session_;
  std::string name_;
  std::string own_;  // this process, as the store has it
  std::optional<ospf_tables::Site> held_;
};

}  // namespace ospf_replication
