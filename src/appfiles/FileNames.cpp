#include "appfiles/FileNames.h"

#include "base/Numbers.h"
#include "model/modKDLimitDesk.h"

namespace kd::modKDLimitDesk {

namespace {

Text ChangeFilePath(Globals& g, std::string_view templatePath, Text extension) {
    if (IsGeneration6(templatePath)) {
        extension += '6';
    }
    return ChangeFileExtension(g, templatePath, extension);
}

}  // namespace

bool IsGeneration6(std::string_view templatePath) noexcept {
    return templatePath.ends_with('6');
}

Text SchemaPath(Globals& g, const cFile& file) {
    if (file.ViewNo() < 1) {
        return file.Filename();
    }
    Text extension = IsGeneration6(file.Filename()) ? ".KDV6" : "";
    extension += ".V";
    extension += Digits(file.ViewNo());
    return ChangeFileExtension(g, file.Filename(), extension);
}

Text TemporaryPath(Globals& g, std::string_view schemaPath) {
    return ChangeFileExtension(g, schemaPath, ".temp");
}

Text ChangeLogPath(Globals& g, std::string_view templatePath) {
    return ChangeFilePath(g, templatePath, ".KDL");
}

Text ChangeReportPath(Globals& g, std::string_view templatePath) {
    return ChangeFilePath(g, templatePath, ".KDM");
}

bool FileExists(Globals& g, std::string_view path) {
    return g.platform.files.Exists(path);
}

}  // namespace kd::modKDLimitDesk
