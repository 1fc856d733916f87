// Reading and writing features, and the lists.

#include <cmath>
#include <sstream>

#include "TLClass/TLClassFeature/FeatureFile.h"
#include "TLClass/TLClassMain/IDataStream.h"
#include "tests/TLClass/FunctionCallback.h"
#include "tests/network/TreeOnProducer.h"
#include "tests/soak/Playground.h"

namespace {

/// One camera, open.
class CFeatureUse {
public:
    CFeatureUse(PLAYGROUND& objPlayground, IDevice& objDevice, bool bReadsBack, CChance& objChance)
        : m_objBook(objPlayground.Book), m_objDevice(objDevice), m_bReadsBack(bReadsBack), m_objChance(objChance) {}

    void DoSomething() {
        const int nWhat = m_objChance.Between(0, 9);
        if (nWhat == 0) {
            WriteGain();
        } else if (nWhat == 1) {
            WriteText();
        } else if (nWhat == 2) {
            WalkTable();
        } else if (nWhat == 3) {
            UseCallback();
        } else if (nWhat == 4 && m_objChance.OneIn(8)) {
            UseFile();
        } else if (nWhat == 5) {
            Read([&] { m_objDevice.GetFeatureControl()->DoGetInt("ControlCommandCount"); });
        } else if (nWhat > 5) {
            Read([&] { Remote().DoGetFloat("DeviceTemperature"); });
        }
    }

private:
    IFeatureControl& Remote() { return *m_objDevice.GetRemoteFeatureControl(); }

    template <class Call>
    bool Read(const Call& funCall) {
        return m_objBook.Try(ECall::Read, funCall);
    }
    template <class Call>
    bool Write(const Call& funCall) {
        return m_objBook.Try(ECall::Write, funCall);
    }

    /// What was written is read, past the node map's cache, unless the camera is another one by now.
    void WriteGain() {
        const double fGain = m_objChance.Between(0, 24);
        double fRead = 0;
        if (Write([&] { Remote().DoSetFloat("Gain", fGain); }) && m_bReadsBack && Read([&] {
                Remote().DoGetFloat("Gain");
                m_objDevice.GetRemoteNodeMap()->_InvalidateNodes();
                fRead = Remote().DoGetFloat("Gain");
            })) {
            m_objBook.Expect(std::abs(fRead - fGain) < 0.01,
                             "Gain was set to " + std::to_string(fGain) + " and is " + std::to_string(fRead));
        }
    }

    void WriteText() {
        const std::string strName = "soak " + std::to_string(m_objChance.Between(0, 99999));
        std::string strRead;
        if (Write([&] { Remote().DoSetString("DeviceUserID", strName); }) && m_bReadsBack &&
            Read([&] { strRead = Remote().DoGetString("DeviceUserID"); })) {
            m_objBook.Expect(strRead == strName, "DeviceUserID was set to '" + strName + "' and is '" + strRead + "'");
        }
    }

    void WalkTable() {
        for (int i = 0; i < 8; ++i) {
            const std::int64_t nPlace = m_objChance.Between(0, 15);
            Write([&] { Remote().DoSetInt("LUTIndex", nPlace); });
            Write([&] { Remote().DoSetInt("LUTValue", nPlace * 3); });
        }
    }

    void UseCallback() {
        CFeatureFunction objCallback([] {});
        Write([&] {
            auto* const pHandle = Remote().RegisterFeatureCallback("ExposureTime", &objCallback);
            Remote().DoSetFloat("ExposureTime", m_objChance.Between(10, 5000));
            Remote().UnregisterFeatureCallback(pHandle);
        });
    }

    void UseFile() {
        m_objBook.Try(ECall::FeatureFile, [&] {
            const auto pStream = m_objDevice.GetDataStreamList().at(0);
            pStream->DoOpenDataStream();
            const CFeatureFile objFile(m_objDevice.GetRemoteNodeMap(), m_objDevice.GetNodeMap(), pStream->GetNodeMap());
            std::stringstream stream;
            objFile.Save(stream);
            objFile.Load(stream, true);
        });
    }

    CCallBook& m_objBook;
    IDevice& m_objDevice;
    const bool m_bReadsBack;
    CChance& m_objChance;
};

}  // namespace

void UseFeatures(PLAYGROUND& objPlayground, int nCamera, bool bReadsBack, CChance objChance) {
    CCallBook& objBook = objPlayground.Book;
    while (!objPlayground.Stop) {
        const auto pDevice = FindCamera(nCamera);
        const std::uint32_t nAccess = objChance.OneIn(6) ? DEVICE_ACCESS_READONLY : DEVICE_ACCESS_CONTROL;
        if (pDevice == nullptr || !objBook.Try(ECall::Open, [&] { pDevice->DoOpenDevice(nAccess); })) {
            objChance.Wait(objPlayground, 50, 200);
            continue;
        }
        std::atomic<std::uint64_t> nGone = 0;
        COfflineFunction objCallback([&nGone] { ++nGone; });
        objBook.Try(ECall::Open, [&] { pDevice->RegisterDeviceOfflineCallback(&objCallback); });
        if (objChance.OneIn(2)) {
            objBook.Try(ECall::Write,
                        [&] { pDevice->GetFeatureControl()->DoSetFloat("DeviceLinkHeartbeatTimeout", 500'000); });
        }
        CFeatureUse objUse(objPlayground, *pDevice, bReadsBack, objChance);
        for (int nUses = objChance.Between(1, 120); nUses > 0 && !objPlayground.Stop; --nUses) {
            objUse.DoSomething();
            objChance.Wait(objPlayground, 0, 30);
            nUses = pDevice->IsDeviceOffline() ? 1 : nUses;
        }
        objBook.Expect(objBook.Try(ECall::Close, [&] { pDevice->DoCloseDevice(); }), "a camera won't close");
        objBook.Expect(nGone <= 1, "a camera's going was told " + std::to_string(nGone) + " times");
        objPlayground.Goings += nGone;
    }
}

void UpdateLists(PLAYGROUND& objPlayground, CChance objChance) {
    while (!objPlayground.Stop) {
        const bool bGood =
            objPlayground.Book.Try(ECall::Update, [&] { CTreeOnProducer::Update(objChance.OneIn(2) ? 200 : 50); });
        objPlayground.Book.Expect(bGood, "an update was refused");
        for (int i = 0; i < kCameras; ++i) {
            if (const auto pDevice = FindCamera(i)) {
                pDevice->GetCommonInformation();
            }
        }
        objChance.Wait(objPlayground, 0, 300);
    }
}

boost::shared_ptr<IDevice> FindCamera(int nCamera) {
    const std::string strID = "(02-4E-00-00-01-0" + std::to_string(nCamera) + ")";
    const auto vecInterface = CTreeOnProducer::TL()->GetInterfaceList();
    for (const boost::shared_ptr<IInterface>& pInterface : vecInterface) {
        for (const boost::shared_ptr<IDevice>& pDevice : pInterface->GetDeviceList()) {
            if (pDevice->GetDeviceInformation().ID.ends_with(strID)) {
                return pDevice;
            }
        }
    }
    return nullptr;
}
