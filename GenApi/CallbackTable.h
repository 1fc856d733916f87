#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "GenApi/NodeCallback.h"

namespace GenApi_3_0 {

/// One registered callback, from Register to Deregister and, while it runs, a little longer.
class CRegisteredCallback;

/// The callbacks of one node map. A part of the node map, used with its lock held unless told otherwise.
///
/// Handles are numbers that are never given twice in a process, so a handle that is used twice, or after its node map
/// has gone, is told from a good one.
class CCallbackTable {
public:
    using Pin = std::shared_ptr<CRegisteredCallback>;

    CCallbackTable() = default;
    ~CCallbackTable();
    CCallbackTable(const CCallbackTable&) = delete;
    CCallbackTable& operator=(const CCallbackTable&) = delete;

    CallbackHandleType Add(std::uint32_t nNode, INode* pNode, std::unique_ptr<CNodeCallback> pCallback);
    /// @return whether the node still has callbacks
    bool Remove(std::uint32_t nNode, CallbackHandleType hCallback);
    bool Has(std::uint32_t nNode, CallbackHandleType hCallback) const;
    /// Appends the node's callbacks of one type, in the order of their registration.
    void Collect(std::uint32_t nNode, ECallbackType eType, std::vector<Pin>& vecPin) const;

    /// Calls it unless it was deregistered in the meantime. Needs no lock.
    static void Run(CRegisteredCallback& objCallback);
    /// Stops it from being called, and waits until it runs on no other thread, unless that thread waits in turn for a
    /// callback that this one runs. Must be called without the lock, since a callback that runs outside the lock may
    /// want it.
    static void Retire(CRegisteredCallback& objCallback);
    /// Null if the handle isn't a living one.
    static Pin Find(CallbackHandleType hCallback);
    static INode* NodeOf(const CRegisteredCallback& objCallback);

private:
    std::unordered_map<std::uint32_t, std::vector<Pin>> m_mapCallback;
};

}  // namespace GenApi_3_0
