# The libraries the project stands on, each as one target deps::NAME, found where it is first needed.

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

# deps::NAME for a pkg-config module; its headers count as system headers.
function(vamba_pkg_config_dependency name module)
  pkg_check_modules(${name} REQUIRED IMPORTED_TARGET GLOBAL ${module})
  add_library(deps::${name} ALIAS PkgConfig::${name})
endfunction()

vamba_pkg_config_dependency(curl libcurl)
vamba_pkg_config_dependency(uriparser liburiparser)
vamba_pkg_config_dependency(simdjson simdjson)
vamba_pkg_config_dependency(utf8proc libutf8proc)
vamba_pkg_config_dependency(uuid uuid)
vamba_pkg_config_dependency(systemd libsystemd)
vamba_pkg_config_dependency(openssl openssl)
vamba_pkg_config_dependency(seccomp libseccomp)

find_package(nlohmann_json 3.11 REQUIRED)
add_library(deps::nlohmann_json ALIAS nlohmann_json::nlohmann_json)

find_package(CLI11 2.1 REQUIRED)
add_library(deps::cli11 ALIAS CLI11::CLI11)

find_package(absl REQUIRED)
add_library(absl_time INTERFACE)
target_link_libraries(absl_time INTERFACE absl::time absl::strings absl::str_format)
add_library(deps::absl_time ALIAS absl_time)

vamba_pkg_config_dependency(httplib cpp-httplib)

add_library(absl_function_ref INTERFACE)
target_link_libraries(absl_function_ref INTERFACE absl::function_ref)
add_library(deps::absl_function_ref ALIAS absl_function_ref)

if(VAMBA_PICTURES)
  vamba_pkg_config_dependency(pangocairo pangocairo)
  vamba_pkg_config_dependency(harfbuzz harfbuzz)
  vamba_pkg_config_dependency(png libpng)
endif()

if(VAMBA_DESKTOP)
  vamba_pkg_config_dependency(gtk gtk+-3.0)
  vamba_pkg_config_dependency(gtk_layer_shell gtk-layer-shell-0)
  vamba_pkg_config_dependency(wayland_client wayland-client)
  vamba_pkg_config_dependency(x11 x11)
  vamba_pkg_config_dependency(xrandr xrandr)
  vamba_pkg_config_dependency(gio gio-2.0)
endif()

if(BUILD_TESTING OR VAMBA_BENCHES) # the benchmarks use the tests' servers
  vamba_pkg_config_dependency(nghttp2 libnghttp2)
endif()
