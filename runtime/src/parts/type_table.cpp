// Entering and finding copies of type records.
#include "parts/type_table.hpp"

#include <cstring>
#include <new>
#include <string_view>

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

kelp_type_record_copy *TypeTable::find(const char *key) const {
  const std::lock_guard lock(mutex_);
  const Entry *entry = find_entry(key);
  return entry == nullptr ? nullptr : entry->copy;
}

kelp_type_record_copy *TypeTable::find(const kelp_type_record *record) {
  const std::lock_guard lock(mutex_);
  // A library that was unloaded may have left its address to another one's record.
  const auto known = by_record_.find(record);
  if (known != by_record_.end() &&
      std::memcmp(known->second->record.md5, record->md5, sizeof record->md5) == 0) {
    return known->second;
  }
  const Entry *entry = find_entry(record->md5_text);
  if (entry == nullptr) return nullptr;
  by_record_[record] = entry->copy;
  return entry->copy;
}

void TypeTable::forget_remembered() {
  const std::lock_guard lock(mutex_);
  by_record_.clear();
}

}  // namespace kelp
