// The numbers of every type that the schema fixes and no field shows: up to which field number a
// domain's variant answers for, and which types have a second variant.
#include <map>

#include "model/lists.hpp"
#include "types/replaced_call.hpp"
#include "whole_schema/erased.hpp"

namespace {

using whole_schema::call;

struct Bounds {
  std::uint32_t first;
  std::uint32_t second;  // 0 for a type of one variant
};

const std::map<std::string, Bounds> bounds{
    {"ospfv2_unknown_sub_tlv", {4, 0}},
    {"ospfv2_link_tlv", {11, 0}},
    {"ospfv2_unknown_tlv", {7, 0}},
    {"ospfv2_external", {4, 0}},
    {"ospfv2_topology", {2, 0}},
    {"ospfv2_link_key", {2, 0}},
    {"ospfv2_link", {2, 0}},
    {"link_scope_lsa_key", {2, 0}},
    {"lsa_options", {8, 0}},
    {"ospfv2_lsa_body_flags", {3, 0}},
    {"ospfv2_network", {3, 0}},
    {"ospfv2_lsa_body", {5, 7}},
    {"lsa_header", {6, 0}},
    {"ospfv2_header", {10, 12}},
    {"ospfv2_lsa", {2, 0}},
    {"ospfv3_lsa_options", {6, 0}},
    {"ospfv3_header", {3, 5}},
    {"ospfv3_lsa_body_flags", {4, 0}},
    {"ospfv3_network", {3, 5}},
    {"ospfv3_inter_area_prefix", {3, 0}},
    {"ospfv3_inter_area_router", {3, 5}},
    {"ospfv3_lsa_external_flags", {1, 0}},
    {"ospfv3_lsa_external", {8, 0}},
    {"ospfv3_nssa", {1, 0}},
    {"ospfv3_link_data", {4, 6}},
    {"ospfv3_intra_area_prefix", {4, 0}},
    {"ospfv3_lsa_body", {9, 12}},
    {"ospfv3_lsa", {2, 0}},
    {"ospfv3_link_key", {3, 0}},
    {"ospfv3_link", {2, 0}},
    {"ospfv3_prefix_list", {2, 0}},
    {"multi_topology", {1, 0}},
    {"link_scope_lsa", {14, 18}},
    {"area_scope_lsa_key", {2, 0}},
    {"area_scope_lsa", {11, 0}},
    {"area_scope_lsas", {2, 0}},
    {"link_scope_lsas", {3, 0}},
    {"ospf_static_neighbor", {3, 0}},
    {"ospf_nbr_stat", {2, 0}},
    {"ospf_neighbor", {5, 7}},
    {"fast_reroute", {3, 0}},
    {"multi_area", {2, 0}},
    {"ospf_crypto_algorithm", {8, 0}},
    {"ospf_authentication", {5, 7}},
    {"ttl_security", {2, 0}},
    {"ospf_interface", {28, 30}},
    {"ospf_area", {2, 4}},
    {"ospf_instance", {5, 0}},
    {"ospf", {3, 0}},
    {"ospf_instance_rev1_key", {2, 0}},
    {"ospf_instance_rev1", {3, 0}},
    {"ospf_rev1", {3, 0}},
};

std::int8_t variant_of_the_domain = 0;
std::int8_t give_variant(kelp_handle *, const kelp_domain *, const kelp_type_record *,
                         std::uint32_t *) {
  return variant_of_the_domain;
}

TEST(Thresholds, OfEveryStructureStandAsTheyAre) {
  harness::Store store;
  kelp_handle *handle = store;
  const harness::ReplacedCall domain("kelp_domain_lookup_variant", give_variant);
  ASSERT_EQ(std::size(harbor::model::structures), bounds.size());
  for (const auto *type : harbor::model::structures) {
    const std::string name(type->name);
    const Bounds bound = bounds.at(name);
    for (const int variant : {-1, 0, 1, 2}) {
      variant_of_the_domain = static_cast<std::int8_t>(variant);
      for (std::uint32_t field = 0; field < 40; ++field) {
        const int needed = field < bound.first                         ? -128
                           : bound.second == 0 || field < bound.second ? 1
                                                                       : 2;
        EXPECT_EQ(call<std::uint32_t>(name + "_is_valid_cr", handle,
                                      static_cast<const void *>(nullptr), field),
                  variant >= needed ? 1u : 0u)
            << name << ", field " << field << ", variant " << variant;
      }
      EXPECT_EQ(call<std::uint32_t>(name + "_is_valid_cr", handle,
                                    static_cast<const void *>(nullptr), UINT32_MAX),
                variant >= (bound.second == 0 ? 1 : 2) ? 1u : 0u)
          << name;
    }
  }
  EXPECT_EQ(handle->cr_err, 0u);
}

TEST(Thresholds, ThirteenTypesHaveASecondVariant) {
  std::size_t types = 0;
  std::size_t of_two = 0;
  const auto expect = [&](std::string_view type, bool two) {
    ++types;
    of_two += two ? 1 : 0;
    const std::string name = std::string(type) + "_variant_data_index_cap";
    const auto cap = [&](std::int32_t variant) {
      return static_cast<std::int8_t>(call<std::int32_t>(name, variant));
    };
    EXPECT_EQ(cap(0), 0) << name;
    EXPECT_EQ(cap(-1), -1) << name;
    EXPECT_EQ(cap(-128), -128) << name;
    EXPECT_EQ(cap(1), two ? 1 : 0) << name;
    EXPECT_EQ(cap(2), two ? 1 : 0) << name;
    EXPECT_EQ(cap(127), two ? 1 : 0) << name;
    EXPECT_EQ(cap(256), two ? 1 : 0) << name;
    // The low byte is negative: where it alone counts it passes.
    EXPECT_EQ(cap(0x180), two ? 1 : -128) << name;
    EXPECT_EQ(cap(INT32_MAX), two ? 1 : -1) << name;
  };
  for (const auto *type : harbor::model::structures) {
    expect(type->name, bounds.at(std::string(type->name)).second != 0);
  }
  for (const auto *type : harbor::model::all_enumerations) {
    expect(type->name, type->name == "ospf_auth_type");
  }
  for (const auto *type : harbor::model::all_flag_sets) expect(type->name, false);
  EXPECT_EQ(types, 61u);
  EXPECT_EQ(of_two, 13u);
}

}  // namespace
