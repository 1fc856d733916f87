#pragma once

#include <string>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassLoadTL/GenTLLib.h"
#include "tests/producer_double/ProducerLibrary.h"

/// The producer double with its system module open, whose port serves what a test has it serve.
class CSystemPort {
public:
    explicit CSystemPort(const std::string& strProducer);
    ~CSystemPort();
    CSystemPort(const CSystemPort&) = delete;
    CSystemPort& operator=(const CSystemPort&) = delete;

    ProducerDouble::IProducerControl& Producer() { return *m_objDouble; }
    ProducerDouble::IPortControl& Port() { return m_objDouble->Port(); }
    CGenTLLib* Library() { return &m_objLib; }
    PORT_HANDLE Handle() const { return m_hSystem; }

    /// Puts the content into registers and the one URL that leads there into the port's list.
    /// @param strName  "cam.xml", or with an end that tells how the content is packed
    void Serve(const std::string& strName, const std::string& strContent);

private:
    ProducerDouble::CProducerLibrary m_objDouble;
    CGenTLLib m_objLib;
    TL_HANDLE m_hSystem = nullptr;
};
