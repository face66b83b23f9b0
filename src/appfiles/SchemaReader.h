#pragma once

#include <string>

#include "ini/IniScanner.h"
#include "model/Globals.h"

namespace kd {

/// Reads schema files one after the other; keeps its buffers from file to file.
class SchemaReader {
public:
    explicit SchemaReader(Globals& g) : m_g(g), m_scanner(g.platform.locale.CodePage()) {}

    /// Appends the variables of a file to gFields and gSavedFields, with twins that hold the same values, and
    /// stores the file's rule names in the view at position `fileId` of gFiles. A file that is missing or
    /// cannot be read has no variables.
    /// @throws cError(errOverflow) for a number that does not fit its property and for variable 32,768. The
    /// variables made so far stay in both lists, and the view gets no rule names.
    void Read(std::string_view path, std::int32_t fileId);
    /// The same of a file whose bytes are at hand; its path is for the errors alone.
    void Read(std::string_view path, std::string bytes, std::int32_t fileId);

private:
    class Records;

    void ReadText(std::string_view path, std::string_view text, std::int32_t fileId);
    std::string_view TextOf(std::string_view path);

    Globals& m_g;
    IniScanner m_scanner;
    std::string m_bytes;
    Text m_text;
};

namespace modKDLimitDesk {

/// Reads one schema file, see SchemaReader. For who has one to read, as tests do; a load keeps its reader.
void ReadSchema(Globals& g, std::string_view path, std::int32_t fileId);

}  // namespace modKDLimitDesk

}  // namespace kd
