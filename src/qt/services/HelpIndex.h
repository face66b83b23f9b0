#pragma once

#include <map>

#include "platform/Files.h"
#include "platform/Suite.h"

namespace kd {

/// The help catalogue: an XML file with `topic` elements, each with the attributes `name` and `page`; pages
/// lie beside the catalogue and are opened by the desktop.
class HelpIndex : public KDHelpIndex {
public:
    HelpIndex(Files& files, Shell& shell) : m_files(files), m_shell(shell) {}

    void SetFileName(std::string_view path) override { m_path = Text(path); }
    std::unique_ptr<KDHelpTopic> FindTopic(std::string_view name) override;
    /// @throws cError(errFileNotFound) for a missing catalogue, errDevice for one that is no XML.
    void LoadIndex() override;

private:
    Files& m_files;
    Shell& m_shell;
    Text m_path;
    std::map<Text, Text> m_pages;  // by topic name
};

}  // namespace kd
