#include "store/statement.h"

#include "failure.h"
#include "store/failure_source.h"
#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tarvello::store {
namespace {

constexpr std::array<std::string_view, 16> reserved_words{
    "SELECT", "TOP",  "FROM", "WHERE", "ORDER",  "BY",     "ASC",    "DESC",
    "AND",    "LIKE", "INTO", "SET",   "INSERT", "VALUES", "UPDATE", "DELETE"};

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

/// Letters, digits and _; every character outside ASCII counts as a letter.
bool is_name_character(char c) { return ascii::is_letter_or_digit(c) || c == '_' || !ascii::contains(c); }

bool same_word(std::string_view word, std::string_view upper) {
    return std::equal(word.begin(), word.end(), upper.begin(), upper.end(),
                      [](char a, char b) { return ascii::upper(a) == b; });
}

class Parser {
public:
    explicit Parser(std::string_view sql) : sql_(sql) { skip_blanks(); }

    Statement statement() {
        if (take_word("SELECT")) {
            select();
        } else if (take_word("INSERT")) {
            insert();
        } else if (take_word("UPDATE")) {
            update();
        } else if (take_word("DELETE")) {
            remove();
        } else {
            fail("l'istruzione deve cominciare con SELECT, INSERT, UPDATE o DELETE");
        }
        if (at_ < sql_.size()) fail("l'istruzione è già completa, il resto è di troppo");
        return std::move(result_);
    }

private:
    static constexpr const char* table_name = "il nome della tabella";
    static constexpr const char* column_name = "il nome della colonna";
    static constexpr const char* no_opening = "manca la parentesi che apre l'elenco dei valori";
    static constexpr const char* no_closing = "manca la parentesi che chiude l'elenco dei valori";

    void select() {
        result_.kind = StatementKind::select;
        if (take_word("TOP")) result_.top = count();
        need_mark('*', "manca l'asterisco dopo SELECT");
        need_word("FROM");
        result_.table = name(table_name);
        where();
        if (!take_word("ORDER")) return;
        need_word("BY");
        result_.order_by = name(column_name);
        if (take_word("DESC")) {
            result_.descending = true;
        } else {
            take_word("ASC");
        }
    }

    void insert() {
        result_.kind = StatementKind::insert;
        need_word("INTO");
        result_.table = name(table_name);
        need_mark('(', "manca la parentesi che apre l'elenco delle colonne");
        do {
            result_.assignments.push_back({name(column_name), {}});
        } while (take_mark(','));
        need_mark(')', "manca la parentesi che chiude l'elenco delle colonne");
        need_word("VALUES");
        need_mark('(', no_opening);
        for (std::size_t i = 0; i < result_.assignments.size(); ++i) {
            if (i > 0) need_mark(',', "i valori sono meno delle colonne");
            result_.assignments[i].literal = literal();
        }
        if (at_ < sql_.size() && sql_[at_] == ',') fail("i valori sono più delle colonne");
        need_mark(')', no_closing);
    }

    void update() {
        result_.kind = StatementKind::update;
        result_.table = name(table_name);
        need_word("SET");
        do {
            std::string column = name(column_name);
            need_mark('=', "manca il segno = dopo il nome della colonna");
            result_.assignments.push_back({std::move(column), literal()});
        } while (take_mark(','));
        where();
    }

    void remove() {
        result_.kind = StatementKind::remove;
        need_mark('*', "manca l'asterisco dopo DELETE");
        need_word("FROM");
        result_.table = name(table_name);
        where();
    }

    void where() {
        if (!take_word("WHERE")) return;
        do {
            Condition condition;
            condition.column = name(column_name);
            condition.comparison = comparison();
            if (condition.comparison == Comparison::in) {
                condition.list = list();
            } else {
                const bool text = at_ < sql_.size() && (sql_[at_] == '\'' || sql_[at_] == '?');
                if (condition.comparison == Comparison::like && !text)
                    fail("dopo LIKE manca un testo fra apostrofi");
                condition.literal = literal();
            }
            result_.conditions.push_back(std::move(condition));
        } while (take_word("AND"));
    }

    Comparison comparison() {
        if (take_mark('=')) return Comparison::equal;
        if (at_ < sql_.size() && (sql_[at_] == '<' || sql_[at_] == '>')) {
            const bool less = sql_[at_++] == '<';
            if (less && take_mark('>')) return Comparison::not_equal;
            const bool or_equal = at_ < sql_.size() && sql_[at_] == '=';
            if (or_equal) ++at_;
            skip_blanks();
            if (less) return or_equal ? Comparison::less_or_equal : Comparison::less;
            return or_equal ? Comparison::greater_or_equal : Comparison::greater;
        }
        if (take_word("LIKE")) return Comparison::like;
        if (!take_word("IN")) fail("manca il confronto: =, <>, <, >, <=, >=, LIKE o IN");
        return Comparison::in;
    }

    std::vector<Literal> list() {
        std::vector<Literal> literals;
        need_mark('(', no_opening);
        do literals.push_back(literal());
        while (take_mark(','));
        need_mark(')', no_closing);
        return literals;
    }

    Literal literal() {
        if (at_ < sql_.size() && sql_[at_] == '\'') return text_literal();
        if (take_mark('?')) return {{}, false, Value()};
        return number_literal();
    }

    Literal text_literal() {
        const std::size_t start = at_++;
        Literal result{{}, true};
        for (;;) {
            const std::size_t apostrophe = sql_.find('\'', at_);
            if (apostrophe == std::string_view::npos) {
                at_ = start;
                fail("il testo che comincia qui non è chiuso da un apostrofo");
            }
            result.text.append(sql_, at_, apostrophe - at_);
            at_ = apostrophe + 1;
            if (at_ == sql_.size() || sql_[at_] != '\'') break;
            result.text += '\'';
            ++at_;
        }
        skip_blanks();
        return result;
    }

    /// [+-] digits [. digits] [E [+-] digits], with at least one digit before or after the point.
    Literal number_literal() {
        const std::size_t start = at_;
        if (at_ < sql_.size() && (sql_[at_] == '-' || sql_[at_] == '+')) ++at_;
        std::size_t digits = take_digits();
        if (at_ < sql_.size() && sql_[at_] == '.') {
            ++at_;
            digits += take_digits();
        }
        if (digits > 0 && at_ < sql_.size() && (sql_[at_] == 'e' || sql_[at_] == 'E')) {
            ++at_;
            if (at_ < sql_.size() && (sql_[at_] == '-' || sql_[at_] == '+')) ++at_;
            digits = take_digits();
        }
        const bool runs_on =
            at_ < sql_.size() && (is_name_character(sql_[at_]) || sql_[at_] == '\'' || sql_[at_] == '.');
        if (digits == 0 || runs_on) {
            at_ = start;
            fail("manca un valore: un numero o un testo fra apostrofi");
        }
        Literal result{std::string(sql_.substr(start, at_ - start)), false};
        skip_blanks();
        return result;
    }

    std::int64_t count() {
        const std::size_t start = at_;
        std::int64_t number = 0;
        const auto [end, error] = std::from_chars(sql_.data() + at_, sql_.data() + sql_.size(), number);
        at_ = static_cast<std::size_t>(end - sql_.data());
        if (error != std::errc{} || number < 1 || (at_ < sql_.size() && is_name_character(sql_[at_]))) {
            at_ = start;
            fail("dopo TOP manca il numero di righe");
        }
        skip_blanks();
        return number;
    }

    std::string name(std::string_view what) {
        const std::string_view word = peek_word();
        if (!is_plain_name(word)) fail("manca " + std::string(what));
        take(word);
        return std::string(word);
    }

    std::string_view peek_word() const {
        std::size_t end = at_;
        while (end < sql_.size() && is_name_character(sql_[end])) ++end;
        return sql_.substr(at_, end - at_);
    }

    bool take_word(std::string_view upper) {
        const std::string_view word = peek_word();
        if (!same_word(word, upper)) return false;
        take(word);
        return true;
    }

    void need_word(std::string_view upper) {
        if (!take_word(upper)) fail("manca " + std::string(upper));
    }

    bool take_mark(char mark) {
        if (at_ == sql_.size() || sql_[at_] != mark) return false;
        ++at_;
        skip_blanks();
        return true;
    }

    void need_mark(char mark, const char* what_is_wrong) {
        if (!take_mark(mark)) fail(what_is_wrong);
    }

    void take(std::string_view word) {
        at_ += word.size();
        skip_blanks();
    }

    std::size_t take_digits() {
        const std::size_t start = at_;
        while (at_ < sql_.size() && ascii::is_digit(sql_[at_])) ++at_;
        return at_ - start;
    }

    void skip_blanks() {
        while (at_ < sql_.size() && is_blank(sql_[at_])) ++at_;
    }

    [[noreturn]] void fail(const std::string& what_is_wrong) const {
        throw Failure(failure_number::statement, source,
                      "Errore nell'istruzione SQL al carattere " +
                          std::to_string(utf8::length(sql_.substr(0, at_)) + 1) + ": " + what_is_wrong + "." +
                          what_to_change());
    }

    /// Statements are put together from what the user has typed: an apostrophe in it ends a text too early.
    std::string what_to_change() const {
        if (sql_.find('\'') == std::string_view::npos) return {};
        return "\n\nUn apostrofo (') in ciò che si è scritto qui non è ammesso: toglierlo, o scrivere ’ al "
               "suo "
               "posto.";
    }

    std::string_view sql_;
    std::size_t at_ = 0;
    Statement result_;
};

} // namespace

bool is_plain_name(std::string_view name) {
    return !name.empty() && !ascii::is_digit(name[0]) &&
           std::all_of(name.begin(), name.end(), is_name_character) &&
           std::none_of(reserved_words.begin(), reserved_words.end(),
                        [&](std::string_view reserved) { return same_word(name, reserved); });
}

Statement parse_statement(std::string_view sql) { return Parser(sql).statement(); }

void bind_parameters(Statement& statement, std::span<const Value> values) {
    std::size_t next = 0;
    const auto bind = [&](Literal& literal) {
        if (!literal.value || next++ >= values.size()) return;
        const Value& value = values[next - 1];
        if (const auto* text = std::get_if<std::string>(&value)) {
            literal = {*text, true};
        } else {
            literal.value = value;
        }
    };
    for (Assignment& assignment : statement.assignments) bind(assignment.literal);
    for (Condition& condition : statement.conditions) {
        bind(condition.literal);
        for (Literal& literal : condition.list) bind(literal);
        if (condition.comparison == Comparison::like && !condition.literal.quoted)
            throw Failure(failure_number::type_mismatch, source, "Il confronto LIKE vuole un testo.");
    }
    if (next == values.size()) return;
    throw Failure(failure_number::statement, source,
                  "L'istruzione SQL ha " + std::to_string(next) + " parametri e ne riceve " +
                      std::to_string(values.size()) + ".");
}

} // namespace tarvello::store
