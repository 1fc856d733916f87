// What we encode, held against the decode of a protocol analyser that knows nothing of us.

#include <chrono>
#include <cstdlib>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "gev/BigEndian.h"
#include "gev/Bootstrap.h"
#include "gev/GvcpAction.h"
#include "gev/GvcpDiscovery.h"
#include "gev/GvcpEvent.h"
#include "gev/GvcpForceIP.h"
#include "gev/GvcpMemory.h"
#include "gev/GvcpRegister.h"
#include "gev/GvcpResend.h"
#include "tests/network/WireCapture.h"

namespace {

using gev::EGvcpCommand;
using gev::EGvcpStatus;

/// The fields that the analyser is asked for. event_timestamp is its name for a 64-bit block ID; a packet that it finds
/// malformed has the last one.
constexpr char kFieldNames[] =
    "cmd.command cmd.flags cmd.payloadlength cmd.req_id ack cmd.status cmd.discovery.devicemacaddress "
    "bootstrap.specversion.major bootstrap.specversion.minor bootstrap.devicemode.endianness "
    "bootstrap.devicemode.characterset bootstrap.ipconfig.lla bootstrap.ipconfig.dhcp "
    "bootstrap.ipconfig.persistentip bootstrap.currentip bootstrap.currentsubnetmask "
    "bootstrap.currentdefaultgateway bootstrap.manufacturername bootstrap.modelname "
    "bootstrap.deviceversion bootstrap.manufacturerspecificinfo bootstrap.serialnumber "
    "bootstrap.userdefinedname cmd.forceip.macaddress cmd.forceip.ip cmd.forceip.subnetmask "
    "cmd.forceip.defaultgateway cmd.readreg.bootstrapregister cmd.writereg.bootstrapregister "
    "bootstrap.custom.register.write bootstrap.custom.register.value bootstrap.heartbeattimeout "
    "bootstrap.control.controlaccess bootstrap.control.exclusiveaccess cmd.writereg.dataindex "
    "cmd.readmem.address cmd.readmem.bootstrapregister cmd.readmem.count cmd.readmem.data "
    "cmd.writemem.data cmd.writemem.dataindex ack.pendingack.timetocompletion cmd.event.id "
    "cmd.event.devicespecificid cmd.event.streamchannelindex cmd.event.blockid event_timestamp "
    "cmd.event.timestamp cmd.eventdata.data cmd.resend.streamchannelindex cmd.resend.blockid "
    "cmd.resend.firstpacketid cmd.resend.lastpacketid cmd.resend.extendedblockid cmd.action.devicekey "
    "cmd.action.groupkey cmd.action.groupmask _ws.malformed";

std::vector<std::string> Split(const std::string& strText, char nSeparator) {
    std::vector<std::string> vecParts;
    std::istringstream objText(strText);
    for (std::string strPart; std::getline(objText, strPart, nSeparator);) {
        vecParts.push_back(strPart);
    }
    return vecParts;
}

const std::vector<std::string> kFields = Split(kFieldNames, ' ');

class CTalk {
public:
    void Command(std::span<const std::byte> kDatagram, const std::string& strExpected) {
        Add(kDatagram, strExpected, true);
    }
    void Acknowledge(std::span<const std::byte> kDatagram, const std::string& strExpected) {
        Add(kDatagram, strExpected, false);
    }

    /// What the analyser sees of each packet: every field that it has, as "name=value ".
    std::vector<std::string> Analyse() const {
        std::string strArguments = "-T fields";
        for (const auto& strField : kFields) {
            strArguments += " -e " + GetFullName(strField);
        }
        return NameColumns(::Analyse(m_vecDatagrams, strArguments));
    }

    const std::vector<std::string>& GetExpected() const { return m_vecExpected; }

private:
    static std::string GetFullName(const std::string& strField) {
        return strField.starts_with("_ws") ? strField : "gvcp." + strField;
    }

    static std::vector<std::string> NameColumns(const std::vector<std::string>& vecLines) {
        std::vector<std::string> vecNamed;
        for (const auto& strLine : vecLines) {
            const auto vecColumns = Split(strLine, '\t');
            auto& strNamed = vecNamed.emplace_back();
            for (std::size_t i = 0; i < vecColumns.size(); ++i) {
                strNamed += vecColumns[i].empty() ? "" : kFields[i] + "=" + vecColumns[i] + " ";
            }
        }
        return vecNamed;
    }

    void Add(std::span<const std::byte> kDatagram, const std::string& strExpected, bool bCommand) {
        constexpr std::uint16_t kApplicationPort = 40000;
        std::vector<std::byte> vecFrame(42);
        gev::Put16(vecFrame, 12, 0x0800);  // IPv4
        gev::Put16(vecFrame, 14, 0x4500);
        gev::Put16(vecFrame, 16, static_cast<std::uint16_t>(28 + kDatagram.size()));
        gev::Put16(vecFrame, 22, 0x4011);                                // time to live, UDP
        gev::Put32(vecFrame, 26, bCommand ? 0x0A000001U : 0x0A000002U);  // source
        gev::Put32(vecFrame, 30, bCommand ? 0x0A000002U : 0x0A000001U);
        gev::Put16(vecFrame, 34, bCommand ? kApplicationPort : gev::kGvcpPort);
        gev::Put16(vecFrame, 36, bCommand ? gev::kGvcpPort : kApplicationPort);
        gev::Put16(vecFrame, 38, static_cast<std::uint16_t>(8 + kDatagram.size()));
        vecFrame.insert(vecFrame.end(), kDatagram.begin(), kDatagram.end());
        auto& objDatagram = m_vecDatagrams.emplace_back();
        objDatagram.Time = std::chrono::milliseconds(m_vecDatagrams.size());
        for (const std::byte nByte : vecFrame) {
            objDatagram.Frame.push_back(std::to_integer<std::uint8_t>(nByte));
        }
        m_vecExpected.push_back(strExpected);
    }

    std::vector<CAPTURED_DATAGRAM> m_vecDatagrams;
    std::vector<std::string> m_vecExpected;
};

gev::DISCOVERY_RECORD MakeRecord() {
    gev::DISCOVERY_RECORD objRecord;
    objRecord.VersionMajor = 2;
    objRecord.VersionMinor = 1;
    objRecord.DeviceMode = gev::bootstrap::kDeviceModeBigEndian | gev::bootstrap::kDeviceModeUTF8;
    objRecord.MAC = gev::CMACAddress(0x025E1700ADEA);
    objRecord.CurrentIPConfiguration = gev::bootstrap::kIPConfigurationLinkLocal;
    objRecord.SupportedIPConfiguration = gev::bootstrap::kIPConfigurationPersistent;
    objRecord.IP = gev::MakeIPv4(10, 1, 2, 3);
    objRecord.SubnetMask = gev::MakeIPv4(255, 255, 0, 0);
    objRecord.Gateway = gev::MakeIPv4(10, 1, 0, 1);
    objRecord.ManufacturerName = gev::CFixedText<32>("manufacturer");
    objRecord.ModelName = gev::CFixedText<32>("model");
    objRecord.DeviceVersion = gev::CFixedText<32>("1.2.3");
    objRecord.ManufacturerInformation = gev::CFixedText<48>("information");
    objRecord.SerialNumber = gev::CFixedText<16>("serial");
    objRecord.UserDefinedName = gev::CFixedText<16>("left camera");
    return objRecord;
}

constexpr std::byte kData[] = {std::byte{0xDE}, std::byte{0xAD}, std::byte{0xBE}, std::byte{0xEF}};

void SayWhoIsThere(CTalk& objTalk) {
    gev::GvcpBuffer arrBuffer;
    objTalk.Command(gev::EncodeCommand(arrBuffer, EGvcpCommand::Discovery, 0x11, 1),
                    "cmd.command=0x0002 cmd.flags=0x11 cmd.payloadlength=0x0000 cmd.req_id=0x0001 ");
    objTalk.Acknowledge(gev::EncodeDiscoveryAck(arrBuffer, 1, MakeRecord()),
                        "cmd.payloadlength=0x00f8 cmd.req_id=0x0001 ack=0x0003 cmd.status=0x0000 "
                        "cmd.discovery.devicemacaddress=02:5e:17:00:ad:ea bootstrap.specversion.major=0x00000002 "
                        "bootstrap.specversion.minor=0x00000001 bootstrap.devicemode.endianness=1 "
                        "bootstrap.devicemode.characterset=0x00000001 bootstrap.ipconfig.lla=0,1 "
                        "bootstrap.ipconfig.dhcp=0,0 bootstrap.ipconfig.persistentip=1,0 bootstrap.currentip=10.1.2.3 "
                        "bootstrap.currentsubnetmask=255.255.0.0 bootstrap.currentdefaultgateway=10.1.0.1 "
                        "bootstrap.manufacturername=manufacturer bootstrap.modelname=model "
                        "bootstrap.deviceversion=1.2.3 bootstrap.manufacturerspecificinfo=information "
                        "bootstrap.serialnumber=serial bootstrap.userdefinedname=left camera ");
    objTalk.Command(gev::EncodeForceIP(arrBuffer, 2,
                                       {gev::CMACAddress(0x025E1700ADEA), gev::MakeIPv4(10, 1, 2, 3),
                                        gev::MakeIPv4(255, 255, 255, 0), gev::MakeIPv4(10, 1, 2, 1)},
                                       true),
                    "cmd.command=0x0004 cmd.flags=0x11 cmd.payloadlength=0x0038 cmd.req_id=0x0002 "
                    "cmd.forceip.macaddress=02:5e:17:00:ad:ea cmd.forceip.ip=10.1.2.3 "
                    "cmd.forceip.subnetmask=255.255.255.0 cmd.forceip.defaultgateway=10.1.2.1 ");
    objTalk.Acknowledge(gev::EncodeAcknowledge(arrBuffer, EGvcpCommand::ForceIP, 2, EGvcpStatus::Success),
                        "cmd.payloadlength=0x0000 cmd.req_id=0x0002 ack=0x0005 cmd.status=0x0000 ");
}

void SayRegisters(CTalk& objTalk) {
    gev::GvcpBuffer arrBuffer;
    const std::uint32_t arrAddresses[] = {0x0A00, 0x0938};
    objTalk.Command(gev::EncodeReadReg(arrBuffer, 3, arrAddresses),
                    "cmd.command=0x0080 cmd.flags=0x01 cmd.payloadlength=0x0008 cmd.req_id=0x0003 "
                    "cmd.readreg.bootstrapregister=0x00000a00,0x00000938 ");
    const std::uint32_t arrValues[] = {gev::bootstrap::kPrivilegeControl, 3000};
    objTalk.Acknowledge(gev::EncodeReadRegAck(arrBuffer, 3, arrValues),
                        "cmd.payloadlength=0x0008 cmd.req_id=0x0003 ack=0x0081 cmd.status=0x0000 "
                        "cmd.readreg.bootstrapregister=0x00000a00,0x00000938 bootstrap.heartbeattimeout=3000 "
                        "bootstrap.control.controlaccess=1 bootstrap.control.exclusiveaccess=0 ");
    const gev::REGISTER_WRITE arrWrites[] = {{0x0A00, gev::bootstrap::kPrivilegeExclusive}, {0xA004, 0x12345678}};
    objTalk.Command(gev::EncodeWriteReg(arrBuffer, 4, arrWrites),
                    "cmd.command=0x0082 cmd.flags=0x01 cmd.payloadlength=0x0010 cmd.req_id=0x0004 "
                    "cmd.writereg.bootstrapregister=0x00000a00 bootstrap.custom.register.write=0x0000a004 "
                    "bootstrap.custom.register.value=0x12345678 bootstrap.control.controlaccess=0 "
                    "bootstrap.control.exclusiveaccess=1 ");
    objTalk.Acknowledge(gev::EncodeWriteRegAck(arrBuffer, 4, 2),
                        "cmd.payloadlength=0x0004 cmd.req_id=0x0004 ack=0x0083 cmd.status=0x0000 "
                        "cmd.writereg.dataindex=0x0002 ");
}

void SayMemory(CTalk& objTalk) {
    gev::GvcpBuffer arrBuffer;
    objTalk.Command(gev::EncodeReadMem(arrBuffer, 5, {0x0200, 512}),
                    "cmd.command=0x0084 cmd.flags=0x01 cmd.payloadlength=0x0008 cmd.req_id=0x0005 "
                    "cmd.readmem.bootstrapregister=0x00000200 cmd.readmem.count=0x0200 ");
    objTalk.Acknowledge(gev::EncodePendingAck(arrBuffer, 5, 1500),
                        "cmd.payloadlength=0x0004 cmd.req_id=0x0005 ack=0x0089 cmd.status=0x0000 "
                        "ack.pendingack.timetocompletion=0x05dc ");
    objTalk.Acknowledge(gev::EncodeReadMemAck(arrBuffer, 5, {0xA000, kData}),
                        "cmd.payloadlength=0x0008 cmd.req_id=0x0005 ack=0x0085 cmd.status=0x0000 "
                        "cmd.readmem.address=0x0000a000 cmd.readmem.data=deadbeef ");
    objTalk.Command(gev::EncodeWriteMem(arrBuffer, 6, {0xA000, kData}),
                    "cmd.command=0x0086 cmd.flags=0x01 cmd.payloadlength=0x0008 cmd.req_id=0x0006 "
                    "cmd.writemem.data=deadbeef ");
    objTalk.Acknowledge(gev::EncodeWriteMemAck(arrBuffer, 6, 4),
                        "cmd.payloadlength=0x0004 cmd.req_id=0x0006 ack=0x0087 cmd.status=0x0000 "
                        "cmd.writemem.dataindex=0x0004 ");
    objTalk.Command(gev::EncodeReadMem(arrBuffer, 7, {0xB000, 4}),
                    "cmd.command=0x0084 cmd.flags=0x01 cmd.payloadlength=0x0008 cmd.req_id=0x0007 "
                    "bootstrap.custom.register.write=0x0000b000 cmd.readmem.count=0x0004 ");
    objTalk.Acknowledge(gev::EncodeAcknowledge(arrBuffer, EGvcpCommand::ReadMem, 7, EGvcpStatus::AccessDenied),
                        "cmd.payloadlength=0x0000 cmd.req_id=0x0007 ack=0x0085 cmd.status=0x8006 ");
}

void SayWhatHappens(CTalk& objTalk) {
    gev::GvcpBuffer arrBuffer;
    const gev::EVENT_ENTRY arrEvents[] = {{gev::kEventStartOfExposure, 0, 0x1234, 0x1122334455667788}};
    objTalk.Command(gev::EncodeEvent(arrBuffer, 8, arrEvents, false, true),
                    "cmd.command=0x00c0 cmd.flags=0x01 cmd.payloadlength=0x0010 cmd.req_id=0x0008 "
                    "cmd.event.id=0x0003 cmd.event.streamchannelindex=0x0000 cmd.event.blockid=0x1234 "
                    "cmd.event.timestamp=0x1122334455667788 ");
    objTalk.Command(gev::EncodeEvent(arrBuffer, 9, arrEvents, true, true),
                    "cmd.command=0x00c0 cmd.flags=0x11 cmd.payloadlength=0x0018 cmd.req_id=0x0009 "
                    "cmd.event.id=0x0003 cmd.event.streamchannelindex=0x0000 event_timestamp=0x0000000000001234 "
                    "cmd.event.timestamp=0x1122334455667788 ");
    objTalk.Command(gev::EncodeEventData(arrBuffer, 10, {0x9001, 1, 7, 9}, kData, false, true),
                    "cmd.command=0x00c2 cmd.flags=0x01 cmd.payloadlength=0x0014 cmd.req_id=0x000a "
                    "cmd.event.devicespecificid=0x9001 cmd.event.streamchannelindex=0x0001 cmd.event.blockid=0x0007 "
                    "cmd.event.timestamp=0x0000000000000009 cmd.eventdata.data=deadbeef ");
    objTalk.Command(gev::EncodeEventData(arrBuffer, 11, {0x9001, 1, 7, 9}, kData, true, true),
                    "cmd.command=0x00c2 cmd.flags=0x11 cmd.payloadlength=0x001c cmd.req_id=0x000b "
                    "cmd.event.devicespecificid=0x9001 cmd.event.streamchannelindex=0x0001 "
                    "event_timestamp=0x0000000000000007 cmd.event.timestamp=0x0000000000000009 "
                    "cmd.eventdata.data=deadbeef ");
    objTalk.Command(gev::EncodeResend(arrBuffer, 12, {0, 0x1234, 5, 0xABCDEF, false}),
                    "cmd.command=0x0040 cmd.flags=0x00 cmd.payloadlength=0x000c cmd.req_id=0x000c "
                    "cmd.resend.streamchannelindex=0x0000 cmd.resend.blockid=0x1234 "
                    "cmd.resend.firstpacketid=0x000005 cmd.resend.lastpacketid=0xabcdef ");
    objTalk.Command(gev::EncodeResend(arrBuffer, 13, {1, 0x123456789AB, 5, 0xABCDEF, true}),
                    "cmd.command=0x0040 cmd.flags=0x10 cmd.payloadlength=0x0014 cmd.req_id=0x000d "
                    "cmd.resend.streamchannelindex=0x0001 cmd.resend.firstpacketid=0x00000005 "
                    "cmd.resend.lastpacketid=0x00abcdef cmd.resend.extendedblockid=0x00000123456789ab ");
    objTalk.Command(gev::EncodeAction(arrBuffer, 14, {1, 2, 3}, true),
                    "cmd.command=0x0100 cmd.flags=0x01 cmd.payloadlength=0x000c cmd.req_id=0x000e "
                    "cmd.action.devicekey=0x00000001 cmd.action.groupkey=0x00000002 cmd.action.groupmask=0x00000003 ");
}

TEST(GvcpAnalyser, ReadsEveryMessageAsItWasMeant) {
    if (std::system("command -v tshark >/dev/null") != 0) {
        GTEST_SKIP() << "no protocol analyser is installed (package tshark)";
    }
    CTalk objTalk;
    SayWhoIsThere(objTalk);
    SayRegisters(objTalk);
    SayMemory(objTalk);
    SayWhatHappens(objTalk);
    EXPECT_EQ(objTalk.Analyse(), objTalk.GetExpected());
}

}  // namespace
