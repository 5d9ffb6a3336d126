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
    QApplication application(argc, argv); // windows need one
    // A style sheet, as in the program: palettes go other ways with one.
    application.setStyleSheet("QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }");
    return RUN_ALL_TESTS();
}
