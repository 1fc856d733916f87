#pragma once

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>

/// How norvikctl ends, for scripts: what each number means stands below. A number never changes its meaning.
enum class EXIT_CODE : int {
    Success = 0,
    Failure = 1,
    Usage = 2,
    NoProducer = 3,
    NoSuchCamera = 4,
    NoAccess = 5,
    Incomplete = 6,
    ProblemsFound = 7,
    Different = 8,
};

/// What each means, in the order of the numbers, as --help and the manual page tell it.
inline constexpr std::array kExitCodeTexts = {
    "done",
    "failed, in a way that has no number of its own",
    "the command line isn't understood",
    "no GenTL producer was found, or it couldn't be loaded",
    "no camera of that name, or more than one",
    "no access: another program holds the camera, or a feature can't be read or written now",
    "done in part: frames lost, a setting refused or not compared, a camera that didn't come up",
    "doctor found a problem, which keeps cameras from being seen",
    "features diff found a difference",
};
static_assert(kExitCodeTexts.size() == static_cast<std::size_t>(EXIT_CODE::Different) + 1);

/// Ends a command with a text for the user, which says what failed, on what, and what to try.
class CCommandError : public std::runtime_error {
public:
    CCommandError(EXIT_CODE eExitCode, const std::string& strText)
        : std::runtime_error(strText), m_eExitCode(eExitCode) {}

    [[nodiscard]] EXIT_CODE GetExitCode() const { return m_eExitCode; }

private:
    EXIT_CODE m_eExitCode;
};
