#pragma once

/// Base of everything that must stay one object: module objects, and the agencies that undo what they acquired.
class CUnCopyable {
public:
    CUnCopyable(const CUnCopyable&) = delete;
    CUnCopyable& operator=(const CUnCopyable&) = delete;

protected:
    CUnCopyable() = default;
    ~CUnCopyable() = default;
};
