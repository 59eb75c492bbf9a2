# The layers, from the bottom up: what each folder may use, written once. The folder's target links it (Targets.cmake)
# and its includes are tested against it (tests/architecture).

# brevio_layer(FOLDER PUBLIC target... PRIVATE target...): PUBLIC is what the folder's headers include, PRIVATE what
# only its sources do. A folder of src/ is named as Brevio:: and its path with "_" for "/", and stands further up.
function(brevio_layer folder)
  cmake_parse_arguments(ARG "" "" "PUBLIC;PRIVATE" ${ARGN})
  foreach(target IN LISTS ARG_PUBLIC ARG_PRIVATE)
    if(target MATCHES "^Brevio::" AND NOT target IN_LIST BREVIO_LAYER_TARGETS)
      message(FATAL_ERROR "${folder} may not use ${target}: no layer below it has that name")
    endif()
  endforeach()
  string(REGEX REPLACE "^src/" "Brevio::" target ${folder})
  string(REPLACE "/" "_" target ${target})
  set(BREVIO_LAYERS ${BREVIO_LAYERS} ${folder} PARENT_SCOPE)
  set(BREVIO_LAYER_TARGETS ${BREVIO_LAYER_TARGETS} ${target} PARENT_SCOPE)
  set(BREVIO_TARGET_${folder} ${target} PARENT_SCOPE)
  set(BREVIO_PUBLIC_${folder} ${ARG_PUBLIC} PARENT_SCOPE)
  set(BREVIO_PRIVATE_${folder} ${ARG_PRIVATE} PARENT_SCOPE)
endfunction()

brevio_layer(src/base PUBLIC Qt6::Core)
brevio_layer(src/encodings PUBLIC Qt6::Core PRIVATE Brevio::base)
brevio_layer(src/numbers PUBLIC Qt6::Core Brevio::base)
brevio_layer(src/phonebook PUBLIC Qt6::Core Brevio::base Brevio::encodings Brevio::numbers)
brevio_layer(src/history PUBLIC Qt6::Core Brevio::base PRIVATE SQLiteCpp)
brevio_layer(src/importing
  PUBLIC Qt6::Core
  PRIVATE Brevio::base Brevio::numbers Brevio::phonebook Found::csv)
# A plugin: what it links is loaded when the first import opens.
brevio_layer(src/importing/judge PUBLIC Qt6::Core Brevio::importing PRIVATE Found::phonenumber ICU::uc)
brevio_layer(src/messaging
  PUBLIC Qt6::Core Brevio::base
  PRIVATE Brevio::encodings Brevio::numbers Brevio::phonebook Qt6::Network CURL::libcurl)
brevio_layer(src/controls PUBLIC Qt6::Widgets Brevio::base)

# The windows; none uses another.
brevio_layer(src/ui/post PUBLIC Qt6::Widgets Brevio::messaging PRIVATE Brevio::controls)
brevio_layer(src/ui/phonebook
  PUBLIC Qt6::Widgets Brevio::base Brevio::phonebook Brevio::importing Brevio::controls
  PRIVATE Brevio::numbers)
brevio_layer(src/ui/importing
  PUBLIC Qt6::Widgets Brevio::base Brevio::importing
  PRIVATE Brevio::phonebook Brevio::controls)
brevio_layer(src/ui/results PUBLIC Qt6::Widgets Brevio::base Brevio::messaging Brevio::controls)
brevio_layer(src/ui/sent PUBLIC Qt6::Widgets Brevio::base Brevio::history Brevio::controls)
brevio_layer(src/ui/account
  PUBLIC Qt6::Widgets Brevio::base Brevio::messaging
  PRIVATE Brevio::encodings Brevio::numbers Brevio::controls)
brevio_layer(src/ui/about PUBLIC Qt6::Widgets Brevio::base PRIVATE Brevio::controls)

# But this one, which opens the others.
brevio_layer(src/ui/compose
  PUBLIC Qt6::Widgets Brevio::base Brevio::phonebook Brevio::messaging Brevio::controls
  PRIVATE
    Brevio::numbers Brevio::history
    Brevio::ui_phonebook Brevio::ui_account Brevio::ui_results Brevio::ui_sent Brevio::ui_about)

brevio_layer(src/startup
  PUBLIC Qt6::Widgets Brevio::base Brevio::messaging Brevio::controls Brevio::ui_post
  PRIVATE Brevio::numbers Brevio::phonebook Brevio::history Brevio::ui_phonebook Brevio::ui_importing
  Brevio::ui_compose PkgConfig::FONTCONFIG)
brevio_layer(src PRIVATE Qt6::Widgets Brevio::base Brevio::controls Brevio::startup)

# The gateway, a program of its own.
brevio_layer(src/gateway/protocol PUBLIC Qt6::Core PRIVATE Brevio::base)
brevio_layer(src/gateway/store
  PUBLIC Qt6::Core Brevio::gateway_protocol
  PRIVATE Brevio::base SQLiteCpp PkgConfig::CRYPT)
brevio_layer(src/gateway/handover
  PUBLIC Qt6::Core Brevio::gateway_store
  PRIVATE Brevio::base CURL::libcurl PkgConfig::HTTPLIB Threads::Threads)
brevio_layer(src/gateway/server
  PUBLIC Qt6::Core Brevio::gateway_protocol
  PRIVATE Brevio::base PkgConfig::HTTPLIB OpenSSL::SSL Threads::Threads)
brevio_layer(src/gateway
  PUBLIC Qt6::Core Brevio::gateway_protocol
  PRIVATE Brevio::base Brevio::gateway_store Brevio::gateway_handover Brevio::gateway_server Threads::Threads)

brevio_layer(tools/contrast PRIVATE Qt6::Widgets Brevio::controls)
brevio_layer(tools/icons PRIVATE Qt6::Gui)
brevio_layer(tools/tour PRIVATE Qt6::Widgets Brevio::base Brevio::startup)
