#pragma once

#include <algorithm>
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

#include <boost/pointer_cast.hpp>
#include <gtest/gtest.h>

#include "TLClass/TLClassMain/GevDevice.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "support/ZrException.h"
#include "tests/TLClass/TreeOnDouble.h"

/// One adapter with one camera, listed and closed.
class CCameraOnDouble : public testing::Test {
protected:
    CCameraOnDouble() {
        m_objTree.Init();
        m_pInterface = m_objTree.AddInterface("if-1");
        Adapter().Plug("cam-1");
        UpdateDevices(*m_pInterface);
        m_pDevice = boost::dynamic_pointer_cast<CGevDevice>(m_pInterface->GetDeviceList().at(0));
    }

    ProducerDouble::IProducerControl& Double() const { return m_objTree.Double(); }
    ProducerDouble::IInterfaceControl& Adapter() const { return Double().Interface("if-1"); }
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

    static std::ptrdiff_t Threads() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
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

    CTreeOnDouble m_objTree;
    boost::shared_ptr<CGevInterface> m_pInterface;
    boost::shared_ptr<CGevDevice> m_pDevice;
};
