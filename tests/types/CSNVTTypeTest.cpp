#include "types/CSNVTType.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

CSNVTType Loaded(const std::string& identifier) {
  CSNVTType type;
  type.Load(identifier);
  return type;
}

TEST(CSNVTTypeTest, NumericKindsReadTheirData) {
  test::ScopedCatalogue catalogue(R"(<SNVTS>
    <SNVT_t factor="3" K4Region="2"><NAME>t</NAME><!-- c --><TYPE>SignedNumeric</TYPE>
      <UNIT>K</UNIT><BACNETUNIT>kelvin</BACNETUNIT><MIN>-1.5</MIN><MAX>9</MAX><length>2</length>
      <A_COEF>2.5</A_COEF><B_COEF>3.5</B_COEF><C_COEF>-2.5</C_COEF><INVALIDVALUE>7</INVALIDVALUE>
    </SNVT_t>
    <SNVT_u><TYPE>UnsignedNumeric</TYPE></SNVT_u><SNVT_b><TYPE>Bitfield</TYPE></SNVT_b>
    <SNVT_f><TYPE>Float</TYPE></SNVT_f>
    <SNVT_bad FACTOR="2.5"><LENGTH>abc</LENGTH><A_COEF>1e999</A_COEF><TYPE>Float</TYPE>
      <B_COEF>-1</B_COEF><UNIT>m</UNIT></SNVT_bad>
  </SNVTS>)");
  const CSNVTType t = Loaded("t");
  EXPECT_EQ(t.ISNVType_ID(), "t");
  EXPECT_EQ(t.ISNVType_Name(), "t");
  EXPECT_EQ(t.ISNVType_Factor(), 3);
  EXPECT_EQ(t.ISNVType_K4Region(), 2);
  EXPECT_EQ(t.ISNVType_GenType(), "SignedNumeric");
  EXPECT_EQ(t.ISNVType_LUIType(), "Numeric");
  EXPECT_EQ(t.ISNVType_Units(), "K");
  EXPECT_EQ(t.ISNVType_BACnetUnits(), "kelvin");
  EXPECT_EQ(t.ISNVType_Min(), "-1.5");
  EXPECT_EQ(t.ISNVType_Max(), "9");
  EXPECT_EQ(t.ISNVType_Length(), 2);
  EXPECT_EQ(t.ISNVType_ACoef(), 2);
  EXPECT_EQ(t.ISNVType_BCoef(), 4);
  EXPECT_EQ(t.ISNVType_CCoef(), -2);
  EXPECT_EQ(t.ISNVType_InvalidValue(), "7");
  EXPECT_EQ(t.ISNVType_EnumDesc(), "");
  EXPECT_FALSE(t.ISNVType_HasField());

  EXPECT_EQ(Loaded("u").ISNVType_LUIType(), "Numeric");
  EXPECT_EQ(Loaded("b").ISNVType_LUIType(), "Numeric");
  EXPECT_EQ(Loaded("f").ISNVType_LUIType(), "Float");

  const CSNVTType bad = Loaded("bad");  // unreadable numbers are skipped one by one
  EXPECT_EQ(bad.ISNVType_Factor(), 2);
  EXPECT_EQ(bad.ISNVType_Length(), 0);
  EXPECT_EQ(bad.ISNVType_ACoef(), 0);
  EXPECT_EQ(bad.ISNVType_BCoef(), -1);
  EXPECT_EQ(bad.ISNVType_Units(), "m");
}

TEST(CSNVTTypeTest, TextualAndStructReadLittle) {
  test::ScopedCatalogue catalogue(R"(<SNVTS>
    <SNVT_s><TYPE>Textual</TYPE><UNIT>u</UNIT><MIN>0</MIN><LENGTH>31</LENGTH>
      <INVALIDVALUE>x</INVALIDVALUE></SNVT_s>
    <SNVT_st><NAME>st</NAME><TYPE>Struct</TYPE><LENGTH>4</LENGTH><UNIT>u</UNIT>
      <Fields><a>s</a></Fields></SNVT_st>
  </SNVTS>)");
  const CSNVTType text = Loaded("s");
  EXPECT_EQ(text.ISNVType_LUIType(), "Textual");
  EXPECT_EQ(text.ISNVType_Length(), 31);
  EXPECT_EQ(text.ISNVType_Units(), "");
  EXPECT_EQ(text.ISNVType_Min(), "");
  EXPECT_EQ(text.ISNVType_InvalidValue(), "");

  const CSNVTType record = Loaded("st");
  EXPECT_EQ(record.ISNVType_GenType(), "Struct");
  EXPECT_EQ(record.ISNVType_LUIType(), "Invalid");
  EXPECT_EQ(record.ISNVType_Name(), "st");
  EXPECT_EQ(record.ISNVType_Length(), 0);
  EXPECT_EQ(record.ISNVType_Units(), "");
  EXPECT_FALSE(record.ISNVType_HasField());
}

TEST(CSNVTTypeTest, EnumerationsReadTheirStates) {
  test::ScopedCatalogue catalogue(R"(<SNVTS>
    <SNVT_e><TYPE>Enum</TYPE><LENGTH>2</LENGTH><INVALIDVALUE>0</INVALIDVALUE>
      <Enums><OFF>0</OFF><!-- c --><ON>1</ON><NUL>-1</NUL></Enums><NAME>e</NAME></SNVT_e>
    <SNVT_dup><TYPE>Enum</TYPE><Enums><OFF>0</OFF><AUS>0</AUS></Enums><NAME>dup</NAME></SNVT_dup>
  </SNVTS>)");
  const CSNVTType e = Loaded("e");
  EXPECT_EQ(e.ISNVType_LUIType(), "Logic");
  EXPECT_EQ(e.ISNVType_EnumDesc(), "0,OFF;1,ON;-1,NUL;");
  EXPECT_EQ(e.GetState("1"), "(1,ON)");
  EXPECT_EQ(e.GetState("-1"), "(-1,NUL)");
  EXPECT_EQ(e.StateTexts(), (std::vector<std::string>{"(0,OFF)", "(1,ON)", "(-1,NUL)"}));
  EXPECT_EQ(e.ISNVType_Length(), 1);
  EXPECT_EQ(e.ISNVType_InvalidValue(), "255");
  EXPECT_EQ(e.ISNVType_Name(), "e");
  EXPECT_EQ(test::ErrorNumberOf([&] { e.GetState("2"); }), 5);

  CSNVTType dup;
  EXPECT_EQ(test::ErrorNumberOf([&] { dup.Load("dup"); }), 0);
  EXPECT_EQ(dup.ISNVType_EnumDesc(), "0,OFF;0,AUS;");
  EXPECT_EQ(dup.ISNVType_Name(), "");  // reading ended at the duplicate
}

TEST(CSNVTTypeTest, BadTypeShowsOneMessageAndGoesOn) {
  test::ScopedCatalogue catalogue(
      "<SNVTS><SNVT_x><TYPE>float</TYPE><LENGTH>2</LENGTH><NAME>x</NAME></SNVT_x></SNVTS>");
  test::MessageBoxRecorder recorder;
  const CSNVTType x = Loaded("x");
  ASSERT_EQ(recorder.boxes.size(), 1u);
  EXPECT_EQ(recorder.boxes[0].text, "Error: SNVT_x has a bad type");
  EXPECT_EQ(recorder.boxes[0].style, 0);
  EXPECT_EQ(x.ISNVType_GenType(), "float");
  EXPECT_EQ(x.ISNVType_LUIType(), "");
  EXPECT_EQ(x.ISNVType_Length(), 0);
  EXPECT_EQ(x.ISNVType_Name(), "x");
}

TEST(CSNVTTypeTest, LookupsTakeTheFirstMatchAndMissingTypesKeepTheirId) {
  test::MessageBoxRecorder recorder;
  EXPECT_EQ(Loaded("none").ISNVType_ID(), "none");  // no catalogue at all
  test::ScopedCatalogue catalogue(R"(<SNVTS>
    <SNVT_d><TYPE>Enum</TYPE><Enums><A>1</A></Enums></SNVT_d>
    <SNVT_d><TYPE>Float</TYPE><Enums><B>2</B></Enums></SNVT_d>
    <OTHER><SNVT_o><TYPE>Float</TYPE></SNVT_o></OTHER>
  </SNVTS>)");
  const CSNVTType d = Loaded("d");
  EXPECT_EQ(d.ISNVType_GenType(), "Enum");
  EXPECT_EQ(d.ISNVType_EnumDesc(), "1,A;");
  for (const char* absent : {"missing", "D", "o", ""}) {
    const CSNVTType type = Loaded(absent);
    EXPECT_EQ(type.ISNVType_ID(), absent);
    EXPECT_EQ(type.ISNVType_GenType(), "") << absent;
    EXPECT_EQ(type.ISNVType_Length(), 0) << absent;
  }
  EXPECT_TRUE(recorder.boxes.empty());
}

TEST(CSNVTTypeTest, HandingInACatalogueRefreshesLookups) {
  test::ScopedCatalogue first("<SNVTS><SNVT_a><TYPE>Float</TYPE><LENGTH>2</LENGTH></SNVT_a></SNVTS>");
  EXPECT_EQ(Loaded("a").ISNVType_Length(), 2);
  // The same document changed in place and handed in again.
  first.document().child("SNVTS").child("SNVT_a").child("LENGTH").text().set("8");
  first.document().child("SNVTS").append_child("SNVT_c").append_child("TYPE").text().set("Enum");
  first.HandIn();
  EXPECT_EQ(Loaded("a").ISNVType_Length(), 8);
  EXPECT_EQ(Loaded("c").ISNVType_LUIType(), "Logic");

  test::ScopedCatalogue second(
      "<SNVTS><SNVT_a><TYPE>Float</TYPE><LENGTH>4</LENGTH></SNVT_a>"
      "<SNVT_b><TYPE>Float</TYPE></SNVT_b></SNVTS>");
  EXPECT_EQ(Loaded("a").ISNVType_Length(), 4);
  EXPECT_EQ(Loaded("b").ISNVType_GenType(), "Float");
  EXPECT_EQ(Loaded("c").ISNVType_GenType(), "");
}

}  // namespace
}  // namespace kolvane
