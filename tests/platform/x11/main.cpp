#include <gmock/gmock.h>

#include <QGuiApplication>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
