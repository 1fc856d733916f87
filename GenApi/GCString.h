#pragma once

#include <compare>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

namespace GenICam_3_0 {

/// The string of every GenApi interface: UTF-8 bytes with a length, convertible from and to what callers have.
class gcstring {
public:
    static constexpr std::size_t npos = std::string::npos;

    gcstring() = default;
    gcstring(const char* pText) : m_str(pText != nullptr ? pText : "") {}
    gcstring(const char* pText, std::size_t nLength) : m_str(pText, nLength) {}
    gcstring(std::size_t nCount, char c) : m_str(nCount, c) {}
    gcstring(std::string str) : m_str(std::move(str)) {}
    explicit gcstring(std::string_view str) : m_str(str) {}

    operator const char*() const { return m_str.c_str(); }

    const char* c_str() const { return m_str.c_str(); }
    std::size_t length() const { return m_str.length(); }
    std::size_t size() const { return m_str.size(); }
    bool empty() const { return m_str.empty(); }
    void clear() { m_str.clear(); }
    /// The text with its length, valid until this string changes.
    std::string_view view() const { return m_str; }
    const std::string& str() const { return m_str; }

    gcstring& assign(const gcstring& strOther) {
        m_str = strOther.m_str;
        return *this;
    }
    gcstring& append(const gcstring& strOther) {
        m_str += strOther.m_str;
        return *this;
    }
    gcstring& operator+=(const gcstring& strOther) { return append(strOther); }
    gcstring& operator+=(const char* pText) {
        m_str += pText;
        return *this;
    }
    gcstring& operator+=(char c) {
        m_str += c;
        return *this;
    }

    std::size_t find(const gcstring& strWhat, std::size_t nFrom = 0) const { return m_str.find(strWhat.m_str, nFrom); }
    std::size_t find(char c, std::size_t nFrom = 0) const { return m_str.find(c, nFrom); }
    gcstring substr(std::size_t nFrom = 0, std::size_t nCount = npos) const { return m_str.substr(nFrom, nCount); }
    int compare(const gcstring& strOther) const { return m_str.compare(strOther.m_str); }

    friend bool operator==(const gcstring& a, const gcstring& b) { return a.m_str == b.m_str; }
    friend bool operator==(const gcstring& a, const char* pText) { return a.m_str == pText; }
    friend bool operator==(const gcstring& a, const std::string& str) { return a.m_str == str; }
    friend std::strong_ordering operator<=>(const gcstring& a, const gcstring& b) { return a.m_str <=> b.m_str; }
    friend gcstring operator+(const gcstring& a, const gcstring& b) { return a.m_str + b.m_str; }
    friend gcstring operator+(const gcstring& a, const char* pText) { return a.m_str + pText; }
    friend gcstring operator+(const char* pText, const gcstring& b) { return pText + b.m_str; }
    friend std::ostream& operator<<(std::ostream& stream, const gcstring& str) { return stream << str.m_str; }

private:
    std::string m_str;
};

}  // namespace GenICam_3_0
