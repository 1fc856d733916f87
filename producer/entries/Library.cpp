#include "producer/entries/Library.h"

#include <utility>

#include "producer/ProducerError.h"

namespace producer {

namespace {

constexpr const char* kSystemKey = "the system module";

}  // namespace

CLibrary& CLibrary::Get() {
    static CLibrary& objLibrary = *new CLibrary;
    return objLibrary;
}

void CLibrary::Init() {
    const std::lock_guard objLock(m_mtxLibrary);
    if (m_pSystems) {
        throw CProducerError(GC_ERR_RESOURCE_IN_USE, "the producer is initialised already in this process");
    }
    m_pSystems = std::make_shared<SYSTEMS>();
    m_bInitialised = true;
}

void CLibrary::Close() {
    std::shared_ptr<SYSTEMS> pSystems;
    {
        const std::lock_guard objLock(m_mtxLibrary);
        m_bInitialised = false;
        pSystems = std::exchange(m_pSystems, nullptr);
    }
    if (!pSystems) {
        throw CProducerError(GC_ERR_NOT_INITIALIZED, "GCInitLib wasn't called");
    }
    pSystems->CloseAll();
}

void CLibrary::RequireInit() const {
    if (!m_bInitialised) {
        throw CProducerError(GC_ERR_NOT_INITIALIZED, "GCInitLib wasn't called");
    }
}

void* CLibrary::OpenSystem() {
    std::shared_ptr<SYSTEMS> pSystems;
    {
        const std::lock_guard objLock(m_mtxLibrary);
        pSystems = m_pSystems;
    }
    if (!pSystems) {
        throw CProducerError(GC_ERR_NOT_INITIALIZED, "GCInitLib wasn't called");
    }
    const std::weak_ptr<SYSTEMS> pWeak = pSystems;
    return pSystems->Open(kSystemKey, [&] {
        return std::make_shared<CSystemModule>([pWeak] {
            if (const std::shared_ptr<SYSTEMS> pStrong = pWeak.lock()) {
                pStrong->Forget(kSystemKey);
            }
        });
    });
}

}  // namespace producer
