#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/producer_double/Interface.h"
#include "tests/producer_double/Module.h"

namespace ProducerDouble {

/// The system module and the world's adapters. Everything but construction expects the monitor's lock.
class CSystem : public CModule {
public:
    explicit CSystem(CONTEXT& objContext);

    /// @return whether the list has changed
    bool UpdateList();
    const std::vector<std::shared_ptr<CInterface>>& List() const { return m_vecList; }
    CInterface& Listed(std::size_t nIndex) const;
    CInterface& Listed(const std::string& strId) const;

    /// Everything that the world ever had, present or not.
    const std::vector<std::shared_ptr<CInterface>>& Interfaces() const { return m_vecInterface; }
    CInterface* Find(const std::string& strId) const;
    CInterface& Add(std::shared_ptr<CInterface> pInterface);
    void SetPresent(const std::string& strId, bool bPresent);
    void SetScriptedList(std::optional<std::vector<std::string>> vecId) { m_vecScriptedList = std::move(vecId); }
    void SetScriptedMax(std::optional<std::int64_t> nMax) { m_nScriptedMax = nMax; }

private:
    void _CloseChildren() override;
    void __FillListFeatures();

    std::vector<std::shared_ptr<CInterface>> m_vecInterface;
    std::vector<std::string> m_vecPresent;
    std::vector<std::shared_ptr<CInterface>> m_vecList;  // the consumer's
    std::optional<std::vector<std::string>> m_vecScriptedList;
    std::optional<std::int64_t> m_nScriptedMax;
};

}  // namespace ProducerDouble
