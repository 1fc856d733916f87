#pragma once

#include <cstdint>

#include "GenApi/Port.h"
#include "GenTL/GenTL.h"

class CGenTLLib;

/// The registers of one module of a producer, as a node map sees them.
///
/// Owned by the analyzer whose node map it is connected to; owns neither the library nor the handle. No state: what
/// serialises the calls is the lock of the node map.
class CPort : public GenApi_3_0::IPort {
public:
    CPort(CGenTLLib* pLib, PORT_HANDLE hPort) : m_hPort(hPort), m_pLib(pLib) {}

    /// How many bytes the producer says it has moved is not looked at.
    /// @throws CZrException  the producer refuses
    void Read(void* pBuffer, std::int64_t Address, std::int64_t Length) override;
    void Write(const void* pBuffer, std::int64_t Address, std::int64_t Length) override;

    /// Always RW, whatever the producer says of the port: each access shows by itself whether it is allowed.
    GenApi_3_0::EAccessMode GetAccessMode() const override { return GenApi_3_0::RW; }

private:
    PORT_HANDLE m_hPort;
    CGenTLLib* m_pLib;
};
