#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassXML/Port.h"
#include "TLClass/TLClassXML/XMLLimits.h"
#include "TLClass/TLClassXML/XMLLoader.h"
#include "tests/TLClass/TLClassXML/ArchiveWriter.h"
#include "tests/TLClass/TLClassXML/SystemPort.h"
#include "tests/TLClass/TemporaryDirectory.h"
#include "tests/TLClass/Thrown.h"

namespace {

using ProducerDouble::ANSWER;
using ProducerDouble::BytesOf;
using testing::HasSubstr;

const std::string kText = MakeDescriptionText(50000);

class XMLLoader : public testing::Test {
protected:
    std::string Load() {
        testing::internal::CaptureStdout();
        std::string strXML;
        try {
            strXML = CXMLLoader(m_objSystem.Library(), m_objSystem.Handle()).LoadXML();
        } catch (...) {
            testing::internal::GetCapturedStdout();
            throw;
        }
        m_strPrinted = testing::internal::GetCapturedStdout();
        return strXML;
    }

    void ExpectLoaded(const std::string& strExpected, const std::string& strWhat) {
        EXPECT_TRUE(Load() == strExpected) << strWhat;
        EXPECT_EQ(m_strPrinted, "") << strWhat;
    }

    template <typename ERROR>
    std::string Failure() {
        return MessageOf<ERROR>([this] { Load(); });
    }

    CSystemPort m_objSystem{PRODUCER_DOUBLE};
    CTemporaryDirectory m_objDirectory;
    std::string m_strPrinted;
};

TEST_F(XMLLoader, RegistersAreReadInOneCallWhateverTheUrlsForm) {
    m_objSystem.Port().SetRegister(0xA000, std::as_bytes(std::span(kText)));
    for (const char* pUrl : {"Local:Cam.xml;A000;C350", "LOCAL:///cam.xml;0xa000;0xc350",
                             "local:///Cam.Xml;A000;C350?SchemaVersion=1.1.0", "Local:x.xml;;A000;C350"}) {
        m_objSystem.Port().Urls({pUrl});
        m_objSystem.Producer().ClearCalls();
        ExpectLoaded(kText, pUrl);
        EXPECT_EQ(m_objSystem.Producer().Count("GCReadPort"), 1U) << pUrl;
    }
}

TEST_F(XMLLoader, FilesAreOpenedInTheCaseTheProducerGave) {
    m_objDirectory.MakeFile("Cam_v1.xml", kText);
    m_objDirectory.MakeFile("Cam_v1.Zip", MakeZip(kText));
    const std::string strPath = m_objDirectory.Path("Cam_v1");
    for (const auto& strUrl : {"File:" + strPath + ".xml?", "file://" + strPath + ".xml?",
                               "FILE:///" + strPath.substr(1) + ".xml?", "File:///" + strPath.substr(1) + ".Zip?"}) {
        m_objSystem.Port().Urls({strUrl});
        ExpectLoaded(kText, strUrl);
    }
}

TEST_F(XMLLoader, TextEndsAtItsFirstZeroByteUnlessItIsZipped) {
    const std::string strZero("<a/>\0<b/>", 9);
    m_objSystem.Serve("cam.xml", strZero);
    EXPECT_EQ(Load(), "<a/>");
    m_objDirectory.MakeFile("a.xml", strZero);
    m_objSystem.Port().Urls({"File:" + m_objDirectory.Path("a.xml?")});
    EXPECT_EQ(Load(), "<a/>");
    m_objSystem.Serve("cam.zip", MakeZip(strZero));
    EXPECT_EQ(Load(), strZero);
}

TEST_F(XMLLoader, OnlyTheFirstUrlCounts) {
    m_objSystem.Port().SetRegister(0xA000, std::as_bytes(std::span("<a/>", 4)));
    m_objSystem.Port().Urls({"Local:a.xml;A000;4", "Local:b.xml;B000;4"});
    EXPECT_EQ(Load(), "<a/>");
    m_objSystem.Port().Urls({"nonsense", "Local:a.xml;A000;4"});
    EXPECT_EQ(Failure<CUnexpectedError>(), "XML format error: nonsense");
    m_objSystem.Port().Urls({});
    EXPECT_EQ(Failure<CUnexpectedError>(), "UrlNum <= 0");
}

TEST_F(XMLLoader, FilesThatCannotBeReadFailWithoutWaiting) {
    ASSERT_EQ(mkfifo(m_objDirectory.Path("pipe.xml").c_str(), 0600), 0);
    m_objDirectory.MakeDirectory("directory.xml");
    for (const char* pName : {"missing.xml", "directory.xml", "pipe.xml"}) {
        m_objSystem.Port().Urls({"File:" + m_objDirectory.Path(pName) + "?"});
        EXPECT_EQ(Failure<CUnexpectedError>(), "Failed to read XML from file") << pName;
    }
}

TEST_F(XMLLoader, RefusalsOfTheProducerComeThroughItsCodes) {
    const struct {
        const char* pEntry;
        std::size_t nCall;
    } arrCases[] = {{"GCGetNumPortURLs", 1}, {"GCGetPortURLInfo", 1}, {"GCGetPortURLInfo", 2}, {"GCReadPort", 1}};
    for (const auto& objCase : arrCases) {
        m_objSystem.Serve("cam.xml", "<a/>");
        auto& objRule = m_objSystem.Producer().On(objCase.pEntry).Call(objCase.nCall);
        objRule.Fail(GC_ERR_ACCESS_DENIED, "busy");
        EXPECT_EQ(Failure<CInvalidAccessError>(), "Access denied:busy") << objCase.pEntry;
        objRule.Remove();
    }
    EXPECT_EQ(Load(), "<a/>");
}

TEST_F(XMLLoader, LyingSizesAreNotFollowed) {
    // The registers end before the length does.
    m_objSystem.Port().SetRegister(0xA000, std::as_bytes(std::span("<a/>", 4)));
    m_objSystem.Port().Urls({"Local:a.xml;A000;100"});
    EXPECT_NE(Failure<CUnexpectedError>(), "nothing was thrown");
    // The length is the URL's, whatever the producer says it has read.
    m_objSystem.Port().Urls({"Local:a.xml;A000;4"});
    auto& objRead = m_objSystem.Producer().On("GCReadPort");
    objRead.Answer(ANSWER::Bytes(BytesOf("<b/>")).ReportingAs(std::size_t{1} << 40));
    EXPECT_EQ(Load(), "<b/>");
    objRead.Answer(ANSWER::Bytes(BytesOf("<b/>")).ReportingAs(1));
    EXPECT_EQ(Load(), "<b/>");
    objRead.Remove();
    // URLs of a size beyond sense, without an end, larger at the second call than at the first.
    auto& objUrl = m_objSystem.Producer().On("GCGetPortURLInfo");
    objUrl.Answer(ANSWER::Text("Local:a.xml;A000;4").AskingFor((std::size_t{1} << 20) + 1));
    EXPECT_THAT(Failure<CUnexpectedError>(), HasSubstr("more than 1048576 bytes"));
    objUrl.Answer(ANSWER::Unterminated("Local:a.xml;A000;4"));
    EXPECT_EQ(Load(), "<a/>");
    objUrl.Answer(ANSWER::Text("Local:a.xml;A000;4").AskingFor(9));
    EXPECT_EQ(Failure<CUnexpectedError>(), "XML format error: Local:a.x");
}

TEST_F(XMLLoader, LengthsBeyondTheBoundFailBeforeAnythingIsRead) {
    for (const char* pLength : {"4000001", "FFFFFFFFFFFFFFFF", "FFFFFFFFFFFFFFFFF", "-1"}) {
        m_objSystem.Port().Urls({std::string("Local:a.xml;A000;") + pLength});
        EXPECT_THAT(Failure<CUnexpectedError>(), HasSubstr("more than 67108864"));
    }
    EXPECT_EQ(m_objSystem.Producer().Count("GCReadPort"), 0U);
    const std::string strSparse = m_objDirectory.MakeFile("large.xml");
    ASSERT_EQ(truncate(strSparse.c_str(), static_cast<off_t>(kMaxDescriptionLength) + 1), 0);
    m_objSystem.Port().Urls({"File:" + strSparse + "?"});
    EXPECT_THAT(Failure<CUnexpectedError>(), HasSubstr("67108865 bytes, more than 67108864"));
}

TEST_F(XMLLoader, PortMovesRegistersAndIsAlwaysReadAndWrite) {
    CPort objPort(m_objSystem.Library(), m_objSystem.Handle());
    m_objSystem.Port().SetRegister(0xA000, std::as_bytes(std::span("abcd", 4)));
    char arrBuffer[4] = {'w', 'x', 'y', 'z'};
    objPort.Write(arrBuffer + 2, 0xA002, 2);
    objPort.Read(arrBuffer, 0xA000, 4);
    EXPECT_EQ(std::string(arrBuffer, 4), "abyz");

    m_objSystem.Producer().On("GCGetPortInfo").Command(PORT_INFO_ACCESS_WRITE).Answer(ANSWER::Bool(0));
    EXPECT_EQ(objPort.GetAccessMode(), GenApi_3_0::RW);
    m_objSystem.Producer().On("GCReadPort").Answer(ANSWER::Bytes(BytesOf("12")).ReportingAs(2));
    EXPECT_NO_THROW(objPort.Read(arrBuffer, 0xA000, 4));
    m_objSystem.Producer().On("GCReadPort").Fail(GC_ERR_TIMEOUT, "late");
    EXPECT_THROW(objPort.Read(arrBuffer, 0xA000, 4), CTimeoutError);
    m_objSystem.Producer().On("GCWritePort").Fail(GC_ERR_ZR_DEVICE_OFFLINE, "gone");
    EXPECT_THROW(objPort.Write(arrBuffer, 0xA000, 4), CDeviceOfflineError);
}

}  // namespace
