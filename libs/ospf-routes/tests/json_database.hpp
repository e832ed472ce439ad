// Databases as the scripts of the tests write them: JSON objects whose members are named as those
// of the structs are. For tests alone; input is trusted.
#pragma once

#include <nlohmann/json.hpp>

#include "ospf_routes/database.hpp"

namespace ospf_routes {

Database database_of(const nlohmann::json &json);

}  // namespace ospf_routes
