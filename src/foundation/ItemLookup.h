#pragma once

#include <cstdint>
#include <string>

#include "foundation/ContinueOnError.h"
#include "foundation/KeyedCollection.h"
#include "foundation/Numbers.h"

namespace kolvane::internal {

// The item under key text, else the item at the 1-based position the text's leading number
// gives; nullptr when neither exists. Never raises.
template <class T>
const T* FindByKeyOrPosition(const KeyedCollection<T>& items, const std::string& text) {
  if (const T* item = items.Find(text)) return item;
  int32_t position = 0;
  if (ContinueOnError([&] { position = RoundToInt32(LeadingNumber(text)); }) != 0) return nullptr;
  if (position < 1 || position > items.Count()) return nullptr;
  return &items.ItemAt(position);
}

}  // namespace kolvane::internal
