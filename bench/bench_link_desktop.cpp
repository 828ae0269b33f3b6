// A transaction with a controller while the desktop's event loop runs, against a raw loop on the same pseudo-terminal.
#include <QCoreApplication>

#include "LinkBench.h"
#include "platform/qt/QtPump.h"

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    qrv::QtPump pump;
    bool isWithin = qrv::compareWithRawLoop("send_and_get, desktop", pump, 1.6);
    isWithin = qrv::measureWaiting("Waiting on a paced line, desktop", pump, 0.02) && isWithin;
    isWithin = qrv::measureVanished("While the far end is gone, desktop", pump, 0.05) && isWithin;
    return isWithin ? 0 : 1;
}
