#include "GenApi/NodeMapRef.h"

#include <cstddef>
#include <fstream>
#include <string>

#include "GenApi/GCException.h"
#include "GenApi/NodeMapFactory.h"
#include "GenApi/NodeMapLimits.h"

namespace GenApi_3_0 {

using GenICam_3_0::RuntimeException;
using GenICam_3_0::Throw;

template <class TCameraParams>
void CNodeMapRefT<TCameraParams>::_LoadXMLFromString(const gcstring& XMLData) {
    if (_Ptr != nullptr) {
        Throw<RuntimeException>("Node map already created");
    }
    const CNodeMapFactory objFactory(ContentType_Xml, XMLData.c_str(), XMLData.size());
    m_pNodeMap = objFactory.CreateNodeMap(m_strDeviceName);
    _Ptr = m_pNodeMap.get();
}

template <class TCameraParams>
void CNodeMapRefT<TCameraParams>::_LoadXMLFromFile(const gcstring& FileName) {
    std::ifstream objFile(FileName.c_str(), std::ios::binary);
    if (!objFile) {
        Throw<RuntimeException>("The description file '" + FileName.str() + "' can't be opened");
    }
    // One byte more than a description may have is enough to refuse it: what is opened there may have no end.
    std::string strText(kMaxDescriptionSize + 1, '\0');
    objFile.read(strText.data(), static_cast<std::streamsize>(strText.size()));
    strText.resize(static_cast<std::size_t>(objFile.gcount()));
    _LoadXMLFromString(strText);
}

template <class TCameraParams>
void CNodeMapRefT<TCameraParams>::_Destroy() {
    _Ptr = nullptr;
    m_pNodeMap.reset();
}

template <class TCameraParams>
INodeMap& CNodeMapRefT<TCameraParams>::Loaded() const {
    if (_Ptr == nullptr) {
        Throw<RuntimeException>("No node map has been created");
    }
    return *_Ptr;
}

template <class TCameraParams>
bool CNodeMapRefT<TCameraParams>::_Connect(IPort* pPort, const gcstring& PortName) const {
    return Loaded().Connect(pPort, PortName);
}

template <class TCameraParams>
bool CNodeMapRefT<TCameraParams>::_Connect(IPort* pPort) const {
    return Loaded().Connect(pPort);
}

template <class TCameraParams>
INode* CNodeMapRefT<TCameraParams>::_GetNode(const gcstring& Name) const {
    return Loaded().GetNode(Name);
}

template <class TCameraParams>
INode* CNodeMapRefT<TCameraParams>::_FindNode(std::string_view strName) const {
    return Loaded().FindNode(strName);
}

template <class TCameraParams>
void CNodeMapRefT<TCameraParams>::_GetNodes(NodeList_t& Nodes) const {
    Loaded().GetNodes(Nodes);
}

template <class TCameraParams>
gcstring CNodeMapRefT<TCameraParams>::_GetDeviceName() const {
    return m_strDeviceName;
}

template <class TCameraParams>
void CNodeMapRefT<TCameraParams>::_InvalidateNodes() const {
    Loaded().InvalidateNodes();
}

template <class TCameraParams>
void CNodeMapRefT<TCameraParams>::_Poll(std::int64_t ElapsedTime) const {
    Loaded().Poll(ElapsedTime);
}

template <class TCameraParams>
CLock& CNodeMapRefT<TCameraParams>::_GetLock() const {
    return Loaded().GetLock();
}

template class CNodeMapRefT<CGeneric_XMLLoaderParams>;

}  // namespace GenApi_3_0
