#include "TLClass/TLClassMain/BufferInitInfo.h"

namespace TLClass {

void CopyBufferInitInfo(const IBufferInitInfo& objFrom, IBufferInitInfo& objTo) {
    objTo.SetPayloadSize(objFrom.GetPayloadSize());
    objTo.SetWidth(objFrom.GetWidth());
    objTo.SetHeight(objFrom.GetHeight());
    objTo.SetOffsetX(objFrom.GetOffsetX());
    objTo.SetOffsetY(objFrom.GetOffsetY());
    objTo.SetPixelFormat(objFrom.GetPixelFormat());
    objTo.SetOverride(objFrom.GetOverride());
}

}  // namespace TLClass
