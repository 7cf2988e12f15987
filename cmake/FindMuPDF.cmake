# SPDX-License-Identifier: AGPL-3.0-or-later
# Finds MuPDF; defines the targets MuPDF::MuPDF, and MuPDF::Headers for what only includes it.
#
# MuPDF has no stable interface: what the engine uses changes from one release to the next. So only
# releases that it was tried with are accepted; see cmake/QuilloraReleases.cmake.

include(FindPackageHandleStandardArgs)
find_package(PkgConfig QUIET)

find_path(MuPDF_INCLUDE_DIR mupdf/fitz.h)
find_library(MuPDF_LIBRARY NAMES mupdf)
find_library(MuPDF_THIRD_LIBRARY NAMES mupdf-third)

set(MuPDF_VERSION)
if(MuPDF_INCLUDE_DIR)
    file(STRINGS "${MuPDF_INCLUDE_DIR}/mupdf/fitz/version.h" _mupdf_version
        REGEX "define FZ_VERSION \"")
    string(REGEX REPLACE ".*\"([0-9.]+).*" "\\1" MuPDF_VERSION "${_mupdf_version}")
endif()

find_package_handle_standard_args(MuPDF
    REQUIRED_VARS MuPDF_LIBRARY MuPDF_INCLUDE_DIR
    VERSION_VAR MuPDF_VERSION)

# A static library, which Debian 12 has, needs its own libraries named; a shared one knows them.
set(MuPDF_IS_STATIC FALSE)
if(MuPDF_LIBRARY MATCHES "\\.a$" AND NOT MuPDF_LIBRARY MATCHES "\\.dll\\.a$")
    set(MuPDF_IS_STATIC TRUE)
endif()

if(MuPDF_FOUND AND NOT TARGET MuPDF::MuPDF)
    add_library(MuPDF::Headers INTERFACE IMPORTED)
    set_target_properties(MuPDF::Headers PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES "${MuPDF_INCLUDE_DIR}")
    add_library(MuPDF::MuPDF UNKNOWN IMPORTED)
    set_target_properties(MuPDF::MuPDF PROPERTIES IMPORTED_LOCATION "${MuPDF_LIBRARY}")
    set(_mupdf_links MuPDF::Headers)
    if(MuPDF_IS_STATIC)
        if(MuPDF_THIRD_LIBRARY)
            list(APPEND _mupdf_links "${MuPDF_THIRD_LIBRARY}")
        endif()
        foreach(_module freetype2 harfbuzz libjpeg libopenjp2 zlib mujs jbig2dec libcrypto)
            pkg_check_modules(MuPDF_${_module} QUIET IMPORTED_TARGET ${_module})
            if(MuPDF_${_module}_FOUND)
                list(APPEND _mupdf_links PkgConfig::MuPDF_${_module})
            endif()
        endforeach()
        find_library(MuPDF_GUMBO_LIBRARY NAMES gumbo)
        if(MuPDF_GUMBO_LIBRARY)
            list(APPEND _mupdf_links "${MuPDF_GUMBO_LIBRARY}")
        endif()
        if(UNIX)
            list(APPEND _mupdf_links m)
        endif()
    endif()
    set_property(TARGET MuPDF::MuPDF PROPERTY INTERFACE_LINK_LIBRARIES "${_mupdf_links}")
endif()
mark_as_advanced(MuPDF_INCLUDE_DIR MuPDF_LIBRARY MuPDF_THIRD_LIBRARY MuPDF_GUMBO_LIBRARY)
