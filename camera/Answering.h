#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <span>

#include "camera/Device.h"
#include "camera/Faults.h"
#include "gev/GvcpHeader.h"

namespace camera {

/// A UDP socket of another, in host order.
struct ENDPOINT {
    std::uint32_t Address = 0;
    std::uint16_t Port = 0;

    friend bool operator==(const ENDPOINT&, const ENDPOINT&) = default;
};

/// What carries a camera's datagrams away.
class IOutlet {
public:
    virtual ~IOutlet() = default;
    /// The datagram is good during the call. What can't be sent is lost.
    virtual void Send(const ENDPOINT& objTo, std::span<const std::byte> arrDatagram) = 0;
};

/// The last stage of every answer: spoils it as the faults say, and holds it back if it is to be late. Allocates
/// nothing. Not for two threads at once.
class CAnswering {
public:
    /// @param objOutlet  must outlive this
    CAnswering(IOutlet& objOutlet, std::uint32_t nSeed) : m_objOutlet(objOutlet), m_objRandom(nSeed) {}

    /// What is still held back is dropped, and a silence ends.
    void SetFaults(const FAULTS& objFaults, TIME tNow);

    /// @param arrDatagram  an acknowledge; an empty one is nobody's answer
    /// @param nDelay       that is wanted, beside what the faults add
    void Send(const ENDPOINT& objTo, std::span<const std::byte> arrDatagram, TIME tNow,
              std::chrono::milliseconds nDelay = {});

    /// Sends nothing any more, also of what is held back, until the faults are set again.
    void Mute();

    /// Sends what is due.
    void Advance(TIME tNow);
    /// When Advance has something to do next.
    [[nodiscard]] std::optional<TIME> NextTime() const;

    /// A number from 0 to nMost.
    std::uint32_t Random(std::uint32_t nMost);

private:
    struct HELD_BACK {
        TIME Due;
        ENDPOINT To;
        std::size_t Length;  // 0: this place is free
        gev::GvcpBuffer Datagram;
    };

    [[nodiscard]] std::span<const std::byte> Spoil(std::span<const std::byte> arrDatagram, gev::GvcpBuffer& arrBuffer);
    void HoldBack(const ENDPOINT& objTo, std::span<const std::byte> arrDatagram, TIME tDue);
    void SendUnwanted();

    IOutlet& m_objOutlet;
    std::minstd_rand m_objRandom;
    FAULTS m_objFaults;
    bool m_bMute = false;
    std::array<HELD_BACK, 32> m_arrHeldBack{};  // an answer that finds no place is lost
    std::optional<ENDPOINT> m_objLastAsker;     // of the flood
    TIME m_tNextUnwanted{};
};

}  // namespace camera
