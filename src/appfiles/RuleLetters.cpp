#include "appfiles/RuleLetters.h"

#include <algorithm>

#include "appfiles/FileNumbers.h"

namespace kd::modKDLimitDesk {

namespace {

/// Nines with the point where the mask has it.
Text Nines(std::int32_t length, std::int32_t decimals) {
    if (length < 0 || (decimals > 0 && decimals >= length)) {
        throw cError(errInvalidArgument, "Variables.Nines");
    }
    Text text(static_cast<std::size_t>(length), '9');
    if (decimals > 0) {
        text[static_cast<std::size_t>(length - decimals - 1)] = '.';
    }
    return text;
}

std::vector<Text> UpperNames(std::string_view names, const CodePage& page) {
    std::vector<Text> upper;
    for (const std::string_view name : Split(names, ',')) {
        upper.push_back(page.Upper(name));
    }
    return upper;
}

}  // namespace

Text RuleLetter(std::size_t index, const CodePage& page) {
    const std::size_t code = std::size_t{'A'} + index;
    return code > 0xFFU ? Text() : page.Decode(std::string(1, static_cast<char>(code)));
}

double MaxForMask(std::int32_t length, std::int32_t decimals) {
    return FileNumber(Nines(length, decimals));
}

double MinForMask(std::int32_t length, std::int32_t decimals) {
    Text text = Nines(length, decimals);
    if (!text.starts_with('9')) {
        return 0;
    }
    text.front() = '-';
    return FileNumber(text);
}

RuleTranslator::RuleTranslator(std::string_view catalogueNames, std::string_view viewNames,
                               const CodePage& page)
    : m_page(page) {
    const auto catalogue = UpperNames(catalogueNames, page);
    const auto view = UpperNames(viewNames, page);
    for (std::size_t index = 0; index < catalogue.size(); ++index) {
        const auto match = std::find(view.begin(), view.end(), catalogue[index]);
        if (match != view.end()) {
            m_pairs.push_back(
                {RuleLetter(static_cast<std::size_t>(match - view.begin()), page), RuleLetter(index, page)});
        }
    }
}

Text RuleTranslator::Translate(std::string_view letters) const {
    const Text upper = m_page.Upper(letters);
    Text translated;
    for (const Pair& pair : m_pairs) {
        if (!pair.viewLetter.empty() && upper.find(pair.viewLetter) != Text::npos) {
            translated += pair.catalogueLetter;
        }
    }
    return translated;
}

const RuleTranslator& RuleTranslators::For(const Text& viewNames) {
    if (!m_last || m_viewNames != viewNames) {
        m_viewNames = viewNames;
        m_last.emplace(m_catalogueNames, m_viewNames, m_page);
    }
    return *m_last;
}

void TranslateLetters(const RuleTranslator& rules, const cField& saved, cField& field) {
    if (!saved.Rules().empty()) {
        field.SetRules(rules.Translate(saved.Rules()));
    }
}

void FinishVariable(const RuleTranslator& rules, cField& saved, cField& field) {
    if (IsNumericType(saved.FieldType()) && saved.Maximum() == 0 && saved.Minimum() == 0) {
        saved.SetMaximum(MaxForMask(saved.Length(), saved.Decimals()));
        saved.SetMinimum(MinForMask(saved.Length(), saved.Decimals()));
        field.CopyFrom(saved);  // the twins still hold the same values, and so go on sharing them
    }
    TranslateLetters(rules, saved, field);
}

void TranslateRules(Globals& g, std::int32_t fileIndex, std::int32_t fieldIndex) {
    const RuleTranslator rules(g.gRuleNames, g.gFiles->Ref(fileIndex).Rules(), g.platform.locale.CodePage());
    TranslateLetters(rules, g.gSavedFields->Ref(fieldIndex), g.gFields->Ref(fieldIndex));
}

}  // namespace kd::modKDLimitDesk
