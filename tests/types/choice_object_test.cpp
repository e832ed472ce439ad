// Order and hash of a choice: the selected arms alone decide the order, every arm enters the hash.
#include <kelp/hash.h>

#include <string_view>

#include "types/object_view.hpp"

namespace {

using namespace harness;

class Choice : public Owned<ospf_authentication> {
 public:
  explicit Choice(Store &store)
      : Owned(store, ospf_authentication_create, ospf_authentication_destroy), store_(store) {}

  void select(std::uint32_t selector) {
    void *selection =
        place(get(), types::ospf_authentication, fields::ospf_authentication::auth_type_selection);
    at<std::uint32_t>(selection, model::enumeration_value_offset) = selector;
  }
  void *&arm(const model::Field &field) {
    return at<void *>(get(), model::offset(types::ospf_authentication, field));
  }
  kelp_vstring *give_text(const model::Field &field, std::string_view text) {
    kelp_vstring *made = kelp_vstring_create(store_, 0);
    store_(kelp_vstring_assign, made, text.data(), text.size());
    arm(field) = made;
    return made;
  }
  ospf_crypto_algorithm *give_algorithm(bool md5) {
    ospf_crypto_algorithm *made = ospf_crypto_algorithm_create(store_, 0);
    store_(ospf_crypto_algorithm_md5_set_value, made, md5 ? 1 : 0);
    arm(fields::ospf_authentication::crypto_algorithm_val) = made;
    return made;
  }
  void give_number(std::uint32_t value) {
    std::uint32_t *made = u_int32_create(store_, 0);
    *made = value;
    arm(fields::ospf_authentication::no_auth) = made;
  }

 private:
  Store &store_;
};

using namespace fields::ospf_authentication;

TEST(ChoiceCompare, NullSortsFirst) {
  Store store;
  Choice choice(store);
  EXPECT_EQ(ospf_authentication_compare(nullptr, nullptr), 0);
  EXPECT_EQ(ospf_authentication_compare(nullptr, choice), -1);
  EXPECT_EQ(ospf_authentication_compare(choice, nullptr), 1);
}

TEST(ChoiceCompare, SelectorsThatDifferGiveTheirDifference) {
  Store store;
  Choice a(store);
  Choice b(store);
  a.select(3);
  a.give_text(sa, "a");
  b.give_text(sa, "b");
  EXPECT_EQ(ospf_authentication_compare(a, b), 3);
  EXPECT_EQ(ospf_authentication_compare(b, a), -3);
  a.select(0x80000001);
  EXPECT_EQ(ospf_authentication_compare(a, b), static_cast<std::int32_t>(0x80000001));
}

TEST(ChoiceCompare, OnlyTheSelectedArmCounts) {
  Store store;
  Choice a(store);
  Choice b(store);
  a.give_text(sa, "same");
  b.give_text(sa, "same");
  a.give_text(key_chain, "one");
  b.give_text(key_chain, "two");
  EXPECT_EQ(ospf_authentication_compare(a, b), 0);
  EXPECT_NE(ospf_authentication_hash(a, 0), ospf_authentication_hash(b, 0));
  a.select(1);
  b.select(1);
  EXPECT_LT(ospf_authentication_compare(a, b), 0);
  EXPECT_GT(ospf_authentication_compare(b, a), 0);
  a.select(7);
  b.select(7);
  EXPECT_EQ(ospf_authentication_compare(a, b), 0);
}

TEST(ChoiceCompare, TheAlgorithmsDecideBetweenEqualKeys) {
  Store store;
  Choice a(store);
  Choice b(store);
  for (Choice *choice : {&a, &b}) {
    choice->select(2);
    choice->give_text(key_string, "key");
  }
  EXPECT_EQ(ospf_authentication_compare(a, b), 0);
  b.give_algorithm(false);
  EXPECT_EQ(ospf_authentication_compare(a, b), -1);
  a.give_algorithm(true);
  EXPECT_GT(ospf_authentication_compare(a, b), 0);
}

TEST(ChoiceCompare, KeysDecideBeforeTheAlgorithms) {
  Store store;
  Choice a(store);
  Choice b(store);
  a.select(2);
  b.select(2);
  a.give_text(key_string, "a");
  b.give_text(key_string, "b");
  a.give_algorithm(true);
  b.give_algorithm(false);
  EXPECT_LT(ospf_authentication_compare(a, b), 0);
}

TEST(ChoiceCompare, NumbersCompareUnsignedAndNullFirst) {
  Store store;
  Choice a(store);
  Choice b(store);
  a.select(3);
  b.select(3);
  EXPECT_EQ(ospf_authentication_compare(a, b), 0);
  b.give_number(0xFFFFFFFF);
  EXPECT_EQ(ospf_authentication_compare(a, b), -1);
  EXPECT_EQ(ospf_authentication_compare(b, a), 1);
  a.give_number(1);
  EXPECT_EQ(ospf_authentication_compare(a, b), -1);
  EXPECT_EQ(ospf_authentication_compare(b, a), 1);
}

TEST(ChoiceHash, TheSelectorGoesInTwiceAndThenBeforeEachFurtherArm) {
  Store store;
  Choice choice(store);
  choice.select(2);
  const std::uint32_t selector = 2;
  const auto mixed = [&](std::uint32_t seed) { return SuperFastHash(&selector, 4, seed); };

  std::uint32_t expected = mixed(9);
  for (int arms = 0; arms < 5; ++arms) expected = mixed(expected);
  EXPECT_EQ(ospf_authentication_hash(choice, 9), expected);

  const kelp_vstring *name = choice.give_text(sa, "x");
  const kelp_vstring *key = choice.give_text(key_string, "k");
  const ospf_crypto_algorithm *algorithm = choice.give_algorithm(true);
  choice.give_number(6);
  const std::uint32_t number = 6;
  expected = kelp_vstring_hash(name, mixed(mixed(9)));
  expected = mixed(expected);
  expected = kelp_vstring_hash(key, mixed(expected));
  expected = ospf_crypto_algorithm_hash(algorithm, mixed(expected));
  EXPECT_EQ(ospf_authentication_hash(choice, 9), u_int32_hash(&number, mixed(expected)));
}

TEST(ChoiceCompare, AnInterfaceComparesItsChoiceByTheSameRule) {
  Store store;
  OWNED(store, ospf_interface, a);
  OWNED(store, ospf_interface, b);
  Choice arm_owner(store);
  arm_owner.give_text(key_chain, "unselected");
  auto *authentication = static_cast<ospf_authentication *>(
      place(a.get(), types::ospf_interface, fields::ospf_interface::authentication_val));
  store(ospf_authentication_set, authentication, arm_owner);
  EXPECT_EQ(ospf_interface_compare(a, b), 0);
  EXPECT_NE(ospf_interface_hash(a, 0), ospf_interface_hash(b, 0));
}

}  // namespace
