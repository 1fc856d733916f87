#pragma once

#include "gev/GvcpHeader.h"

namespace camera {

/// May come as a broadcast; another command that does is nobody's.
constexpr bool MayBeBroadcast(gev::EGvcpCommand nCommand) {
    return nCommand == gev::EGvcpCommand::Discovery || nCommand == gev::EGvcpCommand::ForceIP ||
           nCommand == gev::EGvcpCommand::ForceIPEx || nCommand == gev::EGvcpCommand::Action;
}

/// Its answer tells how far the write came, also when it is refused: analysers take an answer without that for
/// malformed.
constexpr bool IsWrite(gev::EGvcpCommand nCommand) {
    return nCommand == gev::EGvcpCommand::WriteReg || nCommand == gev::EGvcpCommand::WriteMem;
}

/// Touches registers.
constexpr bool IsControl(gev::EGvcpCommand nCommand) {
    return nCommand == gev::EGvcpCommand::ReadReg || nCommand == gev::EGvcpCommand::ReadMem || IsWrite(nCommand);
}

}  // namespace camera
