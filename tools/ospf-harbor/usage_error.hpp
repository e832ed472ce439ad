// Words of a command line, or of a line of the shell, that cannot be meant: status 2, where wrong
// data has 1.
#pragma once

#include "ospf_tables/input_error.hpp"

namespace tool {

class UsageError : public ospf_tables::InputError {
  using InputError::InputError;
};

}  // namespace tool
