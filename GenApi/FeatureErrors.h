#pragma once

#include <cstddef>
#include <exception>
#include <string_view>

#include "GenApi/GCException.h"
#include "GenApi/Types.h"

namespace GenApi_3_0 {

/// Lets a walk over many features go on when single ones fail. For one walk, on one thread.
class CFeatureErrors {
public:
    /// Failures of the port, with no success between them, after which the device counts as gone: each may have taken
    /// the port's whole time-out, and a walk has thousands of features.
    static constexpr unsigned kMaxFailuresInARow = 16;

    /// Texts that are kept. Behind them stands one that says so.
    static constexpr std::size_t kMaxTexts = 100'000;

    /// @param pErrorList  gets one text for each failure; may be null
    explicit CFeatureErrors(gcstring_vector* pErrorList) : m_pErrorList(pErrorList) {}

    /// Runs a step on the feature of that name and notes its failure.
    /// @return false if it failed
    /// @throws what the port threw, at the last of kMaxFailuresInARow
    template <class Step>
    bool Try(std::string_view strName, Step step) {
        try {
            step();
            m_nFailuresInARow = 0;
            return true;
        } catch (const GenICam_3_0::GenericException& objError) {
            Note(strName, objError.GetDescription());
        } catch (const std::exception& objError) {  // not the node map's: the port's
            Note(strName, objError.what());
            if (++m_nFailuresInARow == kMaxFailuresInARow) {
                throw;
            }
        }
        return false;
    }

    void Note(std::string_view strName, std::string_view strWhy);
    bool IsEmpty() const { return m_nNoted == 0; }

private:
    gcstring_vector* m_pErrorList;
    unsigned m_nFailuresInARow = 0;
    std::size_t m_nNoted = 0;
};

}  // namespace GenApi_3_0
