#include <array>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TLClass/TLClassInfo/ChildCount.h"
#include "TLClass/TLClassInfo/DeviceID.h"
#include "TLClass/TLClassInfo/DeviceInformationFromID.h"
#include "TLClass/TLClassInfo/InterfaceID.h"
#include "TLClass/TLClassInfo/InterfaceInformationFromID.h"
#include "TLClass/TLClassInfo/ZrInformationAgency.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "tests/TLClass/Thrown.h"
#include "tests/producer_double/ProducerLibrary.h"

namespace {

using ProducerDouble::ANSWER;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

/// A field of a record with its flag.
struct FIELD {
    std::string strText;
    bool bValid = false;

    bool operator==(const FIELD&) const = default;
};

void PrintTo(const FIELD& objField, std::ostream* pStream) {
    *pStream << "'" << objField.strText << "' " << (objField.bValid ? "valid" : "refused");
}

std::vector<FIELD> FieldsOf(const TL_MODULE_INFO& r) {
    return {{r.Vendor, r.VendorValid},          {r.Model, r.ModelValid}, {r.Version, r.VersionValid},
            {r.TLType, r.TLTypeValid},          {r.Name, r.NameValid},   {r.PathName, r.PathNameValid},
            {r.DisplayName, r.DisplayNameValid}};
}

std::vector<FIELD> FieldsOf(const IF_MODULE_INFO& r) {
    return {{r.ID, r.IDValid}, {r.DisplayName, r.DisplayNameValid}, {r.TLType, r.TLTypeValid}};
}

std::vector<FIELD> FieldsOf(const DEV_MODULE_INFO& r) {
    return {{r.ID, r.IDValid},
            {r.Vendor, r.VendorValid},
            {r.Model, r.ModelValid},
            {r.TLType, r.TLTypeValid},
            {r.DisplayName, r.DisplayNameValid},
            {std::to_string(r.AccessStatus), r.AccessStatusValid}};
}

std::vector<FIELD> FieldsOf(const DS_MODULE_INFO& r) {
    return {{r.ID, r.IDValid},
            {std::to_string(r.PayloadSize), r.PayloadSizeValid},
            {std::to_string(r.NumChunksMax), r.NumChunksMaxValid},
            {std::to_string(r.BufAnnounceMin), r.BufAnnounceMinValid},
            {std::to_string(r.BufAnnounceMax), r.BufAnnounceMaxValid},
            {std::to_string(r.BufAlignment), r.BufAlignmentValid}};
}

std::vector<FIELD> FieldsOf(const PORT_MODULE_INFO& r) {
    return {{r.PortID, r.PortIDValid}, {r.PortName, r.PortNameValid}};
}

/// In the order in which the commands are asked.
std::vector<FIELD> FieldsOf(const BUFFER_MODULE_INFO& r) {
    const auto Pointer = [](void* p) { return std::to_string(reinterpret_cast<std::uintptr_t>(p)); };
    return {{Pointer(r.Base), r.BaseValid},
            {std::to_string(r.Size), r.SizeValid},
            {std::to_string(r.SizeFilled), r.SizeFilledValid},
            {std::to_string(r.Width), r.WidthValid},
            {std::to_string(r.Height), r.HeightValid},
            {std::to_string(r.XOffset), r.XOffsetValid},
            {std::to_string(r.YOffset), r.YOffsetValid},
            {std::to_string(r.XPadding), r.XPaddingValid},
            {std::to_string(r.YPadding), r.YPaddingValid},
            {std::to_string(r.ImageOffset), r.ImageOffsetValid},
            {std::to_string(r.PayloadType), r.PayloadTypeValid},
            {std::to_string(r.Timestamp), r.TimestampValid},
            {std::to_string(r.FrameID), r.FrameIDValid},
            {std::to_string(r.PixelFormat), r.PixelFormatValid},
            {std::to_string(r.PixelFormatNamespace), r.PixelFormatNamespaceValid},
            {Pointer(r.UserPtr), r.UserPtrValid},
            {std::to_string(r.IsIncomplete), r.IsIncompleteValid}};
}

/// One camera with one stream and one announced buffer, all of it open.
class InformationQueries : public testing::Test {
protected:
    void SetUp() override {
        auto& objDevice = Producer().AddInterface("if-1").Plug("cam-1");
        objDevice.AddStream("stream-1");
        bool8_t bChanged = 0;
        CGenTLLib& objLib = Lib();
        ASSERT_EQ(objLib.GCInitLib(), 0);
        ASSERT_EQ(objLib.TLOpen(&m_hTL), 0);
        ASSERT_EQ(objLib.TLUpdateInterfaceList(m_hTL, &bChanged, 0), 0);
        ASSERT_EQ(objLib.TLOpenInterface(m_hTL, "if-1", &m_hInterface), 0);
        ASSERT_EQ(objLib.IFUpdateDeviceList(m_hInterface, &bChanged, 0), 0);
        ASSERT_EQ(objLib.IFOpenDevice(m_hInterface, "cam-1", DEVICE_ACCESS_CONTROL, &m_hDevice), 0);
        ASSERT_EQ(objLib.DevOpenDataStream(m_hDevice, "stream-0", &m_hStream), 0);
        ASSERT_EQ(objLib.DSAnnounceBuffer(m_hStream, m_arrBuffer.data(), m_arrBuffer.size(), nullptr, &m_hBuffer), 0);
    }

    CGenTLLib& Lib() { return m_objLib; }
    CGenTLLib* pLib() { return &m_objLib; }
    ProducerDouble::IProducerControl& Producer() { return *m_objDouble; }

    /// Lets an entry answer each of the commands with a text of its own: the entry's name and the command.
    void TellTexts(const std::string& strEntry, const std::vector<std::int32_t>& vecCommand) {
        for (const std::int32_t nCommand : vecCommand) {
            Producer().On(strEntry).Command(nCommand).Answer(ANSWER::Text(TextOf(strEntry, nCommand)));
        }
    }

    static std::string TextOf(const std::string& strEntry, std::int32_t nCommand) {
        return strEntry + " " + std::to_string(nCommand);
    }

    static std::vector<FIELD> ToldTexts(const std::string& strEntry, const std::vector<std::int32_t>& vecCommand) {
        std::vector<FIELD> vecField;
        vecField.reserve(vecCommand.size());
        for (const std::int32_t nCommand : vecCommand) {
            vecField.push_back({TextOf(strEntry, nCommand), true});
        }
        return vecField;
    }

    ProducerDouble::CProducerLibrary m_objDouble{PRODUCER_DOUBLE};
    CGenTLLib m_objLib{PRODUCER_DOUBLE};
    TL_HANDLE m_hTL = nullptr;
    IF_HANDLE m_hInterface = nullptr;
    DEV_HANDLE m_hDevice = nullptr;
    DS_HANDLE m_hStream = nullptr;
    std::array<char, 64> m_arrBuffer{};
    BUFFER_HANDLE m_hBuffer = nullptr;
};

TEST_F(InformationQueries, EachTextOfEachModuleLandsInItsField) {
    const std::vector<std::int32_t> vecTL = {1, 2, 3, 4, 5, 6, 7};
    TellTexts("GCGetInfo", vecTL);
    EXPECT_EQ(FieldsOf(CZrInformationAgency::GetTLInformation(pLib())), ToldTexts("GCGetInfo", vecTL));
    TellTexts("TLGetInfo", vecTL);
    EXPECT_EQ(FieldsOf(CZrInformationAgency::GetTLInformation(pLib(), m_hTL)), ToldTexts("TLGetInfo", vecTL));

    const std::vector<std::int32_t> vecIF = {0, 1, 2};
    TellTexts("IFGetInfo", vecIF);
    EXPECT_EQ(FieldsOf(CZrInformationAgency::GetInterfaceInformation(pLib(), m_hInterface)),
              ToldTexts("IFGetInfo", vecIF));
    TellTexts("TLGetInterfaceInfo", vecIF);
    EXPECT_EQ(FieldsOf(CInterfaceInformationFromID(m_hTL, "if-1", pLib()).GetInformation()),
              ToldTexts("TLGetInterfaceInfo", vecIF));

    const std::vector<std::int32_t> vecPort = {0, 12};
    TellTexts("GCGetPortInfo", vecPort);
    EXPECT_EQ(FieldsOf(CZrInformationAgency::GetPortInformation(pLib(), m_hTL)), ToldTexts("GCGetPortInfo", vecPort));
}

TEST_F(InformationQueries, DeviceTellsFiveTextsAndItsAccess) {
    const std::vector<std::int32_t> vecDevice = {0, 1, 2, 3, 4};
    for (const std::string strEntry : {"DevGetInfo", "IFGetDeviceInfo"}) {
        TellTexts(strEntry, vecDevice);
        Producer().On(strEntry).Command(5).Answer(ANSWER::Int32(-4));
        std::vector<FIELD> vecExpected = ToldTexts(strEntry, vecDevice);
        vecExpected.push_back({"-4", true});
        EXPECT_EQ(FieldsOf(strEntry == "DevGetInfo"
                               ? CZrInformationAgency::GetDeviceInformation(pLib(), m_hDevice)
                               : CDeviceInformationFromID(m_hInterface, "cam-1", pLib()).GetInformation()),
                  vecExpected);
    }
}

TEST_F(InformationQueries, StreamTellsItsSizesAndOneCommandOfTheProducersOwn) {
    TellTexts("DSGetInfo", {0});
    std::size_t nSize = 100;
    for (const std::int32_t nCommand : {7, 11, 12, 13}) {
        Producer().On("DSGetInfo").Command(nCommand).Answer(ANSWER::Size(nSize++));
    }
    Producer().On("DSGetInfo").Command(1001).Answer(ANSWER::Size(nSize));
    EXPECT_THAT(FieldsOf(CZrInformationAgency::GetDataStreamInformation(pLib(), m_hStream)),
                ElementsAre(FIELD{"DSGetInfo 0", true}, FIELD{"100", true}, FIELD{"101", true}, FIELD{"102", true},
                            FIELD{"104", true}, FIELD{"103", true}));
}

TEST_F(InformationQueries, BufferAsksItsCommandsInOrderAndPutsEachAnswerInItsField) {
    std::vector<FIELD> vecField;
    std::vector<std::string> vecCall;
    for (const std::int32_t nCommand : {0, 1, 9, 10, 11, 12, 13, 14, 15, 18, 19, 3, 16, 20, 21, 2, 7}) {
        const auto nValue = static_cast<std::uint64_t>(nCommand) + 0x1'0000'0000;
        const bool bFlag = nCommand == BUFFER_INFO_IS_INCOMPLETE;
        Producer().On("DSGetBufferInfo").Command(nCommand).Answer(bFlag ? ANSWER::Bool(0xFF) : ANSWER::Uint64(nValue));
        vecField.push_back({bFlag ? "1" : std::to_string(nValue), true});
        vecCall.push_back(std::to_string(nCommand) + (bFlag ? " size 1" : " size 8"));
    }
    const BUFFER_MODULE_INFO objRecord = CZrInformationAgency::GetBufferInformation(pLib(), m_hStream, m_hBuffer);
    EXPECT_EQ(FieldsOf(objRecord), vecField);
    EXPECT_FALSE(objRecord.InitPayloadSizeValid);

    std::vector<std::string> vecAsked;
    for (const ProducerDouble::CALL& objCall : Producer().CallsOf("DSGetBufferInfo")) {
        vecAsked.push_back(objCall.vecArgument.at(1) + " size " + objCall.vecArgument.back());
    }
    EXPECT_EQ(vecAsked, vecCall);
}

class StreamIDs : public InformationQueries {
protected:
    std::vector<std::string> Ask() { return CZrInformationAgency::GetAllDataStreamIDOfDevice(pLib(), m_hDevice); }

    void ExpectThrown(const std::string& strMessage, std::int32_t nCode) {
        EXPECT_EQ(ThrownBy<CUnexpectedError>([this] { Ask(); }),
                  strMessage +
                      ", ..\\..\\..\\TLClass\\TLClassInfo\\ZrInformationAgency(131) "
                      "CZrInformationAgency::GetAllDataStreamIDOfDevice, " +
                      std::to_string(nCode));
    }
};

TEST_F(StreamIDs, AreListedInOrderWithAnEmptyOneForEachThatCannotBeRead) {
    EXPECT_THAT(Ask(), ElementsAre("stream-0", "stream-1"));
    auto& objRule = Producer().On("DevGetDataStreamID").Answer(ANSWER::Text("x").AskingFor(0));
    Producer().ClearCalls();
    EXPECT_THAT(Ask(), ElementsAre("", ""));
    EXPECT_EQ(Producer().Count("DevGetDataStreamID"), 2U) << "a text of no bytes isn't fetched";
    objRule.Remove();
    Producer().On("DevGetDataStreamID").Index(0).Fail(GC_ERR_IO);
    EXPECT_THAT(Ask(), ElementsAre("", "stream-1"));
    // A count that outgrows the list gives as many empty entries.
    Producer().On("DevGetNumDataStreams").Count(4);
    EXPECT_THAT(Ask(), ElementsAre("", "stream-1", "", ""));
}

TEST_F(StreamIDs, OfAProducerThatCannotCountThemAreAnError) {
    auto& objRule = Producer().On("DevGetNumDataStreams").Fail(GC_ERR_IO, "no link");
    ExpectThrown("no link", GC_ERR_IO);
    objRule.Remove();
    Producer().On("DevGetNumDataStreams").Count(0xFFFFFFFF);
    ExpectThrown("The TL library counts 4294967295 children of a module, more than 65536", -1);
    EXPECT_EQ(Producer().Count("DevGetDataStreamID"), 0U);
}

TEST(InformationWithoutEntries, IsEmptyAndOnlyTheCountFails) {
    CGenTLLib objLib(PRODUCER_DOUBLE_WITHOUT_EXPORTS);
    const auto AllRefused = Each(testing::Field(&FIELD::bValid, false));
    EXPECT_THAT(FieldsOf(CZrInformationAgency::GetTLInformation(&objLib)), AllRefused);
    EXPECT_THAT(FieldsOf(CZrInformationAgency::GetTLInformation(&objLib, nullptr)), AllRefused);
    EXPECT_THAT(FieldsOf(CZrInformationAgency::GetInterfaceInformation(&objLib, nullptr)), AllRefused);
    EXPECT_THAT(FieldsOf(CZrInformationAgency::GetDeviceInformation(&objLib, nullptr)), AllRefused);
    EXPECT_THAT(FieldsOf(CZrInformationAgency::GetDataStreamInformation(&objLib, nullptr)), AllRefused);
    EXPECT_THAT(FieldsOf(CZrInformationAgency::GetBufferInformation(&objLib, nullptr, nullptr)), AllRefused);
    EXPECT_THAT(FieldsOf(CZrInformationAgency::GetPortInformation(&objLib, nullptr)), AllRefused);
    EXPECT_EQ(CDeviceID(&objLib, nullptr, 0).GetID(), "");
    EXPECT_EQ(MessageOf<CUnexpectedError>([&] { CZrInformationAgency::GetAllDataStreamIDOfDevice(&objLib, nullptr); }),
              "The TL library is not complete");
}

}  // namespace
