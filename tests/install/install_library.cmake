# Installs the library into a prefix of the tests' own: from a build that is there, or, where SOURCE is
# given, built as it is shipped. Either is configured for another prefix than it ends up in, so that
# every test also shows that it can be moved.
# Takes: BUILD, PREFIX, and for what is built SOURCE, SHARED, PORTAL, QT6, QTQUICK, GTK4, GENERATOR,
# CXX_COMPILER, MAKE_PROGRAM.
if(SOURCE)
    # Its sources compiled a few together, which takes half the time.
    execute_process(
        COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${BUILD} -G ${GENERATOR}
                -DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM} -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
                -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/opt/elsewhere
                -DCMAKE_UNITY_BUILD=ON -DBUILD_SHARED_LIBS=${SHARED}
                -DZELSTYLEKIT_PORTAL=${PORTAL} -DZELSTYLEKIT_QT6=${QT6}
                -DZELSTYLEKIT_QTQUICK=${QTQUICK} -DZELSTYLEKIT_GTK4=${GTK4}
                -DZELSTYLEKIT_TESTS=OFF -DZELSTYLEKIT_TOOLS=OFF -DZELSTYLEKIT_EXAMPLES=OFF
        COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND ${CMAKE_COMMAND} --build ${BUILD} --parallel 2
                    COMMAND_ERROR_IS_FATAL ANY)
endif()
unset(ENV{DESTDIR})
file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX}
                COMMAND_ERROR_IS_FATAL ANY)
