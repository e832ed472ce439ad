// Steps, starts, neighbours of a key and walks, in the order of a table.
#include "tables/table_fixture.hpp"

namespace {

using harness::AreaTable;
using harness::CallLog;
using harness::Failing;
using harness::shell;
using harness::Tenant;
using harness::TraceLog;

using Record = tbl_ospf_area_record *;
using Records = std::vector<Record>;

// All that a start and its steps give.
template <typename Start, typename Step>
Records walked(AreaTable &areas, Start start, Step step) {
  Records found;
  std::uint32_t word = 0;
  for (Record record = start(areas.handle(), 0, areas.table, &word); record != nullptr;
       record = step(areas.handle(), 0, areas.table, record, &word)) {
    found.push_back(record);
  }
  EXPECT_EQ(word, 0u);
  return found;
}

TEST(Traversal, EveryStartOfAnEmptyTableGivesNullWithoutAnError) {
  AreaTable areas;
  auto *table = areas.table;
  auto *err = &areas.err;
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_first(areas, 0, table, err), nullptr);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_last(areas, 0, table, err), nullptr);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_first_by_src(areas, 0, table, 1, err), nullptr);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_last_by_src(areas, 0, table, 1, err), nullptr);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_first_ignore_src(areas, 0, table, err), nullptr);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_first_not_pending_destroy(areas, 0, table, 0, err),
            nullptr);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_last_not_pending_destroy(areas, 0, table, 0, err),
            nullptr);
  EXPECT_EQ(tbl_ospf_area_pkey_get_first(areas, 0, table, err), nullptr);
  EXPECT_EQ(tbl_ospf_area_pkey_get_last_by_src_unsafe(areas, 0, table, 1, err), nullptr);
  EXPECT_EQ(areas.err, 0u);
}

TEST(Traversal, AStepGoesInTheOrderOfKeysBothWays) {
  AreaTable areas;
  const Record c = areas.inserted(30), a = areas.inserted(10), b = areas.inserted(20);
  EXPECT_EQ(walked(areas, tbl_ospf_area_ospf_area_area_id_get_first,
                   tbl_ospf_area_ospf_area_area_id_get_next),
            (Records{a, b, c}));
  EXPECT_EQ(walked(areas, tbl_ospf_area_ospf_area_area_id_get_last,
                   tbl_ospf_area_ospf_area_area_id_get_prev),
            (Records{c, b, a}));
  EXPECT_EQ(walked(areas, tbl_ospf_area_pkey_get_first, tbl_ospf_area_pkey_get_next_unsafe),
            (Records{a, b, c}));
  EXPECT_EQ(walked(areas, tbl_ospf_area_pkey_get_last_unsafe, tbl_ospf_area_pkey_get_prev),
            (Records{c, b, a}));
}

TEST(Traversal, TheDefaultFormsTakeSource1AndTheIgnoringFormsAny) {
  AreaTable areas;
  const Record one = areas.inserted(1, 1), two = areas.inserted(2, 2), three = areas.inserted(3, 1);
  EXPECT_EQ(walked(areas, tbl_ospf_area_ospf_area_area_id_get_first,
                   tbl_ospf_area_ospf_area_area_id_get_next),
            (Records{one, three}));
  EXPECT_EQ(walked(areas, tbl_ospf_area_ospf_area_area_id_get_first_ignore_src,
                   tbl_ospf_area_ospf_area_area_id_get_next_ignore_src),
            (Records{one, two, three}));
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_prev_ignore_src, areas.table, three), two);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_first_by_src, areas.table, 2), two);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_last_by_src, areas.table, 2), two);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_prev_by_src, areas.table, three, 2), two);
}

TEST(Traversal, OnlyTheLowByteOfTheWantedSourceCounts) {
  AreaTable areas;
  areas.inserted(1, 1);
  const Record two = areas.inserted(2, 2);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_first_by_src, areas.table, 0x302), two);
}

TEST(Traversal, ShadowsShowOnlyWithoutAFilterOrUnderSource255) {
  AreaTable areas;
  const Record none = areas.inserted(1, 0), plain = areas.inserted(1, 1),
               shadow = areas.inserted(1, 255);
  auto *table = areas.table;
  auto *err = &areas.err;
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_next_ignore_src(areas, 0, table, plain, err),
            shadow);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_first_by_src(areas, 0, table, 255, err), shadow);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_first_by_src(areas, 0, table, 0, err), none);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_next_by_src(areas, 0, table, none, 0, err),
            nullptr);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_next_by_src(areas, 0, table, none, 255, err),
            shadow);
  EXPECT_EQ(
      tbl_ospf_area_ospf_area_area_id_get_next_internal(areas, 0, table, plain, 0, 0, 0, 0, err),
      nullptr);
}

TEST(Traversal, TheTwoNotPendingStartsTakeSource0Differently) {
  AreaTable areas;
  areas.inserted(1, 255);
  const Record other = areas.inserted(2, 7);
  const Record none = areas.inserted(3, 0);
  areas.inserted(4, 1);
  auto *table = areas.table;
  auto *err = &areas.err;
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_first_not_pending_destroy(areas, 0, table, 0, err),
            other);
  EXPECT_EQ(
      tbl_ospf_area_ospf_area_area_id_get_first_not_pending_destroy(areas, 0, table, 0x100, err),
      other);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_last_not_pending_destroy(areas, 0, table, 0, err),
            none);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_first_not_pending_destroy(areas, 0, table, 7, err),
            other);
}

TEST(Traversal, ARecordThatWaitsForItsEndIsShownUnlessPassedOver) {
  AreaTable areas;
  const Record a = areas.inserted(1), pending = areas.inserted(2), c = areas.inserted(3);
  shell(pending)->rec_flags |= REC_PENDING_DESTROY;
  auto *table = areas.table;
  auto *err = &areas.err;
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_next(areas, 0, table, a, err), pending);
  EXPECT_EQ(
      tbl_ospf_area_ospf_area_area_id_get_next_not_pending_destroy(areas, 0, table, a, 1, err), c);
  EXPECT_EQ(
      tbl_ospf_area_ospf_area_area_id_get_prev_not_pending_destroy(areas, 0, table, c, 1, err), a);
  shell(a)->rec_flags |= REC_PENDING_DESTROY;
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_first(areas, 0, table, err), a);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_first_not_pending_destroy(areas, 0, table, 1, err),
            c);
  shell(a)->rec_flags &= ~std::uint32_t{REC_PENDING_DESTROY};
  shell(pending)->rec_flags &= ~std::uint32_t{REC_PENDING_DESTROY};
}

TEST(Traversal, ATenantSeesOnlyItsOwnRecords) {
  AreaTable areas;
  areas.inserted_by(4, 1);
  areas.inserted_by(4, 9);
  const Record a = areas.inserted_by(5, 2), b = areas.inserted_by(5, 8);
  areas.inserted_by(6, 1);
  const Tenant five(5);
  EXPECT_EQ(walked(areas, tbl_ospf_area_ospf_area_area_id_get_first,
                   tbl_ospf_area_ospf_area_area_id_get_next),
            (Records{a, b}));
  EXPECT_EQ(walked(areas, tbl_ospf_area_ospf_area_area_id_get_last,
                   tbl_ospf_area_ospf_area_area_id_get_prev),
            (Records{b, a}));
}

TEST(Traversal, AStartGivesNullWhenTheFirstFittingRecordIsAnotherTenants) {
  AreaTable areas;
  areas.inserted_by(4, 1);
  areas.inserted_by(5, 1, 2);
  areas.inserted_by(6, 1);
  const Tenant five(5);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_first, areas.table), nullptr);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_last, areas.table), nullptr);
  EXPECT_EQ(areas.err, 0u);
}

TEST(Traversal, TenantNoneIsATenantLikeAnother) {
  AreaTable areas;
  const Record a = areas.inserted(5);
  areas.inserted_by(1, 1);
  EXPECT_EQ(walked(areas, tbl_ospf_area_ospf_area_area_id_get_first,
                   tbl_ospf_area_ospf_area_area_id_get_next),
            (Records{a}));
}

TEST(Traversal, SameKeyEndsAtTheFirstOtherKey) {
  AreaTable areas;
  const Record a = areas.inserted(1, 1), b = areas.inserted(1, 2);
  const Record c = areas.inserted(2, 1);
  const auto next = [&](Record record, std::uint32_t same_key) {
    return areas(tbl_ospf_area_ospf_area_area_id_get_next_internal, areas.table, record, 1, 0, 0,
                 same_key);
  };
  EXPECT_EQ(next(a, 1), b);
  EXPECT_EQ(next(b, 1), nullptr);
  EXPECT_EQ(next(b, 0), c);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_prev_internal, areas.table, c, 1, 0, 0, 1),
            nullptr);
}

TEST(Traversal, AnErrorPresentGivesNullAndStays) {
  AreaTable areas;
  const Record a = areas.inserted(1);
  areas.inserted(2);
  areas.err = 9;
  kelp_store_err(areas, 5);
  const TraceLog traced;
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_first, areas.table), nullptr);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_next, areas.table, a), nullptr);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_sub_next, areas.table, a), nullptr);
  EXPECT_EQ(areas.err, 9u);
  EXPECT_EQ(areas.last_error(), 5);
  EXPECT_TRUE(traced.empty());
}

TEST(Traversal, AStepForgetsTheLastError) {
  AreaTable areas;
  kelp_store_err(areas, 5);
  areas(tbl_ospf_area_ospf_area_area_id_get_first, areas.table);
  EXPECT_EQ(areas.last_error(), 0);
}

TEST(Traversal, WhatAStepGivesEntersTheReplicationCacheShadowsExcepted) {
  AreaTable areas;
  const Record a = areas.inserted(1), passed = areas.inserted(2, 2),
               shadow = areas.inserted(2, 255), b = areas.inserted(3);
  const Record start = areas(tbl_ospf_area_ospf_area_area_id_get_first, areas.table);
  EXPECT_EQ(start, a);
  EXPECT_TRUE(areas.is_cached(a));
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_next, areas.table, a), b);
  EXPECT_TRUE(areas.is_cached(b));
  EXPECT_FALSE(areas.is_cached(passed));
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_next_ignore_src, areas.table, passed),
            shadow);
  EXPECT_FALSE(areas.is_cached(shadow));
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_sub_prev, areas.table, shadow), passed);
  EXPECT_TRUE(areas.is_cached(passed));
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_sub_next, areas.table, passed), shadow);
  EXPECT_FALSE(areas.is_cached(shadow));
}

TEST(Traversal, AFailureOfTheCacheDoesNotStopTheStep) {
  AreaTable areas;
  const Record a = areas.inserted(1);
  const Failing failing("kelprepl_add_to_cache", 12);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_first, areas.table), a);
  EXPECT_EQ(areas.err, KELP_ERR_NO_MEMORY);
}

TEST(Traversal, AStepAsksForTheTenantBeforeTheNeighbour) {
  AreaTable areas;
  const Record a = areas.inserted(1);
  areas.inserted(2);
  CallLog log;
  areas(tbl_ospf_area_ospf_area_area_id_get_next, areas.table, a);
  EXPECT_EQ(log.calls(), (std::vector<std::string>{"kelp_clear_last_error", "mt_get_tenant_id",
                                                   "e_avl_get_next", "kelprepl_add_to_cache"}));
  log.clear();
  areas(tbl_ospf_area_ospf_area_area_id_get_last, areas.table);
  EXPECT_EQ(log.calls(), (std::vector<std::string>{"kelp_clear_last_error", "mt_get_tenant_id",
                                                   "e_avl_get_last", "kelprepl_add_to_cache"}));
}

TEST(Traversal, ASubStepTakesTheNeighbourOfTheSameKeyAtFaceValue) {
  AreaTable areas;
  const Record low = areas.inserted_by(4, 7), high = areas.inserted_by(5, 7),
               other = areas.inserted_by(5, 8);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_sub_next, areas.table, low), high);
  EXPECT_EQ(areas(tbl_ospf_area_pkey_get_sub_prev, areas.table, high), low);
  EXPECT_EQ(areas(tbl_ospf_area_pkey_get_sub_next_unsafe, areas.table, high), nullptr);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_sub_next, areas.table, other), nullptr);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_sub_prev, areas.table, low), nullptr);
}

TEST(Traversal, AShadowIsFoundBehindTheOtherSources) {
  AreaTable areas;
  const Record a = areas.inserted(1, 1), shadow = areas.inserted(1, 255), alone = areas.inserted(2);
  areas.inserted(1, 9);
  auto *table = areas.table;
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_shadow, table, a), shadow);
  EXPECT_EQ(areas(tbl_ospf_area_pkey_get_shadow, table, shadow), shadow);
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_shadow, table, alone), nullptr);
  EXPECT_EQ(areas.err, 0u);
}

TEST(Traversal, TheShadowOfANullRecordIsNullWithoutALookAtTheErrorWord) {
  AreaTable areas;
  areas.err = 9;
  CallLog log;
  EXPECT_EQ(areas(tbl_ospf_area_ospf_area_area_id_get_shadow, areas.table, nullptr), nullptr);
  EXPECT_EQ(areas.err, 9u);
  EXPECT_TRUE(log.calls().empty());
}

std::uint32_t collect(void *record, void *argument) {
  static_cast<Records *>(argument)->push_back(static_cast<Record>(record));
  return 0;
}
std::uint32_t stop_at_second(void *record, void *argument) {
  collect(record, argument);
  return static_cast<Records *>(argument)->size() == 2 ? 77 : 0;
}

TEST(Traversal, AWalkSeesEverythingAndCachesNothing) {
  AreaTable areas;
  const Record a = areas.inserted_by(4, 9), b = areas.inserted_by(5, 1, 2),
               c = areas.inserted_by(5, 1, 255);
  shell(b)->rec_flags |= REC_PENDING_DESTROY;
  Records seen;
  CallLog log;
  tbl_ospf_area_ospf_area_area_id_walk(areas.table, collect, &seen, &areas.err);
  EXPECT_EQ(seen, (Records{a, b, c}));
  EXPECT_EQ(log.count("kelprepl_add_to_cache"), 0u);
  EXPECT_EQ(log.count("kelp_clear_last_error"), 0u);
  shell(b)->rec_flags &= ~std::uint32_t{REC_PENDING_DESTROY};
}

TEST(Traversal, AWalkUnderAnErrorDoesNothing) {
  AreaTable areas;
  areas.inserted(1);
  Records seen;
  areas.err = 9;
  tbl_ospf_area_ospf_area_area_id_walk(areas.table, collect, &seen, &areas.err);
  EXPECT_TRUE(seen.empty());
  EXPECT_EQ(areas.err, 9u);
}

TEST(Traversal, ACrWalkGivesWhatTheTreesWalkGives) {
  AreaTable areas;
  areas.inserted(1);
  areas.inserted(2);
  areas.inserted(3);
  Records seen;
  EXPECT_EQ(tbl_ospf_area_record_walk_cr(areas, areas.table, 0, collect, &seen), 0u);
  EXPECT_EQ(seen.size(), 3u);
  seen.clear();
  EXPECT_EQ(tbl_ospf_area_record_walk_cr(areas, areas.table, 0, stop_at_second, &seen), 77u);
  EXPECT_EQ(seen.size(), 2u);
}

TEST(Traversal, ACrWalkUnderAnErrorGives0) {
  AreaTable areas;
  areas.inserted(1);
  Records seen;
  areas.handle()->cr_err = 9;
  EXPECT_EQ(tbl_ospf_area_record_walk_cr(areas, areas.table, 0, collect, &seen), 0u);
  EXPECT_TRUE(seen.empty());
  EXPECT_EQ(areas.handle()->cr_err, 9u);
  areas.handle()->cr_err = 0;
}

TEST(Traversal, ACrWalkByAnotherKeyIsToldAndEnds) {
  AreaTable areas;
  areas.inserted(1);
  Records seen;
  const TraceLog traced;
  EXPECT_EQ(tbl_ospf_area_record_walk_cr(areas, areas.table, 3, collect, &seen), 0u);
  EXPECT_TRUE(seen.empty());
  EXPECT_EQ(traced.texts(), std::vector<std::string>{"unknow key:3"});
  EXPECT_TRUE(traced.has(3, "unknow key:3"));
}

TEST(Traversal, TheWalksAdapterCallsTheCallbackWithTheNodesRecord) {
  AreaTable areas;
  const Record a = areas.inserted(1);
  struct {
    std::uint32_t (*callback)(void *, void *);
    void *argument;
  } context;
  Records seen{a};
  context = {stop_at_second, &seen};
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_avl_internal_walk(&shell(a)->avl_node, &context), 77u);
  EXPECT_EQ(seen, (Records{a, a}));
}

TEST(Traversal, TheUnorderedTraversalChangesNothing) {
  AreaTable areas;
  areas.inserted(1);
  Records seen;
  areas.err = 9;
  tbl_ospf_area_ospf_area_area_id_unordered_traversal(areas.table, collect, &seen, &areas.err);
  EXPECT_TRUE(seen.empty());
  EXPECT_EQ(areas.err, 9u);
  tbl_ospf_area_ospf_area_area_id_unordered_traversal(nullptr, nullptr, nullptr, nullptr);
}

TEST(Traversal, TheCrSelectorRefusesAnotherOperationAndLeavesTheWord) {
  AreaTable areas;
  areas.inserted(1);
  const TraceLog traced;
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_cr(areas, areas.table, 4, nullptr, 1, 0), nullptr);
  EXPECT_EQ(areas.handle()->cr_err, 0u);
  EXPECT_EQ(areas.last_error(), KELP_ERR_INVALID);
  EXPECT_EQ(traced.texts(), std::vector<std::string>{"invalid record get flag 4"});
  EXPECT_TRUE(traced.has(3, "invalid record get flag 4"));
}

TEST(Traversal, TheCrSelectorGoesAllFourWays) {
  AreaTable areas;
  const Record a = areas.inserted(1), b = areas.inserted(2), c = areas.inserted(3);
  const auto get = [&](std::uint32_t operation, Record record, std::uint8_t src = 0,
                       std::uint32_t flags = 0) {
    return tbl_ospf_area_ospf_area_area_id_get_cr(areas, areas.table, operation, record, src,
                                                  flags);
  };
  EXPECT_EQ(get(0, nullptr), a);
  EXPECT_EQ(get(1, nullptr), c);
  EXPECT_EQ(get(2, b), a);
  EXPECT_EQ(get(3, b), c);
}

TEST(Traversal, TheCrSelectorsFlagsOpenItsFilters) {
  AreaTable areas;
  const Record pending = areas.inserted(1), other = areas.inserted(2, 6), plain = areas.inserted(3);
  shell(pending)->rec_flags |= REC_PENDING_DESTROY;
  const auto first = [&](std::uint8_t src, std::uint32_t flags) {
    return tbl_ospf_area_ospf_area_area_id_get_cr(areas, areas.table, 0, nullptr, src, flags);
  };
  EXPECT_EQ(first(0, 0), plain);
  EXPECT_EQ(first(0, 1), other);
  EXPECT_EQ(first(0, 2), pending);
  EXPECT_EQ(first(0, 3), pending);
  EXPECT_EQ(first(6, 0), other);
  EXPECT_EQ(tbl_ospf_area_ospf_area_area_id_get_cr(areas, areas.table, 3, pending, 6, 0), other);
  areas.handle()->cr_err = 9;
  EXPECT_EQ(first(0, 0), nullptr);
  areas.handle()->cr_err = 0;
  shell(pending)->rec_flags &= ~std::uint32_t{REC_PENDING_DESTROY};
}

}  // namespace
