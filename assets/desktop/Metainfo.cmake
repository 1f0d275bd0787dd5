# What a store reads of Lamina. A build says where the application's home is, and leaves out what it does not know:
#
#   LAMINA_HOMEPAGE     URL of the page about Lamina
#   LAMINA_BUG_TRACKER  URL where faults are told
#   LAMINA_SCREENSHOTS  URL of the folder that holds the pictures of docs/images/screens; stores fetch them from there
#
# As a script: cmake -DLAMINA_HOMEPAGE=URL ... -DLAMINA_METAINFO=OUT -P Metainfo.cmake

set(LAMINA_SCREENS
    "blend.jpg|Two photos, one showing through the other|Zwei Fotos, eines scheint durch das andere"
    "crop.jpg|Choosing a square of each photo|Aus jedem Foto ein Quadrat wählen"
    "blend-wide.jpg|The tools at the side on a desktop|Auf dem Schreibtisch stehen die Werkzeuge daneben")

function(lamina_write_metainfo template out)
    set(links "")
    foreach(link IN ITEMS "homepage|${LAMINA_HOMEPAGE}" "bugtracker|${LAMINA_BUG_TRACKER}")
        if(link MATCHES "^(.+)\\|(.+)$")
            string(APPEND links "  <url type=\"${CMAKE_MATCH_1}\">${CMAKE_MATCH_2}</url>\n")
        endif()
    endforeach()
    if(LAMINA_SCREENSHOTS)
        string(APPEND links "\n  <screenshots>\n")
        set(type " type=\"default\"")
        foreach(screen IN LISTS LAMINA_SCREENS)
            string(REPLACE "|" ";" screen "${screen}")
            list(GET screen 0 file)
            list(GET screen 1 caption)
            list(GET screen 2 caption_de)
            string(APPEND links "    <screenshot${type}>\n      <caption>${caption}</caption>\n"
                "      <caption xml:lang=\"de\">${caption_de}</caption>\n"
                "      <image>${LAMINA_SCREENSHOTS}/${file}</image>\n    </screenshot>\n")
            set(type "")
        endforeach()
        string(APPEND links "  </screenshots>\n")
    endif()
    set(LAMINA_STORE_LINKS "${links}")
    configure_file(${template} ${out} @ONLY)
endfunction()

if(CMAKE_SCRIPT_MODE_FILE)
    lamina_write_metainfo(${CMAKE_CURRENT_LIST_DIR}/org.lamina.lamina.metainfo.xml.in ${LAMINA_METAINFO})
endif()
