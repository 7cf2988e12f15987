// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <Qt>

class QLabel;
class QWidget;

/// A line of one pixel between parts of a tool page; `parent` owns it.
[[nodiscard]] QLabel *createSeparator(Qt::Orientation orientation, QWidget *parent);
