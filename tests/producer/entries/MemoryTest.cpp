// The library with no memory left at any place where it wants some.

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>

#include "tests/camera/RunningCamera.h"
#include "tests/producer/entries/ProducerTest.h"

namespace {

thread_local long t_nLeft = -1;  // allocations of this thread that still succeed; without end below 0

void* Allocate(std::size_t nSize) {
    void* const pMemory = t_nLeft == 0 ? nullptr : std::malloc(nSize != 0 ? nSize : 1);
    t_nLeft -= t_nLeft > 0 ? 1 : 0;
    return pMemory != nullptr ? pMemory : throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t nSize) {
    return Allocate(nSize);
}
void* operator new[](std::size_t nSize) {
    return Allocate(nSize);
}
void operator delete(void* pMemory) noexcept {
    std::free(pMemory);
}
void operator delete[](void* pMemory) noexcept {
    std::free(pMemory);
}
void operator delete(void* pMemory, std::size_t) noexcept {
    std::free(pMemory);
}
void operator delete[](void* pMemory, std::size_t) noexcept {
    std::free(pMemory);
}

namespace {

class ProducerWithoutMemory : public ProducerTest {
protected:
    GC_ERROR With(long nAllocations, const std::function<GC_ERROR()>& funCall) {
        t_nLeft = nAllocations;
        const GC_ERROR nResult = funCall();
        t_nLeft = -1;
        return nResult;
    }
};

TEST_F(ProducerWithoutMemory, SaysSoAndStillCloses) {
    camera::CAMERA_CONFIGURATION objConfiguration;
    objConfiguration.Interface = "far0";
    objConfiguration.IP = camera::ParseIPSetting("10.1.0.2/24");
    CRunningCamera objCamera(*m_objFar, objConfiguration);
    const TL_HANDLE hTL = OpenSystem();
    const std::string strId = InterfaceId(hTL, 0);
    IF_HANDLE hInterface = nullptr;
    DEV_HANDLE hDevice = nullptr;
    const std::function<GC_ERROR()> arrCall[] = {
        [&] { return Lib().TLUpdateInterfaceList(hTL, nullptr, 0); },
        [&] { return Lib().TLOpenInterface(hTL, strId.c_str(), &hInterface); },
        [&] { return Lib().IFUpdateDeviceList(hInterface, nullptr, 0); },
        [&] { return Lib().IFOpenDevice(hInterface, "IP::10.1.0.2", DEVICE_ACCESS_CONTROL, &hDevice); }};
    for (const auto& funCall : arrCall) {
        GC_ERROR nResult = GC_ERR_OUT_OF_MEMORY;
        for (long n = 0; n < 10'000 && nResult == GC_ERR_OUT_OF_MEMORY; ++n) {
            nResult = With(n, funCall);
        }
        EXPECT_EQ(nResult, GC_ERR_SUCCESS) << LastError();
    }
    EXPECT_EQ(With(0, [&] { return Lib().IFClose(hInterface); }), GC_ERR_SUCCESS);
}

}  // namespace
