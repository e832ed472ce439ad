// Looking at the directory of a store.
#include "store/check_directory.hpp"

namespace kelp::store {

// Whether so many bytes from there on lie in what was given out of the types area.
bool DirectoryCheck::is_in_types(const void *address, std::uint64_t bytes) const {
  const std::uint64_t offset = offset_of(address) - kTypesOffset;
  const std::uint64_t used = std::min<std::uint64_t>(head().types_used, kTypesBytes);
  return offset % alignof(std::uint64_t) == 0 && offset <= used && bytes <= used - offset;
}

bool DirectoryCheck::is_type_record(const kelp_type_record *record, kelp_type_record *found) const {
  if (!is_in_types(record, sizeof *record) || !read_at(record, found) ||
      found->magic != KELP_TYPE_MAGIC) {
    return false;
  }
  const auto ends = [](const auto &text) {
    return std::memchr(text, '\0', sizeof text) != nullptr;
  };
  if (!ends(found->md5_text) || !ends(found->type_name) || !ends(found->module_name) ||
      !ends(found->kind)) {
    return false;
  }
  if (found->varinfo == nullptr) return true;
  kelp_variant_info info{};
  return is_in_types(found->varinfo, sizeof info) && read_at(found->varinfo, &info) &&
         info.n_variants >= 0 &&
         (info.n_variants == 0 ||
          is_in_types(info.entries,
                      static_cast<std::uint64_t>(info.n_variants) * sizeof(kelp_variant_entry)));
}

void DirectoryCheck::check_types() {
  check_index("types", head().directory.types, [&](const IndexNode *node, std::uint64_t hash) {
    TypeEntry entry{};
    kelp_type_record record{};
    if (!read_at(node, &entry) || entry.key_length >= sizeof record.md5_text ||
        !is_block(node, sizeof entry + entry.key_length) ||
        !is_in_types(entry.copy, sizeof *entry.copy) ||
        !is_type_record(&entry.copy->record, &record)) {
      return false;
    }
    const char *key = reinterpret_cast<const char *>(view().bytes + offset_of(node) + sizeof entry);
    return hash_of(key, entry.key_length) == hash &&
           std::strlen(record.md5_text) == entry.key_length &&
           std::memcmp(record.md5_text, key, entry.key_length) == 0;
  });
}

// A mapping that its index agrees on, of an object that is there and says that it is mapped.
bool DirectoryCheck::is_mapping(const void *address) {
  kelp_oid_mapping mapping{};
  kelp_object_header object{};
  return is_block(address, sizeof mapping) && read_at(address, &mapping) &&
         mapping.by_object.hash == hash_of_address(mapping.object) &&
         is_block(mapping.object, sizeof object, true) && read_at(mapping.object, &object) &&
         (object.obj_flags & OBJ_OID_MAPPED) != 0;
}

void DirectoryCheck::check_oids() {
  const Directory &directory = head().directory;
  check_index("objects with an OID", directory.oids_by_object,
              [&](const IndexNode *node, std::uint64_t) { return is_mapping(node); });
  check_index("OIDs", directory.oids_by_id, [&](const IndexNode *node, std::uint64_t) {
    return is_mapping(reinterpret_cast<const std::byte *>(node) -
                      offsetof(kelp_oid_mapping, by_id));
  });
}

void DirectoryCheck::check_directory() {
  const Directory &directory = head().directory;
  check_types();
  check_index("keys", directory.keys);
  check_index("tables", directory.tables);
  check_index("tables by address", directory.tables_by_address);
  check_oids();
  check_index("distances", directory.distances);
  check_index("distances by page", directory.distances_by_page);
  check_index("tenants", directory.tenants);
  check_index("tenants by table", directory.tenants_by_table);
  const auto same = [&](const char *what, std::uint64_t one, std::uint64_t other) {
    if (one != other) say("%s: entered %" PRIu64 " and %" PRIu64 " times", what, one, other);
  };
  same("OIDs", directory.oids_by_object.count, directory.oids_by_id.count);
  same("distances", directory.distances.count, directory.distances_by_page.count);
  same("distances", directory.distances.count, directory.distance_count);
  same("tenants", directory.tenants.count, directory.tenants_by_table.count);
  if (directory.toc_root != nullptr && !is_block(directory.toc_root, sizeof(kelp_toc_root))) {
    say("the root of the table of contents lies in no block");
  }
}

}  // namespace kelp::store
