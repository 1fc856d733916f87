#pragma once

#include <exception>
#include <string>
#include <typeinfo>

#include "support/ZrException.h"

/// The message of what a call throws if it is of this very class, else what came in its place.
template <class TError, class TCall>
std::string MessageOf(const TCall& fnCall) {
    try {
        fnCall();
        return "nothing was thrown";
    } catch (const std::exception& objError) {
        if (typeid(objError) != typeid(TError)) {
            return std::string("another class: ") + objError.what();
        }
        return dynamic_cast<const CZrException&>(objError).GetMessage();
    }
}

/// All that it tells: "MESSAGE, FILE(LINE) FUNCTION", and behind it ", CODE" where its class has one.
template <class TError, class TCall>
std::string ThrownBy(const TCall& fnCall) {
    std::string strTold;
    const std::string strMessage = MessageOf<TError>([&] {
        try {
            fnCall();
        } catch (const CZrException& objError) {
            const auto* const pUnexpected = dynamic_cast<const CUnexpectedError*>(&objError);
            strTold = ", " + objError.GetFile() + "(" + std::to_string(objError.GetLine()) + ") " +
                      objError.GetFunction() +
                      (pUnexpected != nullptr ? ", " + std::to_string(pUnexpected->GetErrorCode()) : "");
            throw;
        }
    });
    return strMessage + strTold;
}
