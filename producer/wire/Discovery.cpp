#include "producer/wire/Discovery.h"

#include <algorithm>
#include <utility>

#include "gev/Bootstrap.h"
#include "gev/GvcpRegister.h"
#include "producer/ProducerError.h"
#include "producer/wire/AdapterSocket.h"
#include "producer/wire/BroadcastLine.h"
#include "producer/wire/DiscoveryAnswers.h"
#include "producer/wire/HearingAdvice.h"
#include "producer/wire/RequestID.h"

namespace producer {

namespace {

using std::chrono::milliseconds;

constexpr int kQuestions = 3;
constexpr milliseconds kAtOnce{5};                 // of an update without time
constexpr milliseconds kAtOnceWithoutAddress{25};  // the same, where it has to tell who is there
constexpr milliseconds kLeastCompleteWindow{50};   // under it cameras hardly have the time to answer

/// The time that one update has.
struct WINDOW {
    Clock::time_point Start = Clock::now();
    Clock::duration Length{};
    bool MayBeComplete = false;  // long enough to say that a camera isn't there

    [[nodiscard]] Clock::time_point GetEnd() const { return Start + Length; }
    /// The questions go out in the first half.
    [[nodiscard]] Clock::time_point GetQuestion(int i) const { return Start + Length * i / (2 * (kQuestions - 1)); }
    /// From here on even the last question has had time to be answered in.
    [[nodiscard]] Clock::time_point GetCompletion() const { return Start + Length * 3 / 4; }
};

WINDOW MakeWindow(const std::optional<ADAPTER>& objAdapter, milliseconds objTimeout) {
    WINDOW objWindow;
    objWindow.Length = std::clamp(objTimeout, milliseconds::zero(), kLongestDiscovery);
    objWindow.MayBeComplete = objTimeout >= kLeastCompleteWindow;
    const bool bOnlyAtOnce = objTimeout <= milliseconds::zero();
    if (bOnlyAtOnce && objAdapter && objAdapter->Addresses.empty()) {
        // Such an adapter gets no other updates: the few milliseconds are all that its cameras are given.
        objWindow.Length = objAdapter->HasLink ? kAtOnceWithoutAddress : milliseconds::zero();
        objWindow.MayBeComplete = true;
    } else if (bOnlyAtOnce && objAdapter) {
        objWindow.Length = kAtOnce;
    }
    return objWindow;
}

/// One update of an adapter that is there.
class CDiscoveryRun {
public:
    CDiscoveryRun(const ADAPTER& objAdapter, bool bDirected)
        : m_objAdapter(objAdapter),
          m_bDirected(bDirected),
          m_objLine(objAdapter),
          m_objAnswers(objAdapter, kMostDevices) {}

    /// @return false when it was stopped before the end of the window.
    bool Run(const WINDOW& objWindow, const CWakeSocket& objWake) {
        for (int i = 0; i < kQuestions; ++i) {
            Ask();
            const auto objEnd = i + 1 < kQuestions ? objWindow.GetQuestion(i + 1) : objWindow.GetEnd();
            if (!m_objLine.Listen(objEnd, &objWake, [this](const auto& objHeard) { return Hear(objHeard); })) {
                return false;
            }
        }
        return true;
    }

    void FillIn(DISCOVERY_RESULT& objResult) const {
        objResult.Devices = m_objAnswers.MakeList();
        objResult.RefusedAnswers = m_nRefused + m_objAnswers.GetRefused() + m_objLine.GetRefused();
        objResult.SurplusDevices = m_objAnswers.GetSurplus();
        objResult.Advice =
            MakeHearingAdvice(m_objAdapter, m_bSent ? 0 : m_nSendError, m_objLine.GetPacketSocketError());
    }

    /// @return whether at least one question left.
    [[nodiscard]] bool HasSent() const noexcept { return m_bSent; }

private:
    void Ask() {
        gev::GvcpBuffer arrBuffer;
        const auto objQuestion =
            gev::EncodeCommand(arrBuffer, gev::EGvcpCommand::Discovery, kBroadcastFlags, m_nDiscoveryID);
        m_nSendError = m_objLine.SendToAll(objQuestion, m_bDirected);
        m_bSent = m_bSent || m_nSendError == 0;
        for (const std::uint32_t nAddress : m_objAnswers.GetUnanswered()) {
            AskPrivilege(nAddress);
        }
    }

    void AskPrivilege(std::uint32_t nAddress) {
        gev::GvcpBuffer arrBuffer;
        const std::uint32_t nRegister = gev::bootstrap::kControlChannelPrivilege.Address;
        m_objLine.SendTo(nAddress, gev::EncodeReadReg(arrBuffer, m_nPrivilegeID, std::span(&nRegister, 1)));
    }

    bool Hear(const HEARD_ACKNOWLEDGE& objHeard) {
        const auto& objHeader = objHeard.Header;
        gev::DISCOVERY_RECORD objRecord;
        if (objHeader.Command == gev::EGvcpCommand::Discovery && objHeader.AckID == m_nDiscoveryID &&
            objHeader.Status == gev::EGvcpStatus::Success &&
            gev::DecodeDiscoveryAck(objHeard.Payload, objRecord) == gev::EGvcpStatus::Success) {
            if (const std::uint32_t nAddress = m_objAnswers.AddRecord(objRecord); nAddress != 0) {
                AskPrivilege(nAddress);
            }
        } else if (objHeader.Command == gev::EGvcpCommand::ReadReg && objHeader.AckID == m_nPrivilegeID) {
            m_objAnswers.AddPrivilege(objHeard.Source, objHeader.Status, objHeard.Payload);
        } else {
            ++m_nRefused;
        }
        return true;
    }

    const ADAPTER& m_objAdapter;
    const bool m_bDirected;
    CBroadcastLine m_objLine;
    CDiscoveryAnswers m_objAnswers;
    const std::uint16_t m_nDiscoveryID = TakeRequestID();
    const std::uint16_t m_nPrivilegeID = TakeRequestID();
    std::uint64_t m_nRefused = 0;
    int m_nSendError = 0;
    bool m_bSent = false;
};

/// An adapter that went down or lost its link while it listened may have cameras that it didn't hear.
bool IsUnchanged(const ADAPTER& objBefore) {
    const auto objNow = FindAdapter(objBefore.Name);
    return objNow && objNow->Index == objBefore.Index && objNow->HasLink == objBefore.HasLink;
}

}  // namespace

/// Lets Stop reach the update under way, and this one alone.
class CDiscovery::CRunning {
public:
    explicit CRunning(CDiscovery& objDiscovery) : m_objDiscovery(objDiscovery) {
        const std::lock_guard objLock(m_objDiscovery.m_mtxStop);
        m_objDiscovery.m_objWake.Reset();
        m_objDiscovery.m_bRunning = true;
    }
    ~CRunning() {
        const std::lock_guard objLock(m_objDiscovery.m_mtxStop);
        m_objDiscovery.m_bRunning = false;
    }
    CRunning(const CRunning&) = delete;
    CRunning& operator=(const CRunning&) = delete;

private:
    CDiscovery& m_objDiscovery;
};

CDiscovery::CDiscovery(std::string strAdapter) : m_strAdapter(std::move(strAdapter)) {}

CDiscovery::~CDiscovery() = default;

DISCOVERY_RESULT CDiscovery::DoUpdate(DISCOVERY_MODE eMode, milliseconds objTimeout) {
    const std::lock_guard objLock(m_mtxUpdate);
    const CRunning objRunning(*this);

    DISCOVERY_RESULT objResult;
    WINDOW objWindow = MakeWindow(std::nullopt, objTimeout);
    bool bHeardAll = false;
    try {
        objResult.Adapter = FindAdapter(m_strAdapter);
        objWindow = MakeWindow(objResult.Adapter, objTimeout);
        bHeardAll = objWindow.MayBeComplete;
        if (objResult.Adapter) {
            CDiscoveryRun objRun(*objResult.Adapter, eMode == DISCOVERY_MODE::DirectedSubnet);
            const bool bWhole = objRun.Run(objWindow, m_objWake) || Clock::now() >= objWindow.GetCompletion();
            objRun.FillIn(objResult);
            bHeardAll = bHeardAll && bWhole && objRun.HasSent() && IsUnchanged(*objResult.Adapter);
        } else {
            objResult.Advice = m_strAdapter + " is gone or not up: plug it in, or set it up.";
        }
    } catch (const CProducerError& objError) {
        bHeardAll = false;  // the adapter went while the sockets were made, or there are no sockets left
        objResult.Advice = objError.what();
    }
    // An adapter that is gone or fails at once takes its time all the same: the first update that ends ends the
    // others'.
    if (!objResult.Adapter || !bHeardAll) {
        const bool bStopped = WaitReadable({m_objWake.GetDescriptor()}, objWindow.GetEnd());
        bHeardAll = bHeardAll && (!bStopped || Clock::now() >= objWindow.GetCompletion());
    }
    objResult.End = bHeardAll ? DISCOVERY_END::Complete : DISCOVERY_END::CutShort;
    return objResult;
}

void CDiscovery::Stop() noexcept {
    const std::lock_guard objLock(m_mtxStop);
    if (m_bRunning) {
        m_objWake.Signal();
    }
}

bool MergeDevices(std::vector<DISCOVERED_DEVICE>& vecDevices, const DISCOVERY_RESULT& objResult) {
    std::vector<DISCOVERED_DEVICE> vecMerged = objResult.Devices;
    if (objResult.End == DISCOVERY_END::CutShort) {
        // Both are in the order of their MACs; of two with one MAC the new one comes first.
        const auto isBefore = [](const auto& objOne, const auto& objOther) { return objOne.Mac < objOther.Mac; };
        vecMerged.clear();
        std::set_union(objResult.Devices.begin(), objResult.Devices.end(), vecDevices.begin(), vecDevices.end(),
                       std::back_inserter(vecMerged), isBefore);
        vecMerged.resize(std::min(vecMerged.size(), kMostDevices));
    }
    const bool bChanged = vecMerged != vecDevices;
    vecDevices = std::move(vecMerged);
    return bChanged;
}

}  // namespace producer
