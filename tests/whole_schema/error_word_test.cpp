// A set error word: every exported operation that takes one does nothing at all, calls nothing and
// leaves word, objects and the handle's last error alone. The operations that are meant to run all
// the same stand in one list with their reasons, and each of them is looked at too.
#include <array>
#include <cstring>
#include <map>
#include <sstream>

#include "composition.hpp"
#include "whole_schema/erased.hpp"

namespace whole_schema {

namespace {

// Operations that look past a set error word, by the end of their names.
const std::map<std::string, const char *> exceptions{
    {"_initialize", "the light form asks the domain first"},
    {"_post_copyout_cleanup", "finishes a transfer whatever the word says"},
    {"_get_luid", "forwards to the runtime, which sees the word"},
    {"_adjust_variant", "forwards to the runtime, which sees the word"},
    {"_get_oid_count", "traces that an error is present"},
    {"_get_object_references", "traces that an error is present"},
    {"_offset_remove", "passes its word through"},
    {"_typeinfo_initialize", "does not read the word on entry"},
    {"_get_vft", "traces that an error is present"},
    {"_create_record", "clears the word"},
    {"_create_record_w_src", "clears the word"},
    {"_record_add_ref", "does not look at the word"},
    {"_insert", "a null record sets 17 over any word"},
    {"_get_shadow", "a shadow record is its own result"},
    {"_marshal", "the record form traces that an error is present"},
    {"_unmarshal", "the record form traces that an error is present"},
    {"_from_xml", "the record form creates its record first"},
    {"_print", "the key print is a stub and the record print runs its frame"},
    {"_to_xml", "the record form runs its frame"},
    {"_search", "a stub"},
};

std::vector<std::string> parameters(const std::string &arguments) {
  std::vector<std::string> list;
  std::istringstream in(arguments);
  for (std::string parameter; std::getline(in, parameter, ',');) {
    parameter.erase(0, parameter.find_first_not_of(' '));
    list.push_back(parameter);
  }
  return list;
}

bool is_real(const std::string &parameter) {
  return parameter.starts_with("double ") && parameter.find('*') == std::string::npos;
}

bool ends_with(const std::string &name, const std::string &tail) {
  return name.size() >= tail.size() &&
         name.compare(name.size() - tail.size(), tail.size(), tail) == 0;
}

// "<type>_set" is a transfer, which runs; "<type>_<field>_set" is not.
bool is_transfer(const emit::Unit &unit, const std::string &name) {
  for (const Structure *type : harbor::model::structures) {
    if (unit.name == type->name && name == unit.name + "_set") return true;
  }
  return false;
}

bool is_exception(const emit::Unit &unit, std::string name) {
  if (ends_with(name, "_unsafe")) name.resize(name.size() - 7);
  const bool is_table = unit.name.starts_with("tbl_");
  if (is_transfer(unit, name)) return true;
  for (const auto &[tail, reason] : exceptions) {
    if (!ends_with(name, tail)) continue;
    // Of these, only the record forms look past the word.
    const bool record_only = tail == "_marshal" || tail == "_unmarshal" || tail == "_from_xml" ||
                             tail == "_print" || tail == "_to_xml" || tail == "_search";
    if (!record_only || is_table) return true;
  }
  return false;
}

class ErrorWord : public testing::Test {
 protected:
  // Calls a function with the word set and zeroed memory behind every other pointer.
  void expect_nothing_happens(const std::string &name, const std::string &arguments) {
    std::array<std::uint64_t, 8> words{};
    std::size_t next = 0;
    std::uint32_t err = KELP_ERR_TOO_LONG;
    const std::vector<std::string> list = parameters(arguments);
    for (const std::string &parameter : list) {
      if (is_real(parameter)) continue;  // takes another kind of register
      ASSERT_LT(next, 32u);
      std::uint64_t word = 0;
      if (parameter.starts_with("kelp_handle *")) {
        word = reinterpret_cast<std::uint64_t>(store_.handle());
      } else if (parameter == "uint32_t *err") {
        word = reinterpret_cast<std::uint64_t>(&err);
      } else if (parameter.find('*') != std::string::npos) {
        word = reinterpret_cast<std::uint64_t>(memory_.data());
      }
      if (next < words.size()) words[next] = word;
      ++next;
    }
    if (next > words.size()) return call_with_many(name, list, err);
    harness::CallLog log(store_);
    call<std::uint64_t>(name, words[0], words[1], words[2], words[3], words[4], words[5], words[6],
                        words[7]);
    expect_untouched(name, log, err);
  }

  // Bulk forms and others with more arguments than fit in one call above.
  void call_with_many(const std::string &name, const std::vector<std::string> &list,
                      std::uint32_t &err) {
    std::array<std::uint64_t, 32> words{};
    std::size_t next = 0;
    for (const std::string &parameter : list) {
      if (is_real(parameter)) continue;
      std::uint64_t word = 0;
      if (parameter.starts_with("kelp_handle *")) {
        word = reinterpret_cast<std::uint64_t>(store_.handle());
      } else if (parameter == "uint32_t *err") {
        word = reinterpret_cast<std::uint64_t>(&err);
      } else if (parameter.find('*') != std::string::npos) {
        word = reinterpret_cast<std::uint64_t>(memory_.data());
      }
      words[next++] = word;
    }
    harness::CallLog log(store_);
    [&]<std::size_t... I>(std::index_sequence<I...>) { call<std::uint64_t>(name, words[I]...); }
    (std::make_index_sequence<32>());
    expect_untouched(name, log, err);
  }

  void expect_untouched(const std::string &name, const harness::CallLog &log, std::uint32_t err) {
    EXPECT_EQ(err, KELP_ERR_TOO_LONG) << name;
    EXPECT_TRUE(log.calls().empty()) << name << " calls " << log.calls().front();
    EXPECT_EQ(memory_, untouched_) << name << " writes";
    memory_ = untouched_;
  }

  harness::Store store_;
  std::array<std::uint8_t, 8192> untouched_{};
  std::array<std::uint8_t, 8192> memory_{};
};

std::vector<emit::Unit> units() {
  std::vector<emit::Unit> all;
  for (const auto *type : harbor::model::structures) all.push_back(emit::unit_of(*type));
  for (const auto *type : harbor::model::all_enumerations) all.push_back(emit::unit_of(*type));
  for (const auto *type : harbor::model::all_flag_sets) all.push_back(emit::unit_of(*type));
  for (const auto *table : harbor::model::all_tables) all.push_back(emit::unit_of(*table));
  return all;
}

}  // namespace

TEST_F(ErrorWord, ASetWordMakesEveryOperationDoNothing) {
  kelp_store_err(store_, 5);
  harness::TraceLog traced;
  std::size_t tried = 0;
  for (const emit::Unit &unit : units()) {
    for (const emit::Function &function : unit.functions) {
      if (function.arguments.find("uint32_t *err") == std::string::npos) continue;
      if (is_exception(unit, function.name)) continue;
      expect_nothing_happens(function.name, function.arguments);
      ++tried;
      if (HasFatalFailure()) return;
    }
  }
  EXPECT_TRUE(traced.empty()) << traced.messages().front().text;
  EXPECT_EQ(store_.last_error(), 5);
  EXPECT_GT(tried, 2500u);
}

TEST_F(ErrorWord, ASetCrErrMakesTheHandleCarriedFormsKeepIt) {
  kelp_handle *handle = store_;
  handle->cr_err = KELP_ERR_TOO_LONG;
  std::size_t tried = 0;
  for (const emit::Unit &unit : units()) {
    for (const emit::Function &function : unit.functions) {
      if (!ends_with(function.name, "_cr") || ends_with(function.name, "_create_cr") ||
          ends_with(function.name, "_destroy_cr") || ends_with(function.name, "_is_valid_cr")) {
        continue;
      }
      if (function.arguments.find("double ") != std::string::npos) continue;
      std::array<std::uint64_t, 8> words{};
      std::size_t next = 0;
      for (const std::string &parameter : parameters(function.arguments)) {
        if (parameter.starts_with("kelp_handle *")) {
          words[next] = reinterpret_cast<std::uint64_t>(handle);
        } else if (parameter.find('*') != std::string::npos) {
          words[next] = reinterpret_cast<std::uint64_t>(memory_.data());
        }
        ++next;
      }
      // Tables: what frees, closes or makes records is told of in the tests of the tables.
      if (unit.name.starts_with("tbl_")) continue;
      call<std::uint64_t>(function.name, words[0], words[1], words[2], words[3], words[4], words[5],
                          words[6], words[7]);
      EXPECT_EQ(handle->cr_err, KELP_ERR_TOO_LONG) << function.name;
      EXPECT_EQ(memory_, untouched_) << function.name << " writes";
      memory_ = untouched_;
      ++tried;
    }
  }
  handle->cr_err = 0;
  EXPECT_GT(tried, 300u);
}

}  // namespace whole_schema
