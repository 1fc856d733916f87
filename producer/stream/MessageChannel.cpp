#include "producer/stream/MessageChannel.h"

#include <array>
#include <optional>
#include <utility>

#include "gev/Bootstrap.h"
#include "producer/ProducerError.h"

namespace producer {

using namespace gev::bootstrap;

namespace {

constexpr std::chrono::seconds kLongestOpening{4};  // however much patience the camera asks for
constexpr std::chrono::seconds kLongestClosing{1};

}  // namespace

CMessageChannel::CMessageChannel(CControlChannel& objChannel, CEventMessages::EventCallback funEvent)
    : m_objChannel(objChannel), m_objMessages(std::move(funEvent)), m_objSocket(objChannel.GetAdapter()) {
    if (!m_objThread.Start(this, &CMessageChannel::RunThread, kPriorityTimeCritical)) {
        throw CProducerError(GC_ERR_RESOURCE_EXHAUSTED,
                             "the system has no thread left to receive a camera's events on");
    }
    try {
        const auto objDeadline = Clock::now() + kLongestOpening;
        m_objChannel.DoWriteRegister(kMessageChannelDestination.Address, m_objChannel.GetLocalAddress(), objDeadline);
        m_objChannel.DoWriteRegister(kMessageChannelPort.Address, m_objSocket.GetLocalPort(), objDeadline);
    } catch (...) {
        Close();  // the camera may have opened it, and the answer is what was lost
        throw;
    }
}

CMessageChannel::~CMessageChannel() {
    Close();
}

void CMessageChannel::Close() noexcept {
    try {
        m_objChannel.DoWriteRegister(kMessageChannelPort.Address, 0, Clock::now() + kLongestClosing);
    } catch (const std::exception&) {
        // A camera that doesn't answer closes its channels by itself.
    }
    m_bStop = true;
    m_objWake.Signal();
    m_objThread.Join();
}

std::uint32_t CMessageChannel::RunThread(void* pArg) noexcept {
    static_cast<CMessageChannel*>(pArg)->Run();
    return 0;
}

void CMessageChannel::Run() {
    std::array<std::byte, gev::kGvcpDatagramSize> arrBuffer{};
    while (!m_bStop) {
        if (!WaitReadable({m_objSocket.GetDescriptor(), m_objWake.GetDescriptor()},
                          Clock::now() + std::chrono::hours(1))) {
            continue;
        }
        std::optional<RECEIVED_DATAGRAM> objDatagram;
        while (!m_bStop && (objDatagram = m_objSocket.Receive(arrBuffer))) {
            if (objDatagram->Source != m_objChannel.GetCameraAddress()) {
                continue;
            }
            gev::GvcpBuffer arrRoom;
            const auto spanAnswer =
                m_objMessages.Take(objDatagram->Payload, objDatagram->SourcePort, Clock::now(), arrRoom);
            if (!spanAnswer.empty()) {
                m_objSocket.SendTo(objDatagram->Source, objDatagram->SourcePort, spanAnswer);
            }
        }
    }
}

}  // namespace producer
