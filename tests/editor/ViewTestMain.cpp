#include "notation/MusicFont.h"

#include <QApplication>
#include <gtest/gtest.h>
#include <iostream>

// The score view is a widget and draws with the music font; the tests run without a display.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (const QString message = corrieval::LoadMusicFont(); !message.isEmpty())
        std::cerr << message.toStdString() << '\n';
    return RUN_ALL_TESTS();
}
