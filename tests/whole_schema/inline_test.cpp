// The runtime's small work done inline and by calls: every structure is made, filled, written in
// all its forms, read and ended both ways, and all that can be seen of it is the same: the bytes of
// a new object, what was announced and counted, error words, images, texts and results.
#include <kelp/object.h>

#include "encodings/xml_forms.hpp"
#include "whole_schema/distinct.hpp"

namespace whole_schema {

namespace {

enum class Way : std::uint32_t { by_calls, inline_work };

// What a step made visible, in words.
class Account {
 public:
  explicit Account(kelp_handle *handle) : handle_(handle), last_(look()) {}

  // Enters what changed since the last step: each count by its place among those looked at.
  void step(const std::string &name) {
    const std::vector<std::uint64_t> now = look();
    std::string line = name;
    for (std::size_t at = 0; at < now.size(); ++at) {
      if (now[at] == last_[at]) continue;
      line += " " + std::to_string(at) + ":" + std::to_string(now[at] - last_[at]);
    }
    last_ = now;
    lines.push_back(line);
  }
  void add(const std::string &name, const void *bytes, std::size_t length) {
    lines.push_back(name + " " + std::string(static_cast<const char *>(bytes), length));
  }

  std::vector<std::string> lines;

 private:
  // Writes by origin, the last error, the store's memory, and the counters of every type.
  std::vector<std::uint64_t> look() const {
    std::vector<std::uint64_t> seen;
    for (std::uint32_t origin = KELP_WRITE_MODULE; origin <= KELP_WRITE_RANGE; ++origin) {
      seen.push_back(kelp_handle_write_count(handle_, origin));
    }
    seen.push_back(static_cast<std::uint64_t>(kelp_handle_last_error(handle_, nullptr)));
    kelp_memory_statistics memory{};
    kelp_database_memory(kelp_handle_database(handle_), &memory);
    seen.push_back(memory.live_bytes);
    seen.push_back(memory.total_allocations);
    for (const kelp_module_node *module = kelp_module_tot_root.first; module != nullptr;
         module = module->next) {
      for (kelp_type_record *const *type = module->types; *type != nullptr; ++type) {
        const kelp_variant_info *info = (*type)->varinfo;
        for (std::int8_t variant = 0; info != nullptr && variant < info->n_variants; ++variant) {
          seen.push_back(info->entries[variant].create_count);
          seen.push_back(info->entries[variant].destroy_count);
        }
      }
    }
    return seen;
  }

  kelp_handle *handle_;
  std::vector<std::uint64_t> last_;
};

// One object through its life. What it refers to has no place here: OIDs differ between databases.
void live(harness::Store &store, const Structure &type, std::uint32_t round, bool tracked,
          Account &account) {
  kelp_handle *handle = store.handle();
  account.step("before");
  void *object = create(handle, std::string(type.name));
  ASSERT_NE(object, nullptr);
  account.step("create");
  account.add("bytes", object, harbor::model::object_size(type));
  Distinct distinct(store, round, tracked, nullptr);
  distinct.fill(object, type);
  account.step("fill");

  const auto length = call<std::uint32_t>(of(type, "len"), handle, 0u, object);
  account.step("len " + std::to_string(length));
  // Buffers that are too short and some that are not: what is written of a cut image, its error.
  std::vector<std::uint8_t> image(length + 8);
  const std::uint32_t step = length / 16 + 1;
  for (std::uint32_t room = 0; room <= length + 2; room += room + 8 > length ? 1 : step) {
    std::fill(image.begin(), image.end(), std::uint8_t{0xEE});
    std::uint32_t err = 0;
    const auto written =
        call<std::uint32_t>(of(type, "marshal"), handle, 0u, image.data(), object, room, &err);
    account.step("marshal " + std::to_string(room) + " " + std::to_string(written) + " " +
                 std::to_string(err));
    account.add("image", image.data(), std::min<std::size_t>(image.size(), room + 4));
  }
  for (std::uint32_t room = length + 2; room + 10 > length && room > 0; room -= 3) {
    const Object copy(handle, type);
    std::uint32_t err = 0;
    const auto used = call<std::uint32_t>(of(type, "unmarshal"), handle, 0u, image.data(),
                                          copy.get(), room, std::uint32_t{0}, &err);
    account.step("unmarshal " + std::to_string(used) + " " + std::to_string(err));
    account.lines.push_back(
        "equal " + std::to_string(call<std::int32_t>(of(type, "compare"), object, copy.get())));
  }
  std::string text(128 * 1024, ' ');
  std::uint32_t err = 0;
  account.lines.push_back(
      "print " + text.substr(0, call<std::uint32_t>(of(type, "print"), handle, 0u, text.data(), 2u,
                                                    "x", object, 100000u, &err)));
  text.resize(call<std::uint32_t>(of(type, "to_xml"), handle, 0u, "x", text.data(), object, 100000u,
                                  0u, &err));
  account.step("xml " + std::to_string(err) + text);
  {
    const encodings::Object<> copy(store, type);
    encodings::read(store, copy, text, &err);
    account.step("from xml " + std::to_string(err));
  }
  // The end of one below its type's highest variant is counted where it stands.
  if (round != 0) static_cast<kelp_object_header *>(object)->variant = 0;
  destroy(handle, std::string(type.name), object);
  account.step("destroy");
}

std::vector<std::string> account_of(const Case &way_of_handle, Way way) {
  std::vector<std::string> lines;
  for (const Structure *type : harbor::model::structures) {
    SCOPED_TRACE(std::string(type->name));
    harness::Store store{{.tracking = way_of_handle.tracking}};
    if (way_of_handle.variant == 0) set_all_variants(store, 0);
    kelp_handle_set_inline(store.handle(), static_cast<std::uint32_t>(way));
    // The first of its type is what others are copies of.
    const bool tracked = way_of_handle.tracking == KELP_TRACKING_ON;
    Account account(store.handle());
    for (std::uint32_t round = 0; round < 2; ++round) live(store, *type, round, tracked, account);
    std::uint32_t err = 0;
    EXPECT_EQ(store.err, err);
    lines.insert(lines.end(), account.lines.begin(), account.lines.end());
  }
  return lines;
}

class InlineWork : public testing::TestWithParam<Case> {};

TEST_P(InlineWork, ShowsWhatCallsShow) {
  const std::vector<std::string> called = account_of(GetParam(), Way::by_calls);
  const std::vector<std::string> inlined = account_of(GetParam(), Way::inline_work);
  ASSERT_EQ(called.size(), inlined.size());
  EXPECT_GT(called.size(), 52u * 100);
  for (std::size_t line = 0; line < called.size(); ++line) {
    ASSERT_EQ(called[line], inlined[line]) << "line " << line;
  }
}

INSTANTIATE_TEST_SUITE_P(Handles, InlineWork,
                         testing::Values(Case{KELP_TRACKING_ABSENT, 1}, Case{KELP_TRACKING_OFF, 1},
                                         Case{KELP_TRACKING_ABSENT, 0}, Case{KELP_TRACKING_ON, 1}),
                         name_of_case);

std::size_t heard = 0;
void hear(void *, const void *, std::size_t, std::uint32_t) { ++heard; }

// A process may put one hook of its own into a handle and leave the other.
TEST(InlineHooks, EachHearsThoughTheOtherIsTheRuntimes) {
  const Structure &type = *harbor::model::structures.front();
  const harness::Store store{{.tracking = KELP_TRACKING_ABSENT}};
  kelp_handle *handle = store.handle();
  const auto heard_by = [&](Way way) {
    kelp_handle_set_inline(handle, static_cast<std::uint32_t>(way));
    heard = 0;
    const Object object(handle, type);
    return heard;
  };
  heard_by(Way::inline_work);  // the others are copies of the first
  for (const auto hook : {&kelp_handle::write_notify, &kelp_handle::counter_notify}) {
    const auto own = std::exchange(handle->*hook, hear);
    const std::size_t called = heard_by(Way::by_calls);
    EXPECT_GT(called, 0u);
    EXPECT_EQ(heard_by(Way::inline_work), called);
    handle->*hook = own;
  }
}

}  // namespace

}  // namespace whole_schema
