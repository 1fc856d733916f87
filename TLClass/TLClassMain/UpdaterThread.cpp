#include "TLClass/TLClassMain/UpdaterThread.h"

#include "support/Log.h"
#include "support/Text.h"

void LogUpdater(int nLine, const char* pFunction, const char* pText) {
    CLog::GetInstance()->Write(FormatFailure("..\\..\\..\\TLClass\\TLClassMain\\Updater", nLine, pFunction, pText));
}
