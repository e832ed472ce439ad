// Scopes and names of LSA types.
#include "lsa_vocabulary/types.hpp"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

using namespace lsa_vocabulary;

TEST(Scopes, OfVersion2) {
  const std::map<int, Scope> scopes = {{1, Scope::area},  {2, Scope::area}, {3, Scope::area},
                                       {4, Scope::area},  {5, Scope::as},   {6, Scope::area},
                                       {7, Scope::area},  {8, Scope::as},   {9, Scope::link},
                                       {10, Scope::area}, {11, Scope::as}};
  for (int type = 0; type <= 0xffff; ++type) {
    const std::optional<Scope> scope = scope_of(2, static_cast<std::uint16_t>(type));
    ASSERT_EQ(scope.has_value(), scopes.contains(type)) << type;
    if (scope) {
      EXPECT_EQ(*scope, scopes.at(type)) << type;
    }
  }
}

TEST(Scopes, OfVersion3) {
  EXPECT_EQ(scope_of(3, 0x2001), Scope::area);
  EXPECT_EQ(scope_of(3, 0x4005), Scope::as);
  EXPECT_EQ(scope_of(3, 0x0008), Scope::link);
  EXPECT_EQ(scope_of(3, 0x6001), std::nullopt) << "the reserved scope";
  EXPECT_EQ(scope_of(3, 0x7123), std::nullopt);
  EXPECT_EQ(scope_of(3, 0xa123), Scope::area) << "unknown, with the U bit";
  EXPECT_EQ(scope_of(3, 0x2123), Scope::link) << "unknown, without the U bit";
}

// The row of an OSPFv3 type and the type's own bits say one scope.
TEST(Scopes, RowsAgreeWithTheNumbers) {
  for (const LsaType &type : lsa_types) {
    EXPECT_EQ(scope_of(type.version, type.number), type.scope) << type.long_name;
  }
}

TEST(Types, AreFoundAndNamedOnce) {
  std::set<std::pair<int, int>> numbers;
  std::set<std::pair<int, std::string>> names;
  for (const LsaType &type : lsa_types) {
    EXPECT_EQ(find_type(type.version, type.number), &type);
    EXPECT_TRUE(numbers.insert({type.version, type.number}).second) << type.long_name;
    EXPECT_TRUE(names.insert({type.version, type.name}).second) << type.name;
  }
  EXPECT_EQ(find_type(2, lsa3_router), nullptr);
  EXPECT_EQ(find_type(3, lsa2_router), nullptr);
}
