#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassFeature/FeatureFileComparison.h"

class IDevice;
class IInterface;

// A feature file of an open module, which must stay open meanwhile. Any thread may call. Besides what CFeatureFile
// says, each throws std::runtime_error:
// - "Invalid device"                                  an empty pointer, also to an interface
// - "No valid stream. The device may be closed."      a device without data streams, an interface without devices
// - "Invalid feature node maps"                       one of them isn't loaded; the device's first data stream must be
//                                                     open

/// Saves the settings of a camera, of its device module and of its first data stream.
/// @param pError  gets a text for each setting that isn't saved or not for all of its selectors; may be null
void SaveDeviceFeatures(const boost::shared_ptr<IDevice>& pDevice, std::ostream& stream,
                        std::vector<std::string>* pError = nullptr);

/// Writes them back. A camera that doesn't know both commands around a streaming of registers has the whole text
/// applied twice: values that depend on each other, and were refused at first, get a second chance.
/// @param bVerify  check access and limits before each write
/// @return one text for each value that was refused, the second time if there was one
std::vector<std::string> LoadDeviceFeatures(const boost::shared_ptr<IDevice>& pDevice, std::istream& stream,
                                            bool bVerify);

/// Holds a feature file against the camera, its device module and its first data stream as they are, and changes no
/// setting. Selectors are moved and put back, for which the device has to be open with control.
FEATURE_FILE_COMPARISON CompareDeviceFeatures(const boost::shared_ptr<IDevice>& pDevice, std::istream& stream);

/// Saving and loading for the settings of an interface, which stand in all three sections. It has to have a feature
/// "DeviceModelName" like a camera, which interfaces normally don't.
void SaveInterfaceFeatures(const boost::shared_ptr<IInterface>& pInterface, std::ostream& stream,
                           std::vector<std::string>* pError = nullptr);
/// Applies the text once.
std::vector<std::string> LoadInterfaceFeatures(const boost::shared_ptr<IInterface>& pInterface, std::istream& stream,
                                               bool bVerify);
