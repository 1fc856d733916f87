#pragma once

#include <string>
#include <vector>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassXML/XMLUrl.h"

class CGenTLLib;

/// Fetches the description of one module: the first URL that its port publishes, then the bytes, unpacked.
///
/// Lives on the stack of the one call that uses it, and owns neither the library nor the handle.
class CXMLLoader {
public:
    CXMLLoader(CGenTLLib* pLib, PORT_HANDLE hPort) : m_hPort(hPort), m_pLib(pLib) {}

    /// The text of the description. An archive that can't be unpacked comes back as it is, after a line on standard
    /// output.
    /// @throws CZrException       the producer refuses a call; there is no URL, none that is understood, no file; the
    ///                            description is longer than kMaxDescriptionLength
    /// @throws std::out_of_range  the name in a URL is too short to have an extension
    std::string LoadXML();

private:
    std::string __ReadUrl();
    std::string __ReadXMLFromRemoteDevice(const XML_LOCAL_INFO& objLocal);
    std::string __ReadXMLFromFile(const XML_FILE_INFO& objFile);
    std::string __GetXMLContent(const std::string& strName, const std::vector<char>& vecBuffer);

    PORT_HANDLE m_hPort;
    CGenTLLib* m_pLib;
};
