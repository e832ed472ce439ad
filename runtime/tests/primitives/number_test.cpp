// What the five numbers promise alike, once for each, and then what each has of its own.
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "kelp/hash.h"
#include "kelp/xml_elements.h"
#include "primitives/fixture.hpp"

namespace {

using kelp_test::bytes_at;
using kelp_test::Document;
using kelp_test::ExactCopy;
using kelp_test::kSpace;

template <class T>
struct Example {
  T value;
  std::string text;
  std::string image;
};

// The operations of one family, with examples and texts that it refuses.
#define NUMBER_FAMILY(Type, prefix, ...)                                      \
  struct Type {                                                               \
    using Value = decltype(prefix##_get_value(nullptr, 0, nullptr, nullptr)); \
    static constexpr auto get = prefix##_get;                                 \
    static constexpr auto get_value = prefix##_get_value;                     \
    static constexpr auto set = prefix##_set;                                 \
    static constexpr auto set_value = prefix##_set_value;                     \
    static constexpr auto hash = prefix##_hash;                               \
    static constexpr auto len = prefix##_len;                                 \
    static constexpr auto marshal = prefix##_marshal;                         \
    static constexpr auto unmarshal = prefix##_unmarshal;                     \
    static constexpr auto print = prefix##_print;                             \
    static constexpr auto to_xml = prefix##_to_xml;                           \
    static constexpr auto from_xml = prefix##_from_xml;                       \
    static std::string name() { return #prefix; }                             \
    static std::vector<Example<Value>> examples() { return __VA_ARGS__; }     \
    static std::vector<std::string> refused();                                \
  }

NUMBER_FAMILY(U8, u_int8, {{0, "0", std::string(1, '\0')}, {7, "7", "\x07"}, {255, "255", "\xFF"}});
NUMBER_FAMILY(U16, u_int16,
              {{0, "0", std::string(2, '\0')},
               {258, "258", "\x01\x02"},
               {65535, "65535", "\xFF\xFF"}});
NUMBER_FAMILY(U32, u_int32,
              {{0, "0", std::string(4, '\0')},
               {16909060, "16909060", "\x01\x02\x03\x04"},
               {4294967295u, "4294967295", "\xFF\xFF\xFF\xFF"}});
NUMBER_FAMILY(Double, double,
              {{0.0, "0", std::string(8, '\0')},
               {0.1, "0.1", "\x3F\xB9\x99\x99\x99\x99\x99\x9A"},
               {-2.0, "-2", std::string("\xC0\0\0\0\0\0\0\0", 8)},
               {1e300, "1e+300", std::string("\x7E\x37\xE4\x3C\x88\x00\x75\x9C", 8)},
               {5e-324, "5e-324", std::string("\0\0\0\0\0\0\0\1", 8)},
               {std::numeric_limits<double>::infinity(), "inf",
                std::string("\x7F\xF0\0\0\0\0\0\0", 8)}});
NUMBER_FAMILY(Boolean, kelp_boolean, {{0, "false", std::string(1, '\0')}, {1, "true", "\x01"}});

std::vector<std::string> U8::refused() { return {"", "256", "-1", "+1", "1x", "0x1", "1 2", "a"}; }
std::vector<std::string> U16::refused() { return {"", "65536", "-1", "1.0", "1e2"}; }
std::vector<std::string> U32::refused() { return {"", "4294967296", "-1", "99999999999999999999"}; }
std::vector<std::string> Double::refused() { return {"", "1e999", "1e", "0x1p3x", "1,5", "--1"}; }
std::vector<std::string> Boolean::refused() { return {"", "yes", "TRUE", "2", "truefalse"}; }

template <class Family>
class NumberTest : public kelp_test::PrimitiveTest {
 protected:
  using Value = typename Family::Value;

  static Value other_value() { return Family::examples().back().value; }
};

using Families = ::testing::Types<U8, U16, U32, Double, Boolean>;

class FamilyNames {
 public:
  template <class Family>
  static std::string GetName(int) {
    return Family::name();
  }
};

TYPED_TEST_SUITE(NumberTest, Families, FamilyNames);

TYPED_TEST(NumberTest, GetGivesTheAddressAndNullForNull) {
  typename TypeParam::Value value = 1;
  EXPECT_EQ(TypeParam::get(this->handle_, kSpace, &value, &this->err_), &value);
  EXPECT_EQ(TypeParam::get(this->handle_, kSpace, nullptr, &this->err_), nullptr);
  this->expect_success();
}

TYPED_TEST(NumberTest, GetValueOfNullIsInvalid) {
  for (const auto &example : TypeParam::examples()) {
    const typename TypeParam::Value value = example.value;
    EXPECT_EQ(TypeParam::get_value(this->handle_, kSpace, &value, &this->err_), value);
  }
  EXPECT_EQ(TypeParam::get_value(this->handle_, kSpace, nullptr, &this->err_), 0);
  this->expect_failure(KELP_ERR_INVALID);
}

TYPED_TEST(NumberTest, SetAnnouncesExactlyTheValueBeforeItChanges) {
  typename TypeParam::Value value = 0;
  const std::string before = bytes_at(&value, sizeof value);
  const typename TypeParam::Value source = this->other_value();
  TypeParam::set(this->handle_, kSpace, &value, &source, &this->err_);
  EXPECT_EQ(value, source);
  ASSERT_EQ(this->announced_.size(), 1u);
  EXPECT_EQ(this->announced_[0].bytes_before, before);
  this->expect_announced(&value, sizeof value);
  this->expect_success();
}

TYPED_TEST(NumberTest, SetValueAnnouncesExactlyTheValueBeforeItChanges) {
  typename TypeParam::Value value = 0;
  const std::string before = bytes_at(&value, sizeof value);
  TypeParam::set_value(this->handle_, kSpace, &value, this->other_value(), &this->err_);
  EXPECT_EQ(value, this->other_value());
  ASSERT_EQ(this->announced_.size(), 1u);
  EXPECT_EQ(this->announced_[0].bytes_before, before);
  this->expect_announced(&value, sizeof value);
  this->expect_success();
}

TYPED_TEST(NumberTest, SetOfNullIsInvalid) {
  typename TypeParam::Value value = 0;
  TypeParam::set(this->handle_, kSpace, &value, nullptr, &this->err_);
  this->expect_failure(KELP_ERR_INVALID);
  TypeParam::set(this->handle_, kSpace, nullptr, &value, &this->err_);
  this->expect_failure(KELP_ERR_INVALID);
  TypeParam::set_value(this->handle_, kSpace, nullptr, 1, &this->err_);
  this->expect_failure(KELP_ERR_INVALID);
  this->expect_nothing_announced();
}

TYPED_TEST(NumberTest, ASetErrorWordStopsEveryOperation) {
  typename TypeParam::Value value = 1;
  const typename TypeParam::Value source = 0;
  char buffer[64];
  std::memset(buffer, '#', sizeof buffer);
  const Document document("<a>0</a>");
  char message[16] = "same";
  uint32_t &err = this->err_;
  err = 43;
  EXPECT_EQ(TypeParam::get(this->handle_, kSpace, &value, &err), nullptr);
  EXPECT_EQ(TypeParam::get_value(this->handle_, kSpace, &value, &err), 0);
  TypeParam::set(this->handle_, kSpace, &value, &source, &err);
  TypeParam::set_value(this->handle_, kSpace, &value, 0, &err);
  EXPECT_EQ(TypeParam::marshal(this->handle_, kSpace, buffer, &value, 64, &err), 0u);
  EXPECT_EQ(
      TypeParam::unmarshal(this->handle_, kSpace, std::string(8, '\0').data(), &value, 8, 0, &err),
      0u);
  EXPECT_EQ(TypeParam::print(this->handle_, kSpace, buffer, 2, "x", &value, 64, &err), 0u);
  EXPECT_EQ(TypeParam::to_xml(this->handle_, kSpace, "x", buffer, &value, 64, 0, &err), 0u);
  TypeParam::from_xml(this->handle_, kSpace, "//a", document, &value, &err, message, 16);
  EXPECT_EQ(err, 43u);
  EXPECT_EQ(value, 1);
  EXPECT_EQ(std::string(buffer, sizeof buffer), std::string(64, '#'));
  EXPECT_STREQ(message, "same");
  EXPECT_EQ(this->last_error(), 0u);
  this->expect_nothing_announced();
  err = 0;
}

TYPED_TEST(NumberTest, ImagesHaveTheirBytesAndComeBack) {
  for (const auto &example : TypeParam::examples()) {
    const std::string &image = example.image;
    const auto size = static_cast<int32_t>(image.size());
    EXPECT_EQ(TypeParam::len(this->handle_, kSpace, &example.value), image.size());
    char buffer[16];
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(TypeParam::marshal(this->handle_, kSpace, buffer, &example.value, size, &this->err_),
              image.size());
    EXPECT_EQ(std::string(buffer, 16), image + std::string(16 - image.size(), '#'));
    typename TypeParam::Value back = 1;
    EXPECT_EQ(TypeParam::unmarshal(this->handle_, kSpace, buffer, &back, size, 1, &this->err_),
              image.size());
    EXPECT_EQ(back, example.value);
    this->expect_announced(&back, sizeof back);
  }
  EXPECT_EQ(TypeParam::len(this->handle_, kSpace, nullptr), TypeParam::examples()[0].image.size());
  this->expect_success();
}

TYPED_TEST(NumberTest, ImagesAreBoundedAtEveryLength) {
  const auto example = TypeParam::examples().back();
  const auto size = static_cast<int32_t>(example.image.size());
  for (int32_t length = -1; length < size; ++length) {
    char buffer[16];
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(
        TypeParam::marshal(this->handle_, kSpace, buffer, &example.value, length, &this->err_), 0u);
    this->expect_failure(KELP_ERR_NO_ROOM);
    EXPECT_EQ(std::string(buffer, 16), std::string(16, '#'));
    typename TypeParam::Value back = 0;
    const ExactCopy exact(example.image.data(), length);
    EXPECT_EQ(
        TypeParam::unmarshal(this->handle_, kSpace, exact.get(), &back, length, 0, &this->err_),
        0u);
    this->expect_failure(KELP_ERR_NO_ROOM);
    EXPECT_EQ(back, 0);
  }
  this->expect_nothing_announced();
}

TYPED_TEST(NumberTest, ImagesOfNullAreInvalid) {
  char buffer[16] = {};
  EXPECT_EQ(TypeParam::marshal(this->handle_, kSpace, buffer, nullptr, 16, &this->err_), 0u);
  this->expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(TypeParam::unmarshal(this->handle_, kSpace, buffer, nullptr, 16, 0, &this->err_), 0u);
  this->expect_failure(KELP_ERR_INVALID);
}

TYPED_TEST(NumberTest, PrintsOneLabelledLine) {
  for (const auto &example : TypeParam::examples()) {
    const std::string line = "  cost@" + TypeParam::name() + ":" + example.text + "\n";
    char buffer[64];
    EXPECT_EQ(
        TypeParam::print(this->handle_, kSpace, buffer, 2, "cost", &example.value, 64, &this->err_),
        line.size());
    EXPECT_EQ(std::string(buffer, line.size()), line);
  }
}

TYPED_TEST(NumberTest, PrintsNullWithoutAValueAndANullLabelAsEmpty) {
  char buffer[64];
  const uint32_t used =
      TypeParam::print(this->handle_, kSpace, buffer, 0, nullptr, nullptr, 64, &this->err_);
  EXPECT_EQ(std::string(buffer, used), "@" + TypeParam::name() + ":\n");
}

TYPED_TEST(NumberTest, PrintStopsAtEverySpace) {
  const auto example = TypeParam::examples().back();
  const std::string line = "   label@" + TypeParam::name() + ":" + example.text + "\n";
  for (uint32_t size = 0; size <= line.size() + 1; ++size) {
    char buffer[64];
    std::memset(buffer, '#', sizeof buffer);
    const uint32_t used = TypeParam::print(this->handle_, kSpace, buffer, 3, "label",
                                           &example.value, size, &this->err_);
    EXPECT_LE(used, size);
    EXPECT_EQ(std::string(buffer, used), line.substr(0, used));
    EXPECT_EQ(used, std::min<uint32_t>(size, static_cast<uint32_t>(line.size())));
    for (size_t i = size; i < sizeof buffer; ++i) EXPECT_EQ(buffer[i], '#');
  }
  this->expect_success();
}

TYPED_TEST(NumberTest, WritesOneElementWholeOrNothing) {
  const auto example = TypeParam::examples().back();
  const std::string whole = "<cost state=\"2\">" + example.text + "</cost>";
  for (uint32_t size = 0; size <= whole.size() + 1; ++size) {
    char buffer[64];
    std::memset(buffer, '#', sizeof buffer);
    const uint32_t used = TypeParam::to_xml(this->handle_, kSpace, "cost", buffer, &example.value,
                                            size, 2, &this->err_);
    EXPECT_EQ(used, size < whole.size() ? 0 : whole.size());
    EXPECT_EQ(std::string(buffer, used), whole.substr(0, used));
    for (size_t i = size; i < sizeof buffer; ++i) EXPECT_EQ(buffer[i], '#');
    if (size < whole.size()) this->expect_failure(KELP_ERR_NO_ROOM);
  }
}

TYPED_TEST(NumberTest, WritesNullAsAnEmptyElement) {
  char buffer[64];
  TypeParam::to_xml(this->handle_, kSpace, "cost", buffer, nullptr, 64, 0, &this->err_);
  EXPECT_STREQ(buffer, "<cost></cost>");
}

TYPED_TEST(NumberTest, ElementsComeBackAndAnnounce) {
  for (const auto &example : TypeParam::examples()) {
    const Document document("<r><cost> \n" + example.text + "\t</cost></r>");
    typename TypeParam::Value back = 1;
    TypeParam::from_xml(this->handle_, kSpace, "//r/cost", document, &back, &this->err_, nullptr,
                        0);
    EXPECT_EQ(back, example.value);
    this->expect_announced(&back, sizeof back);
  }
  this->expect_success();
}

TYPED_TEST(NumberTest, AMissingElementIsCodeTwoWithoutAMessage) {
  const Document document("<r/>");
  typename TypeParam::Value value = 1;
  char message[64] = "same";
  TypeParam::from_xml(this->handle_, kSpace, "//r/cost", document, &value, &this->err_, message,
                      64);
  this->expect_failure(KELP_ERR_NOT_FOUND);
  EXPECT_EQ(value, 1);
  EXPECT_STREQ(message, "same");
  this->expect_nothing_announced();
}

TYPED_TEST(NumberTest, RefusedTextsSayWhatIsWhere) {
  for (const std::string &text : TypeParam::refused()) {
    const Document document("<r>\n  <cost>" + text + "</cost></r>");
    typename TypeParam::Value value = 1;
    char message[256] = "";
    TypeParam::from_xml(this->handle_, kSpace, "//r/cost", document, &value, &this->err_, message,
                        256);
    this->expect_failure(KELP_ERR_INVALID);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(std::string(message).rfind(
                  "//r/cost: found \"" + text + "\" at line 2, column 3, expected ", 0),
              0u)
        << message;
    TypeParam::from_xml(this->handle_, kSpace, "//r/cost", document, &value, &this->err_, nullptr,
                        0);
    this->expect_failure(KELP_ERR_INVALID);
  }
  this->expect_nothing_announced();
}

TYPED_TEST(NumberTest, APathOfAnotherFormIsInvalid) {
  const Document document("<r/>");
  typename TypeParam::Value value = 1;
  char message[32] = "";
  TypeParam::from_xml(this->handle_, kSpace, "/r", document, &value, &this->err_, message, 32);
  this->expect_failure(KELP_ERR_INVALID);
  EXPECT_STREQ(message, "/r: found no path that can be r");
}

TYPED_TEST(NumberTest, HashOfNullIsTheSeedAndHashesChain) {
  EXPECT_EQ(TypeParam::hash(nullptr, 77), 77u);
  const auto a = TypeParam::examples()[0].value;
  const auto b = TypeParam::examples()[1].value;
  EXPECT_NE(TypeParam::hash(&a, 77), TypeParam::hash(&b, 77));
  EXPECT_NE(TypeParam::hash(&a, 77), TypeParam::hash(&a, 78));
}

class PrimitiveNumberTest : public kelp_test::PrimitiveTest {};

TEST_F(PrimitiveNumberTest, IntegersHashAsTheirBytesInMemory) {
  const uint8_t byte = 9;
  const uint16_t half = 900;
  const uint32_t word = 90000;
  EXPECT_EQ(u_int8_hash(&byte, 5), SuperFastHash(&byte, 1, 5));
  EXPECT_EQ(u_int16_hash(&half, 5), SuperFastHash(&half, 2, 5));
  EXPECT_EQ(u_int32_hash(&word, 5), SuperFastHash(&word, 4, 5));
}

TEST_F(PrimitiveNumberTest, BothZeroDoublesHashAlike) {
  const double plus = 0.0;
  const double minus = -0.0;
  const double other = 1.0;
  EXPECT_EQ(double_hash(&plus, 5), double_hash(&minus, 5));
  EXPECT_EQ(double_hash(&other, 5), SuperFastHash(&other, 8, 5));
}

TEST_F(PrimitiveNumberTest, NaNsTravelWithTheirBits) {
  const uint64_t bits = 0xFFF8123456789ABCu;
  double value = 0;
  std::memcpy(&value, &bits, sizeof value);
  char image[8];
  EXPECT_EQ(double_marshal(handle_, kSpace, image, &value, 8, &err_), 8u);
  double back = 0;
  EXPECT_EQ(double_unmarshal(handle_, kSpace, image, &back, 8, 0, &err_), 8u);
  EXPECT_EQ(bytes_at(&back, 8), bytes_at(&value, 8));
}

TEST_F(PrimitiveNumberTest, NaNComesBackFromItsText) {
  const double value = std::numeric_limits<double>::quiet_NaN();
  char buffer[64];
  double_to_xml(handle_, kSpace, "d", buffer, &value, 64, 0, &err_);
  EXPECT_STREQ(buffer, "<d>nan</d>");
  const Document document(buffer);
  double back = 0;
  double_from_xml(handle_, kSpace, "//d", document, &back, &err_, nullptr, 0);
  EXPECT_TRUE(std::isnan(back));
}

TEST_F(PrimitiveNumberTest, DoublesComeBackFromTheirTextBitByBit) {
  for (const double value :
       {0.1 + 0.2, 1.0 / 3, -0.0, 123456789.123456789, std::numeric_limits<double>::max(),
        std::numeric_limits<double>::min(), std::numeric_limits<double>::denorm_min()}) {
    char buffer[64];
    double_to_xml(handle_, kSpace, "d", buffer, &value, 64, 0, &err_);
    const Document document(buffer);
    double back = 1;
    double_from_xml(handle_, kSpace, "//d", document, &back, &err_, nullptr, 0);
    EXPECT_EQ(bytes_at(&back, 8), bytes_at(&value, 8)) << buffer;
  }
}

TEST_F(PrimitiveNumberTest, BooleansAreStoredAsOneAndZero) {
  kelp_boolean value = 0;
  kelp_boolean_set_value(handle_, kSpace, &value, 7, &err_);
  EXPECT_EQ(value, 1u);
  const kelp_boolean source = 256;
  value = 0;
  kelp_boolean_set(handle_, kSpace, &value, &source, &err_);
  EXPECT_EQ(value, 1u);
}

TEST_F(PrimitiveNumberTest, BooleansTakeOneAndZeroFromXmlToo) {
  const Document document("<r><a>1</a><b>0</b></r>");
  kelp_boolean a = 0;
  kelp_boolean b = 1;
  kelp_boolean_from_xml(handle_, kSpace, "//r/a", document, &a, &err_, nullptr, 0);
  kelp_boolean_from_xml(handle_, kSpace, "//r/b", document, &b, &err_, nullptr, 0);
  EXPECT_EQ(a, 1u);
  EXPECT_EQ(b, 0u);
}

TEST_F(PrimitiveNumberTest, BooleanImagesOfAnotherByteAreRefused) {
  kelp_boolean value = 0;
  EXPECT_EQ(kelp_boolean_unmarshal(handle_, kSpace, "\x02", &value, 1, 0, &err_), 0u);
  expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(value, 0u);
  expect_nothing_announced();
}

TEST_F(PrimitiveNumberTest, BooleansCompareNullBelowFalseBelowTrue) {
  const kelp_boolean no = 0;
  const kelp_boolean yes = 1;
  const kelp_boolean also_yes = 9;
  EXPECT_EQ(kelp_boolean_compare(nullptr, nullptr), 0);
  EXPECT_EQ(kelp_boolean_compare(nullptr, &no), -1);
  EXPECT_EQ(kelp_boolean_compare(&no, nullptr), 1);
  EXPECT_EQ(kelp_boolean_compare(&no, &yes), -1);
  EXPECT_EQ(kelp_boolean_compare(&yes, &no), 1);
  EXPECT_EQ(kelp_boolean_compare(&yes, &also_yes), 0);
  EXPECT_EQ(kelp_boolean_hash(&yes, 3), kelp_boolean_hash(&also_yes, 3));
}

TEST_F(PrimitiveNumberTest, BooleansHaveNoHeaderToPrepare) {
  kelp_boolean value = 1;
  kelp_boolean_initialize(handle_, kSpace, &value, &_kelp_boolean_type_info_internal, 1, 0,
                          OBJ_NESTED, nullptr, &err_);
  kelp_boolean_set_instance_embedded(handle_, kSpace, &value);
  EXPECT_EQ(value, 1u);
  expect_nothing_announced();
  expect_success();
}

TEST_F(PrimitiveNumberTest, NumbersOfTheirOwnStartAtZeroAndAreGivenBack) {
  uint8_t *byte = u_int8_create(handle_, kSpace);
  uint32_t *word = u_int32_create(handle_, kSpace);
  ASSERT_NE(byte, nullptr);
  ASSERT_NE(word, nullptr);
  EXPECT_EQ(*byte, 0);
  EXPECT_EQ(*word, 0u);
  EXPECT_EQ(live_blocks_, 2);
  u_int32_destroy_internal(handle_, kSpace, word, 0);
  EXPECT_EQ(live_blocks_, 2);
  u_int8_destroy(handle_, kSpace, byte);
  u_int32_destroy(handle_, kSpace, word);
  u_int32_destroy_internal(handle_, kSpace, u_int32_create(handle_, kSpace), 1);
  EXPECT_EQ(live_blocks_, 0);
  u_int8_destroy(handle_, kSpace, nullptr);
  u_int32_destroy(handle_, kSpace, nullptr);
}

TEST_F(PrimitiveNumberTest, CreateWithoutMemoryIsNull) {
  refuse_memory_ = true;
  EXPECT_EQ(u_int8_create(handle_, kSpace), nullptr);
  EXPECT_EQ(u_int32_create(handle_, kSpace), nullptr);
}

TEST_F(PrimitiveNumberTest, SizesInMemory) {
  EXPECT_EQ(u_int8_sizeof(), 1u);
  EXPECT_EQ(u_int32_sizeof(), 4u);
}

TEST_F(PrimitiveNumberTest, TypeRecordsAreWhole) {
  for (const auto &[record, name] :
       {std::pair{&_kelp_boolean_type_info_internal, "kelp_boolean"},
        std::pair{&_ip_address_type_info_internal, "ip_address"},
        std::pair{&_kelp_vstring_type_info_internal, "kelp_vstring"}}) {
    EXPECT_EQ(record->magic, KELP_TYPE_MAGIC);
    EXPECT_STREQ(record->type_name, name);
    EXPECT_STREQ(record->module_name, "kelp");
    EXPECT_STREQ(record->kind, "type");
    EXPECT_EQ(record->resolved_variant, -1);
    ASSERT_NE(record->varinfo, nullptr);
    EXPECT_EQ(record->varinfo->n_variants, 1);
    ASSERT_NE(record->varinfo->entries, nullptr);
    std::string digits;
    for (const uint8_t byte : record->md5) {
      char pair[3];
      std::snprintf(pair, sizeof pair, "%02x", byte);
      digits += pair;
    }
    EXPECT_EQ(digits, record->md5_text);
  }
  EXPECT_STRNE(_ip_address_type_info_internal.md5_text, _kelp_vstring_type_info_internal.md5_text);
}

// Elements in one go: as many as can be read one by one, in front of the first that cannot. What
// stands in several pieces is read alone.
template <class Value>
std::vector<Value> row_of(uint32_t (*read)(const kelp_xml_row *, Value *),
                          const std::string &text) {
  const Document document(text);
  uint32_t next = 0;
  const kelp_xml_row row =
      kelp_xml_children(document, kelp_xml_find(document, "//a"), "v", 1, &next);
  std::vector<Value> values(row.count);
  values.resize(read(&row, values.data()));
  return values;
}

TEST(RowTest, IsReadInOrder) {
  const std::string text = "<a><v>7</v><w>1</w><v> 200\n</v><v>25</v></a>";
  EXPECT_EQ(row_of(u_int8_read_row, text), (std::vector<uint8_t>{7, 200, 25}));
  EXPECT_EQ(row_of(u_int32_read_row, text), (std::vector<uint32_t>{7, 200, 25}));
  EXPECT_EQ(row_of(u_int32_read_row, "<a/>"), std::vector<uint32_t>{});
}

TEST(RowTest, EndsBeforeTheFirstThatIsNoNumberOfTheType) {
  const std::string text = "<a><v>70</v><v>256</v><v>1</v><v/><v>2</v></a>";
  EXPECT_EQ(row_of(u_int8_read_row, text), (std::vector<uint8_t>{70}));
  EXPECT_EQ(row_of(u_int32_read_row, text), (std::vector<uint32_t>{70, 256, 1}));
  EXPECT_EQ(row_of(u_int8_read_row, "<a><v>1</v><v>2<!-- c -->5</v></a>"),
            (std::vector<uint8_t>{1}));
}

}  // namespace
