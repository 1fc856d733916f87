#include <array>
#include <sstream>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassFeature/FeatureFileModule.h"
#include "tests/TLClass/TLClassMain/CameraOnDouble.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint64_t kLimitAddress = 0x100;
constexpr std::uint64_t kWidthAddress = 0x104;

std::string Number(const std::string& strName, std::uint64_t nAddress, const std::string& strLimits) {
    return "<Integer Name='" + strName + "'><Streamable>Yes</Streamable><pValue>" + strName + "Reg</pValue>" +
           strLimits + "</Integer><IntReg Name='" + strName + "Reg'><Address>" + std::to_string(nAddress) +
           "</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><Endianess>BigEndian"
           "</Endianess></IntReg>";
}

/// A camera whose Width may not be over its Limit, which a feature file names only behind it.
std::string Description(bool bBrackets) {
    std::string strNodes =
        "<Category Name='Root'><pFeature>Width</pFeature><pFeature>Limit</pFeature></Category>"
        "<String Name='DeviceModelName'><Value>Camera</Value></String>" +
        Number("Width", kWidthAddress, "<Min>0</Min><pMax>Limit</pMax>") +
        Number("Limit", kLimitAddress, "<Min>0</Min><Max>100</Max>");
    if (bBrackets) {
        for (const char* pName : {"DeviceRegistersStreamingStart", "DeviceRegistersStreamingEnd"}) {
            strNodes +=
                std::string("<Command Name='") + pName + "'><Value>0</Value><CommandValue>1</CommandValue></Command>";
        }
    }
    return "<RegisterDescription ModelName='M' VendorName='V' SchemaMajorVersion='1' SchemaMinorVersion='1' "
           "SchemaSubMinorVersion='0'>" +
           strNodes + "<Port Name='Device'/></RegisterDescription>";
}

void Save(const boost::shared_ptr<IDevice>& pDevice, std::ostream& stream) {
    SaveDeviceFeatures(pDevice, stream);
}
void Save(const boost::shared_ptr<IInterface>& pInterface, std::ostream& stream) {
    SaveInterfaceFeatures(pInterface, stream);
}

class FeatureFileOfModule : public CCameraOnDouble {
protected:
    void OpenWith(bool bBrackets, std::uint8_t nWidth, std::uint8_t nLimit) {
        Camera().Remote().Describe(Description(bBrackets));
        SetNumber(kWidthAddress, nWidth);
        SetNumber(kLimitAddress, nLimit);
        OpenStream();
    }
    void SetNumber(std::uint64_t nAddress, std::uint8_t nValue) {
        Camera().Remote().SetRegister(nAddress,
                                      std::array{std::byte{0}, std::byte{0}, std::byte{0}, std::byte{nValue}});
    }
    int Width() { return std::to_integer<int>(Camera().Remote().Register(kWidthAddress, 4).at(3)); }
};

TEST_F(FeatureFileOfModule, IsAppliedTwiceUnlessTheCameraKnowsTheBrackets) {
    for (const bool bBrackets : {false, true}) {
        OpenWith(bBrackets, 50, 60);
        std::ostringstream streamOut;
        SaveDeviceFeatures(m_pDevice, streamOut);
        m_pDevice->DoCloseDevice();

        OpenWith(bBrackets, 1, 10);
        std::string strText = streamOut.str();
        const std::string strOrder = "Limit\t60\nWidth\t50\n";
        ASSERT_THAT(strText, HasSubstr(strOrder));
        std::istringstream streamIn(strText.replace(strText.find(strOrder), strOrder.size(), "Width\t50\nLimit\t60\n"));
        const auto vecError = LoadDeviceFeatures(m_pDevice, streamIn, true);
        if (bBrackets) {
            EXPECT_THAT(vecError, ElementsAre(HasSubstr("Width")));
            EXPECT_EQ(Width(), 1);
        } else {
            EXPECT_THAT(vecError, IsEmpty());
            EXPECT_EQ(Width(), 50) << "the limit of the first pass let it in";
        }
        m_pDevice->DoCloseDevice();
    }
}

TEST_F(FeatureFileOfModule, NeedsAllItsNodeMaps) {
    std::stringstream stream;
    const auto ExpectRefused = [&](const auto& pModule, const char* pText) {
        EXPECT_THAT([&] { Save(pModule, stream); }, testing::ThrowsMessage<std::runtime_error>(pText));
    };
    ExpectRefused(boost::shared_ptr<IDevice>(), "Invalid device");
    ExpectRefused(boost::shared_ptr<IInterface>(), "Invalid device");
    ExpectRefused(m_pDevice, "No valid stream. The device may be closed.");
    Open();
    ExpectRefused(m_pDevice, "Invalid feature node maps");
    ExpectRefused(m_pInterface, "Failed to get device model");
    m_pDevice->DoCloseDevice();
}

}  // namespace
