// Moving the content of structures: what is copied, who owns it afterwards, what state tracking
// adds, and the distances of nested state bytes.
#include <kelp/oid.h>

#include <cstring>

#include "model/lists.hpp"
#include "types/object_view.hpp"
#include "whole_schema/erased.hpp"

namespace {

using namespace harness;
using whole_schema::call;

constexpr std::ptrdiff_t offset_of(const model::Structure &type, const model::Field &field) {
  return static_cast<std::ptrdiff_t>(model::offset(type, field));
}

// Two sub-TLVs, the second with three octets.
class SubTlvs {
 public:
  explicit SubTlvs(StoreOptions options = {})
      : store(options),
        to(ospfv2_unknown_sub_tlv_create(store, 0)),
        from(ospfv2_unknown_sub_tlv_create(store, 0)) {
    const std::uint8_t octets[] = {1, 2, 3};
    store(ospfv2_unknown_sub_tlv_type_set_value, from, 4);
    store(ospfv2_unknown_sub_tlv_value_set_mem, from, octets, 3);
    EXPECT_EQ(store.err, 0u);
  }
  ~SubTlvs() {
    ospfv2_unknown_sub_tlv_destroy(store, 0, to);
    ospfv2_unknown_sub_tlv_destroy(store, 0, from);
  }
  static void *&octets(ospfv2_unknown_sub_tlv *object) {
    return at<void *>(object, model::offset(types::ospfv2_unknown_sub_tlv,
                                            fields::ospfv2_unknown_sub_tlv::value));
  }
  static std::uint32_t &count(ospfv2_unknown_sub_tlv *object) {
    return at<std::uint32_t>(object, model::offset(types::ospfv2_unknown_sub_tlv,
                                                   fields::ospfv2_unknown_sub_tlv::value_len));
  }
  static std::uint8_t *&element_states(ospfv2_unknown_sub_tlv *object) {
    return at<std::uint8_t *>(object, model::object_size(types::ospfv2_unknown_sub_tlv) + 8);
  }

  Store store;
  ospfv2_unknown_sub_tlv *to;
  ospfv2_unknown_sub_tlv *from;
};

TEST(TransferSet, AnArrayMovesByItsPointer) {
  SubTlvs tlvs;
  void *octets = SubTlvs::octets(tlvs.from);
  WriteWatch watch(tlvs.store);
  tlvs.store(ospfv2_unknown_sub_tlv_set, tlvs.to, tlvs.from);
  EXPECT_EQ(SubTlvs::octets(tlvs.to), octets);
  EXPECT_EQ(SubTlvs::count(tlvs.to), 3u);
  EXPECT_EQ(SubTlvs::octets(tlvs.from), nullptr);
  EXPECT_EQ(SubTlvs::count(tlvs.from), 0u);
  EXPECT_EQ(tlvs.store(ospfv2_unknown_sub_tlv_type_get_value, tlvs.from), 4);
  using namespace fields::ospfv2_unknown_sub_tlv;
  ASSERT_EQ(watch.writes().size(), 3u);
  EXPECT_EQ(watch.writes()[0].offset_in(tlvs.to), 0);
  EXPECT_EQ(watch.writes()[0].length, 40u);
  EXPECT_EQ(watch.writes()[1].offset_in(tlvs.from),
            offset_of(types::ospfv2_unknown_sub_tlv, value));
  EXPECT_EQ(watch.writes()[1].length, 8u);
  EXPECT_EQ(watch.writes()[2].offset_in(tlvs.from),
            offset_of(types::ospfv2_unknown_sub_tlv, value_len));
  EXPECT_EQ(watch.writes()[2].length, 4u);
}

TEST(TransferSet, OntoItselfOnlyTheVariantIsAdjusted) {
  Store store;
  OWNED(store, ospfv2_topology, object);
  CallLog log(store);
  store(ospfv2_topology_set, object, object);
  EXPECT_EQ(log.only({"kelplib_adjust_variant", "write_notify"}),
            (Names{"kelplib_adjust_variant"}));
  EXPECT_EQ(log.count("kelp_clear_last_error"), 0u);
  log.clear();
  store(ospfv2_topology_set, nullptr, nullptr);
  EXPECT_EQ(log.calls(), (Names{"kelplib_adjust_variant"}));
}

TEST(TransferSet, ASetErrorWordStopsNothing) {
  SubTlvs tlvs;
  tlvs.store.err = KELP_ERR_NO_ROOM;
  CallLog log(tlvs.store);
  tlvs.store(ospfv2_unknown_sub_tlv_set, tlvs.to, tlvs.from);
  EXPECT_EQ(log.count("kelp_clear_last_error"), 0u);
  EXPECT_EQ(SubTlvs::count(tlvs.to), 3u);
  EXPECT_EQ(SubTlvs::count(tlvs.from), 0u);
  EXPECT_EQ(tlvs.store.err, KELP_ERR_NO_ROOM);
}

TEST(TransferSet, TheHeaderComesAlong) {
  Store store;
  store.set_variant("ospf_area", 0);
  OWNED(store, ospf_area, from);
  store.set_variant("ospf_area", 1);
  OWNED(store, ospf_area, to);
  header(from.get()).obj_flags = OBJ_RA_DATA;
  store(ospf_area_set, to, from);
  EXPECT_EQ(header(to.get()).variant, 0);
  EXPECT_EQ(header(to.get()).created_variant, 0);
  EXPECT_EQ(header(to.get()).obj_flags, OBJ_RA_DATA);
}

TEST(TransferSet, OidsAreCopiedAndNoCountMoves) {
  Store store;
  OWNED(store, ospf_area, target);
  OWNED(store, ospf_area, from);
  OWNED(store, ospf_area, to);
  const auto oid = [](ospf_area *area) -> kelp_oid & {
    return at<kelp_reference>(area, model::offset(types::ospf_area, fields::ospf_area::interfaces))
        .oid;
  };
  oid(from) = store(kelp_handle_to_oid, target, KELP_OID_KIND_OBJECT, 1);
  store(ospf_area_set, to, from);
  EXPECT_EQ(kelp_handle_oid_references(store, target), 1);
  EXPECT_EQ(std::memcmp(&oid(to), &oid(from), sizeof(kelp_oid)), 0);
  EXPECT_EQ(kelp_oid_id_is_zero(oid(from).id), 0u);
}

TEST(TransferSet, TextsAndNestedArraysMoveToo) {
  Store store;
  ospfv2_lsa *from = ospfv2_lsa_create(store, 0);
  OWNED(store, ospfv2_lsa, to);
  const auto checksum = [](ospfv2_lsa *object) {
    return static_cast<kelp_vstring *>(
        place(place(object, types::ospfv2_lsa, fields::ospfv2_lsa::header), types::ospfv2_header,
              fields::ospfv2_header::checksum));
  };
  const auto network = [](ospfv2_lsa *object) {
    return static_cast<ospfv2_network *>(
        place(place(object, types::ospfv2_lsa, fields::ospfv2_lsa::lsa_body),
              types::ospfv2_lsa_body, fields::ospfv2_lsa_body::network));
  };
  store(kelp_vstring_assign, checksum(from), "0xbeef", 6);
  store(ospfv2_network_attached_router_set_value, network(from), 0, 5);
  store(ospfv2_lsa_set, to, from);
  EXPECT_EQ(store.err, 0u);
  EXPECT_STREQ(kelp_vstring_text(checksum(to)), "0xbeef");
  EXPECT_STREQ(kelp_vstring_text(checksum(from)), "");
  EXPECT_EQ(store(ospfv2_network_attached_router_get_value, network(to), 0), 5u);
  EXPECT_EQ(store(ospfv2_network_attached_router_num_get_value, network(from)), 0u);
  ospfv2_lsa_destroy(store, 0, from);
  EXPECT_EQ(store.live_allocations(), 3u);
}

TEST(TransferSet, ArmsMoveAndTheSourcesAreClearedAnnounced) {
  Store store;
  OWNED(store, ospf_authentication, from);
  OWNED(store, ospf_authentication, to);
  kelp_vstring *text = kelp_vstring_create(store, 0);
  store(ospf_authentication_key_chain_set, from, text);
  WriteWatch watch(store);
  store(ospf_authentication_set, to, from);
  using namespace fields::ospf_authentication;
  EXPECT_EQ(at<void *>(to.get(), model::offset(types::ospf_authentication, key_chain)), text);
  EXPECT_EQ(at<void *>(from.get(), model::offset(types::ospf_authentication, key_chain)), nullptr);
  EXPECT_EQ(store(ospf_authentication_auth_type_selection_get_value, from), 1u);
  Ranges cleared = ranges_in(watch, from);
  ASSERT_EQ(cleared.size(), 6u);
  cleared.erase(cleared.begin());
  const auto arm = [](const model::Field &field) {
    return std::pair<std::ptrdiff_t, std::size_t>(offset_of(types::ospf_authentication, field), 8);
  };
  EXPECT_EQ(cleared, (Ranges{arm(sa), arm(key_chain), arm(key_string), arm(crypto_algorithm_val),
                             arm(no_auth)}));
}

// --- under state tracking -----------------------------------------------------------------------

TEST(TransferState, ElementStatesMoveByTheirPointer) {
  SubTlvs tlvs({.tracking = KELP_TRACKING_ON});
  Store &store = tlvs.store;
  store(ospfv2_unknown_sub_tlv_value_state_flag_set, tlvs.from, 1, 9);
  std::uint8_t *states = SubTlvs::element_states(tlvs.from);
  WriteWatch watch(store);
  store(ospfv2_unknown_sub_tlv_set, tlvs.to, tlvs.from);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(SubTlvs::element_states(tlvs.to), states);
  EXPECT_EQ(SubTlvs::element_states(tlvs.from), nullptr);
  EXPECT_EQ(store(ospfv2_unknown_sub_tlv_value_state_flag_get, tlvs.to, 1), 9);
  EXPECT_EQ(store(ospfv2_unknown_sub_tlv_value_state_flag_whole_get, tlvs.to), 2);
  ASSERT_GE(watch.writes().size(), 3u);
  EXPECT_EQ(watch.writes()[1].offset_in(tlvs.to), 40);
  EXPECT_EQ(watch.writes()[1].length, 16u);
  EXPECT_EQ(watch.writes()[2].offset_in(tlvs.from), 48);
  EXPECT_EQ(watch.writes()[2].length, 8u);
}

TEST(TransferState, AnUntrackedSourceFailsAfterTheCopy) {
  Store store;
  kelp_handle *tracking = store.another_handle({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospf_area, from);
  ospf_area *to = ospf_area_create(tracking, 0);
  store(ospf_area_area_id_set_value, from, 77);
  area(to, types::ospf_area)[0] = 5;
  TraceLog trace;
  ospf_area_set(tracking, 0, to, from, &store.err);
  EXPECT_EQ(store.err, KELP_ERR_INVALID);
  EXPECT_EQ(kelp_handle_last_error(tracking, nullptr), KELP_ERR_INVALID);
  EXPECT_EQ(trace.texts(), (Names{"The object is not state tracked"}));
  EXPECT_EQ(trace.messages()[0].level, 3u);
  EXPECT_EQ(at<std::uint32_t>(to, model::offset(types::ospf_area, fields::ospf_area::area_id)),
            77u);
  EXPECT_EQ(area(to, types::ospf_area)[0], 5);
  ospf_area_destroy(store, 0, to);
}

TEST(TransferState, AnUntrackedSourceKeepsItsPointersSoThatBothHoldThem) {
  SubTlvs tlvs;
  kelp_handle *tracking = tlvs.store.another_handle({.tracking = KELP_TRACKING_ON});
  ospfv2_unknown_sub_tlv_set(tracking, 0, tlvs.to, tlvs.from, &tlvs.store.err);
  EXPECT_EQ(tlvs.store.err, KELP_ERR_INVALID);
  EXPECT_EQ(SubTlvs::octets(tlvs.to), SubTlvs::octets(tlvs.from));
  EXPECT_EQ(SubTlvs::count(tlvs.from), 3u);
  SubTlvs::octets(tlvs.to) = nullptr;
  SubTlvs::count(tlvs.to) = 0;
}

TEST(TransferState, SwitchedOffTrackingMovesNoStateButKeepsThePlace) {
  Store store({.tracking = KELP_TRACKING_OFF});
  OWNED(store, ospf_area, from);
  OWNED(store, ospf_area, to);
  header(to.get()).obj_flags = OBJ_STTR_RELOCATED;
  header(from.get()).obj_flags = OBJ_RA_DATA;
  WriteWatch watch(store);
  store(ospf_area_set, to, from);
  EXPECT_EQ(store.err, 0u);
  EXPECT_EQ(flags_of(to.get()), OBJ_RA_DATA | OBJ_STTR_RELOCATED);
  EXPECT_EQ(ranges_in(watch, to), (Ranges{{0, 128}}));
  header(from.get()).obj_flags = OBJ_STTR_RELOCATED;
  header(to.get()).obj_flags = 0;
  store(ospf_area_set, to, from);
  EXPECT_EQ(flags_of(to.get()), 0);
}

TEST(TransferState, WhatMemoryThereIsForStateStaysTheDestinationsOwn) {
  constexpr std::uint8_t bits = OBJ_STATE_TRACKED | OBJ_STTR_RELOCATED;
  for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_OFF}) {
    Store store({.tracking = tracking});
    ospf_area *from = ospf_area_create(store, 0);
    ospf_area *to = ospf_area_create(store, 0);
    for (const std::uint8_t theirs : {0, 8, 64, 72}) {
      for (const std::uint8_t own : {0, 8, 64, 72}) {
        header(from).obj_flags = static_cast<std::uint8_t>(theirs | OBJ_RA_DATA);
        header(to).obj_flags = static_cast<std::uint8_t>(own | OBJ_EMBEDDED);
        store(ospf_area_set, to, from);
        EXPECT_EQ(flags_of(to) & bits, own);
        EXPECT_EQ(flags_of(to) & ~bits, OBJ_RA_DATA);
      }
    }
    header(from).obj_flags = 0;
    header(to).obj_flags = 0;
    ospf_area_destroy(store, 0, from);
    ospf_area_destroy(store, 0, to);
  }
}

// A tracked and an untracked object of every type, in both directions, under handles that track and
// that do not: the memory behind an untracked object stays, and so do the flags of every object
// embedded in it.
class BetweenTrackings : public testing::TestWithParam<bool> {
 protected:
  using Flags = std::vector<std::uint8_t>;

  static void collect(void *object, const model::Structure &type, Flags &flags) {
    flags.push_back(flags_of(object) & (OBJ_STATE_TRACKED | OBJ_STTR_RELOCATED));
    for (const model::Field *field : type.fields) {
      if (field->kind == model::Kind::structure) {
        collect(place(object, type, *field), *field->structure, flags);
      }
    }
  }
  static Flags flags_within(void *object, const model::Structure &type) {
    Flags flags;
    collect(object, type, flags);
    return flags;
  }

  void transfer(kelp_handle *handle, const model::Structure &type, void *to, void *from,
                std::uint32_t *err) {
    using Set = void(kelp_handle *, std::uint32_t, void *, void *, std::uint32_t *);
    function<Set>(std::string(type.name) + "_set")(handle, 0, to, from, err);
  }
  void destroy(kelp_handle *handle, const model::Structure &type, void *object) {
    using Destroy = void(kelp_handle *, std::uint32_t, void *);
    function<Destroy>(std::string(type.name) + "_destroy")(handle, 0, object);
  }
  void *create(kelp_handle *handle, const model::Structure &type) {
    using Create = void *(kelp_handle *, std::uint32_t);
    return function<Create>(std::string(type.name) + "_create")(handle, 0);
  }

  Store store_{{.tracking = KELP_TRACKING_ON}};
  kelp_handle *tracking_ = store_;
  kelp_handle *plain_ = store_.another_handle({});
};

TEST_P(BetweenTrackings, ATrackedSourceLeavesAnUntrackedDestinationAsItIs) {
  kelp_handle *handle = GetParam() ? tracking_ : plain_;
  for (const model::Structure *type : model::structures) {
    SCOPED_TRACE(type->name);
    // The destination lies in a block of the tracked size, so that a write behind it is seen.
    const std::size_t size = model::object_size(*type);
    auto *to = static_cast<std::uint8_t *>(create(plain_, *type));
    auto *block = static_cast<std::uint8_t *>(plain_->obj_alloc(plain_->obj_pool, 0, size + 4096));
    std::memset(block, 0xAB, size + 4096);
    std::memcpy(block, to, size);
    void *from = create(tracking_, *type);
    std::memset(area(from, *type), 0, model::state_size(*type));
    const Flags before = flags_within(block, *type);
    EXPECT_EQ(before, Flags(before.size(), 0));
    transfer(handle, *type, block, from, &store_.err);
    EXPECT_EQ(store_.err, 0u);
    EXPECT_EQ(flags_within(block, *type), before);
    EXPECT_EQ(std::vector<std::uint8_t>(block + size, block + size + 4096),
              std::vector<std::uint8_t>(4096, 0xAB));
    plain_->obj_free(plain_->obj_pool, 0, block);
    destroy(tracking_, *type, from);
    destroy(plain_, *type, to);
  }
}

TEST_P(BetweenTrackings, AnUntrackedSourceLeavesATrackedDestinationItsArea) {
  kelp_handle *handle = GetParam() ? tracking_ : plain_;
  for (const model::Structure *type : model::structures) {
    SCOPED_TRACE(type->name);
    void *from = create(plain_, *type);
    void *to = create(tracking_, *type);
    *area(to, *type) = 5;
    const Flags before = flags_within(to, *type);
    EXPECT_EQ(before[0], OBJ_STATE_TRACKED);
    transfer(handle, *type, to, from, &store_.err);
    EXPECT_EQ(store_.err, GetParam() ? 22u : 0u);
    store_.err = 0;
    EXPECT_EQ(flags_within(to, *type), before);
    EXPECT_EQ(*area(to, *type), 5);
    destroy(plain_, *type, from);
    destroy(tracking_, *type, to);
  }
}

INSTANTIATE_TEST_SUITE_P(Handles, BetweenTrackings, testing::Bool(), [](const auto &info) {
  return std::string(info.param ? "Tracking" : "Plain");
});

// The elements arrive without state: that of the elements before does not stay for them, nor in an
// embedded object.
TEST(TransferState, ElementStatesOfTheDestinationGoWhereNoneCome) {
  Store store({.tracking = KELP_TRACKING_ON});
  kelp_handle *plain = store.another_handle({});
  const auto network = [](ospfv2_lsa_body *object) {
    return static_cast<ospfv2_network *>(
        place(object, types::ospfv2_lsa_body, fields::ospfv2_lsa_body::network));
  };
  const auto states = [&](ospfv2_lsa_body *object) {
    std::uint64_t address = 1;
    store(ospfv2_network_attached_router_state_flag_get_arr, network(object), &address);
    return address;
  };
  for (const bool tracking : {false, true}) {
    for (const bool tracked_source : {false, true}) {
      if (tracking && tracked_source) continue;  // then they come along
      SCOPED_TRACE(tracking);
      SCOPED_TRACE(tracked_source);
      ospfv2_lsa_body *from = ospfv2_lsa_body_create(tracked_source ? store : plain, 0);
      ospfv2_lsa_body *to = ospfv2_lsa_body_create(store, 0);
      ospfv2_network_attached_router_set_value(plain, 0, network(from), 60, 5, &store.err);
      store(ospfv2_network_attached_router_set_value, network(to), 1, 5);
      void *forgotten =
          at<void *>(network(to),
                     model::offset(types::ospfv2_network, fields::ospfv2_network::attached_router));
      EXPECT_NE(states(to), 0u);
      ospfv2_lsa_body_set(tracking ? store : plain, 0, to, from, &store.err);
      EXPECT_EQ(store.err, tracking ? 22u : 0u);
      store.err = 0;
      EXPECT_EQ(states(to), 0u);
      EXPECT_EQ(store(ospfv2_network_attached_router_num_get_value, network(to)), 61u);
      EXPECT_EQ(store(ospfv2_network_attached_router_state_flag_get, network(to), 60), 0);
      EXPECT_EQ(store.err, 0u);
      plain->obj_free(plain->obj_pool, 0, forgotten);
      if (tracking) {
        // Both hold the store.
        at<void *>(network(to), model::offset(types::ospfv2_network,
                                              fields::ospfv2_network::attached_router)) = nullptr;
        at<std::uint32_t>(
            network(to),
            model::offset(types::ospfv2_network, fields::ospfv2_network::attached_router_num)) = 0;
      }
      ospfv2_lsa_body_destroy(store, 0, from);
      ospfv2_lsa_body_destroy(store, 0, to);
    }
  }
}

TEST(TransferState, ACorruptedHandleEndsTheProcess) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospf_area, from);
  OWNED(store, ospf_area, to);
  EXPECT_FATAL(
      {
        store.handle()->sttr->sttr_mode = 0;
        store(ospf_area_set, to, from);
      },
      "Corrupted KELP Handle");
}

TEST(TransferState, ANestedObjectsStateGoesToItsBlockInTheOwner) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospf_interface, owner);
  OWNED(store, multi_area, source);
  store(multi_area_cost_set_value, source, 8);
  store(ospf_interface_multi_area_val_set, owner, source);
  EXPECT_EQ(store.err, 0u);
  const std::uint8_t *states = area(owner.get(), types::ospf_interface);
  EXPECT_EQ(states[4], 2);
  EXPECT_EQ(states[5], 0);
  EXPECT_EQ(states[6], 2);
  void *nested = place(owner.get(), types::ospf_interface, fields::ospf_interface::multi_area_val);
  EXPECT_EQ(flags_of(nested), OBJ_STATE_TRACKED | OBJ_STTR_RELOCATED);
}

TEST(TransferState, ChildrenFindTheirBlocksInTheDestinationsArea) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, link_scope_lsa, from);
  OWNED(store, link_scope_lsa, to);
  const auto network = [](link_scope_lsa *object) {
    void *lsa = place(object, types::link_scope_lsa, fields::link_scope_lsa::ospfv2_lsa_val);
    void *body = place(lsa, types::ospfv2_lsa, fields::ospfv2_lsa::lsa_body);
    return static_cast<ospfv2_network *>(
        place(body, types::ospfv2_lsa_body, fields::ospfv2_lsa_body::network));
  };
  store(ospfv2_network_attached_router_set_value, network(from), 1, 5);
  store(link_scope_lsa_set, to, from);
  ASSERT_EQ(store.err, 0u);
  const std::size_t block =
      model::state_block_place(types::link_scope_lsa, fields::link_scope_lsa::ospfv2_lsa_val) +
      model::state_block_place(types::ospfv2_lsa, fields::ospfv2_lsa::lsa_body) +
      model::state_block_place(types::ospfv2_lsa_body, fields::ospfv2_lsa_body::network);
  const auto *found = static_cast<const std::uint8_t *>(static_cast<void *>(network(to))) +
                      kelplib_get_sttr_offset(store, 0, network(to));
  EXPECT_EQ(found, area(to.get(), types::link_scope_lsa) + block);
  EXPECT_EQ(store(ospfv2_network_attached_router_state_flag_get, network(to), 1), 2);
  EXPECT_EQ(store(ospfv2_network_attached_router_state_flag_get, network(to), 0), 0);
  EXPECT_EQ(store(ospfv2_network_attached_router_num_get_value, network(from)), 0u);
}

TEST(TransferState, TheDestinationsDistancesAreToldAnew) {
  Store store({.tracking = KELP_TRACKING_ON});
  for (const model::Structure *type : model::structures) {
    const std::string name(type->name);
    using Create = void *(kelp_handle *, std::uint32_t);
    using Set = void(kelp_handle *, std::uint32_t, void *, void *, std::uint32_t *);
    using Remove = void(kelp_handle *, std::uint32_t, void *, std::uint32_t *);
    using Destroy = void(kelp_handle *, std::uint32_t, void *);
    void *from = function<Create>(name + "_create")(store, 0);
    void *to = function<Create>(name + "_create")(store, 0);
    function<Remove>(name + "_offset_remove")(store, 0, to, &store.err);
    function<Set>(name + "_set")(store, 0, to, from, &store.err);
    EXPECT_EQ(store.err, 0u) << name;
    for (const model::Field *field : type->fields) {
      if (field->kind != model::Kind::structure) continue;
      const auto *child = static_cast<const std::uint8_t *>(place(to, *type, *field));
      EXPECT_EQ(child + kelplib_get_sttr_offset(store, 0, child),
                area(to, *type) + model::state_block_place(*type, *field))
          << name << " " << field->name;
    }
    function<Destroy>(name + "_destroy")(store, 0, from);
    function<Destroy>(name + "_destroy")(store, 0, to);
  }
}

// --- post_copyout_cleanup, offset_update, offset_remove ------------------------------------------

TEST(TransferCleanup, ATypeThatOwnsNothingIsLeftAlone) {
  Store store;
  OWNED(store, ospfv2_topology, a);
  OWNED(store, ospfv2_topology, b);
  CallLog log(store);
  store(ospfv2_topology_post_copyout_cleanup, a, b);
  EXPECT_TRUE(log.calls().empty());
}

TEST(TransferCleanup, ChildrenAreSetInFieldOrder) {
  Store store;
  OWNED(store, ospfv3_lsa_external, a);
  OWNED(store, ospfv3_lsa_external, b);
  CallLog log(store);
  store(ospfv3_lsa_external_post_copyout_cleanup, a, b);
  EXPECT_EQ(
      log.only({"kelplib_adjust_variant", "kelp_vstring_set", "ip_address_set"}),
      (Names{"kelplib_adjust_variant", "kelp_vstring_set", "kelp_vstring_set", "ip_address_set"}));
}

TEST(TransferOffsets, TypesWithoutBlocksHaveEmptyOperations) {
  Store store;
  OWNED(store, ospf_area, object);
  CallLog log(store);
  ospf_area_offset_update(store, 0, object, area(object.get(), types::ospf_area));
  store(ospf_area_offset_remove, object);
  EXPECT_TRUE(log.calls().empty());
}

TEST(TransferOffsets, ABaseThatHasMovedIsToldAtAnyDepthAndForgottenAgain) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospfv3_lsa_body, object);
  void *network = place(object.get(), types::ospfv3_lsa_body, fields::ospfv3_lsa_body::network);
  void *options = place(network, types::ospfv3_network, fields::ospfv3_network::lsa_net_options);
  const std::uint32_t before = kelplib_get_sttr_offset(store, 0, options);
  std::uint8_t *moved = area(object.get(), types::ospfv3_lsa_body) + 4096;
  CallLog log(store);
  ospfv3_lsa_body_offset_update(store, 0, object, moved);
  // Nine children, and within them four sets of options and the flags, the external LSA and again
  // the flags of an external LSA.
  EXPECT_EQ(log.count("kelplib_update_sttr_offset"), 15u);
  EXPECT_EQ(kelplib_get_sttr_offset(store, 0, options), before + 4096);
  log.clear();
  store(ospfv3_lsa_body_offset_remove, object);
  EXPECT_EQ(log.count("kelp_hd_mapping_destroy"), 15u);
  EXPECT_EQ(kelplib_get_sttr_offset(store, 0, options), 0u);
  ospfv3_lsa_body_offset_update(store, 0, object, area(object.get(), types::ospfv3_lsa_body));
}

TEST(TransferOffsets, TheErrorWordIsPassedThrough) {
  Store store({.tracking = KELP_TRACKING_ON});
  OWNED(store, ospf_neighbor, object);
  void *stats = place(object.get(), types::ospf_neighbor, fields::ospf_neighbor::stats);
  const std::uint32_t distance = kelplib_get_sttr_offset(store, 0, stats);
  std::uint32_t err = KELP_ERR_NO_ROOM;
  CallLog log(store);
  ospf_neighbor_offset_remove(store, 0, object, &err);
  EXPECT_EQ(log.calls(), (Names{"kelp_hd_mapping_destroy"}));
  EXPECT_EQ(kelplib_get_sttr_offset(store, 0, stats), distance);
  EXPECT_EQ(err, KELP_ERR_NO_ROOM);
}

TEST(TransferOffsets, ExactlyTheTypesWithEmbeddedStructuresGiveDistances) {
  Store store({.tracking = KELP_TRACKING_ON});
  alignas(8) static char memory[4096];
  Names giving;
  for (const model::Structure *type : model::structures) {
    const std::string name(type->name);
    std::memset(memory, 0, sizeof memory);
    CallLog log(store);
    call<void>(name + "_offset_update", static_cast<kelp_handle *>(store), std::uint32_t{0},
               static_cast<void *>(memory), static_cast<void *>(memory + 3000));
    if (log.count("kelplib_update_sttr_offset") != 0) giving.push_back(name);
  }
  EXPECT_EQ(giving, (Names{"ospfv2_unknown_tlv", "ospfv2_lsa_body", "ospfv2_header", "ospfv2_lsa",
                           "ospfv3_header", "ospfv3_network", "ospfv3_inter_area_router",
                           "ospfv3_lsa_external", "ospfv3_nssa", "ospfv3_link_data",
                           "ospfv3_lsa_body", "ospfv3_lsa", "link_scope_lsa", "area_scope_lsa",
                           "ospf_neighbor", "ospf_interface"}));
}

}  // namespace
