// What is left of the window when its initialisation fails. The one step that can fail is a connection, so this program
// puts itself between the window and Qt's connect.

#include <dlfcn.h>

#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "app/Norvik.h"
#include "tests/network/OwnMachine.h"

namespace {

bool g_bConnectFails = false;

}  // namespace

QMetaObject::Connection QObject::connect(const QObject* pSender, const char* pSignal, const QObject* pReceiver,
                                         const char* pMember, Qt::ConnectionType nType) {
    using Connect =
        QMetaObject::Connection (*)(const QObject*, const char*, const QObject*, const char*, Qt::ConnectionType);
    static const auto s_pConnect =
        reinterpret_cast<Connect>(dlsym(RTLD_NEXT, "_ZN7QObject7connectEPKS_PKcS1_S3_N2Qt14ConnectionTypeE"));
    const bool bRecovery = QByteArray(pMember).contains("__SendForceIPExCmd");
    return g_bConnectFails && bRecovery ? QMetaObject::Connection()
                                        : s_pConnect(pSender, pSignal, pReceiver, pMember, nType);
}

class NorvikFailureTest : public QObject {
    Q_OBJECT

private slots:
    void init() { g_bConnectFails = true; }

    void FailedInitialisationWarnsAndLeavesADisabledWindow() {
        QString strTitle;
        QString strText;
        QMessageBox::StandardButtons nButtons;
        const QObject* pParent = nullptr;
        QTimer::singleShot(0, [&] {
            auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(pBox != nullptr);
            strTitle = pBox->windowTitle();
            strText = pBox->text();
            nButtons = pBox->standardButtons();
            pParent = pBox->parent();
            pBox->button(QMessageBox::Ok)->click();
        });
        CNorvik objWindow;
        QCOMPARE(strTitle, QStringLiteral("Warning"));
        QCOMPARE(strText, QStringLiteral("Window initialize failed"));
        QCOMPARE(nButtons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QCOMPARE(pParent, &objWindow);
        QVERIFY(!objWindow.isEnabled());

        objWindow.show();
        QVERIFY(objWindow.isVisible());
        QVERIFY(!objWindow.findChild<QPushButton*>(QStringLiteral("ChangeButton"))->isEnabled());
    }

    void WindowIsEnabledWhenNothingFails() {
        g_bConnectFails = false;
        const CNorvik objWindow;
        QVERIFY(objWindow.isEnabled());
    }
};

int main(int argc, char* argv[]) {
    return RunOnOwnMachine<NorvikFailureTest>(argc, argv);
}

#include "NorvikFailureTest.moc"
