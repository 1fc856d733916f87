#pragma once

#include <algorithm>
#include <list>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

/// An object that may be what a record of the producer tells of.
template <typename OBJECT>
struct CANDIDATE {
    std::string strID;  // read once: asking the object for each record would copy all that it knows each time
    boost::shared_ptr<OBJECT> pObject;
};

template <typename OBJECT>
using CANDIDATE_LIST = std::list<CANDIDATE<OBJECT>>;

template <typename OBJECT, typename GET_ID>
CANDIDATE_LIST<OBJECT> MakeCandidates(const std::vector<boost::shared_ptr<OBJECT>>& vecObject, GET_ID fnGetID) {
    CANDIDATE_LIST<OBJECT> listCandidate;
    for (const boost::shared_ptr<OBJECT>& pObject : vecObject) {
        listCandidate.push_back({fnGetID(*pObject), pObject});
    }
    return listCandidate;
}

/// What becomes of a candidate once a record has found it.
enum class EMatched {
    Stays,  ///< a second record of the same ID finds the same object again, also one that the merge has made
    Taken   ///< a second record of the same ID has to look further
};

/// What the merges of all lists have in common: one object for each record, in the records' order. The first candidate
/// of the record's ID, compared to the letter, is refreshed and taken over; without one, a new object is made.
/// @param fnCreate  boost::shared_ptr<OBJECT>(const RECORD&)
template <typename OBJECT, typename RECORD, typename CREATE>
std::vector<boost::shared_ptr<OBJECT>> MergeList(const std::vector<RECORD>& vecRecord,
                                                 CANDIDATE_LIST<OBJECT>& listCandidate, EMatched nMatched,
                                                 CREATE fnCreate) {
    std::vector<boost::shared_ptr<OBJECT>> vecMerged;
    vecMerged.reserve(vecRecord.size());
    for (const RECORD& objRecord : vecRecord) {
        const auto itFound = std::find_if(listCandidate.begin(), listCandidate.end(),
                                          [&](const auto& objCandidate) { return objCandidate.strID == objRecord.ID; });
        if (itFound == listCandidate.end()) {
            vecMerged.push_back(fnCreate(objRecord));
            if (nMatched == EMatched::Stays) {
                listCandidate.push_back({objRecord.ID, vecMerged.back()});
            }
            continue;
        }
        itFound->pObject->UpdateInformation(objRecord);
        vecMerged.push_back(itFound->pObject);
        if (nMatched == EMatched::Taken) {
            listCandidate.erase(itFound);
        }
    }
    return vecMerged;
}
