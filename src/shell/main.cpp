#include "platform/DataFolder.h"
#include "platform/QtAudioDevice.h"
#include "shell/MainFrame.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    corrieval::CMainFrame frame([] { return std::make_unique<corrieval::platform::QtAudioDevice>(); },
                                corrieval::DataSubfolder(QStringLiteral("Instrument Samples")));
    frame.show();
    for (const QString& path : app.arguments().mid(1))
        frame.OpenDocument(path);
    return app.exec();
}
