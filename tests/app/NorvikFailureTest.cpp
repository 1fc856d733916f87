// What is left of the window when its initialisation fails. The steps that can fail are connections and some of its
// allocations, so this program puts itself between the window and Qt's connect, and before the allocation that doesn't
// throw.

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

#include <dlfcn.h>

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "app/DeviceTreeView.h"
#include "app/Norvik.h"
#include "tests/app/MessageWatch.h"
#include "tests/network/OwnMachine.h"
#include "tests/producer_double/ProducerLibrary.h"

namespace {

QByteArray g_strFailingMember;         // no connection to it can be made
std::size_t g_nFailingSize = 0;        // no memory for the one of this size...
int g_nAllocationsBefore = 0;          // ...that comes after so many
QStringList* g_pDebugLines = nullptr;  // takes what is written meanwhile

void TakeDebugLine(QtMsgType nType, const QMessageLogContext&, const QString& strLine) {
    if (nType == QtDebugMsg) {
        *g_pDebugLines << strLine;
    }
}

}  // namespace

QMetaObject::Connection QObject::connect(const QObject* pSender, const char* pSignal, const QObject* pReceiver,
                                         const char* pMember, Qt::ConnectionType nType) {
    using Connect =
        QMetaObject::Connection (*)(const QObject*, const char*, const QObject*, const char*, Qt::ConnectionType);
    static const auto s_pConnect =
        reinterpret_cast<Connect>(dlsym(RTLD_NEXT, "_ZN7QObject7connectEPKS_PKcS1_S3_N2Qt14ConnectionTypeE"));
    const bool bFails = !g_strFailingMember.isEmpty() && QByteArray(pMember).contains(g_strFailingMember);
    return bFails ? QMetaObject::Connection() : s_pConnect(pSender, pSignal, pReceiver, pMember, nType);
}

void* operator new(std::size_t nSize, const std::nothrow_t&) noexcept {
    if (nSize == g_nFailingSize && g_nAllocationsBefore-- == 0) {
        return nullptr;
    }
    try {
        return ::operator new(nSize);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

class NorvikFailureTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_pMessages = std::make_unique<CMessageWatch>(); }
    void cleanup() {
        qunsetenv("GENICAM_GENTL64_PATH");
        g_strFailingMember.clear();
        g_nFailingSize = 0;
    }

    void FailedConnectionWarnsAndDisablesWhatItBelongsTo();
    void LackOfMemoryIsToldAndSurvived();
    void LackOfMemoryInARebuildLeavesTheTreeEmptyUntilTheNext();

private:
    std::unique_ptr<CMessageWatch> m_pMessages;
};

namespace {

const QString kNothing;
const QString kWindowWarning = QStringLiteral("Warning: Window initialize failed (CNorvik)");
const QString kTreeWarning = QStringLiteral("Warning: Device Tree Window initialize failed (CDeviceTreeView)");
const QString kMemoryWarning = QStringLiteral("Warning: Not enough memory (CDeviceTreeView)");

QString LineOf(int nLine) {
    return QStringLiteral(".\\Norvik ( %1 ) CNorvik::__InitUI  warning: Null Pointer!").arg(nLine);
}

}  // namespace

void NorvikFailureTest::FailedConnectionWarnsAndDisablesWhatItBelongsTo() {
    const std::pair<const char*, QString> arrCase[] = {
        {"__SendForceIPExCmd", kWindowWarning},
        {"SlotRunEnumThread", kWindowWarning},
        {"__SlotItemClicked", kTreeWarning},
        {"__SlotFlushDeviceTree", kTreeWarning},
    };
    for (const auto& [pMember, strMessage] : arrCase) {
        g_strFailingMember = pMember;
        const bool bWindow = strMessage == kWindowWarning;
        CNorvik objWindow;
        QCOMPARE(m_pMessages->Take(), QStringList(strMessage));
        const auto* pTree = objWindow.findChild<CDeviceTreeView*>();
        QCOMPARE(objWindow.isEnabled(), !bWindow);
        QVERIFY(!pTree->isEnabled());  // at least as part of the window
        // A tree whose set-up failed hasn't searched, so nothing has replaced its first item.
        QCOMPARE(pTree->topLevelItem(0)->text(0), bWindow ? QStringLiteral("System") : QStringLiteral("All"));

        objWindow.show();
        QVERIFY(objWindow.isVisible());
        QCOMPARE(objWindow.findChild<QPushButton*>(QStringLiteral("ChangeButton"))->isEnabled(), !bWindow);
    }
}

void NorvikFailureTest::LackOfMemoryIsToldAndSurvived() {
    static_assert(sizeof(QHBoxLayout) == sizeof(QVBoxLayout));
    const QString strItemLine =
        QStringLiteral(".\\DeviceTreeView ( 276 ) CDeviceTreeView::__InitUI  warning: Null Pointer!");
    const struct {
        std::size_t nSize;
        int nBefore;
        QString strLine;
        QString strMessage;
    } arrCase[] = {
        {sizeof(CDeviceTreeView), 0, LineOf(87), kWindowWarning},
        {sizeof(QVBoxLayout), 0, LineOf(110), kWindowWarning},  // its row
        {sizeof(QVBoxLayout), 1, kNothing, kNothing},           // the column in which nothing stands
        {sizeof(QVBoxLayout), 2, LineOf(118), kWindowWarning},  // its column
        {sizeof(QTreeWidgetItem), 0, strItemLine, kTreeWarning},
        {sizeof(QTreeWidgetItem), 1, kNothing, kMemoryWarning},  // its root
    };
    const auto List = [](const QString& strText) { return strText.isEmpty() ? QStringList() : QStringList(strText); };
    for (const auto& objCase : arrCase) {
        QStringList listLine;
        g_pDebugLines = &listLine;
        const auto pFormer = qInstallMessageHandler(TakeDebugLine);
        g_nAllocationsBefore = objCase.nBefore;
        g_nFailingSize = objCase.nSize;
        {
            CNorvik objWindow;
            g_nFailingSize = 0;
            QCOMPARE(objWindow.isEnabled(), objCase.strMessage != kWindowWarning);
            objWindow.show();
        }
        qInstallMessageHandler(pFormer);
        QVERIFY(g_nAllocationsBefore < 0);
        QCOMPARE(listLine, List(objCase.strLine));
        QCOMPARE(m_pMessages->Take(), List(objCase.strMessage));
    }
}

void NorvikFailureTest::LackOfMemoryInARebuildLeavesTheTreeEmptyUntilTheNext() {
    qputenv("GENICAM_GENTL64_PATH", PRODUCER_DOUBLE_DIRECTORY);
    const ProducerDouble::CProducerLibrary objProducer(PRODUCER_DOUBLE);
    objProducer->AddInterface("if-1").Plug("cam-1");
    g_nAllocationsBefore = 2;  // the first item and the root have been made, that of the adapter can't be
    g_nFailingSize = sizeof(QTreeWidgetItem);
    CNorvik objWindow;
    auto* pTree = objWindow.findChild<CDeviceTreeView*>();
    QCOMPARE(m_pMessages->Take(), {QStringLiteral("Warning: Device tree create failed (CDeviceTreeView)")});
    QCOMPARE(pTree->topLevelItemCount(), 0);
    QVERIFY(objWindow.isEnabled() && pTree->isEnabled());

    QSignalSpy objRebuilt(pTree, SIGNAL(SigResetEnumInfo()));
    QTest::mouseClick(objWindow.findChild<QPushButton*>(QStringLiteral("EnumButton")), Qt::LeftButton);
    QTRY_VERIFY(!objRebuilt.isEmpty());
    QCOMPARE(pTree->topLevelItem(0)->child(0)->child(0)->text(0), QStringLiteral("cam-1"));
    QCOMPARE(pTree->currentItem(), pTree->topLevelItem(0));
}

int main(int argc, char* argv[]) {
    return RunOnOwnMachine<NorvikFailureTest>(argc, argv);
}

#include "NorvikFailureTest.moc"
