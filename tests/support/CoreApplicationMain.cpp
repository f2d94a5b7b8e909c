// For tests that need an event loop and no window.

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int count, char** values) {
    testing::InitGoogleTest(&count, values);
    const QCoreApplication application(count, values);
    return RUN_ALL_TESTS();
}
