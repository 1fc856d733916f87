#include "TLClass/TLClassInfo/ZrInformation.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "TLClass/TLClassLoadTL/ProducerText.h"
#include "support/ZrException.h"

namespace {

constexpr const char* kSourceFile = "..\\..\\..\\TLClass\\TLClassInfo\\ZrInformation";

template <typename DESTINATION>
void CheckSizes(const std::vector<std::uint32_t>& vecCommand, const std::vector<DESTINATION*>& vecDestination,
                const std::vector<bool*>& vecFlag, int nLine, const char* pFunction) {
    if (vecCommand.size() != vecDestination.size() || vecCommand.size() != vecFlag.size()) {
        throw CUnexpectedError(-1, "Invalid vector size", kSourceFile, nLine, pFunction);
    }
}

}  // namespace

template <typename ANSWER, typename DESTINATION>
void CZrInformation::__GetFixedSizeInfo(INFO_DATATYPE nType, const std::vector<std::uint32_t>& vecCommand,
                                        const std::vector<DESTINATION*>& vecDestination,
                                        const std::vector<bool*>& vecFlag) {
    // What a producer leaves in these three is handed to the next command as it is, except for a size that it has
    // enlarged: the buffer is no larger than it was.
    ANSWER answer{};
    std::size_t nSize = sizeof(answer);
    for (std::size_t i = 0; i < vecCommand.size(); ++i) {
        nSize = std::min(nSize, sizeof(answer));
        *vecFlag[i] = _GetInfo(vecCommand[i], &nType, &answer, &nSize) == GC_ERR_SUCCESS;
        *vecDestination[i] = *vecFlag[i] ? static_cast<DESTINATION>(answer) : DESTINATION{};
    }
}

void CZrInformation::_GetSizetInfo(const std::vector<std::uint32_t>& vecCommand,
                                   const std::vector<std::size_t*>& vecDestination, const std::vector<bool*>& vecFlag) {
    CheckSizes(vecCommand, vecDestination, vecFlag, 43, "CZrInformation::_GetSizetInfo");
    __GetFixedSizeInfo<std::size_t>(INFO_DATATYPE_SIZET, vecCommand, vecDestination, vecFlag);
}

void CZrInformation::_GetInt32Info(const std::vector<std::uint32_t>& vecCommand,
                                   const std::vector<std::int32_t*>& vecDestination,
                                   const std::vector<bool*>& vecFlag) {
    CheckSizes(vecCommand, vecDestination, vecFlag, 80, "CZrInformation::_GetInt32Info");
    __GetFixedSizeInfo<std::int32_t>(INFO_DATATYPE_INT32, vecCommand, vecDestination, vecFlag);
}

void CZrInformation::_GetUint64Info(const std::vector<std::uint32_t>& vecCommand,
                                    const std::vector<std::uint64_t*>& vecDestination,
                                    const std::vector<bool*>& vecFlag) {
    CheckSizes(vecCommand, vecDestination, vecFlag, 117, "CZrInformation::_GetUint64Info");
    __GetFixedSizeInfo<std::uint64_t>(INFO_DATATYPE_UINT64, vecCommand, vecDestination, vecFlag);
}

void CZrInformation::_GetBoolInfo(const std::vector<std::uint32_t>& vecCommand,
                                  const std::vector<bool*>& vecDestination, const std::vector<bool*>& vecFlag) {
    CheckSizes(vecCommand, vecDestination, vecFlag, 154, "CZrInformation::_GetBoolInfo");
    // The standard's flag is a byte of any value, which a bool may not hold.
    __GetFixedSizeInfo<bool8_t>(INFO_DATATYPE_BOOL8, vecCommand, vecDestination, vecFlag);
}

void CZrInformation::_GetPtrInfo(const std::vector<std::uint32_t>& vecCommand,
                                 const std::vector<void**>& vecDestination, const std::vector<bool*>& vecFlag) {
    CheckSizes(vecCommand, vecDestination, vecFlag, 191, "CZrInformation::_GetPtrInfo");
    __GetFixedSizeInfo<void*>(INFO_DATATYPE_PTR, vecCommand, vecDestination, vecFlag);
}

void CZrInformation::_GetStringInfo(const std::vector<std::uint32_t>& vecCommand,
                                    const std::vector<std::string*>& vecDestination,
                                    const std::vector<bool*>& vecFlag) {
    CheckSizes(vecCommand, vecDestination, vecFlag, 264, "CZrInformation::_GetStringInfo");
    for (std::size_t i = 0; i < vecCommand.size(); ++i) {
        std::optional<std::string> strText = ReadProducerText([&](char* pBuffer, std::size_t* pSize) {
            INFO_DATATYPE nType = INFO_DATATYPE_STRING;
            return _GetInfo(vecCommand[i], &nType, pBuffer, pSize);
        });
        *vecFlag[i] = strText.has_value();
        *vecDestination[i] = std::move(strText).value_or(std::string());
    }
}
