#include "platform/qt/settings_file.h"

#include "platform/qt/qt_text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <array>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace tarvello::qt {

namespace {

constexpr std::string_view escaped = "\\\t\n\r\0";
constexpr std::string_view escapes = "\\tnr0";
static_assert(escapes.size() == 5);

void append_field(QByteArray& line, std::string_view field) {
    for (const char c : field) {
        const auto place = std::string_view(escaped.data(), 5).find(c);
        if (place == std::string_view::npos) {
            line += c;
        } else {
            line += '\\';
            line += escapes[place];
        }
    }
}

/// @return false if the field holds an escape that does not exist
bool read_field(std::string_view text, std::string& field) {
    field.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            field += text[i];
            continue;
        }
        const auto place = i + 1 < text.size() ? escapes.find(text[i + 1]) : std::string_view::npos;
        if (place == std::string_view::npos) return false;
        field += escaped.data()[place];
        ++i;
    }
    return true;
}

/// Reads a line of four fields. @return false if it is none
bool read_line(std::string_view line, std::array<std::string, 4>& fields) {
    for (std::size_t i = 0; i < 4; ++i) {
        const auto end = line.find('\t');
        if ((end == std::string_view::npos) != (i == 3)) return false;
        if (!read_field(line.substr(0, end), fields[i])) return false;
        if (i < 3) line.remove_prefix(end + 1);
    }
    return true;
}

/// The name of a file is on disk only with its folder.
void flush_folder(const QString& folder) {
    const int handle = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) return;
    ::fsync(handle);
    ::close(handle);
}

} // namespace

SettingsFile::SettingsFile(std::string path) : path_(std::move(path)) { load(); }

std::string SettingsFile::usual_path() {
    return from_qt(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)) +
           "/tarvello/impostazioni";
}

void SettingsFile::load() {
    QFile file(to_qt(path_));
    if (!file.open(QIODevice::ReadOnly)) return; // none yet, or not to be read: a first run
    const QByteArray content = file.readAll();
    std::string_view rest(content.data(), static_cast<std::size_t>(content.size()));
    std::array<std::string, 4> fields;
    while (!rest.empty()) {
        const auto end = std::min(rest.find('\n'), rest.size());
        if (read_line(rest.substr(0, end), fields)) {
            values_[{fields[0], fields[1], fields[2]}] = fields[3];
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

std::optional<std::string> SettingsFile::read(const std::string& application, const std::string& section,
                                              const std::string& key) {
    const auto found = values_.find(AddressView(application, section, key));
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void SettingsFile::write(const std::string& application, const std::string& section, const std::string& key,
                         const std::string& value) {
    values_[{application, section, key}] = value;
    save();
}

void SettingsFile::save() const {
    const QFileInfo info(to_qt(path_));
    QDir().mkpath(info.path());
    QSaveFile file(info.filePath());
    if (!file.open(QIODevice::WriteOnly)) return; // settings never stop the program
    QByteArray content;
    for (const auto& [address, value] : values_) {
        append_field(content, std::get<0>(address));
        content += '\t';
        append_field(content, std::get<1>(address));
        content += '\t';
        append_field(content, std::get<2>(address));
        content += '\t';
        append_field(content, value);
        content += '\n';
    }
    file.write(content);
    if (file.commit()) flush_folder(info.path());
}

} // namespace tarvello::qt
