#include "TLClass/TLClassMain/DataStreamFactory.h"

#include <utility>

#include "TLClass/TLClassMain/DataStream.h"

IDataStream* CDataStreamFactory::CreateDataStream(CGenTLLib* pLib, boost::shared_ptr<IDevice> pDevice,
                                                  DEV_HANDLE hDevice, const std::string& strDataStreamID) {
    return new CDataStream(pLib, std::move(pDevice), hDevice, strDataStreamID);
}
