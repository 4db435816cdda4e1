#include <gmock/gmock.h>

#include <QCoreApplication>
#include <string_view>

#include "platform/freedesktop/BusSingleInstance.h"

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc == 2 && std::string_view(argv[1]) == "--claim")
        return static_cast<int>(brindle::BusSingleInstance().claim());
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
