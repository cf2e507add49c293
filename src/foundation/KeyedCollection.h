#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "foundation/Error.h"
#include "foundation/Text.h"

namespace kolvane {

// An insertion-ordered collection of items, each under a text key compared without regard to
// ASCII case, reachable by key in constant time and by 1-based position. Errors as Visual Basic's
// Collection: 457 for a duplicate key, 5 for a missing key, 9 for a position out of range.
// A small collection (most are: fields, states, compatible lists) is searched in place; the key
// index is built once it grows past kIndexedFrom items.
template <class T>
class KeyedCollection {
 public:
  // Number of items.
  int32_t Count() const { return static_cast<int32_t>(entries_.size()); }

  // Adds item under key after the existing ones; error 457 when the key is taken.
  void Add(const std::string& key, T item) {
    if (index_.empty()) {
      if (Slot(key) != kNone) RaiseError(ErrorNumber::kDuplicateKey, key);
      entries_.push_back({key, std::move(item)});
      if (entries_.size() >= kIndexedFrom) BuildIndex();
      return;
    }
    auto [it, inserted] = index_.try_emplace(Fold(key), entries_.size());
    if (!inserted) RaiseError(ErrorNumber::kDuplicateKey, key);
    entries_.push_back({key, std::move(item)});
  }

  // The item under key; error 5 when there is none.
  const T& Item(std::string_view key) const {
    const T* item = Find(key);
    if (item == nullptr) RaiseError(ErrorNumber::kInvalidProcedureCall, std::string(key));
    return *item;
  }

  // The item at a 1-based position; error 9 when out of range.
  const T& ItemAt(int32_t position) const { return entries_[SlotAt(position)].item; }

  // The item under key, or nullptr; never raises.
  const T* Find(std::string_view key) const {
    const size_t slot = Slot(key);
    return slot == kNone ? nullptr : &entries_[slot].item;
  }

  // True when an item is stored under key.
  bool Contains(std::string_view key) const { return Slot(key) != kNone; }

  // Removes the item under key; error 5 when there is none.
  void Remove(std::string_view key) {
    const size_t slot = Slot(key);
    if (slot == kNone) RaiseError(ErrorNumber::kInvalidProcedureCall, std::string(key));
    Erase(slot);
  }

  // Removes the item at a 1-based position; error 9 when out of range.
  void RemoveAt(int32_t position) { Erase(SlotAt(position)); }

  // Removes every item.
  void Clear() {
    entries_.clear();
    index_.clear();
  }

  // The items in insertion order, each converted to U (e.g. a pointer to an interface).
  template <class U = T>
  std::vector<U> Values() const {
    std::vector<U> values;
    values.reserve(entries_.size());
    for (const Entry& entry : entries_) values.push_back(entry.item);
    return values;
  }

  // Iteration over the items in insertion order (key and item).
  struct Entry {
    std::string key;
    T item;
  };
  auto begin() const { return entries_.begin(); }
  auto end() const { return entries_.end(); }

 private:
  static constexpr size_t kIndexedFrom = 16;
  static constexpr size_t kNone = static_cast<size_t>(-1);

  static std::string Fold(std::string_view key) { return ToLower(key); }

  // The slot of the item under key, or kNone.
  size_t Slot(std::string_view key) const {
    if (index_.empty()) {
      for (size_t slot = 0; slot < entries_.size(); ++slot) {
        if (EqualsNoCase(entries_[slot].key, key)) return slot;
      }
      return kNone;
    }
    const auto it = index_.find(Fold(key));
    return it == index_.end() ? kNone : it->second;
  }

  void BuildIndex() {
    for (size_t slot = 0; slot < entries_.size(); ++slot) {
      index_.emplace(Fold(entries_[slot].key), slot);
    }
  }

  size_t SlotAt(int32_t position) const {
    if (position < 1 || position > Count()) {
      RaiseError(ErrorNumber::kSubscriptOutOfRange, std::to_string(position));
    }
    return static_cast<size_t>(position - 1);
  }

  void Erase(size_t slot) {
    const bool indexed = !index_.empty();
    if (indexed) index_.erase(Fold(entries_[slot].key));
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(slot));
    if (!indexed) return;
    for (auto& [key, position] : index_) {
      if (position > slot) --position;
    }
  }

  std::vector<Entry> entries_;
  std::unordered_map<std::string, size_t> index_;
};

}  // namespace kolvane
