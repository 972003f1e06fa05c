#include "notation/MusicFont.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

#include <iostream>

// Notation draws with the music font, which needs a GUI application; the tests run without a
// display. A font that cannot be loaded is reported here, and the tests that draw then fail.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (const QString message = corrieval::LoadMusicFont(); !message.isEmpty())
        std::cerr << message.toStdString() << '\n';
    return RUN_ALL_TESTS();
}
