#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "GenApi/GCException.h"
#include "tests/GenApi/TestMap.h"

namespace {

using namespace GenApi_3_0;
using GenICam_3_0::AccessException;
using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::OutOfRangeException;
using GenICam_3_0::RuntimeException;

using Bytes = std::vector<std::uint8_t>;

struct INTEGER_REGISTER {
    const char* Kind;
    std::string More;
    Bytes Before;
    std::int64_t Read;
    std::int64_t Write;
    Bytes After;
    std::int64_t Min;
    std::int64_t Max;
};

TEST(Registers, IntegersStandInTheirBytesAndBits) {
    const char* const pInt = "IntReg";
    const char* const pMasked = "MaskedIntReg";
    const std::string strBig = "<Endianess>BigEndian</Endianess>";
    const std::string strLittle = "<Endianess>LittleEndian</Endianess>";
    const std::string strSigned = "<Sign>Signed</Sign>";
    const auto Bits = [](int nLsb, int nMsb) {
        return "<LSB>" + std::to_string(nLsb) + "</LSB><MSB>" + std::to_string(nMsb) + "</MSB>";
    };
    // clang-format off
    const std::vector<INTEGER_REGISTER> vecCase = {
        {pInt, strLittle, {1, 2, 3, 4}, 0x04030201, 5, {5, 0, 0, 0}, 0, 0xFFFFFFFF},
        {pInt, strSigned + strBig, {0xFF, 0xFE}, -2, -3, {0xFF, 0xFD}, -32768, 32767},
        {pInt, "<Sign>Unsigned</Sign>", {0xFE}, 254, 255, {0xFF}, 0, 255},
        {pInt, strBig, {1, 2, 3}, 0x010203, 0xA0B0C0, {0xA0, 0xB0, 0xC0}, 0, 0xFFFFFF},
        {pInt, strSigned, Bytes(8, 0xFF), -1, 1, {1, 0, 0, 0, 0, 0, 0, 0}, INT64_MIN, INT64_MAX},
        {pInt, strBig, {0, 0, 0, 0, 0, 0, 1, 0}, 256, 1, {0, 0, 0, 0, 0, 0, 0, 1}, 0, INT64_MAX},
        // Little-endian bits are numbered from the least significant, big-endian ones from the most significant.
        {pMasked, Bits(4, 7) + strLittle, {0xA5, 1, 2, 3}, 0xA, 0x3, {0x35, 1, 2, 3}, 0, 15},
        {pMasked, Bits(7, 4) + strBig, {0xA5, 1, 2, 3}, 0x5, 0x3, {0xA3, 1, 2, 3}, 0, 15},
        {pMasked, Bits(31, 16) + strBig, {1, 2, 3, 4}, 0x0304, 0x0506, {1, 2, 5, 6}, 0, 0xFFFF},
        {pMasked, "<Bit>0</Bit>" + strBig, {0x80, 0, 0, 0}, 1, 0, {0, 0, 0, 0}, 0, 1},
        {pMasked, Bits(4, 11) + strSigned + strLittle, {0xF1, 0x2F}, -1, -128, {0x01, 0x28}, -128, 127},
        {pMasked, Bits(63, 0) + strBig, {0, 0, 0, 0, 0, 0, 1, 2}, 0x102, 3, {0, 0, 0, 0, 0, 0, 0, 3}, 0, INT64_MAX},
        {pMasked, "<Bit>63</Bit>" + strLittle, {0, 0, 0, 0, 0, 0, 0, 0x80}, 1, 0, Bytes(8, 0), 0, 1},
    };
    // clang-format on
    for (const INTEGER_REGISTER& objCase : vecCase) {
        const auto nLength = static_cast<int>(objCase.Before.size());
        SCOPED_TRACE(std::string(objCase.Kind) + " " + std::to_string(nLength) + " " + objCase.More);
        CTestMap objMap(RegisterOfKind(objCase.Kind, nLength, objCase.More));
        objMap.Port.Put(0x10, objCase.Before);
        IInteger& objInteger = objMap.Integer("R");
        EXPECT_EQ(objInteger.GetValue(), objCase.Read);
        EXPECT_EQ(objInteger.GetMin(), objCase.Min);
        EXPECT_EQ(objInteger.GetMax(), objCase.Max);
        objInteger.SetValue(objCase.Write);
        EXPECT_EQ(objMap.Port.BytesAt(0x10, nLength), objCase.After);
        EXPECT_EQ(objInteger.GetValue(), objCase.Write);
        EXPECT_EQ(objInteger.GetValue(false, true), objCase.Write);
        if (objCase.Max < INT64_MAX) {
            EXPECT_THROW(objInteger.SetValue(objCase.Max + 1), OutOfRangeException);
        }
    }
}

TEST(Registers, FloatsStandInFourOrEightBytesOfEitherOrder) {
    struct CASE {
        int Length;
        const char* Endianess;
        Bytes Raw;
        double Value;
    };
    const std::vector<CASE> vecCase = {
        {4, "BigEndian", {0x3F, 0xC0, 0, 0}, 1.5},
        {4, "LittleEndian", {0, 0, 0xC0, 0x3F}, 1.5},
        {8, "BigEndian", {0xC0, 0x02, 0, 0, 0, 0, 0, 0}, -2.25},
        {8, "LittleEndian", {0, 0, 0, 0, 0, 0, 0x02, 0xC0}, -2.25},
    };
    for (const CASE& objCase : vecCase) {
        CTestMap objMap(RegisterOfKind("FloatReg", objCase.Length,
                                       std::string("<Endianess>") + objCase.Endianess + "</Endianess>"));
        objMap.Port.Put(0x10, objCase.Raw);
        EXPECT_EQ(objMap.Float("R").GetValue(), objCase.Value);
        objMap.Port.Put(0x10, Bytes(8, 0));
        objMap.Float("R").SetValue(objCase.Value);
        EXPECT_EQ(objMap.Port.BytesAt(0x10, objCase.Length), objCase.Raw);
    }
    CTestMap objSingle(RegisterOfKind("FloatReg", 4, ""));
    EXPECT_THROW(objSingle.Float("R").SetValue(1e39), OutOfRangeException);
    EXPECT_THROW(objSingle.Float("R").SetValue(1e39, false), OutOfRangeException);
}

TEST(Registers, TextsEndAtAZeroByteOrWithTheRegister) {
    CTestMap objMap(RegisterOfKind("StringReg", 4, "") + "<String Name='S'><pValue>R</pValue></String>");
    objMap.Port.Put(0x10, {'a', 'b', 0, 'c', 'd'});
    EXPECT_EQ(objMap.String("R").GetValue(), "ab");
    objMap.Port.Put(0x10, {'a', 'b', 'c', 'd', 'e'});
    EXPECT_EQ(objMap.String("R").GetValue(false, true), "abcd");
    EXPECT_EQ(objMap.String("S").GetMaxLength(), 4);
    objMap.String("S").SetValue("x");
    EXPECT_EQ(objMap.Port.BytesAt(0x10, 5), (Bytes{'x', 0, 0, 0, 'e'}));
    objMap.String("S").SetValue("wxyz");
    EXPECT_EQ(objMap.Port.BytesAt(0x10, 5), (Bytes{'w', 'x', 'y', 'z', 'e'}));
    EXPECT_THROW(objMap.String("S").SetValue("12345", false), OutOfRangeException);
    EXPECT_EQ(objMap.String("S").GetValue(), "wxyz");
}

TEST(Registers, BytesAreReadAndWrittenAsAWholeAndAsText) {
    CTestMap objMap(RegisterOfKind("Register", 3, ""));
    IRegister& objRegister = objMap.Register("R");
    EXPECT_EQ(objRegister.GetLength(), 3);
    EXPECT_EQ(objRegister.GetAddress(), 0x10);
    const Bytes vecByte{1, 0xAB, 3};
    objRegister.Set(vecByte.data(), 3);
    EXPECT_EQ(objMap.Value("R").ToString(), "0x01ab03");
    objMap.Value("R").FromString("0A0B0c");
    Bytes vecRead(3);
    objRegister.Get(vecRead.data(), 3);
    EXPECT_EQ(vecRead, (Bytes{10, 11, 12}));
    EXPECT_THROW(objRegister.Set(vecByte.data(), 2), InvalidArgumentException);
    EXPECT_THROW(objRegister.Get(vecRead.data(), 4), InvalidArgumentException);
    EXPECT_THROW(objMap.Value("R").FromString("0x01ab0"), InvalidArgumentException);
    EXPECT_THROW(objMap.Value("R").FromString("0x01ab"), InvalidArgumentException);
}

TEST(Registers, AddressesAreSumsOfAllTheirTerms) {
    struct CASE {
        const char* Terms;
        std::int64_t Address;
    };
    const std::vector<CASE> vecCase = {
        {"<Address>0x100</Address><Address>16</Address>", 0x110},
        {"<pAddress>Base</pAddress><Address>4</Address>", 1004},
        {"<Address>0X10</Address><pIndex>Index</pIndex>", 16 + 3 * 4},
        {"<Address>16</Address><pIndex Offset='0x20'>Index</pIndex>", 16 + 3 * 32},
        {"<Address>16</Address><pIndex pOffset='Step'>Index</pIndex>", 16 + 3 * 7},
        {"<IntSwissKnife Name='Inner'><pVariable Name='I'>Index</pVariable><Formula>I * 100</Formula></IntSwissKnife>"
         "<Address>1</Address>",
         301},
    };
    const std::string strNodes =
        "<Integer Name='Base'><Value>1000</Value></Integer><Integer Name='Index'><Value>3</Value></Integer>"
        "<Integer Name='Step'><Value>7</Value></Integer>";
    for (const CASE& objCase : vecCase) {
        SCOPED_TRACE(objCase.Terms);
        CTestMap objMap(strNodes + "<IntReg Name='R'>" + objCase.Terms +
                        "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>");
        EXPECT_EQ(objMap.Register("R").GetAddress(), objCase.Address);
        objMap.Integer("R").SetValue(77);
        EXPECT_EQ(objMap.Port.NumberAt(objCase.Address), 77u);
    }
}

TEST(Registers, AddressesAndLengthsBeyondReasonAreRefusedWhenUsed) {
    CTestMap objMap(
        "<Integer Name='Huge'><Value>0x7FFFFFFFFFFFFFFF</Value></Integer><Integer "
        "Name='Minus'><Value>-8</Value></Integer>"
        "<IntReg "
        "Name='Sum'><pAddress>Huge</pAddress><pAddress>Huge</pAddress><Length>4</Length><pPort>Device</pPort></IntReg>"
        "<IntReg Name='Product'><pIndex Offset='16'>Huge</pIndex><Length>4</Length><pPort>Device</pPort></IntReg>"
        "<IntReg Name='Below'><pAddress>Minus</pAddress><Length>4</Length><pPort>Device</pPort></IntReg>"
        "<Register Name='Long'><Address>0</Address><pLength>Huge</pLength><pPort>Device</pPort></Register>"
        "<StringReg Name='Text'><Address>0</Address><pLength>Minus</pLength><pPort>Device</pPort></StringReg>"
        "<IntReg Name='Wide'><Address>0</Address><pLength>Base</pLength><pPort>Device</pPort></IntReg>"
        "<Integer Name='Base'><Value>9</Value></Integer>");
    for (const char* pName : {"Sum", "Product", "Below"}) {
        EXPECT_THROW(objMap.Integer(pName).GetValue(), OutOfRangeException) << pName;
    }
    EXPECT_THROW(objMap.Register("Long").GetLength(), OutOfRangeException);
    EXPECT_THROW(objMap.String("Text").GetValue(), OutOfRangeException);
    EXPECT_THROW(objMap.Integer("Wide").GetValue(), RuntimeException);
    EXPECT_THROW(objMap.Integer("Wide").GetMax(), RuntimeException);
    EXPECT_EQ(objMap.Port.TakeReads(), 0);
}

TEST(Registers, EntriesOfAStructureShareItsRegister) {
    CTestMap objMap(
        "<StructReg "
        "Comment='c'><Address>0x20</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
        "<Endianess>BigEndian</Endianess>"
        "<StructEntry Name='High'><LSB>15</LSB><MSB>0</MSB></StructEntry>"
        "<StructEntry "
        "Name='Flag'><Bit>31</Bit><AccessMode>RO</AccessMode><ToolTip>Tip</ToolTip></StructEntry></StructReg>");
    objMap.Port.Put(0x20, {0x12, 0x34, 0, 1});
    EXPECT_EQ(objMap.Integer("High").GetValue(), 0x1234);
    EXPECT_EQ(objMap.Integer("Flag").GetValue(), 1);
    EXPECT_EQ(objMap.Port.TakeReads(), 1);
    EXPECT_EQ(objMap.Access("Flag"), RO);
    EXPECT_EQ(objMap.Node("Flag").GetToolTip(), "Tip");
    objMap.Integer("High").SetValue(0xABCD);
    EXPECT_EQ(objMap.Port.BytesAt(0x20, 4), (Bytes{0xAB, 0xCD, 0, 1}));
}

TEST(Registers, WritingSomeBitsOfARegisterThatGrewKeepsItsOtherBytes) {
    CTestMap objMap(
        "<IntReg Name='Long'><Address>64</Address><Length>4</Length><AccessMode>RW</AccessMode>"
        "<Cachable>NoCache</Cachable><pPort>Device</pPort></IntReg>"
        "<MaskedIntReg Name='Bits'><Address>16</Address><pLength>Long</pLength><AccessMode>RW</AccessMode>"
        "<pPort>Device</pPort><LSB>0</LSB><MSB>7</MSB><Endianess>LittleEndian</Endianess></MaskedIntReg>");
    objMap.Port.PutNumber(64, 4);
    objMap.Port.Put(16, {1, 2, 3, 4, 5, 6, 7, 8});
    EXPECT_EQ(objMap.Integer("Bits").GetValue(), 1);
    objMap.Port.PutNumber(64, 8);
    objMap.Integer("Bits").SetValue(9);
    EXPECT_EQ(objMap.Port.BytesAt(16, 8), (std::vector<std::uint8_t>{9, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(Registers, WritingSomeBitsKeepsWhatAnotherNodeWroteToTheOthers) {
    const auto Mask = [](const char* pName, int nBit, const char* pMore) {
        return std::string("<MaskedIntReg Name='") + pName +
               "'><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>" + pMore + "<Bit>" +
               std::to_string(nBit) + "</Bit></MaskedIntReg>";
    };
    CTestMap objMap(Mask("A", 0, "<Address>8</Address>") + Mask("B", 1, "<pAddress>Eight</pAddress>") +
                    Mask("Around", 2, "<Address>8</Address><Cachable>WriteAround</Cachable>") +
                    Mask("Uncached", 3, "<Address>8</Address><Cachable>NoCache</Cachable>") +
                    "<Integer Name='Eight'><Value>8</Value></Integer>");
    for (const char* pName : {"A", "B", "Around", "Uncached"}) {
        EXPECT_EQ(objMap.Integer(pName).GetValue(), 0);
    }
    for (const char* pName : {"A", "B", "Around", "Uncached", "B"}) {
        objMap.Integer(pName).SetValue(1);
    }
    EXPECT_EQ(objMap.Port.NumberAt(8), 15u);
    objMap.Integer("A").SetValue(0);
    EXPECT_EQ(objMap.Port.NumberAt(8), 14u);
}

TEST(Registers, WritingBitsThatCannotBeReadKeepsThoseBesideThemThatCan) {
    CTestMap objMap(
        "<StructReg Comment='c'><Address>8</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
        "<StructEntry Name='Mode'><LSB>0</LSB><MSB>3</MSB></StructEntry>"
        "<StructEntry Name='Start'><Bit>8</Bit><AccessMode>WO</AccessMode></StructEntry></StructReg>");
    for (const std::uint32_t nMode : {5U, 7U}) {
        objMap.Port.PutNumber(8, nMode);
        objMap.Integer("Start").SetValue(1);
        EXPECT_EQ(objMap.Port.NumberAt(8), 0x100U | nMode);
    }
}

}  // namespace
