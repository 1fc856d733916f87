#pragma once

#include "GenTL/GenTL.h"
#include "TLClass/TLClassMain/Agency.h"

class CGenTLLib;

/// Registers an event on a module, and unregisters it again unless the whole start went well. The three kinds of events
/// derive their own from it, which say of what type they are.
class CRegisterEventAgency : public CAgency {
public:
    /// @param hEvent      gets the event; null again when the agency has undone it
    /// @param pClassName  of the deriving agency, for the exception and the log
    /// @throws CZrException  by the result of the producer; hEvent is untouched then
    CRegisterEventAgency(CGenTLLib* pLib, EVENTSRC_HANDLE hSource, EVENT_TYPE nType, EVENT_HANDLE& hEvent,
                         const char* pClassName);
    ~CRegisterEventAgency();

private:
    void __Unregister();

    CGenTLLib* m_pLib;
    EVENTSRC_HANDLE m_hSource;
    EVENT_TYPE m_nType;
    EVENT_HANDLE& m_hEvent;
    const char* m_pClassName;
};
