#include "ospf_replication/follower.hpp"

#include <ospf_harbor_check.h>

#include "ospf_replication/apply.hpp"
#include "ospf_replication/tree_rows.hpp"

namespace ospf_replication {

using namespace ospf_tables;

namespace {

constexpr std::size_t most_epochs = 4;
constexpr std::chrono::seconds ask_every{1};

// A subject that this site has no message under.
class Foreign : public MessageFault {
  using MessageFault::MessageFault;
};

// Others changed the tree that is this follower's.
class StoreMoved : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

std::string in_quotes(std::string_view text) { return '"' + std::string(text) + '"'; }

}  // namespace

const char *name_of(Refusal kind) {
  constexpr const char *names[refusal_kinds] = {"garbage", "foreign", "oversized", "replayed",
                                                "unsound"};
  return names[static_cast<std::size_t>(kind)];
}

Follower::~Follower() {
  try {
    site_.leave();
  } catch (const std::exception &) {
    // Others find that this process follows until it has ended.
  }
}

bool Follower::turn(std::chrono::milliseconds time) {
  try {
    if (!is_reading_) begin();
    while (const auto arrival = inlet_.next(time)) {
      if (take(*arrival)) return true;
      if (!is_reading_) return false;
    }
    return false;
  } catch (const CarrierFailure &) {
    is_reading_ = false;
    throw;
  } catch (const LibraryFailure &) {
    is_reading_ = false;
    throw;
  }
}

void Follower::begin() {
  if (!has_looked_) {
    session_.changing_on([&](bool) { report_.stamp = site_.claim(); });
    session_.reading([&] { look_at_store(); });
    has_looked_ = true;
  }
  assemblies_.clear();
  report_.is_whole = false;
  inlet_.begin();
  is_reading_ = true;
}

// Notes what the store holds. Gives whether that is what this follower knew of.
bool Follower::look_at_store() {
  HadRows now;
  bool same = true;
  for_each_row(session_, [&](const TreeRow &row) {
    Had had;
    const auto before = had_.find(row.path);
    if (before != had_.end() && before->second.stored == row.stored) {
      had = before->second;
      had.is_made_here &= had.record == row.record;
    } else {
      const Bytes image = row.rule.image(session_, row.record);
      had.row = digest_of(row.path, row.references, image);
      had.luid = luid_of(image);
      had.stored = row.stored;
      same = false;
    }
    had.children = 0;
    had.rule = &row.rule;
    had.record = row.record;
    now.insert_or_assign(row.path, had);
  });
  for (const auto &[path, had] : had_) {
    if (had.record == nullptr) {
      now.insert_or_assign(path, had).first->second.children = 0;
    } else if (!now.contains(path)) {
      same = false;
    }
  }
  Sums sums;
  for (const auto &[path, had] : now) {
    sums.add(had.luid, had.row);
    if (const auto above = now.find(std::string(path_above(path))); above != now.end()) {
      ++above->second.children;
    }
  }
  had_ = std::move(now);
  sums_ = sums;
  return same;
}

void Follower::refuse(Refusal kind, const std::string &what) {
  ++report_.refused[static_cast<std::size_t>(kind)];
  tell_(std::string("refused as ") + name_of(kind) + ": " + what);
}

bool Follower::take(const Arrival &arrival) {
  const std::string_view subject = arrival.subject;
  try {
    if (arrival.body.size() > limits_.message) {
      throw Oversized("a message of " + std::to_string(arrival.body.size()) + " bytes",
                      "at most " + std::to_string(limits_.message));
    }
    const bool is_row = subject.starts_with(subjects_.rows);
    const std::string_view path = is_row ? subject.substr(subjects_.rows.size()) : "";
    const RowPlaces::Place place = is_row ? places_.of(path) : RowPlaces::Place{};
    if (is_row ? !place.is_one : subject != subjects_.commit) {
      throw Foreign("another subject", "the path of a row or the commit marker");
    }
    const Message message = read_message(arrival.body);
    if (is_row == (message.kind == MessageKind::commit)) {
      throw MessageFault("a message of another kind than its subject", "what the subject names");
    }
    if (!is_row) return take_commit(message.commit, arrival.is_last);
    take_row(path, place, message);
  } catch (const Oversized &fault) {
    refuse(Refusal::oversized, in_quotes(subject) + ": " + fault.what());
  } catch (const Replayed &fault) {
    refuse(Refusal::replayed, in_quotes(subject) + ": " + fault.what());
  } catch (const Foreign &fault) {
    refuse(Refusal::foreign, in_quotes(subject) + ": " + fault.what());
  } catch (const MessageFault &fault) {
    refuse(Refusal::garbage, in_quotes(subject) + ": " + fault.what());
  }
  return false;
}

Assembly &Follower::assembly_of(const Epoch &epoch) {
  if (is_earlier(epoch, report_.stamp.epoch)) {
    throw Replayed("epoch " + std::to_string(epoch.number),
                   std::to_string(report_.stamp.epoch.number) + " or a later one");
  }
  if (const auto there = assemblies_.find(epoch); there != assemblies_.end()) return there->second;
  if (assemblies_.size() >= most_epochs) {
    // Of those that never came together, the one with the least in it gives way.
    auto least = assemblies_.end();
    for (auto at = assemblies_.begin(); at != assemblies_.end(); ++at) {
      if (at->first == report_.stamp.epoch) continue;
      if (least == assemblies_.end() ||
          at->second.waiting().size() < least->second.waiting().size()) {
        least = at;
      }
    }
    assemblies_.erase(least);
  }
  const std::uint64_t passed = epoch == report_.stamp.epoch ? report_.stamp.sequence : 0;
  return assemblies_.try_emplace(epoch, epoch, had_, sums_, true, passed).first->second;
}

void Follower::check_image(const tree_exchange::TableRule &rule, ByteView image) {
  ospf_harbor_check_result result;
  if (ospf_harbor_check_image(OSPF_HARBOR_CHECK_RECORD, rule.name, image.data(), image.size(),
                              &result) != OSPF_HARBOR_FAULT_NONE) {
    throw MessageFault(std::string(result.found) + " in the image at offset " +
                           std::to_string(result.offset) + " " + result.path + " " + result.piece,
                       result.expected);
  }
}

// Rows of tables that this edition does not know are counted, and are in no table.
void Follower::take_row(std::string_view path, const RowPlaces::Place &place,
                        const Message &message) {
  if (message.kind == MessageKind::row && place.rule != nullptr) {
    check_image(*place.rule, message.image);
  }
  assembly_of(message.stamp.epoch).take(HashedPath(path), place, message, limits_);
}

bool Follower::take_commit(const Commit &commit_marker, bool is_last) {
  const Stamp &stamp = commit_marker.stamp;
  try {
    Assembly &assembly = assembly_of(stamp.epoch);
    if (assembly.is_whole(commit_marker)) return commit(assembly, stamp);
  } catch (const Replayed &) {
    not_whole("its last commit is of an earlier epoch or transaction", is_last);
    throw;
  }
  not_whole("the digests of transaction " + std::to_string(stamp.sequence) +
                " are not those of the rows that came",
            is_last);
  return false;
}

bool Follower::commit(Assembly &assembly, const Stamp &stamp) {
  Application application(session_, had_, assembly);
  try {
    session_.changing_on([&](bool alone) {
      const bool is_same = (alone || look_at_store()) && site_.claim() == report_.stamp;
      if (!is_same) throw StoreMoved("others changed the rows of this site");
      application.apply();
      site_.move_to(stamp);
    });
  } catch (const StoreMoved &moved) {
    tell_(std::string(moved.what()) + "; reading the bucket again");
    has_looked_ = false;
    is_reading_ = false;
    ++report_.read_again;
    return false;
  } catch (const Unsound &unsound) {
    refuse(Refusal::unsound, unsound.what());
    return false;
  }
  application.enter();
  sums_ = assembly.sums();
  assembly.has_passed(stamp.sequence);
  // Earlier epochs are over.
  std::erase_if(assemblies_, [&](const auto &each) { return is_earlier(each.first, stamp.epoch); });
  report_.stamp = stamp;
  report_.rows = sums_.rows();
  report_.changed += application.changed();
  ++report_.transactions;
  report_.is_whole = true;
  has_read_again_ = false;
  return true;
}

// When nothing came behind it, a transaction will not be whole by waiting.
void Follower::not_whole(const std::string &what, bool is_last) {
  if (!is_last) return;
  report_.is_whole = false;
  if (!has_read_again_) {
    tell_(what + "; reading the bucket again");
    has_read_again_ = true;
    is_reading_ = false;
    ++report_.read_again;
    return;
  }
  if (Clock::now() - asked_ < ask_every) return;
  tell_(what + "; asking the sender for a snapshot");
  asked_ = Clock::now();
  ++report_.asked;
  inlet_.ask(report_.stamp.epoch.number);
}

}  // namespace ospf_replication
