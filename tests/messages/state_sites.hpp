// The places that read the handle's tracking mode or ask whether an object has state bytes, each as
// an operation on an object of its type. The drivers run each of them under a fault.
#pragma once

#include <kelp/core.h>

#include <functional>
#include <string>
#include <vector>

namespace messages {

// When the fault comes: before the operation, or with one of the writes that it announces, for the
// places that lie behind another one.
enum class Fault : std::uint8_t { before, first_write, last_write_but_one };

using Preparation = std::function<void(kelp_handle *handle, void *object)>;
// Gives the error word that it ends with.
using Operation = std::function<std::uint32_t(kelp_handle *handle, void *object)>;

struct StateSite {
  std::string row;
  std::string type;
  Preparation prepare;  // before the fault
  Operation run;
  Fault fault = Fault::before;
};

inline void nothing(kelp_handle *, void *) {}

std::vector<StateSite> writers();             // of fields
std::vector<StateSite> state_readers();       // of state bytes
std::vector<StateSite> state_writers();       // of state bytes
std::vector<StateSite> transfers();           // of a whole object into another one
std::vector<StateSite> whole_object_sites();  // all other operations on whole objects

void initialize(const std::string &type, kelp_handle *handle, void *object);

}  // namespace messages
