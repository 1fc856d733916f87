#pragma once

#include <exception>
#include <memory>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassFeature/IFeatureControl.h"
#include "TLClass/TLClassMain/UnCopyable.h"
#include "TLClass/TLClassXML/XMLAnalyzer.h"
#include "support/CriticalSection.h"
#include "support/ScopedLock.h"

class CGcObject;
class CGenTLLib;

/// The shared pointer of the tree. What an object is, its holder learns by a dynamic cast to one of the interfaces.
using CGcObjectPointer = boost::shared_ptr<CGcObject>;

/// Base of every module of the tree: system, interface, device, data stream. How each of them works is the same.
///
/// Opening. DoOpen... returns at once on an open module. Else it acquires step by step, each step in an agency that
/// undoes it again unless the whole went well:
///  1. the GenTL handle;
///  2. the module's description, from the port that is the handle itself, loaded into m_objXMLAnalyzer;
///  3. a CFeatureControl on the node map;
///  4. what the module keeps of its features: its records.
/// Then the feature control is published, the agencies are dismissed, and the module counts as open. A failure throws
/// and leaves the module closed, with nothing held.
///
/// Listing. DoUpdate...List asks the producer to look again and lines its fresh records up with the children that are
/// there, by their IDs: a child that stays is the same object, with its handle and a fresh record. A refusal of the
/// producer is a line in the log and changes nothing. One update runs at a time (m_csUpdate).
///
/// Closing. DoClose... returns at once on a closed module. Else it closes the children, drops the feature control,
/// clears the analyzer and closes the handle; what the producer refuses then is logged. A child holds its parent and a
/// parent its children, so a module must be closed, not only released. No destructor closes one.
///
/// Identity. Children are the same child if their GenTL ID is the same text to the letter; nothing else counts.
///
/// Threads. Any thread may call anything but the opening and closing of a module whose other operations still run.
/// Locks are taken in this order, each of them only if needed: m_csUpdate, m_csDevice, m_csDataStream, m_csDeviceList,
/// m_csRemoved, m_csChildren; m_csRecords is a leaf behind any of them, and nothing is called with it held. Only the
/// first four are held while a producer is called, those of device and stream also while a thread of an event is
/// joined.
///
/// The producer's library lives as long as the manager lists the module's transport layer; m_pLib dangles after that,
/// unless a device is still open: that keeps the library until it is closed.
class CGcObject : public CUnCopyable {
public:
    /// The children are released, not closed.
    virtual ~CGcObject();

    /// Null until the module is open; not the caller's, and gone once it is closed.
    IFeatureControl* GetFeatureControl() const;
    /// The node map of the module's own port. Null until the module is open; not the caller's.
    GenApi_3_0::CNodeMapRef* GetNodeMap() const { return m_objXMLAnalyzer.GetNodeMapRef(); }
    /// The description behind the node map, as it was loaded.
    std::string GetXML() const { return m_objXMLAnalyzer.GetXML(); }

    // The list of children, in its order. Each operation is atomic. None looks for doubles.
    void AddGcObject(const CGcObjectPointer& pObject);
    void RemoveGcObject(const CGcObjectPointer& pObject);
    void ClearGcObjectList();
    void SetGcObjectList(std::vector<CGcObjectPointer> vecObject);
    /// The shared pointer of a child, by which it gets at that of itself; empty for an object that isn't listed.
    CGcObjectPointer FindGcObject(const CGcObject* pObject) const;

protected:
    /// @param pLib  not owned, never changed
    explicit CGcObject(CGenTLLib* pLib);

    /// The children as T. A child of another kind is left out and gets a line in the log.
    template <typename T>
    std::vector<boost::shared_ptr<T>> _GetGcObjectList() const;

    /// Publishes what opening has made; null takes it back, before the analyzer is cleared.
    void _SetFeatureControl(std::unique_ptr<IFeatureControl> pFeatureControl);

    CGenTLLib* m_pLib;
    CXMLAnalyzer m_objXMLAnalyzer;
    std::unique_ptr<IFeatureControl> m_pFeatureControl;
    mutable CCriticalSection m_csRecords;  // guards m_pFeatureControl here, and the records of the derived modules

private:
    static void __LogInvalidType();
    static void __LogFailure(const std::exception& objException);

    mutable CCriticalSection m_csChildren;  // guards m_vecChildren
    std::vector<CGcObjectPointer> m_vecChildren;
};

template <typename T>
std::vector<boost::shared_ptr<T>> CGcObject::_GetGcObjectList() const {
    const CScopedLock objLock(m_csChildren);
    std::vector<boost::shared_ptr<T>> vecTyped;
    try {
        vecTyped.reserve(m_vecChildren.size());
        for (const CGcObjectPointer& pChild : m_vecChildren) {
            if (boost::shared_ptr<T> pTyped = boost::dynamic_pointer_cast<T>(pChild)) {
                vecTyped.push_back(std::move(pTyped));
            } else {
                __LogInvalidType();
            }
        }
    } catch (const std::exception& objException) {
        __LogFailure(objException);
    }
    return vecTyped;
}
