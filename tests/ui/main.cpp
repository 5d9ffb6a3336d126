#include <QApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir state; // not the user's own
    qputenv("XDG_STATE_HOME", state.path().toLocal8Bit());
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv); // windows need one
    return RUN_ALL_TESTS();
}
