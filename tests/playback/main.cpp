#include <QCoreApplication>

#include <gtest/gtest.h>

// The sound server's output through Qt Multimedia needs a core application, and the thread that
// opened it delivers its faults through the event loop.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
