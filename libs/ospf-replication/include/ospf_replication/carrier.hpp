// What carries messages between a sender and its followers: a bucket that keeps the latest message
// under each subject and numbers all that come. It may lose what it acknowledged, and others may
// put messages there; sender and followers judge what they find.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>

#include "ospf_replication/messages.hpp"

namespace ospf_replication {

// The engine is away, or did not do what it was asked for in time.
class CarrierFailure : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The bucket is not as this sender left it.
class BucketMoved : public CarrierFailure {
  using CarrierFailure::CarrierFailure;
};

// Another sender has the name, another follower the place in the store, or the engine will never
// take what it is given.
class Refused : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Letter {
  std::string subject;
  Bytes body;
};

struct BucketState {
  std::uint64_t messages = 0;
  std::uint64_t last = 0;  // number of the latest message ever
  bool operator==(const BucketState &) const = default;
};

// The sender's end.
class Outlet {
 public:
  virtual ~Outlet() = default;
  // The bucket, which is made when it is not there. Throws Refused when another sender answers.
  virtual BucketState open() = 0;
  virtual BucketState state() = 0;
  // The commit marker that the bucket has.
  virtual std::optional<Bytes> last_commit() = 0;
  // Puts the letters in order behind message `last`. Gives the number of the latest when the bucket
  // has all of them. Throws BucketMoved when others put something between, and Refused, with none
  // of them put, when one is longer than the engine takes.
  virtual std::uint64_t put(std::span<const Letter> letters, std::uint64_t last) = 0;
  // Takes away all messages before that one.
  virtual void drop_before(std::uint64_t number) = 0;
  // The highest epoch that a follower named who asked for a snapshot since this was called last.
  virtual std::optional<std::uint64_t> asked() = 0;
};

// A message that came; it lies where it does until the next one is asked for.
struct Arrival {
  std::string_view subject;
  ByteView body;
  bool is_last = false;  // nothing else was in the bucket when it was sent on
};

// A follower's end.
class Inlet {
 public:
  virtual ~Inlet() = default;
  // From the first message of the bucket on. Throws CarrierFailure when it is away.
  virtual void begin() = 0;
  // None when nothing came in time. Throws CarrierFailure when the way was broken, and begin() is
  // to be called again.
  virtual std::optional<Arrival> next(std::chrono::milliseconds time) = 0;
  // Asks the sender for a snapshot with an epoch above that.
  virtual void ask(std::uint64_t epoch) = 0;
};

}  // namespace ospf_replication
