#include "camera/Description.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

#include "camera/Device.h"
#include "camera/FeatureTable.h"
#include "gev/GvcpEvent.h"
#include "support/DescriptionText.h"

namespace camera {
namespace {

constexpr std::string_view kLock = "TLParamsLocked";

std::string Decimal(double nValue) {
    std::array<char, 32> arrText{};
    const auto objResult = std::to_chars(arrText.data(), arrText.data() + arrText.size(), nValue);
    return {arrText.data(), objResult.ptr};
}

std::string Whole(std::uint64_t nValue, int nBase = 10) {
    std::array<char, 32> arrText{};
    const auto objResult = std::to_chars(arrText.data(), arrText.data() + arrText.size(), nValue, nBase);
    return (nBase == 16 ? "0x" : "") + std::string(arrText.data(), objResult.ptr);
}

std::string Join(std::string_view strFirst, std::string_view strSecond) {
    return std::string(strFirst).append(strSecond);
}

std::string_view VisibilityOf(const FEATURE& objFeature) {
    switch (objFeature.Visibility) {
        case EVisibility::Beginner:
            return "Beginner";
        case EVisibility::Expert:
            return "Expert";
        case EVisibility::Guru:
            break;
    }
    return "Guru";
}

std::string_view AccessOf(const FEATURE& objFeature) {
    switch (objFeature.Access) {
        case EAccess::ReadOnly:
            return "RO";
        case EAccess::WriteOnly:
            return "WO";
        case EAccess::ReadWrite:
            break;
    }
    return "RW";
}

std::string_view RepresentationOf(ENotation eNotation) {
    switch (eNotation) {
        case ENotation::IPv4Address:
            return "IPV4Address";
        case ENotation::MACAddress:
            return "MACAddress";
        case ENotation::HexNumber:
            return "HexNumber";
        case ENotation::Number:
            break;
    }
    return "PureNumber";
}

/// A model's name for programs, which takes letters and digits alone.
std::string IdentifierOf(std::string_view strModel) {
    std::string strIdentifier;
    std::ranges::copy_if(strModel, std::back_inserter(strIdentifier), [](char nChar) {
        return (nChar >= '0' && nChar <= '9') || (nChar >= 'A' && nChar <= 'Z') || (nChar >= 'a' && nChar <= 'z');
    });
    return strIdentifier.empty() ? "Camera" : strIdentifier;
}

/// Writes nodes; within each, elements stand in the order that the schema wants.
class CDescriptionWriter : private CDescriptionText {
public:
    std::string Write(std::string_view strModel) {
        Categories();
        for (const FEATURE& objFeature : ListFeatures()) {
            Feature(objFeature);
        }
        Locked();
        Chunks();
        Events();
        Open("Port", "Device");
        Close("Port");
        const std::string strIdentifier = IdentifierOf(strModel);
        return MakeDocument(
            {strIdentifier, strModel, "7E1D5B52-6C2B-4F0E-9D43-5A0B7C1E9A10", "7E1D5B52-6C2B-4F0E-9D43-5A0B7C1E9A11"});
    }

private:
    void Categories() {
        std::vector<std::string_view> vecCategory;
        for (const FEATURE& objFeature : ListFeatures()) {
            if (std::ranges::find(vecCategory, objFeature.Category) == vecCategory.end()) {
                vecCategory.push_back(objFeature.Category);
            }
        }
        Open("Category", "Root");
        for (const std::string_view strCategory : vecCategory) {
            Element("pFeature", strCategory);
        }
        Close("Category");
        for (const std::string_view strCategory : vecCategory) {
            Open("Category", strCategory);
            for (const FEATURE& objFeature : ListFeatures()) {
                if (objFeature.Category == strCategory) {
                    Element("pFeature", objFeature.Name);
                }
            }
            MoreFeatures(strCategory);
            Close("Category");
        }
    }

    /// Those that have no register in the camera.
    void MoreFeatures(std::string_view strCategory) {
        if (strCategory == "TransportLayerControl") {
            Element("pFeature", kLock);
        } else if (strCategory == "ChunkDataControl") {
            for (const ENTRY& objChunk : FindFeature("ChunkSelector").Entries) {
                Element("pFeature", Join("Chunk", objChunk.Name));
            }
        } else if (strCategory == "EventControl") {
            const auto arrEvents = FindFeature("EventSelector").Entries;
            for (const ENTRY& objEvent : arrEvents) {
                Element("pFeature", Join("Event", objEvent.Name));
            }
            // The others come without data.
            for (const std::string_view strData : {"Timestamp", "FrameID"}) {
                Element("pFeature", Join(Join("Event", arrEvents[kEventExposureEnd].Name), strData));
            }
        }
    }

    void Feature(const FEATURE& objFeature) {
        if (objFeature.Kind == EKind::Text) {
            Register("StringReg", objFeature.Name, objFeature);
            return;
        }
        const bool bLimited = !objFeature.MaxOf.empty();
        const std::string_view strElement = ElementOf(objFeature.Kind);
        Open(strElement, objFeature.Name, objFeature.Custom ? "Custom" : "Standard");
        Introduction(objFeature);
        if (objFeature.Saved) {
            Element("Streamable", "Yes");
        }
        if (objFeature.Kind == EKind::Enumeration) {
            Entries(objFeature);
        }
        Element("pValue", Join(objFeature.Name, "Reg"));
        Properties(objFeature);
        for (const FEATURE& objOther : ListFeatures()) {
            if (objOther.Selector == objFeature.Name) {
                Element("pSelected", objOther.Name);
            }
        }
        Close(strElement);
        if (bLimited) {
            Limit(objFeature);
        }
        Register(RegisterElementOf(objFeature), Join(objFeature.Name, "Reg"), objFeature);
    }

    static std::string_view ElementOf(EKind eKind) {
        switch (eKind) {
            case EKind::Integer:
                return "Integer";
            case EKind::Float:
                return "Float";
            case EKind::Enumeration:
                return "Enumeration";
            case EKind::Boolean:
                return "Boolean";
            case EKind::Command:
                return "Command";
            case EKind::Text:
                break;
        }
        return "StringReg";
    }

    static std::string_view RegisterElementOf(const FEATURE& objFeature) {
        if (objFeature.Kind == EKind::Float) {
            return "FloatReg";
        }
        return objFeature.LowHalf || objFeature.HighHalf || objFeature.IsBit() ? "MaskedIntReg" : "IntReg";
    }

    void Introduction(const FEATURE& objFeature) {
        Element("ToolTip", objFeature.ToolTip);
        Element("Visibility", VisibilityOf(objFeature));
        if (objFeature.Locked) {
            Element("pIsLocked", kLock);
        }
    }

    void Entries(const FEATURE& objFeature) {
        for (const ENTRY& objEntry : objFeature.Entries) {
            Open("EnumEntry", objEntry.Name);
            Element("Value", Whole(objEntry.Value));
            Close("EnumEntry");
        }
    }

    void Properties(const FEATURE& objFeature) {
        switch (objFeature.Kind) {
            case EKind::Integer:
                Element("Min", Whole(static_cast<std::uint64_t>(objFeature.Min)));
                if (objFeature.MaxOf.empty()) {
                    Element("Max", Whole(static_cast<std::uint64_t>(objFeature.Max)));
                } else {
                    Element("pMax", Join(objFeature.Name, "Limit"));
                }
                Element("Inc", Whole(static_cast<std::uint64_t>(objFeature.Step)));
                Element("Representation", RepresentationOf(objFeature.Notation));
                Unit(objFeature.Unit);
                break;
            case EKind::Float:
                Element("Min", Decimal(objFeature.Min));
                Element("Max", Decimal(objFeature.Max));
                Unit(objFeature.Unit);
                break;
            case EKind::Boolean:
                Element("OnValue", "1");
                Element("OffValue", "0");
                break;
            case EKind::Command:
                Element("CommandValue",
                        Whole(objFeature.Default == 0 ? 1 : static_cast<std::uint64_t>(objFeature.Default)));
                break;
            case EKind::Enumeration:
            case EKind::Text:
                break;
        }
    }

    void Unit(std::string_view strUnit) {
        if (!strUnit.empty()) {
            Element("Unit", strUnit);
        }
    }

    void Limit(const FEATURE& objFeature) {
        Open("IntSwissKnife", Join(objFeature.Name, "Limit"), "Custom");
        Element("pVariable", "Name", "MOST", objFeature.MaxOf);
        Element("pVariable", "Name", "LESS", objFeature.MaxLess);
        Element("Formula", "MOST - LESS");
        Close("IntSwissKnife");
    }

    void Register(std::string_view strElement, std::string_view strName, const FEATURE& objFeature) {
        const bool bFeature = strName == objFeature.Name;
        Open(strElement, strName, bFeature ? "Standard" : "Custom");
        if (bFeature) {
            Introduction(objFeature);
        }
        Element("Address", Whole(objFeature.Address, 16));
        if (!objFeature.Selector.empty()) {
            Element("pIndex", "Offset", Whole(objFeature.Length), objFeature.Selector);
        }
        Element("Length", Whole(objFeature.Length));
        Element("AccessMode", AccessOf(objFeature));
        Element("pPort", "Device");
        const bool bNoCache = objFeature.Volatile || objFeature.Kind == EKind::Command;
        Element("Cachable", bNoCache ? "NoCache" : "WriteThrough");
        if (objFeature.Saved && !bNoCache) {
            Element("pInvalidator", "UserSetLoad");
            Element("pInvalidator", "DeviceReset");
        }
        // In a register whose first byte is the highest, bits are counted from the highest too.
        if (objFeature.IsBit()) {
            Element("Bit", Whole(31U - static_cast<unsigned>(objFeature.Bit)));
        } else if (objFeature.LowHalf) {
            Element("LSB", "31");
            Element("MSB", "16");
        } else if (objFeature.HighHalf) {
            Element("LSB", "15");
            Element("MSB", "0");
        }
        if (strElement == "IntReg" || strElement == "MaskedIntReg") {
            Element("Sign", "Unsigned");
        }
        if (strElement != "StringReg") {
            Element("Endianess", "BigEndian");
        }
        Close(strElement);
    }

    void Locked() {
        Open("Integer", kLock);
        Element("ToolTip", "Other than 0 while images are taken: what shapes them can't be changed");
        Element("Visibility", "Invisible");
        Element("Streamable", "No");
        Element("Value", "0");
        Element("Min", "0");
        Element("Max", "1");
        Close("Integer");
    }

    void Chunks() {
        const auto arrEntries = FindFeature("ChunkSelector").Entries;
        for (std::size_t i = 0; i < arrEntries.size(); ++i) {
            const std::string strName = Join("Chunk", arrEntries[i].Name);
            const bool bFloat = arrEntries[i].Name == "ExposureTime";
            DataFeature(bFloat ? "Float" : "Integer", strName, "Of the image, out of what stands behind it",
                        Join(strName, "Port"), 0, camera::kChunks[i].Length, UnitOf(arrEntries[i].Name));
            Open("Port", Join(strName, "Port"));
            Element("ChunkID", Whole(camera::kChunks[i].ID, 16).substr(2));
            Close("Port");
        }
    }

    void Events() {
        constexpr std::array kIDs = {gev::kEventEndOfExposure, gev::kEventTrigger};
        const auto arrEntries = FindFeature("EventSelector").Entries;
        for (std::size_t i = 0; i < arrEntries.size(); ++i) {
            const std::string strName = Join("Event", arrEntries[i].Name);
            const std::string strPort = strName + "Port";
            Open("Integer", strName);
            Element("ToolTip", "Number of the event; its callbacks tell that it has come");
            Element("Visibility", "Expert");
            Element("EventID", Whole(kIDs[i], 16).substr(2));
            Element("ImposedAccessMode", "RO");
            Element("Value", Whole(kIDs[i]));
            Close("Integer");
            if (i != kEventExposureEnd) {
                continue;  // it comes without data
            }
            DataFeature("Integer", strName + "Timestamp", "When it was", strPort, kEventTimestampPlace, 8,
                        UnitOf("Timestamp"));
            DataFeature("Integer", strName + "FrameID", "Image that it belongs to", strPort, kEventFramePlace, 8);
            Open("Port", strPort);
            Element("EventID", Whole(kIDs[i], 16).substr(2));
            Close("Port");
        }
    }

    /// Of a chunk or an event's data. The clock's ticks are nanoseconds.
    static std::string_view UnitOf(std::string_view strData) {
        return strData == "Timestamp" ? "ns" : strData == "ExposureTime" ? "us" : "";
    }

    /// A feature out of data that the camera sends by itself.
    void DataFeature(std::string_view strElement, const std::string& strName, std::string_view strToolTip,
                     std::string_view strPort, std::uint32_t nPlace, std::uint32_t nLength,
                     std::string_view strUnit = {}) {
        Open(strElement, strName);
        Element("ToolTip", strToolTip);
        Element("Visibility", "Expert");
        Element("pValue", strName + "Reg");
        Unit(strUnit);
        Close(strElement);
        const std::string_view strRegister = strElement == "Float" ? "FloatReg" : "IntReg";
        Open(strRegister, strName + "Reg", "Custom");
        Element("Address", Whole(nPlace, 16));
        Element("Length", Whole(nLength));
        Element("AccessMode", "RO");
        Element("pPort", strPort);
        Element("Cachable", "NoCache");
        if (strElement != "Float") {
            Element("Sign", "Unsigned");
        }
        Element("Endianess", "BigEndian");
        Close(strRegister);
    }
};

}  // namespace

std::string WriteDescription(std::string_view strModel) {
    return CDescriptionWriter().Write(strModel);
}

}  // namespace camera
