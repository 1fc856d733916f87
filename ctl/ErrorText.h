#pragma once

#include <exception>
#include <string>

#include "ctl/ExitCode.h"

/// What an exception of the library, of a node map or of the standard library has to say to a user: its bare message,
/// without the place in the source.
std::string ErrorText(const std::exception& objException);

/// How a command ends that let the exception out.
EXIT_CODE ExitCodeOf(const std::exception& objException);
