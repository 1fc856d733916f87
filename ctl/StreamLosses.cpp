#include "ctl/StreamLosses.h"

namespace {

std::string Count(std::uint64_t nCount, const char* pOf) {
    return std::to_string(nCount) + ' ' + pOf + (nCount == 1 ? "" : "s");
}

/// The cause that is nearest to this machine: farther ones can't be told before it is mended.
std::string WhatToCheck(const STREAM_LOSSES& objLosses) {
    if (objLosses.nDropped > 0) {
        return "The receive buffer was full: \"norvikctl doctor\" tells how to enlarge it. Or give this program more "
               "of the processor";
    }
    if (objLosses.nMissing > 0 && objLosses.nRequests > 0 && objLosses.nResent == 0) {
        return "No packet that was asked for came again: the camera can't send any again, or its stream has stopped. "
               "Then each that is lost costs a frame. Look at cable, switch and adapter, and let the camera send "
               "slower: AcquisitionFrameRate, GevSCPD";
    }
    if (objLosses.nMissing > 0) {
        return "They are lost on the way from the camera. Look at cable, switch and adapter, and let the camera send "
               "slower: AcquisitionFrameRate, GevSCPD";
    }
    return "Frames come faster than files are written. Try --raw, a faster disk, or a lower AcquisitionFrameRate";
}

}  // namespace

std::string DescribeLosses(const STREAM_LOSSES& objLosses) {
    if (objLosses.nMissing == 0 && objLosses.nDropped == 0 && objLosses.nUnderruns == 0) {
        return {};
    }
    std::string strText;
    if (objLosses.nMissing > 0 || objLosses.nDropped > 0) {
        strText += Count(objLosses.nMissing, "packet") + " never came; " + Count(objLosses.nRequests, "request") +
                   " to send some again brought " + std::to_string(objLosses.nResent) + "; the system dropped " +
                   std::to_string(objLosses.nDropped) + ".\n";
    }
    if (objLosses.nUnderruns > 0) {
        strText += Count(objLosses.nUnderruns, "frame") + " found no free buffer.\n";
    }
    return strText + WhatToCheck(objLosses) + ".\n";
}
