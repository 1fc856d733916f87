#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace camera {

/// The network adapter that a camera owns, as the kernel's routing socket shows and changes it.
///
/// Belongs to the network namespace of the thread that made it, and stays there whichever thread calls. Not for two
/// threads at once. Addresses are in host order, first octet highest.
class CAdapterSocket {
public:
    /// Switches the adapter on if it is off.
    /// @throws std::system_error  with the adapter's name: there is none of that name, or this process may not change
    /// it
    explicit CAdapterSocket(std::string strName);
    ~CAdapterSocket();
    CAdapterSocket(const CAdapterSocket&) = delete;
    CAdapterSocket& operator=(const CAdapterSocket&) = delete;

    [[nodiscard]] const std::string& GetName() const { return m_strName; }
    [[nodiscard]] int GetIndex() const { return m_nIndex; }
    [[nodiscard]] const std::array<std::uint8_t, 6>& GetMAC() const { return m_arrMAC; }
    /// Bits per second in millions; 1000 where the adapter doesn't say, as virtual ones don't.
    [[nodiscard]] std::uint32_t GetLinkSpeed() const { return m_nLinkSpeed; }

    /// @throws std::system_error  with the adapter's name and no_such_device: it has gone from the namespace
    void RequirePresence() const;

    /// Takes every IPv4 address off the adapter. The kernel drops the routes that hang on them.
    /// @throws std::system_error
    void RemoveAddresses();

    /// Gives the adapter this address alone, with the broadcast address that belongs to it. The kernel makes the route
    /// into its subnet.
    /// @param nMask  ones, then zeros
    /// @throws std::system_error
    void SetAddress(std::uint32_t nAddress, std::uint32_t nMask);

private:
    std::string m_strName;
    int m_nSocket = -1;
    int m_nIndex = 0;
    std::array<std::uint8_t, 6> m_arrMAC{};
    std::uint32_t m_nLinkSpeed = 0;
};

}  // namespace camera
