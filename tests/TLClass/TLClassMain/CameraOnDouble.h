#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "TLClass/TLClassMain/IDataStream.h"
#include "support/ZrException.h"
#include "tests/TLClass/TreeFixture.h"

/// One adapter with one camera, listed and closed.
class CCameraOnDouble : public CAdapterTest {
protected:
    CCameraOnDouble() {
        Adapter().Plug("cam-1");
        Update();
        m_pDevice = Device(0);
    }

    ProducerDouble::IDeviceControl& Camera() const { return Double().Device("cam-1"); }
    ProducerDouble::IStreamControl& Wire() const { return Camera().Stream(); }
    void Open() const { m_pDevice->DoOpenDevice(DEVICE_ACCESS_CONTROL); }
    boost::shared_ptr<IDataStream> OpenStream() const {
        Open();
        const auto pStream = m_pDevice->GetDataStreamList().at(0);
        pStream->DoOpenDataStream();
        return pStream;
    }

    /// The calls of these entries since the last ClearCalls, in their order.
    std::vector<std::string> CallsOf(const std::vector<std::string>& vecEntry) const {
        std::vector<std::string> vecText;
        for (const ProducerDouble::CALL& objCall : Double().Calls()) {
            if (std::find(vecEntry.begin(), vecEntry.end(), objCall.strEntry) != vecEntry.end()) {
                vecText.push_back(objCall.Text());
            }
        }
        return vecText;
    }

    /// Of the process, the one that watches for data races among them, which comes with the first other.
    static std::ptrdiff_t Threads() {
        std::thread([] {}).join();
        return __ListedThreads();
    }
    /// One that was joined stays listed for a moment.
    static bool ComesDownTo(std::ptrdiff_t nThreads) {
        const auto tLast = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (__ListedThreads() > nThreads && std::chrono::steady_clock::now() < tLast) {
            std::this_thread::yield();
        }
        return __ListedThreads() <= nThreads;
    }

    /// Runs an operation once for each call that it makes to the producer on this thread, with this call failing.
    /// @param fnRun     the operation
    /// @param fnUndo    takes back one that went well
    /// @param fnFailed  looks at what one that threw has left
    /// @return the entries whose failure the operation lives with
    std::set<std::string> FailAtEachStep(const std::function<void()>& fnRun, const std::function<void()>& fnUndo,
                                         const std::function<void()>& fnFailed) const {
        Double().ClearCalls();
        fnRun();
        const std::vector<ProducerDouble::CALL> vecCall = Double().Calls();
        fnUndo();
        std::map<std::string, std::size_t> mapCount;
        std::set<std::string> setTolerated;
        for (const ProducerDouble::CALL& objCall : vecCall) {
            if (objCall.nThread != std::this_thread::get_id()) {
                continue;
            }
            SCOPED_TRACE(objCall.Text() + " fails");
            auto& objRule = Double().On(objCall.strEntry).Call(++mapCount[objCall.strEntry]).Fail(GC_ERR_IO);
            Double().ClearCalls();
            try {
                fnRun();
                setTolerated.insert(objCall.strEntry);
                fnUndo();
            } catch (const CZrException&) {
                fnFailed();
            }
            EXPECT_EQ(objRule.Hits(), 1U);
            objRule.Remove();
        }
        return setTolerated;
    }

    boost::shared_ptr<CGevDevice> m_pDevice;

private:
    static std::ptrdiff_t __ListedThreads() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    }
};
