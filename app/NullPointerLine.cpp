#include "app/NullPointerLine.h"

#include <QDebug>

bool ReportNullPointer(const char* pFile, int nLine, const char* pFunction) {
    qDebug() << pFile << "(" << nLine << ")" << pFunction << " warning:"
             << "Null Pointer!";
    return false;
}
