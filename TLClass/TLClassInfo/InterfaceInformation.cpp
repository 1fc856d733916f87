#include "TLClass/TLClassInfo/InterfaceInformation.h"

IF_MODULE_INFO CInterfaceInformation::GetInformation() {
    IF_MODULE_INFO objInformation;
    _GetStringInfo({INTERFACE_INFO_ID, INTERFACE_INFO_DISPLAYNAME, INTERFACE_INFO_TLTYPE},
                   {&objInformation.ID, &objInformation.DisplayName, &objInformation.TLType},
                   {&objInformation.IDValid, &objInformation.DisplayNameValid, &objInformation.TLTypeValid});
    return objInformation;
}
