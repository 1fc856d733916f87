#include "producer/modules/DeviceReply.h"

#include <span>
#include <utility>
#include <vector>

#include "gev/GvcpDiscovery.h"
#include "producer/ProducerError.h"
#include "producer/wire/DiscoveryAnswers.h"
#include "support/Address.h"

namespace producer {

namespace {

constexpr std::size_t kAcknowledgeHeader = 8;
constexpr std::size_t kAccessStatus = 16;  // the low byte first, as told with DISCOVERY_REPLY

}  // namespace

DISCOVERED_DEVICE ReadDeviceReply(const DISCOVERY_REPLY& arrReply, std::uint32_t nAddress, const ADAPTER& objAdapter) {
    gev::DISCOVERY_RECORD objRecord;
    CDiscoveryAnswers objAnswers(objAdapter, 1);
    std::vector<DISCOVERED_DEVICE> vecDevice;
    if (gev::DecodeDiscoveryAck(std::span(arrReply).subspan(kAcknowledgeHeader), objRecord) ==
        gev::EGvcpStatus::Success) {
        objRecord.IP = nAddress;
        objAnswers.AddRecord(objRecord);
        vecDevice = objAnswers.MakeList();
    }
    if (vecDevice.empty()) {
        throw CProducerError(GC_ERR_IO, "what answers at " + IPToString(nAddress) + " is no GigE Vision camera");
    }
    DISCOVERED_DEVICE objDevice = std::move(vecDevice.front());
    objDevice.AccessStatus = std::to_integer<DEVICE_ACCESS_STATUS>(arrReply[kAccessStatus]);
    return objDevice;
}

}  // namespace producer
