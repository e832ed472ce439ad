// Registered bundle handlers.
#include "support.hpp"

namespace {

struct Heard {
  std::string bytes;
  std::uint64_t flags = 0;
  int calls = 0;
};

void listen(void *context, const void *bundle, std::size_t length, std::uint64_t flags) {
  auto *heard = static_cast<Heard *>(context);
  heard->bytes.assign(static_cast<const char *>(bundle), length);
  heard->flags = flags;
  ++heard->calls;
}

void *listener() { return reinterpret_cast<void *>(&listen); }

TEST(BundleTest, EachRegistrationIsCalledOnce) {
  Heard first;
  Heard second;
  tarn_comm_bundle_handler_register(listener(), &first, 1);
  tarn_comm_bundle_handler_register(listener(), &second, 2);
  tarn_comm_bundle_handler_register(listener(), &first, 3);
  EXPECT_EQ(kelp_bundle_deliver("abc", 3), 2u);
  EXPECT_EQ(first.bytes, "abc");
  EXPECT_EQ(first.flags, 3u);
  EXPECT_EQ(first.calls, 1);
  EXPECT_EQ(second.flags, 2u);
  tarn_comm_bundle_handler_unregister(listener(), &first, 0);
  EXPECT_EQ(kelp_bundle_deliver("d", 1), 1u);
  EXPECT_EQ(first.calls, 1);
  tarn_comm_bundle_handler_unregister(listener(), &second, 0);
  tarn_comm_bundle_handler_unregister(listener(), &second, 0);
  EXPECT_EQ(kelp_bundle_deliver("e", 1), 0u);
}

TEST(BundleTest, NullHandlerIsPassedOver) {
  tarn_comm_bundle_handler_register(nullptr, nullptr, 0);
  EXPECT_EQ(kelp_bundle_deliver("", 0), 0u);
}

}  // namespace
