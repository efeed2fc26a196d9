// Another locale for the process while the object exists.
#pragma once

#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace tests {

/// Writes 1.5 as "1,5".
inline constexpr const char* kDecimalComma = "decimal_comma";

/// No other thread may use the locale while the object exists.
class ScopedLocale {
  public:
    explicit ScopedLocale(const char* name) : inForce_(Set(name)) {}
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;
    ~ScopedLocale() { std::setlocale(LC_ALL, "C"); }

    /// False where localedef could not make the locale.
    [[nodiscard]] bool InForce() const { return inForce_; }

    /// How the C library writes one and a half.
    static std::string OneAndAHalf() {
        std::array<char, 8> text{};
        std::snprintf(text.data(), text.size(), "%.1f", 1.5);
        return text.data();
    }

  private:
    static bool Set(const char* name) {
        setenv("LOCPATH", DECIMAL_COMMA_LOCALES, 1); // NOLINT(concurrency-mt-unsafe): see above
        return std::setlocale(LC_ALL, name) != nullptr;
    }

    bool inForce_;
};

} // namespace tests
