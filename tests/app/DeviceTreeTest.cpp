// The list of cameras as the user sees and drives it, on a machine whose producer the tests script.

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "TLClass/TLClassMain/IDevice.h"
#include "app/DeviceTreeView.h"
#include "app/EnumerationService.h"
#include "app/Norvik.h"
#include "tests/app/MessageWatch.h"
#include "tests/network/OwnMachine.h"
#include "tests/producer_double/ProducerLibrary.h"

namespace {

using ProducerDouble::ANSWER;
using ProducerDouble::IProducerControl;

constexpr char kPathVariable[] = "GENICAM_GENTL64_PATH";

/// The window on the screen, and the user in front of it.
class CScreen {
public:
    CScreen() {
        m_objWindow.show();
        [[maybe_unused]] const bool bShown = QTest::qWaitForWindowExposed(&m_objWindow);
    }

    CDeviceTreeView& Tree() { return *m_objWindow.findChild<CDeviceTreeView*>(); }
    QLineEdit& AddressEdit() { return *m_objWindow.findChild<QLineEdit*>(QStringLiteral("IPEdit")); }
    const CNorvik& Window() const { return m_objWindow; }

    /// The rows from top to bottom, those below another with as many blanks as there are above them.
    QStringList Rows() {
        QStringList listRow;
        for (QTreeWidgetItem* pItem = Tree().topLevelItem(0); pItem != nullptr; pItem = Tree().itemBelow(pItem)) {
            listRow << QString(Depth(pItem), QLatin1Char(' ')) + pItem->text(0);
        }
        return listRow;
    }

    QTreeWidgetItem* Row(const char* pText) {
        const auto listFound = Tree().findItems(QString::fromUtf8(pText), Qt::MatchExactly | Qt::MatchRecursive);
        return listFound.size() == 1 ? listFound[0] : nullptr;
    }

    void Select(const char* pText) {
        QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualItemRect(Row(pText)).center());
    }

    QString Selected() {
        const auto listSelected = Tree().selectedItems();
        const QTreeWidgetItem* pCurrent = Tree().currentItem();
        if (pCurrent == nullptr) {
            return listSelected.isEmpty() ? QString() : QStringLiteral("selected, but not current");
        }
        return listSelected == QList{Tree().currentItem()} ? pCurrent->text(0) : QStringLiteral("not selected");
    }

    void PressEnumerate() {
        QTest::mouseClick(m_objWindow.findChild<QPushButton*>(QStringLiteral("EnumButton")), Qt::LeftButton);
    }

    /// Presses the button, waits until the tree shows what came of it, and then for the end of the update's thread: a
    /// press that meets its last moments is ignored.
    bool Enumerate() {
        const qsizetype nThreads = CountThreads();
        QSignalSpy objRebuilt(&Tree(), SIGNAL(SigResetEnumInfo()));
        PressEnumerate();
        // By count: the press itself handles events, so a quick update may be over before the wait begins.
        return QTest::qWaitFor([&] { return !objRebuilt.isEmpty(); }, 10000) &&
               QTest::qWaitFor([&] { return CountThreads() <= nThreads; }, 10000);
    }

private:
    static qsizetype CountThreads() {
        return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
    }

    static int Depth(const QTreeWidgetItem* pItem) {
        return pItem->parent() == nullptr ? 0 : 1 + Depth(pItem->parent());
    }

    CNorvik m_objWindow;
};

std::string IDOf(const QVariant& objArgument) {
    const auto pDevice = boost::dynamic_pointer_cast<IDevice>(objArgument.value<CGcObjectPointer>());
    return pDevice ? pDevice->GetDeviceInformation().ID : "no device";
}

}  // namespace

class DeviceTreeTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void AdaptersAndCamerasStandUnderTheSystem();
    void NoNameBreaksTheTree();
    void UpdateShowsWhatHasChanged();
    void SelectionStaysOverAnUpdate();
    void SelectionGoesWithItsCamera();
    void SelectionComesBackWithItsObject();
    void MetaObjectListsTheMembersInTheirOrder();
    void PressWhileAnUpdateRunsIsIgnored();
    void PressBetweenAnUpdateAndItsRebuildStartsAnother();
    void ClosingTheWindowWaitsForTheUpdate();
    void MachineWithoutAProducerShowsTheSystemAlone();

private:
    IProducerControl& Producer() { return **m_pProducer; }

    std::unique_ptr<ProducerDouble::CProducerLibrary> m_pProducer;
    std::unique_ptr<CMessageWatch> m_pMessages;
};

/// Two adapters and five cameras, the last of which has no name.
void DeviceTreeTest::init() {
    qputenv(kPathVariable, PRODUCER_DOUBLE_DIRECTORY);
    m_pMessages = std::make_unique<CMessageWatch>();
    m_pProducer = std::make_unique<ProducerDouble::CProducerLibrary>(PRODUCER_DOUBLE);
    auto& objFirst = Producer().AddInterface("if-1");
    objFirst.SetInfo(INTERFACE_INFO_DISPLAYNAME, ANSWER::Text("Netzwerkkarte für 相机"));
    for (const char* pID : {"cam-1", "cam-2", "cam-3"}) {
        objFirst.Plug(pID);
    }
    objFirst.Device("cam-2").SetInfo(DEVICE_INFO_DISPLAYNAME, ANSWER::Text("Kamera 二号"));
    auto& objSecond = Producer().AddInterface("if-2");
    objSecond.Plug("cam-4");
    objSecond.Plug("cam-5").SetInfo(DEVICE_INFO_DISPLAYNAME, ANSWER::Text(""));
}

/// Whatever a test did, the window told the user nothing and left nothing open in the producer.
void DeviceTreeTest::cleanup() {
    QCOMPARE(m_pMessages->Take(), QStringList());
    QVERIFY(Producer().OpenModules().empty());
    QVERIFY(!Producer().IsInitialised());
    m_pProducer.reset();
}

void DeviceTreeTest::AdaptersAndCamerasStandUnderTheSystem() {
    CScreen objScreen;
    const QStringList listExpected = {
        QStringLiteral("System"),  QString::fromUtf8(" Netzwerkkarte für 相机"),
        QStringLiteral("  cam-1"), QString::fromUtf8("  Kamera 二号"),
        QStringLiteral("  cam-3"), QStringLiteral(" if-2"),
        QStringLiteral("  cam-4"), QStringLiteral("  Unknown device"),
    };
    QCOMPARE(objScreen.Rows(), listExpected);
    QCOMPARE(objScreen.Selected(), QStringLiteral("System"));

    CDeviceTreeView& objTree = objScreen.Tree();
    for (auto* pItem = objTree.topLevelItem(0); pItem != nullptr; pItem = objTree.itemBelow(pItem)) {
        const bool bDevice = pItem->parent() != nullptr && pItem->parent()->parent() != nullptr;
        QCOMPARE(pItem->toolTip(0), bDevice ? QString() : pItem->text(0));
        QCOMPARE(objTree.visualItemRect(pItem).height(), 30);
        QCOMPARE(pItem->font(0).pointSize(), 10);
        QVERIFY(!pItem->font(0).bold());
        QVERIFY(pItem->isExpanded() || pItem->childCount() == 0);
    }

    const auto* pHost = objScreen.Window().findChild<QWidget*>(QStringLiteral("pobjWidget"));
    QCOMPARE(objTree.parentWidget(), pHost);
    QVERIFY(objTree.isVisible() && objTree.isEnabled() && objTree.isHeaderHidden());
    QCOMPARE(objTree.columnCount(), 1);
    QCOMPARE(objTree.minimumWidth(), 200);
    QCOMPARE(objTree.width(), 480);
    QVERIFY(objTree.height() > pHost->height() - 40);
}

void DeviceTreeTest::NoNameBreaksTheTree() {
    const std::pair<QByteArray, QString> arrCase[] = {
        {"a\xFF\xFE\xC3", QStringLiteral("a\uFFFD\uFFFD\uFFFD")},  // bytes that are no text
        {QByteArray("ab\0cd", 5), QStringLiteral("ab")},
        {"%s%n%1", QStringLiteral("%s%n%1")},
        {QByteArray(100000, 'x'), QString(100000, QLatin1Char('x'))},
    };
    for (const auto& [strName, strText] : arrCase) {
        const ANSWER objName = ANSWER::Text({strName.constData(), static_cast<std::size_t>(strName.size())});
        Producer().Interface("if-1").SetInfo(INTERFACE_INFO_DISPLAYNAME, objName);
        Producer().Device("cam-1").SetInfo(DEVICE_INFO_DISPLAYNAME, objName);
        CScreen objScreen;
        QCOMPARE(objScreen.Rows().mid(1, 2),
                 QStringList({QStringLiteral(" ") + strText, QStringLiteral("  ") + strText}));
        QCOMPARE(objScreen.Tree().visualItemRect(objScreen.Row("cam-3")).height(), 30);
    }
}

void DeviceTreeTest::UpdateShowsWhatHasChanged() {
    CScreen objScreen;
    Producer().Interface("if-1").Unplug("cam-1").Plug("cam-6");
    Producer().Device("cam-2").SetInfo(DEVICE_INFO_DISPLAYNAME, ANSWER::Text("renamed"));
    Producer().RemoveInterface("if-2");
    Producer().AddInterface("if-3");
    QVERIFY(objScreen.Enumerate());
    const QStringList listExpected = {
        QStringLiteral("System"),    QString::fromUtf8(" Netzwerkkarte für 相机"),
        QStringLiteral("  renamed"), QStringLiteral("  cam-3"),
        QStringLiteral("  cam-6"),   QStringLiteral(" if-3"),
    };
    QCOMPARE(objScreen.Rows(), listExpected);
}

void DeviceTreeTest::SelectionStaysOverAnUpdate() {
    for (const std::string strName : {"System", "cam-3", "Unknown device"}) {
        Producer().Lists(std::nullopt).Interface("if-1").Lists(std::nullopt);
        CScreen objScreen;
        objScreen.Select("cam-4");
        objScreen.Select(strName.c_str());
        QCOMPARE(objScreen.Selected().toStdString(), strName);

        QSignalSpy objRoot(&objScreen.Tree(), SIGNAL(SigRootItemSelected()));
        QSignalSpy objItem(&objScreen.Tree(), SIGNAL(SigItemSelected(CGcObjectPointer)));
        Producer().Lists({{"if-2", "if-1"}});
        Producer().Interface("if-1").Lists({{"cam-3", "cam-2"}});
        QVERIFY(objScreen.Enumerate());
        QCOMPARE(objScreen.Selected().toStdString(), strName);
        QCOMPARE(objScreen.Rows().at(1), QStringLiteral(" if-2"));

        // A rebuild tells of what it selects twice.
        QCOMPARE(objRoot.count(), strName == "System" ? 2 : 0);
        QCOMPARE(objItem.count(), strName == "System" ? 0 : 2);
        if (strName == "cam-3") {
            QCOMPARE(IDOf(objItem[0][0]), strName);
            QCOMPARE(objItem[0][0].value<CGcObjectPointer>(), objItem[1][0].value<CGcObjectPointer>());
        }
    }
}

void DeviceTreeTest::SelectionGoesWithItsCamera() {
    CScreen objScreen;
    objScreen.Select("cam-3");
    QSignalSpy objItem(&objScreen.Tree(), SIGNAL(SigItemSelected(CGcObjectPointer)));
    QSignalSpy objRoot(&objScreen.Tree(), SIGNAL(SigRootItemSelected()));
    Producer().Unplug("cam-3");
    QVERIFY(objScreen.Enumerate());
    QCOMPARE(objScreen.Selected(), QString());

    // A closed camera that comes back is another object, so nothing of it is selected.
    Producer().Plug("cam-3");
    QVERIFY(objScreen.Enumerate());
    QVERIFY(objScreen.Row("cam-3") != nullptr);
    QCOMPARE(objScreen.Selected(), QString());
    QCOMPARE(objItem.count() + objRoot.count(), 0);

    objScreen.Select("cam-3");
    QVERIFY(objScreen.Enumerate());
    QCOMPARE(objScreen.Selected(), QStringLiteral("cam-3"));
}

// An adapter that goes is kept with its cameras, and so comes back as it was.
void DeviceTreeTest::SelectionComesBackWithItsObject() {
    for (const char* pName : {"if-2", "cam-4"}) {
        CScreen objScreen;
        objScreen.Select(pName);
        Producer().RemoveInterface("if-2");
        for (int nUpdate = 0; nUpdate < 2; ++nUpdate) {
            QVERIFY(objScreen.Enumerate());
            QCOMPARE(objScreen.Selected(), QString());
        }
        Producer().AddInterface("if-2");
        QVERIFY(objScreen.Enumerate());
        QCOMPARE(objScreen.Selected(), QString::fromUtf8(pName));
    }
}

void DeviceTreeTest::MetaObjectListsTheMembersInTheirOrder() {
    const QMetaObject& objMeta = CDeviceTreeView::staticMetaObject;
    QStringList listMember;
    for (int i = objMeta.methodOffset(); i < objMeta.methodCount(); ++i) {
        const QMetaMethod objMethod = objMeta.method(i);
        listMember << QStringLiteral("%1 %2 [%3]")
                          .arg(QString::fromLatin1(objMethod.typeName()),
                               QString::fromLatin1(objMethod.methodSignature()),
                               QString::fromLatin1(objMethod.parameterNames().join(',')));
    }
    const QStringList listExpected = {
        QStringLiteral("void SigRootItemSelected() []"),
        QStringLiteral("void SigGenTLItemSelected(CGcObjectPointer) [Gcobj]"),
        QStringLiteral("void SigItemSelected(CGcObjectPointer) [Gcobj]"),
        QStringLiteral("void SigResetEnumInfo() []"),
        QStringLiteral("void SigFlushDeviceTree() []"),
        QStringLiteral("bool SlotRunEnumThread() []"),
        QStringLiteral("void __SlotItemClicked(QTreeWidgetItem*,QTreeWidgetItem*) [pCurrent,pPrevious]"),
        QStringLiteral("void __SlotFlushDeviceTree() []"),
    };
    QCOMPARE(listMember, listExpected);
}

void DeviceTreeTest::PressWhileAnUpdateRunsIsIgnored() {
    CScreen objScreen;
    const QStringList listBefore = objScreen.Rows();
    auto& objBlock = Producer().On("IFUpdateDeviceList").For("if-1").Block();
    const auto objRelease = qScopeGuard([&] { objBlock.Release(); });
    Producer().Unplug("cam-1");
    objScreen.PressEnumerate();
    QVERIFY(objBlock.WaitUntilBlocked());

    objScreen.PressEnumerate();
    QVERIFY(objScreen.Tree().SlotRunEnumThread());
    QTest::keyClick(&objScreen.AddressEdit(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&objScreen.AddressEdit(), QStringLiteral("10.1.2.3"));
    QCOMPARE(objScreen.AddressEdit().text(), QStringLiteral("10.1.2.3"));
    QCOMPARE(objScreen.Rows(), listBefore);

    QSignalSpy objRebuilt(&objScreen.Tree(), SIGNAL(SigResetEnumInfo()));
    objBlock.Release();
    QVERIFY(objRebuilt.wait(10000));
    QCOMPARE(objScreen.Rows().size(), listBefore.size() - 1);
    QCOMPARE(Producer().Count("TLUpdateInterfaceList"), std::size_t{2});  // the first one and this one
}

void DeviceTreeTest::PressBetweenAnUpdateAndItsRebuildStartsAnother() {
    CScreen objScreen;
    QSignalSpy objRebuilt(&objScreen.Tree(), SIGNAL(SigResetEnumInfo()));
    auto& objBlock = Producer().On("TLUpdateInterfaceList").Call(2).Block();
    const auto objRelease = qScopeGuard([&] { objBlock.Release(); });
    Producer().Unplug("cam-1");
    objScreen.PressEnumerate();
    // The GUI thread sees no event until the second update is under way, which begins once the first has ended.
    const QDeadlineTimer objLimit(10000);
    while (Producer().Count("TLUpdateInterfaceList") < 3 && !objLimit.hasExpired()) {
        QVERIFY(objScreen.Tree().SlotRunEnumThread());
        std::this_thread::yield();
    }
    QVERIFY(objBlock.WaitUntilBlocked());
    QCOMPARE(objRebuilt.count(), 0);
    QVERIFY(objRebuilt.wait(10000));
    QVERIFY(objScreen.Row("cam-1") == nullptr && objScreen.Row("cam-3") != nullptr);

    Producer().Unplug("cam-3");
    objBlock.Release();
    QVERIFY(objRebuilt.wait(10000));
    QVERIFY(objScreen.Row("cam-3") == nullptr);
}

void DeviceTreeTest::ClosingTheWindowWaitsForTheUpdate() {
    auto pScreen = std::make_unique<CScreen>();
    // The second adapter is still at it while the first could be closed already.
    Producer().On("IFUpdateDeviceList").For("if-2").Delay(std::chrono::milliseconds(300));
    Producer().ClearCalls();
    pScreen->PressEnumerate();
    QVERIFY(Producer().WaitForCalls("IFUpdateDeviceList", 2));
    pScreen.reset();

    std::size_t nClosed = 0;
    for (const ProducerDouble::CALL& objCall : Producer().Calls()) {
        if (objCall.strEntry == "IFClose") {
            ++nClosed;
        } else if (objCall.strEntry == "IFGetNumDevices") {
            QCOMPARE(nClosed, std::size_t{0});
        }
    }
    QCOMPARE(nClosed, std::size_t{2});
    QVERIFY(CEnumerationService::GetInstance()->GetAllTLs().empty());
}

void DeviceTreeTest::MachineWithoutAProducerShowsTheSystemAlone() {
    qunsetenv(kPathVariable);
    for (const char* pFile : {"", PRODUCER_DOUBLE_NO_LIBRARY, PRODUCER_DOUBLE_WITHOUT_EXPORTS}) {
        const QTemporaryDir objDirectory;
        if (*pFile != '\0') {
            QVERIFY(QFile::copy(QString::fromUtf8(pFile), objDirectory.filePath(QStringLiteral("ZrGVTL.cti"))));
            qputenv(kPathVariable, "/nowhere:/dev/null:" + objDirectory.path().toUtf8());
        }
        CScreen objScreen;
        const QStringList listSystem = {QStringLiteral("System")};
        QCOMPARE(objScreen.Rows(), listSystem);
        QVERIFY(objScreen.Enumerate());
        QCOMPARE(objScreen.Rows(), listSystem);
        QCOMPARE(objScreen.Selected(), QStringLiteral("System"));
        QCOMPARE(objScreen.Tree().visualItemRect(objScreen.Row("System")).height(), 30);
        QVERIFY(objScreen.Window().isEnabled() && objScreen.Tree().isEnabled());
    }
}

int main(int argc, char* argv[]) {
    return RunOnOwnMachine<DeviceTreeTest>(argc, argv);
}

#include "DeviceTreeTest.moc"
