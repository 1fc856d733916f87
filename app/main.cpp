#include <QApplication>

#include "app/Norvik.h"

int main(int argc, char* argv[]) {
    QApplication objApplication(argc, argv);
    CNorvik objWindow;
    objWindow.show();
    return QApplication::exec();
}
