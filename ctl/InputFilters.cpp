#include <map>
#include <utility>

#include <nlohmann/json.hpp>

#include "ctl/HostFacts.h"

namespace {

using nlohmann::json;

std::string TextOf(const json& objObject, const char* pKey) {
    const auto itFound = objObject.find(pKey);
    return itFound != objObject.end() && itFound->is_string() ? itFound->get<std::string>() : std::string();
}

/// Which chain an object of the ruleset is or belongs to: family, table, chain.
std::string ChainOf(const json& objObject, const char* pNameKey) {
    return TextOf(objObject, "family") + ' ' + TextOf(objObject, "table") + ' ' + TextOf(objObject, pNameKey);
}

/// Whether a rule drops, by itself or in the map of one of its statements.
bool Drops(const json& objStatement) {
    if (objStatement.is_object() && (objStatement.contains("drop") || objStatement.contains("reject"))) {
        return true;
    }
    if (!objStatement.is_structured()) {
        return false;
    }
    for (const json& objPart : objStatement) {
        if (Drops(objPart)) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::optional<std::vector<std::string>> ReadInputFilters(const std::string& strRuleset) {
    const json objDocument = json::parse(strRuleset, nullptr, false);
    if (!objDocument.is_object() || !objDocument.contains("nftables") || !objDocument["nftables"].is_array()) {
        return std::nullopt;
    }
    std::map<std::string, bool> mapChain;  // those that see incoming packets, and whether they drop any
    std::vector<std::string> vecDropping;  // chains with a rule that drops
    for (const json& objEntry : objDocument["nftables"]) {
        if (!objEntry.is_object()) {
            continue;
        }
        if (objEntry.contains("chain") && objEntry["chain"].is_object()) {
            const json& objChain = objEntry["chain"];
            const std::string strHook = TextOf(objChain, "hook");
            if (strHook == "input" || strHook == "prerouting" || strHook == "ingress") {
                mapChain[ChainOf(objChain, "name")] = TextOf(objChain, "policy") == "drop";
            }
        } else if (objEntry.contains("rule") && objEntry["rule"].is_object()) {
            const json& objRule = objEntry["rule"];
            if (objRule.contains("expr") && Drops(objRule["expr"])) {
                vecDropping.push_back(ChainOf(objRule, "chain"));
            }
        }
    }
    for (const std::string& strChain : vecDropping) {
        if (const auto itChain = mapChain.find(strChain); itChain != mapChain.end()) {
            itChain->second = true;
        }
    }
    std::vector<std::string> vecFilter;
    for (const auto& [strChain, bDrops] : mapChain) {
        if (bDrops) {
            vecFilter.push_back(strChain);
        }
    }
    return vecFilter;
}
