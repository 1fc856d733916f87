#include "GenApi/StringValue.h"

#include "GenApi/GCException.h"

namespace GenApi_3_0 {

void CStringValue::WriteText(const std::string& strValue, bool bVerify) {
    const CEvaluation objStep(Context(), Name());
    // Checked in any case: there is no room for more.
    const std::int64_t nMax = MaxLength();
    if (static_cast<std::int64_t>(strValue.size()) > nMax) {
        GenICam_3_0::Throw<GenICam_3_0::OutOfRangeException>(Subject() + ": a text of " +
                                                             std::to_string(strValue.size()) +
                                                             " bytes is longer than " + std::to_string(nMax));
    }
    CChange objChange(Context());
    State().ValueValid = false;
    StoreText(strValue, bVerify);
    objChange.Finish();
}

void CStringValue::SetValue(const gcstring& Value, bool Verify) {
    CChange objChange(Context());
    if (Verify) {
        RequireWritable();
    }
    WriteText(Value.str(), Verify);
    objChange.Finish();
}

gcstring CStringValue::GetValue(bool /*Verify*/, bool IgnoreCache) {
    const AutoLock objLock(Context().Lock());
    RequireReadable();
    return ReadText(IgnoreCache);
}

std::int64_t CStringValue::GetMaxLength() {
    const AutoLock objLock(Context().Lock());
    return MaxLength();
}

bool CStringValue::IsValueCacheValid() const {
    const AutoLock objLock(Context().Lock());
    return State().ValueValid;
}

}  // namespace GenApi_3_0
