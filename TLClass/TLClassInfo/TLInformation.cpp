#include "TLClass/TLClassInfo/TLInformation.h"

TL_MODULE_INFO CTLInformation::GetInformation() {
    TL_MODULE_INFO objInformation;
    _GetStringInfo({TL_INFO_VENDOR, TL_INFO_MODEL, TL_INFO_VERSION, TL_INFO_TLTYPE, TL_INFO_NAME, TL_INFO_PATHNAME,
                    TL_INFO_DISPLAYNAME},
                   {&objInformation.Vendor, &objInformation.Model, &objInformation.Version, &objInformation.TLType,
                    &objInformation.Name, &objInformation.PathName, &objInformation.DisplayName},
                   {&objInformation.VendorValid, &objInformation.ModelValid, &objInformation.VersionValid,
                    &objInformation.TLTypeValid, &objInformation.NameValid, &objInformation.PathNameValid,
                    &objInformation.DisplayNameValid});
    return objInformation;
}
