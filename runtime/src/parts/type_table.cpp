// Entering and finding copies of type records.
#include "parts/type_table.hpp"

#include <cstring>

namespace kelp {

void TypeTable::insert(const char *key, kelp_type_record_copy *copy) {
  const std::lock_guard lock(mutex_);
  copies_[key] = copy;
  by_record_.clear();
}

kelp_type_record_copy *TypeTable::find(const char *key) const {
  const std::lock_guard lock(mutex_);
  const auto found = copies_.find(key);
  return found == copies_.end() ? nullptr : found->second;
}

kelp_type_record_copy *TypeTable::find(const kelp_type_record *record) {
  const std::lock_guard lock(mutex_);
  // A library that was unloaded may have left its address to another one's record.
  const auto known = by_record_.find(record);
  if (known != by_record_.end() &&
      std::memcmp(known->second->record.md5, record->md5, sizeof record->md5) == 0) {
    return known->second;
  }
  const auto found = copies_.find(record->md5_text);
  if (found == copies_.end()) return nullptr;
  by_record_[record] = found->second;
  return found->second;
}

}  // namespace kelp
