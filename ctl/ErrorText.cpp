#include "ctl/ErrorText.h"

#include "GenApi/GCException.h"
#include "support/ZrException.h"

std::string ErrorText(const std::exception& objException) {
    if (const auto* pZrException = dynamic_cast<const CZrException*>(&objException)) {
        return pZrException->GetMessage();
    }
    if (const auto* pGenericException = dynamic_cast<const GenICam_3_0::GenericException*>(&objException)) {
        return pGenericException->GetDescription();
    }
    return objException.what();
}

EXIT_CODE ExitCodeOf(const std::exception& objException) {
    if (const auto* pCommandError = dynamic_cast<const CCommandError*>(&objException)) {
        return pCommandError->GetExitCode();
    }
    const bool bNoAccess = dynamic_cast<const CInvalidAccessError*>(&objException) != nullptr ||
                           dynamic_cast<const GenICam_3_0::AccessException*>(&objException) != nullptr;
    return bNoAccess ? EXIT_CODE::NoAccess : EXIT_CODE::Failure;
}
