// Traversal, insertion and record fields of all 21 tables, by their composed names: every step and
// start against a plain list of rows, the counts and marks of insert and delete, and each object
// pointer of a record.
#include <algorithm>
#include <random>

#include "tables/any_table.hpp"

namespace {

using harness::AnyTable;
using harness::CallLog;
using harness::for_each_table;
using harness::Tenant;

// --- traversal ----------------------------------------------------------------------------------

struct Row {
  std::uint16_t tenant;
  std::uint32_t key;
  std::uint32_t src;
  bool pending;
  kelp_record *record = nullptr;
};

bool comes_before(const Row &a, const Row &b) {
  return std::tie(a.tenant, a.key, a.src) < std::tie(b.tenant, b.key, b.src);
}

struct Filter {
  std::uint32_t src;
  bool by_source;
  bool skip_pending;
  bool same_key = false;
};

// A form of a traversal: what its name fixes, and whether it takes a source.
struct Form {
  const char *name;
  bool forward;
  bool takes_source;
  bool by_source;
  bool skip_pending;
  bool any_for_zero;  // source 0 takes all but shadows
  bool has_pkey_name;
};

constexpr Form steps[] = {
    {"get_next", true, false, true, false, false, true},
    {"get_prev", false, false, true, false, false, true},
    {"get_next_by_src", true, true, true, false, false, true},
    {"get_prev_by_src", false, true, true, false, false, true},
    {"get_next_not_pending_destroy", true, true, true, true, false, false},
    {"get_prev_not_pending_destroy", false, true, true, true, false, false},
    {"get_next_ignore_src", true, false, false, false, false, true},
    {"get_prev_ignore_src", false, false, false, false, false, true},
};
constexpr Form starts[] = {
    {"get_first", true, false, true, false, false, true},
    {"get_last", false, false, true, false, false, true},
    {"get_first_by_src", true, true, true, false, false, true},
    {"get_last_by_src", false, true, true, false, false, true},
    {"get_first_not_pending_destroy", true, true, true, true, true, false},
    {"get_last_not_pending_destroy", false, true, true, true, false, false},
    {"get_first_ignore_src", true, false, false, false, false, true},
};
constexpr std::uint32_t sources[] = {0, 1, 2, 255, 0x102};
constexpr std::uint16_t tenants[] = {0, 4, 5, 9};

Filter filter_of(const Form &form, std::uint32_t src) {
  Filter filter{form.takes_source ? src & 0xFF : 1, form.by_source, form.skip_pending};
  if (form.any_for_zero && filter.src == 0) filter.by_source = false;
  return filter;
}

// The rows of a table as they should stand, and what each traversal should give.
class Rows {
 public:
  explicit Rows(AnyTable &table) : table_(table) {
    for (const std::uint16_t tenant : {std::uint16_t{0}, std::uint16_t{5}, std::uint16_t{9}}) {
      for (const std::uint32_t key : {1u, 2u, 3u}) {
        for (const std::uint32_t src : {0u, 1u, 2u, 255u}) {
          // Tenant 9 begins with key 3, so that tenant 5 ends beside an equal one; some are
          // missing, some wait for their end.
          if (tenant == 9 && key != 3) continue;
          if ((tenant + key + src) % 7 == 3) continue;
          rows_.push_back({tenant, key, src, (key * 3 + src) % 4 == 0});
        }
      }
    }
    std::vector<Row *> order;
    for (Row &row : rows_) order.push_back(&row);
    std::shuffle(order.begin(), order.end(), std::mt19937(1));
    for (Row *row : order) {
      const Tenant caller(row->tenant);
      row->record = table.inserted(row->key, row->src);
      if (row->pending) row->record->rec_flags |= REC_PENDING_DESTROY;
    }
    std::sort(rows_.begin(), rows_.end(), comes_before);
  }
  ~Rows() {
    for (Row &row : rows_) row.record->rec_flags &= ~std::uint32_t{REC_PENDING_DESTROY};
  }

  const std::vector<Row> &all() const { return rows_; }

  const Row *step(const Row &from, bool forward, std::uint16_t tenant, const Filter &filter) const {
    for (const Row *row = beside(from, forward); row != nullptr; row = beside(*row, forward)) {
      if (row->tenant != tenant) return nullptr;
      if (filter.same_key && row->key != from.key) return nullptr;
      if (fits(*row, filter)) return row;
    }
    return nullptr;
  }
  const Row *start(bool forward, std::uint16_t tenant, const Filter &filter) const {
    const Row *row = forward ? &rows_.front() : &rows_.back();
    for (; row != nullptr; row = beside(*row, forward)) {
      if (forward ? row->tenant < tenant : row->tenant > tenant) continue;
      if (fits(*row, filter)) return row->tenant == tenant ? row : nullptr;
    }
    return nullptr;
  }
  const Row *neighbour(const Row &from, bool forward) const {
    const Row *row = beside(from, forward);
    return row != nullptr && row->key == from.key ? row : nullptr;
  }

  // Calls with the words; holds result, error word and the entry in the cache against the model.
  template <typename Call>
  void expect(const Row *wanted, const std::string &what, Call run) {
    CallLog log;
    kelp_record *found = run();
    const std::size_t cached = log.count("kelprepl_add_to_cache");
    EXPECT_EQ(found, wanted == nullptr ? nullptr : wanted->record) << what;
    EXPECT_EQ(cached, wanted != nullptr && wanted->src != 255 ? 1u : 0u) << what;
    EXPECT_EQ(table_.err, 0u) << what;
  }

 private:
  const Row *beside(const Row &row, bool forward) const {
    const auto at = &row - rows_.data();
    if (forward) return &row == &rows_.back() ? nullptr : &rows_[static_cast<std::size_t>(at + 1)];
    return at == 0 ? nullptr : &rows_[static_cast<std::size_t>(at - 1)];
  }
  static bool fits(const Row &row, const Filter &filter) {
    if (filter.by_source && row.src != filter.src) return false;
    if (filter.src == 0 && row.src == 255) return false;
    return !filter.skip_pending || !row.pending;
  }

  AnyTable &table_;
  std::vector<Row> rows_;
};

// The names under which a form can be called.
std::vector<std::string> names_of(const AnyTable &table, const Form &form) {
  const std::string name(form.name);
  std::vector<std::string> names{harness::key_prefix(table.schema) + name};
  if (form.has_pkey_name) {
    names.push_back(table.name + "_pkey_" + name);
    names.push_back(table.name + "_pkey_" + name + "_unsafe");
  }
  return names;
}

// Under every tenant, for every source that the form takes.
template <typename Act>
void for_each_call(AnyTable &table, std::span<const Form> forms, Act act) {
  for (const std::uint16_t tenant : tenants) {
    const Tenant caller(tenant);
    for (const Form &form : forms) {
      for (const std::string &name : names_of(table, form)) {
        for (const std::uint32_t src : sources) {
          if (!form.takes_source && src != sources[0]) continue;
          act(tenant, form, name, src);
        }
      }
    }
  }
}

TEST(AllTables, EveryStepGivesWhatTheOrderOfTheRowsSays) {
  for_each_table([](AnyTable &table) {
    Rows rows(table);
    for_each_call(
        table, steps,
        [&](std::uint16_t tenant, const Form &form, const std::string &name, std::uint32_t src) {
          for (const Row &from : rows.all()) {
            rows.expect(rows.step(from, form.forward, tenant, filter_of(form, src)), name, [&] {
              kelp_handle *handle = table;
              if (!form.takes_source) {
                return whole_schema::call<kelp_record *>(name, handle, AnyTable::space, table.table,
                                                         from.record, &table.err);
              }
              return whole_schema::call<kelp_record *>(name, handle, AnyTable::space, table.table,
                                                       from.record, src, &table.err);
            });
          }
        });
  });
}

TEST(AllTables, EveryStartGivesWhatTheOrderOfTheRowsSays) {
  for_each_table([](AnyTable &table) {
    Rows rows(table);
    for_each_call(
        table, starts,
        [&](std::uint16_t tenant, const Form &form, const std::string &name, std::uint32_t src) {
          rows.expect(rows.start(form.forward, tenant, filter_of(form, src)), name, [&] {
            kelp_handle *handle = table;
            if (!form.takes_source) {
              return whole_schema::call<kelp_record *>(name, handle, AnyTable::space, table.table,
                                                       &table.err);
            }
            return whole_schema::call<kelp_record *>(name, handle, AnyTable::space, table.table,
                                                     src, &table.err);
          });
        });
  });
}

TEST(AllTables, TheStepBehindTheOthersTakesEveryFilter) {
  for_each_table([](AnyTable &table) {
    Rows rows(table);
    const Tenant caller(5);
    for (const bool forward : {true, false}) {
      const std::string form = forward ? "get_next_internal" : "get_prev_internal";
      for (const Row &from : rows.all()) {
        for (std::uint32_t bits = 0; bits < 8; ++bits) {
          for (const std::uint32_t src : {0u, 1u, 255u}) {
            const Filter filter{src, (bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0};
            rows.expect(rows.step(from, forward, 5, filter), form + std::to_string(bits), [&] {
              return table.call_key<kelp_record *>(form, table.table, from.record, src, bits & 1,
                                                   bits & 2, bits & 4, &table.err);
            });
          }
        }
      }
    }
  });
}

TEST(AllTables, NeighboursOfAKeyAndItsShadow) {
  for_each_table([](AnyTable &table) {
    Rows rows(table);
    kelp_handle *handle = table;
    for (const std::string &prefix : {harness::key_prefix(table.schema), table.name + "_pkey_"}) {
      for (const Row &from : rows.all()) {
        for (const bool forward : {true, false}) {
          const std::string name = prefix + (forward ? "get_sub_next" : "get_sub_prev");
          rows.expect(rows.neighbour(from, forward), name, [&] {
            return whole_schema::call<kelp_record *>(name, handle, AnyTable::space, table.table,
                                                     from.record, &table.err);
          });
        }
        const Row *shadow = &from;
        while (shadow != nullptr && shadow->src != 255) shadow = rows.neighbour(*shadow, true);
        EXPECT_EQ(whole_schema::call<kelp_record *>(prefix + "get_shadow", handle, AnyTable::space,
                                                    table.table, from.record, &table.err),
                  shadow == nullptr ? nullptr : shadow->record);
      }
    }
    EXPECT_EQ(table.err, 0u);
  });
}

TEST(AllTables, TheCarriedSelectorMapsItsOperationsAndFlags) {
  for_each_table([](AnyTable &table) {
    Rows rows(table);
    kelp_handle *handle = table;
    std::string name = harness::key_prefix(table.schema) + "get_cr";
    if (table.schema.key_structure != nullptr) name.erase(name.find("__get_cr"), 1);
    const Tenant caller(5);
    for (const std::uint32_t src : {0u, 1u, 2u, 255u}) {
      for (std::uint32_t flags = 0; flags < 4; ++flags) {
        const Filter filter{src == 0 ? 1 : src, (flags & 1) == 0, (flags & 2) == 0};
        for (const std::uint32_t get_op : {0u, 1u}) {
          rows.expect(rows.start(get_op == 0, 5, filter), name, [&] {
            return whole_schema::call<kelp_record *>(
                name, handle, table.table, get_op, static_cast<kelp_record *>(nullptr), src, flags);
          });
        }
        for (const Row &from : rows.all()) {
          for (const std::uint32_t get_op : {2u, 3u}) {
            rows.expect(rows.step(from, get_op == 3, 5, filter), name, [&] {
              return whole_schema::call<kelp_record *>(name, handle, table.table, get_op,
                                                       from.record, src, flags);
            });
          }
        }
      }
    }
    // Another operation is told as the last error alone, whatever the word holds.
    for (const std::uint32_t held : {0u, 7u}) {
      handle->cr_err = held;
      kelp_store_err(handle, 0);
      EXPECT_EQ(whole_schema::call<kelp_record *>(name, handle, table.table, std::uint32_t{4},
                                                  static_cast<kelp_record *>(nullptr),
                                                  std::uint32_t{1}, std::uint32_t{0}),
                nullptr);
      EXPECT_EQ(handle->cr_err, held);
      EXPECT_EQ(table.last_error(), KELP_ERR_INVALID);
    }
    handle->cr_err = 0;
  });
}

std::uint32_t note_record(void *record, void *context) {
  static_cast<std::vector<void *> *>(context)->push_back(record);
  return 0;
}

TEST(AllTables, AWalkSeesEveryRowInOrder) {
  for_each_table([](AnyTable &table) {
    Rows rows(table);
    std::vector<void *> expected;
    for (const Row &row : rows.all()) expected.push_back(row.record);
    for (const bool carried : {false, true}) {
      std::vector<void *> seen;
      CallLog log;
      if (carried) {
        EXPECT_EQ(
            whole_schema::call<std::uint32_t>(table.name + "_record_walk_cr", table.handle(),
                                              table.table, std::uint32_t{0}, &note_record, &seen),
            0u);
      } else {
        whole_schema::call<void>(harness::key_prefix(table.schema) + "walk", table.table,
                                 &note_record, &seen, &table.err);
      }
      EXPECT_EQ(seen, expected);
      EXPECT_EQ(log.count("kelprepl_add_to_cache"), 0u);
    }
  });
}

// --- insertion ----------------------------------------------------------------------------------

TEST(AllTables, InsertAndDeleteKeepCountsAndMarks) {
  for_each_table([](AnyTable &table) {
    for (const bool unsafe : {false, true}) {
      const std::string twin = unsafe ? "_unsafe" : "";
      kelp_record *plain = table.record(1), *shadow = table.record(1, 255), *key = table.record(2);
      table.call<void>("insert" + twin, table.table, plain, &table.err);
      table.call<void>("insert" + twin, table.table, shadow, &table.err);
      EXPECT_EQ(plain->record_table, table.table);
      EXPECT_EQ(plain->rec_flags, std::uint32_t{REC_IN_TABLE});
      table.call<void>("pkey_insert" + twin, table.table, key, &table.err);
      EXPECT_EQ(key->rec_flags, std::uint32_t{REC_IN_TABLE | REC_PKEY});
      EXPECT_EQ(table.table->record_count, 3u);
      EXPECT_EQ(table.table->shadow_count, 1u);
      EXPECT_EQ(table.call<std::uint32_t>("table_get_count" + twin, table.table), 3u);
      EXPECT_EQ(table.call<std::uint32_t>("table_get_count_by_src" + twin, table.table,
                                          std::uint32_t{255}),
                1u);
      EXPECT_EQ(
          table.call<std::uint32_t>("table_get_count_by_src" + twin, table.table, std::uint32_t{1}),
          0u);
      EXPECT_EQ(table.err, 0u);

      kelp_record *twice = table.record(1);
      table.call<void>("insert" + twin, table.table, twice, &table.err);
      EXPECT_EQ(table.err, KELP_ERR_EXISTS);
      EXPECT_EQ(twice->record_table, nullptr);
      EXPECT_EQ(table.table->record_count, 3u);
      table.err = 0;
      table.call<void>("delete" + twin, table.table, key, &table.err);
      EXPECT_EQ(key->rec_flags, std::uint32_t{REC_IN_TABLE});
      EXPECT_EQ(key->record_table, nullptr);
      table.call<void>("delete" + twin, table.table, key, &table.err);
      table.expect_failure(KELP_ERR_NOT_FOUND);
      {
        const CallLog log;
        table.call<void>("request_record_destroy" + twin, table.table, plain, &table.err);
        EXPECT_EQ(table.err, KELP_ERR_INVALID);
        EXPECT_EQ(log.count("kelpdb_request_record_destroy"), 0u);
      }
      table.err = 0;
      table.call<void>("delete" + twin, table.table, shadow, &table.err);
      EXPECT_EQ(table.table->record_count, 1u);
      EXPECT_EQ(table.table->shadow_count, 0u);
      for (kelp_record *record : {plain, shadow, key, twice}) {
        table.call<void>("destroy_record" + twin, record, &table.err);
      }
      EXPECT_EQ(table.err, 0u);
      EXPECT_EQ(table.table->record_count, 0u);
    }
  });
}

TEST(AllTables, TheCarriedFormsInsertAndDelete) {
  for_each_table([](AnyTable &table) {
    kelp_handle *handle = table;
    kelp_record *record = table.record(1);
    using whole_schema::call;
    EXPECT_EQ(call<std::uint32_t>(table.name + "_insert_cr", handle, table.table, record,
                                  std::uint32_t{1}),
              0u);
    EXPECT_EQ(record->rec_flags, std::uint32_t{REC_IN_TABLE | REC_PKEY});
    EXPECT_EQ(call<std::uint32_t>(table.name + "_table_get_count_cr", handle, table.table), 1u);
    EXPECT_EQ(
        call<std::uint32_t>(table.name + "_request_record_destroy_cr", handle, table.table, record),
        22u);
    handle->cr_err = 0;
    EXPECT_EQ(call<std::uint32_t>(table.name + "_delete_cr", handle, table.table, record,
                                  std::uint32_t{1}),
              0u);
    EXPECT_EQ(table.table->record_count, 0u);
  });
}

TEST(AllTables, ReferencesAreCountedAndTheLastOneEndsTheRecord) {
  for_each_table([](AnyTable &table) {
    kelp_record *record = table.inserted(1);
    const std::uint64_t live = table.live_allocations();
    EXPECT_EQ(table.call<std::uint32_t>("record_add_ref", record, &table.err), 1u);
    table.destroy(record);
    EXPECT_EQ(table.live_allocations(), live);
    EXPECT_EQ(table.table->record_count, 1u);
    table.destroy(record);
    EXPECT_EQ(table.table->record_count, 0u);
    EXPECT_LT(table.live_allocations(), live);
  });
}

// --- record fields ------------------------------------------------------------------------------

TEST(AllTables, EveryObjectPointerIsSetReadDetachedAndReplaced) {
  for_each_table([](AnyTable &table) {
    kelp_handle *handle = table;
    std::uint32_t word = 0;
    auto *record = table.call<kelp_record *>("create_record", &word);
    const auto structures = table.structures();
    // All pointers hold an object of their own type, so that each call reaches its own alone.
    for (const auto *structure : structures) {
      table.call<void>(std::string(structure->name) + "_set_field", record,
                       whole_schema::create(handle, std::string(structure->name)));
    }
    for (std::size_t at = 0; at < structures.size(); ++at) {
      const std::string type(structures[at]->name);
      void *const held = record->objects[at];
      void *const other = structures.size() == 2 ? record->objects[1 - at] : nullptr;
      EXPECT_STREQ(static_cast<kelp_object_header *>(held)->tinfo->type_name, type.c_str());
      EXPECT_EQ(static_cast<kelp_object_header *>(held)->obj_flags & OBJ_EMBEDDED, OBJ_EMBEDDED);
      EXPECT_EQ(table.call<void *>(type + "_get_field", record), held);

      // An object that lives in a record is refused, and the old one stays.
      for (const char *form : {"_set_field", "_free_and_set_field"}) {
        const harness::TraceLog traced;
        table.call<void>(type + form, record, held);
        EXPECT_EQ(table.last_error(), KELP_ERR_PERMISSION) << form;
        EXPECT_EQ(record->objects[at], held) << form;
        EXPECT_EQ(traced.messages().size(), 1u) << form;
        kelp_store_err(handle, 0);
      }

      harness::WriteWatch watch(handle);
      void *const fresh = whole_schema::create(handle, type);
      watch.clear();
      table.call<void>(type + "_free_and_set_field", record, fresh);
      EXPECT_EQ(record->objects[at], fresh);
      bool announced = false;
      for (const harness::Range &range : watch.writes()) {
        announced |= range.address == &record->objects[at] && range.length == 8 &&
                     range.space_id == AnyTable::space;
      }
      EXPECT_TRUE(announced);

      watch.clear();
      EXPECT_EQ(table.call<void *>(type + "_get_field_detach", record), fresh);
      EXPECT_EQ(record->objects[at], nullptr);
      ASSERT_EQ(watch.writes().size(), 1u);
      EXPECT_EQ(watch.writes()[0].address, &record->objects[at]);
      EXPECT_EQ(table.call<void *>(type + "_get_field", record), nullptr);
      if (structures.size() == 2) {
        EXPECT_EQ(record->objects[1 - at], other);
      }
      whole_schema::destroy(handle, type, fresh);
      table.call<void>(type + "_set_field", record, whole_schema::create(handle, type));
    }
    table.destroy(record);
  });
}

// How a caller notices that a record's text was cut: 90, or a result that equals the room.
TEST(AllTables, ACutRecordTextIsToldOrFillsItsRoom) {
  for_each_table([](AnyTable &table) {
    kelp_record *record = table.inserted(1);
    std::string buffer(1 << 14, ' ');
    const auto print = [&](std::int32_t size) {
      return table.call<std::uint32_t>("table_record_print", buffer.data(), record, size,
                                       &table.err);
    };
    const std::uint32_t whole = print(1 << 14);
    ASSERT_EQ(table.err, 0u);
    for (std::uint32_t size = 1; size < whole + 20; ++size) {
      const std::uint32_t written = print(static_cast<std::int32_t>(size));
      if (table.err != 0) {
        EXPECT_EQ(table.err, static_cast<std::uint32_t>(KELP_ERR_NO_ROOM));
        table.err = 0;
      } else {
        EXPECT_EQ(written, std::min(size, whole)) << size;
      }
      if (testing::Test::HasFailure()) return;
    }
  });
}

}  // namespace
