#include "appfiles/SchemaReader.h"

#include <memory>
#include <utility>

#include "appfiles/SchemaKeys.h"
#include "base/NumberTexts.h"

namespace kd {

/// What one file adds to the globals.
class SchemaReader::Records {
public:
    Records(Globals& g, std::int32_t fileId)
        : m_fields(*g.gFields), m_saved(*g.gSavedFields), m_fileId(fileId) {}

    void Take(std::string_view group, std::string_view section, std::string_view value) {
        if (section.front() == '[') {
            m_block = group == "[FIELD]" ? Block::Field : group == "[RULES]" ? Block::Rules : Block::Other;
            if (m_block == Block::Field) {
                BeginVariable();
            }
        } else if (m_block == Block::Field) {
            if (const Property* property = FindSchemaKey(section)) {
                StoreFileText(*m_current, *property, value);
            }
        } else if (m_block == Block::Rules && section == "RULE") {
            if (!m_rules.empty()) {
                m_rules += ',';
            }
            m_rules += value;
        }
    }

    /// Gives the variable in hand its twin; also when the file fails in the middle of it.
    void EndVariable() {
        if (m_current) {
            m_saved.AddCopy(*m_current);
            m_current = nullptr;
        }
    }

    Text Rules() && { return std::move(m_rules); }

private:
    enum class Block { Other, Field, Rules };

    void BeginVariable() {
        EndVariable();
        if (m_fields.Count() >= MostRecords) {
            throw cError(errOverflow, "SchemaReader.BeginVariable");
        }
        ++m_counter;
        m_current = m_fields.Add(m_fileId, "V" + Digits(m_counter), "T", 1, 0);
        m_current->SetVariableNo(static_cast<std::int16_t>(m_counter));  // at most MostRecords, see above
    }

    cFields& m_fields;
    cFields& m_saved;
    std::int32_t m_fileId;
    std::int32_t m_counter = 0;
    Block m_block = Block::Other;
    std::shared_ptr<cField> m_current;
    Text m_rules;
};

std::string_view SchemaReader::TextOf(std::string_view path) {
    try {
        m_g.platform.files.Read(path, m_bytes);
    } catch (const cError&) {
        return {};  // by contract a file that cannot be read has no lines
    }
    return m_g.platform.locale.CodePage().DecodeInto(m_bytes, m_text);
}

void SchemaReader::Read(std::string_view path, std::int32_t fileId) {
    ReadText(path, TextOf(path), fileId);
}

void SchemaReader::Read(std::string_view path, std::string bytes, std::int32_t fileId) {
    m_bytes = std::move(bytes);
    ReadText(path, m_g.platform.locale.CodePage().DecodeInto(m_bytes, m_text), fileId);
}

void SchemaReader::ReadText(std::string_view path, std::string_view text, std::int32_t fileId) {
    const auto file = m_g.gFiles->Item(fileId);
    Records records(m_g, fileId);
    try {
        m_scanner.Scan(text, [&](std::string_view group, std::string_view section, std::string_view value) {
            records.Take(group, section, value);
        });
    } catch (const cError& error) {
        records.EndVariable();
        throw error.WithPath(path);
    }
    records.EndVariable();
    file->SetRules(std::move(records).Rules());
}

void modKDLimitDesk::ReadSchema(Globals& g, std::string_view path, std::int32_t fileId) {
    SchemaReader(g).Read(path, fileId);
}

}  // namespace kd
