#include <gtest/gtest.h>

#include "platform/qt/Application.h"

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const qrv::Application application(argc, argv);
    return RUN_ALL_TESTS();
}
