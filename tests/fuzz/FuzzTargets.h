#pragma once

#include <array>
#include <stdexcept>
#include <string_view>

#include "base/Text.h"

/// What is tried with any bytes there are. Each target takes an input and raises Unkept where a promise is
/// not kept; whatever else goes wrong is for the sanitizers.
namespace kd::fuzz {

class Unkept : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

/// @throws Unkept with the promise when it does not hold.
inline void Promise(bool holds, const char* promise) {
    if (!holds) {
        throw Unkept(promise);
    }
}

void IniText(std::string_view input);
void SchemaLoad(std::string_view input);
void SaveAndReload(std::string_view input);
void Header(std::string_view input);
void Settings(std::string_view input);
void Numbers(std::string_view input);
void Cell(std::string_view input);
void Clipboard(std::string_view input);
void Application(std::string_view input);
#ifdef KD_FUZZ_WITH_QT
void HtmlTable(std::string_view input);
void HelpCatalogue(std::string_view input);
#endif

struct Target {
    std::string_view name;  // of its folder of inputs, too
    void (*run)(std::string_view input);
};

inline constexpr auto Targets = std::to_array<Target>({
    {"IniText", IniText},
    {"SchemaLoad", SchemaLoad},
    {"SaveAndReload", SaveAndReload},
    {"Header", Header},
    {"Settings", Settings},
    {"Numbers", Numbers},
    {"Cell", Cell},
    {"Clipboard", Clipboard},
    {"Application", Application},
#ifdef KD_FUZZ_WITH_QT
    {"HtmlTable", HtmlTable},
    {"HelpCatalogue", HelpCatalogue},
#endif
});

}  // namespace kd::fuzz
