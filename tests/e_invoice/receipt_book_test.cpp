#include "e_invoice/delivery_state.h"
#include "e_invoice/receipt_book.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarvello::testing {
namespace {

using namespace e_invoice;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Outcome = Assessment::Outcome;
using S = DeliveryState;
using A = DeliveryAct;
using R = ReceiptKind;

Receipt receipt(ReceiptKind kind, const std::string& file_name) {
    Receipt made;
    made.kind = kind;
    made.file_name = file_name;
    return made;
}

TEST(DeliveryState, FollowsTheActsOfTheUser) {
    // For each state what create, create_to_sign, sign, send and take_back lead to; '-' if not possible.
    const auto letter = [](std::optional<S> state) {
        return !state                 ? '-'
               : *state == S::created ? 'c'
               : *state == S::to_sign ? 'f'
               : *state == S::sent    ? 'i'
                                      : '?';
    };
    const std::pair<S, const char*> table[] = {
        {S::to_create, "cf---"},      {S::to_sign, "cfc--"},   {S::created, "cfci-"},
        {S::sent, "----c"},           {S::rejected, "cf---"},  {S::not_delivered, "-----"},
        {S::attested, "-----"},       {S::delivered, "-----"}, {S::lapsed, "-----"},
        {S::made_available, "-----"}, {S::accepted, "-----"},  {S::refused, "cf---"},
    };
    for (const auto& [now, expected] : table) {
        std::string found;
        for (const A act : {A::create, A::create_to_sign, A::sign, A::send, A::take_back}) {
            found += letter(state_after(now, act));
        }
        EXPECT_EQ(found, expected) << state_text(now);
    }
}

TEST(DeliveryState, IsTheHighestThatReceiptsGive) {
    const struct {
        S before;
        std::vector<R> receipts;
        const char* state;
    } cases[] = {
        {S::created, {R::delivered}, "consegnata"}, // the user has not said that it was sent
        {S::sent, {R::rejected}, "scartata"},
        {S::sent, {R::made_available}, "messa a disposizione"},
        {S::sent, {R::made_available, R::delivered}, "consegnata"},
        {S::sent, {R::delivered, R::made_available}, "consegnata"},
        {S::sent, {R::delivered, R::rejected}, "consegnata"}, // sent twice
        {S::sent, {R::rejected, R::delivered}, "consegnata"},
        {S::sent, {R::not_delivered}, "mancata consegna"},
        {S::sent, {R::not_delivered, R::attested}, "attestata"},
        {S::sent, {R::attested, R::not_delivered}, "attestata"},
        {S::sent, {R::lapsed, R::delivered}, "decorsi i termini"},
        {S::sent, {R::accepted, R::delivered}, "accettata"},
        {S::sent, {R::delivered, R::refused}, "rifiutata"},
    };
    for (const auto& [before, receipts, state] : cases) {
        S now = before;
        for (const R kind : receipts) now = state_after(now, kind);
        EXPECT_EQ(state_text(now), state);
    }
    EXPECT_THAT(state_advice(S::made_available), HasSubstr("avvisare il cliente"));
    EXPECT_THAT(state_advice(S::refused), HasSubstr("nota di credito"));
}

TEST(DeliveryState, OfAnInvoiceWithSeveralFiles) {
    const auto of = [](std::vector<S> files) { return invoice_state(files); };
    EXPECT_EQ(of({}), S::to_create);
    EXPECT_EQ(of({S::rejected, S::created}), S::created);
    EXPECT_EQ(of({S::delivered, S::rejected}), S::delivered);
    EXPECT_EQ(of({S::made_available, S::created}), S::made_available);
    EXPECT_EQ(of({S::refused, S::sent}), S::sent);
    EXPECT_EQ(of({S::rejected, S::refused}), S::refused);
}

TEST(DeliveryState, LeavesSoManyDays) {
    const Date issued = make_date(2026, 2, 20);
    EXPECT_EQ(days_left(S::to_create, issued, {}, make_date(2026, 2, 20)), 12);
    EXPECT_EQ(days_left(S::to_sign, issued, {}, make_date(2026, 3, 4)), 0);
    EXPECT_EQ(days_left(S::created, issued, {}, make_date(2026, 3, 5)), -1);
    EXPECT_EQ(days_left(S::rejected, issued, make_date(2026, 3, 4), make_date(2026, 3, 6)), 3);
    EXPECT_EQ(days_left(S::created, issued, make_date(2026, 3, 4), make_date(2026, 3, 6)), 3);
    for (const S state : {S::sent, S::delivered, S::made_available, S::not_delivered}) {
        EXPECT_FALSE(days_left(state, issued, {}, issued)) << state_text(state);
    }
}

TEST(FileKey, IsOneForAllNamesOfAFile) {
    for (const char* name : {"ITABC_00001.xml", "itabc_00001.XML.p7m", "ITABC_00001.xml.p7m.P7M",
                             "C:\\x\\ITABC_00001.zip", "/x/ITABC_00001"}) {
        EXPECT_EQ(file_key(name), "itabc_00001") << name;
    }
}

class Book : public ::testing::Test {
protected:
    static KnownFile file(const std::string& name, const std::string& number, int year) {
        KnownFile known;
        known.name = name;
        known.invoice_number = number;
        known.invoice_year = year;
        known.state = S::sent;
        return known;
    }

    ReceiptBook book{{file("ITDNG75_00001.xml", "1/2026", 2026), file("ITDNG75_00002.xml", "2", 2025),
                      file("ITDNG75_00003.xml", "2", 2026), file("ITDNG75_00004.xml", "2", 2026)},
                     {"Dng75", "01234560157"}};
};

TEST_F(Book, TakesAReceiptOnce) {
    Assessment taken = book.take(receipt(R::rejected, "itdng75_00001.xml.p7m"));
    EXPECT_EQ(taken.outcome, Outcome::taken);
    EXPECT_EQ(taken.file, 0u);
    EXPECT_EQ(taken.state, S::rejected);
    EXPECT_EQ(taken.words, "Fattura 1/2026: scartata.");
    EXPECT_EQ(book.files()[0].state, S::rejected);

    taken = book.take(receipt(R::rejected, "itdng75_00001.xml.p7m"));
    EXPECT_EQ(taken.outcome, Outcome::doubled);
    EXPECT_THAT(taken.words, HasSubstr("era già registrata"));
    EXPECT_EQ(book.files()[0].receipts.size(), 1u);

    EXPECT_EQ(book.take(receipt(R::delivered, "ITDNG75_00001.xml")).state, S::delivered);
    EXPECT_EQ(book.take(receipt(R::rejected, "ITDNG75_00001.xml")).words,
              "Fattura 1/2026: ricevuta registrata, resta consegnata.");
}

TEST_F(Book, KnowsAFileSentInAnArchive) {
    Receipt archived = receipt(R::delivered, "ITX_00009.xml");
    archived.archive_name = "ITDNG75_00002.zip";
    EXPECT_EQ(book.take(archived).file, 1u);
}

TEST_F(Book, TellsTheFileOfAnotherIssuer) {
    Receipt other = receipt(R::lapsed, "IT02468010158_00001.xml");
    other.invoice = InvoiceReference{"1/2026", 2026};
    const Assessment foreign = book.take(other);
    EXPECT_EQ(foreign.outcome, Outcome::foreign);
    EXPECT_THAT(foreign.words, HasSubstr("IT02468010158_00001.xml, di un altro emittente"));
    EXPECT_THAT(book.files()[0].receipts, IsEmpty());
}

TEST_F(Book, FallsBackOnTheNumberOfTheInvoice) {
    const auto lapsed = [](const char* file_name, const char* number, int year) {
        Receipt made = receipt(R::lapsed, file_name);
        made.invoice = InvoiceReference{number, year};
        return made;
    };
    EXPECT_EQ(book.take(lapsed("IT01234560157_0000A.xml", "2", 2025)).file, 1u);

    Assessment unclear = book.take(lapsed("ITDNG75_0000A.xml", "2", 2026)); // two files
    EXPECT_EQ(unclear.outcome, Outcome::unclear);
    EXPECT_THAT(unclear.candidates, ElementsAre(2u, 3u));
    unclear = book.take(lapsed("fattura.xml", "1/2026", 2026)); // whose file?
    EXPECT_EQ(unclear.outcome, Outcome::unclear);
    EXPECT_THAT(unclear.candidates, ElementsAre(0u));
    unclear = book.take(lapsed("ITDNG75_0000A.xml", "3", 2026));
    EXPECT_THAT(unclear.candidates, IsEmpty());
    EXPECT_THAT(unclear.words, HasSubstr("non risulta creato"));
    EXPECT_EQ(book.take_for(receipt(R::delivered, "ITDNG75_0000A.xml"), 3).state, S::delivered);
}

/// After a restored backup a name may have been given twice: the hash tells the files apart.
TEST_F(Book, LooksAtTheHash) {
    KnownFile first = file("ITDNG75_00001.xml", "1", 2026);
    KnownFile second = file("ITDNG75_00001.xml", "2", 2026);
    first.hash = "aa";
    second.hash = "bb";
    ReceiptBook twice({first, second}, {"DNG75"});
    Receipt delivered = receipt(R::delivered, "ITDNG75_00001.xml");
    EXPECT_THAT(twice.take(delivered).candidates, ElementsAre(0u, 1u));
    delivered.hash = "BB";
    EXPECT_EQ(twice.take(delivered).file, 1u);
    delivered.hash = "cc";
    EXPECT_THAT(twice.take(delivered).words, HasSubstr("un contenuto diverso"));
    delivered.file_name += ".p7m"; // signed: the hash is another's
    delivered.hash = "dd";
    ReceiptBook once({first}, {"DNG75"});
    EXPECT_EQ(once.take(delivered).outcome, Outcome::taken);
}

} // namespace
} // namespace tarvello::testing
