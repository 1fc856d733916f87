#pragma once

#include <stdexcept>
#include <string>

/// How norvikctl ends, for scripts. `norvikctl --help` tells the same; a number never changes its meaning.
enum class EXIT_CODE : int {
    Success = 0,
    Failure = 1,        ///< anything that has no number of its own
    Usage = 2,          ///< the command line isn't understood
    NoProducer = 3,     ///< no GenTL producer was found or it couldn't be loaded
    NoSuchCamera = 4,   ///< no camera of that name, or more than one
    NoAccess = 5,       ///< another program holds the camera, or a feature can't be read or written now
    Incomplete = 6,     ///< done in part: frames are missing, a setting was refused or not compared, the camera didn't
                        ///< come up
    ProblemsFound = 7,  ///< doctor found something that keeps cameras from being seen
    Different = 8,      ///< a camera's settings aren't those of a feature file
};

/// Ends a command with a text for the user, which says what failed, on what, and what to try.
class CCommandError : public std::runtime_error {
public:
    CCommandError(EXIT_CODE eExitCode, const std::string& strText)
        : std::runtime_error(strText), m_eExitCode(eExitCode) {}

    [[nodiscard]] EXIT_CODE GetExitCode() const { return m_eExitCode; }

private:
    EXIT_CODE m_eExitCode;
};
