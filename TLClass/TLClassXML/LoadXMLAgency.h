#pragma once

#include "GenTL/GenTL.h"
#include "TLClass/TLClassMain/Agency.h"

class CXMLAnalyzer;

/// Loads a module's description, and clears it again unless the module's opening went well.
class CLoadXMLAgency : public CAgency {
public:
    /// @throws  what LoadXMLFromPortHandle throws; the analyzer is cleared then too
    CLoadXMLAgency(CXMLAnalyzer& objXMLAnalyzer, PORT_HANDLE hPort);
    ~CLoadXMLAgency();

private:
    CXMLAnalyzer& m_objXMLAnalyzer;
};
