// A conversation with a camera: datagrams of anything from two hosts, with time between them. The camera may answer or
// not; it stays within its bounds, and still knows who it is, also after a restart.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "tests/camera/EngineOnTable.h"

namespace {

constexpr std::size_t kHeader = 4;          // of each step: who and where to, pause, length in two bytes
constexpr std::size_t kMostAnswers = 2000;  // to one datagram, with all that has become due

void Require(bool bHolds) {
    if (!bHolds) {
        std::abort();
    }
}

void Step(CEngineOnTable& objTable, std::uint8_t nWho, std::uint8_t nPause, std::span<const std::byte> arrDatagram) {
    const camera::ENDPOINT objFrom = (nWho & 1) != 0 ? camera::ENDPOINT{0xC0A80001, 5} : CEngineOnTable::kHost;
    objTable.Pass(std::chrono::milliseconds(nPause * 8));
    if ((nWho & 4) != 0) {
        objTable.Engine.TellEvent({nPause % camera::address::kEventCount, nPause > 100, nWho, nPause, nPause},
                                  objTable.Now);
    }
    objTable.Ask(arrDatagram, objFrom, (nWho & 2) != 0 ? 0xFFFFFFFF : 0);
    Require(objTable.Answers.size() < kMostAnswers);
    for (const CEngineOnTable::ANSWER& objAnswer : objTable.Answers) {
        Require(objAnswer.Payload.size() <= gev::kGvcpLongestPayload && objAnswer.To.Address != 0);
    }
}

}  // namespace

// NOLINTNEXTLINE(readability-identifier-naming): the name that the fuzzer calls
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    CEngineOnTable objTable;
    objTable.TakeControl();
    std::span arrLeft = std::as_bytes(std::span(pData, nSize));
    while (arrLeft.size() >= kHeader) {
        const auto nLength = std::min<std::size_t>(gev::Get16(arrLeft, 2), arrLeft.size() - kHeader);
        Step(objTable, std::to_integer<std::uint8_t>(arrLeft[0]), std::to_integer<std::uint8_t>(arrLeft[1]),
             arrLeft.subspan(kHeader, nLength));
        arrLeft = arrLeft.subspan(kHeader + nLength);
    }
    const camera::CRegisterSpace& objRegisters = objTable.Engine.GetDevice().Registers();
    Require(objRegisters.Get(0x000C) == CEngineOnTable::kMAC.GetLow());
    Require(objRegisters.Get(0xA110) + objRegisters.Get(0xA118) <= 1280);

    // Whatever hosts wrote, a camera comes up with what was kept of it.
    const camera::CAMERA_STATE objState = objTable.Engine.GetDevice().GetState();
    auto objConfiguration = CEngineOnTable::Configure({});
    objConfiguration.State = camera::FormatState(objState);
    Require(CEngineOnTable(objConfiguration).Engine.GetDevice().GetState() == objState);
    return 0;
}
