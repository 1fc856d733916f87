// A persistence stream: what is read of it is written and read again the same, and is loaded into a node map of every
// kind of feature, which a comparison before that leaves as it is; what that then stores is taken back without an
// error.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "GenApi/FeatureBag.h"
#include "GenApi/GCException.h"
#include "tests/GenApi/TestMap.h"

namespace {

using GenApi_3_0::CFeatureBag;

const std::string kPlace = "<Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></";

const std::string kDescription =
    "<Enumeration Name='Selector'><Streamable>Yes</Streamable><pSelected>Gain</pSelected>"
    "<EnumEntry Name='Red'><Value>0</Value></EnumEntry><EnumEntry Name='Blue'><Value>1</Value></EnumEntry>"
    "<pValue>SelectorReg</pValue></Enumeration>" +
    Reg("SelectorReg", 0) +
    "<Float Name='Gain'><Streamable>Yes</Streamable><pValue>GainReg</pValue><Max>1e6</Max></Float>"
    "<FloatReg Name='GainReg'><Address>8</Address><pIndex Offset='8'>SelectorReg</pIndex>" +
    kPlace +
    "FloatReg><Integer Name='Width'><Streamable>Yes</Streamable><pValue>WidthReg</pValue><Max>4096</Max>"
    "<Representation>IPV4Address</Representation></Integer>" +
    Reg("WidthReg", 24) + "<Boolean Name='Flip'><Streamable>Yes</Streamable><pValue>FlipReg</pValue></Boolean>" +
    Reg("FlipReg", 28) + "<StringReg Name='Label'><Streamable>Yes</Streamable><Address>32</Address>" + kPlace +
    "StringReg><Register Name='Table'><Streamable>Yes</Streamable><Address>40</Address>" + kPlace +
    "Register><Command Name='Go'><pValue>FlipReg</pValue><CommandValue>1</CommandValue></Command>";

void Require(bool bTrue) {
    if (!bTrue) {
        std::abort();
    }
}

bool AreEqual(const CFeatureBag& a, const CFeatureBag& b) {
    return a.GetNames() == b.GetNames() && a.GetValues() == b.GetValues();
}

void WriteAndReadAgain(const CFeatureBag& objBag) {
    std::stringstream stream;
    stream << objBag;
    CFeatureBag objAgain;
    stream >> objAgain;
    Require(AreEqual(objAgain, objBag));
}

void LoadIntoAMap(CFeatureBag& objBag, bool bVerify) {
    CTestMap objMap(kDescription);
    const auto vecBytes = objMap.Port.BytesAt(0, 48);
    objBag.CompareWith(objMap.Map._Ptr);
    Require(objMap.Port.BytesAt(0, 48) == vecBytes);
    objBag.LoadFromBag(objMap.Map._Ptr, bVerify);
    CFeatureBag objStored;
    const bool bWhole = objStored.StoreToBag(objMap.Map._Ptr);
    // What was written without checks may be beyond limits, or a text with a line end.
    if (bVerify && bWhole) {
        Require(objStored.CompareWith(objMap.Map._Ptr).empty());
        CTestMap objOther(kDescription);
        Require(objStored.LoadFromBag(objOther.Map._Ptr, true));
        CFeatureBag objAgain;
        objAgain.StoreToBag(objOther.Map._Ptr);
        Require(AreEqual(objAgain, objStored));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    std::istringstream stream(std::string(reinterpret_cast<const char*>(pData), nSize));
    CFeatureBag objBag;
    try {
        stream >> objBag;
    } catch (const GenICam_3_0::RuntimeException&) {
        return 0;
    }
    WriteAndReadAgain(objBag);
    LoadIntoAMap(objBag, true);
    LoadIntoAMap(objBag, false);
    return 0;
}
