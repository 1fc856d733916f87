#include "ctl/InputFilters.h"

#include <map>

#include <nlohmann/json.hpp>

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

/// Whether a rule lets all UDP in, on some adapter or all: what doctor advises looks so.
bool AcceptsUdp(const json& objStatements) {
    bool bAccepts = false;
    bool bUdp = false;
    for (const json& objStatement : objStatements) {
        if (!objStatement.is_object()) {
            continue;
        }
        bAccepts = bAccepts || objStatement.contains("accept");
        if (objStatement.contains("match") && objStatement["match"].is_object()) {
            const json& objMatch = objStatement["match"];
            const std::string strLeft = objMatch.contains("left") ? objMatch["left"].dump() : "";
            if (strLeft.find("payload") != std::string::npos) {
                return false;  // only for some ports or addresses
            }
            bUdp = bUdp || TextOf(objMatch, "right") == "udp";
        }
    }
    return bAccepts && bUdp;
}

/// What is known of a chain that sees incoming packets.
struct INPUT_CHAIN {
    bool bDrops = false;
    bool bAcceptsUdp = false;
};

}  // namespace

std::optional<std::vector<std::string>> ReadInputFilters(const std::string& strRuleset) {
    const json objDocument = json::parse(strRuleset, nullptr, false);
    if (!objDocument.is_object() || !objDocument.contains("nftables") || !objDocument["nftables"].is_array()) {
        return std::nullopt;
    }
    std::map<std::string, INPUT_CHAIN> mapChain;
    for (const json& objEntry : objDocument["nftables"]) {
        if (!objEntry.is_object() || !objEntry.contains("chain") || !objEntry["chain"].is_object()) {
            continue;
        }
        const json& objChain = objEntry["chain"];
        const std::string strHook = TextOf(objChain, "hook");
        if (strHook == "input" || strHook == "prerouting" || strHook == "ingress") {
            mapChain[ChainOf(objChain, "name")].bDrops = TextOf(objChain, "policy") == "drop";
        }
    }
    for (const json& objEntry : objDocument["nftables"]) {
        if (!objEntry.is_object() || !objEntry.contains("rule") || !objEntry["rule"].is_object()) {
            continue;
        }
        const json& objRule = objEntry["rule"];
        const auto itChain = mapChain.find(ChainOf(objRule, "chain"));
        if (itChain != mapChain.end() && objRule.contains("expr") && objRule["expr"].is_array()) {
            itChain->second.bDrops = itChain->second.bDrops || Drops(objRule["expr"]);
            itChain->second.bAcceptsUdp = itChain->second.bAcceptsUdp || AcceptsUdp(objRule["expr"]);
        }
    }
    std::vector<std::string> vecFilter;
    for (const auto& [strChain, objChain] : mapChain) {
        if (objChain.bDrops && !objChain.bAcceptsUdp) {
            vecFilter.push_back(strChain);
        }
    }
    return vecFilter;
}
