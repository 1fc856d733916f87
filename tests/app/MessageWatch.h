#pragma once

#include <utility>

#include <QApplication>
#include <QMessageBox>
#include <QObject>
#include <QPushButton>
#include <QStringList>
#include <QTimer>

/// The user who reads each message box and presses its Ok. Lives on the GUI thread.
class CMessageWatch : public QObject {
public:
    CMessageWatch() { qApp->installEventFilter(this); }

    /// What the boxes said since the last call: "TITLE: TEXT (the class of their parent)".
    QStringList Take() { return std::exchange(m_listMessages, {}); }

private:
    bool eventFilter(QObject* pObject, QEvent* pEvent) override {
        auto* pBox = qobject_cast<QMessageBox*>(pObject);
        if (pBox != nullptr && pEvent->type() == QEvent::Show) {
            const char* pParent = pBox->parent() != nullptr ? pBox->parent()->metaObject()->className() : "nothing";
            m_listMessages
                << QStringLiteral("%1: %2 (%3)").arg(pBox->windowTitle(), pBox->text(), QString::fromLatin1(pParent));
            QTimer::singleShot(0, pBox, [pBox] { pBox->button(QMessageBox::Ok)->click(); });
        }
        return false;
    }

    QStringList m_listMessages;
};
