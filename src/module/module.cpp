#include "module/module.hpp"

#include <algorithm>
#include <cstring>

#include "module/failure.hpp"
#include "module/module_node.hpp"
#include "module/trace_identity.hpp"

extern "C" {
KELP_API std::uint32_t g_kelp_ospf_harbor_oper_trace_module_id = 0;
extern KELP_API std::uint32_t g_kelp_ospf_harbor_oper_stub_trace_module_id;
extern KELP_API void *ospf_harbor_oper_bundle_registered_handler;
std::uint32_t g_kelp_ospf_harbor_oper_stub_trace_module_id = 0;
void *ospf_harbor_oper_bundle_registered_handler = nullptr;
}

namespace harbor {

namespace {

constexpr TraceSource source_of(const trace_identity::Identity &identity) {
  TraceSource source{};
  std::copy(identity.begin(), identity.end(), source.identity);
  return source;
}

// Written by the trace library alone.
std::uint32_t level_word = 0;

std::uint64_t settled = 0;

}  // namespace

constinit const TraceSource type_source = source_of(trace_identity::types);
constinit const TraceSource table_source = source_of(trace_identity::tables);

void register_trace(const kelp_handle *handle) {
  kelp::quick::register_module(handle, "kelp_ospf_harbor_oper",
                               &g_kelp_ospf_harbor_oper_trace_module_id, &level_word, &settled);
}

namespace module_frame {

namespace {

constinit kelp_module_node module_node{"ospf_harbor_oper", ospf_harbor_oper_type_records, nullptr,
                                       nullptr};
std::uint8_t is_linked = 0;

__attribute__((constructor)) void load() {
  link_module(module_node, kelp_module_tot_root, is_linked);
}
__attribute__((destructor)) void unload() { unlink_module(module_node, kelp_module_tot_root); }

// A copy for the runtime, entered in its table; null without memory.
// Required: the space is the runtime's, whatever space the caller works in.
kelp_type_record_copy *enter_copy(const kelp_type_record &record, kelp_handle *handle,
                                  std::uint32_t space_id) {
  auto *copy = static_cast<kelp_type_record_copy *>(
      handle->type_alloc(handle->type_pool, KELP_SPACE_RUNTIME, sizeof(kelp_type_record_copy)));
  if (copy == nullptr) return nullptr;
  std::memcpy(&copy->record, &record, sizeof(record));
  copy->runtime_word_a = 0;
  copy->runtime_word_b = 0;
  copy->record.plain_counters = handle->shared_tinfo;
  copy->record.resolved_variant = -1;
  handle->type_table_insert(handle->type_table, space_id, copy->record.md5_text, copy);
  return copy;
}

}  // namespace

void register_types(kelp_type_record *const *records, kelp_handle *handle, std::uint32_t space_id,
                    std::uint32_t *err) {
  for (; *records != nullptr; ++records) {
    const kelp_type_record &record = **records;
    kelp_type_record_copy *copy =
        handle->type_table_lookup(handle->type_table, space_id, record.md5_text);
    const std::uint32_t is_new = copy == nullptr ? 1 : 0;
    if (is_new != 0) copy = enter_copy(record, handle, space_id);
    if (copy == nullptr) {
      return fail(handle, KELP_ERR_NO_MEMORY, err, About(record.type_name, "registering"));
    }
    if (record.varinfo != nullptr) {
      kelp_update_variant_info(handle, space_id, copy, &record, is_new);
    }
  }
}

void dump_variants(kelp_type_record *const *records, int (*print)(const char *format, ...)) {
  for (; *records != nullptr; ++records) {
    const kelp_variant_info *varinfo = (*records)->varinfo;
    if (varinfo == nullptr) {
      trace(type_source, Level::error,
            messages::first_row(messages::TypeForm::dump_without_varinfo));
      continue;
    }
    print("n_variants %d\n", varinfo->n_variants);
    for (int variant = 0; variant < varinfo->n_variants; ++variant) {
      const kelp_variant_entry &entry = varinfo->entries[variant];
      print("variant %d used length %d alloc slop %d\n", variant, entry.used_length,
            entry.alloc_slop);
    }
  }
}

void *register_bundle_handler(void *handler, void *context, std::uint64_t flags) {
  void *const before = ospf_harbor_oper_bundle_registered_handler;
  ospf_harbor_oper_bundle_registered_handler = handler;
  tarn_comm_bundle_handler_register(handler, context, flags);
  return before;
}

void *unregister_bundle_handler(void *handler, void *context, std::uint64_t flags) {
  void *const before = ospf_harbor_oper_bundle_registered_handler;
  ospf_harbor_oper_bundle_registered_handler = nullptr;
  tarn_comm_bundle_handler_unregister(handler, context, flags);
  return before;
}

}  // namespace module_frame

}  // namespace harbor
