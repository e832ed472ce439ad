// Objects of a store as copies of the first of their type, beside those that the rules make one by
// one: every structure is made, marked as embedded and ended both ways, in a store of its own, and
// all that can be seen of it is the same, also to who opens the file later.
#include <dlfcn.h>
#include <kelp/object.h>

#include <memory>

#include "model/layout.hpp"
#include "model/lists.hpp"
#include "rows.hpp"

namespace store_test {

namespace {

using harbor::model::Structure;

template <typename Result, typename... Arguments>
Result call(const Structure &type, const char *suffix, Arguments... arguments) {
  const std::string name = std::string(type.name) + suffix;
  void *function = dlsym(RTLD_DEFAULT, name.c_str());
  EXPECT_NE(function, nullptr) << name;
  return reinterpret_cast<Result (*)(Arguments...)>(function)(arguments...);
}

// What a process that works in one way shows of a store.
class Account {
 public:
  Account(const std::string &file, std::uint32_t inline_work)
      : rows_(std::make_unique<Rows>(file)), file_(file), inline_(inline_work) {
    kelp_handle_set_inline(rows_->handle, inline_);
  }

  // Three objects of the type, the last of which stays. The first may be what others are copies of.
  void live(const Structure &type) {
    for (int round = 0; round < 3; ++round) {
      void *object = call<void *>(type, "_create", rows_->handle, 0u);
      ASSERT_NE(object, nullptr);
      look("create", type, object);
      if (round == 2) {
        stays_.emplace_back(&type, object);
      } else {
        call<void>(type, "_destroy", rows_->handle, 0u, object);
        look("destroy", type, nullptr);
      }
    }
  }
  // What stays and what is in it, for others to be part of.
  void mark() {
    for (const auto &[type, object] : stays_) {
      call<void>(*type, "_set_instance_embedded", rows_->handle, 0u, object);
      look("mark", *type, object);
    }
  }
  void look_at_what_stays() {
    for (const auto &[type, object] : stays_) look("stays", *type, object);
  }
  void lock() { ASSERT_EQ(rows_->lock_write(), 0) << rows_->error.text; }
  void undo() {
    ASSERT_EQ(rows_->rollback(), 0) << rows_->error.text;
    ASSERT_EQ(rows_->lock_read(), 0) << rows_->error.text;
    look_at_what_stays();
    commit();
  }
  void commit() { ASSERT_EQ(rows_->unlock(), 0) << rows_->error.text; }
  // As who comes later finds it.
  void reopen() {
    rows_.reset();
    rows_ = std::make_unique<Rows>(file_);
    kelp_handle_set_inline(rows_->handle, inline_);
    add("check " + rows_->check());
    ASSERT_EQ(rows_->lock_read(), 0) << rows_->error.text;
    look_at_types();
    look_at_what_stays();
    commit();
  }

  std::vector<std::string> lines;

 private:
  void add(const std::string &line) { lines.push_back(line); }

  void look(const char *step, const Structure &type, const void *object) {
    std::string line = step + (" " + std::string(type.name));
    for (const std::uint32_t origin : {KELP_WRITE_MODULE, KELP_WRITE_COUNTER}) {
      line += " " + std::to_string(kelp_handle_write_count(rows_->handle, origin));
    }
    const std::size_t words = harbor::model::object_size(type) / sizeof(std::uint64_t);
    for (std::size_t at = 0; object != nullptr && at < words; ++at) {
      line += " " + named(static_cast<const std::uint64_t *>(object)[at]);
    }
    add(line);
    look_at_types();
  }

  // Addresses differ between stores; records lie in a store in the order in which they came.
  std::string named(std::uint64_t word) {
    const auto first = reinterpret_cast<std::uintptr_t>(record(*first_type()));
    constexpr std::uint64_t types_area = std::uint64_t{1} << 20;
    return word - first < types_area ? "record " + std::to_string(word - first)
                                     : std::to_string(word);
  }

  static kelp_type_record *first_type() { return kelp_module_tot_root.first->types[0]; }
  const kelp_type_record *record(kelp_type_record &type) {
    return kelp_type_info_ptr_get(rows_->handle, 0, &type, nullptr);
  }

  void look_at_types() {
    std::string line = "counters";
    for (const kelp_module_node *module = kelp_module_tot_root.first; module != nullptr;
         module = module->next) {
      for (kelp_type_record *const *type = module->types; *type != nullptr; ++type) {
        const kelp_type_record *used = record(**type);
        if (used == *type || used->varinfo == nullptr) continue;
        for (std::int8_t variant = 0; variant < used->varinfo->n_variants; ++variant) {
          const kelp_variant_entry &entry = used->varinfo->entries[variant];
          if (entry.create_count == 0) continue;
          line += " " + std::string(used->type_name) + " " + std::to_string(entry.create_count) +
                  "/" + std::to_string(entry.destroy_count);
        }
      }
    }
    add(line);
  }

  std::vector<std::pair<const Structure *, void *>> stays_;
  std::unique_ptr<Rows> rows_;
  std::string file_;
  std::uint32_t inline_;
};

std::vector<std::string> account_of(std::uint32_t inline_work) {
  const Folder folder;
  Account account(folder.file(), inline_work);
  // The first one enters the types, the second finds them new, the third makes nothing by the
  // rules.
  for (int transaction = 0; transaction < 3; ++transaction) {
    account.lock();
    for (const Structure *type : harbor::model::structures) account.live(*type);
    account.commit();
  }
  account.reopen();
  account.lock();
  account.mark();
  account.undo();
  account.lock();
  for (const Structure *type : harbor::model::structures) account.live(*type);
  account.mark();
  account.commit();
  account.reopen();
  return account.lines;
}

TEST(StoreObjects, AreTheSameAsCopiesOfTheFirst) {
  const std::vector<std::string> called = account_of(0);
  const std::vector<std::string> inlined = account_of(1);
  ASSERT_EQ(called.size(), inlined.size());
  EXPECT_GT(called.size(), 4 * 50u * 12);
  for (std::size_t line = 0; line < called.size(); ++line) {
    ASSERT_EQ(called[line], inlined[line]) << "line " << line;
  }
}

// The types come with the first transaction and go with it, and another one's take their addresses.
TEST(StoreObjects, TypesThatWereUndoneAreNotUsed) {
  const Folder folder;
  EXPECT_EQ(run([&] {
              Rows rows(folder.file());
              const Structure &type = *harbor::model::structures.front();
              rows.lock_write();
              for (int at = 0; at < 2; ++at) call<void *>(type, "_create", rows.handle, 0u);
              rows.rollback();
              rows.lock_write();
              for (int at = 0; at < 2; ++at) call<void *>(type, "_create", rows.handle, 0u);
              const kelp_type_record *own = kelp_module_tot_root.first->types[0];
              return kelp_type_info_ptr_get(rows.handle, 0, const_cast<kelp_type_record *>(own),
                                            nullptr) == own
                         ? 1
                         : rows.unlock();
            }),
            0);
  EXPECT_EQ(verify(folder.file(), {Model{}}), "");
}

}  // namespace

}  // namespace store_test
