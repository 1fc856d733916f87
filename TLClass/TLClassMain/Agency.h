#pragma once

#include "TLClass/TLClassMain/UnCopyable.h"

/// Base of the agencies: an acquisition that is undone unless the whole operation went well.
///
/// A derived class acquires in its constructor, and in its destructor undoes that if m_bArmed still stands; failures
/// there are logged, never thrown. One operation holds its agencies in its own scope, so that they die in reverse
/// order, and dismisses them once the last step has succeeded. Used on one thread only.
class CAgency : public CUnCopyable {
    friend void Dismiss(CAgency& objAgency) noexcept;

protected:
    CAgency() = default;
    ~CAgency() = default;

    bool m_bArmed = true;
};

/// Lets what the agency acquired stay when the agency goes.
inline void Dismiss(CAgency& objAgency) noexcept {
    objAgency.m_bArmed = false;
}
