// The arms of a choice: setting, reading and taking them off, and what the choice is as a whole.
#include <kelp/primitives.h>

#include <cstring>

#include "harness/harness.hpp"
#include "model/layout.hpp"
#include "ospf_harbor_oper.h"

namespace {

using harness::CallLog;
using harness::Store;
using harness::StoreOptions;
using harness::TraceLog;
using harness::WriteWatch;
namespace model = harbor::model;
namespace fields = harbor::model::fields::ospf_authentication;

using Names = std::vector<std::string>;

constexpr char not_tracked[] = "The object is not state tracked";
constexpr char arm_not_tracked[] = "The val object is not state tracked";

constexpr std::size_t offset_of(const model::Field &field) {
  return model::offset(model::types::ospf_authentication, field);
}
constexpr std::size_t selector_offset =
    offset_of(fields::auth_type_selection) + model::enumeration_value_offset;
constexpr std::size_t object_size = model::object_size(model::types::ospf_authentication);

// State bytes in field order.
enum State {
  selector_state,
  sa_state,
  key_chain_state,
  key_string_state,
  crypto_state,
  none_state
};

class Authentication : public harness::Single<ospf_authentication> {
 public:
  explicit Authentication(StoreOptions options = {})
      : Single(ospf_authentication_create, ospf_authentication_destroy, options) {}

  kelp_vstring *text(const char *value) {
    kelp_vstring *made = kelp_vstring_create(store, 0);
    store(kelp_vstring_assign, made, value, std::strlen(value));
    return made;
  }
  void drop(kelp_vstring *made) { kelp_vstring_destroy_internal(store, 0, made, 1); }
  std::uint32_t &selector() {
    return *reinterpret_cast<std::uint32_t *>(reinterpret_cast<char *>(object) + selector_offset);
  }
  void *&arm(const model::Field &field) {
    return *reinterpret_cast<void **>(reinterpret_cast<char *>(object) + offset_of(field));
  }
  std::uint8_t &state(State which) {
    return *(reinterpret_cast<std::uint8_t *>(object) + object_size + which);
  }
  void set_sa(kelp_vstring *arm) { store(ospf_authentication_sa_set, object, arm); }
  void set_key_chain(kelp_vstring *arm) { store(ospf_authentication_key_chain_set, object, arm); }
  void set_key_string(kelp_vstring *arm) { store(ospf_authentication_key_string_set, object, arm); }
  void set_crypto(ospf_crypto_algorithm *arm) {
    store(ospf_authentication_crypto_algorithm_val_set, object, arm);
  }
};

// Of the key chain, under the space 17.
void expect_pointer_selector_and_state(const WriteWatch &watch, const Authentication &choice) {
  const auto writes = watch.writes();
  ASSERT_EQ(writes.size(), 3u);
  const std::size_t places[] = {offset_of(fields::key_chain), selector_offset,
                                object_size + key_chain_state};
  const std::size_t lengths[] = {8, 4, 1};
  for (std::size_t n = 0; n < 3; ++n) {
    EXPECT_EQ(writes[n].offset_in(choice.object), static_cast<std::ptrdiff_t>(places[n])) << n;
    EXPECT_EQ(writes[n].length, lengths[n]) << n;
    EXPECT_EQ(writes[n].space_id, 17u) << n;
  }
}

// --- set ----------------------------------------------------------------------------------------

TEST(ChoiceSet, KeyStringAndAlgorithmTravelTogether) {
  Authentication choice;
  kelp_vstring *key = choice.text("secret");
  ospf_crypto_algorithm *algorithm = ospf_crypto_algorithm_create(choice.store, 0);
  choice.set_key_string(key);
  choice.set_crypto(algorithm);
  EXPECT_EQ(choice.store.err, 0u);
  EXPECT_EQ(choice.selector(), 2u);
  EXPECT_EQ(choice(ospf_authentication_key_string_get), key);
  EXPECT_EQ(choice(ospf_authentication_crypto_algorithm_val_get), algorithm);
}

TEST(ChoiceSet, EachArmSetsItsOwnSelector) {
  Authentication choice;
  choice.set_sa(choice.text("a"));
  EXPECT_EQ(choice.selector(), 0u);
  choice.set_key_chain(choice.text("b"));
  EXPECT_EQ(choice.selector(), 1u);
  choice.set_key_string(choice.text("c"));
  EXPECT_EQ(choice.selector(), 2u);
  choice(ospf_authentication_no_auth_set, u_int32_create(choice.store, 0));
  EXPECT_EQ(choice.selector(), 3u);
  choice.set_crypto(ospf_crypto_algorithm_create(choice.store, 0));
  EXPECT_EQ(choice.selector(), 2u);
  EXPECT_EQ(choice.store.err, 0u);
}

TEST(ChoiceSet, AnExistingArmIsForgottenAndNotReleased) {
  Authentication choice;
  kelp_vstring *first = choice.text("first");
  choice.set_sa(first);
  CallLog calls(choice.store);
  choice.set_sa(choice.text("second"));
  EXPECT_EQ(calls.count("obj_free"), 0u);
  EXPECT_STREQ(kelp_vstring_text(first), "first");
  EXPECT_NE(choice.arm(fields::sa), first);
  choice.drop(first);
}

TEST(ChoiceSet, AnnouncesThePointerThenTheSelectorThenTheState) {
  Authentication choice({.tracking = KELP_TRACKING_ON});
  kelp_vstring *key = choice.text("chain");
  WriteWatch watch(choice.store);
  ospf_authentication_key_chain_set(choice.store, 17, choice.object, key, &choice.store.err);
  expect_pointer_selector_and_state(watch, choice);
  EXPECT_EQ(choice.store.err, 0u);
  EXPECT_EQ(choice.state(key_chain_state), 2);
  EXPECT_EQ(choice.state(selector_state), 0) << "the selector's state is not marked";
}

TEST(ChoiceSet, AnUntrackedChoiceFailsWithArmAndSelectorSet) {
  Authentication choice;
  kelp_handle *tracking = choice.store.another_handle({.tracking = KELP_TRACKING_ON});
  kelp_vstring *key = choice.text("chain");
  TraceLog trace;
  ospf_authentication_key_chain_set(tracking, 0, choice.object, key, &choice.store.err);
  EXPECT_EQ(choice.store.err, KELP_ERR_INVALID);
  EXPECT_EQ(kelp_handle_last_error(tracking, nullptr), KELP_ERR_INVALID);
  EXPECT_EQ(trace.texts(), (Names{not_tracked}));
  EXPECT_TRUE(trace.has(3, not_tracked));
  EXPECT_EQ(choice.arm(fields::key_chain), key);
  EXPECT_EQ(choice.selector(), 1u);
}

TEST(ChoiceSet, AnUntrackedAlgorithmFailsWithArmAndSelectorSet) {
  Authentication choice({.tracking = KELP_TRACKING_ON});
  kelp_handle *untracked = choice.store.another_handle({});
  ospf_crypto_algorithm *algorithm = ospf_crypto_algorithm_create(untracked, 0);
  TraceLog trace;
  choice.set_crypto(algorithm);
  choice.expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(trace.texts(), (Names{arm_not_tracked}));
  EXPECT_TRUE(trace.has(3, arm_not_tracked));
  EXPECT_EQ(choice.arm(fields::crypto_algorithm_val), algorithm);
  EXPECT_EQ(choice.selector(), 2u);
  EXPECT_EQ(choice.state(crypto_state), 0);
}

TEST(ChoiceSet, ATrackedAlgorithmIsMarked) {
  Authentication choice({.tracking = KELP_TRACKING_ON});
  choice.set_crypto(ospf_crypto_algorithm_create(choice.store, 0));
  EXPECT_EQ(choice.store.err, 0u);
  EXPECT_EQ(choice.state(crypto_state), 2);
}

TEST(ChoiceSet, ACorruptTrackingModeEndsTheProcess) {
  Authentication choice({.tracking = KELP_TRACKING_ON});
  EXPECT_FATAL(
      {
        choice.store.handle()->sttr->sttr_mode = 1;
        choice.set_sa(nullptr);
      },
      "Corrupted KELP Handle");
  EXPECT_FATAL(
      {
        choice.store.handle()->sttr->sttr_mode = 1;
        choice(ospf_authentication_sa_get_detach);
      },
      "Corrupted KELP Handle");
}

TEST(ChoiceSetCr, UsesTheHandlesSpaceAndErrorWord) {
  Authentication choice;
  kelp_handle *handle = choice.store;
  handle->cr_space_id = 23;
  kelp_vstring *key = choice.text("chain");
  {
    WriteWatch watch(handle);
    EXPECT_EQ(ospf_authentication_key_chain_set_cr(handle, choice.object, key), 0u);
    ASSERT_EQ(watch.writes().size(), 2u);
    for (const auto &write : watch.writes()) EXPECT_EQ(write.space_id, 23u);
  }
  EXPECT_EQ(choice.selector(), 1u);
  handle->cr_err = 5;
  EXPECT_EQ(ospf_authentication_sa_set_cr(handle, choice.object, key), 5u);
  EXPECT_EQ(choice.arm(fields::sa), nullptr);
  handle->cr_err = 0;
}

// --- variants -----------------------------------------------------------------------------------

TEST(ChoiceVariant, ALaterArmIsRefusedToReadersAndMovesTheObjectUpForWriters) {
  Authentication choice;
  ospf_authentication *early = nullptr;
  choice.store.set_variant("ospf_authentication", 0);
  early = ospf_authentication_create(choice.store, 0);
  EXPECT_EQ(choice.store(ospf_authentication_no_auth_get, early), nullptr);
  EXPECT_EQ(choice.store.err, KELP_ERR_EPOCH);
  choice.store.err = 0;

  std::uint32_t *arm = u_int32_create(choice.store, 0);
  choice.store(ospf_authentication_no_auth_set, early, arm);
  EXPECT_EQ(choice.store.err, KELP_ERR_EPOCH) << "the domain keeps the object below the arm";
  choice.store.err = 0;
  EXPECT_EQ(choice.store(ospf_authentication_no_auth_get_detach, early), nullptr);
  EXPECT_EQ(choice.store.err, KELP_ERR_EPOCH);
  choice.store.err = 0;

  kelp_handle_clear_variant(choice.store, "ospf_authentication");
  choice.store(ospf_authentication_no_auth_set, early, arm);
  EXPECT_EQ(choice.store.err, 0u);
  EXPECT_EQ(kelp_get_instance_variant(early, 1, 0), 1);
  EXPECT_EQ(choice.store(ospf_authentication_no_auth_get, early), arm);
  ospf_authentication_destroy(choice.store, 0, early);
}

// --- get ----------------------------------------------------------------------------------------

TEST(ChoiceGet, AnArmThatIsNotSelectedIsReadable) {
  Authentication choice;
  kelp_vstring *sa = choice.text("a");
  choice.set_sa(sa);
  choice.set_key_chain(choice.text("b"));
  EXPECT_EQ(choice(ospf_authentication_sa_get), sa);
  EXPECT_EQ(choice.store.err, 0u);
}

TEST(ChoiceGet, PrimitiveArmsAreReadThroughTheirType) {
  Authentication choice;
  CallLog calls;
  EXPECT_EQ(choice(ospf_authentication_sa_get), nullptr);
  EXPECT_EQ(choice(ospf_authentication_no_auth_get), nullptr);
  EXPECT_EQ(choice(ospf_authentication_crypto_algorithm_val_get), nullptr);
  EXPECT_EQ(calls.count("kelp_vstring_get"), 1u);
  EXPECT_EQ(calls.count("u_int32_get"), 1u);
  EXPECT_EQ(choice.store.err, 0u);
}

// --- get_detach ---------------------------------------------------------------------------------

TEST(ChoiceDetach, AFreshObjectHasNoArmToGive) {
  Authentication choice;
  EXPECT_EQ(choice.selector(), 0u);
  EXPECT_EQ(choice.arm(fields::sa), nullptr);
  EXPECT_EQ(choice(ospf_authentication_sa_get_detach), nullptr);
  EXPECT_EQ(choice.store.err, 0u);
}

TEST(ChoiceDetach, AnArmThatIsNotSelectedStays) {
  Authentication choice({.tracking = KELP_TRACKING_ON});
  kelp_vstring *chain = choice.text("chain");
  choice.set_key_chain(chain);
  choice.set_key_string(choice.text("key"));
  WriteWatch watch(choice.store);
  EXPECT_EQ(choice(ospf_authentication_key_chain_get_detach), nullptr);
  EXPECT_EQ(choice.store.err, 0u);
  EXPECT_TRUE(watch.all().empty());
  EXPECT_EQ(choice.selector(), 2u);
  EXPECT_EQ(choice.arm(fields::key_chain), chain);
  EXPECT_EQ(choice.state(key_chain_state), 2);
}

TEST(ChoiceDetach, GivesTheArmAwayAndClearsSelectorAndState) {
  Authentication choice({.tracking = KELP_TRACKING_ON});
  kelp_vstring *chain = choice.text("chain");
  choice.set_key_chain(chain);
  WriteWatch watch(choice.store);
  EXPECT_EQ(
      ospf_authentication_key_chain_get_detach(choice.store, 17, choice.object, &choice.store.err),
      chain);
  EXPECT_EQ(choice.store.err, 0u);
  EXPECT_EQ(choice.arm(fields::key_chain), nullptr);
  EXPECT_EQ(choice.selector(), 0u);
  EXPECT_EQ(choice.state(key_chain_state), 0);
  expect_pointer_selector_and_state(watch, choice);
  choice.drop(chain);
}

TEST(ChoiceDetach, TakingTheKeyStringLeavesTheAlgorithmUnselected) {
  Authentication choice;
  kelp_vstring *key = choice.text("key");
  choice.set_key_string(key);
  choice.set_crypto(ospf_crypto_algorithm_create(choice.store, 0));
  EXPECT_EQ(choice(ospf_authentication_key_string_get_detach), key);
  EXPECT_EQ(choice.selector(), 0u);
  EXPECT_NE(choice.arm(fields::crypto_algorithm_val), nullptr);
  EXPECT_EQ(choice(ospf_authentication_crypto_algorithm_val_get_detach), nullptr);
  choice.drop(key);
}

TEST(ChoiceDetach, ANullObjectHasNothingAndIsNoError) {
  Store store;
  EXPECT_EQ(store(ospf_authentication_sa_get_detach, nullptr), nullptr);
  EXPECT_EQ(store.err, 0u);
}

TEST(ChoiceDetach, AnUntrackedChoiceLosesTheArmAndGivesNothing) {
  Authentication choice;
  kelp_handle *tracking = choice.store.another_handle({.tracking = KELP_TRACKING_ON});
  kelp_vstring *chain = choice.text("chain");
  choice.set_key_chain(chain);
  TraceLog trace;
  EXPECT_EQ(ospf_authentication_key_chain_get_detach(tracking, 0, choice.object, &choice.store.err),
            nullptr);
  EXPECT_EQ(choice.store.err, KELP_ERR_INVALID);
  EXPECT_EQ(kelp_handle_last_error(tracking, nullptr), KELP_ERR_INVALID);
  EXPECT_EQ(trace.texts(), (Names{not_tracked}));
  EXPECT_TRUE(trace.has(3, not_tracked));
  EXPECT_EQ(choice.arm(fields::key_chain), nullptr);
  EXPECT_EQ(choice.selector(), 0u);
  choice.drop(chain);
}

// --- the selector and the whole -----------------------------------------------------------------

TEST(ChoiceSelector, ChangingItByHandTouchesNoArm) {
  Authentication choice({.tracking = KELP_TRACKING_ON});
  kelp_vstring *chain = choice.text("chain");
  choice.set_key_chain(chain);
  choice(ospf_authentication_auth_type_selection_set_value, 2);
  EXPECT_EQ(choice.store.err, 0u);
  EXPECT_EQ(choice.selector(), 2u);
  EXPECT_EQ(choice.arm(fields::key_chain), chain);
  EXPECT_EQ(choice.state(key_chain_state), 2);
  EXPECT_EQ(choice.state(selector_state), 2);
}

TEST(ChoiceWhole, EqualSelectedArmsCompareEqualWhileOthersMakeTheHashDiffer) {
  Authentication choice;
  OWNED(choice.store, ospf_authentication, other);
  choice.set_key_chain(choice.text("unselected"));
  choice.set_sa(choice.text("sa"));
  choice.store(ospf_authentication_sa_set, other, choice.text("sa"));
  EXPECT_EQ(choice.store.err, 0u);
  EXPECT_EQ(ospf_authentication_compare(choice.object, other), 0);
  EXPECT_NE(ospf_authentication_hash(choice.object, 1), ospf_authentication_hash(other, 1));
}

TEST(ChoiceWhole, AFreshObjectMarshalsWithAnErrorForItsMissingArm) {
  Authentication choice;
  std::uint8_t buffer[256];
  choice.store(ospf_authentication_marshal, buffer, choice.object, sizeof(buffer));
  choice.expect_failure(KELP_ERR_NOT_FOUND);
}

}  // namespace
