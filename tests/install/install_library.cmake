# Builds the library as it is shipped and installs it into a prefix of the tests' own. It is
# configured for another prefix than it ends up in, so that every test also shows that it can be
# moved.
# Takes: SOURCE, BUILD, PREFIX, SHARED, PORTAL, QT6, QTQUICK, GTK4, GENERATOR, CXX_COMPILER,
# MAKE_PROGRAM.
execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${BUILD} -G ${GENERATOR}
            -DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM} -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
            -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/opt/elsewhere
            -DBUILD_SHARED_LIBS=${SHARED} -DZELSTYLEKIT_PORTAL=${PORTAL} -DZELSTYLEKIT_QT6=${QT6}
            -DZELSTYLEKIT_QTQUICK=${QTQUICK} -DZELSTYLEKIT_GTK4=${GTK4} -DZELSTYLEKIT_TESTS=OFF
            -DZELSTYLEKIT_TOOLS=OFF -DZELSTYLEKIT_EXAMPLES=OFF
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${BUILD} --parallel 2 COMMAND_ERROR_IS_FATAL ANY)
unset(ENV{DESTDIR})
file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX}
                COMMAND_ERROR_IS_FATAL ANY)
