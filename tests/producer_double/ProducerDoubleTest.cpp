#include <array>
#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/producer_double/Consumer.h"

namespace ProducerDouble {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> Texts(const std::vector<CALL>& vecCall) {
    std::vector<std::string> vecText;
    for (const CALL& objCall : vecCall)
        vecText.push_back(objCall.Text());
    return vecText;
}

// Libraries.

TEST(ProducerDoubleFiles, ExportWhatTheirVariantSays) {
    struct VARIANT {
        const char* pszPath;
        std::vector<std::string> vecMissing;
    };
    const VARIANT arrVariant[] = {
        {PRODUCER_DOUBLE, {}},
        {PRODUCER_DOUBLE_SECOND, {}},
        {PRODUCER_DOUBLE_WITHOUT_LAST_ERROR, {"GCGetLastError"}},
        {PRODUCER_DOUBLE_WITHOUT_STACKED, {"GCReadPortStacked", "GCWritePortStacked"}},
        {PRODUCER_DOUBLE_WITHOUT_FURTHER, {"IFIpConfiguration", "IFForceIp", "IFResetDevice", "IFUpdateSpecialDevice"}},
    };
    for (const VARIANT& objVariant : arrVariant) {
        CProducerLibrary objLibrary(objVariant.pszPath);
        std::vector<std::string> vecMissing;
#define MISSING(name, parameters)                    \
    if (objLibrary.Entry<P##name>(#name) == nullptr) \
        vecMissing.emplace_back(#name);
        GENTL_ENTRIES(MISSING)
#undef MISSING
        EXPECT_EQ(vecMissing, objVariant.vecMissing) << objVariant.pszPath;
    }
    EXPECT_THROW(CProducerLibrary{PRODUCER_DOUBLE_WITHOUT_EXPORTS}, std::runtime_error);
    EXPECT_THROW(CProducerLibrary{PRODUCER_DOUBLE_NO_LIBRARY}, std::runtime_error);
}

TEST(ProducerDoubleFiles, HoldStatesOfTheirOwnAndUnloadInEitherOrder) {
    for (const bool bFirstGoesFirst : {true, false}) {
        auto pFirst = std::make_unique<CConsumer>(PRODUCER_DOUBLE);
        auto pSecond = std::make_unique<CConsumer>(PRODUCER_DOUBLE_SECOND);
        pFirst->OpenCamera();
        EXPECT_FALSE(pSecond->Producer().IsInitialised());
        EXPECT_THAT(pSecond->Producer().Calls(), IsEmpty());
        (bFirstGoesFirst ? pFirst : pSecond).reset();
        EXPECT_NE(CProducerLibrary::IsLoaded(PRODUCER_DOUBLE), bFirstGoesFirst);
        EXPECT_EQ(CProducerLibrary::IsLoaded(PRODUCER_DOUBLE_SECOND), bFirstGoesFirst);
    }
    EXPECT_FALSE(CProducerLibrary::IsLoaded(PRODUCER_DOUBLE));
    EXPECT_FALSE(CProducerLibrary::IsLoaded(PRODUCER_DOUBLE_SECOND));
}

// The tree.

TEST(ProducerDoubleTree, KeepsTheConsumersListsUntilItUpdatesThem) {
    CConsumer objConsumer;
    auto& objInterface = objConsumer.Producer().AddInterface("if-1");
    objInterface.Plug("cam-1");
    objInterface.Plug("cam-2");
    const IF_HANDLE hInterface = objConsumer.OpenInterface("if-1");
    objConsumer.Producer().Unplug("cam-1");
    objInterface.Plug("cam-3");
    EXPECT_THAT(objConsumer.DeviceIds(hInterface), ElementsAre("cam-1", "cam-2"));

    bool8_t nChanged = 7;
    objConsumer.IFUpdateDeviceList(hInterface, &nChanged, 0);
    EXPECT_EQ(nChanged, 1);
    EXPECT_THAT(objConsumer.DeviceIds(hInterface), ElementsAre("cam-2", "cam-3"));
    objConsumer.IFUpdateDeviceList(hInterface, &nChanged, 0);
    EXPECT_EQ(nChanged, 0);

    objInterface.Lists({{"cam-3", "cam-2", "cam-3"}});
    objConsumer.IFUpdateDeviceList(hInterface, &nChanged, 0);
    EXPECT_THAT(objConsumer.DeviceIds(hInterface), ElementsAre("cam-3", "cam-2", "cam-3"));
}

TEST(ProducerDoubleTree, RefusesHandlesThatAreClosedForeignOrOfAnotherKind) {
    CConsumer objConsumer;
    EXPECT_EQ(objConsumer.TLClose(nullptr), GC_ERR_NOT_INITIALIZED);
    const DEV_HANDLE hDevice = objConsumer.OpenCamera();
    std::uint32_t nCount = 0;
    int nForeign = 0;
    EXPECT_EQ(objConsumer.IFGetNumDevices(hDevice, &nCount), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(objConsumer.IFGetNumDevices(&nForeign, &nCount), GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(objConsumer.DevGetNumDataStreams(hDevice, nullptr), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(objConsumer.DevClose(hDevice), GC_ERR_SUCCESS);
    EXPECT_EQ(objConsumer.DevClose(hDevice), GC_ERR_INVALID_HANDLE);
}

TEST(ProducerDoubleTree, ClosesWhatIsBelowAModuleAndTellsWhatIsOpen) {
    CConsumer objConsumer;
    const DEV_HANDLE hDevice = objConsumer.OpenCamera();
    DS_HANDLE hStream = nullptr;
    EXPECT_EQ(objConsumer.DevOpenDataStream(hDevice, "stream-0", &hStream), GC_ERR_SUCCESS);
    EXPECT_EQ(objConsumer.DevOpenDataStream(hDevice, "stream-0", &hStream), GC_ERR_RESOURCE_IN_USE);
    objConsumer.Register(hStream, EVENT_NEW_BUFFER);
    EXPECT_THAT(objConsumer.Producer().OpenModules(), ElementsAre("tl", "if-1", "cam-1", "cam-1:stream-0"));
    EXPECT_THAT(objConsumer.Producer().RegisteredEvents(), ElementsAre("cam-1:stream-0!1"));
    EXPECT_EQ(objConsumer.GCCloseLib(), GC_ERR_SUCCESS);
    EXPECT_THAT(objConsumer.Producer().OpenModules(), IsEmpty());
    EXPECT_THAT(objConsumer.Producer().RegisteredEvents(), IsEmpty());
}

TEST(ProducerDoubleTree, FindsACameraByItsAddressThatNoListHas) {
    CConsumer objConsumer;
    auto& objInterface = objConsumer.Producer().AddInterface("if-1");
    objInterface.Plug("cam-1").Hide().Address({Ipv4(10, 0, 0, 7), Ipv4(255, 0, 0, 0), Ipv4(10, 0, 0, 1), 0x0102030405});
    objInterface.Device("cam-1").Identity("Maker", "Model", "S1");
    const IF_HANDLE hInterface = objConsumer.OpenInterface("if-1");
    EXPECT_THAT(objConsumer.DeviceIds(hInterface), IsEmpty());

    std::array<char, ZR_SPECIAL_DEVICE_REPLY_SIZE> arrReply{};
    std::size_t nSize = arrReply.size();
    ASSERT_EQ(objConsumer.IFUpdateSpecialDevice(hInterface, "10.0.0.7", arrReply.data(), &nSize), GC_ERR_SUCCESS);
    EXPECT_EQ(std::string(&arrReply[18], 6), std::string("\0\1\2\3\4\5", 6));
    EXPECT_EQ(std::string(&arrReply[76], 4), std::string("\x0a\0\0\1", 4));
    EXPECT_STREQ(&arrReply[80], "Maker");
    EXPECT_STREQ(&arrReply[224], "S1");
    DEV_HANDLE hDevice = nullptr;
    EXPECT_EQ(objConsumer.IFOpenDevice(hInterface, "cam-1", 3, &hDevice), GC_ERR_INVALID_ID);
    EXPECT_EQ(objConsumer.IFOpenDevice(hInterface, "IP::10.0.0.7", 3, &hDevice), GC_ERR_SUCCESS);
    EXPECT_EQ(objConsumer.IFUpdateSpecialDevice(hInterface, "10.0.0.8", arrReply.data(), &nSize), GC_ERR_TIMEOUT);
}

// Answers.

TEST(ProducerDoubleAnswers, FollowTheSizeProtocolOrLieAboutItAsScripted) {
    struct CASE {
        const char* pszName;
        ANSWER objAnswer;
        GC_ERROR nAskResult;
        std::size_t nAsked;
        GC_ERROR nGiveResult;
        std::size_t nGiven;
        std::string strBuffer;  // four bytes, '#' where untouched
    };
    const CASE arrCase[] = {
        {"honest", ANSWER::Text("abc"), 0, 4, 0, 4, std::string("abc\0", 4)},
        {"too long", ANSWER::Text("abcdef"), 0, 7, GC_ERR_BUFFER_TOO_SMALL, 4, "####"},
        {"unterminated", ANSWER::Unterminated("abcd"), 0, 4, 0, 4, "abcd"},
        {"size 0", ANSWER::Text("a").AskingFor(0), 0, 0, 0, 2, std::string("a\0##", 4)},
        {"absurd size", ANSWER::Text("ab").AskingFor(1u << 31), 0, 1u << 31, 0, 3, std::string("ab\0#", 4)},
        {"more than asked for", ANSWER::Text("abcdef").AskingFor(4), 0, 4, 0, 4, "abcd"},
        {"grown", ANSWER::Text("ab").ReportingAs(9999), 0, 3, 0, 9999, std::string("ab\0#", 4)},
        {"absent", ANSWER::Absent(), GC_ERR_NOT_AVAILABLE, 99, GC_ERR_NOT_AVAILABLE, 4, "####"},
    };
    CConsumer objConsumer;
    for (const CASE& objCase : arrCase) {
        SCOPED_TRACE(objCase.pszName);
        objConsumer.Producer().SetInfo(TL_INFO_VENDOR, objCase.objAnswer);
        std::size_t nSize = 99;
        EXPECT_EQ(objConsumer.GCGetInfo(TL_INFO_VENDOR, nullptr, nullptr, &nSize), objCase.nAskResult);
        EXPECT_EQ(nSize, objCase.nAsked);
        std::string strBuffer = "####";
        nSize = strBuffer.size();
        EXPECT_EQ(objConsumer.GCGetInfo(TL_INFO_VENDOR, nullptr, strBuffer.data(), &nSize), objCase.nGiveResult);
        EXPECT_EQ(nSize, objCase.nGiven);
        EXPECT_EQ(strBuffer, objCase.strBuffer);
    }
}

TEST(ProducerDoubleRules, ChangeExactlyTheCallsThatTheirConditionsName) {
    CConsumer objConsumer;
    auto& objInterface = objConsumer.Producer().AddInterface("if-1");
    objInterface.Plug("cam-1");
    objInterface.Plug("cam-2");
    const IF_HANDLE hInterface = objConsumer.OpenInterface("if-1");
    auto& objRule =
        objConsumer.Producer().On("IFOpenDevice").For("cam-1").Call(2).Fail(GC_ERR_ACCESS_DENIED, "somebody has it");
    DEV_HANDLE hDevice = nullptr;
    EXPECT_EQ(objConsumer.IFOpenDevice(hInterface, "cam-2", 3, &hDevice), GC_ERR_SUCCESS);
    EXPECT_EQ(objConsumer.IFOpenDevice(hInterface, "cam-1", 3, &hDevice), GC_ERR_SUCCESS);
    EXPECT_EQ(objConsumer.DevClose(hDevice), GC_ERR_SUCCESS);
    EXPECT_EQ(objConsumer.IFOpenDevice(hInterface, "cam-1", 3, &hDevice), GC_ERR_ACCESS_DENIED);
    EXPECT_EQ(objConsumer.LastError(), "-1005 somebody has it");
    EXPECT_EQ(objConsumer.IFOpenDevice(hInterface, "cam-1", 3, &hDevice), GC_ERR_SUCCESS);
    EXPECT_EQ(objRule.Hits(), 1u);
    EXPECT_EQ(objConsumer.DevClose(hDevice), GC_ERR_SUCCESS);

    hDevice = nullptr;
    objConsumer.Producer().On("IFOpenDevice").FailAfterwards(GC_ERR_IO);
    EXPECT_EQ(objConsumer.IFOpenDevice(hInterface, "cam-1", 3, &hDevice), GC_ERR_IO);
    EXPECT_EQ(objConsumer.DevClose(hDevice), GC_ERR_SUCCESS);

    objConsumer.Producer().On("IFGetNumDevices").Call(1).Count(70000);
    objConsumer.Producer().On("IFGetDeviceID").Index(1).Fail(GC_ERR_ERROR);
    std::uint32_t nCount = 0;
    EXPECT_EQ(objConsumer.IFGetNumDevices(hInterface, &nCount), GC_ERR_SUCCESS);
    EXPECT_EQ(nCount, 70000u);
    EXPECT_EQ(objConsumer.IFGetNumDevices(hInterface, &nCount), GC_ERR_SUCCESS);
    EXPECT_EQ(nCount, 2u);
    std::size_t nSize = 0;
    EXPECT_EQ(objConsumer.IFGetDeviceID(hInterface, 0, nullptr, &nSize), GC_ERR_SUCCESS);
    EXPECT_EQ(objConsumer.IFGetDeviceID(hInterface, 1, nullptr, &nSize), GC_ERR_ERROR);
    EXPECT_THROW(objConsumer.Producer().On("TLOpne"), std::invalid_argument);
}

TEST(ProducerDoubleRules, HoldACallUntilReleasedAndLetOthersPass) {
    CConsumer objConsumer;
    objConsumer.Producer().AddInterface("if-1");
    const IF_HANDLE hInterface = objConsumer.OpenInterface("if-1");
    auto& objBlock = objConsumer.Producer().On("IFUpdateDeviceList").For("if-1").Block();
    auto objUpdate =
        std::async(std::launch::async, [&] { return objConsumer.IFUpdateDeviceList(hInterface, nullptr, 0); });
    ASSERT_TRUE(objBlock.WaitUntilBlocked());
    EXPECT_THAT(objConsumer.DeviceIds(hInterface), IsEmpty());  // the producer serves others meanwhile
    EXPECT_EQ(objConsumer.Producer().CallsOf("IFUpdateDeviceList").back().nResult, std::nullopt);
    objBlock.Release();
    EXPECT_EQ(objUpdate.get(), GC_ERR_SUCCESS);
}

TEST(ProducerDoubleRules, KeepTheLastErrorOfEachThread) {
    CConsumer objConsumer;
    EXPECT_EQ(objConsumer.TLClose(nullptr), GC_ERR_NOT_INITIALIZED);
    std::thread([&] { EXPECT_EQ(objConsumer.LastError(), "0 no error"); }).join();
    EXPECT_THAT(objConsumer.LastError(), HasSubstr("-1002"));
}

TEST(ProducerDoubleRecords, TellEveryCallWithItsThreadArgumentsAndResult) {
    CConsumer objConsumer;
    const DEV_HANDLE hDevice = objConsumer.OpenCamera();
    const PORT_HANDLE hPort = objConsumer.RemotePort(hDevice);
    objConsumer.Producer().ClearCalls();
    std::thread objOther([&] { objConsumer.WriteNumber(hPort, 0xFFFF0000, 5); });
    const auto nOther = objOther.get_id();
    objOther.join();
    std::size_t nSize = 0;
    objConsumer.DevGetInfo(hDevice, DEVICE_INFO_VENDOR, nullptr, nullptr, &nSize);
    objConsumer.DevClose(hDevice);
    const auto vecCall = objConsumer.Producer().Calls();
    EXPECT_THAT(Texts(vecCall), ElementsAre("GCWritePort(cam-1:remote, 0xffff0000, buffer, 8)",
                                            "DevGetInfo(cam-1, 1, null, 0)", "DevClose(cam-1)"));
    EXPECT_EQ(vecCall[0].nThread, nOther);
    EXPECT_EQ(vecCall[0].nResult, GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(vecCall[0].vecWritten.back(), std::byte{5});
    EXPECT_EQ(vecCall[2].strModule, "cam-1");
    EXPECT_EQ(vecCall[2].nThread, std::this_thread::get_id());
}

// Ports.

TEST(ProducerDoublePorts, ServeTheFeaturesThatTheyWereGiven) {
    CConsumer objConsumer;
    const PORT_HANDLE hPort = objConsumer.RemotePort(objConsumer.OpenCamera());
    auto& objRemote = objConsumer.Producer().Device("cam-1").Remote();
    objRemote.AddInteger("Gain", 300, {0, 1000}).AddCommand("Fire");
    std::string strWritten;
    objRemote.OnWrite(
        "Gain", [&](std::span<const std::byte>) { strWritten = "Gain " + std::to_string(objRemote.Integer("Gain")); });

    const std::string strUrl = objConsumer.Url(hPort);  // local:///name;address;length
    const auto nAddress = std::stoull(strUrl.substr(strUrl.find(';') + 1), nullptr, 16);
    std::string strXml(std::stoull(strUrl.substr(strUrl.rfind(';') + 1), nullptr, 16), '\0');
    std::size_t nSize = strXml.size();
    ASSERT_EQ(objConsumer.GCReadPort(hPort, nAddress, strXml.data(), &nSize), GC_ERR_SUCCESS);
    EXPECT_THAT(strXml, HasSubstr("<Integer Name=\"Gain\" NameSpace=\"Standard\">"));
    EXPECT_THAT(strXml, HasSubstr("<Port Name=\"Device\""));

    EXPECT_EQ(objConsumer.ReadNumber(hPort, objRemote.AddressOf("Gain")), 300);
    EXPECT_EQ(objConsumer.WriteNumber(hPort, objRemote.AddressOf("Gain"), 44), GC_ERR_SUCCESS);
    EXPECT_EQ(strWritten, "Gain 44");
    EXPECT_EQ(objConsumer.WriteNumber(hPort, objRemote.AddressOf("Fire"), 1), GC_ERR_SUCCESS);
    EXPECT_EQ(objRemote.Writes("Fire"), 1u);
    EXPECT_EQ(objConsumer.ReadNumber(hPort, objRemote.AddressOf("Fire")), 0) << "a command is done at once";
    EXPECT_EQ(objRemote.Reads("Gain"), 1u);
}

TEST(ProducerDoublePorts, ServeAnyDescriptionUrlAndRegister) {
    CConsumer objConsumer;
    const PORT_HANDLE hPort = objConsumer.RemotePort(objConsumer.OpenCamera());
    auto& objRemote = objConsumer.Producer().Device("cam-1").Remote();
    objRemote.DescribeAs("a.zip", BytesOf("PK"));
    EXPECT_THAT(objConsumer.Url(hPort), testing::MatchesRegex("Local:///a.zip;[0-9a-f]+;2"));
    objRemote.Urls({"nonsense", "second"});
    EXPECT_EQ(objConsumer.Url(hPort), "nonsense");
    objRemote.Urls({});
    std::uint32_t nCount = 9;
    EXPECT_EQ(objConsumer.GCGetNumPortURLs(hPort, &nCount), GC_ERR_SUCCESS);
    EXPECT_EQ(nCount, 0u);

    // Blocks that overlap and touch: the later one holds, and a read may cross them but no hole.
    objRemote.SetRegister(0x100, BytesOf("aaaaaaaa"))
        .SetRegister(0x104, BytesOf("bb"))
        .SetRegister(0x108, BytesOf("c"));
    std::string strRead(9, '#');
    std::size_t nSize = strRead.size();
    EXPECT_EQ(objConsumer.GCReadPort(hPort, 0x100, strRead.data(), &nSize), GC_ERR_SUCCESS);
    EXPECT_EQ(strRead, "aaaabbaac");
    nSize = 2;
    EXPECT_EQ(objConsumer.GCReadPort(hPort, 0x108, strRead.data(), &nSize), GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(objConsumer.GCReadPort(hPort, UINT64_MAX, strRead.data(), &nSize), GC_ERR_INVALID_ADDRESS);
}

TEST(ProducerDoublePorts, ShowTheUpdatedListBehindTheirSelector) {
    CConsumer objConsumer;
    auto& objInterface = objConsumer.Producer().AddInterface("if-1");
    const IF_HANDLE hInterface = objConsumer.OpenInterface("if-1");
    EXPECT_EQ(objConsumer.ReadNumber(hInterface, objInterface.Port().AddressOf("DeviceSelectorMax")), -1);
    objInterface.Plug("cam-1");
    objInterface.Plug("cam-2").Address({Ipv4(10, 1, 2, 3), 0, 0, 0});
    objConsumer.IFUpdateDeviceList(hInterface, nullptr, 0);
    EXPECT_EQ(objConsumer.ReadNumber(hInterface, objInterface.Port().AddressOf("DeviceSelectorMax")), 1);
    EXPECT_EQ(objConsumer.ReadNumber(hInterface, objInterface.Port().AddressOf("GevDeviceIPAddress") + 8), 0x0A010203);
    char szId[64] = {};
    std::size_t nSize = sizeof(szId);
    objConsumer.GCReadPort(hInterface, objInterface.Port().AddressOf("DeviceID") + 64, szId, &nSize);
    EXPECT_STREQ(szId, "cam-2");

    objInterface.SelectorMax(5).Unplug("cam-2");
    objConsumer.IFUpdateDeviceList(hInterface, nullptr, 0);
    EXPECT_EQ(objConsumer.ReadNumber(hInterface, objInterface.Port().AddressOf("DeviceSelectorMax")), 5);
    nSize = 8;
    EXPECT_EQ(objConsumer.GCReadPort(hInterface, objInterface.Port().AddressOf("GevDeviceIPAddress") + 8, szId, &nSize),
              GC_ERR_INVALID_ADDRESS);
}

TEST(ProducerDoublePorts, EndAWaitingUpdateByTheStopCommand) {
    CConsumer objConsumer;
    auto& objInterface = objConsumer.Producer().AddInterface("if-1").WaitWholeWindow();
    TL_HANDLE hTL = objConsumer.OpenSystem();
    IF_HANDLE hInterface = nullptr;
    ASSERT_EQ(objConsumer.TLOpenInterface(hTL, "if-1", &hInterface), GC_ERR_SUCCESS);
    const auto nStop = objInterface.Port().AddressOf("DeviceStopUpdateList");
    auto objUpdate =
        std::async(std::launch::async, [&] { return objConsumer.IFUpdateDeviceList(hInterface, nullptr, 30000); });
    const auto objStart = std::chrono::steady_clock::now();
    // A stop that comes before the update is forgotten, so it is repeated until the update is over.
    while (objUpdate.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
        ASSERT_EQ(objConsumer.WriteNumber(hInterface, nStop, 1), GC_ERR_SUCCESS);
    EXPECT_EQ(objUpdate.get(), GC_ERR_SUCCESS);
    EXPECT_LT(std::chrono::steady_clock::now() - objStart, std::chrono::seconds(20)) << "it waited for its time-out";
}

TEST(ProducerDoublePorts, RefuseACameraThatIsReadOnlyOrGone) {
    CConsumer objConsumer;
    const DEV_HANDLE hDevice = objConsumer.OpenCamera(DEVICE_ACCESS_READONLY);
    const PORT_HANDLE hPort = objConsumer.RemotePort(hDevice);
    const auto nWidth = objConsumer.Producer().Device("cam-1").Remote().AddressOf("Width");
    EXPECT_EQ(objConsumer.ReadNumber(hPort, nWidth), 64);
    EXPECT_EQ(objConsumer.WriteNumber(hPort, nWidth, 1), GC_ERR_ACCESS_DENIED);

    const EVENT_HANDLE hEvent = objConsumer.Register(hPort, EVENT_ZR_DEVICE_OFFLINE);
    std::size_t nSize = 0;
    EXPECT_EQ(objConsumer.EventGetData(hEvent, nullptr, &nSize, 0), GC_ERR_TIMEOUT);
    objConsumer.Producer().Unplug("cam-1").Plug("cam-1");
    EXPECT_EQ(objConsumer.EventGetData(hEvent, nullptr, &nSize, 10000), GC_ERR_SUCCESS);
    EXPECT_EQ(objConsumer.EventGetData(hEvent, nullptr, &nSize, 0), GC_ERR_TIMEOUT) << "one event for one loss";
    EXPECT_EQ(objConsumer.WriteNumber(hPort, nWidth, 1), GC_ERR_ZR_DEVICE_OFFLINE) << "until it is opened again";
}

}  // namespace
}  // namespace ProducerDouble
