// A store file in memory: an XML document whose objects refer to one another by id.
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
    /// Reads the file at `path`; once per object. Returns what is wrong with it, empty when nothing is.
    std::string Load(const std::string& path);

    /// The root element; none before a file was loaded.
    [[nodiscard]] pugi::xml_node Root() const { return root_; }

    /// The object that `node` stands for: itself, or the one its `idref` names. None when no such object exists or
    /// when it is no `kind`. A reference leads to an object, never to another reference.
    [[nodiscard]] pugi::xml_node Resolve(pugi::xml_node node, std::string_view kind) const;

  private:
    std::vector<char> content_; // the document's texts lie in it
    pugi::xml_document document_;
    pugi::xml_node root_;
    std::unordered_map<std::string_view, pugi::xml_node> objects_; // by id; the keys are the document's own texts
};

/// The text inside the child element `name`, comments left out; empty when there is none.
std::string TextOf(pugi::xml_node object, const char* name);

// The values that texts stand for, blanks around them allowed; none when the text is no such value.
std::optional<std::int32_t> ToInteger(std::string_view text);
std::optional<double> ToReal(std::string_view text);
/// 0, 1, false or true; an empty text is false.
std::optional<bool> ToBoolean(std::string_view text);

} // namespace runtime
