#pragma once

#include <cstdint>
#include <exception>
#include <span>
#include <string>
#include <vector>

#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "TLClass/TLClassInfo/ChildCount.h"

// How records are filled from features: a record has a table that says in the order of reading which feature goes to
// which field and which flag, and the two reads below do the rest. A feature control isn't owned and is used during the
// call only. Two walks over one node map may not run at the same time; the caller's lock sees to that.

/// One feature of a record whose fields are all VALUE: std::string or std::int64_t.
template <typename RECORD, typename VALUE>
struct FEATURE_FIELD {
    const char* pFeature;
    VALUE RECORD::*pField;
    std::uint8_t RECORD::*pFlag;
};

inline void ReadFeature(IFeatureControl* pFeatureControl, const char* pFeature, std::string& strValue) {
    strValue = pFeatureControl->DoGetString(pFeature);
}

inline void ReadFeature(IFeatureControl* pFeatureControl, const char* pFeature, std::int64_t& nValue) {
    nValue = pFeatureControl->DoGetInt(pFeature);
}

/// Reads what there is: a feature that is missing, refuses or is of another type leaves its field empty and its flag 0.
template <typename RECORD, typename VALUE>
RECORD ReadFeatureRecord(IFeatureControl* pFeatureControl, std::span<const FEATURE_FIELD<RECORD, VALUE>> tblField) {
    RECORD objRecord;
    for (const FEATURE_FIELD<RECORD, VALUE>& objField : tblField) {
        try {
            ReadFeature(pFeatureControl, objField.pFeature, objRecord.*objField.pField);
            objRecord.*objField.pFlag = 1;
        } catch (const std::exception&) {
            // Wanted: no module has to offer any of these features.
        }
    }
    return objRecord;
}

/// Reads one record for each value of a selector from 0 to its greatest, and leaves the selector there.
/// A selector that is missing gives an empty list, one that refuses a value ends the list before it. The caller learns
/// of either by the length.
template <typename RECORD, typename VALUE>
std::vector<RECORD> ReadFeatureRecordList(IFeatureControl* pFeatureControl, const char* pSelector,
                                          std::span<const FEATURE_FIELD<RECORD, VALUE>> tblField) {
    std::vector<RECORD> vecRecord;
    try {
        // The sum and the cut to 32 bits are meant to wrap: a greatest value of -1 is how a module says "none".
        const auto nCount =
            static_cast<std::uint32_t>(static_cast<std::uint64_t>(pFeatureControl->DoGetIntRange(pSelector).Max) + 1);
        CheckChildCount(nCount, "FeatureRecord", __LINE__, "ReadFeatureRecordList");
        vecRecord.reserve(nCount);
        for (std::uint32_t i = 0; i < nCount; ++i) {
            pFeatureControl->DoSetInt(pSelector, i);
            vecRecord.push_back(ReadFeatureRecord(pFeatureControl, tblField));
        }
    } catch (const std::exception&) {
        // Wanted: what has been read so far is the answer.
    }
    return vecRecord;
}
