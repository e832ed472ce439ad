// Telling programs what commits changed, and which blocks a record consists of.
#include "kelp/changes.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <vector>

#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"

namespace kelp {

namespace {

// Runs work(store), which gives a code, under the lock of a handle on a store.
template <typename Work>
std::int32_t in_locked_store(kelp_handle *handle, const char *function, kelp_error *error,
                             const Work &work) {
  if (handle == nullptr || handle->state->database->store == nullptr) {
    return fail(error, KELP_ERR_INVALID, "%s: expected a handle of a database in a file", function);
  }
  if (handle->db_lock_state == 0) {
    return fail(error, KELP_ERR_PERMISSION, "%s: the handle holds no lock", function);
  }
  std::int32_t code = 0;
  if (without_exceptions([&] { code = work(*handle->state->database->store); })) return code;
  return fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", function);
}

// A live block of objects that begins at the address.
bool begins_block(const store::Heap &heap, const void *address, store::Block *block) {
  return heap.find(address, block) && block->start == address &&
         (block->state() & (store::kLive | store::kRuntimes)) == store::kLive;
}

// Tables and records stand for themselves: an OID may hold the address of one.
bool is_of_a_table(const store::Store &store, const store::Block &block) {
  const kelp_type_record *type = nullptr;
  if (block.asked < sizeof type) return false;
  std::memcpy(&type, block.start, sizeof type);
  if (!store.in_types(type) || !store.in_types(type + 1) || type->magic != KELP_TYPE_MAGIC) {
    return false;
  }
  const std::string_view kind(type->kind, strnlen(type->kind, sizeof type->kind));
  return kind == "table" || kind == "table_record";
}

// Enters the blocks to which words of a block lead, from a place in it on.
void add_blocks(const store::Store &store, const store::Block &block, std::size_t from,
                std::vector<store::Block> &blocks) {
  for (std::size_t at = from; at + sizeof(void *) <= block.asked; at += sizeof(void *)) {
    const void *word = nullptr;
    std::memcpy(&word, block.start + at, sizeof word);
    store::Block found;
    if (!begins_block(store.heap(), word, &found) || is_of_a_table(store, found)) continue;
    const bool is_known = std::any_of(blocks.begin(), blocks.end(), [&](const auto &known) {
      return known.start == found.start;
    });
    if (!is_known) blocks.push_back(found);
  }
}

}  // namespace

}  // namespace kelp

extern "C" int32_t kelp_changes_since(kelp_handle *handle, uint64_t *place, kelp_block_heard heard,
                                      void *context, kelp_error *error) {
  constexpr const char *kFunction = "kelp_changes_since";
  return kelp::in_locked_store(handle, kFunction, error, [&](kelp::store::Store &store) {
    const bool is_known = store.each_change(
        place, [&](const void *block, bool goes) { heard(context, block, goes ? 1 : 0); });
    if (is_known) return kelp::succeed(error);
    return kelp::fail(error, KELP_TOO_LONG_AGO,
                      "%s: store '%s': more was changed since then than it keeps", kFunction,
                      store.path().c_str());
  });
}

extern "C" int32_t kelp_record_blocks(kelp_handle *handle, const kelp_record *record,
                                      kelp_block_heard heard, void *context, kelp_error *error) {
  constexpr const char *kFunction = "kelp_record_blocks";
  return kelp::in_locked_store(handle, kFunction, error, [&](kelp::store::Store &store) {
    kelp::store::Block own;
    if (!kelp::begins_block(store.heap(), record, &own)) {
      return kelp::fail(error, KELP_ERR_INVALID, "%s: store '%s': expected a record of it",
                        kFunction, store.path().c_str());
    }
    // What stands in front of its objects links it with others.
    std::vector<kelp::store::Block> blocks = {own};
    kelp::add_blocks(store, own, offsetof(kelp_record, objects), blocks);
    for (std::size_t at = 1; at < blocks.size(); ++at) {
      const kelp::store::Block block = blocks[at];
      kelp::add_blocks(store, block, 0, blocks);
    }
    for (const kelp::store::Block &block : blocks) heard(context, block.start, 0);
    return kelp::succeed(error);
  });
}
