// The pages that list what a program has, held against the running program.

#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "GenApi/Node.h"
#include "GenApi/NodeMap.h"
#include "GenApi/NodeVector.h"
#include "TLClass/TLClassXML/XMLAnalyzer.h"
#include "camera/Faults.h"
#include "camera/FeatureTable.h"
#include "tests/camera/RunningCamera.h"
#include "tests/producer/entries/ProducerTest.h"

namespace {

using Names = std::set<std::string>;

/// What stands between backticks in a section of a page: in the first cell of each row of its tables, or in all of
/// them.
Names NamesOf(const std::string& strPage, const std::string& strSection, bool bAllCells = false) {
    std::ifstream stream(std::string(DOCS_DIRECTORY "/") + strPage);
    EXPECT_TRUE(stream) << strPage;
    Names setName;
    bool bInside = false;
    for (std::string strLine; std::getline(stream, strLine);) {
        if (strLine.starts_with("## ")) {
            bInside = strLine == "## " + strSection;
        }
        if (!bInside || !strLine.starts_with('|')) {
            continue;
        }
        const std::string strCells = bAllCells ? strLine : strLine.substr(0, strLine.find('|', 1));
        for (std::size_t nStart = strCells.find('`'); nStart != std::string::npos;) {
            const std::size_t nEnd = strCells.find('`', nStart + 1);
            setName.insert(strCells.substr(nStart + 1, nEnd - nStart - 1));
            nStart = nEnd == std::string::npos ? nEnd : strCells.find('`', nEnd + 1);
        }
    }
    return setName;
}

class ProducerPage : public ProducerTest {
protected:
    Names FeaturesOf(PORT_HANDLE hPort) {
        CXMLAnalyzer objAnalyzer(&Lib());
        objAnalyzer.LoadXMLFromPortHandle(hPort);
        GenApi_3_0::NodeList_t vecNode;
        objAnalyzer.GetNodeMapRef()->_GetNodes(vecNode);
        Names setName;
        for (const GenApi_3_0::INode* pNode : vecNode) {
            if (pNode->IsFeature() && pNode->GetPrincipalInterfaceType() != GenApi_3_0::intfICategory) {
                setName.insert(pNode->GetName().c_str());
            }
        }
        return setName;
    }
};

TEST_F(ProducerPage, ListsTheFeaturesOfEveryModule) {
    camera::CAMERA_CONFIGURATION objConfiguration;
    objConfiguration.Interface = "far0";
    objConfiguration.IP = camera::ParseIPSetting("10.1.0.9/24");
    const CRunningCamera objCamera(*m_objFar, objConfiguration);
    const TL_HANDLE hTL = OpenSystem();
    const IF_HANDLE hInterface = OpenInterface(hTL);
    ASSERT_EQ(Lib().IFUpdateDeviceList(hInterface, nullptr, 500), GC_ERR_SUCCESS) << LastError();
    DEV_HANDLE hDevice = nullptr;
    ASSERT_EQ(Lib().IFOpenDevice(hInterface, DeviceId(hInterface).c_str(), DEVICE_ACCESS_CONTROL, &hDevice),
              GC_ERR_SUCCESS)
        << LastError();
    char szStream[256] = {};
    std::size_t nSize = sizeof szStream;
    ASSERT_EQ(Lib().DevGetDataStreamID(hDevice, 0, szStream, &nSize), GC_ERR_SUCCESS) << LastError();
    DS_HANDLE hStream = nullptr;
    ASSERT_EQ(Lib().DevOpenDataStream(hDevice, szStream, &hStream), GC_ERR_SUCCESS) << LastError();

    EXPECT_EQ(NamesOf("producer.md", "System module"), FeaturesOf(hTL));
    EXPECT_EQ(NamesOf("producer.md", "Interface module"), FeaturesOf(hInterface));
    EXPECT_EQ(NamesOf("producer.md", "Device module"), FeaturesOf(hDevice));
    EXPECT_EQ(NamesOf("producer.md", "Stream module"), FeaturesOf(hStream));
}

TEST(VirtualCameraPage, ListsItsFaultsAndFeatures) {
    Names setFault, setFeature;
    for (const camera::FAULT_HELP& objHelp : camera::ListFaults()) {
        setFault.emplace(objHelp.Form);
    }
    for (const camera::FEATURE& objFeature : camera::ListFeatures()) {
        setFeature.emplace(objFeature.Name);
    }
    EXPECT_EQ(NamesOf("virtual-camera.md", "Faults"), setFault);
    EXPECT_EQ(NamesOf("virtual-camera.md", "Features", true), setFeature);
}

}  // namespace
