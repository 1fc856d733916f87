#include "producer/modules/Module.h"

#include <utility>

#include "producer/ProducerError.h"

namespace producer {

CModule::CModule(std::string strModule, std::string strId, DESCRIPTION_HEADER objHeader)
    : m_strModule(std::move(strModule)), m_strId(std::move(strId)), m_objRegisters(std::move(objHeader)) {}

void* CModule::Publish(const std::shared_ptr<CModule>& pThis) {
    m_hModule = CHandleTable::Get().Add(pThis);
    return m_hModule;
}

void CModule::Close() noexcept {
    m_bClosing = true;
    const std::lock_guard objLock(m_mtxClose);
    if (std::exchange(m_bClosed, true)) {
        return;
    }
    // The caller keeps the module alive, so that it doesn't die here with its handle.
    const std::shared_ptr<CHandled> pThis = CHandleTable::Get().Take(m_hModule);
    GetEvents().Close();
    DoClose();
}

void CModule::RequireOpen() const {
    if (m_bClosing) {
        throw CProducerError(GC_ERR_INVALID_HANDLE, m_strId + " was closed");
    }
}

void CModule::Read(std::uint64_t nAddress, std::span<std::byte> spanBuffer) {
    m_objRegisters.Read(nAddress, spanBuffer);
}

void CModule::Write(std::uint64_t nAddress, std::span<const std::byte> spanBuffer) {
    m_objRegisters.Write(nAddress, spanBuffer);
}

std::vector<URL_FACTS> CModule::GetUrls() {
    URL_FACTS objUrl;
    objUrl.FileName = m_objRegisters.GetHeader().ModelName + ".xml";
    objUrl.Address = m_objRegisters.GetDescriptionAddress();
    objUrl.Size = m_objRegisters.GetDescription().size();
    objUrl.Url = WriteLocalUrl(objUrl);
    return {objUrl};
}

PORT_FACTS CModule::GetPortFacts() const {
    PORT_FACTS objFacts;
    objFacts.Id = m_strId;
    objFacts.Vendor = kVendor;
    objFacts.Model = m_objRegisters.GetHeader().ModelName;
    objFacts.Version = kProducerVersion;
    objFacts.Module = m_strModule;
    objFacts.Name = m_objRegisters.GetHeader().PortName;
    return objFacts;
}

}  // namespace producer
