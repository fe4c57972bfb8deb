#pragma once

#include "platform/form.h"
#include "platform/platform.h"
#include "store/database.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <typeindex>

namespace tarvello {

class SessionFields;

/// What lives all session: the platform, the database, the forms. Every form knows the program and reaches
/// the others through it.
class Program final : public FormHost {
public:
    explicit Program(Platform platform);
    ~Program();

    Platform& platform() { return platform_; }
    const RegionalSettings& regional() const { return platform_.regional; }
    Database& database() { return database_; }

    /// Name of the invoicing person or company.
    std::string NomeIntestatario;
    /// The invoicing year that dates are compared with: that of the newest invoice.
    std::int16_t AnnoCorrente = 0;
    /// The address that was last opened in the user's browser.
    std::string opened_address;
    /// How far the version banner of the update page has been typed; once a session.
    std::int16_t version_banner_ticks = 0;

    /// The one instance of a form. It is made and loaded when it is first used, and again after it was
    /// unloaded.
    template <typename FormType>
    FormType& form() {
        auto& slot = forms_[typeid(FormType)];
        if (!slot) {
            slot = std::make_shared<FormType>(*this);
            const auto alive = slot;
            FormLife::load(*alive);
            return static_cast<FormType&>(*alive);
        }
        return static_cast<FormType&>(*slot);
    }

    /// The instance of a form if it is loaded, else null.
    template <typename FormType>
    FormType* loaded() const {
        const auto slot = forms_.find(typeid(FormType));
        return slot == forms_.end() ? nullptr : static_cast<FormType*>(slot->second.get());
    }

    /// The settings of the session and its connected flag. @throws Failure while there is no main window
    SessionFields& session() const;
    /// The main window has come, or (null) gone.
    void set_session(SessionFields* session) { session_ = session; }

    /// A path in the program's directory.
    std::string in_program_directory(const std::string& name) const;

    /// Shows a message with one button.
    void message(const std::string& text, BoxIcon icon, const std::string& caption = "Tarvello 4");
    /// The program's usual question: Yes and No, the information icon, No as the default.
    bool confirm(const std::string& text, const std::string& caption = "Tarvello 4");

    // FormHost
    void run(const std::function<void()>& act) override;
    void show(Form& form) override;
    void show_modal(Form& form) override;
    bool unload(Form& form, UnloadReason reason) override;

private:
    Platform platform_;
    Database database_;
    SessionFields* session_ = nullptr;
    std::map<std::type_index, std::shared_ptr<Form>> forms_;
};

} // namespace tarvello
