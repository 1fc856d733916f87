#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ctl/HostFacts.h"

class IDevice;

/// A network adapter as a producer knows it. IPv4 addresses have their first octet highest, as has the MAC.
struct ADAPTER {
    std::string strName;  ///< for people
    std::string strID;    ///< the producer's
    std::optional<std::uint64_t> nMAC;
    std::optional<std::uint32_t> nAddress;  ///< the first
    std::optional<std::uint32_t> nMask;
    HOST_INTERFACE objInterface = {};  ///< as this machine knows it, with all its addresses; empty if it doesn't
};

/// A camera as an adapter sees it, one record for each adapter. What the producer doesn't tell is empty.
struct CAMERA {
    ADAPTER objAdapter;
    std::string strID;  ///< the producer's
    std::string strVendor;
    std::string strModel;
    std::string strSerialNumber;
    std::string strUserName;  ///< that a user wrote into it
    std::string strVersion;
    std::optional<std::uint64_t> nMAC;
    std::optional<std::uint32_t> nAddress;
    std::optional<std::uint32_t> nMask;
    std::optional<std::uint32_t> nGateway;
    std::int32_t nAccessStatus = 0;      ///< one of DEVICE_ACCESS_STATUS_LIST
    boost::shared_ptr<IDevice> pDevice;  ///< the camera in the tree of modules
};

/// @return whether a user means the adapter by its ID, its name, the first word of its name or that of the interface;
/// by
///         the empty name any
bool IsCalled(const ADAPTER& objAdapter, std::string_view strName);

/// @return whether nothing but a broadcast reaches the camera, its address being in no subnet of its adapter
bool IsInOtherSubnet(const CAMERA& objCamera);

/// One word or two for what can be done with a camera now: "ready", "in use", "other subnet", ...
std::string GetStateText(const CAMERA& objCamera);

/// Finds the one camera that is meant by its ID, MAC, serial number, user-defined name, address, or by a part of its
/// model, in this order: the first of them that fits any camera decides. Models are compared without regard to case.
/// @param strAdapter  only cameras on the adapter with this ID, this name or this first word of its name; empty for any
/// @throws CCommandError  none or several fit; the text lists them, or else all there are
const CAMERA& SelectCamera(const std::vector<CAMERA>& vecCamera, std::string_view strName, std::string_view strAdapter);

/// @return whether exactly one camera has this very ID, MAC or address, so that those who haven't answered yet needn't
/// be
///         waited for. Names and serial numbers are people's, and may be there twice.
bool IsSurelyFound(const std::vector<CAMERA>& vecCamera, std::string_view strName, std::string_view strAdapter);
