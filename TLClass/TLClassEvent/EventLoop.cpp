#include "TLClass/TLClassEvent/EventLoop.h"

#include <exception>

#include "GenApi/GCException.h"
#include "support/Log.h"

void LogCurrentException() noexcept {
    try {
        try {
            throw;
        } catch (const GenICam_3_0::GenericException& objException) {
            CLog::GetInstance()->Write(objException.GetDescription());
        } catch (const std::exception& objException) {
            CLog::GetInstance()->Write(objException.what());
        } catch (...) {
            CLog::GetInstance()->Write("An event's callback threw what isn't an exception");
        }
    } catch (...) {
        // Memory ran out: the line is lost, the thread that wanted it goes on.
    }
}
