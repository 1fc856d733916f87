#include "TLClass/TLClassInfo/DeviceInformation.h"

DEV_MODULE_INFO CDeviceInformation::GetInformation() {
    DEV_MODULE_INFO objInformation;
    _GetStringInfo({DEVICE_INFO_ID, DEVICE_INFO_VENDOR, DEVICE_INFO_MODEL, DEVICE_INFO_TLTYPE, DEVICE_INFO_DISPLAYNAME},
                   {&objInformation.ID, &objInformation.Vendor, &objInformation.Model, &objInformation.TLType,
                    &objInformation.DisplayName},
                   {&objInformation.IDValid, &objInformation.VendorValid, &objInformation.ModelValid,
                    &objInformation.TLTypeValid, &objInformation.DisplayNameValid});
    _GetInt32Info({DEVICE_INFO_ACCESS_STATUS}, {&objInformation.AccessStatus}, {&objInformation.AccessStatusValid});
    return objInformation;
}
