#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassMain/ITLManager.h"
#include "support/CriticalSection.h"

class CGenTLLib;

/// Owns the producers: finds them, loads them, keeps each with its open system module, and takes all of that down.
///
/// One for the process, made at first use and never destroyed. Any thread may call.
class CTLManager : public ITLManager {
public:
    static CTLManager* GetInstance();

    void DoInit(const std::vector<std::string>& vecFileName) override;
    void DoUninit() override;
    std::vector<boost::shared_ptr<ITL>> GetTLList() const override;

    boost::shared_ptr<ITL> FindTL(const ITL* pTL) const;
    boost::shared_ptr<CGenTLLib> FindLib(const CGenTLLib* pLib) const;

    /// Loads one producer more, whether the manager is initialised or not. Has no caller yet.
    /// @throws  as DoInit
    void AddTL(const std::string& strFileName);
    /// Closes the last producer of the list and unloads it. Does nothing on an empty list. Has no caller yet.
    void RemoveLastTL();

private:
    friend class CTLManagerInspection;  // lets a test reach what has no caller

    class CGCInitLibAgency;
    class CAddTLAgency;
    class CLoadTLsAgency;

    // The library is released before the module, and no module calls it once it is closed.
    using TL_PAIR = std::pair<boost::shared_ptr<ITL>, boost::shared_ptr<CGenTLLib>>;

    CTLManager() = default;

    void __LoadTLs(const std::vector<std::string>& vecPath);
    void __LoadTL(const std::string& strPath);
    void __CloseAllTL();
    static void __CloseTL(const TL_PAIR& objPair);

    // The list is read without m_csManager, from update threads among others, so it has a lock of its own.
    void __Append(const TL_PAIR& objPair);
    TL_PAIR __GetFirst() const;
    TL_PAIR __GetLast() const;
    void __EraseFirst();
    void __EraseLast();

    // Where the node maps keep their cache.
    static void __SetGenICamCacheEnvironment();
    static std::string __GetGenICamCachePath();
    /// Copies a variable of the environment. Has no caller yet.
    /// @throws CUnexpectedError  the source isn't set, or the target can't be
    static void __SetGenICamEnvironment(const char* pSource, const char* pTarget);

    static std::atomic<CTLManager*> s_pInstance;
    static CCriticalSection& s_csInstance();  // guards the making of the one object

    std::vector<TL_PAIR> m_vecTL;         // in the order of loading; guarded by m_csTLList
    std::uint32_t m_nTLCount = 0;         // one more than there are; guarded by m_csManager
    bool m_bInitialized = false;          // guarded by m_csManager
    CCriticalSection m_csManager;         // held for the whole of each operation that loads or closes
    mutable CCriticalSection m_csTLList;  // a leaf
};
