// The main window as the user finds it: where it stands, what it says, what its edits take, and that no text breaks it.

#include <QInputMethodEvent>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QTest>
#include <QValidator>

#include "app/Norvik.h"
#include "tests/network/OwnMachine.h"

namespace {

QLineEdit* Edit(const CNorvik& objWindow, const char* pName) {
    return objWindow.findChild<QLineEdit*>(QString::fromLatin1(pName));
}

void SelectAllAndType(QLineEdit* pEdit, const QString& strText) {
    QTest::keyClick(pEdit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(pEdit, strText);
}

/// Puts a text in as an input method does, which no key could type.
void Commit(QLineEdit* pEdit, const QString& strText) {
    pEdit->selectAll();
    QInputMethodEvent objEvent;
    objEvent.setCommitString(strText);
    QCoreApplication::sendEvent(pEdit, &objEvent);
}

}  // namespace

class NorvikTest : public QObject {
    Q_OBJECT

private slots:
    void WindowStandsLeftOfCentre();
    void FormHoldsEveryWidgetInItsPlace();
    void TextsAreTheWindowsOwn();
    void EditsStartWithTheirDefaults();
    void AddressEditTakesWhatIsTyped();
    void FullAddressIsOnlyOverwrittenByAFullAddress();
    void NoTextBreaksTheRecovery();
};

void NorvikTest::WindowStandsLeftOfCentre() {
    const QSize objScreen = QGuiApplication::primaryScreen()->availableGeometry().size();
    CNorvik objWindow;
    objWindow.show();
    // The program is run on both of these screens.
    const QPoint objPlace = objScreen == QSize(1921, 1041) ? QPoint(460, 220) : QPoint(-100, 100);
    if (objScreen != QSize(1921, 1041)) {
        QCOMPARE(objScreen, QSize(800, 800));
    }
    QCOMPARE(objWindow.geometry(), QRect(objPlace, QSize(800, 600)));
    QCOMPARE(objWindow.minimumSize(), objWindow.maximumSize());
}

void NorvikTest::FormHoldsEveryWidgetInItsPlace() {
    CNorvik objWindow;
    objWindow.show();
    QCOMPARE(objWindow.objectName(), QStringLiteral("CNorvikClass"));

    const auto* pPrompts = objWindow.findChild<QWidget*>(QStringLiteral("layoutWidget"));
    const auto* pTree = objWindow.findChild<QWidget*>(QStringLiteral("layoutWidget_2"));
    QCOMPARE(pPrompts->geometry(), QRect(537, 13, 221, 261));
    QCOMPARE(pTree->geometry(), QRect(10, 10, 521, 661));
    QCOMPARE(pPrompts->parentWidget(), objWindow.centralWidget());
    QCOMPARE(objWindow.centralWidget()->objectName(), QStringLiteral("centralWidget"));
    QCOMPARE(objWindow.statusBar()->objectName(), QStringLiteral("statusBar"));

    const auto* pHost = objWindow.findChild<QWidget*>(QStringLiteral("pobjWidget"));
    QCOMPARE(pHost->minimumSize(), QSize(0, 500));
    QCOMPARE(pHost->sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding));
    QCOMPARE(pHost->size(), pTree->size());  // the rows above and below it are empty and take no room

    for (const char* pName : {"verticalLayout_4", "verticalLayout"}) {
        const auto* pLayout = objWindow.findChild<QLayout*>(QString::fromLatin1(pName));
        QCOMPARE(pLayout->contentsMargins(), QMargins(0, 0, 0, 0));
        QCOMPARE(pLayout->spacing(), 6);
    }

    // From top to bottom in the right column, the two buttons side by side at its end.
    const auto place = [&](const char* pName) {
        const auto* pWidget = objWindow.findChild<QWidget*>(QString::fromLatin1(pName));
        return pWidget->parentWidget() == pPrompts ? pWidget->geometry() : QRect();
    };
    QVERIFY(place("label_2").bottom() < place("MACEdit").top());
    QVERIFY(place("MACEdit").bottom() < place("label").top());
    QVERIFY(place("label").bottom() < place("IPEdit").top());
    QVERIFY(place("IPEdit").bottom() < place("ChangeButton").top());
    QCOMPARE(place("ChangeButton").top(), place("EnumButton").top());
    QVERIFY(place("ChangeButton").right() < place("EnumButton").left());
}

void NorvikTest::TextsAreTheWindowsOwn() {
    CNorvik objWindow;
    QCOMPARE(objWindow.windowTitle(), QStringLiteral("CNorvik"));
    QCOMPARE(objWindow.findChild<QLabel*>(QStringLiteral("label_2"))->text(), QString::fromUtf8("请输入当前设备MAC："));
    QCOMPARE(objWindow.findChild<QLabel*>(QStringLiteral("label"))->text(),
             QString::fromUtf8("请输入要修改的IP地址："));
    QCOMPARE(objWindow.findChild<QPushButton*>(QStringLiteral("ChangeButton"))->text(),
             QString::fromUtf8("恢复设备IP"));
    QCOMPARE(objWindow.findChild<QPushButton*>(QStringLiteral("EnumButton"))->text(), QString::fromUtf8("枚举设备"));
}

void NorvikTest::EditsStartWithTheirDefaults() {
    CNorvik objWindow;
    QCOMPARE(Edit(objWindow, "MACEdit")->text(), QStringLiteral("02-5E-17-00-AD-EA"));
    QCOMPARE(Edit(objWindow, "MACEdit")->validator(), nullptr);
    QVERIFY(Edit(objWindow, "MACEdit")->inputMask().isEmpty());

    const QLineEdit* pIPEdit = Edit(objWindow, "IPEdit");
    QCOMPARE(pIPEdit->text(), QStringLiteral("192.168.42.83"));
    QCOMPARE(pIPEdit->displayText(), QStringLiteral("192.168.42 .83 "));
    QCOMPARE(pIPEdit->validator()->parent(), &objWindow);

    const std::pair<const char*, QValidator::State> arrStates[] = {
        {"255.249.199.0", QValidator::Acceptable}, {"01.2.03.004", QValidator::Acceptable},
        {"192.168.42", QValidator::Intermediate},  {"256.1.1.1", QValidator::Invalid},
        {"1.2.3.4.5", QValidator::Invalid},        {"192.168.42 .83 ", QValidator::Invalid},
    };
    for (const auto& [pText, nState] : arrStates) {
        QString strText = QString::fromLatin1(pText);
        int nPosition = 0;
        QCOMPARE(pIPEdit->validator()->validate(strText, nPosition), nState);
    }
}

void NorvikTest::AddressEditTakesWhatIsTyped() {
    const std::pair<const char*, const char*> arrCase[] = {
        {"10.1.2.3", "10.1.2.3"},             // short parts, each ended by a dot
        {"192168042083", "192.168.042.083"},  // without dots
        {"10.1..7", "10.1.7."},               // a second dot in a row is passed over
        {"...", "..."},
        {"1a0.x1.2.34567", "10.1.2.345"},  // as are letters and what is too much
    };
    for (const auto& [pTyped, pText] : arrCase) {
        CNorvik objWindow;
        SelectAllAndType(Edit(objWindow, "IPEdit"), QString::fromLatin1(pTyped));
        QCOMPARE(Edit(objWindow, "IPEdit")->text(), QString::fromLatin1(pText));
    }
}

void NorvikTest::FullAddressIsOnlyOverwrittenByAFullAddress() {
    CNorvik objWindow;
    QLineEdit* pEdit = Edit(objWindow, "IPEdit");
    SelectAllAndType(pEdit, QStringLiteral("192168042083"));

    // With a digit in every place the text pleases the validator, which then takes no step back to a blank.
    SelectAllAndType(pEdit, QStringLiteral("10.1.2.3"));
    QTest::keyClick(pEdit, Qt::Key_Backspace);
    QCOMPARE(pEdit->text(), QStringLiteral("192.168.042.083"));

    QTest::keyClick(pEdit, Qt::Key_Home);
    QTest::keyClicks(pEdit, QStringLiteral("010001002003"));
    QCOMPARE(pEdit->text(), QStringLiteral("010.001.002.003"));
}

void NorvikTest::NoTextBreaksTheRecovery() {
    const QString arrText[] = {
        QString(),
        QStringLiteral("-").repeated(5000),
        QStringLiteral("F").repeated(32767),
        QStringLiteral("%s-%n-%x-%99999d.%s.%n.%s"),
        QStringLiteral("99999999999999999999-FFFFFFFFFFFFFFFFF-80000000.1.1.1"),
        QString::fromLatin1("10\0.1.1.1-00", 12),
        QString::fromUtf8("١٩٢.١٦٨.٤٢.٨٣-۰۲-²³¹.1.1.1"),
        QString(QChar(0xD83D)) + QStringLiteral(".1.1.1-") + QChar(0xDCF7),  // half a picture
    };
    for (const QString& strText : arrText) {
        CNorvik objWindow;
        auto* pButton = objWindow.findChild<QPushButton*>(QStringLiteral("ChangeButton"));
        Edit(objWindow, "MACEdit")->setText(strText);
        pButton->click();
        for (const char* pEdit : {"MACEdit", "IPEdit"}) {
            Edit(objWindow, pEdit)->setText(strText);
            pButton->click();
            Commit(Edit(objWindow, pEdit), strText);
            pButton->click();
        }
        // The mask keeps most texts from the address edit; without it they reach the recovery as they are.
        Edit(objWindow, "IPEdit")->setInputMask(QString());
        Edit(objWindow, "IPEdit")->setText(strText);
        pButton->click();
        QCOMPARE(Edit(objWindow, "MACEdit")->isEnabled(), true);
    }
}

int main(int argc, char* argv[]) {
    return RunOnOwnMachine<NorvikTest>(argc, argv);
}

#include "NorvikTest.moc"
