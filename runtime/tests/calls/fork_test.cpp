// A child that was forked while other threads were inside the runtime: everything works in it, or
// is refused, and nothing hangs.
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <thread>

#include "kelp/trace.h"
#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;
using kelp_test::Object;

class ForkTest : public DatabaseTest {
 protected:
  // The status of a child that does this; 142 when it hangs.
  template <typename Work>
  int in_child(const Work &work) {
    const pid_t child = fork();
    if (child == 0) {
      alarm(20);
      std::_Exit(work());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

  // All that takes a lock of the runtime; the number of what fails, 0 for nothing.
  int use_everything() {
    void *small = allocate(100);
    void *large = allocate(100000);
    if (small == nullptr || large == nullptr) return 1;
    release(small);
    release(large);
    if (kelp_lock_write(handle, nullptr) != 0) return 2;
    if (kelp_unlock(handle, nullptr) != 0) return 3;
    kelp_handle *own = kelp_handle_create(database, nullptr, nullptr);
    if (own == nullptr) return 4;
    kelp_handle_destroy(own);
    auto *object = make<Object>();
    kelp_handle_to_oid(handle, 0, object, KELP_OID_KIND_OBJECT, 0, &err);
    release(object);
    if (err != 0) return 5;
    lumen_set_key(handle->obj_pool, "key", nullptr);
    kelp_collector_run(handle, nullptr, nullptr);
    if (kelp_database_current() != database) return 6;
    static const std::uint8_t source[16] = {};
    __XLf_0(source, 1, 0, 0x3000000);
    if (kelp_trace_read_ring(nullptr, nullptr) == 0) return 7;
    kelp_database *another = kelp_database_open_private("another", nullptr, nullptr);
    if (another == nullptr || kelp_database_close(another, nullptr) != 0) return 8;
    return 0;
  }
};

TEST_F(ForkTest, ChildOfABusyProcessUsesEverything) {
  std::atomic<bool> ended = false;
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) {
    threads.emplace_back([&] {
      kelp_handle *own = kelp_handle_create(database, nullptr, nullptr);
      static const std::uint8_t source[16] = {};
      while (!ended) {
        void *block = own->obj_alloc(own->obj_pool, 0, 64);
        std::memset(block, 0, 64);
        std::uint32_t word = 0;
        kelp_handle_to_oid(own, 0, block, KELP_OID_KIND_OBJECT, 0, &word);
        own->obj_free(own->obj_pool, 0, block);
        kelp_lock_read(own, nullptr);
        __XLf_0(source, 1, 0, 0x3000000);
        kelp_unlock(own, nullptr);
        lumen_get_key(own->obj_pool, "key");
      }
      kelp_handle_destroy(own);
    });
  }
  for (int i = 0; i < 100; ++i) {
    const int status = in_child([&] { return use_everything(); });
    EXPECT_EQ(status, 0);
    if (status != 0) break;
  }
  ended = true;
  for (std::thread &thread : threads) thread.join();
  EXPECT_EQ(use_everything(), 0);
}

TEST_F(ForkTest, ReadersOfOtherThreadsAreNotInTheChild) {
  std::atomic<int> step = 0;
  std::thread reader([&] {
    kelp_handle *own = kelp_handle_create(database, nullptr, nullptr);
    kelp_lock_read(own, nullptr);
    step = 1;
    while (step != 2) std::this_thread::yield();
    kelp_handle_destroy(own);
  });
  while (step != 1) std::this_thread::yield();
  EXPECT_EQ(in_child([&] { return use_everything(); }), 0);
  step = 2;
  reader.join();
}

TEST_F(ForkTest, DatabaseThatWasBeingWrittenIsRefusedInTheChild) {
  std::atomic<int> step = 0;
  std::thread writer([&] {
    kelp_handle *own = kelp_handle_create(database, nullptr, nullptr);
    kelp_lock_write(own, nullptr);
    step = 1;
    while (step != 2) std::this_thread::yield();
    kelp_handle_destroy(own);
  });
  while (step != 1) std::this_thread::yield();
  EXPECT_EQ(in_child([&] {
              kelp_error error;
              if (kelp_lock_read(handle, &error) != KELP_ERR_PERMISSION) return 1;
              return std::string(error.text) ==
                             "kelp_lock_read: database 'test': another thread was writing when "
                             "this process was forked, and may have changed it half; open a "
                             "database of this process"
                         ? 0
                         : 2;
            }),
            0);
  step = 2;
  writer.join();
  EXPECT_EQ(use_everything(), 0);
}

TEST_F(ForkTest, LockOfTheForkingThreadIsItsOwnInTheChild) {
  ASSERT_EQ(kelp_lock_write(handle, nullptr), 0);
  EXPECT_EQ(in_child([&] { return kelp_unlock(handle, nullptr) != 0 ? 1 : use_everything(); }), 0);
  ASSERT_EQ(kelp_unlock(handle, nullptr), 0);
}

TEST_F(ForkTest, OidsOfParentAndChildDiffer) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  auto *object = make<Object>();
  EXPECT_EQ(in_child([&] {
              const kelp_oid oid =
                  kelp_handle_to_oid(handle, 0, object, KELP_OID_KIND_OBJECT, 0, &err);
              return write(ends[1], &oid, sizeof oid) == sizeof oid ? 0 : 1;
            }),
            0);
  kelp_oid of_child;
  ASSERT_EQ(read(ends[0], &of_child, sizeof of_child), static_cast<ssize_t>(sizeof of_child));
  const kelp_oid own = kelp_handle_to_oid(handle, 0, object, KELP_OID_KIND_OBJECT, 0, &err);
  EXPECT_NE(std::memcmp(own.id, of_child.id, sizeof own.id), 0);
  close(ends[0]);
  close(ends[1]);
  release(object);
}

}  // namespace

// In the child, what knows its owner by a number of the parent's thread is made anew, which
// ThreadSanitizer does not see: it takes the mutex for one that is still held.
extern "C" const char *__tsan_default_suppressions();
extern "C" const char *__tsan_default_suppressions() { return "deadlock:use_everything\n"; }
