cmake_minimum_required(VERSION 3.25)

# Fails when a file of layer LAYER (folder FOLDER) includes a header of a higher layer, of
# another layer of its own rank, or one of the engine's internal headers. Run by the build
# before each library compiles (fnrk_check_layers in FennrickTargets.cmake); writes STAMP when
# every include is allowed.
#
# Layers, lowest first; a layer includes only its own folder and those of lower rank.
set(rank_platform 0)
set(rank_session 1)
set(rank_engine 2)
set(rank_backend 3)
set(rank_tables 4)
set(rank_users 5)
set(rank_company 5)
set(rank_utilities 5)
set(rank_documents 5)
set(rank_einvoice 6)
set(rank_declarations 6)
set(rank_intake 6)
set(rank_facade 7)
set(rank_com 8)
set(rank_cli 8)
# Layers that build on another of their own rank (folder:folder it includes).
set(same_rank_allowed "")

# What the engine offers every layer above it: the operation set, its statuses and numbers,
# and the Engine itself for whoever owns the process's engine.
set(engine_public
    engine/constants.hpp engine/errors.hpp engine/mgmt_config.hpp engine/operations.hpp
    engine/operations.def engine/engine.hpp
    # the fields of any table as SQL values, read through the operation set
    engine/sql/field_values.hpp
    # the structure and the check of a table's files, for the table tools
    engine/table_files.hpp
    # the field list's type names, for whoever creates a table like one it has read
    engine/field_list_types.hpp)
# What the SQL backend shares with the engine besides: field layouts and value codecs, key
# encoding, expressions, the engine-wide settings and error texts, SQL statements and data
# dictionaries, and the cipher of encrypted tables, so that both answer alike.
set(engine_shared_with_backend
    engine/dbf/field.hpp engine/dbf/field_codec.hpp engine/dbf/field_list.hpp
    engine/expr/expression.hpp engine/cdx/index_key.hpp engine/cursor/engine_settings.hpp
    engine/cursor/record_functions.hpp engine/field_type_code.hpp engine/error_text.hpp
    engine/sql/statement_registry.hpp engine/dictionary/data_dictionary.hpp
    engine/crypt/encryption_mark.hpp engine/crypt/file_cipher.hpp)

if(NOT DEFINED rank_${LAYER})
    message(FATAL_ERROR "layer ${LAYER} has no rank in cmake/CheckLayerIncludes.cmake")
endif()
file(GLOB files "${FOLDER}/*.cpp" "${FOLDER}/*.hpp")
set(faults "")
foreach(file ${files})
    file(RELATIVE_PATH shown "${ROOT}" "${file}")
    file(STRINGS "${file}" includes REGEX "^#include \"[a-z_]+/[^\"]+\"")
    foreach(line ${includes})
        string(REGEX REPLACE "^#include \"(([a-z_]+)/[^\"]+)\".*" "\\1" header "${line}")
        string(REGEX REPLACE "^([a-z_]+)/.*" "\\1" target "${header}")
        if(target STREQUAL LAYER OR NOT DEFINED rank_${target})
            continue()  # its own folder, or a folder of the tests
        endif()
        if(rank_${target} GREATER rank_${LAYER})
            list(APPEND faults "${shown}: ${LAYER} includes ${header} of the higher layer ${target}")
        elseif(rank_${target} EQUAL rank_${LAYER}
               AND NOT "${LAYER}:${target}" IN_LIST same_rank_allowed)
            list(APPEND faults "${shown}: ${LAYER} includes ${header} of ${target}, a layer of its own rank")
        elseif(target STREQUAL "engine" AND NOT header IN_LIST engine_public)
            if(LAYER STREQUAL "backend" AND header IN_LIST engine_shared_with_backend)
                continue()
            endif()
            list(APPEND faults "${shown}: ${LAYER} includes ${header}, internal to the engine")
        endif()
    endforeach()
endforeach()
if(faults)
    list(JOIN faults "\n  " text)
    message(FATAL_ERROR "Includes across layers that the layering forbids:\n  ${text}")
endif()
file(TOUCH "${STAMP}")
