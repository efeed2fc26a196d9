#include "runtime/config_server/store_file.h"

#include <charconv>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <new>

#include "text/characters.h"

namespace runtime {

namespace {

constexpr std::uintmax_t kLargestFile = std::uintmax_t{256} << 20; // bytes; real stores have some hundred KiB

/// Reads a file into `content`. Returns the reason of a failure, else empty text. Opens regular files only: a pipe or a
/// device could block.
std::string ReadFile(const std::string& path, std::vector<char>& content) {
    std::error_code error;
    const auto type = std::filesystem::status(path, error).type();
    if (type == std::filesystem::file_type::not_found) {
        return "The file does not exist.";
    }
    if (error) {
        return "The file cannot be read: " + error.message() + ".";
    }
    if (type != std::filesystem::file_type::regular) {
        return "It is not a regular file.";
    }
    const auto size = std::filesystem::file_size(path, error);
    if (error || size > kLargestFile) {
        return error ? "The file cannot be read: " + error.message() + "." : "The file is too large.";
    }
    content.resize(static_cast<std::size_t>(size));
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open() || !file.read(content.data(), static_cast<std::streamsize>(size))) {
        return "The file cannot be read.";
    }
    return {};
}

/// Visits every element below `root` without recursion, at any depth of nesting.
template <typename Visit>
void ForEachElement(pugi::xml_node root, Visit visit) {
    auto node = root;
    while (node) {
        visit(node);
        if (const auto child = node.first_child()) {
            node = child;
            continue;
        }
        while (node && node != root && !node.next_sibling()) {
            node = node.parent();
        }
        node = node == root ? pugi::xml_node() : node.next_sibling();
    }
}

template <typename Number>
std::optional<Number> ToNumber(std::string_view text) {
    text = text::Trim(text);
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc{} && end == text.data() + text.size();
    return whole ? std::optional(number) : std::nullopt;
}

} // namespace

std::string StoreFile::Load(const std::string& path) {
    if (auto wrong = ReadFile(path, content_); !wrong.empty()) {
        return wrong;
    }
    // Keeps values that consist of blanks only.
    const auto result = document_.load_buffer_inplace(content_.data(), content_.size(),
                                                      pugi::parse_default | pugi::parse_ws_pcdata_single);
    if (result.status == pugi::status_out_of_memory) {
        throw std::bad_alloc();
    }
    if (!result) {
        return std::string("The file is not well-formed XML: ") + result.description() + " at byte " +
               std::to_string(result.offset) + ".";
    }
    const auto root = document_.document_element();
    if (std::string_view(root.name()) != "IviConfigStore") {
        return "The file is not a configuration store: its root element is not IviConfigStore.";
    }
    ForEachElement(root, [&](pugi::xml_node node) {
        if (const auto id = node.attribute("id")) {
            objects_.emplace(id.value(), node);
        }
    });
    root_ = root;
    return {};
}

pugi::xml_node StoreFile::Resolve(pugi::xml_node node, std::string_view kind) const {
    if (const auto reference = node.attribute("idref")) {
        const auto object = objects_.find(reference.value());
        if (object == objects_.end() || object->second.attribute("idref")) {
            return {};
        }
        node = object->second;
    }
    return node.name() == kind ? node : pugi::xml_node();
}

std::string TextOf(pugi::xml_node object, const char* name) {
    std::string text;
    for (const auto part : object.child(name)) {
        if (part.type() == pugi::node_pcdata || part.type() == pugi::node_cdata) {
            text += part.value();
        }
    }
    return text;
}

std::optional<std::int32_t> ToInteger(std::string_view text) { return ToNumber<std::int32_t>(text); }

std::optional<double> ToReal(std::string_view text) { return ToNumber<double>(text); }

std::optional<bool> ToBoolean(std::string_view text) {
    text = text::Trim(text);
    if (text == "1" || text == "true") {
        return true;
    }
    return text.empty() || text == "0" || text == "false" ? std::optional(false) : std::nullopt;
}

} // namespace runtime
