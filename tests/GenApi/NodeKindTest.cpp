#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "GenApi/GCException.h"
#include "GenApi/NodeCast.h"
#include "tests/GenApi/TestMap.h"

namespace {

using namespace GenApi_3_0;
using GenICam_3_0::AccessException;
using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::OutOfRangeException;
using GenICam_3_0::RuntimeException;

TEST(Integers, TakeValueAndLimitsFromThemselvesOrFromOthers) {
    CTestMap objMap(
        Reg("Raw", 0, "<Sign>Signed</Sign>") +
        "<Integer Name='Own'><Value>0x10</Value><Min>-8</Min><Max> 40 </Max><Inc>4</Inc><Unit>px</Unit></Integer>"
        "<Integer Name='Plain'><pValue>Raw</pValue></Integer>"
        "<Integer Name='Limited'><pValue>Raw</pValue><pMin>Own</pMin><pMax>Top</pMax><pInc>Two</pInc></Integer>"
        "<Integer Name='Top'><Value>100</Value></Integer><Integer Name='Two'><Value>2</Value></Integer>"
        "<Integer Name='Listed'><Value>1</Value><ValidValueSet>5; 1;3</ValidValueSet></Integer>"
        "<Integer Name='Through'><pValue>Own</pValue></Integer>");
    EXPECT_EQ(objMap.Integer("Plain").GetMin(), INT32_MIN);
    EXPECT_EQ(objMap.Integer("Plain").GetMax(), INT32_MAX);
    EXPECT_EQ(objMap.Integer("Through").GetInc(), 4);
    EXPECT_EQ(objMap.Integer("Through").GetUnit(), "px");
    EXPECT_THROW(objMap.Integer("Limited").SetValue(15), OutOfRangeException);
    EXPECT_THROW(objMap.Integer("Limited").SetValue(19), OutOfRangeException);
    EXPECT_THROW(objMap.Integer("Limited").SetValue(101), OutOfRangeException);
    EXPECT_NO_THROW(objMap.Integer("Limited").SetValue(19, false));
    EXPECT_THROW(objMap.Integer("Own").SetValue(17), OutOfRangeException);  // -8 + n * 4
    EXPECT_THROW(objMap.Integer("Through").SetValue(44), OutOfRangeException);
    EXPECT_NO_THROW(objMap.Integer("Through").SetValue(40));
    EXPECT_EQ(objMap.Integer("Own").GetValue(), 40);
    EXPECT_THROW(objMap.Integer("Listed").SetValue(2), OutOfRangeException);
    EXPECT_NO_THROW(objMap.Integer("Listed").SetValue(5));
    EXPECT_EQ(objMap.Integer("Listed").GetIncMode(), listIncrement);
    EXPECT_EQ(objMap.Integer("Listed").GetListOfValidValues(), (int64_autovector_t{1, 3, 5}));
    objMap.Integer("Top").ImposeMax(50);
    EXPECT_THROW(objMap.Integer("Top").SetValue(51), OutOfRangeException);
    EXPECT_THROW(objMap.Integer("Limited").GetValue(true), OutOfRangeException) << "19 is below the minimum 40";
}

TEST(Integers, WriteToAllCopies) {
    CTestMap objMap(
        Reg("A", 0) + Reg("B", 4) + Reg("C", 8) +
        "<Integer Name='I'><pValue>A</pValue><pValueCopy>B</pValueCopy><pValueCopy>C</pValueCopy></Integer>");
    EXPECT_EQ(objMap.Integer("B").GetValue(), 0);
    objMap.Integer("I").SetValue(9);
    EXPECT_EQ(objMap.Port.NumberAt(0) + objMap.Port.NumberAt(4) + objMap.Port.NumberAt(8), 27u);
    EXPECT_EQ(objMap.Integer("B").GetValue(), 9);
}

TEST(Integers, AreWrittenNowhereIfACopyRefuses) {
    CTestMap objMap(Reg("A", 0) + Reg("B", 4, "<pIsLocked>Lock</pIsLocked>") + Reg("Lock", 8) +
                    "<Integer Name='I'><pValue>A</pValue><pValueCopy>B</pValueCopy></Integer>");
    objMap.Integer("Lock").SetValue(1);
    EXPECT_THROW(objMap.Integer("I").SetValue(9), AccessException);
    EXPECT_EQ(objMap.Port.NumberAt(0), 0U);
}

TEST(Integers, CountIncrementsFromTheMinimumOfTheDescription) {
    constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
    CTestMap objMap("<Integer Name='I'><Value>2</Value><Min>2</Min><Inc>4</Inc></Integer>");
    IInteger& objInteger = objMap.Integer("I");
    const std::pair<std::int64_t, std::int64_t> tblMin[] = {{0, 2}, {2, 2}, {3, 6}, {6, 6}, {kLargest, kLargest}};
    for (const auto& [nImposed, nMin] : tblMin) {
        objInteger.ImposeMin(nImposed);
        EXPECT_EQ(objInteger.GetMin(), nMin);
    }
    objInteger.ImposeMin(5);
    EXPECT_THROW(objInteger.SetValue(9), OutOfRangeException);
    EXPECT_NO_THROW(objInteger.SetValue(10));
}

TEST(Integers, TakeTheValueThatTheIndexNames) {
    CTestMap objMap(
        Reg("Sel", 0) + Reg("Raw", 4) +
        "<Integer Name='I'><pIndex>Sel</pIndex><ValueIndexed Index='0'>10</ValueIndexed>"
        "<pValueIndexed Index='0x1'>Raw</pValueIndexed><ValueDefault>-1</ValueDefault></Integer>"
        "<Integer Name='NoDefault'><pIndex>Sel</pIndex><ValueIndexed Index='0'>10</ValueIndexed></Integer>");
    objMap.Port.PutNumber(4, 44);
    IInteger& objInteger = objMap.Integer("I");
    EXPECT_EQ(objInteger.GetValue(), 10);
    objInteger.SetValue(11);
    objMap.Integer("Sel").SetValue(1);
    EXPECT_EQ(objInteger.GetValue(), 44);
    objInteger.SetValue(45);
    EXPECT_EQ(objMap.Port.NumberAt(4), 45u);
    objMap.Integer("Sel").SetValue(7);
    EXPECT_EQ(objInteger.GetValue(), -1);
    EXPECT_EQ(objMap.Access("NoDefault"), NA);
    EXPECT_THROW(objMap.Integer("NoDefault").GetValue(), AccessException);
    objMap.Integer("Sel").SetValue(0);
    EXPECT_EQ(objInteger.GetValue(), 11);
    EXPECT_EQ(objMap.Integer("NoDefault").GetValue(), 10);
}

TEST(Values, ReadAndTakeTheTextsThatTheyShow) {
    struct CASE {
        const char* Node;
        const char* In;
        const char* Out;
    };
    CTestMap objMap(
        "<Integer Name='Dec'><Value>0</Value></Integer>"
        "<Integer Name='Hex'><Value>0</Value><Representation>HexNumber</Representation></Integer>"
        "<Integer Name='Ip'><Value>0</Value><Representation>IPV4Address</Representation></Integer>"
        "<Integer Name='Mac'><Value>0</Value><Representation>MACAddress</Representation></Integer>"
        "<Float Name='Float'><Value>0</Value></Float><Boolean Name='Bool'><Value>false</Value></Boolean>"
        "<String Name='Text'><Value> as is </Value></String>"
        "<Enumeration Name='Enum'><EnumEntry Name='One'><Value>1</Value></EnumEntry><Value>1</Value></Enumeration>");
    EXPECT_EQ(objMap.Value("Text").ToString(), " as is ");
    const CASE arrCase[] = {{"Dec", " -12\n", "-12"},
                            {"Dec", "0XFFFFFFFFFFFFFFFF", "-1"},
                            {"Hex", "255", "0xFF"},
                            {"Ip", "1", "0.0.0.1"},
                            {"Mac", "01:23:45:67:89:ab", "01:23:45:67:89:AB"},
                            {"Float", "+0.1", "0.1"},
                            {"Float", "0x10", "16"},
                            {"Bool", "true", "1"},
                            {"Enum", " One ", "One"}};
    for (const CASE& objCase : arrCase) {
        objMap.Value(objCase.Node).FromString(objCase.In);
        EXPECT_EQ(objMap.Value(objCase.Node).ToString(), objCase.Out) << objCase.Node << " " << objCase.In;
    }
    const std::pair<const char*, const char*> arrBad[] = {{"Dec", "1.5"},
                                                          {"Dec", ""},
                                                          {"Dec", "9223372036854775808"},
                                                          {"Dec", "0x10000000000000000"},
                                                          {"Ip", "1.2.3.256"},
                                                          {"Ip", "1.2.3.4.5"},
                                                          {"Mac", "01:23:45:67:89"},
                                                          {"Float", "1,5"},
                                                          {"Bool", "2"},
                                                          {"Enum", "Two"},
                                                          {"Dec", "1 2"}};
    for (const auto& [pNode, pText] : arrBad) {
        EXPECT_THROW(objMap.Value(pNode).FromString(pText), InvalidArgumentException) << pNode << " " << pText;
    }
}

TEST(Floats, TakeIntegersBelowThemRounded) {
    CTestMap objMap(Reg("Raw", 0, "<Sign>Signed</Sign>") +
                    "<Float Name='F'><pValue>Raw</pValue><Min>-10</Min><Max>10.5</Max><Unit>us</Unit>"
                    "<DisplayPrecision>3</DisplayPrecision><DisplayNotation>Fixed</DisplayNotation></Float>"
                    "<Float Name='Inc'><Value>1</Value><Inc>0.5</Inc></Float>");
    IFloat& objFloat = objMap.Float("F");
    objFloat.SetValue(2.6);
    EXPECT_EQ(objFloat.GetValue(), 3.0);
    EXPECT_EQ(objMap.Integer("Raw").GetValue(), 3);
    EXPECT_THROW(objFloat.SetValue(10.6), OutOfRangeException);
    EXPECT_THROW(objFloat.SetValue(-10.1), OutOfRangeException);
    EXPECT_THROW(objFloat.SetValue(1e300, false), OutOfRangeException);
    EXPECT_THROW(objMap.Value("F").FromString("nan"), OutOfRangeException);
    EXPECT_EQ(objFloat.GetUnit(), "us");
    EXPECT_EQ(objFloat.GetDisplayPrecision(), 3);
    EXPECT_EQ(objFloat.GetDisplayNotation(), fnFixed);
    EXPECT_TRUE(objMap.Float("Inc").HasInc());
    EXPECT_EQ(objMap.Float("Inc").GetInc(), 0.5);
}

TEST(Numbers, MayHaveLimitsBeyondAllThatThereAre) {
    CTestMap objMap(
        "<Float "
        "Name='F'><Value>0</Value><Min>-1.79769313486232E+308</Min><Max>+1.79769313486232E+308</Max></Float>"
        "<Integer Name='I'><Value>1</Value><Max>18446744073709551615</Max></Integer>");
    EXPECT_EQ(objMap.Float("F").GetMin(), std::numeric_limits<double>::lowest());
    EXPECT_EQ(objMap.Float("F").GetMax(), std::numeric_limits<double>::max());
    EXPECT_EQ(objMap.Integer("I").GetMax(), INT64_MAX);
    EXPECT_THROW(objMap.Value("F").FromString("1e400"), InvalidArgumentException);
}

TEST(Formulas, ConverterOfARegisterWithoutEndHasNoLimitsThatWrap) {
    for (const auto& [strTo, strFrom] : {std::pair{"FROM/8", "TO*8"}, {"FROM-10", "TO+10"}}) {
        CTestMap objMap(std::string("<IntConverter Name='C'><FormulaTo>") + strTo + "</FormulaTo><FormulaFrom>" +
                        strFrom + "</FormulaFrom><pValue>R</pValue></IntConverter>" +
                        RegisterOfKind("IntReg", 8, "<Sign>Unsigned</Sign>"));
        objMap.Integer("C").SetValue(800);
        EXPECT_EQ(objMap.Integer("C").GetValue(), 800) << strFrom;
    }
}

TEST(Formulas, ComputeFromVariablesLimitsAndEntries) {
    CTestMap objMap(
        "<Integer Name='W'><Value>100</Value><Min>4</Min><Max>640</Max><Inc>8</Inc></Integer>"
        "<Float Name='Half'><Value>0.5</Value></Float>"
        "<Enumeration Name='Mode'><EnumEntry Name='Off'><Value>3</Value></EnumEntry><EnumEntry "
        "Name='On'><Value>7</Value>"
        "</EnumEntry><Value>7</Value></Enumeration>"
        "<IntSwissKnife Name='Room'><pVariable Name='W'>W</pVariable><pVariable Name='M'>Mode</pVariable>"
        "<Constant Name='K'>10</Constant><Expression Name='LEFT'>W.Max - W</Expression>"
        "<Formula>(M = M.Entry.On) &amp;&amp; (W.Inc = 8) ? LEFT * K : W.Min</Formula></IntSwissKnife>"
        "<SwissKnife Name='Product'><pVariable Name='A'>W</pVariable><pVariable Name='B'>Half</pVariable>"
        "<Formula><![CDATA[ A * B ]]></Formula></SwissKnife>"
        "<SwissKnife Name='Zero'><pVariable Name='A'>W</pVariable><Formula>SQRT(0 - A)</Formula></SwissKnife>"
        "<IntSwissKnife Name='Divide'><pVariable Name='A'>W</pVariable><Formula>1 / (A - 100)</Formula></IntSwissKnife>"
        "<IntSwissKnife Name='Broken'><Formula>1 +* 2</Formula></IntSwissKnife>"
        "<IntSwissKnife Name='Unknown'><Formula>A + 1</Formula></IntSwissKnife>");
    EXPECT_EQ(objMap.Integer("Room").GetValue(), 5400);
    EXPECT_EQ(objMap.Access("Room"), RO);
    objMap.Enumeration("Mode").FromString("Off");
    EXPECT_EQ(objMap.Integer("Room").GetValue(), 4);
    EXPECT_EQ(objMap.Float("Product").GetValue(), 50.0);
    EXPECT_THROW(objMap.Integer("Room").SetValue(1), AccessException);
    for (const char* pName : {"Divide", "Broken", "Unknown"}) {
        try {
            objMap.Integer(pName).GetValue();
            ADD_FAILURE() << pName;
        } catch (const RuntimeException& e) {
            EXPECT_NE(std::string(e.GetDescription()).find(pName), std::string::npos) << e.GetDescription();
        }
    }
    EXPECT_THROW(objMap.Float("Zero").GetValue(), RuntimeException);
}

TEST(Converters, LeadBothWays) {
    CTestMap objMap(Reg("Raw", 0, "") + Reg("Factor", 4) +
                    "<Integer Name='Limited'><pValue>Raw</pValue><Min>0</Min><Max>1000</Max></Integer>"
                    "<Converter Name='Time'><pVariable Name='F'>Factor</pVariable><FormulaTo>FROM / 0.1 / F</FormulaTo>"
                    "<FormulaFrom>TO * 0.1 * F</FormulaFrom><pValue>Limited</pValue></Converter>"
                    "<Converter Name='Down'><FormulaTo>0 - FROM</FormulaTo><FormulaFrom>0 - "
                    "TO</FormulaFrom><pValue>Limited</pValue>"
                    "<Slope>Decreasing</Slope></Converter>"
                    "<IntConverter Name='Times'><FormulaTo>FROM / 4</FormulaTo><FormulaFrom>TO * "
                    "4</FormulaFrom><pValue>Limited</pValue>"
                    "<IsLinear>Yes</IsLinear></IntConverter>");
    objMap.Port.PutNumber(0, 200);
    objMap.Port.PutNumber(4, 2);
    EXPECT_DOUBLE_EQ(objMap.Float("Time").GetValue(), 40.0);
    EXPECT_DOUBLE_EQ(objMap.Float("Time").GetMax(), 200.0);
    objMap.Float("Time").SetValue(objMap.Float("Time").GetMax());
    EXPECT_EQ(objMap.Port.NumberAt(0), 1000u);
    EXPECT_THROW(objMap.Float("Time").SetValue(200.2), OutOfRangeException);
    EXPECT_EQ(objMap.Float("Down").GetMin(), -1000);
    EXPECT_EQ(objMap.Float("Down").GetMax(), 0);
    objMap.Integer("Times").SetValue(40);
    EXPECT_EQ(objMap.Port.NumberAt(0), 10u);
    EXPECT_EQ(objMap.Integer("Times").GetMax(), 4000);
    EXPECT_EQ(objMap.Integer("Times").GetInc(), 4);
    EXPECT_THROW(objMap.Integer("Times").SetValue(41), OutOfRangeException);
}

TEST(Converters, KeepToWhatTheSourceTakes) {
    const auto Over = [](const char* pKind, const char* pSource, const char* pTo, const char* pFrom) {
        return std::string("<") + pKind + " Name='" + pSource + "Seen'><FormulaTo>" + pTo +
               "</FormulaTo><FormulaFrom>" + pFrom + "</FormulaFrom><pValue>" + pSource +
               "</pValue><IsLinear>Yes</IsLinear></" + pKind + ">";
    };
    CTestMap objMap(Over("Converter", "Gain", "10 ** (FROM / 20)", "20 * LG(TO)") +
                    Over("Converter", "Time", "FROM / 1000", "TO * 1000") +
                    Over("IntConverter", "Step", "100 - FROM", "100 - TO") +
                    "<Integer Name='Gain'><Value>7</Value><Min>0</Min><Max>1000</Max></Integer>"
                    "<Float Name='Time'><Value>1</Value><Min>0</Min><Max>10</Max></Float>"
                    "<Integer Name='Step'><Value>0</Value><Min>0</Min><Max>10</Max><Inc>4</Inc></Integer>");
    EXPECT_THROW(objMap.Float("GainSeen").SetValue(1e5), OutOfRangeException) << "infinity is beyond the maximum";
    EXPECT_EQ(objMap.Integer("Gain").GetValue(), 7);
    EXPECT_FALSE(objMap.Float("TimeSeen").HasInc());
    EXPECT_EQ(objMap.Integer("StepSeen").GetMin(), 92);
    objMap.Integer("StepSeen").SetValue(96);
    EXPECT_EQ(objMap.Integer("Step").GetValue(), 4);
    EXPECT_THROW(objMap.Integer("StepSeen").SetValue(94), OutOfRangeException);
}

TEST(Booleans, StandForTheirTwoNumbers) {
    CTestMap objMap(
        Reg("Raw", 0) + "<Boolean Name='B'><pValue>Raw</pValue><OnValue>5</OnValue><OffValue>6</OffValue></Boolean>" +
        "<IntSwissKnife Name='Seen'><pVariable Name='B'>B</pVariable><Formula>B * 10</Formula></IntSwissKnife>");
    objMap.Boolean("B").SetValue(true);
    EXPECT_EQ(objMap.Port.NumberAt(0), 5u);
    EXPECT_EQ(objMap.Integer("Seen").GetValue(), 10);
    objMap.Boolean("B").SetValue(false);
    EXPECT_EQ(objMap.Port.NumberAt(0), 6u);
    EXPECT_FALSE(objMap.Boolean("B").GetValue(true));
    EXPECT_EQ(objMap.Integer("Seen").GetValue(), 0);
    objMap.Port.PutNumber(0, 7);
    EXPECT_FALSE(objMap.Boolean("B").GetValue(false, true));
    EXPECT_THROW(objMap.Boolean("B").GetValue(true), OutOfRangeException);
}

TEST(Commands, WriteTheirNumberAndWaitUntilTheDeviceTakesItBack) {
    CTestMap objMap(Reg("Raw", 0) + Reg("Once", 4, "<ImposedAccessMode>WO</ImposedAccessMode>") +
                    "<Integer Name='Number'><Value>0x80000001</Value></Integer>"
                    "<Command Name='Go'><pValue>Raw</pValue><CommandValue>9</CommandValue></Command>"
                    "<Command Name='Fire'><pValue>Once</pValue><pCommandValue>Number</pCommandValue></Command>");
    objMap.Command("Go").Execute();
    EXPECT_EQ(objMap.Port.NumberAt(0), 9u);
    EXPECT_FALSE(objMap.Command("Go").IsDone());
    objMap.Port.PutNumber(0, 0);
    EXPECT_TRUE(objMap.Command("Go").IsDone());
    EXPECT_EQ(objMap.Access("Fire"), WO);
    objMap.Command("Fire").Execute();
    EXPECT_EQ(objMap.Port.NumberAt(4), 0x80000001u);
    EXPECT_TRUE(objMap.Command("Fire").IsDone()) << "nobody can tell otherwise";
}

TEST(Commands, LetWhatTheyChangedBeReadAnewOnceTheyAreDone) {
    CTestMap objMap(Reg("Raw", 0, "<Cachable>NoCache</Cachable>") +
                    "<Command Name='Load'><pValue>Raw</pValue><CommandValue>1</CommandValue></Command>" +
                    Reg("Gain", 4, "<pInvalidator>Load</pInvalidator>"));
    objMap.Command("Load").Execute();
    EXPECT_FALSE(objMap.Command("Load").IsDone());
    EXPECT_EQ(objMap.Integer("Gain").GetValue(), 0);
    objMap.Port.PutNumber(4, 7);
    objMap.Port.PutNumber(0, 0);
    EXPECT_TRUE(objMap.Command("Load").IsDone());
    EXPECT_EQ(objMap.Integer("Gain").GetValue(), 7);
    objMap.Port.TakeReads();
    EXPECT_TRUE(objMap.Command("Load").IsDone());
    EXPECT_EQ(objMap.Integer("Gain").GetValue(), 7);
    EXPECT_EQ(objMap.Port.TakeReads(), 1) << "of the command alone";
}

TEST(Enumerations, AreChosenByNameOrNumber) {
    CTestMap objMap(
        Reg("Raw", 0) +
        "<Enumeration Name='E'><EnumEntry Name='A'><Value>1</Value><NumericValue>1.5</NumericValue></EnumEntry>"
        "<EnumEntry Name='B'><Value>0x2</Value><Symbolic>Bee</Symbolic><pIsAvailable>Raw</pIsAvailable></EnumEntry>"
        "<EnumEntry Name='C'><pIsImplemented>Never</pIsImplemented><Value>3</Value></EnumEntry>"
        "<pValue>Raw</pValue></Enumeration><Integer Name='Never'><Value>0</Value></Integer>");
    IEnumeration& objEnumeration = objMap.Enumeration("E");
    StringList_t vecSymbolic;
    objEnumeration.GetSymbolics(vecSymbolic);
    EXPECT_EQ(vecSymbolic, StringList_t{"A"}) << "B hangs on a register that is 0, C isn't implemented";
    EXPECT_EQ(objEnumeration.GetCurrentEntry(), nullptr);
    EXPECT_THROW(objEnumeration.ToString(), OutOfRangeException);
    EXPECT_THROW(objEnumeration.SetIntValue(2), AccessException);
    objEnumeration.FromString("A");
    EXPECT_EQ(objEnumeration.GetIntValue(), 1);
    EXPECT_EQ(objEnumeration.GetCurrentEntry()->GetNumericValue(), 1.5);
    objEnumeration.FromString("Bee");
    EXPECT_EQ(objEnumeration.GetIntValue(), 2);
    EXPECT_EQ(objEnumeration.GetEntryByName("Bee")->GetValue(), 2);
    EXPECT_EQ(objEnumeration.GetEntryByName("B"), nullptr);
    EXPECT_THROW(objEnumeration.SetIntValue(4), OutOfRangeException);
    EXPECT_THROW(objEnumeration.SetIntValue(3), AccessException);
    NodeList_t vecEntry;
    objEnumeration.GetEntries(vecEntry);
    ASSERT_EQ(vecEntry.size(), 3u);
    EXPECT_EQ(vecEntry[1]->GetName(), "EnumEntry_E_B");
    EXPECT_EQ(objMap.Map._GetNode("EnumEntry_E_B"), vecEntry[1]);
}

TEST(Enumerations, GiveAValueTheNameThatIsAvailable) {
    CTestMap objMap(
        Reg("Raw", 0) + Reg("IsNew", 4) +
        "<IntSwissKnife Name='IsOld'><pVariable Name='N'>IsNew</pVariable><Formula>1 - N</Formula></IntSwissKnife>"
        "<Enumeration Name='E'><EnumEntry Name='Old'><pIsImplemented>IsOld</pIsImplemented><Value>1</Value></EnumEntry>"
        "<EnumEntry Name='New'><pIsImplemented>IsNew</pIsImplemented><Value>1</Value></EnumEntry>"
        "<pValue>Raw</pValue></Enumeration>");
    for (const bool bNew : {true, false}) {
        objMap.Integer("IsNew").SetValue(bNew);
        objMap.Enumeration("E").FromString(bNew ? "New" : "Old");
        EXPECT_EQ(objMap.Enumeration("E").ToString(), bNew ? "New" : "Old");
        EXPECT_EQ(objMap.Enumeration("E").GetCurrentEntry()->GetSymbolic(), bNew ? "New" : "Old");
        EXPECT_THROW(objMap.Enumeration("E").FromString(bNew ? "Old" : "New"), AccessException);
    }
}

TEST(Enumerations, AskTheDeviceWhetherItHasTakenAValueBack) {
    CTestMap objMap(
        Reg("Raw", 0) +
        "<Enumeration Name='Auto'><EnumEntry Name='Off'><Value>0</Value></EnumEntry><EnumEntry Name='Once'>"
        "<Value>1</Value><IsSelfClearing>Yes</IsSelfClearing></EnumEntry><pValue>Raw</pValue></Enumeration>"
        "<IntSwissKnife Name='Seen'><pVariable Name='A'>Auto</pVariable><Formula>A</Formula></IntSwissKnife>");
    objMap.Enumeration("Auto").FromString("Once");
    EXPECT_EQ(objMap.Integer("Seen").GetValue(), 1);
    EXPECT_EQ(objMap.Port.TakeReads(), 1);
    objMap.Port.PutNumber(0, 0);
    EXPECT_EQ(objMap.Integer("Seen").GetValue(), 0);
    EXPECT_EQ(objMap.Enumeration("Auto").ToString(), gcstring("Off"));
    EXPECT_EQ(objMap.Port.TakeReads(), 1) << "what stays is cached";
}

TEST(Categories, LeadToTheirFeaturesAndBack) {
    CTestMap objMap(
        "<Category Name='Root'><pFeature>Sub</pFeature></Category><Category Name='Sub'><pFeature>Int</pFeature>"
        "<pFeature>Absent</pFeature></Category><Group Comment='g'><Group><Integer Name='Int' NameSpace='Standard'>"
        "<Value>1</Value></Integer></Group></Group>"
        "<Integer Name='Absent'><ImposedAccessMode>NI</ImposedAccessMode></Integer>"
        "<Category Name='Dead'><pFeature>Absent</pFeature></Category>");
    FeatureList_t vecFeature;
    dynamic_cast<ICategory&>(objMap.Node("Sub")).GetFeatures(vecFeature);
    ASSERT_EQ(vecFeature.size(), 2u);
    EXPECT_EQ(vecFeature[0]->GetNode()->GetName(true), "Std::Int");
    NodeList_t vecParent;
    objMap.Node("Int").GetParents(vecParent);
    ASSERT_EQ(vecParent.size(), 1u);
    EXPECT_EQ(vecParent[0]->GetName(), "Sub");
    vecParent[0]->GetParents(vecParent);
    EXPECT_EQ(vecParent, NodeList_t{&objMap.Node("Root")});
    EXPECT_TRUE(objMap.Node("Int").IsFeature());
    EXPECT_FALSE(objMap.Node("Root").IsFeature());
    EXPECT_EQ(objMap.Access("Root"), RO);
    EXPECT_EQ(objMap.Access("Dead"), NI);
}

TEST(Nodes, TellWhatTheDescriptionSaysOfThem) {
    CTestMap objMap(
        "<Integer Name='I'><ToolTip> tip &amp;\n more "
        "</ToolTip><Description>long</Description><Visibility>Guru</Visibility>"
        "<Streamable>Yes</Streamable><EventID>9001</EventID><DisplayName/><Value>1</Value>"
        "<PollingTime>500</PollingTime><pInvalidator>J</pInvalidator><pInvalidator>K</pInvalidator></Integer>"
        "<Integer Name='J'><DisplayName>Jay</DisplayName><IsDeprecated>Yes</IsDeprecated><Value>2</Value></Integer>"
        "<Integer Name='K'><Value>3</Value><pAlias>I</pAlias></Integer>");
    INode& objNode = objMap.Node("I");
    EXPECT_EQ(objNode.GetToolTip(), "tip &\n more");
    EXPECT_EQ(objNode.GetDescription(), "long");
    EXPECT_EQ(objNode.GetDisplayName(), "I");
    EXPECT_EQ(objMap.Node("J").GetDisplayName(), "Jay");
    EXPECT_EQ(objNode.GetVisibility(), Guru);
    EXPECT_TRUE(objNode.IsStreamable());
    EXPECT_FALSE(objMap.Node("J").IsStreamable());
    EXPECT_TRUE(objMap.Node("J").IsDeprecated());
    EXPECT_EQ(objNode.GetEventID(), "9001");
    EXPECT_EQ(objNode.GetPollingTime(), 500);
    EXPECT_EQ(objMap.Node("K").GetAlias(), &objNode);
    gcstring strValue;
    gcstring strAttribute;
    EXPECT_TRUE(objNode.GetProperty("pInvalidator", strValue, strAttribute));
    EXPECT_EQ(strValue, "J\tK");
    EXPECT_FALSE(objNode.GetProperty("pMin", strValue, strAttribute));
    EXPECT_FALSE(objNode.GetProperty("Nonsense", strValue, strAttribute));
    EXPECT_EQ(objMap.Map._Ptr->GetModelName(), "Model");
    EXPECT_EQ(objMap.Map._Ptr->GetSchemaVersion(), "1.1.0");
}

}  // namespace
