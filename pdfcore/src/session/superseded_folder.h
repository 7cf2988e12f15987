// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QLockFile>
#include <QString>
#include <QStringList>

#include <memory>
#include <mutex>
#include <vector>

namespace pdfcore {

class SessionPool;

/// The private folders of this process for superseded content. Each is made when it is first needed
/// and removed with this object; what a process left that did not end in order is removed by a
/// later one. QTemporaryDir would leave such content behind for good, and cannot tell a folder in
/// use from one that is not. Any thread.
class SupersededFolder final
{
public:
    /// @param sessions  Closed before the folders are removed: what is open cannot be removed
    ///                  everywhere. Outlives this object.
    explicit SupersededFolder(SessionPool &sessions);
    ~SupersededFolder();
    SupersededFolder(const SupersededFolder &) = delete;
    SupersededFolder &operator=(const SupersededFolder &) = delete;

    /// Keeps the content of the file under a name of its own: as a second name of the same file
    /// where a file system allows, else as a copy. Empty with the reason on failure.
    QString keep(const QString &path, QString *reason);

    /// Removes the folders of processes that are gone.
    static void removeLeftOvers();

private:
    /// A folder in one of the places where there may be one.
    struct Place
    {
        QString path; ///< Empty until it is needed.
        std::unique_ptr<QLockFile> lock;
    };

    /// Names for a new file, one in each place that can be used.
    QStringList newNames();
    static bool prepare(Place &place, const QString &parent);

    SessionPool &m_sessions;
    std::mutex m_mutex; ///< Guards what follows.
    std::vector<Place> m_places;
    int m_files = 0;
};

} // namespace pdfcore
