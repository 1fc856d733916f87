#pragma once

#include "GenApi/Boolean.h"
#include "GenApi/Category.h"
#include "GenApi/Command.h"
#include "GenApi/EnumEntry.h"
#include "GenApi/Enumeration.h"
#include "GenApi/Float.h"
#include "GenApi/Integer.h"
#include "GenApi/Node.h"
#include "GenApi/Register.h"
#include "GenApi/String.h"

namespace GenApi_3_0 {

/// The number under which a node knows one of its interfaces.
template <class T>
inline constexpr EInterfaceType kInterfaceOf = intfIBase;
template <>
inline constexpr EInterfaceType kInterfaceOf<IInteger> = intfIInteger;
template <>
inline constexpr EInterfaceType kInterfaceOf<IBoolean> = intfIBoolean;
template <>
inline constexpr EInterfaceType kInterfaceOf<ICommand> = intfICommand;
template <>
inline constexpr EInterfaceType kInterfaceOf<IFloat> = intfIFloat;
template <>
inline constexpr EInterfaceType kInterfaceOf<IString> = intfIString;
template <>
inline constexpr EInterfaceType kInterfaceOf<IRegister> = intfIRegister;
template <>
inline constexpr EInterfaceType kInterfaceOf<ICategory> = intfICategory;
template <>
inline constexpr EInterfaceType kInterfaceOf<IEnumeration> = intfIEnumeration;
template <>
inline constexpr EInterfaceType kInterfaceOf<IEnumEntry> = intfIEnumEntry;

/// What dynamic_cast<T*>(pNode) answers, for the price of one virtual call: a dynamic_cast across the interfaces costs
/// more than all the rest of reading a cached value.
/// @tparam T  IInteger, IFloat, IEnumeration, IBoolean, IString, IRegister, ICommand, ICategory or IEnumEntry
template <class T>
T* node_cast(INode* pNode) {
    static_assert(kInterfaceOf<T> != intfIBase, "nodes don't know this interface by a number");
    return pNode == nullptr ? nullptr : static_cast<T*>(pNode->GetInterface(kInterfaceOf<T>));
}

}  // namespace GenApi_3_0
