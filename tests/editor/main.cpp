#include "notation/MusicFont.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

#include <iostream>

// The clipboard and the gallery pictures need a GUI application; the tests run without a display
// unless QT_QPA_PLATFORM says otherwise.
int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argc, argv);
    QGuiApplication app(argc, argv);
    if (const QString message = corrieval::LoadMusicFont(); !message.isEmpty())
        std::cerr << message.toStdString() << '\n';
    return RUN_ALL_TESTS();
}
