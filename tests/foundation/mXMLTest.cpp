#include "foundation/mXML.h"

#include <sstream>

#include "../TestSupport.h"

namespace kolvane {
namespace {

using test::ErrorNumberOf;

std::string Raw(const pugi::xml_node& node) {
  std::ostringstream out;
  node.print(out, "", pugi::format_raw);
  return out.str();
}

TEST(mXMLTest, AppendXmlElementAddsTheLastChildWithOrWithoutText) {
  pugi::xml_document doc;
  pugi::xml_node root = doc.append_child("r");
  root.append_child("first");

  pugi::xml_node none = mXML::AppendXmlElement(doc, root, "none", "NoTextField");
  EXPECT_FALSE(none.first_child());
  pugi::xml_node empty = mXML::AppendXmlElement(doc, root, "x:empty", "");
  ASSERT_TRUE(empty.first_child());
  EXPECT_EQ(empty.first_child().type(), pugi::node_pcdata);
  EXPECT_STREQ(empty.first_child().value(), "");
  EXPECT_FALSE(empty.first_child().next_sibling());
  pugi::xml_node text = mXML::AppendXmlElement(doc, root, "text", "a<b");
  EXPECT_EQ(root.last_child(), text);
  EXPECT_EQ(Raw(root), "<r><first/><none/><x:empty></x:empty><text>a&lt;b</text></r>");
  EXPECT_EQ(mXML::BaseName(empty), "empty");
  EXPECT_EQ(mXML::BaseName(text), "text");
}

TEST(mXMLTest, AppendXmlElementRejectsBadNamesAndForeignParents) {
  pugi::xml_document doc;
  pugi::xml_node root = doc.append_child("r");
  pugi::xml_document other;
  pugi::xml_node foreign = other.append_child("o");

  for (const char* name : {"1abc", "a b", "", "-a", "a<b"}) {
    EXPECT_EQ(ErrorNumberOf([&] { mXML::AppendXmlElement(doc, root, name, "t"); }), 5) << name;
  }
  EXPECT_EQ(ErrorNumberOf([&] { mXML::AppendXmlElement(doc, foreign, "a", "t"); }), 5);
  EXPECT_EQ(ErrorNumberOf([&] { mXML::AppendXmlElement(doc, pugi::xml_node(), "a", "t"); }), 5);
  pugi::xml_node text = root.append_child(pugi::node_pcdata);
  EXPECT_EQ(ErrorNumberOf([&] { mXML::AppendXmlElement(doc, text, "a", "t"); }), 5);
  EXPECT_EQ(Raw(root), "<r></r>");
  EXPECT_EQ(Raw(foreign), "<o/>");
}

TEST(mXMLTest, BoolToBit) {
  EXPECT_EQ(mXML::BoolToBit(true), "1");
  EXPECT_EQ(mXML::BoolToBit(false), "0");
}

}  // namespace
}  // namespace kolvane
