// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>

class QLabel;

/// What a tool page shows while no file is chosen: a zone that takes files, with a button for the
/// file dialog.
class FileDropZoneWidget final : public QWidget
{
    Q_OBJECT

public:
    explicit FileDropZoneWidget(QWidget *parent = nullptr);

    /// The name filter and the title of the file dialog.
    QString filter;
    QString caption;

    [[nodiscard]] QString text() const;
    /// What the zone says.
    void setText(const QString &text);

public slots:
    /// Lets the user choose files.
    void chooseFile();

signals:
    /// Files were chosen or dropped; never none. Dropped ones are not checked: there may be folders
    /// and files of any type among them, and empty texts for what is no file.
    void fileSelected(const QStringList &files);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setAimedAt(bool aimedAt);

    QLabel *m_text;
    bool m_aimedAt = false;
};
