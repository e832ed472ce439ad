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

  // Enters what changed since the last step: each count by its place among those looked at, but for
  // that of allocations where work inline may need fewer.
  enum class Allocations { counted, any };
  void step(const std::string &name, Allocations allocations = Allocations::counted) {
    const std::vector<std::uint64_t> now = look();
    std::string line = name;
    for (std::size_t at = 0; at < now.size(); ++at) {
      if (now[at] == last_[at]) continue;
      if (at == allocations_at && allocations == Allocations::any) continue;
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
  // Where the number of allocations stands among the counts.
  static constexpr std::size_t allocations_at = KELP_WRITE_RANGE + 3;

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
  {
    const Object embedded(handle, type);
    account.step("create another");
    call<void>(of(type, "set_instance_embedded"), handle, 0u, embedded.get());
    account.step("embed");
    account.add("embedded", embedded.get(), harbor::model::object_size(type));
  }
  account.step("destroy another");
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
  // Room for all of it, for none, and for parts that end within a line, a tag or a value. What
  // stands behind what was written is looked at too.
  const auto rendered = [&](std::string_view form, std::uint32_t room) {
    std::string text(room + 8, '\x7F');
    std::uint32_t err = 0;
    const std::uint32_t written =
        form == "print" ? call<std::uint32_t>(of(type, "print"), handle, 0u, text.data(), 3u, "x",
                                              object, room, &err)
                        : call<std::uint32_t>(of(type, "to_xml"), handle, 0u, "x", text.data(),
                                              object, room, 0u, &err);
    account.step(std::string(form) + " " + std::to_string(room) + " " + std::to_string(written) +
                 " " + std::to_string(err) + " " + std::to_string(std::hash<std::string>{}(text)));
    text.resize(written);
    return text;
  };
  constexpr std::uint32_t all = 100000;
  for (const std::string_view form : {"print", "to_xml"}) {
    const std::string whole = rendered(form, all);
    account.lines.push_back(whole);
    const auto length = static_cast<std::uint32_t>(whole.size());
    for (std::uint32_t part = 0; part < 24; ++part) rendered(form, length * part / 24);
    for (std::uint32_t less = 0; less <= std::min(24u, length); ++less)
      rendered(form, length - less);
    for (std::uint32_t more = 1; more < 90; more += 3) rendered(form, length + more);
  }
  const std::string text = rendered("to_xml", all);
  std::uint32_t err = 0;
  {
    const encodings::Object<> copy(store, type);
    encodings::read(store, copy, text, &err);
    account.step("from xml " + std::to_string(err), Account::Allocations::any);
    account.lines.push_back(
        "equal " + std::to_string(call<std::int32_t>(of(type, "compare"), object, copy.get())));
    // Once more over what it has now, but for arms, which are left to the caller then; and arrays
    // whose last element is no number.
    if (text.find("<auth_type_selection-") == std::string::npos) {
      encodings::read(store, copy, text, &err);
      account.step("from xml again " + std::to_string(err), Account::Allocations::any);
    }
    for (const Field *field : type.fields) {
      const std::size_t end = text.rfind("</" + std::string(field->name) + ">");
      if (field->kind != Kind::array || end == std::string::npos) continue;
      const encodings::Object<> broken(store, type);
      err = 0;
      encodings::read(store, broken, std::string(text).insert(end, "z"), &err);
      account.step("from xml broken " + std::to_string(err), Account::Allocations::any);
      const Field &counter = harbor::model::counter_of(type, *field);
      account.add("count", static_cast<char *>(broken.get()) + harbor::model::offset(type, counter),
                  sizeof(std::uint32_t));
    }
  }
  // The end of one below its type's highest variant is counted where it stands.
  if (round != 0) static_cast<kelp_object_header *>(object)->variant = 0;
  destroy(handle, std::string(type.name), object);
  account.step("destroy");
}

// Documents that differ from text, whose root is x, in one element each: it is not there, stands at
// the front or comes again there with another content, is no value, holds a comment, a section or
// an element, or has one beside it that is no field.
std::vector<std::string> edited(const std::string &text) {
  const std::size_t inside = std::string("<x>").size();
  std::vector<std::size_t> elements;
  for (std::size_t at = inside; (at = text.find('<', at)) != std::string::npos; ++at) {
    if (text[at + 1] != '/') elements.push_back(at);
  }
  constexpr std::size_t most = 28;
  std::vector<std::string> documents;
  const std::size_t count = std::min(most, 7 * elements.size());
  for (std::size_t number = 0; number < count; ++number) {
    const std::size_t begin = elements[number * elements.size() / count];
    const std::size_t content = text.find('>', begin) + 1;
    const bool is_empty = text[content - 2] == '/';
    const std::string name = text.substr(begin + 1, text.find_first_of(" />", begin) - begin - 1);
    const std::string closing = "</" + name + ">";
    const std::size_t end = is_empty ? content : text.find(closing, content) + closing.size();
    const std::string element = text.substr(begin, end - begin);
    std::string document = text;
    switch (number % 7) {
      case 0:
        document.erase(begin, end - begin);
        break;
      case 1:
        document.erase(begin, end - begin).insert(inside, element);
        break;
      case 2:
        document.insert(begin, "<" + name + ">1" + closing);
        break;
      case 3:
        document.replace(begin, end - begin, "<" + name + ">z&lt;" + closing);
        break;
      case 4:
        document.insert(is_empty ? begin : content, "<!-- c --><![CDATA[1]]>");
        break;
      case 5:
        document.replace(begin, end - begin, "<" + name + "><q>1</q>1" + closing);
        break;
      default:
        document.insert(begin, "<q>1</q>");
        break;
    }
    documents.push_back(document);
  }
  return documents;
}

// Objects read from what is no document of the library's own: results, words and what they hold.
void read_edited(harness::Store &store, const Structure &type, bool tracked, Account &account) {
  const encodings::Object<> filled(store, type);
  Distinct(store, 0, tracked, nullptr).fill(filled, type);
  std::uint32_t err = 0;
  const std::string text = encodings::xml_of(store.handle(), filled, &err);
  ASSERT_EQ(err, 0u);
  for (const std::string &document : edited(text)) {
    SCOPED_TRACE(document);
    const encodings::Object<> object(store, type);
    char message[300] = "";
    err = 0;
    encodings::read(store, object, document, &err, message, sizeof message);
    account.step(std::string("edited ") + std::to_string(err) + " " + message,
                 Account::Allocations::any);
    kelp_error error{};
    kelp_handle_last_error(store.handle(), &error);
    account.lines.push_back(error.text);
    err = 0;
    account.lines.push_back(encodings::xml_of(store.handle(), object, &err));
  }
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
    read_edited(store, *type, tracked, account);
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

// Copies of a first object are counted where the type's record says when they are made.
TEST(InlineHooks, CopiesAreCountedInTheEntriesThatTheRecordHasNow) {
  const Structure &type = *harbor::model::structures.front();
  const harness::Store store{{.tracking = KELP_TRACKING_ABSENT}};
  kelp_handle_set_inline(store.handle(), 1);
  kelp_type_record &record = [&]() -> kelp_type_record & {
    const Object first(store.handle(), type);
    return *kelp_get_manifested_type_info(first.get());
  }();
  kelp_variant_info *const own = record.varinfo;
  std::vector<kelp_variant_entry> others(own->entries, own->entries + own->n_variants);
  const kelp_variant_entry before = others.back();
  kelp_variant_entry *const own_entries = std::exchange(own->entries, others.data());
  { const Object counted(store.handle(), type); }
  own->entries = own_entries;
  kelp_variant_info other{own->n_variants, others.data()};
  record.varinfo = &other;
  { const Object counted(store.handle(), type); }
  record.varinfo = own;
  EXPECT_EQ(others.back().create_count, before.create_count + 2);
  EXPECT_EQ(others.back().destroy_count, before.destroy_count + 2);
  EXPECT_EQ(own->entries[own->n_variants - 1].create_count, before.create_count);
}

// What a hook of a program finds as the last error at each write.
kelp_handle *asked = nullptr;
std::vector<std::string> *answers = nullptr;
void ask(void *, const void *, std::size_t, std::uint32_t) {
  kelp_error error{};
  kelp_handle_last_error(asked, &error);
  answers->push_back(error.text);
}

// A document that lacks an element of its type.
struct Incomplete {
  const Structure &type;
  const char *text;
};
const Incomplete interface_without_node_flag{
    harbor::model::types::ospf_interface,
    "<x><network_type><POINT_TO_POINT/></network_type><cost>7</cost>"
    "<multi_area_val><cost>5</cost></multi_area_val><priority>1</priority></x>"};
// Nothing is missing behind what is forgotten with the last error.
const Incomplete neighbor_without_bdr{
    harbor::model::types::ospf_neighbor,
    "<x><neighbor_id>10.0.0.1</neighbor_id><address>10.0.0.2</address><dr>10.0.0.3</dr>"
    "<state><NBR_STATE_DOWN/></state><stats><nbr_event_count>1</nbr_event_count>"
    "<nbr_retrans_qlen>2</nbr_retrans_qlen></stats></x>"};

// It is read in a way; what was asked meanwhile, and the word of the chain behind it.
std::vector<std::string> read_incomplete(const Incomplete &document, Way way, bool hears,
                                         bool in_chain) {
  harness::Store store{{.tracking = KELP_TRACKING_ABSENT}};
  kelp_handle *handle = store.handle();
  const encodings::Object<> object(store, document.type);
  kelp_handle_set_inline(handle, static_cast<std::uint32_t>(way));
  std::vector<std::string> heard;
  asked = handle;
  answers = &heard;
  const auto own = handle->write_notify;
  if (hears) handle->write_notify = ask;
  handle->cr_create = in_chain ? 1 : 0;
  std::uint32_t err = 0;
  encodings::read(store, object, document.text, &err);
  handle->write_notify = own;
  EXPECT_EQ(err, 0u);
  heard.push_back(std::to_string(std::exchange(handle->cr_err, 0)));
  handle->cr_create = 0;
  return heard;
}

TEST(InlineXml, SaysAtOnceWhatIsMissingWhereSomebodyHears) {
  const Incomplete &document = interface_without_node_flag;
  const std::vector<std::string> called = read_incomplete(document, Way::by_calls, true, false);
  EXPECT_EQ(read_incomplete(document, Way::inline_work, true, false), called);
  EXPECT_NE(called.front().find("found no element"), std::string::npos) << called.front();
}

TEST(InlineXml, LeavesTheFirstMissingElementInAChain) {
  for (const Incomplete *document : {&interface_without_node_flag, &neighbor_without_bdr}) {
    for (const bool hears : {false, true}) {
      const auto called = read_incomplete(*document, Way::by_calls, hears, true);
      EXPECT_EQ(called.back(), "2");
      EXPECT_EQ(read_incomplete(*document, Way::inline_work, hears, true), called);
    }
  }
}

// Handles of a process that replaces functions of the runtime make all calls.
TEST(InlineHooks, HandlesMakeCallsWhereFunctionsAreReplaced) {
  kelp_database *database = kelp_database_open_private("calls", nullptr, nullptr);
  kelp_handle *handle = kelp_handle_create(database, nullptr, nullptr);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(handle->quick, nullptr);
  kelp_handle_destroy(handle);
  kelp_database_close(database, nullptr);
}

}  // namespace

}  // namespace whole_schema
