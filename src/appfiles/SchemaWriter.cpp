#include "appfiles/SchemaWriter.h"

#include <algorithm>
#include <initializer_list>
#include <memory>

#include "appfiles/FileNames.h"
#include "appfiles/SchemaHeader.h"
#include "appfiles/SchemaText.h"
#include "base/Numbers.h"

namespace kd::modKDLimitDesk {

namespace {

std::string SchemaBytes(Globals& g, const cFile& file, std::string_view target) {
    const Locale& locale = g.platform.locale;
    const CodePage& page = locale.CodePage();
    Text text = ReplaceRulesBlock(BumpHeaderVersion(ReadHeaderText(g, target), page), g.gRulesBlock);
    for (std::int32_t index = file.BegFieldPtr(); index <= file.EndFieldPtr(); ++index) {
        if (index != file.BegFieldPtr()) {
            text += CrLf;
        }
        AppendSchemaBlock(g.gFields->Ref(index), file.ViewNo() >= 1, locale, text);
    }
    return page.Encode(text);
}

/// A view whose temporary file would be the application's own file cannot be saved.
/// @throws cError(errFileAlreadyOpen)
void CheckTemporary(Globals& g, const Text& temporary, std::initializer_list<Text> own) {
    const CodePage& page = g.platform.locale.CodePage();
    for (const Text& path : own) {
        if (page.Upper(path) == page.Upper(temporary)) {
            throw cError(errFileAlreadyOpen, "SaveSchema", {}, temporary);
        }
    }
}

/// Writes the view's text to its temporary file. As long as the result lives, no other program takes that
/// file for a save of its own.
std::unique_ptr<OutputFile> WriteTemporary(Globals& g, const cFile& file, const Text& target,
                                           const Text& temporary) {
    if (std::find(g.openTemporaries.begin(), g.openTemporaries.end(), temporary) != g.openTemporaries.end()) {
        throw cError(errFileAlreadyOpen, "SaveSchema", {}, temporary);
    }
    auto output = g.platform.files.OpenForOutput(temporary);
    try {
        output->Write(SchemaBytes(g, file, target));
        output->Close();  // the copy over the target is what must reach the disk
        return output;
    } catch (...) {
        // It stays open until the program ends, so that no later save of this program takes what is left.
        output->LetOthersIn();
        g.openTemporaries.push_back(temporary);
        g.openTemporaryFiles.push_back(std::move(output));
        throw;
    }
}

Text NumberedText(const cError& error) {
    return "Error " + Digits(error.Number()) + ": " + error.Description();
}

void ShowSaveError(Globals& g, const cError& error) {
    g.platform.toolkit.Say(NumberedText(error) + " occurred in SaveSchema.", BoxIcon::Exclamation,
                           "KDLimitDesk");
}

}  // namespace

Text FormatSchemaLine(std::string_view key, std::string_view value) {
    Text line;
    AppendSchemaKey(key, line);
    line += value;
    return line;
}

bool SaveSchema(Globals& g, std::int32_t fileIndex) {
    Text target;
    Text temporary;
    std::unique_ptr<OutputFile> written;
    try {
        const auto file = g.gFiles->Item(fileIndex);
        target = SchemaPath(g, *file);
        temporary = TemporaryPath(g, target);
        CheckTemporary(g, temporary, {target, file->Filename()});
        written = WriteTemporary(g, *file, target, temporary);
    } catch (const std::exception& failure) {
        ShowSaveError(g, AsError(failure, "SaveSchema"));
        return false;
    }
    // Deliberate: a view whose file could not be overwritten counts as saved; its user has seen the box.
    // SaveSchemaTest.AFailedOverwriteStillCountsAsSaved
    (void)OverwriteFile(g, temporary, target, true);
    return true;
}

bool OverwriteFile(Globals& g, std::string_view source, std::string_view target, bool deleteSource) {
    try {
        if (deleteSource) {
            g.platform.files.MoveOver(source, target);
        } else {
            g.platform.files.CopyFile(source, target);
        }
        return true;
    } catch (const std::exception& failure) {
        g.platform.toolkit.Say(NumberedText(AsError(failure, "OverwriteFile")), BoxIcon::Exclamation,
                               "KDLimitDesk - OverwriteFile");
        return false;
    }
}

}  // namespace kd::modKDLimitDesk
