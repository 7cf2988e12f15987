#pragma once

/// Registers the translation catalogues under ":/res/translate/"; call it before loading one.
///
/// Further calls do nothing.
void initTranslations();
