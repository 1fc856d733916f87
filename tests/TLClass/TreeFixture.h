#pragma once

#include <cstddef>

#include <boost/pointer_cast.hpp>
#include <gtest/gtest.h>

#include "TLClass/TLClassMain/GevDevice.h"
#include "tests/TLClass/TreeOnDouble.h"

/// The tree, initialised.
class CTreeTest : public testing::Test {
protected:
    CTreeTest() { m_objTree.Init(); }

    ProducerDouble::IProducerControl& Double() const { return m_objTree.Double(); }

    CTreeOnDouble m_objTree;
};

/// The same with the adapter "if-1".
class CAdapterTest : public CTreeTest {
protected:
    ProducerDouble::IInterfaceControl& Adapter() const { return Double().Interface("if-1"); }
    bool Update() const { return UpdateDevices(*m_pInterface); }
    boost::shared_ptr<CGevDevice> Device(std::size_t nIndex) const {
        return boost::dynamic_pointer_cast<CGevDevice>(m_pInterface->GetDeviceList().at(nIndex));
    }

    boost::shared_ptr<CGevInterface> m_pInterface = m_objTree.AddInterface("if-1");
};
