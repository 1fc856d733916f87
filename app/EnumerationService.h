#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassMain/GcObject.h"
#include "support/CriticalSection.h"

class CGevTL;
class IDevice;
class IInterface;
class ITL;

/// The program's one door to the module tree: knows which producers to load, brings them up and down, and runs updates.
/// Each list is asked of the tree afresh.
///
/// The program's own one is made at first use and never destroyed. Any thread may call, but no update may run while
/// Uninit does. Apart from Init and Uninit, which report nothing, every operation passes on what the tree throws.
class CEnumerationService {
public:
    static CEnumerationService* GetInstance();

    /// @param strTLFileNames  bare names of producer files, separated by ";", in the order of loading
    explicit CEnumerationService(const std::string& strTLFileNames);
    CEnumerationService(const CEnumerationService&) = delete;
    CEnumerationService& operator=(const CEnumerationService&) = delete;

    /// Loads the producers, if this is the first call since construction or Uninit. A failure leaves the tree as far as
    /// it came, empty on a machine without a producer; the next try takes an Uninit first.
    void Init();
    /// Closes the devices that are still open and unloads the producers, if Init has been called. The first failure
    /// ends it where it is.
    void Uninit();

    /// Lets every GigE Vision transport layer look for interfaces and devices, and waits for that.
    /// @param nTimeoutMs  how long the interfaces may look
    /// @return 0
    std::uint32_t UpdateDeviceList(std::uint32_t nTimeoutMs);

    std::vector<boost::shared_ptr<CGevTL>> GetGevTLs() const;
    std::vector<boost::shared_ptr<ITL>> GetAllTLs() const;
    /// Empty for an empty pointer, as are the next three.
    std::vector<boost::shared_ptr<IInterface>> GetInterfaces(const boost::shared_ptr<ITL>& pTL) const;
    std::vector<boost::shared_ptr<IDevice>> GetDevices(const boost::shared_ptr<IInterface>& pInterface) const;
    /// The devices that have a vendor or a model.
    std::vector<CGcObjectPointer> GetNamedDevices(const boost::shared_ptr<IInterface>& pInterface) const;
    /// All interfaces, then the named devices of each.
    std::vector<CGcObjectPointer> GetObjectsOfTL(const boost::shared_ptr<ITL>& pTL) const;
    /// All interfaces of all transport layers, then all their named devices.
    std::vector<CGcObjectPointer> GetAllObjects() const;

    std::vector<std::string> GetTLFileNames() const { return m_vecTLFileNames; }

private:
    void __CloseAllDevices() const;

    CCriticalSection m_csLock;                  // held while the producers come up or go down
    boost::shared_ptr<ITL> m_pobjTL;            // stays empty: all transport layers are served alike
    std::atomic<bool> m_bInitialized;           // from the start of the first Init to the start of Uninit
    std::vector<std::string> m_vecTLFileNames;  // never changes
};
