// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

class QPrintDialog;

/// Leaves what is done to a print job in `dialog` to the cases where somebody does it, and gives
/// disabled controls a look of their own.
///
/// Pages go to the printer once and in their order. Copies, collating and the reverse order are
/// matters of the print server; a file has none. Dialogs of the system itself are left as they are.
void offerWhatIsPrinted(QPrintDialog &dialog);
