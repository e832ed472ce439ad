// What is looked at, in this order: the header, the spans and what links them, the slots, the
// indexes of the directory, the tables with their trees, the feeds, and the references between all
// of them.
#include "store/check.hpp"

#include "store/check_directory.hpp"

namespace kelp::store {

namespace {

class TableCheck : public DirectoryCheck {
 public:
  using DirectoryCheck::DirectoryCheck;

  void check_tables() {
    const Directory &directory = head().directory;
    if (directory.table_list == nullptr) return;
    kelp_table_list list{};
    if (!is_block(directory.table_list, sizeof list) || !read_at(directory.table_list, &list)) {
      say("the list of tables lies in no block");
      return;
    }
    const void *link = &directory.table_list->first;
    std::unordered_set<const void *> met;
    for (const kelp_table *at = list.first; at != nullptr;) {
      kelp_table table{};
      if (!is_block(at, sizeof table) || !read_at(at, &table) || !met.insert(at).second ||
          table.toc_prev != link) {
        say("the list of tables is broken at its entry %zu", met.size() + 1);
        return;
      }
      table.tbl_name[sizeof table.tbl_name - 1] = '\0';
      check_type(table.header.tinfo, "table", table.tbl_name);
      check_table(at, table);
      link = &at->toc_next;
      at = table.toc_next;
    }
    if (list.last_link != link) say("the list of tables does not end where it says");
    if (directory.tables_by_address.count > met.size()) {
      say("%" PRIu64 " tables in the table of contents, %zu in the list",
          directory.tables_by_address.count, met.size());
    }
  }

 private:
  // Whether the address is that of a type record of the kind in the types area.
  bool check_type(const kelp_type_record *record, const char *kind, const char *where) {
    kelp_type_record found{};
    if (!is_type_record(record, &found) || std::strncmp(found.kind, kind, sizeof found.kind) != 0) {
      say("table '%.100s': what stands for a type record is none of kind %s", where, kind);
      return false;
    }
    return true;
  }

  // Each node once, within a record of this table, linked both ways, balanced as it says.
  void check_table(const kelp_table *address, const kelp_table &table) {
    std::uint64_t records = 0;
    std::uint64_t shadows = 0;
    std::unordered_set<const void *> met;
    const int height =
        check_subtree(address, table, table.avl_root.top, nullptr, 0, met, &records, &shadows);
    if (height < 0) return;
    if (records != table.record_count || records != table.avl_aux) {
      say("table '%.100s': %u records and %" PRIu64 " nodes, %" PRIu64 " found", table.tbl_name,
          table.record_count, table.avl_aux, records);
    }
    if (shadows != table.shadow_count) {
      say("table '%.100s': %u shadow records, %" PRIu64 " found", table.tbl_name,
          table.shadow_count, shadows);
    }
  }

  // The height of the subtree, -1 when it is broken; a sound tree is less than 64 high.
  int check_subtree(const kelp_table *address, const kelp_table &table, const e_avl_node *node,
                    const e_avl_node *parent, int depth, std::unordered_set<const void *> &met,
                    std::uint64_t *records, std::uint64_t *shadows) {
    if (node == nullptr) return 0;
    constexpr int kHighest = 64;
    constexpr std::size_t kNodeOffset = offsetof(kelp_record, avl_node);
    kelp_record record{};
    const auto *at =
        reinterpret_cast<const std::byte *>(reinterpret_cast<std::uintptr_t>(node) - kNodeOffset);
    if (depth > kHighest || !is_block(at, sizeof record) || !read_at(at, &record) ||
        !met.insert(node).second || record.avl_node.parent != parent) {
      say("table '%.100s': its tree is broken below record %" PRIu64, table.tbl_name, *records);
      return -1;
    }
    if (parent == nullptr) tree_ = record.avl_node.tree;
    if (record.avl_node.tree != 0 && record.avl_node.tree != tree_) {
      say("table '%.100s': a record in its tree has the number of another tree", table.tbl_name);
    }
    const int left =
        check_subtree(address, table, record.avl_node.left, node, depth + 1, met, records, shadows);
    const int right = left < 0 ? -1
                               : check_subtree(address, table, record.avl_node.right, node,
                                               depth + 1, met, records, shadows);
    if (right < 0) return -1;
    ++*records;
    if (record.src == KELP_SRC_SHADOW) ++*shadows;
    if (right - left != record.avl_node.balance || right - left > 1 || left - right > 1) {
      say("table '%.100s': a node with subtrees of heights %d and %d says %d", table.tbl_name, left,
          right, record.avl_node.balance);
    }
    check_type(record.header.tinfo, "table_record", table.tbl_name);
    if (record.record_table != address) {
      say("table '%.100s': a record in its tree names another table", table.tbl_name);
    }
    if (record.objects[0] != nullptr && !is_block(record.objects[0], sizeof(kelp_object_header))) {
      say("table '%.100s': the object of a record lies in no block of the store", table.tbl_name);
    }
    return 1 + std::max(left, right);
  }

  std::uint32_t tree_ = 0;  // the number of the tree that is looked at
};

class Checker : public TableCheck {
 public:
  using TableCheck::TableCheck;

  void check_feeds() {
    const Directory &directory = head().directory;
    std::vector<const FeedTable *> feeds;
    check_index("feeds", directory.feeds, [&](const IndexNode *node, std::uint64_t hash) {
      const auto *at = reinterpret_cast<const FeedTable *>(node);
      FeedTable feed{};
      kelp_table table{};
      if (!is_block(at, sizeof feed) || !read_at(at, &feed) ||
          hash != mix(reinterpret_cast<std::uintptr_t>(feed.table)) ||
          !is_block(feed.table, sizeof table) || !read_at(feed.table, &table) ||
          table.runtime_state != at) {
        return false;
      }
      feeds.push_back(at);
      return true;
    });
    check_index("entries of feeds", directory.feed_entries,
                [&](const IndexNode *node, std::uint64_t hash) {
                  FeedEntry entry{};
                  return is_block(node, sizeof entry) && read_at(node, &entry) &&
                         hash == mix(reinterpret_cast<std::uintptr_t>(entry.record)) &&
                         is_block(entry.record, sizeof(kelp_record)) &&
                         std::find(feeds.begin(), feeds.end(), entry.feed) != feeds.end();
                });
    std::uint64_t entries = 0;
    for (const FeedTable *feed : feeds) entries += check_feed(feed);
    if (entries != directory.feed_entries.count) {
      say("feeds: %" PRIu64 " entries in their indexes, %" PRIu64 " in their orders",
          directory.feed_entries.count, entries);
    }
  }

 private:
  // How many entries the feed has in its order.
  std::uint64_t check_feed(const FeedTable *address) {
    FeedTable feed{};
    if (!read_at(address, &feed)) return 0;
    std::uint64_t in_state[4] = {};
    std::uint64_t last = 0;
    const std::uint64_t found = check_feed_list(
        address, "order", feed.order, &FeedEntry::order, [&](const FeedEntry &each) {
          const auto state = static_cast<std::uint32_t>(each.state);
          if (state > 3 || each.sequence <= last || each.sequence > feed.sequence) return false;
          last = each.sequence;
          ++in_state[state];
          return true;
        });
    const std::uint64_t waiting =
        check_feed_list(address, "list of marked records", feed.waiting, &FeedEntry::waiting,
                        [](const FeedEntry &each) { return each.state == FeedState::marked; });
    const std::uint64_t marked = in_state[static_cast<std::uint32_t>(FeedState::marked)];
    const std::uint64_t gone = in_state[static_cast<std::uint32_t>(FeedState::gone)];
    if (marked != feed.marked || marked != waiting || gone != feed.gone) {
      say("a feed: %" PRIu64 " records marked and %" PRIu64 " gone, found %" PRIu64 ", %" PRIu64
          " in their list, and %" PRIu64,
          feed.marked, feed.gone, marked, waiting, gone);
    }
    return found;
  }

  template <typename Test>
  std::uint64_t check_feed_list(const FeedTable *feed, const char *what, const FeedList &list,
                                FeedLinks FeedEntry::*links, Test &&belongs) {
    std::uint64_t found = 0;
    const FeedEntry *before = nullptr;
    for (const FeedEntry *at = list.first; at != nullptr;) {
      FeedEntry entry{};
      if (!is_block(at, sizeof entry) || !read_at(at, &entry) || entry.feed != feed ||
          (entry.*links).previous != before || !belongs(entry) ||
          ++found > head().directory.feed_entries.count) {
        say("a feed: its %s is broken at its entry %" PRIu64, what, found);
        return found;
      }
      before = at;
      at = (entry.*links).next;
    }
    if (list.last != before) say("a feed: its %s does not end where it says", what);
    return found;
  }
};

}  // namespace

std::uint64_t check(const View &view, const Finding &finding) {
  Checker checker(view, finding);
  if (!checker.check_header()) return checker.findings();
  checker.check_heap();
  checker.check_directory();
  checker.check_tables();
  checker.check_feeds();
  return checker.findings();
}

std::uint64_t check_types(const View &view, const Finding &finding) {
  DirectoryCheck checker(view, finding);
  if (checker.check_header()) checker.check_types();
  return checker.findings();
}

}  // namespace kelp::store
