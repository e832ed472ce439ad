// The messages as the file of the loaded library holds them: the one place where the tests of
// messages look one up. What the library was built from is not asked.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace messages {

enum class Side : std::uint8_t { types, tables };

// Whose messages go out under this identity; none for an identity of somebody else.
std::optional<Side> side_of(const std::uint8_t identity[16]);

std::uint32_t stored_count(Side side);

// index below stored_count().
const std::string &stored_text(Side side, std::uint32_t index);

// The digits of the emitter that the message is stored for.
std::string stored_signature(Side side, std::uint32_t index);

}  // namespace messages
