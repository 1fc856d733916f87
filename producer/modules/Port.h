#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "GenTL/GenTL.h"
#include "producer/modules/EventSource.h"
#include "producer/modules/HandleTable.h"
#include "producer/modules/InfoValue.h"

namespace producer {

/// What a port says of itself.
struct PORT_FACTS {
    std::string Id;  ///< of the module
    std::string Vendor;
    std::string Model;
    std::string Version;
    std::string Module;  ///< TLSystem, TLInterface, TLDevice, TLDataStream or Device, as the standard names them
    std::string Name;    ///< of the port node in the description
    bool IsLittleEndian = true;
    bool IsWritable = true;
};

/// Where one description of a port lies.
struct URL_FACTS {
    std::string Url;
    std::string FileName;
    URL_SCHEME_IDS Scheme = URL_SCHEME_LOCAL;
    std::uint64_t Address = 0;  ///< in the port's register space
    std::uint64_t Size = 0;     ///< bytes, as packed
    std::int32_t SchemaMajor = 1;
    std::int32_t SchemaMinor = 1;
};

/// Writes a URL in the one form that every consumer takes: `Local:NAME;ADDRESS;LENGTH?SchemaVersion=1.1.0`, the numbers
/// hexadecimal.
std::string WriteLocalUrl(const URL_FACTS& objFacts);

/// A register space that a handle names, with the events that may be registered on the same handle: a module, or the
/// camera behind one.
///
/// Any thread may call, also while another closes it.
class CPort : public CHandled {
public:
    /// @throws CProducerError  as the registers fail; partly filled then
    virtual void Read(std::uint64_t nAddress, std::span<std::byte> spanBuffer) = 0;
    virtual void Write(std::uint64_t nAddress, std::span<const std::byte> spanBuffer) = 0;
    virtual PORT_FACTS GetPortFacts() const = 0;

    /// The descriptions, the best first; never none.
    /// @throws CProducerError  GC_ERR_NOT_AVAILABLE and others, with the reason why there is none
    virtual std::vector<URL_FACTS> GetUrls() = 0;

    CEventSource& GetEvents() { return m_objEvents; }

    /// @throws CProducerError  GC_ERR_NOT_AVAILABLE for a command that isn't known
    CInfoValue GetPortInfo(PORT_INFO_CMD nCommand) const;
    /// @throws CProducerError  GC_ERR_INVALID_INDEX, GC_ERR_NOT_AVAILABLE
    CInfoValue GetUrlInfo(std::uint32_t nIndex, URL_INFO_CMD nCommand);

private:
    CEventSource m_objEvents;
};

}  // namespace producer
