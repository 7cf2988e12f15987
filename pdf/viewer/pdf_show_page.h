// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

class PdfViewerWidget;

/// The page of a viewer tab: holds one viewer and hands on which batch tools it asks for.
class PdfShowPage final : public QWidget
{
    Q_OBJECT

public:
    explicit PdfShowPage(QWidget *parent = nullptr);
    ~PdfShowPage() override;

    /// Opens a file in the viewer; see PdfViewerWidget::openFile().
    bool openFile(const QString &path);

    [[nodiscard]] PdfViewerWidget *viewer() const { return m_viewer; }

signals:
    /// A batch tool is wanted for a file. `toolType` is a value of ToolType.
    void toolRequested(int toolType, const QString &filePath);

private:
    void requestTool(const QString &toolId, const QString &filePath);

    PdfViewerWidget *m_viewer;
};
