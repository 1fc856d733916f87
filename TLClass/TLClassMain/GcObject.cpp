#include "TLClass/TLClassMain/GcObject.h"

#include <algorithm>
#include <utility>

#include "support/Log.h"
#include "support/Text.h"

namespace {

constexpr const char* kFile = "..\\..\\..\\TLClass\\TLClassMain\\GcObject";
constexpr const char* kListFunction = "CGcObject::_GetGcObjectList";

}  // namespace

CGcObject::CGcObject(CGenTLLib* pLib) : m_pLib(pLib), m_objXMLAnalyzer(pLib) {}

CGcObject::~CGcObject() = default;

IFeatureControl* CGcObject::GetFeatureControl() const {
    const CScopedLock objLock(m_csRecords);
    return m_pFeatureControl.get();
}

void CGcObject::_SetFeatureControl(std::unique_ptr<IFeatureControl> pFeatureControl) {
    {
        const CScopedLock objLock(m_csRecords);
        m_pFeatureControl.swap(pFeatureControl);
    }
    // What was published before goes here, behind the lock: it calls into the node map.
    pFeatureControl.reset();
}

void CGcObject::AddGcObject(const CGcObjectPointer& pObject) {
    const CScopedLock objLock(m_csChildren);
    m_vecChildren.push_back(pObject);
}

// The three operations below that take children out let them go behind the lock: their destructors are anybody's.

void CGcObject::RemoveGcObject(const CGcObjectPointer& pObject) {
    std::vector<CGcObjectPointer> vecGone;
    const CScopedLock objLock(m_csChildren);
    const auto itGone = std::stable_partition(m_vecChildren.begin(), m_vecChildren.end(),
                                              [&](const CGcObjectPointer& pChild) { return pChild != pObject; });
    vecGone.assign(itGone, m_vecChildren.end());
    m_vecChildren.erase(itGone, m_vecChildren.end());
}

void CGcObject::ClearGcObjectList() {
    SetGcObjectList({});
}

void CGcObject::SetGcObjectList(std::vector<CGcObjectPointer> vecObject) {
    const CScopedLock objLock(m_csChildren);
    m_vecChildren.swap(vecObject);
}

CGcObjectPointer CGcObject::FindGcObject(const CGcObject* pObject) const {
    const CScopedLock objLock(m_csChildren);
    const auto itFound = std::find_if(m_vecChildren.begin(), m_vecChildren.end(),
                                      [&](const CGcObjectPointer& pChild) { return pChild.get() == pObject; });
    return itFound == m_vecChildren.end() ? CGcObjectPointer() : *itFound;
}

void CGcObject::__LogInvalidType() {
    CLog::GetInstance()->Write(FormatFailure(kFile, __LINE__, kListFunction, "Invalid CGcObject type"));
}

void CGcObject::__LogFailure(const std::exception& objException) {
    CLog::GetInstance()->Write(objException.what());
}
