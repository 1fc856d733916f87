#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Environment.h"
#include "tests/TLClass/TreeOnDouble.h"

int CompareFeaturesMain(int argc, char** argv);
int GrabImagesMain(int argc, char** argv);
int ListCamerasMain(int argc, char** argv);
int OpenAndConfigureMain(int argc, char** argv);
int SaveFeaturesMain(int argc, char** argv);
int LoadFeaturesMain(int argc, char** argv);

namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// The examples, run in this process in front of the producer double, with the camera "cam-1" on "if-1".
class Examples : public testing::Test {
protected:
    Examples() {
        Double().AddInterface("if-1").Plug("cam-1").Identity("Maker", "Model", "SN7").UserId("left");
        Double().AddInterface("if-2");
    }

    ProducerDouble::IProducerControl& Double() const { return m_objTree.Double(); }

    int Run(int (*fnMain)(int, char**), std::vector<std::string> vecArgument) {
        std::vector<char*> vecPointer{const_cast<char*>("example")};
        for (std::string& strArgument : vecArgument) {
            vecPointer.push_back(strArgument.data());
        }
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int nResult = fnMain(static_cast<int>(vecPointer.size()), vecPointer.data());
        m_strOut = testing::internal::GetCapturedStdout();
        m_strError = testing::internal::GetCapturedStderr();
        EXPECT_TRUE(Double().OpenModules().empty());
        EXPECT_FALSE(Double().IsInitialised());
        return nResult;
    }

    CTreeOnDouble m_objTree;
    std::string m_strOut, m_strError;
};

TEST_F(Examples, ListCamerasShowsThemBelowTheirAdapters) {
    EXPECT_EQ(Run(ListCamerasMain, {}), 0) << m_strError;
    EXPECT_THAT(m_strOut, StartsWith("if-1:\n  cam-1 "));
    EXPECT_THAT(m_strOut, HasSubstr("free      Maker Model, serial number SN7, \"left\"\nif-2: no camera\n"));

    SetEnvironment("GENICAM_GENTL64_PATH", "/nowhere");
    EXPECT_EQ(Run(ListCamerasMain, {"1"}), 1);
    EXPECT_EQ(m_strError, "list-cameras: ZrGVTL.cti: not found in GENICAM_GENTL64_PATH (/nowhere)\n");
}

TEST_F(Examples, OpenAndConfigureSetsWhatItIsTold) {
    EXPECT_EQ(Run(OpenAndConfigureMain, {"left", "Width=32", "ExposureTime=2500.5", "PixelFormat=Mono16"}), 0)
        << m_strError;
    EXPECT_THAT(m_strOut, StartsWith("Width: 32 (1 to 64, in steps of 1)\nHeight: 48"));
    EXPECT_THAT(m_strOut, HasSubstr("ExposureTime: 2500.5 "));
    EXPECT_THAT(m_strOut, HasSubstr("Gain: not a feature of this camera\nPixelFormat: Mono16\n"));
    EXPECT_EQ(Double().Device("cam-1").Remote().Integer("Width"), 32);

    const struct {
        std::vector<std::string> vecArgument;
        std::string strError;
    } tblCase[] = {
        {{"cam-2"}, "cam-2: no such camera has answered"},
        {{"SN7", "Width=65"}, "Width"},
        {{"SN7", "Width=3x"}, "Width: \"3x\" isn't a number"},
        {{"SN7", "PixelFormat=Mono17"}, "Mono17"},
        {{"SN7", "Colour"}, "Colour: this example knows no such feature"},
    };
    for (const auto& objCase : tblCase) {
        EXPECT_EQ(Run(OpenAndConfigureMain, objCase.vecArgument), 1);
        EXPECT_THAT(m_strError, testing::AllOf(StartsWith("open-and-configure: "), HasSubstr(objCase.strError)));
    }
}

TEST_F(Examples, SaveFeaturesWritesTheFileOrLeavesItAsItWas) {
    const std::string strFile = m_objTree.Directory().Path("settings.txt");
    const auto Content = [&] {
        std::ifstream stream(strFile);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    };
    EXPECT_EQ(Run(SaveFeaturesMain, {"cam-1", strFile}), 0) << m_strError;
    EXPECT_EQ(m_strOut, strFile + ": saved\n");
    EXPECT_THAT(Content(), StartsWith("FileVersion: 1.0\nDeviceModelName: Model\n\n</"));

    const std::string strBefore = Content();
    Double().On("DevOpenDataStream").Fail(GC_ERR_IO, "the stream is broken");
    EXPECT_EQ(Run(SaveFeaturesMain, {"cam-1", strFile}), 1);
    EXPECT_EQ(m_strError, "save-features: the stream is broken\n");
    EXPECT_EQ(Content(), strBefore);
}

TEST_F(Examples, GrabImagesTellsOfEachOneByCallbackAndByPolling) {
    ProducerDouble::FRAME objFrame;
    objFrame.nFrameId = 7;
    objFrame.nWidth = 64;
    objFrame.nHeight = 48;
    objFrame.vecData.resize(64 * 48);
    Double().Device("cam-1").Stream().FlowFrames(objFrame);
    for (const std::vector<std::string>& vecArgument : {std::vector<std::string>{"left", "2"}, {"", "2", "--poll"}}) {
        EXPECT_EQ(Run(GrabImagesMain, vecArgument), 0) << m_strError;
        EXPECT_THAT(m_strOut, testing::MatchesRegex("frame [0-9]+: 64 x 48, 3072 bytes\nframe .*\n"
                                                    "2 frames, 0 lost, 0 incomplete\n"));
    }
    EXPECT_EQ(Run(GrabImagesMain, {"left", "0"}), 2);
}

TEST_F(Examples, LoadFeaturesWritesWhatTheCameraTakes) {
    const std::string strFile = m_objTree.Directory().Path("settings.txt");
    EXPECT_EQ(Run(SaveFeaturesMain, {"cam-1", strFile}), 0) << m_strError;
    std::ifstream streamSaved(strFile);
    const std::string strSaved(std::istreambuf_iterator<char>(streamSaved), {});
    const std::string strHeader = "# Device\n";
    ASSERT_THAT(strSaved, HasSubstr(strHeader));
    const auto Load = [&](const std::string& strWidth) {
        std::string strText = strSaved;
        strText.insert(strText.find(strHeader) + strHeader.size(), "Width\t" + strWidth + "\n");
        std::ofstream(strFile) << strText;
        return Run(LoadFeaturesMain, {"cam-1", strFile});
    };
    EXPECT_EQ(Load("32"), 0) << m_strError;
    EXPECT_EQ(Load("65"), 1);
    EXPECT_THAT(m_strError, HasSubstr("load-features: 1 settings were refused\n"));
    EXPECT_EQ(Double().Device("cam-1").Remote().Integer("Width"), 32);
    EXPECT_EQ(Run(CompareFeaturesMain, {"cam-1", strFile}), 0) << m_strError;
    EXPECT_EQ(m_strOut, "Width: 65 in the file, 32 now\n1 differences\n");
}

TEST_F(Examples, SayHowTheyAreUsed) {
    for (const auto fnMain : {GrabImagesMain, ListCamerasMain, OpenAndConfigureMain, SaveFeaturesMain}) {
        EXPECT_EQ(Run(fnMain, {"--help"}), 0);
        EXPECT_THAT(m_strOut, StartsWith("Usage: "));
    }
    EXPECT_EQ(Run(ListCamerasMain, {"soon"}), 2);
}

}  // namespace
