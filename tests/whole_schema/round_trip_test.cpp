// Every structure with every field at a value of its own, sent through its image, its XML form and
// clone: what arrives equals what was sent, field by field and by state, at both variants.
#include "encodings/xml_forms.hpp"
#include "whole_schema/distinct.hpp"

namespace whole_schema {

namespace {

// More room than the length tells: the state byte of a reference or an arm at the very end needs a
// room of two on both sides.
constexpr std::uint32_t spare = 2;

class RoundTrip : public testing::TestWithParam<Case> {
 protected:
  RoundTrip() { set_all_variants(store_, GetParam().variant); }

  bool tracked() const { return GetParam().tracking == KELP_TRACKING_ON; }

  // Calls act(type, source, distinct) for every structure and round, the source filled.
  template <typename Act>
  void for_each_filled(Targets *targets, Act act) {
    std::size_t types = 0;
    for (const Structure *type : harbor::model::structures) {
      ++types;
      for (std::uint32_t round = 0; round < rounds; ++round) {
        SCOPED_TRACE(std::string(type->name) + " round " + std::to_string(round));
        const Object source(store_, *type);
        Distinct distinct(store_, round, tracked(), targets);
        distinct.fill(source.get(), *type);
        act(*type, source.get(), distinct);
        EXPECT_EQ(store_.err, 0u);
        if (HasFailure()) return;
      }
    }
    EXPECT_EQ(types, 52u);
  }

  static bool holds_a_choice(const Structure &type) {
    for (const Field *field : type.fields) {
      if (field->kind == Kind::structure && holds_a_choice(*field->structure)) return true;
    }
    return type.is_choice();
  }

  // The state byte at the very end of an image that is read with the image's length as the room,
  // as clone does, is passed over when it is that of a reference or an arm.
  static const Field *stateless_in_a_clone(const Structure &type, const void *object) {
    const auto variant = static_cast<const std::int8_t *>(object)[8];
    const Field *last = nullptr;
    for (std::int8_t floor = 0; floor <= variant; ++floor) {
      for (const Field *field : type.fields) {
        if (field->since == floor) last = field;
      }
    }
    return last->kind == Kind::reference || last->kind == Kind::arm ? last : nullptr;
  }

  // The hash of a choice takes in the arms that are not selected, which do not travel.
  void expect_equal(const Structure &type, const void *source, const void *copy) {
    EXPECT_EQ(call<std::int32_t>(of(type, "compare"), source, copy), 0);
    if (holds_a_choice(type)) return;
    EXPECT_EQ(call<std::uint32_t>(of(type, "hash"), source, std::uint32_t{7}),
              call<std::uint32_t>(of(type, "hash"), copy, std::uint32_t{7}));
  }

  harness::Store store_{{.tracking = GetParam().tracking}};
  // References lead to tables that outlive the objects and end before the store.
  Targets targets_{store_};
};

}  // namespace

TEST_P(RoundTrip, AnImageBringsEveryFieldAndItsState) {
  for_each_filled(&targets_, [&](const Structure &type, void *source, Distinct &distinct) {
    const auto length = call<std::uint32_t>(of(type, "len"), store_.handle(), 0u, source);
    std::vector<std::uint8_t> image(length + spare);
    const auto written = call<std::uint32_t>(of(type, "marshal"), store_.handle(), 0u, image.data(),
                                             source, length + spare, &store_.err);
    EXPECT_LE(written, length);
    const encodings::Object<> copy(store_, type);
    const auto used =
        call<std::uint32_t>(of(type, "unmarshal"), store_.handle(), 0u, image.data(), copy.get(),
                            length + spare, std::uint32_t{0}, &store_.err);
    EXPECT_EQ(used, written);
    distinct.expect_arrived(copy.get(), type);
    expect_equal(type, source, copy.get());
  });
}

TEST_P(RoundTrip, ACloneHasEveryFieldAndItsState) {
  for_each_filled(&targets_, [&](const Structure &type, void *source, Distinct &distinct) {
    std::vector<std::uint8_t> work(
        call<std::uint32_t>(of(type, "len"), store_.handle(), 0u, source) + spare);
    void *copy = nullptr;
    call<void>(of(type, "clone"), store_.handle(), 0u, source, &copy, work.data(),
               static_cast<std::uint32_t>(work.size()), &store_.err);
    ASSERT_NE(copy, nullptr);
    const encodings::Object<> owner(store_, type, copy);
    distinct.expect_arrived(copy, type, stateless_in_a_clone(type, source));
    expect_equal(type, source, copy);
  });
}

// References have no place in XML, and what is read is set, which is what its state then says.
TEST_P(RoundTrip, XmlBringsEveryFieldThatItShows) {
  for_each_filled(nullptr, [&](const Structure &type, void *source, Distinct &distinct) {
    std::string text(256 * 1024, ' ');
    text.resize(call<std::uint32_t>(of(type, "to_xml"), store_.handle(), 0u, "x", text.data(),
                                    source, static_cast<std::uint32_t>(text.size()),
                                    std::uint32_t{0}, &store_.err));
    const encodings::Object<> copy(store_, type);
    encodings::read(store_, copy, text, &store_.err);
    EXPECT_EQ(store_.err, 0u) << text;
    if (!tracked()) distinct.expect_arrived(copy.get(), type);
    expect_equal(type, source, copy.get());
  });
}

INSTANTIATE_TEST_SUITE_P(Handles, RoundTrip, all_cases, name_of_case);

}  // namespace whole_schema
