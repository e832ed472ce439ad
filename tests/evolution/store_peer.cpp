#include "evolution/store_peer.hpp"

#include <kelp/table.h>

#include <iostream>
#include <map>
#include <sstream>

#include "evolution/exchange.hpp"
#include "support/hexadecimal.hpp"

namespace evolution {

namespace {

using Words = std::istringstream;

void must_be_done(std::int32_t code, const kelp_error &error) {
  if (code != 0) give_up(std::to_string(code) + " " + error.text);
}

class StorePeer {
 public:
  explicit StorePeer(const char *file) {
    kelp_error error{};
    database_ = kelp_database_open_file(file, nullptr, &error);
    if (database_ == nullptr) give_up(error.text);
    make_handle(false);
  }
  ~StorePeer() {
    kelp_handle_destroy(handle_);
    kelp_database_close(database_, nullptr);
  }
  StorePeer(const StorePeer &) = delete;
  StorePeer &operator=(const StorePeer &) = delete;

  std::string answer(const std::string &line) {
    Words words(line);
    std::string step;
    words >> step;
    const auto act = steps().find(step);
    if (act == steps().end()) give_up("no step " + step);
    return (this->*act->second)(words);
  }

 private:
  using Act = std::string (StorePeer::*)(Words &);
  static const std::map<std::string, Act> &steps();

  void make_handle(bool tracked) {
    kelp_handle_destroy(handle_);
    kelp_handle_options options;
    kelp_handle_options_init(&options);
    options.state_tracking = tracked ? KELP_TRACKING_ON : KELP_TRACKING_ABSENT;
    kelp_error error{};
    handle_ = kelp_handle_create(database_, &options, &error);
    if (handle_ == nullptr) give_up(error.text);
  }

  // The error word and the words that the handle has for it.
  void must_be_right(std::uint32_t err) const {
    if (err == 0) return;
    kelp_error error{};
    kelp_handle_last_error(handle_, &error);
    give_up(std::to_string(err) + " " + error.text);
  }

  template <typename Result, typename... Arguments>
  Result of_table(const std::string &suffix, Arguments... arguments) const {
    std::uint32_t err = 0;
    const auto act = [&] {
      return call<Result>(table_name_ + "_" + suffix, handle_, space, arguments..., &err);
    };
    if constexpr (std::is_void_v<Result>) {
      act();
      must_be_right(err);
    } else {
      const Result result = act();
      must_be_right(err);
      return result;
    }
  }

  std::vector<void *> rows() const {
    std::vector<void *> all;
    for (auto *row = of_table<void *>(walked_by_ + "_get_first", table_); row != nullptr;
         row = of_table<void *>(walked_by_ + "_get_next", table_, row)) {
      all.push_back(row);
    }
    return all;
  }

  void *row_at(Words &words) const {
    std::size_t place = 0;
    words >> place;
    return rows().at(place);
  }

  Exchanged row() const { return {handle_, table_name_, row_}; }

  std::string lock(Words &words) {
    std::string mode, tracked;
    words >> mode >> tracked;
    if ((handle_->sttr != nullptr) != !tracked.empty()) make_handle(!tracked.empty());
    kelp_error error{};
    must_be_done(
        mode == "write" ? kelp_lock_write(handle_, &error) : kelp_lock_read(handle_, &error),
        error);
    return "ok";
  }
  std::string unlock(Words &) {
    kelp_error error{};
    must_be_done(kelp_unlock(handle_, &error), error);
    return "ok";
  }
  std::string rollback(Words &) {
    kelp_error error{};
    must_be_done(kelp_rollback(handle_, &error), error);
    return "ok";
  }

  std::string table(Words &words) {
    std::string name, object, key;
    words >> table_name_ >> name >> object >> key;
    walked_by_ = object + "_" + key;
    type_name_ = object;
    table_ = of_table<kelp_table *>("table_open", name.c_str(),
                                    std::uint32_t{kelplib_database_is_write_locked(handle_) == 0});
    return table_ == nullptr ? "none" : "ok";
  }

  std::string add(Words &words) {
    std::string path, value;
    words >> path >> value;
    Exchanged made(handle_, table_name_);
    made.set_value(path, value);
    row_ = made.record();
    of_table<void>("insert", table_, row_);
    return "ok";
  }
  std::string choose(Words &words) {
    row_ = row_at(words);
    return "ok";
  }
  std::string value(Words &words) {
    std::string path, value;
    words >> path >> value;
    row().set_value(path, value);
    return "ok";
  }

  std::string show(Words &) {
    std::string text;
    for (const std::string &line : row().show(false)) text += (text.empty() ? "" : "; ") + line;
    return text;
  }
  std::string walk(Words &) {
    std::string text;
    for (void *each : rows()) {
      const auto *object =
          static_cast<kelp_object_header *>(Exchanged(handle_, table_name_, each).object());
      text += (text.empty() ? "" : " ") + std::to_string(object->variant);
    }
    return text.empty() ? "empty" : text;
  }

  std::string end(Words &) {
    of_table<void>("destroy_record", row_);
    return "ok";
  }
  std::string move(Words &words) {
    Exchanged source(handle_, table_name_, row_at(words));
    std::uint32_t err = 0;
    call<void>(type_name_ + "_set", handle_, space, row().object(), source.object(), &err);
    must_be_right(err);
    return "ok";
  }
  std::string compare(Words &words) {
    const Exchanged other(handle_, table_name_, row_at(words));
    const auto hash = [&](void *object) {
      return call<std::uint32_t>(type_name_ + "_hash", object, std::uint32_t{1});
    };
    const auto order = call<std::int32_t>(type_name_ + "_compare", row().object(), other.object());
    const bool same = hash(row().object()) == hash(other.object());
    return std::to_string(order) + (same ? " same" : " other");
  }

  std::string refer(Words &words) {
    std::string field, table, name;
    words >> field >> table >> name;
    std::uint32_t err = 0;
    auto *target = call<kelp_table *>(table + "_table_open", handle_, space, name.c_str(),
                                      std::uint32_t{0}, &err);
    must_be_right(err);
    call<void>(type_name_ + "_" + field + "_set_by_ref", handle_, space, row().object(), target,
               &err);
    must_be_right(err);
    return "ok";
  }
  std::string follow(Words &words) {
    std::string field;
    words >> field;
    std::uint32_t err = 0;
    const auto *target = call<const kelp_table *>(type_name_ + "_" + field + "_get_by_ref", handle_,
                                                  space, row().object(), &err);
    must_be_right(err);
    return target == nullptr ? "none" : std::to_string(target->record_count);
  }

  std::string image(Words &) {
    const std::vector<std::uint8_t> bytes = row().image();
    return hexadecimal(bytes.data(), bytes.size());
  }
  std::string read(Words &words) {
    std::string digits;
    words >> digits;
    Exchanged made(handle_, table_name_);
    made.read(from_hex(digits), false);
    row_ = made.record();
    of_table<void>("insert", table_, row_);
    return "ok";
  }

  std::string collect(Words &) {
    kelp_error error{};
    must_be_done(kelp_collector_run(handle_, nullptr, &error), error);
    return "ok";
  }
  std::string check(Words &) {
    std::string found;
    const auto note = [](void *context, const char *text) {
      *static_cast<std::string *>(context) += std::string(text) + "; ";
    };
    kelp_error error{};
    const std::int32_t code = kelp_database_check(database_, note, &found, &error);
    return code == 0 ? "sound" : found.empty() ? error.text : found;
  }

  kelp_database *database_ = nullptr;
  kelp_handle *handle_ = nullptr;
  std::string table_name_;
  std::string type_name_;
  std::string walked_by_;
  kelp_table *table_ = nullptr;
  void *row_ = nullptr;
};

const std::map<std::string, StorePeer::Act> &StorePeer::steps() {
  static const std::map<std::string, Act> all{
      {"lock", &StorePeer::lock},         {"unlock", &StorePeer::unlock},
      {"rollback", &StorePeer::rollback}, {"table", &StorePeer::table},
      {"add", &StorePeer::add},           {"row", &StorePeer::choose},
      {"value", &StorePeer::value},       {"show", &StorePeer::show},
      {"walk", &StorePeer::walk},         {"end", &StorePeer::end},
      {"move", &StorePeer::move},         {"compare", &StorePeer::compare},
      {"refer", &StorePeer::refer},       {"follow", &StorePeer::follow},
      {"image", &StorePeer::image},       {"read", &StorePeer::read},
      {"collect", &StorePeer::collect},   {"check", &StorePeer::check},
  };
  return all;
}

}  // namespace

int keep_store(const char *file) {
  StorePeer peer(file);
  for (std::string line; std::getline(std::cin, line);) {
    std::string answer;
    try {
      answer = peer.answer(line);
    } catch (const std::exception &failure) {
      answer = std::string("error ") + failure.what();
    }
    std::cout << answer << std::endl;
  }
  return 0;
}

}  // namespace evolution
