// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

/// Registers the translation catalogues under ":/res/translate/"; call it before loading one.
///
/// Further calls do nothing.
void initTranslations();
