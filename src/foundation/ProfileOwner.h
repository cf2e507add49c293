#pragma once

namespace kolvane::internal {

// What the collections ask of the profile that owns them.
class ProfileOwner {
 public:
  virtual ~ProfileOwner() = default;
  // Rebuilds every network variable's compatible type list.
  virtual void RebuildCompatibilityLists() = 0;
};

}  // namespace kolvane::internal
