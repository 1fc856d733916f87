#include "camera/CameraState.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <optional>
#include <system_error>

#include "camera/FeatureTable.h"
#include "gev/Address.h"
#include "gev/BigEndian.h"
#include "gev/Bootstrap.h"

namespace camera {
namespace {

constexpr std::string_view kTitle = "Norvik virtual camera, state 1";
constexpr std::string_view kEnd = "end";
constexpr std::size_t kWord = 4;

// Names of what stands before the user sets, as those of the features that it belongs to.
constexpr std::array<std::string_view, 6> kNames = {"DeviceUserID",
                                                    "GevCurrentIPConfigurationPersistentIP",
                                                    "GevPersistentIPAddress",
                                                    "GevPersistentSubnetMask",
                                                    "GevPersistentDefaultGateway",
                                                    "UserSetDefault"};
enum EName : std::size_t { kUserName, kUsePersistent, kAddress, kMask, kGateway, kDefaultSet };

template <class Number>
std::string Print(Number nNumber) {
    std::array<char, 32> arrText{};
    return {arrText.data(), std::to_chars(arrText.data(), arrText.data() + arrText.size(), nNumber).ptr};
}

template <class Number>
std::optional<Number> Scan(std::string_view strText, auto... objFormat) {
    Number nNumber{};
    const char* const pEnd = strText.data() + strText.size();
    const auto objResult = std::from_chars(strText.data(), pEnd, nNumber, objFormat...);
    return objResult.ec == std::errc() && objResult.ptr == pEnd ? std::optional(nNumber) : std::nullopt;
}

/// The value of a register of this feature, for people.
std::string FormatValue(const FEATURE& objFeature, std::uint32_t nValue) {
    if (objFeature.Kind == EKind::Float) {
        return Print(std::bit_cast<float>(nValue));
    }
    const auto itEntry = std::ranges::find(objFeature.Entries, nValue, &ENTRY::Value);
    return itEntry != objFeature.Entries.end() ? std::string(itEntry->Name) : Print(nValue);
}

std::optional<std::uint32_t> ParseValue(const FEATURE& objFeature, std::string_view strText) {
    if (objFeature.Kind == EKind::Float) {
        const auto nFloat = Scan<float>(strText);
        return nFloat ? std::optional(std::bit_cast<std::uint32_t>(*nFloat)) : std::nullopt;
    }
    if (objFeature.Kind == EKind::Enumeration) {
        const auto itEntry = std::ranges::find(objFeature.Entries, strText, &ENTRY::Name);
        return itEntry != objFeature.Entries.end() ? std::optional(itEntry->Value) : std::nullopt;
    }
    return Scan<std::uint32_t>(strText);
}

// A name may hold any bytes but zeros: what could be lost on the way through a text is written as \xHH.
std::string FormatText(std::string_view strText) {
    std::string strResult;
    for (std::size_t i = 0; i < strText.size(); ++i) {
        const auto nByte = static_cast<unsigned char>(strText[i]);
        const bool bInside = i > 0 && i + 1 < strText.size();
        if ((nByte > ' ' && nByte < 0x7F && nByte != '\\') || (nByte == ' ' && bInside)) {
            strResult += strText[i];
        } else {
            constexpr std::string_view kDigits = "0123456789ABCDEF";
            strResult.append("\\x").append({kDigits[nByte >> 4], kDigits[nByte & 0x0F]});
        }
    }
    return strResult;
}

std::optional<std::string> ParseText(std::string_view strText) {
    std::string strResult;
    while (!strText.empty()) {
        char nChar = strText.front();
        std::size_t nLength = 1;
        if (nChar == '\\') {
            nLength = 4;
            const auto nByte = strText.starts_with("\\x") && strText.size() >= nLength
                                   ? Scan<unsigned char>(strText.substr(2, 2), 16)
                                   : std::nullopt;
            nChar = static_cast<char>(nByte.value_or(0));
        }
        if (nChar == 0) {
            return std::nullopt;
        }
        strResult += nChar;
        strText.remove_prefix(nLength);
    }
    return strResult.size() <= gev::bootstrap::kUserDefinedName.Size ? std::optional(strResult) : std::nullopt;
}

std::string AddressText(std::uint32_t nAddress) {
    return std::string(gev::FormatIPv4(nAddress).GetText());
}

/// Takes lines apart, and keeps in mind where it is and what it has seen.
class CStateReader {
public:
    CStateReader(std::string_view strText, const CAMERA_STATE& objFresh) : m_strText(strText), m_objState(objFresh) {
        for (std::size_t i = 0; i < m_arrSeen.size(); ++i) {
            m_arrSeen[i].resize(objFresh.UserSet[i].size() / kWord);
        }
    }

    CAMERA_STATE Read() {
        if (NextLine() != kTitle) {
            Fail("this is no state of a virtual camera, or one of another version");
        }
        const auto arrSets = FindFeature("UserSetSelector").Entries;
        std::size_t nSet = 0;  // 0: before the first
        for (std::string_view strLine = NextLine(); strLine != kEnd; strLine = NextLine()) {
            if (nSet + 1 < arrSets.size() && strLine == "[" + std::string(arrSets[nSet + 1].Name) + "]") {
                ++nSet;
                continue;
            }
            const std::size_t nSpace = std::min(strLine.find(' '), strLine.size());
            const std::string_view strValue = strLine.substr(std::min(nSpace + 1, strLine.size()));
            if (nSet == 0) {
                TakeName(strLine.substr(0, nSpace), strValue);
            } else {
                TakeFeature(nSet - 1, strLine.substr(0, nSpace), strValue);
            }
        }
        if (!m_strText.empty()) {
            Fail("there is more behind its end");
        }
        return m_objState;
    }

private:
    [[noreturn]] void Fail(const std::string& strWhat) const {
        throw CStateError("line " + std::to_string(m_nLine) + ": " + strWhat);
    }

    std::string_view NextLine() {
        ++m_nLine;
        const std::size_t nEnd = m_strText.find('\n');
        if (nEnd == std::string_view::npos) {
            Fail("it ends too early");
        }
        const std::string_view strLine = m_strText.substr(0, nEnd);
        m_strText.remove_prefix(nEnd + 1);
        return strLine;
    }

    template <class Value>
    Value Require(std::string_view strName, std::string_view strValue, const std::optional<Value>& objValue) const {
        if (!objValue) {
            Fail("'" + std::string(strValue) + "' is no value of " + std::string(strName));
        }
        return *objValue;
    }

    void SeeOnce(std::vector<bool>::reference bSeen, std::string_view strName) const {
        if (bSeen) {
            Fail(std::string(strName) + " stands there a second time");
        }
        bSeen = true;
    }

    void TakeName(std::string_view strName, std::string_view strValue) {
        const auto nName = static_cast<std::size_t>(std::ranges::find(kNames, strName) - kNames.begin());
        if (nName == kNames.size()) {
            Fail("nothing that is kept is called '" + std::string(strName) + "'");
        }
        SeeOnce(m_vecSeenName[nName], strName);
        const auto address = [&] { return Require(strName, strValue, gev::ParseIPv4(strValue)); };
        switch (nName) {
            case kUserName:
                m_objState.UserName = Require(strName, strValue, ParseText(strValue));
                break;
            case kUsePersistent: {
                const bool bOn = strValue == "1";
                m_objState.UsePersistent =
                    Require(strName, strValue, bOn || strValue == "0" ? std::optional(bOn) : std::nullopt);
                break;
            }
            case kAddress:
                m_objState.Persistent.Address = address();
                break;
            case kMask:
                m_objState.Persistent.Mask = address();
                break;
            case kGateway:
                m_objState.Persistent.Gateway = address();
                break;
            default:
                m_objState.DefaultSet = Require(strName, strValue, ParseValue(FindFeature(strName), strValue));
        }
    }

    void TakeFeature(std::size_t nSet, std::string_view strName, std::string_view strValue) {
        const std::size_t nBracket = std::min(strName.find('['), strName.size());
        const std::string_view strBare = strName.substr(0, nBracket);
        std::size_t nPlace = 0;  // in registers
        for (const FEATURE& objFeature : ListFeatures()) {
            if (!objFeature.Saved) {
                continue;
            }
            if (objFeature.Name != strBare) {
                nPlace += objFeature.SelectorCount;
                continue;
            }
            std::optional<std::uint32_t> nIndex = nBracket == strName.size() ? std::optional(0U) : std::nullopt;
            if (!nIndex && strName.ends_with(']')) {
                nIndex = Scan<std::uint32_t>(strName.substr(nBracket + 1, strName.size() - nBracket - 2));
            }
            if (!nIndex || *nIndex >= objFeature.SelectorCount) {
                break;
            }
            SeeOnce(m_arrSeen[nSet][nPlace + *nIndex], strName);
            gev::Put32(m_objState.UserSet[nSet], (nPlace + *nIndex) * kWord,
                       Require(strName, strValue, ParseValue(objFeature, strValue)));
            return;
        }
        Fail("nothing in a user set is called '" + std::string(strName) + "'");
    }

    std::string_view m_strText;  // what is left
    CAMERA_STATE m_objState;
    std::size_t m_nLine = 0;
    std::vector<bool> m_vecSeenName = std::vector<bool>(kNames.size());
    std::array<std::vector<bool>, address::kUserSetCount - 1> m_arrSeen;  // of each user set's registers
};

}  // namespace

std::string FormatState(const CAMERA_STATE& objState) {
    std::string strText;
    const auto line = [&strText](std::string_view strName, std::string_view strValue) {
        strText.append(strName).append(strValue.empty() ? "" : " ").append(strValue).append("\n");
    };
    line(kTitle, "");
    line(kNames[kUserName], FormatText(objState.UserName));
    line(kNames[kUsePersistent], objState.UsePersistent ? "1" : "0");
    line(kNames[kAddress], AddressText(objState.Persistent.Address));
    line(kNames[kMask], AddressText(objState.Persistent.Mask));
    line(kNames[kGateway], AddressText(objState.Persistent.Gateway));
    line(kNames[kDefaultSet], FormatValue(FindFeature(kNames[kDefaultSet]), objState.DefaultSet));
    const auto arrSets = FindFeature("UserSetSelector").Entries;
    for (std::size_t nSet = 0; nSet < objState.UserSet.size(); ++nSet) {
        line("[" + std::string(arrSets[nSet + 1].Name) + "]", "");
        std::size_t nPlace = 0;
        for (const FEATURE& objFeature : ListFeatures()) {
            for (std::uint32_t i = 0; objFeature.Saved && i < objFeature.SelectorCount; ++i, nPlace += kWord) {
                const bool bMany = objFeature.SelectorCount > 1;
                line(std::string(objFeature.Name) + (bMany ? "[" + Print(i) + "]" : ""),
                     FormatValue(objFeature, gev::Get32(objState.UserSet[nSet], nPlace)));
            }
        }
    }
    line(kEnd, "");
    return strText;
}

CAMERA_STATE ParseState(std::string_view strText, const CAMERA_STATE& objFresh) {
    return CStateReader(strText, objFresh).Read();
}

}  // namespace camera
