// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

/// The persistent list of the PDF files that the user has opened, most recent first.
///
/// The list is kept as "recent_files.json" in the application's configuration folder: an object
/// whose "recentFiles" array holds the paths exactly as they were added. It only grows, up to 200
/// entries, and never checks whether a file still exists. Trouble with the file is never reported:
/// what cannot be read gives an empty list, what cannot be written stays in memory.
///
/// Lives on the user-interface thread. The in-memory list is the truth once it is loaded; nothing
/// reloads the file.
class RecentFileManager final : public QObject
{
    Q_OBJECT

public:
    /// Returns the program's one store, which is created and loaded by the first call and lives
    /// until exit.
    ///
    /// The application's names (and the test mode of QStandardPaths, in tests) must be set before.
    [[nodiscard]] static RecentFileManager *instance();

    /// Creates a store over the JSON file at `filePath` and loads it.
    ///
    /// The program itself uses instance(); further stores over files of their own are for callers
    /// that must not touch the user's list, such as tests.
    explicit RecentFileManager(const QString &filePath, QObject *parent = nullptr);

    /// Tells whether exactly `path` is in the list; case matters, nothing is normalised.
    [[nodiscard]] bool contains(const QString &path) const;
    /// Returns a copy of the list, most recently added first.
    [[nodiscard]] QStringList files() const;

    /// Puts `path` at the front unless it is listed already, drops the oldest entries beyond 200
    /// and saves, also when nothing changed. A listed path keeps its place.
    void addFile(const QString &path);

private:
    void load();
    void save() const;

    QString m_filePath;
    QStringList m_files;
    int m_maxCount = 200;
};
