// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

class QVBoxLayout;

/// What every page of a batch tool shows first: the tool's icon, its name and what it does.
class ToolPage : public QWidget
{
    Q_OBJECT

public:
    /// `iconPath` is the resource path of the tool's big icon; the texts are translated already.
    ToolPage(const QString &iconPath, const QString &title, const QString &description,
             QWidget *parent = nullptr);

protected:
    /// The centred column that holds the icon and the texts; derived pages add to its end.
    [[nodiscard]] QVBoxLayout *column() const { return m_column; }

private:
    QVBoxLayout *m_column;
};
