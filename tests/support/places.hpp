// Where the project and what was built of it lie. The paths are strings of one small generated unit
// and no macros, so that tests compile to the same wherever the project stands.
#pragma once

#include <string>

namespace places {

std::string project();     // the folder of all sources
std::string recordings();  // of networks, for tests
std::string sample();      // of a network, for users
std::string library();     // libospf_harbor_oper as built
std::string tool();        // the program as built
std::string
failing_calls();  // what fails calls to the system, to be preloaded; empty where nothing can

}  // namespace places
