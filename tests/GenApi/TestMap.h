#pragma once

#include <string>

#include "GenApi/NodeMapRef.h"
#include "GenApi/Pointer.h"
#include "tests/GenApi/MemoryPort.h"

/// A node map of some nodes written into a test, on a port in memory. The port node `Device` is there already.
class CTestMap {
public:
    explicit CTestMap(const std::string& strNodes, bool bConnect = true) {
        Map._LoadXMLFromString(Wrap(strNodes));
        if (bConnect) {
            Map._Connect(&Port, "Device");
        }
    }

    static std::string Wrap(const std::string& strNodes) {
        return "<RegisterDescription ModelName=\"Model\" VendorName=\"Vendor\" SchemaMajorVersion=\"1\" "
               "SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\">" +
               strNodes + "<Port Name=\"Device\"/></RegisterDescription>";
    }

    GenApi_3_0::INode& Node(const char* pName) { return *GenApi_3_0::CNodePtr(Map._GetNode(pName)); }
    GenApi_3_0::IInteger& Integer(const char* pName) { return As<GenApi_3_0::IInteger>(pName); }
    GenApi_3_0::IFloat& Float(const char* pName) { return As<GenApi_3_0::IFloat>(pName); }
    GenApi_3_0::IBoolean& Boolean(const char* pName) { return As<GenApi_3_0::IBoolean>(pName); }
    GenApi_3_0::IEnumeration& Enumeration(const char* pName) { return As<GenApi_3_0::IEnumeration>(pName); }
    GenApi_3_0::ICommand& Command(const char* pName) { return As<GenApi_3_0::ICommand>(pName); }
    GenApi_3_0::IString& String(const char* pName) { return As<GenApi_3_0::IString>(pName); }
    GenApi_3_0::IRegister& Register(const char* pName) { return As<GenApi_3_0::IRegister>(pName); }
    GenApi_3_0::IValue& Value(const char* pName) { return As<GenApi_3_0::IValue>(pName); }
    GenApi_3_0::EAccessMode Access(const char* pName) { return Node(pName).GetAccessMode(); }

    CMemoryPort Port;
    GenApi_3_0::CNodeMapRef Map;

private:
    template <class T>
    T& As(const char* pName) {
        return *GenApi_3_0::CPointer<T>(Map._GetNode(pName));
    }
};

/// An IntReg of 4 bytes, little-endian, readable and writable.
inline std::string Reg(const std::string& strName, int nAddress, const std::string& strMore = {}) {
    return "<IntReg Name=\"" + strName + "\"><Address>" + std::to_string(nAddress) +
           "</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>" + strMore +
           "<Endianess>LittleEndian</Endianess></IntReg>";
}

/// A register node `R` of any kind at the address 16.
inline std::string RegisterOfKind(const std::string& strKind, int nLength, const std::string& strMore) {
    return "<" + strKind + " Name='R'><Address>0x10</Address><Length>" + std::to_string(nLength) +
           "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>" + strMore + "</" + strKind + ">";
}
