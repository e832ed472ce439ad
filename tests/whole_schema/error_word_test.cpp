// A set error word: every exported operation that takes one does nothing at all, calls nothing and
// leaves word, objects and the handle's last error alone. The operations that are meant to run all
// the same stand in one list with their reasons, and each of them is looked at too.
#include <algorithm>
#include <map>

#include "whole_schema/composed_call.hpp"

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

bool is_structure(const emit::Unit &unit) {
  return std::ranges::any_of(harbor::model::structures,
                             [&](const Structure *type) { return type->name == unit.name; });
}

bool is_exception(const emit::Unit &unit, std::string name) {
  if (name.ends_with("_unsafe")) name.resize(name.size() - 7);
  const bool is_table = unit.name.starts_with("tbl_");
  // "<type>_set" is a transfer, which runs; "<type>_<field>_set" is not.
  if (is_structure(unit) && name == unit.name + "_set") return true;
  for (const auto &[tail, reason] : exceptions) {
    if (!name.ends_with(tail)) continue;
    if (tail == "_initialize" && is_structure(unit)) return false;
    // Of these, only the record forms look past the word.
    const bool record_only = tail == "_marshal" || tail == "_unmarshal" || tail == "_from_xml" ||
                             tail == "_print" || tail == "_to_xml" || tail == "_search";
    if (!record_only || is_table) return true;
  }
  return false;
}

// The bytes of a result that a call gives in a register; 0 for one that gives none there.
std::uint64_t result_mask(const std::string &type) {
  if (type.ends_with("*") || type == "uint64_t") return ~std::uint64_t{0};
  if (type == "uint32_t" || type == "int32_t") return 0xFFFFFFFF;
  if (type == "uint16_t") return 0xFFFF;
  return type == "uint8_t" ? 0xFF : 0;
}

// A word that is set before all calls, and what they must leave alone: behind every pointer that is
// none to a handle or to the word stands memory full of ones, so that what is read shows. It begins
// with a null pointer, which _clone stores whatever the word says.
class SetWord {
 public:
  explicit SetWord(std::uint32_t tracking) : store({.tracking = tracking}) {
    std::fill(untouched_.begin() + sizeof(void *), untouched_.end(), 1);
    memory_ = untouched_;
  }

  std::uint64_t call(const emit::Function &function) {
    const std::uint64_t result = call_composed(function, [&](const std::string &parameter) {
      if (parameter.starts_with("kelp_handle *")) return word_of(store.handle());
      if (parameter == "uint32_t *err") return word_of(&err);
      return parameter.find('*') == std::string::npos ? 0 : word_of(memory_.data());
    });
    EXPECT_EQ(memory_, untouched_) << function.name << " writes";
    memory_ = untouched_;
    return result;
  }

  harness::Store store;
  std::uint32_t err = KELP_ERR_TOO_LONG;

 private:
  std::array<std::uint8_t, 8192> untouched_{};
  alignas(16) std::array<std::uint8_t, 8192> memory_;
};

}  // namespace

TEST(ErrorWord, ASetWordMakesEveryOperationDoNothing) {
  for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_ON}) {
    SetWord set(tracking);
    kelp_store_err(set.store, 5);
    harness::TraceLog traced;
    std::size_t tried = 0;
    for (const emit::Unit &unit : units()) {
      for (const emit::Function &function : unit.functions) {
        if (function.arguments.find("uint32_t *err") == std::string::npos) continue;
        if (is_exception(unit, function.name)) continue;
        harness::CallLog log(set.store);
        EXPECT_EQ(set.call(function) & result_mask(function.result), 0u) << function.name;
        EXPECT_EQ(set.err, KELP_ERR_TOO_LONG) << function.name;
        EXPECT_TRUE(log.calls().empty()) << function.name << " calls " << log.calls().front();
        ++tried;
      }
    }
    EXPECT_TRUE(traced.empty()) << traced.messages().front().text;
    EXPECT_EQ(set.store.last_error(), 5);
    EXPECT_GT(tried, 2500u);
  }
}

TEST(ErrorWord, ASetCrErrMakesTheHandleCarriedFormsKeepIt) {
  SetWord set(KELP_TRACKING_ABSENT);
  std::uint32_t &word = set.store.handle()->cr_err;
  word = KELP_ERR_TOO_LONG;
  std::size_t tried = 0;
  for (const emit::Unit &unit : units()) {
    // Tables: what frees, closes or makes records is told of in the tests of the tables.
    if (unit.name.starts_with("tbl_")) continue;
    for (const emit::Function &function : unit.functions) {
      const std::string &name = function.name;
      if (!name.ends_with("_cr") || name.ends_with("_create_cr") || name.ends_with("_destroy_cr") ||
          name.ends_with("_is_valid_cr")) {
        continue;
      }
      set.call(function);
      EXPECT_EQ(word, KELP_ERR_TOO_LONG) << name;
      ++tried;
    }
  }
  word = 0;
  EXPECT_GT(tried, 300u);
}

}  // namespace whole_schema
