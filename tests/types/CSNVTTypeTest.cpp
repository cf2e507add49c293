#include "types/CSNVTType.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

using test::LoadedType;

// What tells the kinds apart, as one text.
std::string Summary(const CSNVTType& t) {
  return t.ISNVType_GenType() + "|" + t.ISNVType_LUIType() + "|" + t.ISNVType_Units() + "|" +
         t.ISNVType_Min() + "|" + std::to_string(t.ISNVType_Length()) + "|" +
         t.ISNVType_InvalidValue() + "|" + t.ISNVType_Name();
}

TEST(CSNVTTypeTest, EachKindReadsItsOwnData) {
  test::ScopedCatalogue catalogue(R"(<SNVTS>
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
  const CSNVTType t = LoadedType("t");
  EXPECT_EQ(Summary(t), "SignedNumeric|Numeric|K|-1.5|2|7|t");
  EXPECT_EQ(t.ISNVType_ID() + "|" + t.ISNVType_BACnetUnits() + "|" + t.ISNVType_Max(),
            "t|kelvin|9");
  EXPECT_EQ(std::vector({t.ISNVType_Factor(), t.ISNVType_K4Region(), t.ISNVType_ACoef(),
                         t.ISNVType_BCoef(), t.ISNVType_CCoef()}),
            std::vector({3, 2, 2, 4, -2}));
  EXPECT_FALSE(t.ISNVType_HasField());
  EXPECT_EQ(Summary(LoadedType("u")), "UnsignedNumeric|Numeric|||1||");
  EXPECT_EQ(Summary(LoadedType("b")), "Bitfield|Numeric|||0||");
  EXPECT_EQ(Summary(LoadedType("f")), "Float|Float|m||0||");  // unreadable numbers are skipped
  EXPECT_EQ(LoadedType("f").ISNVType_BCoef(), -1);
  EXPECT_EQ(Summary(LoadedType("s")), "Textual|Textual|||31||");
  EXPECT_EQ(Summary(LoadedType("st")), "Struct|Invalid|||0||");
}

TEST(CSNVTTypeTest, EnumerationsReadTheirStates) {
  test::ScopedCatalogue catalogue(R"(<SNVTS>
    <SNVT_e><TYPE>Enum</TYPE><LENGTH>2</LENGTH><INVALIDVALUE>0</INVALIDVALUE>
      <Enums><OFF>0</OFF><!-- c --><ON>1</ON><NUL>-1</NUL></Enums><NAME>e</NAME></SNVT_e>
    <SNVT_dup><TYPE>Enum</TYPE><Enums><OFF>0</OFF><AUS>0</AUS></Enums><NAME>dup</NAME></SNVT_dup>
  </SNVTS>)");
  const CSNVTType e = LoadedType("e");
  EXPECT_EQ(Summary(e), "Enum|Logic|||1|255|e");
  EXPECT_EQ(e.ISNVType_EnumDesc(), "0,OFF;1,ON;-1,NUL;");
  EXPECT_EQ(e.GetState("1"), "(1,ON)");
  EXPECT_EQ(e.StateTexts(), (std::vector<std::string>{"(0,OFF)", "(1,ON)", "(-1,NUL)"}));
  EXPECT_EQ(test::ErrorNumberOf([&] { e.GetState("2"); }), 5);

  CSNVTType dup;
  EXPECT_EQ(test::ErrorNumberOf([&] { dup.Load("dup"); }), 0);
  EXPECT_EQ(dup.ISNVType_EnumDesc(), "0,OFF;0,AUS;");
  EXPECT_EQ(dup.ISNVType_Name(), "");  // reading ended at the duplicate
}

TEST(CSNVTTypeTest, BadTypesAreReportedAndMissingTypesKeepTheirId) {
  test::MessageBoxRecorder recorder;
  EXPECT_EQ(Summary(LoadedType("none")), "||||0||");  // no catalogue at all
  test::ScopedCatalogue catalogue(R"(<SNVTS>
    <SNVT_x><TYPE>float</TYPE><LENGTH>2</LENGTH><NAME>x</NAME></SNVT_x>
    <SNVT_d><TYPE>Enum</TYPE><Enums><A>1</A></Enums></SNVT_d>
    <SNVT_d><TYPE>Float</TYPE><Enums><B>2</B></Enums></SNVT_d>
    <OTHER><SNVT_o><TYPE>Float</TYPE></SNVT_o></OTHER></SNVTS>)");
  EXPECT_EQ(LoadedType("d").ISNVType_EnumDesc(), "1,A;");  // the first match wins
  for (std::string absent : {"missing", "D", "o"}) {
    EXPECT_EQ(LoadedType(absent).ISNVType_ID() + Summary(LoadedType(absent)), absent + "||||0||");
  }
  EXPECT_TRUE(recorder.boxes.empty());
  EXPECT_EQ(Summary(LoadedType("x")), "float||||0||x");
  EXPECT_EQ(recorder.boxes,
            (std::vector<test::MessageBoxRecorder::Box>{{"Error: SNVT_x has a bad type", 0, ""}}));
}

TEST(CSNVTTypeTest, HandingInACatalogueRefreshesLookups) {
  test::ScopedCatalogue first(
      "<SNVTS><SNVT_a><TYPE>Float</TYPE><LENGTH>2</LENGTH></SNVT_a></SNVTS>");
  EXPECT_EQ(LoadedType("a").ISNVType_Length(), 2);
  pugi::xml_node root = first.document->child("SNVTS");
  root.child("SNVT_a").child("LENGTH").text().set("8");
  root.append_child("SNVT_c").append_child("TYPE").text().set("Enum");
  first.HandIn();  // the same document, changed in place
  EXPECT_EQ(LoadedType("a").ISNVType_Length(), 8);
  EXPECT_EQ(LoadedType("c").ISNVType_LUIType(), "Logic");

  test::ScopedCatalogue second(
      "<SNVTS><SNVT_a><TYPE>Float</TYPE><LENGTH>4</LENGTH></SNVT_a></SNVTS>");
  EXPECT_EQ(LoadedType("a").ISNVType_Length(), 4);
  EXPECT_EQ(LoadedType("c").ISNVType_GenType(), "");
}

}  // namespace
}  // namespace kolvane
