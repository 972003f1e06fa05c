#include <QApplication>
#include <gtest/gtest.h>

// The app's windows need a widget application; the tests run without a display.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // A message box would wait for a click that never comes: messages go to standard error.
    qputenv("CORRIEVAL_MESSAGES_TO_STDERR", "1");
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
