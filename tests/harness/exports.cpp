// Exported functions by their composed names.
#include <dlfcn.h>

#include "harness/harness.hpp"

namespace harness {

void *exported(const std::string &name) {
  void *address = dlsym(RTLD_DEFAULT, name.c_str());
  EXPECT_NE(address, nullptr) << name << " is not exported";
  return address;
}

bool is_exported(const std::string &name) { return dlsym(RTLD_DEFAULT, name.c_str()) != nullptr; }

}  // namespace harness
