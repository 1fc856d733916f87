#include "app/Norvik.h"

#include <QGuiApplication>
#include <QMessageBox>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QScreen>
#include <QUdpSocket>

#include "app/RecoveryBroadcast.h"
#include "app/RecoveryPackets.h"

namespace {

constexpr int kWindowWidth = 800;
constexpr int kWindowHeight = 600;
// The window is placed as if it were this wide, so that its left edge lies 100 pixels left of where it would be
// centred. The fixed width wins over it.
constexpr int kPlacedWidth = 1000;

constexpr char kAddressPattern[] = R"(^((2[0-4]\d|25[0-5]|[01]?\d\d?)\.){3}(2[0-4]\d|25[0-5]|[01]?\d\d?)$)";

QRect PlaceOnScreen() {
    const QScreen* pScreen = QGuiApplication::primaryScreen();
    const QRect objAvailable = pScreen != nullptr ? pScreen->availableGeometry() : QRect();
    const int nY = (objAvailable.height() - kWindowHeight) / 2;
    const int nX = (objAvailable.width() - kPlacedWidth) / 2;
    return {nX, nY, kPlacedWidth, kWindowHeight};
}

}  // namespace

CNorvik::CNorvik(QWidget* pParent, Qt::WindowFlags nFlags) : QMainWindow(pParent, nFlags) {
    ui.setupUi(this);
    setFixedSize(kWindowWidth, kWindowHeight);
    setGeometry(PlaceOnScreen());

    if (!__InitUI()) {
        setEnabled(false);
        QMessageBox::warning(this, QObject::tr("Warning"), tr("Window initialize failed"), QMessageBox::Ok,
                             QMessageBox::NoButton);
    }
}

bool CNorvik::__InitUI() {
    m_pobjUdpSocket = new QUdpSocket(this);

    m_pobjMACEdit = ui.MACEdit;
    m_pobjMACEdit->setText(QStringLiteral("02-5E-17-00-AD-EA"));

    m_pobjIPEdit = ui.IPEdit;
    const QRegularExpression objPattern(QString::fromLatin1(kAddressPattern));
    m_pobjIPEdit->setValidator(new QRegularExpressionValidator(objPattern, this));
    m_pobjIPEdit->setText(QStringLiteral("192.168.42.83"));
    m_pobjIPEdit->setInputMask(QStringLiteral("000.000.000.000; "));

    m_pobjChangeButton = ui.ChangeButton;
    m_pobjEnumButton = ui.EnumButton;

    return connect(m_pobjChangeButton, SIGNAL(clicked()), this, SLOT(__SendForceIPExCmd()));
}

void CNorvik::__SendForceIPExCmd() {
    const auto objPackets = FillRecoveryPackets(m_pobjMACEdit->text(), m_pobjIPEdit->text());
    if (objPackets) {
        SendRecoveryPackets(*m_pobjUdpSocket, *objPackets);
    }
}
