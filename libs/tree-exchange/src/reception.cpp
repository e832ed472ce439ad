// The receiver's side: the bytes of all senders are gathered as they come, and a tree is read when
// all of it is there, so that nobody waits for a sender that is slow, and no store is locked for
// it.
#include <sys/random.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <list>
#include <vector>

#include "answer.hpp"
#include "ospf_tables/input_error.hpp"
#include "piece_size.hpp"
#include "tree_exchange/ending_signals.hpp"
#include "tree_exchange/tree_reader.hpp"

namespace tree_exchange {

using namespace ospf_tables;

namespace {

constexpr std::size_t most_senders = 16;
constexpr std::chrono::seconds answer_time{1};
constexpr char no_token[] =
    "found no token, or another one, expected the one of this receiver (send --token), as any user "
    "of the machine can connect here";

// What is wrong with a sender, of which it hears.
class Unsound : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// One that is connected, up to the end of its stream; then one that may not have read its answer.
class Sender {
 public:
  Sender(Connection connection, std::string name, const Reception &reception)
      : connection_(std::move(connection)),
        name_(std::move(name)),
        reception_(reception),
        deadline_(reception.time),
        token_missing_(!reception.token.empty()) {}

  int socket() const { return connection_.socket(); }
  const std::string &name() const { return name_; }
  int milliseconds_left() const { return deadline_.milliseconds_left(); }
  bool is_answered() const { return answered_; }
  // It has begun as a sender does.
  bool is_known() const { return checked_ != 0; }
  bool has_said_nothing() const { return !said_; }
  const Bytes &bytes() const { return bytes_; }

  // Takes what is there; false at the end of what it writes. Throws for what cannot go on.
  bool read_on(Bytes &buffer) {
    const ByteView piece = connection_.read(buffer, Deadline(std::chrono::milliseconds(0)));
    if (answered_) return !piece.empty();
    said_ = said_ || !piece.empty();
    if (!said_) return false;
    bytes_.insert(bytes_.end(), piece.begin(), piece.end());
    if (token_missing_) take_token(piece.empty());
    if (!token_missing_) check();
    return !piece.empty();
  }

  // Says it, and lets go of what it brought. What it still writes is to be read for a while, or the
  // answer may be lost with it. One that takes no line, or is gone by now, is not told.
  void answer(std::string_view kind, const std::string &text) {
    bytes_ = {};
    answered_ = true;
    deadline_ = Deadline(answer_time);
    const std::string line =
        in_one_line(std::string(kind) + text).substr(0, longest_answer - 1) + "\n";
    try {
      connection_.write_on(bytes_of(line), Deadline(std::chrono::milliseconds(0)));
    } catch (const ConnectionFailure &) {
    }
    connection_.end_writing();
  }

 private:
  // All of the line is compared, whichever byte of it is wrong.
  void take_token(bool at_end) {
    const std::string line = token_line(reception_.token);
    const std::size_t there = std::min(line.size(), bytes_.size());
    unsigned differences = 0;
    for (std::size_t at = 0; at < there; ++at) {
      differences |= static_cast<unsigned>(bytes_[at] ^ static_cast<std::uint8_t>(line[at]));
    }
    const bool ended = at_end || std::find(bytes_.begin(), bytes_.end(), '\n') != bytes_.end();
    if (there < line.size() && !ended && bytes_[0] == static_cast<std::uint8_t>(line[0])) return;
    if (there < line.size() || differences != 0) throw Unsound(no_token);
    bytes_.erase(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(line.size()));
    token_missing_ = false;
  }

  // Looks at the frames that are whole, so that a sender is not listened to when nothing can come
  // of it.
  void check() {
    if (bytes_.size() > reception_.limit) {
      throw StreamFault(reception_.limit,
                        "more than " + std::to_string(reception_.limit) + " bytes",
                        "a tree of at most that many");
    }
    if (checked_ == 0 && header_is_whole(bytes_)) checked_ = stream_header_size;
    while (checked_ != 0 && checked_ < bytes_.size()) {
      const auto frame = first_frame(ByteView(bytes_).subspan(checked_), checked_);
      if (!frame) return;
      checked_ += frame->bytes.size();
    }
  }

  Connection connection_;
  std::string name_;
  const Reception &reception_;
  Deadline deadline_;
  Bytes bytes_;
  std::uint64_t checked_ = 0;
  bool token_missing_;
  bool said_ = false;
  bool answered_ = false;
};

class Receiver {
 public:
  Receiver(Session &session, Listener &listener, const Reception &reception)
      : session_(session), listener_(listener), reception_(reception), waiting_(reception.time) {}

  bool run() {
    while (taken_ < reception_.trees) {
      if (EndingSignals::has_come()) return false;
      let_go_of_the_slow();
      if (waiting_.milliseconds_left() == 0 && senders_.empty()) fail();
      wait(true);
    }
    const std::string enough =
        "found as many trees as this receiver takes, expected to come before";
    for (Sender &sender : senders_) {
      if (!sender.is_answered()) refuse(sender, enough);
    }
    for (let_go_of_the_slow(); !senders_.empty() && !EndingSignals::has_come();
         let_go_of_the_slow()) {
      wait(false);
    }
    return true;
  }

 private:
  using Senders = std::list<Sender>;

  [[noreturn]] void fail() const {
    throw ConnectionFailure(
        listener_.where() + ": found nobody in the time that was given" +
        (refused_ == 0 ? ""
                       : " but " + number_text(refused_, "sender that was", "senders that were") +
                             " refused") +
        ", expected a sender");
  }

  bool may_accept() {
    return waiting_.milliseconds_left() != 0 &&
           (senders_.size() < most_senders || longest_idle() != senders_.end());
  }

  // Of those that have not begun to write a tree, the one that has been there longest: it gives way
  // to a new one.
  Senders::iterator longest_idle() {
    return std::find_if(senders_.begin(), senders_.end(),
                        [](const Sender &each) { return !each.is_known(); });
  }

  void let_go_of_the_slow() {
    for (auto at = senders_.begin(); at != senders_.end();) {
      const auto sender = at++;
      if (sender->milliseconds_left() != 0) continue;
      if (sender->is_answered()) {
        senders_.erase(sender);
      } else {
        refuse(*sender, "found nothing in the time that was given, expected the end of its tree");
      }
    }
  }

  // Lets time pass until there is something to do, and does it.
  void wait(bool accepting) {
    const bool listening = accepting && may_accept();
    std::vector<pollfd> places{{listening ? listener_.socket() : -1, POLLIN, 0}};
    int time = listening ? waiting_.milliseconds_left() : INT_MAX;
    for (const Sender &sender : senders_) {
      places.push_back({sender.socket(), POLLIN, 0});
      time = std::min(time, sender.milliseconds_left());
    }
    if (EndingSignals::wait_for(places, time) < 0) {
      if (errno == EINTR) return;
      throw ConnectionFailure(listener_.where() + ": " + std::strerror(errno));
    }
    auto place = places.begin() + 1;
    for (auto at = senders_.begin(); at != senders_.end();) {
      const auto sender = at++;
      if ((place++)->revents != 0) serve(sender);
      if (accepting && taken_ == reception_.trees) return;
    }
    if (places.front().revents != 0 && may_accept()) accept();
  }

  void accept() {
    if (senders_.size() == most_senders) {
      const auto idle = longest_idle();
      if (!idle->is_answered()) refuse(*idle, "found too many senders at once, expected its tree");
      senders_.erase(idle);
    }
    const std::string name = listener_.where() + ", sender " + std::to_string(arrived_ + 1);
    auto connection = listener_.accept_now(name);
    if (!connection) return;
    ++arrived_;
    senders_.emplace_back(std::move(*connection), name, reception_);
  }

  void serve(Senders::iterator sender) {
    try {
      if (sender->read_on(buffer_)) return;
      if (sender->is_answered() || sender->has_said_nothing()) {
        senders_.erase(sender);
      } else {
        take_tree(*sender);
      }
    } catch (const StreamFault &fault) {
      refuse(*sender, offset_text(fault.offset) + ": " + fault.what());
    } catch (const Unsound &unsound) {
      refuse(*sender, unsound.what());
    } catch (const ConnectionFailure &failure) {
      if (!sender->is_answered()) count_refused(failure.what());
      senders_.erase(sender);
    }
  }

  // The sender hears "ok" of what is committed.
  void take_tree(Sender &sender) {
    std::uint64_t rows = 0;
    try {
      session_.changing([&] {
        TreeReader reader(session_, sender.name(), reception_.limit);
        reader.feed(sender.bytes());
        rows = reader.finish();
      });
    } catch (const InputError &unsound) {
      sender.answer(refused, unsound.what());
      count_refused(unsound.what());
      return;
    } catch (const std::exception &failure) {
      sender.answer(refused, failure.what());
      throw;
    }
    sender.answer(accepted, std::to_string(rows));
    ++taken_;
    waiting_ = Deadline(reception_.time);
    if (reception_.taken) reception_.taken(rows);
  }

  void refuse(Sender &sender, const std::string &why) {
    sender.answer(refused, why);
    count_refused(sender.name() + ": " + why);
  }

  void count_refused(const std::string &why) {
    ++refused_;
    if (reception_.refused) reception_.refused(in_one_line(why));
  }

  Session &session_;
  Listener &listener_;
  const Reception &reception_;
  Deadline waiting_;
  Senders senders_;
  Bytes buffer_ = Bytes(piece_size);
  std::uint64_t arrived_ = 0;
  std::uint64_t taken_ = 0;
  std::uint64_t refused_ = 0;
};

}  // namespace

bool is_token(const Token &token) {
  return !token.empty() && token.size() <= longest_token &&
         std::all_of(token.begin(), token.end(), [](char c) { return c > ' ' && c < 0x7f; });
}

Token new_token() {
  std::uint8_t bytes[16];
  if (getrandom(bytes, sizeof bytes, 0) != static_cast<ssize_t>(sizeof bytes)) {
    throw InputError("random numbers", "", std::strerror(errno), "16 bytes of them for a token");
  }
  Token token;
  for (const std::uint8_t byte : bytes) {
    token += "0123456789abcdef"[byte >> 4];
    token += "0123456789abcdef"[byte & 15];
  }
  return token;
}

bool receive_trees(Session &session, Listener &listener, const Reception &reception) {
  return Receiver(session, listener, reception).run();
}

}  // namespace tree_exchange
