#pragma once

#include "GenApi/Boolean.h"
#include "GenApi/Category.h"
#include "GenApi/Command.h"
#include "GenApi/EnumEntry.h"
#include "GenApi/Enumeration.h"
#include "GenApi/Float.h"
#include "GenApi/GCException.h"
#include "GenApi/Integer.h"
#include "GenApi/Node.h"
#include "GenApi/Register.h"
#include "GenApi/Selector.h"
#include "GenApi/String.h"

namespace GenApi_3_0 {

/// A pointer to one interface of a node, found by dynamic_cast when it is made. Null if the node hasn't that interface.
template <class T>
class CPointer {
public:
    CPointer() = default;
    CPointer(IBase* p) : m_p(dynamic_cast<T*>(p)) {}

    bool IsValid() const { return m_p != nullptr; }
    explicit operator bool() const { return m_p != nullptr; }
    operator T*() const { return m_p; }
    /// @throws LogicalErrorException  the pointer is null
    T* operator->() const { return Checked(); }
    T& operator*() const { return *Checked(); }

private:
    T* Checked() const {
        if (m_p == nullptr) {
            GenICam_3_0::Throw<GenICam_3_0::LogicalErrorException>("A null pointer to a node was used");
        }
        return m_p;
    }

    T* m_p = nullptr;
};

using CNodePtr = CPointer<INode>;
using CValuePtr = CPointer<IValue>;
using CIntegerPtr = CPointer<IInteger>;
using CFloatPtr = CPointer<IFloat>;
using CBooleanPtr = CPointer<IBoolean>;
using CStringPtr = CPointer<IString>;
using CRegisterPtr = CPointer<IRegister>;
using CCommandPtr = CPointer<ICommand>;
using CCategoryPtr = CPointer<ICategory>;
using CEnumerationPtr = CPointer<IEnumeration>;
using CEnumEntryPtr = CPointer<IEnumEntry>;
using CSelectorPtr = CPointer<ISelector>;

}  // namespace GenApi_3_0
