#pragma once

#include <string>
#include <utility>

#include "GenApi/GCException.h"
#include "support/ZrException.h"

// Turns the exceptions of the node map into those of the family, with the description as the message.

inline constexpr const char* kFeatureControlFile = "..\\..\\..\\TLClass\\TLClassFeature\\FeatureControl";

/// Runs the body of an operation that reads a feature or executes a command.
/// @param pFunction  "Class::Function" of the operation, for the exception
template <typename BODY>
decltype(auto) ConvertGenApiExceptions(const char* pFunction, BODY&& fnBody, int nLine = __builtin_LINE()) {
    try {
        return std::forward<BODY>(fnBody)();
    } catch (const GenICam_3_0::AccessException& objException) {
        throw CInvalidAccessError(objException.GetDescription(), kFeatureControlFile, nLine, pFunction);
    } catch (const GenICam_3_0::GenericException& objException) {
        throw CUnexpectedError(-1, objException.GetDescription(), kFeatureControlFile, nLine, pFunction);
    }
}

/// Runs the body of an operation that sets a feature: the faults of the value have classes of their own.
template <typename BODY>
void ConvertGenApiSetterExceptions(const char* pFunction, BODY&& fnBody, int nLine = __builtin_LINE()) {
    ConvertGenApiExceptions(
        pFunction,
        [&] {
            try {
                std::forward<BODY>(fnBody)();
            } catch (const GenICam_3_0::InvalidArgumentException& objException) {
                throw CInvalidParameterError(objException.GetDescription(), kFeatureControlFile, nLine, pFunction);
            } catch (const GenICam_3_0::OutOfRangeException& objException) {
                throw COutOfRangeError(objException.GetDescription(), kFeatureControlFile, nLine, pFunction);
            }
        },
        nLine);
}
