#include "tests/GenApi/DescriptionGenerator.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace {

struct FEATURE_GROUP {
    std::string_view Category;
    std::vector<std::string_view> Integers;
    std::vector<std::string_view> Floats;
    std::vector<std::pair<std::string_view, std::vector<std::string_view>>> Enumerations;
    std::vector<std::string_view> Booleans;
    std::vector<std::string_view> Commands;
};

const std::vector<FEATURE_GROUP>& StandardFeatures() {
    static const std::vector<FEATURE_GROUP> s_vecGroup = {
        {"DeviceControl",
         {"DeviceLinkSpeed", "DeviceLinkThroughputLimit", "DeviceStreamChannelCount", "DeviceHeartbeatTimeout"},
         {"DeviceTemperature", "DeviceClockFrequency"},
         {{"DeviceScanType", {"Areascan", "Linescan"}},
          {"DeviceTemperatureSelector", {"Sensor", "Mainboard", "FPGA"}},
          {"DeviceRegistersEndianness", {"Little", "Big"}}},
         {"DeviceRegistersValid"},
         {"DeviceReset", "DeviceRegistersStreamingStart", "DeviceRegistersStreamingEnd"}},
        {"ImageFormatControl",
         {"SensorWidth", "SensorHeight", "WidthMax", "HeightMax", "Width", "Height", "OffsetX", "OffsetY",
          "BinningHorizontal", "BinningVertical", "DecimationHorizontal", "DecimationVertical", "LinePitch"},
         {"SensorPixelWidth", "SensorPixelHeight"},
         {{"PixelFormat", {"Mono8", "Mono10", "Mono12", "Mono16", "BayerRG8", "BayerRG12", "RGB8", "YUV422_8"}},
          {"RegionSelector", {"Region0", "Region1", "Region2", "All"}},
          {"TestPattern", {"Off", "Black", "White", "GreyHorizontalRamp", "ColorBar"}}},
         {"ReverseX", "ReverseY"},
         {}},
        {"AcquisitionControl",
         {"AcquisitionFrameCount", "AcquisitionBurstFrameCount", "TriggerDivider", "TriggerMultiplier"},
         {"AcquisitionFrameRate", "ExposureTime", "TriggerDelay", "AcquisitionLineRate"},
         {{"AcquisitionMode", {"SingleFrame", "MultiFrame", "Continuous"}},
          {"TriggerSelector", {"AcquisitionStart", "FrameStart", "FrameBurstStart", "LineStart", "ExposureStart"}},
          {"TriggerMode", {"Off", "On"}},
          {"TriggerSource", {"Software", "Line0", "Line1", "Line2", "Counter0Start", "Timer0Start"}},
          {"TriggerActivation", {"RisingEdge", "FallingEdge", "AnyEdge", "LevelHigh", "LevelLow"}},
          {"ExposureMode", {"Off", "Timed", "TriggerWidth", "TriggerControlled"}},
          {"ExposureAuto", {"Off", "Once", "Continuous"}}},
         {"AcquisitionFrameRateEnable"},
         {"AcquisitionStart", "AcquisitionStop", "AcquisitionAbort", "TriggerSoftware"}},
        {"AnalogControl",
         {"BlackLevelRaw", "GainRaw"},
         {"Gain", "BlackLevel", "BalanceRatio", "Gamma"},
         {{"GainSelector", {"All", "Red", "Green", "Blue", "DigitalAll"}},
          {"GainAuto", {"Off", "Once", "Continuous"}},
          {"BalanceWhiteAuto", {"Off", "Once", "Continuous"}},
          {"BlackLevelSelector", {"All", "Red", "Green", "Blue"}}},
         {"GammaEnable"},
         {}},
        {"DigitalIOControl",
         {"LineStatusAll", "UserOutputValueAll", "UserOutputValueAllMask"},
         {"LineDebouncerTime"},
         {{"LineSelector", {"Line0", "Line1", "Line2", "Line3"}},
          {"LineMode", {"Input", "Output"}},
          {"LineSource", {"Off", "ExposureActive", "FrameTriggerWait", "UserOutput0", "Timer0Active"}},
          {"LineFormat", {"NoConnect", "TTL", "LVDS", "OptoCoupled"}},
          {"UserOutputSelector", {"UserOutput0", "UserOutput1", "UserOutput2"}}},
         {"LineInverter", "LineStatus", "UserOutputValue"},
         {}},
        {"TransportLayerControl",
         {"PayloadSize", "GevSCPSPacketSize", "GevSCPD", "GevHeartbeatTimeout", "GevCurrentIPAddress",
          "GevCurrentSubnetMask", "GevPersistentIPAddress", "GevStreamChannelCount", "TLParamsLocked"},
         {},
         {{"GevInterfaceSelector", {"Interface0", "Interface1"}},
          {"GevCCP", {"OpenAccess", "ExclusiveAccess", "ControlAccess"}}},
         {"GevSCPSDoNotFragment", "GevCurrentIPConfigurationDHCP"},
         {}},
        {"ChunkDataControl",
         {"ChunkWidth", "ChunkHeight", "ChunkTimestamp", "ChunkFrameID"},
         {"ChunkExposureTime", "ChunkGain"},
         {{"ChunkSelector", {"Image", "OffsetX", "OffsetY", "Timestamp", "ExposureTime", "Gain"}}},
         {"ChunkModeActive", "ChunkEnable"},
         {}},
    };
    return s_vecGroup;
}

std::string Hex(std::uint64_t n, bool bLower) {
    const std::string_view strDigits = bLower ? "0123456789abcdef" : "0123456789ABCDEF";
    std::string str;
    do {
        str.insert(str.begin(), strDigits[n % 16]);
        n /= 16;
    } while (n != 0);
    return (bLower ? "0x" : "0X") + str;
}

class CGenerator {
public:
    explicit CGenerator(std::size_t nSize) : m_nSize(nSize) { m_strNodes.reserve(nSize + nSize / 8); }

    std::string Run() {
        // The standard features first; then the same features again, as a maker's own ones with a number.
        for (int nRound = 0; m_strNodes.size() + m_strRoot.size() < m_nSize; ++nRound) {
            for (const FEATURE_GROUP& objGroup : StandardFeatures()) {
                AddGroup(objGroup, nRound == 0 ? std::string() : "_" + std::to_string(nRound));
                if (nRound > 0 && m_strNodes.size() + m_strRoot.size() >= m_nSize) {
                    break;
                }
            }
        }
        return "\xEF\xBB\xBF<RegisterDescription ModelName=\"Big\" VendorName=\"Generated\" "
               "StandardNameSpace=\"GEV\" SchemaMajorVersion=\"1\" SchemaMinorVersion=\"0\" "
               "SchemaSubMinorVersion=\"1\" MajorVersion=\"1\" MinorVersion=\"2\" SubMinorVersion=\"3\" "
               "ProductGuid=\"00000000-0000-0000-0000-000000000001\" "
               "VersionGuid=\"00000000-0000-0000-0000-000000000002\">\r\n"
               "<Category Name=\"Root\" NameSpace=\"Standard\">\r\n" +
               m_strRoot + "</Category>\r\n" + m_strNodes +
               "<Port Name=\"Device\" NameSpace=\"Standard\"/>\r\n"
               "<Port Name=\"ChunkPort\"><ChunkID>0a01</ChunkID></Port>\r\n"
               "<Port Name=\"EventPort\"><EventID>9001</EventID></Port>\r\n</RegisterDescription>\r\n";
    }

private:
    void AddGroup(const FEATURE_GROUP& objGroup, const std::string& strSuffix) {
        std::string strFeatures;
        const auto List = [&](const std::string& strName) {
            strFeatures += "\t<pFeature>" + strName + "</pFeature>\r\n";
        };
        const std::string strCategory = std::string(objGroup.Category) + strSuffix;
        m_strRoot += "\t<pFeature>" + strCategory + "</pFeature>\r\n";
        for (const auto& [strName, vecEntry] : objGroup.Enumerations) {
            List(AddEnumeration(std::string(strName) + strSuffix, vecEntry));
        }
        for (const std::string_view strName : objGroup.Integers) {
            List(AddInteger(std::string(strName) + strSuffix));
        }
        for (const std::string_view strName : objGroup.Floats) {
            List(AddFloat(std::string(strName) + strSuffix));
        }
        for (const std::string_view strName : objGroup.Booleans) {
            List(AddBoolean(std::string(strName) + strSuffix));
        }
        for (const std::string_view strName : objGroup.Commands) {
            List(AddCommand(std::string(strName) + strSuffix));
        }
        m_strNodes +=
            "<Category Name=\"" + strCategory + "\" NameSpace=\"Standard\">\r\n" + strFeatures + "</Category>\r\n";
    }

    std::string Texts(const std::string& strName) {
        ++m_nFeature;
        return "\t<ToolTip>Sets or tells the " + strName + " of the device.</ToolTip>\r\n\t<Description>" + strName +
               " is one of the features of this device. It may be changed while no acquisition runs; its limits hang "
               "on "
               "other features.</Description>\r\n\t<DisplayName>" +
               strName + "</DisplayName>\r\n\t<Visibility>" +
               std::array<const char*, 3>{"Beginner", "Expert", "Guru"}[m_nFeature % 3] + "</Visibility>\r\n";
    }

    // Most features hang on the modes of some others.
    std::string Invalidators() {
        std::string str;
        const std::size_t nCount = m_vecSelectable.empty() ? 0 : 4 + m_nFeature % 9;
        for (std::size_t i = 0; i < nCount; ++i) {
            str += "\t<pInvalidator>" + m_vecSelectable[(m_nFeature * 7 + i * 13) % m_vecSelectable.size()] +
                   "</pInvalidator>\r\n";
        }
        return str;
    }

    std::string Place(const char* pLength) {
        m_nAddress += 8;
        return "\t<Address> " + Hex(static_cast<std::uint64_t>(m_nAddress), m_nAddress % 16 == 0) +
               "\r\n\t</Address>\r\n\t<Length>" + pLength + "</Length>\r\n\t<AccessMode>RW</AccessMode>\r\n" +
               "\t<pPort>Device</pPort>\r\n";
    }

    std::string AddRegister(const std::string& strName, const std::string& strMore) {
        m_strNodes += "<IntReg Name=\"" + strName + "\">\r\n" + Place("4") + "\t<Cachable>WriteThrough</Cachable>\r\n" +
                      strMore + "\t<Sign>Unsigned</Sign>\r\n\t<Endianess>BigEndian</Endianess>\r\n</IntReg>\r\n";
        return strName;
    }

    // A flag in one bit of a register of 32, seen through a formula as descriptions like to.
    std::string AddFlag(const std::string& strName) {
        if (m_nFlag % 32 == 0) {
            m_nFlagAddress = m_nAddress += 8;
        }
        m_strNodes +=
            "<MaskedIntReg Name=\"" + strName + "_InqReg\">\r\n\t<Address>" +
            Hex(static_cast<std::uint64_t>(m_nFlagAddress), true) +
            "</Address>\r\n\t<Length>4</Length>\r\n\t<AccessMode>RO</AccessMode>\r\n\t<pPort>Device</pPort>\r\n"
            "\t<Bit>" +
            std::to_string(m_nFlag % 32) + "</Bit>\r\n\t<Endianess>BigEndian</Endianess>\r\n</MaskedIntReg>\r\n";
        m_strNodes += "<IntSwissKnife Name=\"" + strName + "_Expr\">\r\n\t<pVariable Name=\"INQ\">" + strName +
                      "_InqReg</pVariable>\r\n";
        std::string strFormula = "(INQ = 1)";
        for (std::size_t i = 0; i < 3 && m_vecSelectable.size() > 3; ++i) {
            const std::string strVariable = "V" + std::to_string(i);
            m_strNodes += "\t<pVariable Name=\"" + strVariable + "\">" +
                          m_vecSelectable[(m_nFeature * 5 + i) % m_vecSelectable.size()] + "</pVariable>\r\n";
            strFormula += " || ((" + strVariable + " &gt;&gt; 2) &amp; 0x3F) = " + std::to_string(40 + i);
        }
        m_strNodes += "\t<Formula>" + strFormula + " ? 0 : 1</Formula>\r\n</IntSwissKnife>\r\n";
        ++m_nFlag;
        return strName + "_Expr";
    }

    std::string AddEnumeration(const std::string& strName, const std::vector<std::string_view>& vecEntry) {
        const std::string strAvailable = AddFlag(strName);
        AddRegister(strName + "_Reg", Invalidators());
        std::string strNode = "<Enumeration Name=\"" + strName + "\" NameSpace=\"Standard\">\r\n" + Texts(strName) +
                              "\t<pIsLocked>" + LockName() + "</pIsLocked>\r\n\t<pIsAvailable>" + strAvailable +
                              "</pIsAvailable>\r\n\t<Streamable>Yes</Streamable>\r\n";
        for (std::size_t i = 0; i < vecEntry.size(); ++i) {
            strNode += "\t<EnumEntry Name=\"" + std::string(vecEntry[i]) +
                       "\" NameSpace=\"Standard\">\r\n\t\t<ToolTip>" + std::string(vecEntry[i]) +
                       "</ToolTip>\r\n\t\t<DisplayName>" + std::string(vecEntry[i]) + "</DisplayName>\r\n\t\t<Value>" +
                       std::to_string(i) + "</Value>\r\n\t</EnumEntry>\r\n";
        }
        m_strNodes += strNode + "\t<pValue>" + strName + "_Reg</pValue>\r\n</Enumeration>\r\n";
        m_vecSelectable.push_back(strName);
        return strName;
    }

    std::string AddInteger(const std::string& strName) {
        const std::string strAvailable = AddFlag(strName);
        AddRegister(strName + "_Reg", Invalidators());
        AddRegister(strName + "_MaxReg", Invalidators());
        m_strNodes += "<Integer Name=\"" + strName + "\" NameSpace=\"Standard\">\r\n" + Texts(strName) +
                      "\t<pIsAvailable>" + strAvailable + "</pIsAvailable>\r\n\t<pIsLocked>" + LockName() +
                      "</pIsLocked>\r\n\t<Streamable>Yes</Streamable>\r\n\t<pValue>" + strName +
                      "_Reg</pValue>\r\n\t<Min>0</Min>\r\n\t<pMax>" + strName +
                      "_MaxReg</pMax>\r\n\t<Inc>1</Inc>\r\n\t<Representation>Linear</Representation>\r\n</Integer>\r\n";
        return strName;
    }

    std::string AddFloat(const std::string& strName) {
        AddRegister(strName + "_Reg", Invalidators());
        AddRegister(strName + "_FactorReg", {});
        m_strNodes += "<Converter Name=\"" + strName + "_Conv\">\r\n\t<pVariable Name=\"F\">" + strName +
                      "_FactorReg</pVariable>\r\n\t<FormulaTo>FROM * (F + 1) / 0.5</FormulaTo>\r\n"
                      "\t<FormulaFrom>TO * 0.5 / (F + 1)</FormulaFrom>\r\n\t<pValue>" +
                      strName + "_Reg</pValue>\r\n\t<Slope>Increasing</Slope>\r\n</Converter>\r\n<Float Name=\"" +
                      strName + "\" NameSpace=\"Standard\">\r\n" + Texts(strName) + "\t<pIsAvailable>" +
                      AddFlagLater(strName) + "</pIsAvailable>\r\n\t<Streamable>Yes</Streamable>\r\n\t<pValue>" +
                      strName + "_Conv</pValue>\r\n\t<Min>0.0</Min>\r\n\t<Unit>us</Unit>\r\n</Float>\r\n";
        AddFlag(strName);
        return strName;
    }

    static std::string AddFlagLater(const std::string& strName) { return strName + "_Expr"; }

    std::string AddBoolean(const std::string& strName) {
        AddRegister(strName + "_Reg", Invalidators());
        m_strNodes += "<Boolean Name=\"" + strName + "\" NameSpace=\"Standard\">\r\n" + Texts(strName) +
                      "\t<Streamable>Yes</Streamable>\r\n\t<pValue>" + strName +
                      "_Reg</pValue>\r\n\t<OnValue>1</OnValue>\r\n\t<OffValue>0</OffValue>\r\n</Boolean>\r\n";
        return strName;
    }

    std::string AddCommand(const std::string& strName) {
        AddRegister(strName + "_Reg", {});
        m_strNodes += "<Command Name=\"" + strName + "\" NameSpace=\"Standard\">\r\n" + Texts(strName) + "\t<pValue>" +
                      strName + "_Reg</pValue>\r\n\t<CommandValue>1</CommandValue>\r\n</Command>\r\n";
        return strName;
    }

    static std::string LockName() { return "TLParamsLocked_Reg"; }

    std::size_t m_nSize;
    std::string m_strRoot;
    std::string m_strNodes;
    std::vector<std::string> m_vecSelectable;
    std::size_t m_nFeature = 0;
    std::size_t m_nFlag = 0;
    std::int64_t m_nAddress = 0x10000;
    std::int64_t m_nFlagAddress = 0;
};

}  // namespace

std::string GenerateDescription(std::size_t nSize) {
    return CGenerator(nSize).Run();
}
