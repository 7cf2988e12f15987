// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

/// Makes the files below ":/res/" available.
///
/// The library is static, so a program that only names a resource path would be linked without
/// the resources. Call once, after the application object exists and before the first resource is
/// used; further calls do nothing. User-interface thread.
void initResources();
