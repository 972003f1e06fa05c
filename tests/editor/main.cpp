#include "editor/CrossProcessClipboard.h"
#include "notation/MusicFont.h"

#include <QGuiApplication>
#include <cstring>
#include <gtest/gtest.h>
#include <iostream>

// The clipboard and the gallery pictures need a GUI application; the tests run without a display
// unless QT_QPA_PLATFORM says otherwise. Started with ServeClipboardArgument the program is the
// other running copy of the test that pastes between two processes.
int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc > 1 && std::strcmp(argv[1], corrieval::testing::ServeClipboardArgument) == 0) {
        QGuiApplication app(argc, argv);
        return corrieval::testing::ServeClipboard(app);
    }
    ::testing::InitGoogleTest(&argc, argv);
    QGuiApplication app(argc, argv);
    if (const QString message = corrieval::LoadMusicFont(); !message.isEmpty())
        std::cerr << message.toStdString() << '\n';
    return RUN_ALL_TESTS();
}
