# Finds MuPDF and what its static library needs; defines the target MuPDF::MuPDF.

include(FindPackageHandleStandardArgs)
find_package(PkgConfig QUIET)

find_path(MuPDF_INCLUDE_DIR mupdf/fitz.h)
find_library(MuPDF_LIBRARY NAMES mupdf)
find_library(MuPDF_THIRD_LIBRARY NAMES mupdf-third)

find_package_handle_standard_args(MuPDF REQUIRED_VARS MuPDF_LIBRARY MuPDF_INCLUDE_DIR)

if(MuPDF_FOUND AND NOT TARGET MuPDF::MuPDF)
    add_library(MuPDF::MuPDF UNKNOWN IMPORTED)
    set_target_properties(MuPDF::MuPDF PROPERTIES
        IMPORTED_LOCATION "${MuPDF_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${MuPDF_INCLUDE_DIR}")
    set(_mupdf_links)
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
    set_property(TARGET MuPDF::MuPDF PROPERTY INTERFACE_LINK_LIBRARIES "${_mupdf_links}")
endif()
mark_as_advanced(MuPDF_INCLUDE_DIR MuPDF_LIBRARY MuPDF_THIRD_LIBRARY MuPDF_GUMBO_LIBRARY)
