// Failures that no producer and no description can cause: memory that runs out in the unpacking, and a fault in the
// parser that is no exception of the standard library.

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "GenApi/NodeMapRef.h"
#include "TLClass/TLClassXML/LoadXMLAgency.h"
#include "TLClass/TLClassXML/XMLAnalyzer.h"
#include "TLClass/TLClassXML/XMLLoader.h"
#include "tests/TLClass/TLClassXML/ArchiveWriter.h"
#include "tests/TLClass/TLClassXML/SystemPort.h"
#include "tests/TLClass/Thrown.h"

namespace {

thread_local std::size_t g_nLargestAllocation = std::numeric_limits<std::size_t>::max();
bool g_bParserFaults = false;

}  // namespace

void* operator new(std::size_t nSize) {
    void* const p = nSize <= g_nLargestAllocation ? std::malloc(nSize) : nullptr;
    if (p == nullptr) {
        throw std::bad_alloc();
    }
    return p;
}

// The form for arrays goes through the one above by itself, but not where a sanitizer has its own.
void* operator new[](std::size_t nSize) {
    return operator new(nSize);
}

void operator delete(void* p) noexcept {
    std::free(p);
}

void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}

void operator delete[](void* p) noexcept {
    std::free(p);
}

void operator delete[](void* p, std::size_t) noexcept {
    std::free(p);
}

// The linker puts this in the way of CNodeMapRef::_LoadXMLFromString.
extern "C" void REAL_LOAD(GenApi_3_0::CNodeMapRef* pThis, const GenICam_3_0::gcstring& strXML);
extern "C" void WRAPPED_LOAD(GenApi_3_0::CNodeMapRef* pThis, const GenICam_3_0::gcstring& strXML);
extern "C" void WRAPPED_LOAD(GenApi_3_0::CNodeMapRef* pThis, const GenICam_3_0::gcstring& strXML) {
    if (g_bParserFaults) {
        throw 42;
    }
    REAL_LOAD(pThis, strXML);
}

namespace {

TEST(XMLFault, ExceptionInTheUnpackingFailsTheLoad) {
    CSystemPort objSystem(PRODUCER_DOUBLE);
    objSystem.Serve("cam.zip", CompressZlib(MakeDescriptionText(50000)));
    CXMLLoader objLoader(objSystem.Library(), objSystem.Handle());
    g_nLargestAllocation = 1000000;  // enough for all but the hundredfold buffer
    EXPECT_EQ(MessageOf<CUnexpectedError>([&] { objLoader.LoadXML(); }), "Uncompress zip file failed");
    g_nLargestAllocation = std::numeric_limits<std::size_t>::max();
    EXPECT_TRUE(objLoader.LoadXML() == MakeDescriptionText(50000));
}

TEST(XMLFault, FaultInTheParserEndsAsAnExceptionOfTheFamily) {
    CSystemPort objSystem(PRODUCER_DOUBLE);
    objSystem.Port().AddInteger("Width", 640);
    CXMLAnalyzer objAnalyzer(objSystem.Library());
    g_bParserFaults = true;
    EXPECT_EQ(MessageOf<CUnexpectedError>([&] { CLoadXMLAgency(objAnalyzer, objSystem.Handle()); }),
              "CNodeMapRef::_LoadXMLFromString failed");
    EXPECT_EQ(objAnalyzer.GetNodeMapRef(), nullptr);
    // The lock around the parse is free again.
    g_bParserFaults = false;
    objAnalyzer.LoadXMLFromPortHandle(objSystem.Handle());
    EXPECT_NE(objAnalyzer.GetNodeMapRef()->_GetNode("Width"), nullptr);
}

}  // namespace
