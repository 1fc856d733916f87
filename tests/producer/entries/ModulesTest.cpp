// Parts of the modules on their own: no producer file, no network.

#include <array>
#include <cstring>
#include <future>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "producer/ProducerError.h"
#include "producer/modules/BufferPool.h"
#include "producer/modules/DeviceEntry.h"
#include "producer/modules/EventSource.h"
#include "producer/modules/RegisterMap.h"
#include "producer/modules/RemoteUrl.h"

namespace producer {
namespace {

template <class TCall>
GC_ERROR CodeOf(TCall funCall) {
    try {
        funCall();
        return GC_ERR_SUCCESS;
    } catch (const CProducerError& objError) {
        EXPECT_STRNE(objError.what(), "");
        return objError.GetCode();
    }
}

TEST(CameraUrl, IsTakenInEveryHonestFormAndRefusedInEveryOther) {
    struct CASE {
        std::string strRegister;
        std::string strUrl;  // empty: refused
    };
    const std::vector<CASE> vecCase = {
        {"Local:cam.zip;1000;2A", "Local:cam.zip;1000;2a?SchemaVersion=1.1.0"},
        {"LOCAL:///Cam.XML;0xA000;0xFf?SchemaVersion=1.0.0", "Local:Cam.XML;a000;ff?SchemaVersion=1.0.0"},
        {"Local: ///a/../cam.zip;1;1", "Local:cam.zip;1;1?SchemaVersion=1.1.0"},
        {" local: cam.zip ; 1000 ; 2A ", "Local:cam.zip;1000;2a?SchemaVersion=1.1.0"},
        {"Local:cam.zip;FFFFFFFE;2", "Local:cam.zip;fffffffe;2?SchemaVersion=1.1.0"},
        {"Local:cam.zip;1000;4000000", "Local:cam.zip;1000;4000000?SchemaVersion=1.1.0"},
        {"http://a.example/cam.xml", "http://a.example/cam.xml"},
        {"Local:cam.zip;FFFFFFFF;2", ""},
        {"Local:cam.zip;1000;4000001", ""},
        {"Local:cam.zip;1000;0", ""},
        {"Local:cam.zip;FFFFFFFFFFFFFFFFF;1", ""},
        {"Local:cam.zip;1000", ""},
        {"Local:cam.zip;-1;10", ""},
        {"Local:cam.exe;1000;10", ""},
        {"File:///etc/passwd.xml?", ""},
        {"Local:c\x01m.zip;1000;2A", ""},
        {"", ""},
        {std::string(512, 'x'), ""},
    };
    for (const CASE& objCase : vecCase) {
        std::string strField = objCase.strRegister;
        strField.resize(512, '\0');
        std::string strWhy;
        const std::optional<URL_FACTS> objUrl = ReadCameraUrl(std::as_bytes(std::span(strField)), strWhy);
        EXPECT_EQ(objUrl ? objUrl->Url : "", objCase.strUrl) << objCase.strRegister;
        EXPECT_EQ(strWhy.empty(), objUrl.has_value()) << objCase.strRegister;
    }
}

TEST(RegisterMap, ReadsAnyPieceAndWritesWholeRegistersOnly) {
    CRegisterMap objMap({"Test", "", "TestPort", "GUID"});
    objMap.Category("All");
    CFeature::Number nValue = 0x0102030405060708;
    objMap.Integer("Number", "", [&] { return nValue; }).Set([&](CFeature::Number n) { nValue = n; });
    // 511 bytes and a zero fit; the last character takes two bytes and doesn't.
    int nRun = 0;
    objMap.Text("Text", "", [] { return std::string(510, 'x') + "\xC3\xA4"; });
    objMap.Command("Command", "", [&] { ++nRun; });
    objMap.Finish();
    const auto funRead = [&](std::uint64_t nAddress, std::size_t nLength) {
        std::string strBytes(nLength, '#');
        objMap.Read(nAddress, std::as_writable_bytes(std::span(strBytes)));
        return strBytes;
    };
    EXPECT_EQ(funRead(0x1000, 8), "\x08\x07\x06\x05\x04\x03\x02\x01");
    EXPECT_EQ(funRead(0x1006, 4), "\x02\x01xx") << "across two registers";
    EXPECT_EQ(funRead(0x1008 + 508, 4), std::string("xx\0\0", 4));
    const std::uint64_t nXml = objMap.GetDescriptionAddress();
    EXPECT_EQ(funRead(nXml, objMap.GetDescription().size()), objMap.GetDescription());
    EXPECT_EQ(CodeOf([&] { funRead(nXml, objMap.GetDescription().size() + 1); }), GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(objMap.GetDescription().size() % 4, 0u) << "so that whole registers end with it";
    EXPECT_EQ(CodeOf([&] { funRead(0x1008 + 512 + 8, 1); }), GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(CodeOf([&] { funRead(~std::uint64_t{0}, 2); }), GC_ERR_INVALID_ADDRESS);

    const std::array<std::byte, 8> arrOne{std::byte{1}};
    objMap.Write(0x1000, arrOne);
    EXPECT_EQ(nValue, 1);
    EXPECT_EQ(CodeOf([&] { objMap.Write(0x1000, std::span(arrOne).first(4)); }), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(CodeOf([&] { objMap.Write(0x1004, std::span(arrOne).first(4)); }), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(CodeOf([&] { objMap.Write(0x1008, arrOne); }), GC_ERR_ACCESS_DENIED);
    EXPECT_EQ(CodeOf([&] { objMap.Write(nXml, arrOne); }), GC_ERR_INVALID_ADDRESS);
    EXPECT_EQ(CodeOf([&] { objMap.Write(0x1008 + 512, std::array<std::byte, 8>{}); }), GC_ERR_INVALID_VALUE);
    objMap.Write(0x1008 + 512, arrOne);
    EXPECT_EQ(nRun, 1) << "by the one, and not by the zero";
}

TEST(EventQueue, KeepsTheNewestAndAnEventThatDidntFit) {
    CEventQueue objQueue(EVENT_REMOTE_DEVICE, 4, 2);
    for (const char* pszData : {"one", "two", "six!!"}) {
        objQueue.Post(std::as_bytes(std::span(pszData, std::strlen(pszData))));
    }
    std::string strBuffer(4, '#');
    std::size_t nSize = 2;
    EXPECT_EQ(CodeOf([&] { objQueue.GetData(strBuffer.data(), &nSize, 0); }), GC_ERR_BUFFER_TOO_SMALL);
    objQueue.GetData(nullptr, &nSize, 0);
    EXPECT_EQ(nSize, 3u);
    nSize = 4;
    objQueue.GetData(strBuffer.data(), &nSize, 0);
    EXPECT_EQ(strBuffer.substr(0, nSize), "two");
    nSize = 4;
    objQueue.GetData(strBuffer.data(), &nSize, GENTL_INFINITE);
    EXPECT_EQ(strBuffer, "six!");
    EXPECT_EQ(CodeOf([&] { objQueue.GetData(strBuffer.data(), &nSize, 1); }), GC_ERR_TIMEOUT);
}

TEST(EventQueue, RemembersOneKillAndEndsOneWaitForEach) {
    CEventQueue objQueue(EVENT_REMOTE_DEVICE, 4, 2);
    std::size_t nSize = 0;
    const auto funWait = [&](std::uint64_t nTimeoutMs) {
        std::size_t nOwnSize = 0;
        return CodeOf([&] { objQueue.GetData(nullptr, &nOwnSize, nTimeoutMs); });
    };
    objQueue.Kill();
    objQueue.Kill();
    EXPECT_EQ(funWait(GENTL_INFINITE), GC_ERR_ABORT);
    EXPECT_EQ(funWait(0), GC_ERR_TIMEOUT) << "the second was none";
    std::future<GC_ERROR> objFirst = std::async(std::launch::async, funWait, GENTL_INFINITE);
    objQueue.Kill();
    EXPECT_EQ(objFirst.get(), GC_ERR_ABORT) << "whether it came before or into the wait";
    std::future<GC_ERROR> objSecond = std::async(std::launch::async, funWait, GENTL_INFINITE);
    objQueue.Close();
    EXPECT_EQ(objSecond.get(), GC_ERR_ABORT);
    EXPECT_EQ(CodeOf([&] { objQueue.GetData(nullptr, &nSize, GENTL_INFINITE); }), GC_ERR_ABORT);
}

TEST(BufferPool, OperationsOnAllBuffersHoldForTheOneThatIsBeingFilled) {
    const struct {
        ACQ_QUEUE_TYPE Operation;
        bool Deliver;  // what is being filled then, or give it back
        std::size_t Queued;
        std::size_t Output;
    } arrCase[] = {{ACQ_QUEUE_OUTPUT_DISCARD, true, 0, 1}, {ACQ_QUEUE_OUTPUT_DISCARD, false, 1, 0},
                   {ACQ_QUEUE_ALL_TO_INPUT, true, 1, 0},   {ACQ_QUEUE_ALL_TO_INPUT, false, 1, 0},
                   {ACQ_QUEUE_ALL_DISCARD, true, 0, 0},    {ACQ_QUEUE_ALL_DISCARD, false, 0, 0}};
    CEventSource objEvents;
    objEvents.Offer(EVENT_NEW_BUFFER, sizeof(EVENT_NEW_BUFFER_DATA), 4);
    objEvents.Register(EVENT_NEW_BUFFER);
    for (const auto& objCase : arrCase) {
        SCOPED_TRACE(std::to_string(objCase.Operation) + (objCase.Deliver ? " delivered" : " given back"));
        CBufferPool objPool(objEvents);
        void* const hBuffer = objPool.Announce(std::make_shared<CStreamBuffer>(8, nullptr));
        objPool.Queue(hBuffer);
        objPool.Start(GENTL_INFINITE, 0);
        FINISHED_BLOCK objBlock;
        objBlock.Memory = objPool.TakeMemory();
        objBlock.Filled = 8;
        objPool.Flush(objCase.Operation);
        objCase.Deliver ? objPool.DeliverBlock(objBlock) : objPool.ReturnMemory(objBlock.Memory);
        EXPECT_EQ(objPool.GetCounts().Queued, objCase.Queued);
        EXPECT_EQ(objPool.GetCounts().AwaitDelivery, objCase.Output);
        EXPECT_EQ(objPool.GetCounts().Started, 1u) << "whatever became of it";
        const auto funFilled = [&] { return objPool.GetInfo(hBuffer, BUFFER_INFO_SIZE_FILLED).GetBytes()[0]; };
        EXPECT_EQ(funFilled(), std::byte(objCase.Output != 0 ? 8 : 0));
        objPool.Flush(ACQ_QUEUE_ALL_TO_INPUT);
        EXPECT_EQ(funFilled(), std::byte{0}) << "given up with its place in the input pool";
    }
}

TEST(EventSource, DeliversWhatComesOnceOnceHoweverLateItIsRegistered) {
    CEventSource objSource;
    objSource.Offer(EVENT_ZR_DEVICE_OFFLINE, 0, 1);
    objSource.PostOnce(EVENT_ZR_DEVICE_OFFLINE);
    objSource.PostOnce(EVENT_ZR_DEVICE_OFFLINE);
    const auto funFirst = [&] {
        const auto pQueue = CHandleTable::Get().Require<CEventQueue>(objSource.Register(EVENT_ZR_DEVICE_OFFLINE));
        std::size_t nSize = 0;
        const GC_ERROR nCode = CodeOf([&] { pQueue->GetData(nullptr, &nSize, 0); });
        objSource.Unregister(EVENT_ZR_DEVICE_OFFLINE);
        return nCode;
    };
    EXPECT_EQ(funFirst(), GC_ERR_SUCCESS);
    EXPECT_EQ(funFirst(), GC_ERR_TIMEOUT);
    EXPECT_EQ(CodeOf([&] { objSource.Unregister(EVENT_ZR_DEVICE_OFFLINE); }), GC_ERR_INVALID_PARAMETER);
    objSource.Close();
    EXPECT_EQ(CodeOf([&] { objSource.Register(EVENT_ZR_DEVICE_OFFLINE); }), GC_ERR_INVALID_HANDLE);
}

TEST(DeviceEntry, IsNamedWithWhatItsUserMustKnow) {
    DISCOVERED_DEVICE objDevice;
    objDevice.Model = "Model";
    objDevice.Mac = 0x025E1700ADEA;
    objDevice.Address = 0xC0A82A53;
    const std::string strName = "Model(192.168.42.83[02-5E-17-00-AD-EA])";
    EXPECT_EQ(MakeDeviceEntry(objDevice, false).Id, "Model(02-5E-17-00-AD-EA)");
    EXPECT_EQ(MakeDeviceEntry(objDevice, false).DisplayName, strName);
    objDevice.AccessStatus = DEVICE_ACCESS_STATUS_READONLY;
    EXPECT_EQ(MakeDeviceEntry(objDevice, true).DisplayName, strName);
    EXPECT_EQ(MakeDeviceEntry(objDevice, true).Device.AccessStatus, DEVICE_ACCESS_STATUS_READWRITE);
    EXPECT_EQ(MakeDeviceEntry(objDevice, false).DisplayName, strName + " in use");
    objDevice.SharesAddress = true;
    EXPECT_EQ(MakeDeviceEntry(objDevice, false).DisplayName, strName + " shared address");
    objDevice.IsOutsideSubnet = true;
    EXPECT_EQ(MakeDeviceEntry(objDevice, false).DisplayName, strName + " wrong subnet");
}

}  // namespace
}  // namespace producer
