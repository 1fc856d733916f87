// The program, but that it ends with its first list.

#include "app/Norvik.h"
#include "bench/FirstPaint.h"

int main(int argc, char* argv[]) {
    QApplication objApplication(argc, argv);
    CNorvik objWindow;
    CFirstPaint objFirstPaint(objWindow.findChild<QTreeWidget*>());
    objWindow.show();
    return QApplication::exec();
}
