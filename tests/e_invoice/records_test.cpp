#include "e_invoice/creation.h"
#include "e_invoice/parties.h"
#include "e_invoice/sample.h"

#include "platform/posix/posix_files.h"
#include "store/store_fixture.h"

#include <filesystem>

namespace tarvello::e_invoice {
namespace {

/// An archive with the letterhead and the invoice of the first sample, and a folder for files.
struct EInvoiceArchive : ::testing::TestWithParam<testing::EngineKind> {
    EInvoiceArchive() {
        std::filesystem::create_directory(out);
        GetParam().make(path);
        connection.open(path);
        store_letterhead(connection, worked.issuer);
        records.save_issuer(worked.issuer);
        worked.invoice.ID = 1;
    }

    Source source() { return {worked.invoice, worked.issuer, worked.customer, worked.decisions}; }
    Creation make(const Source& from, std::int32_t used_elsewhere = 0) {
        return make_in(out, from, used_elsewhere);
    }
    Creation make_in(const std::string& where, const Source& from, std::int32_t used_elsewhere) {
        return FileCreator(records, files, where, sender_code(from.issuer), used_elsewhere)
            .create(from, soon_after, italian);
    }
    std::vector<std::string> written() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(out))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }

    testing::TemporaryFolder folder;
    const std::string path = folder.in("archivio.mdb");
    const std::string out = folder.in("fatture");
    Connection connection{italian};
    Records records{connection};
    PosixFiles files;
    Sample worked = sample(firm);
};

INSTANTIATE_TEST_SUITE_P(Engines, EInvoiceArchive, ::testing::Values(testing::engine_kinds[0]),
                         testing::name_of_kind);

constexpr const char* first = "ITDNGNCL75E14F205Y_00001.xml";
constexpr const char* second = "ITDNGNCL75E14F205Y_00002.xml";
constexpr const char* third = "ITDNGNCL75E14F205Y_00003.xml";

TEST_P(EInvoiceArchive, CreatesTheFileOfAStoredRow) {
    store_row(connection, worked.invoice);
    Recordset rows;
    rows.open("SELECT * FROM Fatture", connection);
    Source from = source();
    from.invoice = read_stored_invoice(rows);
    from.issuer = records.issuer();

    EXPECT_EQ(preview(records, from, soon_after, italian).xml, worked.xml);
    EXPECT_TRUE(written().empty());
    const Creation creation = make(from);
    EXPECT_EQ(creation.counter, 1);
    EXPECT_EQ(creation.file.file_name, first);
    EXPECT_EQ(testing::bytes_of(path_of(creation.file)), worked.xml);

    connection.close();
    connection.open(path);
    const InvoiceFile kept = records.newest(1).value();
    EXPECT_EQ(kept.state, DeliveryState::created);
    EXPECT_EQ(kept.number, "1/2026");
    EXPECT_EQ(kept.year, 2026);
    EXPECT_EQ(kept.created, soon_after);
    EXPECT_EQ(kept.hash.size(), 64u);
    EXPECT_EQ(path_of(kept), out + "/" + first);
    EXPECT_EQ(records.xml(kept.id), worked.xml);
    EXPECT_EQ(records.counter(), 1);
}

TEST_P(EInvoiceArchive, KeepsEveryEntry) {
    Sample full = worked;
    int count = 0;
    for (std::string* const text : texts_of(full)) *text = std::to_string(10 + count++ % 90);
    full.issuer.number_form = NumberForm::plain;
    full.issuer.DataIscrizioneAlbo = make_date(2001, 2, 3);
    full.issuer.IscrizioneREA.CapitaleSociale = 1'000'001;
    full.customer.public_administration = full.customer.vat_group = true;
    full.decisions.bollo = true;
    full.decisions.Causale = {"prima riga", "seconda"};
    full.decisions.reference_kind = ReferenceKind::agreement;
    full.decisions.reference.Data = full.decisions.DataIntento = make_date(2026, 1, 2);
    full.decisions.FatturaCollegata.Data = make_date(2026, 1, 3);
    full.decisions.bank = BankDetails::none;
    records.save_issuer(full.issuer);
    for (int i = 0; i < 2; ++i) { // entered, and changed
        records.save_customer(7, full.customer);
        records.save_decisions(5, full.decisions);
    }

    Sample back = worked;
    back.issuer = records.issuer();
    back.customer = records.customer(7);
    back.decisions = records.newest(5)->decisions;
    EXPECT_EQ(records.files().size(), 1u);
    EXPECT_EQ(back.issuer.Nome_Azienda, worked.issuer.Nome_Azienda) << "the letterhead stays";
    for (const auto member :
         {&Issuer::Nome_Azienda, &Issuer::Indirizzo, &Issuer::Telefono, &Issuer::Fax, &Issuer::Codice_Fiscale,
          &Issuer::Partita_IVA, &Issuer::email, &Issuer::Banca, &Issuer::ABI, &Issuer::CAB, &Issuer::CC}) {
        back.issuer.*member = full.issuer.*member;
    }
    back.invoice = full.invoice;
    back.progressive = full.progressive;
    EXPECT_EQ(back.decisions.Causale, full.decisions.Causale);
    back.decisions.Causale = full.decisions.Causale;
    const std::vector<std::string*> texts = texts_of(full);
    const std::vector<std::string*> read = texts_of(back);
    for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(*read[i], *texts[i]) << "text " << i;
    EXPECT_EQ(back.issuer.number_form, NumberForm::plain);
    EXPECT_EQ(back.issuer.DataIscrizioneAlbo, full.issuer.DataIscrizioneAlbo);
    EXPECT_EQ(back.issuer.IscrizioneREA.CapitaleSociale, 1'000'001);
    EXPECT_TRUE(back.customer.public_administration && back.customer.vat_group && back.decisions.bollo);
    EXPECT_EQ(back.decisions.reference_kind, ReferenceKind::agreement);
    EXPECT_EQ(back.decisions.reference.Data, full.decisions.reference.Data);
    EXPECT_EQ(back.decisions.DataIntento, full.decisions.DataIntento);
    EXPECT_EQ(back.decisions.FatturaCollegata.Data, full.decisions.FatturaCollegata.Data);
    EXPECT_EQ(back.decisions.bank, BankDetails::none);
    EXPECT_TRUE(records.is_customer_known(7));
    EXPECT_FALSE(records.is_customer_known(8));
    EXPECT_EQ(records.customer(8).Nazione, "");
}

TEST_P(EInvoiceArchive, AnArchiveWithoutTablesHasNothingYet) {
    const std::string bare = folder.in("nuovo.mdb");
    GetParam().make(bare);
    connection.close();
    connection.open(bare);
    EXPECT_EQ(records.issuer().Nome, "");
    EXPECT_FALSE(records.is_issuer_known());
    EXPECT_FALSE(records.is_customer_known(1));
    EXPECT_TRUE(records.files().empty() && records.receipts_of(1).empty() &&
                records.known_files().first.empty());
    EXPECT_EQ(records.counter(), 0);
    EXPECT_EQ(preview(records, source(), soon_after, italian).xml, worked.xml);
    records.save_decisions(1, {});
    EXPECT_FALSE(records.is_issuer_known()) << "tables alone are no set-up";
}

TEST_P(EInvoiceArchive, ANameIsNeverUsedTwice) {
    const std::string before = testing::bytes_of(path);
    make(source());
    const Creation again = make(source()); // not sent yet: a better one may be made
    EXPECT_EQ(again.file.file_name, second);
    EXPECT_EQ(records.files_of(1).size(), 2u);

    // The archive is restored from a copy that knows of neither.
    connection.close();
    testing::write_bytes(path, before);
    connection.open(path);
    EXPECT_EQ(make(source()).file.file_name, third) << "the folder knows them";

    connection.close();
    testing::write_bytes(path, before);
    connection.open(path);
    const std::string elsewhere = folder.in("altra");
    std::filesystem::create_directory(elsewhere);
    EXPECT_EQ(make_in(elsewhere, source(), 3).counter, 4);
    EXPECT_EQ(records.counter(), 4);
}

TEST_P(EInvoiceArchive, WhatIsOnItsWayIsNotCreatedAgain) {
    const std::int64_t file = make(source()).file.id;
    records.save_state(file, DeliveryState::sent, soon_after);
    EXPECT_NE(testing::failure_of([&] { make(source()); }).find("è già stata inviata"), std::string::npos);
    EXPECT_EQ(written().size(), 1u);

    StoredReceipt receipt{file, "NS", "scarto.xml", "NS 42", "<x/>", make_date(2026, 3, 22)};
    records.add_receipt(receipt, DeliveryState::rejected, "42");
    const InvoiceFile rejected = records.newest(1).value();
    EXPECT_EQ(rejected.state, DeliveryState::rejected);
    EXPECT_EQ(rejected.sdi_number, "42");
    EXPECT_EQ(rejected.sent, soon_after);
    EXPECT_EQ(rejected.rejected, make_date(2026, 3, 22));
    ASSERT_EQ(records.receipts_of(file).size(), 1u);
    EXPECT_EQ(records.receipts_of(file)[0].xml, "<x/>");

    const Creation cured = make(source());
    EXPECT_EQ(cured.file.file_name, second);
    EXPECT_EQ(cured.file.number, "1/2026") << "the same number and date";
    const auto [known, ids] = records.known_files();
    ASSERT_EQ(known.size(), 2u);
    EXPECT_EQ(known[0].receipts, (std::vector<std::string>{"NS 42"}));
    EXPECT_EQ(known[1].name, second);
    EXPECT_EQ(ids, (std::vector<std::int64_t>{file, cured.file.id}));
}

TEST_P(EInvoiceArchive, AnAdministrationsFileIsToBeSigned) {
    const Sample lawyer = sample(administration);
    const Creation creation = make({lawyer.invoice, lawyer.issuer, lawyer.customer, lawyer.decisions});
    EXPECT_EQ(creation.file.state, DeliveryState::to_sign);
    records.mark_signed(creation.file.id);
    const InvoiceFile file = records.newest(lawyer.invoice.ID).value();
    EXPECT_EQ(file.state, DeliveryState::created);
    EXPECT_EQ(file.hash, "") << "what is sent are other bytes";
}

TEST_P(EInvoiceArchive, ARefusedDocumentLeavesNothing) {
    Source wrong = source();
    wrong.invoice.CAP = "";
    EXPECT_NE(testing::failure_of([&] { make(wrong); }).find("CAP del cliente"), std::string::npos);
    EXPECT_TRUE(written().empty());
    EXPECT_TRUE(records.files().empty());
    EXPECT_EQ(records.counter(), 0);
}

TEST_P(EInvoiceArchive, AnInterruptedCreationIsFinished) {
    std::filesystem::remove(out);
    testing::failure_of([&] { make(source()); });
    const InvoiceFile begun = records.newest(1).value();
    EXPECT_EQ(begun.state, DeliveryState::to_create);
    EXPECT_EQ(begun.file_name, first);
    EXPECT_EQ(settle(records, files, soon_after).size(), 1u) << "as long as the folder is not there";

    std::filesystem::create_directory(out);
    testing::write_bytes(path_of(begun), "altro");
    ASSERT_EQ(settle(records, files, soon_after).size(), 1u);
    EXPECT_EQ(testing::bytes_of(path_of(begun)), "altro") << "it may have been sent";
    std::filesystem::remove(path_of(begun));

    EXPECT_TRUE(settle(records, files, soon_after).empty());
    EXPECT_EQ(testing::bytes_of(path_of(begun)), worked.xml);
    EXPECT_EQ(records.newest(1)->state, DeliveryState::created);

    // Interrupted behind the file: the same is found there.
    records.save_state(begun.id, DeliveryState::to_create, soon_after);
    EXPECT_TRUE(settle(records, files, soon_after).empty());
    EXPECT_EQ(records.newest(1)->state, DeliveryState::created);
    EXPECT_EQ(make(source()).file.file_name, second);
}

TEST_P(EInvoiceArchive, TellsNumbersThatAreTaken) {
    const std::int64_t file = make(source()).file.id;
    Source other = source();
    other.invoice.ID = 2;
    const auto about = [&](const Source& of) {
        return records.circumstances(
            of.invoice.ID,
            from_row(of.invoice, of.issuer, of.customer, of.decisions, "00001", italian).document,
            soon_after);
    };
    EXPECT_FALSE(about(source()).number_created) << "its own";
    EXPECT_TRUE(about(other).number_created);
    EXPECT_FALSE(about(other).number_sent);
    for (const DeliveryState state : {DeliveryState::sent, DeliveryState::delivered}) {
        records.save_state(file, state, soon_after);
        EXPECT_TRUE(about(other).number_sent);
    }
    records.save_state(file, DeliveryState::rejected, soon_after);
    EXPECT_FALSE(about(other).number_created || about(other).number_sent);
    records.save_state(file, DeliveryState::sent, soon_after);
    Source next_year = other;
    next_year.invoice.Data_Fattura = make_date(2025, 12, 31);
    EXPECT_FALSE(about(next_year).number_sent) << "counted by the year of the date";
    other.decisions.TipoDocumento = "TD04";
    EXPECT_FALSE(about(other).number_sent) << "credit notes are counted apart";
}

} // namespace
} // namespace tarvello::e_invoice
