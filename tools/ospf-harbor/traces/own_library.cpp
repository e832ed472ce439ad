// Asks the loader.
#include "traces/own_library.hpp"

#include <dlfcn.h>

#include "ospf_tables/session.hpp"

namespace tool {

using namespace ospf_tables;

std::string own_library() {
  // By the symbol's own name: the address that a program takes of it may be one of the program's.
  void *symbol = dlsym(RTLD_DEFAULT, "ospf_harbor_oper_typeinfo_initialize");
  Dl_info info{};
  if (symbol == nullptr || dladdr(symbol, &info) == 0 || info.dli_fname == nullptr) {
    throw LibraryFailure("the library's file: the loader does not know it, name it with --library");
  }
  return info.dli_fname;
}

}  // namespace tool
