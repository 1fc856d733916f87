#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "GenTL/GenTL.h"

/// Base of the classes that read what a producer says about one module.
///
/// A query lives on the stack of one thread for the length of one read, and neither owns the library nor the handle.
/// A refused command is no failure: its field stays empty, its flag false, and the next command is asked.
class CZrInformation {
public:
    CZrInformation() = default;
    CZrInformation(const CZrInformation&) = delete;
    CZrInformation& operator=(const CZrInformation&) = delete;
    virtual ~CZrInformation() = default;

protected:
    /// Asks the producer one info command of the module.
    /// @param pBuffer  null to learn the size, else *pSize bytes
    virtual GC_ERROR _GetInfo(std::uint32_t nCommand, INFO_DATATYPE* pType, void* pBuffer, std::size_t* pSize) = 0;

    // Each asks all commands in order and fills the destination and the flag that stand at the same place.
    // They throw CUnexpectedError, before anything is asked, if the three vectors differ in length.
    void _GetSizetInfo(const std::vector<std::uint32_t>& vecCommand, const std::vector<std::size_t*>& vecDestination,
                       const std::vector<bool*>& vecFlag);
    void _GetInt32Info(const std::vector<std::uint32_t>& vecCommand, const std::vector<std::int32_t*>& vecDestination,
                       const std::vector<bool*>& vecFlag);
    void _GetUint64Info(const std::vector<std::uint32_t>& vecCommand, const std::vector<std::uint64_t*>& vecDestination,
                        const std::vector<bool*>& vecFlag);
    void _GetBoolInfo(const std::vector<std::uint32_t>& vecCommand, const std::vector<bool*>& vecDestination,
                      const std::vector<bool*>& vecFlag);
    void _GetPtrInfo(const std::vector<std::uint32_t>& vecCommand, const std::vector<void**>& vecDestination,
                     const std::vector<bool*>& vecFlag);

    /// A text without an end is cut at its announced size; one over kMaxProducerTextSize counts as refused.
    void _GetStringInfo(const std::vector<std::uint32_t>& vecCommand, const std::vector<std::string*>& vecDestination,
                        const std::vector<bool*>& vecFlag);

private:
    template <typename ANSWER, typename DESTINATION>
    void __GetFixedSizeInfo(INFO_DATATYPE nType, const std::vector<std::uint32_t>& vecCommand,
                            const std::vector<DESTINATION*>& vecDestination, const std::vector<bool*>& vecFlag);
};
