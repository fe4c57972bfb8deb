#include "platform/qt/session_end.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>

namespace tarvello::testing {
namespace {

TEST(SessionEnd, ASignalLeavesTheErrorNumberOfWhomItInterrupts) {
    const qt::SessionEnd session_end([] {});
    for (int i = 0; i < 10'000; ++i) std::raise(SIGTERM); // until nothing more can be written
    errno = 0;
    std::raise(SIGTERM);
    EXPECT_EQ(errno, 0);
}

} // namespace
} // namespace tarvello::testing
