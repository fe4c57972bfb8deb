#include "platform/office/office_word_processor.h"

#include "failure.h"
#include "platform/office/document_format.h"
#include "platform/office/helper.h"
#include "text/utf8.h"

#include <filesystem>

namespace tarvello {
namespace {

const char* const source = "Word";

/// A value as LibreOffice can take it in: its text holds no control characters but tabs and line breaks (some
/// stand for objects inside a document), and a line break is a line feed.
std::string plain_value(const std::string& value) {
    std::u32string plain;
    const std::u32string characters = utf8::decode(value);
    for (std::size_t i = 0; i < characters.size(); ++i) {
        const char32_t c = characters[i];
        if (c == '\r') {
            if (i + 1 == characters.size() || characters[i + 1] != '\n') plain += U'\n';
        } else if (c == '\t' || c == '\n' || (c >= 0x20 && c != 0x7F && c != 0xFFF9 && c < 0xFFFE) ||
                   c > 0xFFFF) {
            plain += c;
        }
    }
    return utf8::encode(plain);
}

class OfficeApplication final : public WordApplication {
public:
    OfficeApplication(std::shared_ptr<office::Helper> helper, Files& files,
                      const std::function<bool(const std::string&)>& open_for_user)
        : helper_(std::move(helper)), files_(files), open_for_user_(open_for_user) {}

    ~OfficeApplication() override {
        skip_failures([&] { quit(); }); // nobody is left to hear of it
    }

    void open_read_only(const std::string& path) override {
        const std::string content = files_.read(path);
        format_ = office::document_format(content);
        if (format_.empty()) {
            throw Failure(5792, source, "Il file \"" + path + "\" non è un documento che si possa aprire.");
        }
        // LibreOffice sees a copy: the document itself gets neither locked nor written.
        const std::string copy = helper_->folder() + "/documento." + format_;
        files_.write(copy, content);
        helper_->ask({office::request::load, copy});
        open_ = true;
    }

    void replace_all(const std::string& text, const std::string& value) override {
        helper_->ask({office::request::replace, text, plain_value(value)});
    }

    void save_as(const std::string& path) override {
        const std::string saved = helper_->folder() + "/salvato." + format_;
        helper_->ask({office::request::save, saved, format_});
        files_.copy(saved, path);
        saved_as_ = path;
    }

    void show() override {
        // A name without an extension tells the desktop nothing: the user gets a copy that has one. While an
        // earlier copy is open, the next one has another name, else the user would be shown the earlier one.
        std::string shown = saved_as_;
        if (std::filesystem::path(saved_as_).extension().empty()) {
            shown += "." + format_;
            for (int number = 2; is_open_in_libre_office(shown); ++number) {
                shown = saved_as_ + "-" + std::to_string(number) + "." + format_;
            }
            files_.copy(saved_as_, shown);
        }
        if (!open_for_user_(shown)) {
            throw Failure(failure_number::word_processor, source,
                          "Nessun programma è in grado di aprire il documento \"" + shown + "\".");
        }
        quit();
    }

    void quit() override {
        if (!open_) return;
        open_ = false;
        helper_->ask({office::request::close});
    }

private:
    /// By the mark that LibreOffice leaves beside a document while a user has it open.
    bool is_open_in_libre_office(const std::string& path) {
        const std::filesystem::path document(path);
        return files_.exists(document.parent_path() / (".~lock." + document.filename().string() + "#"));
    }

    std::shared_ptr<office::Helper> helper_;
    Files& files_;
    const std::function<bool(const std::string&)>& open_for_user_;
    std::string format_;
    std::string saved_as_;
    bool open_ = false;
};

} // namespace

OfficeWordProcessor::OfficeWordProcessor(Settings settings, Files& files,
                                         std::function<bool(const std::string&)> open_for_user)
    : settings_(std::move(settings)), files_(files), open_for_user_(std::move(open_for_user)) {}

OfficeWordProcessor::~OfficeWordProcessor() = default;

std::unique_ptr<WordApplication> OfficeWordProcessor::start() {
    const bool in_use = helper_.use_count() > 1;
    if (in_use || !helper_ || !helper_->alive()) {
        helper_ = std::make_shared<office::Helper>(settings_);
    }
    helper_->ask({office::request::start});
    return std::make_unique<OfficeApplication>(helper_, files_, open_for_user_);
}

} // namespace tarvello
