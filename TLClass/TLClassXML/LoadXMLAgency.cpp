#include "TLClass/TLClassXML/LoadXMLAgency.h"

#include "TLClass/TLClassXML/XMLAnalyzer.h"

CLoadXMLAgency::CLoadXMLAgency(CXMLAnalyzer& objXMLAnalyzer, PORT_HANDLE hPort) : m_objXMLAnalyzer(objXMLAnalyzer) {
    try {
        m_objXMLAnalyzer.LoadXMLFromPortHandle(hPort);
    } catch (...) {
        // No destructor runs for an agency whose constructor failed.
        m_objXMLAnalyzer.Clear();
        throw;
    }
}

CLoadXMLAgency::~CLoadXMLAgency() {
    if (m_bArmed) {
        m_objXMLAnalyzer.Clear();
    }
}
