#pragma once

#include <QMainWindow>

#include "app/NorvikClass.h"

class CDeviceTreeView;
class QUdpSocket;

/// The main window: the device tree on the left; on the right the two edits and the recovery of a camera whose IP
/// configuration is wrong.
///
/// Lives on the stack of main and is used on the GUI thread alone. When its initialisation fails it stays, disabled.
/// The first search for cameras runs inside its construction; what the module tree throws then leaves it.
class CNorvik : public QMainWindow {
    Q_OBJECT

public:
    explicit CNorvik(QWidget* pParent = nullptr, Qt::WindowFlags nFlags = Qt::WindowFlags());
    /// Waits for a search that is under way.
    ~CNorvik() override;
    CNorvik(const CNorvik&) = delete;
    CNorvik& operator=(const CNorvik&) = delete;

private slots:
    /// Broadcasts the recovery pair for the MAC and the address in the edits, on every adapter.
    /// An address that can't be used ends it in silence. Blocks for 200 ms for each broadcast address of the machine.
    void __SendForceIPExCmd();

private:
    bool __InitUI();
    bool __MakeDeviceTree();
    bool __PlaceDeviceTree();

    CNorvikClass ui;
    CDeviceTreeView* m_pobjDeviceTreeView = nullptr;
    QLineEdit* m_pobjMACEdit = nullptr;
    QLineEdit* m_pobjIPEdit = nullptr;
    QPushButton* m_pobjChangeButton = nullptr;
    QPushButton* m_pobjEnumButton = nullptr;
    QUdpSocket* m_pobjUdpSocket = nullptr;
};
