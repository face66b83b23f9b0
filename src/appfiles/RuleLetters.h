#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "model/Globals.h"

/// What a freshly read variable still needs: bounds, and rule letters of the catalogue.
namespace kd::modKDLimitDesk {

/// The letter of a rule, counted from 0: from "A" on, and past "Z" on through the code page. Empty where the
/// page ends.
Text RuleLetter(std::size_t index, const CodePage& page);

/// The largest number of a mask: 999.99 for a length of 6 with 2 decimals.
/// @throws cError(errInvalidArgument) where the mask has no place for the point, cError(errOverflow) for a
/// number beyond a double.
double MaxForMask(std::int32_t length, std::int32_t decimals);
/// The smallest number of a mask, the sign taking one place: -99.99 for a length of 6 with 2 decimals. 0
/// where there is no room for a sign. Errors as MaxForMask.
double MinForMask(std::int32_t length, std::int32_t decimals);

/// Turns the rule letters of one file into those of the catalogue.
class RuleTranslator {
public:
    /// Both as names joined with ",". `page` must outlive the translator.
    RuleTranslator(std::string_view catalogueNames, std::string_view viewNames, const CodePage& page);

    /// The catalogue's letters of a text with the file's letters, in the catalogue's order. Rules outside the
    /// catalogue are dropped.
    Text Translate(std::string_view letters) const;

private:
    struct Pair {
        Text viewLetter;
        Text catalogueLetter;
    };
    const CodePage& m_page;
    std::vector<Pair> m_pairs;  // in the catalogue's order
};

/// The translators of a load. Views that stand one behind the other mostly have the same rules.
class RuleTranslators {
public:
    /// `page` must outlive the translators.
    RuleTranslators(Text catalogueNames, const CodePage& page)
        : m_catalogueNames(std::move(catalogueNames)), m_page(page) {}
    /// Good until the next call.
    const RuleTranslator& For(const Text& viewNames);

private:
    Text m_catalogueNames;
    const CodePage& m_page;
    Text m_viewNames;
    std::optional<RuleTranslator> m_last;
};

/// Gives a freshly read variable its bounds, where it is numeric and its file gives none (they count as
/// loaded), and its rule letters of the catalogue. Errors as MaxForMask.
void FinishVariable(const RuleTranslator& rules, cField& saved, cField& field);
/// The second half of it alone.
void TranslateLetters(const RuleTranslator& rules, const cField& saved, cField& field);

/// Stores the translated rule letters of a variable in gFields; those in gSavedFields stay the file's.
void TranslateRules(Globals& g, std::int32_t fileIndex, std::int32_t fieldIndex);

}  // namespace kd::modKDLimitDesk
