#include "producer/modules/RegisterMap.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "producer/ProducerError.h"
#include "producer/modules/HexText.h"

namespace producer {

namespace {

constexpr std::uint64_t kFirstRegister = 0x1000;
constexpr std::uint64_t kDescription = 0x100000;  // beyond the registers of any table
constexpr std::size_t kRegisterUnit = 4;          // bytes

[[noreturn]] void ThrowNoRegister(std::uint64_t nAddress) {
    throw CProducerError(GC_ERR_INVALID_ADDRESS, "the module has no register at 0x" + HexText(nAddress));
}

std::string EncodeNumber(CFeature::Number nNumber) {
    std::string strBytes(kNumberRegisterLength, '\0');
    for (std::size_t i = 0; i < strBytes.size(); ++i) {
        strBytes[i] = static_cast<char>(static_cast<std::uint64_t>(nNumber) >> (8 * i));
    }
    return strBytes;
}

CFeature::Number DecodeNumber(std::span<const std::byte> spanBytes) {
    std::uint64_t nNumber = 0;
    for (std::size_t i = 0; i < spanBytes.size(); ++i) {
        nNumber |= std::to_integer<std::uint64_t>(spanBytes[i]) << (8 * i);
    }
    return static_cast<CFeature::Number>(nNumber);
}

/// Fills a register with a text and zeros, cut before the character that doesn't fit.
std::string EncodeText(std::string strText) {
    if (strText.size() >= kTextRegisterLength) {
        std::size_t nEnd = kTextRegisterLength - 1;
        while (nEnd > 0 && (static_cast<unsigned char>(strText[nEnd]) & 0xC0) == 0x80) {
            --nEnd;
        }
        strText.resize(nEnd);
    }
    strText.resize(kTextRegisterLength, '\0');
    return strText;
}

}  // namespace

CFeature& CRegisterMap::Add(FEATURE_KIND eKind, std::string strName, std::string strToolTip) {
    return m_deqFeature.emplace_back(eKind, std::move(strName), std::move(strToolTip), m_strCategory);
}

CFeature& CRegisterMap::Integer(std::string strName, std::string strToolTip, std::function<CFeature::Number()> funGet) {
    CFeature& objFeature = Add(FEATURE_KIND::Integer, std::move(strName), std::move(strToolTip));
    objFeature.m_funGet = std::move(funGet);
    return objFeature;
}

CFeature& CRegisterMap::Text(std::string strName, std::string strToolTip, std::function<std::string()> funGet) {
    CFeature& objFeature = Add(FEATURE_KIND::Text, std::move(strName), std::move(strToolTip));
    objFeature.m_funGetText = std::move(funGet);
    return objFeature;
}

CFeature& CRegisterMap::Enumeration(std::string strName, std::string strToolTip,
                                    std::vector<std::pair<std::string, CFeature::Number>> vecEntry,
                                    std::function<CFeature::Number()> funGet) {
    CFeature& objFeature = Add(FEATURE_KIND::Enumeration, std::move(strName), std::move(strToolTip));
    objFeature.m_vecEntry = std::move(vecEntry);
    objFeature.m_funGet = std::move(funGet);
    return objFeature;
}

CFeature& CRegisterMap::Command(std::string strName, std::string strToolTip, std::function<void()> funExecute) {
    CFeature& objFeature = Add(FEATURE_KIND::Command, std::move(strName), std::move(strToolTip));
    objFeature.m_funGet = [] { return 0; };
    objFeature.m_funSet = [strName = objFeature.m_strName,
                           funExecute = std::move(funExecute)](CFeature::Number nValue) {
        if (nValue != kCommandValue) {
            throw CProducerError(GC_ERR_INVALID_VALUE, strName + " is executed by a " + std::to_string(kCommandValue) +
                                                           ", not by " + std::to_string(nValue));
        }
        funExecute();
    };
    return objFeature;
}

CFeature& CRegisterMap::Duration(std::string strName, std::string strToolTip,
                                 std::function<CFeature::Number()> funGet) {
    CFeature& objFeature = Add(FEATURE_KIND::Duration, std::move(strName), std::move(strToolTip));
    objFeature.m_funGet = std::move(funGet);
    objFeature.m_strUnit = "us";
    return objFeature;
}

void CRegisterMap::Finish() {
    std::uint64_t nNext = kFirstRegister;
    const auto funPlace = [&](const CFeature& objFeature, PART ePart, std::size_t nLength) {
        const std::uint64_t nAddress = nNext;
        m_mapRegister.emplace(nAddress, REGISTER{&objFeature, ePart, nLength});
        nNext += nLength;
        return nAddress;
    };
    for (CFeature& objFeature : m_deqFeature) {
        objFeature.m_nAddress = funPlace(objFeature, PART::Value, objFeature.GetLength());
        if (objFeature.m_funMax) {
            objFeature.m_nMaxAddress = funPlace(objFeature, PART::Max, kNumberRegisterLength);
            objFeature.m_nListedAddress = funPlace(objFeature, PART::Listed, kNumberRegisterLength);
        }
    }
    m_nDescriptionAddress = kDescription;
    m_strDescription = CDescriptionWriter(m_objHeader, m_deqFeature).Write();
    // Consumers that read ports in whole registers read it so too.
    const std::size_t nWhole = (m_strDescription.size() + kRegisterUnit - 1) / kRegisterUnit * kRegisterUnit;
    m_strDescription.resize(nWhole, '\n');
}

CRegisterMap::REGISTERS::const_iterator CRegisterMap::FindRegister(std::uint64_t nAddress) const {
    const auto itBehind = m_mapRegister.upper_bound(nAddress);
    if (itBehind == m_mapRegister.begin()) {
        return m_mapRegister.end();
    }
    const auto itRegister = std::prev(itBehind);
    return nAddress - itRegister->first < itRegister->second.nLength ? itRegister : m_mapRegister.end();
}

std::string CRegisterMap::ReadRegister(const REGISTER& objRegister) {
    const CFeature& objFeature = *objRegister.pFeature;
    switch (objRegister.ePart) {
        case PART::Max:
            return EncodeNumber(objFeature.m_funMax());
        case PART::Listed:
            return EncodeNumber(objFeature.m_funMax() >= 0 ? 1 : 0);
        case PART::Value:
            break;
    }
    return objFeature.IsText() ? EncodeText(objFeature.m_funGetText()) : EncodeNumber(objFeature.m_funGet());
}

std::size_t CRegisterMap::ReadDescription(std::uint64_t nAddress, std::span<std::byte> spanBuffer) const {
    const std::uint64_t nOffset = nAddress - m_nDescriptionAddress;
    if (nAddress < m_nDescriptionAddress || nOffset >= m_strDescription.size()) {
        ThrowNoRegister(nAddress);
    }
    const std::size_t nLength = std::min(spanBuffer.size(), m_strDescription.size() - nOffset);
    std::memcpy(spanBuffer.data(), m_strDescription.data() + nOffset, nLength);
    return nLength;
}

void CRegisterMap::Read(std::uint64_t nAddress, std::span<std::byte> spanBuffer) const {
    while (!spanBuffer.empty()) {
        std::size_t nLength = 0;
        if (const auto itRegister = FindRegister(nAddress); itRegister != m_mapRegister.end()) {
            const std::string strBytes = ReadRegister(itRegister->second);
            const std::size_t nOffset = nAddress - itRegister->first;
            nLength = std::min(spanBuffer.size(), strBytes.size() - nOffset);
            std::memcpy(spanBuffer.data(), strBytes.data() + nOffset, nLength);
        } else {
            nLength = ReadDescription(nAddress, spanBuffer);
        }
        nAddress += nLength;
        spanBuffer = spanBuffer.subspan(nLength);
    }
}

void CRegisterMap::Write(std::uint64_t nAddress, std::span<const std::byte> spanBuffer) const {
    const auto itRegister = FindRegister(nAddress);
    if (itRegister == m_mapRegister.end()) {
        ThrowNoRegister(nAddress);
    }
    const CFeature& objFeature = *itRegister->second.pFeature;
    if (itRegister->second.ePart != PART::Value || !objFeature.IsWritable()) {
        throw CProducerError(GC_ERR_ACCESS_DENIED, objFeature.m_strName + " can only be read");
    }
    if (itRegister->first != nAddress || spanBuffer.size() != itRegister->second.nLength) {
        throw CProducerError(GC_ERR_INVALID_PARAMETER, objFeature.m_strName + " is a register of " +
                                                           std::to_string(itRegister->second.nLength) +
                                                           " bytes, which are written together");
    }
    objFeature.m_funSet(DecodeNumber(spanBuffer));
}

}  // namespace producer
