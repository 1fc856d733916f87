#pragma once

#include <functional>
#include <utility>

#include "TLClass/TLClassEvent/IDeviceOfflineCallback.h"
#include "TLClass/TLClassEvent/INewBufferCallback.h"
#include "TLClass/TLClassFeature/IFeatureControl.h"

// Callbacks that call a function. Their clones call copies of it.

class CFrameFunction : public INewBufferCallback {
public:
    explicit CFrameFunction(std::function<void(const BUFFER_MODULE_INFO&)> fnFrame) : m_fnFrame(std::move(fnFrame)) {}
    IEventCallback* Clone() override { return new CFrameFunction(m_fnFrame); }
    void OnNewBuffer(const BUFFER_MODULE_INFO& objFrame) override { m_fnFrame(objFrame); }

private:
    std::function<void(const BUFFER_MODULE_INFO&)> m_fnFrame;
};

class COfflineFunction : public IDeviceOfflineCallback {
public:
    explicit COfflineFunction(std::function<void()> fnOffline) : m_fnOffline(std::move(fnOffline)) {}
    IEventCallback* Clone() override { return new COfflineFunction(m_fnOffline); }
    void OnDeviceOffline() override { m_fnOffline(); }

private:
    std::function<void()> m_fnOffline;
};

class CFeatureFunction : public IFeatureControl::IFeatureCallback {
public:
    explicit CFeatureFunction(std::function<void()> fnChanged) : m_fnChanged(std::move(fnChanged)) {}
    IFeatureCallback* Clone() override { return new CFeatureFunction(m_fnChanged); }
    void OnFeatureChanged(GenApi_3_0::INode* /*pNode*/) override { m_fnChanged(); }

private:
    std::function<void()> m_fnChanged;
};
