// The runtime's small work inline, as a process has it that replaces no function of the runtime.
#include "kelp/quick.hpp"

#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;
namespace quick = kelp::quick;

using NumberRule = quick::UnsignedRule<uint32_t>;

class QuickTest : public DatabaseTest {
 protected:
  static void hear(void *context, const void *, size_t, uint32_t, uint32_t) {
    ++*static_cast<uint32_t *>(context);
  }
  void put(uint32_t *address) {
    EXPECT_TRUE(quick::put_value<NumberRule>(handle, 0, address, 7, &err));
  }
  uint64_t writes() const { return kelp_handle_write_count(handle, KELP_WRITE_MODULE); }
};

TEST_F(QuickTest, HandlesWorkInlineWhereNoFunctionIsReplaced) {
  EXPECT_NE(handle->quick, nullptr);
  kelp_handle_set_inline(handle, 0);
  EXPECT_EQ(handle->quick, nullptr);
}

TEST_F(QuickTest, AWriteIsCountedAndAnObserverHearsOfItWhileItIsSet) {
  ASSERT_NE(handle->quick, nullptr);
  uint32_t value = 0;
  put(&value);
  EXPECT_EQ(value, 7u);
  EXPECT_EQ(writes(), 1u);
  uint32_t heard = 0;
  kelp_handle_set_write_observer(handle, hear, &heard);
  put(&value);
  EXPECT_EQ(heard, 1u);
  EXPECT_EQ(writes(), 2u);
  kelp_handle_set_write_observer(handle, nullptr, nullptr);
  put(&value);
  EXPECT_EQ(heard, 1u);
  EXPECT_EQ(writes(), 3u);
}

// A module of the trace that registers again and again.
TEST_F(QuickTest, AModuleRegistersAgainWhereItsIdOrALevelIsAnother) {
  ASSERT_NE(handle->quick, nullptr);
  uint32_t id = 0;
  uint32_t level = 0;
  uint64_t settled = 0;
  const auto registered = [&] {
    quick::register_module(handle, "quick_test", &id, &level, &settled);
    return id;
  };
  const uint32_t given = registered();
  EXPECT_NE(given, 0u);
  EXPECT_EQ(level, uint32_t{KELP_TRACE_INFORMATION});
  level = 77;
  registered();
  EXPECT_EQ(level, 77u) << "it was called though nothing moved";
  kelp_handle_set_inline(handle, 0);
  registered();
  EXPECT_EQ(level, uint32_t{KELP_TRACE_INFORMATION});
  kelp_handle_set_inline(handle, 1);
  ASSERT_EQ(kelp_trace_set_level("quick_test", KELP_TRACE_ERROR), 0);
  registered();
  EXPECT_EQ(level, uint32_t{KELP_TRACE_ERROR});
  ASSERT_EQ(kelp_trace_set_level(nullptr, KELP_TRACE_INFORMATION), 0);
  registered();
  EXPECT_EQ(level, uint32_t{KELP_TRACE_INFORMATION});
  id = 0;
  EXPECT_EQ(registered(), given);
}

TEST_F(QuickTest, WhatIsToBeSaidIsLeftToTheCall) {
  ASSERT_NE(handle->quick, nullptr);
  EXPECT_FALSE(quick::put_value<NumberRule>(handle, 0, nullptr, 7, &err));
  uint32_t value = 1;
  err = KELP_ERR_INVALID;
  EXPECT_FALSE(quick::put_value<NumberRule>(handle, 0, &value, 7, &err));
  EXPECT_EQ(value, 1u);
  EXPECT_EQ(writes(), 0u);
}

}  // namespace
