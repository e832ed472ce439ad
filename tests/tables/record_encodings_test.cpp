// The text, XML and marshalled forms of records and the image of their keys: bytes, results, what
// is written and what stays on each failure.
#include <kelp/wire.h>

#include <array>

#include "encodings/xml_forms.hpp"
#include "tables/table_fixture.hpp"

namespace {

using encodings::Bytes;
using encodings::Document;
using encodings::field;
using encodings::Filler;
using encodings::header;
using harbor::model::Field;
using harbor::model::Kind;
using harbor::model::Structure;
using harbor::model::Table;
using harness::CallLog;
using harness::Failing;
using harness::Store;
using harness::TraceLog;
using harness::WriteWatch;
namespace tables = harbor::model::tables;
namespace types = harbor::model::types;

using Writer = std::uint32_t(kelp_handle *, std::uint32_t, void *, const void *, std::int32_t,
                             std::uint32_t *);
using WriterCr = std::uint32_t(kelp_handle *, const void *, void *, std::int32_t);
using Reader = std::uint32_t(kelp_handle *, std::uint32_t, void **, const void *, std::int32_t,
                             std::uint32_t, std::uint32_t *);
using KeyReader = std::uint32_t(kelp_handle *, std::uint32_t, void **, const void *, std::int32_t,
                                std::uint32_t *);
using XmlReader = void *(kelp_handle *, std::uint32_t, kelp_xml_document *, std::uint32_t *, char *,
                         std::int32_t);
using Length = std::uint32_t(kelp_handle *, std::uint32_t, const void *);
using LengthCr = std::uint32_t(kelp_handle *, const void *);

constexpr std::uint32_t failed = 0xFFFFFFFF;
constexpr std::uint32_t header_length = 27;
constexpr std::uint32_t objects_at = 43;
constexpr std::uint8_t untouched = 0xEE;

const std::array<std::string, 2> twins{"", "_unsafe"};
const std::array<std::uint32_t, 3> trackings{KELP_TRACKING_ABSENT, KELP_TRACKING_OFF,
                                             KELP_TRACKING_ON};

std::string name_of(const Table &table) { return "tbl_" + std::string(table.name); }

// A table's function by the rest of its name.
template <typename Function>
Function *function(const Table &table, const std::string &rest) {
  return harness::function<Function>(name_of(table) + "_" + rest);
}

// The structures of a record's objects in their order.
std::vector<const Structure *> structures_of(const Table &table) {
  if (table.key_structure != nullptr) return {table.key_structure, table.record};
  return {table.record};
}

// Index of a table's first message, and where in its block the forms of the encodings stand.
std::uint32_t message_base(const Table &table) {
  std::uint32_t base = 0;
  for (const Table *other : harbor::model::all_tables) {
    if (other == &table) break;
    base += other->key_structure != nullptr ? 68 : 65;
  }
  return base;
}

// A record in no table that ends with its scope.
class Record {
 public:
  enum class Objects { created, none };

  Record(Store &store, const Table &table, Objects objects = Objects::created)
      : store_(store), table_(table) {
    using Create = void *(kelp_handle *, std::uint32_t, std::uint32_t *);
    std::uint32_t word = 0;
    record_ = function<Create>(table, "create_record")(store, 0, &word);
    EXPECT_NE(record_, nullptr);
    if (objects == Objects::none) return;
    std::size_t at = 0;
    for (const Structure *structure : structures_of(table)) {
      using CreateObject = void *(kelp_handle *, std::uint32_t);
      slot(at++) =
          harness::function<CreateObject>(std::string(structure->name) + "_create")(store, 0);
    }
  }
  // What a reader made.
  Record(Store &store, const Table &table, void *made)
      : store_(store), table_(table), record_(made) {}
  ~Record() {
    if (record_ == nullptr) return;
    using Destroy = void(kelp_handle *, std::uint32_t, void *, std::uint32_t *);
    std::uint32_t word = 0;
    function<Destroy>(table_, "destroy_record")(store_, 0, record_, &word);
    EXPECT_EQ(word, 0u);
  }
  Record(const Record &) = delete;
  Record &operator=(const Record &) = delete;

  operator void *() const { return record_; }
  kelp_record &shell() const { return *static_cast<kelp_record *>(record_); }
  void *&slot(std::size_t at) const { return shell().objects[at]; }
  void destroy_object(std::size_t at) {
    using Destroy = void(kelp_handle *, std::uint32_t, void *);
    const std::string type(structures_of(table_)[at]->name);
    harness::function<Destroy>(type + "_destroy")(store_, 0, slot(at));
    slot(at) = nullptr;
  }

  // A fresh interface selects an arm that is not there, which has no image; no arm at all has one.
  void complete() const {
    if (table_.record != &types::ospf_interface) return;
    void *choice = &field<std::uint8_t>(slot(0), types::ospf_interface, "authentication_val");
    std::uint8_t *selector =
        &field<std::uint8_t>(choice, types::ospf_authentication, "auth_type_selection");
    *reinterpret_cast<std::uint32_t *>(selector + harbor::model::enumeration_value_offset) = 4;
  }

  // Random contents that refer to no table.
  void fill(std::uint32_t seed) {
    Filler filler(store_, seed);
    std::size_t at = 0;
    for (const Structure *structure : structures_of(table_)) {
      void *object = slot(at++);
      filler.fill(object, *structure);
      for (const Field *row : structure->fields) {
        if (row->kind != Kind::reference) continue;
        field<kelp_reference>(object, *structure, row->name.data()).oid = kelp_oid{};
      }
    }
  }

  template <typename Function>
  Function *call(const std::string &rest) const {
    return function<Function>(table_, rest);
  }
  std::uint32_t len(const std::string &twin = "") const {
    return call<Length>("table_record_len" + twin)(store_, 0, record_);
  }
  std::uint32_t key_len(const std::string &twin = "") const {
    return call<Length>("table_pkey_len" + twin)(store_, 0, record_);
  }

 private:
  Store &store_;
  const Table &table_;
  void *record_ = nullptr;
};

// A buffer that shows where it was written, with room behind the length that writers are told.
struct Buffer {
  static constexpr std::size_t slack = 16;
  explicit Buffer(std::int64_t length, std::uint8_t filling = untouched)
      : bytes(static_cast<std::size_t>(length < 0 ? 0 : length) + slack, filling) {}
  void *data() { return bytes.data(); }
  bool is_untouched_from(std::size_t start) const {
    for (std::size_t at = start; at < bytes.size(); ++at) {
      if (bytes[at] != untouched) return false;
    }
    return true;
  }
  bool is_zero(std::size_t length) const {
    for (std::size_t at = 0; at < length; ++at) {
      if (bytes[at] != 0) return false;
    }
    return true;
  }
  Bytes first(std::size_t length) const { return Bytes(bytes.begin(), bytes.begin() + length); }
  std::string text(std::size_t length) const {
    return std::string(bytes.begin(), bytes.begin() + length);
  }
  Bytes bytes;
};

// An image in a buffer with ample room; the test's error word must stay 0.
Bytes image_of(Store &store, const Record &record, const std::string &twin = "") {
  constexpr std::int32_t ample = 64 * 1024;
  Buffer buffer(ample);
  const std::uint32_t length = record.call<Writer>("table_record_marshal" + twin)(
      store, 0, buffer.data(), record, ample, &store.err);
  EXPECT_EQ(store.err, 0u);
  return buffer.first(length);
}

Bytes key_image_of(Store &store, const Record &record, const std::string &twin = "") {
  const auto length = static_cast<std::int32_t>(record.key_len(twin));
  Buffer buffer(length);
  const std::uint32_t written = record.call<Writer>("table_pkey_marshal" + twin)(
      store, 0, buffer.data(), record, length, &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_TRUE(buffer.is_untouched_from(written));
  return buffer.first(written);
}

std::string rendered(Store &store, const Record &record, const std::string &rest,
                     std::int32_t length = 4096) {
  Buffer buffer(length, '#');
  return buffer.text(
      record.call<Writer>(rest)(store, 0, buffer.data(), record, length, &store.err));
}

void set_area_id(const Record &record, std::uint32_t area_id) {
  field<std::uint32_t>(record.slot(0), types::ospf_area, "area_id") = area_id;
}

void set_link(const Record &record, std::uint32_t id, std::uint32_t data, std::uint8_t type) {
  field<std::uint32_t>(record.slot(0), types::ospfv2_link_key, "link_id") = id;
  field<std::uint32_t>(record.slot(0), types::ospfv2_link_key, "link_data") = data;
  field<std::uint8_t>(record.slot(1), types::ospfv2_link, "type") = type;
}

std::uint32_t read_into(Store &store, const Table &table, void **record, const Bytes &image,
                        std::uint32_t reuse, const std::string &twin = "") {
  return function<Reader>(table, "table_record_unmarshal" + twin)(
      store, 0, record, image.data(), static_cast<std::int32_t>(image.size()), reuse, &store.err);
}

// --- the image of a record ---------------------------------------------------------------------

TEST(RecordEncodings, AnImageIsTheHeaderTheLuidAndTheObject) {
  Store store;
  store.handle()->peer_stamp = 0x11223344;
  const Record record(store, tables::ospf_area);
  set_area_id(record, 10);
  Bytes expected = from_hex(
      "bc ffffffffffff 00 11223344 00000085 0000000000000000000000"
      "82c5347ad65f8377a99c123367eb25f8"
      "01 00 00000058 0000000a");
  expected.resize(expected.size() + 2 * KELP_WIRE_OID_SIZE, 0);
  EXPECT_EQ(image_of(store, record), expected);
  EXPECT_EQ(record.len(), 0x85u);
}

TEST(RecordEncodings, ACompositeRecordIsItsKeyObjectAndThenItsDataObject) {
  Store store;
  store.handle()->peer_stamp = 7;
  const Record record(store, tables::ospfv2_link);
  set_link(record, 0x01020304, 0x05060708, 3);
  Bytes expected = from_hex(
      "bc ffffffffffff 00 00000007 00000068 0000000000000000000000"
      "9b116ff239107f1283c534a0e8c7177e"
      "00 00 0000000c 01020304 05060708"
      "00 00 0000002d 03");
  expected.resize(expected.size() + KELP_WIRE_OID_SIZE, 0);
  EXPECT_EQ(image_of(store, record), expected);
  EXPECT_EQ(record.len(), 0x68u);
}

TEST(RecordEncodings, TheHeaderTellsWhetherTheFirstObjectsImageCarriesState) {
  for (const std::uint32_t tracking : trackings) {
    for (const Table *table : {&tables::ospf_area, &tables::ospfv2_link}) {
      Store store({.tracking = tracking});
      const Record record(store, *table);
      const Bytes image = image_of(store, record);
      const bool is_tracked = tracking == KELP_TRACKING_ON;
      EXPECT_EQ(image[7], is_tracked ? 1 : 0);
      EXPECT_EQ(image[objects_at + 1] & OBJ_STATE_TRACKED, is_tracked ? OBJ_STATE_TRACKED : 0);
    }
  }
}

TEST(RecordEncodings, EachTableWritesItsOwnLuidAndTheTotalLength) {
  Store store;
  for (const Table *table : harbor::model::all_tables) {
    const Record record(store, *table);
    record.complete();
    const Bytes image = image_of(store, record);
    ASSERT_GT(image.size(), objects_at) << table->name;
    EXPECT_EQ(Bytes(image.begin() + header_length, image.begin() + objects_at),
              from_hex(std::string(table->luid)))
        << table->name;
    EXPECT_EQ(image[12] << 24 | image[13] << 16 | image[14] << 8 | image[15],
              static_cast<int>(image.size()))
        << table->name;
  }
}

TEST(RecordEncodings, TheHeaderIsWrittenLast) {
  Store store;
  const Record record(store, tables::ospf_area);
  const CallLog log;
  image_of(store, record);
  EXPECT_EQ(
      log.only({"u_int32_marshal", "kelplib_oid_marshal",
                "kelplib_type_header_get_state_tracking_flag", "_kelp_message_header_marshal"}),
      (std::vector<std::string>{"u_int32_marshal", "kelplib_oid_marshal", "kelplib_oid_marshal",
                                "kelplib_type_header_get_state_tracking_flag",
                                "_kelp_message_header_marshal"}));
}

TEST(RecordEncodings, ALengthBelow27Is90AndWritesNothing) {
  Store store;
  const Record record(store, tables::ospf_area);
  for (const std::int32_t length : {-1, 0, 1, 26}) {
    Buffer buffer(26);
    std::uint32_t err = 0;
    const CallLog log;
    EXPECT_EQ(
        record.call<Writer>("table_record_marshal")(store, 0, buffer.data(), record, length, &err),
        0u);
    EXPECT_EQ(err, KELP_ERR_NO_ROOM);
    EXPECT_EQ(store.last_error(), KELP_ERR_NO_ROOM);
    EXPECT_EQ(log.count("kelp_store_err"), 1u);
    EXPECT_TRUE(buffer.is_untouched_from(0)) << length;
  }
}

TEST(RecordEncodings, ALengthOf27To42Is90WithTheHeaderBytesZeroed) {
  Store store;
  for (const Table *table : {&tables::ospf_area, &tables::ospfv2_link}) {
    const Record record(store, *table);
    for (std::int32_t length = 27; length <= 42; ++length) {
      Buffer buffer(length);
      std::uint32_t err = 0;
      EXPECT_EQ(record.call<Writer>("table_record_marshal")(store, 0, buffer.data(), record, length,
                                                            &err),
                header_length);
      EXPECT_EQ(err, KELP_ERR_NO_ROOM);
      EXPECT_EQ(store.last_error(), KELP_ERR_NO_ROOM);
      EXPECT_TRUE(buffer.is_zero(header_length)) << length;
      EXPECT_TRUE(buffer.is_untouched_from(header_length)) << length;
    }
  }
}

TEST(RecordEncodings, ALengthOf43HoldsTheLuidAndGivesTheObjects12) {
  Store store;
  const Record record(store, tables::ospf_area);
  Buffer buffer(43);
  EXPECT_EQ(
      record.call<Writer>("table_record_marshal")(store, 0, buffer.data(), record, 43, &store.err),
      objects_at);
  store.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_TRUE(buffer.is_zero(header_length));
  EXPECT_EQ(std::memcmp(buffer.bytes.data() + header_length, table_tbl_ospf_area_luid, 16), 0);
  EXPECT_TRUE(buffer.is_untouched_from(objects_at));
}

TEST(RecordEncodings, ARoomThatTheObjectDoesNotFitInIs90AndLeavesTheHeaderZero) {
  Store store;
  const Record record(store, tables::ospf_area);
  const auto whole = static_cast<std::int32_t>(record.len());
  for (std::int32_t length = 44; length < whole; ++length) {
    Buffer buffer(length);
    std::uint32_t err = 0;
    const CallLog log;
    record.call<Writer>("table_record_marshal")(store, 0, buffer.data(), record, length, &err);
    EXPECT_EQ(err, KELP_ERR_NO_ROOM) << length;
    EXPECT_TRUE(buffer.is_zero(header_length)) << length;
    EXPECT_EQ(log.count("_kelp_message_header_marshal"), 0u) << length;
  }
}

TEST(RecordEncodings, ARecordWithoutItsFirstObjectMarshalsTo2WithItsMessage) {
  Store store;
  for (const Table *table : harbor::model::all_tables) {
    for (const std::string &twin : twins) {
      const Record record(store, *table, Record::Objects::none);
      Buffer buffer(256);
      TraceLog traced;
      std::uint32_t err = 0;
      EXPECT_EQ(record.call<Writer>("table_record_marshal" + twin)(store, 0, buffer.data(), record,
                                                                   256, &err),
                objects_at);
      EXPECT_EQ(err, KELP_ERR_NOT_FOUND);
      EXPECT_EQ(store.last_error(), KELP_ERR_NOT_FOUND);
      ASSERT_EQ(traced.messages().size(), 1u) << table->name;
      const bool is_composite = table->key_structure != nullptr;
      const Structure &first = is_composite ? *table->key_structure : *table->record;
      const harness::Traced &message = traced.messages()[0];
      EXPECT_EQ(message.text, "Failed to marshal " + name_of(*table) + " record: Field " +
                                  std::string(first.name) + " is empty");
      EXPECT_EQ(message.level, 3u);
      EXPECT_EQ(message.index, message_base(*table) + (is_composite ? 63 : 61));
      EXPECT_TRUE(buffer.is_zero(header_length));
      EXPECT_TRUE(buffer.is_untouched_from(objects_at));
    }
  }
}

TEST(RecordEncodings, AMissingDataObjectGivesTheSecondMessageAndLeavesTheHeaderZero) {
  Store store;
  for (const Table *table : harbor::model::all_tables) {
    if (table->key_structure == nullptr) continue;
    Record record(store, *table);
    record.destroy_object(1);
    Buffer buffer(256);
    TraceLog traced;
    std::uint32_t err = 0;
    const std::uint32_t key_length = record.key_len();
    EXPECT_EQ(
        record.call<Writer>("table_record_marshal")(store, 0, buffer.data(), record, 256, &err),
        objects_at + key_length);
    EXPECT_EQ(err, KELP_ERR_NOT_FOUND);
    EXPECT_EQ(store.last_error(), KELP_ERR_NOT_FOUND);
    ASSERT_EQ(traced.messages().size(), 1u) << table->name;
    const harness::Traced &message = traced.messages()[0];
    EXPECT_EQ(message.text, "Failed to marshal " + name_of(*table) + " record: Field " +
                                std::string(table->record->name) + " is empty");
    EXPECT_EQ(message.level, 3u);
    EXPECT_EQ(message.index, message_base(*table) + 64);
    EXPECT_TRUE(buffer.is_zero(header_length));
    EXPECT_FALSE(buffer.is_untouched_from(objects_at));
  }
}

TEST(RecordEncodings, AMissingObjectOverridesThe90OfAShortBuffer) {
  Store store;
  const Record record(store, tables::ospf_area, Record::Objects::none);
  Buffer buffer(26);
  EXPECT_EQ(
      record.call<Writer>("table_record_marshal")(store, 0, buffer.data(), record, 26, &store.err),
      0u);
  store.expect_failure(KELP_ERR_NOT_FOUND);
  EXPECT_TRUE(buffer.is_untouched_from(0));
}

TEST(RecordEncodings, TheLengthSufficesForTheImageInEachTable) {
  for (const std::uint32_t tracking : trackings) {
    Store store({.tracking = tracking});
    for (const Table *table : harbor::model::all_tables) {
      const Record record(store, *table);
      record.complete();
      const auto length = static_cast<std::int32_t>(record.len());
      Buffer buffer(length);
      const std::uint32_t written = record.call<Writer>("table_record_marshal")(
          store, 0, buffer.data(), record, length, &store.err);
      EXPECT_EQ(store.err, 0u) << table->name;
      EXPECT_LE(written, static_cast<std::uint32_t>(length)) << table->name;
      EXPECT_TRUE(buffer.is_untouched_from(static_cast<std::size_t>(length))) << table->name;
      EXPECT_EQ(buffer.bytes[0], KELP_MESSAGE_MARKER) << table->name;
    }
  }
}

TEST(RecordEncodings, TheLengthIs43AndThatOfEachObject) {
  Store store;
  for (const Table *table : harbor::model::all_tables) {
    Record record(store, *table);
    record.fill(5);
    std::uint32_t expected = objects_at;
    std::size_t at = 0;
    for (const Structure *structure : structures_of(*table)) {
      expected += harness::function<Length>(std::string(structure->name) + "_len")(
          store, 0, record.slot(at++));
    }
    for (const std::string &twin : twins) EXPECT_EQ(record.len(twin), expected) << table->name;
  }
}

// --- reading an image --------------------------------------------------------------------------

TEST(RecordEncodings, AnImageReadIntoANewRecordAndIntoAnOldOneGivesTheSameImage) {
  for (const std::uint32_t tracking : trackings) {
    Store store({.tracking = tracking});
    for (const Table *table : harbor::model::all_tables) {
      for (std::uint32_t seed = 0; seed < 6; ++seed) {
        const std::string &twin = twins[seed % 2];
        Record record(store, *table);
        record.fill(seed);
        const Bytes image = image_of(store, record, twin);
        // The state byte of a reference is taken only with one more byte behind it.
        Bytes message = image;
        message.push_back(untouched);
        void *made = nullptr;
        EXPECT_EQ(read_into(store, *table, &made, message, 0, twin), image.size());
        ASSERT_EQ(store.err, 0u) << table->name;
        const Record second(store, *table, made);
        EXPECT_EQ(second.shell().src, KELP_SRC_DEFAULT);
        EXPECT_EQ(second.shell().record_table, nullptr);
        EXPECT_EQ(second.shell().ref_word, 1u);
        EXPECT_EQ(image_of(store, second), image) << table->name << " seed " << seed;

        const Record third(store, *table);
        void *held = third;
        void *object = third.slot(0);
        EXPECT_EQ(read_into(store, *table, &held, message, 1, twin), image.size());
        ASSERT_EQ(store.err, 0u) << table->name;
        EXPECT_EQ(held, static_cast<void *>(third));
        EXPECT_EQ(third.slot(0), object);
        EXPECT_EQ(image_of(store, third), image) << table->name << " seed " << seed;
      }
    }
  }
}

TEST(RecordEncodings, AnImageWithAWrongLuidAndHeaderIsReadWithoutComplaint) {
  Store store;
  Record record(store, tables::ospf_area);
  set_area_id(record, 10);
  const Bytes image = image_of(store, record);
  Bytes wrong = image;
  for (std::size_t at = 0; at < objects_at; ++at) wrong[at] ^= 0x5A;
  TraceLog traced;
  void *made = nullptr;
  EXPECT_EQ(read_into(store, tables::ospf_area, &made, wrong, 0), image.size());
  EXPECT_EQ(store.err, 0u);
  EXPECT_TRUE(traced.empty());
  const Record second(store, tables::ospf_area, made);
  EXPECT_EQ(image_of(store, second), image);
}

TEST(RecordEncodings, TheObjectsOfANewRecordAreAnnouncedWhereTheyAreStored) {
  Store store;
  const Record record(store, tables::ospfv2_link);
  const Bytes image = image_of(store, record);
  void *made = nullptr;
  WriteWatch watch(store);
  function<Reader>(tables::ospfv2_link, "table_record_unmarshal")(
      store, 21, &made, image.data(), static_cast<std::int32_t>(image.size()), 0, &store.err);
  const Record second(store, tables::ospfv2_link, made);
  for (const std::size_t at : {0, 1}) {
    std::size_t announced = 0;
    for (const harness::Range &range : watch.writes()) {
      if (range.address != &second.slot(at)) continue;
      EXPECT_EQ(range.length, sizeof(void *));
      EXPECT_EQ(range.space_id, 21u);
      ++announced;
    }
    EXPECT_EQ(announced, 1u);
  }
}

TEST(RecordEncodings, ReadingIntoNoRecordIs2) {
  Store store;
  const Record record(store, tables::ospf_area);
  const Bytes image = image_of(store, record);
  void *held = nullptr;
  TraceLog traced;
  EXPECT_EQ(read_into(store, tables::ospf_area, &held, image, 1), 0u);
  store.expect_failure(KELP_ERR_NOT_FOUND);
  EXPECT_EQ(held, nullptr);
  EXPECT_TRUE(traced.empty());
}

TEST(RecordEncodings, ReadingIntoARecordWithoutItsObjectIs2BehindTheHeader) {
  Store store;
  const Record record(store, tables::ospf_area);
  const Bytes image = image_of(store, record);
  const Record empty(store, tables::ospf_area, Record::Objects::none);
  void *held = empty;
  EXPECT_EQ(read_into(store, tables::ospf_area, &held, image, 1), objects_at);
  store.expect_failure(KELP_ERR_NOT_FOUND);
  EXPECT_EQ(held, static_cast<void *>(empty));
  EXPECT_EQ(empty.slot(0), nullptr);
}

TEST(RecordEncodings, WithoutTheKeyObjectTheDataObjectIsNotReadEither) {
  Store store;
  const Record record(store, tables::ospfv2_link);
  set_link(record, 1, 2, 3);
  const Bytes image = image_of(store, record);
  Record other(store, tables::ospfv2_link);
  other.destroy_object(0);
  void *held = other;
  EXPECT_EQ(read_into(store, tables::ospfv2_link, &held, image, 1), objects_at);
  EXPECT_EQ(store.err, KELP_ERR_NOT_FOUND);
  EXPECT_EQ(field<std::uint8_t>(other.slot(1), types::ospfv2_link, "type"), 0);
}

TEST(RecordEncodings, WithoutMemoryForTheRecordReadingIs12AndLeavesThePointer) {
  Store store;
  const Record record(store, tables::ospf_area);
  const Bytes image = image_of(store, record);
  int place = 0;
  void *held = &place;
  store.fail_allocation(0);
  EXPECT_EQ(read_into(store, tables::ospf_area, &held, image, 0), 0u);
  store.expect_failure(KELP_ERR_NO_MEMORY);
  EXPECT_EQ(held, &place);
}

TEST(RecordEncodings, WithoutMemoryForAnObjectReadingIs12AndTheRecordIsHandedOut) {
  Store store;
  const Record record(store, tables::ospfv2_link);
  set_link(record, 1, 2, 3);
  const Bytes image = image_of(store, record);
  for (const std::uint32_t object : {0u, 1u}) {
    void *held = nullptr;
    store.err = 0;
    store.fail_allocation(1 + object);
    const CallLog log;
    EXPECT_EQ(read_into(store, tables::ospfv2_link, &held, image, 0),
              object == 0 ? objects_at : objects_at + record.key_len());
    EXPECT_EQ(store.err, KELP_ERR_NO_MEMORY);
    EXPECT_EQ(log.count("kelp_store_err"), 1u);
    ASSERT_NE(held, nullptr);
    const Record made(store, tables::ospfv2_link, held);
    EXPECT_EQ(made.slot(object), nullptr);
    EXPECT_NE(made.slot(1 - object), nullptr);
  }
}

TEST(RecordEncodings, ACutImageFailsAndTheRecordIsHandedOutAllTheSame) {
  Store store;
  const Record record(store, tables::ospf_area);
  const Bytes image = image_of(store, record);
  for (std::size_t length = 0; length < image.size(); ++length) {
    void *held = nullptr;
    store.err = 0;
    const std::uint32_t read = function<Reader>(tables::ospf_area, "table_record_unmarshal")(
        store, 0, &held, image.data(), static_cast<std::int32_t>(length), 0, &store.err);
    // An object for which no byte is left behind the LUID is 12.
    const bool has_header = length >= header_length;
    const std::uint32_t expected = has_header && length <= objects_at ? 12 : 90;
    EXPECT_EQ(store.err, expected) << length;
    if (!has_header) {
      EXPECT_EQ(read, 16u) << length;
    }
    ASSERT_NE(held, nullptr) << length;
    const Record made(store, tables::ospf_area, held);
    EXPECT_NE(made.slot(0), nullptr) << length;
  }
}

// --- an error present --------------------------------------------------------------------------

TEST(RecordEncodings, ASetErrorWordIsToldByTheFourThatMarshalAndNothingElseHappens) {
  Store store;
  const std::string text = std::strerror(90);
  for (const Table *table : harbor::model::all_tables) {
    const Record record(store, *table);
    const std::string name = name_of(*table);
    const std::uint32_t base = message_base(*table);
    const bool is_composite = table->key_structure != nullptr;
    for (const std::string &twin : twins) {
      Buffer buffer(256);
      int place = 0;
      void *held = &place;
      std::uint32_t err = KELP_ERR_NO_ROOM;
      kelp_store_err(store, 12);
      TraceLog traced;
      const CallLog log;
      EXPECT_EQ(record.call<Writer>("table_record_marshal" + twin)(store, 0, buffer.data(), record,
                                                                   256, &err),
                0u);
      EXPECT_EQ(record.call<Writer>("table_pkey_marshal" + twin)(store, 0, buffer.data(), record,
                                                                 256, &err),
                0u);
      EXPECT_EQ(record.call<Reader>("table_record_unmarshal" + twin)(store, 0, &held, buffer.data(),
                                                                     256, 0, &err),
                0u);
      EXPECT_EQ(record.call<KeyReader>("table_pkey_unmarshal" + twin)(store, 0, &held,
                                                                      buffer.data(), 256, &err),
                0u);
      EXPECT_EQ(err, KELP_ERR_NO_ROOM);
      EXPECT_EQ(held, &place);
      EXPECT_TRUE(buffer.is_untouched_from(0));
      EXPECT_EQ(log.count("kelp_clear_last_error"), 0u);
      EXPECT_EQ(store.last_error(), KELP_ERR_NO_MEMORY);
      EXPECT_EQ(traced.texts(),
                (std::vector<std::string>{
                    "Error present in call to table marshal: " + text,
                    "Error present in call to table marshal: " + text,
                    "Error present in call to " + name + " unmarshal: " + text,
                    "Error present in call to " + name + " pkey unmarshal: " + text}));
      const std::uint32_t offsets[] = {60u + 2 * is_composite, 62u + 3 * is_composite,
                                       63u + 3 * is_composite, 64u + 3 * is_composite};
      for (std::size_t at = 0; at < traced.messages().size(); ++at) {
        EXPECT_EQ(traced.messages()[at].level, 7u);
        EXPECT_EQ(traced.messages()[at].index, base + offsets[at]) << name;
      }
    }
  }
}

TEST(RecordEncodings, TheFourThatMarshalClearTheLastErrorFirst) {
  Store store;
  const Record record(store, tables::ospf_area);
  const Bytes image = image_of(store, record);
  Buffer buffer(256);
  const auto starts_clean = [&](const auto &run) {
    const CallLog log;
    run();
    EXPECT_EQ(log.calls().front(), "kelp_clear_last_error");
  };
  starts_clean([&] { image_of(store, record); });
  starts_clean([&] {
    record.call<Writer>("table_pkey_marshal")(store, 0, buffer.data(), record, 256, &store.err);
  });
  void *held = record;
  starts_clean([&] { read_into(store, tables::ospf_area, &held, image, 1); });
  starts_clean([&] {
    record.call<KeyReader>("table_pkey_unmarshal")(store, 0, nullptr, image.data(), 4, &store.err);
  });
  EXPECT_EQ(store.err, KELP_ERR_BAD_ADDRESS);
}

// --- the image of a key ------------------------------------------------------------------------

TEST(RecordEncodings, AnIntegerKeyIsTheBareNumber) {
  Store store;
  const Record area(store, tables::ospf_area);
  set_area_id(area, 0x01020304);
  EXPECT_EQ(key_image_of(store, area), from_hex("01020304"));
  const Record tlv(store, tables::ospfv2_unknown_tlv);
  field<std::uint16_t>(tlv.slot(0), types::ospfv2_unknown_tlv, "type") = 0x0102;
  EXPECT_EQ(key_image_of(store, tlv), from_hex("0102"));
}

TEST(RecordEncodings, ATypedKeyIsItsPrimitivesImage) {
  Store store;
  const Record interface(store, tables::ospf_interface);
  store(kelp_vstring_assign, &field<kelp_vstring>(interface.slot(0), types::ospf_interface, "name"),
        "eth0", 4);
  EXPECT_EQ(key_image_of(store, interface), from_hex("00000004 65746830"));
  const Record neighbor(store, tables::ospf_neighbor);
  ip_address address = ip_address_make_ipv4(0x0A000001);
  store(ospf_neighbor_neighbor_id_set, static_cast<ospf_neighbor *>(neighbor.slot(0)), &address);
  EXPECT_EQ(key_image_of(store, neighbor),
            from_hex("04ff 0a000001 000000000000000000000000 00000000"));
  const Record instance(store, tables::ospf_instance);
  store(ospf_instance_af_set_value, static_cast<ospf_instance *>(instance.slot(0)), 1);
  EXPECT_EQ(key_image_of(store, instance), from_hex("00 00000001"));
  EXPECT_EQ(store.err, 0u);
}

TEST(RecordEncodings, ACompositeKeyIsTheWholeImageOfTheKeyObject) {
  Store store;
  const Record record(store, tables::ospfv2_link);
  set_link(record, 0x01020304, 0x05060708, 3);
  EXPECT_EQ(key_image_of(store, record), from_hex("00 00 0000000c 01020304 05060708"));
}

TEST(RecordEncodings, AKeyReadBackIsTheSameKey) {
  for (const std::uint32_t tracking : trackings) {
    Store store({.tracking = tracking});
    for (const Table *table : harbor::model::all_tables) {
      for (const std::string &twin : twins) {
        Record record(store, *table);
        record.fill(11);
        // An ra-data block is not in the length.
        if (table->key_structure != nullptr) header(record.slot(0)).obj_flags &= ~OBJ_RA_DATA;
        const Bytes image = key_image_of(store, record, twin);
        EXPECT_EQ(image.size(), record.key_len()) << table->name;
        void *pkey = nullptr;
        EXPECT_EQ(
            record.call<KeyReader>("table_pkey_unmarshal" + twin)(
                store, 0, &pkey, image.data(), static_cast<std::int32_t>(image.size()), &store.err),
            image.size());
        ASSERT_EQ(store.err, 0u) << table->name;
        ASSERT_NE(pkey, nullptr);
        Record holder(store, *table, Record::Objects::none);
        holder.slot(0) = pkey;
        EXPECT_EQ(key_image_of(store, holder), image) << table->name;
        using Destroy = void(kelp_handle *, std::uint32_t, void *);
        holder.call<Destroy>("pkey_destroy")(store, 0, pkey);
        holder.slot(0) = nullptr;
      }
    }
  }
}

TEST(RecordEncodings, AKeyThatDoesNotFitIs90AndWritesNothing) {
  Store store;
  for (const Table *table : harbor::model::all_tables) {
    const Record record(store, *table);
    const auto needed = static_cast<std::int32_t>(record.key_len());
    for (const std::int32_t length : {-1, 0, needed - 1}) {
      Buffer buffer(needed);
      std::uint32_t err = 0;
      TraceLog traced;
      EXPECT_EQ(
          record.call<Writer>("table_pkey_marshal")(store, 0, buffer.data(), record, length, &err),
          0u);
      EXPECT_EQ(err, KELP_ERR_NO_ROOM) << table->name;
      EXPECT_EQ(store.last_error(), KELP_ERR_NO_ROOM) << table->name;
      EXPECT_TRUE(buffer.is_untouched_from(0)) << table->name;
      EXPECT_TRUE(traced.empty());
    }
  }
}

TEST(RecordEncodings, AKeyReadToNowhereIs14) {
  Store store;
  const Bytes image = from_hex("01020304");
  for (const Table *table : harbor::model::all_tables) {
    std::uint32_t err = 0;
    TraceLog traced;
    EXPECT_EQ(function<KeyReader>(*table, "table_pkey_unmarshal")(store, 0, nullptr, image.data(),
                                                                  4, &err),
              0u);
    EXPECT_EQ(err, KELP_ERR_BAD_ADDRESS) << table->name;
    EXPECT_EQ(store.last_error(), KELP_ERR_BAD_ADDRESS) << table->name;
    EXPECT_TRUE(traced.empty());
  }
}

TEST(RecordEncodings, WithoutMemoryForAKeyReadingIs12AndLeavesThePointer) {
  Store store;
  const Bytes image = from_hex("01020304");
  for (const Table *table : {&tables::ospf_area, &tables::ospfv2_link}) {
    int place = 0;
    void *pkey = &place;
    std::uint32_t err = 0;
    store.fail_allocation(0);
    EXPECT_EQ(
        function<KeyReader>(*table, "table_pkey_unmarshal")(store, 0, &pkey, image.data(), 4, &err),
        0u);
    EXPECT_EQ(err, KELP_ERR_NO_MEMORY);
    EXPECT_EQ(store.last_error(), KELP_ERR_NO_MEMORY);
    EXPECT_EQ(pkey, &place);
  }
}

TEST(RecordEncodings, ACutKeyIs90AndTheKeyObjectIsHandedOutAllTheSame) {
  Store store;
  const Bytes image = from_hex("010203");
  void *pkey = nullptr;
  EXPECT_EQ(function<KeyReader>(tables::ospf_area, "table_pkey_unmarshal")(
                store, 0, &pkey, image.data(), 3, &store.err),
            0u);
  EXPECT_EQ(store.err, KELP_ERR_NO_ROOM);
  ASSERT_NE(pkey, nullptr);
  EXPECT_EQ(field<std::uint32_t>(pkey, types::ospf_area, "area_id"), 0u);
  tbl_ospf_area_pkey_destroy(store, 0, static_cast<ospf_area *>(pkey));
}

// --- text --------------------------------------------------------------------------------------

TEST(RecordEncodings, TheTextIsTheObjectsInAFrameOfTheTable) {
  Store store;
  const Record record(store, tables::ospf_area);
  set_area_id(record, 10);
  for (const std::string &twin : twins) {
    EXPECT_EQ(rendered(store, record, "table_record_print" + twin),
              "record@tbl_ospf_area: {\n"
              "  ospf_area@ospf_area: {\n"
              "    area_id@u_int32:10\n"
              "##}\n"
              "}\n");
  }
  EXPECT_EQ(store.err, 0u);
}

TEST(RecordEncodings, ACompositeRecordsTextHasTheKeyObjectFirst) {
  Store store;
  const Record record(store, tables::ospfv2_link);
  set_link(record, 1, 2, 3);
  EXPECT_EQ(rendered(store, record, "table_record_print"),
            "record@tbl_ospfv2_link: {\n"
            "  ospfv2_link_key@ospfv2_link_key: {\n"
            "    link_id@u_int32:1\n"
            "    link_data@u_int32:2\n"
            "##}\n"
            "  ospfv2_link@ospfv2_link: {\n"
            "    type@u_int8:3\n"
            "##}\n"
            "}\n");
  EXPECT_EQ(store.err, 0u);
}

TEST(RecordEncodings, TheRoomForAnObjectsTextIsMeasuredByItsImage) {
  Store store;
  const Record record(store, tables::ospf_area);
  set_area_id(record, 10);
  const std::string opening = "record@tbl_ospf_area: {\n";
  const std::string whole = rendered(store, record, "table_record_print");
  const auto enough = static_cast<std::int32_t>(opening.size() + record.len() - objects_at);
  ASSERT_GT(enough, static_cast<std::int32_t>(whole.size()));
  EXPECT_EQ(rendered(store, record, "table_record_print", enough), whole);
  EXPECT_EQ(store.err, 0u);
  // The closing line is still asked for, and the error word keeps it away.
  const CallLog log;
  EXPECT_EQ(rendered(store, record, "table_record_print", enough - 1), opening);
  store.expect_failure(KELP_ERR_NO_ROOM);
  EXPECT_EQ(log.calls().back(), "kelp_print_space");
  EXPECT_EQ(log.count("kelp_print_space"), 2u);
}

TEST(RecordEncodings, ASecondObjectWithoutRoomIs90BehindTheFirst) {
  Store store;
  const Record record(store, tables::ospfv2_link);
  set_link(record, 1, 2, 3);
  const std::string whole = rendered(store, record, "table_record_print");
  const std::string first = whole.substr(0, whole.find("  ospfv2_link@ospfv2_link"));
  const auto data_image = static_cast<std::int32_t>(record.len() - objects_at - record.key_len());
  EXPECT_EQ(rendered(store, record, "table_record_print",
                     static_cast<std::int32_t>(first.size()) + data_image - 1),
            first);
  store.expect_failure(KELP_ERR_NO_ROOM);
}

TEST(RecordEncodings, AFailureInTheFirstObjectsTextKeepsTheSecondAway) {
  Store store;
  const Record record(store, tables::ospfv2_link);
  const Failing failing("u_int32_print", 5);
  const CallLog log;
  rendered(store, record, "table_record_print");
  EXPECT_EQ(store.err, 5u);
  EXPECT_EQ(log.count("u_int8_print"), 0u);
}

TEST(RecordEncodings, ASetErrorWordLeavesTheTextEmptyButItsFrameIsAskedFor) {
  Store store;
  const Record record(store, tables::ospf_area);
  store.err = 5;
  TraceLog traced;
  const CallLog log;
  EXPECT_EQ(rendered(store, record, "table_record_print"), "");
  EXPECT_EQ(log.only({"kelp_print_space", "u_int32_print"}),
            (std::vector<std::string>{"kelp_print_space", "kelp_print_space"}));
  EXPECT_EQ(store.err, 5u);
  EXPECT_TRUE(traced.empty());
}

// --- XML ---------------------------------------------------------------------------------------

const std::string area_xml =
    "<tbl_ospf_area><ospf_area><area_id>10</area_id></ospf_area></tbl_ospf_area>";
const std::string link_key_xml =
    "<ospfv2_link_key><link_id>1</link_id><link_data>2</link_data></ospfv2_link_key>";
const std::string link_data_xml = "<ospfv2_link><type>3</type></ospfv2_link>";

std::string link_xml(const std::string &content) {
  return "<tbl_ospfv2_link>" + content + "</tbl_ospfv2_link>";
}

void *read_xml(Store &store, const Table &table, const std::string &text,
               const std::string &twin = "") {
  const Document document(text);
  return function<XmlReader>(table, "table_record_from_xml" + twin)(store, 0, document, &store.err,
                                                                    nullptr, 0);
}

TEST(RecordEncodings, TheXmlIsTheObjectsInAnElementOfTheTable) {
  Store store;
  const Record area(store, tables::ospf_area);
  set_area_id(area, 10);
  const Record link(store, tables::ospfv2_link);
  set_link(link, 1, 2, 3);
  for (const std::string &twin : twins) {
    EXPECT_EQ(rendered(store, area, "table_record_to_xml" + twin), area_xml);
    EXPECT_EQ(rendered(store, link, "table_record_to_xml" + twin),
              link_xml(link_key_xml + link_data_xml));
  }
  EXPECT_EQ(store.err, 0u);
}

TEST(RecordEncodings, AFailureInTheFirstObjectsXmlKeepsTheSecondAwayAndTheEndTagIsAskedFor) {
  Store store;
  const Record record(store, tables::ospfv2_link);
  const Failing failing("u_int32_to_xml", 5);
  const CallLog log;
  EXPECT_EQ(rendered(store, record, "table_record_to_xml"), "<tbl_ospfv2_link><ospfv2_link_key>");
  EXPECT_EQ(store.err, 5u);
  EXPECT_EQ(log.only({"start_tag", "end_tag", "u_int8_to_xml"}),
            (std::vector<std::string>{"start_tag", "start_tag", "end_tag", "end_tag"}));
}

TEST(RecordEncodings, ASetErrorWordLeavesTheXmlEmptyButItsTagsAreAskedFor) {
  Store store;
  const Record record(store, tables::ospf_area);
  store.err = 5;
  TraceLog traced;
  const CallLog log;
  EXPECT_EQ(rendered(store, record, "table_record_to_xml"), "");
  EXPECT_EQ(log.only({"start_tag", "end_tag"}), (std::vector<std::string>{"start_tag", "end_tag"}));
  EXPECT_EQ(store.err, 5u);
  EXPECT_TRUE(traced.empty());
}

TEST(RecordEncodings, ARecordReadFromXmlRendersTheSameAndIsInNoTable) {
  Store store;
  for (const std::string &twin : twins) {
    const Record area(store, tables::ospf_area, read_xml(store, tables::ospf_area, area_xml, twin));
    ASSERT_NE(static_cast<void *>(area), nullptr);
    EXPECT_EQ(area.shell().record_table, nullptr);
    EXPECT_EQ(area.shell().src, 1);
    EXPECT_EQ(area.shell().ref_word, 1u);
    EXPECT_EQ(rendered(store, area, "table_record_to_xml"), area_xml);
    const std::string text = link_xml(link_key_xml + link_data_xml);
    const Record link(store, tables::ospfv2_link, read_xml(store, tables::ospfv2_link, text, twin));
    ASSERT_NE(static_cast<void *>(link), nullptr);
    EXPECT_EQ(rendered(store, link, "table_record_to_xml"), text);
  }
  EXPECT_EQ(store.err, 0u);
}

TEST(RecordEncodings, TheElementsOfEachTableAreNamedAfterItAndItsObjects) {
  Store store;
  for (const Table *table : harbor::model::all_tables) {
    const Record record(store, *table);
    const std::string text = rendered(store, record, "table_record_to_xml", 64 * 1024);
    std::size_t at = text.find("<" + name_of(*table) + ">");
    EXPECT_EQ(at, 0u) << text;
    for (const Structure *structure : structures_of(*table)) {
      const std::string name(structure->name);
      const std::size_t start = text.find("<" + name + ">", at);
      ASSERT_NE(start, std::string::npos) << text;
      at = text.find("</" + name + ">", start);
      ASSERT_NE(at, std::string::npos) << text;
    }
    EXPECT_TRUE(text.ends_with("></" + name_of(*table) + ">")) << text;
  }
  EXPECT_EQ(store.err, 0u);
}

TEST(RecordEncodings, WithoutAnElementForTheKeyARecordWithEmptyObjectsIsRead) {
  Store store;
  for (const Table *table : harbor::model::all_tables) {
    const Record read(store, *table, read_xml(store, *table, "<x/>"));
    EXPECT_EQ(store.err, 0u) << table->name;
    ASSERT_NE(static_cast<void *>(read), nullptr) << table->name;
    const Record created(store, *table);
    read.complete();
    created.complete();
    EXPECT_EQ(image_of(store, read), image_of(store, created)) << table->name;
  }
}

TEST(RecordEncodings, WithoutTheKeysElementTheDataObjectIsNotReadAndBothAreEmpty) {
  Store store;
  const Record link(store, tables::ospfv2_link,
                    read_xml(store, tables::ospfv2_link, link_xml(link_data_xml)));
  EXPECT_EQ(store.err, 0u);
  ASSERT_NE(static_cast<void *>(link), nullptr);
  ASSERT_NE(link.slot(0), nullptr);
  ASSERT_NE(link.slot(1), nullptr);
  EXPECT_EQ(field<std::uint8_t>(link.slot(1), types::ospfv2_link, "type"), 0);
}

TEST(RecordEncodings, WithoutTheDataElementTheKeyIsReadAndTheDataObjectIsEmpty) {
  Store store;
  const Record link(store, tables::ospfv2_link,
                    read_xml(store, tables::ospfv2_link, link_xml(link_key_xml)));
  EXPECT_EQ(store.err, 0u);
  ASSERT_NE(static_cast<void *>(link), nullptr);
  EXPECT_EQ(field<std::uint32_t>(link.slot(0), types::ospfv2_link_key, "link_id"), 1u);
  ASSERT_NE(link.slot(1), nullptr);
  EXPECT_EQ(field<std::uint8_t>(link.slot(1), types::ospfv2_link, "type"), 0);
}

TEST(RecordEncodings, ReadingXmlDoesNotLookAtTheErrorWord) {
  Store store;
  store.err = KELP_ERR_NO_ROOM;
  const Record area(store, tables::ospf_area, read_xml(store, tables::ospf_area, area_xml));
  EXPECT_EQ(store.err, 0u);
  ASSERT_NE(static_cast<void *>(area), nullptr);
  EXPECT_EQ(rendered(store, area, "table_record_to_xml"), area_xml);
}

TEST(RecordEncodings, AValueThatCannotBeReadGivesNullAndLeavesWhatWasMade) {
  Store store({.may_leave = 2});
  const Document document(
      "<tbl_ospf_area><ospf_area><area_id>ten</area_id></ospf_area></tbl_ospf_area>");
  char message[256] = "";
  EXPECT_EQ(
      tbl_ospf_area_table_record_from_xml(store, 0, document, &store.err, message, sizeof message),
      nullptr);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  EXPECT_NE(std::string(message).find("//ospf_area/area_id"), std::string::npos) << message;
  EXPECT_EQ(store.live_allocations(), 2u);
}

TEST(RecordEncodings, WithoutMemoryReadingXmlIs12AndLeavesWhatWasMade) {
  const Document document(link_xml(link_key_xml + link_data_xml));
  for (std::uint32_t made = 0; made < 3; ++made) {
    Store store({.may_leave = made});
    store.fail_allocation(made);
    EXPECT_EQ(tbl_ospfv2_link_table_record_from_xml(store, 0, document, &store.err, nullptr, 0),
              nullptr);
    EXPECT_EQ(store.err, KELP_ERR_NO_MEMORY) << made;
    EXPECT_EQ(store.last_error(), KELP_ERR_NO_MEMORY) << made;
    EXPECT_EQ(store.live_allocations(), made);
  }
}

// --- the forms on the handle's own words -------------------------------------------------------

TEST(RecordEncodings, TheCrFormsDoTheSameWithTheHandlesErrorWord) {
  Store store;
  for (const Table *table : {&tables::ospf_area, &tables::ospf_interface, &tables::ospfv2_link}) {
    const Record record(store, *table);
    record.complete();
    const std::array<std::pair<std::string, std::string>, 3> forms{{
        {"record_marshal_cr", "table_record_marshal"},
        {"record_print_cr", "table_record_print"},
        {"record_toxml_cr", "table_record_to_xml"},
    }};
    for (const auto &[cr, plain] : forms) {
      Buffer buffer(4096, '#');
      const std::uint32_t length = record.call<WriterCr>(cr)(store, record, buffer.data(), 4096);
      ASSERT_LE(length, 4096u) << cr;
      EXPECT_EQ(buffer.text(length), rendered(store, record, plain)) << cr;
      EXPECT_EQ(store.handle()->cr_err, 0u);
    }
    EXPECT_EQ(record.call<LengthCr>("record_len_cr")(store, record), record.len());
  }
}

TEST(RecordEncodings, WithCrErrSetTheCrWritersGiveAllOnesAndTheLength0) {
  Store store;
  const Record record(store, tables::ospf_area);
  for (const std::string rest : {"record_marshal_cr", "record_print_cr", "record_toxml_cr"}) {
    store.handle()->cr_err = 5;
    Buffer buffer(256);
    EXPECT_EQ(record.call<WriterCr>(rest)(store, record, buffer.data(), 256), failed) << rest;
    EXPECT_EQ(store.handle()->cr_err, 5u) << rest;
    EXPECT_TRUE(buffer.is_untouched_from(0)) << rest;
  }
  EXPECT_EQ(record.call<LengthCr>("record_len_cr")(store, record), 0u);
  store.handle()->cr_err = 0;
}

TEST(RecordEncodings, WithCrErrSetPrintCrCallsNothingWhileTheOthersRun) {
  Store store;
  const Record record(store, tables::ospf_area);
  Buffer buffer(256);
  store.handle()->cr_err = 5;
  TraceLog traced;
  const CallLog log;
  record.call<WriterCr>("record_print_cr")(store, record, buffer.data(), 256);
  EXPECT_TRUE(log.calls().empty());
  EXPECT_TRUE(traced.empty());
  record.call<WriterCr>("record_toxml_cr")(store, record, buffer.data(), 256);
  EXPECT_EQ(log.only({"start_tag", "end_tag"}), (std::vector<std::string>{"start_tag", "end_tag"}));
  record.call<WriterCr>("record_marshal_cr")(store, record, buffer.data(), 256);
  EXPECT_EQ(traced.texts(), (std::vector<std::string>{"Error present in call to table marshal: " +
                                                      std::string(std::strerror(5))}));
  store.handle()->cr_err = 0;
}

TEST(RecordEncodings, AFailureOfACrWriterIsAllOnesWithItsCodeInCrErr) {
  Store store;
  const Record record(store, tables::ospf_area);
  Buffer buffer(256);
  EXPECT_EQ(record.call<WriterCr>("record_marshal_cr")(store, record, buffer.data(), 42), failed);
  EXPECT_EQ(store.handle()->cr_err, KELP_ERR_NO_ROOM);
  store.handle()->cr_err = 0;
  EXPECT_EQ(record.call<WriterCr>("record_print_cr")(store, record, buffer.data(), 64), failed);
  EXPECT_EQ(store.handle()->cr_err, KELP_ERR_NO_ROOM);
  store.handle()->cr_err = 0;
  const Failing failing("u_int32_to_xml", 5);
  EXPECT_EQ(record.call<WriterCr>("record_toxml_cr")(store, record, buffer.data(), 256), failed);
  EXPECT_EQ(store.handle()->cr_err, 5u);
  store.handle()->cr_err = 0;
}

// The documented bound of the length: an object without state bytes takes a byte more for each
// array element under a handle that tracks.
TEST(RecordLength, IsTooSmallByTheElementsOfAnUntrackedObjectUnderATrackingHandle) {
  Store store;
  kelp_handle *tracking = store.another_handle({.tracking = KELP_TRACKING_ON});
  Record record(store, tables::link_scope_lsa);
  auto *lsa = static_cast<link_scope_lsa *>(record.slot(1));
  const std::vector<std::uint8_t> octets(26, 1);
  store(link_scope_lsa_raw_data_set_mem, lsa, octets.data(), 26);
  const auto length =
      function<Length>(tables::link_scope_lsa, "table_record_len")(tracking, 0, record);
  Bytes image(length + 64);
  auto *write = function<Writer>(tables::link_scope_lsa, "table_record_marshal");
  const std::uint32_t written =
      write(tracking, 0, image.data(), record, static_cast<std::int32_t>(length + 26), &store.err);
  EXPECT_EQ(store.err, 0u);
  EXPECT_GT(written, length);
  EXPECT_LE(written, length + 26);
}

}  // namespace
