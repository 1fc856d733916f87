#pragma once

#include <exception>
#include <string>
#include <utility>

namespace GenICam_3_0 {

/// What every failure of a node map is thrown as, apart from what a connected port throws: that passes through
/// unchanged.
class GenericException : public std::exception {
public:
    GenericException(std::string strDescription, const char* pSourceFileName, unsigned int nSourceLine,
                     const char* pExceptionType = "GenericException");
    ~GenericException() override = default;

    /// The text for a person: what failed, on which node, what was wanted.
    const char* GetDescription() const noexcept { return m_strDescription.c_str(); }
    const char* GetSourceFileName() const noexcept { return m_strSourceFileName.c_str(); }
    unsigned int GetSourceLine() const noexcept { return m_nSourceLine; }
    /// The description, the class of the exception and the place in the source.
    const char* what() const noexcept override { return m_strWhat.c_str(); }

private:
    std::string m_strDescription;
    std::string m_strSourceFileName;
    unsigned int m_nSourceLine;
    std::string m_strWhat;
};

/// No memory for what was asked.
class BadAllocException : public GenericException {
public:
    BadAllocException(std::string strDescription, const char* pFile, unsigned int nLine)
        : GenericException(std::move(strDescription), pFile, nLine, "BadAllocException") {}
};

/// An argument that no state of the node map makes valid.
class InvalidArgumentException : public GenericException {
public:
    InvalidArgumentException(std::string strDescription, const char* pFile, unsigned int nLine)
        : GenericException(std::move(strDescription), pFile, nLine, "InvalidArgumentException") {}
};

/// A value beyond the limits that hold now.
class OutOfRangeException : public GenericException {
public:
    OutOfRangeException(std::string strDescription, const char* pFile, unsigned int nLine)
        : GenericException(std::move(strDescription), pFile, nLine, "OutOfRangeException") {}
};

/// A property of the description that can't be what it says.
class PropertyException : public GenericException {
public:
    PropertyException(std::string strDescription, const char* pFile, unsigned int nLine)
        : GenericException(std::move(strDescription), pFile, nLine, "PropertyException") {}
};

/// A failure that only running could show.
class RuntimeException : public GenericException {
public:
    RuntimeException(std::string strDescription, const char* pFile, unsigned int nLine)
        : GenericException(std::move(strDescription), pFile, nLine, "RuntimeException") {}
};

/// A use of the interfaces that can't be meant.
class LogicalErrorException : public GenericException {
public:
    LogicalErrorException(std::string strDescription, const char* pFile, unsigned int nLine)
        : GenericException(std::move(strDescription), pFile, nLine, "LogicalErrorException") {}
};

/// The node can't be read or written at the moment.
class AccessException : public GenericException {
public:
    AccessException(std::string strDescription, const char* pFile, unsigned int nLine)
        : GenericException(std::move(strDescription), pFile, nLine, "AccessException") {}
};

/// Something didn't happen in time.
class TimeoutException : public GenericException {
public:
    TimeoutException(std::string strDescription, const char* pFile, unsigned int nLine)
        : GenericException(std::move(strDescription), pFile, nLine, "TimeoutException") {}
};

/// A node of another type than the one wanted.
class DynamicCastException : public GenericException {
public:
    DynamicCastException(std::string strDescription, const char* pFile, unsigned int nLine)
        : GenericException(std::move(strDescription), pFile, nLine, "DynamicCastException") {}
};

/// Throws an exception of the family with the place of the call. The built-in functions stand in for
/// std::source_location, which the compiler of the fuzz targets doesn't know yet.
template <class TException>
[[noreturn]] void Throw(std::string strDescription, const char* pFile = __builtin_FILE(),
                        unsigned int nLine = static_cast<unsigned int>(__builtin_LINE())) {
    throw TException(std::move(strDescription), pFile, nLine);
}

}  // namespace GenICam_3_0
