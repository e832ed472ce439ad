// ospf-harbor: looks at real OSPF networks through the library's tables.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include "commands/commands.hpp"

namespace {

// Libraries that the program uses allocate in destructors, whose exceptions nobody can catch: a run
// that finds no memory there ends with its message and status all the same.
[[noreturn]] void end_run() {
  try {
    if (const std::exception_ptr thrown = std::current_exception()) std::rethrow_exception(thrown);
  } catch (const std::bad_alloc &) {
    std::fputs(tool::no_memory_message, stderr);
    _exit(1);
  } catch (...) {
  }
  std::abort();
}

}  // namespace

int main(int argc, char **argv) {
  std::set_terminate(end_run);
  return tool::run_program(argv + 1, argv + argc);
}
