#include "gev/GvcpStatus.h"

namespace gev {

std::string_view GetText(EGvcpStatus nStatus) {
    switch (nStatus) {
        case EGvcpStatus::Success:
            return "success";
        case EGvcpStatus::PacketResend:
            return "packet sent again";
        case EGvcpStatus::NotImplemented:
            return "not implemented";
        case EGvcpStatus::InvalidParameter:
            return "invalid parameter";
        case EGvcpStatus::InvalidAddress:
            return "invalid address";
        case EGvcpStatus::WriteProtect:
            return "write protected";
        case EGvcpStatus::BadAlignment:
            return "bad alignment";
        case EGvcpStatus::AccessDenied:
            return "access denied";
        case EGvcpStatus::Busy:
            return "busy";
        case EGvcpStatus::PacketUnavailable:
            return "packet unavailable";
        case EGvcpStatus::DataOverrun:
            return "data overrun";
        case EGvcpStatus::InvalidHeader:
            return "invalid header";
        case EGvcpStatus::PacketNotYetAvailable:
            return "packet not yet available";
        case EGvcpStatus::PacketAndPreviousRemoved:
            return "packet and all before it removed from memory";
        case EGvcpStatus::PacketRemoved:
            return "packet removed from memory";
        case EGvcpStatus::NoReferenceTime:
            return "no reference time";
        case EGvcpStatus::PacketTemporarilyUnavailable:
            return "packet unavailable for the moment";
        case EGvcpStatus::Overflow:
            return "overflow";
        case EGvcpStatus::ActionLate:
            return "action late";
        case EGvcpStatus::LeaderTrailerOverflow:
            return "leader or trailer too long";
        case EGvcpStatus::Error:
            return "error";
    }
    return "unknown status";
}

}  // namespace gev
