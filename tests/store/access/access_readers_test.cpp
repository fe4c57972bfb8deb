#include "store/access/access_support.h"

#include "store/statement.h"
#include "text/letter_case.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace tarvello::testing {
namespace {

std::string json(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += std::string("\\") + c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
            result += escaped;
        } else {
            result += c;
        }
    }
    return result + "\"";
}

std::string dump(store::Engine& engine) {
    std::string text;
    for (const char* table : {"Clienti", "Fatture", "DatiIntestazione"}) {
        const std::string sql = std::string("SELECT * FROM ") + table;
        std::string columns;
        for (const store::Column& column : engine.run(store::parse_statement(sql))->columns()) {
            columns += (columns.empty() ? "" : ",") + json(column.name);
        }
        std::string rows;
        for (const Row& row : run(engine, sql)) {
            std::string values;
            for (const std::string& value : row) {
                values += (values.empty() ? "" : ",") + (value == "(null)" ? "null" : json(value));
            }
            rows += (rows.empty() ? "[" : ",[") + values + "]";
        }
        text += "{\"name\":" + json(table) + ",\"columns\":[" + columns + "],\"rows\":[" + rows + "]}\n";
    }
    return text;
}

/// What the forms send when a customer is added, invoices are issued, changed and deleted, and the letterhead
/// is saved.
void road_of_an_invoice(store::Engine& engine) {
    run(engine,
        "INSERT INTO Clienti(Cognome_Ragione_Sociale, Nome, Codice_Fiscale, Partita_IVA, Indirizzo, CAP, "
        "Provincia, Città, Telefono, Fax, email, Appunti) VALUES('D''Ambrosio & "
        "Nicolò','Éric','DMBRCE70A01Z110X',"
        "'01234567890','Via dell''Orso 5','00100','RM','Roma','06 12','','eric@example.it','" +
            std::string(3000, 'n') + "')");
    const std::string number = run(engine, "SELECT * FROM Clienti ORDER BY Numero_Cliente DESC").at(0).at(0);
    for (int i = 0; i < 40; ++i) {
        run(engine,
            "INSERT INTO Fatture (Numero_Fattura,Data_Fattura,Anno,Numero_Cliente,Codice_Fiscale,Nome,"
            "Cognome_Ragione_Sociale,Indirizzo,Prestazione1,Importo1,Prestazione2,Importo2,Rivalsa,"
            "Imponibile,"
            "Check_Pagamento,Pagamento) VALUES ('" +
                std::to_string(i + 1) + "','29/02/2012','2012','" + number +
                "','DMBRCE70A01Z110X','Éric','D''Ambrosio & Nicolò','Via dell''Orso 5','Consulenza " +
                std::string(static_cast<std::size_t>(i) * 90, 'c') +
                "','€ 1.234,56','','','Sì','€ 1.234,56','Sì','Banca\r\nABI: \"01234\"')");
    }
    const std::string last = run(engine, "SELECT TOP 1 * FROM Fatture ORDER BY ID DESC").at(0).at(0);
    run(engine, "UPDATE Clienti SET Cognome_Ragione_Sociale='D''Ambrosio, Nicolò e Associati',Indirizzo='" +
                    std::string(190, 'v') + "' WHERE Numero_Cliente=" + number);
    run(engine,
        "UPDATE Fatture SET Cognome_Ragione_Sociale='D''Ambrosio, Nicolò e Associati',Nome='',Indirizzo='" +
            std::string(190, 'v') + "' WHERE Numero_Cliente=" + number);
    run(engine, "DELETE * FROM Fatture WHERE ID=" + std::to_string(std::stoi(last) - 3));
    run(engine, "DELETE * FROM DatiIntestazione");
    run(engine,
        "INSERT INTO DatiIntestazione (Nome_Azienda,Indirizzo,Telefono,Fax,Codice_Fiscale,Partita_IVA,email,"
        "Descrizione_Attività,Banca,ABI,CAB,CC) VALUES ('Studio Ærø','Piazza 1','','','','','','Perché "
        "no','','','','1')");
}

void expect_agreement(store::Engine& engine, const ScratchFolder& folder, const std::string& path) {
    write_file(folder.path("dump.json"), dump(engine));
    int code = 0;
    const std::string output = output_of("python3 " TARVELLO_TEST_DATA "/store/access/access_readers.py '" +
                                             path + "' '" + folder.path("dump.json") + "'",
                                         code);
    if (code == 77) GTEST_SKIP() << "mdb-export is not installed";
    EXPECT_EQ(code, 0) << output;
}

class AccessReaders : public ::testing::TestWithParam<const char*> {};

TEST_P(AccessReaders, OtherProgramsReadWhatTheProgramReads) {
    const ScratchFolder folder;
    const std::string path = folder.copy_of(GetParam());
    const auto engine = open(path);
    expect_agreement(*engine, folder, path);
    if (IsSkipped() || HasFailure()) return;
    road_of_an_invoice(*engine);
    expect_agreement(*engine, folder, path);
    expect_sound(path, access_sample(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Samples, AccessReaders, ::testing::ValuesIn(access_samples), [](const auto& sample) {
    return std::string(sample.param).substr(0, std::string(sample.param).find('.'));
});

} // namespace
} // namespace tarvello::testing
