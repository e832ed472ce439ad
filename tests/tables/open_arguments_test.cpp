// What the platform is told when tables open, close and free: the space of every allocation and
// call, the kind, constant and name of the mapping, and whether a table is dynamic. For all tables.
#include <algorithm>
#include <functional>

#include "tables/table_fixture.hpp"
#include "types/replaced_call.hpp"
#include "whole_schema/erased.hpp"

namespace {

using harness::CallLog;
using harness::ReplacedCall;
using harness::Store;
using whole_schema::call;

constexpr std::uint32_t space = 7;
constexpr std::uint32_t cr_space = 11;

// --- what is noted ------------------------------------------------------------------------------

struct Mapping {
  void *object;
  std::uint32_t space_id, kind, dynamic;
  const kelp_oid *ior;
};
struct Entry {
  kelp_table *table;
  std::uint32_t space_id, dynamic;
};
std::vector<Mapping> mappings;
std::vector<Entry> entries;
std::vector<std::uint32_t> list_spaces;
std::vector<std::uint32_t> toc_spaces;
std::vector<std::uint32_t> freed_spaces;

std::uint32_t note_mapping(kelp_handle *handle, std::uint32_t space_id, void *object,
                           std::uint32_t kind, std::uint32_t dynamic, const kelp_oid *ior,
                           std::uint32_t *err) {
  mappings.push_back({object, space_id, kind, dynamic, ior});
  return kelp_oid_mapping_create(handle, space_id, object, kind, dynamic, ior, err);
}
void note_entry(kelp_handle *handle, std::uint32_t space_id, kelp_table *table,
                std::uint32_t dynamic, std::uint32_t *err) {
  entries.push_back({table, space_id, dynamic});
  kelpdb_database_toc_insert(handle, space_id, table, dynamic, err);
}
kelp_table_list *note_list(kelp_handle *handle, std::uint32_t space_id, std::uint32_t *err) {
  list_spaces.push_back(space_id);
  return kelplib_database_table_toc_create(handle, space_id, err);
}
kelp_toc_root *note_toc(kelp_handle *handle, std::uint32_t space_id, std::uint32_t *err) {
  toc_spaces.push_back(space_id);
  return kelpdb_database_toc_open(handle, space_id, err);
}
void note_leaving(kelp_handle *handle, std::uint32_t space_id, kelp_table *table,
                  std::uint32_t *err) {
  freed_spaces.push_back(space_id);
  kelpdb_database_toc_delete(handle, space_id, table, err);
}

// The allocations of a handle while this lives; fresh memory is full of a pattern.
class Allocations {
 public:
  struct Allocation {
    std::uint32_t space_id;
    std::size_t size;
    void *block;
  };
  explicit Allocations(kelp_handle *handle)
      : handle_(handle), alloc_(handle->obj_alloc), free_(handle->obj_free) {
    current_ = this;
    handle->obj_alloc = [](void *pool, std::uint32_t space_id, std::size_t size) -> void * {
      void *block = current_->alloc_(pool, space_id, size);
      std::memset(block, 0xAB, size);
      current_->made.push_back({space_id, size, block});
      return block;
    };
    handle->obj_free = [](void *pool, std::uint32_t space_id, void *block) {
      current_->freed.push_back({space_id, 0, block});
      current_->free_(pool, space_id, block);
    };
  }
  ~Allocations() {
    handle_->obj_alloc = alloc_;
    handle_->obj_free = free_;
  }
  std::vector<Allocation> made, freed;

 private:
  static inline Allocations *current_ = nullptr;
  kelp_handle *handle_;
  decltype(kelp_handle::obj_alloc) alloc_;
  decltype(kelp_handle::obj_free) free_;
};

// One way to open a table, and what it must tell the platform.
struct Form {
  const char *name;
  std::uint32_t dynamic;
  bool has_ior;
  bool by_id;
  bool carried;
  std::function<kelp_table *(const std::string &table, Store &store, const kelp_oid *ior)> open;
};

std::vector<Form> forms() {
  const auto plain = [](const char *suffix) {
    return [=](const std::string &table, Store &store, const kelp_oid *) {
      return call<kelp_table *>(table + suffix, store.handle(), space, "rows", std::uint32_t{0},
                                &store.err);
    };
  };
  const auto by_id = [](const char *suffix) {
    return [=](const std::string &table, Store &store, const kelp_oid *) {
      return call<kelp_table *>(table + suffix, store.handle(), space, std::uint64_t{3},
                                std::uint32_t{0}, &store.err);
    };
  };
  const auto auto_id = [](const char *suffix) {
    return [=](const std::string &table, Store &store, const kelp_oid *) {
      return call<kelp_table *>(table + suffix, store.handle(), space, std::uint32_t{0},
                                &store.err);
    };
  };
  const auto with_name = [](const char *suffix, std::uint32_t dynamic) {
    return [=](const std::string &table, Store &store, const kelp_oid *ior) {
      return call<kelp_table *>(table + suffix, store.handle(), space, "rows", ior,
                                std::uint32_t{0}, dynamic, &store.err);
    };
  };
  const auto with_id = [](const char *suffix, std::uint32_t dynamic) {
    return [=](const std::string &table, Store &store, const kelp_oid *ior) {
      return call<kelp_table *>(table + suffix, store.handle(), space, std::uint64_t{3}, ior,
                                std::uint32_t{0}, dynamic, &store.err);
    };
  };
  const auto carried = [](std::uint32_t open_type) {
    return [=](const std::string &table, Store &store, const kelp_oid *) {
      store.handle()->cr_space_id = cr_space;
      return call<kelp_table *>(table + "_table_open_cr", store.handle(), std::uint32_t{0},
                                open_type, "rows", std::uint64_t{3});
    };
  };
  return {
      {"open", 0, false, false, false, plain("_table_open")},
      {"open_unsafe", 0, false, false, false, plain("_table_open_unsafe")},
      {"open_by_id", 0, false, true, false, by_id("_table_open_by_id")},
      {"open_by_id_unsafe", 0, false, true, false, by_id("_table_open_by_id_unsafe")},
      {"open_auto_id", 1, false, true, false, auto_id("_table_open_auto_id")},
      {"open_auto_id_unsafe", 1, false, true, false, auto_id("_table_open_auto_id_unsafe")},
      {"with_name, static", 0, true, false, false, with_name("_table_open_by_ior_with_name", 0)},
      {"with_name, dynamic", 1, true, false, false, with_name("_table_open_by_ior_with_name", 1)},
      {"with_name_unsafe", 1, true, false, false,
       with_name("_table_open_by_ior_with_name_unsafe", 1)},
      {"with_id, static", 0, true, true, false, with_id("_table_open_by_ior_with_id", 0)},
      {"with_id, dynamic", 1, true, true, false, with_id("_table_open_by_ior_with_id", 1)},
      {"with_id_unsafe", 1, true, true, false, with_id("_table_open_by_ior_with_id_unsafe", 1)},
      {"cr by name", 0, false, false, true, carried(0)},
      {"cr by id", 0, false, true, true, carried(1)},
      {"cr auto id", 1, false, true, true, carried(2)},
  };
}

template <typename Act>
void for_each_form(Act act) {
  for (const auto *table : harbor::model::all_tables) {
    for (const Form &form : forms()) {
      const std::string name = "tbl_" + std::string(table->name);
      SCOPED_TRACE(name + " " + form.name);
      Store store({.may_leave = form.by_id ? 1u : 0u});
      act(name, form, store);
    }
  }
}

}  // namespace

TEST(OpenArguments, MappingEntryAndSpacesOfEveryForm) {
  const ReplacedCall mapping("kelp_oid_mapping_create", note_mapping);
  const ReplacedCall entry("kelpdb_database_toc_insert", note_entry);
  const ReplacedCall list("kelplib_database_table_toc_create", note_list);
  const ReplacedCall toc("kelpdb_database_toc_open", note_toc);
  for_each_form([](const std::string &name, const Form &form, Store &store) {
    mappings.clear();
    entries.clear();
    list_spaces.clear();
    toc_spaces.clear();
    kelp_oid ior{};
    ior.handle_word = 0x1000;
    std::memset(ior.id, 0x5A, sizeof ior.id);
    const std::uint32_t used = form.carried ? cr_space : space;
    kelp_table *table = nullptr;
    {
      const Allocations allocations(store);
      table = form.open(name, store, &ior);
      ASSERT_NE(table, nullptr);
      // The place for ids and the table are the runtime's, whatever space the caller works in.
      ASSERT_EQ(allocations.made.size(), form.by_id ? 2u : 1u);
      for (const auto &made : allocations.made) EXPECT_EQ(made.space_id, KELP_SPACE_RUNTIME);
      EXPECT_EQ(allocations.made.back().size, sizeof(kelp_table));
      EXPECT_EQ(allocations.made.back().block, table);
      if (form.by_id) {
        EXPECT_EQ(allocations.made[0].size, sizeof(kelp_tbi_root));
        const auto *root = static_cast<const kelp_tbi_root *>(allocations.made[0].block);
        EXPECT_EQ(root->tbi_table_count, 1u);
        EXPECT_EQ(root->tbi_next_id, table->table_id + 1);
        EXPECT_LT(root->tbi_next_id, 5u);
      }
    }
    ASSERT_EQ(mappings.size(), 1u);
    EXPECT_EQ(mappings[0].object, table);
    EXPECT_EQ(mappings[0].space_id, used);
    EXPECT_EQ(mappings[0].kind, 2u);
    EXPECT_EQ(mappings[0].dynamic, form.dynamic);
    EXPECT_EQ(mappings[0].ior, form.has_ior ? &ior : nullptr);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].table, table);
    EXPECT_EQ(entries[0].space_id, used);
    EXPECT_EQ(entries[0].dynamic, form.dynamic);
    EXPECT_EQ(list_spaces, std::vector<std::uint32_t>{KELP_SPACE_RUNTIME});
    EXPECT_EQ(toc_spaces, std::vector<std::uint32_t>{used});
    EXPECT_EQ(store.err, 0u);
    EXPECT_EQ(store.handle()->cr_err, 0u);

    list_spaces.clear();
    toc_spaces.clear();
    const Allocations allocations(store);
    call<void>(name + "_table_free", store.handle(), space, table, &store.err);
    EXPECT_EQ(store.err, 0u);
    ASSERT_EQ(allocations.freed.size(), 1u);
    EXPECT_EQ(allocations.freed[0].block, table);
    EXPECT_EQ(allocations.freed[0].space_id, space);
    EXPECT_EQ(list_spaces, std::vector<std::uint32_t>{KELP_SPACE_RUNTIME});
    EXPECT_EQ(toc_spaces, std::vector<std::uint32_t>{space});
  });
}

TEST(OpenArguments, ARefusedEntryIsToldAsDynamicOrStatic) {
  for_each_form([](const std::string &name, const Form &form, Store &store) {
    const harness::TraceLog traced;
    kelp_oid ior{};
    ior.handle_word = 0x1000;
    std::memset(ior.id, 0x5A, sizeof ior.id);
    kelp_table *table = nullptr;
    {
      const harness::Failing failing("kelpdb_database_toc_insert", 5);
      EXPECT_EQ(form.open(name, store, &ior), nullptr);
    }
    ASSERT_EQ(traced.messages().size(), 1u);
    EXPECT_NE(traced.messages()[0].text.find(form.dynamic != 0 ? "dynamic" : "static"),
              std::string::npos)
        << traced.messages()[0].text;
    EXPECT_EQ(store.err + store.handle()->cr_err, 5u);
    store.err = 0;
    store.handle()->cr_err = 0;
    // The table stays in the list: it is what the store still holds.
    table = const_cast<kelp_table *>(kelp_database_next_table(store.database(), nullptr));
    ASSERT_NE(table, nullptr);
    store.handle()->force_toc_delete = 1;
    call<void>(name + "_table_free", store.handle(), space, table, &store.err);
    EXPECT_EQ(store.err, 0u);
  });
}

TEST(CloseArguments, TheCarriedFormsFreeInTheHandlesSpace) {
  const ReplacedCall leaving("kelpdb_database_toc_delete", note_leaving);
  for (const auto *schema : harbor::model::all_tables) {
    const std::string name = "tbl_" + std::string(schema->name);
    for (const std::uint32_t mode : {1u, 2u}) {
      SCOPED_TRACE(name + ", mode " + std::to_string(mode));
      Store store;
      store.handle()->cr_space_id = cr_space;
      auto *table = call<kelp_table *>(name + "_table_open", store.handle(), space, "rows",
                                       std::uint32_t{0}, &store.err);
      freed_spaces.clear();
      const Allocations allocations(store);
      // A request takes the table out first; the free that it ends in finds it gone.
      call<void>(name + "_table_close_cr", store.handle(), table, mode);
      EXPECT_EQ(freed_spaces, std::vector<std::uint32_t>(freed_spaces.size(), cr_space));
      EXPECT_GE(freed_spaces.size(), 1u);
      if (store.handle()->cr_err == 0) {
        ASSERT_EQ(allocations.freed.size(), 1u);
        EXPECT_EQ(allocations.freed[0].space_id, cr_space);
      } else {
        store.handle()->cr_err = 0;
        store.handle()->force_toc_delete = 1;
        call<void>(name + "_table_free", store.handle(), space, table, &store.err);
      }
      EXPECT_EQ(store.err, 0u);
    }
  }
}

TEST(FreeArguments, TheLastErrorIsForgottenBeforeTheMappingIsAskedFor) {
  for (const auto *schema : harbor::model::all_tables) {
    const std::string name = "tbl_" + std::string(schema->name);
    Store store;
    auto *table = call<kelp_table *>(name + "_table_open", store.handle(), space, "rows",
                                     std::uint32_t{0}, &store.err);
    kelp_store_err(store, 5);
    const std::vector<std::string> order{"kelpdb_database_toc_delete", "kelp_clear_last_error",
                                         "kelp_request_oid_mapping_destroy"};
    const CallLog log;
    call<void>(name + "_table_free", store.handle(), space, table, &store.err);
    EXPECT_EQ(log.only(order), order) << name;
    EXPECT_EQ(store.last_error(), 0) << name;
  }
}

// --- records of the _cr form --------------------------------------------------------------------

TEST(RecordArguments, TheCarriedFormWorksInTheHandlesSpaceAndAnnouncesEachPointer) {
  for (const auto *schema : harbor::model::all_tables) {
    const std::string name = "tbl_" + std::string(schema->name);
    SCOPED_TRACE(name);
    Store store;
    kelp_handle *handle = store;
    handle->cr_space_id = cr_space;
    harness::WriteWatch watch(handle);
    const std::size_t objects = schema->key_structure != nullptr ? 2 : 1;
    const std::size_t size = sizeof(kelp_record) + 8 * (objects - 1);
    kelp_record *record = nullptr;
    {
      const Allocations allocations(handle);
      record = call<kelp_record *>(name + "_record_create_cr", handle, std::uint32_t{1});
      ASSERT_EQ(allocations.made.size(), 1 + objects);
      for (const auto &made : allocations.made) EXPECT_EQ(made.space_id, cr_space);
      EXPECT_EQ(allocations.made[0].size, size);
      for (std::size_t at = 0; at < objects; ++at) {
        EXPECT_EQ(record->objects[at], allocations.made[1 + at].block);
      }
    }
    // In order: the record's type, then each pointer once its object is there.
    std::vector<std::ptrdiff_t> places;
    for (const harness::Range &range : watch.all()) {
      EXPECT_EQ(range.space_id, cr_space);
      const std::ptrdiff_t place = range.offset_in(record);
      if (place < 0 || place >= static_cast<std::ptrdiff_t>(size)) continue;
      if (range.origin != KELP_WRITE_MODULE) continue;
      places.push_back(place);
      EXPECT_EQ(range.length, 8u);
    }
    std::vector<std::ptrdiff_t> expected{0};
    for (std::size_t at = 0; at < objects; ++at) {
      expected.push_back(static_cast<std::ptrdiff_t>(offsetof(kelp_record, objects) + 8 * at));
    }
    EXPECT_EQ(places, expected);

    const Allocations allocations(handle);
    call<void>(name + "_record_destroy_cr", handle, record);
    EXPECT_EQ(handle->cr_err, 0u);
    EXPECT_GE(allocations.freed.size(), 1 + objects);
    for (const auto &freed : allocations.freed) EXPECT_EQ(freed.space_id, cr_space);
  }
}
