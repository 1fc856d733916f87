#pragma once

#include <cstddef>
#include <memory>

#include "GenApi/NodeMap.h"

namespace GenApi_3_0 {

enum EContentType_t { ContentType_Xml = 0 };

/// Kept for callers that name it: this loader is fast enough to need no cache on disk, so all values act alike.
enum ECacheUsage_t {
    CacheUsage_Automatic = 0,
    CacheUsage_ForceWrite = 1,
    CacheUsage_ForceRead = 2,
    CacheUsage_Ignore = 3
};

/// Makes node maps from a description. A short-lived value; the data stays with the caller.
class CNodeMapFactory {
public:
    /// @param pData  the description's text, with or without byte-order mark; needed until CreateNodeMap has returned
    /// @param bSuppressStrings  kept for callers that name it: texts cost nothing until they are asked for
    CNodeMapFactory(EContentType_t eContentType, const void* pData, std::size_t nSize,
                    ECacheUsage_t eCacheUsage = CacheUsage_Automatic, bool bSuppressStrings = false);

    /// @throws RuntimeException   the text is no XML, holds a reference to a missing or unfit node, or goes beyond
    ///                            a limit
    /// @throws PropertyException  an element holds something that it can't
    std::unique_ptr<INodeMap> CreateNodeMap(const gcstring& DeviceName = "Device") const;

private:
    const char* m_pData;
    std::size_t m_nSize;
};

}  // namespace GenApi_3_0
