#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "producer/modules/DescriptionWriter.h"
#include "producer/modules/Feature.h"

namespace producer {

/// The register space of one module: its features' registers and the description that tells of them, both out of one
/// table.
///
/// Owned by its module, which fills it in its constructor and calls Finish; from then on any thread may read and write,
/// and no lock is held while a feature's function runs.
class CRegisterMap {
public:
    explicit CRegisterMap(DESCRIPTION_HEADER objHeader) : m_objHeader(std::move(objHeader)) {}
    CRegisterMap(const CRegisterMap&) = delete;
    CRegisterMap& operator=(const CRegisterMap&) = delete;

    /// The features added from here on stand in this category of the description.
    void Category(std::string strCategory) { m_strCategory = std::move(strCategory); }

    CFeature& Integer(std::string strName, std::string strToolTip, std::function<CFeature::Number()> funGet);
    /// What is longer than a text register is cut, between two characters.
    CFeature& Text(std::string strName, std::string strToolTip, std::function<std::string()> funGet);
    CFeature& Enumeration(std::string strName, std::string strToolTip,
                          std::vector<std::pair<std::string, CFeature::Number>> vecEntry,
                          std::function<CFeature::Number()> funGet);
    CFeature& Command(std::string strName, std::string strToolTip, std::function<void()> funExecute);
    CFeature& Duration(std::string strName, std::string strToolTip, std::function<CFeature::Number()> funGet);

    /// Gives every register its address and writes the description.
    void Finish();

    const DESCRIPTION_HEADER& GetHeader() const { return m_objHeader; }
    const std::string& GetDescription() const { return m_strDescription; }
    std::uint64_t GetDescriptionAddress() const { return m_nDescriptionAddress; }

    /// Reads registers and the description, of any length at any address inside them.
    /// @throws CProducerError  GC_ERR_INVALID_ADDRESS where no register lies
    void Read(std::uint64_t nAddress, std::span<std::byte> spanBuffer) const;

    /// Writes one register, whole.
    /// @throws CProducerError  GC_ERR_INVALID_ADDRESS, GC_ERR_INVALID_PARAMETER for a part of a register,
    ///                         GC_ERR_ACCESS_DENIED for one that can't be written, GC_ERR_INVALID_VALUE
    void Write(std::uint64_t nAddress, std::span<const std::byte> spanBuffer) const;

private:
    enum class PART { Value, Max, Listed };
    struct REGISTER {
        const CFeature* pFeature;
        PART ePart;
        std::size_t nLength;
    };
    using REGISTERS = std::map<std::uint64_t, REGISTER>;

    CFeature& Add(FEATURE_KIND eKind, std::string strName, std::string strToolTip);
    REGISTERS::const_iterator FindRegister(std::uint64_t nAddress) const;
    std::size_t ReadDescription(std::uint64_t nAddress, std::span<std::byte> spanBuffer) const;
    static std::string ReadRegister(const REGISTER& objRegister);

    DESCRIPTION_HEADER m_objHeader;
    std::string m_strCategory;
    std::deque<CFeature> m_deqFeature;  // the registers below point into it
    REGISTERS m_mapRegister;            // by address
    std::uint64_t m_nDescriptionAddress = 0;
    std::string m_strDescription;
};

}  // namespace producer
