#pragma once

#include <cstdint>

namespace kolvane::internal {

// Counts changes of item names and of collection membership on this thread, so that an index of
// names knows when it must be rebuilt.
inline thread_local uint64_t item_names_stamp = 0;

// The current count.
inline uint64_t ItemNamesStamp() { return item_names_stamp; }

// A name was set, or an item was added to or removed from a collection.
inline void ItemNamesChanged() { ++item_names_stamp; }

}  // namespace kolvane::internal
