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
  const pugi::xml_node table = document.document_element();
  const bool named_table = std::string_view(table.name()) == "NVOTable";
  for (pugi::xml_node output : table.children()) {
    if (output.type() != pugi::node_element) continue;
    const std::string_view output_id = NodeIdentifier(output.name());
    std::string listed;
    for (pugi::xml_node child : output.children()) {
      if (child.type() != pugi::node_element) continue;
      if (IsTypeNodeName(child.name())) {
        outputs_listing_[std::string(NodeIdentifier(child.name()))] += "," + std::string(output_id);
      }
      const std::string_view base = mXML::BaseName(child);
      if (IsTypeNodeName(base)) {
        listed += (listed.empty() ? "" : ",") + std::string(NodeIdentifier(base));
      }
    }
    if (named_table && IsTypeNodeName(output.name())) {
      compatible_types_.try_emplace(std::string(output_id), listed);
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

}  // namespace kolvane::internal
