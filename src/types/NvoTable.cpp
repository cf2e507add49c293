#include "types/NvoTable.h"

#include "foundation/mXML.h"

namespace kolvane::internal {

namespace {

constexpr std::string_view kTypePrefix = "SNVT_";

}  // namespace

bool IsTypeNodeName(std::string_view name) {
  return name.substr(0, kTypePrefix.size()) == kTypePrefix;
}

std::string_view NodeIdentifier(std::string_view name) {
  const size_t underscore = name.find('_');
  return underscore == std::string_view::npos ? std::string_view() : name.substr(underscore + 1);
}

NvoTable::NvoTable(const pugi::xml_document& document) {
  // Inputs: the outputs under the root element that list a type (the listing rule).
  for (pugi::xml_node output : document.document_element().children()) {
    if (output.type() != pugi::node_element) continue;
    const std::string_view output_id = NodeIdentifier(output.name());
    for (pugi::xml_node child : output.children()) {
      if (child.type() == pugi::node_element && IsTypeNodeName(child.name())) {
        outputs_listing_[std::string(NodeIdentifier(child.name()))] += "," + std::string(output_id);
      }
    }
  }
  // Outputs: "NVOTable/SNVT_" + id as a tag-name lookup finds it, an "NVOTable" element at any
  // depth, first match in document order.
  for (pugi::xpath_node table : document.select_nodes("//NVOTable")) {
    for (pugi::xml_node output : table.node().children()) {
      if (output.type() != pugi::node_element || !IsTypeNodeName(output.name())) continue;
      std::string listed;
      for (pugi::xml_node child : output.children()) {
        if (child.type() != pugi::node_element) continue;
        const std::string_view base = mXML::BaseName(child);
        if (IsTypeNodeName(base)) {
          listed += (listed.empty() ? "" : ",") + std::string(NodeIdentifier(base));
        }
      }
      compatible_types_.try_emplace(std::string(NodeIdentifier(output.name())), listed);
    }
  }
}

std::string NvoTable::CompatibleTypes(std::string_view id) const {
  const auto it = compatible_types_.find(std::string(id));
  return it == compatible_types_.end() ? "" : it->second;
}

std::string NvoTable::OutputsListing(std::string_view id) const {
  const auto it = outputs_listing_.find(std::string(id));
  if (it == outputs_listing_.end()) return "";
  return it->second.size() > 2 ? it->second.substr(1) : it->second;
}

std::string NvoTable::CompatibleOutputs(std::string_view id) const {
  const auto it = outputs_listing_.find(std::string(id));
  return it == outputs_listing_.end() ? "" : it->second.substr(1);
}

}  // namespace kolvane::internal
