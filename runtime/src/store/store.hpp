// A store: one database in a file that processes share, mapped by each at the address that the file
// names. This is what ties the lock, the journal and the heap into transactions: the write lock
// begins one, commit and rollback end it, and whoever comes after a dead writer undoes what it
// left.
//
// The types area of the file is mapped privately, and written through at a commit: type records
// count the objects made and ended, readers make objects too, and what these count is their own.
#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "store/check.hpp"
#include "store/cursor_places.hpp"
#include "store/gate.hpp"
#include "store/heap.hpp"
#include "store/journal.hpp"
#include "store/layout.hpp"
#include "store/memory.hpp"
#include "store/redo.hpp"
#include "store/system.hpp"

namespace kelp::store {

struct Options {
  bool read_only = false;
  bool create = true;
  std::uint64_t reserved_bytes = std::uint64_t{64} << 30;
  mode_t mode = 0600;
  std::uint32_t wait_ms = 10000;                        // UINT32_MAX: without limit
  std::uint32_t durability = kSurvivesProcesses;        // of a new store
  std::uint64_t image_bytes = std::uint64_t{16} << 20;  // of log, at least, between two images
};

class Store final : public Memory, public CursorPlaces, private Ground {
 public:
  // Null with the error filled in: a file that is not as this version writes it is not changed.
  static std::unique_ptr<Store> open(const std::string &path, const Options &options,
                                     kelp_error *error);
  Store(const Store &) = delete;
  Store &operator=(const Store &) = delete;
  ~Store();

  // Syncs the file when no other process has it open, and unmaps it.
  std::int32_t close(kelp_error *error);

  // nested: the calling thread has a read lock already.
  std::int32_t lock_read(bool nested, kelp_error *error);
  void unlock_read();
  std::int32_t lock_write(kelp_error *error);
  // Ends the transaction and gives up the write lock; on failure it was undone.
  std::int32_t commit(kelp_error *error);
  void rollback();

  bool is_writing() const { return writing_; }
  // Whether this process has a lock, and whether it is the one that opened the store.
  bool is_locked() const { return writing_ || gate_.is_reading(); }
  bool is_own() const { return getpid() == pid_; }
  // 0 in the process that opened the store, 1 in a child that was forked from it.
  std::int32_t check_process(kelp_error *error) const;
  // In such a child, whose parent's transaction is none of its own.
  void part_from_parent() { writing_ = false; }
  // The number of the transaction that runs or ran last; one that is undone has used its up.
  std::uint32_t transaction() const { return header_->stamp; }
  // For the writer: a number that no other tree of the file ever has, 0 when 31 bits hold no more.
  std::uint32_t number_tree();
  // For the writer: why this transaction cannot be committed any more, 0 when it can.
  const kelp_error &failure() const { return failure_; }
  // Has the commit of this transaction fail.
  void refuse(std::int32_t code, const char *reason);
  // Whether the last commit was told to those who wait for changes.
  bool was_announced() const { return announced_; }
  // Of the transaction that this process committed last.
  std::uint64_t committed() const { return committed_; }

  const std::string &path() const { return path_; }
  const std::uint8_t (&id() const)[16] { return header_->identity.id; }
  bool is_read_only() const { return options_.read_only; }
  std::uint32_t wait_ms() const { return options_.wait_ms; }
  Head &head() { return header_->head; }
  const Head &head() const { return header_->head; }
  Heap &heap() { return heap_; }
  const Heap &heap() const { return heap_; }

  bool holds(const void *address) const {
    return reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(base_) <
           reserved_;
  }
  bool in_types(const void *address) const {
    return reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(base_) -
               kTypesOffset <
           kTypesBytes;
  }

  // For the writer: from now on free spans may have no room on the disk, which is where trim's go.
  std::int32_t trim(kelp_error *error);
  // For the next writer, once that is committed: gives the disk what no span of the heap needs.
  void give_back();
  // Bytes that the file takes on the disk.
  std::uint64_t bytes_on_disk() const;

  // The file as it is mapped, for check.
  View view() const;

  // Memory of the types area, never given back; null when it is full.
  void *take_types(std::size_t size);
  // Bytes of the types area about to be changed.
  void touch_types(const void *address, std::size_t length);

  // Memory of the runtime's own things.
  void *take(std::size_t size) override {
    return writing_ ? heap_.allocate(size, kRuntimes) : nullptr;
  }
  void give_back(void *block) override;

  CursorTable *cursors(bool) override { return &gate_.cursors(); }
  std::uint32_t own_mark() const override { return gate_.own_mark(); }
  bool has_ended(std::uint32_t mark) const override { return gate_.has_ended(mark); }
  std::int32_t lock_places(kelp_error *error) override;
  void unlock_places() override;

  // Calls heard(block, whether it went) with the blocks of objects that commits changed since a
  // place, in order, and moves the place to the present; 0 is the place before everything. False,
  // with nothing told, when that is too long ago. Under a lock.
  bool each_change(std::uint64_t *place, const std::function<void(const void *, bool)> &heard);

  // What is to be done in this process after a rollback, or when others have committed.
  void on_rollback(std::function<void()> work) { after_rollback_ = std::move(work); }

 private:
  Store() : Memory(true) {}
  void hear(const void *address, std::size_t length) override;
  std::int32_t open_files(kelp_error *error);
  std::int32_t check_identity(const Identity &identity, std::int64_t size, kelp_error *error) const;
  std::int32_t make_file(const Header &header, const std::string &place, kelp_error *error) const;
  std::int32_t check_header(const Header &header, std::uint64_t size, kelp_error *error) const;
  std::int32_t create_file(kelp_error *error);
  std::int32_t map(kelp_error *error);
  std::int32_t map_types(kelp_error *error);
  std::int32_t meet_restart(kelp_error *error);
  std::int32_t mend(kelp_error *error);
  std::int32_t check_size(kelp_error *error) const;
  bool undo();
  void begin();
  void turn_private();
  void turn_shared();
  void write_types();
  void refresh_types();
  bool remap(int flags);
  void *shared_place(std::uint64_t address) const;
  std::uint64_t deadline() const;
  bool has_changes() const;
  std::int32_t recover(const Identity &identity, kelp_error *error);
  std::int32_t open_redo(kelp_error *error);
  void keep_commit();
  void keep_image();
  std::int32_t write_image(kelp_error *error);
  void forget_marks();

  void save(const void *address, std::size_t length) override;
  void mark(const void *address, std::size_t length) override;
  void note_change(const void *block, bool goes) override;
  void commit_changes();
  bool back(std::uint64_t spans) override;
  bool back_again(std::uint64_t first, std::uint64_t spans) override;
  void provide_pages(std::uint64_t first, std::uint64_t spans) override;

  std::string path_;
  Options options_;
  File file_;
  Gate gate_;
  Journal journal_;
  Redo redo_;
  bool redo_broken_ = false;
  std::uint64_t next_image_ = 0;       // when the log is that long
  std::vector<bool> is_marked_;        // by page: changed by this transaction
  std::vector<std::uint64_t> marked_;  // and where they are
  Heap heap_;
  std::byte *base_ = nullptr;
  std::uint64_t reserved_ = 0;
  Header *header_ = nullptr;
  std::byte *types_ = nullptr;  // the types area as it stands in the file
  pid_t pid_ = 0;
  std::uint64_t device_ = 0;
  std::uint64_t file_number_ = 0;

  bool writing_ = false;
  bool private_now_ = false;  // the transaction cannot be saved, and no longer reaches the file
  // As they were when the transaction began: of the journal, allocations and spans.
  std::uint64_t begun_length_ = 0;
  std::uint64_t begun_allocations_ = 0;
  std::uint64_t begun_spans_ = 0;
  std::uint64_t committed_ = 0;
  std::uint64_t noted_ = 0;  // changes of the transaction, in the log of changes
  bool announced_ = false;
  std::bitset<kTypesBytes / kPageBytes> types_pages_;  // changed by this transaction
  std::atomic<bool> types_private_{false};  // pages of the private mapping are this process's own
  std::atomic<bool> types_drifted_{false};  // and hold what readers counted
  std::atomic<std::uint64_t> types_seen_{0};
  std::atomic<bool> damaged_{false};
  kelp_error failure_ = {};
  std::function<void()> after_rollback_;
  std::mutex mending_;
  std::mutex places_;  // within the process
};

}  // namespace kelp::store
