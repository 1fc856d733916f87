#pragma once

#include <optional>
#include <string>

#include <boost/pointer_cast.hpp>
#include <gtest/gtest.h>

#include "TLClass/TLClassEvent/IDeviceOfflineCallback.h"
#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "TLClass/TLClassMain/GevInterface.h"
#include "TLClass/TLClassMain/GevTL.h"
#include "TLClass/TLClassMain/TLManager.h"
#include "support/Environment.h"
#include "support/Event.h"
#include "tests/TLClass/TemporaryDirectory.h"
#include "tests/camera/RunningCamera.h"
#include "tests/producer/entries/ProducerTest.h"

/// Signals its one event when the camera goes; clones share it.
class COfflineSignal : public IDeviceOfflineCallback {
public:
    explicit COfflineSignal(CEvent& objEvent) : m_objEvent(objEvent) {}
    IEventCallback* Clone() override { return new COfflineSignal(*this); }
    void OnDeviceOffline() override { m_objEvent.Signal(); }

private:
    CEvent& m_objEvent;
};

/// The module tree on the bundled producer, with its interfaces listed: the first is eth0, the second eth1.
class ProducerTree : public ProducerTest {
protected:
    void SetUp() override {
        ProducerTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        ASSERT_EQ(Lib().GCCloseLib(), GC_ERR_SUCCESS) << "the tree initialises it itself";
        m_objDirectory.emplace();
        SetEnvironment("GENICAM_GENTL64_PATH", PRODUCER_CTI_DIRECTORY);
        SetEnvironment("ALLUSERSPROFILE", m_objDirectory->Path("profile"));
        GetTLManager()->DoInit({"ZrGVTL.cti"});
        m_pTL = boost::dynamic_pointer_cast<CGevTL>(GetTLManager()->GetTLList().at(0));
        ASSERT_TRUE(m_pTL);
        bool bChanged = false;
        m_pTL->DoUpdateInterfaceList(0, &bChanged);
        EXPECT_TRUE(bChanged);
    }

    void TearDown() override {
        m_pTL.reset();
        if (m_objDirectory) {
            GetTLManager()->DoUninit();
        }
    }

    boost::shared_ptr<CGevInterface> Interface(std::size_t nIndex) const {
        return boost::dynamic_pointer_cast<CGevInterface>(m_pTL->GetInterfaceList().at(nIndex));
    }

    static IFeatureControl& Features(const CGcObject& objModule) { return *objModule.GetFeatureControl(); }

    /// What a camera at the other end of the cable of eth0 is made of.
    static camera::CAMERA_CONFIGURATION CameraAt(const std::string& strAddress) {
        camera::CAMERA_CONFIGURATION objConfiguration;
        objConfiguration.Interface = "far0";
        objConfiguration.IP = camera::ParseIPSetting(strAddress);
        return objConfiguration;
    }

    std::optional<CTemporaryDirectory> m_objDirectory;
    boost::shared_ptr<CGevTL> m_pTL;
};
