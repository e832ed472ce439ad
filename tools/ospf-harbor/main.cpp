// ospf-harbor: looks at real OSPF networks through the library's tables.
#include "commands/commands.hpp"

int main(int argc, char **argv) { return tool::run_program({argv + 1, argv + argc}); }
