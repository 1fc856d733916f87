#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "GenTL/GenTL.h"
#include "TLClass/TLClassInfo/ChildCount.h"
#include "TLClass/TLClassMain/GenTLErrrorCodeVerifier.h"

class CGenTLLib;

/// The walk over the children that a producer lists under a module: the ID of each, and by the ID its record.
/// A child whose ID can't be read keeps its place, with what the producer answers for an empty ID.
/// @param pLib, hParent  not owned
/// @param fnCount        GC_ERROR(std::uint32_t* pCount): counts the children
/// @throws CZrException  by the result of fnCount; CUnexpectedError for more than kMaxChildCount
template <typename RECORD, typename ID, typename QUERY, typename COUNT>
std::vector<RECORD> ReadAllInformation(CGenTLLib* pLib, void* hParent, COUNT fnCount, const std::string& strFile,
                                       int nLine, const std::string& strFunction) {
    std::uint32_t nCount = 0;
    CGenTLErrorCodeVerifier::ThrowExceptionIfFailed(fnCount(&nCount), pLib, strFile, nLine, strFunction);
    CheckChildCount(nCount, strFile, nLine, strFunction);

    std::vector<RECORD> vecRecord;
    vecRecord.reserve(nCount);
    for (std::uint32_t i = 0; i < nCount; ++i) {
        vecRecord.push_back(QUERY(hParent, ID(pLib, hParent, i).GetID(), pLib).GetInformation());
    }
    return vecRecord;
}
