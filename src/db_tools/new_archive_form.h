#pragma once

#include "platform/controls.h"
#include "platform/form.h"

#include <memory>
#include <string>

namespace tarvello {

class Program;

/// Makes a new archive, in the program's own format or in that of Access, empty or with all that the open one
/// holds. The open one stays as it is.
class frmNuovoArchivio : public Form {
public:
    // The options OptionFormato.
    static constexpr std::size_t own_format = 0;
    static constexpr std::size_t access_format = 1;

    explicit frmNuovoArchivio(Program& program);

    Frame FrameFormato{*this, "FrameFormato"};
    ControlArray<OptionButton, 2> OptionFormato{FrameFormato, "OptionFormato"};
    Label LabelFormato{FrameFormato, "LabelFormato"};
    CheckBox CheckDatiAttuali{*this, "CheckDatiAttuali"};
    Label LabelFile{*this, "LabelFile"};
    TextBox txtFile{*this, "txtFile"};
    CommandButton cmdSfoglia{*this, "cmdSfoglia"};
    CommandButton cmdCrea{*this, "cmdCrea"};
    CommandButton cmdAnnulla{*this, "cmdAnnulla"};

    /// Where the path of the archive goes when it has been made.
    void hand_over_to(std::shared_ptr<std::string> path) { made_ = std::move(path); }

private:
    void CreaArchivio();
    /// The file that is meant by what has been typed.
    std::string path() const;
    /// @return false if it was given up, or failed and the user has heard why
    bool make(const std::string& path);

    Program& program_;
    std::shared_ptr<std::string> made_;
};

} // namespace tarvello
