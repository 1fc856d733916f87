# A German and a Turkish locale for the tests that prove that nothing depends on the locale of the process. They are made
# in the build tree, where localedef and its sources are installed; the tests skip themselves where they aren't.

find_program(NORVIK_LOCALEDEF localedef)
set(NORVIK_LOCALE_DIRECTORY "${PROJECT_BINARY_DIR}/locale")

if(NOT TARGET norvik_locales)
    set(_norvik_locales "")
    foreach(language IN ITEMS de_DE tr_TR)
        set(_norvik_locale "${NORVIK_LOCALE_DIRECTORY}/${language}.UTF-8")
        if(NORVIK_LOCALEDEF AND EXISTS "/usr/share/i18n/locales/${language}")
            add_custom_command(OUTPUT "${_norvik_locale}/LC_NUMERIC"
                COMMAND "${CMAKE_COMMAND}" -E make_directory "${NORVIK_LOCALE_DIRECTORY}"
                COMMAND "${NORVIK_LOCALEDEF}" -i ${language} -f UTF-8 "${_norvik_locale}"
                COMMENT "Making the locale ${language}.UTF-8" VERBATIM)
            list(APPEND _norvik_locales "${_norvik_locale}/LC_NUMERIC")
        endif()
    endforeach()
    add_custom_target(norvik_locales DEPENDS ${_norvik_locales})
endif()

# For the tests that the including folder adds after this; they name norvik_locales among their NEEDS.
list(APPEND NORVIK_TEST_ENVIRONMENT "LOCPATH=${NORVIK_LOCALE_DIRECTORY}")
