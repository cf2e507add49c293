#include "Json.h"

namespace kolvane::cli {

nlohmann::ordered_json& JsonWriter::Place(nlohmann::ordered_json value) {
  if (open_.empty()) {
    root_ = std::move(value);
    return root_;
  }
  nlohmann::ordered_json& container = *open_.back();
  if (container.is_array()) {
    container.push_back(std::move(value));
    return container.back();
  }
  nlohmann::ordered_json& member = container[key_];
  member = std::move(value);
  return member;
}

}  // namespace kolvane::cli
