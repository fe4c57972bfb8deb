#include "program/failure_words.h"

namespace tarvello {

std::string words_for(const Failure& failure) {
    switch (failure.number()) {
    case failure_number::overflow:
        return "Un numero è più grande di quanto il programma possa calcolare.\n"
               "Controllare i numeri e gli importi inseriti e ridurre quello troppo grande.";
    case failure_number::type_mismatch:
        return "Un valore non è scritto come un importo, un numero o una data.\n"
               "Controllare i valori inseriti e riscrivere quello indicato qui sotto.";
    case failure_number::statement:
        return "Un testo inserito non può far parte di un comando all'archivio: di solito contiene un "
               "apostrofo (') dove non è ammesso.\n"
               "Togliere l'apostrofo da codici, importi e testi di ricerca e ripetere.";
    case failure_number::invalid_use_of_null:
    case failure_number::no_current_record:
        return "Nell'archivio manca un dato che serve per questo comando.\n"
               "Completare la riga (cliente, fattura o intestazione) e ripetere.";
    case failure_number::no_such_element:
        return "L'archivio aperto non ha una tabella o una colonna che serve.\n"
               "Aprire un archivio di Tarvello, o una sua copia di backup, da \"Strumenti\".";
    case failure_number::object_closed:
        return "Nessun database connesso.\n"
               "Aprire un archivio con il menù \"File\", voce \"Apri\", o sceglierne uno in \"Strumenti\".";
    case failure_number::file_not_found:
    case failure_number::file_access:
    case failure_number::database:
        return "Un file o l'archivio non può essere letto o scritto.\n"
               "Controllare che il disco non sia pieno, che il file esista e che non sia protetto o in uso "
               "da "
               "un altro programma.";
    default:
        return "Un'operazione non è riuscita.\n"
               "Controllare quanto indicato qui sotto e ripetere.";
    }
}

} // namespace tarvello
