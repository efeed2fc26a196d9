// A store file in memory: an XML document with objects that refer to each other by id.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <pugixml.hpp>

namespace runtime {

class StoreFile {
  public:
    /// Reads the file at `path`. May be called once. Returns the reason of a failure, else empty text.
    std::string Load(const std::string& path);

    /// Returns the root element, which is null before a file has been loaded.
    [[nodiscard]] pugi::xml_node Root() const { return root_; }

    /// Returns `node` itself or the object of its `idref`; null when there is no such object, when it is not a `kind`,
    /// or when it is a reference itself.
    [[nodiscard]] pugi::xml_node Resolve(pugi::xml_node node, std::string_view kind) const;

  private:
    std::vector<char> content_; // the document refers to texts in it
    pugi::xml_document document_;
    pugi::xml_node root_;
    std::unordered_map<std::string_view, pugi::xml_node> objects_; // by id; the keys are views of content_
};

/// Returns the text of the child element `name` without comments; empty text when there is none.
std::string TextOf(pugi::xml_node object, const char* name);

// Conversions of texts with optional surrounding blanks. Return nothing for malformed text.
std::optional<std::int32_t> ToInteger(std::string_view text);
std::optional<double> ToReal(std::string_view text);
/// Converts 0, 1, false and true; empty text is false.
std::optional<bool> ToBoolean(std::string_view text);

} // namespace runtime
