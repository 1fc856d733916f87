#include "GenApi/GCException.h"

#include <utility>

namespace GenICam_3_0 {

GenericException::GenericException(std::string strDescription, const char* pSourceFileName, unsigned int nSourceLine,
                                   const char* pExceptionType)
    : m_strDescription(std::move(strDescription)),
      m_strSourceFileName(pSourceFileName != nullptr ? pSourceFileName : ""),
      m_nSourceLine(nSourceLine),
      m_strWhat(m_strDescription + " : " + pExceptionType + " thrown (file '" + m_strSourceFileName + "', line " +
                std::to_string(nSourceLine) + ")") {}

}  // namespace GenICam_3_0
