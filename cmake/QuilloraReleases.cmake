# SPDX-License-Identifier: AGPL-3.0-or-later
# Refuses releases of the libraries that Quillora was not tried with; docs/DEPENDENCIES.md says which
# were.

include_guard(GLOBAL)

option(QUILLORA_ANY_RELEASE "Build with releases of libraries that were not tried" OFF)

# quillora_refuse(<library> <version> <tried>)
function(quillora_refuse library version tried)
    set(message "Quillora was tried with ${library} ${tried}, but ${version} is what is installed: \
install one of those, or configure with -DQUILLORA_ANY_RELEASE=ON to try this one.")
    if(QUILLORA_ANY_RELEASE)
        message(WARNING "${message}")
    else()
        message(FATAL_ERROR "${message}")
    endif()
endfunction()

# MuPDF has no stable interface: each of its releases has to be tried for itself.
# See pdfcore/src/mupdf/mupdf_internals.h.
if(NOT MuPDF_VERSION MATCHES "^1\\.(21|25|28)(\\.|$)")
    quillora_refuse(MuPDF "${MuPDF_VERSION}" "1.21, 1.25 and 1.28")
endif()
# QPDF and Qt keep their interfaces within a major release, so these may be newer than what was tried.
if(qpdf_VERSION VERSION_LESS 11.3 OR qpdf_VERSION VERSION_GREATER_EQUAL 13)
    quillora_refuse(QPDF "${qpdf_VERSION}" "11.3, 12.2 and 12.4")
endif()
if(Qt6_VERSION VERSION_LESS 6.4)
    quillora_refuse(Qt "${Qt6_VERSION}" "6.4, 6.8 and 6.11")
endif()
