// Whole commands, from the command line to what they print and leave in files, on the producer double.

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <streambuf>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "ctl/ProducerPath.h"
#include "ctl/Program.h"
#include "support/Environment.h"
#include "tests/TLClass/TreeOnDouble.h"

namespace {

using nlohmann::json;
using ProducerDouble::FRAME;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kSerial = "4711";

/// A user with one camera; the camera's own description has a number, a command and what a stream needs.
class Program : public testing::Test {
protected:
    Program() {
        auto& objCamera = m_objTree.Double().AddInterface("eth1").Plug("cam-1");
        objCamera.Identity("Vendor", "Area 100", kSerial).UserId("left");
        objCamera.Address({ProducerDouble::Ipv4(192, 168, 1, 16), 0xFFFFFF00, 0, 0x025E1700ADEA});
        Remote().Describe(kDescription);
        SetRegister(0x100, 64);
        SetRegister(0x104, 8);
        SetRegister(0x108, 0);
        Remote().SetRegister(0x10C, std::vector{std::byte{192}, std::byte{168}, std::byte{1}, std::byte{9}});
    }

    EXIT_CODE Run(std::vector<std::string> vecArgument) {
        std::ostringstream objOut;
        std::ostringstream objErr;
        const EXIT_CODE eExitCode = RunProgram(vecArgument, {objOut, objErr});
        m_strOut = objOut.str();
        m_strErr = objErr.str();
        return eExitCode;
    }

    ProducerDouble::IPortControl& Remote() const { return m_objTree.Double().Device("cam-1").Remote(); }
    ProducerDouble::IStreamControl& Stream() const { return m_objTree.Double().Device("cam-1").Stream(); }
    void SetRegister(std::uint64_t nAddress, std::uint8_t nValue) const {
        Remote().SetRegister(nAddress, std::vector{std::byte{0}, std::byte{0}, std::byte{0}, std::byte{nValue}});
    }
    std::string Path(const std::string& strName) const { return m_objTree.Directory().Path(strName); }

    static constexpr const char* kDescription = R"(<RegisterDescription ModelName='M' VendorName='V'
        SchemaMajorVersion='1' SchemaMinorVersion='1' SchemaSubMinorVersion='0'>
        <Category Name='Root'><pFeature>About</pFeature><pFeature>Image</pFeature></Category>
        <Category Name='About'><pFeature>DeviceModelName</pFeature><pFeature>Image</pFeature></Category>
        <Category Name='Image'><pFeature>Width</pFeature><pFeature>PayloadSize</pFeature>
            <pFeature>Target</pFeature><pFeature>AcquisitionStart</pFeature><pFeature>About</pFeature></Category>
        <String Name='DeviceModelName'><ImposedAccessMode>RO</ImposedAccessMode><Value>Area</Value></String>
        <Integer Name='Width'><Streamable>Yes</Streamable><pValue>WidthReg</pValue><Min>16</Min><Max>64</Max>
            <Inc>4</Inc><Unit>px</Unit></Integer>
        <IntReg Name='WidthReg'><Address>0x100</Address><Length>4</Length><AccessMode>RW</AccessMode>
            <pPort>Device</pPort><Endianess>BigEndian</Endianess></IntReg>
        <IntReg Name='PayloadSize'><Address>0x104</Address><Length>4</Length><AccessMode>RO</AccessMode>
            <pPort>Device</pPort><Endianess>BigEndian</Endianess></IntReg>
        <IntReg Name='Target'><Address>0x10C</Address><Length>4</Length><AccessMode>RW</AccessMode>
            <pPort>Device</pPort><Endianess>BigEndian</Endianess><Representation>IPV4Address</Representation></IntReg>
        <Command Name='AcquisitionStart'><pValue>StartReg</pValue><CommandValue>1</CommandValue></Command>
        <Command Name='AcquisitionStop'><pValue>StartReg</pValue><CommandValue>0</CommandValue></Command>
        <IntReg Name='StartReg'><Address>0x108</Address><Length>4</Length><AccessMode>RW</AccessMode>
            <pPort>Device</pPort><Cachable>NoCache</Cachable><Endianess>BigEndian</Endianess></IntReg>
        <Port Name='Device'/></RegisterDescription>)";

    CTreeOnDouble m_objTree;
    std::string m_strOut;
    std::string m_strErr;
};

TEST_F(Program, ListsCamerasForPeopleAndForScripts) {
    EXPECT_EQ(Run({"list"}), EXIT_CODE::Success);
    EXPECT_THAT(m_strOut, AllOf(HasSubstr("Area 100"), HasSubstr(kSerial), HasSubstr("left"),
                                HasSubstr("02-5E-17-00-AD-EA"), HasSubstr("192.168.1.16")));

    m_objTree.Double().Device("cam-1").UserId("\xFF\x1B");
    EXPECT_EQ(Run({"list", "--json"}), EXIT_CODE::Success);
    const json objDocument = json::parse(m_strOut);
    EXPECT_EQ(objDocument["cameras"][0]["serial"], kSerial);
    EXPECT_EQ(objDocument["cameras"][0]["mac"], "02-5E-17-00-AD-EA");
    EXPECT_TRUE(objDocument["cameras"][0]["interface"].is_null()) << "this machine has no such adapter";
    EXPECT_EQ(objDocument["cameras"].size(), 1U);
    EXPECT_EQ(objDocument["adapters"].size(), 1U);
    EXPECT_EQ(Run({"list", "-v", "--adapter", "eth1"}), EXIT_CODE::Success);
    EXPECT_THAT(m_strOut, HasSubstr(kSerial));
    EXPECT_EQ(Run({"list", "--adapter", "eth"}), EXIT_CODE::Failure);
    EXPECT_THAT(m_strErr, HasSubstr("no network adapter eth. There are: eth1"));

    m_objTree.Double().Unplug("cam-1");
    EXPECT_EQ(Run({"list"}), EXIT_CODE::Success);
    EXPECT_THAT(m_strOut, IsEmpty());
    EXPECT_THAT(m_strErr, HasSubstr("No camera answered"));
    EXPECT_THAT(m_objTree.Double().OpenModules(), IsEmpty());
}

TEST_F(Program, LooksAsLongAsItIsToldThoughAProducerLooksShorter) {
    m_objTree.Double().Unplug("cam-1");
    std::thread objUser([this] {
        EXPECT_TRUE(m_objTree.Double().WaitForCalls("IFUpdateDeviceList", 2));
        m_objTree.Double().Plug("cam-1");
    });
    EXPECT_EQ(Run({"features", kSerial, "get", "Width", "--search", "1200"}), EXIT_CODE::Success) << m_strErr;
    objUser.join();
}

TEST_F(Program, ReadsAndWritesFeatures) {
    ASSERT_EQ(Run({"features", "left", "--json"}), EXIT_CODE::Success) << m_strErr;
    json objWidth = json::parse(R"({"kind": "integer", "value": 64, "unit": "px", "readable": true, "writable": true,
                                    "limits": {"min": 16, "max": 64, "increment": 4}})");
    EXPECT_EQ(json::parse(m_strOut)["Image"]["Width"], objWidth);
    EXPECT_EQ(json::parse(m_strOut)["Image"]["Target"]["value"], "192.168.1.9");
    EXPECT_EQ(Run({"features", "left"}), EXIT_CODE::Success);
    EXPECT_THAT(m_strOut,
                AllOf(HasSubstr("64 px        read, write: 16 to 64"), HasSubstr("192.168.1.9  read, write\n")));

    EXPECT_EQ(Run({"features", kSerial, "set", "Width", "32"}), EXIT_CODE::Success) << m_strErr;
    EXPECT_EQ(Run({"features", kSerial, "get", "Width"}), EXIT_CODE::Success);
    EXPECT_EQ(m_strOut, "32\n");
    ASSERT_EQ(Run({"features", kSerial, "set", "Width", "20", "--json"}), EXIT_CODE::Success) << m_strErr;
    objWidth["value"] = 20;
    EXPECT_EQ(json::parse(m_strOut), objWidth);
    ASSERT_EQ(Run({"features", kSerial, "--json", "get", "Width"}), EXIT_CODE::Success) << m_strErr;
    EXPECT_EQ(json::parse(m_strOut), objWidth);

    EXPECT_EQ(Run({"features", kSerial, "set", "Width", "33"}), EXIT_CODE::Failure);
    EXPECT_THAT(m_strErr, HasSubstr("16 to 64 in steps of 4"));
    EXPECT_EQ(Run({"features", kSerial, "set", "Width", "-4"}), EXIT_CODE::Failure);
    EXPECT_THAT(m_strErr, HasSubstr("16 to 64 in steps of 4"));
    EXPECT_EQ(Run({"features", kSerial, "get", "width"}), EXIT_CODE::Failure);
    EXPECT_THAT(m_strErr, HasSubstr("meant: Width"));
    EXPECT_EQ(Run({"features", kSerial, "set", "DeviceModelName", "x"}), EXIT_CODE::NoAccess);
    EXPECT_EQ(Run({"features", "nobody"}), EXIT_CODE::NoSuchCamera);
    Remote().Describe("<RegisterDescription");
    EXPECT_EQ(Run({"features", "left"}), EXIT_CODE::Failure);
    EXPECT_THAT(m_strErr, HasSubstr("a description of its features that is damaged"));
    EXPECT_THAT(m_objTree.Double().OpenModules(), IsEmpty());
}

ProducerDouble::IProducerControl* g_pProducer = nullptr;
std::string g_strSeen;

extern "C" void OnCtrlC(int /*nSignal*/) {
    g_strSeen += g_pProducer->OpenModules().empty() ? "free " : "held ";
}

/// A terminal whose user presses Ctrl-C as soon as something comes out.
class CPressingTerminal : public std::streambuf {
    int_type overflow(int_type nCharacter) override {
        if (g_strSeen.empty()) {
            std::raise(SIGINT);
            g_strSeen += "printed ";
        }
        return traits_type::not_eof(nCharacter);
    }
    std::streamsize xsputn(const char* /*pText*/, std::streamsize nCount) override {
        overflow(0);
        return nCount;
    }
};

TEST_F(Program, LetsGoOfTheCameraBeforeItEndsByCtrlC) {
    g_pProducer = &m_objTree.Double();
    CPressingTerminal objTerminal;
    std::ostream objOut(&objTerminal);
    std::ostringstream objErr;
    const auto fnBefore = std::signal(SIGINT, OnCtrlC);
    EXPECT_EQ(RunProgram({"features", "left", "set", "Width", "32"}, {objOut, objErr}), EXIT_CODE::Success);
    std::signal(SIGINT, fnBefore);
    EXPECT_EQ(g_strSeen, "printed free ");
}

TEST_F(Program, BringsSettingsBackFromAFeatureFile) {
    const std::string strFile = Path("settings.txt");
    ASSERT_EQ(Run({"features", "left", "save", strFile}), EXIT_CODE::Success) << m_strErr;
    EXPECT_EQ(Run({"features", "left", "diff", strFile}), EXIT_CODE::Success) << m_strErr;
    EXPECT_THAT(m_strOut, IsEmpty());
    EXPECT_EQ(Run({"features", "left", "set", "Width", "16"}), EXIT_CODE::Success);
    EXPECT_EQ(Run({"features", "left", "diff", strFile}), EXIT_CODE::Different);
    EXPECT_THAT(m_strOut, HasSubstr("\nWidth    -          64    16      camera\n"));
    EXPECT_EQ(Run({"features", "left", "diff", strFile, "--json"}), EXIT_CODE::Different);
    EXPECT_EQ(
        json::parse(m_strOut)["differences"],
        json::parse(R"([{"module": "camera", "feature": "Width", "selectors": {}, "file": "64", "camera": "16"}])"));
    EXPECT_EQ(Run({"features", "left", "load", strFile}), EXIT_CODE::Success) << m_strErr;
    EXPECT_EQ(Run({"features", "left", "get", "Width"}), EXIT_CODE::Success);
    EXPECT_EQ(m_strOut, "64\n");

    std::string strText;
    {
        std::ifstream objFile(strFile);
        strText.assign(std::istreambuf_iterator<char>(objFile), {});
    }
    strText.replace(strText.find("Width\t64"), 8, "Width\t99");
    std::ofstream(strFile) << strText;
    EXPECT_EQ(Run({"features", "left", "load", strFile, "--json"}), EXIT_CODE::Incomplete);
    EXPECT_EQ(json::parse(m_strOut)["refused"].size(), 1U);
    strText.replace(strText.find("Width\t99"), 8, "Gone\t1");
    std::ofstream(strFile) << strText;
    EXPECT_EQ(Run({"features", "left", "diff", strFile}), EXIT_CODE::Incomplete);
    EXPECT_THAT(m_strErr, HasSubstr("Gone: There is no such feature"));
}

TEST_F(Program, SaysWhatIsWrongWithWhichFile) {
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    std::ofstream(Path("huge")) << "x";
    std::filesystem::resize_file(Path("huge"), std::uintmax_t{1} << 40);
    std::ofstream(Path("picture")) << "no feature file";
    const struct {
        std::string strFile;
        const char* pError;
    } arrCase[] = {{Path("missing"), "missing: it can't be read: No such file or directory"},
                   {Path(""), "it is no regular file"},
                   {Path("pipe"), "pipe: it is no regular file"},
                   {"/dev/zero", "/dev/zero: it is no regular file"},
                   {Path("huge"), "huge: it is longer than 8388608 bytes"},
                   {Path("picture"), "picture: Invalid feature file format"}};
    for (const auto& objCase : arrCase) {
        for (const char* pCommand : {"load", "diff"}) {
            EXPECT_EQ(Run({"features", "left", pCommand, objCase.strFile}), EXIT_CODE::Failure);
            EXPECT_THAT(m_strErr, HasSubstr(objCase.pError));
        }
    }
    EXPECT_EQ(Run({"features", "left", "save", Path("pipe")}), EXIT_CODE::Failure);
    EXPECT_TRUE(std::filesystem::is_fifo(Path("pipe"))) << "it isn't replaced";
}

TEST_F(Program, GrabsFramesToFiles) {
    FRAME objFrame;
    objFrame.nFrameId = 1;
    objFrame.nWidth = 4;
    objFrame.nHeight = 2;
    objFrame.vecData = ProducerDouble::BytesOf("abcdefgh");
    Stream().FlowFrames(objFrame);
    EXPECT_EQ(Run({"grab", "left", "-n", "3", "-o", Path("raw"), "--raw"}), EXIT_CODE::Success) << m_strErr;
    std::ifstream objRaw(Path("raw/frame-000003-4x2-Mono8.raw"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(objRaw), {}), "abcdefgh");
    ASSERT_EQ(Run({"grab", "left", "-n", "2", "-o", Path("png"), "--json"}), EXIT_CODE::Success) << m_strErr;
    EXPECT_EQ(json::parse(m_strOut)["frames"], 2);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(Path("png")), {}), 2);
    EXPECT_THAT(m_objTree.Double().OpenModules(), IsEmpty());

    // Nothing that can be a picture, and nothing at all.
    objFrame.nWidth = 4000;
    Stream().FlowFrames(objFrame);
    EXPECT_EQ(Run({"grab", "left", "-o", Path("bad")}), EXIT_CODE::Failure);
    EXPECT_THAT(m_strErr, HasSubstr("4000x2 Mono8 with 8 bytes"));
    Stream().StopFlow();
    EXPECT_EQ(Run({"grab", "left", "-o", Path("none"), "--timeout", "50"}), EXIT_CODE::Incomplete);
    EXPECT_THAT(m_strErr, HasSubstr("No complete frame came for 50 ms"));
    EXPECT_THAT(m_objTree.Double().OpenModules(), IsEmpty());
    EXPECT_THAT(m_objTree.Double().RegisteredEvents(), IsEmpty());
}

TEST_F(Program, RefusesWhatItDoesNotUnderstand) {
    const std::vector<std::vector<std::string>> arrCase = {
        {},
        {"fly"},
        {"list", "--search", "soon"},
        {"grab", "left", "-n", "0"},
        {"features", "left", "get"},
        {"recover", "02-5E-17-00-AD-EA", "0.1.2.3", "--dry-run"},
        {"recover", "02-5E-17-00-AD-EA", "10.1.2.3.4", "--dry-run"},
        {"recover", "02-5E-17-00-AD", "10.1.2.3", "--dry-run"},
    };
    for (const auto& vecArgument : arrCase) {
        EXPECT_EQ(Run(vecArgument), EXIT_CODE::Usage);
        EXPECT_THAT(m_strOut, IsEmpty());
        EXPECT_FALSE(m_strErr.empty());
    }
    Run({"list", "--jsn"});
    EXPECT_THAT(m_strErr, AllOf(HasSubstr("--jsn"), HasSubstr("Try norvikctl list --help\n")));
    Run({"lsit", "left"});
    EXPECT_EQ(m_strErr, "norvikctl: lsit: no such command. Try norvikctl --help\n");
    EXPECT_EQ(Run({"grab", "--help"}), EXIT_CODE::Success);
    EXPECT_THAT(m_strOut, AllOf(HasSubstr("--frames"), HasSubstr("Bayer")));
}

TEST_F(Program, SaysWhereItLookedForAProducer) {
    SetEnvironment(kProducerPathVariable, "/nowhere:/else");
    EXPECT_EQ(Run({"list"}), EXIT_CODE::NoProducer);
    EXPECT_THAT(m_strErr, HasSubstr("/nowhere:/else"));
}

TEST(JoinSearchPath, PutsTheUsersFoldersFirst) {
    EXPECT_EQ(JoinSearchPath("", "/ours"), "/ours");
    EXPECT_EQ(JoinSearchPath("::", "/ours"), "/ours");
    EXPECT_EQ(JoinSearchPath("/theirs", "/ours"), "/theirs:/ours");
    EXPECT_EQ(JoinSearchPath("/ours:/theirs", "/ours"), "/ours:/theirs");
    EXPECT_EQ(JoinSearchPath("/theirs", ""), "/theirs");
}

}  // namespace
