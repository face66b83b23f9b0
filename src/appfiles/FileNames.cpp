#include "appfiles/FileNames.h"

#include "base/ApplicationNames.h"
#include "model/modKDLimitDesk.h"

namespace kd::modKDLimitDesk {

Text SchemaPath(Globals& g, const cFile& file) {
    if (file.ViewNo() < 1) {
        return file.Filename();
    }
    return ChangeFileExtension(g, file.Filename(), names::ViewExtension(file.Filename(), file.ViewNo()));
}

Text TemporaryPath(Globals& g, std::string_view schemaPath) {
    return ChangeFileExtension(g, schemaPath, names::TemporaryExtension);
}

Text ChangeLogPath(Globals& g, std::string_view templatePath) {
    return ChangeFileExtension(g, templatePath, names::ChangeLogExtension(templatePath));
}

Text ChangeReportPath(Globals& g, std::string_view templatePath) {
    return ChangeFileExtension(g, templatePath, names::ChangeReportExtension(templatePath));
}

bool FileExists(Globals& g, std::string_view path) {
    return g.platform.files.Exists(path);
}

}  // namespace kd::modKDLimitDesk
