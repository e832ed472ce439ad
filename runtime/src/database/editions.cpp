// Finding what editions share, and what an older one must leave alone.
#include "database/editions.hpp"

#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"
#include "parts/kinship.hpp"

namespace kelp {

namespace {

int variants_of(const kelp_type_record &record) {
  return record.varinfo == nullptr ? 0 : record.varinfo->n_variants;
}

// Whether the table's records hold objects of that type: each field of a record has a function that
// is named after both.
bool has_objects_of(const kelp_type_record &table, const kelp_type_record &type) {
  const std::string name = std::string(table.type_name) + "_" + type.type_name + "_set_field";
  return dlsym(RTLD_DEFAULT, name.c_str()) != nullptr;
}

bool is_table(const kelp_type_record &record) {
  return std::strncmp(record.kind, "table", sizeof record.kind) == 0;
}

bool is_tracking(const kelp_handle &handle) {
  return handle.sttr != nullptr && handle.sttr->sttr_mode == STTR_MODE_ON;
}

// The copy that came to the store first: the types area gives out its memory in order.
kelp_type_record_copy *first_namesake(const kelp_type_record &own,
                                      const std::vector<kelp_type_record_copy *> &copies) {
  kelp_type_record_copy *first = nullptr;
  for (kelp_type_record_copy *copy : copies) {
    if ((first == nullptr || copy < first) && have_same_names(own, copy->record)) first = copy;
  }
  return first;
}

}  // namespace

// --- looking ---

void Editions::clear() {
  rooms_.clear();
  known_.clear();
  refused_.clear();
  newer_.clear();
  mixed_ = ahead_ = false;
}

void Editions::refuse(const kelp_type_record &own, const kelp_type_record_copy &copy) {
  char reason[400];
  std::snprintf(reason, sizeof reason,
                "type '%.63s' of module '%.63s': another edition of the program came to the store "
                "first, with objects of %u bytes (room for %u), the first variant %u; expected "
                "%u bytes, the first variant %u",
                own.type_name, own.module_name, object_bytes(copy.record),
                static_cast<unsigned>(copy.runtime_word_a),
                copy.record.varinfo->entries[0].used_length, object_bytes(own),
                own.varinfo->entries[0].used_length);
  const auto add = [&](const kelp_type_record &type) {
    Refused refused{{}, reason};
    std::memcpy(refused.md5, type.md5, sizeof refused.md5);
    refused_.push_back(std::move(refused));
  };
  add(own);
  add(copy.record);
  each_own_record([&](const kelp_type_record &table) {
    if (is_table(table) && has_objects_of(table, own)) add(table);
    return true;
  });
}

void Editions::note(kelp_type_record &own, const std::vector<kelp_type_record_copy *> &copies) {
  const std::uint32_t size = object_bytes(own);
  if (size == 0 || is_table(own)) return;
  kelp_type_record_copy *copy = first_namesake(own, copies);
  std::uint64_t room = room_of(own);
  if (copy != nullptr) {
    const int more = variants_of(copy->record) - variants_of(own);
    const bool same = more == 0 && std::memcmp(copy->record.md5, own.md5, sizeof own.md5) == 0;
    if (!same) mixed_ = true;
    if (!same && !is_edition_of(own, *copy)) return refuse(own, *copy);
    if (!same) known_.push_back({&own, copy});
    if (more > 0 && is_structure(own)) newer_.push_back({&copy->record, &own});
    if (more < 0) ahead_ = true;
    room = copy->runtime_word_a;
  }
  if (!is_structure(own)) return;
  if (rooms_.size() <= size / kStep) rooms_.resize(size / kStep + 1);
  std::uint32_t &most = rooms_[size / kStep];
  most = std::max(most, static_cast<std::uint32_t>(room));
}

void Editions::look(const TypeTable &types, const store::Head &head) {
  const std::uint64_t now =
      (types.count() << 40) ^ (std::uint64_t{kelp_module_tot_root.count} << 32) ^ head.editions;
  if (seen_.load() == now) return;
  const std::lock_guard lock(mutex_);
  if (seen_.load() == now) return;
  std::vector<kelp_type_record_copy *> copies;
  types.each([&](kelp_type_record_copy &copy) { copies.push_back(&copy); });
  clear();
  each_own_record([&](kelp_type_record &own) {
    note(own, copies);
    return true;
  });
  seen_.store(now);
}

void Editions::forget() {
  seen_.store(UINT64_MAX);
  moved_to_.clear();
}

const char *Editions::refusal(const std::uint8_t *md5) const {
  for (const Refused &refused : refused_) {
    if (std::memcmp(refused.md5, md5, sizeof refused.md5) == 0) return refused.reason.c_str();
  }
  return nullptr;
}

kelp_type_record *Editions::own_record(const kelp_type_record *copy) const {
  for (const Known &known : known_) {
    if (&known.copy->record == copy) return known.own;
  }
  return nullptr;
}

// --- joining ---

std::int32_t Editions::join(kelp_handle *handle, kelp_error *error) {
  kelp_database &database = *handle->state->database;
  store::Head &head = database.store->head();
  const bool tracking = is_tracking(*handle);
  // Where state bytes lie follows from the fields of all variants.
  if (mixed_ && (tracking || (head.editions & store::kHasTrackedObjects) != 0)) {
    return fail(error, KELP_ERR_INVALID,
                "store '%s': programs of several editions of the schema use it, and %s; expected "
                "none, since editions differ in where an object's state bytes lie",
                database.name.c_str(),
                tracking ? "this handle tracks state" : "it has objects that track state");
  }
  if (database.store->is_writing() && tracking) head.editions |= store::kHasTrackedObjects;
  if (!database.store->is_writing() || !ahead_) return 0;
  for (const Known &known : known_) {
    if (variants_of(*known.own) <= variants_of(known.copy->record)) continue;
    kelp_update_variant_info(handle, KELP_SPACE_RUNTIME, known.copy, known.own, 0);
  }
  head.editions += store::kOneJoined;
  look(database.types, head);
  return 0;
}

// --- what an older edition must leave alone ---

const Editions::Newer *Editions::newer(const void *address) const {
  const void *type = nullptr;
  std::memcpy(&type, address, sizeof type);
  for (const Newer &each : newer_) {
    if (each.copy == type) return &each;
  }
  return nullptr;
}

// Whether fields that this process does not know hold a block or a reference, in an object or in
// those that lie within it.
bool Editions::owns_unknown(const store::Store &store, const store::Block &block) const {
  const auto word_at = [&](std::size_t at) {
    const std::byte *word = nullptr;
    std::memcpy(&word, block.start + at, sizeof word);
    return word;
  };
  const auto owns = [&](std::size_t at) {
    const std::byte *word = word_at(at);
    if (word == nullptr || !store.holds(word)) return false;
    if (store.in_types(word)) {
      constexpr std::size_t kId = offsetof(kelp_reference, oid) + offsetof(kelp_oid, id);
      return at + sizeof(kelp_reference) <= block.asked &&
             kelp_oid_id_is_zero(reinterpret_cast<const std::uint8_t *>(block.start) + at + kId) ==
                 0;
    }
    store::Block owned;
    return store.heap().find(word, &owned) && owned.start == word &&
           (owned.state() & store::kLive) != 0;
  };
  for (std::size_t at = 0; at + kStep <= block.asked; at += kStep) {
    const Newer *type = newer(block.start + at);
    if (type == nullptr) continue;
    const kelp_variant_info &info = *type->own->varinfo;
    const std::size_t known = info.entries[info.n_variants - 1].used_length;
    const std::size_t end = at == 0 ? block.asked : at + object_bytes(*type->own);
    for (std::size_t field = at + (known + kStep - 1) / kStep * kStep;
         field + kStep <= std::min(end, block.asked); field += kStep) {
      if (owns(field)) return true;
    }
  }
  return false;
}

namespace {

void refuse_loss(store::Store &store, const kelp_type_record &type, const char *what) {
  char reason[200];
  std::snprintf(reason, sizeof reason,
                "an object of type '%.63s' %s fields of a later edition than this program's",
                type.type_name, what);
  store.refuse(KELP_ERR_EPOCH, reason);
}

int variant_at(const void *object) {
  return static_cast<const kelp_object_header *>(object)->variant;
}

}  // namespace

// An object's end is announced as a write of its first word, and a copy over it as one of all its
// bytes.
void Editions::hear_write(store::Store &store, const void *address, std::size_t length) {
  if (newer_.empty() || length < kStep) return;
  store::Block block;
  const Newer *type = newer(address);
  if (type == nullptr || !store.heap().find(address, &block)) return;
  if (length == object_bytes(*type->own)) {
    if (variant_at(address) >= variants_of(*type->own)) {
      return refuse_loss(store, *type->own, "was to be overwritten whole, and has");
    }
    if (!without_exceptions([&] { moved_to_.push_back(address); })) {
      store.refuse(KELP_ERR_NO_MEMORY, "no memory");
    }
  } else if (length == sizeof(kelp_type_record *) && block.start == address &&
             owns_unknown(store, block)) {
    refuse_loss(store, *type->own, "was to end, and owns what stands in");
  }
}

void Editions::check_moved(store::Store &store) {
  for (const void *object : moved_to_) {
    const Newer *type = newer(object);
    if (type != nullptr && variant_at(object) >= variants_of(*type->own)) {
      refuse_loss(store, *type->own, "was moved into another, and has");
    }
  }
  moved_to_.clear();
}

bool refuses(kelp_handle *handle, const std::uint8_t *md5, std::uint32_t *err) {
  const char *reason = database_of(handle).editions.refusal(md5);
  if (reason == nullptr) return false;
  if (err != nullptr) *err = KELP_ERR_INVALID;
  kelp_store_err(handle, KELP_ERR_INVALID);
  kelp_describe_err(handle, nullptr, reason);
  return true;
}

std::int32_t check_schema(const kelp_database &database, kelp_error *error) {
  std::int32_t code = succeed(error);
  each_own_record([&](const kelp_type_record &own) {
    const kelp_type_record_copy *copy = database.types.find_exactly(own.md5_text);
    if (copy == nullptr || are_laid_out_alike(copy->record, own)) return true;
    code = fail(error, KELP_ERR_INVALID,
                "store '%s': type '%.63s' of module '%.63s': objects of %u bytes in %d variants "
                "found, expected %u bytes in %d variants, laid out alike",
                database.name.c_str(), own.type_name, own.module_name, object_bytes(copy->record),
                variants_of(copy->record), object_bytes(own), variants_of(own));
    return false;
  });
  return code;
}

}  // namespace kelp
