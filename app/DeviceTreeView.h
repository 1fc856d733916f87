#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include <QTreeWidget>
#include <boost/shared_ptr.hpp>

#include "TLClass/TLClassInfo/DevModuleInfo.h"
#include "TLClass/TLClassMain/GcObject.h"
#include "support/Thread.h"

class IDevice;
class IInterface;
class ITL;

/// The tree of the machine's network adapters and the cameras behind them.
///
/// Brings the enumeration service up and takes it down with itself. Its constructor runs the first update, so it takes
/// as long as that does; later ones run on a thread of its own, which touches nothing but the service and then has the
/// GUI thread rebuild the tree. The selection is remembered by module object, never by text, so it survives an update
/// if the object does. Used on the GUI thread alone.
///
/// What the module tree throws passes through: out of the constructor, out of a rebuild, and on the thread to the end
/// of the process.
class CDeviceTreeView : public QTreeWidget {
    Q_OBJECT

public:
    /// When the tree can't be set up the user is told, and it stays, disabled.
    explicit CDeviceTreeView(QWidget* parent);
    /// Waits without limit for an update that is under way.
    ~CDeviceTreeView() override;
    CDeviceTreeView(const CDeviceTreeView&) = delete;
    CDeviceTreeView& operator=(const CDeviceTreeView&) = delete;

signals:
    // What was selected, by the user or by a rebuild; the latter tells twice. Nothing is told of an object that is
    // gone.
    void SigRootItemSelected();
    void SigGenTLItemSelected(CGcObjectPointer Gcobj);
    void SigItemSelected(CGcObjectPointer Gcobj);
    /// The tree has been rebuilt.
    void SigResetEnumInfo();
    /// An update has ended; emitted on its thread.
    void SigFlushDeviceTree();

public slots:
    /// Starts an update, unless one is under way.
    /// @return false when its thread can't be started
    bool SlotRunEnumThread();

private slots:
    void __SlotItemClicked(QTreeWidgetItem* pCurrent, QTreeWidgetItem* pPrevious);
    void __SlotFlushDeviceTree();

private:
    bool __StartUp();
    bool __InitUI();
    bool __ConnectSignals();
    static std::uint32_t __OnThreadEnum(void* pArg);

    void __ClearDeviceTree();
    bool __AddRoot(const QString& strText);
    bool __AddAllTLs();
    bool __AddTL(const boost::shared_ptr<ITL>& pTL);
    bool __AddInterface(const boost::shared_ptr<IInterface>& pInterface, QTreeWidgetItem* pParent);
    void __AddDevice(const boost::shared_ptr<IDevice>& pDevice, const DEV_MODULE_INFO& objInformation,
                     QTreeWidgetItem* pParent);
    void __EnterItem(QTreeWidgetItem* pItem, const CGcObjectPointer& pObject);
    void __SetItemStyle();
    void __RestoreSelection();

    // Every item of the tree and its object, the root's being the empty pointer. The pointers compare by their owner.
    std::map<QTreeWidgetItem*, CGcObjectPointer> m_mapItemToObject;
    std::map<CGcObjectPointer, QTreeWidgetItem*> m_mapObjectToItem;
    std::unique_ptr<CGcObjectPointer>
        m_pobjCurrentObject;  // what was selected last; keeps an object that is gone alive
    QTreeWidgetItem* m_pobjRootItem = nullptr;
    QTreeWidgetItem* m_pobjGenTLItem = nullptr;  // transport layers have no item yet: stays null
    bool m_bSelectRoot = true;                   // at the next rebuild, whatever m_pobjCurrentObject says
    CThread m_objEnumThread;
};
