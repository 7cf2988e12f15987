// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <utility>

/// Why an operation on whole files failed. The values are stable; up to WriteFailed they are those
/// of PdfBackendError.
enum class PdfOperationError : qint32 {
    None = 0,             ///< No error.
    FileNotFound = 1,     ///< A source file does not exist or cannot be opened.
    PasswordRequired = 2, ///< A source file is encrypted, or a password to encrypt with is missing.
    InvalidPassword = 3,  ///< The password does not open the source file.
    InvalidDocument = 4,  ///< A source file is damaged or of a kind that is not supported.
    RenderFailed = 5,     ///< A page could not be rendered.
    WriteFailed = 6,      ///< The result could not be written.
    Cancelled = 7,        ///< The operation was cancelled.
    InvalidPicture = 8,   ///< A source file is no picture, or one of a kind that is not supported.
};

/// How an operation on whole files ended.
struct PdfOperationOutcome
{
    PdfOperationError error = PdfOperationError::None;
    QString message; ///< On failure a short sentence with the engine's reason, never a password.
    QString file;    ///< On failure the source file that is the reason; may be empty.
    QString result;  ///< On success the path of what was made.

    [[nodiscard]] bool isError() const { return error != PdfOperationError::None; }
};

/// Where a new file goes once it is complete and checked.
///
/// Its folder has to exist. The file comes into being there under a temporary name and gets its
/// place in one step.
class PdfPlacement final
{
public:
    /// In the place of the file at `path`, with its permissions, or there if there is none.
    static PdfPlacement replacing(const QString &path) { return PdfPlacement(path, {}); }

    /// At the first of the paths `nameAt(0)`, `nameAt(1)` and so on at which there is nothing at
    /// that moment, and which stays as it is. All are in one folder and differ from each other.
    static PdfPlacement firstFree(std::function<QString(int)> nameAt)
    {
        const QString path = nameAt(0);
        return PdfPlacement(path, std::move(nameAt));
    }

    /// What is tried first.
    [[nodiscard]] const QString &path() const { return m_path; }
    [[nodiscard]] bool isReplacing() const { return !m_nameAt; }
    /// The path to try after `attempt` others; only when nothing is replaced.
    [[nodiscard]] QString pathAt(int attempt) const { return m_nameAt(attempt); }

private:
    PdfPlacement(QString path, std::function<QString(int)> nameAt)
        : m_path(std::move(path))
        , m_nameAt(std::move(nameAt))
    {}

    QString m_path;
    std::function<QString(int)> m_nameAt;
};
