#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "SourceFolder.h"
#include "qt/Application.h"
#include "qt/services/QtText.h"

namespace kd {

/// A fresh folder with three of the sample applications, the help, and the settings that list them.
class WalkFolder {
public:
    WalkFolder() {
        for (const char* const name : {"apps", "program/help", "config"}) {
            EXPECT_TRUE(QDir(m_folder.path()).mkpath(name));
        }
        const QDir samples(QStringLiteral(KD_SOURCE_DIR "/samples"));
        for (const QString& name : samples.entryList({"primer.*", "powerlv.*", "astmc150.*"}, QDir::Files)) {
            EXPECT_TRUE(QFile::copy(samples.filePath(name), m_folder.filePath("apps/" + name)));
        }
        EXPECT_TRUE(QFile::copy(QStringLiteral(KD_SOURCE_DIR "/help/KDLimitDeskHelp.xml"),
                                m_folder.filePath("program/help/KDLimitDeskHelp.xml")));
        PutSettings();
    }

    QString Path() const { return m_folder.path(); }

    void PutSettings() const {
        QFile list(m_folder.filePath("config/KDLimitDesk.IKD"));
        ASSERT_TRUE(list.open(QIODevice::WriteOnly));
        list.write("[FILES]\r\n");
        for (const char* name : {"primer.kdt6", "powerlv.kdt6", "astmc150.kdt"}) {
            list.write("File=" + (m_folder.path() + "/apps/" + name).toUtf8() + "\r\n");
        }
    }

    ApplicationFolders Folders() const {
        const Text root = FromQt(m_folder.path());
        return {root + "/program/KDLimitDesk",
                {root + "/config", root + "/apps", root + "/program/help", root + "/program"}};
    }

private:
    QTemporaryDir m_folder;
};

}  // namespace kd
