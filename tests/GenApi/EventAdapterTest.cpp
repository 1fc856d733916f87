#include <algorithm>
#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "GenApi/EventAdapterGeneric.h"
#include "GenApi/GCException.h"
#include "GenApi/NodeCallback.h"
#include "tests/GenApi/TestMap.h"

namespace GenApi_3_0 {
namespace {

using GenICam_3_0::InvalidArgumentException;
using GenICam_3_0::OutOfRangeException;

std::string EventReg(const std::string& strName, int nAddress, const std::string& strPort) {
    return "<IntReg Name='" + strName + "'><Address>" + std::to_string(nAddress) +
           "</Address><Length>4</Length><AccessMode>RO</AccessMode><pPort>" + strPort +
           "</pPort><Endianess>BigEndian</Endianess></IntReg>";
}

/// Event 9001 with Frame and Line behind one port and Second behind another, event 9002 with Other, and Notice, a plain
/// node with the ID of the first.
class EventAdapter : public testing::Test {
protected:
    EventAdapter() { Adapter.AttachNodeMap(Map.Map._Ptr); }

    void Deliver(std::vector<std::uint8_t> vecByte, std::uint64_t nEventID = 0x9001) {
        Adapter.DeliverMessage(vecByte.data(), static_cast<std::uint32_t>(vecByte.size()), nEventID);
        std::fill(vecByte.begin(), vecByte.end(), std::uint8_t{0xEE});  // the adapter has a copy
    }
    void Count(INode* /*pNode*/) { ++Calls; }
    int CallsOf(const char* pName, const std::vector<std::uint8_t>& vecByte, std::uint64_t nEventID) {
        Calls = 0;
        const CallbackHandleType hCallback = Register(&Map.Node(pName), *this, &EventAdapter::Count);
        Deliver(vecByte, nEventID);
        EXPECT_TRUE(Deregister(hCallback));
        return Calls;
    }

    CTestMap Map{
        "<Port Name='P1'><EventID>9001</EventID></Port><Port Name='P2'><EventID>0x009001</EventID></Port>"
        "<Port Name='P3'><EventID>9002</EventID></Port><Port Name='Bad'><EventID>line 1</EventID></Port>" +
        EventReg("Frame", 0, "P1") + EventReg("Line", 4, "P1") + EventReg("Second", 0, "P2") +
        EventReg("Other", 0, "P3") + EventReg("Never", 0, "Bad") +
        "<Integer Name='Notice'><EventID>9001</EventID><Value>7</Value></Integer>"
        "<IntSwissKnife Name='Sum'><pVariable Name='A'>Frame</pVariable><pVariable Name='B'>Second</pVariable>"
        "<Formula>A + B</Formula></IntSwissKnife>"};
    CEventAdapterGeneric Adapter;
    int Calls = 0;
};

TEST_F(EventAdapter, TheDataOfAnEventIsReadUntilTheNextOfItsId) {
    EXPECT_EQ(Map.Access("Frame"), NA);
    Deliver({0, 0, 0, 5, 0, 0, 1, 0});
    EXPECT_EQ(Map.Access("Frame"), RO);
    EXPECT_EQ(Map.Integer("Frame").GetValue(), 5);
    EXPECT_EQ(Map.Integer("Line").GetValue(), 256);
    EXPECT_EQ(Map.Integer("Sum").GetValue(), 10);
    EXPECT_EQ(Map.Access("Other"), NA);

    Deliver({0, 0, 0, 9}, 0x9002);
    Deliver({1, 2, 3, 4}, 0x9003);
    EXPECT_EQ(Map.Integer("Frame").GetValue(), 5);
    EXPECT_EQ(Map.Integer("Other").GetValue(), 9);

    Deliver({0, 0, 0, 6});
    EXPECT_EQ(Map.Integer("Sum").GetValue(), 12);
    EXPECT_THROW(Map.Integer("Line").GetValue(), OutOfRangeException) << "this one was shorter";

    Adapter.DetachNodeMap();
    EXPECT_EQ(Map.Access("Frame"), NA);
    Deliver({0, 0, 0, 7});
    EXPECT_EQ(Map.Access("Frame"), NA);
}

TEST_F(EventAdapter, EachNodeThatAnEventTouchesIsCalledOnce) {
    const std::vector<std::uint8_t> vecByte{0, 0, 0, 1, 0, 0, 0, 2};
    for (const char* pNode : {"Frame", "Sum", "P1", "Notice"}) {
        EXPECT_EQ(CallsOf(pNode, vecByte, 0x9001), 1) << pNode;
        EXPECT_EQ(CallsOf(pNode, vecByte, 0x9002), 0) << pNode;
    }
    EXPECT_EQ(CallsOf("Never", vecByte, 0x9001), 0);
    EXPECT_EQ(CallsOf("Notice", {}, 0x9001), 1) << "an event needs no data";
}

TEST_F(EventAdapter, AnIdMayComeAsText) {
    const std::uint8_t aByte[] = {0, 0, 0, 8};
    for (const char* pId : {"9002", "0x9002", "0000009002"}) {
        Adapter.DetachNodeMap();
        Adapter.AttachNodeMap(Map.Map._Ptr);
        ASSERT_EQ(Map.Access("Other"), NA);
        Adapter.DeliverMessage(aByte, 4, gcstring(pId));
        EXPECT_EQ(Map.Integer("Other").GetValue(), 8) << pId;
    }
    for (const char* pId : {"", "line 1", "-1", "0x", "11112222333344445"}) {
        EXPECT_THROW(Adapter.DeliverMessage(aByte, 4, gcstring(pId)), InvalidArgumentException) << pId;
    }
}

TEST_F(EventAdapter, WhatCantBeAnEventIsRefused) {
    const std::vector<std::uint8_t> vecLarge(CEventAdapterGeneric::kMaxEventSize + 1);
    EXPECT_THROW(Deliver(vecLarge), InvalidArgumentException);
    EXPECT_THROW(Adapter.DeliverMessage(nullptr, 1, 0x9001), InvalidArgumentException);
    EXPECT_THROW(Adapter.AttachNodeMap(nullptr), InvalidArgumentException);
    EXPECT_EQ(Map.Access("Frame"), NA);
}

TEST_F(EventAdapter, AReaderSeesEachEventWhole) {
    std::atomic<bool> bStop = false;
    Deliver({0, 0, 0, 0, 0, 0, 0, 0});
    std::thread objReader([&] {
        while (!bStop) {
            const AutoLock objLock(Map.Map._GetLock());
            EXPECT_EQ(Map.Integer("Frame").GetValue(), Map.Integer("Line").GetValue());
        }
    });
    for (int i = 0; i < 500; ++i) {
        const auto n = static_cast<std::uint8_t>(i);
        Deliver({n, n, n, n, n, n, n, n});
    }
    bStop = true;
    objReader.join();
}

}  // namespace
}  // namespace GenApi_3_0
