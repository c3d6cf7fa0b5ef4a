# Every outside library in one place; docs/decisions/ gives the reason for each.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(Qt6 REQUIRED COMPONENTS Core Gui Widgets DBus)
find_package(nlohmann_json REQUIRED)
find_package(ZLIB REQUIRED)
pkg_check_modules(UTF8PROC REQUIRED IMPORTED_TARGET libutf8proc)
pkg_check_modules(ISAL REQUIRED IMPORTED_TARGET libisal)
pkg_check_modules(TESSERACT REQUIRED IMPORTED_TARGET tesseract lept)
find_package(OpenMP REQUIRED COMPONENTS CXX)
pkg_check_modules(LIBAV REQUIRED IMPORTED_TARGET libavformat libavcodec libswscale libavutil)
pkg_check_modules(SECCOMP REQUIRED IMPORTED_TARGET libseccomp)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET
  xcb xcb-shm xcb-randr xcb-xfixes xcb-composite xcb-damage xcb-shape xcb-render xcb-cursor xcb-res
  xcb-xkb)

if(LUMAFRAME_BUILD_TESTS OR LUMAFRAME_BUILD_BENCH)
  find_package(PNG REQUIRED)
endif()
if(LUMAFRAME_BUILD_TESTS)
  find_package(GTest REQUIRED)
  pkg_check_modules(XCB_XTEST REQUIRED IMPORTED_TARGET xcb-xtest)
endif()
