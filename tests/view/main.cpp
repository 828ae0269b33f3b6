#include <gtest/gtest.h>

#include "OffscreenDisplay.h"
#include "platform/qt/Application.h"

int main(int argc, char** argv) {
    qrv::test::useOffscreenDisplay();
    testing::InitGoogleTest(&argc, argv);
    const qrv::Application application(argc, argv);
    return RUN_ALL_TESTS();
}
