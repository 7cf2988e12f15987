// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QFile>
#include <QString>

namespace pdfcore {

/// A file that is written beside its target and takes the target's place in one step.
///
/// Until commit() succeeds the target is untouched; the temporary file is removed with the object.
/// A symbolic link as target stays a link: the file it leads to is replaced. An existing target
/// keeps its permissions and must be writable by them.
///
/// QSaveFile does not tell the name of its temporary file, which is read back here before it takes
/// the target's place, and makes that name from the target's, which can be too long already.
class AtomicFile final
{
public:
    /// When what was written is flushed to the disk.
    enum class Flush {
        First,  ///< Before it takes the target's place, and that place right after.
        Caller, ///< By the caller with syncFiles(), unless it replaces a file.
    };

    /// What becomes of a file that the target is already.
    enum class Existing {
        Replace,
        Keep, ///< It stays; another target has to be found. Links as targets are not followed.
    };

    explicit AtomicFile(const QString &target, Flush flush = Flush::First,
                        Existing existing = Existing::Replace);
    ~AtomicFile();
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    /// Creates the temporary file. False with the reason when the target cannot be written.
    bool open(QString *reason);
    /// What to write to.
    [[nodiscard]] QIODevice &device() { return m_file; }
    /// Closes the temporary file, flushed as asked for. False with the reason on failure.
    bool finishWriting(QString *reason);
    /// Path of the temporary file, for checking what was written.
    [[nodiscard]] QString temporaryPath() const { return m_file.fileName(); }
    /// Whether the caller has to flush the file to the disk; known once it is open.
    [[nodiscard]] bool isForCallerToFlush() const { return m_flush == Flush::Caller; }
    /// The file that is replaced, links resolved.
    [[nodiscard]] QString target() const { return m_target; }
    /// Puts the temporary file in the target's place. False with the reason on failure.
    bool commit(QString *reason);
    /// Whether commit() failed because there is something that stays.
    [[nodiscard]] bool isTargetTaken() const { return m_isTaken; }
    /// Takes another target in the same folder; with Existing::Keep.
    void setTarget(const QString &target) { m_target = target; }

private:
    bool createBeside(const QString &folder, QString *reason);

    QString m_target;
    Flush m_flush;
    Existing m_existing;
    QFile m_file;
    bool m_isTaken = false;
    bool m_pending = false; ///< The temporary file exists.
};

} // namespace pdfcore
