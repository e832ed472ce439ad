// Hashes are kept by peers, so they may never change: the hash function against published values,
// and the hash of one filled object of each structure against a file that can be read and renewed.
#include <kelp/hash.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "whole_schema/distinct.hpp"

namespace whole_schema {

namespace {

constexpr std::uint32_t seed = 0x0BADF00D;
constexpr std::uint32_t round_of_golden = 0;

std::uint32_t hash_of(const Structure &type, const void *object) {
  return call<std::uint32_t>(of(type, "hash"), object, seed);
}

// Each type has values of its own, so that types with alike fields hash apart. References stay
// empty: what an OID holds differs from run to run.
void fill(kelp_handle *handle, void *object, const Structure &type) {
  const auto &all = harbor::model::structures;
  const auto place =
      static_cast<std::uint32_t>(std::find(all.begin(), all.end(), &type) - all.begin());
  Distinct(handle, round_of_golden, false, nullptr, place).fill(object, type);
}

std::uint32_t hash_of_filled(kelp_handle *handle, const Structure &type) {
  Object object(handle, type);
  fill(handle, object.get(), type);
  return hash_of(type, object.get());
}

}  // namespace

// Values that another implementation of the function publishes with its tests, for a seed of 0.
TEST(HashGolden, SuperFastHashGivesThePublishedValues) {
  const std::pair<const char *, std::uint32_t> published[] = {
      {"apple", 3738850110u},      {"beat", 3636226060u},     {"carrot", 3821074029u},
      {"daikon", 3489929160u},     {"eggplant", 3485772682u}, {"flower", 80540287u},
      {"green", 1805464076u},      {"hide", 1895033657u},     {"ick", 409795758u},
      {"jack", 979934958u},        {"kick", 3634096985u},     {"lime", 1284445480u},
      {"mushrooms", 2265380744u},  {"nectarine", 707972988u}, {"orange", 353823508u},
      {"peach", 1549198350u},      {"quant", 1327930172u},    {"ripen", 9304163u},
      {"strawberry", 4220749037u}, {"tang", 2493964934u},     {"up", 2777873870u},
      {"when", 1510213931u},       {"yellow", 2027828987u},   {"zip", 3395453351u},
  };
  for (const auto &[text, hash] : published) {
    const auto length = static_cast<std::uint32_t>(std::strlen(text));
    EXPECT_EQ(SuperFastHash(text, length, 0), hash) << text;
  }
}

TEST(HashGolden, EveryStructureHashesAsTheFileSays) {
  harness::Store store;
  set_all_variants(store, 1);
  std::string expected =
      "# <type>_hash of a filled object, one line for each structure; the seed is 0x0badf00d.\n";
  for (const Structure *type : harbor::model::structures) {
    char line[96];
    std::snprintf(line, sizeof line, "%.*s 0x%08x\n", static_cast<int>(type->name.size()),
                  type->name.data(), hash_of_filled(store, *type));
    expected += line;
  }
  std::ifstream file(HARBOR_ABI "/hashes.txt");
  ASSERT_TRUE(file) << "no " HARBOR_ABI "/hashes.txt; it should say:\n" << expected;
  std::stringstream held;
  held << file.rdbuf();
  EXPECT_TRUE(held.str() == expected) << "hashes.txt should say:\n" << expected;
}

// Where an object, its texts, arrays and arms lie does not count, and neither do its state bytes.
TEST(HashGolden, DoesNotDependOnWhereThingsLie) {
  harness::Store store;
  harness::Store tracking({.tracking = KELP_TRACKING_ON});
  for (const Structure *type : harbor::model::structures) {
    SCOPED_TRACE(type->name);
    Object first(store, *type);
    Object second(store, *type);
    fill(store, first.get(), *type);
    fill(store, second.get(), *type);
    EXPECT_EQ(hash_of(*type, first.get()), hash_of(*type, second.get()));
    EXPECT_EQ(hash_of(*type, first.get()), hash_of_filled(tracking, *type));
    EXPECT_EQ(call<std::int32_t>(of(*type, "compare"), first.get(), second.get()), 0);
  }
}

// A different value in any field gives a different hash; only a by-ref field stays out of this.
TEST(HashGolden, EveryPlainFieldCounts) {
  harness::Store store;
  for (const Structure *type : harbor::model::structures) {
    for (const Field *field : type->fields) {
      if (!has_value(*field)) continue;
      SCOPED_TRACE(std::string(type->name) + " " + std::string(field->name));
      if (field->kind == Kind::enumeration && field->enumeration->members.size() == 1) continue;
      Object object(store, *type);
      const std::uint32_t before = hash_of(*type, object.get());
      set_value(store, *type, *field, object.get(), some_value(*field), &store.err);
      EXPECT_EQ(store.err, 0u);
      EXPECT_NE(hash_of(*type, object.get()), before);
    }
  }
}

}  // namespace whole_schema
