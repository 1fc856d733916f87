#include "TLClass/TLClassLoadTL/GenTLLib.h"

#include "support/Log.h"
#include "support/Text.h"
#include "support/ZrException.h"

CGenTLLib::CGenTLLib(const std::string& strPath) {
    if (!m_objLibrary.Load(strPath)) {
        throw CUnexpectedError(-1, Format("Failed to load file %s\n", strPath.c_str()),
                               "..\\..\\..\\TLClass\\TLClassLoadTL\\GenTLLib", 38, "CGenTLLib::CGenTLLib");
    }
    __BindEntries();
}

CGenTLLib::~CGenTLLib() {
    try {
        if (!m_objLibrary.Free()) {
            CLog::GetInstance()->Write("FreeLibrary failed");
        }
    } catch (...) {
        // Memory for the line ran out; the file is let go all the same.
    }
}

void CGenTLLib::__BindEntries() {
#define GENTL_BIND_ENTRY(NAME, PARAMETERS) NAME.__Bind(m_objLibrary.GetFunction(#NAME));
    GENTL_ENTRIES(GENTL_BIND_ENTRY)
#undef GENTL_BIND_ENTRY
    m_mapFunction = {{"GCReadPort", GCReadPort.__GetFunction()},
                     {"GCWritePort", GCWritePort.__GetFunction()},
                     {"GCReadPortStacked", GCReadPortStacked.__GetFunction()},
                     {"GCWritePortStacked", GCWritePortStacked.__GetFunction()},
                     {"GCGetLastError", GCGetLastError.__GetFunction()}};
}

CDynamicLibrary::FUNCTION CGenTLLib::FindFunction(const std::string& strName) const {
    const auto itFunction = m_mapFunction.find(strName);
    return itFunction == m_mapFunction.end() ? nullptr : itFunction->second;
}
