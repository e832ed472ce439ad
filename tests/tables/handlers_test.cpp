// What becomes of record events: without handlers in the process, with some, and with both handlers
// of an event. Handlers are found when the program starts, so that those defined here stand for the
// whole program: two tables have some, the others none.
#include <algorithm>
#include <array>
#include <set>

#include "module/messages.hpp"
#include "tables/table_fixture.hpp"

namespace {

using harness::CallLog;
using harness::Store;
using harness::TraceLog;

// --- the handlers of this program ---

// One call of a handler, with the arguments behind the handle in their order. What an event does
// not have stays null or 0.
struct Call {
  std::string handler;
  kelp_handle *handle = nullptr;
  std::uint32_t space_id = 0;
  std::vector<const void *> pointers;  // err included
  std::uint32_t number = 0;
  std::uint32_t word_on_entry = 0;
  std::int32_t last_error_on_entry = 0;
  bool operator==(const Call &) const = default;
};

std::vector<Call> calls;
std::uint32_t word_left = 0;  // what the handlers leave in the error word

// Results above 32 bits and different from one another.
constexpr std::uint64_t create_result = 0x1111111100000001;
constexpr std::uint64_t modify_result = 0x1111111100000002;
constexpr std::uint64_t delete_result = 0x1111111100000003;
constexpr std::uint64_t create_dm_result = 0x1111111100000004;
constexpr std::uint64_t delete_dm_result = 0x1111111100000005;
constexpr std::uint64_t grouping_result = 0x1111111100000006;
constexpr std::uint64_t free_result = 0x1111111100000007;

std::uint64_t note(Call call, std::uint32_t *err, std::uint64_t result) {
  call.word_on_entry = *err;
  call.last_error_on_entry = kelp_handle_last_error(call.handle, nullptr);
  calls.push_back(std::move(call));
  *err = word_left;
  return result;
}

// The names that are defined below.
const std::set<std::string> defined{
    "ospf_harbor_oper_tbl_ospf_rev1_table_record_create_handler",
    "ospf_harbor_oper_tbl_ospf_rev1_table_record_modify_handler",
    "ospf_harbor_oper_tbl_ospf_rev1_table_record_delete_handler",
    "ospf_harbor_oper_tbl_ospf_rev1_table_record_grouping_handler",
    "ospf_harbor_oper_tbl_ospf_rev1_table_record_free_handler",
    "ospf_harbor_oper_tbl_ospf_instance_rev1_table_record_create_handler",
    "ospf_harbor_oper_tbl_ospf_instance_rev1_table_record_delete_handler",
    "ospf_harbor_oper_tbl_ospf_instance_rev1_table_record_create_dm_handler",
    "ospf_harbor_oper_tbl_ospf_instance_rev1_table_record_delete_dm_handler",
};

}  // namespace

// The plain handlers alone.
extern "C" {

uint64_t ospf_harbor_oper_tbl_ospf_rev1_table_record_create_handler(kelp_handle *handle,
                                                                    uint32_t space_id,
                                                                    void *context,
                                                                    tbl_ospf_rev1_record *record,
                                                                    uint32_t *err) {
  return note({"create", handle, space_id, {context, record, err}}, err, create_result);
}

uint64_t ospf_harbor_oper_tbl_ospf_rev1_table_record_modify_handler(kelp_handle *handle,
                                                                    uint32_t space_id,
                                                                    void *context,
                                                                    tbl_ospf_rev1_record *record,
                                                                    uint32_t *err) {
  return note({"modify", handle, space_id, {context, record, err}}, err, modify_result);
}

uint64_t ospf_harbor_oper_tbl_ospf_rev1_table_record_delete_handler(kelp_handle *handle,
                                                                    uint32_t space_id,
                                                                    void *context,
                                                                    tbl_ospf_rev1_record *record,
                                                                    uint32_t *err) {
  return note({"delete", handle, space_id, {context, record, err}}, err, delete_result);
}

uint64_t ospf_harbor_oper_tbl_ospf_rev1_table_record_grouping_handler(kelp_handle *handle,
                                                                      uint32_t space_id,
                                                                      void *arg_a, uint32_t *err,
                                                                      void *arg_b, void *arg_c) {
  return note({"grouping", handle, space_id, {arg_a, err, arg_b, arg_c}}, err, grouping_result);
}

uint64_t ospf_harbor_oper_tbl_ospf_rev1_table_record_free_handler(kelp_handle *handle,
                                                                  uint32_t space_id, void *arg_a,
                                                                  uint32_t arg_u32, uint32_t *err,
                                                                  void *arg_b) {
  return note({"free", handle, space_id, {arg_a, err, arg_b}, arg_u32}, err, free_result);
}

// Both handlers of the two events that have two.

uint64_t ospf_harbor_oper_tbl_ospf_instance_rev1_table_record_create_handler(
    kelp_handle *handle, uint32_t space_id, void *context, tbl_ospf_instance_rev1_record *record,
    uint32_t *err) {
  return note({"create", handle, space_id, {context, record, err}}, err, create_result);
}

uint64_t ospf_harbor_oper_tbl_ospf_instance_rev1_table_record_delete_handler(
    kelp_handle *handle, uint32_t space_id, void *context, tbl_ospf_instance_rev1_record *record,
    uint32_t *err) {
  return note({"delete", handle, space_id, {context, record, err}}, err, delete_result);
}

uint64_t ospf_harbor_oper_tbl_ospf_instance_rev1_table_record_create_dm_handler(
    kelp_handle *handle, uint32_t space_id, tbl_ospf_instance_rev1_record *record, uint32_t *err) {
  return note({"create_dm", handle, space_id, {record, err}}, err, create_dm_result);
}

uint64_t ospf_harbor_oper_tbl_ospf_instance_rev1_table_record_delete_dm_handler(
    kelp_handle *handle, uint32_t space_id, tbl_ospf_instance_rev1_record *record, uint32_t *err) {
  return note({"delete_dm", handle, space_id, {record, err}}, err, delete_dm_result);
}

}  // extern "C"

namespace {

// --- forwarders by name ---

using EventForwarder = std::uint64_t(kelp_handle *, std::uint32_t, void *, void *, std::uint32_t *);
using DmForwarder = std::uint64_t(kelp_handle *, std::uint32_t, void *, std::uint32_t *);
using GroupingForwarder = std::uint64_t(kelp_handle *, std::uint32_t, void *, std::uint32_t *,
                                        void *, void *);
using FreeForwarder = std::uint64_t(kelp_handle *, std::uint32_t, void *, std::uint32_t,
                                    std::uint32_t *, void *);

struct Kind {
  std::string name;
  std::string in_message;
  std::uint32_t offset;  // of its message in the table's block
  std::string fallback;  // the event that it becomes without a handler of its own
};
const std::array<Kind, 7> kinds{{
    {"create", "create", 36, ""},
    {"modify", "modify", 37, ""},
    {"delete", "delete", 38, ""},
    {"create_dm", "create DM", 39, "create"},
    {"delete_dm", "delete DM", 40, "delete"},
    {"grouping", "grouping", 41, ""},
    {"free", "free", 42, ""},
}};

const Kind &kind_of(const std::string &name) {
  return *std::find_if(kinds.begin(), kinds.end(),
                       [&](const Kind &kind) { return kind.name == name; });
}

const std::array<std::string, 2> twins{"", "_unsafe"};

// Places to point at. What an event carries is not looked at.
int context_place;
int record_place;
int third_place;

// Calls a forwarder of any kind.
std::uint64_t forward(Store &store, const std::string &table, const std::string &kind,
                      const std::string &twin) {
  const std::string name = table + "_table_record_" + kind + "_cb" + twin;
  if (kind == "grouping") {
    return harness::function<GroupingForwarder>(name)(store, 21, &context_place, &store.err,
                                                      &record_place, &third_place);
  }
  if (kind == "free") {
    return harness::function<FreeForwarder>(name)(store, 21, &context_place, 0xFEDCBA98, &store.err,
                                                  &record_place);
  }
  if (kind.ends_with("_dm")) {
    return harness::function<DmForwarder>(name)(store, 21, &record_place, &store.err);
  }
  return harness::function<EventForwarder>(name)(store, 21, &context_place, &record_place,
                                                 &store.err);
}

std::string handler_of(const std::string &table, const std::string &kind) {
  return "ospf_harbor_oper_" + table + "_table_record_" + kind + "_handler";
}

class Handlers : public testing::Test {
 protected:
  Handlers() {
    calls.clear();
    word_left = 0;
  }
  ~Handlers() override { word_left = 0; }

  // The forwarder gives result and its one call of a handler is the one told.
  void expect_call(const std::string &table, const std::string &kind, const Call &expected,
                   std::uint64_t result) {
    for (const std::string &twin : twins) {
      calls.clear();
      store.err = 0;
      EXPECT_EQ(forward(store, table, kind, twin), result) << kind << twin;
      EXPECT_EQ(calls, std::vector<Call>{expected}) << kind << twin;
      EXPECT_EQ(store.err, word_left) << kind << twin;
    }
  }

  Store store;
};

const std::string plain_only = "tbl_ospf_rev1";
const std::string with_both = "tbl_ospf_instance_rev1";

// --- without handlers ---

TEST_F(Handlers, WithoutAHandlerEachForwarderOfEachTableLeavesTheErrorWord0AndEmitsItsMessage) {
  std::uint32_t forwarders = 0;
  for (const auto *table : harbor::model::all_tables) {
    const std::string name = "tbl_" + std::string(table->name);
    for (const Kind &kind : kinds) {
      if (defined.contains(handler_of(name, kind.name))) continue;
      if (defined.contains(handler_of(name, kind.fallback))) continue;
      std::vector<const Kind *> emitted{&kind};
      if (!kind.fallback.empty()) emitted.push_back(&kind_of(kind.fallback));
      for (const std::string &twin : twins) {
        TraceLog traced;
        EXPECT_EQ(forward(store, name, kind.name, twin), 0u);
        EXPECT_EQ(store.err, 0u);
        ASSERT_EQ(traced.messages().size(), emitted.size()) << name << kind.name << twin;
        for (std::size_t at = 0; at < emitted.size(); ++at) {
          const harness::Traced &message = traced.messages()[at];
          EXPECT_EQ(message.text, "default ospf_harbor_oper_" + name + "_record " +
                                      emitted[at]->in_message + " handler called");
          EXPECT_EQ(message.level, 6u);
          EXPECT_EQ(message.index, harbor::messages::block_base(*table) + emitted[at]->offset);
          EXPECT_TRUE(message.is_table_side);
        }
        ++forwarders;
      }
    }
  }
  // All of the tables but two, and of the one with both handlers of two events the modify, grouping
  // and free events.
  EXPECT_EQ(forwarders, 2 * ((harbor::model::all_tables.size() - 2) * kinds.size() + 3));
  EXPECT_TRUE(calls.empty());
}

TEST_F(Handlers, WithoutAHandlerTheLastErrorIsClearedOnceAndTwiceByADmEvent) {
  for (const Kind &kind : kinds) {
    const CallLog log;
    forward(store, "tbl_ospf_area", kind.name, "");
    EXPECT_EQ(log.count("kelp_clear_last_error"), kind.fallback.empty() ? 1u : 2u) << kind.name;
    EXPECT_EQ(log.count("kelp_store_err"), 0u) << kind.name;
  }
}

TEST_F(Handlers, TheMissingDmHandlerIsToldBeforeTheMissingPlainOne) {
  TraceLog traced;
  forward(store, "tbl_ospf_area", "create_dm", "");
  forward(store, "tbl_ospfv2_link", "delete_dm", "");
  EXPECT_EQ(traced.texts(),
            (std::vector<std::string>{
                "default ospf_harbor_oper_tbl_ospf_area_record create DM handler called",
                "default ospf_harbor_oper_tbl_ospf_area_record create handler called",
                "default ospf_harbor_oper_tbl_ospfv2_link_record delete DM handler called",
                "default ospf_harbor_oper_tbl_ospfv2_link_record delete handler called"}));
}

// --- with handlers ---

TEST_F(Handlers, ThePlainHandlersGetTheirArgumentsAndTheirResultGoesBack) {
  TraceLog traced;
  const auto with = [&](const char *handler) {
    return Call{handler, store, 21, {&context_place, &record_place, &store.err}};
  };
  expect_call(plain_only, "create", with("create"), create_result);
  expect_call(plain_only, "modify", with("modify"), modify_result);
  expect_call(plain_only, "delete", with("delete"), delete_result);
  EXPECT_TRUE(traced.empty());
}

TEST_F(Handlers, TheGroupingHandlerGetsTheErrorWordBeforeItsTwoLastArguments) {
  TraceLog traced;
  expect_call(plain_only, "grouping",
              {"grouping", store, 21, {&context_place, &store.err, &record_place, &third_place}},
              grouping_result);
  EXPECT_TRUE(traced.empty());
}

TEST_F(Handlers, TheFreeHandlerGetsItsNumberBeforeTheErrorWord) {
  TraceLog traced;
  expect_call(plain_only, "free",
              {"free", store, 21, {&context_place, &store.err, &record_place}, 0xFEDCBA98},
              free_result);
  EXPECT_TRUE(traced.empty());
}

TEST_F(Handlers, ADmEventGoesToThePlainHandlerWithANullContextAndItsRecord) {
  for (const std::string kind : {"create", "delete"}) {
    TraceLog traced;
    const Call call{kind, store, 21, {nullptr, &record_place, &store.err}};
    expect_call(plain_only, kind + "_dm", call, kind == "create" ? create_result : delete_result);
    const std::string told =
        "default ospf_harbor_oper_tbl_ospf_rev1_record " + kind + " DM handler called";
    EXPECT_EQ(traced.texts(), (std::vector<std::string>{told, told}));
    EXPECT_TRUE(traced.has(6, told));
  }
}

TEST_F(Handlers, ADmEventClearsTheLastErrorAgainBeforeThePlainHandler) {
  const CallLog log;
  forward(store, plain_only, "create_dm", "");
  EXPECT_EQ(log.count("kelp_clear_last_error"), 2u);
}

TEST_F(Handlers, OfBothHandlersOnlyTheDmHandlerRunsForADmEvent) {
  TraceLog traced;
  const auto with = [&](const char *handler) {
    return Call{handler, store, 21, {&record_place, &store.err}};
  };
  expect_call(with_both, "create_dm", with("create_dm"), create_dm_result);
  expect_call(with_both, "delete_dm", with("delete_dm"), delete_dm_result);
  EXPECT_TRUE(traced.empty());
}

TEST_F(Handlers, OfBothHandlersOnlyThePlainOneRunsForAPlainEvent) {
  TraceLog traced;
  const auto with = [&](const char *handler) {
    return Call{handler, store, 21, {&context_place, &record_place, &store.err}};
  };
  expect_call(with_both, "create", with("create"), create_result);
  expect_call(with_both, "delete", with("delete"), delete_result);
  EXPECT_TRUE(traced.empty());
}

TEST_F(Handlers, AHandlerRunsWithTheLastErrorCleared) {
  for (const std::string &name : defined) {
    const std::string table = name.find(with_both) != std::string::npos ? with_both : plain_only;
    const std::size_t start = name.find("_record_") + 8;
    const std::string kind = name.substr(start, name.size() - start - 8);
    kelp_store_err(store, 90);
    calls.clear();
    const CallLog log;
    forward(store, table, kind, "");
    EXPECT_EQ(log.count("kelp_clear_last_error"), 1u) << name;
    ASSERT_EQ(calls.size(), 1u) << name;
    EXPECT_EQ(calls[0].last_error_on_entry, 0) << name;
  }
}

TEST_F(Handlers, WhatAHandlerLeavesInTheErrorWordStays) {
  word_left = 77;
  for (const Kind &kind : kinds) {
    store.err = 0;
    forward(store, plain_only, kind.name, "");
    EXPECT_EQ(store.err, 77u) << kind.name;
  }
  EXPECT_EQ(calls.size(), kinds.size());
}

// --- with an error present ---

TEST_F(Handlers, ASetErrorWordCallsNoHandlerAndEmitsNoTrace) {
  TraceLog traced;
  kelp_store_err(store, 12);
  const CallLog log;
  for (const std::string &table : harness::table_names()) {
    for (const Kind &kind : kinds) {
      for (const std::string &twin : twins) {
        store.err = KELP_ERR_NO_ROOM;
        EXPECT_EQ(forward(store, table, kind.name, twin), 0u) << table << kind.name << twin;
        EXPECT_EQ(store.err, KELP_ERR_NO_ROOM) << table << kind.name << twin;
      }
    }
  }
  EXPECT_TRUE(calls.empty());
  EXPECT_TRUE(traced.empty());
  EXPECT_EQ(log.count("kelp_clear_last_error"), 0u);
  EXPECT_EQ(store.last_error(), KELP_ERR_NO_MEMORY);
}

}  // namespace
