// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

/// How alike pages of two files look at 150 dpi in grey: for each of the first `most` pages of
/// `before` the mean of the structural similarity of all squares of 7 by 7 pixels (Wang, Bovik,
/// Sheikh and Simoncelli 2004, with equal weights), 1 for pages that are the same. A page that
/// `after` does not show is 0; one that `before` does not show is left out.
QList<double> pageLikeness(const QString &before, const QString &after, int most);
