#include "producer/stream/Acquisition.h"

#include "gev/Bootstrap.h"
#include "gev/GvcpResend.h"
#include "producer/ProducerError.h"
#include "producer/stream/PacketSize.h"
#include "support/Address.h"

namespace producer {

using namespace gev::bootstrap;

namespace {

constexpr std::size_t kProbeBuffer = std::size_t{1} << 20U;
constexpr std::chrono::seconds kLongestOpening{4};  // of a stream channel, however much patience the camera asks for
constexpr std::chrono::seconds kLongestClosing{1};

void RequireControl(const CControlChannel& objChannel) {
    if (objChannel.GetAccess() == CONTROL_ACCESS::ReadOnly) {
        throw CProducerError(GC_ERR_ACCESS_DENIED, IPToString(objChannel.GetCameraAddress()) +
                                                       " was opened for reading only: a stream needs control");
    }
}

void PointChannelTo(CControlChannel& objChannel, const CStreamSocket& objSocket, Clock::time_point objDeadline) {
    objChannel.DoWriteRegister(kStreamChannelDestination.Address, objChannel.GetLocalAddress(), objDeadline);
    objChannel.DoWriteRegister(kStreamChannelPort.Address, objSocket.GetLocalPort(), objDeadline);
}

void CloseChannelOf(CControlChannel& objChannel) noexcept {
    try {
        objChannel.DoWriteRegister(kStreamChannelPort.Address, 0, Clock::now() + kLongestClosing);
    } catch (const std::exception&) {
        // A camera that doesn't answer closes its channels by itself.
    }
}

std::uint64_t ReadTickFrequency(CControlChannel& objChannel, Clock::time_point objDeadline) {
    try {
        const std::uint64_t nHigh = objChannel.DoReadRegister(kTimestampTickFrequencyHigh.Address, objDeadline);
        return nHigh << 32 | objChannel.DoReadRegister(kTimestampTickFrequencyLow.Address, objDeadline);
    } catch (const CProducerError&) {
        return 0;  // a camera without the registers still sends images
    }
}

}  // namespace

CAcquisition::CAcquisition(CControlChannel& objChannel, IBlockSink& objSink, const ACQUISITION_SETTINGS& objSettings)
    : m_objChannel(objChannel),
      m_objSink(objSink),
      m_objSettings(objSettings.Reassembly),
      m_objSocket(objChannel.GetAdapter(), objChannel.GetLocalAddress(), objChannel.GetCameraAddress(),
                  objSettings.ReceiveBuffer) {
    RequireControl(objChannel);
    const auto objDeadline = Clock::now() + kLongestOpening;
    try {
        OpenChannel(objSettings.ProbePacketSize, objDeadline);
    } catch (const CProducerError& objError) {
        const bool bLate = Clock::now() >= objDeadline;
        CloseChannelOf(m_objChannel);
        throw bLate
            ? CProducerError(objError.GetCode(), "the camera's stream channel couldn't be opened within " +
                                                     std::to_string(kLongestOpening.count()) + " s: " + objError.what())
            : objError;
    } catch (...) {
        CloseChannelOf(m_objChannel);
        throw;
    }
}

CAcquisition::~CAcquisition() {
    Stop(false);
}

void CAcquisition::OpenChannel(bool bProbeSize, Clock::time_point objDeadline) {
    m_objFacts.TickFrequency = ReadTickFrequency(m_objChannel, objDeadline);
    const std::uint32_t nCapability = m_objChannel.DoReadRegister(kGvcpCapability.Address, objDeadline);
    m_objFacts.CanResend = (nCapability & kGvcpCapabilityPacketResend) != 0;
    m_objFacts.GrantedBuffer = m_objSocket.GetGrantedBuffer();
    m_objFacts.IsJoining = m_objSocket.IsJoining();
    m_objFacts.Port = m_objSocket.GetLocalPort();
    PointChannelTo(m_objChannel, m_objSocket, objDeadline);
    m_bOpen = true;
    ProbeChannel(bProbeSize, objDeadline);
    m_objFacts.PacketSize =
        m_objChannel.DoReadRegister(kStreamChannelPacketSize.Address, objDeadline) & kPacketSizeMask;
    m_objSettings.PacketSize = m_objFacts.PacketSize;
    m_objSettings.Resend = m_objSettings.Resend && m_objFacts.CanResend;
}

/// Finds the packet size if it is wanted, and whether the camera sends from the port that it tells: if so, it is heard
/// there alone. Test packets may be lost, so that without any the port stays in doubt.
void CAcquisition::ProbeChannel(bool bSize, Clock::time_point objDeadline) {
    std::uint32_t nPort = 0;
    try {
        nPort = m_objChannel.DoReadRegister(kStreamChannelSourcePort.Address, objDeadline) & kChannelPortMask;
    } catch (const CProducerError&) {
        // Older cameras have no such register.
    }
    m_objSocket.HearPort(static_cast<std::uint16_t>(nPort));
    const bool bHeard = bSize ? FindPacketSize(m_objChannel, m_objSocket, objDeadline).has_value()
                              : nPort != 0 && HearTestPacket(m_objChannel, m_objSocket, objDeadline);
    if (!bHeard && nPort != 0) {
        m_objSocket.AwaitPort(static_cast<std::uint16_t>(nPort));
    }
}

void CAcquisition::Run() {
    // A late test packet, whose header may be anything, would be taken for an image.
    constexpr int kMostCalls = 100;
    for (int i = 0; i < kMostCalls && !m_objSocket.Receive(std::chrono::milliseconds(1)).empty(); ++i) {
    }
    m_objReceiver.emplace(m_objSocket, static_cast<IBlockSink&>(*this), m_objSettings);
}

void CAcquisition::Stop(bool bDeliver) noexcept {
    if (m_bOpen) {
        m_bOpen = false;
        CloseChannelOf(m_objChannel);
    }
    if (m_objReceiver) {
        m_objReceiver->Stop(bDeliver);
    }
}

STREAM_STATISTICS CAcquisition::GetStatistics() const {
    return m_objReceiver ? m_objReceiver->GetStatistics() : STREAM_STATISTICS{};
}

void CAcquisition::SetResend(bool bResend) noexcept {
    if (m_objReceiver) {
        m_objReceiver->SetResend(bResend && m_objFacts.CanResend);
    }
}

void CAcquisition::RequestResend(std::uint64_t nBlockID, std::uint32_t nFirst, std::uint32_t nLast, bool bExtendedIDs) {
    gev::RESEND_COMMAND objCommand;
    objCommand.BlockID = nBlockID;
    objCommand.FirstPacketID = nFirst;
    objCommand.LastPacketID = nLast;
    objCommand.ExtendedIDs = bExtendedIDs;
    gev::GvcpBuffer arrBuffer;
    m_nRequestID = gev::NextRequestID(m_nRequestID);
    // A request can't name packets as far away as a leader may put them.
    if (const auto arrCommand = gev::EncodeResend(arrBuffer, m_nRequestID, objCommand); !arrCommand.empty()) {
        m_objChannel.DoSendUnanswered(arrCommand);
    }
}

std::uint32_t AskPacketSize(CControlChannel& objChannel) {
    RequireControl(objChannel);
    CStreamSocket objSocket(objChannel.GetAdapter(), objChannel.GetLocalAddress(), objChannel.GetCameraAddress(),
                            kProbeBuffer);
    std::optional<std::uint32_t> nFound;
    try {
        const auto objDeadline = Clock::now() + kLongestOpening;
        PointChannelTo(objChannel, objSocket, objDeadline);
        const std::uint32_t nBefore = objChannel.DoReadRegister(kStreamChannelPacketSize.Address, objDeadline);
        nFound = FindPacketSize(objChannel, objSocket, objDeadline);
        // It was only a question: what the consumer has set still holds.
        objChannel.DoWriteRegister(kStreamChannelPacketSize.Address, nBefore & ~kPacketSizeFireTestPacket,
                                   Clock::now() + kLongestClosing);
    } catch (...) {
        CloseChannelOf(objChannel);
        throw;
    }
    CloseChannelOf(objChannel);
    if (!nFound) {
        throw CProducerError(GC_ERR_NOT_AVAILABLE,
                             IPToString(objChannel.GetCameraAddress()) + " was asked for test packets to " +
                                 IPToString(objChannel.GetLocalAddress()) +
                                 ", and none came: check that no firewall drops UDP from the camera");
    }
    return *nFound;
}

}  // namespace producer
