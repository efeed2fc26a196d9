// A driver's repeated capability. `Capability` names it:
//
//     struct OutputChannel {
//         static constexpr std::string_view kName = "OutputChannel";
//         static constexpr std::string_view kPhysicalNames = "OutputChannel1,OutputChannel2"; // selector syntax
//         static constexpr std::size_t kMaxPhysicalNames = 2;
//     };
//
// All calls on one session are made under its lock.
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

/// A channel as the driver itself names it. Views a text that lives as long as the session's use of the capability.
template <typename Capability>
struct PhysicalName {
    std::string_view identifier;
};

template <typename Capability>
class RepCapBase {
  public:
    /// Distinct physical names in a selector's order, kept in place.
    class NameList {
      public:
        [[nodiscard]] const PhysicalName<Capability>* begin() const { return names_.data(); }
        [[nodiscard]] const PhysicalName<Capability>* end() const { return names_.data() + size_; }
        [[nodiscard]] std::size_t size() const { return size_; }

      private:
        friend class RepCapBase;
        std::array<PhysicalName<Capability>, Capability::kMaxPhysicalNames> names_{};
        std::size_t size_ = 0;
    };

    /// Expands a selector (null counts as empty). Failures have been recorded on the session; `names` is of no use
    /// then.
    static ViStatus Expand(DriverSession& session, ViConstString selector, NameList& names) {
        const auto& physicalNames = NamesOf(session);
        std::array<std::size_t, Capability::kMaxPhysicalNames> indexes{};
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

    /// As Expand, for operations that take exactly one name.
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

    /// The physical name at `index`, counted from 0, under the rule of FillTextBuffer.
    static ViStatus GetName(DriverSession& session, ViInt32 index, ViInt32 bufferSize, ViChar buffer[]) {
        const auto& physicalNames = NamesOf(session);
        if (index < 0 || static_cast<std::size_t>(index) >= physicalNames.size()) {
            return session.Record(IVI_ERROR_INVALID_VALUE, text::IntegerText(index).View(),
                                  "Get" + std::string(Capability::kName) + "Name", "Index");
        }
        return FillTextBuffer(bufferSize, buffer, [&](ViInt32 size, ViChar text[]) {
            CopyText(physicalNames[static_cast<std::size_t>(index)], size, text);
            return ViStatus{VI_SUCCESS};
        });
    }

    /// "\w*(\d+)": the greedy "\w*" leaves only a name's last digit for the number, so CH12 gives 2. Accepted as it is
    /// for a family with two channels.
    static std::int32_t ChannelNumber(std::string_view physicalName) {
        const bool matches = !physicalName.empty() && text::IsDigit(physicalName.back()) &&
                             std::all_of(physicalName.begin(), physicalName.end(), text::IsWord);
        return text::ToInt(matches ? physicalName.substr(physicalName.size() - 1) : std::string_view{});
    }

    /// How many physical names the driver declares.
    static ViInt32 Count() { return static_cast<ViInt32>(DeclaredNames().size()); }

  private:
    /// The sessions that have used the capability. Closing a session takes it out and its names away.
    class ReadySessions {
      public:
        ReadySessions() {
            AddCloseHook([this](ViSession vi) { Remove(vi); });
        }

        void Add(DriverSession& session) {
            auto& names = session.RepCap();
            const auto& declared = DeclaredNames();
            names.physicalNames.assign(declared.begin(), declared.end());
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
            static NoDestructor<ReadySessions> readySessions; // the first call in the process registers the hook
            readySessions->Add(session);
        }
        return session.RepCap().physicalNames;
    }

    /// The declared names; empty places at the end where the declaration has fewer.
    using Declared = std::array<std::string, Capability::kMaxPhysicalNames>;

    /// The declaration goes through the selector grammar itself.
    static std::span<const std::string> DeclaredNames() {
        static NoDestructor<Declared> names(Declare());
        const auto end = std::find(names->begin(), names->end(), std::string());
        return {names->begin(), end};
    }

    static Declared Declare() {
        Declared declared;
        auto place = declared.begin();
        std::vector<SelectorItem> items;
        if (text::IsBlank(Capability::kPhysicalNames) ||
            SelectorRules(VI_NULL, Capability::kName).ParseItems(Capability::kPhysicalNames, items) < 0) {
            return declared;
        }
        for (const auto& item : items) {
            if (!item.isRange) {
                *place++ = item.text;
                continue;
            }
            for (std::int64_t number = item.first; number <= item.last; ++number) {
                *place++ = std::string(item.base).append(text::IntegerText(number).View());
            }
        }
        return declared;
    }
};

} // namespace nrt2
