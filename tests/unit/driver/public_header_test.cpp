// The public header's identifiers, types and access are those of the attribute table, and its status codes and messages
// those of the status table: a reader of the header is told the truth.
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <regex>
#include <string>

#include "driver/attribute_table.h"
#include "status/status.h"

namespace {

struct Definition {
    std::string value;
    std::string comment;
};

/// Every "#define NAME VALUE /* COMMENT */" whose name begins with `prefix`.
std::map<std::string, Definition> Definitions(const std::string& prefix) {
    const std::regex pattern("#define (" + prefix + R"(\w+)\s+(.+?)\s*/\*\s*(.*?)\s*\*/)");
    std::map<std::string, Definition> definitions;
    std::ifstream header(PUBLIC_HEADER);
    for (std::string line; std::getline(header, line);) {
        if (std::smatch match; std::regex_search(line, match, pattern)) {
            definitions[match[1]] = {match[2], match[3]};
        }
    }
    return definitions;
}

TEST(PublicHeader, ListsTheAttributesOfTheTableWithTheirTypesAndAccess) {
    auto listed = Definitions("TARNEX_ATTR_");
    EXPECT_EQ(listed.size(), 27U);
    for (const auto& row : tarnex::Attributes().Rows()) {
        const auto definition = listed.find(std::string(row.Name()));
        ASSERT_NE(definition, listed.end()) << row.Name();
        EXPECT_EQ(definition->second.value, std::to_string(row.Id())) << row.Name();
        const std::string typeAndAccess =
            std::string(row.TypeName()) + (row.IsWritable() ? ", read/write: " : ", read-only: ");
        EXPECT_EQ(definition->second.comment.substr(0, typeAndAccess.size()), typeAndAccess) << row.Name();
        listed.erase(definition);
    }
    EXPECT_TRUE(listed.empty()) << listed.begin()->first;
}

TEST(PublicHeader, ListsTheStatusesOfTheTableWithTheirMessages) {
    auto listed = Definitions("TARNEX_ERROR_");
    listed.merge(Definitions("TARNEX_WARN_"));
    EXPECT_EQ(listed.size(), 50U); // all but success
    for (const auto& [name, definition] : listed) {
        const auto hexadecimal = definition.value.find("0x");
        ASSERT_NE(hexadecimal, std::string::npos) << name;
        const auto code = static_cast<std::uint32_t>(std::stoul(definition.value.substr(hexadecimal), nullptr, 16));
        EXPECT_EQ(nrt2::MessageOf(static_cast<ViStatus>(code)), definition.comment) << name;
    }
}

TEST(AttributeTable, IsInAscendingOrderAsItsLookUpNeedsIt) {
    const auto rows = tarnex::Attributes().Rows();
    for (std::size_t i = 1; i < rows.size(); ++i) {
        EXPECT_LT(rows[i - 1].Id(), rows[i].Id());
    }
}

} // namespace
