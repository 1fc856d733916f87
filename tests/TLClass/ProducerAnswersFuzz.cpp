// A producer that answers anything, asked for all that is asked of one: records of every module, a description, buffers
// and their chunks.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <stdexcept>

#include "GenApi/ChunkAdapterGeneric.h"
#include "GenApi/GCException.h"
#include "TLClass/TLClassInfo/ZrInformationAgency.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "TLClass/TLClassMain/Buffer.h"
#include "TLClass/TLClassMain/SpecialDeviceReply.h"
#include "TLClass/TLClassXML/XMLAnalyzer.h"
#include "support/ZrException.h"
#include "tests/FuzzInput.h"
#include "tests/GenApi/TestMap.h"

namespace {

/// The producer, loaded once, with the two functions by which it gets its answers.
struct HOSTILE_PRODUCER {
    HOSTILE_PRODUCER() { Require(Library.Load(HOSTILE_PRODUCER_CTI)); }

    template <class Function>
    Function* Find(const char* pName) {
        return reinterpret_cast<Function*>(Library.GetFunction(pName));
    }

    CDynamicLibrary Library;
    CGenTLLib Binding{HOSTILE_PRODUCER_CTI};
};

void ReadChunks(CGenTLLib* pLib, void* pHandle) {
    static CTestMap objMap(  // dear to make
        "<Port Name='Chunk'><ChunkID>1</ChunkID></Port><IntReg Name='A'><Address>0</Address><Length>4</Length>"
        "<AccessMode>RO</AccessMode><pPort>Chunk</pPort></IntReg>");
    CBuffer objBuffer(pLib, pHandle);
    objBuffer.AllocateBuffer(200);
    objBuffer.AnnounceBuffer();
    objBuffer.GetBufferInfo();
    GenApi_3_0::CChunkAdapterGeneric objAdapter(objMap.Map._Ptr);
    const auto vecChunk = objBuffer.GetChunkData();
    const bool bInvalid = objBuffer.IsChunkDataInvalid(vecChunk);
    bool bAttached = true;
    try {
        objBuffer.AttachChunkData(&objAdapter, vecChunk);
    } catch (const GenICam_3_0::GenericException&) {
        bAttached = false;
    }
    Require(bAttached != bInvalid);
    try {
        if (bAttached && objMap.Access("A") == GenApi_3_0::RO) {
            objMap.Value("A").ToString();
        }
    } catch (const GenICam_3_0::OutOfRangeException&) {  // the chunk is shorter than the feature
    }
}

void ReadReply(CGenTLLib* pLib, void* pHandle) {
    CSpecialDeviceReply objReply;
    std::size_t nSize = CSpecialDeviceReply::kSize;
    pLib->IFUpdateSpecialDevice(pHandle, "192.168.1.2", objReply.GetBuffer(), &nSize);
    Require(objReply.GetDeviceInfo("192.168.1.2").Model.size() <= 32);
    Require(objReply.GetCommonInfo().SerialNumber.size() <= 16);
    Require(objReply.GetGevInfo("192.168.1.2").MACAddress >> 48 == 0);
}

using Question = void (*)(CGenTLLib*, void*);
using Agency = CZrInformationAgency;

constexpr Question kQuestions[] = {
    [](CGenTLLib* pLib, void*) { Agency::GetTLInformation(pLib); },
    [](CGenTLLib* pLib, void* pHandle) { Agency::GetTLInformation(pLib, pHandle); },
    [](CGenTLLib* pLib, void* pHandle) { Agency::GetInterfaceInformation(pLib, pHandle); },
    [](CGenTLLib* pLib, void* pHandle) { Agency::GetDeviceInformation(pLib, pHandle); },
    [](CGenTLLib* pLib, void* pHandle) { Agency::GetDataStreamInformation(pLib, pHandle); },
    [](CGenTLLib* pLib, void* pHandle) { Agency::GetPortInformation(pLib, pHandle); },
    [](CGenTLLib* pLib, void* pHandle) { Agency::GetAllInterfaceInformation(pLib, pHandle); },
    [](CGenTLLib* pLib, void* pHandle) { Agency::GetAllDeviceInformation(pLib, pHandle); },
    [](CGenTLLib* pLib, void* pHandle) { Agency::GetAllDataStreamIDOfDevice(pLib, pHandle); },
    [](CGenTLLib* pLib, void* pHandle) { CXMLAnalyzer(pLib).LoadXMLFromPortHandle(pHandle); },
    ReadChunks,
    ReadReply,
};

}  // namespace

/// The first byte tells which question is asked first, the others are the answers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    static HOSTILE_PRODUCER s_objProducer;
    static auto* const s_pSetAnswers = s_objProducer.Find<void(const std::uint8_t*, std::size_t)>("SetHostileAnswers");
    static auto* const s_pHasAnswers = s_objProducer.Find<bool()>("HasHostileAnswers");
    if (nSize == 0) {
        return 0;
    }
    s_pSetAnswers(pData + 1, nSize - 1);
    int nHandle = 0;
    for (std::size_t i = pData[0]; s_pHasAnswers() && i < pData[0] + 2 * std::size(kQuestions); ++i) {
        try {
            kQuestions[i % std::size(kQuestions)](&s_objProducer.Binding, &nHandle);
        } catch (const CZrException&) {
        } catch (const std::out_of_range&) {  // the URL's name has no extension
        }
    }
    return 0;
}
