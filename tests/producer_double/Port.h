#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/producer_double/Answering.h"
#include "tests/producer_double/Description.h"
#include "tests/producer_double/Monitor.h"
#include "tests/producer_double/ProducerControl.h"
#include "tests/producer_double/Registers.h"

namespace ProducerDouble {

/// A module's port: its registers, the features laid out in them, its description and its URLs.
///
/// Owned by its module and as long-lived. Control operations take the monitor's lock, the others expect it.
class CPort : public IPortControl {
public:
    /// @param strModuleKind  the standard's text for PORT_INFO_MODULE
    CPort(const MONITOR& objMonitor, std::string strId, std::string strModuleKind, std::string strPortName);

    IPortControl& AddInteger(std::string strName, std::int64_t nValue, RANGE objRange) override;
    using IPortControl::AddInteger;
    IPortControl& AddFloat(std::string strName, double nValue) override;
    IPortControl& AddText(std::string strName, std::string strValue, std::size_t nCapacity = 64) override;
    IPortControl& AddCommand(std::string strName) override;
    IPortControl& AddEnumeration(std::string strName, std::int64_t nValue,
                                 std::vector<std::pair<std::string, std::int64_t>> vecEntry) override;
    IPortControl& RemoveFeature(const std::string& strName) override;
    std::int64_t Integer(const std::string& strName) const override;
    IPortControl& SetInteger(const std::string& strName, std::int64_t nValue) override;
    IPortControl& SetText(const std::string& strName, std::string_view strValue) override;
    std::uint64_t AddressOf(const std::string& strName) const override;
    std::size_t Writes(const std::string& strName) const override;
    IPortControl& Describe(std::string strXml) override;
    IPortControl& DescribeAs(std::string strFileName, BYTES vecContent) override;
    IPortControl& Urls(std::vector<std::string> vecUrl) override;
    IPortControl& SetRegister(std::uint64_t nAddress, std::span<const std::byte> vecBytes) override;
    BYTES Register(std::uint64_t nAddress, std::size_t nLength) const override;

    /// A selector with a greatest value that an update sets, and the features of the list behind it.
    void AddSelector(const std::string& strSelector);
    void AddListFeature(const std::string& strSelector, std::string strName, FEATURE::KIND nKind);
    void SetSelectorMax(const std::string& strSelector, std::int64_t nMax);
    /// @param fnValue  the number or the text that the feature has for one module of the list
    template <class TModules, class TValue>
    void SetList(const std::string& strName, const TModules& vecModule, TValue fnValue) {
        BYTES vecAll;
        for (const auto& pModule : vecModule) {
            AppendListValue(vecAll, fnValue(*pModule));
        }
        __SetList(strName, vecAll);
    }
    /// Runs with the lock held, at each write of the consumer to the feature.
    void OnWriteInside(const std::string& strName, std::function<void()> fn);

    void Read(std::uint64_t nAddress, std::span<std::byte> bytes) const;
    void Write(std::uint64_t nAddress, std::span<const std::byte> bytes);
    std::size_t UrlCount();
    void GetUrlInfo(std::size_t nIndex, URL_INFO_CMD nCommand, const TARGET& objTarget);
    void GetPortInfo(PORT_INFO_CMD nCommand, const TARGET& objTarget) const;

private:
    FEATURE& __Add(FEATURE objFeature, std::span<const std::byte> value);
    FEATURE& __Find(const std::string& strName);
    const FEATURE& __Find(const std::string& strName) const;
    void __PlaceDescription(const std::string& strFileName, std::span<const std::byte> content);
    void __DescribeFeatures();
    static void AppendListValue(BYTES& vecAll, std::uint64_t nValue);
    static void AppendListValue(BYTES& vecAll, const std::string& strValue);
    void __SetList(const std::string& strName, const BYTES& vecAll);

    const MONITOR& m_objMonitor;
    const std::string m_strId;
    const std::string m_strModuleKind;
    const std::string m_strPortName;

    CRegisters m_objRegisters;
    std::vector<FEATURE> m_vecFeature;
    std::uint64_t m_nNextAddress;
    std::uint64_t m_nNextListAddress;
    std::uint64_t m_nDescriptionLength = 0;
    bool m_bOwnDescription = true;  // else a test's
    bool m_bDescribed = false;      // the own description is up to date
    std::vector<std::string> m_vecUrl;
    std::map<std::string, std::function<void()>> m_mapInnerHook;
};

}  // namespace ProducerDouble
