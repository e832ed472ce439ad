// What programs and modules do with the runtime, with the first, the second, the third call of each
// kind to the system failing: nothing ends the process, what fails says so and leaves what was
// there, and what does not fail is done whole.
#include <cstdlib>
#include <deque>
#include <functional>

#include "fault/failing_calls.hpp"
#include "kelp/oid.h"
#include "kelp/trace.h"
#include "kelp/xml.h"
#include "tables.hpp"

namespace {

using kelp_test::compare_records;
using kelp_test::Type;

// Runs the work with one call after the other failing, until none is left to fail.
void fail_each(failing::Kind kind, const std::function<void()> &work) {
  work();
  for (long calls = 0;; ++calls) {
    ASSERT_LT(calls, 100000) << "it never ends";
    failing::fail_after(kind, calls);
    work();
    const bool struck = failing::has_struck(kind);
    failing::fail_after(kind, -1);
    if (testing::Test::HasFailure()) FAIL() << "with call " << calls;
    if (!struck) return;
  }
}

Type table_type{"tbl_thing", "table", 1, 7, kelp_test::kTableModule};

// A database with a table, as a module and a program make them; whatever is not had is null.
class Program {
 public:
  Program() {
    database_ = kelp_database_open_private("faults", nullptr, nullptr);
    if (database_ != nullptr) handle_ = kelp_handle_create(database_, nullptr, nullptr);
    if (handle_ != nullptr) open_table();
  }
  ~Program() {
    kelp_handle_destroy(handle_);
    if (database_ != nullptr) kelp_database_close(database_, nullptr);
    kelp_tenant_set(0);
  }

  // Inserts as modules do. A record that is in the tree is counted and shown, one that is not is
  // neither.
  void insert(std::uintptr_t key) {
    if (table_ == nullptr) return;
    kelp_record *record = take_record();
    if (record == nullptr) return;
    record->ref_word = 1;
    record->src = KELP_SRC_DEFAULT;
    record->tenant_id = 7;
    record->objects[0] = reinterpret_cast<void *>(key);
    kelp_tenant_set(7);
    std::uint32_t before = 0;
    kelpdb_get_tenant_counter(handle_, 0, table_, &before, 7, nullptr);
    std::uint32_t err = 0;
    kelp_clear_last_error(handle_);
    if (e_avl_insert(handle_->obj_pool, 0, &table_->avl_root, &record->avl_node, &table_->avl_aux,
                     compare_records) == 0) {
      kelp_store_err(handle_, KELP_ERR_EXISTS);
      kelp_error error;
      EXPECT_EQ(kelp_handle_last_error(handle_, &error), KELP_ERR_EXISTS);
      EXPECT_NE(std::string(error.text).find("no memory"), std::string::npos) << error.text;
      std::uint32_t after = 0;
      kelpdb_get_tenant_counter(handle_, 0, table_, &after, 7, nullptr);
      EXPECT_EQ(after, before);
      EXPECT_EQ(record->avl_node.parent, nullptr);
      EXPECT_NE(table_->avl_root.top, &record->avl_node);
      handle_->obj_free(handle_->obj_pool, 0, record);
      return;
    }
    record->record_table = table_;
    ++table_->record_count;
    kelpdb_update_tenant_counter(handle_, 0, table_, 1, 7, record->src, &err);
    EXPECT_EQ(err, 0u) << "the record is in the tree";
    record->rec_flags = REC_IN_TABLE;
    if (kelpdb_table_implicit_write_cursor_enabled(handle_, 0, table_, &err) != 0) {
      kelpdb_enq_rec_move_write_cursor_internal(handle_, 0, table_, record, &err);
    }
    EXPECT_EQ(err, 0u) << "the record is in the tree";
    kelprepl_add_to_cache(handle_, 0, table_, record, &err);
    last_ = record;
  }

  // Records to insert, made beforehand.
  void make_records(std::size_t count) {
    while (made_.size() < count)
      made_.push_back(static_cast<kelp_record *>(make(sizeof(kelp_record))));
  }

  void follow() {
    if (table_ == nullptr) return;
    if (kelp_table_enable_cursors(handle_, table_, 1, nullptr) != 0) return;
    followed_ = true;
    before_ = table_->record_count;
    cursor_ = kelp_feed_cursor_open(handle_, table_, nullptr);
  }

  void see_all() {
    kelp_feed_change change;
    std::uint32_t seen = 0;
    while (kelp_feed_cursor_next(cursor_, &change) != 0) ++seen;
    EXPECT_TRUE(cursor_ == nullptr || seen == table_->record_count - before_) << seen;
  }

  void end_last_and_collect() {
    if (last_ == nullptr) return;
    std::uint32_t err = 0;
    kelpdb_request_record_destroy(handle_, 0, last_, &err);
    EXPECT_EQ((last_->rec_flags & REC_PENDING_DESTROY) != 0, err == 0 && followed_);
    kelp_feed_cursor_close(cursor_);
    cursor_ = nullptr;
    kelp_module_set_vft_lookup(kelp_test::kTableModule, kelp_test::get_vft, nullptr);
    kelp_collector_run(handle_, nullptr, nullptr);
    kelp_module_set_vft_lookup(kelp_test::kTableModule, nullptr, nullptr);
  }

  void use_memory() {
    if (handle_ == nullptr) return;
    for (const std::size_t size : {0, 10, 100, 16384, 16385, 100000, 3000000}) {
      void *block = handle_->obj_alloc(handle_->obj_pool, 0, size);
      if (block == nullptr) continue;
      std::memset(block, 1, size);
      if (size % 2 == 0) handle_->obj_free(handle_->obj_pool, 0, block);
    }
    lumen_set_key(handle_->obj_pool, "key", table_);
    lumen_get_key(handle_->obj_pool, "key");
    const std::int32_t code = kelp_handle_set_variant(handle_, "thing", 1, nullptr);
    EXPECT_TRUE(code == 0 || code == 12) << code;
    void *space = nullptr;
    std::uint32_t size = 0;
    std::uint32_t err = 0;
    kelplib_get_handle_ws(handle_, &space, &size, &err);
    EXPECT_EQ(space == nullptr, err == 12);
    kelp_lock_write(handle_, nullptr);
    kelp_unlock(handle_, nullptr);
  }

 private:
  void *make(std::size_t size) {
    void *made = handle_->obj_alloc(handle_->obj_pool, 0, size);
    if (made != nullptr) std::memset(made, 0, size);
    return made;
  }

  kelp_record *take_record() {
    if (made_.empty()) return static_cast<kelp_record *>(make(sizeof(kelp_record)));
    kelp_record *record = made_.back();
    made_.pop_back();
    return record;
  }

  void open_table() {
    auto *table = static_cast<kelp_table *>(make(sizeof(kelp_table)));
    if (table == nullptr) return;
    table->header.tinfo = &table_type.record;
    std::snprintf(table->tbl_name, sizeof table->tbl_name, "table");
    std::uint32_t err = 0;
    kelp_table_list *list = kelplib_database_table_toc_create(handle_, KELP_SPACE_RUNTIME, &err);
    kelpdb_database_toc_open(handle_, 0, &err);
    if (err != 0) return;
    table->toc_prev = list->last_link;
    *list->last_link = table;
    list->last_link = &table->toc_next;
    kelp_oid_mapping_create(handle_, 0, table, KELP_OID_KIND_TABLE, 0, nullptr, &err);
    kelpdb_database_toc_insert(handle_, 0, table, 0, &err);
    if (err == 0) table_ = table;
  }

  kelp_database *database_ = nullptr;
  kelp_handle *handle_ = nullptr;
  kelp_table *table_ = nullptr;
  kelp_feed_cursor *cursor_ = nullptr;
  kelp_record *last_ = nullptr;
  std::vector<kelp_record *> made_;
  bool followed_ = false;
  std::uint32_t before_ = 0;  // records that the feed was never told of
};

void run_program() {
  Program program;
  for (std::uintptr_t key = 1; key <= 3; ++key) program.insert(key);
  program.follow();
  program.insert(4);
  program.insert(5);
  program.see_all();
}

void run_program_to_its_end() {
  Program program;
  program.follow();
  for (std::uintptr_t key = 1; key <= 20; ++key) program.insert(key);
  program.end_last_and_collect();
  program.use_memory();
}

TEST(NoMemoryTest, ProgramWithTables) { fail_each(failing::malloc_calls, run_program); }
TEST(NoMemoryTest, ProgramToItsEnd) { fail_each(failing::malloc_calls, run_program_to_its_end); }
TEST(NoMemoryTest, ProgramWithoutMappings) {
  fail_each(failing::mmap_calls, run_program_to_its_end);
}

// The feed's own memory grows while records are there already: a record either has its place in the
// feed or stays out of the tree.
TEST(NoMemoryTest, FeedThatCannotGrow) {
  constexpr std::size_t kRecords = 60000;
  Program program;
  program.follow();
  program.make_records(kRecords);
  failing::fail_after(failing::mmap_calls, 0);
  for (std::uintptr_t key = 1; key <= kRecords && !HasFailure(); ++key) program.insert(key);
  EXPECT_TRUE(failing::has_struck(failing::mmap_calls));
  failing::fail_after(failing::mmap_calls, -1);
  program.see_all();
}

TEST(NoMemoryTest, Documents) {
  const char *texts[] = {"<a><b>1</b><b><!-- x -->2<![CDATA[3]]></b></a>", "<a><b></a>"};
  fail_each(failing::malloc_calls, [&] {
    for (const char *text : texts) {
      char message[200];
      kelp_xml_document *document =
          kelp_xml_parse(text, std::strlen(text), message, sizeof message);
      if (document == nullptr) continue;
      char value[20];
      std::uint32_t count = 0;
      const std::uint32_t found = xml_get_element_value(document, "//a/b[2]", value, 20, 0);
      EXPECT_TRUE(found == 12 || (found == 0 && std::strcmp(value, "23") == 0)) << found;
      xml_get_element_nodecount(document, "//b", &count);
      xml_get_element_position(document, "//b", &count, &count);
      kelp_xml_free(document);
    }
  });
}

TEST(NoMemoryTest, TraceAndRegistrations) {
  const std::string path = testing::TempDir() + "no_memory_trace";
  const auto work = [&] {
    static const std::uint8_t source[16] = {1};
    std::uint32_t id = 0;
    xlog_module_init_fn("a module with a name that is too long to be kept in place", &id, nullptr);
    kelp_trace_set_level("another module with a name of some length", 7);
    kelp_trace_set_ring_size(1000);
    const bool open = kelp_trace_open_file(path.c_str(), nullptr) == 0;
    for (int i = 0; i < 400; ++i) __XLf_14(source, 1, 0, 0x3000000, "text", 2);
    kelp_trace_read_ring(nullptr, nullptr);
    const bool kept = kelp_trace_flush() == 0;
    kelp_trace_file_report report = {};
    if (open && kelp_trace_scan_file(path.c_str(), nullptr, nullptr, &report, nullptr) == 0) {
      EXPECT_TRUE(!kept || report.records == 400) << report.records;
    }
    kelp_trace_open_file(nullptr, nullptr);
    std::remove(path.c_str());
    const auto handler = reinterpret_cast<void *>(&run_program);
    tarn_comm_bundle_handler_register(handler, nullptr, 0);
    tarn_comm_bundle_handler_unregister(handler, nullptr, 0);
    kelp_type_set_destroyer("a type with a name that is too long to be kept in place", nullptr,
                            nullptr);
    EXPECT_EQ(kelp_database_current(), nullptr);
  };
  fail_each(failing::malloc_calls, work);
  fail_each(failing::write_calls, work);
}

// A table that is to stand under a longer name needs an entry of its own length. Others take what
// memory there is for such entries.
TEST(NoMemoryTest, ATableThatCannotMoveStandsWhereItStood) {
  kelp_database *database = kelp_database_open_private("moves", nullptr, nullptr);
  kelp_handle *handle = kelp_handle_create(database, nullptr, nullptr);
  std::uint32_t err = 0;
  const auto enter = [&](kelp_table &table, const std::string &name) {
    table.header.tinfo = &table_type.record;
    name.copy(table.tbl_name, sizeof table.tbl_name);
    err = 0;
    kelpdb_database_toc_insert(handle, 0, &table, 0, &err);
  };
  const auto found = [&](const std::string &name) {
    std::uint32_t ignored = 0;
    return kelpdb_database_toc_get_table_root(handle, 0, name.data(),
                                              static_cast<std::uint32_t>(name.size()), 0,
                                              table_type.record.md5, 16, 1, &ignored);
  };
  kelpdb_database_toc_open(handle, 0, &err);
  kelp_table table = {};
  enter(table, "here");
  EXPECT_EQ(err, 0u);
  std::deque<kelp_table> others;
  while (err == 0) {
    ASSERT_LT(others.size(), 100000u);
    failing::fail_after(failing::mmap_calls, 0);
    enter(others.emplace_back(), std::to_string(1000000 + others.size()));
  }
  failing::fail_after(failing::mmap_calls, 0);
  enter(table, "distant");
  EXPECT_EQ(err, static_cast<std::uint32_t>(KELP_ERR_NO_MEMORY));
  EXPECT_EQ(found("here"), &table);
  EXPECT_EQ(found("distant"), nullptr);
  failing::fail_after(failing::mmap_calls, -1);
  enter(table, "distant");
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(found("here"), nullptr);
  EXPECT_EQ(found("distant"), &table);
  kelp_handle_destroy(handle);
  kelp_database_close(database, nullptr);
}

// The runtime's own memory of a database grows while a type is entered again and again.
TEST(NoMemoryTest, VariantsOfAType) {
  kelp_database_options options;
  kelp_database_options_init(&options);
  options.shared_tinfo = 1;
  kelp_database *database = kelp_database_open_private("types", &options, nullptr);
  kelp_handle *handle = kelp_handle_create(database, nullptr, nullptr);
  const Type type("thing");
  kelp_type_record_copy copy = {};
  copy.record = type.record;
  failing::fail_after(failing::mmap_calls, 0);
  const kelp_variant_info *before = nullptr;
  for (int i = 0; !failing::has_struck(failing::mmap_calls); ++i) {
    ASSERT_LT(i, 1000000);
    ASSERT_EQ(kelp_handle_last_error(handle, nullptr), 0);
    before = copy.record.varinfo;
    kelp_update_variant_info(handle, 0, &copy, &type.record, 1);
  }
  failing::fail_after(failing::mmap_calls, -1);
  EXPECT_EQ(kelp_handle_last_error(handle, nullptr), 12);
  EXPECT_EQ(copy.record.varinfo, before);
  kelp_handle_destroy(handle);
  EXPECT_EQ(kelp_database_close(database, nullptr), 0);
}

// A distance that nobody knows would have others' bytes marked.
TEST(NoMemoryDeathTest, DistanceThatFindsNoPlace) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH(
      {
        kelp_database *database = kelp_database_open_private("distances", nullptr, nullptr);
        kelp_handle *handle = kelp_handle_create(database, nullptr, nullptr);
        constexpr std::size_t kObjects = 100000;
        auto *objects = static_cast<kelp_object_header *>(
            handle->obj_alloc(handle->obj_pool, 0, kObjects * sizeof(kelp_object_header)));
        failing::fail_after(failing::mmap_calls, 0);
        for (std::size_t i = 0; i < kObjects; ++i) {
          objects[i] = {};
          kelplib_update_sttr_offset(handle, 0, &objects[i], 8);
        }
      },
      "memory for the distance");
}

// The ends of a process too, as nobody has asked for any of these things before.
TEST(NoMemoryDeathTest, FirstCallsOfAProcess) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  const auto each_first = [](const std::function<void()> &first) {
    EXPECT_EXIT(
        {
          failing::fail_after(failing::malloc_calls, 0);
          first();
          failing::fail_after(failing::malloc_calls, -1);
          std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
  };
  each_first([] { kelp_trace_flush(); });
  each_first([] { tarn_comm_bundle_handler_unregister(nullptr, nullptr, 0); });
  each_first([] {
    tarn_comm_bundle_handler_register(reinterpret_cast<void *>(&run_program), nullptr, 0);
  });
  each_first([] { kelp_database_open_private("first", nullptr, nullptr); });
}

}  // namespace
