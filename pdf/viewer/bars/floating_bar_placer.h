// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

/// Keeps a bar that is in no layout in the middle above the lower edge of its parent widget, as
/// large as it wants to be and above the parent's other children.
///
/// The bar is placed as soon as the event loop runs, and again whenever its parent changes its
/// place or size. Belongs to the bar. Lives on the interface thread.
class FloatingBarPlacer final : public QObject
{
    Q_OBJECT

public:
    /// @param bar  Has a parent widget, and keeps it.
    explicit FloatingBarPlacer(QWidget *bar);
    ~FloatingBarPlacer() override;

    /// Whether the bar may be seen. One that may not is hidden at once, any other placed anew and
    /// shown.
    void setAllowed(bool allowed);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void placeSoon();
    void place();

    QWidget *m_bar;
    QWidget *m_area;
    bool m_allowed = false;
    bool m_placementPending = false;
};
