#pragma once

#include <map>
#include <memory>
#include <string>
#include <unordered_map>

#include "tests/producer_double/Event.h"
#include "tests/producer_double/Handles.h"
#include "tests/producer_double/Port.h"
#include "tests/producer_double/ProducerControl.h"

namespace ProducerDouble {

/// Anything of the tree that has a handle, a port and events: system, interface, device, remote port, data stream.
///
/// Owned by its parent in the world, and by the handle table while it is open: a module that left the world stays whole
/// until the consumer closes it.
class CModule : public CHandled, public virtual IModuleControl, public std::enable_shared_from_this<CModule> {
public:
    CModule(CONTEXT& objContext, std::string strName, std::string strKind, std::string strPortName);

    const std::string& Name() const override { return m_strName; }
    const std::string& HandledName() const override { return m_strName; }
    CPort& Port() override { return m_objPort; }
    void SetInfo(std::int32_t nCommand, ANSWER objAnswer) override;

    // Everything below expects the monitor's lock.
    virtual void* Open();
    void Close();  ///< with all that was opened below it
    void* Handle() const { return m_hSelf; }
    void GetInfo(std::int32_t nCommand, const TARGET& objTarget);
    /// Refuses where the consumer may not use the port as it wants to.
    virtual void CheckPortAccess(bool bWrite) const;

    void* RegisterEvent(EVENT_TYPE nType);
    void UnregisterEvent(EVENT_TYPE nType);
    bool IsEventRegistered(EVENT_TYPE nType) const { return m_mapEvent.contains(nType); }

protected:
    ~CModule() override = default;

    CONTEXT& _Context() const { return m_objContext; }
    LOCK _Enter() const { return m_objContext.objMonitor.Enter(); }
    void _Changed() const { m_objContext.objMonitor.changed.notify_all(); }
    void _DefaultInfo(std::int32_t nCommand, ANSWER objAnswer) { m_mapInfo[nCommand] = std::move(objAnswer); }

private:
    virtual void _CloseChildren() {}
    /// False if the module tells nothing for this command of its own accord.
    virtual bool _GetOwnInfo(std::int32_t nCommand, const TARGET& objTarget);
    /// Null if the module has no such event.
    virtual IEventQueue* _QueueOf(EVENT_TYPE nType);

    CONTEXT& m_objContext;
    const std::string m_strName;
    CPort m_objPort;
    void* m_hSelf = nullptr;
    std::unordered_map<std::int32_t, ANSWER> m_mapInfo;
    std::map<EVENT_TYPE, std::pair<void*, std::shared_ptr<CEvent>>> m_mapEvent;
};

}  // namespace ProducerDouble
