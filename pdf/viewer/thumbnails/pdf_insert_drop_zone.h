// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QPushButton>
#include <QStringList>

/// A large button that takes PDF files dropped onto it.
///
/// The dynamic property "dragActive" is true while files that may be dropped hover over it.
class PdfInsertDropZone final : public QPushButton
{
    Q_OBJECT

public:
    explicit PdfInsertDropZone(QWidget *parent = nullptr);
    ~PdfInsertDropZone() override;

signals:
    /// PDF files were dropped; their local paths in the order of the drag.
    void filesDropped(const QStringList &files);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setDragActive(bool active);
};
