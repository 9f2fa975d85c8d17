# The host layer's part of tally_host: the rules, the scripted backend, and the backend of the
# system that is built for.
target_sources(
  tally_host
  PRIVATE platform/host/fake/fake_host.cpp platform/host/fake/fake_memory.cpp
          platform/host/game_windows.cpp platform/host/instance_lock.cpp
          platform/host/window_session.cpp)
if(WIN32)
  target_sources(
    tally_host PRIVATE platform/host/win32/win32_host.cpp platform/host/win32/win32_memory.cpp
                       platform/host/win32/win32_rights.cpp)
else()
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
  target_sources(
    tally_host
    PRIVATE platform/host/x11/file_lock.cpp platform/host/x11/maps_file.cpp
            platform/host/x11/proc_image.cpp platform/host/x11/proc_memory.cpp
            platform/host/x11/x11_host.cpp platform/host/x11/x11_windows.cpp)
  target_link_libraries(tally_host PRIVATE PkgConfig::XCB)
endif()
