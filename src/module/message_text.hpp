// The text of a message from its index: what the emitter stores and what tests look up. Forms are
// filled with the names that the row stands for.
#pragma once

#include <string>

#include "module/messages.hpp"

namespace harbor::messages {

struct Message {
  std::string text;
  Level level;
  std::uint32_t signature;
};

// index below type_message_count, or table_message_count.
Message type_message(std::uint32_t index);
Message table_message(std::uint32_t index);

}  // namespace harbor::messages
