#include "producer/modules/Port.h"

#include "producer/ProducerError.h"
#include "producer/modules/HexText.h"

namespace producer {

std::string WriteLocalUrl(const URL_FACTS& objFacts) {
    return "Local:" + objFacts.FileName + ';' + HexText(objFacts.Address) + ';' + HexText(objFacts.Size) +
           "?SchemaVersion=" + std::to_string(objFacts.SchemaMajor) + '.' + std::to_string(objFacts.SchemaMinor) + ".0";
}

CInfoValue CPort::GetPortInfo(PORT_INFO_CMD nCommand) const {
    const PORT_FACTS objFacts = GetPortFacts();
    switch (nCommand) {
        case PORT_INFO_ID:
            return CInfoValue::Text(objFacts.Id);
        case PORT_INFO_VENDOR:
            return CInfoValue::Text(objFacts.Vendor);
        case PORT_INFO_MODEL:
            return CInfoValue::Text(objFacts.Model);
        case PORT_INFO_TLTYPE:
            return CInfoValue::Text("GEV");
        case PORT_INFO_MODULE:
            return CInfoValue::Text(objFacts.Module);
        case PORT_INFO_LITTLE_ENDIAN:
            return CInfoValue::Bool(objFacts.IsLittleEndian);
        case PORT_INFO_BIG_ENDIAN:
            return CInfoValue::Bool(!objFacts.IsLittleEndian);
        case PORT_INFO_ACCESS_READ:
            return CInfoValue::Bool(true);
        case PORT_INFO_ACCESS_WRITE:
            return CInfoValue::Bool(objFacts.IsWritable);
        case PORT_INFO_ACCESS_NA:
        case PORT_INFO_ACCESS_NI:
            return CInfoValue::Bool(false);
        case PORT_INFO_VERSION:
            return CInfoValue::Text(objFacts.Version);
        case PORT_INFO_PORTNAME:
            return CInfoValue::Text(objFacts.Name);
        default:
            throw CProducerError(GC_ERR_NOT_AVAILABLE, "a port has no info command " + std::to_string(nCommand));
    }
}

CInfoValue CPort::GetUrlInfo(std::uint32_t nIndex, URL_INFO_CMD nCommand) {
    const std::vector<URL_FACTS> vecUrl = GetUrls();
    if (nIndex >= vecUrl.size()) {
        throw CProducerError(GC_ERR_INVALID_INDEX, "the port has " + std::to_string(vecUrl.size()) +
                                                       " URLs, none with index " + std::to_string(nIndex));
    }
    const URL_FACTS& objUrl = vecUrl[nIndex];
    switch (nCommand) {
        case URL_INFO_URL:
            return CInfoValue::Text(objUrl.Url);
        case URL_INFO_SCHEMA_VER_MAJOR:
            return CInfoValue::Int32(objUrl.SchemaMajor);
        case URL_INFO_SCHEMA_VER_MINOR:
            return CInfoValue::Int32(objUrl.SchemaMinor);
        case URL_INFO_FILE_REGISTER_ADDRESS:
            return CInfoValue::Uint64(objUrl.Address);
        case URL_INFO_FILE_SIZE:
            return CInfoValue::Uint64(objUrl.Size);
        case URL_INFO_SCHEME:
            return CInfoValue::Int32(objUrl.Scheme);
        case URL_INFO_FILENAME:
            return CInfoValue::Text(objUrl.FileName);
        default:
            throw CProducerError(GC_ERR_NOT_AVAILABLE,
                                 "nothing is known of a URL for the info command " + std::to_string(nCommand));
    }
}

}  // namespace producer
