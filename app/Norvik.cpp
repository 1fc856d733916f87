#include "app/Norvik.h"

#include <new>

#include <QGuiApplication>
#include <QMessageBox>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QScreen>
#include <QUdpSocket>

#include "app/DeviceTreeView.h"
#include "app/NullPointerLine.h"
#include "app/RecoveryBroadcast.h"
#include "app/RecoveryPackets.h"

namespace {

constexpr int kWindowWidth = 800;
constexpr int kWindowHeight = 600;
// The window is placed as if it were this wide, so that its left edge lies 100 pixels left of where it would be
// centred. The fixed width wins over it.
constexpr int kPlacedWidth = 1000;

constexpr char kAddressPattern[] = R"(^((2[0-4]\d|25[0-5]|[01]?\d\d?)\.){3}(2[0-4]\d|25[0-5]|[01]?\d\d?)$)";

constexpr int kTreeMinimumWidth = 200;
constexpr int kTreeMaximumWidth = 480;

QRect PlaceOnScreen() {
    const QScreen* pScreen = QGuiApplication::primaryScreen();
    const QRect objAvailable = pScreen != nullptr ? pScreen->availableGeometry() : QRect();
    const int nY = (objAvailable.height() - kWindowHeight) / 2;
    const int nX = (objAvailable.width() - kPlacedWidth) / 2;
    return {nX, nY, kPlacedWidth, kWindowHeight};
}

/// @param nLine  stands for what could not be made; it's no place in this file
bool FailWithoutMemory(int nLine) {
    return ReportNullPointer(".\\Norvik", nLine, "CNorvik::__InitUI");
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

CNorvik::~CNorvik() {
    delete m_pobjDeviceTreeView;
    m_pobjDeviceTreeView = nullptr;
}

bool CNorvik::__InitUI() {
    m_pobjUdpSocket = new QUdpSocket(this);
    if (!__MakeDeviceTree()) {
        return false;
    }

    m_pobjMACEdit = ui.MACEdit;
    m_pobjMACEdit->setText(QStringLiteral("02-5E-17-00-AD-EA"));

    m_pobjIPEdit = ui.IPEdit;
    const QRegularExpression objPattern(QString::fromLatin1(kAddressPattern));
    m_pobjIPEdit->setValidator(new QRegularExpressionValidator(objPattern, this));
    m_pobjIPEdit->setText(QStringLiteral("192.168.42.83"));
    m_pobjIPEdit->setInputMask(QStringLiteral("000.000.000.000; "));

    m_pobjChangeButton = ui.ChangeButton;
    m_pobjEnumButton = ui.EnumButton;

    return __PlaceDeviceTree() && connect(m_pobjChangeButton, SIGNAL(clicked()), this, SLOT(__SendForceIPExCmd())) &&
           connect(m_pobjEnumButton, SIGNAL(clicked()), m_pobjDeviceTreeView, SLOT(SlotRunEnumThread()));
}

bool CNorvik::__MakeDeviceTree() {
    m_pobjDeviceTreeView = new (std::nothrow) CDeviceTreeView(this);
    if (m_pobjDeviceTreeView == nullptr) {
        return FailWithoutMemory(87);
    }
    m_pobjDeviceTreeView->setMaximumWidth(kTreeMaximumWidth);
    m_pobjDeviceTreeView->setMinimumWidth(kTreeMinimumWidth);
    return true;
}

/// Puts the tree into its host.
bool CNorvik::__PlaceDeviceTree() {
    auto* pHostLayout = new (std::nothrow) QHBoxLayout(ui.pobjWidget);
    if (pHostLayout == nullptr) {
        return FailWithoutMemory(110);
    }
    // A column that nothing stands in. It may be missing: what is tested here is the row once more, and that is wanted.
    auto* pSpareLayout = new (std::nothrow) QVBoxLayout;
    if (pHostLayout == nullptr) {
        return FailWithoutMemory(114);
    }
    // A main window has its own layout for good, so the window only owns this one.
    if (pSpareLayout != nullptr) {
        pSpareLayout->setParent(this);
    }
    auto* pTreeLayout = new (std::nothrow) QVBoxLayout;
    if (pTreeLayout == nullptr) {
        return FailWithoutMemory(118);
    }
    pTreeLayout->addWidget(m_pobjDeviceTreeView, 0, Qt::Alignment());
    ui.pobjWidget->setLayout(pHostLayout);
    pHostLayout->addLayout(pTreeLayout, 0);
    return true;
}

void CNorvik::__SendForceIPExCmd() {
    const auto objPackets = FillRecoveryPackets(m_pobjMACEdit->text(), m_pobjIPEdit->text());
    if (objPackets) {
        SendRecoveryPackets(*m_pobjUdpSocket, *objPackets);
    }
}
