#include <future>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GenApi/Integer.h"
#include "GenApi/Node.h"
#include "TLClass/TLClassXML/LoadXMLAgency.h"
#include "TLClass/TLClassXML/XMLAnalyzer.h"
#include "tests/TLClass/TLClassXML/ArchiveWriter.h"
#include "tests/TLClass/TLClassXML/SystemPort.h"
#include "tests/TLClass/Thrown.h"

namespace {

using ProducerDouble::ANSWER;
using testing::HasSubstr;

class XMLAnalyzer : public testing::Test {
protected:
    XMLAnalyzer() { m_objSystem.Port().AddInteger("Width", 640); }

    void Load() { m_objAnalyzer.LoadXMLFromPortHandle(m_objSystem.Handle()); }

    std::string Failure() {
        return MessageOf<CUnexpectedError>([this] { CLoadXMLAgency(m_objAnalyzer, m_objSystem.Handle()); });
    }

    GenApi_3_0::IInteger& Integer(const char* pFeature) {
        auto* const pNode = m_objAnalyzer.GetNodeMapRef()->_GetNode(pFeature);
        return dynamic_cast<GenApi_3_0::IInteger&>(*pNode);
    }

    void ExpectEmpty() {
        EXPECT_EQ(m_objAnalyzer.GetNodeMapRef(), nullptr);
        EXPECT_EQ(m_objAnalyzer.GetXML(), "");
    }

    CSystemPort m_objSystem{PRODUCER_DOUBLE};
    CXMLAnalyzer m_objAnalyzer{m_objSystem.Library()};
};

TEST_F(XMLAnalyzer, LoadedNodeMapReadsAndWritesTheModulesRegisters) {
    ExpectEmpty();
    Load();
    EXPECT_THAT(m_objAnalyzer.GetXML(), HasSubstr("Width"));
    EXPECT_EQ(Integer("Width").GetValue(), 640);
    Integer("Width").SetValue(320);
    EXPECT_EQ(m_objSystem.Port().Integer("Width"), 320);
}

TEST_F(XMLAnalyzer, SecondLoadReplacesTheFirst) {
    Load();
    m_objSystem.Port().RemoveFeature("Width").AddInteger("Height", 480);
    Load();
    EXPECT_EQ(m_objAnalyzer.GetNodeMapRef()->_GetNode("Width"), nullptr);
    EXPECT_EQ(Integer("Height").GetValue(), 480);
}

TEST_F(XMLAnalyzer, AgencyClearsUnlessItIsDismissed) {
    {
        CLoadXMLAgency objAgency(m_objAnalyzer, m_objSystem.Handle());
        EXPECT_NE(m_objAnalyzer.GetNodeMapRef(), nullptr);
    }
    ExpectEmpty();
    {
        CLoadXMLAgency objAgency(m_objAnalyzer, m_objSystem.Handle());
        Dismiss(objAgency);
    }
    EXPECT_EQ(Integer("Width").GetValue(), 640);
}

TEST_F(XMLAnalyzer, TextThatIsNoDescriptionEndsAsUnexpectedErrorAndIsRolledBack) {
    for (const std::string& strContent : {std::string("no XML"), std::string("<?xml version=\"1.0\"?>\n<a><b></a>"),
                                          MakeZip(MakeDescriptionText(500)).substr(0, 100), std::string()}) {
        m_objSystem.Serve("cam.zip", strContent);
        testing::internal::CaptureStdout();
        EXPECT_THAT(Failure(), testing::AllOf(testing::Ne("nothing was thrown"), testing::Ne("")));
        testing::internal::GetCapturedStdout();
        ExpectEmpty();
    }
}

TEST_F(XMLAnalyzer, PortThatTheDescriptionLacksFailsTheConnection) {
    m_objSystem.Producer().On("GCGetPortInfo").Command(PORT_INFO_PORTNAME).Answer(ANSWER::Text("Elsewhere"));
    EXPECT_EQ(Failure(), "CNodeMapRef::_connect failed");
    ExpectEmpty();
}

TEST_F(XMLAnalyzer, RefusedPortNameComesThroughItsCode) {
    for (const std::size_t nCall : {1, 2}) {
        auto& objRule = m_objSystem.Producer().On("GCGetPortInfo").Command(PORT_INFO_PORTNAME).Call(nCall);
        objRule.Fail(GC_ERR_TIMEOUT, "late");
        EXPECT_THROW(Load(), CTimeoutError);
        // What was made until then stays for Clear.
        EXPECT_NE(m_objAnalyzer.GetNodeMapRef(), nullptr);
        EXPECT_NE(m_objAnalyzer.GetXML(), "");
        objRule.Remove();
        m_objAnalyzer.Clear();
        ExpectEmpty();
    }
    m_objSystem.Producer().On("GCReadPort").Fail(GC_ERR_ACCESS_DENIED, "busy");
    EXPECT_THROW(CLoadXMLAgency(m_objAnalyzer, m_objSystem.Handle()), CInvalidAccessError);
    ExpectEmpty();
}

TEST_F(XMLAnalyzer, OneModulesReadHoldsBackNoOther) {
    Load();
    auto& objRead = m_objSystem.Producer().On("GCReadPort").Call(1);
    objRead.Block();
    auto objBlocked = std::async(std::launch::async, [&] { Load(); });
    ASSERT_TRUE(objRead.WaitUntilBlocked());
    CXMLAnalyzer objOther(m_objSystem.Library());
    objOther.LoadXMLFromPortHandle(m_objSystem.Handle());
    EXPECT_NE(objOther.GetNodeMapRef()->_GetNode("Width"), nullptr);
    objRead.Release();
    EXPECT_NO_THROW(objBlocked.get());
}

}  // namespace
