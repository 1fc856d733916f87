#include "tests/TLClass/TLClassXML/SystemPort.h"

#include <stdexcept>

CSystemPort::CSystemPort(const std::string& strProducer) : m_objDouble(strProducer), m_objLib(strProducer) {
    if (m_objLib.GCInitLib() != GC_ERR_SUCCESS || m_objLib.TLOpen(&m_hSystem) != GC_ERR_SUCCESS) {
        throw std::runtime_error("the system module of the producer double doesn't open");
    }
}

CSystemPort::~CSystemPort() {
    m_objLib.TLClose(m_hSystem);
    m_objLib.GCCloseLib();
}

void CSystemPort::Serve(const std::string& strName, const std::string& strContent) {
    Port().DescribeAs(strName, ProducerDouble::BytesOf(strContent));
}
