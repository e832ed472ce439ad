// Entering and finding copies of type records.
#include "parts/type_table.hpp"

#include <cstring>
#include <new>
#include <string_view>

#include "parts/kinship.hpp"

namespace kelp {

void TypeTable::attach(store::Memory &memory, store::Directory &directory) {
  memory_ = &memory;
  directory_ = &directory;
}

TypeTable::Entry *TypeTable::find_entry(const char *key) const {
  const std::string_view wanted(key);
  return copies().find<Entry>(store::hash_of(wanted.data(), wanted.size()), [&](Entry &entry) {
    return std::string_view(entry.key(), entry.key_length) == wanted;
  });
}

void TypeTable::insert(const char *key, kelp_type_record_copy *copy) {
  const std::lock_guard lock(mutex_);
  by_record_.clear();
  note_change();
  if (Entry *known = find_entry(key)) {
    memory_->set(known->copy, copy);
    return;
  }
  const std::size_t length = std::strlen(key);
  auto *entry = static_cast<Entry *>(memory_->take(sizeof(Entry) + length));
  if (entry == nullptr) throw std::bad_alloc();
  *entry = {};
  entry->copy = copy;
  entry->key_length = length;
  std::memcpy(entry->key(), key, length);
  try {
    copies().insert(&entry->node, store::hash_of(key, length));
  } catch (...) {
    memory_->give_back(entry);
    throw;
  }
}

// The first one that came of that name, since a later one may be of another layout.
kelp_type_record_copy *TypeTable::find_edition(const char *key) const {
  const kelp_type_record *own = nullptr;
  each_own_record([&](const kelp_type_record &record) {
    // Asked for each address that an object holds, of which no module has a record.
    if (record.md5_text[0] == key[0] && std::strcmp(record.md5_text, key) == 0) own = &record;
    return own == nullptr;
  });
  if (own == nullptr) return nullptr;
  kelp_type_record_copy *first = nullptr;
  copies().each<Entry>([&](Entry &entry) {
    const bool earlier = first == nullptr || entry.copy < first;
    if (earlier && have_same_names(*own, entry.copy->record)) first = entry.copy;
  });
  return first != nullptr && is_edition_of(*own, *first) ? first : nullptr;
}

kelp_type_record_copy *TypeTable::find_exactly(const char *key) const {
  const std::lock_guard lock(mutex_);
  const Entry *entry = find_entry(key);
  return entry == nullptr ? nullptr : entry->copy;
}

kelp_type_record_copy *TypeTable::find(const char *key) const {
  const std::lock_guard lock(mutex_);
  const Entry *entry = find_entry(key);
  return entry == nullptr ? find_edition(key) : entry->copy;
}

kelp_type_record_copy *TypeTable::find(const kelp_type_record *record) {
  const std::lock_guard lock(mutex_);
  // A library that was unloaded may have left its address to another one's record.
  const auto known = by_record_.find(record);
  if (known != by_record_.end() &&
      std::memcmp(known->second.md5, record->md5, sizeof record->md5) == 0) {
    return known->second.copy;
  }
  const Entry *entry = find_entry(record->md5_text);
  kelp_type_record_copy *copy = entry == nullptr ? find_edition(record->md5_text) : entry->copy;
  if (copy == nullptr) return nullptr;
  Remembered &remembered = by_record_[record];
  remembered.copy = copy;
  std::memcpy(remembered.md5, record->md5, sizeof remembered.md5);
  return copy;
}

void TypeTable::forget_remembered() {
  const std::lock_guard lock(mutex_);
  by_record_.clear();
  note_change();
}

}  // namespace kelp
