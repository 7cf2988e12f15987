#pragma once

#include <QLockFile>
#include <QString>

#include <memory>
#include <mutex>

namespace pdfcore {

/// The private folder of this process for content that was set aside. Made when it is first needed
/// and removed when the process ends; what a process left that did not end in order is removed by a
/// later one. Any thread.
class AsideFolder final
{
public:
    static AsideFolder &instance();

    /// Keeps the content of the file under a name of its own: as a second name of the same file
    /// where the file system allows, else as a copy. Empty with the reason on failure.
    QString keep(const QString &path, QString *reason);

    /// Removes the folders of processes that are gone.
    static void removeLeftOvers();

private:
    AsideFolder() = default;
    ~AsideFolder();

    bool prepare(QString *reason);

    std::mutex m_mutex;
    QString m_path; ///< Empty until it is needed.
    std::unique_ptr<QLockFile> m_lock;
    int m_files = 0;
};

} // namespace pdfcore
