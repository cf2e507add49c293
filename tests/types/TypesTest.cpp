#include <set>

#include "foundation/Numbers.h"
#include "types/CSNVTType.h"
#include "types/NvoTable.h"
#include "types/SnvtCatalogue.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

// What tells the kinds apart, as one text.
std::string Summary(const CSNVTType& t) {
  return t.ISNVType_GenType() + "|" + t.ISNVType_LUIType() + "|" + t.ISNVType_Units() + "|" +
         t.ISNVType_Min() + "|" + std::to_string(t.ISNVType_Length()) + "|" +
         t.ISNVType_InvalidValue() + "|" + t.ISNVType_Name();
}

// The declared length is a whole number of bytes, whatever the element's case or blanks; a
// text that is none, or out of range, declares nothing.
TEST(CatalogueLookupTest, DeclaredLengthReadsWholeBytesOnly) {
  ScopedCatalogue catalogue(R"(<SNVTS>
    <SNVT_a><LENGTH>4</LENGTH></SNVT_a><SNVT_b><length> 12 </length></SNVT_b>
    <SNVT_c><LENGTH>abc</LENGTH></SNVT_c><SNVT_d><LENGTH>2.5</LENGTH></SNVT_d>
    <SNVT_e><LENGTH>70000</LENGTH></SNVT_e><SNVT_f><LENGTH>-1</LENGTH></SNVT_f>
    <SNVT_g><LENGTH></LENGTH></SNVT_g><SNVT_h><TYPE>Struct</TYPE></SNVT_h></SNVTS>)");
  const std::pair<const char*, std::optional<int32_t>> cases[] = {
      {"a", 4}, {"b", 12}, {"c", std::nullopt}, {"d", std::nullopt}, {"e", std::nullopt},
      {"f", std::nullopt}, {"g", std::nullopt}, {"h", std::nullopt}, {"missing", std::nullopt}};
  for (const auto& [id, length] : cases) EXPECT_EQ(internal::DeclaredLength(id), length) << id;
}

TEST(CSNVTTypeTest, EachKindReadsItsOwnData) {
  ScopedCatalogue catalogue(R"(<SNVTS>
    <SNVT_t factor="3" K4Region="2.5"><NAME>t</NAME><!-- c --><TYPE>SignedNumeric</TYPE>
      <UNIT>K</UNIT><BACNETUNIT>kelvin</BACNETUNIT><MIN>-1.5</MIN><MAX>9</MAX><length>2</length>
      <A_COEF>2.5</A_COEF><B_COEF>3.5</B_COEF><C_COEF>-2.5</C_COEF><INVALIDVALUE>7</INVALIDVALUE>
    </SNVT_t>
    <SNVT_u><TYPE>UnsignedNumeric</TYPE><LENGTH>1</LENGTH></SNVT_u>
    <SNVT_b><TYPE>Bitfield</TYPE></SNVT_b>
    <SNVT_f><LENGTH>abc</LENGTH><A_COEF>1e999</A_COEF><TYPE>Float</TYPE><B_COEF>-1</B_COEF>
      <UNIT>m</UNIT></SNVT_f>
    <SNVT_s><TYPE>Textual</TYPE><UNIT>u</UNIT><MIN>0</MIN><LENGTH>31</LENGTH></SNVT_s>
    <SNVT_st><TYPE>Struct</TYPE><LENGTH>4</LENGTH><UNIT>u</UNIT><Fields><a>s</a></Fields></SNVT_st>
  </SNVTS>)");
  const auto t = TypeOf("t");
  EXPECT_EQ(Summary(*t), "SignedNumeric|Numeric|K|-1.5|2|7|t");
  EXPECT_EQ(t->ISNVType_ID() + "|" + t->ISNVType_BACnetUnits() + "|" + t->ISNVType_Max(),
            "t|kelvin|9");
  EXPECT_EQ(std::vector({t->ISNVType_Factor(), t->ISNVType_K4Region(), t->ISNVType_ACoef(),
                         t->ISNVType_BCoef(), t->ISNVType_CCoef()}),
            std::vector({3, 2, 2, 4, -2}));
  EXPECT_EQ(Summary(*TypeOf("u")), "UnsignedNumeric|Numeric|||1||");
  EXPECT_EQ(Summary(*TypeOf("b")), "Bitfield|Numeric|||0||");
  EXPECT_EQ(Summary(*TypeOf("f")), "Float|Float|m||0||");  // unreadable numbers are skipped
  EXPECT_EQ(TypeOf("f")->ISNVType_BCoef(), -1);
  EXPECT_EQ(Summary(*TypeOf("s")), "Textual|Textual|||31||");
  EXPECT_EQ(Summary(*TypeOf("st")), "Struct|Invalid|||0||");
}

TEST(CSNVTTypeTest, EnumerationsReadTheirStates) {
  ScopedCatalogue catalogue(R"(<SNVTS>
    <SNVT_e><TYPE>Enum</TYPE><LENGTH>2</LENGTH><INVALIDVALUE>0</INVALIDVALUE>
      <Enums><OFF>0</OFF><!-- c --><ON>1</ON><NUL>-1</NUL></Enums><NAME>e</NAME></SNVT_e>
    <SNVT_dup><TYPE>Enum</TYPE><Enums><OFF>0</OFF><AUS>0</AUS></Enums><NAME>dup</NAME></SNVT_dup>
  </SNVTS>)");
  const auto e = TypeOf("e");
  EXPECT_EQ(Summary(*e), "Enum|Logic|||1|255|e");
  EXPECT_EQ(e->ISNVType_EnumDesc(), "0,OFF;1,ON;-1,NUL;");
  EXPECT_EQ(e->GetState("1"), "(1,ON)");
  EXPECT_EQ(e->StateTexts(), (std::vector<std::string>{"(0,OFF)", "(1,ON)", "(-1,NUL)"}));
  EXPECT_EQ(ErrorNumberOf([&] { e->GetState("2"); }), 5);

  CSNVTType dup;
  EXPECT_EQ(ErrorNumberOf([&] { dup.Load("dup"); }), 0);
  EXPECT_EQ(dup.ISNVType_EnumDesc(), "0,OFF;0,AUS;");
  EXPECT_EQ(dup.ISNVType_Name(), "");  // reading ended at the duplicate
}

TEST(CSNVTTypeTest, BadTypesAreReportedAndMissingTypesKeepTheirId) {
  MessageBoxRecorder recorder;
  EXPECT_EQ(Summary(*TypeOf("none")), "||||0||");  // no catalogue at all
  ScopedCatalogue catalogue(R"(<SNVTS>
    <SNVT_x><TYPE>float</TYPE><LENGTH>2</LENGTH><NAME>x</NAME></SNVT_x>
    <SNVT_d><TYPE>Enum</TYPE><Enums><A>1</A></Enums></SNVT_d>
    <SNVT_d><TYPE>Float</TYPE><Enums><B>2</B></Enums></SNVT_d>
    <OTHER><SNVT_o><TYPE>Float</TYPE></SNVT_o></OTHER></SNVTS>)");
  EXPECT_EQ(TypeOf("d")->ISNVType_EnumDesc(), "1,A;");  // the first match wins
  for (std::string absent : {"missing", "D", "o"}) {
    EXPECT_EQ(TypeOf(absent)->ISNVType_ID() + Summary(*TypeOf(absent)), absent + "||||0||");
  }
  EXPECT_TRUE(recorder.boxes.empty());
  EXPECT_EQ(Summary(*TypeOf("x")), "float||||0||x");
  EXPECT_EQ(recorder.boxes, (Boxes{{"Error: SNVT_x has a bad type", 0, ""}}));
}

TEST(CSNVTTypeTest, HandingInACatalogueRefreshesLookups) {
  ScopedCatalogue first("<SNVTS><SNVT_a><TYPE>Float</TYPE><LENGTH>2</LENGTH></SNVT_a></SNVTS>");
  EXPECT_EQ(TypeOf("a")->ISNVType_Length(), 2);
  pugi::xml_node root = first.document->child("SNVTS");
  root.child("SNVT_a").child("LENGTH").text().set("8");
  root.append_child("SNVT_c").append_child("TYPE").text().set("Enum");
  first.HandIn();  // the same document, changed in place
  EXPECT_EQ(TypeOf("a")->ISNVType_Length(), 8);
  EXPECT_EQ(TypeOf("c")->ISNVType_LUIType(), "Logic");

  ScopedCatalogue second("<SNVTS><SNVT_a><TYPE>Float</TYPE><LENGTH>4</LENGTH></SNVT_a></SNVTS>");
  EXPECT_EQ(TypeOf("a")->ISNVType_Length(), 4);
  EXPECT_EQ(TypeOf("c")->ISNVType_GenType(), "");
}

// Length of a type: a structure's is the sum of its fields' lengths, recursively.
int32_t FieldLength(const std::string& id) {
  const auto type = TypeOf(id);
  if (type->ISNVType_GenType() != "Struct") return type->ISNVType_Length();
  int32_t sum = 0;
  for (pugi::xml_node field : internal::FindSnvtChild(id, "Fields").children()) {
    if (field.type() == pugi::node_element) sum += FieldLength(field.text().get());
  }
  return sum;
}

TEST(BundledCatalogueTest, EveryTypeLoadsAndStructureLengthsAddUp) {
  ScopedCatalogue catalogue(kBundledCatalogue, true);
  MessageBoxRecorder recorder;
  std::set<std::string> kinds;
  for (const auto& id : internal::SnvtIdentifiers()) {
    const auto type = TypeOf(id);
    EXPECT_EQ(type->ISNVType_Name(), id);
    kinds.insert(type->ISNVType_GenType());
    if (type->ISNVType_GenType() != "Struct") continue;
    for (pugi::xml_node field : internal::FindSnvtChild(id, "Fields").children()) {
      if (field.type() != pugi::node_element) continue;
      EXPECT_TRUE(internal::FindSnvtElement(field.text().get())) << id << "." << field.name();
    }
    EXPECT_EQ(ParseNumber(internal::FindSnvtChild(id, "LENGTH").text().get()), FieldLength(id))
        << id;
  }
  EXPECT_EQ(kinds, (std::set<std::string>{"Bitfield", "Enum", "Float", "SignedNumeric", "Struct",
                                          "Textual", "UnsignedNumeric"}));
  EXPECT_TRUE(recorder.boxes.empty());
}

TEST(StatesTest, StatesAreKeyedByTheirValue) {
  CStates states;
  EXPECT_EQ(ErrorNumberOf([&] { states.IStates_ToString(); }), 5);
  auto off = StateOf(0, "OFF"), on = StateOf(1, "ON"), duplicate = StateOf(1, "DUP");
  std::shared_ptr<iState> none;
  for (auto* state : {&off, &on, &duplicate, &none}) states.IStates_Add(*state);
  EXPECT_EQ(states.IStates_ToString(), "(0,OFF);(1,ON)");
  EXPECT_EQ(states.IStates_Item(1), on);
  EXPECT_EQ(states.IStates_Item(2), nullptr);
  states.IStates_Remove(none);
  states.IStates_Remove(StateOf(9, "ABSENT"));
  EXPECT_EQ(states.IStates_Count(), 2);
  states.IStates_Remove(StateOf(0, "OTHER"));
  EXPECT_EQ(states.IStates_ToString(), "(1,ON)");
  states.IStates_Add(off);
  EXPECT_EQ(states.IStates_NewEnum(), (std::vector{on, off}));

  // Values are keys, not positions.
  auto seven = StateOf(7, "SEVEN"), nul = StateOf(-1, "NUL"), lowest = StateOf(INT16_MIN, "LOW");
  for (auto* state : {&seven, &nul, &lowest}) states.IStates_Add(*state);
  states.IStates_Remove(on);
  EXPECT_EQ(states.IStates_Item(1), nullptr);
  EXPECT_EQ(states.IStates_Item(-1), nul);
  EXPECT_EQ(states.IStates_ToString(), "(0,OFF);(7,SEVEN);(-1,NUL);(-32768,LOW)");
}

// The count is 16-bit: a set of more states than that holds raises overflow, not a wrapped count.
TEST(StatesTest, CountPast16BitsRaisesOverflow) {
  CStates states;
  for (int32_t value = INT16_MIN; value <= INT16_MAX; ++value) {
    std::shared_ptr<iState> state = StateOf(static_cast<int16_t>(value), "S");
    states.IStates_Add(state);
    if (value == INT16_MIN + 32766) {
      EXPECT_EQ(states.IStates_Count(), 32767);
    }
  }
  EXPECT_EQ(ErrorNumberOf([&] { states.IStates_Count(); }), ErrorNumber::kOverflow);
}

std::shared_ptr<CNVOCompatibleSNVTs> ListOf(const std::string& text) {
  auto list = std::make_shared<CNVOCompatibleSNVTs>();
  list->ICompatibleSNVTs_Add(text);
  return list;
}

TEST(CNVOCompatibleSNVTsTest, AddSplitsAtCommasUntilAnEmptyToken) {
  int yields = 0;
  const YieldHandler previous = SetYieldHandler([&] { ++yields; });
  // text, identifiers, count, yields to the host
  // clang-format off
  const std::tuple<const char*, const char*, int32_t, int> cases[] = {
      {"temp_p", "temp_p", 1, 0}, {"temp_p,temp_f,temp_p", "temp_p,temp_f", 2, 4},
      {"temp_p,TEMP_P", "temp_p", 1, 3}, {"a,,b", "a", 1, 2}, {",a", "", 0, 1}, {"a,", "a", 1, 2},
      {"", "", 0, 0}, {"a,b,c", "a,b,c", 3, 4}};
  // clang-format on
  for (const auto& [text, ids, count, expected_yields] : cases) {
    yields = 0;
    auto list = ListOf(text);
    EXPECT_EQ(Identifiers(list), ids) << text;
    EXPECT_EQ(list->ICompatibleSNVTs_Count(), count) << text;
    EXPECT_EQ(yields, expected_yields) << text;
  }
  SetYieldHandler(previous);
  auto list = ListOf("a,b");
  list->ICompatibleSNVTs_Add("B,c");
  list->ICompatibleSNVTs_Add("A");
  EXPECT_EQ(Identifiers(list), "a,b,c");
}

TEST(CNVOCompatibleSNVTsTest, ItemsAreOneBasedAndRemoveNeedsAnEntry) {
  auto list = ListOf("a,b");
  EXPECT_EQ(list->ICompatibleSNVTs_Item(1)->ICompatibleSNVT_ID() +
                list->ICompatibleSNVTs_Item(2)->ICompatibleSNVT_ID(),
            "ab");
  for (int32_t position : {-1, 0, 3}) EXPECT_EQ(list->ICompatibleSNVTs_Item(position), nullptr);
  EXPECT_TRUE(list->ICompatibleSNVTs_Exists("A"));
  EXPECT_FALSE(list->ICompatibleSNVTs_Exists("c") || list->ICompatibleSNVTs_Exists(""));

  EXPECT_EQ(ErrorNumberOf([&] { list->ICompatibleSNVTs_Remove("c"); }), 5);
  EXPECT_EQ(Identifiers(list), "a,b");
  list->ICompatibleSNVTs_Remove("B");
  EXPECT_EQ(Identifiers(list), "a");
  EXPECT_EQ(list->ICompatibleSNVTs_Item(2), nullptr);
}

TEST(CNVOCompatibleSNVTsTest, MergeAndCloneMakeIndependentLists) {
  auto mine = ListOf("a,b,c");
  auto other = ListOf("c,x,A");
  const auto merged = NotNull(mine->ICompatibleSNVTs_Merge(other));
  EXPECT_EQ(Identifiers(merged) + "|" + Identifiers(mine) + "|" + Identifiers(other),
            "c,A|a,b,c|c,x,A");
  EXPECT_EQ(Identifiers(mine->ICompatibleSNVTs_Merge(ListOf(""))), "");
  EXPECT_EQ(ErrorNumberOf([&] { mine->ICompatibleSNVTs_Merge(nullptr); }), 91);

  const auto clone_of = [](const std::shared_ptr<CNVOCompatibleSNVTs>& list) {
    return NotNull(std::dynamic_pointer_cast<ICompatibleSNVTs>(list->IClonable_Clone()));
  };
  EXPECT_EQ(clone_of(ListOf(""))->ICompatibleSNVTs_Count(), 0);
  auto clone = clone_of(mine);
  EXPECT_EQ(Identifiers(clone), "a,b,c");
  clone->ICompatibleSNVTs_Add("d");
  mine->ICompatibleSNVTs_Remove("a");
  EXPECT_EQ(Identifiers(clone) + "|" + Identifiers(mine), "a,b,c,d|b,c");
}

TEST(CNVOCompatibleSNVTsTest, ToStringNeedsTheUtility) {
  EXPECT_EQ(ListOf("a,b")->ICompatibleSNVTs_ToString(), "a,b");
  EXPECT_EQ(ListOf("")->ICompatibleSNVTs_ToString(), "");
  ScopedComponent none("Moraface.Utility", {});
  EXPECT_EQ(ErrorNumberOf([] { ListOf("a")->ICompatibleSNVTs_ToString(); }), 429);
}

internal::NvoTable TableOf(const char* xml) {
  pugi::xml_document document;
  EXPECT_TRUE(document.load_string(xml));
  return internal::NvoTable(document);  // the document ends here: the table must not need it
}

TEST(NvoTableTest, TypeNodeNamesAndIdentifiers) {
  for (const char* name : {"SNVT_a", "SNVT_", "SNVT_temp_p"}) {
    EXPECT_TRUE(internal::IsTypeNodeName(name)) << name;
  }
  for (const char* name : {"snvt_a", "SNVT", "SNVTa", "xSNVT_a", "", "Snvt_a"}) {
    EXPECT_FALSE(internal::IsTypeNodeName(name)) << name;
  }
  const std::pair<const char*, const char*> ids[] = {
      {"SNVT_temp_p", "temp_p"}, {"abc", ""}, {"SNVT_", ""}, {"a_b_c", "b_c"}, {"_x", "x"}};
  for (const auto& [name, id] : ids) EXPECT_EQ(internal::NodeIdentifier(name), id) << name;
}

TEST(NvoTableTest, ListsBothWays) {
  const auto table = TableOf(
      "<NVOTable><SNVT_a><SNVT_5/><SNVT_x/></SNVT_a>"
      "<SNVT_12><SNVT_5/><snvt_5/><Other/></SNVT_12><SNVT_b><SNVT_a/></SNVT_b></NVOTable>");
  // Listed by the single output "a": ",a" is only 2 characters, so the comma stays.
  const std::tuple<const char*, const char*, const char*> cases[] = {
      // type, outputs listing it, types its output takes
      {"5", "a,12", ""}, {"x", ",a", ""}, {"a", ",b", "5,x"},
      {"12", "", "5"},   {"b", "", "a"},  {"missing", "", ""}};
  for (const auto& [id, outputs, compatible] : cases) {
    EXPECT_EQ(table.OutputsListing(id), outputs) << id;
    EXPECT_EQ(table.CompatibleTypes(id), compatible) << id;
  }
  const auto single = TableOf("<NVOTable><SNVT_5><SNVT_q/></SNVT_5></NVOTable>");
  EXPECT_EQ(single.OutputsListing("q") + "|" + single.CompatibleTypes("5"), ",5|q");
  EXPECT_EQ(TableOf("<NVOTable><SNVT_ab><SNVT_q/></SNVT_ab></NVOTable>").OutputsListing("q"), "ab");

  // The first of a repeated output wins.
  const auto repeated = TableOf(
      "<NVOTable><SNVT_out><SNVT_1/></SNVT_out><SNVT_out><SNVT_2/><SNVT_3/></SNVT_out>"
      "<SNVT_empty/></NVOTable>");
  EXPECT_EQ(repeated.CompatibleTypes("out"), "1");
  EXPECT_EQ(repeated.CompatibleTypes("empty"), "");
  EXPECT_EQ(repeated.OutputsListing("1") + "|" + repeated.OutputsListing("2"), "out|out");
}

}  // namespace
}  // namespace kolvane::test
