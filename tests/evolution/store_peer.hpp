// A peer that keeps rows in a store. It answers each step with one line: "ok", what was asked for,
// or "error" and what failed.
//
//   lock write|read [tracked], unlock, rollback
//   table TABLE NAME OBJECT KEY  the table of that name, made under the write lock, and by which
//                                object and key it is walked: what later steps work on
//   add PATH VALUE           a new row with that key, which is then the row worked on
//   row N                    the row at that place
//   value PATH VALUE         sets a field of the row
//   show                     the fields of the row
//   walk                     the variant of each row's last object, in the order of the table
//   end                      ends the row
//   move N                   gives the row what the row at that place holds
//   compare N                the order of the row and the row at that place, and whether their
//                            hashes are the same
//   refer FIELD TABLE NAME   has a reference of the row lead to that table, which is made
//   follow FIELD             how many rows the table has that a reference leads to
//   image, read DIGITS       the row's image; a row out of an image
//   collect                  runs the collector
//   check                    the findings of a look through the store
#pragma once

namespace evolution {

int keep_store(const char *file);

}  // namespace evolution
