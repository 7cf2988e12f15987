// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QTabWidget>

class CustomTabBar;

/// The tabs of the workspace.
///
/// Closing a tab deletes its page later. A viewer with unsaved changes is brought to the front and
/// asked about them first, and may keep its tab; other pages close without a question. Closing a
/// tab in the background leaves the tab in front there.
class CustomTabWidget final : public QTabWidget
{
    Q_OBJECT

public:
    explicit CustomTabWidget(QWidget *parent = nullptr);

private:
    void closeTab(int index);

    CustomTabBar *m_tabBar;
};
