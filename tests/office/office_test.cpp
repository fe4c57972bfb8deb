#include "office_test.h"

#include "failure.h"
#include "places.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace tarvello::testing {

std::string OfficeTest::file(const std::string& name, const std::string& content) {
    const std::string path = folder + "/" + name;
    fake.files.write(path, content);
    return path;
}

std::string convert(const std::string& path, const std::string& extension, const std::string& folder) {
    const std::string filter = extension == "txt" ? "txt:Text" : extension;
    const std::string command = "soffice -env:UserInstallation=file://" TARVELLO_READER_PROFILE
                                " --headless --convert-to " +
                                filter + " --outdir '" + folder + "/letto' '" + path + "' >/dev/null 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return folder + "/letto/" + std::filesystem::path(path).stem().string() + "." + extension;
}

std::string plain_text(const std::string& path, const std::string& folder) {
    std::string text = PosixFiles().read(convert(path, "txt", folder));
    if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
    return text;
}

std::vector<int> OfficeTest::helpers() {
    std::vector<int> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        std::ifstream status(entry.path() / "stat");
        std::string pid, command, state;
        int parent = 0;
        status >> pid >> command >> state >> parent;
        if (parent == ::getpid() && command == "(tarvello-office)" && state != "Z") {
            found.push_back(std::stoi(pid));
        }
    }
    return found;
}

std::string OfficeTest::failure_of(const std::function<void()>& act) {
    try {
        act();
    } catch (const Failure& failure) {
        return failure.description();
    }
    ADD_FAILURE() << "it did not fail";
    return {};
}

} // namespace tarvello::testing
