#pragma once

#include <memory>
#include <string>

#include "GenApi/NodeMapRef.h"
#include "GenTL/GenTL.h"
#include "TLClass/TLClassMain/UnCopyable.h"

class CGenTLLib;
class CPort;

/// The live description of one module: its text, the node map made from it, and the port behind the node map.
///
/// Embedded by value in its module, whose lock covers it; a device has a second one for the camera itself. Whoever
/// works on the node map goes before Clear and before the analyzer. Parsing is done for one analyzer of the process at
/// a time, reading from the producer is not.
class CXMLAnalyzer : public CUnCopyable {
public:
    /// @param pLib  not owned
    explicit CXMLAnalyzer(CGenTLLib* pLib);
    ~CXMLAnalyzer();

    /// Fetches the description through the port, makes its node map and connects the two. What was loaded before is
    /// replaced. A load that fails part way leaves what it had made; Clear drops it.
    /// @throws CZrException  the description can't be had, isn't one, or has no port of the producer's name
    void LoadXMLFromPortHandle(PORT_HANDLE hPort);

    /// Drops the text, the node map and the port. Does nothing on an empty analyzer.
    void Clear();

    std::string GetXML() const { return m_strXML; }

    /// Null before a load. Owned by the analyzer until Clear or the next load.
    GenApi_3_0::CNodeMapRef* GetNodeMapRef() const { return m_pNodeMapRef.get(); }

private:
    void __ParseXML();
    void __LoadXMLInTryExcept();
    void __LoadXMLFromString();
    [[noreturn]] void __ThrowExceptionFromTryExcept();
    void __Connect(PORT_HANDLE hPort);

    CGenTLLib* m_pLib;
    std::string m_strXML;
    // The node map goes before the port that it calls; Clear sees to it.
    std::unique_ptr<GenApi_3_0::CNodeMapRef> m_pNodeMapRef;
    std::unique_ptr<CPort> m_pPort;
};
