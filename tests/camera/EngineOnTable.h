#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "camera/DescriptionMemory.h"
#include "camera/ProtocolEngine.h"
#include "gev/BigEndian.h"
#include "gev/GvcpMemory.h"
#include "gev/GvcpRegister.h"

/// A camera's protocol without a network, with a clock that stands until a test moves it. The camera is at 10.0.0.2/24
/// and has the MAC 02-00-00-12-34-56.
class CEngineOnTable : public camera::IAdapter, public camera::IOutlet, public camera::IStreaming {
public:
    struct ANSWER {
        camera::ENDPOINT To;
        gev::EGvcpStatus Status;
        std::uint16_t Code;  // as on the wire
        std::uint16_t ID;
        std::vector<std::byte> Payload;
    };

    static constexpr camera::ENDPOINT kHost{0x0A000001, 40000};
    static constexpr std::uint32_t kAddress = 0x0A000002;
    static constexpr gev::CMACAddress kMAC{0x020000123456};

    explicit CEngineOnTable(const camera::FAULTS& objFaults = {}) : CEngineOnTable(Configure(objFaults)) {}
    explicit CEngineOnTable(const camera::CAMERA_CONFIGURATION& objConfiguration)
        : Engine(objConfiguration, kMAC, 1000, *this, *this, *this, Now) {}

    static camera::CAMERA_CONFIGURATION Configure(const camera::FAULTS& objFaults) {
        camera::CAMERA_CONFIGURATION objConfiguration;
        objConfiguration.IP = camera::ParseIPSetting("10.0.0.2/24");
        objConfiguration.Faults = objFaults;
        static const auto pDescription =
            std::make_shared<const std::vector<std::byte>>(camera::PackDescription(objConfiguration.Model));
        objConfiguration.Description = pDescription;
        return objConfiguration;
    }

    void SetAddress(std::uint32_t nAddress, std::uint32_t /*nMask*/) override { Address = nAddress; }
    void RemoveAddresses() override { Address = 0; }
    void Send(const camera::ENDPOINT& objTo, std::span<const std::byte> arrDatagram) override {
        if (arrDatagram.size() < gev::kGvcpHeaderSize) {
            throw std::logic_error("less than a header was sent");
        }
        Answers.push_back({objTo,
                           static_cast<gev::EGvcpStatus>(gev::Get16(arrDatagram, 0)),
                           gev::Get16(arrDatagram, 2),
                           gev::Get16(arrDatagram, 6),
                           {arrDatagram.begin() + gev::kGvcpHeaderSize, arrDatagram.end()}});
    }

    [[nodiscard]] std::uint16_t GetPort() const override { return 50000; }
    void Open() override { Stream += "open "; }
    void Close() override { Stream += "close "; }
    void Start(const camera::STREAM_SETTINGS& objSettings) override { Note("start ", objSettings); }
    void Stop() override { Stream += "stop "; }
    void Change(const camera::STREAM_SETTINGS& objSettings) override { Settings = objSettings; }
    void Trigger(std::size_t nTrigger) override { Stream += "trigger" + std::to_string(nTrigger) + " "; }
    void SendTestPacket(const camera::STREAM_SETTINGS& objSettings) override { Note("test ", objSettings); }
    void Resend(const gev::RESEND_COMMAND& objCommand) override {
        Stream += "resend" + std::to_string(objCommand.BlockID) + " ";
    }
    void SetFaults(const camera::STREAM_FAULTS& /*objFaults*/) override {}

    void Pass(std::chrono::milliseconds nTime) {
        Now += nTime;
        Engine.Advance(Now);
    }

    /// Sends a datagram, and gives what was answered meanwhile.
    std::vector<ANSWER> Ask(std::span<const std::byte> arrDatagram, camera::ENDPOINT objFrom = kHost,
                            std::uint32_t nTo = 0) {
        Answers.clear();
        Engine.Receive(objFrom, nTo == 0 ? Address : nTo, arrDatagram, Now);
        return Answers;
    }

    /// The one answer that each of these gets.
    ANSWER Read(std::vector<std::uint32_t> vecAddress, camera::ENDPOINT objFrom = kHost) {
        return Only(Ask(gev::EncodeReadReg(Buffer, NextID(), vecAddress), objFrom));
    }
    ANSWER Write(std::vector<gev::REGISTER_WRITE> vecWrite, camera::ENDPOINT objFrom = kHost) {
        return Only(Ask(gev::EncodeWriteReg(Buffer, NextID(), vecWrite), objFrom));
    }
    ANSWER ReadMemory(std::uint32_t nAddress, std::uint16_t nCount) {
        return Only(Ask(gev::EncodeReadMem(Buffer, NextID(), {nAddress, nCount})));
    }
    ANSWER WriteMemory(std::uint32_t nAddress, std::span<const std::byte> arrData) {
        return Only(Ask(gev::EncodeWriteMem(Buffer, NextID(), {nAddress, arrData})));
    }
    std::uint32_t Value(std::uint32_t nAddress) { return gev::Get32(Read({nAddress}).Payload, 0); }
    void TakeControl(camera::ENDPOINT objFrom = kHost, std::uint32_t nPrivilege = 2) {
        if (Write({{0x0A00, nPrivilege}}, objFrom).Status != gev::EGvcpStatus::Success) {
            throw std::logic_error("no control");
        }
    }

    std::uint16_t NextID() { return ID = gev::NextRequestID(ID); }

    camera::TIME Now{std::chrono::hours(1)};
    std::uint32_t Address = 0;  // that the adapter has
    std::vector<ANSWER> Answers;
    std::string Stream;                // what the stream was told, in words
    camera::STREAM_SETTINGS Settings;  // with which
    gev::GvcpBuffer Buffer{};
    std::uint16_t ID = 0;
    camera::CProtocolEngine Engine;

private:
    void Note(const char* pWhat, const camera::STREAM_SETTINGS& objSettings) {
        Stream += pWhat;
        Settings = objSettings;
    }
    static ANSWER Only(const std::vector<ANSWER>& vecAnswer) {
        if (vecAnswer.size() != 1) {
            throw std::logic_error(std::to_string(vecAnswer.size()) + " answers instead of one");
        }
        return vecAnswer.front();
    }
};
