#include <QGuiApplication>
#include <gtest/gtest.h>

/// Charts need fonts, and no screen.
int main(int count, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&count, arguments);
    const QGuiApplication application(count, arguments);
    return RUN_ALL_TESTS();
}
