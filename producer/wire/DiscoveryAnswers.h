#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "gev/GvcpDiscovery.h"
#include "gev/GvcpHeader.h"
#include "producer/wire/Adapter.h"
#include "producer/wire/DiscoveredDevice.h"

namespace producer {

/// Collects what cameras answer during one update and makes the list of it. Hostile answers cost bounded memory.
/// For one thread.
class CDiscoveryAnswers {
public:
    /// @param objAdapter  where the answers come in
    CDiscoveryAnswers(ADAPTER objAdapter, std::size_t nMostDevices);

    /// Takes a camera's record.
    /// @return an address to ask for its privilege now, which is told once for each, and for few of one MAC; 0 for
    /// none.
    std::uint32_t AddRecord(const gev::DISCOVERY_RECORD& objRecord);

    /// Takes an answer to the question for the privilege, whatever it says.
    void AddPrivilege(std::uint32_t nSource, gev::EGvcpStatus nStatus, std::span<const std::byte> objPayload);

    /// @return the addresses that were asked for their privilege and haven't answered.
    [[nodiscard]] std::vector<std::uint32_t> GetUnanswered() const;

    /// @return what was heard, in the order of the MACs.
    [[nodiscard]] std::vector<DISCOVERED_DEVICE> MakeList() const;

    /// @return answers that came when there was no room for another camera.
    [[nodiscard]] std::uint64_t GetSurplus() const noexcept { return m_nSurplus; }
    /// @return answers that no camera gives.
    [[nodiscard]] std::uint64_t GetRefused() const noexcept { return m_nRefused; }

private:
    struct HEARD {
        gev::DISCOVERY_RECORD Record;
        bool SharesMac = false;
        int Asked = 0;  // of its addresses for the privilege
    };

    [[nodiscard]] DISCOVERED_DEVICE MakeDevice(const HEARD& objHeard) const;

    const ADAPTER m_objAdapter;
    const std::size_t m_nMostDevices;
    std::unordered_map<std::uint64_t, HEARD> m_mapHeard;  // by MAC
    // By address, of those that were asked; unknown until they answer.
    std::unordered_map<std::uint32_t, DEVICE_ACCESS_STATUS> m_mapPrivileges;
    std::uint64_t m_nSurplus = 0;
    std::uint64_t m_nRefused = 0;
};

/// What the privilege register says to an application that doesn't hold it.
/// @param nStatus  of the answer; a camera that is held exclusively refuses it
DEVICE_ACCESS_STATUS GetAccessStatus(gev::EGvcpStatus nStatus, std::uint32_t nPrivilege);

}  // namespace producer
