#include "shell/MainFrame.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    corrieval::CMainFrame frame;
    frame.show();
    return app.exec();
}
