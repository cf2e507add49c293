#include "types/SnvtCatalogue.h"

#include <charconv>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "foundation/Globals.h"
#include "foundation/KeyedCollection.h"
#include "foundation/Text.h"

namespace kolvane::internal {

namespace {

constexpr std::string_view kTypePrefix = "SNVT_";

struct CatalogueIndex {
  // The document handed in, to know when another one is.
  std::shared_ptr<pugi::xml_document> document;
  // A copy of it, taken on the first lookup after it was handed in: the index points into the
  // copy, so a host that reloads or edits its own document cannot leave it reading freed nodes.
  pugi::xml_document copy;
  uint64_t generation = 0;
  bool built = false;
  // Every "SNVTS/SNVT_<id>" element, by identifier, in document order.
  std::unordered_map<std::string, std::vector<pugi::xml_node>> types;
  std::vector<std::string> identifiers;
  // Texts of type children already looked up: upper-cased name + "/" + identifier -> text.
  std::unordered_map<std::string, std::string> child_texts;
  // State name -> value text, built on the first state lookup.
  bool states_built = false;
  KeyedCollection<std::string> states;
};

thread_local CatalogueIndex index;
thread_local uint64_t stamp = 0;

void Build(CatalogueIndex& catalogue, const pugi::xml_document* document) {
  catalogue.types.clear();
  catalogue.identifiers.clear();
  catalogue.states_built = false;
  catalogue.states.Clear();
  catalogue.child_texts.clear();
  catalogue.copy.reset();
  if (document == nullptr) return;
  catalogue.copy.reset(*document);
  // Iterative pre-order walk: a deep document must not exhaust the stack.
  pugi::xml_node node = catalogue.copy.first_child();
  while (node) {
    if (node.type() == pugi::node_element) {
      std::string_view name = node.name();
      if (name.substr(0, kTypePrefix.size()) == kTypePrefix &&
          std::string_view(node.parent().name()) == "SNVTS") {
        std::string id(name.substr(kTypePrefix.size()));
        auto& matches = catalogue.types[id];
        if (matches.empty()) catalogue.identifiers.push_back(id);
        matches.push_back(node);
      }
    }
    if (node.first_child()) {
      node = node.first_child();
      continue;
    }
    while (node && !node.next_sibling()) node = node.parent();
    if (node) node = node.next_sibling();
  }
}

CatalogueIndex& Current() {
  const auto& document = Globals::SnvtCatalogDocument;
  const uint64_t generation = Globals::SnvtCatalogGeneration();
  if (!index.built || index.document != document || index.generation != generation) {
    Build(index, document.get());
    ++stamp;
    index.document = document;
    index.generation = generation;
    index.built = true;
  }
  return index;
}

const std::vector<pugi::xml_node>* Matches(std::string_view identifier) {
  const auto& types = Current().types;
  auto it = types.find(std::string(identifier));
  return it == types.end() ? nullptr : &it->second;
}

}  // namespace

pugi::xml_node FindSnvtElement(std::string_view identifier) {
  const auto* matches = Matches(identifier);
  return matches ? matches->front() : pugi::xml_node();
}

pugi::xml_node FindSnvtChild(std::string_view identifier, std::string_view child) {
  const auto* matches = Matches(identifier);
  if (matches == nullptr) return {};
  const std::string name(child);
  for (pugi::xml_node type : *matches) {
    if (pugi::xml_node found = type.child(name.c_str())) return found;
  }
  return {};
}

std::vector<std::string> SnvtIdentifiers() { return Current().identifiers; }

uint64_t CatalogueStamp() {
  Current();
  return stamp;
}

std::optional<int32_t> DeclaredLength(std::string_view identifier) {
  const std::string text(TrimBlanks(SnvtChildText(identifier, "LENGTH")));
  int32_t length = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
  if (text.empty() || error != std::errc() || end != text.data() + text.size() || length < 0 ||
      length > 65535) {
    return std::nullopt;
  }
  return length;
}

std::string SnvtChildText(std::string_view identifier, std::string_view upper_name) {
  CatalogueIndex& catalogue = Current();
  std::string key = std::string(upper_name) + "/" + std::string(identifier);
  if (const auto it = catalogue.child_texts.find(key); it != catalogue.child_texts.end()) {
    return it->second;
  }
  std::string text;
  for (pugi::xml_node child : FindSnvtElement(identifier).children()) {
    if (child.type() != pugi::node_comment && EqualsNoCase(child.name(), upper_name)) {
      text = child.text().get();
      break;
    }
  }
  return catalogue.child_texts.emplace(std::move(key), std::move(text)).first->second;
}

const std::string* FindStateValue(std::string_view name) {
  CatalogueIndex& catalogue = Current();
  if (!catalogue.states_built) {
    for (const std::string& id : catalogue.identifiers) {
      for (pugi::xml_node state : FindSnvtChild(id, "Enums").children()) {
        if (state.type() != pugi::node_element || catalogue.states.Contains(state.name())) {
          continue;
        }
        catalogue.states.Add(state.name(), state.text().get());
      }
    }
    catalogue.states_built = true;
  }
  return catalogue.states.Find(name);
}

}  // namespace kolvane::internal
