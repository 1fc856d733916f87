#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

class CGenTLLib;
class ITL;

/// The root of the module tree: the producers that are loaded, each with its open system module.
///
/// One for the process, reached by GetTLManager and never destroyed. Any thread may call.
class ITLManager {
public:
    virtual ~ITLManager() = default;

    /// Finds the producers in the directories of GENICAM_GENTL64_PATH, loads them and opens their system modules.
    /// A failure stops at the producer that failed: those before it stay in the list, loaded and open.
    /// @param vecFileName  bare names, in the order of loading
    /// @throws CNotFoundTLError  none of the files was found
    /// @throws CUnexpectedError  it is initialised already
    /// @throws std::exception    a producer or the cache directory fails
    virtual void DoInit(const std::vector<std::string>& vecFileName) = 0;

    /// Closes every system module and unloads the producers, after which no module of the tree may be used any more.
    /// Only a device that left its list while open may be closed even then; its producer stays loaded until that. Does
    /// nothing without a successful DoInit before it. No update may run meanwhile.
    virtual void DoUninit() = 0;

    /// In the order of loading.
    virtual std::vector<boost::shared_ptr<ITL>> GetTLList() const = 0;
};

/// The way in for everyone. Makes the manager at its first call.
ITLManager* GetTLManager();

/// The manager's shared pointer of one of its transport layers, by which that gets at its own; empty for one that isn't
/// in the list.
boost::shared_ptr<ITL> FindTL(const ITL* pTL);
/// The same for the binding to a producer.
boost::shared_ptr<CGenTLLib> FindLib(const CGenTLLib* pLib);
