// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <QString>
#include <QTemporaryDir>

/// Settings and configuration folders of the test's own, so that nothing of the user is touched.
class AppTestFolders final
{
public:
    explicit AppTestFolders(const QString &testName)
    {
        QStandardPaths::setTestModeEnabled(true);
        QCoreApplication::setOrganizationName(QStringLiteral("QuilloraTest"));
        QCoreApplication::setApplicationName(testName);
        QSettings::setDefaultFormat(QSettings::IniFormat);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_folder.path());
        QSettings::setPath(QSettings::IniFormat, QSettings::SystemScope, m_folder.path());
        QDir(configFolder()).removeRecursively();
    }
    ~AppTestFolders() { QDir(configFolder()).removeRecursively(); }

    [[nodiscard]] static QString configFolder()
    {
        return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    }
    [[nodiscard]] QString filePath(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};
