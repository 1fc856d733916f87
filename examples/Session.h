#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassMain/IDevice.h"
#include "TLClass/TLClassMain/IInterface.h"

// What every program that works with cameras does first and last: load the producer, look for cameras, open one, and
// take all that down again in the opposite order. The destructors here see to the order.

/// The producer, loaded, and the cameras that have answered. One at a time in a program, and behind everything that it
/// was asked for: no interface and no camera may be used any more when it has gone.
class CSession {
public:
    /// Loads ZrGVTL.cti from the folders of GENICAM_GENTL64_PATH and looks for cameras on every adapter.
    /// @param nWait  how long cameras are given to answer
    /// @throws CZrException  the producer can't be found or started
    explicit CSession(std::chrono::milliseconds nWait);
    ~CSession();
    CSession(const CSession&) = delete;
    CSession& operator=(const CSession&) = delete;

    /// For GigE Vision these are the machine's network adapters.
    std::vector<boost::shared_ptr<IInterface>> GetInterfaces() const;
    /// The one camera that has this text as its ID, its serial number or the name that its user gave it.
    /// @throws std::runtime_error  there is none, or more than one
    boost::shared_ptr<IDevice> FindCamera(std::string_view strName) const;
    /// The first that is listed.
    /// @throws std::runtime_error  no camera has answered
    boost::shared_ptr<IDevice> FindAnyCamera() const;
};

/// A camera that is open for as long as this lives.
class COpenCamera {
public:
    /// Opens it for reading and writing, which other programs can't do meanwhile.
    /// @throws CZrException  another program has it, or it doesn't answer
    explicit COpenCamera(boost::shared_ptr<IDevice> pDevice);
    ~COpenCamera();
    COpenCamera(const COpenCamera&) = delete;
    COpenCamera& operator=(const COpenCamera&) = delete;

    const boost::shared_ptr<IDevice>& GetDevice() const { return m_pDevice; }
    /// The features of the camera itself.
    IFeatureControl& GetFeatures() const { return *m_pDevice->GetRemoteFeatureControl(); }

private:
    boost::shared_ptr<IDevice> m_pDevice;
};

/// Writes the exception that is being handled to standard error, as one line. To be called in a catch block.
void PrintFailure(const char* pProgram);

/// Runs a program's body.
/// @return what main returns: 0, or 1 after an exception, which has been told then
template <typename BODY>
int RunExample(const char* pProgram, BODY fnBody) {
    try {
        fnBody();
        return 0;
    } catch (...) {
        PrintFailure(pProgram);
        return 1;
    }
}
