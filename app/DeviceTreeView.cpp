#include "app/DeviceTreeView.h"

#include <algorithm>
#include <new>

#include <QFont>
#include <QMessageBox>

#include "TLClass/TLClassMain/IDevice.h"
#include "TLClass/TLClassMain/IInterface.h"
#include "TLClass/TLClassMain/ITL.h"
#include "app/EnumerationService.h"
#include "app/NullPointerLine.h"

namespace {

constexpr std::uint32_t kFirstUpdateMs = 500;  // the window isn't there before it has ended
constexpr std::uint32_t kUpdateMs = 10000;

constexpr int kColumn = 0;
constexpr int kItemType = 0;
constexpr int kItemPointSize = 10;
constexpr int kItemHeight = 30;

void Warn(QWidget* pParent, const QString& strTitle, const QString& strText) {
    QMessageBox::warning(pParent, strTitle, strText, QMessageBox::Ok, QMessageBox::NoButton);
}

/// Adds with each element in order, up to the first that can't be added.
template <class TList, class TAdd>
bool AddEach(const TList& vecElement, const TAdd& funAdd) {
    return std::all_of(vecElement.begin(), vecElement.end(), funAdd);
}

}  // namespace

CDeviceTreeView::CDeviceTreeView(QWidget* parent)
    : QTreeWidget(parent), m_pobjCurrentObject(std::make_unique<CGcObjectPointer>()) {
    qRegisterMetaType<CGcObjectPointer>("CGcObjectPointer");  // by which a host may queue our signals
    setHeaderHidden(true);
    setColumnCount(1);
    if (!__StartUp()) {
        setEnabled(false);
        Warn(this, QObject::tr("Warning"), tr("Device Tree Window initialize failed"));
    }
}

CDeviceTreeView::~CDeviceTreeView() {
    m_mapItemToObject.clear();
    m_mapObjectToItem.clear();
    m_pobjCurrentObject.reset();
    // Nothing of the tree may be in use while the producers go down, so the wait comes before, not with the members.
    m_objEnumThread.Join();
    CEnumerationService::GetInstance()->Uninit();
    __ClearDeviceTree();
}

bool CDeviceTreeView::__StartUp() {
    CEnumerationService::GetInstance()->Init();
    if (!__InitUI() || !__ConnectSignals()) {
        return false;
    }
    CEnumerationService::GetInstance()->UpdateDeviceList(kFirstUpdateMs);
    __SlotFlushDeviceTree();
    return true;
}

bool CDeviceTreeView::__InitUI() {
    return __AddRoot(tr("All")) || ReportNullPointer(".\\DeviceTreeView", 276, "CDeviceTreeView::__InitUI");
}

bool CDeviceTreeView::__ConnectSignals() {
    return connect(this, SIGNAL(currentItemChanged(QTreeWidgetItem*, QTreeWidgetItem*)), this,
                   SLOT(__SlotItemClicked(QTreeWidgetItem*, QTreeWidgetItem*))) &&
           connect(this, SIGNAL(SigFlushDeviceTree()), this, SLOT(__SlotFlushDeviceTree()));
}

bool CDeviceTreeView::SlotRunEnumThread() {
    return m_objEnumThread.IsRunning() || m_objEnumThread.Start(this, &__OnThreadEnum, kPriorityNormal);
}

std::uint32_t CDeviceTreeView::__OnThreadEnum(void* pArg) {
    CEnumerationService::GetInstance()->UpdateDeviceList(kUpdateMs);
    emit static_cast<CDeviceTreeView*>(pArg)->SigFlushDeviceTree();
    return 0;
}

/// Empties the tree. Without a current item the selection remembered before stays.
void CDeviceTreeView::__ClearDeviceTree() {
    const auto itCurrent = m_mapItemToObject.find(currentItem());
    if (itCurrent != m_mapItemToObject.end()) {
        m_pobjCurrentObject = std::make_unique<CGcObjectPointer>(itCurrent->second);
        if (!itCurrent->second) {
            m_bSelectRoot = true;
        }
    }
    m_mapItemToObject.clear();
    m_mapObjectToItem.clear();
    clear();
}

void CDeviceTreeView::__SlotFlushDeviceTree() {
    __ClearDeviceTree();
    if (!__AddRoot(tr("System"))) {
        Warn(this, tr("Warning"), QStringLiteral("Not enough memory"));
        return;
    }
    if (!__AddAllTLs()) {
        Warn(this, tr("Warning"), tr("Device tree create failed"));
        __ClearDeviceTree();
        return;
    }
    __SetItemStyle();
    emit SigResetEnumInfo();
    __RestoreSelection();
}

bool CDeviceTreeView::__AddRoot(const QString& strText) {
    m_pobjRootItem = new (std::nothrow) QTreeWidgetItem(this, kItemType);
    if (m_pobjRootItem == nullptr) {
        return false;
    }
    m_pobjRootItem->setText(kColumn, strText);
    m_pobjRootItem->setToolTip(kColumn, strText);
    __EnterItem(m_pobjRootItem, CGcObjectPointer());
    return true;
}

bool CDeviceTreeView::__AddAllTLs() {
    return AddEach(CEnumerationService::GetInstance()->GetAllTLs(),
                   [this](const boost::shared_ptr<ITL>& pTL) { return __AddTL(pTL); });
}

/// Transport layers have no item: their interfaces stand under the root.
bool CDeviceTreeView::__AddTL(const boost::shared_ptr<ITL>& pTL) {
    return AddEach(
        CEnumerationService::GetInstance()->GetInterfaces(pTL),
        [this](const boost::shared_ptr<IInterface>& pInterface) { return __AddInterface(pInterface, m_pobjRootItem); });
}

bool CDeviceTreeView::__AddInterface(const boost::shared_ptr<IInterface>& pInterface, QTreeWidgetItem* pParent) {
    const IF_MODULE_INFO objInformation = pInterface->GetInterfaceInformation();
    auto* pItem = new (std::nothrow) QTreeWidgetItem(pParent, kItemType);
    if (pItem == nullptr) {
        return false;
    }
    const QString strText = QString::fromLocal8Bit(objInformation.DisplayName.c_str());
    pItem->setText(kColumn, strText);
    pItem->setToolTip(kColumn, strText);
    __EnterItem(pItem, pInterface);
    for (const boost::shared_ptr<IDevice>& pDevice : pInterface->GetDeviceList()) {
        __AddDevice(pDevice, pDevice->GetDeviceInformation(), pItem);
    }
    return true;
}

void CDeviceTreeView::__AddDevice(const boost::shared_ptr<IDevice>& pDevice, const DEV_MODULE_INFO& objInformation,
                                  QTreeWidgetItem* pParent) {
    auto* pItem = new QTreeWidgetItem(pParent, kItemType);
    QString strText = QString::fromUtf8(objInformation.DisplayName.c_str());
    if (strText.isEmpty()) {
        strText = tr("Unknown device");
    }
    QFont objFont = pItem->font(kColumn);
    objFont.setBold(pDevice->IsOpened());
    pItem->setFont(kColumn, objFont);
    pItem->setText(kColumn, strText);
    __EnterItem(pItem, pDevice);
}

void CDeviceTreeView::__EnterItem(QTreeWidgetItem* pItem, const CGcObjectPointer& pObject) {
    m_mapItemToObject[pItem] = pObject;
    m_mapObjectToItem[pObject] = pItem;
}

/// One look for all items. It takes the bold of open devices away again: so it is wanted.
void CDeviceTreeView::__SetItemStyle() {
    QFont objFont;
    objFont.setPointSize(kItemPointSize);
    for (const auto& [pItem, pObject] : m_mapItemToObject) {
        pItem->setFont(kColumn, objFont);
        QSize objHint = pItem->sizeHint(kColumn);
        objHint.setHeight(kItemHeight);
        pItem->setData(kColumn, Qt::SizeHintRole, objHint);  // setSizeHint would drop it for having no width
    }
    expandAll();
}

/// Selects the item of the object that was selected before; none, if the object is gone.
void CDeviceTreeView::__RestoreSelection() {
    if (m_bSelectRoot) {
        setCurrentItem(m_pobjRootItem);
        m_bSelectRoot = false;
        emit SigRootItemSelected();
        return;
    }
    const auto itCurrent = m_mapObjectToItem.find(*m_pobjCurrentObject);
    if (itCurrent != m_mapObjectToItem.end()) {
        const CGcObjectPointer pObject = itCurrent->first;
        setCurrentItem(itCurrent->second);
        emit SigItemSelected(pObject);
    }
}

void CDeviceTreeView::__SlotItemClicked(QTreeWidgetItem* pCurrent, QTreeWidgetItem* pPrevious) {
    if (pCurrent == pPrevious || pCurrent == nullptr) {
        return;
    }
    const auto itCurrent = m_mapItemToObject.find(pCurrent);
    if (itCurrent == m_mapItemToObject.end()) {
        return;
    }
    if (pCurrent == m_pobjRootItem) {
        emit SigRootItemSelected();
    } else if (pCurrent == m_pobjGenTLItem) {
        emit SigGenTLItemSelected(itCurrent->second);
    } else {
        emit SigItemSelected(itCurrent->second);
    }
}
