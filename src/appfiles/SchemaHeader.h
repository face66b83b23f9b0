#pragma once

#include "base/CodePage.h"
#include "model/Globals.h"

/// The free text in front of a schema file's first variable. It is kept as it stands but for the revision and
/// the rule list. Only CR LF ends a line of it.
namespace kd::modKDLimitDesk {

/// Every line before the first one that is "[FIELD]" in any case, blanks counting; each ends in CR LF. Empty
/// for a file that does not exist; the whole text where no such line stands.
/// @throws cError for a file that exists and cannot be read.
Text ReadHeaderText(Globals& g, std::string_view path);

/// The revision: the number behind the first "=" that follows the letters "VERSION" (in any case, anywhere).
/// "6.000" without the letters.
/// @throws cError(errInvalidArgument) where no "=" or no line end follows the letters.
Text HeaderVersion(std::string_view header, const CodePage& page);

/// The header with its revision raised by 0.001; as it stands without the letters. Errors as HeaderVersion.
Text BumpHeaderVersion(std::string_view header, const CodePage& page);

/// The header with its "[RULES]" section, up to and including the first empty line behind it, replaced by
/// `rulesBlock`. As it stands where there is no such section, or no empty line before the next section.
Text ReplaceRulesBlock(std::string_view header, std::string_view rulesBlock);

}  // namespace kd::modKDLimitDesk
