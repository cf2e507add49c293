#pragma once

#include <string>

namespace kolvane::internal {

// What the collections ask of the profile that owns them.
class ProfileOwner {
 public:
  virtual ~ProfileOwner() = default;
  // Rebuilds every network variable's compatible type list.
  virtual void RebuildCompatibilityLists() = 0;
  // The set of configuration properties changed (added, removed); nothing to do by default.
  virtual void ConfigPropertiesChanged() {}
  // A configuration property that has a global key was renamed; nothing to do by default.
  virtual void ConfigPropertyRenamed(const std::string& global_key, const std::string& name) {
    (void)global_key;
    (void)name;
  }
};

}  // namespace kolvane::internal
