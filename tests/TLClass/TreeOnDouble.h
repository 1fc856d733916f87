#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassMain/GevInterface.h"
#include "TLClass/TLClassMain/GevTL.h"
#include "TLClass/TLClassMain/IDevice.h"
#include "TLClass/TLClassMain/TLManager.h"
#include "tests/TLClass/TemporaryDirectory.h"
#include "tests/producer_double/ProducerLibrary.h"

/// The manager of the process with a fresh producer double to find. Whatever a test leaves loaded goes with it.
class CTreeOnDouble {
public:
    CTreeOnDouble();
    ~CTreeOnDouble();
    CTreeOnDouble(const CTreeOnDouble&) = delete;
    CTreeOnDouble& operator=(const CTreeOnDouble&) = delete;

    ProducerDouble::IProducerControl& Double() const { return *m_objLibrary; }
    static CTLManager& Manager() { return *CTLManager::GetInstance(); }
    /// Where the cache directory may be made.
    const CTemporaryDirectory& Directory() const { return m_objDirectory; }

    void Init() const;
    /// The first transport layer, as the class that the double asks for.
    static boost::shared_ptr<CGevTL> TL();
    /// One update of the interfaces. @return what it said of a change
    static bool UpdateInterfaces();
    /// The listed interface of this ID, or empty.
    static boost::shared_ptr<CGevInterface> Interface(const std::string& strID);
    /// Adds the interface to the world and lists it.
    boost::shared_ptr<CGevInterface> AddInterface(const std::string& strID) const;

private:
    CTemporaryDirectory m_objDirectory;
    ProducerDouble::CProducerLibrary m_objLibrary;
};

bool UpdateDevices(CInterface& objInterface);

std::vector<std::string> IDsOf(const std::vector<boost::shared_ptr<IInterface>>& vecInterface);
std::vector<std::string> IDsOf(const std::vector<boost::shared_ptr<IDevice>>& vecDevice);
