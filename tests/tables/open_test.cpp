// Opening, closing and freeing tables.
#include "tables/table_fixture.hpp"
#include "types/replaced_call.hpp"

namespace {

using harness::AreaTable;
using harness::CallLog;
using harness::entry_of;
using harness::Failing;
using harness::shell;
using harness::Store;
using harness::StoreOptions;
using harness::TraceLog;
using harness::WriteWatch;

using Table = tbl_ospf_area_table *;

const std::string luid_text = "82c5347ad65f8377a99c123367eb25f8";

kelp_tbi_root *id_root(Store &store) {
  return static_cast<kelp_tbi_root *>(
      lumen_get_key(store.handle()->obj_pool, ("__kelp_TBI__" + luid_text).c_str()));
}

void free_table(Store &store, Table table) {
  std::uint32_t word = 0;
  tbl_ospf_area_table_free(store, 0, table, &word);
  EXPECT_EQ(word, 0u);
}

Table open_named(Store &store, const std::string &name, std::uint32_t read_only = 0) {
  return store(tbl_ospf_area_table_open, name.c_str(), read_only);
}

// Tables opened by id leave the block in which their ids are kept.
StoreOptions with_ids() { return {.may_leave = 1}; }

// --- by name -------------------------------------------------------------------------------------

TEST(Open, AReaderOfAMissingTableGetsNullWithoutAnError) {
  Store store;
  const TraceLog traced;
  EXPECT_EQ(open_named(store, "areas", 1), nullptr);
  EXPECT_EQ(store.err, 0u);
  EXPECT_TRUE(traced.empty());
  EXPECT_EQ(kelp_database_next_table(store.database(), nullptr), nullptr);
}

TEST(Open, TheSameNameGivesTheSameTableWhichIsCountedOnce) {
  Store store;
  kelp_variant_entry &entry = entry_of(_tbl_ospf_area_table_type_info_internal);
  const std::uint64_t created = entry.create_count;
  const Table table = open_named(store, "areas");
  EXPECT_EQ(open_named(store, "areas"), table);
  EXPECT_EQ(store(tbl_ospf_area_table_open_unsafe, "areas", 1), table);
  EXPECT_EQ(entry.create_count, created + 1);
  free_table(store, table);
}

TEST(Open, ANewTableHoldsItsPathAndNothingElse) {
  Store store;
  const Table table = open_named(store, "areas");
  EXPECT_EQ(shell(table)->tbl_name, "areas/" + luid_text);
  EXPECT_EQ(shell(table)->header.tinfo, &_tbl_ospf_area_table_type_info_internal);
  EXPECT_EQ(shell(table)->open_type, 0u);
  EXPECT_EQ(shell(table)->table_id, 0u);
  EXPECT_EQ(shell(table)->record_count, 0u);
  EXPECT_EQ(shell(table)->gc_word, 0u);
  EXPECT_EQ(shell(table)->toc_next, nullptr);
  EXPECT_NE(shell(table)->header.obj_flags & OBJ_OID_MAPPED, 0);
  EXPECT_EQ(kelp_database_next_table(store.database(), nullptr), shell(table));
  free_table(store, table);
}

TEST(Open, ANameWithASlashIsThePathItself) {
  Store store;
  const Table table = open_named(store, "a/b");
  EXPECT_STREQ(shell(table)->tbl_name, "a/b");
  free_table(store, table);
}

TEST(Open, ALongNameWithASlashIsCutWithoutAnError) {
  Store store;
  const std::string name = "a/" + std::string(300, 'x');
  const Table table = open_named(store, name);
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(shell(table)->tbl_name, name.substr(0, 207));
  EXPECT_EQ(open_named(store, name.substr(0, 207) + "y"), table);
  free_table(store, table);
}

TEST(Open, APathOf208CharactersGives7) {
  Store store;
  const Table table = open_named(store, std::string(174, 'n'));
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(std::strlen(shell(table)->tbl_name), 207u);
  EXPECT_EQ(open_named(store, std::string(175, 'n')), nullptr);
  store.expect_failure(KELP_ERR_TOO_LONG);
  free_table(store, table);
}

TEST(Open, TablesOfTwoTypesMayShareAName) {
  Store store;
  const Table areas = open_named(store, "a/b");
  auto *interfaces = store(tbl_ospf_interface_table_open, "a/b", 0);
  EXPECT_NE(static_cast<void *>(areas), static_cast<void *>(interfaces));
  EXPECT_EQ(store.err, 0u);
  free_table(store, areas);
  store(tbl_ospf_interface_table_free, interfaces);
}

TEST(Open, AnErrorPresentGivesNullWithoutATrace) {
  Store store;
  store.err = 9;
  kelp_store_err(store, 5);
  const TraceLog traced;
  const CallLog log;
  EXPECT_EQ(open_named(store, "areas"), nullptr);
  EXPECT_EQ(store.err, 9u);
  EXPECT_EQ(store.last_error(), 5);
  EXPECT_TRUE(traced.empty());
  EXPECT_TRUE(log.calls().empty());
}

TEST(Open, AnOpenCallsThePlatformInThisOrder) {
  Store store;
  CallLog log;
  const Table table = open_named(store, "areas");
  const std::vector<std::string> in_order{
      "kelp_clear_last_error",
      "snap_avl_trace_init",
      "snap_gbt_trace_init",
      "kelplib_database_table_toc_create",
      "kelpdb_database_toc_open",
      "kelpdb_database_toc_get_table_root",
      "lumen_set_range",
      "lumen_set_range",
      "lumen_set_range",
      "lumen_set_range",
      "lumen_set_range",
      "kelp_oid_mapping_create",
      "kelpdb_database_toc_insert",
  };
  EXPECT_EQ(log.only(in_order), in_order);
  EXPECT_EQ(log.count("counter_notify"), 0u);
  EXPECT_EQ(log.count("kelplib_database_is_write_locked"), 0u);
  free_table(store, table);
}

TEST(Open, ANewTableIsDeclaredWordByWord) {
  Store store;
  const Table first = open_named(store, "first");
  WriteWatch watch(store);
  const Table table = tbl_ospf_area_table_open(store, 8, "areas", 0, &store.err);
  const auto ranges = watch.of_origin(KELP_WRITE_RANGE);
  ASSERT_EQ(ranges.size(), 5u);
  EXPECT_EQ(ranges[0].address, &shell(table)->gc_word);
  EXPECT_EQ(ranges[0].space_id, 0xFFFFFFFFu);
  EXPECT_EQ(ranges[1].address, &shell(table)->toc_next);
  EXPECT_EQ(ranges[2].address, &shell(table)->toc_prev);
  EXPECT_EQ(ranges[3].address, &shell(first)->toc_next);
  for (const auto &range : ranges) EXPECT_EQ(range.length, 8u);
  for (std::size_t at = 1; at < ranges.size(); ++at) EXPECT_EQ(ranges[at].space_id, 8u);
  EXPECT_EQ(shell(table)->toc_prev, &shell(first)->toc_next);
  EXPECT_TRUE(watch.of_origin(KELP_WRITE_COUNTER).empty());
  free_table(store, first);
  free_table(store, table);
}

TEST(Open, UnderSharedTypeRecordsATablePointsAtTheRuntimesCopy) {
  Store store({.shared_tinfo = true});
  const Table table = open_named(store, "areas");
  const kelp_type_record *type = shell(table)->header.tinfo;
  EXPECT_NE(type, &_tbl_ospf_area_table_type_info_internal);
  EXPECT_STREQ(type->type_name, "tbl_ospf_area");
  EXPECT_EQ(type->varinfo->entries[0].create_count, 1u);
  free_table(store, table);
  EXPECT_EQ(type->varinfo->entries[0].destroy_count, 1u);
}

TEST(Open, ANegativeNumberOfVariantsIsToldAndTheOpenGoesOn) {
  Store store;
  kelp_variant_info &variants = *_tbl_ospf_area_table_type_info_internal.varinfo;
  variants.n_variants = -1;
  TraceLog traced;
  const Table table = open_named(store, "areas");
  EXPECT_NE(table, nullptr);
  EXPECT_TRUE(traced.has(6, "variant 0 requested only 4294967295 variants present"));
  traced.clear();
  free_table(store, table);
  EXPECT_TRUE(traced.has(6, "variant 0 requested only 4294967295 variants present"));
  variants.n_variants = 1;
}

// --- locks ---------------------------------------------------------------------------------------

constexpr char no_lock[] = "Opening table in create mode while not holding a write lock";

TEST(OpenDeathTest, AReadLockMakesNoTable) {
  Store store;
  ASSERT_EQ(kelp_lock_read(store, nullptr), 0);
  EXPECT_EQ(open_named(store, "areas", 1), nullptr);
  EXPECT_EQ(store.err, 0u);
  EXPECT_FATAL(open_named(store, "areas"), no_lock);
  kelp_unlock(store, nullptr);
}

TEST(OpenDeathTest, WithoutALockASharedDatabaseGetsNoTable) {
  Store store({.marked_shared = true});
  EXPECT_FATAL(open_named(store, "areas"), no_lock);
}

TEST(OpenDeathTest, AReadLockRefusesAlsoAnExistingTable) {
  Store store;
  const Table table = open_named(store, "areas");
  ASSERT_EQ(kelp_lock_read(store, nullptr), 0);
  EXPECT_FATAL(open_named(store, "areas"), no_lock);
  EXPECT_EQ(open_named(store, "areas", 1), table);
  kelp_unlock(store, nullptr);
  free_table(store, table);
}

TEST(Open, TheWriteLockMakesATableInASharedDatabase) {
  AreaTable areas({.marked_shared = true});
  EXPECT_NE(areas.table, nullptr);
}

TEST(Open, AReaderBeforeTheWriterIsToldSo) {
  Store store({.marked_shared = true});
  const TraceLog traced;
  EXPECT_EQ(open_named(store, "areas", 1), nullptr);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(traced.texts(),
            std::vector<std::string>{"Could not find TOC root in DB test. Lock type: RD_LOCK, Open "
                                     "type: 1"});
  EXPECT_TRUE(traced.has(6, traced.texts()[0]));
}

TEST(OpenDeathTest, AWriterWithoutATocRootEndsTheProcess) {
  Store store;
  const Failing failing("kelpdb_database_toc_open", 0);
  EXPECT_FATAL(open_named(store, "areas"), "Failed to open toc root for database test");
  EXPECT_FATAL(open_named(store, "areas", 1), "Failed to open toc root for database test");
}

// --- failures ------------------------------------------------------------------------------------

TEST(Open, AFailureOfTheListOfTablesEndsTheOpen) {
  Store store;
  const TraceLog traced;
  const Failing failing("kelplib_database_table_toc_create", 12);
  EXPECT_EQ(open_named(store, "areas"), nullptr);
  EXPECT_EQ(store.err, KELP_ERR_NO_MEMORY);
  EXPECT_TRUE(traced.empty());
}

TEST(Open, AFailureOfTheTocIsToldWithItsText) {
  Store store;
  const TraceLog traced;
  kelp_database_fail_after(store.database(), KELP_FAULT_TOC_OPEN, 0);
  EXPECT_EQ(open_named(store, "areas"), nullptr);
  EXPECT_EQ(store.err, 5u);
  EXPECT_TRUE(traced.has(3, "Failed to open TOC. Error Input/output error"));
}

TEST(Open, AFailureToFindIsToldWithItsTextByNameAndById) {
  Store store(with_ids());
  TraceLog traced;
  kelp_database_fail_after(store.database(), KELP_FAULT_TOC_FIND, 0);
  EXPECT_EQ(open_named(store, "areas"), nullptr);
  EXPECT_EQ(store.err, 5u);
  ASSERT_EQ(traced.messages().size(), 1u);
  EXPECT_EQ(traced.messages()[0].text, "kelp database toc find returned error: Input/output error");
  EXPECT_EQ(traced.messages()[0].index, 1052u + 5);
  traced.clear();
  store.err = 0;
  kelp_database_fail_after(store.database(), KELP_FAULT_TOC_FIND, 0);
  EXPECT_EQ(store(tbl_ospf_area_table_open_by_id, 1, 0), nullptr);
  EXPECT_EQ(store.err, 5u);
  ASSERT_EQ(traced.messages().size(), 1u);
  EXPECT_EQ(traced.messages()[0].index, 1052u + 8);
}

TEST(Open, WithoutMemoryForTheTableTheOpenGives12) {
  Store store;
  store.fail_allocation(0);
  EXPECT_EQ(open_named(store, "areas"), nullptr);
  store.expect_failure(KELP_ERR_NO_MEMORY);
}

TEST(OpenDeathTest, ARefusedDeclarationEndsTheProcess) {
  for (int at = 0; at < 5; ++at) {
    Store store;
    kelp_database_fail_after(store.database(), KELP_FAULT_RANGE, at);
    EXPECT_FATAL(open_named(store, "areas"),
                 "lumen_set_range: store 'test': a fault was asked for.*lumen internal error")
        << at;
  }
}

TEST(OpenDeathTest, AFailedMappingEndsTheProcess) {
  Store store;
  kelp_database_fail_after(store.database(), KELP_FAULT_OID_MAPPING, 0);
  EXPECT_FATAL(open_named(store, "areas"), "Failed to create mapping for tbl_ospf_area table");
}

TEST(OpenDeathTest, AMissingVariantInfoEndsTheProcess) {
  Store store;
  EXPECT_FATAL(
      {
        _tbl_ospf_area_table_type_info_internal.varinfo = nullptr;
        open_named(store, "areas");
      },
      "varinfo is NULL");
  const Table table = open_named(store, "areas");
  EXPECT_FATAL(
      {
        _tbl_ospf_area_table_type_info_internal.varinfo = nullptr;
        store(tbl_ospf_area_table_free, table);
      },
      "varinfo is NULL");
  free_table(store, table);
}

TEST(Open, ATableThatTheTocRefusesStaysLinkedAndMapped) {
  Store store;
  kelp_variant_entry &entry = entry_of(_tbl_ospf_area_table_type_info_internal);
  const std::uint64_t created = entry.create_count;
  {
    const TraceLog traced;
    kelp_database_fail_after(store.database(), KELP_FAULT_TOC_INSERT, 0);
    EXPECT_EQ(open_named(store, "areas"), nullptr);
    EXPECT_EQ(store.err, 5u);
    EXPECT_TRUE(traced.has(3, "Failed to insert static table tbl_ospf_area into the TOC"));
  }
  EXPECT_EQ(entry.create_count, created);
  kelp_table *left = kelp_database_next_table(store.database(), nullptr);
  ASSERT_NE(left, nullptr);
  EXPECT_NE(left->header.obj_flags & OBJ_OID_MAPPED, 0);
  store.handle()->force_toc_delete = 1;
  free_table(store, reinterpret_cast<Table>(left));
}

TEST(Open, ARefusedDynamicTableIsCalledSo) {
  Store store({.may_leave = 1});
  const TraceLog traced;
  kelp_database_fail_after(store.database(), KELP_FAULT_TOC_INSERT, 0);
  EXPECT_EQ(store(tbl_ospf_area_table_open_auto_id, 0), nullptr);
  EXPECT_TRUE(traced.has(3, "Failed to insert dynamic table tbl_ospf_area into the TOC"));
  store.handle()->force_toc_delete = 1;
  free_table(store, reinterpret_cast<Table>(kelp_database_next_table(store.database(), nullptr)));
}

// --- ids -----------------------------------------------------------------------------------------

TEST(Open, AutomaticIdsCountUp) {
  Store store(with_ids());
  std::vector<Table> tables;
  for (std::uint64_t id = 0; id < 3; ++id) {
    const Table table = store(tbl_ospf_area_table_open_auto_id, 0);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(shell(table)->table_id, id);
    EXPECT_EQ(shell(table)->open_type, 2u);
    EXPECT_STREQ(shell(table)->tbl_name, "");
    tables.push_back(table);
  }
  EXPECT_EQ(id_root(store)->tbi_next_id, 3u);
  EXPECT_EQ(id_root(store)->tbi_table_count, 3u);
  for (const Table table : tables) free_table(store, table);
}

TEST(Open, AnIdAboveTheNextRaisesItAndOneBelowItDoesNot) {
  Store store(with_ids());
  const Table first = store(tbl_ospf_area_table_open_by_id, 2, 0);
  ASSERT_EQ(id_root(store)->tbi_next_id, 3u);
  const Table ten = store(tbl_ospf_area_table_open_by_id_unsafe, 10, 0);
  EXPECT_EQ(id_root(store)->tbi_next_id, 11u);
  free_table(store, first);
  const Table two = store(tbl_ospf_area_table_open_by_id, 2, 0);
  EXPECT_EQ(id_root(store)->tbi_next_id, 12u);
  EXPECT_EQ(shell(ten)->table_id, 10u);
  EXPECT_EQ(shell(ten)->open_type, 1u);
  EXPECT_STREQ(shell(ten)->tbl_name, "");
  EXPECT_EQ(store(tbl_ospf_area_table_open_by_id, 10, 1), ten);
  EXPECT_EQ(id_root(store)->tbi_next_id, 12u);
  free_table(store, ten);
  free_table(store, two);
}

// A second thread on a database of its own, which comes in whenever the first one asks whether the
// root last found lies in its store, and leaves its own root there instead.
Store *intruder = nullptr;
std::vector<Table> intruded;

std::uint32_t answer_after_the_other_thread(void *pool, const void *pointer) {
  if (pool != intruder->handle()->obj_pool) {
    std::uint32_t word = 0;
    intruded.push_back(tbl_ospf_area_table_open_auto_id(*intruder, 0, 0, &word));
    EXPECT_EQ(word, 0u);
  }
  return lumen_in_range(pool, pointer);
}

TEST(OpenById, ARootThatAnotherThreadPutsThereMeanwhileIsNotTaken) {
  Store store(with_ids());
  Store other(with_ids());
  intruder = &other;
  intruded.clear();
  std::vector<Table> tables;
  tables.push_back(store(tbl_ospf_area_table_open_auto_id, 0));
  kelp_tbi_root *root = id_root(store);
  ASSERT_NE(root, nullptr);
  {
    const harness::ReplacedCall meeting("lumen_in_range", answer_after_the_other_thread);
    tables.push_back(store(tbl_ospf_area_table_open_auto_id, 0));
  }
  EXPECT_EQ(store.err, 0u);
  ASSERT_EQ(intruded.size(), 1u);
  EXPECT_EQ(root->tbi_next_id, 2u);
  EXPECT_EQ(shell(tables[1])->table_id, 1u);
  EXPECT_EQ(id_root(other)->tbi_next_id, 1u);
  for (Table table : tables) free_table(store, table);
  free_table(other, intruded[0]);
}

TEST(Open, AReaderTakesNoAutomaticId) {
  Store store(with_ids());
  const Table table = store(tbl_ospf_area_table_open_auto_id, 0);
  EXPECT_EQ(store(tbl_ospf_area_table_open_auto_id, 1), nullptr);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(id_root(store)->tbi_next_id, 1u);
  free_table(store, table);
}

TEST(Open, AReaderMakesNoPlaceForIds) {
  Store store;
  const TraceLog traced;
  EXPECT_EQ(store(tbl_ospf_area_table_open_by_id, 1, 1), nullptr);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(id_root(store), nullptr);
  EXPECT_EQ(traced.texts(), std::vector<std::string>{"reader cannot allocate table ID root\\n"});
  EXPECT_TRUE(traced.has(3, "reader cannot allocate table ID root\\n"));
}

TEST(Open, WithoutMemoryForTheIdsTheOpenGives12) {
  Store store;
  store.fail_allocation(0);
  EXPECT_EQ(store(tbl_ospf_area_table_open_auto_id, 0), nullptr);
  store.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(id_root(store), nullptr);
}

TEST(Open, AStoreThatCannotKeepTheIdsIsToldOfAndTheOpenGoesOn) {
  Store store(with_ids());
  const TraceLog traced;
  kelp_database_fail_after(store.database(), KELP_FAULT_SET_KEY, 0);
  const Table table = store(tbl_ospf_area_table_open_auto_id, 0);
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(id_root(store), nullptr);
  EXPECT_TRUE(traced.has(3, "Setting tbi root failed\\n"));
  free_table(store, table);
}

TEST(Open, EachStoreHasItsOwnIds) {
  Store first(with_ids()), second(with_ids());
  const Table a = first(tbl_ospf_area_table_open_by_id, 40, 0);
  const Table b = second(tbl_ospf_area_table_open_auto_id, 0);
  EXPECT_EQ(shell(b)->table_id, 0u);
  const Table c = first(tbl_ospf_area_table_open_auto_id, 0);
  EXPECT_EQ(shell(c)->table_id, 41u);
  free_table(first, a);
  free_table(second, b);
  free_table(first, c);
}

TEST(Open, FreeingAnIdLowersTheCountAndKeepsTheNext) {
  Store store(with_ids());
  const Table table = store(tbl_ospf_area_table_open_by_id, 6, 0);
  const Table other = store(tbl_ospf_area_table_open_auto_id, 0);
  free_table(store, table);
  EXPECT_EQ(id_root(store)->tbi_table_count, 1u);
  EXPECT_EQ(id_root(store)->tbi_next_id, 8u);
  free_table(store, other);
  EXPECT_EQ(id_root(store)->tbi_table_count, 0u);
}

TEST(Open, TheIdsOfATableThatAreGoneGive2AtTheFree) {
  Store store(with_ids());
  const Table table = store(tbl_ospf_area_table_open_by_id, 6, 0);
  kelp_tbi_root *root = id_root(store);
  lumen_set_key(store.handle()->obj_pool, ("__kelp_TBI__" + luid_text).c_str(), nullptr);
  store.handle()->obj_free(store.handle()->obj_pool, 0, root);
  store(tbl_ospf_area_table_free, table);
  store.expect_failure(KELP_ERR_NOT_FOUND);
  EXPECT_EQ(kelp_database_next_table(store.database(), nullptr), shell(table));
}

// --- the other forms -----------------------------------------------------------------------------

TEST(Open, ATableMadeByIorHasThatOid) {
  Store store(with_ids());
  kelp_oid ior{};
  ior.handle_word = 0x1000;
  std::memset(ior.id, 0x5A, sizeof ior.id);
  const Table named = store(tbl_ospf_area_table_open_by_ior_with_name, "areas", &ior, 0, 1);
  ASSERT_NE(named, nullptr);
  kelp_oid oid = store(kelp_handle_to_oid, named, KELP_OID_KIND_TABLE, 0);
  EXPECT_EQ(std::memcmp(oid.id, ior.id, sizeof ior.id), 0);
  std::memset(ior.id, 0x5B, sizeof ior.id);
  const Table numbered = store(tbl_ospf_area_table_open_by_ior_with_id_unsafe, 9, &ior, 0, 0);
  ASSERT_NE(numbered, nullptr);
  EXPECT_EQ(shell(numbered)->table_id, 9u);
  oid = store(kelp_handle_to_oid, numbered, KELP_OID_KIND_TABLE, 0);
  EXPECT_EQ(std::memcmp(oid.id, ior.id, sizeof ior.id), 0);
  EXPECT_EQ(store.err, 0u);
  free_table(store, named);
  free_table(store, numbered);
}

TEST(Open, TheCrFormOpensEachWay) {
  Store store(with_ids());
  const Table named = tbl_ospf_area_table_open_cr(store, 0, 0, "areas", 0);
  const Table numbered = tbl_ospf_area_table_open_cr(store, 0, 1, nullptr, 5);
  const Table next = tbl_ospf_area_table_open_cr(store, 0, 2, nullptr, 0);
  EXPECT_EQ(shell(named)->tbl_name, "areas/" + luid_text);
  EXPECT_EQ(shell(numbered)->table_id, 5u);
  EXPECT_EQ(shell(next)->table_id, 6u);
  EXPECT_EQ(tbl_ospf_area_table_open_cr(store, 1, 1, nullptr, 5), numbered);
  EXPECT_EQ(tbl_ospf_area_table_open_cr(store, 1, 0, "other", 0), nullptr);
  EXPECT_EQ(store.handle()->cr_err, 0u);
  for (const Table table : {named, numbered, next}) free_table(store, table);
}

TEST(Open, EveryTableOpensAndFrees) {
  using Open = void *(kelp_handle *, std::uint32_t, const char *, std::uint32_t, std::uint32_t *);
  using Free = void(kelp_handle *, std::uint32_t, void *, std::uint32_t *);
  Store store;
  for (const std::string &name : harness::table_names()) {
    void *table = harness::function<Open>(name + "_table_open")(store, 0, "all", 0, &store.err);
    ASSERT_NE(table, nullptr) << name;
    EXPECT_EQ(shell(table)->header.tinfo->type_name, name);
    harness::function<Free>(name + "_table_free")(store, 0, table, &store.err);
    EXPECT_EQ(store.err, 0u) << name;
  }
}

// --- close ---------------------------------------------------------------------------------------

TEST(Close, ATableOfAnyStateStaysAsItIs) {
  AreaTable areas;
  areas.inserted(1);
  kelp_store_err(areas, 5);
  areas.err = 9;
  areas(tbl_ospf_area_table_close, areas.table);
  EXPECT_EQ(areas.last_error(), 5);
  EXPECT_EQ(areas.err, 9u);
  areas.err = 0;
  const std::uint64_t live = areas.live_allocations();
  areas(tbl_ospf_area_table_close_unsafe, areas.table);
  EXPECT_EQ(areas.last_error(), 0);
  EXPECT_EQ(areas.live_allocations(), live);
  EXPECT_EQ(open_named(areas, "areas"), areas.table);
  areas(tbl_ospf_area_table_close, nullptr);
  EXPECT_EQ(areas.err, 0u);
}

TEST(Close, TheCrFormFreesInModes1And2) {
  Store store;
  const Table direct = open_named(store, "direct"), requested = open_named(store, "requested"),
              kept = open_named(store, "kept");
  CallLog log;
  tbl_ospf_area_table_close_cr(store, kept, 0);
  tbl_ospf_area_table_close_cr(store, kept, 3);
  EXPECT_EQ(log.calls(),
            (std::vector<std::string>{"kelp_clear_last_error", "kelp_clear_last_error"}));
  tbl_ospf_area_table_close_cr(store, direct, 1);
  EXPECT_EQ(store.handle()->cr_err, 0u);
  tbl_ospf_area_table_close_cr(store, requested, 2);
  EXPECT_EQ(store.handle()->cr_err, 0u);
  EXPECT_EQ(kelp_database_next_table(store.database(), nullptr), shell(kept));
  EXPECT_EQ(shell(kept)->toc_next, nullptr);
  free_table(store, kept);
}

TEST(Close, TheCrFormUnderAnErrorFreesNothing) {
  Store store;
  const Table table = open_named(store, "areas");
  store.handle()->cr_err = 9;
  kelp_store_err(store, 5);
  tbl_ospf_area_table_close_cr(store, table, 1);
  tbl_ospf_area_table_close_cr(store, table, 2);
  EXPECT_EQ(store.handle()->cr_err, 9u);
  EXPECT_EQ(store.last_error(), 5);
  free_table(store, table);
}

// --- free ----------------------------------------------------------------------------------------

TEST(Free, ATableLeavesTheListInTheMiddleAndAtTheEnd) {
  Store store;
  const Table a = open_named(store, "a"), b = open_named(store, "b"), c = open_named(store, "c");
  free_table(store, b);
  EXPECT_EQ(shell(a)->toc_next, shell(c));
  EXPECT_EQ(shell(c)->toc_prev, &shell(a)->toc_next);
  free_table(store, c);
  EXPECT_EQ(shell(a)->toc_next, nullptr);
  const Table d = open_named(store, "d");
  EXPECT_EQ(shell(a)->toc_next, shell(d));
  free_table(store, a);
  EXPECT_EQ(kelp_database_next_table(store.database(), nullptr), shell(d));
  free_table(store, d);
  EXPECT_EQ(kelp_database_next_table(store.database(), nullptr), nullptr);
}

TEST(Free, AFreeDeclaresTheLinksOfItsNeighbours) {
  Store store;
  const Table a = open_named(store, "a"), b = open_named(store, "b"), c = open_named(store, "c");
  {
    WriteWatch watch(store);
    tbl_ospf_area_table_free(store, 8, b, &store.err);
    const auto ranges = watch.of_origin(KELP_WRITE_RANGE);
    ASSERT_EQ(ranges.size(), 2u);
    EXPECT_EQ(ranges[0].address, &shell(c)->toc_prev);
    EXPECT_EQ(ranges[1].address, &shell(a)->toc_next);
    for (const auto &range : ranges) {
      EXPECT_EQ(range.length, 8u);
      EXPECT_EQ(range.space_id, 8u);
    }
  }
  free_table(store, a);
  free_table(store, c);
}

TEST(FreeDeathTest, ARefusedDeclarationEndsTheProcess) {
  Store store;
  const Table a = open_named(store, "a"), b = open_named(store, "b");
  for (const Table table : {a, b}) {
    for (int at = 0; at < 2; ++at) {
      EXPECT_FATAL(
          {
            kelp_database_fail_after(store.database(), KELP_FAULT_RANGE, at);
            store(tbl_ospf_area_table_free, table);
          },
          "lumen internal error");
    }
  }
  free_table(store, a);
  free_table(store, b);
}

TEST(Free, AFreedTableIsCountedAndToldOfAtDebug) {
  Store store;
  kelp_variant_entry &entry = entry_of(_tbl_ospf_area_table_type_info_internal);
  const std::uint64_t destroyed = entry.destroy_count;
  const Table table = open_named(store, "areas");
  const TraceLog traced;
  free_table(store, table);
  EXPECT_EQ(entry.destroy_count, destroyed + 1);
  EXPECT_TRUE(traced.has(
      7, "tbl_ospf_area table free: Successfully removed OID mapping for tbl_ospf_area"));
}

TEST(Free, AnErrorPresentStopsAFree) {
  Store store;
  const Table table = open_named(store, "areas");
  store.err = 9;
  const CallLog log;
  store(tbl_ospf_area_table_free_unsafe, table);
  EXPECT_EQ(store.err, 9u);
  EXPECT_TRUE(log.calls().empty());
  free_table(store, table);
}

TEST(Free, WhileReferencesRemainAFreeGives11AndCanBeRepeated) {
  Store store;
  const Table table = open_named(store, "areas");
  store(kelplib_lookup_and_update_oid_ref_count, table, KELP_OID_INCREMENT);
  ASSERT_EQ(store.err, 0u);
  store(tbl_ospf_area_table_free, table);
  store.expect_failure(KELP_ERR_AGAIN);
  EXPECT_EQ(kelp_database_next_table(store.database(), nullptr), shell(table));
  store.err = 0;
  store(kelplib_lookup_and_update_oid_ref_count, table, KELP_OID_DECREMENT);
  free_table(store, table);
}

constexpr char shared_free[] =
    "APPLICATION ERROR! Table tbl_ospf_area in SHARED DB should be freed by requesting table free "
    "by the GC. Please free the table via toc delete or mark the DB as non-shared";

TEST(Free, InASharedDatabaseAnApplicationOnlyTakesTheTableOutOfTheToc) {
  Store store({.marked_shared = true});
  ASSERT_EQ(kelp_lock_write(store, nullptr), 0);
  const Table table = open_named(store, "areas");
  {
    const TraceLog traced;
    const CallLog log;
    store(tbl_ospf_area_table_free, table);
    EXPECT_EQ(store.err, 0u);
    EXPECT_EQ(traced.texts(), std::vector<std::string>{shared_free});
    EXPECT_TRUE(traced.has(7, shared_free));
    EXPECT_EQ(log.count("kelpdb_database_toc_delete"), 1u);
    EXPECT_EQ(log.count("kelp_request_oid_mapping_destroy"), 0u);
  }
  EXPECT_EQ(open_named(store, "areas", 1), nullptr);
  EXPECT_EQ(kelp_database_next_table(store.database(), nullptr), shell(table));
  store.handle()->collector_context = 1;
  const CallLog log;
  free_table(store, table);
  EXPECT_EQ(log.count("kelpdb_database_toc_delete"), 0u);
  EXPECT_EQ(kelp_database_next_table(store.database(), nullptr), nullptr);
}

TEST(Free, AFailureOfThatTakingOutIsTold) {
  Store store({.marked_shared = true});
  ASSERT_EQ(kelp_lock_write(store, nullptr), 0);
  const Table table = open_named(store, "areas");
  TraceLog traced;
  kelp_database_fail_after(store.database(), KELP_FAULT_TOC_DELETE, 0);
  store(tbl_ospf_area_table_free, table);
  EXPECT_EQ(store.err, 5u);
  ASSERT_EQ(traced.messages().size(), 2u);
  EXPECT_EQ(traced.messages()[1].index, 1052u + 22);
  EXPECT_EQ(traced.messages()[1].text,
            "tbl_ospf_area table free: Failed to delete table entry from TOC. Error: Input/output "
            "error");
  store.handle()->collector_context = 1;
  free_table(store, table);
}

TEST(Free, EachFailureOnTheWayIsToldAndLeavesTheTable) {
  Store store;
  const Table table = open_named(store, "areas");
  TraceLog traced;
  const auto failed_free = [&](const std::string &text, std::uint32_t offset) {
    store(tbl_ospf_area_table_free, table);
    EXPECT_EQ(store.err, 5u);
    ASSERT_EQ(traced.messages().size(), 1u);
    EXPECT_EQ(traced.messages()[0].text, text + "Input/output error");
    EXPECT_EQ(traced.messages()[0].level, 3u);
    EXPECT_EQ(traced.messages()[0].index, 1052u + offset);
    EXPECT_EQ(kelp_database_next_table(store.database(), nullptr), shell(table));
    store.err = 0;
    traced.clear();
  };
  kelp_database_fail_after(store.database(), KELP_FAULT_TOC_OPEN, 0);
  failed_free("Failed to get toc root while freeing tablle. Error ", 19);
  kelp_database_fail_after(store.database(), KELP_FAULT_TOC_DELETE, 0);
  failed_free("tbl_ospf_area table free: Failed to delete table entry from TOC. Error: ", 23);
  store.handle()->force_toc_delete = 1;
  kelp_database_fail_after(store.database(), KELP_FAULT_TOC_DELETE, 0);
  failed_free("tbl_ospf_area table free: Failed to force delete table entry from TOC. Error: ", 20);
  store.handle()->force_toc_delete = 0;
  {
    const Failing failing("kelp_request_oid_mapping_destroy", 5);
    failed_free("tbl_ospf_area table free: Failed to request oid mapping destroy for table. Error ",
                24);
  }
  free_table(store, table);
}

TEST(Free, AMissingTocRootIsToldAsSuccessText) {
  Store store;
  const Table table = open_named(store, "areas");
  {
    const TraceLog traced;
    const Failing failing("kelpdb_database_toc_open", 0);
    store(tbl_ospf_area_table_free, table);
    EXPECT_EQ(store.err, 0u);
    EXPECT_TRUE(traced.has(3, "Failed to get toc root while freeing tablle. Error Success"));
  }
  free_table(store, table);
}

// --- request -------------------------------------------------------------------------------------

constexpr char only_shared[] =
    "APPLICATION ERROR! KELp_REQUEST_TABLE_FREE should only be used for SHARED databases";

TEST(RequestFree, OnAPrivateDatabaseIsToldAndFrees) {
  Store store;
  const Table table = open_named(store, "areas");
  const TraceLog traced;
  store(tbl_ospf_area_request_table_free, table);
  EXPECT_EQ(store.err, 0u);
  EXPECT_TRUE(traced.has(3, only_shared));
  EXPECT_EQ(kelp_database_next_table(store.database(), nullptr), nullptr);
}

TEST(RequestFree, WithCursorsTheFreeIsTheCollectors) {
  AreaTable areas;
  areas.enable_cursors(false);
  const CallLog log;
  areas(tbl_ospf_area_request_table_free_unsafe, areas.table);
  EXPECT_EQ(areas.err, 0u);
  EXPECT_EQ(log.count("kelpdb_database_toc_delete"), 1u);
  EXPECT_EQ(log.count("kelp_request_oid_mapping_destroy"), 0u);
  EXPECT_EQ(open_named(areas, "areas", 1), nullptr);
}

TEST(RequestFree, OnASharedDatabaseIsNotTold) {
  Store store({.marked_shared = true});
  ASSERT_EQ(kelp_lock_write(store, nullptr), 0);
  const Table table = open_named(store, "areas");
  TraceLog traced;
  store.handle()->collector_context = 1;
  store(tbl_ospf_area_request_table_free, table);
  EXPECT_EQ(store.err, 0u);
  EXPECT_FALSE(traced.has(3, only_shared));
  EXPECT_EQ(kelp_database_next_table(store.database(), nullptr), nullptr);
}

TEST(RequestFree, ATableThatIsNotInTheTocIsForgiven) {
  Store store;
  const Table table = open_named(store, "areas");
  {
    const Failing failing("kelpdb_database_toc_delete", 2);
    store.handle()->force_toc_delete = 1;
    store(tbl_ospf_area_request_table_free, table);
    EXPECT_EQ(store.err, 0u);
  }
  EXPECT_EQ(kelp_database_next_table(store.database(), nullptr), nullptr);
}

TEST(RequestFree, EachFailureOnTheWayIsTold) {
  Store store;
  const Table table = open_named(store, "areas");
  TraceLog traced;
  kelp_database_fail_after(store.database(), KELP_FAULT_TOC_OPEN, 0);
  store(tbl_ospf_area_request_table_free, table);
  EXPECT_EQ(store.err, 5u);
  EXPECT_TRUE(
      traced.has(3, "Failed to get TOC root while freeing table. Error Input/output error"));
  store.err = 0;
  kelp_database_fail_after(store.database(), KELP_FAULT_TOC_DELETE, 0);
  store(tbl_ospf_area_request_table_free, table);
  EXPECT_EQ(store.err, 5u);
  EXPECT_TRUE(traced.has(3,
                         "Failed to perform toc delete for table tbl_ospf_area. Error "
                         "Input/output error"));
  store.err = 0;
  store(kelplib_lookup_and_update_oid_ref_count, table, KELP_OID_INCREMENT);
  store(tbl_ospf_area_request_table_free, table);
  EXPECT_EQ(store.err, KELP_ERR_AGAIN);
  EXPECT_TRUE(traced.has(3,
                         "Failed to destroy tbl_ospf_area table, Error Resource temporarily "
                         "unavailable"));
  store.err = 0;
  store(kelplib_lookup_and_update_oid_ref_count, table, KELP_OID_DECREMENT);
  free_table(store, table);
}

TEST(RequestFree, AnErrorPresentStopsIt) {
  Store store;
  const Table table = open_named(store, "areas");
  store.err = 9;
  const CallLog log;
  store(tbl_ospf_area_request_table_free, table);
  EXPECT_EQ(store.err, 9u);
  EXPECT_TRUE(log.calls().empty());
  free_table(store, table);
}

}  // namespace
