#include "appfiles/SchemaWriter.h"

#include <algorithm>
#include <initializer_list>
#include <memory>

#include "appfiles/FileNames.h"
#include "appfiles/SchemaHeader.h"
#include "appfiles/SchemaText.h"
#include "base/NumberTexts.h"

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

/// Whether the text goes to the disk by itself, or is left to Files::Settle.
enum class Flushing : bool { BySettling, ByMoving };

/// Writes the view's text to its temporary file, which is open.
void WriteText(Globals& g, const cFile& file, WrittenSchema& written, Flushing flushing) {
    OutputFile& output = *written.file;
    // Before its header is read: what another program saves from here on is seen.
    written.seen = output.TakeRightsOf(written.target);
    output.Write(SchemaBytes(g, file, written.target));
    if (flushing == Flushing::BySettling) {
        output.CloseForSettling();
    } else {
        output.Close();  // the copy over the target is what must reach the disk
    }
}

WrittenSchema Written(Globals& g, std::int32_t fileIndex, Flushing flushing, AfterFailure afterFailure) {
    const auto file = g.gFiles->Item(fileIndex);
    WrittenSchema written;
    written.target = SchemaPath(g, *file);
    written.temporary = TemporaryPath(g, written.target);
    const Text& temporary = written.temporary;
    CheckTemporary(g, temporary, {written.target, file->Filename()});
    if (std::find(g.openTemporaries.begin(), g.openTemporaries.end(), temporary) != g.openTemporaries.end()) {
        throw cError(errFileAlreadyOpen, "SaveSchema", {}, temporary);
    }
    written.file = g.platform.files.OpenForOutput(
        temporary, afterFailure == AfterFailure::Blocked ? Patience::ForASave : Patience::None);
    try {
        WriteText(g, *file, written, flushing);
        return written;
    } catch (...) {
        written.file->Unlock();
        if (afterFailure == AfterFailure::Blocked) {
            // It stays open until the program ends, so that no later save of this program takes what is left.
            g.openTemporaries.push_back(temporary);
            g.openTemporaryFiles.push_back(std::move(written.file));
        } else {
            written.file.reset();
            g.platform.files.DeleteAbandoned(temporary);
        }
        throw;
    }
}

Text NumberedText(const cError& error) {
    return "Error " + Digits(error.Number()) + ": " + error.Description();
}

}  // namespace

Text FormatSchemaLine(std::string_view key, std::string_view value) {
    Text line;
    AppendSchemaKey(key, line);
    line += value;
    return line;
}

WrittenSchema WriteSchema(Globals& g, std::int32_t fileIndex, AfterFailure afterFailure) {
    try {
        return Written(g, fileIndex, Flushing::BySettling, afterFailure);
    } catch (const std::exception& failure) {
        throw AsError(failure, "SaveSchema");
    }
}

void TellSaveFailure(Globals& g, const cError& error) {
    g.platform.toolkit.Say(NumberedText(error) + " occurred in SaveSchema.", BoxIcon::Exclamation);
}

void TellOverwriteFailure(Globals& g, const cError& error) {
    g.platform.toolkit.Say(NumberedText(error), BoxIcon::Exclamation,
                           Text(DefaultTitle) + " - OverwriteFile");
}

Saving TrySaveSchema(Globals& g, std::int32_t fileIndex) {
    WrittenSchema written;
    try {
        written = Written(g, fileIndex, Flushing::ByMoving, AfterFailure::Blocked);
    } catch (const std::exception& failure) {
        TellSaveFailure(g, AsError(failure, "SaveSchema"));
        return Saving::Failed;
    }
    return OverwriteFile(g, written.temporary, written.target, true) ? Saving::Done : Saving::NotOverwritten;
}

bool SaveSchema(Globals& g, std::int32_t fileIndex) {
    // Deliberate: a view whose file could not be overwritten counts as saved; its user has seen the box.
    // SchemaWriterTest.AFailedOverwriteStillCountsAsSaved
    return TrySaveSchema(g, fileIndex) != Saving::Failed;
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
        TellOverwriteFailure(g, AsError(failure, "OverwriteFile"));
        return false;
    }
}

}  // namespace kd::modKDLimitDesk
