// A process with its databases as rows that are not in the tree yet. LSAs at MaxAge, which routers
// hold no more, are left out.
#pragma once

#include <memory>

#include "ospf_tables/instance_rows.hpp"
#include "router_answers/router.hpp"

namespace router_answers {

// Throws LibraryFailure.
std::unique_ptr<ospf_tables::NewInstance> process_rows(ospf_tables::Session &session,
                                                       const Process &process);

}  // namespace router_answers
