// Stores whose bytes were changed. Whatever stands in the file, opening and looking through it
// ends: refused, with findings, or sound; never by a signal, and never late. And damage that can be
// known is found.
//
// HARBOR_STORE_DAMAGES says how many changes are tried; without it 500.
#include <fcntl.h>
#include <kelp/oid.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>

#include "rows.hpp"

namespace store_test {

namespace {

constexpr std::size_t kHeadEnd = 3208;  // of what the header holds
constexpr std::size_t kTypes = 65536;
constexpr std::size_t kHeap = kTypes + (std::size_t{1} << 20);
constexpr std::size_t kSpan = 65536;
constexpr std::size_t kSpanHeader = 64;

std::string bytes_of(const std::string &file) {
  std::ifstream stream(file, std::ios::binary | std::ios::ate);
  std::string bytes(static_cast<std::size_t>(stream.tellg()), '\0');
  stream.seekg(0);
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

void put_bytes(const std::string &file, const std::string &bytes) {
  std::ofstream(file, std::ios::binary) << bytes;
}

// Rows of all sizes, some of them gone again, so that each kind of span and list is there.
int fill(Rows &rows) {
  for (std::uint16_t key = 0; key < 60; ++key) {
    const std::size_t length = key % 20 == 7 ? 100000 : key * 37;
    if (rows.put(key, some_bytes(key, length)) != 0) return 1;
  }
  for (std::uint16_t key = 3; key < 60; key += 7) {
    if (rows.erase(key) != 0) return 2;
  }
  return 0;
}

// A feed that knows rows in each state.
int follow(Rows &rows) {
  std::uint32_t err = 0;
  auto *table = tbl_ospfv2_unknown_sub_tlv_table_open(rows.handle, 0, "rows", 1, &err);
  auto *as_table = reinterpret_cast<kelp_table *>(table);
  if (kelp_table_enable_cursors(rows.handle, as_table, 1, nullptr) != 0) return 3;
  for (std::uint16_t key = 100; key < 110; ++key) {
    if (rows.put(key, some_bytes(key, 20)) != 0) return 4;
  }
  for (int turn = 0; turn < 3; ++turn) {
    auto *record = tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_type_get_first(rows.handle, 0,
                                                                                    table, &err);
    for (int step = 0; step < turn; ++step) {
      record = tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_type_get_next(rows.handle, 0,
                                                                               table, record, &err);
    }
    tbl_ospfv2_unknown_sub_tlv_request_record_destroy(rows.handle, 0, table, record, &err);
  }
  return err == 0 ? 0 : 5;
}

int make_store(const std::string &path) {
  return run([&] {
    Rows rows(path);
    if (rows.lock_write() != 0) return 1;
    int filled = fill(rows);
    if (filled == 0) filled = follow(rows);
    return filled != 0 ? filled : rows.unlock();
  });
}

enum Outcome : int { kSound = 10, kFound, kRefused };

// Opens and looks through the store, in a process that ends by itself or is ended by an alarm.
int look(const std::string &path, bool read_only) {
  return run([&]() -> int {
    alarm(20);
    kelp_store_options options;
    kelp_store_options_init(&options);
    options.wait_ms = 1000;
    options.create = 0;
    options.read_only = read_only ? 1 : 0;
    Rows rows(path, &options);
    if (!rows.is_open()) return rows.error.text[0] != '\0' ? kRefused : 1;
    const std::int32_t locked = read_only ? rows.lock_read() : rows.lock_write();
    if (locked != 0 && rows.error.text[0] == '\0') return 2;
    kelp_error result;
    const std::int32_t code = kelp_database_check(rows.database, nullptr, nullptr, &result);
    if (locked == 0) read_only ? rows.unlock() : rows.rollback();
    if (code != 0 && code != 5) return 3;
    return code != 0 ? kFound : locked != 0 ? kRefused : kSound;
  });
}

class Damage {
 public:
  Damage(const std::string &sound, std::uint64_t seed) : sound_(sound), random_(seed) {
    for (std::size_t at = 0; at + 8 <= sound.size(); at += 8) {
      if (word(at) != 0) used_.push_back(at);
      if (word(at) >> 40 == UINT64_C(0x7e)) pointers_.push_back(at);
    }
  }

  // The bytes with one more change than before in them, said in words.
  std::string change(std::string *bytes) {
    *bytes = sound_;
    const std::size_t at = place();
    const std::string where = " at " + std::to_string(at);
    switch (random_() % 12) {
      case 0:
        bytes->resize(random_() % bytes->size());
        return "cut to " + std::to_string(bytes->size());
      case 1: {
        const std::size_t length = std::min<std::size_t>(random_() % 4096, bytes->size() - at);
        bytes->replace(at, length, length, '\0');
        return std::to_string(length) + " zeroes" + where;
      }
      case 2:
      case 3:
      case 4:
        (*bytes)[at + random_() % 8] = static_cast<char>(random_());
        return "a byte" + where;
      case 5:
        (*bytes)[at + random_() % 8] ^= static_cast<char>(1 << random_() % 8);
        return "a bit" + where;
      default:
        const std::uint64_t value = some_word(at);
        const std::size_t width = random_() % 3 == 0 ? 4 : 8;
        std::memcpy(&(*bytes)[at], &value, width);
        return "the word " + std::to_string(value) + where;
    }
  }

 private:
  std::uint64_t word(std::size_t at) const {
    std::uint64_t value;
    std::memcpy(&value, sound_.data() + at, sizeof value);
    return value;
  }
  std::size_t within(std::size_t from, std::size_t end) {
    return from + random_() % ((end - from) / 8) * 8;
  }
  std::size_t place() {
    switch (random_() % 4) {
      case 0:
        return within(0, kHeadEnd);
      case 1:
        if (sound_.size() <= kHeap + kSpan) return within(0, kSpanHeader);
        return within(kHeap, kHeap + (sound_.size() - kHeap) / kSpan * kSpanHeader);
      case 2:
        return pointers_[random_() % pointers_.size()];
      default:
        return used_[random_() % used_.size()];
    }
  }
  // What stands elsewhere points where something is; the rest is near or far off.
  std::uint64_t some_word(std::size_t at) {
    switch (random_() % 6) {
      case 0:
        return random_();
      case 1:
        return UINT64_MAX;
      case 2:
        return random_() % 100;
      case 3:
        return word(at) + random_() % 256 - 128;
      default:
        return word(used_[random_() % used_.size()]);
    }
  }

  std::string sound_;
  std::mt19937_64 random_;
  std::vector<std::size_t> used_;      // words that are not zero
  std::vector<std::size_t> pointers_;  // those that look like addresses of stores
};

TEST(StoreDamage, AnyChangeOfTheFileIsRefusedFoundOrHarmless) {
  const char *wanted = std::getenv("HARBOR_STORE_DAMAGES");
  const long turns = wanted != nullptr ? std::atol(wanted) : 500;
  const Folder folder(Folder::in_memory());
  const std::string path = folder.file();
  ASSERT_EQ(make_store(path), 0);
  const std::string sound = bytes_of(path);
  ASSERT_EQ(look(path, true), kSound);
  long outcomes[3] = {};
  Damage damage(sound, 1);
  for (long turn = 0; turn < turns; ++turn) {
    std::string bytes;
    const std::string what = damage.change(&bytes);
    put_bytes(path, bytes);
    const bool read_only = turn % 2 == 0;
    const int outcome = look(path, read_only);
    ASSERT_TRUE(outcome >= kSound && outcome <= kRefused)
        << "turn " << turn << ": " << what << ": ended with " << outcome;
    ++outcomes[outcome - kSound];
    if (read_only || outcome == kRefused) {
      // What was opened for writing notes the run of the machine, refused at its lock or not.
      const std::string after = bytes_of(path);
      ASSERT_EQ(after.size(), bytes.size()) << what;
      const std::size_t from = read_only ? 0 : std::min<std::size_t>(192, bytes.size());
      ASSERT_EQ(after.compare(from, std::string::npos, bytes, from, std::string::npos), 0) << what;
    }
  }
  std::printf("%ld sound, %ld with findings, %ld refused\n", outcomes[0], outcomes[1], outcomes[2]);
  EXPECT_GT(outcomes[1], turns / 10);
  EXPECT_GT(outcomes[2], turns / 20);
}

// A writer died, and the journal that would undo it was changed too.
TEST(StoreDamage, AnyChangeOfTheJournalIsRefusedFoundOrHarmless) {
  const Folder folder(Folder::in_memory());
  const std::string path = folder.file();
  ASSERT_EQ(make_store(path), 0);
  ASSERT_EQ(run([&] {
              Rows rows(path);
              rows.lock_write();
              rows.put(1, some_bytes(1, 3000));
              for (std::uint16_t key = 10; key < 30; ++key) rows.erase(key);
              _exit(0);
              return 0;
            }),
            0);
  const std::string sound = bytes_of(path);
  const std::string lock = bytes_of(path + "-lock");
  std::string journal = bytes_of(path + "-log");
  std::uint64_t length = 0;
  std::memcpy(&length, journal.data() + 40, sizeof length);
  ASSERT_NE(length, 0U);
  Damage damage(journal, 2);
  for (int turn = 0; turn < 300; ++turn) {
    std::string bytes;
    const std::string what = damage.change(&bytes);
    put_bytes(path, sound);
    put_bytes(path + "-lock", lock);
    put_bytes(path + "-log", bytes);
    const int outcome = look(path, false);
    ASSERT_TRUE(outcome >= kSound && outcome <= kRefused)
        << "turn " << turn << ": " << what << ": ended with " << outcome;
  }
}

// --- damage that is known ---

// Of an index: ten stand in a row, two behind the words that follow them.
std::size_t root_of(std::size_t index) {
  return index < 10 ? 192 + 672 + index * 208 : 192 + 2784 + (index - 10) * 208;
}

// The words of a feed, and of its entries.
enum FeedWord {
  kFirst = 6,
  kLast = 7,
  kFirstMarked = 8,
  kLastMarked = 9,
  kGone = 10,
  kMarked = 11
};
enum EntryWord { kRecord = 3, kSequence = 4, kPrevious = 6, kNextMarked = 7 };

// The words of a bucket: halves of hashes, what has no place, and the nodes in its ten places.
enum BucketWord {
  kHashes = 0,
  kLastHashes = 4,
  kFurther = 5,
  kFirstNode = 6,
  kLastNode = 15,
  kBucketWords = 16
};

// A store's bytes, by the addresses in it.
class Image {
 public:
  explicit Image(const std::string &path) : bytes(bytes_of(path)) {
    std::memcpy(&base_, bytes.data() + 24, sizeof base_);
  }

  template <typename T>
  T &at(std::uint64_t offset) {
    return *reinterpret_cast<T *>(bytes.data() + offset);
  }
  template <typename T>
  T &behind(T *pointer) {
    return at<T>(reinterpret_cast<std::uintptr_t>(pointer) - base_);
  }

  kelp_table &table() { return behind(behind(at<kelp_table_list *>(192 + 2768)).first); }
  kelp_record &record(e_avl_node *node) {
    return at<kelp_record>(reinterpret_cast<std::uintptr_t>(node) -
                           offsetof(kelp_record, avl_node) - base_);
  }
  kelp_record &top() { return record(table().avl_root.top); }
  std::uint64_t *words(std::uint64_t address) { return &at<std::uint64_t>(address - base_); }
  std::uint64_t *feed() { return words(reinterpret_cast<std::uintptr_t>(table().runtime_state)); }
  std::uint64_t *feed_entry(FeedWord which) { return words(feed()[which]); }
  // The first entry of the index that stands there in the head.
  std::uint64_t *entry(std::size_t index) { return words(bucket(index)[kFirstNode]); }
  // The first bucket of it that has one: its words.
  std::uint64_t *bucket(std::size_t index) {
    std::uint64_t *found = words(at<std::uint64_t>(root_of(index) + 16));
    while (found[kFirstNode] == 0) found += kBucketWords;
    return found;
  }

  std::string bytes;

 private:
  std::uint64_t base_ = 0;
};

constexpr std::size_t kTypeIndex = 0;
constexpr std::size_t kOidIndex = 4;
constexpr std::size_t kIdIndex = 5;

// What is said of a store that was changed so, when it is opened and looked through.
std::string said_of(const std::function<void(Image &)> &change) {
  const Folder folder(Folder::in_memory());
  const std::string path = folder.file();
  EXPECT_EQ(run([&] {
              Rows rows(path);
              if (rows.lock_write() != 0 || fill(rows) != 0) return 1;
              std::uint32_t err = 0;
              auto *table = tbl_ospfv2_unknown_sub_tlv_table_open(rows.handle, 0, "rows", 0, &err);
              kelp_handle_to_oid(rows.handle, 0, table, 0, 0, &err);
              // Leaves a free run behind.
              rows.handle->obj_free(rows.handle->obj_pool, 0,
                                    rows.handle->obj_alloc(rows.handle->obj_pool, 0, 4 * kSpan));
              return err != 0 || follow(rows) != 0 ? 2 : rows.unlock();
            }),
            0);
  Image image(path);
  change(image);
  put_bytes(path, image.bytes);
  EXPECT_EQ(run([&] {
              alarm(20);
              kelp_store_options options;
              kelp_store_options_init(&options);
              options.read_only = 1;
              Rows rows(path, &options);
              put_bytes(path + "-said", rows.is_open() ? rows.check() : rows.error.text);
              return 0;
            }),
            0);
  return bytes_of(path + "-said");
}

void expect_said(const char *words, const std::function<void(Image &)> &change) {
  const std::string said = said_of(change);
  EXPECT_NE(said.find(words), std::string::npos) << "expected '" << words << "', said: " << said;
}

TEST(StoreDamage, ASoundStoreHasNoFindings) {
  EXPECT_EQ(said_of([](Image &) {}), "");
}
TEST(StoreDamage, ALinkOfATreeIsFound) {
  expect_said("its tree is broken",
              [](Image &image) { image.top().avl_node.left = image.table().avl_root.top; });
  expect_said("its tree is broken", [](Image &image) {
    image.record(image.top().avl_node.right).avl_node.parent = image.top().avl_node.left;
  });
  expect_said("a node with subtrees", [](Image &image) { image.top().avl_node.balance += 2; });
}
TEST(StoreDamage, ANumberOfATreeIsFound) {
  expect_said("the number of another tree",
              [](Image &image) { ++image.record(image.top().avl_node.right).avl_node.tree; });
}
TEST(StoreDamage, ACountIsFound) {
  expect_said("records and", [](Image &image) { ++image.table().record_count; });
  expect_said("records and", [](Image &image) { --image.table().avl_aux; });
  expect_said("shadow records", [](Image &image) { ++image.table().shadow_count; });
  expect_said("shadow records", [](Image &image) { image.top().src = KELP_SRC_SHADOW; });
  expect_said("allocations of", [](Image &image) { ++image.at<std::uint64_t>(192 + 624); });
  expect_said("allocations of", [](Image &image) { ++image.at<std::uint64_t>(192 + 632); });
  expect_said("the runtime itself", [](Image &image) { ++image.at<std::uint64_t>(192 + 664); });
}
TEST(StoreDamage, AnIndexIsFound) {
  for (std::size_t index = 0; index < 12; ++index) {
    EXPECT_NE(said_of([&](Image &image) { ++image.at<std::uint64_t>(root_of(index)); }), "")
        << index;
  }
}
TEST(StoreDamage, ABucketIsFound) {
  const char *found = "index of objects with an OID: bucket";
  expect_said(found, [](Image &image) { ++image.bucket(kOidIndex)[kHashes]; });
  expect_said(found, [](Image &image) { image.bucket(kOidIndex)[kFirstNode] += 4096; });
  // Its node without a place, while there are some, and behind places without any.
  expect_said(found, [](Image &image) {
    std::uint64_t *bucket = image.bucket(kOidIndex);
    std::swap(bucket[kFurther], bucket[kFirstNode]);
  });
  expect_said(found, [](Image &image) {
    std::uint64_t *bucket = image.bucket(kOidIndex);
    std::swap(bucket[kLastNode], bucket[kFirstNode]);
    bucket[kLastHashes] = bucket[kHashes] << 32;
  });
}
TEST(StoreDamage, AListOfTheAllocatorIsFound) {
  expect_said("a free run in no list", [](Image &image) {
    for (std::size_t bin = 0; bin < 11; ++bin) {
      image.at<std::uint32_t>(192 + 32 + bin * 4) = UINT32_MAX;
    }
  });
  expect_said("has free slots and is in no list", [](Image &image) {
    for (std::size_t each = 0; each < 136; ++each) {
      image.at<std::uint32_t>(192 + 76 + each * 4) = UINT32_MAX;
    }
  });
  expect_said("list is broken", [](Image &image) {
    for (std::size_t bin = 0; bin < 11; ++bin) image.at<std::uint32_t>(192 + 32 + bin * 4) = 0;
  });
}
TEST(StoreDamage, ATypeRecordIsFoundBeforeAnythingIsReadByIt) {
  const char *refused = "things in its types are damaged";
  expect_said(refused, [](Image &image) { ++image.behind(image.table().header.tinfo).magic; });
  expect_said(refused,
              [](Image &image) { ++image.behind(image.table().header.tinfo).md5_text[0]; });
  expect_said(refused, [](Image &image) {
    kelp_type_record &type = image.behind(image.top().header.tinfo);
    std::memset(type.type_name, 'x', sizeof type.type_name);
  });
  expect_said(refused, [](Image &image) {
    image.behind(image.behind(image.top().header.tinfo).varinfo).n_variants = 127;
    image.behind(image.behind(image.top().header.tinfo).varinfo).entries += 20000;
  });
  expect_said(refused, [](Image &image) { image.entry(kTypeIndex)[2] += 8; });
  expect_said("is none of kind table_record",
              [](Image &image) { image.top().header.tinfo = image.table().header.tinfo; });
}
TEST(StoreDamage, ARecordThatPointsElsewhereIsFound) {
  expect_said("names another table", [](Image &image) { image.top().record_table = nullptr; });
  expect_said("lies in no block", [](Image &image) {
    image.top().objects[0] = static_cast<char *>(image.top().objects[0]) + 8;
  });
}
TEST(StoreDamage, AFeedIsFound) {
  const char *order = "a feed: its order is broken";
  expect_said(order, [](Image &image) { image.feed_entry(kFirst)[kSequence] = 1000; });
  expect_said(order,
              [](Image &image) { image.feed_entry(kLast)[kPrevious] = image.feed()[kFirst]; });
  expect_said("a feed: its list of marked records is broken", [](Image &image) {
    image.feed_entry(kLastMarked)[kNextMarked] = image.feed()[kFirstMarked];
  });
  expect_said("does not end where it says",
              [](Image &image) { image.feed()[kLast] = image.feed()[kFirst]; });
  expect_said("records marked and", [](Image &image) { ++image.feed()[kMarked]; });
  expect_said("records marked and", [](Image &image) { ++image.feed()[kGone]; });
  expect_said("index of feeds", [](Image &image) { image.table().runtime_state = nullptr; });
  expect_said("index of entries of feeds",
              [](Image &image) { image.feed_entry(kFirst)[kRecord] += 8; });
}
TEST(StoreDamage, AnOidThatDoesNotFitItsObjectIsFound) {
  const char *found = "index of objects with an OID: an entry is damaged";
  expect_said(found, [](Image &image) { image.table().header.obj_flags &= 0xfe; });
  expect_said(found, [](Image &image) {
    // Its object, behind the two links and the OID.
    image.entry(kOidIndex)[2 + 2 + 5] += 16;
  });
  expect_said("index of OIDs: bucket", [](Image &image) { ++image.entry(kOidIndex)[2 + 1]; });
  expect_said("index of OIDs: an entry is damaged", [](Image &image) {
    // A node that is as the one in the mapping, and lies elsewhere.
    std::uint64_t &node = image.bucket(kIdIndex)[kFirstNode];
    std::uint64_t *elsewhere = image.feed_entry(kFirst) + 9;
    std::copy_n(image.words(node), 2, elsewhere);
    node = image.feed()[kFirst] + 9 * sizeof *elsewhere;
  });
}

}  // namespace

}  // namespace store_test
