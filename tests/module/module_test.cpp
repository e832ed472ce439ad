// The module frame: the place in the list of modules, the registration and the dump of type
// records, the bundle handlers, and the trace identity.
#include "module/module.hpp"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>

#include "model/layout.hpp"
#include "module/trace_identity.hpp"
#include "support/temporary_folder.hpp"
#include "types/light_family.hpp"
#include "types/replaced_call.hpp"

namespace {

using harness::CallLog;
using harness::Store;
using harness::TraceLog;

constexpr std::uint32_t space = 7;
constexpr std::size_t record_count = harbor::model::record_count;

const kelp_module_node *own_node() {
  for (const kelp_module_node *node = kelp_module_tot_root.first; node != nullptr;
       node = node->next) {
    if (std::strcmp(node->name, "ospf_harbor_oper") == 0) return node;
  }
  return nullptr;
}

TEST(LoadedLibrary, StandsInTheRuntimesListWithAllItsRecords) {
  const kelp_module_node *node = own_node();
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(*node->prev_link, node);
  std::size_t records = 0;
  while (node->types[records] != nullptr) ++records;
  EXPECT_EQ(records, record_count);
  EXPECT_STREQ(node->types[0]->type_name, "ospfv2_unknown_sub_tlv");
  EXPECT_STREQ(node->types[51]->type_name, "ospf_rev1");
  EXPECT_STREQ(node->types[52]->type_name, "address_family");
  EXPECT_STREQ(node->types[60]->type_name, "ospfv3_lsa_body_flag_options");
  EXPECT_STREQ(node->types[61]->type_name, "tbl_ospfv2_unknown_sub_tlv");
  EXPECT_STREQ(node->types[62]->type_name, "tbl_ospfv2_unknown_sub_tlv_record");
  EXPECT_STREQ(node->types[102]->type_name, "tbl_ospf_rev1_record");
}

// A second copy of the library's file, which is a module of its own, comes and goes.
TEST(LoadedLibrary, LeavesTheRuntimesListWhenItIsUnloaded) {
  Dl_info library;
  ASSERT_NE(dladdr(harness::exported("ospf_area_create"), &library), 0);
  const TemporaryFolder folder;
  const std::string path = folder.file("library.so");
  std::filesystem::copy_file(library.dli_fname, path);
  const kelp_module_list before = kelp_module_tot_root;
  const kelp_module_node *const own = own_node();
  void *copy = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(copy, nullptr) << dlerror();
  EXPECT_EQ(kelp_module_tot_root.count, before.count + 1);
  const kelp_module_node *second = *before.tail_link;
  ASSERT_NE(second, nullptr);
  EXPECT_NE(second, own);
  EXPECT_STREQ(second->name, "ospf_harbor_oper");
  EXPECT_EQ(kelp_module_tot_root.tail_link, &second->next);
  EXPECT_EQ(dlclose(copy), 0);
  EXPECT_EQ(kelp_module_tot_root.count, before.count);
  EXPECT_EQ(kelp_module_tot_root.first, before.first);
  EXPECT_EQ(kelp_module_tot_root.tail_link, before.tail_link);
  EXPECT_EQ(*kelp_module_tot_root.tail_link, nullptr);
}

// --- registration of type records ----------------------------------------------------------------

// A type table of the test's own under a real handle; the copies belong to the test.
class TypeTable {
 public:
  explicit TypeTable(kelp_handle *handle) : handle_(handle), hooks_(*handle) {
    current_ = this;
    handle->type_alloc = [](void *, std::uint32_t space_id, std::size_t size) -> void * {
      current_->alloc_spaces.push_back(space_id);
      if (current_->allocations_left == 0) return nullptr;
      --current_->allocations_left;
      EXPECT_EQ(size, sizeof(kelp_type_record_copy));
      current_->memory_.push_back(std::make_unique<Bytes>());
      current_->memory_.back()->fill(0xCD);
      return current_->memory_.back()->data();
    };
    handle->type_table_insert = [](void *, std::uint32_t space_id, const char *key,
                                   kelp_type_record_copy *copy) {
      EXPECT_EQ(space_id, space);
      EXPECT_EQ(key, copy->record.md5_text);
      current_->entered.push_back(copy);
    };
    handle->type_table_lookup = [](void *, std::uint32_t space_id,
                                   const char *key) -> kelp_type_record_copy * {
      EXPECT_EQ(space_id, space);
      for (kelp_type_record_copy *copy : current_->entered) {
        if (std::strcmp(copy->record.md5_text, key) == 0) return copy;
      }
      return nullptr;
    };
  }
  ~TypeTable() {
    handle_->type_alloc = hooks_.type_alloc;
    handle_->type_table_insert = hooks_.type_table_insert;
    handle_->type_table_lookup = hooks_.type_table_lookup;
  }

  std::size_t allocations_left = SIZE_MAX;
  std::vector<std::uint32_t> alloc_spaces;
  std::vector<kelp_type_record_copy *> entered;

 private:
  struct alignas(8) Bytes : std::array<std::uint8_t, sizeof(kelp_type_record_copy)> {};
  static inline TypeTable *current_ = nullptr;
  kelp_handle *handle_;
  kelp_handle hooks_;
  std::vector<std::unique_ptr<Bytes>> memory_;
};

TEST(TypeRegistration, EntersACopyOfEveryRecordInOrder) {
  Store store({.shared_tinfo = true, .may_leave = 2 * record_count});
  store.handle()->shared_tinfo = 6;
  TypeTable table(store);
  CallLog calls;
  store(ospf_harbor_oper_typeinfo_initialize);
  ASSERT_EQ(table.entered.size(), record_count);
  for (std::size_t at = 0; at < record_count; ++at) {
    const kelp_type_record &record = *own_node()->types[at];
    const kelp_type_record_copy &copy = *table.entered[at];
    EXPECT_STREQ(copy.record.type_name, record.type_name);
    EXPECT_STREQ(copy.record.kind, record.kind);
    EXPECT_EQ(std::memcmp(copy.record.md5, record.md5, 16), 0);
    EXPECT_EQ(copy.record.magic, KELP_TYPE_MAGIC);
    EXPECT_EQ(copy.record.plain_counters, 6u);
    EXPECT_EQ(copy.record.resolved_variant, -1);
    EXPECT_EQ(copy.runtime_word_a, 0u);
    EXPECT_EQ(copy.runtime_word_b, 0u);
    EXPECT_EQ(table.alloc_spaces[at], KELP_SPACE_RUNTIME);
  }
  EXPECT_EQ(calls.count("kelp_update_variant_info"), record_count);
  EXPECT_EQ(store.err, 0u);
}

TEST(TypeRegistration, RepeatedAllocatesNothingAndKeepsTheCounters) {
  Store store({.shared_tinfo = true, .may_leave = 2 * record_count});
  TypeTable table(store);
  store(ospf_harbor_oper_typeinfo_initialize);
  for (kelp_type_record_copy *copy : table.entered) {
    copy->record.varinfo->entries[0].create_count = 5;
  }
  table.alloc_spaces.clear();
  CallLog calls;
  store(ospf_harbor_oper_typeinfo_initialize);
  EXPECT_TRUE(table.alloc_spaces.empty());
  EXPECT_EQ(table.entered.size(), record_count);
  EXPECT_EQ(calls.count("kelp_update_variant_info"), record_count);
  for (kelp_type_record_copy *copy : table.entered) {
    EXPECT_EQ(copy->record.varinfo->entries[0].create_count, 5u) << copy->record.type_name;
  }
}

std::vector<std::uint32_t> told_as_new;
void note_update(kelp_handle *handle, std::uint32_t space_id, kelp_type_record_copy *copy,
                 const kelp_type_record *static_record, std::uint32_t is_new) {
  told_as_new.push_back(is_new);
  kelp_update_variant_info(handle, space_id, copy, static_record, is_new);
}

TEST(TypeRegistration, TellsTheRuntimeWhichCopiesAreNew) {
  Store store({.shared_tinfo = true, .may_leave = 2 * record_count});
  TypeTable table(store);
  const harness::ReplacedCall update("kelp_update_variant_info", note_update);
  told_as_new.clear();
  store(ospf_harbor_oper_typeinfo_initialize);
  EXPECT_EQ(told_as_new, std::vector<std::uint32_t>(record_count, 1));
  told_as_new.clear();
  store(ospf_harbor_oper_typeinfo_initialize);
  EXPECT_EQ(told_as_new, std::vector<std::uint32_t>(record_count, 0));
}

TEST(TypeRegistration, WithoutMemoryForTheFirstEntersNothing) {
  Store store({.shared_tinfo = true});
  TypeTable table(store);
  table.allocations_left = 0;
  CallLog calls;
  store(ospf_harbor_oper_typeinfo_initialize);
  store.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_TRUE(table.entered.empty());
  EXPECT_EQ(table.alloc_spaces.size(), 1u);
  EXPECT_EQ(calls.calls(), std::vector<std::string>{"kelp_store_err"});
}

TEST(TypeRegistration, WithoutMemoryLaterKeepsWhatIsRegistered) {
  Store store({.shared_tinfo = true, .may_leave = 4});
  TypeTable table(store);
  table.allocations_left = 2;
  store(ospf_harbor_oper_typeinfo_initialize);
  EXPECT_EQ(store.err, KELP_ERR_NO_MEMORY);
  EXPECT_EQ(table.entered.size(), 2u);
}

TEST(TypeRegistration, DoesNotReadTheErrorWord) {
  Store store({.shared_tinfo = true, .may_leave = 2 * record_count});
  TypeTable table(store);
  store.err = 5;
  store(ospf_harbor_oper_typeinfo_initialize);
  EXPECT_EQ(table.entered.size(), record_count);
  EXPECT_EQ(store.err, 5u);
}

TEST(TypeRegistration, OfARecordWithoutVarinfoLeavesTheUpdateOut) {
  Store store({.shared_tinfo = true, .may_leave = 2 * record_count});
  TypeTable table(store);
  light::WithoutVarinfo without(_address_family_type_info_internal);
  CallLog calls;
  store(ospf_harbor_oper_typeinfo_initialize);
  EXPECT_EQ(table.entered.size(), record_count);
  EXPECT_EQ(calls.count("kelp_update_variant_info"), record_count - 1);
}

TEST(TypeRegistration, HappensWhenTheRuntimeMeetsAnUnknownType) {
  Store store({.shared_tinfo = true});
  OWNED(store, address_family, object);
  EXPECT_NE(light::header(object.get())->tinfo, &_address_family_type_info_internal);
  kelp_type_record_copy *known = store.handle()->type_table_lookup(
      store.handle()->type_table, space, _ospf_rev1_type_info_internal.md5_text);
  ASSERT_NE(known, nullptr) << "all records were registered";
  EXPECT_STREQ(known->record.type_name, "ospf_rev1");
}

// --- the dump of variants ------------------------------------------------------------------------

std::string &dumped() {
  static std::string text;
  return text;
}

int collect(const char *format, ...) {
  char line[256];
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(line, sizeof(line), format, arguments);
  va_end(arguments);
  dumped() += line;
  return length;
}

std::string dump() {
  dumped().clear();
  ospf_harbor_oper_type_variant_dump(collect);
  return dumped();
}

TEST(VariantDump, PrintsEachRecordsVariantsInOrder) {
  namespace model = harbor::model;
  std::string expected;
  for (std::size_t at = 0; at < record_count; ++at) {
    const kelp_variant_info &varinfo = *own_node()->types[at]->varinfo;
    expected += "n_variants " + std::to_string(varinfo.n_variants) + "\n";
    for (std::uint8_t variant = 0; variant < varinfo.n_variants; ++variant) {
      std::uint32_t used = varinfo.entries[variant].used_length;
      std::uint32_t slop = varinfo.entries[variant].alloc_slop;
      if (at < model::structures.size()) {
        used = model::used_length(*model::structures[at], variant);
        slop = model::alloc_slop(*model::structures[at], variant);
      }
      expected += "variant " + std::to_string(variant) + " used length " + std::to_string(used) +
                  " alloc slop " + std::to_string(slop) + "\n";
    }
  }
  EXPECT_EQ(dump(), expected);
}

TEST(VariantDump, TellsOfARecordWithoutVarinfoAndGoesOn) {
  const std::string whole = dump();
  light::WithoutVarinfo without(_address_family_type_info_internal);
  TraceLog traced;
  const std::string text = dump();
  const std::string missing = "n_variants 1\nvariant 0 used length 16 alloc slop 0\n";
  EXPECT_EQ(text.size() + missing.size(), whole.size());
  ASSERT_EQ(traced.messages().size(), 1u);
  EXPECT_EQ(traced.messages()[0].level, 3u);
  EXPECT_EQ(traced.messages()[0].text, "type variant cached info is NULL during usage dump");
  EXPECT_EQ(traced.messages()[0].index, harbor::messages::type_message_count - 1);
}

// --- bundle handlers -----------------------------------------------------------------------------

struct Delivered {
  void *context;
  std::size_t length;
  std::uint64_t flags;
};
std::vector<Delivered> &delivered() {
  static std::vector<Delivered> all;
  return all;
}
void handler(void *context, const void *, std::size_t length, std::uint64_t flags) {
  delivered().push_back({context, length, flags});
}
void other_handler(void *, const void *, std::size_t, std::uint64_t) {}

TEST(BundleHandler, IsRememberedAndHandedOnWithItsArguments) {
  int context = 0;
  auto *first = reinterpret_cast<void *>(handler);
  auto *second = reinterpret_cast<void *>(other_handler);
  ASSERT_EQ(ospf_harbor_oper_bundle_registered_handler, nullptr);
  CallLog calls;
  EXPECT_EQ(ospf_harbor_oper_bundle_handler_register(first, &context, 0x1234567890), nullptr);
  EXPECT_EQ(ospf_harbor_oper_bundle_registered_handler, first);

  delivered().clear();
  EXPECT_EQ(kelp_bundle_deliver("abc", 3), 1u);
  ASSERT_EQ(delivered().size(), 1u);
  EXPECT_EQ(delivered()[0].context, &context);
  EXPECT_EQ(delivered()[0].length, 3u);
  EXPECT_EQ(delivered()[0].flags, 0x1234567890u);

  EXPECT_EQ(ospf_harbor_oper_bundle_handler_register(second, nullptr, 0), first);
  EXPECT_EQ(ospf_harbor_oper_bundle_registered_handler, second);
  EXPECT_EQ(ospf_harbor_oper_bundle_handler_unregister(second, nullptr, 0), second);
  EXPECT_EQ(ospf_harbor_oper_bundle_registered_handler, nullptr);
  EXPECT_EQ(ospf_harbor_oper_bundle_handler_unregister(first, &context, 0), nullptr);
  EXPECT_EQ(kelp_bundle_deliver("abc", 3), 0u);
  EXPECT_EQ(calls.calls(),
            (std::vector<std::string>{
                "tarn_comm_bundle_handler_register", "tarn_comm_bundle_handler_register",
                "tarn_comm_bundle_handler_unregister", "tarn_comm_bundle_handler_unregister"}));
}

// --- trace identity ------------------------------------------------------------------------------

TEST(TraceRegistration, GivesTheModuleItsIdAndMayBeRepeated) {
  kelp_ospf_harbor_oper_trace_init();
  const std::uint32_t id = g_kelp_ospf_harbor_oper_trace_module_id;
  EXPECT_NE(id, 0u);
  EXPECT_STREQ(kelp_trace_module_name(static_cast<std::uint16_t>(id)), "kelp_ospf_harbor_oper");
  kelp_ospf_harbor_oper_trace_init();
  EXPECT_EQ(g_kelp_ospf_harbor_oper_trace_module_id, id);
  EXPECT_EQ(g_kelp_ospf_harbor_oper_stub_trace_module_id, 0u);
}

TEST(TraceRegistration, IsWhatMessagesCarry) {
  struct Seen {
    std::uint16_t module = 0xFFFF;
    std::array<std::uint8_t, 16> identity{};
  } seen;
  kelp_ospf_harbor_oper_trace_init();
  kelp_trace_set_sink(
      [](void *context, const kelp_trace_event *event) {
        auto *into = static_cast<Seen *>(context);
        into->module = event->module;
        std::copy_n(event->identity, 16, into->identity.begin());
        return 0;
      },
      &seen);
  address_family_set_instance_embedded(nullptr, space, nullptr);
  kelp_trace_set_sink(nullptr, nullptr);
  EXPECT_EQ(seen.module, static_cast<std::uint16_t>(g_kelp_ospf_harbor_oper_trace_module_id));
  EXPECT_EQ(seen.identity, harbor::trace_identity::types);
  EXPECT_NE(seen.identity, harbor::trace_identity::tables);
}

}  // namespace

// The second copy of the library that a test loads has globals of the same names, which
// AddressSanitizer takes for a mistake.
extern "C" const char *__asan_default_options();
extern "C" const char *__asan_default_options() { return "detect_odr_violation=0"; }
