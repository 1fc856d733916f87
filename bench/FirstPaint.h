#pragma once

#include <cstdio>

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QTreeWidget>

/// Tells on standard output how many items a window's tree has without items of their own, once it is painted for the
/// first time, and ends the application.
class CFirstPaint : public QObject {
public:
    /// @param pTree  outlives the application's event loop
    explicit CFirstPaint(QTreeWidget* pTree) : m_pTree(pTree) { pTree->viewport()->installEventFilter(this); }

    bool eventFilter(QObject* /*pWatched*/, QEvent* pEvent) override {
        if (pEvent->type() == QEvent::Paint && !m_bSeen) {
            m_bSeen = true;
            QTimer::singleShot(0, this, [this] { Tell(); });  // when it is painted
        }
        return false;
    }

private:
    void Tell() {
        int nLeaves = 0;
        for (QTreeWidgetItemIterator itItem(m_pTree, QTreeWidgetItemIterator::NoChildren); *itItem != nullptr;
             ++itItem) {
            ++nLeaves;
        }
        std::printf("%d\n", nLeaves);
        std::fflush(stdout);
        QCoreApplication::quit();
    }

    QTreeWidget* m_pTree;
    bool m_bSeen = false;
};
