# Qt's headers, compiled once for a library of the window: its sources, and what the QML compiler writes for it, spend
# two thirds of their time on them. Where a compiler cache stands in, it saves more, and it can't look through such a
# header; so that builds with a cache show that each file includes what it uses.
#
#   lamina_precompile_qt(lamina_host)
function(lamina_precompile_qt target)
    if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
        target_precompile_headers(${target} PRIVATE
            <QtQml/qqmlprivate.h> <QQmlEngine> <QQuickItem> <functional> <memory> <string> <vector>)
    endif()
endfunction()
