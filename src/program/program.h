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
#include <vector>

namespace tarvello {

class Doors;
class DraftKeeper;
class Failure;
class SessionFields;

/// What lives all session: the platform, the database, the forms. Every form knows the program and reaches
/// through it the others of its room, and by the doors those of other rooms.
class Program final : public FormHost {
public:
    explicit Program(Platform platform);
    ~Program();

    Platform& platform() { return platform_; }
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
    /// unloaded. One that its own load unloads is there until the act of the user is over.
    /// @throws LoadFailure if its load fails; then it is not loaded
    template <typename FormType>
    FormType& form() {
        auto& slot = forms_[typeid(FormType)];
        if (!slot) return static_cast<FormType&>(load(slot, std::make_shared<FormType>(*this)));
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
    /// The ways to the windows of other rooms. @throws Failure as session()
    Doors& doors() const;
    void set_doors(Doors* doors) { doors_ = doors; }

    /// The forms that keep drafts, as long as they are there.
    void add_draft_keeper(DraftKeeper& keeper) { draft_keepers_.push_back(&keeper); }
    void remove_draft_keeper(DraftKeeper& keeper) { std::erase(draft_keepers_, &keeper); }
    /// Writes down what stands unsaved in any form.
    void keep_drafts();

    /// A path in the program's directory.
    std::string in_program_directory(const std::string& name) const;

    /// Shows a message with one button.
    void message(const std::string& text, BoxIcon icon, const std::string& caption = program_title);
    /// The program's usual question: Yes and No, the information icon, No as the default.
    bool confirm(const std::string& text, const std::string& caption = program_title);

    /// Asks, in the same way, whether changes are to be saved before they go. Cancel leads back to them.
    Answer ask_to_save(const std::string& text);

    // FormHost
    void run(const std::function<void()>& act) override;
    void show(Form& form) override;
    void show_modal(Form& form) override;
    bool unload(Form& form, UnloadReason reason) override;
    const RegionalSettings& regional() const override { return platform_.regional; }
    Date today() override { return platform_.clock.today(); }
    void help() override;
    void warn(const std::string& text) override { message(text, BoxIcon::exclamation); }

private:
    /// A form that cannot be loaded, or a missing database, leave the session as it was.
    bool survives(const Failure& failure) const;
    Form& load(std::shared_ptr<Form>& slot, const std::shared_ptr<Form>& form);
    void offer_draft(const Form& form);

    Platform platform_;
    Database database_;
    SessionFields* session_ = nullptr;
    Doors* doors_ = nullptr;
    std::vector<DraftKeeper*> draft_keepers_;
    std::map<std::type_index, std::shared_ptr<Form>> forms_;
    std::vector<std::shared_ptr<Form>> gone_in_load_; // until the act is over
    int acts_ = 0;                                    // running, one inside the other
};

} // namespace tarvello
