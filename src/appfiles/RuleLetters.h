#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "model/Globals.h"

/// The letters that stand for rules: each file numbers its own, the catalogue all.
namespace kd::modKDLimitDesk {

/// The letter of a rule, counted from 0: from "A" on, and past "Z" on through the code page. Empty where the
/// page ends.
Text RuleLetter(std::size_t index, const CodePage& page);

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

/// Gives a freshly read variable the catalogue's letters of its rules; `saved` keeps the file's.
void TranslateLetters(const RuleTranslator& rules, const cField& saved, cField& field);

/// Stores the translated rule letters of a variable in gFields; those in gSavedFields stay the file's. For
/// one variable, as tests ask; a load keeps a translator for each view.
void TranslateRules(Globals& g, std::int32_t fileIndex, std::int32_t fieldIndex);

}  // namespace kd::modKDLimitDesk
