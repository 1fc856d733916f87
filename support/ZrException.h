#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

/// The base of every failure that the library throws: a description and the place that threw it.
///
/// Caught objects may be shared between threads through std::exception_ptr; every operation may then be called from any
/// of them.
class CZrException : public std::runtime_error {
public:
    /// @param strFile      source file of the throw, as the thrower spells it
    /// @param strFunction  "Class::Function" of the throw
    CZrException(const std::string& strMessage, const std::string& strFile, int nLine, const std::string& strFunction);
    /// The text of what() isn't copied: the copy builds its own.
    CZrException(const CZrException& objOther);
    CZrException& operator=(const CZrException&) = delete;
    ~CZrException() override;

    /// The message in braces, or a longer form (see g_nErrorTextMode), at most 1023 bytes. The pointer is good until
    /// the next call on this object, and no longer than the object. It is the bare message if memory ran out.
    [[nodiscard]] const char* what() const noexcept override;

    [[nodiscard]] const std::string& GetMessage() const { return m_strMessage; }
    [[nodiscard]] const std::string& GetFile() const { return m_strFile; }
    [[nodiscard]] int GetLine() const { return m_nLine; }
    [[nodiscard]] const std::string& GetFunction() const { return m_strFunction; }

private:
    [[nodiscard]] std::string __BuildWhat() const;

    std::string m_strMessage;
    std::string m_strFile;
    int m_nLine;
    std::string m_strFunction;
    mutable std::string m_strWhat;  // what the last what() returned; written under a lock of the source file
};

/// Anything that has no class of its own: a result code of a producer, a failed precondition inside the library.
class CUnexpectedError : public CZrException {
public:
    /// @param nErrorCode  a GenTL code, or -1 where there is none; it stands in no text
    CUnexpectedError(std::int32_t nErrorCode, const std::string& strMessage, const std::string& strFile, int nLine,
                     const std::string& strFunction);

    [[nodiscard]] std::int32_t GetErrorCode() const { return m_nErrorCode; }

private:
    std::int32_t m_nErrorCode;
};

/// The producer doesn't implement the call, or the node map doesn't hold the feature.
class CNotImplementedError : public CZrException {
public:
    using CZrException::CZrException;
};

/// The producer or a node denies access.
class CInvalidAccessError : public CZrException {
public:
    using CZrException::CZrException;
};

/// The device has gone.
class CDeviceOfflineError : public CZrException {
public:
    using CZrException::CZrException;
};

/// A wait ended without what it waited for.
class CTimeoutError : public CZrException {
public:
    using CZrException::CZrException;
};

/// An argument of the library, of the producer or of a node isn't valid.
class CInvalidParameterError : public CZrException {
public:
    using CZrException::CZrException;
};

/// No producer file was found.
class CNotFoundTLError : public CZrException {
public:
    using CZrException::CZrException;
};

/// An operation was called in the wrong state.
class CInvalidCallError : public CZrException {
public:
    using CZrException::CZrException;
};

/// A buffer of the caller is too small.
class CNeedMoreBufferError : public CZrException {
public:
    using CZrException::CZrException;
};

/// A value lies outside its range.
class COutOfRangeError : public CZrException {
public:
    using CZrException::CZrException;
};
