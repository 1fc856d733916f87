#include "GenApi/CommandBracket.h"

#include <utility>

#include "GenApi/AccessMode.h"
#include "GenApi/Command.h"
#include "GenApi/FeatureErrors.h"
#include "GenApi/Node.h"
#include "GenApi/NodeMap.h"

namespace GenApi_3_0 {

CCommandBracket::CCommandBracket(const INodeMap& objNodeMap, const gcstring& strStart, const gcstring& strEnd,
                                 CFeatureErrors& objErrors)
    : m_strEnd(strEnd), m_objErrors(objErrors) {
    auto* pStart = dynamic_cast<ICommand*>(objNodeMap.GetNode(strStart));
    auto* pEnd = dynamic_cast<ICommand*>(objNodeMap.GetNode(strEnd));
    objErrors.Try(strStart.view(), [&] {
        // The second may become writable through the first alone.
        if (IsWritable(pStart) && IsImplemented(pEnd)) {
            pStart->Execute();
            m_pEnd = pEnd;
        }
    });
}

CCommandBracket::~CCommandBracket() {
    try {
        if (m_pEnd != nullptr) {
            m_pEnd->Execute();
        }
    } catch (...) {
        // The exception that is already on its way tells more.
    }
}

void CCommandBracket::End() {
    if (ICommand* pEnd = std::exchange(m_pEnd, nullptr)) {
        m_objErrors.Try(m_strEnd.view(), [pEnd] { pEnd->Execute(); });
    }
}

}  // namespace GenApi_3_0
