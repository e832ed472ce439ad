// The argument signature of a message, read off its text.
#include "module/signature.hpp"

#include <gtest/gtest.h>

#include "module/message_text.hpp"

namespace {

using harbor::messages::signature_of;

TEST(Signature, IsTheNumberOfTheConversionsInTheText) {
  EXPECT_EQ(signature_of("failed: %s"), 0u);
  EXPECT_EQ(signature_of("plain words"), 1u);
  EXPECT_EQ(signature_of(""), 1u);
  EXPECT_EQ(signature_of("%u of %u"), 2u);
  EXPECT_EQ(signature_of("%d%d and %d"), 3u);
  EXPECT_EQ(signature_of("at %p: %s"), 4u);
  EXPECT_EQ(signature_of("%s/%s"), 5u);
  EXPECT_EQ(signature_of("number %d"), 6u);
  EXPECT_EQ(signature_of("%s took %u"), 7u);
}

TEST(Signature, IsNoneForACombinationThatNoEmitterTakes) {
  for (const char *text : {"%u", "%p", "%d %d", "%u %s", "%s %p", "%u %u %u", "%s %s %s",
                           "%d %d %d %d", "%x", "%5d", "%", "%s %", "100%%", "%s 100%%"}) {
    EXPECT_EQ(signature_of(text), std::nullopt) << text;
  }
}

TEST(Signature, OfAMessageIsThatOfItsFullText) {
  using namespace harbor::messages;
  for (std::uint32_t index = 0; index < type_message_count; ++index) {
    const Message message = type_message(index);
    EXPECT_EQ(message.signature, signature_of(message.text)) << message.text;
  }
  for (std::uint32_t index = 0; index < table_message_count; ++index) {
    const Message message = table_message(index);
    EXPECT_EQ(message.signature, signature_of(message.text)) << message.text;
  }
}

}  // namespace
