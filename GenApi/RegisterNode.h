#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "GenApi/AccessMode.h"
#include "GenApi/GCException.h"
#include "GenApi/Register.h"
#include "GenApi/RegisterBlock.h"
#include "GenApi/RegisterSharing.h"

namespace GenApi_3_0 {

/// A node of the base's kind that stands on a register, with the IRegister interface beside the base's own.
/// @tparam Base  CIntegerValue, CFloatValue, CStringValue or CBytesValue
template <class Base>
class CRegisterNode : public Base, public IRegister {
public:
    CRegisterNode(CNodeContext& objContext, const DESCRIPTION_MODEL& objModel, std::uint32_t nNode)
        : Base(objContext, objModel, nNode), m_objBlock(*this) {
        // A register that doesn't say that it may be written may be read.
        this->SetDefaultAccessMode(RO);
    }

    bool Apply(const PROPERTY& objProperty, CPropertyReader& objReader) override {
        return m_objBlock.Apply(objProperty, objReader) || Base::Apply(objProperty, objReader);
    }
    void Complete(CPropertyReader& objReader) override {
        Base::Complete(objReader);
        m_objBlock.Complete(objReader);
        const auto [nFirstBit, nLastBit] = ShownBits();
        objReader.Sharing().Note(m_objBlock.Cell(), this->Number(), nFirstBit, nLastBit);
    }

    void* GetInterface(EInterfaceType eType) override {
        return eType == intfIRegister ? static_cast<IRegister*>(this) : Base::GetInterface(eType);
    }

    // IRegister
    void Set(const std::uint8_t* pBuffer, std::int64_t Length, bool Verify = true) override {
        CChange objChange(this->Context());
        if (Verify) {
            this->RequireWritable();
        }
        CheckLength(Length, pBuffer);
        this->State().ValueValid = false;
        m_objBlock.Write(std::span(pBuffer, static_cast<std::size_t>(Length)));
        objChange.Finish();
    }
    void Get(std::uint8_t* pBuffer, std::int64_t Length, bool /*Verify*/ = false, bool IgnoreCache = false) override {
        const AutoLock objLock(this->Context().Lock());
        this->RequireReadable();
        CheckLength(Length, pBuffer);
        const CEvaluation objStep(this->Context(), this->Name());
        m_objBlock.Read(std::span(pBuffer, static_cast<std::size_t>(Length)), IgnoreCache);
    }
    std::int64_t GetLength() override {
        const AutoLock objLock(this->Context().Lock());
        return m_objBlock.Length();
    }
    std::int64_t GetAddress() override {
        const AutoLock objLock(this->Context().Lock());
        return m_objBlock.Address();
    }

protected:
    EAccessMode SourceAccessMode() override { return m_objBlock.PortAccessMode(); }
    /// The first and the last bit of the register that this node shows, counted from the least significant.
    virtual std::pair<std::uint32_t, std::uint32_t> ShownBits() const { return {0, UINT32_MAX}; }
    CRegisterBlock& Block() { return m_objBlock; }
    const CRegisterBlock& Block() const { return m_objBlock; }

private:
    void CheckLength(std::int64_t nLength, const std::uint8_t* pBuffer) {
        const std::int64_t nWanted = m_objBlock.Length();
        if (nLength != nWanted || pBuffer == nullptr) {
            GenICam_3_0::Throw<GenICam_3_0::InvalidArgumentException>(
                this->Subject() + ": a buffer of " + std::to_string(nLength) +
                " bytes was handed over, the register has " + std::to_string(nWanted));
        }
    }

    CRegisterBlock m_objBlock;
};

}  // namespace GenApi_3_0
