// Rows of named values, printed as a table or as JSON.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tarnexctl {

/// An empty cell is "-" in a table and null in JSON; a boolean is "on" or "off" in a table.
using Cell = std::variant<std::monostate, std::string, double, std::int64_t, bool>;

struct Column {
    std::string_view key;     ///< in JSON
    std::string_view heading; ///< in a table, with the unit
    int decimals = 0;         ///< of reals in a table; JSON has the shortest text that reads back as the same value
    std::size_t width = 0;    ///< minimum, in characters
};

class Report {
  public:
    explicit Report(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// Adds a row with one cell for each column.
    void Add(std::vector<Cell> row) { rows_.push_back(std::move(row)); }
    void Clear() { rows_.clear(); }
    [[nodiscard]] bool IsEmpty() const { return rows_.empty(); }
    /// Removes a column.
    void Hide(std::string_view key);
    /// Separates the columns of a table by one blank instead of two.
    void Narrow() { separator_ = " "; }
    /// Returns the number of characters of the longest line of the table.
    [[nodiscard]] std::size_t Width() const;

    /// Headings and a line for each row, in columns.
    [[nodiscard]] std::string Table() const { return Headings() + Rows(); }
    [[nodiscard]] std::string Headings() const;
    [[nodiscard]] std::string Rows() const;

    /// A line "heading:  value" for each cell of the only row.
    [[nodiscard]] std::string List() const;

    [[nodiscard]] std::string JsonArray() const;
    /// An object for each row, each on a line of its own.
    [[nodiscard]] std::string JsonLines() const;

  private:
    [[nodiscard]] std::string JsonObject(const std::vector<Cell>& row) const;
    [[nodiscard]] std::vector<std::size_t> Widths() const;
    [[nodiscard]] std::string Line(const std::vector<std::string>& texts, const std::vector<bool>& numeric) const;

    std::vector<Column> columns_;
    std::vector<std::vector<Cell>> rows_;
    std::string_view separator_ = "  ";
};

} // namespace tarnexctl
