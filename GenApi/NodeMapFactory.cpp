#include "GenApi/NodeMapFactory.h"

#include <new>
#include <string_view>

#include "GenApi/GCException.h"
#include "GenApi/NodeMapImpl.h"

namespace GenApi_3_0 {

CNodeMapFactory::CNodeMapFactory(EContentType_t /*eContentType*/, const void* pData, std::size_t nSize,
                                 ECacheUsage_t /*eCacheUsage*/, bool /*bSuppressStrings*/)
    : m_pData(static_cast<const char*>(pData)), m_nSize(nSize) {}

std::unique_ptr<INodeMap> CNodeMapFactory::CreateNodeMap(const gcstring& DeviceName) const {
    if (m_pData == nullptr) {
        GenICam_3_0::Throw<GenICam_3_0::InvalidArgumentException>("The description is a null pointer");
    }
    try {
        return std::make_unique<CNodeMapImpl>(std::string_view(m_pData, m_nSize), DeviceName);
    } catch (const std::bad_alloc&) {
        GenICam_3_0::Throw<GenICam_3_0::BadAllocException>("There is no memory for the nodes of the description");
    }
}

}  // namespace GenApi_3_0
