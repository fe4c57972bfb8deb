#pragma once

#include "store/access/bytes.h"
#include "store/access/table_definition.h"

#include <vector>

/// The text of a definition taken apart, and put together again after something was added.
namespace tarvello::store::access {

struct DefinitionParts {
    using Piece = std::vector<std::uint8_t>;
    struct Named {
        Piece piece;
        Piece name; ///< as it is stored
    };

    Piece head;
    std::vector<Piece> counts; ///< of the real indexes
    std::vector<Named> columns;
    std::vector<Piece> real_indexes;
    std::vector<Named> logical_indexes; ///< in the order of their names
    std::vector<Piece> long_maps;       ///< number of a column, and its two maps

    /// What a table has without its columns and indexes.
    explicit DefinitionParts(const TableDefinition& table);
    /// @throws Failure if the text ends too early
    explicit DefinitionParts(Bytes text);

    /// Adds a column behind the others, of a memo with its maps. What rows are made of is told by set_row().
    void add(const ColumnDefinition& column);
    void set_row(const TableDefinition& table);
    /// Adds an index behind the others. @param columns  that index.columns lead to
    void add(const IndexDefinition& index, const std::vector<ColumnDefinition>& columns);

    /// The text, with how many there are of each in its head.
    Piece joined() const;

private:
    void add_logical(const IndexDefinition& index);
};

} // namespace tarvello::store::access
