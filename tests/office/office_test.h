#pragma once

#include "places.h"
#include "platform/office/office_word_processor.h"
#include "support/fake_platform.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace tarvello::testing {

/// The document in another format, read by another LibreOffice than the one under test.
/// @return the path of the result, in a folder of its own below `folder`
std::string convert(const std::string& path, const std::string& extension, const std::string& folder);
/// The document as plain text.
std::string plain_text(const std::string& path, const std::string& folder);

/// The real word processor with a folder of the test's own.
struct OfficeTest : ::testing::Test {
    FakePlatform fake;
    std::string folder = fake.program_directory;
    std::vector<std::string> shown;

    OfficeWordProcessor::Settings settings{TARVELLO_OFFICE_HELPER, {}};
    OfficeWordProcessor make(const OfficeWordProcessor::Settings& with) {
        return {with, fake.files, [this](const std::string& path) {
                    shown.push_back(path);
                    return true;
                }};
    }

    std::string file(const std::string& name, const std::string& content);
    std::string text_of(const std::string& path) { return plain_text(path, folder); }
    std::string converted(const std::string& path, const std::string& extension) {
        return convert(path, extension, folder);
    }
    /// Helper processes that this process has running.
    std::vector<int> helpers();
    /// Runs `act`, which must fail. @return what it said
    std::string failure_of(const std::function<void()>& act);
};

} // namespace tarvello::testing
