#include "support/ZrException.h"

#include <mutex>
#include <utility>

#include "support/ErrorTextMode.h"
#include "support/Text.h"

namespace {

// Guards m_strWhat of every exception. One for all, so that exceptions stay small and copyable.
constinit std::mutex g_mtxWhat;

}  // namespace

CZrException::CZrException(const std::string& strMessage, const std::string& strFile, int nLine,
                           const std::string& strFunction)
    : std::runtime_error(strMessage),
      m_strMessage(strMessage),
      m_strFile(strFile),
      m_nLine(nLine),
      m_strFunction(strFunction) {}

CZrException::CZrException(const CZrException& objOther)
    : std::runtime_error(objOther),
      m_strMessage(objOther.m_strMessage),
      m_strFile(objOther.m_strFile),
      m_nLine(objOther.m_nLine),
      m_strFunction(objOther.m_strFunction) {}

CZrException::~CZrException() = default;

const char* CZrException::what() const noexcept try {
    std::string strWhat = __BuildWhat();
    const std::lock_guard objLock(g_mtxWhat);
    // An equal text stays where it is: another thread may be reading it.
    if (m_strWhat != strWhat) {
        m_strWhat = std::move(strWhat);
    }
    return m_strWhat.c_str();
} catch (...) {
    return std::runtime_error::what();
}

std::string CZrException::__BuildWhat() const {
    if (g_nErrorTextMode == 2) {
        return Format("{%s:line[%d]}{%s}", m_strFunction.c_str(), m_nLine, m_strMessage.c_str());
    }
    return Format("{%s}", m_strMessage.c_str());
}

CUnexpectedError::CUnexpectedError(std::int32_t nErrorCode, const std::string& strMessage, const std::string& strFile,
                                   int nLine, const std::string& strFunction)
    : CZrException(strMessage, strFile, nLine, strFunction), m_nErrorCode(nErrorCode) {}
