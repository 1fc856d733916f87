// A camera at the other end of a cable, worked on through the module tree and the bundled producer.

#include <optional>
#include <sstream>
#include <string>

#include <boost/pointer_cast.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassFeature/FeatureFileModule.h"
#include "TLClass/TLClassMain/GevDevice.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "support/ZrException.h"
#include "tests/producer/entries/TreeTest.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class CameraTree : public ProducerTree {
protected:
    void TearDown() override {
        ProducerTree::TearDown();
        m_objCamera.reset();
    }

    void Plug(const std::string& strAddress) {
        m_objCamera.reset();
        m_objCamera.emplace(*m_objFar, CameraAt(strAddress));
    }
    boost::shared_ptr<CGevDevice> Camera() const {
        bool bChanged = false;
        Interface(0)->DoUpdateDeviceList(200, &bChanged);
        return boost::dynamic_pointer_cast<CGevDevice>(Interface(0)->GetDeviceList().at(0));
    }
    /// The camera, open with its stream.
    boost::shared_ptr<CGevDevice> OpenCamera() const {
        const auto pCamera = Camera();
        pCamera->DoOpenDevice(DEVICE_ACCESS_CONTROL);
        pCamera->GetDataStreamList().at(0)->DoOpenDataStream();
        return pCamera;
    }
    static std::string Saved(const boost::shared_ptr<CGevDevice>& pCamera) {
        std::ostringstream stream;
        SaveDeviceFeatures(pCamera, stream);
        return stream.str();
    }
    static void SetEntry(IFeatureControl& objFeatures, const std::string& strName, const std::string& strEntry) {
        objFeatures.DoSetEnum(strName, objFeatures.DoGetEnumEntryValue(strName, strEntry));
    }

    std::optional<CRunningCamera> m_objCamera;
};

TEST_F(CameraTree, KeepsItsSettingsInAFileThroughAStart) {
    Plug("10.1.0.2/24");
    auto pCamera = OpenCamera();
    const std::string strFirst = Saved(pCamera);
    IFeatureControl& objBefore = *pCamera->GetRemoteFeatureControl();
    objBefore.DoSetInt("Width", 640);
    objBefore.DoSetInt("OffsetX", 640);  // lets no width back that is larger
    objBefore.DoSetFloat("ExposureTime", 1234.5);
    SetEntry(objBefore, "PixelFormat", "Mono12");
    SetEntry(objBefore, "TriggerSelector", "AcquisitionStart");
    SetEntry(objBefore, "TriggerSource", "Line1");
    SetEntry(objBefore, "TriggerSelector", "FrameStart");
    SetEntry(objBefore, "TriggerMode", "On");
    for (const int nPlace : {0, 7, 255}) {
        objBefore.DoSetInt("LUTIndex", nPlace);
        objBefore.DoSetInt("LUTValue", 200 - nPlace / 2);
    }
    objBefore.DoSetInt("LUTIndex", 7);
    const std::string strSaved = Saved(pCamera);
    EXPECT_EQ(Saved(pCamera), strSaved) << "the selectors stand where they stood";
    EXPECT_THAT(strSaved, HasSubstr("\nTriggerSelector\tAcquisitionStart\n"));
    pCamera->DoCloseDevice();

    Plug("10.1.0.2/24");
    pCamera = OpenCamera();
    EXPECT_EQ(Saved(pCamera), strFirst);
    std::istringstream stream(strSaved);
    EXPECT_THAT(LoadDeviceFeatures(pCamera, stream, true), IsEmpty());
    EXPECT_EQ(Saved(pCamera), strSaved);
    IFeatureControl& objAfter = *pCamera->GetRemoteFeatureControl();
    EXPECT_EQ(objAfter.DoGetInt("LUTIndex"), 7);
    EXPECT_EQ(objAfter.DoGetInt("LUTValue"), 197);
    SetEntry(objAfter, "TriggerSelector", "AcquisitionStart");
    EXPECT_EQ(objAfter.DoGetEnum("TriggerMode"), objAfter.DoGetEnumEntryValue("TriggerMode", "Off"));
    EXPECT_EQ(objAfter.DoGetEnum("TriggerSource"), objAfter.DoGetEnumEntryValue("TriggerSource", "Line1"));

    // And back, from a state in which the width of the file is beyond its limit until the offset has gone.
    std::istringstream streamFirst(strFirst);
    EXPECT_THAT(LoadDeviceFeatures(pCamera, streamFirst, true), IsEmpty());
    EXPECT_EQ(Saved(pCamera), strFirst);
    pCamera->DoCloseDevice();
}

TEST_F(CameraTree, OfAnotherSubnetGetsAnAddressClosed) {
    m_objMachine->Run("sysctl -qw net.ipv4.conf.all.rp_filter=0 net.ipv4.conf.eth0.rp_filter=0");
    Plug("172.16.9.9/24");
    const auto pCamera = Camera();
    EXPECT_EQ(pCamera->GetGevDevInfo().IPAddress, 0xAC100909);
    EXPECT_THROW(pCamera->DoForceIp("10.1.0.2", "nonsense", ""), CInvalidParameterError);
    EXPECT_THROW(pCamera->DoResetDevice(1), CNotImplementedError);
    pCamera->DoForceIp("10.1.0.2", "255.255.255.0", "");
    EXPECT_EQ(Camera(), pCamera);
    EXPECT_EQ(pCamera->GetGevDevInfo().IPAddress, 0x0A010002);
    pCamera->DoIpConfiguration(1, "10.1.0.3", "255.255.255.0", "", "named");
    pCamera->DoResetDevice(0);
    EXPECT_EQ(Camera(), pCamera);
    EXPECT_EQ(pCamera->GetGevDevInfo().IPAddress, 0x0A010003);
    EXPECT_EQ(pCamera->GetCommonInformation().UserID, "named");
    OpenCamera();
    // Under our own control it is still told what to keep.
    pCamera->DoIpConfiguration(1, "10.1.0.4", "255.255.255.0", "", "");
    EXPECT_EQ(pCamera->GetRemoteFeatureControl()->DoGetInt("GevPersistentIPAddress"), 0x0A010004);
    pCamera->DoCloseDevice();
}

}  // namespace
