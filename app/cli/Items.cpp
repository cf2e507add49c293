#include "Items.h"

#include <algorithm>

#include "conversion/ValueCodec.h"
#include "foundation/ContinueOnError.h"
#include "foundation/Text.h"

namespace kolvane::cli {

namespace {

size_t EditDistance(const std::string& a, const std::string& b) {
  std::vector<size_t> row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i;
    for (size_t j = 1; j <= b.size(); ++j) {
      const size_t above = row[j];
      const bool same = ToLower(std::string(1, a[i - 1])) == ToLower(std::string(1, b[j - 1]));
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (same ? 0 : 1)});
      diagonal = above;
    }
  }
  return row[b.size()];
}

// "; did you mean "x" or "y"?" for the names closest to wanted.
std::string Closest(const std::string& wanted, const std::vector<ItemRef>& items) {
  std::vector<std::pair<size_t, std::string>> scored;
  for (const ItemRef& item : items) {
    const std::string name = item.path.substr(item.path.rfind('.') + 1);
    scored.emplace_back(EditDistance(wanted, name), item.path);
  }
  std::stable_sort(scored.begin(), scored.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::string text;
  for (size_t i = 0; i < scored.size() && i < 3; ++i) {
    if (scored[i].first > std::max<size_t>(3, wanted.size() / 2)) break;
    text += (text.empty() ? "; did you mean \"" : "\" or \"") + scored[i].second;
  }
  return text.empty() ? "" : text + "\"?";
}

}  // namespace

ItemRef FindItem(const IProfile& profile, const std::string& path, std::string& error) {
  std::vector<ItemRef> candidates = TopItems(profile);
  std::string rest = path;
  std::string where = "the profile";
  for (;;) {
    const size_t dot = rest.find('.');
    const std::string name = rest.substr(0, dot);
    const auto found = std::find_if(candidates.begin(), candidates.end(), [&](const ItemRef& item) {
      return item.path.substr(item.path.rfind('.') + 1) == name;
    });
    if (found == candidates.end()) {
      error = "no item \"" + name + "\" in " + where + Closest(name, candidates);
      return {};
    }
    if (dot == std::string::npos) return *found;
    rest = rest.substr(dot + 1);
    where = found->path;
    candidates = FieldsOf(*found);
  }
}

std::string ValueOf(const ItemRef& item) {
  if (item.fields) {
    return std::string(TrimBlanks(codec::StructureText(
        *item.fields, [](const IField& field) { return field.IField_Value(); })));
  }
  return app::LeafValueOf(item);
}

}  // namespace kolvane::cli
