# What a store reads of Lamina. A build says where the application's home is, and leaves out what it does not know:
#
#   LAMINA_HOMEPAGE     URL of the page about Lamina
#   LAMINA_BUG_TRACKER  URL where faults are told
#   LAMINA_SCREENSHOTS  URL of the folder that holds the pictures of docs/images/screens; stores fetch them from there
#   LAMINA_PROMOTION_ROOT   URL of the server that tells what to recommend after an export
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
    # A store is told of recommendations, and else that there is no server.
    if(LAMINA_PROMOTION_ROOT)
        set(english "After a picture was saved it asks a server what else its makers recommend, and shows that.")
        set(german "Nachdem ein Bild gespeichert ist, fragt es einen Server, was seine Macher sonst empfehlen, und zeigt es.")
        set(LAMINA_STORE_RATING "  <content_rating type=\"oars-1.1\">\n    <content_attribute id=\"money-advertising\">moderate</content_attribute>\n  </content_rating>\n")
    else()
        set(english "Your photos stay on your device, and Lamina speaks to no server.")
        set(german "Ihre Fotos bleiben auf Ihrem Gerät, und Lamina spricht mit keinem Server.")
        set(LAMINA_STORE_RATING "  <content_rating type=\"oars-1.1\"/>\n")
    endif()
    set(LAMINA_STORE_NETWORK "    <p>${english}</p>\n    <p xml:lang=\"de\">${german}</p>\n")
    configure_file(${template} ${out} @ONLY)
endfunction()

if(CMAKE_SCRIPT_MODE_FILE)
    lamina_write_metainfo(${CMAKE_CURRENT_LIST_DIR}/org.lamina.lamina.metainfo.xml.in ${LAMINA_METAINFO})
endif()
