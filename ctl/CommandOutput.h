#pragma once

#include <iosfwd>

/// Where a command writes. Results go to objOut alone, so that they can be piped; everything else goes to objErr.
struct COMMAND_OUTPUT {
    std::ostream& objOut;
    std::ostream& objErr;
    bool bErrIsTerminal = false;  ///< whether a line may be drawn over, as a progress bar is
};
