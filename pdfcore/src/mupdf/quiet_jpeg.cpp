// SPDX-License-Identifier: AGPL-3.0-or-later
#include <cstdio>

#include <jpeglib.h>

// MuPDF's JPEG filter takes libjpeg's error manager as it comes, which reports damaged pictures on
// standard error. The linker sends MuPDF's requests for an error manager here instead (see the
// link options of this library), and the manager that goes back says nothing.
#if defined(QUILLORA_WRAPS_JPEG_ERRORS)

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier): the names are those that the linker looks for.
struct jpeg_error_mgr *__real_jpeg_std_error(struct jpeg_error_mgr *manager);
struct jpeg_error_mgr *__wrap_jpeg_std_error(struct jpeg_error_mgr *manager);

static void discardMessage(j_common_ptr /*info*/) {}

struct jpeg_error_mgr *__wrap_jpeg_std_error(struct jpeg_error_mgr *manager)
{
    struct jpeg_error_mgr *created = __real_jpeg_std_error(manager);
    created->output_message = &discardMessage;
    return created;
}
// NOLINTEND(bugprone-reserved-identifier)

} // extern "C"

#endif
