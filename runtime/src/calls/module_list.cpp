// The list of the modules in the process. Modules enter and leave it themselves when the loader
// maps and unmaps them; nothing here writes to it.
#include "kelp/object.h"

extern "C" {
kelp_module_list kelp_module_tot_root = {0, nullptr, &kelp_module_tot_root.first};
}
