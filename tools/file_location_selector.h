// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QString>

/// A button that shows where results will be saved and lets the user choose another folder.
///
/// A click opens a menu with the folder of the source file, the desktop, the documents folder and
/// any other folder. Folders are kept with forward slashes and without needless parts; a blank text
/// is an empty one. Nothing is stored: every new selector starts with the folder of the source
/// file.
class FileLocationSelector final : public QAbstractButton
{
    Q_OBJECT

public:
    /// Which folder is meant. The values are stable.
    enum class LocationMode : int {
        SourceFolder = 0, ///< The folder of the source file.
        Desktop = 1,
        Documents = 2,
        Custom = 3, ///< A folder chosen by the user.
    };
    Q_ENUM(LocationMode)

    explicit FileLocationSelector(QWidget *parent = nullptr);
    ~FileLocationSelector() override;

    [[nodiscard]] LocationMode mode() const { return m_mode; }
    /// The folder of the source file; empty while there is none.
    [[nodiscard]] QString sourceFolder() const { return m_sourceFolder; }
    /// The folder that the mode stands for at present; may be empty.
    [[nodiscard]] QString directory() const;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    /// Sets the folder of the source file, in silence.
    void setSourceFolder(const QString &folder);
    /// Goes to the mode that the folder names, in silence. An empty folder is the source folder.
    void setDirectory(const QString &folder);
    /// Goes to a mode as if it had been chosen in the menu. `customFolder` counts only for
    /// LocationMode::Custom, which needs one: without it the mode stays.
    void setMode(LocationMode mode, const QString &customFolder = {});

signals:
    /// The user chose another place. Comes too when that is the same folder under another name.
    void directoryChanged(const QString &directory);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void openMenu();
    void chooseCustomFolder();
    [[nodiscard]] QString label() const;
    void refreshTexts();

    LocationMode m_mode = LocationMode::SourceFolder;
    QString m_sourceFolder;
    QString m_customFolder;
};
