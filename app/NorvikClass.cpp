#include "app/NorvikClass.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QRect>
#include <QSize>
#include <QSizePolicy>
#include <QString>

namespace {

constexpr int kSpacing = 6;
constexpr int kDesignerMargin = 11;  // what the form's designer starts a layout with

QString Tr(const char* pText) {
    return QCoreApplication::translate("CNorvikClass", pText);
}

template <class T>
T* Named(T* pObject, const char* pName) {
    pObject->setObjectName(QString::fromLatin1(pName));
    return pObject;
}

template <class T>
T* Spaced(T* pLayout, const char* pName) {
    pLayout->setSpacing(kSpacing);
    return Named(pLayout, pName);
}

/// The outermost layout of a column: the designer's margins, then none.
QVBoxLayout* MakeColumnLayout(QWidget* pColumn, const char* pName) {
    auto* pLayout = Spaced(new QVBoxLayout(pColumn), pName);
    pLayout->setContentsMargins(kDesignerMargin, kDesignerMargin, kDesignerMargin, kDesignerMargin);
    pLayout->setContentsMargins(0, 0, 0, 0);
    return pLayout;
}

}  // namespace

void CNorvikClass::setupUi(QMainWindow* pWindow) {
    if (pWindow->objectName().isEmpty()) {
        pWindow->setObjectName(QStringLiteral("CNorvikClass"));
    }
    pWindow->resize(776, 743);

    centralWidget = Named(new QWidget(pWindow), "centralWidget");
    SetupPromptColumn();
    SetupTreeColumn();
    pWindow->setCentralWidget(centralWidget);

    statusBar = Named(new QStatusBar(pWindow), "statusBar");
    pWindow->setStatusBar(statusBar);

    retranslateUi(pWindow);
    QMetaObject::connectSlotsByName(pWindow);
}

/// The right column: the MAC and its prompt, the address and its prompt, the two buttons.
void CNorvikClass::SetupPromptColumn() {
    layoutWidget = Named(new QWidget(centralWidget), "layoutWidget");
    layoutWidget->setGeometry(QRect(537, 13, 221, 261));
    verticalLayout_4 = MakeColumnLayout(layoutWidget, "verticalLayout_4");

    verticalLayout_2 = Spaced(new QVBoxLayout(), "verticalLayout_2");
    label_2 = Named(new QLabel(layoutWidget), "label_2");
    verticalLayout_2->addWidget(label_2);
    MACEdit = Named(new QLineEdit(layoutWidget), "MACEdit");
    verticalLayout_2->addWidget(MACEdit);
    verticalLayout_4->addLayout(verticalLayout_2);

    verticalLayout_3 = Spaced(new QVBoxLayout(), "verticalLayout_3");
    label = Named(new QLabel(layoutWidget), "label");
    verticalLayout_3->addWidget(label);
    IPEdit = Named(new QLineEdit(layoutWidget), "IPEdit");
    verticalLayout_3->addWidget(IPEdit);

    horizontalLayout_2 = Spaced(new QHBoxLayout(), "horizontalLayout_2");
    ChangeButton = Named(new QPushButton(layoutWidget), "ChangeButton");
    horizontalLayout_2->addWidget(ChangeButton);
    EnumButton = Named(new QPushButton(layoutWidget), "EnumButton");
    horizontalLayout_2->addWidget(EnumButton);
    verticalLayout_3->addLayout(horizontalLayout_2);
    verticalLayout_4->addLayout(verticalLayout_3);
}

/// The left column: the host of the device tree between two empty rows.
/// It is taller than the window, whose lower edge cuts it off: so it is wanted.
void CNorvikClass::SetupTreeColumn() {
    layoutWidget_2 = Named(new QWidget(centralWidget), "layoutWidget_2");
    layoutWidget_2->setGeometry(QRect(10, 10, 521, 661));
    verticalLayout = MakeColumnLayout(layoutWidget_2, "verticalLayout");

    pobjHLayoutTop = Spaced(new QHBoxLayout(), "pobjHLayoutTop");
    verticalLayout->addLayout(pobjHLayoutTop);

    pobjWidget = Named(new QWidget(layoutWidget_2), "pobjWidget");
    QSizePolicy objPolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    objPolicy.setHorizontalStretch(0);
    objPolicy.setVerticalStretch(0);
    objPolicy.setHeightForWidth(pobjWidget->sizePolicy().hasHeightForWidth());
    pobjWidget->setSizePolicy(objPolicy);
    pobjWidget->setMinimumSize(QSize(0, 500));
    verticalLayout->addWidget(pobjWidget);

    horizontalLayout = Spaced(new QHBoxLayout(), "horizontalLayout");
    verticalLayout->addLayout(horizontalLayout);
}

void CNorvikClass::retranslateUi(QMainWindow* pWindow) {
    pWindow->setWindowTitle(Tr("CNorvik"));
    label_2->setText(Tr("请输入当前设备MAC："));
    label->setText(Tr("请输入要修改的IP地址："));
    ChangeButton->setText(Tr("恢复设备IP"));
    EnumButton->setText(Tr("枚举设备"));
}
