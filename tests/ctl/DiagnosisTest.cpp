#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ctl/Diagnosis.h"
#include "ctl/InputFilters.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A machine on which nothing is wrong.
HOST_FACTS GoodFacts() {
    HOST_FACTS objFacts;
    objFacts.vecAdapter = {{"eth1", true, true, 9000, 1000, 0, {{0xC0A80105, 0xFFFFFF00, true}}},
                           {"eth2", true, true, 9000, 1000, 0, {{0x0A000005, 0xFF000000, true}}}};
    objFacts.nReversePathFilter = 0;
    objFacts.nReceiveBufferMax = 64 << 20;
    objFacts.objFirewall = {true, {}};
    objFacts.vecProducerFolder = {{"/opt/cti", true, true}};
    return objFacts;
}

std::vector<FINDING> NotGood(const HOST_FACTS& objFacts) {
    std::vector<FINDING> vecBad;
    for (const FINDING& objFinding : Diagnose(objFacts)) {
        if (objFinding.eSeverity != SEVERITY::Good) {
            vecBad.push_back(objFinding);
        }
    }
    return vecBad;
}

TEST(Diagnose, FindsEachFaultAloneAndTellsWhatMendsIt) {
    EXPECT_THAT(NotGood(GoodFacts()), IsEmpty());
    const struct {
        std::function<void(HOST_FACTS&)> fnBreak;
        SEVERITY eSeverity;
        const char* pSubject;
        const char* pWhat;
        const char* pMend;
    } arrCase[] = {
        {[](auto& f) { f.vecAdapter[0].bUp = false; }, SEVERITY::Warning, "eth1", "switched off", "link set eth1 up"},
        {[](auto& f) { f.vecAdapter[0].bLink = false; }, SEVERITY::Warning, "eth1", "no link", ""},
        {[](auto& f) { f.vecAdapter[0].nSpeed = 100; }, SEVERITY::Warning, "eth1", "only 100 Mb/s", ""},
        {[](auto& f) { f.vecAdapter[0].vecAddress.clear(); }, SEVERITY::Problem, "eth1", "no IPv4", "address add"},
        {[](auto& f) { f.vecAdapter[0].vecAddress[0].bBroadcast = false; }, SEVERITY::Warning, "eth1",
         "192.168.1.5/24 has no broadcast", "change 192.168.1.5/24 broadcast + dev eth1"},
        {[](auto& f) { f.vecAdapter[1].nReversePathFilter = 1; }, SEVERITY::Warning, "eth2", "strict",
         "eth2.rp_filter=0"},
        {[](auto& f) { f.vecAdapter[1].nReversePathFilter = 2; }, SEVERITY::Warning, "eth2", "loose",
         "eth2.rp_filter=0"},
        {[](auto& f) {
             f.vecAdapter[1].strName = "eth2.10";
             f.vecAdapter[1].nReversePathFilter = 1;
         },
         SEVERITY::Warning, "eth2.10", "strict", "conf.eth2/10.rp_filter=0"},
        {[](auto& f) { f.vecAdapter[1].nMtu = 1500; }, SEVERITY::Hint, "eth2", "1500", "mtu 9000"},
        {[](auto& f) { f.vecAdapter[1].nMtu = 576; }, SEVERITY::Warning, "eth2", "576", "mtu 1500"},
        {[](auto& f) {
             f.vecAdapter[1].vecAddress[0] = {0xC0A80163, 0xFFFFFF00, true};
         },
         SEVERITY::Problem, "eth2", "subnet of eth1", ""},
        {[](auto& f) { f.objFirewall.vecFilter = {"inet filter input"}; }, SEVERITY::Warning, "firewall",
         "inet filter input", "insert rule inet filter input"},
        {[](auto& f) { f.objFirewall.bKnown = false; }, SEVERITY::Hint, "firewall", "root", "nft list ruleset"},
        {[](auto& f) { f.nReceiveBufferMax = 212992; }, SEVERITY::Warning, "sockets", "208 KiB of receive buffer: 1 ms",
         "net.core.rmem_max"},
        {[](auto& f) {
             f.vecProducerFolder = {{"/nowhere", false, false}};
         },
         SEVERITY::Problem, "producer", "/nowhere (there is no such folder)", "GENICAM_GENTL64_PATH"},
    };
    for (const auto& objCase : arrCase) {
        HOST_FACTS objFacts = GoodFacts();
        objCase.fnBreak(objFacts);
        const std::vector<FINDING> vecBad = NotGood(objFacts);
        ASSERT_EQ(vecBad.size(), 1U) << objCase.pWhat;
        EXPECT_EQ(vecBad[0].eSeverity, objCase.eSeverity) << objCase.pWhat;
        EXPECT_EQ(vecBad[0].strSubject, objCase.pSubject);
        EXPECT_THAT(vecBad[0].strWhat, HasSubstr(objCase.pWhat));
        EXPECT_THAT(vecBad[0].strMend, HasSubstr(objCase.pMend));
    }
}

TEST(Diagnose, CallsItAProblemWhenNoAdapterIsAlive) {
    HOST_FACTS objFacts = GoodFacts();
    objFacts.vecAdapter[0].bLink = objFacts.vecAdapter[1].bLink = false;
    EXPECT_EQ(NotGood(objFacts).front().eSeverity, SEVERITY::Problem);
}

TEST(ReadInputFilters, NamesChainsThatDropWhatComesIn) {
    const std::string strRuleset = R"({"nftables": [
        {"metainfo": {"version": "1.0.6"}},
        {"chain": {"family": "inet", "table": "fw", "name": "in", "type": "filter", "hook": "input", "policy": "drop"}},
        {"chain": {"family": "ip", "table": "t", "name": "INPUT", "hook": "input", "policy": "accept"}},
        {"rule": {"family": "ip", "table": "t", "chain": "INPUT", "expr": [{"counter": {}}, {"reject": null}]}},
        {"chain": {"family": "ip", "table": "t", "name": "OUTPUT", "hook": "output", "policy": "drop"}},
        {"chain": {"family": "ip6", "table": "t", "name": "INPUT", "hook": "input", "policy": "accept"}},
        {"rule": {"family": "ip6", "table": "t", "chain": "INPUT", "expr": [{"accept": null}]}},
        {"chain": {"family": "inet", "table": "mended", "name": "in", "hook": "input", "policy": "drop"}},
        {"rule": {"family": "inet", "table": "mended", "chain": "in", "expr": [
            {"match": {"op": "==", "left": {"meta": {"key": "iifname"}}, "right": "eth1"}},
            {"match": {"op": "==", "left": {"meta": {"key": "l4proto"}}, "right": "udp"}}, {"accept": null}]}},
        {"rule": {"family": "inet", "table": "fw", "chain": "in", "expr": [
            {"match": {"op": "==", "left": {"payload": {"protocol": "udp", "field": "dport"}}, "right": 68}},
            {"match": {"op": "==", "left": {"meta": {"key": "l4proto"}}, "right": "udp"}}, {"accept": null}]}}, 7]})";
    ASSERT_TRUE(ReadInputFilters(strRuleset).has_value());
    EXPECT_THAT(*ReadInputFilters(strRuleset), ElementsAre("inet fw in", "ip t INPUT"));
    for (const char* pText : {"", "[]", "{\"nftables\": 1}", "Operation not permitted"}) {
        EXPECT_FALSE(ReadInputFilters(pText).has_value()) << pText;
    }
}

}  // namespace
