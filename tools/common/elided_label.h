// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QString>

/// One line of plain text, which loses its middle where there is no room for all of it; the whole
/// is a tool tip then. text() is what is seen.
///
/// The middle, because names of files often differ at their ends. The line begins at the leading
/// side of the layout, whichever way the text itself runs.
class ElidedLabel final : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    /// The whole text.
    [[nodiscard]] QString fullText() const { return m_text; }
    void setFullText(const QString &text);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void elide();

    QString m_text;
};
