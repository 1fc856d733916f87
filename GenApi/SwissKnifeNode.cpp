#include "GenApi/SwissKnifeNode.h"

#include "GenApi/GCException.h"
#include "GenApi/PropertyReader.h"

namespace GenApi_3_0 {

template <class Base, class Value>
bool CSwissKnife<Base, Value>::Apply(const PROPERTY& objProperty, CPropertyReader& objReader) {
    if (objProperty.Tag == ETag::Formula) {
        m_objFormula.SetText(objProperty.Text);
        return true;
    }
    return m_objInputs.Apply(objProperty, objReader) || Base::Apply(objProperty, objReader);
}

template <class Base, class Value>
void CSwissKnife<Base, Value>::Complete(CPropertyReader& objReader) {
    m_objInputs.LinkLimits(m_objFormula.Text(), objReader);
    Base::Complete(objReader);
}

template <class Base, class Value>
void CSwissKnife<Base, Value>::ThrowNotWritable() const {
    GenICam_3_0::Throw<GenICam_3_0::AccessException>(this->Subject() + " is computed from others and can't be written");
}

template class CSwissKnife<CIntegerValue, std::int64_t>;
template class CSwissKnife<CFloatValue, double>;

}  // namespace GenApi_3_0
