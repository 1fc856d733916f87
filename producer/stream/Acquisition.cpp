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

void RequireControl(const CControlChannel& objChannel) {
    if (objChannel.GetAccess() == CONTROL_ACCESS::ReadOnly) {
        throw CProducerError(GC_ERR_ACCESS_DENIED, IPToString(objChannel.GetCameraAddress()) +
                                                       " was opened for reading only: a stream needs control");
    }
}

void PointChannelTo(CControlChannel& objChannel, const CStreamSocket& objSocket) {
    objChannel.DoWriteRegister(kStreamChannelDestination.Address, objChannel.GetLocalAddress());
    objChannel.DoWriteRegister(kStreamChannelPort.Address, objSocket.GetLocalPort());
}

void CloseChannelOf(CControlChannel& objChannel) noexcept {
    try {
        objChannel.DoWriteRegister(kStreamChannelPort.Address, 0);
    } catch (const std::exception&) {
        // A camera that doesn't answer closes its channels by itself.
    }
}

std::uint64_t ReadTickFrequency(CControlChannel& objChannel) {
    try {
        const std::uint64_t nHigh = objChannel.DoReadRegister(kTimestampTickFrequencyHigh.Address);
        return nHigh << 32 | objChannel.DoReadRegister(kTimestampTickFrequencyLow.Address);
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
    try {
        OpenChannel(objSettings.ProbePacketSize);
    } catch (...) {
        CloseChannelOf(m_objChannel);
        throw;
    }
}

CAcquisition::~CAcquisition() {
    Stop(false);
}

void CAcquisition::OpenChannel(bool bProbe) {
    m_objFacts.TickFrequency = ReadTickFrequency(m_objChannel);
    m_objFacts.CanResend = (m_objChannel.DoReadRegister(kGvcpCapability.Address) & kGvcpCapabilityPacketResend) != 0;
    m_objFacts.GrantedBuffer = m_objSocket.GetGrantedBuffer();
    m_objFacts.IsJoining = m_objSocket.IsJoining();
    m_objFacts.Port = m_objSocket.GetLocalPort();
    PointChannelTo(m_objChannel, m_objSocket);
    m_bOpen = true;
    if (bProbe) {
        ProbeChannel();
    }
    m_objFacts.PacketSize = m_objChannel.DoReadRegister(kStreamChannelPacketSize.Address) & kPacketSizeMask;
    m_objSettings.PacketSize = m_objFacts.PacketSize;
    m_objSettings.Resend = m_objSettings.Resend && m_objFacts.CanResend;
}

/// Finds the packet size, and whether the camera sends from the port that it tells: if so, it is heard there alone.
void CAcquisition::ProbeChannel() {
    std::uint32_t nPort = 0;
    try {
        nPort = m_objChannel.DoReadRegister(kStreamChannelSourcePort.Address) & kChannelPortMask;
    } catch (const CProducerError&) {
        // Older cameras have no such register.
    }
    m_objSocket.HearPort(static_cast<std::uint16_t>(nPort));
    if (!FindPacketSize(m_objChannel, m_objSocket) && nPort != 0) {
        m_objSocket.HearPort(0);
    }
}

void CAcquisition::Run() {
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
    m_objChannel.DoSendUnanswered(gev::EncodeResend(arrBuffer, m_nRequestID, objCommand));
}

std::uint32_t AskPacketSize(CControlChannel& objChannel) {
    RequireControl(objChannel);
    CStreamSocket objSocket(objChannel.GetAdapter(), objChannel.GetLocalAddress(), objChannel.GetCameraAddress(),
                            kProbeBuffer);
    std::optional<std::uint32_t> nFound;
    try {
        PointChannelTo(objChannel, objSocket);
        nFound = FindPacketSize(objChannel, objSocket);
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
