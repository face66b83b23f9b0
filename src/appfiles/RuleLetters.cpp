#include "appfiles/RuleLetters.h"

#include <algorithm>

namespace kd::modKDLimitDesk {

namespace {

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

void TranslateRules(Globals& g, std::int32_t fileIndex, std::int32_t fieldIndex) {
    const RuleTranslator rules(g.gRuleNames, g.gFiles->Ref(fileIndex).Rules(), g.platform.locale.CodePage());
    TranslateLetters(rules, g.gSavedFields->Ref(fieldIndex), g.gFields->Ref(fieldIndex));
}

}  // namespace kd::modKDLimitDesk
