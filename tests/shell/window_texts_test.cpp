// What stands on the windows before anybody has touched them. Those of the customers and of the invoice have
// tests of their own.
#include "db_tools/database_form.h"
#include "db_tools/new_archive_form.h"
#include "db_tools/restore_name_form.h"
#include "documents/letterhead_form.h"
#include "documents/template_info_form.h"
#include "fiscal_code/calculator_form.h"
#include "invoices/exemption_form.h"
#include "invoices/list_by_year_form.h"
#include "preferences/tax_preferences.h"
#include "shell/issuer_name_form.h"
#include "support/program_test.h"
#include "update/update_reminder.h"
#include "update/web_service.h"

#include <sstream>

namespace tarvello::testing {
namespace {

struct WindowCase {
    const char* name;
    Form& (*open)(Program&);
    const char* faces; ///< as ProgramTest::expect_faces takes them; the first is the window's caption
    /// What a user cannot act on or write into yet.
    const char* out_of_reach;
};

template <typename Shown>
Form& form_of(Program& program) {
    return program.form<Shown>();
}

const WindowCase window_cases[] = {
    {"MDIForm1", form_of<MDIForm1>,
     "mnuFile=&File; mnuApri=&Apri                    ; mnuChiudiDatabase=Chiudi; CercaFile=&Cerca File; "
     "mnuFileExit=&Esci; Visualizza=&Menù; mnuAnagrafica_Clienti=&Clienti; mnuFatture=&Fatture; "
     "IntestaFatture=I&ntestazione; Impostazioni=&Impostazioni; mnuGestioneDatabase=&Strumenti; "
     "mnuScaricaAggiornamenti=A&ggiornamenti; Help=?; Autore=&Autore; AboutTarvello=&Programma; "
     "lblNome2=Menù; "
     "Label2_0=Clienti|Visualizza l'anagrafica clienti; Label2_1=Fatture|Visualizza l'archivio fatture; "
     "Label2_2=Intestazione|Visualizza i propri dati personali e le impostazioni di stampa; "
     "Label2_3=Strumenti|Visualizza gli strumenti di accesso ai dati e di backup; Label2_4=Esci; "
     "Label2_5=Impostazioni|Visualiza le impostazioni delle aliquote per la fatturazione; "
     "Label2_6=Aggiornamenti|Verifica la disponibilità di aggiornamenti; "
     "Image1=|Donazioni con carta di credito o altri mezzi di pagamento.; imgApn2=|Chiudi il menù; "
     "imgChS2=|Apri il menù",
     ""},
    {"frmIntestazioneFatture", form_of<frmIntestazioneFatture>,
     "=Intestazione; Command1_0=Salva|||; Command1_1=&Chiudi|||; Command1_2=&Aiuto ?|||; "
     "Command2=Calcola Codice Fiscale|||; Command3=Modifica Nome / Ragione Sociale|||; "
     "FrameBanca=Coordinate Bancarie per i pagamenti; FrameLogo=Logo per la stampa; Command7=Seleziona|||; "
     "Command8=Elimina Logo|||; CheckAdattaLogo=Adatta dimensione Immagine; "
     "FrameStampa=Impostazioni di Stampa; Label14=Elenco modelli disponibili; Command6=Salva|||; "
     "FrameWord=Impostazioni file di Microsoft Word; Option1=Rich Text Format (*.rtf); Option2=Word (*.doc); "
     "Command5=Salva|||; cmdAnteprimaModelli=Anteprima|||; cmdNuovoModello=Nuovo Modello|||; "
     "ImportaModello=Importa Modello|||; cmdInfoModelli=Informazioni sui modelli|||; "
     "LabelInStampa=In stampa riempie tutto il riquadro:",
     "Text1_0 Text1_5 Command1_0 Command8 CheckAdattaLogo Command6 PicOrigine txtModello txtModelloAttuale "
     "Command5"},
    {"frmInfoModelli", form_of<frmInfoModelli>,
     "=Informazioni sui modelli; Label1=1) Rich Text Format (RTF); Label4=2) Microsoft Word Document (DOC); "
     "Label3=Chiudi; Label6=X",
     ""},
    {"frmImpostazioni", form_of<frmImpostazioni>,
     "=Impostazioni; Label1=Impostazioni di Rivalsa; Frame1=Dicitura Rivalsa; "
     "Option1=Usa la dicitura \"Rivalsa\"; Option2=Personalizza; Label4=Dicitura usata attualmente:; "
     "Frame2=Aliquota Rivalsa; Label5=Aliquota usata attualmente:; "
     "Check1=Includi Rivalsa 4% nel calcolo della R.A.; CheckEscludiRivalsaImponibile="
     "Esludi la rivalsa dal calcolo dell'imponibile (Rivalsa esente da IVA); Label2=Impostazioni I.V.A.; "
     "Frame3=Aliquota IVA Predefinita; Label3=Impostazioni Ritenuta Acconto; "
     "Frame4=Aliquota Ritenuta Acconto Predefinita; Label6=% dell'imponibile; Command1=&Salva|||; "
     "Command3=&Salva|||; Command4=&Salva|||; Command2=Chiudi|||",
     "Command1 Command3 Command4 Text1"},
    {"frmGestioneDatabase", form_of<frmGestioneDatabase>,
     "=Strumenti; cmdClose=Chiudi|||; Label4=Selezionare il database da aprire o a cui connettersi; "
     "Label1=Database corrente:; Option1_0=Database di default; "
     "Option1_1=Altro database (permette di selezionare un'unità di rete); Command1=Sfoglia|||; "
     "cmdApriDB=Apri|||; cmdNuovoArchivio=Nuovo archivio...|||; "
     "CheckBoxBackup=Attiva supporto per backup; Label6=Disattivato; OptionDestinazioneDefault=Default; "
     "OptionDestinazioneBackup=Scegli destinazione; Label5=Destinazione:; cmdSaveBackupSettings=Salva|||; "
     "Command2_0=Sfoglia|||; Command2_1=Sfoglia|||; Command2_2=Sfoglia|||; Label12=Attenzione!; "
     "Label13=Il ripristino di una copia di back-up causa la totale perdita dei dati attualmente in uso. "
     "Utilizzare il ripristino solo se siete certi che sia necessario.; "
     "CheckBoxRipristinaBackup=Ripristina Copia di Backup; FrameRipristino=Ripristino Copia di Backup; "
     "Command5=Ripristina|||; CheckBoxImportaEsporta=Importa / Esporta database; Label7=Origine:; "
     "Label8=Destinazione:; cmdImpExp=Esegui|||",
     "txtPercorsoDatabase Text1 OptionDestinazioneDefault OptionDestinazioneBackup TxtDestinazioneBackup "
     "cmdSaveBackupSettings Command2_0 Command2_1 Command2_2 Dir1 Command5 File1 Text2 txtLocalFolder "
     "txtSelectedFile txtOrigine txtDest cmdImpExp Label5 Label7 Label8"},
    {"frmRipristinaBackup", form_of<frmRipristinaBackup>,
     "=Ripristino Backup; Frame1=Ripristino Backup; Command1=Annulla|||", ""},
    {"frmNuovoArchivio", form_of<frmNuovoArchivio>,
     "=Nuovo archivio; FrameFormato=Formato; OptionFormato_0=Tarvello (consigliato); "
     "OptionFormato_1=Access 2000-2003; CheckDatiAttuali=Con i dati attuali; LabelFile=File:; "
     "cmdSfoglia=Sfoglia|||; cmdCrea=Crea|||; cmdAnnulla=Annulla|||",
     ""},
    {"DialogAggiornamento", form_of<DialogAggiornamento>,
     "=Tarvello 4; Frame1=Verifica Aggiornamenti; Label3=Avvisa di nuovo tra; Label4=giorno/i; "
     "Label2=Premere OK per verificare la disponibilità di aggiornamenti.; OKButton=OK|||; "
     "CancelButton=Annulla|||; Command1=||Chiudi|chiudi",
     ""},
    {"frmWebService", form_of<frmWebService>,
     "=Tarvello 4 - Verifica Aggiornamenti; Toolbar1_1=Verifica|||verifica; "
     "Toolbar1_2=Indietro|||freccia-sinistra; Toolbar1_3=Aggiorna|||aggiorna; "
     "Toolbar1_4=Avanti|||freccia-destra; Toolbar1_5=Chiudi|||chiudi",
     ""},
    {"frmCalcolaCF", form_of<frmCalcolaCF>,
     "=Calcolo del codice fiscale; Frame1=Calcola Codice Fiscale; cmdElabora=Elabora|||; cmdExit=Chiudi|||",
     "txtProvincia txtCodice txtCodiceFiscale txtparam cmdElabora cmdCopia"},
    {"frmRegister", form_of<frmRegister>,
     "=Inserisci Modifica Nome/Ragione Sociale; Label4=ATTENZIONE!; Command1=C&onferma|||; "
     "Label1=Nome (Persona fisica o giuridica); Command2=&Cancella|||",
     ""},
    {"frmArticoloEsenzione", form_of<frmArticoloEsenzione>,
     "=Articolo Esenzione IVA; Label1=Specificare uno degli articoli di esenzione; "
     "Option1=Art. 10 D.p.r. 633/72; Option2=Art. 15 D.p.r. 633/72; Option3=Art. 74 D.p.r. 633/72; "
     "Option4=Altro (specificare nel riquadro sottostante); OKButton=OK|||; CancelButton=&Annulla|||; "
     "txtEsenzioneIVA=|Specificare la causale per l'esenzione IVA",
     "txtEsenzioneIVA txtparam"},
    {"frmSelectYear", form_of<frmSelectYear>,
     "=Selezionare Anno Fatturazione; Command1=OK|||; "
     "Label1=Selezionare l'anno del quale si desidera visualizzare l'elenco fatture.; "
     "Combo1=|Anno del quale si desiderano consulatare le fatture",
     ""},
};

struct WindowTexts : ProgramTest, ::testing::WithParamInterface<WindowCase> {};

TEST_P(WindowTexts, StandAsTheyAreWritten) {
    fake.boxes.deserted = true; // the calculator tells that there are no municipalities here
    Form& form = GetParam().open(*program);
    expect_faces(form, GetParam().faces);
    std::istringstream names(GetParam().out_of_reach);
    for (std::string name; names >> name;) {
        const Control* control = form.find(name);
        ASSERT_TRUE(control) << name;
        const auto* entry = dynamic_cast<const TextEntry*>(control);
        EXPECT_TRUE(!control->enabled() || !control->visible() || (entry && entry->locked())) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(All, WindowTexts, ::testing::ValuesIn(window_cases),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace tarvello::testing
