#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "GenApi/Types.h"

namespace GenApi_3_0 {

class CNodeContext;
class CEventRecord;
class INodeMap;

/// Hands the events of a device to its node map.
///
/// An event's data stands behind every port with its ID, from address 0, until the next event of that ID; before the
/// first one the nodes on the port are not available. Each delivery is one change of the node map: it takes the lock,
/// and every node that has the ID or stands on one of its ports has its callbacks called once, on the delivering
/// thread. Events that no node asks for are passed over.
///
/// Deliver from one thread at a time. The node map must outlive the adapter or be detached before it goes.
class CEventAdapterGeneric {
public:
    /// Bytes of one event's data, of which a copy is kept for each ID. GigE Vision's events have at most 540.
    static constexpr std::uint32_t kMaxEventSize = 1U << 20U;

    /// @param pNodeMap  attached at once; may be null
    explicit CEventAdapterGeneric(INodeMap* pNodeMap = nullptr);
    ~CEventAdapterGeneric();
    CEventAdapterGeneric(const CEventAdapterGeneric&) = delete;
    CEventAdapterGeneric& operator=(const CEventAdapterGeneric&) = delete;

    /// Takes the node map's nodes with an event ID. One that is attached already is detached first.
    /// @throws InvalidArgumentException  no node map
    void AttachNodeMap(INodeMap* pNodeMap);
    /// Takes the data away from the ports. Without a node map it does nothing.
    void DetachNodeMap();

    /// @param pMessage   the event's data without any header, copied; may be null if there is none
    /// @param nNumBytes  of the data
    /// @throws InvalidArgumentException  data is missing or larger than kMaxEventSize
    void DeliverMessage(const std::uint8_t* pMessage, std::uint32_t nNumBytes, std::uint64_t nEventID);
    /// @param EventID  in hexadecimal, with or without 0x, as descriptions write it
    /// @throws InvalidArgumentException  besides, the ID isn't such a number
    void DeliverMessage(const std::uint8_t* pMessage, std::uint32_t nNumBytes, const gcstring& EventID);

private:
    CEventRecord* Find(std::uint64_t nEventID) const;

    CNodeContext* m_pContext = nullptr;
    std::vector<std::unique_ptr<CEventRecord>> m_vecEvent;  // in the order of their IDs
};

}  // namespace GenApi_3_0
