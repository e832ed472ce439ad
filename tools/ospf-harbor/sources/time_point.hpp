// Times of captures as people write them and as they are printed.
#pragma once

#include <string>

#include "ospf_decode/address.hpp"

namespace tool {

// "2026-11-22T08:33:27.125Z", the same without a date on the day of the first packet, seconds since
// 1970 such as "1795325057.3", or "+12.5" for seconds since the first packet. All in UTC. Throws
// UsageError.
ospf_decode::Time parse_time(const std::string &text, ospf_decode::Time first);

// "2026-11-22T08:33:27.125000Z", with as many digits as captures have.
std::string time_text(ospf_decode::Time time);

}  // namespace tool
