// Where the cursors of a database stand, and who has opened them: a private database's in memory of
// the process, a store's in its lock file.
#pragma once

#include <cstdint>

#include "kelp/embed.h"
#include "store/layout.hpp"

namespace kelp::store {

class CursorPlaces {
 public:
  // Null when there are none yet, and with make without memory.
  virtual CursorTable *cursors(bool make) = 0;
  virtual std::uint32_t own_mark() const = 0;
  // Whether the process of that mark has ended.
  virtual bool has_ended(std::uint32_t mark) const = 0;
  // Keeps others from taking places. 0, or the code that error got.
  virtual std::int32_t lock_places(kelp_error *error) = 0;
  virtual void unlock_places() = 0;

 protected:
  ~CursorPlaces() = default;
};

}  // namespace kelp::store
