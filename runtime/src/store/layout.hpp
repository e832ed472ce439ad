// The format of a store's three files, as docs/store.md has it: the header, the span headers and
// the slots of the database, the journal's head and entries, and the lock file's process table.
// Plain data: every word here lies in memory that several processes map.
#pragma once

#include <cstddef>
#include <cstdint>

#include "kelp/oid.h"
#include "kelp/table.h"
#include "store/index.hpp"
#include "store/size_class.hpp"

namespace kelp::store {
struct FeedEntry;
struct FeedTable;
}  // namespace kelp::store

// An entry of the two indexes of OIDs. It stays where it is, so that others may hold it.
struct kelp_oid_mapping {
  kelp::store::IndexNode by_object;
  kelp::store::IndexNode by_id;
  kelp_oid oid;
  void *object;
  std::uint64_t references;
  std::uint64_t destroy_asked;
};

namespace kelp::store {

inline constexpr std::size_t kSegmentSpans = 1024;
inline constexpr std::size_t kSegmentBytes = kSegmentSpans * kSpanBytes;
inline constexpr std::size_t kPageBytes = 4096;

// From the start of the database file, and from the address that its header names.
inline constexpr std::size_t kTypesOffset = kSpanBytes;
inline constexpr std::size_t kTypesBytes = std::size_t{1} << 20;
inline constexpr std::size_t kHeapOffset = kTypesOffset + kTypesBytes;

inline constexpr char kStoreMagic[16] = "kelp database\n\x1a";
inline constexpr char kJournalMagic[16] = "kelp journal\n\x1a";
inline constexpr char kRedoMagic[16] = "kelp redo\n\x1a";
inline constexpr char kLockMagic[16] = "kelp locks\n\x1a";
inline constexpr std::uint32_t kLayoutVersion = 6;
inline constexpr std::uint32_t kSurvivesProcesses = 0;  // of durability
inline constexpr std::uint32_t kSurvivesPower = 1;
inline constexpr std::uint32_t kByteOrder = 0x01020304;

// Where stores are mapped: outside what loaders and sanitizers use on x86-64.
inline constexpr std::uint64_t kLowestAddress = UINT64_C(0x7e9000000000);
inline constexpr std::uint64_t kHighestAddress = UINT64_C(0x7ef000000000);

// A smaller first word of an OID says that nothing can be resolved.
inline constexpr std::uint64_t kFirstOid = 256;

inline constexpr std::uint32_t kNoSpan = UINT32_MAX;
inline constexpr std::size_t kBins = 11;  // of free runs, by the power of two of their length

// What never changes once the file stands; its checksum covers the bytes in front of it.
struct Identity {
  char magic[16];
  std::uint32_t layout;
  std::uint32_t byte_order;
  std::uint64_t address;  // where every process maps the file
  std::uint64_t reserved_bytes;
  std::uint8_t id[16];
  std::uint32_t durability;
  std::uint32_t span_bytes;
  std::uint64_t unused[6];
  std::uint32_t reserved_word;
  std::uint32_t checksum;
};
static_assert(sizeof(Identity) == 120);

struct Statistics {
  std::uint64_t live_allocations;  // of objects
  std::uint64_t live_bytes;
  std::uint64_t used_bytes;
  std::uint64_t peak_used_bytes;
  std::uint64_t total_allocations;
  std::uint64_t own_bytes;  // used by what the runtime keeps for itself
};

// What the parts of a database find their things by. A private database has one too.
struct Directory {
  IndexRoot types;  // by the text of their md5
  IndexRoot keys;
  IndexRoot tables;  // by type and name or id
  IndexRoot tables_by_address;
  IndexRoot oids_by_object;
  IndexRoot oids_by_id;
  IndexRoot distances;
  IndexRoot distances_by_page;
  IndexRoot tenants;
  IndexRoot tenants_by_table;
  std::uint64_t distance_count;
  std::uint64_t next_oid;
  kelp_table_list *table_list;
  kelp_toc_root *toc_root;
  IndexRoot feeds;         // by their tables
  IndexRoot feed_entries;  // by their records
  std::uint64_t next_feed;
};

// Of the programs that use a store: whether any made objects that track state, and above that bit
// how often one came that knows more variants than those before.
inline constexpr std::uint32_t kHasTrackedObjects = 1;
inline constexpr std::uint32_t kOneJoined = 2;

// What transactions change. It is saved as a whole at the start of each.
struct Head {
  std::uint64_t sequence;       // of the last commit
  std::uint64_t types_version;  // rises with each commit that changes the types area
  std::uint64_t types_used;     // bytes of the types area that were given out
  std::uint64_t spans;          // of the heap, that the file backs
  std::uint32_t bins[kBins];
  std::uint32_t classes[kClasses];  // the spans of a class with a free slot
  std::uint32_t editions;           // below
  Statistics statistics;
  Directory directory;
  // Of a store whose commits are on the disk: where its log goes on, and the number of its last
  // record.
  std::uint64_t redo_end;
  std::uint64_t redo_number;
};

struct Header {
  Identity identity;
  std::uint64_t unused;
  // Not undone by a rollback.
  std::uint8_t boot[16];        // the run of the machine in which it was opened for writing last
  std::uint32_t clean;          // everything was synced when the last process closed it
  std::uint32_t stamp;          // of the transaction that runs or ran last
  std::uint64_t was_compacted;  // free spans may have no room on the disk
  std::uint64_t trees;          // ever numbered
  std::uint64_t unused_words[3];
  Head head;
};
static_assert(offsetof(Header, boot) == 128);
static_assert(offsetof(Header, head) == 192);
static_assert(sizeof(Header) <= kSpanBytes);

// An entry of the index of types, with its key, a text without an end, behind it.
struct TypeEntry {
  IndexNode node;
  kelp_type_record_copy *copy;
  std::uint64_t key_length;
  char *key() { return reinterpret_cast<char *>(this + 1); }
};

enum class SpanKind : std::uint8_t { none, table, slots, large, large_rest, free };

inline constexpr std::uint8_t kLive = 1;
inline constexpr std::uint8_t kRuntimes = 2;  // the runtime's own, not an object's

// What a feed says of a record: its latest change. A feed has one entry for each record, in the
// order of their sequences.
enum class FeedState : std::uint32_t {
  expected,  // not shown to anybody yet
  present,
  marked,  // for destruction
  gone     // out of the tree
};

struct FeedLinks {
  FeedEntry *next;
  FeedEntry *previous;
};

struct FeedEntry {
  IndexNode by_record;
  FeedTable *feed;
  kelp_record *record;
  std::uint64_t sequence;
  FeedLinks order;
  FeedLinks waiting;  // among the marked ones
  // A bit for each cursor, as it was when the entry got its sequence; a cursor that was opened
  // later has none.
  std::uint64_t seen_by;     // was shown the record as there
  std::uint64_t foreign_to;  // was not shown a change that another handle made
  std::uint64_t author;      // the handle that made the latest change
  std::uint64_t commit;      // the transaction of it
  FeedState state;
  std::uint32_t bulk;  // the latest change was part of a bulk transfer
};

struct FeedList {
  FeedEntry *first;
  FeedEntry *last;
};

// The feed of a table that is marked for replication.
struct FeedTable {
  IndexNode by_table;
  kelp_table *table;
  std::uint64_t id;        // no other feed of the database ever has it
  std::uint64_t sequence;  // of the latest change
  std::uint64_t version;   // another one whenever an entry moved, also after a rollback
  FeedList order;
  FeedList waiting;
  std::uint64_t gone;    // entries in this state
  std::uint64_t marked;  // and in this
  std::uint32_t implicit_write_cursor;
  std::uint32_t unused;
};

// One for each 64 KiB of the heap, in the first span of its segment.
struct Span {
  SpanKind kind;
  std::uint8_t state;  // of a large block
  std::uint16_t class_index;
  std::uint16_t slot_count;
  std::uint16_t first_free;  // a slot number, kNoSlot for none
  std::uint16_t fresh;       // slots from here on were never given out
  std::uint16_t live;
  std::uint32_t slot_bytes;
  std::uint32_t slots_offset;  // of the first slot, from the start of the span
  std::uint32_t next;          // in the list of its class or of its bin
  std::uint32_t previous;
  std::uint32_t run;   // spans of a large block or free run: in its first span, and in its last one
  std::uint32_t made;  // stamp of the transaction that divided it
  std::uint32_t saved;        // stamp of the transaction whose journal has this header
  std::uint32_t block_saved;  // of a large block: that whose journal has its bytes
  std::uint64_t asked;        // of a large block
  std::uint64_t unused;
};
static_assert(sizeof(Span) == 64);

inline constexpr std::uint16_t kNoSlot = UINT16_MAX;

// One for each slot, at the start of its span.
struct Slot {
  std::uint32_t saved;  // stamp of the transaction that made it, or whose journal has its bytes
  std::uint16_t asked;  // bytes asked for; in a free slot the number of the next free one
  std::uint8_t state;
  std::uint8_t unused;
};
static_assert(sizeof(Slot) == kSlotHead);

struct JournalHead {
  char magic[16];
  std::uint32_t layout;
  std::uint32_t unused;
  std::uint8_t id[16];   // of the store
  std::uint64_t length;  // bytes of entries that count; storing 0 is the commit
  std::uint64_t reserved[3];
};
static_assert(offsetof(JournalHead, length) == 40);
inline constexpr std::size_t kEntriesOffset = kPageBytes;

// Behind the bytes that it names, which are padded to 8.
struct JournalEntry {
  std::uint64_t address;
  std::uint64_t length;
};

struct RedoHead {
  char magic[16];
  std::uint32_t layout;
  std::uint32_t unused;
  std::uint8_t id[16];  // of the store
};
inline constexpr std::uint64_t kRedoStart = kPageBytes;
inline constexpr std::uint64_t kRedoMark = UINT64_C(0x6d6d6f63706c656b);  // "kelpcomm"

// Before the offsets of the pages that a commit changed, the pages, and a checksum of all of it.
struct RedoRecord {
  std::uint64_t mark;
  std::uint64_t sequence;
  std::uint64_t previous;  // number of the record before it
  std::uint64_t number;    // random
  std::uint64_t pages;
};
static_assert(sizeof(RedoRecord) == 40);

struct ProcessSlot {
  std::uint32_t pid;  // 0 for a free slot
  std::uint32_t readers;
  std::uint64_t started;  // when the process started, as the system counts it
  std::uint64_t since;    // nanoseconds since 1970 of its first read lock now held
  std::uint64_t unused[5];
};
static_assert(sizeof(ProcessSlot) == 64);

inline constexpr std::uint32_t kProcessSlots = 1020;

// A place in a feed. Whoever reads moves its own, so that cursors are no part of transactions and
// go with the processes that opened them.
struct CursorSlot {
  std::uint32_t process;    // 1 and the number of its slot; 0 for a free one
  std::uint32_t bit;        // the number of its bit in the entries of the feed
  std::uint64_t feed;       // its id
  std::uint64_t position;   // the sequence that it has passed
  std::uint64_t opened_at;  // the feed's sequence when it was opened
  std::uint64_t author;     // the handle that opened it
  std::uint64_t unused[3];
};
static_assert(sizeof(CursorSlot) == 64);

inline constexpr std::uint32_t kCursorSlots = 4096;

struct CursorTable {
  std::uint32_t commits;    // rises before each commit that changes anything (a futex)
  std::uint32_t listeners;  // how many sleep on it
  std::uint32_t used;       // slots from here on were never taken
  std::uint32_t unused[13];
  CursorSlot slots[kCursorSlots];
};

// The latest blocks that commits changed or freed, in order. What a transaction that did not commit
// wrote behind the committed ones is passed over, but may have taken the place of older ones.
inline constexpr std::uint64_t kChangePlaces = 65536;

struct ChangeLog {
  std::uint64_t committed;  // how many there ever were
  std::uint64_t lost;       // those before this number were written over
  std::uint64_t unused[6];
  std::uint64_t blocks[kChangePlaces];  // addresses, 1 more for a block that was freed
};

struct LockTable {
  char magic[16];
  std::uint32_t layout;
  std::uint32_t unused;
  std::uint8_t boot[16];
  std::uint8_t id[16];  // of the store
  std::uint32_t owner;  // 1 and the slot of the writer, 0 for none
  std::uint32_t waiters;
  std::uint64_t owned_since;
  std::uint32_t slots_used;  // slots from here on were never taken
  std::uint32_t unused_words[45];
  ProcessSlot slots[kProcessSlots];
  CursorTable cursors;
  ChangeLog changes;
};
static_assert(offsetof(LockTable, owner) == 56);
static_assert(offsetof(LockTable, slots) == 256);
static_assert(offsetof(LockTable, cursors) == 65536);
static_assert(offsetof(LockTable, changes) == 327744);

}  // namespace kelp::store
