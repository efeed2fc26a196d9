#include "tools/tarnexctl/report.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "tools/tarnexctl/number_text.h"
#include "tools/tarnexctl/safe_text.h"

namespace tarnexctl {

namespace {

std::string TableText(const Cell& cell, int decimals) {
    if (const auto* text = std::get_if<std::string>(&cell)) {
        return Printable(*text);
    }
    if (const auto* real = std::get_if<double>(&cell)) {
        return Fixed(*real, decimals);
    }
    if (const auto* integer = std::get_if<std::int64_t>(&cell)) {
        return std::to_string(*integer);
    }
    if (const auto* boolean = std::get_if<bool>(&cell)) {
        return *boolean ? "on" : "off";
    }
    return "-";
}

std::string JsonValue(const Cell& cell) {
    if (const auto* text = std::get_if<std::string>(&cell)) {
        return JsonText(*text);
    }
    if (const auto* real = std::get_if<double>(&cell)) {
        return std::isfinite(*real) ? Shortest(*real) : "null"; // JSON has no NaN and no infinities
    }
    if (const auto* integer = std::get_if<std::int64_t>(&cell)) {
        return std::to_string(*integer);
    }
    if (const auto* boolean = std::get_if<bool>(&cell)) {
        return *boolean ? "true" : "false";
    }
    return "null";
}

bool IsNumber(const Cell& cell) {
    return std::holds_alternative<double>(cell) || std::holds_alternative<std::int64_t>(cell);
}

} // namespace

void Report::Hide(std::string_view key) {
    const auto column =
        std::find_if(columns_.begin(), columns_.end(), [&](const Column& each) { return each.key == key; });
    const auto index = column - columns_.begin();
    columns_.erase(column);
    for (auto& row : rows_) {
        row.erase(row.begin() + index);
    }
}

std::size_t Report::Width() const {
    const auto widths = Widths();
    return std::accumulate(widths.begin(), widths.end(), separator_.size() * (widths.size() - 1));
}

std::vector<std::size_t> Report::Widths() const {
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        std::size_t width = std::max(columns_[i].width, columns_[i].heading.size());
        for (const auto& row : rows_) {
            width = std::max(width, TableText(row[i], columns_[i].decimals).size());
        }
        widths.push_back(width);
    }
    return widths;
}

std::string Report::Line(const std::vector<std::string>& texts, const std::vector<bool>& numeric) const {
    const auto widths = Widths();
    std::string line;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const std::string padding(widths[i] - texts[i].size(), ' ');
        line += (i == 0 ? "" : std::string(separator_)) + (numeric[i] ? padding + texts[i] : texts[i] + padding);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

std::string Report::Headings() const {
    std::vector<std::string> texts;
    std::vector<bool> numeric;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        texts.emplace_back(columns_[i].heading);
        numeric.push_back(!rows_.empty() && IsNumber(rows_.front()[i]));
    }
    return Line(texts, numeric);
}

std::string Report::Rows() const {
    std::string lines;
    for (const auto& row : rows_) {
        std::vector<std::string> texts;
        std::vector<bool> numeric;
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            texts.push_back(TableText(row[i], columns_[i].decimals));
            numeric.push_back(IsNumber(row[i]));
        }
        lines += Line(texts, numeric);
    }
    return lines;
}

std::string Report::List() const {
    std::size_t width = 0;
    for (const auto& column : columns_) {
        width = std::max(width, column.heading.size());
    }
    std::string lines;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const std::string heading = std::string(columns_[i].heading) + ':';
        lines += heading + std::string(width + 2 - heading.size(), ' ') +
                 TableText(rows_.front()[i], columns_[i].decimals) + '\n';
    }
    return lines;
}

std::string Report::JsonObject(const std::vector<Cell>& row) const {
    std::string object = "{";
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        object += (i == 0 ? "" : ", ") + JsonText(columns_[i].key) + ": " + JsonValue(row[i]);
    }
    return object + '}';
}

std::string Report::JsonArray() const {
    std::string array = "[";
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        array += (i == 0 ? "\n  " : ",\n  ") + JsonObject(rows_[i]);
    }
    return array + (rows_.empty() ? "]\n" : "\n]\n");
}

std::string Report::JsonLines() const {
    std::string lines;
    for (const auto& row : rows_) {
        lines += JsonObject(row) + '\n';
    }
    return lines;
}

} // namespace tarnexctl
