#include "shell/CorrievalApp.h"

#include <QApplication>
#include <QTimer>

int main(int argc, char* argv[])
{
    QApplication qapp(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Corrieval"));
    QApplication::setOrganizationName(QStringLiteral("Tormaven Software Ltd"));
    QApplication::setApplicationVersion(QStringLiteral(CORRIEVAL_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("corrieval"));

    corrieval::CCorrievalApp app;
    if (!app.InitInstance(QApplication::arguments().mid(1))) {
        app.ExitInstance();
        return app.RefusedStatus();
    }
    // A testing aid: end once start-up has shown the window and the events it caused are handled.
    if (qEnvironmentVariableIntValue("CORRIEVAL_EXIT_AFTER_START") != 0)
        QTimer::singleShot(0, &qapp, [] {
            QCoreApplication::processEvents();
            QCoreApplication::quit();
        });
    const int status = QApplication::exec();
    app.ExitInstance();
    return status;
}
