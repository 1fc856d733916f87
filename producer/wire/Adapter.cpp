#include "producer/wire/Adapter.h"

#include <algorithm>

namespace producer {

namespace {

bool IsInSubnet(const ADAPTER_ADDRESS& objOwn, std::uint32_t nAddress) {
    return objOwn.Mask != 0 && ((nAddress ^ objOwn.Address) & objOwn.Mask) == 0;
}

/// In a subnet of two addresses, or one, each is a host's.
bool IsEdge(const ADAPTER_ADDRESS& objOwn, std::uint32_t nAddress) {
    const std::uint32_t nHost = nAddress & ~objOwn.Mask;
    return ~objOwn.Mask > 1 && (nHost == 0 || nHost == ~objOwn.Mask);
}

}  // namespace

ADAPTER_ADDRESS ADAPTER::GetDefaultAddress() const {
    return Addresses.empty() ? ADAPTER_ADDRESS{} : Addresses.front();
}

bool ADAPTER::IsInside(std::uint32_t nAddress) const {
    return std::any_of(Addresses.begin(), Addresses.end(),
                       [=](const ADAPTER_ADDRESS& objOwn) { return IsInSubnet(objOwn, nAddress); });
}

bool ADAPTER::IsUsableForCamera(std::uint32_t nAddress) const {
    return IsInside(nAddress) && std::none_of(Addresses.begin(), Addresses.end(), [=](const ADAPTER_ADDRESS& objOwn) {
               return objOwn.Address == nAddress || (IsInSubnet(objOwn, nAddress) && IsEdge(objOwn, nAddress));
           });
}

}  // namespace producer
