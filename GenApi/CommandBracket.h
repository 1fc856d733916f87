#pragma once

#include <string_view>

#include "GenApi/Types.h"

namespace GenApi_3_0 {

class CFeatureErrors;
class ICommand;
class INodeMap;

/// Two commands of a device around a walk over its features: one before, one behind, also when the walk ends in an
/// exception. It does nothing on a device that hasn't both or doesn't take the first now.
class CCommandBracket {
public:
    CCommandBracket(const INodeMap& objNodeMap, const gcstring& strStart, const gcstring& strEnd,
                    CFeatureErrors& objErrors);
    ~CCommandBracket();
    CCommandBracket(const CCommandBracket&) = delete;
    CCommandBracket& operator=(const CCommandBracket&) = delete;

    /// Executes the second command and notes its failure. The destructor does so in silence.
    void End();

private:
    gcstring m_strEnd;
    CFeatureErrors& m_objErrors;
    ICommand* m_pEnd = nullptr;  // null unless it is still to be executed
};

}  // namespace GenApi_3_0
