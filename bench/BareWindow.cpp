// A window of plain widgets with the texts of the program's and a tree of as many items, which waits as long as the
// program looks for cameras before it shows itself.

#include <chrono>
#include <thread>

#include <QFont>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>

#include "bench/FirstPaint.h"

namespace {

constexpr std::chrono::milliseconds kWindow{500};
constexpr int kAdapters = 2;
constexpr int kCamerasEach = 3;

QTreeWidgetItem* AddItem(QTreeWidgetItem* pParent, const QString& strText) {
    auto* const pItem = new QTreeWidgetItem(pParent);
    pItem->setText(0, strText);
    pItem->setFont(0, QFont(QString(), 10));
    return pItem;
}

void Fill(QTreeWidget& objTree) {
    objTree.setHeaderHidden(true);
    for (int nAdapter = 0; nAdapter < kAdapters; ++nAdapter) {
        auto* const pAdapter = AddItem(objTree.invisibleRootItem(), QStringLiteral("eth0 (10.1.0.1)"));
        for (int nCamera = 0; nCamera < kCamerasEach; ++nCamera) {
            AddItem(pAdapter, QStringLiteral("Virtual GigE(10.1.0.11[02-4E-56-00-01-01])"));
        }
    }
    objTree.expandAll();
}

}  // namespace

int main(int argc, char* argv[]) {
    QApplication objApplication(argc, argv);
    QMainWindow objWindow;
    objWindow.setFixedSize(800, 600);
    auto* const pCentre = new QWidget(&objWindow);
    objWindow.setCentralWidget(pCentre);
    auto* const pColumns = new QHBoxLayout(pCentre);
    auto* const pTree = new QTreeWidget;
    pColumns->addWidget(pTree);
    auto* const pColumn = new QVBoxLayout;
    pColumns->addLayout(pColumn);
    pColumn->addWidget(new QLabel(QStringLiteral("请输入当前设备MAC：")));
    pColumn->addWidget(new QLineEdit(QStringLiteral("02-5E-17-00-AD-EA")));
    pColumn->addWidget(new QLabel(QStringLiteral("请输入要修改的IP地址：")));
    pColumn->addWidget(new QLineEdit(QStringLiteral("192.168.42.83")));
    pColumn->addWidget(new QPushButton(QStringLiteral("恢复设备IP")));
    pColumn->addWidget(new QPushButton(QStringLiteral("枚举设备")));

    std::this_thread::sleep_for(kWindow);
    Fill(*pTree);
    CFirstPaint objFirstPaint(pTree);
    objWindow.show();
    return QApplication::exec();
}
