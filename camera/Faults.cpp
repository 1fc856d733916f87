#include "camera/Faults.h"

#include <array>
#include <charconv>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

namespace camera {
namespace {

constexpr std::array kHelp = {
    FAULT_HELP{"silent", "answers nothing; silent=control: answers discovery and FORCEIP alone"},
    FAULT_HELP{"late=MS", "each answer comes so many milliseconds late"},
    FAULT_HELP{"pending-forever", "register and memory commands get PENDING_ACKs and never an answer"},
    FAULT_HELP{"wrong-length", "headers of answers tell another length than follows"},
    FAULT_HELP{"garbage", "answers are bytes at random"},
    FAULT_HELP{"doubled", "each answer comes twice"},
    FAULT_HELP{"foreign-id", "answers carry the ID of another request"},
    FAULT_HELP{"denied", "every command but DISCOVERY and FORCEIP is refused"},
    FAULT_HELP{"names-without-end", "text registers are full, unterminated and no UTF-8"},
    FAULT_HELP{"flood", "whoever asked last gets a thousand unwanted answers a second"},
    FAULT_HELP{"overheat", "the sensor passes 90 degrees Celsius within a minute of taking images"},
    FAULT_HELP{"vanish-after=N", "silent after N commands; vanish-after=Ns: after N seconds"},
    FAULT_HELP{"hostile-description=KIND",
               "length, bomb, zip, xml, url or unreadable: what is wrong with the description"},
    FAULT_HELP{"loss=PERCENT", "so many of the stream's packets are lost, resent ones too"},
    FAULT_HELP{"loss-burst=N", "packets are lost N in a row, at the same rate"},
    FAULT_HELP{"lost-leader=PERCENT", "so many leaders are lost besides"},
    FAULT_HELP{"lost-trailer=PERCENT", "so many trailers are lost besides"},
    FAULT_HELP{"duplicate=PERCENT", "so many packets come twice"},
    FAULT_HELP{"reorder=N", "packets are shuffled in groups of N, at most 64"},
    FAULT_HELP{"wrong-size=PERCENT", "so many packets are cut short or have junk behind them"},
    FAULT_HELP{"foreign=PERCENT", "behind so many packets comes one of another sender"},
    FAULT_HELP{"stop-in-frame=N", "the stream stops for good in the middle of the Nth image"},
    FAULT_HELP{"no-resend", "requests for packets are passed over"},
    FAULT_HELP{"seed=N", "another series of what is left to chance in the stream"},
};

constexpr std::array<std::pair<std::string_view, EHostileDescription>, 6> kDescriptions = {{
    {"length", EHostileDescription::Length},
    {"bomb", EHostileDescription::Bomb},
    {"zip", EHostileDescription::Zip},
    {"xml", EHostileDescription::Xml},
    {"url", EHostileDescription::Url},
    {"unreadable", EHostileDescription::Unreadable},
}};

[[noreturn]] void Refuse(std::string_view strText) {
    std::string strMessage = "'" + std::string(strText) + "' is no fault of this camera. It knows:";
    for (const FAULT_HELP& objHelp : kHelp) {
        strMessage.append(" ").append(objHelp.Form);
    }
    throw std::invalid_argument(strMessage);
}

/// A number of at most a million.
std::uint32_t ReadNumber(std::string_view strNumber, std::string_view strText) {
    constexpr std::uint32_t kMost = 1'000'000;
    std::uint32_t nValue = 0;
    const char* const pEnd = strNumber.data() + strNumber.size();
    const auto objResult = std::from_chars(strNumber.data(), pEnd, nValue);
    if (objResult.ec != std::errc() || objResult.ptr != pEnd || nValue > kMost) {
        Refuse(strText);
    }
    return nValue;
}

bool* FindSwitch(FAULTS& objFaults, std::string_view strName) {
    const std::array<std::pair<std::string_view, bool*>, 10> arrSwitch = {{
        {"pending-forever", &objFaults.PendingForever},
        {"wrong-length", &objFaults.WrongLength},
        {"garbage", &objFaults.Garbage},
        {"doubled", &objFaults.Doubled},
        {"foreign-id", &objFaults.ForeignID},
        {"denied", &objFaults.Denied},
        {"names-without-end", &objFaults.NamesWithoutEnd},
        {"flood", &objFaults.Flood},
        {"overheat", &objFaults.Overheat},
        {"no-resend", &objFaults.Stream.NoResend},
    }};
    for (const auto& [strSwitch, pSwitch] : arrSwitch) {
        if (strSwitch == strName) {
            return pSwitch;
        }
    }
    return nullptr;
}

/// A number from 0 to 100.
double ReadPercent(std::string_view strNumber, std::string_view strText) {
    double nValue = 0;
    const char* const pEnd = strNumber.data() + strNumber.size();
    const auto objResult = std::from_chars(strNumber.data(), pEnd, nValue);
    if (objResult.ec != std::errc() || objResult.ptr != pEnd || !(nValue >= 0 && nValue <= 100)) {
        Refuse(strText);
    }
    return nValue;
}

/// @return false when it is no fault of the stream with a value
bool SetStreamFault(STREAM_FAULTS& objFaults, std::string_view strName, std::string_view strValue,
                    std::string_view strText) {
    constexpr std::uint32_t kMostShuffled = 64;
    const std::array<std::pair<std::string_view, double*>, 6> arrPercent = {{
        {"loss", &objFaults.Loss},
        {"lost-leader", &objFaults.LostLeaders},
        {"lost-trailer", &objFaults.LostTrailers},
        {"duplicate", &objFaults.Duplicates},
        {"wrong-size", &objFaults.WrongSizes},
        {"foreign", &objFaults.Foreign},
    }};
    const std::array<std::pair<std::string_view, std::uint32_t*>, 4> arrNumber = {{
        {"loss-burst", &objFaults.LossBurst},
        {"reorder", &objFaults.Reorder},
        {"stop-in-frame", &objFaults.StopInFrame},
        {"seed", &objFaults.Seed},
    }};
    for (const auto& [strFault, pPercent] : arrPercent) {
        if (strFault == strName) {
            *pPercent = ReadPercent(strValue, strText);
            return true;
        }
    }
    for (const auto& [strFault, pNumber] : arrNumber) {
        if (strFault == strName) {
            *pNumber = ReadNumber(strValue, strText);
            if (*pNumber == 0 || (pNumber == &objFaults.Reorder && *pNumber > kMostShuffled)) {
                Refuse(strText);
            }
            return true;
        }
    }
    return false;
}

void SetVanishing(FAULTS& objFaults, std::string_view strValue, std::string_view strText) {
    if (strValue.ends_with('s')) {
        objFaults.VanishAfterTime = std::chrono::seconds(ReadNumber(strValue.substr(0, strValue.size() - 1), strText));
    } else {
        objFaults.VanishAfterCommands = ReadNumber(strValue, strText);
    }
}

}  // namespace

std::span<const FAULT_HELP> ListFaults() {
    return kHelp;
}

void SetFault(FAULTS& objFaults, std::string_view strText) {
    const std::size_t nEquals = strText.find('=');
    const std::string_view strName = strText.substr(0, nEquals);
    const std::string_view strValue =
        nEquals == std::string_view::npos ? std::string_view() : strText.substr(nEquals + 1);
    if (bool* const pSwitch = FindSwitch(objFaults, strName); pSwitch != nullptr && nEquals == std::string_view::npos) {
        *pSwitch = true;
    } else if (strText == "silent") {
        objFaults.Silent = ESilence::All;
    } else if (strText == "silent=control") {
        objFaults.Silent = ESilence::Control;
    } else if (strName == "late") {
        objFaults.Late = std::chrono::milliseconds(ReadNumber(strValue, strText));
    } else if (strName == "vanish-after") {
        SetVanishing(objFaults, strValue, strText);
    } else if (strName == "hostile-description") {
        for (const auto& [strKind, eKind] : kDescriptions) {
            if (strKind == strValue) {
                objFaults.Description = eKind;
                return;
            }
        }
        Refuse(strText);
    } else if (!SetStreamFault(objFaults.Stream, strName, strValue, strText)) {
        Refuse(strText);
    }
}

}  // namespace camera
