#include "foundation/mXML.h"

#include <sstream>

#include "../TestSupport.h"

namespace kolvane {
namespace {

std::string Raw(const pugi::xml_node& node) {
  std::ostringstream out;
  node.print(out, "", pugi::format_raw);
  return out.str();
}

TEST(mXMLTest, AppendXmlElementAddsTheLastChild) {
  pugi::xml_document doc;
  pugi::xml_node root = doc.append_child("r");
  root.append_child("first");
  EXPECT_FALSE(mXML::AppendXmlElement(doc, root, "none", "NoTextField").first_child());
  pugi::xml_node empty = mXML::AppendXmlElement(doc, root, "x:empty", "");
  EXPECT_EQ(empty.first_child().type(), pugi::node_pcdata);
  EXPECT_FALSE(empty.first_child().next_sibling());
  EXPECT_EQ(root.last_child(), mXML::AppendXmlElement(doc, root, "text", "a<b"));
  EXPECT_EQ(Raw(root), "<r><first/><none/><x:empty></x:empty><text>a&lt;b</text></r>");
  EXPECT_EQ(mXML::BaseName(empty), "empty");
  EXPECT_EQ(mXML::BaseName(root), "r");
  EXPECT_EQ(mXML::BoolToBit(true) + mXML::BoolToBit(false), "10");
}

TEST(mXMLTest, AppendXmlElementRejectsBadNamesAndForeignParents) {
  pugi::xml_document doc, other;
  pugi::xml_node root = doc.append_child("r");
  pugi::xml_node foreign = other.append_child("o");
  pugi::xml_node text = root.append_child(pugi::node_pcdata);
  const std::pair<pugi::xml_node, const char*> cases[] = {
      {root, "1abc"}, {root, "a b"},           {root, ""}, {root, "-a"},
      {foreign, "a"}, {pugi::xml_node(), "a"}, {text, "a"}};
  for (const auto& [parent, name] : cases) {
    EXPECT_EQ(test::ErrorNumberOf([&] { mXML::AppendXmlElement(doc, parent, name, "t"); }), 5)
        << name;
  }
  EXPECT_EQ(Raw(root), "<r></r>");
  EXPECT_EQ(Raw(foreign), "<o/>");
}

}  // namespace
}  // namespace kolvane
