#include "framework/error_info.h"

#include <algorithm>
#include <cstddef>

#include "status/status.h"
#include "text/characters.h"

namespace nrt2 {
namespace {

/// Zero-terminated text, truncated at the capacity of a description.
class Description {
  public:
    void Append(std::string_view piece) {
        const auto room = text_.size() - 1 - size_;
        const auto count = std::min(piece.size(), room);
        std::copy_n(piece.data(), count, text_.data() + size_);
        size_ += count;
    }

    /// Appends a format with its placeholders replaced by `arguments`. Removes the used ones from the front.
    void AppendFilled(std::string_view format, std::span<const std::string_view>& arguments) {
        while (!format.empty()) {
            const auto percent = format.find('%');
            Append(format.substr(0, percent));
            if (percent == std::string_view::npos) {
                return;
            }
            const auto placeholder = format.substr(percent, 2);
            if ((placeholder == "%s" || placeholder == "%d") && !arguments.empty()) {
                Append(arguments.front());
                arguments = arguments.subspan(1);
            } else {
                Append(placeholder);
            }
            format.remove_prefix(percent + placeholder.size());
        }
    }

    [[nodiscard]] const char* Text() const { return text_.data(); }

  private:
    std::array<char, 1024> text_{};
    std::size_t size_ = 0;
};

} // namespace

ViStatus RecordError(ViSession vi, ViStatus status, std::string_view elaboration,
                     std::span<const std::string_view> arguments) {
    Description description;
    description.AppendFilled(MessageOf(status), arguments);
    if (!elaboration.empty()) {
        description.Append("  ");
        description.AppendFilled(elaboration, arguments);
    }
    const auto recorded = IviSession_SetError(vi, status, description.Text());
    return recorded < 0 ? recorded : status;
}

ViStatus CheckParameters(ViSession vi, std::string_view function, std::string_view parameterNames,
                         std::initializer_list<const void*> pointers) {
    const auto* const null = std::find(pointers.begin(), pointers.end(), nullptr);
    if (null == pointers.end()) {
        return VI_SUCCESS;
    }
    std::string_view parameter = "<unknown parameter>";
    auto position = null - pointers.begin();
    if (!parameterNames.empty()) {
        text::ForEachElement(parameterNames, ',', [&](std::string_view name) {
            if (position-- == 0) {
                parameter = text::Trim(name);
            }
        });
    }
    return SetErrorInfo(vi, IVI_ERROR_NULL_POINTER, function, parameter);
}

} // namespace nrt2
