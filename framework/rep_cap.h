// A driver's repeated capability. `Capability` names it:
//
//     struct OutputChannel {
//         static constexpr std::string_view kName = "OutputChannel";
//         static constexpr std::string_view kPhysicalNames = "OutputChannel1,OutputChannel2"; // selector syntax
//     };
//
// The caller must hold the lock of the session that it passes.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/close_hooks.h"
#include "framework/driver_session.h"
#include "framework/no_destructor.h"
#include "framework/selector.h"
#include "framework/string_buffer.h"
#include "text/characters.h"
#include "text/numbers.h"

namespace nrt2 {

/// A physical identifier of the capability. The view is valid until the session is closed.
template <typename Capability>
struct PhysicalName {
    std::string_view identifier;
};

/// Returns the number that the digits at the end of `name` form; 0 without digits.
constexpr std::size_t NumberAtEnd(std::string_view name) {
    std::size_t number = 0;
    std::size_t unit = 1;
    for (; !name.empty() && text::IsDigit(name.back()); name.remove_suffix(1), unit *= 10) {
        number += static_cast<std::size_t>(name.back() - '0') * unit;
    }
    return number;
}

/// Returns whether a declaration is blank, or consists of names and ascending ranges ("CH1-CH4") separated by commas.
constexpr bool IsDeclarationOfNames(std::string_view declaration) {
    bool wellFormed = true;
    if (!text::IsBlank(declaration)) {
        text::ForEachElement(declaration, ',', [&](std::string_view item) {
            const auto hyphen = item.find('-');
            const bool isRange = hyphen != std::string_view::npos;
            const auto first = text::Trim(item.substr(0, hyphen));
            const auto last = isRange ? text::Trim(item.substr(hyphen + 1)) : first;
            for (const auto name : {first, last}) {
                wellFormed = wellFormed && !name.empty() && std::all_of(name.begin(), name.end(), text::IsWord) &&
                             (!isRange || text::IsDigit(name.back()));
            }
            wellFormed = wellFormed && (!isRange || NumberAtEnd(first) < NumberAtEnd(last));
        });
    }
    return wellFormed;
}

/// Returns the number of names in a declaration; 0 when it is blank.
constexpr std::size_t CountDeclaredNames(std::string_view declaration) {
    std::size_t count = 0;
    if (!text::IsBlank(declaration)) {
        text::ForEachElement(declaration, ',', [&](std::string_view item) {
            const auto hyphen = item.find('-');
            const auto first = text::Trim(item.substr(0, hyphen));
            const auto last = hyphen == std::string_view::npos ? first : text::Trim(item.substr(hyphen + 1));
            count += NumberAtEnd(last) - NumberAtEnd(first) + 1;
        });
    }
    return count;
}

template <typename Capability>
class RepCapBase {
  public:
    static_assert(IsDeclarationOfNames(Capability::kPhysicalNames), "names and ranges, separated by commas");

    static constexpr std::size_t kCount = CountDeclaredNames(Capability::kPhysicalNames);

    /// Distinct physical names in the order of a selector, stored in place.
    class NameList {
      public:
        [[nodiscard]] const PhysicalName<Capability>* begin() const { return names_.data(); }
        [[nodiscard]] const PhysicalName<Capability>* end() const { return names_.data() + size_; }
        [[nodiscard]] std::size_t size() const { return size_; }

      private:
        friend class RepCapBase;
        std::array<PhysicalName<Capability>, kCount> names_{};
        std::size_t size_ = 0;
    };

    /// Expands a selector; null counts as empty. On failure the error has been recorded on the session and `names` is
    /// undefined.
    static ViStatus Expand(DriverSession& session, ViConstString selector, NameList& names) {
        const auto& physicalNames = NamesOf(session);
        std::array<std::size_t, kCount> indexes{};
        const SelectorRules rules(session.Handle(), Capability::kName);
        const auto status =
            rules.Expand(text::ViewOf(selector), &session.Virtuals(), physicalNames, indexes, names.size_);
        if (status >= 0) {
            for (std::size_t i = 0; i < names.size_; ++i) {
                names.names_[i].identifier = physicalNames[indexes[i]];
            }
        }
        return status;
    }

    /// Expands a selector of exactly one name. More names are IVI_ERROR_BADLY_FORMED_SELECTOR.
    static ViStatus ExpandSingle(DriverSession& session, ViConstString selector, PhysicalName<Capability>& name) {
        NameList names;
        const auto status = Expand(session, selector, names);
        if (status < 0) {
            return status;
        }
        if (names.size() > 1) {
            return session.RecordElab(
                IVI_ERROR_BADLY_FORMED_SELECTOR,
                "Only a single repeated capability identifier can be specified for the current operation.");
        }
        name = *names.begin();
        return status;
    }

    /// Copies the physical name at `index`, counted from 0, by the rule of FillTextBuffer.
    static ViStatus GetName(DriverSession& session, ViInt32 index, ViInt32 bufferSize, ViChar buffer[]) {
        const auto& physicalNames = NamesOf(session);
        if (index < 0 || static_cast<std::size_t>(index) >= physicalNames.size()) {
            return session.Record(IVI_ERROR_INVALID_VALUE, text::IntegerText(index).View(),
                                  "Get" + std::string(Capability::kName) + "Name", "Index");
        }
        return FillTextBuffer(bufferSize, buffer, [&](ViInt32 size, ViChar text[]) {
            CopyTruncated(physicalNames[static_cast<std::size_t>(index)], size, text);
            return ViStatus{VI_SUCCESS};
        });
    }

    /// Returns the number that "\w*(\d+)" captures, or throws the exceptions of text::ToInt.
    /// Required: the greedy "\w*" leaves one digit for the number, so CH12 gives 2.
    static std::int32_t ChannelNumber(std::string_view physicalName) {
        const bool matches = !physicalName.empty() && text::IsDigit(physicalName.back()) &&
                             std::all_of(physicalName.begin(), physicalName.end(), text::IsWord);
        return text::ToInt(matches ? physicalName.substr(physicalName.size() - 1) : std::string_view{});
    }

    /// Returns the number of physical names that the driver declares.
    static constexpr ViInt32 Count() { return static_cast<ViInt32>(kCount); }

  private:
    /// The sessions that have used the capability. Closing a session removes it and its names.
    class ReadySessions {
      public:
        ReadySessions() {
            AddCloseHook([this](ViSession vi) { Remove(vi); });
        }

        void Add(DriverSession& session) {
            auto& names = session.RepCap();
            names.physicalNames = DeclaredNames();
            names.session = session.Handle();
            names.ready = true;
            const std::lock_guard lock(mutex_);
            names.next = std::exchange(first_, &names);
        }

        void Remove(ViSession vi) {
            const std::lock_guard lock(mutex_);
            for (auto** link = &first_; *link != nullptr; link = &(*link)->next) {
                if ((*link)->session == vi) {
                    auto& names = **link;
                    *link = names.next;
                    names = {};
                    return;
                }
            }
        }

      private:
        std::mutex mutex_;
        RepCapNames* first_ = nullptr;
    };

    static const std::vector<std::string>& NamesOf(DriverSession& session) {
        if (!session.RepCap().ready) {
            static NoDestructor<ReadySessions> readySessions; // the first call in the process registers the close hook
            readySessions->Add(session);
        }
        return session.RepCap().physicalNames;
    }

    static const std::vector<std::string>& DeclaredNames() {
        static NoDestructor<std::vector<std::string>> names(Declare());
        return *names;
    }

    /// Expands the declaration by the rules of selectors.
    static std::vector<std::string> Declare() {
        std::vector<std::string> declared;
        std::vector<SelectorItem> items;
        if (kCount == 0 ||
            SelectorRules(VI_NULL, Capability::kName).ParseItems(Capability::kPhysicalNames, items) < 0) {
            return declared;
        }
        for (const auto& item : items) {
            if (!item.isRange) {
                declared.emplace_back(item.text);
                continue;
            }
            for (std::int64_t number = item.first; number <= item.last; ++number) {
                declared.push_back(std::string(item.base).append(text::IntegerText(number).View()));
            }
        }
        return declared;
    }
};

} // namespace nrt2
