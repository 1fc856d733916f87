#include "tests/producer_double/Port.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <stdexcept>

#include "tests/producer_double/GenTLError.h"

namespace ProducerDouble {

namespace {

constexpr std::uint64_t kFirstFeature = 0x1000;
constexpr std::uint64_t kFirstList = 0x1000000;
constexpr std::uint64_t kListRoom = 0x100000;  // 131,072 numbers or 16,384 texts
constexpr std::uint64_t kDescription = 0x40000000;
constexpr std::size_t kListTextLength = 64;

BYTES BigEndian(std::uint64_t nValue) {
    BYTES vecBytes(8);
    for (std::size_t i = 0; i < 8; ++i) {
        vecBytes[i] = static_cast<std::byte>(nValue >> (56 - 8 * i));
    }
    return vecBytes;
}

BYTES Padded(std::string_view strText, std::size_t nLength) {
    BYTES vecBytes = BytesOf(strText.substr(0, nLength));
    vecBytes.resize(nLength);
    return vecBytes;
}

std::string Hex(std::uint64_t nValue) {
    char szText[17] = {};
    std::to_chars(szText, szText + 16, nValue, 16);
    return szText;
}

bool Touches(const FEATURE& objFeature, std::uint64_t nAddress, std::uint64_t nLength) {
    return objFeature.nAddress < nAddress + nLength && nAddress < objFeature.nAddress + objFeature.nLength;
}

}  // namespace

CPort::CPort(const MONITOR& objMonitor, std::string strId, std::string strModuleKind, std::string strPortName)
    : m_objMonitor(objMonitor),
      m_strId(std::move(strId)),
      m_strModuleKind(std::move(strModuleKind)),
      m_strPortName(std::move(strPortName)),
      m_nNextAddress(kFirstFeature),
      m_nNextListAddress(kFirstList) {}

// Features.

FEATURE& CPort::__Add(FEATURE objFeature, std::span<const std::byte> value) {
    const bool bKnown = std::any_of(m_vecFeature.begin(), m_vecFeature.end(),
                                    [&](const FEATURE& objOther) { return objOther.strName == objFeature.strName; });
    if (bKnown) {
        throw std::invalid_argument("the port has this feature already: " + objFeature.strName);
    }
    objFeature.nLength = value.size();
    objFeature.nAddress = m_nNextAddress;
    m_nNextAddress += (value.size() + 7) / 8 * 8;
    m_objRegisters.Place(objFeature.nAddress, value);
    m_bDescribed = false;
    return m_vecFeature.emplace_back(std::move(objFeature));
}

FEATURE& CPort::__Find(const std::string& strName) {
    return const_cast<FEATURE&>(std::as_const(*this).__Find(strName));
}

const FEATURE& CPort::__Find(const std::string& strName) const {
    for (const FEATURE& objFeature : m_vecFeature) {
        if (objFeature.strName == strName) {
            return objFeature;
        }
    }
    throw std::out_of_range("the port has no such feature: " + strName);
}

IPortControl& CPort::AddInteger(std::string strName, std::int64_t nValue, RANGE objRange) {
    const LOCK lock = m_objMonitor.Enter();
    FEATURE objFeature(std::move(strName), FEATURE::KIND::Integer);
    objFeature.objRange = objRange;
    __Add(std::move(objFeature), BigEndian(static_cast<std::uint64_t>(nValue)));
    return *this;
}

IPortControl& CPort::AddFloat(std::string strName, double nValue) {
    const LOCK lock = m_objMonitor.Enter();
    __Add({std::move(strName), FEATURE::KIND::Float}, BigEndian(std::bit_cast<std::uint64_t>(nValue)));
    return *this;
}

IPortControl& CPort::AddText(std::string strName, std::string strValue, std::size_t nCapacity) {
    const LOCK lock = m_objMonitor.Enter();
    __Add({std::move(strName), FEATURE::KIND::Text}, Padded(strValue, nCapacity));
    return *this;
}

IPortControl& CPort::AddCommand(std::string strName) {
    const LOCK lock = m_objMonitor.Enter();
    __Add({std::move(strName), FEATURE::KIND::Command}, BigEndian(0));
    return *this;
}

IPortControl& CPort::AddEnumeration(std::string strName, std::int64_t nValue,
                                    std::vector<std::pair<std::string, std::int64_t>> vecEntry) {
    const LOCK lock = m_objMonitor.Enter();
    FEATURE objFeature(std::move(strName), FEATURE::KIND::Enumeration);
    objFeature.vecEntry = std::move(vecEntry);
    __Add(std::move(objFeature), BigEndian(static_cast<std::uint64_t>(nValue)));
    return *this;
}

IPortControl& CPort::RemoveFeature(const std::string& strName) {
    const LOCK lock = m_objMonitor.Enter();
    const FEATURE& objFeature = __Find(strName);
    m_vecFeature.erase(m_vecFeature.begin() + (&objFeature - m_vecFeature.data()));
    m_bDescribed = false;
    return *this;
}

std::int64_t CPort::Integer(const std::string& strName) const {
    const BYTES vecBytes = Register(AddressOf(strName), 8);
    std::uint64_t nValue = 0;
    for (const std::byte b : vecBytes) {
        nValue = (nValue << 8) | static_cast<std::uint64_t>(b);
    }
    return static_cast<std::int64_t>(nValue);
}

IPortControl& CPort::SetInteger(const std::string& strName, std::int64_t nValue) {
    const LOCK lock = m_objMonitor.Enter();
    m_objRegisters.Place(__Find(strName).nAddress, BigEndian(static_cast<std::uint64_t>(nValue)));
    return *this;
}

IPortControl& CPort::SetText(const std::string& strName, std::string_view strValue) {
    const LOCK lock = m_objMonitor.Enter();
    const FEATURE& objFeature = __Find(strName);
    m_objRegisters.Place(objFeature.nAddress, Padded(strValue, objFeature.nLength));
    return *this;
}

std::uint64_t CPort::AddressOf(const std::string& strName) const {
    const LOCK lock = m_objMonitor.Enter();
    return __Find(strName).nAddress;
}

std::size_t CPort::Writes(const std::string& strName) const {
    const LOCK lock = m_objMonitor.Enter();
    return __Find(strName).nWrites;
}

void CPort::OnWriteInside(const std::string& strName, std::function<void()> fn) {
    m_mapInnerHook[strName] = std::move(fn);
}

// Lists behind a selector.

void CPort::AddSelector(const std::string& strSelector) {
    __Add({strSelector + "Max", FEATURE::KIND::Integer}, BigEndian(static_cast<std::uint64_t>(-1)));
    FEATURE objSelector(strSelector, FEATURE::KIND::Integer);
    objSelector.strMax = strSelector + "Max";
    __Add(std::move(objSelector), BigEndian(0));
}

void CPort::AddListFeature(const std::string& strSelector, std::string strName, FEATURE::KIND nKind) {
    FEATURE objFeature(std::move(strName), nKind);
    objFeature.strSelector = strSelector;
    objFeature.nAddress = m_nNextListAddress;
    objFeature.nLength = nKind == FEATURE::KIND::Text ? kListTextLength : 8;
    m_nNextListAddress += kListRoom;
    m_vecFeature.push_back(std::move(objFeature));
    m_bDescribed = false;
}

void CPort::SetSelectorMax(const std::string& strSelector, std::int64_t nMax) {
    for (const FEATURE& objFeature : m_vecFeature) {
        if (objFeature.strName == strSelector + "Max") {
            m_objRegisters.Place(objFeature.nAddress, BigEndian(static_cast<std::uint64_t>(nMax)));
        }
    }
}

void CPort::AppendListValue(BYTES& vecAll, std::uint64_t nValue) {
    const BYTES vecOne = BigEndian(nValue);
    vecAll.insert(vecAll.end(), vecOne.begin(), vecOne.end());
}

void CPort::AppendListValue(BYTES& vecAll, const std::string& strValue) {
    const BYTES vecOne = Padded(strValue, kListTextLength);
    vecAll.insert(vecAll.end(), vecOne.begin(), vecOne.end());
}

// A test may have removed the feature: then there is nothing to set.
void CPort::__SetList(const std::string& strName, const BYTES& vecAll) {
    if (vecAll.size() > kListRoom) {
        Refuse(GC_ERR_RESOURCE_EXHAUSTED, "the list is longer than its registers");
    }
    for (const FEATURE& objFeature : m_vecFeature) {
        if (objFeature.strName != strName) {
            continue;
        }
        m_objRegisters.Remove(objFeature.nAddress, kListRoom);
        m_objRegisters.Place(objFeature.nAddress, vecAll);
    }
}

// Description and registers.

IPortControl& CPort::Describe(std::string strXml) {
    return DescribeAs("Description.xml", BytesOf(strXml));
}

IPortControl& CPort::DescribeAs(std::string strFileName, BYTES vecContent) {
    const LOCK lock = m_objMonitor.Enter();
    m_bOwnDescription = false;
    __PlaceDescription(strFileName, vecContent);
    return *this;
}

IPortControl& CPort::Urls(std::vector<std::string> vecUrl) {
    const LOCK lock = m_objMonitor.Enter();
    m_bOwnDescription = false;
    m_vecUrl = std::move(vecUrl);
    return *this;
}

void CPort::__PlaceDescription(const std::string& strFileName, std::span<const std::byte> content) {
    m_objRegisters.Remove(kDescription, m_nDescriptionLength);
    m_nDescriptionLength = content.size();
    m_objRegisters.Place(kDescription, content);
    m_vecUrl = {"Local:///" + strFileName + ";" + Hex(kDescription) + ";" + Hex(content.size())};
}

void CPort::__DescribeFeatures() {
    if (!m_bOwnDescription || m_bDescribed) {
        return;
    }
    const std::string strXml = WriteDescription(m_strModuleKind, m_strPortName, m_vecFeature);
    __PlaceDescription(m_strModuleKind + ".xml", std::as_bytes(std::span(strXml)));
    m_bDescribed = true;
}

IPortControl& CPort::SetRegister(std::uint64_t nAddress, std::span<const std::byte> vecBytes) {
    const LOCK lock = m_objMonitor.Enter();
    m_objRegisters.Place(nAddress, vecBytes);
    return *this;
}

BYTES CPort::Register(std::uint64_t nAddress, std::size_t nLength) const {
    const LOCK lock = m_objMonitor.Enter();
    BYTES vecBytes(nLength);
    if (!m_objRegisters.Read(nAddress, vecBytes)) {
        throw std::out_of_range("no register at 0x" + Hex(nAddress));
    }
    return vecBytes;
}

void CPort::Read(std::uint64_t nAddress, std::span<std::byte> bytes) const {
    if (!m_objRegisters.Read(nAddress, bytes)) {
        Refuse(GC_ERR_INVALID_ADDRESS, "no register at 0x" + Hex(nAddress));
    }
}

void CPort::Write(std::uint64_t nAddress, std::span<const std::byte> bytes) {
    if (!m_objRegisters.Write(nAddress, bytes)) {
        Refuse(GC_ERR_INVALID_ADDRESS, "no register at 0x" + Hex(nAddress));
    }
    for (FEATURE& objFeature : m_vecFeature) {
        if (!Touches(objFeature, nAddress, bytes.size())) {
            continue;
        }
        ++objFeature.nWrites;
        if (objFeature.nKind == FEATURE::KIND::Command) {  // done at once
            m_objRegisters.Place(objFeature.nAddress, BigEndian(0));
        }
        if (const auto it = m_mapInnerHook.find(objFeature.strName); it != m_mapInnerHook.end()) {
            it->second();
        }
    }
}

// What the port says of itself.

std::size_t CPort::UrlCount() {
    __DescribeFeatures();
    return m_vecUrl.size();
}

void CPort::GetUrlInfo(std::size_t nIndex, URL_INFO_CMD nCommand, const TARGET& objTarget) {
    if (nIndex >= UrlCount()) {
        Refuse(GC_ERR_INVALID_INDEX, "the port has no URL of this index");
    }
    if (nCommand != URL_INFO_URL) {
        Refuse(GC_ERR_NOT_AVAILABLE, "the port doesn't tell this of its URL");
    }
    PutText(objTarget, m_vecUrl[nIndex]);
}

void CPort::GetPortInfo(PORT_INFO_CMD nCommand, const TARGET& objTarget) const {
    switch (nCommand) {
        case PORT_INFO_ID:
            return PutText(objTarget, m_strId);
        case PORT_INFO_PORTNAME:
            return PutText(objTarget, m_strPortName);
        default:
            Refuse(GC_ERR_NOT_AVAILABLE, "the port doesn't tell this of itself");
    }
}

}  // namespace ProducerDouble
