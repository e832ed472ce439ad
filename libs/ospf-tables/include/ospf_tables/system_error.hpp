// What the system refused, in a plain sentence.
#pragma once

#include <cstring>
#include <string>

#include "ospf_tables/input_error.hpp"

namespace ospf_tables {

// "cannot open no.pcap: No such file or directory"
inline InputError cannot(const std::string &act, const std::string &what, const std::string &why) {
  return InputError("cannot " + act + " " + what + ": " + why);
}
inline InputError cannot(const std::string &act, const std::string &what, int error) {
  return cannot(act, what, std::string(std::strerror(error)));
}

}  // namespace ospf_tables
