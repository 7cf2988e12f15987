// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QListWidget>
#include <QStringList>

/// Shows the files that an operation will write, or a hint while there are none.
///
/// The text of an item is the name of its file, a line feed and what goes into it. What does not
/// fit is elided, with the whole text in a tool tip.
class OutputPreviewList final : public QListWidget
{
    Q_OBJECT

public:
    explicit OutputPreviewList(QWidget *parent = nullptr);
    ~OutputPreviewList() override;

    /// Replaces the items; the list stays scrolled where it is as far as that exists.
    void showFiles(const QStringList &texts);
    /// Replaces the items by a single grey sentence.
    void showHint(const QString &text);

    [[nodiscard]] QSize minimumSizeHint() const override;

private:
    bool m_showsHint = false;
};
